#pragma once

#include "Zentrik/Controllers/Input.h"

#include <vector>

// Directions: a bit for each of the four, diagonals are two of them.
constexpr int AD_NONE = 0;
constexpr int AD_UP = 1;
constexpr int AD_RIGHT = 2;
constexpr int AD_UPRIGHT = 3;
constexpr int AD_DOWN = 4;
constexpr int AD_RIGHTDOWN = 6;
constexpr int AD_LEFT = 8;
constexpr int AD_LEFTUP = 9;
constexpr int AD_DOWNLEFT = 12;

// Buttons, a bit each.
constexpr int INPUT_NONE = 0;
constexpr int INPUT_A = 1;
constexpr int INPUT_B = 2;
constexpr int INPUT_X = 4;
constexpr int INPUT_Y = 8;
constexpr int INPUT_L = 16;
constexpr int INPUT_R = 32;
constexpr int INPUT_START = 64;
constexpr int INPUT_SELECT = 128;
constexpr int INPUT_VOLUMEUP = 256;
constexpr int INPUT_VOLUMEDOWN = 512;

/// All the controllers as one: what any of them answers counts.
class InputManager {
public:
    InputManager() = default;
    ~InputManager();
    InputManager(const InputManager&) = delete;
    InputManager& operator=(const InputManager&) = delete;

    /// Takes the controller over: the manager deletes it.
    void registerController(Input* newController);
    void deleteControllers();

    /// OR of the controllers' directions.
    int getDirectionsPressed() const;
    /// OR of the controllers' buttons.
    int getButtonsPressed() const;
    /// Asks every controller, also once one has said yes.
    bool needEscape() const;
    void update();

private:
    std::vector<Input*> m_controllers;
};
