#include "Picture.h"

#include <algorithm>
#include <cmath>

namespace window {

static Picture* current = nullptr;

Picture::Picture(const host::Extent& size) : size(size) { current = this; }

void Picture::takeOver() {
    if (__glewBindFramebuffer != nullptr) { // else the show is about to say that it needs better hardware
        bindReally = __glewBindFramebuffer;
        __glewBindFramebuffer = bind;
    }
}

void GLAPIENTRY Picture::bind(GLenum target, GLuint name) {
    // Made when it is needed and no sooner: what the show makes has its usual numbers.
    if (name == 0 && current->framebuffer == 0) {
        current->make();
    }
    current->bindReally(target, name == 0 ? current->framebuffer : name);
}

void Picture::make() {
    const auto attach = [this](GLenum place, GLenum format) {
        GLuint buffer = 0;
        glGenRenderbuffers(1, &buffer);
        glBindRenderbuffer(GL_RENDERBUFFER, buffer);
        glRenderbufferStorage(GL_RENDERBUFFER, format, static_cast<GLsizei>(size.width),
                              static_cast<GLsizei>(size.height));
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, place, GL_RENDERBUFFER, buffer);
        glBindRenderbuffer(GL_RENDERBUFFER, 0);
    };
    glGenFramebuffers(1, &framebuffer);
    bindReally(GL_FRAMEBUFFER, framebuffer);
    attach(GL_COLOR_ATTACHMENT0, GL_RGBA8);
    attach(GL_DEPTH_ATTACHMENT, GL_DEPTH_COMPONENT24);
}

void Picture::show(const host::Extent& window, bool enlarged) const {
    const double fitting = std::min(static_cast<double>(window.width) / size.width,
                                    static_cast<double>(window.height) / size.height);
    const double scale = enlarged ? fitting : std::min(1.0, fitting);
    const auto width = static_cast<GLint>(std::lround(size.width * scale));
    const auto height = static_cast<GLint>(std::lround(size.height * scale));
    const GLint left = (static_cast<GLint>(window.width) - width) / 2;
    const GLint bottom = (static_cast<GLint>(window.height) - height) / 2;
    bindReally(GL_READ_FRAMEBUFFER, framebuffer);
    bindReally(GL_DRAW_FRAMEBUFFER, 0);
    // Some drivers notice no sooner that the window has another size than before.
    glViewport(0, 0, static_cast<GLsizei>(window.width), static_cast<GLsizei>(window.height));
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glBlitFramebuffer(0, 0, static_cast<GLint>(size.width), static_cast<GLint>(size.height), left, bottom,
                      left + width, bottom + height, GL_COLOR_BUFFER_BIT,
                      scale == 1 ? GL_NEAREST : GL_LINEAR);
    bindReally(GL_FRAMEBUFFER, framebuffer);
}

} // namespace window
