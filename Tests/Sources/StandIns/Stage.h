#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <GL/glew.h>
#include <SDL.h>
#include <fmod.h>
#include <gmock/gmock.h>

#include "3D/LineRenderer.h"

/// A call as it stands in the list of calls: the name and the arguments that matter.
template <typename... Arguments>
std::string call(const char* name, const Arguments&... arguments) {
    std::ostringstream text;
    text.precision(9);
    text << name;
    ((text << ' ' << arguments), ...);
    return text.str();
}

/// What one draw call showed: its points in the order drawn, where the model-view matrix places them in the
/// world.
struct Drawing {
    GLenum mode;
    float size; ///< of lines or points, in pixels
    std::vector<Point> points;
};

/// Everything around the show: what it did to the libraries, and what they are to answer.
struct Stage {
    std::vector<std::string> calls;
    std::vector<Drawing> drawings;
    std::uint64_t hash = 0; ///< of all calls, drawn points included
    bool listening = true;  ///< lists calls
    bool watching = false;  ///< keeps drawings
    bool hashing = false;
    bool memoryIsShort = false; ///< an allocation that may fail does
    int liveObjects = 0;        ///< OpenGL objects made and not deleted
    std::size_t errorChecks = 0;
    std::size_t soundCalls = 0;
    std::vector<int> drawn; ///< random numbers

    Uint32 now = 1000; ///< ms
    FMOD_BOOL paused = 0;
    GLint logLength = 4; ///< as stated by the driver
    std::array<Uint8, SDLK_LAST> keys{};
    std::function<void()> atSwap = [] {};
    std::function<void(float*)> spectrum = [](float*) {};
    std::deque<int> chance;                     ///< the next random numbers; then come the generator's own
    std::deque<GLenum> errors;                  ///< that the next checks find; then there are none
    std::set<std::string, std::less<>> failing; ///< calls that fail, extensions that are missing
    std::size_t failingSoundCall = 0;           ///< the one of this number, counted from 1
    std::set<GLuint> broken;                    ///< shaders and programs that cannot be built
    std::string log = "log";                    ///< what the driver says of these

    bool fails(std::string_view name) const { return failing.count(name) != 0; }

    template <typename... Arguments>
    void record(const char* name, const Arguments&... arguments) {
        if (listening) {
            calls.push_back(call(name, arguments...));
        }
        if (hashing) {
            mix(std::string_view(name));
            (mix(arguments), ...);
        }
    }
    template <typename T>
    void mix(const T& value) {
        mix(std::string_view(reinterpret_cast<const char*>(&value), sizeof value));
    }
    void mix(const char* text) { mix(std::string_view(text)); }
    void mix(const std::string& text) { mix(std::string_view(text)); }
    void mix(std::string_view bytes);
};

Stage& stage();

/// Allocations by operator new since the program began.
std::size_t allocations();

/// The show's main.
int perform();
/// The same, as a program of its own that prints all its output on standard error.
[[noreturn]] void performAndExit();

/// A test on a fresh stage, which catches what is printed.
class OnStage : public testing::Test {
protected:
    OnStage();
    ~OnStage() override;
    // What has been printed, and called, since the last time.
    static std::string out();
    static std::string err();
    static std::vector<std::string> calls();

private:
    std::streambuf* pOut;
    std::streambuf* pErr;
};
