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
#include <random>

namespace {
class Files : public OnStage {
protected:
    ~Files() override { std::remove(path.c_str()); }

    const std::string& file(const std::string& text) {
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }
    const std::string path = testing::TempDir() + "quelar." + std::to_string(getpid());
};
using SettingsFiles = Files;
using Shaders = Files;
using Vectors = OnStage;
using OpenGlErrors = OnStage;
using Textures = OnStage;
using RenderBuffers = OnStage;
using LineRenderers = OnStage;
using Cameras = OnStage;
using Impulsors = OnStage;
using MusicPlayers = OnStage;
using Engines = OnStage;
using Windows = OnStage;
using Keyboards = OnStage;
using InputManagers = OnStage;

TEST_F(SettingsFiles, arePairsOfWhichTheLastCountsAndBrokenOnesAreReported) {
    const Settings s(file("hres\n\n800 a x1 vres\t-3.5\r\nhres 1e3 b 3z hres=5 6 c"));
    const std::pair<const char*, float> VALUES[] = {
        {"hres", 1000}, {"vres", -3.5f}, {"hres=5", 6}, {"HRES", 9}, {"a", 9}, {"b", 9}, {"c", 9}};
    for (const auto& [name, value] : VALUES) {
        EXPECT_EQ(s.getSetting(name, 9), value) << name;
    }
    EXPECT_EQ(err(), "The setting 'a' is not a number: 'x1'\nThe setting 'b' is not a number: '3z'\n"
                     "The setting 'c' has no value\n");
    for (const std::string& unreadable : {std::string("none"), testing::TempDir()}) {
        EXPECT_EQ(Settings(unreadable).getSetting("seed", 42), 42);
        EXPECT_EQ(err(), "Fail to open the setting file\n");
    }
    EXPECT_EQ(Settings(file("\n\n")).getSetting("", 1), 1);
    EXPECT_EQ(err(), "");
}

TEST_F(SettingsFiles, ofAnyBytesEndAndHoldNumbers) {
    std::mt19937 random(1);
    const std::string some = std::string("se\t\n 0123456789eE+-.xinfanNaN\xE9") + '\0';
    for (int i = 0; i < 3000; ++i) {
        std::string text(random() % 40, ' ');
        std::generate(text.begin(), text.end(), [&] { return some[random() % some.size()]; });
        const float value = Settings(file(text + "\nseed 5")).getSetting("seed", 42);
        EXPECT_TRUE(value == 5 || value == 42) << text; // an odd token before it makes its name a value
    }
}

std::string told(const Vector3f& v) { return call(v.x, v.g, v.z); }
std::string told(const Colour4& v) { return call(v.r, v.y, v.b, v.w); }

TEST_F(Vectors, calculate) {
    const Vector3f v(1, 2.5f, -3);
    const Vector3f w(4, -6, 8);
    const Colour4 c(1, 2, 3, 4);
    const Colour4 d(5, 7, 11, 13);
    tell(v);
    tell(told(v + w), "and", told(v - w), "and", told(v * 2), "and", told(v.cross(w)), "and", v.dot(w));
    tell(told(c + d), "and", told(c - d), "and", told(c * 2), "and", c.dot(d));
    tell(told(Vector3f()), "and", told(Colour4()), "and", told(Colour4(v)), "and", told(Colour4(v, 7)));
    tell(told(MathUtils::lerp(c, d, 0.5f)), "and", told(MathUtils::lerp(v, w, 1.5f)));
    for (Vector3f n : {Vector3f(2, 3, 6), Vector3f()}) {
        n.normalise();
        tell(told(n));
    }
    for (Colour4 n : {Colour4(1, -1, 7, 7), Colour4(0, 0, 0, 0)}) {
        n.normalise();
        tell(told(n));
    }
    expectStory("Vectors");
    for (const auto& [degrees, radians] :
         {std::pair(180.0f, 3.1415927f), {90.0f, 1.5707964f}, {1.0f, 0.017453292f}, {-360.0f, -6.2831855f}}) {
        EXPECT_EQ(MathUtils::degToRan(degrees), radians);
    }
}

TEST_F(OpenGlErrors, areNamedOneByOne) {
    stage.errors = {0x500, 0x501, 0, 0x502, 0x505, 0x503, 0x504, 0x506};
    for (std::size_t i = 0; i < stage.errors.size() + 2; ++i) {
        try {
            GLUtils::checkError("Draw");
            tell("fine");
        } catch (const GLErrorException& exception) {
            tell(exception.what());
        }
    }
    tell(GLErrorException(0, "").what());
    expectStory("OpenGlErrors");
}

TEST_F(Textures, canBeOfOneColour) {
    glewInit(); // names begin anew
    const auto make = [] { const Texture texture(2, 1, Colour4(1, 0.5f, 0, 1.25f)); };
    make();
    expectStory("Textures");
    tellChecks(make);
    expectStory("Checks of Textures");
}

TEST_F(RenderBuffers, areStoredBoundAndAttached) {
    glewInit();
    const auto act = [] {
        FrameBuffer frame;
        RenderBuffer buffer;
        buffer.create(GL_RENDERBUFFER, GL_DEPTH_COMPONENT, 40, 30);
        buffer.bind(GL_RENDERBUFFER);
        RenderBuffer::unbind(GL_RENDERBUFFER);
        frame.attach(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, buffer);
        stage.failing = "glCheckFramebufferStatus";
        frame.validate(GL_FRAMEBUFFER);
    };
    act();
    expectStory("RenderBuffers");
    tellChecks(act);
    expectStory("Checks of RenderBuffers");
    stage.errors = {GL_INVALID_VALUE}; // which nobody comes to see
    stage.errorChecks = 0;
    stage.failing = "glGenRenderbuffers";
    EXPECT_THROW(RenderBuffer(), RenderBufferException);
    stage.failing = "glGenFramebuffers";
    EXPECT_THROW(FrameBuffer(), FrameBufferException);
    EXPECT_EQ(out(), "New RenderBuffer id: 0\nNew FrameBuffer id: 0\n");
}

TEST_F(Shaders, sayWhatIsWrongWithTheirFiles) {
    glewInit(); // names begin anew
    { const Shader shader(file("text\xE9"), path); }
    EXPECT_EQ(calls(" glShaderSource "), "glShaderSource 1 text\xE9; glShaderSource 2 text\xE9; ");
    { const Shader empty(file(""), path); }
    EXPECT_EQ(calls(" glShaderSource "), "glShaderSource 4 ; glShaderSource 5 ; ");
    for (const std::string& unreadable : {std::string("none"), testing::TempDir()}) {
        const std::string line = "Erreur d'ouverture du fichier: '" + unreadable + "'\n";
        for (const auto& [vertex, pixel, said] : {std::tuple(path, unreadable, line),
                                                  {unreadable, path, line},
                                                  {unreadable, unreadable, line + line}}) {
            EXPECT_THROW(Shader(vertex, pixel), ShaderException);
            EXPECT_EQ(err(), said);
        }
    }
    glewInit();
    stage.broken = {1, 2};
    EXPECT_THROW(Shader(path, path), ShaderCreationException);
    EXPECT_EQ(out(), "Fail to link the shader '" + path + "': log\n"); // of the first alone
    glewInit();
    stage.broken = {3};
    EXPECT_THROW(Shader(path, path), ShaderLoadingException);
    EXPECT_EQ(err(), "Erreur lors du liage du shader:\nlog");
}

TEST_F(LineRenderers, takeLinesInThreeFormsIntoTheStorageTheyHave) {
    const auto fill = [](LineRenderer& lines) {
        const std::vector<Point> row = {
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
    tell(lines.getNbPoints(), lines.getNbIndices());
    for (const Drawing& drawing : stage.drawings) {
        std::string ends = "Ends:";
        for (const Point& point : drawing.points) {
            ends += call("", point.position.x);
        }
        tell(ends);
    }
    expectStory("LineRenderers");
    lines.clear();
    EXPECT_EQ(lines.getNbPoints() + lines.getNbIndices(), 0U);
    EXPECT_EQ(fill(lines), 0U);
}

TEST_F(Cameras, lookFromTheirPlaces) {
    GLUCamera camera({1, 2, 10}, {0.5f, -1, -2}, {0, 1, 0.25f});
    camera.apply();
    camera.display();
    RotatingCamera around({7, 1, 6}, 5, 0.3f);
    around.update();
    around.apply();
    for (int i = 0; i < 300; ++i) {
        around.update();
    }
    EXPECT_NEAR(around.getPosition().z, 6, 1e-3);
    EXPECT_NEAR(around.getPosition().x, 2, 1e-3);
    tell(told(camera.getPosition()), "and", told(camera.getDirection()), "and", told(camera.getUp()));
    for (const int directions : {AD_UP, AD_DOWN, AD_LEFT, AD_RIGHT, AD_UPRIGHT, 15}) {
        TopDownCamera above({1, 2, 3}, 2.5f);
        above.update(directions);
        above.apply();
    }
    expectStory("Cameras");
}

TEST_F(Cameras, moveInALineOnceAndStayWhereTheyWereSeenLast) {
    LinearCamera camera({0, 0, 0}, {10, 20, 30}, {1, 1, 1}, {3, 5, 7}, {0, 1, 0.5f}, 1000);
    EXPECT_TRUE(camera.update(0)); // which starts nothing
    EXPECT_TRUE(camera.update(0xFFFFFF00));
    EXPECT_TRUE(camera.update(500 - 0x100)); // the clock wraps on the way
    EXPECT_FALSE(camera.update(1001 - 0x100));
    EXPECT_FALSE(camera.update(0xFFFFFEFF)); // before its start
    camera.apply();
    EXPECT_TRUE(camera.update(1000 - 0x100));
    camera.apply();
    EXPECT_EQ(calls(" gluLookAt "), "gluLookAt 5 10 15 2 3 4 0 1 0.5; gluLookAt 10 20 30 3 5 7 0 1 0.5; ");
    EXPECT_EQ(camera.getMsTime(), 1000U);
}

TEST_F(Impulsors, tickForAFrame) {
    stage.now = 0xFFFFFFF0;
    Impulsor impulsor(100);
    std::string ticks;
    for (const Uint32 passed : {0, 100, 1, 0, 100, 2, 500, 99}) {
        stage.now += passed;
        stage.drift = passed == 2 ? 3 : 0; // the next interval begins after the tick
        impulsor.update();
        ticks += impulsor.needImpulse() ? "!" : ".";
    }
    EXPECT_EQ(ticks, "..!..!!.");
    stage.now += 1;
    impulsor.update();
    EXPECT_FALSE(impulsor.needImpulse());
    stage.now += 1;
    impulsor.update();
    EXPECT_TRUE(impulsor.needImpulse());
}

TEST_F(MusicPlayers, doWhatTheyAreToldAndSayWhatFails) {
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
    expectStory("MusicPlayers");
}

TEST_F(Engines, holdThePaceAcrossTheWrapOfTheClock) {
    Engine engine(EAPI_SDL, 1, 1, "");
    for (const Uint32 start : {5000U, 0xFFFFFFFAU}) {
        stage.now = start;
        engine.waitFrame();
        for (const Uint32 work : {3U, 14U, 0U, 15U, 16U, 900U}) {
            const Uint32 before = stage.now;
            stage.now += work;
            engine.waitFrame();
            EXPECT_EQ(stage.now - before, std::max(15U, work));
            EXPECT_EQ(engine.getTime(), stage.now);
        }
    }
}

TEST_F(Engines, startTheLibrariesOfTheirFlags) {
    const auto tellVariables = [] {
        for (const char* name : {"SDL_VIDEODRIVER", "SDL12COMPAT_OPENGL_SCALING"}) {
            const char* value = std::getenv(name);
            tell(name, value != nullptr ? value : "none");
            unsetenv(name);
        }
    };
    stage.failing = "GL_x";
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    unsetenv("SDL12COMPAT_OPENGL_SCALING");
    for (const EngineAPI flags :
         {EAPI_SDL, EAPI_SDL | EAPI_SDL_Mixer, EAPI_SDL_Mixer | EAPI_SDL_Image, EAPI_OpenGL}) {
        tell("flags", flags);
        const Engine engine(flags, 4, 3, "a");
        tell(engine.getWindow()->getWidth(), engine.getWindow()->getHeight(), engine.checkExtension("GL_x"));
        tellVariables();
    }
    expectStory("Engines");
    stage.listening = false;
    const std::ptrdiff_t before = living;
    { const Engine engine(EAPI_SDL, 4, 3, "a"); }
    EXPECT_EQ(living, before);
}

TEST_F(Windows, areOpenedClearedShownAndResized) {
    Window window(4, 3, "a", 0);
    window.clear();
    window.refresh();
    window.resize(8, 6);
    tell(window.getWidth(), window.getHeight());
    const GLWindow glWindow(4, 3, "b", false);
    stage.failing = "SDL_SetVideoMode";
    try {
        window.resize(1, 1);
    } catch (const WindowCreationException& exception) {
        tell(exception.what());
    }
    expectStory("Windows");
}

TEST_F(Keyboards, arePads) {
    SDL_Keyboard keyboard;
    // Up, down, right, left, by bits: what each of the sixteen chords means.
    const int MEANINGS[] = {0, 1, 4, 1, 2, 3, 6, 3, 8, 9, 12, 9, 8, 3, 6, 3};
    for (int chord = 0; chord < 16; ++chord) {
        for (int bit = 0; bit < 4; ++bit) {
            stage.keys[273 + bit] = chord >> bit & 1;
        }
        EXPECT_EQ(keyboard.getDirectionsPressed(), MEANINGS[chord]) << chord;
    }
    int held = 0;
    for (const auto& [key, bit] :
         {std::pair(113, 1), {119, 2}, {97, 4}, {115, 8}, {122, 64}, {120, 128}, {269, 512}, {270, 256}}) {
        stage.keys[key] = 1;
        EXPECT_EQ(keyboard.getButtonsState(), held += bit);
        EXPECT_EQ(keyboard.isKey(key), 1);
    }
    EXPECT_FALSE(keyboard.needEscape());
    stage.keys[27] = 1;
    EXPECT_TRUE(keyboard.needEscape());
    keyboard.update();
    EXPECT_EQ(stage.calls.size(), 4U); // as much as in the beginning
}

/// A controller that tells what it is asked and answers with its number.
class Told : public Input {
public:
    explicit Told(int number) : number(number) {}
    ~Told() override { stage.note("gone", number); }

    int getDirectionsPressed() const override { return stage.note("directions", number) ? number : 0; }
    int getButtonsState() override { return stage.note("buttons", number) ? number : 0; }
    bool needEscape() override { return stage.note("escape", number) && number == 4; }
    void update() override { stage.note("update", number); }

private:
    int number;
};

TEST_F(InputManagers, askAllAndOwnThem) {
    {
        InputManager manager;
        const auto ask = [&manager] {
            manager.update();
            tell(manager.getDirectionsPressed());
            tell(manager.getButtonsPressed());
            tell(manager.needEscape());
        };
        ask();
        manager.registerController(new Told(1));
        ask();
        manager.registerController(new Told(4));
        manager.registerController(new Told(8));
        ask();
        manager.deleteControllers();
        ask();
        manager.registerController(new Told(2));
    }
    expectStory("InputManagers");
}
} // namespace
