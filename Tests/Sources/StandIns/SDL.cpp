// The window library, for whose Stage it is built.

#include <Stage.h>

extern "C" {
int SDL_Init(Uint32 flags) { return stage.note(__func__, flags) ? 0 : -1; }
void SDL_Quit() { stage.note(__func__); }
SDL_Surface* SDL_SetVideoMode(int width, int height, int bpp, Uint32 flags) {
    static SDL_Surface surface{};
    surface.w = width;
    surface.h = height;
    surface.flags = flags;
    return stage.note(__func__, width, height, bpp, flags) ? &surface : nullptr;
}
void SDL_WM_SetCaption(const char* title, const char* /*icon*/) { stage.note(__func__, title); }
int SDL_FillRect(SDL_Surface* dst, SDL_Rect* dstrect, Uint32 color) {
    stage.note(__func__, dst->w, dstrect == nullptr, color);
    return 0;
}
Uint32 SDL_MapRGB(const SDL_PixelFormat* /*format*/, Uint8 r, Uint8 g, Uint8 b) { return r + g + b; }
void SDL_UpdateRect(SDL_Surface* screen, Sint32 x, Sint32 y, Uint32 w, Uint32 h) {
    stage.note(__func__, screen->w, x, y, w, h);
}
void SDL_GL_SwapBuffers() {
    stage.note("swap");
    stage.atSwap();
}
void SDL_PumpEvents() {
    stage.note("keys");
    stage.atPump();
}
Uint8* SDL_GetKeyState(int* numkeys) {
    *numkeys = static_cast<int>(stage.keys.size());
    return stage.keys.data();
}
Uint32 SDL_GetTicks() { return stage.readClock(); }
void SDL_Delay(Uint32 ms) {
    stage.note("wait", ms);
    stage.now += ms;
}
}
