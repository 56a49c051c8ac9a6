#pragma once

#include "FrameSize.h"

#include <EGL/egl.h>

namespace recorder {

/// What the show draws on in place of a window: an OpenGL context with a colour and a depth buffer of its
/// own, made by software in memory, so that it needs neither a display server nor a graphics card. It is
/// current on the thread that made it, from construction to destruction. Not copied.
class Canvas {
public:
    /// The frames to be read are as large as the canvas, or half as large: then each of their pixels is the
    /// average of four. Throws std::runtime_error with one line on why there is no such picture.
    Canvas(const FrameSize& size, const FrameSize& frameSize);
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    const FrameSize& getSize() const { return size; }

    /// The finished frame, into frameSize.bytes() bytes laid out as FrameSize says.
    void read(unsigned char* pixels);

    /// While off, drawing costs next to nothing and leaves no trace. For frames that nobody will see: every
    /// frame of the show begins with a clear, so none lives on in the next.
    void setDrawing(bool on);

private:
    void average(int width, int height);

    FrameSize size;
    FrameSize frameSize;
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLSurface surface = EGL_NO_SURFACE;
    EGLContext context = EGL_NO_CONTEXT;
    unsigned int nothingSeen = 0; ///< the OpenGL query that says so, while drawing is off
    unsigned int averaged = 0;    ///< the OpenGL framebuffer of the averaged frame, from the first one on
};

} // namespace recorder
