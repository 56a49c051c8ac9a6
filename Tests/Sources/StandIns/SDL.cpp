// The window library, for whose Stage it is built.

#include <Stage.h>

extern "C" {
int SDL_Init(Uint32 flags) { return stage.note(__func__, flags) ? 0 : -1; }
void SDL_Quit() { stage.note(__func__); }
SDL_Surface* SDL_SetVideoMode(int width, int height, int bpp, Uint32 flags) {
    static SDL_Surface surface{};
    surface.w = width;
    surface.h = height;
    return stage.note(__func__, width, height, bpp, flags) ? &surface : nullptr;
}
void SDL_WM_SetCaption(const char* title, const char* /*icon*/) { stage.note(__func__, title); }
int SDL_FillRect(SDL_Surface*, SDL_Rect*, Uint32) { return 0; }
Uint32 SDL_MapRGB(const SDL_PixelFormat*, Uint8, Uint8, Uint8) { return 0; }
void SDL_UpdateRect(SDL_Surface*, Sint32, Sint32, Uint32, Uint32) {}
void SDL_GL_SwapBuffers() {
    stage.note("swap");
    stage.atSwap();
}
void SDL_PumpEvents() { stage.note("keys"); }
Uint8* SDL_GetKeyState(int* numkeys) {
    *numkeys = static_cast<int>(stage.keys.size());
    return stage.keys.data();
}
Uint32 SDL_GetTicks() { return stage.now; }
void SDL_Delay(Uint32 ms) {
    stage.note("wait", ms);
    stage.now += ms;
}
}
