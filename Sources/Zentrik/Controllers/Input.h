#pragma once

/// A device seen as a gamepad. The answers are those of the last update.
class Input {
public:
    virtual ~Input() = default;

    /// One of the AD_ directions of InputManager.h.
    virtual int getDirectionsPressed() const = 0;
    /// The INPUT_ bits of InputManager.h of all buttons held.
    virtual int getButtonsState() = 0;
    /// The user asks to leave.
    virtual bool needEscape() = 0;
    /// Samples the device.
    virtual void update() = 0;
};
