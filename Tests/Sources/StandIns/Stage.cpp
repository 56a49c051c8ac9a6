#include "StandIns/Stage.h"

#include <cstdlib>
#include <iostream>

int host::start(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}

std::string OnStage::take(std::ostringstream& stream) {
    std::string text = stream.str();
    stream.str("");
    return text;
}

std::string OnStage::calls(const std::string& names) {
    std::string story;
    for (const std::string& line : calls()) {
        const bool named = names.find(" " + line.substr(0, line.find(' ')) + " ") != std::string::npos;
        story += named ? line.substr(2) + "; " : "";
    }
    return story;
}

OnStage::OnStage() : pOut(std::cout.rdbuf(printed.rdbuf())), pErr(std::cerr.rdbuf(reported.rdbuf())) {
    stage = Stage();
    take(printed);
    take(reported);
}
OnStage::~OnStage() {
    std::cout.rdbuf(pOut);
    std::cerr.rdbuf(pErr);
}

void* operator new(std::size_t size) {
    ++allocations;
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
