#pragma once

#include "Zentrik/Window.h"

/// A window that carries an OpenGL context, with SDL's default attributes.
class GLWindow : public Window {
public:
    /// As Window; "- (OpenGL)" is added to the caption.
    GLWindow(unsigned int width, unsigned int height, const std::string& windowName, bool isFullscreen);

    /// Clears colour and depth, to the colour that glClearColor set last.
    void clear() override;
    /// Swaps the buffers.
    void refresh() override;
};
