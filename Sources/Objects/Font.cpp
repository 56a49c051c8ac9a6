#include "Objects/Font.h"

#include <GL/glew.h>

#include <cctype>

namespace {
const unsigned int LINE_WIDTH = 8;
const float ADVANCE = 1.5f;

/// A corner of a glyph: x from -0.5 (left) to 0.5, z from 0 (top) to 1 (the feet).
struct Corner {
    float x;
    float z;
};

struct Glyph {
    char letter;
    std::vector<Corner> corners;
    std::vector<unsigned int> segments; ///< pairs of indices into the corners
};

const std::vector<Glyph>& glyphs() {
    static const std::vector<Glyph> alphabet = {
        {'a', {{-0.5f, 1}, {0, 0}, {0.5f, 1}, {-0.25f, 0.5f}, {0.25f, 0.5f}}, {0, 1, 2, 1, 3, 4}},
        {'b',
         {{-0.5f, 0}, {-0.5f, 1}, {0.5f, 0}, {0.5f, 1}, {-0.5f, 0.5f}, {0.5f, 0.5f}},
         {0, 1, 2, 3, 0, 2, 1, 3, 4, 5}},
        {'c', {{-0.5f, 0}, {-0.5f, 1}, {0.5f, 0}, {0.5f, 1}}, {0, 1, 0, 2, 1, 3}},
        {'d', {{-0.5f, 0}, {-0.5f, 1}, {0.3f, 0}, {0.3f, 1}}, {0, 1, 0, 2, 1, 3, 2, 3}},
        {'e',
         {{-0.5f, 0}, {-0.5f, 1}, {0.5f, 0}, {0.5f, 1}, {-0.5f, 0.5f}, {0.5f, 0.5f}},
         {0, 1, 0, 2, 1, 3, 4, 5}},
        {'f', {{-0.5f, 1}, {-0.5f, 0}, {0.5f, 0}, {-0.5f, 0.5f}, {0.5f, 0.5f}}, {0, 1, 1, 2, 3, 4}},
        {'g',
         {{0.5f, 0}, {-0.5f, 0}, {-0.5f, 1}, {0.1f, 1}, {0.1f, 0.5f}, {-0.1f, 0.5f}},
         {0, 1, 1, 2, 2, 3, 3, 4, 4, 5}},
        {'h',
         {{-0.5f, 0}, {-0.5f, 1}, {0.5f, 0}, {0.5f, 1}, {-0.5f, 0.5f}, {0.5f, 0.5f}},
         {0, 1, 2, 3, 4, 5}},
        {'i', {{0, 0}, {0, 1}}, {0, 1}},
        {'j', {{0.3f, 0}, {0.3f, 1}, {-0.3f, 1}, {-0.3f, 0.5f}}, {0, 1, 1, 2, 2, 3}},
        {'k', {{-0.5f, 0}, {-0.5f, 1}, {-0.5f, 0.5f}, {0.5f, 0}, {0.5f, 1}}, {0, 1, 2, 3, 2, 4}},
        {'l', {{-0.5f, 0}, {-0.5f, 1}, {0.5f, 1}}, {0, 1, 1, 2}},
        {'m', {{-0.5f, 1}, {-0.5f, 0}, {0, 0.5f}, {0.5f, 0}, {0.5f, 1}}, {0, 1, 1, 2, 2, 3, 3, 4}},
        {'n', {{-0.5f, 1}, {-0.5f, 0}, {0.5f, 1}, {0.5f, 0}}, {0, 1, 1, 2, 2, 3}},
        {'o', {{-0.5f, 0}, {-0.5f, 1}, {0.5f, 1}, {0.5f, 0}}, {0, 1, 1, 2, 2, 3, 3, 0}},
        {'p', {{-0.5f, 1}, {-0.5f, 0}, {0.5f, 0}, {0.5f, 0.5f}, {-0.5f, 0.5f}}, {0, 1, 1, 2, 2, 3, 3, 4}},
        {'q', {{-0.5f, 1}, {-0.5f, 0}, {0.5f, 0}, {0.5f, 1}, {0, 0.5f}}, {0, 1, 1, 2, 2, 3, 3, 0, 3, 4}},
        {'r',
         {{-0.5f, 1}, {-0.5f, 0}, {0.5f, 0}, {0.5f, 0.5f}, {-0.5f, 0.5f}, {0.5f, 1}},
         {0, 1, 1, 2, 2, 3, 3, 4, 4, 5}},
        {'s',
         {{-0.5f, 1}, {0.5f, 1}, {0.5f, 0.5f}, {-0.5f, 0.5f}, {-0.5f, 0}, {0.5f, 0}},
         {0, 1, 1, 2, 2, 3, 3, 4, 4, 5}},
        {'t', {{-0.5f, 0}, {0.5f, 0}, {0, 0}, {0, 1}}, {0, 1, 2, 3}},
        {'u', {{-0.5f, 0}, {-0.5f, 1}, {0.5f, 1}, {0.5f, 0}}, {0, 1, 1, 2, 2, 3}},
        {'v', {{-0.5f, 0}, {0, 1}, {0.5f, 0}}, {0, 1, 1, 2}},
        {'w', {{-0.5f, 0}, {-0.5f, 1}, {0, 0.5f}, {0.5f, 1}, {0.5f, 0}}, {0, 1, 1, 2, 2, 3, 3, 4}},
        {'x', {{-0.5f, 0}, {0.5f, 1}, {-0.5f, 1}, {0.5f, 0}}, {0, 1, 2, 3}},
        {'y', {{-0.5f, 0}, {0, 0.5f}, {0.5f, 0}, {0, 1}}, {0, 1, 2, 1, 3, 1}},
        {'z', {{-0.5f, 1}, {0.5f, 1}, {-0.5f, 0}, {0.5f, 0}}, {0, 1, 1, 2, 2, 3}},
    };
    return alphabet;
}
} // namespace

Font::Font(const Colour4& colour) {
    for (const Glyph& glyph : glyphs()) {
        std::vector<Point> points;
        points.reserve(glyph.corners.size());
        for (const Corner& corner : glyph.corners) {
            points.emplace_back(Vector3f(corner.x, 0, corner.z), colour);
        }
        auto* pRenderer = new LineRenderer();
        letters[glyph.letter] = pRenderer;
        pRenderer->addLines(points, glyph.segments);
    }
}

Font::~Font() {
    for (const auto& letter : letters) {
        delete letter.second;
    }
}

void Font::drawText(const Vector3f& position, const std::string& text, float scale) const {
    write(position, text, scale, 180);
}

void Font::drawText2(const Vector3f& position, const std::string& text, float scale) const {
    write(position, text, scale, 270);
}

LineRenderer* Font::getLetterRenderer(char letter) const {
    const auto found = letters.find(static_cast<char>(std::tolower(static_cast<unsigned char>(letter))));
    return found == letters.end() ? nullptr : found->second;
}

void Font::write(const Vector3f& position, const std::string& text, float scale, float angle) const {
    glPushMatrix();
    glTranslatef(position.x, position.y, position.z);
    glRotatef(angle, 0, 1, 0);
    glScalef(scale, scale, scale);
    for (const char letter : text) {
        if (const LineRenderer* pRenderer = getLetterRenderer(letter)) {
            pRenderer->draw(LINE_WIDTH);
        }
        glTranslatef(ADVANCE, 0, 0);
    }
    glPopMatrix();
}
