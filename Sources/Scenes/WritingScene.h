#pragma once

#include "Objects/Font.h"
#include "Scenes/FilmedScene.h"

#include <string>

/// A filmed scene with a font.
class LetteredScene : public FilmedScene {
protected:
    explicit LetteredScene(const Colour4& colour) : f(colour) {}

    Font f;
};

/// A filmed scene with words of one colour on the ground, which appear step by step.
class WritingScene : public Timed<LetteredScene> {
protected:
    /// Words on the ground: where and how the font writes them.
    struct Words {
        Vector3f position;
        std::string text;
        float scale;
        void (Font::*way)(const Vector3f&, const std::string&, float) const = &Font::drawText;
    };

    using Timed::Timed;

    void write(const Words& words) const;

    std::uint32_t step = 0; ///< which words are there
};
