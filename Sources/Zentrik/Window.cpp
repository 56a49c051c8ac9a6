#include "Zentrik/Window.h"

static const int BITS_PER_PIXEL = 32;

Window::Window(unsigned int width, unsigned int height, const std::string& windowName,
               unsigned int sdlFlags) {
    if ((sdlFlags & SDL_FULLSCREEN) == 0) {
        sdlFlags |= SDL_RESIZABLE;
    }
    pWindow = SDL_SetVideoMode(static_cast<int>(width), static_cast<int>(height), BITS_PER_PIXEL, sdlFlags);
    if (pWindow == nullptr) {
        throw WindowCreationException("Fail to create the window");
    }
    SDL_WM_SetCaption(windowName.c_str(), nullptr);
}

void Window::clear() { SDL_FillRect(pWindow, nullptr, SDL_MapRGB(pWindow->format, 0, 0, 0)); }

void Window::resize(unsigned int width, unsigned int height) {
    pWindow =
        SDL_SetVideoMode(static_cast<int>(width), static_cast<int>(height), BITS_PER_PIXEL, pWindow->flags);
    if (pWindow == nullptr) {
        throw WindowCreationException("Fail to resize");
    }
}

void Window::refresh() { SDL_UpdateRect(pWindow, 0, 0, 0, 0); }

unsigned int Window::getWidth() const { return static_cast<unsigned int>(pWindow->w); }

unsigned int Window::getHeight() const { return static_cast<unsigned int>(pWindow->h); }
