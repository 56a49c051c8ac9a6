#pragma once

#include "Objects/Particules3.h"
#include "Scenes/FountainScene.h"

/// One flight along the grid, into which loud low bands fire coloured waves, ahead of the camera.
class SceneSpectrumImpulsePart : public Timed<FountainsScene<Particules3>> {
public:
    SceneSpectrumImpulsePart();

    void draw(Window* pWindow) override;
    bool update(const Camera& camera, Grid* pGrid, Music* pMusic, unsigned int time) override;

private:
    /// A wave of a random colour at a random place, up to 30 units ahead along x. Draws five random numbers.
    void fireWave(Grid* pGrid) const;
};
