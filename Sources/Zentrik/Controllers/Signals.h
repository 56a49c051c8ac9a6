#pragma once

#include "Zentrik/Controllers/Input.h"

/// The system's requests to end the program (Ctrl-C, a terminal that closes, a polite kill), as a controller
/// that asks to leave. The first one ends the show as Escape does; a second one ends the process at once.
class Signals : public Input {
public:
    /// Hears requests from now on, for the rest of the process's life. One that somebody ignores or handles
    /// already is left to them.
    static void listen();

    int getDirectionsPressed() const override;
    int getButtonsState() override;
    bool needEscape() override;
    void update() override;

private:
    bool escape = false;
};
