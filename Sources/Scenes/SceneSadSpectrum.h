#pragma once

#include "Scenes/WritingScene.h"

/// Low sweeps over the spikes that the music lifts out of the grid, dipping to black every five seconds.
class SceneSadSpectrum : public WritingScene {
public:
    SceneSadSpectrum();

    void draw(Window* pWindow) override;
    bool update(const Camera& camera, Grid* pGrid, Music* pMusic, unsigned int time) override;
};
