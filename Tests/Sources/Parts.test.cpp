// What the show is built from, and where the whole show does not lead.

#include "3D/Camera/LinearCamera.h"
#include "3D/Camera/RotatingCamera.h"
#include "3D/Camera/TopDownCamera.h"
#include "3D/FrameBuffer.h"
#include "3D/Shader.h"
#include "3D/Texture.h"
#include "Music/Impulsor.h"
#include "Music/Music.h"
#include "StandIns/Stage.h"
#include "Utils/GLUtils.h"
#include "Utils/MathUtils.h"
#include "Utils/Settings.h"
#include "Zentrik/Controllers/InputManager.h"
#include "Zentrik/Controllers/SDL_Keyboard.h"
#include "Zentrik/Engine.h"
#include "Zentrik/GLWindow.h"

#include <cstdio>
#include <fstream>
#include <memory>

namespace {
class Parts : public OnStage {
protected:
    ~Parts() override { std::remove(path.c_str()); }

    const std::string& file(const std::string& text) {
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }
    const std::string path = testing::TempDir() + "quelar." + std::to_string(getpid());
};

TEST_F(Parts, settingsArePairsOfWhichTheLastCounts) {
    const Settings s(file("hres\n\n800 a x1 vres\t-3.5\r\nhres 1e3 b 3z hres=5 6 c"));
    for (const char* name : {"hres", "vres", "hres=5", "HRES", "a", "b", "c"}) {
        tell(name, s.getSetting(name, 9));
    }
    tell("of nothing", Settings(file("\n\n")).getSetting("", 1));
    tell("of no file", Settings("none").getSetting("seed", 42));
    tell("of a folder", Settings("data").getSetting("seed", 42));
    expectStory("Settings");
}

std::string text(const Vector3f& v) { return call(v.x, v.g, v.z); }
std::string text(const Colour4& v) { return call(v.r, v.y, v.b, v.w); }

TEST_F(Parts, vectorsCalculate) {
    const Vector3f v(1, 2.5f, -3);
    const Vector3f w(4, -6, 8);
    const Colour4 c(1, 2, 3, 4);
    const Colour4 d(5, 7, 11, 13);
    tell(v);
    tell(text(v + w), "and", text(v - w), "and", text(v * 2), "and", text(v.cross(w)), "and",
         text(Vector3f()));
    tell(text(c + d), "and", text(c - d), "and", text(c * 2), "and", text(Colour4(v)), "and",
         text(Colour4(v, 7)));
    tell(text(Colour4()), "and", text(MathUtils::lerp(v, w, 1.5f)), "and", text(MathUtils::lerp(c, d, 0.5f)));
    tell("dot", v.dot(w), c.dot(d));
    const auto unit = [](auto vector) {
        vector.normalise();
        return text(vector);
    };
    tell("unit", unit(Vector3f(2, 3, 6)), unit(Vector3f()), unit(Colour4(1, -1, 7, 7)),
         unit(Colour4(0, 0, 0, 0)));
    tell("radians", MathUtils::degToRan(180), MathUtils::degToRan(1), MathUtils::degToRan(-360));
    expectStory("Vectors");
}

TEST_F(Parts, ownWhatTheyMakeInOpenGlAndNameItsErrors) {
    for (const GLenum error : {0, 0x500, 0x501, 0x502, 0x503, 0x504, 0x505, 0x506}) {
        tell(GLErrorException(error, "Draw").what());
    }
    glewInit(); // names begin anew
    const auto act = [] {
        const Texture texture(2, 1, Colour4(1, 0.5f, 0, 1.25f));
        FrameBuffer frame;
        RenderBuffer buffer;
        buffer.create(GL_RENDERBUFFER, GL_DEPTH_COMPONENT, 40, 30);
        buffer.bind(GL_RENDERBUFFER);
        RenderBuffer::unbind(GL_RENDERBUFFER);
        frame.attach(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, buffer);
    };
    act();
    expectStory("Buffers");
    tellChecks(act);
    expectStory("Checks of Buffers");
    stage.errors = {GL_INVALID_VALUE}; // which nobody comes to see
    stage.errorChecks = 0;
    stage.failing = "glGenRenderbuffers";
    EXPECT_THROW(RenderBuffer(), RenderBufferException);
}

TEST_F(Parts, shadersSayWhatIsWrongWithTheirFiles) {
    const std::string empty = "/dev/null";
    glewInit();
    { const Shader shader(file("text\xE9"), empty); }
    keep("glShaderSource");
    EXPECT_EQ(stage.calls, std::vector<std::string>({"glShaderSource 1 text\xE9", "glShaderSource 2 "}));
    stage.calls.clear();
    stage.listening = false;
    stage.broken = {4, 5};
    for (const auto& [vertex, pixel] :
         {std::pair(empty, empty), {empty, "none"}, {"data", empty}, {"none", "data"}}) {
        try {
            const Shader shader(vertex, pixel);
        } catch (const ShaderException& exception) {
            tell(exception.what());
        }
    }
    expectStory("Shaders");
}

TEST_F(Parts, linesComeInThreeFormsAndFillTheStorageTheyHave) {
    const auto fill = [](LineRenderer& lines) {
        const Points row = {
            {{1, 0, 0}, {}}, {{2, 0, 0}, {}}, {{3, 0, 0}, {}}, {{4, 0, 0}, {}}, {{5, 0, 0}, {}}};
        const std::vector<unsigned int> mesh = {4, 2, 0, 2};
        const std::size_t before = allocations;
        lines.addLines(row, mesh);
        lines.addLine(row[1], row[3]);
        lines.addLines(row);
        lines.addLines(row, mesh);
        return allocations - before;
    };
    LineRenderer lines;
    lines.draw(3); // nothing yet
    fill(lines);
    lines.draw(4);
    tell("points", lines.getNbPoints(), "indices", lines.getNbIndices());
    lines.clear();
    tell("points", lines.getNbPoints(), "indices", lines.getNbIndices());
    tell("allocations", fill(lines));
    tell(told(stage.drawings.back()));
    expectStory("Lines");
}

TEST_F(Parts, camerasLookFromTheirPlaces) {
    GLUCamera camera({1, 2, 10}, {0.5f, -1, -2}, {0, 1, 0.25f});
    camera.apply();
    camera.display();
    tell(camera.getPosition(), camera.getDirection(), camera.getUp());
    RotatingCamera around({7, 1, 6}, 5, 0.3f);
    for (const int updates : {1, 250, 50}) {
        for (int i = 0; i < updates; ++i) {
            around.update();
        }
        around.apply();
    }
    for (const int directions : {AD_UP, AD_DOWN, AD_LEFT, AD_RIGHT, AD_UPRIGHT, 15}) {
        TopDownCamera above({1, 2, 3}, 2.5f);
        above.update(directions);
        above.apply();
    }
    // In a line, once, across the wrap of the clock; outside its time it stays where it was seen last.
    LinearCamera move({0, 0, 0}, {10, 20, 30}, {1, 1, 1}, {3, 5, 7}, {0, 1, 0.5f}, 1000);
    EXPECT_EQ(move.getMsTime(), 1000U);
    tell("started by time 0:", move.update(0));
    for (const int time : {0, 500, 1001, -1, 1000}) {
        tell("at", time, move.update(static_cast<unsigned int>(time) - 0x100));
        move.apply();
    }
    expectStory("Cameras");
}

TEST_F(Parts, impulsorsTickForAFrame) {
    stage.now = 0xFFFFFFF0;
    Impulsor impulsor(100);
    std::string ticks;
    for (const Uint32 passed : {0, 100, 1, 0, 100, 3, 98, 2, 1, 500, 99, 1, 1}) {
        stage.now += passed;
        stage.drift = passed == 3 ? 3 : 0; // within a tick: the next interval begins at its end
        impulsor.update();
        ticks += impulsor.needImpulse() ? "!" : ".";
    }
    EXPECT_EQ(ticks, "..!..!..!!..!");
}

TEST_F(Parts, musicDoesWhatItIsToldAndSaysWhatFails) {
    {
        Music music;
        const auto ask = [&music] {
            tell(music.getMsLength(), "ms");
            tell("at", music.getMsPosition());
            tell("'" + std::string(std::unique_ptr<char[]>(music.getName()).get()) + "'");
        };
        ask();
        music.setMsPosition(5);
        for (const char* failing : {"FMOD_System_Create", "FMOD_System_Init", ""}) {
            stage.failing = failing;
            tell(music.create());
        }
        tell(music.loadFile("a"));
        music.play();
        music.setMsPosition(7);
        music.pause();
        music.play();
        music.update();
        music.stop();
        music.play();
        ask();
        stage.failing = "FMOD_Sound_GetName";
        ask();
        stage.failing = "FMOD_System_CreateStream";
        tell(music.loadFile("b"));
        tell(music.loadFile("c"));
    }
    expectStory("Music");
}

TEST_F(Parts, enginesStartTheLibrariesOfTheirFlagsOpenWindowsAndKeepThePace) {
    stage.failing = "GL_x";
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    unsetenv("SDL12COMPAT_OPENGL_SCALING");
    for (const EngineAPI flags :
         {EAPI_SDL, EAPI_SDL | EAPI_SDL_Mixer, EAPI_SDL_Mixer | EAPI_SDL_Image, EAPI_OpenGL}) {
        const Engine engine(flags, 4, 3, "a");
        tell(engine.getWindow()->getWidth(), engine.getWindow()->getHeight(), engine.checkExtension("GL_x"));
        for (const char* name : {"SDL_VIDEODRIVER", "SDL12COMPAT_OPENGL_SCALING"}) {
            const char* value = std::getenv(name);
            tell(name, value != nullptr ? value : "none");
            unsetenv(name);
        }
    }
    Window window(4, 3, "a", 0);
    window.clear();
    window.refresh();
    window.resize(8, 6);
    tell(window.getWidth(), window.getHeight());
    const GLWindow glWindow(4, 3, "b", false);
    stage.failing = "SDL_SetVideoMode";
    EXPECT_THROW(window.resize(1, 1), WindowCreationException);
    expectStory("Engines");
    stage.failing = "";
    Engine engine(EAPI_OpenGL, 1, 1, "");
    stage.now = 0xFFFFFFFA; // where the clock wraps
    for (const Uint32 work : {0U, 3U, 14U, 0U, 15U, 16U, 900U, 13U}) {
        stage.now += work;
        engine.waitFrame();
        tell("works", work, "time", engine.getTime());
    }
    keep("works|SDL_Delay");
    out();
    expectStory("Pace");
}

/// A controller that tells what it is asked and answers with its number.
struct Told : Input {
    explicit Told(int number) : number(number) {}
    ~Told() override { tell("gone", number); }
    int getDirectionsPressed() const override { return stage.note("directions", number) ? number : 0; }
    int getButtonsState() override { return stage.note("buttons", number) ? number : 0; }
    bool needEscape() override { return stage.note("escape", number) && number == 4; }
    void update() override { tell("update", number); }

