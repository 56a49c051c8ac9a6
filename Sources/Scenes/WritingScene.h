#pragma once

#include "Objects/Font.h"
#include "Scenes/FilmedScene.h"

/// A filmed scene with words of one colour on the ground, which appear step by step.
class WritingScene : public FilmedScene {
protected:
    explicit WritingScene(const Colour4& colour) : f(colour) {}

    /// Goes on with the move, or with the next one when it has ended; false when that was the last.
    bool playMove(unsigned int time);

    Font f;
    std::uint32_t startTime = 0; ///< ms on the engine clock, the scene's first update; 0 before it
    std::uint32_t step = 0;      ///< which words are there
};
