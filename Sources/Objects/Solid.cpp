#include "Objects/Solid.h"

#include <GL/glew.h>

static const unsigned int LINE_WIDTH = 4;

void Solid::draw() const {
    glPushMatrix();
    glTranslatef(position.x, position.y, position.z);
    glRotatef(rotation.x, 1, 0, 0);
    glRotatef(rotation.y, 0, 1, 0);
    glRotatef(rotation.z, 0, 0, 1);
    renderer.draw(LINE_WIDTH);
    glPopMatrix();
}
