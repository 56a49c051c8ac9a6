#include "3D/FrameBuffer.h"

#include "Utils/GLUtils.h"

#include <iostream>

// Labels of the checks of every frame, kept so that none allocates.
static const std::string BIND_LABEL = "glBindFrameBuffer";
static const std::string UNBIND_LABEL = "glBindFrameBuffer (unbind)";
static const std::string ATTACH_LABEL = "glFramebufferTexture2D";

FrameBuffer::FrameBuffer() {
    glGenFramebuffers(1, &fid);
    std::cout << "New FrameBuffer id: " << fid << std::endl;
    if (fid == 0) {
        throw FrameBufferException("FrameBuffer id is 0");
    }
    GLUtils::checkError("glGenFrameBuffers");
    std::cout << "FrameBuffer created" << std::endl;
}

FrameBuffer::~FrameBuffer() {
    glDeleteFramebuffers(1, &fid);
    std::cout << "FrameBuffer '" << fid << "' deleted" << std::endl;
}

void FrameBuffer::bind(GLenum target) {
    glBindFramebuffer(target, fid);
    GLUtils::checkError(BIND_LABEL);
}

void FrameBuffer::unbind(GLenum target) {
    glBindFramebuffer(target, 0);
    GLUtils::checkError(UNBIND_LABEL);
}

void FrameBuffer::attach(GLenum target, GLenum attachmentPoint, GLuint textureId) {
    bind(target);
    glFramebufferTexture2D(target, attachmentPoint, GL_TEXTURE_2D, textureId, 0);
    GLUtils::checkError(ATTACH_LABEL);
    unbind(target);
}

void FrameBuffer::attach(GLenum target, GLenum attachmentPoint, const RenderBuffer& renderBuffer) {
    bind(target);
    glFramebufferRenderbuffer(target, attachmentPoint, GL_RENDERBUFFER, renderBuffer.getRID());
    GLUtils::checkError("glFramebufferRenderbuffer");
    unbind(target);
}

void FrameBuffer::validate(GLenum target) {
    if (glCheckFramebufferStatus(target) != GL_FRAMEBUFFER_COMPLETE) {
        std::cerr << "Fail to validate the FBO" << std::endl;
    }
}
