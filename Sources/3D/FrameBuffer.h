#pragma once

#include "3D/RenderBuffer.h"
#include "Utils/MessageException.h"

#include <GL/glew.h>

class FrameBufferException : public MessageException {
public:
    using MessageException::MessageException;
};

/// Owner of one OpenGL framebuffer: what is drawn while it is bound lands in its attachments.
class FrameBuffer {
public:
    /// Throws FrameBufferException when OpenGL has no name to give, GLErrorException on its errors.
    FrameBuffer();
    ~FrameBuffer();
    FrameBuffer(const FrameBuffer&) = delete;
    FrameBuffer& operator=(const FrameBuffer&) = delete;

    /// Throws GLErrorException.
    void bind(GLenum target);
    /// Back to the window. Throws GLErrorException.
    static void unbind(GLenum target);

    /// Attaches the texture's level 0, or the renderbuffer. The framebuffer is left unbound.
    /// Throws GLErrorException.
    void attach(GLenum target, GLenum attachmentPoint, GLuint textureId);
    void attach(GLenum target, GLenum attachmentPoint, const RenderBuffer& renderBuffer);

    /// Reports on standard error if the framebuffer bound to the target cannot be drawn into.
    void validate(GLenum target);

private:
    GLuint fid = 0;
};
