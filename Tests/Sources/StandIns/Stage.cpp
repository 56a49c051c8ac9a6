#include "StandIns/Stage.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <new>
#include <utility>

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

void Stage::mix(std::string_view bytes) {
    for (; !bytes.empty(); bytes.remove_prefix(std::min(bytes.size(), sizeof(std::uint64_t)))) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data(), std::min(bytes.size(), sizeof word));
        hash = (hash ^ word) * 0x9E3779B97F4A7C15 + (hash >> 32);
    }
}

Stage& stage() {
    static Stage theStage;
    return theStage;
}

std::size_t allocations() { return allocated; }

int perform() { return __real_main(0, nullptr); }

void performAndExit() {
    const int status = perform();
    std::fputs((take(printed) + take(reported)).c_str(), stderr);
    std::exit(status);
}

OnStage::OnStage() : pOut(std::cout.rdbuf(printed.rdbuf())), pErr(std::cerr.rdbuf(reported.rdbuf())) {
    stage() = Stage();
    out();
    err();
}

OnStage::~OnStage() {
    std::cout.rdbuf(pOut);
    std::cerr.rdbuf(pErr);
}

std::string OnStage::out() { return take(printed); }
std::string OnStage::err() { return take(reported); }
std::vector<std::string> OnStage::calls() { return std::exchange(stage().calls, {}); }

void* operator new(std::size_t size) {
    ++allocated;
    if (void* p = std::malloc(size)) {
        return p;
    }
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return stage().memoryIsShort ? nullptr : operator new(size);
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t /*size*/) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t /*size*/) noexcept { std::free(p); }

// The C library's numbers, by its generator of the same sequence.
extern "C" int rand() noexcept {
    auto& chance = stage().chance;
    stage().drawn.push_back(chance.empty() ? static_cast<int>(random()) : chance.front());
    if (!chance.empty()) {
        chance.pop_front();
    }
    return stage().drawn.back();
}
extern "C" void srand(unsigned int seed) noexcept { srandom(seed); }
