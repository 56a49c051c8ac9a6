// Settings, shaders, engine, keyboard and camera, where the whole show does not lead.

#include "3D/Camera/LinearCamera.h"
#include "3D/Shader.h"
#include "StandIns/Stage.h"
#include "Utils/Settings.h"
#include "Zentrik/Controllers/SDL_Keyboard.h"
#include "Zentrik/Engine.h"

#include <cstdio>
#include <fstream>
#include <random>

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

TEST_F(Parts, settingsArePairsOfWhichTheLastCountsAndBrokenOnesAreReported) {
    const Settings s(file("hres\n\n800 a x1 vres\t-3.5\r\nhres 1e3 b 3z hres=5 6 c"));
    const std::pair<const char*, float> VALUES[] = {
        {"hres", 1000}, {"vres", -3.5f}, {"hres=5", 6}, {"HRES", 9}, {"a", 9}, {"b", 9}, {"c", 9}};
    for (const auto& [name, value] : VALUES) {
        EXPECT_EQ(s.getSetting(name, 9), value) << name;
    }
    EXPECT_EQ(err(), "The setting 'a' is not a number: 'x1'\nThe setting 'b' is not a number: '3z'\n"
                     "The setting 'c' has no value\n");
}

TEST_F(Parts, settingsOfAnyBytesEndAndHoldNumbers) {
    std::mt19937 random(1);
    const std::string some = std::string("se\t\n 0123456789eE+-.xinfanNaN\xE9") + '\0';
    for (int i = 0; i < 3000; ++i) {
        std::string text(random() % 40, ' ');
        std::generate(text.begin(), text.end(), [&] { return some[random() % some.size()]; });
        const float value = Settings(file(text + "\nseed 5")).getSetting("seed", 42);
        EXPECT_TRUE(value == 5 || value == 42) << text; // an odd token before it makes its name a value
    }
}

TEST_F(Parts, shadersNeedTheirFiles) {
    { const Shader shader(file("text\xE9"), path); }
    EXPECT_THAT(calls(), testing::IsSupersetOf({"glShaderSource 1 text\xE9", "glShaderSource 2 text\xE9"}));
    for (const std::string& unreadable : {std::string("none"), testing::TempDir()}) {
        EXPECT_THROW(Shader(path, unreadable), ShaderException);
        EXPECT_THAT(err(), testing::EndsWith("Erreur d'ouverture du fichier: '" + unreadable + "'\n"));
    }
}

TEST_F(Parts, engineHoldsThePaceAcrossTheWrapOfTheClock) {
    Engine engine(EAPI_SDL, 1, 1, "");
    for (const Uint32 start : {5000U, 0xFFFFFFFAU}) {
        stage.now = start;
        engine.waitFrame();
        for (const Uint32 work : {3U, 14U, 0U, 15U, 16U, 900U}) {
            const Uint32 before = stage.now;
            stage.now += work;
            engine.waitFrame();
            EXPECT_EQ(stage.now - before, std::max(15U, work));
        }
    }
}

TEST_F(Parts, keyboardIsAPad) {
    SDL_Keyboard keyboard;
    // Up, down, right, left, by bits: what each of the sixteen chords means.
    const int MEANINGS[] = {0, 1, 4, 1, 2, 3, 6, 3, 8, 9, 12, 9, 8, 3, 6, 3};
    for (int chord = 0; chord < 16; ++chord) {
        for (int bit = 0; bit < 4; ++bit) {
            stage.keys[273 + bit] = chord >> bit & 1;
        }
        keyboard.update();
        EXPECT_EQ(keyboard.getDirectionsPressed(), MEANINGS[chord]) << chord;
    }
    stage.keys['q'] = stage.keys['s'] = stage.keys['x'] = 1;
    EXPECT_EQ(keyboard.getButtonsState(), 137);
    stage.keys[27] = 1;
    EXPECT_TRUE(keyboard.needEscape());
}

TEST_F(Parts, linearMoveRunsOnceAndStaysWhereItWasSeenLast) {
    LinearCamera camera({0, 0, 0}, {10, 20, 30}, {1, 1, 1}, {3, 5, 7}, {0, 1, 0}, 1000);
    EXPECT_TRUE(camera.update(0xFFFFFF00));
    EXPECT_TRUE(camera.update(500 - 0x100)); // the clock wraps on the way
    EXPECT_FALSE(camera.update(1001 - 0x100));
    EXPECT_FALSE(camera.update(0xFFFFFEFF)); // before its start
    EXPECT_EQ(camera.getPosition().z, 15);
    EXPECT_TRUE(camera.update(1000 - 0x100) && camera.getPosition().z == 30);
}
} // namespace
