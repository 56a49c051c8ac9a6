// What the show does not use.

#include "3D/Camera/RotatingCamera.h"
#include "3D/Camera/TopDownCamera.h"
#include "3D/FrameBuffer.h"
#include "3D/Texture.h"
#include "Music/Impulsor.h"
#include "Music/Music.h"
#include "Objects/Scroller.h"
#include "Objects/Star.h"
#include "StandIns/Stage.h"
#include "Zentrik/Controllers/InputManager.h"
#include "Zentrik/Controllers/SDL_Keyboard.h"

#include <memory>

namespace {
using Idle = OnStage;

TEST_F(Idle, doesWhatItSaysAllTheSame) {
    // Cameras look along, around and down.
    std::string seen;
    GLUCamera along({1, 2, 10}, {0.5f, -1, -2}, {0, 1, 0});
    RotatingCamera around({7, 1, 6}, 5, 90);
    TopDownCamera above({1, 2, 3}, 2.5f);
    around.update();
    above.update(AD_DOWNLEFT);
    for (Camera* pCamera : std::initializer_list<Camera*>{&along, &around, &above}) {
        pCamera->apply();
        seen += text(view[0], view[1], view[2], "at", view[3], view[4], view[5]) + "; ";
    }
    EXPECT_EQ(seen, "1 2 10 at 1.5 1 8; 7 5 1 at 7 1 6; -1.5 2 0.5 at -1.5 1 0.5; ");

    // Textures have a colour, framebuffers a depth.
    const Texture texture(2, 1, Colour4(1, 0.5f, 0, 0.25f));
    EXPECT_THAT(story(), testing::EndsWith(std::string("texture of 2 1 \xFF\x7F\0?", 19)));
    RenderBuffer buffer;
    buffer.create(GL_RENDERBUFFER, GL_DEPTH_COMPONENT, 40, 30);
    FrameBuffer().attach(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, buffer);
    EXPECT_THAT(out(), testing::HasSubstr("New RenderBuffer id: 2\nRenderBuffer created\nNew FrameBuffer"));

    Impulsor impulsor(100);
    std::string ticks;
    for (const Uint32 passed : {0, 100, 1, 0, 100, 1, 500, 99}) {
        stage.now += passed;
        impulsor.update();
        ticks += impulsor.needImpulse() ? "!" : ".";
    }
    EXPECT_EQ(ticks, "..!..!!.");

    Font font(Colour4(1, 1, 1, 1));
    Scroller scroller(&font, {3, 1, 43}, "iiii i");
    scroller.update();
    EXPECT_EQ(drawn([&] { scroller.draw(0.5f); }).size(), 2U) << "within 40 units of the middle";
    Star star({1, 2, 3}, {89.9f, 0, 0}, {0.1f, 0.2f, 0.3f});
    star.update();
    EXPECT_EQ(text(drawn([&] { star.draw(); })[0].points.at(5).position), "2 1.67 3.66");

    // Music jumps and has a name.
    Music music;
    EXPECT_TRUE(music.create() && music.loadFile("a"));
    music.play();
    music.setMsPosition(7);
    EXPECT_THAT(story(), testing::EndsWith("FMOD_Channel_SetPosition 7"));
    const std::unique_ptr<char[]> name(music.getName());
    EXPECT_EQ(text(name.get(), music.getMsLength(), music.getMsPosition()), "Quelar 9 8");

    // Keys are directions and buttons.
    SDL_Keyboard keyboard;
    std::string pressed;
    for (const int key : {SDLK_UP, SDLK_RIGHT, SDLK_DOWN, SDLK_LEFT, SDLK_q, SDLK_w, SDLK_a, SDLK_s, SDLK_z,
                          SDLK_x, SDLK_KP_MINUS, SDLK_KP_PLUS}) {
        stage.keys[key] = 1;
        pressed += text(keyboard.getDirectionsPressed() + keyboard.getButtonsState()) + " ";
        stage.keys[key] = 0;
    }
    EXPECT_EQ(pressed, "1 2 4 8 1 2 4 8 64 128 512 256 ");
}
} // namespace
