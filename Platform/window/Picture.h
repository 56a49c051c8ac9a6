#pragma once

#include "Host.h"

#include <GL/glew.h>

namespace window {

/// The show's picture, of a size of its own: a framebuffer to which all that the show draws to its window is
/// led, and from where it is brought to the real one. There is one such object; what it made goes with the
/// OpenGL context.
class Picture {
public:
    explicit Picture(const host::Extent& size);
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    const host::Extent& getSize() const { return size; }

    /// Leads the show here. To be called whenever OpenGL's functions have been loaded, before any is used.
    void takeOver();

    /// Brings the picture to the middle of the window, on black: as it is, or enlarged to what fits there in
    /// its own shape. A larger one is made smaller.
    void show(const host::Extent& window, bool enlarged) const;

private:
    /// Stands in for glBindFramebuffer.
    static void GLAPIENTRY bind(GLenum target, GLuint name);
    void make();

    host::Extent size;
    GLuint framebuffer = 0; ///< 0: none yet
    PFNGLBINDFRAMEBUFFERPROC bindReally = nullptr;
};

} // namespace window
