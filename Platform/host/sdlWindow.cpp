// The program in the window library's own window: what it needs besides what the show asks that library for.

#include "Widths.h"

#include <SDL.h>

float host::pixelScale() { return scaleOf(static_cast<unsigned int>(SDL_GetVideoSurface()->h)); }

extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier)
Uint8* __real_SDL_GetKeyState(int* numkeys);

/// The linker leads the show's look at the keyboard here. What is held is not all that was pressed: Escape
/// counts even if it was let go of since the last look. What nobody takes would fill the queue of events.
Uint8* __wrap_SDL_GetKeyState(int* numkeys) {
    static bool escaped = false;
    SDL_Event event;
    while (SDL_PeepEvents(&event, 1, SDL_GETEVENT, SDL_ALLEVENTS) > 0) {
        escaped = escaped || (event.type == SDL_KEYDOWN && event.key.keysym.sym == SDLK_ESCAPE);
    }
    Uint8* const keys = __real_SDL_GetKeyState(numkeys);
    if (escaped) {
        keys[SDLK_ESCAPE] = 1;
    }
    return keys;
}
// NOLINTEND(bugprone-reserved-identifier)

} // extern "C"
