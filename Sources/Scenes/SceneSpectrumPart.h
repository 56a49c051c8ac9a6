#pragma once

#include "Objects/Particules2.h"
#include "Scenes/FountainScene.h"

/// Two flights over twelve fountains and the spikes of the grid, each fading in and out.
class SceneSpectrumPart : public FountainScene {
public:
    SceneSpectrumPart();
    ~SceneSpectrumPart() override;

    void draw(Window* pWindow) override;
    bool update(const Camera& camera, Grid* pGrid, Music* pMusic, unsigned int time) override;

private:
    std::vector<Particules2*> parts;
    std::uint32_t startTime =
        0; ///< ms on the engine clock, from which the current flight fades; 0: not started
};
