#pragma once

#include "Utils/MessageException.h"

#include <SDL.h>

#include <string>

class WindowCreationException : public MessageException {
public:
    using MessageException::MessageException;
};

/// The program's one SDL window, drawn to by software; GLWindow is the one for OpenGL.
/// SDL owns the surface and closes the window in SDL_Quit.
class Window {
public:
    /// Opens the window, sizes in pixels. One that is not full screen can be resized by the user.
    /// Throws WindowCreationException.
    Window(unsigned int width, unsigned int height, const std::string& windowName, unsigned int sdlFlags);
    virtual ~Window() = default;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// Makes it black.
    virtual void clear();
    /// Sets another size, in pixels. Throws WindowCreationException, and the window is then unusable.
    virtual void resize(unsigned int width, unsigned int height);
    /// Shows what was drawn.
    virtual void refresh();

    unsigned int getWidth() const;
    unsigned int getHeight() const;

private:
    SDL_Surface* pWindow = nullptr;
};
