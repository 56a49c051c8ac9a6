#include "Music/Impulsor.h"

#include <SDL.h>

Impulsor::Impulsor(unsigned int impulsionRate) : lastUpdate(SDL_GetTicks()), impulsionRate(impulsionRate) {}

void Impulsor::update() {
    const std::uint32_t currentTime = SDL_GetTicks();
    impulsion = currentTime - lastUpdate > impulsionRate; // right across the wrap of the clock
    if (impulsion) {
        lastUpdate = SDL_GetTicks();
    }
}

bool Impulsor::needImpulse() const { return impulsion; }
