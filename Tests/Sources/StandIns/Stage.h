#pragma once

#include "3D/LineRenderer.h"
#include "Host.h"

#include <GL/glew.h>
#include <SDL.h>
#include <fmod.h>
#include <gmock/gmock.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

/// A call as it stands in the list of calls: the name and the arguments that matter.
template <typename... Arguments>
std::string call(const std::string& name, const Arguments&... arguments) {
    std::ostringstream text;
    text.precision(9);
    text << name;
    ((text << ' ' << arguments), ...);
    return text.str();
}

/// Everything around the show: what it did to the libraries, and what they are to answer.
struct Stage {
    std::vector<std::string> calls;
    std::vector<std::vector<Point>> drawings; ///< the points of each draw call
    std::uint64_t hash = 0;                   ///< of all calls, drawn points included
    bool listening = true;                    ///< lists calls and drawings
    bool hashing = false;
    std::size_t errorChecks = 0;
    std::size_t soundCalls = 0;
    std::vector<int> drawn; ///< random numbers

    Uint32 now = 1000; ///< ms
    std::array<Uint8, SDLK_LAST> keys{};
    std::function<void()> atSwap = [] {};
    std::function<void(float*)> spectrum = [](float*) {};
    std::vector<GLenum> errors;       ///< that the next checks find, one each
    std::string failing;              ///< the call that fails, the extension that is missing
    std::size_t failingSoundCall = 0; ///< the one of this number, counted from 1
    GLuint broken = 0;                ///< the shader or program that cannot be built

    /// Whether the call succeeds.
    template <typename... Arguments>
    bool note(const char* name, const Arguments&... arguments) {
        if (listening) {
            calls.push_back(call(name, arguments...));
        }
        if (hashing) {
            mix(std::string_view(name));
            (mix(arguments), ...);
        }
        return failing != name;
    }
    template <typename T>
    void mix(const T& value) {
        using Hashed = std::conditional_t<std::is_convertible_v<T, std::string_view>, std::string_view, T>;
        hash = (hash ^ std::hash<Hashed>()(value)) * 0x9E3779B97F4A7C15 + (hash >> 32);
    }
};

inline Stage stage;

/// Allocations by operator new since the program began.
inline std::size_t allocations = 0;

/// A test on a fresh stage, which catches what is printed.
class OnStage : public testing::Test {
protected:
    OnStage();
    ~OnStage() override;
    // What has been printed, called and drawn since the last time.
    static std::string out() { return take(printed); }
    static std::string err() { return take(reported); }
    static std::vector<std::string> calls() { return std::exchange(stage.calls, {}); }
    static std::vector<std::vector<Point>> drawings() { return std::exchange(stage.drawings, {}); }
    /// The calls of the names in a list with spaces around each.
    static std::string calls(const std::string& names);
    /// The show, in a process of its own, ends with the status, and with the text on standard error.
    static void expectExit(int status, const std::string& text) {
        const auto run = [] {
            const int result = host::playShow();
            std::fputs((out() + err()).c_str(), stderr);
            std::exit(result);
        };
        EXPECT_EXIT(run(), testing::ExitedWithCode(status), testing::HasSubstr(text));
    }

private:
    static std::string take(std::ostringstream& stream);

    static inline std::ostringstream printed, reported;
    std::streambuf* pOut;
    std::streambuf* pErr;
};
