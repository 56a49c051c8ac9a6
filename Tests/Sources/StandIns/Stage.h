#pragma once

#include "3D/LineRenderer.h"
#include "Host.h"

#include <GL/glew.h>
#include <SDL.h>
#include <fmod.h>
#include <gmock/gmock.h>

#include <array>
#include <functional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A call as it stands in the list of calls: the name and the arguments that matter.
template <typename First, typename... Others>
std::string call(const First& first, const Others&... others) {
    std::ostringstream text;
    text << first;
    ((text << ' ' << others), ...);
    return text.str();
}

using Points = std::vector<Point>;

/// Points as text, rounded to a thousandth, a colour in front of those that have it.
std::string told(const Points& points);

/// Everything around the show: what it did to the libraries, and what they are to answer.
struct Stage {
    std::vector<std::string> calls;
    std::vector<Points> drawings; ///< what each draw call gets
    std::array<double, 9> view{}; ///< eye, point looked at, upwards
    bool listening = true;        ///< lists calls and drawings
    std::size_t errorChecks = 0;
    std::size_t soundCalls = 0;
    std::vector<int> drawn; ///< random numbers

    Uint32 now = 1000; ///< ms
    Uint32 drift = 0;  ///< ms that pass once the clock has been read the next time
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
        if constexpr (sizeof...(arguments) == 9 && (std::is_arithmetic_v<Arguments> && ...)) {
            view = {static_cast<double>(arguments)...}; // gluLookAt
        }
        if (listening) {
            calls.push_back(call(name, arguments...));
        }
        return failing != name;
    }
    Uint32 readClock() { return std::exchange(now, now + std::exchange(drift, 0)); }
    GLenum nextError() { return ++errorChecks <= errors.size() ? errors[errorChecks - 1] : GL_NO_ERROR; }
    bool isBroken(GLuint object) const { return broken.count(object) != 0; }
    /// A draw call: the numbers of the records that it draws, null for the first ones.
    void show(GLsizei count, const GLuint* indices, const char* positions, const char* colours,
              std::size_t stride);
};

inline Stage stage;

/// Adds a line to the story.
template <typename... Arguments>
void tell(const Arguments&... arguments) {
    stage.calls.push_back(call(arguments...));
}

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
    /// Drops all calls but those that begin with the pattern, and of equal ones in a row all but the first.
    static void keep(const std::string& pattern);
    /// Holds what was called, told and printed against that part of stories.txt.
    static void expectStory(const std::string& part);
    /// Does it again and again, each time with an error of OpenGL at the next check; tells what is thrown.
    static void tellChecks(const std::function<void()>& action);

private:
    static std::string take(std::ostringstream& stream);

    static inline std::ostringstream printed, reported;
    std::streambuf* pOut;
    std::streambuf* pErr;
};
