// What the show is built from, and what it answers to the mistakes of others.

#include "3D/Camera/LinearCamera.h"
#include "3D/Shader.h"
#include "StandIns/Stage.h"
#include "Utils/GLUtils.h"
#include "Utils/Settings.h"
#include "Widths.h"
#include "Zentrik/Controllers/InputManager.h"
#include "Zentrik/Controllers/SDL_Keyboard.h"
#include "Zentrik/Engine.h"

#include <cstdio>
#include <fstream>

namespace {
class Parts : public OnStage {
protected:
    ~Parts() override { std::remove(path.c_str()); }

    const std::string& file(const std::string& content) {
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }
    const std::string path = testing::TempDir() + "quelar." + std::to_string(getpid());
};

TEST_F(Parts, settingsArePairsOfWhichTheLastCounts) {
    const Settings settings(file("hres\n\n800 a x1 vres\t-3.5\r\nhres 1e3 b 3z hres=5 6 c"));
    std::string values;
    for (const char* name : {"hres", "vres", "hres=5", "HRES", "a", "b", "c"}) {
        values += text(settings.getSetting(name, 9)) + " ";
    }
    EXPECT_EQ(values, "1000 -3.5 6 9 9 9 9 ");
    EXPECT_EQ(err(), "The setting 'a' is not a number: 'x1'\nThe setting 'b' is not a number: '3z'\n"
                     "The setting 'c' has no value\n");
    for (const char* unreadable : {"none", "data"}) {
        EXPECT_EQ(Settings(unreadable).getSetting("seed", 42), 42);
        EXPECT_EQ(err(), "Fail to open the setting file\n");
    }
    EXPECT_EQ(Settings(file("\n\n")).getSetting("", 1), 1);
    EXPECT_EQ(err(), "");
}

TEST_F(Parts, errorsOfOpenGlHaveNames) {
    std::string words;
    for (const GLenum error : {0, 0x500, 0x501, 0x502, 0x503, 0x505}) {
        words.append(GLErrorException(error, "Draw").what()).append("; ");
    }
    EXPECT_EQ(
        words,
        "No error occured (so why this exception has been lunched in 'Draw'; Invalid enumerator in 'Draw'; "
        "Invalid value in 'Draw'; Invalid operation in 'Draw'; Unknown error in 'Draw'; Out of memory in "
        "'Draw'; ");
}

TEST_F(Parts, shadersSayWhatIsWrongWithTheirFiles) {
    { const Shader shader(file("text\xE9"), "/dev/null"); }
    EXPECT_EQ(story(), "shader text\xE9, shader ");
    for (const auto& [vertex, pixel, unreadable] :
         {std::tuple("/dev/null", "none", "none"), {"data", "/dev/null", "data"}}) {
        std::string said;
        try {
            const Shader shader(vertex, pixel);
        } catch (const ShaderException& exception) {
            said = exception.what();
        }
        EXPECT_EQ(said, "Fail to read shaders");
        EXPECT_EQ(err(), std::string("Erreur d'ouverture du fichier: '") + unreadable + "'\n");
    }
}

TEST_F(Parts, linesComeInThreeForms) {
    LineRenderer lines;
    const Points row = {{{1, 0, 0}, {}}, {{2, 0, 0}, {}}, {{3, 0, 0}, {}}};
    for (const bool again : {false, true}) {
        lines.addLines(row);
        lines.addLines(row, {2, 0, 0, 1});
        lines.addLine(row[1], row[2]);
        EXPECT_EQ(out(),
                  "Warning: You are trying to add a odd number to the LineRenderer (last point truncated)\n");
        std::string ends;
        const Points drawing = drawn([&] { lines.draw(4); })[0].points;
        for (const Point& point : drawing) {
            ends += text(point.position.x) + " ";
        }
        EXPECT_EQ(ends, "1 2 3 1 1 2 2 3 ") << again;
        lines.clear();
    }
}

TEST_F(Parts, movesGoInALineOnceAndStayWhereTheyWereSeenLast) {
    LinearCamera move({0, 0, 0}, {10, 20, 30}, {1, 1, 1}, {3, 5, 7}, {0, 1, 0.5f}, 1000);
    EXPECT_TRUE(move.update(0)); // is no start
    const std::tuple<unsigned int, bool, const char*> MOMENTS[] = {
        {0, true, "0 0 0 1 1 1 0 1 0.5"},
        {500, true, "5 10 15 2 3 4 0 1 0.5"},
        {1000, true, "10 20 30 3 5 7 0 1 0.5"},
        {250, true, "2.5 5 7.5 1.5 2 2.5 0 1 0.5"},
        {1001, false, "2.5 5 7.5 1.5 2 2.5 0 1 0.5"}};
    for (const auto& [ms, plays, seen] : MOMENTS) {
        EXPECT_EQ(move.update(ms - 0x100), plays); // across the wrap of the clock
        move.apply();
        EXPECT_EQ(text(view[0], view[1], view[2], view[3], view[4], view[5], view[6], view[7], view[8]),
                  seen);
    }
}

TEST_F(Parts, enginesPreferAPlainWindowButWhatTheUserWantsStays) {
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    unsetenv("SDL12COMPAT_OPENGL_SCALING");
    for (const char* driver : {"dummy", "x11"}) {
        { const Engine engine(EAPI_SDL | EAPI_SDL_Mixer, 4, 3, "a"); }
        EXPECT_EQ(stage.events.at(0), "SDL_Init 48");
        EXPECT_EQ(text(getenv("SDL_VIDEODRIVER"), getenv("SDL12COMPAT_OPENGL_SCALING")), text(driver, "0"));
        unsetenv("SDL_VIDEODRIVER");
    }
}

TEST_F(Parts, framesAreFifteenMillisecondsApartUnlessTheyAreLate) {
    Engine engine(EAPI_OpenGL, 1, 1, "");
    stage.now = 0xFFFFFFFA; // where the clock wraps
    engine.waitFrame();
    for (const auto& [work, wait] :
         {std::pair(3U, 12U), {14, 1}, {0, 15}, {15, 0}, {16, 0}, {900, 0}, {13, 2}}) {
        const Uint32 before = stage.now += work;
        engine.waitFrame();
        EXPECT_EQ(engine.getTime() - before, wait) << work;
    }
}

TEST_F(Parts, widthsGrowWithThePictureThoseOfWordsLess) {
    for (const auto& [height, line, stroke] :
         {std::tuple(240U, 4.0f, 8.0f), {480, 4, 8}, {1080, 9, 9.6f}, {1920, 16, 12.8f}}) {
        EXPECT_FLOAT_EQ(host::shownWidth(4, host::scaleOf(height)), line);
        EXPECT_FLOAT_EQ(host::shownWidth(8, host::scaleOf(height)), stroke);
    }
}

/// A controller that asks to leave, or does not.
struct Asking : Input {
    explicit Asking(bool leaves) : leaves(leaves) {}
    ~Asking() override { stage.note("gone"); }
    int getDirectionsPressed() const override { return leaves ? AD_UP : AD_LEFT; }
    int getButtonsState() override { return leaves ? INPUT_A : INPUT_L; }
    bool needEscape() override { return stage.note("asked") && leaves; }
    void update() override { stage.note("update"); }

    bool leaves;
};

TEST_F(Parts, anyControllerEndsTheShowAndAllAreAsked) {
    {
        InputManager manager;
        EXPECT_FALSE(manager.needEscape());
        manager.registerController(new Asking(true));
        manager.registerController(new Asking(false));
        manager.update();
        EXPECT_EQ(text(manager.needEscape(), manager.getDirectionsPressed(), manager.getButtonsPressed()),
                  "1 9 17");
    }
    EXPECT_EQ(story(), "update, update, asked, asked, gone, gone");
}
} // namespace
