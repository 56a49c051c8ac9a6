// The linker gives these two names to the call of glewInit in the show and to the library's own function.
// The library loads the functions of whatever context is current, ours too; that it then finds no display of
// the window system is as it should be.

#include <GL/glew.h>

extern "C" {

GLenum __real_glewInit();  // NOLINT(bugprone-reserved-identifier)
GLenum __wrap_glewInit() { // NOLINT(bugprone-reserved-identifier)
    const GLenum result = __real_glewInit();
    return result == GLEW_ERROR_NO_GLX_DISPLAY ? GLEW_OK : result;
}

} // extern "C"
