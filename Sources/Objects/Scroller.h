#pragma once

#include "Objects/Font.h"

#include <string>

/// A text as a column of letters that recedes along z and slides towards larger z.
class Scroller {
public:
    /// The font stays the caller's and must outlive the scroller. position: the first letter, in the world.
    Scroller(Font* pFont, const Vector3f& position, const std::string& text);

    /// Draws the letters that lie within 40 units of the origin along z, measured without the scale.
    void draw(float scale) const;
    /// One step, once a frame; past 200 the column starts again at -100.
    void update();

private:
    Font* pFont;
    Vector3f position;
    std::string text;
};
