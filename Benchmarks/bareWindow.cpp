// The least a full-screen OpenGL program does: what its start and its memory cost, the show has on top. See
// soak.

#include <GL/gl.h>
#include <SDL.h>

int main(int /*argc*/, char** /*argv*/) {
    SDL_Init(SDL_INIT_VIDEO);
    if (SDL_SetVideoMode(640, 480, 32, SDL_OPENGL | SDL_FULLSCREEN) == nullptr) {
        return 1;
    }
    for (int frame = 0; frame < 100; ++frame) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        SDL_GL_SwapBuffers();
        SDL_Delay(15);
    }
    SDL_Quit();
    return 0;
}
