#pragma once

#include "Utils/MessageException.h"

#include <GL/glew.h>

#include <string>

/// An OpenGL error, named together with the place where it was noticed.
class GLErrorException : public MessageException {
public:
    GLErrorException(GLenum errorId, const std::string& functionName)
        : MessageException(std::string(textOf(errorId)) + " in '" + functionName + "'") {}

private:
    static const char* textOf(GLenum errorId) {
        switch (errorId) {
        case GL_NO_ERROR:
            return "No error occured (so why this exception has been lunched";
        case GL_INVALID_ENUM:
            return "Invalid enumerator";
        case GL_INVALID_VALUE:
            return "Invalid value";
        case GL_INVALID_OPERATION:
            return "Invalid operation";
        case GL_OUT_OF_MEMORY:
            return "Out of memory";
        default:
            return "Unknown error";
        }
    }
};

class GLUtils {
public:
    /// Throws a GLErrorException if OpenGL has an error pending; takes one error, others wait for the next
    /// check. functionName says where we are: the call just made, or the step of the frame.
    static void checkError(const std::string& functionName) {
        const GLenum error = glGetError();
        if (error != GL_NO_ERROR) {
            throw GLErrorException(error, functionName);
        }
    }
};
