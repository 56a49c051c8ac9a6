#pragma once

#include "Drawing.h"
#include "Host.h"

#include <GL/glew.h>
#include <SDL.h>
#include <fmod.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using Points = std::vector<Point>;
using Words = std::vector<std::string>;

inline double rounded(double number) { return std::round(number * 1000) / 1000 + 0.0; } // never -0
inline double rounded(float number) { return rounded(double{number}); }
template <typename T>
const T& rounded(const T& word) {
    return word;
}

/// Words and numbers in a row, numbers to a thousandth.
template <typename... Parts>
std::string text(const Parts&... parts) {
    std::ostringstream line;
    ((line << rounded(parts) << ' '), ...);
    std::string all = line.str();
    all.pop_back();
    return all;
}
inline std::string text(const Vector3f& v) { return text(v.x, v.y, v.z); }
inline std::string text(const Colour4& c) { return text(c.r, c.g, c.b, c.a); }

/// Everything around the show: what it did, and what it is to be answered.
struct Stage {
    bool watching = true;
    std::vector<Drawing> drawings;
    std::string events;      ///< in their order: pictures begun, drawn and shown, waiting, keys, sound
    std::vector<int> chance; ///< random numbers drawn
    std::size_t errorChecks = 0, soundCalls = 0;

    Uint32 now = 1000; ///< ms
    std::array<Uint8, SDLK_LAST> keys{};
    std::function<void()> atSwap = [] {};
    std::array<float, 512> spectrum{};
    std::size_t failingCheck = 0;     ///< the one that finds an error, counted from 1
    std::string_view failing;         ///< the call that fails, the extension that is missing
    std::size_t failingSoundCall = 0; ///< the one of this number, counted from 1
    GLuint broken = 0;                ///< the shader or program that cannot be built
    FMOD_BOOL paused = 0;

    bool works(std::string_view call) const { return call != failing; }
    template <typename... Parts>
    bool note(const char* what, const Parts&... parts) {
        if (watching) {
            events += (events.empty() ? "" : ", ") + text(what, parts...);
        }
        return works(what);
    }
    static void tell(float /*uniform*/) {}
    bool isBroken(GLuint object) const { return broken == object; }
    GLenum nextError() { return ++errorChecks == failingCheck ? GL_INVALID_OPERATION : GL_NO_ERROR; }
    /// A draw call: the numbers of the records that it draws, null for the first ones; each begins as a
    /// Point.
    void show(const Drawing& pen, const Place& place, GLsizei count, const GLuint* indices,
              const char* records, std::size_t stride);
};

inline Stage stage;

inline std::size_t allocations = 0; ///< by operator new since the program began

/// A test on a fresh stage, which catches what is printed.
class OnStage : public testing::Test {
protected:
    OnStage();
    ~OnStage() override;
    // What has been printed since the last time.
    std::string out() { return std::exchange(printed, {}).str(); }
    std::string err() { return std::exchange(reported, {}).str(); }
    /// What has happened since the last time.
    static std::string story() { return std::exchange(stage.events, ""); }

private:
    std::ostringstream printed, reported;
    std::streambuf *pOut, *pErr;
};

// Colours of the lattice, where nothing has happened and where a wave passes.
const std::string GREY = "0.459 0.459 0.459 0.7";
const std::string WHITE = "1 1 1 0.7";

/// Points as white as the front of a wave.
inline auto whitesOf(const Points& points) {
    return std::count_if(points.begin(), points.end(), [](const Point& p) { return p.colour.g == 1; });
}

/// The mean of their places.
inline Vector3f middleOf(const Points& points) {
    Vector3f sum;
    for (const Point& point : points) {
        sum = sum + point.position;
    }
    return sum * (1.0f / static_cast<float>(points.size()));
}

/// What an action draws.
template <typename Action>
std::vector<Drawing> drawn(const Action& action) {
    stage.drawings.clear();
    action();
    return std::exchange(stage.drawings, {});
}
