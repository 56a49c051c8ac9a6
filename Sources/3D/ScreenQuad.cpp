#include "3D/ScreenQuad.h"

#include <GL/glew.h>
#include <GL/glu.h>

// A corner of the unit square; texture coordinates are positions.
static void corner(float x, float y) {
    glTexCoord2f(x, y);
    glVertex2f(x, y);
}

void ScreenQuad::draw(const Texture& t, const Window& w) {
    glViewport(0, 0, static_cast<GLsizei>(w.getWidth()), static_cast<GLsizei>(w.getHeight()));
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    gluOrtho2D(0, 1, 0, 1);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glDisable(GL_DEPTH_TEST);
    glEnable(GL_TEXTURE_2D);
    t.bind();

    glBegin(GL_QUADS);
    corner(1, 1);
    corner(0, 1);
    corner(0, 0);
    corner(1, 0);
    glEnd();

    Texture::unbind();
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_DEPTH_TEST);
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
}
