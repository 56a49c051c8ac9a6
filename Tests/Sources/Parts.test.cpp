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

#include <fmod_errors.h>

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

std::string told(const Vector3f& v) { return call("", v.x, v.g, v.z); }
std::string told(const Colour4& v) { return call("", v.r, v.y, v.b, v.w); }

TEST_F(Vectors, calculate) {
    Vector3f v(1, 2.5f, -3);
    const Vector3f w(4, -6, 8);
    Colour4 c(1, 2, 3, 4);
    const Colour4 d(5, 7, 11, 13);
    EXPECT_EQ(call("", v), " X: 1 Y: 2.5 Z: -3");
    EXPECT_EQ(told(v + w) + told(v - w) + told(v * 2), " 5 -3.5 5 -3 8.5 -11 2 5 -6");
    EXPECT_EQ(told(v.cross(w)) + call("", v.dot(w)), " 2 -20 -16 -35");
    EXPECT_EQ(told(c + d) + told(c - d) + told(c * 2), " 6 9 14 17 -4 -5 -8 -9 2 4 6 8");
    EXPECT_EQ(c.dot(d), 104);
    EXPECT_EQ(told(Vector3f()) + told(Colour4()), " 0 0 0 0 0 0 1");
    EXPECT_EQ(told(Colour4(v)) + told(Colour4(v, 7)), " 1 2.5 -3 1 1 2.5 -3 7");
    EXPECT_EQ(told(MathUtils::lerp(c, d, 0.5f)) + told(MathUtils::lerp(v, w, 1.5f)),
              " 3 4.5 7 8.5 5.5 -10.25 13.5");
    v = Vector3f(2, 3, 6);
    v.normalise();
    c = Colour4(1, -1, 7, 7);
    c.normalise();
    EXPECT_EQ(told(v) + told(c), " 0.285714 0.428571 0.857143 0.1 -0.1 0.7 0.7");
    v = Vector3f();
    v.normalise();
    c = Colour4(0, 0, 0, 0);
    c.normalise();
    EXPECT_EQ(told(v) + told(c), " 0 0 0 0 0 0 0");
    for (const auto& [degrees, radians] :
         {std::pair(180.0f, 3.1415927f), {90.0f, 1.5707964f}, {1.0f, 0.017453292f}, {-360.0f, -6.2831855f}}) {
        EXPECT_EQ(MathUtils::degToRan(degrees), radians);
    }
}

TEST_F(OpenGlErrors, areNamedOneByOne) {
    stage.errors = {0x500, 0x501, 0, 0x502, 0x505, 0x503, 0x504, 0x506};
    std::string said;
    for (std::size_t i = 0; i < stage.errors.size() + 2; ++i) {
        try {
            GLUtils::checkError("Draw");
            said += "fine;";
        } catch (const GLErrorException& exception) {
            said += std::string(exception.what()) + ";";
        }
    }
    EXPECT_EQ(said, "Invalid enumerator in 'Draw';Invalid value in 'Draw';fine;Invalid operation in 'Draw';"
                    "Out of memory in 'Draw';Unknown error in 'Draw';Unknown error in 'Draw';"
                    "Unknown error in 'Draw';fine;fine;");
    EXPECT_EQ(std::string(GLErrorException(0, "").what()),
              "No error occured (so why this exception has been lunched in ''");
}

TEST_F(Textures, canBeOfOneColour) {
    const auto make = [] { Texture(2, 1, Colour4(1, 0.5f, 0, 1.25f)); };
    make();
    EXPECT_THAT(out(), testing::MatchesRegex("GL Texture ID created: [0-9]+\n"));
    EXPECT_THAT(calls(" TexImage2D TexParameterf BindTexture "),
                testing::MatchesRegex("BindTexture TEXTURE_2D [0-9]+; TexParameterf TEXTURE_2D MIN_FILTER "
                                      "LINEAR; TexImage2D TEXTURE_2D 0 4 2 1 0 RGBA UNSIGNED_BYTE 255 127 0 "
                                      "62 255 127 0 62; BindTexture TEXTURE_2D 0; "));
    EXPECT_EQ(checks(make),
              "glGenTextures'glBindTexture'glTexParameterf'glTexImage2D'glBindTexture (unbind)'");
}

