// The linker leads the show's calls that set widths and sizes here, to be made as large as the picture wants
// them.

#include "Widths.h"

#include <GL/gl.h>

extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier)
void __real_glLineWidth(GLfloat width);
void __real_glPointSize(GLfloat size);

void __wrap_glLineWidth(GLfloat width) { __real_glLineWidth(host::shownWidth(width, host::pixelScale())); }
void __wrap_glPointSize(GLfloat size) { __real_glPointSize(host::shownWidth(size, host::pixelScale())); }
// NOLINTEND(bugprone-reserved-identifier)

} // extern "C"
