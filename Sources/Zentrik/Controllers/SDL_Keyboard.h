#pragma once

#include "Zentrik/Controllers/Input.h"

#include <SDL.h>

/// The keyboard as a controller. Its update is the one place where SDL gets to process its events.
class SDL_Keyboard : public Input {
public:
    SDL_Keyboard();

    int getDirectionsPressed() const override;
    int getButtonsState() override;
    bool needEscape() override;
    void update() override;

    /// 1 if the key of this SDL code is held, else 0.
    unsigned char isKey(unsigned int key) const;

private:
    int m_nbKeys = 0;
    Uint8* m_pKeys = nullptr; ///< SDL's own, indexed by key code
};
