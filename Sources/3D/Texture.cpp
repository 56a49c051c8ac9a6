#include "3D/Texture.h"

#include "Utils/GLUtils.h"

#include <cstddef>
#include <iostream>
#include <vector>

// Labels of the checks of every frame, kept so that none allocates.
static const std::string BIND_LABEL = "glBindTexture";
static const std::string UNBIND_LABEL = "glBindTexture (unbind)";

static GLubyte toByte(float component) {
    return static_cast<GLubyte>(static_cast<int>(component * 255.0f) & 0xFF);
}

Texture::Texture(unsigned int width, unsigned int height) {
    createID();
    bind();
    setParameters();
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, static_cast<GLsizei>(width), static_cast<GLsizei>(height), 0,
                 GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    unbind();
    GLUtils::checkError("Texture creation");
}

Texture::Texture(unsigned int width, unsigned int height, const Colour4& c) {
    createID();
    bind();
    const GLubyte texel[] = {toByte(c.r), toByte(c.g), toByte(c.b), toByte(c.a)};
    std::vector<GLubyte> pixels;
    const std::size_t texels = static_cast<std::size_t>(width) * height;
    pixels.reserve(texels * 4);
    for (std::size_t i = 0; i < texels; ++i) {
        pixels.insert(pixels.end(), std::begin(texel), std::end(texel));
    }
    setParameters();
    glTexImage2D(GL_TEXTURE_2D, 0, 4, static_cast<GLsizei>(width), static_cast<GLsizei>(height), 0, GL_RGBA,
                 GL_UNSIGNED_BYTE, pixels.data());
    GLUtils::checkError("glTexImage2D");
    unbind();
}

Texture::~Texture() { glDeleteTextures(1, &tid); }

void Texture::createID() {
    glGenTextures(1, &tid);
    GLUtils::checkError("glGenTextures");
    std::cout << "GL Texture ID created: " << tid << std::endl;
}

void Texture::setParameters() {
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    GLUtils::checkError("glTexParameterf");
}

void Texture::bind() const {
    glBindTexture(GL_TEXTURE_2D, tid);
    GLUtils::checkError(BIND_LABEL);
}

void Texture::unbind() {
    glBindTexture(GL_TEXTURE_2D, 0);
    GLUtils::checkError(UNBIND_LABEL);
}

GLuint Texture::getID() const { return tid; }