TEST_F(RenderBuffers, areStoredBoundAndAttached) {
    glewInit(); // names begin anew
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
    EXPECT_EQ(out() + err(), "New FrameBuffer id: 1\nFrameBuffer created\nNew RenderBuffer id: 2\n"
                             "RenderBuffer created\ndeleted created\nFrameBuffer '1' deleted\n"
                             "Fail to validate the FBO\n");
    EXPECT_EQ(calls(),
              "glewInit; GenFramebuffers; GenRenderbuffers; BindRenderbuffer RENDERBUFFER 2; "
              "RenderbufferStorage RENDERBUFFER DEPTH 40 30; BindRenderbuffer RENDERBUFFER 0; "
              "BindRenderbuffer RENDERBUFFER 2; BindRenderbuffer RENDERBUFFER 0; BindFramebuffer FRAMEBUFFER "
              "1; FramebufferRenderbuffer FRAMEBUFFER COLOR0 RENDERBUFFER 2; BindFramebuffer FRAMEBUFFER 0; "
              "CheckFramebufferStatus FRAMEBUFFER; DeleteRenderbuffersEXT 2; DeleteFramebuffers 1; ");
    EXPECT_EQ(checks(act), "glGenFrameBuffers'glGenRenderbuffers'glRenderbufferStorage'glBindRenderbuffer'"
                           "glBindFrameBuffer'glFramebufferRenderbuffer'glBindFrameBuffer (unbind)'");
    out();
    stage.errors = {GL_INVALID_VALUE};
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
    EXPECT_EQ(calls(" ShaderSource "), "ShaderSource 1 text\xE9; ShaderSource 2 text\xE9; ");
    { const Shader empty(file(""), path); }
    EXPECT_EQ(calls(" ShaderSource "), "ShaderSource 4; ShaderSource 5; ");
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
    EXPECT_EQ(out(),
              "Warning: You are trying to add a odd number to the LineRenderer (last point truncated)\n");
    EXPECT_EQ(call("", lines.getNbPoints(), lines.getNbIndices()), " 16 14");
    std::string ends = call("", stage.drawings.at(0).points.size());
    for (const Point& point : stage.drawings.at(1).points) {
        ends += call("", point.position.x);
    }
    EXPECT_EQ(ends, " 0 5 3 1 3 2 4 1 2 3 4 5 3 1 3");
    EXPECT_EQ(stage.size, 4);
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
    around.apply();
    EXPECT_EQ(calls(), "LoadIdentity; gluLookAt 1 2 10 1.5 1 8 0 1 0.25; "
                       "LoadIdentity; gluLookAt 7 5 1 7 1 6 0 1 0; LoadIdentity; gluLookAt 2 5 " +
                           call("", around.getPosition().z).substr(1) + " 7 1 6 0 1 0; ");
    EXPECT_NEAR(around.getPosition().z, 6, 1e-3);
    EXPECT_EQ(out(), "Position: X: 1 Y: 2 Z: 10\nDirection: X: 0.5 Y: -1 Z: -2\nUp: X: 0 Y: 1 Z: 0.25\n");
    EXPECT_EQ(told(camera.getPosition()) + told(camera.getDirection()) + told(camera.getUp()),
              " 1 2 10 0.5 -1 -2 0 1 0.25");
    for (const auto& [directions, where] : {std::pair(AD_UP, " 3.5 2 3"),
                                            {AD_DOWN, " -1.5 2 3"},
                                            {AD_LEFT, " 1 2 0.5"},
                                            {AD_RIGHT, " 1 2 5.5"},
                                            {AD_UPRIGHT, " 3.5 2 5.5"},
                                            {15, " 1 2 3"}}) {
        TopDownCamera above({1, 2, 3}, 2.5f);
        above.update(directions);
        EXPECT_EQ(told(above.getPosition()), where);
        EXPECT_EQ(told(above.getDirection()) + told(above.getUp()), " 0 -1 0 1 0 0");
    }
}

