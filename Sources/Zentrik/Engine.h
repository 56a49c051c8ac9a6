#pragma once

#include "Utils/MessageException.h"
#include "Zentrik/Window.h"

#include <cstdint>
#include <string>

/// The libraries that an Engine starts: a set of the flags below.
using EngineAPI = std::uint32_t;

constexpr EngineAPI EAPI_OpenGL = 1;    ///< load the OpenGL entry points once the window is there
constexpr EngineAPI EAPI_SDL = 2;       ///< start SDL's video, and shut SDL down in the end
constexpr EngineAPI EAPI_SDL_Mixer = 4; ///< with EAPI_SDL: start SDL's audio as well
constexpr EngineAPI EAPI_SDL_Image = 8; ///< reserved

class EngineInitialisationException : public MessageException {
public:
    using MessageException::MessageException;
};

/// Libraries, window, clock and pace of the program: built first, destroyed last.
class Engine {
public:
    /// Starts the libraries and opens a full-screen OpenGL window, sizes in pixels. Before SDL it sets two
    /// variables of the environment, unless they are set already: SDL_VIDEODRIVER to x11, since SDL would
    /// otherwise draw with letters where there is no screen, and SDL12COMPAT_OPENGL_SCALING to 0, since SDL's
    /// successor in compatibility dress would otherwise put a framebuffer of its own between ours and the
    /// window. Throws WindowCreationException or EngineInitialisationException; SDL then stays as it is.
    Engine(EngineAPI apis, unsigned int width, unsigned int height, const std::string& windowName);
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    /// The engine's own; valid as long as the engine.
    Window* getWindow() const;

    /// Whether OpenGL offers the extension; says on standard output when it does not. Needs EAPI_OpenGL.
    bool checkExtension(const char* extensionName) const;

    /// Ends a frame: sleeps until 15 ms after the end of the last one. Lateness is not made up for.
    void waitFrame();

    /// Milliseconds since SDL was started; wraps at 2^32.
    unsigned int getTime() const;

private:
    EngineAPI apis;
    Window* pWindow = nullptr;
    std::uint32_t lastFrameTime = 0; ///< ms, the end of the last waitFrame
};
