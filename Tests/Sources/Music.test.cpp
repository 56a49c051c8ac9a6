#include <memory>

#include "Music/Impulsor.h"
#include "Music/Music.h"
#include "StandIns/Stage.h"

namespace {
const char* const SHORT = "There is not enough memory for the sound.\n";
const char* const NO_HANDLE = "This handle belongs to nothing, or to something that is over.\n";

class MusicTest : public OnStage {};

TEST_F(MusicTest, asksTheSoundLayer) {
    Music music;
    EXPECT_TRUE(music.create());
    EXPECT_TRUE(music.loadFile("a.mp3"));
    EXPECT_TRUE(music.loadFile("b.mp3"));
    music.play();
    music.pause();
    music.play();
    music.play();
    EXPECT_EQ(music.getMsLength(), 103000U);
    EXPECT_EQ(music.getMsPosition(), 4200U);
    music.setMsPosition(99);
    EXPECT_STREQ(std::unique_ptr<char[]>(music.getName()).get(), "Quelar");
    std::vector<float> spectrum(512);
    music.getSpectrum(spectrum.data(), 512);
    std::string story;
    for (const std::string& line : calls()) {
        story += line.substr(line.find('_', 5) + 1) + "; ";
    }
    EXPECT_EQ(
        story,
        "Create 1; Init 1 10 0 0; Release 0; CreateStream 1 a.mp3 147785 0; Release 2; " // 0x24149
        "CreateStream 1 b.mp3 147785 0; GetPaused 0; PlaySound 1 -1 3 0; SetLoopCount 4 -1; SetPaused 4 1; "
        "GetPaused 4; SetPaused 4 0; GetPaused 4; PlaySound 1 -1 3 0; SetLoopCount 5 -1; GetLength 3 1; "
        "GetPosition 5 1; SetPosition 5 99 1; GetName 3 50; GetSpectrum 5 512 0 1; ");
}

TEST_F(MusicTest, failuresAreOneLineEach) {
    Music music;
    stage().failing = {"FMOD_System_Create"};
    EXPECT_FALSE(music.create());
    EXPECT_EQ(stage().soundCalls, 1U);
    EXPECT_EQ(err(), SHORT);
    stage().failing = {"FMOD_System_Init"};
    EXPECT_FALSE(music.create());
    EXPECT_EQ(err(), SHORT);
    EXPECT_TRUE(music.loadFile("a.mp3"));
    stage().failing = {"FMOD_System_CreateStream"};
    EXPECT_FALSE(music.loadFile("b.mp3"));
    EXPECT_EQ(err(), SHORT);
    calls();
    music.play(); // nothing is left to play
    EXPECT_EQ(calls().at(1), "FMOD_System_PlaySound 1 -1 0 0");
    music.pause();
    music.stop();
    EXPECT_EQ(err(), "");
    EXPECT_EQ(music.getMsLength() + music.getMsPosition(), 0U);
    music.setMsPosition(1);
    EXPECT_STREQ(std::unique_ptr<char[]>(music.getName()).get(), "");
    EXPECT_EQ(err(), std::string(NO_HANDLE) + NO_HANDLE + NO_HANDLE + NO_HANDLE);
}

TEST_F(MusicTest, impulsorTicksAcrossTheWrapOfTheClock) {
    stage().now = 0xFFFFFFF0;
    Impulsor impulsor(100);
    const auto tickAfter = [&](Uint32 ms) {
        stage().now += ms;
        impulsor.update();
        return impulsor.needImpulse();
    };
    EXPECT_FALSE(impulsor.needImpulse());
    EXPECT_FALSE(tickAfter(100));
    EXPECT_TRUE(tickAfter(1));
    EXPECT_TRUE(impulsor.needImpulse());
    EXPECT_FALSE(tickAfter(0));
    EXPECT_TRUE(tickAfter(950));
    EXPECT_FALSE(tickAfter(60)); // nothing is made up for
    EXPECT_TRUE(tickAfter(60));
}
} // namespace
