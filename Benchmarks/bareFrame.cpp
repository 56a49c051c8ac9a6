// The OpenGL work of one frame and nothing else, the yardstick for the frames of the show: the lattice from a
// low flight, drawn twice through a program that only passes colours on, two passes over the whole picture of
// five reads each, the second one blended, and one swap. No music, no waits. Prints the mean of the frames'
// times.
//
//     bare_frame [frames]     300 by default, in a window of 640 x 480

#include <GL/glew.h>
#include <GL/glu.h>
#include <SDL.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int WIDTH = 640;
constexpr int HEIGHT = 480;
constexpr unsigned int SIDE = 100; ///< points of the lattice each way
constexpr float STEP = 1.5f;       ///< world units from one to the next
constexpr int WARM_UP = 20;        ///< frames that do not count

struct Vertex {
    std::array<float, 3> position;
    std::array<float, 4> colour;
};

struct Lattice {
    std::vector<Vertex> vertices;
    std::vector<unsigned int> indices; ///< pairs, a line each

    Lattice() {
        for (unsigned int i = 0; i < SIDE * SIDE; ++i) {
            const unsigned int row = i / SIDE;
            const auto z = static_cast<float>(i % SIDE);
            vertices.push_back({{static_cast<float>(row) * STEP, 0, z * STEP}, {0.46f, 0.46f, 0.46f, 0.7f}});
            if (i % SIDE + 1 < SIDE) {
                indices.insert(indices.end(), {i, i + 1});
            }
            if (row + 1 < SIDE) {
                indices.insert(indices.end(), {i, i + SIDE});
            }
        }
    }

    void draw() const {
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        gluPerspective(45, 1.0, 0.1, 120);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        gluLookAt(92, 4, 56, 86, 1, 52, 0, 1, 0);
        glLineWidth(4);
        glEnableClientState(GL_VERTEX_ARRAY);
        glEnableClientState(GL_COLOR_ARRAY);
        glVertexPointer(3, GL_FLOAT, sizeof(Vertex), vertices.front().position.data());
        glColorPointer(4, GL_FLOAT, sizeof(Vertex), vertices.front().colour.data());
        glDrawElements(GL_LINES, static_cast<GLsizei>(indices.size()), GL_UNSIGNED_INT, indices.data());
        glDisableClientState(GL_COLOR_ARRAY);
        glDisableClientState(GL_VERTEX_ARRAY);
    }
};

GLuint program(const std::string& vertexText, const std::string& fragmentText) {
    const GLuint result = glCreateProgram();
    const auto attach = [result](GLenum kind, const std::string& text) {
        const GLuint shader = glCreateShader(kind);
        const char* const source = text.c_str();
        glShaderSource(shader, 1, &source, nullptr);
        glCompileShader(shader);
        glAttachShader(result, shader);
    };
    attach(GL_VERTEX_SHADER, "#version 120\nvoid main() { " + vertexText + " }");
    attach(GL_FRAGMENT_SHADER,
           "#version 120\nuniform sampler2D picture; void main() { " + fragmentText + " }");
    glLinkProgram(result);
    GLint linked = GL_FALSE;
    glGetProgramiv(result, GL_LINK_STATUS, &linked);
    if (linked == GL_FALSE) {
        std::fputs("bare_frame: a program cannot be built\n", stderr);
        std::exit(1);
    }
    return result;
}

GLuint colourProgram() {
    return program("gl_Position = ftransform(); gl_FrontColor = gl_Color;", "gl_FragColor = gl_Color;");
}

/// Five reads in a row, step apart.
GLuint blurProgram(const std::string& step) {
    return program(
        "gl_Position = ftransform(); gl_TexCoord[0] = gl_MultiTexCoord0;",
        "vec2 at = gl_TexCoord[0].st, step = " + step +
            ";"
            "gl_FragColor = 0.2 * (texture2D(picture, at - 2.0 * step) + texture2D(picture, at - step)"
            " + texture2D(picture, at) + texture2D(picture, at + step)"
            " + texture2D(picture, at + 2.0 * step));");
}

GLuint emptyTexture() {
    GLuint name = 0;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, WIDTH, HEIGHT, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    return name;
}

void drawOver(GLuint texture) {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glBindTexture(GL_TEXTURE_2D, texture);
    glBegin(GL_QUADS);
    for (const auto& corner : {std::array{1.0f, 1.0f}, {0.0f, 1.0f}, {0.0f, 0.0f}, {1.0f, 0.0f}}) {
        glTexCoord2f(corner[0], corner[1]);
        glVertex2f(2 * corner[0] - 1, 2 * corner[1] - 1);
    }
    glEnd();
    glBindTexture(GL_TEXTURE_2D, 0);
}

class Frame {
public:
    Frame() {
        glGenFramebuffers(1, &frameBuffer);
        glViewport(0, 0, WIDTH, HEIGHT);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    }

    void draw() const {
        glDisable(GL_DEPTH_TEST);
        glBindFramebuffer(GL_FRAMEBUFFER, frameBuffer);
        renderTo(scene);
        drawScene();
        renderTo(blurred);
        glUseProgram(across);
        drawOver(scene);
        glBindFramebuffer(GL_FRAMEBUFFER, 0);

        glEnable(GL_DEPTH_TEST);
        drawScene();
        glDisable(GL_DEPTH_TEST);
        glEnable(GL_BLEND);
        glUseProgram(down);
        drawOver(blurred);
        glDisable(GL_BLEND);
        SDL_GL_SwapBuffers();
    }

private:
    static void renderTo(GLuint texture) {
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture, 0);
    }

    void drawScene() const {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glUseProgram(colours);
        lattice.draw();
    }

    Lattice lattice;
    GLuint colours = colourProgram();
    GLuint across = blurProgram("vec2(0.003, 0.0)");
    GLuint down = blurProgram("vec2(0.0, 0.004)");
    GLuint scene = emptyTexture();
    GLuint blurred = emptyTexture();
    GLuint frameBuffer = 0;
};
} // namespace

int main(int argc, char** argv) {
    const int frames = argc > 1 ? std::max(1, std::atoi(argv[1])) : 300;
    SDL_Init(SDL_INIT_VIDEO);
    if (SDL_SetVideoMode(WIDTH, HEIGHT, 32, SDL_OPENGL | SDL_FULLSCREEN) == nullptr ||
        glewInit() != GLEW_OK) {
        std::fputs("bare_frame: there is no window with OpenGL\n", stderr);
        return 1;
    }
    const Frame frame;
    for (int i = 0; i < WARM_UP; ++i) {
        frame.draw();
    }
    const Clock::time_point start = Clock::now();
    for (int i = 0; i < frames; ++i) {
        frame.draw();
    }
    std::printf("%.2f ms\n", Milliseconds(Clock::now() - start).count() / frames);
    SDL_Quit();
    return 0;
}
