#pragma once

#include "Objects/Particules2.h"
#include "Scenes/FountainScene.h"

/// Two flights over twelve fountains and the spikes of the grid, each fading in and out.
class SceneSpectrumPart : public Timed<FountainsScene<Particules2>> {
public:
    SceneSpectrumPart();

    void draw(Window* pWindow) override;
    bool update(const Camera& camera, Grid* pGrid, Music* pMusic, unsigned int time) override;
};
