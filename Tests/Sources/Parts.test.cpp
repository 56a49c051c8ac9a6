// What the show is built from, and what it answers to the mistakes of others.

#include "3D/Camera/LinearCamera.h"
#include "StandIns/Stage.h"
#include "Utils/Settings.h"
#include "Widths.h"
#include "Zentrik/Controllers/InputManager.h"
#include "Zentrik/Controllers/Signals.h"
#include "Zentrik/Engine.h"

#include <cstdio>
#include <fstream>

namespace {
using Parts = OnStage;

TEST_F(Parts, settingsArePairsOfWhichTheLastCounts) {
    const std::string path = testing::TempDir() + "settings." + std::to_string(getpid());
    std::ofstream(path) << "hres\n\n800 a x1 vres\t-3.5\r\nhres 1e3 b 3z c";
    const Settings settings(path);
    std::remove(path.c_str());
    std::string values;
    for (const char* name : {"hres", "vres", "HRES", "a", "b", "c"}) {
        values += text(settings.getSetting(name, 9)) + " ";
    }
    EXPECT_EQ(values, "1000 -3.5 9 9 9 9 ");
    EXPECT_EQ(err(), "The setting 'a' is not a number: 'x1'\nThe setting 'b' is not a number: '3z'\n"
                     "The setting 'c' has no value\n");
}

TEST_F(Parts, movesGoInALineOnceAndStayWhereTheyWereSeenLast) {
    LinearCamera move({0, 0, 0}, {10, 20, 30}, {1, 1, 1}, {3, 5, 7}, {0, 1, 0}, 1000);
    EXPECT_TRUE(move.update(0)); // is no start
    const std::tuple<unsigned int, bool, const char*, const char*> MOMENTS[] = {
        {0, true, "0 0 0", "1 1 1"},
        {1000, true, "10 20 30", "3 5 7"},
        {250, true, "2.5 5 7.5", "1.5 2 2.5"},
        {1001, false, "2.5 5 7.5", "1.5 2 2.5"}};
    for (const auto& [ms, plays, eye, look] : MOMENTS) {
        EXPECT_EQ(move.update(ms - 0x100), plays) << "across the wrap of the clock";
        move.apply();
        EXPECT_EQ(text(view[0], view[1], view[2]), eye);
        EXPECT_EQ(text(view[3], view[4], view[5]), look);
    }
}

TEST_F(Parts, enginesPreferAPlainWindowButWhatTheUserWantsStays) {
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    unsetenv("SDL12COMPAT_OPENGL_SCALING");
    const Engine engine(EAPI_SDL, 4, 3, "a");
    EXPECT_STREQ(getenv("SDL_VIDEODRIVER"), "dummy");
    EXPECT_STREQ(getenv("SDL12COMPAT_OPENGL_SCALING"), "0");
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

/// A controller that asks to leave if it is the first that is asked.
struct Asking : Signals {
    bool needEscape() override { return ++asked == 1; }

    static inline int asked = 0;
};

TEST_F(Parts, anyControllerEndsTheShowAndAllAreAsked) {
    Asking::asked = 0;
    InputManager manager;
    manager.registerController(new Asking());
    manager.registerController(new Asking());
    EXPECT_TRUE(manager.needEscape());
    EXPECT_EQ(Asking::asked, 2);
}
} // namespace
