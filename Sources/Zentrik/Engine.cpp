#include "Zentrik/Engine.h"

#include "Zentrik/GLWindow.h"

#include <GL/glew.h>
#include <SDL.h>

#include <cstdlib>
#include <iostream>
#include <memory>

static const std::uint32_t FRAME_TIME = 15; // ms

// A window that is ours alone, or none. What the user has set stays.
static void preferPlainWindow() {
    setenv("SDL_VIDEODRIVER", "x11", 0);
    setenv("SDL12COMPAT_OPENGL_SCALING", "0", 0);
}

Engine::Engine(EngineAPI apis, unsigned int width, unsigned int height, const std::string& windowName)
    : apis(apis) {
    if ((apis & EAPI_SDL) != 0) {
        preferPlainWindow();
        SDL_Init(SDL_INIT_VIDEO | ((apis & EAPI_SDL_Mixer) != 0 ? SDL_INIT_AUDIO : 0));
    }

    auto window = std::make_unique<GLWindow>(width, height, windowName, true);

    if ((apis & EAPI_OpenGL) != 0) {
        const GLenum result = glewInit();
        if (result != GLEW_OK) {
            std::cerr << glewGetErrorString(result) << std::endl;
            throw EngineInitialisationException("Glew failed to initialise");
        }
    }
    pWindow = window.release();
    std::cout << "Zentrik initiliased" << std::endl;
}

Engine::~Engine() {
    delete pWindow;
    if ((apis & EAPI_SDL) != 0) {
        SDL_Quit();
    }
    std::cout << "Zentrik closed" << std::endl;
}

Window* Engine::getWindow() const { return pWindow; }

bool Engine::checkExtension(const char* extensionName) const {
    if (glewIsSupported(extensionName) == GL_FALSE) {
        std::cout << "Extension '" << extensionName << "' not found" << std::endl;
        return false;
    }
    return true;
}

void Engine::waitFrame() {
    const std::uint32_t actualTime = SDL_GetTicks();
    const std::uint32_t elapsed = actualTime - lastFrameTime; // right across the wrap of the clock
    if (elapsed < FRAME_TIME) {
        SDL_Delay(FRAME_TIME - elapsed);
    }
    lastFrameTime = SDL_GetTicks();
}

unsigned int Engine::getTime() const { return SDL_GetTicks(); }
