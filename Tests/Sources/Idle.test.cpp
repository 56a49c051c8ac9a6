// What the show does not use, or nobody sees.

#include "3D/Camera/RotatingCamera.h"
#include "3D/Camera/TopDownCamera.h"
#include "3D/FrameBuffer.h"
#include "3D/Texture.h"
#include "Music/Impulsor.h"
#include "Music/Music.h"
#include "Objects/Grid.h"
#include "Objects/Scroller.h"
#include "Objects/Star.h"
#include "StandIns/Stage.h"
#include "Zentrik/Controllers/InputManager.h"
#include "Zentrik/Controllers/SDL_Keyboard.h"

#include <memory>

namespace {
using Idle = OnStage;

TEST_F(Idle, looksAlongAroundAndDown) {
    std::string seen;
    const auto look = [&seen](Camera& camera) {
        camera.apply();
        seen += text(view[0], view[1], view[2], "at", view[3], view[4], view[5]) + "; ";
    };
    GLUCamera along({1, 2, 10}, {0.5f, -1, -2}, {0, 1, 0.25f});
    look(along);
    RotatingCamera around({7, 1, 6}, 5, 90);
    for (int update = 0; update < 2; ++update) {
        around.update();
        look(around);
    }
    for (const int directions : {AD_UP, AD_DOWNLEFT, AD_RIGHT}) {
        TopDownCamera above({1, 2, 3}, 2.5f);
        above.update(directions);
        look(above);
    }
    EXPECT_EQ(seen, "1 2 10 at 1.5 1 8; 7 5 1 at 7 1 6; 2 5 6 at 7 1 6; "
                    "3.5 2 3 at 3.5 1 3; -1.5 2 0.5 at -1.5 1 0.5; 1 2 5.5 at 1 1 5.5; ");
    along.display();
    EXPECT_EQ(out(), "Position: X: 1 Y: 2 Z: 10\nDirection: X: 0.5 Y: -1 Z: -2\nUp: X: 0 Y: 1 Z: 0.25\n");
}

TEST_F(Idle, hasTexturesOfOneColourAndRenderBuffers) {
    {
        const Texture texture(2, 1, Colour4(1, 0.5f, 0, 0.25f));
        FrameBuffer frame;
        RenderBuffer buffer;
        buffer.create(GL_RENDERBUFFER, GL_DEPTH_COMPONENT, 40, 30);
        frame.attach(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, buffer);
    }
    EXPECT_EQ(story(), std::string("texture of 2 1 \xFF\x7F\0?\xFF\x7F\0?", 23));
    EXPECT_EQ(out(),
              "GL Texture ID created: 1\nNew FrameBuffer id: 2\nFrameBuffer created\n"
              "New RenderBuffer id: 3\nRenderBuffer created\ndeleted created\nFrameBuffer '2' deleted\n");
    stage.failing = "glGenRenderbuffers";
    EXPECT_THROW(RenderBuffer(), RenderBufferException);
}

TEST_F(Idle, ticksForAFrame) {
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

TEST_F(Idle, scrollsTurnsAndHeapsUp) {
    Font font(Colour4(1, 1, 1, 1));
    std::string seen; // letters within 40 units of the middle; far away it comes back from the other side
    for (const float z : {43.0f, -37.0f, 199.99f, 39.9f}) {
        Scroller scroller(&font, {3, 1, z}, "iiii i");
        scroller.update();
        seen += text(drawn([&] { scroller.draw(0.5f); }).size()) + " ";
    }
    EXPECT_EQ(seen, "2 3 0 5 ");
    Star star({1, 2, 3}, {89.9f, 0, 0}, {0.1f, 0.2f, 0.3f});
    star.update();
    EXPECT_EQ(text(drawn([&] { star.draw(); })[0].points.at(5).position), "2 1.67 3.66");
    Grid grid(20, 20, 1);
    grid.makeElevation(10, 5, 20, 0);
    grid.makeElevation(0, 19, 3, 0);
    std::string heights; // at its top and around, and at an edge
    for (const int point : {110, 130, 108, 91, 210, 230, 380, 360, 340}) {
        heights += text(grid.getPoints()[point].position.y) + " ";
    }
    EXPECT_EQ(heights, "20 10 19 14 10 0 3 3 2 ");
    grid.clearColour(Colour3(0.1f, 0.2f, 0.3f));
    EXPECT_EQ(text(grid.getPoints()[7].colour), "0.1 0.2 0.3 1");
}

TEST_F(Idle, pausesJumpsAndHasATitle) {
    Music music;
    const auto title = [&music] { return std::string(std::unique_ptr<char[]>(music.getName()).get()); };
    EXPECT_EQ(text(music.getMsLength(), music.getMsPosition(), title()), "0 0 ");
    EXPECT_TRUE(music.create() && music.loadFile("a"));
    music.play();
    music.pause();
    music.play(); // goes on, and does not begin again
    music.setMsPosition(7);
    EXPECT_EQ(text(stage.paused, music.getMsLength(), music.getMsPosition(), title()), "0 9 7 Quelar");
    EXPECT_EQ(std::count(stage.events.begin(), stage.events.end(), "FMOD_System_PlaySound"), 1);
    stage.failing = "FMOD_Sound_GetName";
    EXPECT_EQ(title(), "");
    stage.failing = "FMOD_System_CreateStream";
    EXPECT_FALSE(music.loadFile("b"));
    EXPECT_EQ(music.getMsLength(), 0U);
}

TEST_F(Idle, keysAreDirectionsAndButtons) {
    SDL_Keyboard keyboard;
    std::string pressed;
    for (int chord = 0; chord < 16; ++chord) { // of up, down, right and left
        for (int bit = 0; bit < 4; ++bit) {
            stage.keys[SDLK_UP + bit] = chord >> bit & 1;
        }
        pressed += text(keyboard.getDirectionsPressed()) + " ";
    }
    for (const int key : {SDLK_q, SDLK_w, SDLK_a, SDLK_s, SDLK_z, SDLK_x, SDLK_KP_MINUS, SDLK_KP_PLUS}) {
        stage.keys[key] = 1;
        pressed += text(keyboard.getButtonsState()) + " ";
        stage.keys[key] = 0;
    }
    EXPECT_EQ(pressed, "0 1 4 1 2 3 6 3 8 9 12 9 8 3 6 3 1 2 4 8 64 128 512 256 ");
}
} // namespace
