// The calls by which the show opens its window, reads its keyboard and tells the time, answered by its host.
// To be linked in place of the window library.

#include "Host.h"
#include "Widths.h"

#include <SDL.h>

#include <array>
#include <exception>

using host::Host;

float host::pixelScale() { return Host::current().getPixelScale(); }

extern "C" {

int SDL_Init(Uint32 /*flags*/) { return 0; }

void SDL_Quit() { Host::current().closeWindow(); }

SDL_Surface* SDL_SetVideoMode(int width, int height, int bpp, Uint32 flags) {
    static SDL_PixelFormat format{};
    static SDL_Surface window{};
    try {
        const host::Extent extent = Host::current().openWindow(width, height);
        format.BitsPerPixel = static_cast<Uint8>(bpp);
        format.BytesPerPixel = static_cast<Uint8>(bpp / 8);
        window.flags = flags;
        window.format = &format;
        window.w = static_cast<int>(extent.width);
        window.h = static_cast<int>(extent.height);
        return &window;
    } catch (const std::exception&) {
        return nullptr; // the host knows why
    }
}

void SDL_WM_SetCaption(const char* /*title*/, const char* /*icon*/) {}

void SDL_GL_SwapBuffers() { Host::current().showFrame(); }

void SDL_PumpEvents() {}

Uint8* SDL_GetKeyState(int* numkeys) {
    static std::array<Uint8, SDLK_LAST> keys{};
    keys[SDLK_ESCAPE] = Host::current().wantsEscape() ? 1 : 0;
    *numkeys = static_cast<int>(keys.size());
    return keys.data();
}

Uint32 SDL_GetTicks() { return Host::current().getTicks(); }

void SDL_Delay(Uint32 ms) { Host::current().wait(ms); }

// Pictures without OpenGL are not the show's.
int SDL_FillRect(SDL_Surface* /*surface*/, SDL_Rect* /*area*/, Uint32 /*colour*/) { return -1; }

Uint32 SDL_MapRGB(const SDL_PixelFormat* /*format*/, Uint8 /*r*/, Uint8 /*g*/, Uint8 /*b*/) { return 0; }

void SDL_UpdateRect(SDL_Surface* /*surface*/, Sint32 /*x*/, Sint32 /*y*/, Uint32 /*w*/, Uint32 /*h*/) {}

} // extern "C"
