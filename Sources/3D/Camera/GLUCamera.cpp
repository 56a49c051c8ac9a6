#include "3D/Camera/GLUCamera.h"

#include <GL/glew.h>
#include <GL/glu.h>

void GLUCamera::apply() { lookAt(position + direction); }

void GLUCamera::lookAt(const Vector3f& centre) const {
    glLoadIdentity();
    gluLookAt(position.x, position.y, position.z, centre.x, centre.y, centre.z, up.x, up.y, up.z);
}
