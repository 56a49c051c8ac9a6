#pragma once

#include "3D/LineRenderer.h"
#include "Host.h"

#include <GL/glew.h>
#include <SDL.h>
#include <fmod.h>
#include <gmock/gmock.h>

#include <array>
#include <bitset>
#include <cmath>
#include <cstdint>
#include <functional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

/// A call as it stands in the list of calls: the name and the arguments that matter.
template <typename First, typename... Others>
std::string call(const First& first, const Others&... others) {
    std::ostringstream text;
    text << first;
    ((text << ' ' << others), ...);
    return text.str();
}

/// A place in the world: where the show's own transforms, views left out, put what is drawn.
struct Place {
    /// Directions of x, y and z, and the origin.
    std::array<std::array<double, 3>, 4> axes{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 0}}};

    std::array<double, 3> of(double x, double y, double z) const;
    void rotate(double degrees, std::size_t axis);
    void scale(double x, double y, double z);
};

/// What a draw call drew, and how.
struct Drawing {
    float size;                ///< width of the lines or size of the points in pixels
    bool glows;                ///< in front of everything, added to what is there
    std::vector<Point> points; ///< in the world
};

/// Everything around the show: what it did to the libraries, and what they are to answer.
struct Stage {
    std::vector<std::string> calls;
    std::vector<Drawing> drawings;
    std::array<double, 9> view{};                      ///< eye, point looked at, upwards
    std::uint64_t hash = 0;                            ///< of all calls, drawn points included
    bool listening = true;                             ///< lists calls and drawings
    bool hashing = false;                              ///< hashes them
    std::bitset<0x10000> enabled;                      ///< of OpenGL's switches and arrays
    std::vector<Place> places = std::vector<Place>(1); ///< the stack of matrices
    float size = 1;                                    ///< of lines and points
    std::size_t errorChecks = 0;
    std::size_t soundCalls = 0;
    std::vector<int> drawn; ///< random numbers

    Uint32 now = 1000; ///< ms
    Uint32 drift = 0;  ///< ms that it takes to read the clock
    std::array<Uint8, SDLK_LAST> keys{};
    std::function<void()> atSwap = [] {};
    std::function<void()> atPump = [] {};
    std::function<void(float*)> spectrum = [](float*) {};
    std::vector<GLenum> errors;       ///< that the next checks find, one each
    std::string failing;              ///< the call that fails, the extension that is missing
    std::size_t failingSoundCall = 0; ///< the one of this number, counted from 1
    std::set<GLuint> broken;          ///< the shaders and programs that cannot be built
    FMOD_BOOL paused = 0;
    unsigned int position = 0; ///< ms in the track

    /// Whether the call succeeds.
    template <typename... Arguments>
    bool note(const std::string_view name, const Arguments&... arguments) {
        if constexpr ((std::is_arithmetic_v<Arguments> && ...)) {
            follow(name, {static_cast<double>(arguments)...});
        }
        if (listening) {
            calls.push_back(call(name, arguments...));
        }
        if (hashing) {
            mix(name);
            (mix(arguments), ...);
        }
        return failing != name;
    }
    Uint32 readClock() { return std::exchange(now, now + drift); }
    GLenum nextError() { return ++errorChecks <= errors.size() ? errors[errorChecks - 1] : GL_NO_ERROR; }
    bool isBroken(GLuint object) const { return broken.count(object) != 0; }
    /// A draw call: the numbers of the records that it draws, null for the first ones.
    void show(GLsizei count, const GLuint* indices, const char* positions, const char* colours,
              std::size_t stride);

private:
    void follow(std::string_view name, std::initializer_list<double> arguments);
    template <typename T>
    void mix(const T& value) {
        using Hashed = std::conditional_t<std::is_convertible_v<T, std::string_view>, std::string_view, T>;
        hash = (hash ^ std::hash<Hashed>()(value)) * 0x9E3779B97F4A7C15 + (hash >> 32);
    }
};

inline Stage stage;

/// Adds a line to the story.
template <typename... Arguments>
void tell(const Arguments&... arguments) {
    stage.calls.push_back(call(arguments...));
}

inline std::size_t allocations = 0; ///< by operator new since the program began
inline std::ptrdiff_t living = 0;   ///< of them, those that have not been deleted

/// A test on a fresh stage, which catches what is printed, and is left tidy.
class OnStage : public testing::Test {
protected:
    OnStage();
    ~OnStage() override;
    // What has been printed, called and drawn since the last time.
    static std::string out() { return take(printed); }
    static std::string err() { return take(reported); }
    static std::vector<Drawing> drawings() { return std::exchange(stage.drawings, {}); }
    /// The calls, those of the names in a list with spaces around each, in a line.
    static std::string calls(const std::string& names);
    /// Holds what was called, told and printed against that part of stories.txt.
    static void expectStory(const std::string& part);
    /// Tells where the action checks for errors of OpenGL.
    static void tellChecks(const std::function<void()>& action);

private:
    static std::string take(std::ostringstream& stream);

    static inline std::ostringstream printed, reported;
    std::streambuf* pOut;
    std::streambuf* pErr;
};