    int number;
};

TEST_F(Parts, controllersAreAskedAllAndOwned) {
    {
        InputManager manager;
        const auto ask = [&manager] {
            manager.update();
            const int answers[] = {manager.getDirectionsPressed(), manager.getButtonsPressed(),
                                   manager.needEscape()};
            tell("directions", answers[0], "buttons", answers[1], "escape", answers[2]);
        };
        ask();
        manager.registerController(new SDL_Keyboard());
        for (int chord = 15; chord >= 0; --chord) { // of the arrows up, down, right and left
            for (int bit = 0; bit < 4; ++bit) {
                stage.keys[SDLK_UP + bit] = chord >> bit & 1;
            }
            ask();
        }
        for (const int key :
             {SDLK_q, SDLK_w, SDLK_a, SDLK_s, SDLK_z, SDLK_x, SDLK_KP_MINUS, SDLK_KP_PLUS, SDLK_ESCAPE}) {
            stage.keys[key] = 1;
            ask();
            stage.keys[key] = 0;
        }
        for (const int number : {1, 4, 12}) {
            manager.registerController(new Told(number));
        }
        ask();
        manager.deleteControllers();
        ask();
        manager.registerController(new Told(2));
    }
    keep("(?!SDL_P)");
    expectStory("Controllers");
}
} // namespace
