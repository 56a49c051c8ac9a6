// Engine, window and controllers.

#include "StandIns/Stage.h"
#include "Zentrik/Controllers/InputManager.h"
#include "Zentrik/Controllers/SDL_Keyboard.h"
#include "Zentrik/Engine.h"
#include "Zentrik/GLWindow.h"

namespace {
using testing::ElementsAre;

class Zentrik : public OnStage {};

TEST_F(Zentrik, engineStartsWhatItIsAskedFor) {
    stage().failing = {"SDL_Init", "glewInit"}; // the one is not looked at, the other not called
    { const Engine engine(EAPI_SDL | EAPI_SDL_Mixer | EAPI_SDL_Image, 80, 60, "Kavel"); }
    EXPECT_THAT(calls(),
                ElementsAre(call("SDL_Init", 0x30), call("SDL_SetVideoMode", 80, 60, 32, 0x80000002),
                            "SDL_WM_SetCaption Kavel -", "SDL_WM_SetCaption Kavel- (OpenGL) -", "SDL_Quit"));
    stage().failing = {};
    { const Engine engine(EAPI_OpenGL | EAPI_SDL_Mixer, 1, 1, ""); }
    EXPECT_THAT(calls(), testing::SizeIs(4));
    EXPECT_EQ(out(), "Zentrik initiliased\nZentrik closed\nZentrik initiliased\nZentrik closed\n");
}

TEST_F(Zentrik, engineHoldsThePaceAcrossTheWrapOfTheClock) {
    Engine engine(EAPI_SDL, 1, 1, "");
    engine.waitFrame();
    calls();
    for (const Uint32 start : {5000U, 0xFFFFFFFAU}) {
        stage().now = start;
        engine.waitFrame();
        calls();
        for (const Uint32 work : {3U, 14U, 0U, 15U, 900U}) {
            const Uint32 before = stage().now;
            stage().now += work;
            engine.waitFrame();
            EXPECT_EQ(stage().now - before, std::max(15U, work));
        }
        EXPECT_THAT(calls(), ElementsAre("SDL_Delay 12", "SDL_Delay 1", "SDL_Delay 15"));
    }
    EXPECT_EQ(engine.getTime(), stage().now);
}

TEST_F(Zentrik, windowsDrawAndResize) {
    Window soft(320, 200, "soft", 0);
    const GLWindow windowed(10, 20, "w", false);
    EXPECT_EQ(calls()[0], call("SDL_SetVideoMode", 320, 200, 32, 0x10));
    soft.resize(640, 400);
    EXPECT_EQ(soft.getWidth() * 10000 + soft.getHeight(), 6400400U);
    soft.clear();
    soft.refresh();
    EXPECT_THAT(calls(), ElementsAre(call("SDL_SetVideoMode", 640, 400, 32, 0x12), // the flags of the surface
                                     "SDL_FillRect whole 1000", "SDL_UpdateRect 0 0 0 0"));
    stage().failing = {"SDL_SetVideoMode"};
    EXPECT_THROW(soft.resize(1, 1), WindowCreationException);
}

/// A controller that tells its life.
struct Pad : Input {
    Pad(std::string& story, int state) : story(story), state(state) {}
    ~Pad() override { story += 'x'; }
    int getDirectionsPressed() const override { return state & 15; }
    int getButtonsState() override { return state; }
    bool needEscape() override { return !(story += 'e').empty() && state > 100; }
    void update() override { story += 'u'; }

    std::string& story;
    int state;
};

TEST_F(Zentrik, controllersAnswerAsOne) {
    std::string story;
    {
        InputManager manager;
        EXPECT_FALSE(manager.needEscape());
        manager.registerController(new Pad(story, 1));
        manager.registerController(nullptr);
        manager.deleteControllers();
        EXPECT_EQ(manager.getDirectionsPressed() + manager.getButtonsPressed(), 0);
        manager.registerController(new Pad(story, 129));
        manager.registerController(new Pad(story, 9));
        EXPECT_EQ(manager.getDirectionsPressed(), AD_LEFTUP);
        EXPECT_EQ(manager.getButtonsPressed(), 137);
        EXPECT_TRUE(manager.needEscape());
        manager.update();
    }
    EXPECT_EQ(story, "xeeuuxx");
}

TEST_F(Zentrik, keyboardIsAPad) {
    SDL_Keyboard keyboard;
    EXPECT_THAT(calls(), ElementsAre("SDL_PumpEvents"));
    const auto hold = [&](std::initializer_list<int> keys) {
        stage().keys = {};
        for (const int key : keys) {
            stage().keys[key] = 1;
        }
        keyboard.update();
    };
    // Up, down, right, left, by bits: what each of the sixteen chords means.
    const int MEANINGS[] = {0, 1, 4, 1, 2, 3, 6, 3, 8, 9, 12, 9, 8, 3, 6, 3};
    for (int chord = 0; chord < 16; ++chord) {
        hold({});
        for (int bit = 0; bit < 4; ++bit) {
            stage().keys[273 + bit] = chord >> bit & 1;
        }
        keyboard.update();
        EXPECT_EQ(keyboard.getDirectionsPressed(), MEANINGS[chord]) << chord;
    }
    const std::pair<int, int> BUTTONS[] = {{'q', 1},  {'w', 2},   {'a', 4},   {'s', 8},
                                           {'z', 64}, {'x', 128}, {270, 256}, {269, 512}};
    for (const auto& [key, bit] : BUTTONS) {
        hold({key});
        EXPECT_EQ(keyboard.getButtonsState(), bit);
    }
    hold({'q', 's'});
    EXPECT_EQ(keyboard.getButtonsState(), 9);
    hold({27});
    EXPECT_TRUE(keyboard.needEscape());
    stage().keys[27] = 0;
    EXPECT_TRUE(keyboard.needEscape()); // until the next update
    stage().keys[27] = 2;
    keyboard.update();
    EXPECT_FALSE(keyboard.needEscape());
    EXPECT_DEATH(keyboard.isKey(SDLK_LAST), "key");
}
} // namespace
