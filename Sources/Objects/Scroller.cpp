#include "Objects/Scroller.h"

#include <GL/glew.h>

static const unsigned int LINE_WIDTH = 8;
static const float ADVANCE = 1.5f;
static const float REACH = 40;

Scroller::Scroller(Font* pFont, const Vector3f& position, const std::string& text)
    : pFont(pFont), position(position), text(text) {}

void Scroller::draw(float scale) const {
    glPushMatrix();
    glTranslatef(position.x, position.y, position.z);
    glScalef(scale, scale, scale);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const float z = position.z - ADVANCE * static_cast<float>(i);
        const LineRenderer* pRenderer = pFont->getLetterRenderer(text[i]);
        if (-REACH < z && z < REACH && pRenderer != nullptr) {
            pRenderer->draw(LINE_WIDTH);
        }
        glTranslatef(0, 0, -ADVANCE);
    }
    glPopMatrix();
}

void Scroller::update() {
    position.z += 0.035f;
    if (position.z > 200) {
        position.z = -100;
    }
}
