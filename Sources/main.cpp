// The life of the show: start-up, the frame loop, shutdown, and what is said when something fails.

#include "3D/Camera/RotatingCamera.h"
#include "3D/FrameBuffer.h"
#include "3D/ScreenQuad.h"
#include "3D/Shader.h"
#include "3D/Texture.h"
#include "Music/Music.h"
#include "Scenes/SceneManager.h"
#include "Scenes/ScenePartWorld.h"
#include "Scenes/SceneSad.h"
#include "Scenes/SceneSadSpectrum.h"
#include "Scenes/SceneSadSpectrumGreet.h"
#include "Scenes/SceneSpectrumImpulsePart.h"
#include "Scenes/SceneSpectrumPart.h"
#include "Utils/Defaults.h"
#include "Utils/GLUtils.h"
#include "Utils/Settings.h"
#include "Utils/StandardStreams.h"
#include "Zentrik/Controllers/InputManager.h"
#include "Zentrik/Controllers/SDL_Keyboard.h"
#include "Zentrik/Controllers/Signals.h"
#include "Zentrik/Engine.h"

#include <GL/glew.h>
#include <GL/glu.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>

namespace {
const int SUCCESS = 0;
const int ENGINE_FAILURE = -2;
const int GL_FAILURE = -3;
const int OTHER_FAILURE = -4;

// Labels of the checks of every frame, kept so that none allocates.
const std::string AMPLIF_LABEL = "glGetUniformLocation 'amplif'";
const std::string FADE_LABEL = "glGetUniformLocation 'fade'";
const std::string BLUR_OFFSET_LABEL = "glGetUniformLocation 'blurOffset'";
const std::string DRAW_LABEL = "Draw";

/// A setting as a whole number: truncated towards zero, held within the range of int.
int truncated(float value) {
    const float limit = 2147483648.0f; // 2^31
    return static_cast<int>(std::clamp(value, -limit, std::nextafter(limit, 0.0f)));
}

void setUniform(const Shader& shader, const char* name, float value, const std::string& label) {
    const GLint location = glGetUniformLocation(shader.getProgram(), name);
    GLUtils::checkError(label);
    glUniform1f(location, value);
}

/// The current scene, through the pulse program.
void drawScene(SceneManager& sm, Shader& pulseShader, Window* pWindow) {
    Scene* pScene = sm.getCurrentScene();
    pulseShader.enable();
    setUniform(pulseShader, "amplif", pScene->getPulseValue(), AMPLIF_LABEL);
    setUniform(pulseShader, "fade", pScene->getFadeValue(), FADE_LABEL);
    sm.draw(pWindow);
    Shader::disable();
}

/// A texture over the whole picture, through a blur program.
void drawBlurred(const Texture& texture, Shader& blurShader, const Window& window) {
    blurShader.enable();
    glGetUniformLocation(blurShader.getProgram(), "blurOffset"); // the programs choose their own
    GLUtils::checkError(BLUR_OFFSET_LABEL);
    ScreenQuad::draw(texture, window);
    Shader::disable();
}
} // namespace

