// Widths of lines and sizes of points are pixels, so in a large picture they would be thin. The linker leads
// the show's calls that set them here, to be made in proportion to the picture.

#include "Recorder.h"

#include <GL/gl.h>

static float scaled(GLfloat pixels) {
    return pixels * static_cast<const recorder::Recorder&>(host::Host::current()).getPixelScale();
}

extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier)
void __real_glLineWidth(GLfloat width);
void __real_glPointSize(GLfloat size);

void __wrap_glLineWidth(GLfloat width) { __real_glLineWidth(scaled(width)); }
void __wrap_glPointSize(GLfloat size) { __real_glPointSize(scaled(size)); }
// NOLINTEND(bugprone-reserved-identifier)

} // extern "C"
