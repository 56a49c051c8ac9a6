#pragma once

#include "3D/Texture.h"
#include "Zentrik/Window.h"

/// A texture over the whole picture, through whatever program and blending are on.
class ScreenQuad {
public:
    /// The texture's lower left corner lands in the picture's. Leaves the viewport on the whole window, depth
    /// testing on, texturing off, and the matrices as they were. Throws GLErrorException.
    static void draw(const Texture& t, const Window& w);
};
