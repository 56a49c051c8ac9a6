#pragma once

#include "Scenes/WritingScene.h"

/// The greetings: seven names, written one by one on the levelled grid, under a camera that rises straight
/// above.
class SceneSadSpectrumGreet : public WritingScene {
public:
    SceneSadSpectrumGreet();

    void draw(Window* pWindow) override;
    bool update(const Camera& camera, Grid* pGrid, Music* pMusic, unsigned int time) override;

private:
    static constexpr std::size_t GREETINGS = 7;

    /// In the order in which they appear.
    static const std::array<Words, GREETINGS>& greetings();
};