TEST_F(Cameras, moveInALineOnceAndStayWhereTheyWereSeenLast) {
    LinearCamera camera({0, 0, 0}, {10, 20, 30}, {1, 1, 1}, {3, 5, 7}, {0, 1, 0.5f}, 1000);
    EXPECT_TRUE(camera.update(0)); // which starts nothing
    EXPECT_TRUE(camera.update(0xFFFFFF00));
    EXPECT_TRUE(camera.update(500 - 0x100)); // the clock wraps on the way
    EXPECT_FALSE(camera.update(1001 - 0x100));
    EXPECT_FALSE(camera.update(0xFFFFFEFF)); // before its start
    camera.apply();
    EXPECT_EQ(calls(), "LoadIdentity; gluLookAt 5 10 15 2 3 4 0 1 0.5; ");
    EXPECT_TRUE(camera.update(1000 - 0x100));
    EXPECT_EQ(told(camera.getPosition()) + told(camera.getDirection()), " 10 20 30 3 5 7");
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
    Music music;
    const std::string noTrack = std::string(FMOD_ErrorString(FMOD_ERR_HANDLE)) + "\n";
    const std::string noMemory = std::string(FMOD_ErrorString(FMOD_ERR_MEMORY)) + "\n";
    const auto name = [&music] { return std::string(std::unique_ptr<char[]>(music.getName()).get()); };
    EXPECT_EQ(music.getMsLength() + music.getMsPosition(), 0U);
    EXPECT_EQ(name(), "");
    music.setMsPosition(5);
    EXPECT_EQ(err(), noTrack + noTrack + noTrack + noTrack);
    stage.failing = "FMOD_System_Create";
    EXPECT_FALSE(music.create());
    stage.failing = "FMOD_System_Init";
    EXPECT_FALSE(music.create());
    stage.failing = "";
    EXPECT_TRUE(music.create());
    EXPECT_TRUE(music.loadFile("a"));
    EXPECT_EQ(err(), noMemory + noMemory);
    calls();
    music.play();
    music.setMsPosition(7);
    music.pause();
    music.play();
    music.update();
    music.stop();
    music.play();
    EXPECT_EQ(music.getMsLength(), 103000U);
    EXPECT_EQ(music.getMsPosition(), 7U);
    EXPECT_EQ(name(), "Quelar");
    EXPECT_EQ(calls(),
              "FMOD_Channel_GetPaused 0; FMOD_System_PlaySound 1 -1 0; FMOD_Channel_SetLoopCount 1 -1; "
              "FMOD_Channel_SetPosition 1 1; FMOD_Channel_SetPaused 1 1; FMOD_Channel_GetPaused 1; "
              "FMOD_Channel_SetPaused 1 0; FMOD_System_Update 1; FMOD_Channel_Stop 1; FMOD_Channel_GetPaused "
              "1; FMOD_System_PlaySound 1 -1 0; FMOD_Channel_SetLoopCount 1 -1; FMOD_Sound_GetLength 1 1; "
              "FMOD_Channel_GetPosition 1 1; FMOD_Sound_GetName 1 50; ");
    stage.failing = "FMOD_Sound_GetName";
    EXPECT_EQ(name(), "");
    stage.failing = "FMOD_System_CreateStream";
    EXPECT_FALSE(music.loadFile("b"));
    EXPECT_EQ(err(), noMemory + noMemory);
    music.loadFile("c");
    EXPECT_EQ(calls(" FMOD_Sound_Release FMOD_System_CreateStream "),
              "FMOD_Sound_Release 1; FMOD_System_CreateStream 1 b 147785 1; FMOD_Sound_Release 0; "
              "FMOD_System_CreateStream 1 c 147785 1; ");
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
    const auto variables = [] {
        std::string all;
        for (const char* name : {"SDL_VIDEODRIVER", "SDL12COMPAT_OPENGL_SCALING"}) {
            const char* value = std::getenv(name);
            all += std::string(value != nullptr ? value : "none") + " ";
            unsetenv(name);
        }
        return all;
    };
    variables();
    const std::string window =
        "SDL_SetVideoMode 4 3 32 2147483650; SDL_WM_SetCaption a; SDL_WM_SetCaption a- "
        "(OpenGL); ";
    const std::tuple<EngineAPI, std::string, const char*> CASES[] = {
        {EAPI_SDL, "SDL_Init 32; " + window + "SDL_Quit; ", "x11 0 "},
        {EAPI_SDL | EAPI_SDL_Mixer, "SDL_Init 48; " + window + "SDL_Quit; ", "x11 0 "},
        {EAPI_SDL_Mixer | EAPI_SDL_Image, window, "none none "},
        {EAPI_OpenGL, window + "glewInit; ", "none none "}};
    for (const auto& [flags, story, environment] : CASES) {
        const std::ptrdiff_t before = living;
        stage.listening = false;
        Engine(flags, 4, 3, "a");
        EXPECT_EQ(living, before);
        stage.listening = true;
        variables();
        EXPECT_EQ(Engine(flags, 4, 3, "a").getWindow()->getHeight(), 3U);
        EXPECT_EQ(calls(), story);
        EXPECT_EQ(variables(), environment);
    }
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    Engine(EAPI_SDL, 4, 3, "a");
    EXPECT_EQ(variables(), "dummy 0 ");
}

