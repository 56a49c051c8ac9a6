// The linker gives these two names to the call of glewInit in the show and to the library's own function.
// The library loads the functions of whatever context is current; that it then finds no display of the window
// system, or another one than it knows, is as it should be.

#include "Host.h"

#include <GL/glew.h>

extern "C" {

GLenum __real_glewInit();  // NOLINT(bugprone-reserved-identifier)
GLenum __wrap_glewInit() { // NOLINT(bugprone-reserved-identifier)
    const GLenum result = __real_glewInit();
    if (result != GLEW_OK && result != GLEW_ERROR_NO_GLX_DISPLAY) {
        return result;
    }
    host::Host::current().openGlIsLoaded();
    return GLEW_OK;
}

} // extern "C"
