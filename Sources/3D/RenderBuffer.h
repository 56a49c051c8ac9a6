#pragma once

#include "Utils/MessageException.h"

#include <GL/glew.h>

class RenderBufferException : public MessageException {
public:
    using MessageException::MessageException;
};

/// Owner of one OpenGL renderbuffer: storage that a FrameBuffer draws into and no shader reads.
class RenderBuffer {
public:
    /// Throws RenderBufferException when OpenGL has no name to give, GLErrorException on its errors.
    RenderBuffer();
    ~RenderBuffer();
    RenderBuffer(const RenderBuffer&) = delete;
    RenderBuffer& operator=(const RenderBuffer&) = delete;

    /// Allocates the storage; sizes in pixels. Leaves nothing bound. Throws GLErrorException.
    void create(GLenum target, GLenum format, GLsizei width, GLsizei height);
    /// Throws GLErrorException.
    void bind(GLenum target);
    static void unbind(GLenum target);

private:
    friend class FrameBuffer;

    GLuint getRID() const;

    GLuint rid = 0;
};
