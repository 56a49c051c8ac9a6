#include "Screen.h"

#include <GLFW/glfw3.h>
#include <cstdlib>
#include <string>

namespace window {

namespace {

std::string whyNone() {
    for (const char* const variable : {"WAYLAND_DISPLAY", "DISPLAY"}) {
        const char* const name = std::getenv(variable);
        if (name != nullptr && *name != 0) {
            return std::string("the screen ") + name + " (" + variable + ") does not answer";
        }
    }
    return "there is no screen here (DISPLAY is not set)";
}

/// Why the window library could not do it.
std::runtime_error failure() {
    const char* reason = nullptr;
    glfwGetError(&reason);
    return std::runtime_error(reason == nullptr ? "the screen has no window for the show" : reason);
}

/// Of the screen, as it is; null: there is none.
const GLFWvidmode* usedMode() {
    GLFWmonitor* const monitor = glfwGetPrimaryMonitor();
    return monitor == nullptr ? nullptr : glfwGetVideoMode(monitor);
}

host::Extent extent(int width, int height) {
    return {static_cast<unsigned int>(width), static_cast<unsigned int>(height)};
}

} // namespace

Screen::Screen() {
#ifdef GLFW_PLATFORM // since its version 3.4
    // It would ask for Wayland first, and that says on standard error that it is not here.
    if (std::getenv("WAYLAND_DISPLAY") == nullptr) {
        glfwInitHint(GLFW_PLATFORM, GLFW_PLATFORM_X11);
    }
#endif
    if (glfwInit() == GLFW_FALSE) {
        throw NoScreen(whyNone());
    }
    if (usedMode() == nullptr) {
        glfwTerminate();
        throw NoScreen(whyNone());
    }
}

Screen::~Screen() { glfwTerminate(); }

void Screen::open() {
    if (window != nullptr) {
        return;
    }
    const GLFWvidmode* const mode = usedMode();
    // As the screen is, so that nothing changes but the picture.
    glfwWindowHint(GLFW_RED_BITS, mode->redBits);
    glfwWindowHint(GLFW_GREEN_BITS, mode->greenBits);
    glfwWindowHint(GLFW_BLUE_BITS, mode->blueBits);
    glfwWindowHint(GLFW_REFRESH_RATE, mode->refreshRate);
    glfwWindowHint(GLFW_DEPTH_BITS, 0); // the picture has its own
    glfwWindowHint(GLFW_STENCIL_BITS, 0);
    glfwWindowHint(GLFW_AUTO_ICONIFY, GLFW_FALSE);
    window = glfwCreateWindow(mode->width, mode->height, "Quelar", glfwGetPrimaryMonitor(), nullptr);
    if (window == nullptr) {
        throw failure();
    }
    glfwFocusWindow(window); // where no window manager gives the keyboard to it
    glfwSetWindowUserPointer(window, this);
    glfwSetInputMode(window, GLFW_CURSOR, GLFW_CURSOR_HIDDEN);
    glfwSetKeyCallback(window, [](GLFWwindow* pressed, int key, int /*scancode*/, int action, int /*mods*/) {
        if (key == GLFW_KEY_ESCAPE && action == GLFW_PRESS) {
            static_cast<Screen*>(glfwGetWindowUserPointer(pressed))->escape = true;
        }
    });
    glfwMakeContextCurrent(window);
}

host::Extent Screen::getSize() const { return extent(usedMode()->width, usedMode()->height); }

host::Extent Screen::getWindowSize() const {
    int width = 0;
    int height = 0;
    glfwGetFramebufferSize(window, &width, &height);
    return extent(width, height);
}

void Screen::swap() { glfwSwapBuffers(window); }

bool Screen::wantsEscape() {
    glfwPollEvents();
    return escape || glfwWindowShouldClose(window) != GLFW_FALSE;
}

} // namespace window
