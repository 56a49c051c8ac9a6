#pragma once

#include "Types/Vector4.h"

#include <GL/glew.h>

/// Owner of one OpenGL 2D texture, RGBA with 8 bits each, minified linearly, without mipmaps.
/// Works on the active texture unit. Every call may throw GLErrorException.
class Texture {
public:
    /// An empty texture, to be rendered into; sizes in pixels.
    Texture(unsigned int width, unsigned int height);
    /// A texture of one colour; the components are scaled to bytes, of which the low 8 bits stay.
    Texture(unsigned int width, unsigned int height, const Colour4& c);
    ~Texture();
    Texture(const Texture&) = delete;
    Texture& operator=(const Texture&) = delete;

    /// Asks OpenGL for a name and says so on standard output. For the constructors: called again, it would
    /// take another name and lose the first.
    void createID();
    /// Sets the filter of the texture that is bound.
    void setParameters();
    void bind() const;
    static void unbind();

    GLuint getID() const;

private:
    GLuint tid = 0;
};
