#include "Canvas.h"

#include <EGL/eglext.h>
#include <GL/gl.h>

#include <array>
#include <cstdlib>
#include <stdexcept>

namespace recorder {

namespace {

EGLDisplay openDisplay() {
    // The same picture on every machine, whatever card it has. A user who knows better sets it to 0.
    setenv("LIBGL_ALWAYS_SOFTWARE", "1", 0);
    // On this thread alone: those of the driver (Mesa 22) may touch a fence that it has given back, which
    // ends the recording by a segmentation fault once in a while. More processors are put to use by --jobs.
    setenv("LP_NUM_THREADS", "0", 0);
    const auto getDisplay =
        reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(eglGetProcAddress("eglGetPlatformDisplayEXT"));
    EGLDisplay display = EGL_NO_DISPLAY;
    if (getDisplay != nullptr) {
        display = getDisplay(EGL_PLATFORM_SURFACELESS_MESA, nullptr, nullptr);
    }
    if (display == EGL_NO_DISPLAY || eglInitialize(display, nullptr, nullptr) == EGL_FALSE) {
        throw std::runtime_error(
            "software OpenGL without a screen is not available: is libgl1-mesa-dri there?");
    }
    return display;
}

} // namespace

Canvas::Canvas(const FrameSize& size, const FrameSize& frameSize)
    : size(size), frameSize(frameSize), display(openDisplay()) {
    using Wish = std::array<EGLint, 2>;
    constexpr std::array<Wish, 8> PIXELS = {Wish{EGL_SURFACE_TYPE, EGL_PBUFFER_BIT},
                                            Wish{EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT},
                                            Wish{EGL_RED_SIZE, 8},
                                            Wish{EGL_GREEN_SIZE, 8},
                                            Wish{EGL_BLUE_SIZE, 8},
                                            Wish{EGL_ALPHA_SIZE, 8},
                                            Wish{EGL_DEPTH_SIZE, 24},
                                            Wish{EGL_NONE, EGL_NONE}};
    const std::array<EGLint, 5> extent = {EGL_WIDTH, static_cast<EGLint>(size.width), EGL_HEIGHT,
                                          static_cast<EGLint>(size.height), EGL_NONE};
    EGLConfig config = nullptr;
    EGLint found = 0;
    if (eglBindAPI(EGL_OPENGL_API) == EGL_TRUE &&
        eglChooseConfig(display, PIXELS.front().data(), &config, 1, &found) == EGL_TRUE && found == 1) {
        surface = eglCreatePbufferSurface(display, config, extent.data());
        context = eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
    }
    if (surface == EGL_NO_SURFACE || context == EGL_NO_CONTEXT ||
        eglMakeCurrent(display, surface, surface, context) == EGL_FALSE) {
        eglTerminate(display);
        throw std::runtime_error("software OpenGL can't make a picture of " + size.text());
    }
    // A surface off screen is read from its front by default, while the show draws to the back.
    glReadBuffer(GL_BACK);
}

Canvas::~Canvas() {
    eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglTerminate(display);
}

void Canvas::read(unsigned char* pixels) {
    const auto width = static_cast<GLsizei>(frameSize.width);
    const auto height = static_cast<GLsizei>(frameSize.height);
    if (frameSize.width != size.width) {
        average(width, height);
    }
    glReadPixels(0, 0, width, height, GL_BGRA, GL_UNSIGNED_BYTE, pixels);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

void Canvas::average(int width, int height) {
    if (averaged == 0) {
        unsigned int colours = 0;
        glGenRenderbuffers(1, &colours);
        glBindRenderbuffer(GL_RENDERBUFFER, colours);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, width, height);
        glBindRenderbuffer(GL_RENDERBUFFER, 0);
        glGenFramebuffers(1, &averaged);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, averaged);
        glFramebufferRenderbuffer(GL_DRAW_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, colours);
    }
    // At half the size each linear read falls on the corner where four pixels meet.
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, averaged);
    glBlitFramebuffer(0, 0, static_cast<GLint>(size.width), static_cast<GLint>(size.height), 0, 0, width,
                      height, GL_COLOR_BUFFER_BIT, GL_LINEAR);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, averaged);
}

void Canvas::setDrawing(bool on) {
    if (on == (nothingSeen == 0)) {
        return;
    }
    if (on) {
        glEndConditionalRender();
        glDeleteQueries(1, &nothingSeen);
        nothingSeen = 0;
    } else {
        // All drawing is made to depend on whether something was seen just now, when nothing was drawn.
        glGenQueries(1, &nothingSeen);
        glBeginQuery(GL_SAMPLES_PASSED, nothingSeen);
        glEndQuery(GL_SAMPLES_PASSED);
        glBeginConditionalRender(nothingSeen, GL_QUERY_WAIT);
    }
}

} // namespace recorder
