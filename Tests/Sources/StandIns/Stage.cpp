#include "StandIns/Stage.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>

// The linker gives these two names to the start of the program and to the main of the show.
extern "C" int __real_main(int argc, char** argv);  // NOLINT(bugprone-reserved-identifier)
extern "C" int __wrap_main(int argc, char** argv) { // NOLINT(bugprone-reserved-identifier)
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}

namespace {
std::ostringstream printed;
std::ostringstream reported;
std::size_t allocated = 0;

std::string take(std::ostringstream& stream) {
    std::string text = stream.str();
    stream.str("");
    return text;
}
} // namespace

std::size_t allocations() { return allocated; }
int perform() { return __real_main(0, nullptr); }

OnStage::OnStage() : pOut(std::cout.rdbuf(printed.rdbuf())), pErr(std::cerr.rdbuf(reported.rdbuf())) {
    stage = Stage();
    take(printed);
    take(reported);
}
OnStage::~OnStage() {
    std::cout.rdbuf(pOut);
    std::cerr.rdbuf(pErr);
}
std::string OnStage::out() { return take(printed); }
std::string OnStage::err() { return take(reported); }

void OnStage::expectExit(int status, const std::string& text) {
    const auto run = [] {
        const int result = perform();
        std::fputs((take(printed) + take(reported)).c_str(), stderr);
        std::exit(result);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(status), testing::HasSubstr(text));
}

void* operator new(std::size_t size) {
    ++allocated;
    return std::malloc(size); // there is enough
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t /*size*/) noexcept { std::free(p); }

// The C library's numbers, by its generator of the same sequence.
extern "C" int rand() noexcept {
    stage.drawn.push_back(static_cast<int>(random()));
    return stage.drawn.back();
}
extern "C" void srand(unsigned int seed) noexcept { srandom(seed); }
