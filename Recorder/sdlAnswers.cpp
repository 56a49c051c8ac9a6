// The library calls by which the show opens its window, reads its keyboard and tells the time, answered by
// the recording. The recorder is linked with these in place of the library.

#include "Recorder.h"

#include <GL/glew.h>
#include <SDL.h>

#include <array>
#include <stdexcept>

using recorder::FrameSize;
using recorder::Recorder;

namespace {

SDL_PixelFormat pixelFormat{};
SDL_Surface window{};

} // namespace

extern "C" {

int SDL_Init(Uint32 /*flags*/) { return 0; }

void SDL_Quit() { Recorder::current().closeWindow(); }

SDL_Surface* SDL_SetVideoMode(int width, int height, int bpp, Uint32 flags) {
    // A side of 0 stands for the screen's own size. There is no screen: the show's usual size it is.
    const FrameSize size{width > 0 ? static_cast<unsigned int>(width) : 640U,
                         height > 0 ? static_cast<unsigned int>(height) : 480U};
    try {
        Recorder::current().openWindow(size);
    } catch (const std::runtime_error&) {
        // The recording knows why, and tells it when the show has ended.
        return nullptr;
    }
    pixelFormat.BitsPerPixel = static_cast<Uint8>(bpp);
    pixelFormat.BytesPerPixel = static_cast<Uint8>(bpp / 8);
    window.flags = flags;
    window.format = &pixelFormat;
    window.w = static_cast<int>(size.width);
    window.h = static_cast<int>(size.height);
    return &window;
}

void SDL_WM_SetCaption(const char* /*title*/, const char* /*icon*/) {}

void SDL_GL_SwapBuffers() { Recorder::current().showFrame(); }

void SDL_PumpEvents() {}

Uint8* SDL_GetKeyState(int* numkeys) {
    static std::array<Uint8, SDLK_LAST> keys{};
    keys[SDLK_ESCAPE] = Recorder::current().wantsEscape() ? 1 : 0;
    if (numkeys != nullptr) {
        *numkeys = static_cast<int>(keys.size());
    }
    return keys.data();
}

Uint32 SDL_GetTicks() { return Recorder::current().getTicks(); }

void SDL_Delay(Uint32 ms) { Recorder::current().wait(ms); }

// Pictures without OpenGL are not the show's: there is nothing to record of them.
int SDL_FillRect(SDL_Surface* /*surface*/, SDL_Rect* /*area*/, Uint32 /*colour*/) { return -1; }

Uint32 SDL_MapRGB(const SDL_PixelFormat* /*format*/, Uint8 /*r*/, Uint8 /*g*/, Uint8 /*b*/) { return 0; }

void SDL_UpdateRect(SDL_Surface* /*surface*/, Sint32 /*x*/, Sint32 /*y*/, Uint32 /*w*/, Uint32 /*h*/) {}

// The linker gives these two names to the call of glewInit in the show and to the library's own function.
// The library loads the functions of whatever context is current, ours too; that it then finds no display of
// the window system is as it should be.
GLenum __real_glewInit();  // NOLINT(bugprone-reserved-identifier)
GLenum __wrap_glewInit() { // NOLINT(bugprone-reserved-identifier)
    const GLenum result = __real_glewInit();
    return result == GLEW_ERROR_NO_GLX_DISPLAY ? GLEW_OK : result;
}

} // extern "C"