int main(int /*argc*/, char** /*argv*/) {
    StandardStreams::open();
    Signals::listen();

    // Not of the run's scope: should the show fail while it runs, nobody deletes the programs, they go with
    // the OpenGL context and stay known until then.
    static Shader* pSimpleShader;
    static Shader* pHBlurShader;
    static Shader* pVBlurShader;

    try {
        Settings setting("data/settings.ini");
        std::srand(static_cast<unsigned int>(truncated(setting.getSetting("seed", defaults::SEED))));
        const auto height =
            static_cast<unsigned int>(truncated(setting.getSetting("vres", defaults::HEIGHT)));
        const auto width = static_cast<unsigned int>(truncated(setting.getSetting("hres", defaults::WIDTH)));
        Engine e(EAPI_OpenGL | EAPI_SDL, width, height, "Kavel");
        if (!e.checkExtension("GL_ARB_framebuffer_object") || !e.checkExtension("GL_ARB_framebuffer_sRGB")) {
            std::cout << "The demo needs better hardware. Sorry about it" << std::endl;
            return SUCCESS;
        }

        // A show without music is still a show.
        Music m;
        m.create();
        m.loadFile("data/music/quelar.mp3");

        InputManager im;
        im.registerController(new SDL_Keyboard());
        im.registerController(new Signals());

        RotatingCamera c(Vector3f(6, 0, 6), 6.0f, 0.3f);

        const GLenum startUpError = glGetError();
        if (startUpError != GL_NO_ERROR) {
            std::cerr << "OpenGL Error: " << startUpError << std::endl;
        }

        std::cout << "Scene creation" << std::endl;
        SceneManager sm;
        sm.addScene(new SceneSad());
        sm.addScene(new SceneSadSpectrum());
        sm.addScene(new SceneSadSpectrumGreet());
        sm.addScene(new SceneSpectrumPart());
        sm.addScene(new SceneSpectrumImpulsePart());
        sm.addScene(new ScenePartWorld());

        std::cout << "Geometry generation" << std::endl;
        pSimpleShader = nullptr;
        pHBlurShader = nullptr;
        pVBlurShader = nullptr;
        try {
            pSimpleShader = new Shader("data/shaders/pulse.vs", "data/shaders/pulse.ps");
            pHBlurShader = new Shader("data/shaders/hblur.vs", "data/shaders/hblur.ps");
            pVBlurShader = new Shader("data/shaders/vblur.vs", "data/shaders/vblur.ps");
        } catch (const ShaderException& exception) {
            std::cout << exception.what() << std::endl;
            return GL_FAILURE;
        }

        std::cout << "Texture preparation (R2T)" << std::endl;
        Window* pWindow = e.getWindow();
        glEnable(GL_TEXTURE_2D);
        glDisable(GL_CULL_FACE);
        const Texture textureBucket(pWindow->getWidth(), pWindow->getHeight());
        const Texture textureHBlurBucket(pWindow->getWidth(), pWindow->getHeight());
        std::cout << "Frame buffer preparation (R2T)" << std::endl;
        FrameBuffer frameBuffer;
        frameBuffer.attach(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, textureBucket.getID());
        frameBuffer.bind(GL_FRAMEBUFFER);
        frameBuffer.validate(GL_FRAMEBUFFER);
        FrameBuffer::unbind(GL_FRAMEBUFFER);

        m.play();
        std::cout << "Start !" << std::endl;

        bool over = false;
        do {
            // The scene, off screen.
            frameBuffer.attach(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, textureBucket.getID());
            frameBuffer.bind(GL_FRAMEBUFFER);
            glViewport(0, 0, static_cast<GLsizei>(pWindow->getWidth()),
                       static_cast<GLsizei>(pWindow->getHeight()));
            glMatrixMode(GL_PROJECTION);
            glLoadIdentity();
            gluPerspective(45, 1.0, 0.1, 120);
            glMatrixMode(GL_MODELVIEW);
            glClearColor(0, 0, 0, 1);
            pWindow->clear();
            drawScene(sm, *pSimpleShader, pWindow);
            FrameBuffer::unbind(GL_FRAMEBUFFER);

            // Its horizontal blur, off screen.
            frameBuffer.attach(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, textureHBlurBucket.getID());
            frameBuffer.bind(GL_FRAMEBUFFER);
            glClearColor(0, 0, 0.25f, 1);
            pWindow->clear();
            drawBlurred(textureBucket, *pHBlurShader, *pWindow);
            GLUtils::checkError(DRAW_LABEL);
            FrameBuffer::unbind(GL_FRAMEBUFFER);

            // The scene again, on screen.
            glClearColor(0, 0, 0, 1);
            pWindow->clear();
            drawScene(sm, *pSimpleShader, pWindow);

            // The vertical blur of the horizontal one, added on top: the glow.
            glDisable(GL_DEPTH_TEST);
            glEnable(GL_BLEND);
            glBlendFunc(GL_SRC_ALPHA, GL_ONE);
            drawBlurred(textureHBlurBucket, *pVBlurShader, *pWindow);
            glDisable(GL_BLEND);
            glEnable(GL_DEPTH_TEST);
            pWindow->refresh();

            im.update();
            c.update();
            e.waitFrame();
            over = im.needEscape() || sm.update(c, &m, e.getTime());
        } while (!over);

        std::cout << "End !" << std::endl;
        delete pVBlurShader;
        delete pHBlurShader;
        delete pSimpleShader;
        m.stop();
    } catch (const EngineInitialisationException& exception) {
        std::cerr << exception.what() << std::endl;
        return ENGINE_FAILURE;
    } catch (const GLErrorException& exception) {
        std::cerr << exception.what() << std::endl;
        return GL_FAILURE;
    } catch (const std::exception& exception) {
        std::cerr << exception.what() << std::endl;
        std::cerr << "Exception cought" << std::endl;
        return OTHER_FAILURE;
    }
    return SUCCESS;
}
