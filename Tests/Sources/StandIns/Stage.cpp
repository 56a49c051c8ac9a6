#include "StandIns/Stage.h"

#include "Utils/GLUtils.h"

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <regex>

int host::start(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}

std::array<double, 3> Place::of(double x, double y, double z) const {
    std::array<double, 3> point{};
    for (int i = 0; i < 3; ++i) {
        point[i] = axes[0][i] * x + axes[1][i] * y + axes[2][i] * z + axes[3][i];
    }
    return point;
}

void Place::rotate(double degrees, std::size_t axis) {
    const double sine = std::sin(degrees / 180 * M_PI);
    const double cosine = std::cos(degrees / 180 * M_PI);
    for (int i = 0; i < 3; ++i) {
        double& u = axes[(axis + 1) % 3][i];
        double& v = axes[(axis + 2) % 3][i];
        std::tie(u, v) = std::make_pair(u * cosine + v * sine, v * cosine - u * sine);
    }
}

void Place::scale(double x, double y, double z) {
    for (int i = 0; i < 3; ++i) {
        axes[0][i] *= x;
        axes[1][i] *= y;
        axes[2][i] *= z;
    }
}

void Stage::follow(std::string_view name, std::initializer_list<double> arguments) {
    const double* a = arguments.begin();
    if (name == "glPushMatrix") {
        places.push_back(places.back());
    } else if (name == "glPopMatrix") {
        places.pop_back();
        ASSERT_FALSE(places.empty());
    } else if (name == "glLoadIdentity") {
        places.back() = Place();
    } else if (name == "glTranslatef") {
        places.back().axes[3] = places.back().of(a[0], a[1], a[2]);
    } else if (name == "glScalef") {
        places.back().scale(a[0], a[1], a[2]);
    } else if (name == "glRotatef") {
        EXPECT_EQ(a[1] + a[2] + a[3], 1);
        places.back().rotate(a[0], a[1] == 1 ? 0 : a[2] == 1 ? 1 : 2);
    } else if (name == "glLineWidth" || name == "glPointSize") {
        size = static_cast<float>(a[0]);
    } else if (name == "gluLookAt") {
        std::copy_n(a, 9, view.begin());
    } else if (name.substr(0, 8) == "glEnable") {
        enabled.set(static_cast<GLenum>(a[0]));
    } else if (name.substr(0, 9) == "glDisable") {
        enabled.reset(static_cast<GLenum>(a[0]));
    }
}

void Stage::show(GLsizei count, const GLuint* indices, const char* positions, const char* colours,
                 std::size_t stride) {
    EXPECT_TRUE(enabled[GL_VERTEX_ARRAY] && enabled[GL_COLOR_ARRAY]);
    if (!hashing && !listening) {
        return;
    }
    Drawing drawing{size, enabled[GL_BLEND] && !enabled[GL_DEPTH_TEST], std::vector<Point>(count)};
    for (Point& point : drawing.points) {
        const std::size_t at = stride * (indices != nullptr ? *indices++ : &point - drawing.points.data());
        std::array<float, 3> p{};
        std::memcpy(p.data(), positions + at, sizeof p);
        const auto [x, y, z] = places.back().of(p[0], p[1], p[2]);
        point.position = Vector3f(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z));
        std::memcpy(&point.colour, colours + at, sizeof point.colour);
    }
    if (hashing) {
        mix(std::string_view(reinterpret_cast<const char*>(drawing.points.data()), count * sizeof(Point)));
    }
    if (listening) {
        drawings.push_back(std::move(drawing));
    }
}

std::string OnStage::take(std::ostringstream& stream) {
    std::string text = stream.str();
    stream.str("");
    return text;
}

std::string OnStage::calls(const std::string& names) {
    std::string line;
    for (const std::string& call : std::exchange(stage.calls, {})) {
        const bool named = names.find(" " + call.substr(0, call.find(' ')) + " ") != std::string::npos;
        line += named ? call + "; " : "";
    }
    return line;
}

/// The steps of a part of stories.txt, a line each.
static std::string stepsOf(const std::string& part) {
    std::ifstream file("Tests/Sources/stories.txt");
    std::string steps;
    bool here = false;
    for (std::string line; std::getline(file, line);) {
        here = line[0] == '#' ? line == "# " + part : here;
        steps += here && !line.empty() && line[0] != '#' ? line + "\n" : "";
    }
    return std::regex_replace(steps, std::regex("; "), "\n");
}

void OnStage::expectStory(const std::string& part) {
    std::string story;
    for (const std::string& call : std::exchange(stage.calls, {})) {
        story += call + "\n";
    }
    std::istringstream constants(stepsOf("Constants of OpenGL"));
    for (std::string value, name; constants >> value >> name;) {
        story = std::regex_replace(story, std::regex(" " + value + "\\b"), " " + name);
    }
    EXPECT_EQ(story + out() + err(), stepsOf(part));
}

void OnStage::tellChecks(const std::function<void()>& action) {
    std::vector<std::string> told = std::exchange(stage.calls, {});
    bool thrown = true;
    for (std::size_t n = 0; thrown; ++n) {
        stage.errorChecks = 0;
        stage.errors.assign(n, GL_NO_ERROR);
        stage.errors.push_back(GL_INVALID_OPERATION);
        try {
            action();
            thrown = false;
        } catch (const GLErrorException& exception) {
            told.emplace_back(exception.what());
        }
    }
    stage.calls = told;
    out();
    err();
}

OnStage::OnStage() : pOut(std::cout.rdbuf(printed.rdbuf())), pErr(std::cerr.rdbuf(reported.rdbuf())) {
    stage = Stage();
    take(printed);
    take(reported);
}
OnStage::~OnStage() {
    EXPECT_EQ(stage.places.size(), 1U);
    EXPECT_FALSE(stage.enabled[GL_VERTEX_ARRAY] || stage.enabled[GL_COLOR_ARRAY]);
    std::cout.rdbuf(pOut);
    std::cerr.rdbuf(pErr);
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
    stage.drawn.push_back(static_cast<int>(random()));
    return stage.drawn.back();
}
extern "C" void srand(unsigned int seed) noexcept { srandom(seed); }
