#include "StandIns/Stage.h"

#include <cstdlib>
#include <cstring>
#include <iostream>

int host::start(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}

void Stage::show(const Drawing& pen, const Place& place, GLsizei count, const GLuint* indices,
                 const char* positions, const char* colours, std::size_t stride) {
    if (!watching) {
        return;
    }
    Points& points = drawings.emplace_back(pen).points;
    for (GLsizei i = 0; i < count; ++i) {
        const std::size_t at = stride * (indices != nullptr ? indices[i] : i);
        Point& point = points.emplace_back();
        std::memcpy(&point.position, positions + at, sizeof point.position);
        std::memcpy(&point.colour, colours + at, sizeof point.colour);
        point.position = place.at(point.position);
    }
    const std::string what = pen.kind == GL_QUADS   ? text("picture", pen.texture)
                             : pen.kind == GL_LINES ? "lines"
                                                    : "points";
    note(what.c_str(), "into", pen.target, "by", pen.program,
         pen.added    ? "added"
         : pen.tested ? "by depth"
                      : "over all");
}

OnStage::OnStage() : pOut(std::cout.rdbuf(printed.rdbuf())), pErr(std::cerr.rdbuf(reported.rdbuf())) {
    glewInit(); // OpenGL begins anew
    stage = Stage();
    take(printed);
    take(reported);
}

OnStage::~OnStage() {
    std::cout.rdbuf(pOut);
    std::cerr.rdbuf(pErr);
}

std::string OnStage::take(std::ostringstream& stream) {
    std::string all = stream.str();
    stream.str("");
    return all;
}

std::string OnStage::story() {
    std::string all;
    for (const std::string& event : std::exchange(stage.events, {})) {
        all += (all.empty() ? "" : ", ") + event;
    }
    return all;
}

void* operator new(std::size_t size) {
    ++allocations;
    ++living;
    return std::malloc(size); // there is enough
}
void operator delete(void* p) noexcept {
    living -= p != nullptr ? 1 : 0;
    std::free(p);
}
void operator delete(void* p, std::size_t /*size*/) noexcept { operator delete(p); }

// The C library's numbers, by its generator of the same sequence.
extern "C" int rand() noexcept {
    stage.chance.push_back(static_cast<int>(random()));
    return stage.chance.back();
}
extern "C" void srand(unsigned int seed) noexcept { srandom(seed); }
