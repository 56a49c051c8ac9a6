#pragma once

#include <GL/glew.h>
#include <SDL.h>

#include <array>
#include <cstddef>

/// A stage on which OpenGL and the window cost nothing, for the stand-ins of the tests.
struct Stage {
    Uint32 now = 1000; ///< ms, the show's only clock
    std::array<Uint8, SDLK_LAST> keys{};

    void atSwap();
    template <typename... Arguments>
    static constexpr bool note(const Arguments&... /*arguments*/) {
        return true;
    }
    static constexpr bool watching = false;
    static constexpr bool works(const char* /*call*/) { return true; }
    static constexpr GLenum nextError() { return GL_NO_ERROR; }
    static constexpr bool isBroken(GLuint /*object*/) { return false; }
    static void tell(float /*uniform*/) {}
    template <typename... Arguments>
    static void show(const Arguments&... /*drawing*/) {}
};

inline Stage stage;
