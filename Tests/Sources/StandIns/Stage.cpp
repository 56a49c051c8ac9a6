#include "StandIns/Stage.h"

#include <cstdlib>
#include <cstring>
#include <iostream>

int host::start(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}

void Stage::show(const Drawing& pen, const Place& place, GLsizei count, const GLuint* indices,
                 const char* records, std::size_t stride) {
    if (!watching || drawings.size() == 1000) { // a show that does not end must not fill the memory
        return;
    }
    Points& points = drawings.emplace_back(pen).points;
    for (GLsizei i = 0; i < count; ++i) {
        Point& point = points.emplace_back();
        std::memcpy(&point, records + stride * (indices != nullptr ? indices[i] : i), sizeof point);
        point.position = place.at(point.position);
    }
    const std::string what = pen.kind == GL_QUADS ? text("picture", pen.texture) : "lines";
    const std::string how = pen.added() ? "added" : pen.tested ? "by depth" : "over all";
    note(what.c_str(), "into", pen.target, "by", pen.program, how);
}

OnStage::OnStage() : pOut(std::cout.rdbuf(printed.rdbuf())), pErr(std::cerr.rdbuf(reported.rdbuf())) {
    stage = Stage();
    glewInit(); // OpenGL begins anew
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
    stage.chance.push_back(static_cast<int>(random()));
    return stage.chance.back();
}
extern "C" void srand(unsigned int seed) noexcept { srandom(seed); }