TEST_F(Windows, areOpenedClearedShownAndResized) {
    Window window(4, 3, "a", 0);
    window.clear();
    window.refresh();
    window.resize(8, 6);
    EXPECT_EQ(call("", window.getWidth(), window.getHeight()), " 8 6");
    GLWindow(4, 3, "b", false);
    EXPECT_EQ(calls(),
              "SDL_SetVideoMode 4 3 32 16; SDL_WM_SetCaption a; SDL_FillRect 4 1 0; SDL_UpdateRect 4 "
              "0 0 0 0; SDL_SetVideoMode 8 6 32 16; SDL_SetVideoMode 4 3 32 18; SDL_WM_SetCaption b; "
              "SDL_WM_SetCaption b- (OpenGL); ");
    stage.failing = "SDL_SetVideoMode";
    try {
        window.resize(1, 1);
        ADD_FAILURE();
    } catch (const WindowCreationException& exception) {
        EXPECT_STREQ(exception.what(), "Fail to resize");
    }
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
    calls();
    keyboard.update();
    EXPECT_EQ(calls(), "SDL_PumpEvents; SDL_GetKeyState; ");
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
    calls();
    const std::ptrdiff_t before = living;
    {
        InputManager manager;
        EXPECT_EQ(manager.getDirectionsPressed() + manager.getButtonsPressed() + manager.needEscape(), 0);
        manager.registerController(new Told(1));
        EXPECT_FALSE(manager.needEscape());
        manager.registerController(new Told(4));
        manager.registerController(new Told(8));
        manager.update();
        EXPECT_EQ(manager.getDirectionsPressed(), 13);
        EXPECT_EQ(manager.getButtonsPressed(), 13);
        EXPECT_TRUE(manager.needEscape());
        manager.deleteControllers();
        EXPECT_FALSE(manager.needEscape());
        manager.registerController(new Told(2));
    }
    EXPECT_EQ(calls(), "escape 1; update 1; update 4; update 8; directions 1; directions 4; directions 8; "
                       "buttons 1; buttons 4; buttons 8; escape 1; escape 4; escape 8; "
                       "gone 1; gone 4; gone 8; gone 2; ");
    EXPECT_EQ(living, before);
}
} // namespace
