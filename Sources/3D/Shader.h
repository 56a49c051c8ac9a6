#pragma once

#include "Utils/MessageException.h"

#include <GL/glew.h>

#include <cstdio>
#include <string>

/// A shader program that could not be built.
class ShaderException : public MessageException {
public:
    using MessageException::MessageException;
};

/// A shader that did not compile.
class ShaderCreationException : public ShaderException {
public:
    ShaderCreationException() : ShaderException("Fail to create the shader") {}
};

/// A program that did not link.
class ShaderLoadingException : public ShaderException {
public:
    explicit ShaderLoadingException(const std::string& s)
        : ShaderException("Fail to create the shader: " + s) {}
};

/// Owner of one GLSL program and its two shaders, built from a vertex and a fragment (pixel) shader file.
/// Uniforms are set by whoever uses the program.
class Shader {
public:
    /// Throws ShaderException, after the driver's log has been printed, or GLErrorException.
    Shader(const std::string& vertexShaderFileName, const std::string& pixelShaderFile);
    ~Shader();
    Shader(const Shader&) = delete;
    Shader& operator=(const Shader&) = delete;

    void enable();
    /// Back to the fixed-function pipeline.
    static void disable();

    GLint getProgram() const;

    /// The file's text, zero-terminated, for the caller to delete[]; null, reported, if it cannot be had.
    static char* readFile(const std::string& fileName);
    static unsigned int getFileSize(std::FILE* file);
    /// Prints the log of a shader that did not compile.
    static bool checkShaderCompilation(const std::string& shaderName, GLuint shaderID);

private:
    GLint vsid = 0;
    GLint psid = 0;
    GLint pgid = 0;
};
