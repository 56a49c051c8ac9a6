#pragma once

#include "Scenes/WritingScene.h"

/// The opening: four shots over the grey grid, a text each in red, fading in from black and slowly out.
class SceneSad : public WritingScene {
public:
    SceneSad();

    void draw(Window* pWindow) override;
    bool update(const Camera& camera, Grid* pGrid, Music* pMusic, unsigned int time) override;

private:
    /// One a shot.
    static const std::array<Words, 4>& titles();
};
