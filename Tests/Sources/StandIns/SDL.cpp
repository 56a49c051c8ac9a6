#include "StandIns/Stage.h"

namespace {
SDL_PixelFormat pixels{};
SDL_Surface surface{};
} // namespace

extern "C" {
int SDL_Init(Uint32 flags) {
    stage().record("SDL_Init", flags);
    return stage().fails("SDL_Init") ? -1 : 0;
}
void SDL_Quit() { stage().record("SDL_Quit"); }
SDL_Surface* SDL_SetVideoMode(int width, int height, int bpp, Uint32 flags) {
    stage().record("SDL_SetVideoMode", width, height, bpp, flags);
    surface.format = &pixels;
    surface.flags = flags;
    surface.w = width;
    surface.h = height;
    return stage().fails("SDL_SetVideoMode") ? nullptr : &surface;
}
void SDL_WM_SetCaption(const char* title, const char* icon) {
    stage().record("SDL_WM_SetCaption", title, icon != nullptr ? icon : "-");
}
int SDL_FillRect(SDL_Surface* /*dst*/, SDL_Rect* dstrect, Uint32 color) {
    stage().record("SDL_FillRect", dstrect != nullptr ? "part" : "whole", color);
    return 0;
}
Uint32 SDL_MapRGB(const SDL_PixelFormat* /*format*/, Uint8 r, Uint8 g, Uint8 b) {
    return 1000U + r + g + b; // this window's black
}
void SDL_UpdateRect(SDL_Surface* /*surface*/, Sint32 x, Sint32 y, Uint32 w, Uint32 h) {
    stage().record("SDL_UpdateRect", x, y, w, h);
}
void SDL_GL_SwapBuffers() {
    stage().record("SDL_GL_SwapBuffers");
    stage().atSwap();
}
void SDL_PumpEvents() { stage().record("SDL_PumpEvents"); }
Uint8* SDL_GetKeyState(int* numkeys) {
    static std::array<Uint8, SDLK_LAST> sample;
    sample = stage().keys;
    *numkeys = static_cast<int>(sample.size());
    return sample.data();
}
Uint32 SDL_GetTicks() { return stage().now; }
void SDL_Delay(Uint32 ms) {
    stage().record("SDL_Delay", ms);
    stage().now += ms;
}
}
