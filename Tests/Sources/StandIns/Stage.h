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

/// Words and numbers in a row, numbers to a thousandth.
template <typename... Parts>
std::string text(const Parts&... parts) {
    std::ostringstream line;
    const auto rounded = [](const auto& part) {
        if constexpr (std::is_floating_point_v<std::decay_t<decltype(part)>>) {
            return std::round(part * 1000) / 1000 + 0.0; // never -0
        } else {
            return part;
        }
    };
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
    Words events;            ///< in their order: pictures begun, drawn and shown, waiting, keys, sound
    std::vector<int> chance; ///< random numbers drawn
    std::size_t errorChecks = 0, soundCalls = 0;

    Uint32 now = 1000; ///< ms
    Uint32 drift = 0;  ///< ms that pass once the clock has been read the next time
    std::array<Uint8, SDLK_LAST> keys{};
    std::function<void()> atSwap = [] {}, atPump = [] {};
    std::function<void(float*)> spectrum = [](float*) {};
    std::vector<GLenum> errors;       ///< that the next checks find, one each
    std::string_view failing;         ///< the call that fails, the extension that is missing
    std::size_t failingSoundCall = 0; ///< the one of this number, counted from 1
    GLuint broken = 0;                ///< the shader or program that cannot be built
    FMOD_BOOL paused = 0;

    bool works(std::string_view call) const { return call != failing; }
    template <typename... Parts>
    bool note(const char* what, const Parts&... parts) {
        if (watching) {
            events.push_back(text(what, parts...));
        }
        return works(what);
    }
    static void tell(float /*uniform*/) {}
    bool isBroken(GLuint object) const { return broken == object; }
    GLenum nextError() { return ++errorChecks <= errors.size() ? errors[errorChecks - 1] : GL_NO_ERROR; }
    Uint32 readClock() { return std::exchange(now, now + std::exchange(drift, 0)); }
    /// A draw call: the numbers of the records that it draws, null for the first ones.
    void show(const Drawing& pen, const Place& place, GLsizei count, const GLuint* indices,
              const char* positions, const char* colours, std::size_t stride);
};

inline Stage stage;

inline std::size_t allocations = 0; ///< by operator new since the program began
inline std::ptrdiff_t living = 0;   ///< of them, those that have not been deleted

/// A test on a fresh stage, which catches what is printed.
class OnStage : public testing::Test {
protected:
    OnStage();
    ~OnStage() override;
    // What has been printed since the last time.
    static std::string out() { return take(printed); }
    static std::string err() { return take(reported); }
    /// What has happened since the last time.
    static std::string story();

private:
    static std::string take(std::ostringstream& stream);

    static inline std::ostringstream printed, reported;
    std::streambuf* pOut;
    std::streambuf* pErr;
};

/// The height of the highest of them.
inline float highest(const Points& points) {
    float height = 0;
    std::for_each(points.begin(), points.end(),
                  [&](const Point& p) { height = std::max(height, p.position.y); });
    return height;
}

/// What an action draws.
template <typename Action>
std::vector<Drawing> drawn(const Action& action) {
    stage.drawings.clear();
    action();
    return std::exchange(stage.drawings, {});
}
