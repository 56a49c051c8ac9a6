#include "StandIns/Stage.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <regex>

int host::start(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}

std::string told(const Points& points) {
    const auto rounded = [](float value) { return std::round(value * 1000) / 1000 + 0.0f; }; // never -0
    std::string text;
    std::string colour;
    for (const auto& [p, c] : points) {
        const std::string its = call(c.r, c.g, c.b, c.a) + ": ";
        text += (text.empty() ? "" : ", ") + (its != colour ? its : "");
        text += call(rounded(p.x), rounded(p.y), rounded(p.z));
        colour = its;
    }
    return text.empty() ? "nothing" : text;
}

void Stage::show(GLsizei count, const GLuint* indices, const char* positions, const char* colours,
                 std::size_t stride) {
    if (!listening) {
        return;
    }
    Points& points = drawings.emplace_back(count);
    for (Point& point : points) {
        const std::size_t at = stride * (indices != nullptr ? *indices++ : &point - points.data());
        std::memcpy(&point.position, positions + at, sizeof point.position);
        std::memcpy(&point.colour, colours + at, sizeof point.colour);
    }
}

std::string OnStage::take(std::ostringstream& stream) {
    std::string text = stream.str();
    stream.str("");
    return text;
}

void OnStage::keep(const std::string& pattern) {
    const std::regex beginning("^(?:" + pattern + ")");
    std::vector<std::string>& calls = stage.calls;
    const auto isOther = [&](const std::string& call) { return !std::regex_search(call, beginning); };
    calls.erase(std::remove_if(calls.begin(), calls.end(), isOther), calls.end());
    calls.erase(std::unique(calls.begin(), calls.end()), calls.end());
}

/// The steps of a part of stories.txt, a line each.
static std::string stepsOf(const std::string& part) {
    std::ifstream file("Tests/Sources/stories.txt");
    const std::string stories(std::istreambuf_iterator<char>(file), {});
    const std::string heading = "\n# " + part + "\n";
    const std::size_t from = stories.find(heading) + heading.size();
    const std::string steps = stories.substr(from, stories.find("\n#", from) - from);
    return std::regex_replace(steps, std::regex("; |\n+"), "\n");
}

void OnStage::expectStory(const std::string& part) {
    std::string story;
    for (const std::string& call : std::exchange(stage.calls, {})) {
        story.append(call).append("\n");
    }
    std::istringstream constants(stepsOf("Constants of OpenGL"));
    for (std::string value, name; constants >> value >> name;) {
        const std::regex number(" " + value + "\\b");
        story = std::regex_replace(story, number, name.insert(0, " "));
    }
    story += out() + err();
    EXPECT_EQ(std::regex_replace(story, std::regex("\n+"), "\n"), stepsOf(part));
}

void OnStage::tellChecks(const std::function<void()>& action) {
    stage.listening = false;
    std::size_t n = 0;
    do {
        stage.errorChecks = 0;
        stage.errors.assign(n, GL_NO_ERROR);
        stage.errors.push_back(GL_INVALID_OPERATION);
        try {
            action();
        } catch (const std::exception& exception) {
            tell(exception.what());
        }
    } while (stage.errorChecks > n++);
    out();
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
