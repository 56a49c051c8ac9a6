#include "Zentrik/Controllers/SDL_Keyboard.h"

#include "Zentrik/Controllers/InputManager.h"

#include <cassert>

namespace {
struct Button {
    SDLKey key;
    int bit;
};

const Button BUTTONS[] = {
    {SDLK_q, INPUT_A},
    {SDLK_w, INPUT_B},
    {SDLK_a, INPUT_X},
    {SDLK_s, INPUT_Y},
    {SDLK_z, INPUT_START},
    {SDLK_x, INPUT_SELECT},
    {SDLK_KP_MINUS, INPUT_VOLUMEDOWN},
    {SDLK_KP_PLUS, INPUT_VOLUMEUP},
};
} // namespace

SDL_Keyboard::SDL_Keyboard() { SDL_Keyboard::update(); }

int SDL_Keyboard::getDirectionsPressed() const {
    const bool right = isKey(SDLK_RIGHT) != 0;
    const bool left = isKey(SDLK_LEFT) != 0;
    if (isKey(SDLK_UP) != 0) {
        return right ? AD_UPRIGHT : left ? AD_LEFTUP : AD_UP;
    }
    if (isKey(SDLK_DOWN) != 0) {
        return right ? AD_RIGHTDOWN : left ? AD_DOWNLEFT : AD_DOWN;
    }
    return left ? AD_LEFT : right ? AD_RIGHT : AD_NONE;
}

int SDL_Keyboard::getButtonsState() {
    int state = INPUT_NONE;
    for (const Button& button : BUTTONS) {
        if (isKey(button.key) != 0) {
            state |= button.bit;
        }
    }
    return state;
}

bool SDL_Keyboard::needEscape() { return isKey(SDLK_ESCAPE) == 1; }

void SDL_Keyboard::update() {
    SDL_PumpEvents();
    m_pKeys = SDL_GetKeyState(&m_nbKeys);
}

unsigned char SDL_Keyboard::isKey(unsigned int key) const {
    assert(static_cast<int>(key) < m_nbKeys);
    return m_pKeys[key];
}
