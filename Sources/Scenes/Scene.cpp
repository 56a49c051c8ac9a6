#include "Scenes/Scene.h"

float Scene::getPulseValue() const { return pulseValue; }

float Scene::getFadeValue() const { return fadeValue; }
