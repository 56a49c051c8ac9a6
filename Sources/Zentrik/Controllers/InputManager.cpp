#include "Zentrik/Controllers/InputManager.h"

InputManager::~InputManager() { deleteControllers(); }

void InputManager::registerController(Input* newController) { m_controllers.push_back(newController); }

void InputManager::deleteControllers() {
    for (const Input* pController : m_controllers) {
        delete pController;
    }
    m_controllers.clear();
}

int InputManager::getDirectionsPressed() const {
    int directions = AD_NONE;
    for (const Input* pController : m_controllers) {
        directions |= pController->getDirectionsPressed();
    }
    return directions;
}

int InputManager::getButtonsPressed() const {
    int buttons = INPUT_NONE;
    for (Input* pController : m_controllers) {
        buttons |= pController->getButtonsState();
    }
    return buttons;
}

bool InputManager::needEscape() const {
    bool escape = false;
    for (Input* pController : m_controllers) {
        escape = pController->needEscape() || escape;
    }
    return escape;
}

void InputManager::update() {
    for (Input* pController : m_controllers) {
        pController->update();
    }
}
