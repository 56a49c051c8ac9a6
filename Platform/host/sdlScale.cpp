// The scale of the picture where the window library has opened its window.

#include "Widths.h"

#include <SDL.h>

float host::pixelScale() { return scaleOf(static_cast<unsigned int>(SDL_GetVideoSurface()->h)); }
