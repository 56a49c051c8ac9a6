#pragma once

#include "3D/LineRenderer.h"

#include <map>
#include <string>

/// Block capitals made of straight lines, a to z, lying flat on the ground. A glyph is one unit wide and
/// high, its top towards the pen; the pen advances by one and a half units a character. All in one colour.
/// Upper and lower case look the same; a space leaves a gap, and so does anything that is no letter.
class Font {
public:
    explicit Font(const Colour4& colour);
    ~Font();
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;

    /// Writes towards smaller x, the letters' tops at position.z and their feet at smaller z. position is the
    /// middle of the first letter's top edge, scale the world units per glyph unit. Lines 8 pixels wide.
    void drawText(const Vector3f& position, const std::string& text, float scale) const;
    /// The same, turned a quarter: towards larger z, the feet at smaller x.
    void drawText2(const Vector3f& position, const std::string& text, float scale) const;

    /// The font's own renderer of a letter; null for what is no letter.
    LineRenderer* getLetterRenderer(char letter) const;

private:
    /// angle: degrees about the vertical axis.
    void write(const Vector3f& position, const std::string& text, float scale, float angle) const;

    std::map<char, LineRenderer*> letters;
};
