// What the show sees of its music, by the clock that it goes by.

#include "Player.h"

#include <fmod_errors.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <tuple>

TEST(Music, IsThatOfItsFile) {
    // Of one side made of two FFmpeg takes each times 0.7; entry 23 of 512 is where the tone is.
    for (const auto& [rate, options, height] :
         {std::tuple(44100, "-b:a 320k -joint_stereo 0", 1.0), std::tuple(44100, "-ac 1 -b:a 64k", 0.7),
          std::tuple(48000, "-q:a 0", 1.0), std::tuple(22050, "-b:a 96k -metadata title=Night", 1.0)}) {
        Player player;
        player.play(tone("kind.mp3", rate * 23 / 1024, 2 * rate + 123, rate, options));
        EXPECT_EQ(player.length(), 2000 + 123000 / rate) << rate << options;
        std::string name(8, '#');
        FMOD_Sound_GetName(player.sound, name.data(), 8);
        EXPECT_STREQ(name.c_str(), "kind.mp");
        player.go(1000);
        const std::vector<float> heard = player.spectrum();
        EXPECT_NEAR(heard[23], height, 0.1) << rate << options;
        EXPECT_LT(std::max(heard[20], heard[26]), 0.1);
    }
    // Damage in the middle is a gap, with the end as it was behind it.
    tone("whole.mp3", 990, 441000);
    Player player;
    player.play(
        shell("torn.mp3",
              "{ head -c 200000 whole.mp3; yes | head -c 9999; tail -c +250000 whole.mp3; } >torn.mp3"));
    EXPECT_GT(player.length(), 8000U);
    player.go(player.length() - 100);
    EXPECT_GT(player.spectrum()[23], 0.8);
}

TEST(Music, IsRefusedForAReasonAndTheShowGoesOnWithoutIt) {
    const std::string good = tone("good.mp3", 1000, 4410);
    // Between -2 and 2, which looks like heads of other kinds.
    make("quiet.wav", "-f lavfi -i anoisesrc=r=44100:d=5:a=0.0001:s=1 -ac 2");
    shell("", ">empty.mp3; yes | head -c 99999 >text.mp3; head -c 4 good.mp3 >head.mp3");
    for (const auto& [name, fault] :
         {std::pair("none", "does not exist"), std::pair("", "is a folder"),
          std::pair("empty.mp3", "is empty"), std::pair("text.mp3", "is not an MP3"),
          std::pair("head.mp3", "is not an MP3"), std::pair("quiet.wav", "is not an MP3"),
          std::pair("good.mp3", "All is well")}) {
        Player player;
        const bool isGood = folder.path + name == good;
        EXPECT_THAT(FMOD_ErrorString(player.load(folder.path + name)), testing::HasSubstr(fault)) << name;
        player.play();
        EXPECT_EQ(player.position(), isGood ? 0 : Player::OVER) << name;
        EXPECT_EQ(player.length(), isGood ? 100 : 0) << name;
    }
}

/// Entry k of the transform of the left side around a frame, by its definition.
static double magnitude(const FMOD_SONG& song, long long middle, int count, int k) {
    std::complex<double> sum = 0;
    for (long long i = std::max(-middle, -1LL * count); i < std::min<long long>(song.count - middle, count);
         ++i) {
        const double weight = 1 - std::abs(static_cast<double>(i)) / count;
        sum += weight * song.frames[2 * (middle + i)] *
               std::polar(1.0, -M_PI * k * static_cast<double>(i) / count);
    }
    return std::abs(sum) * 2 / count / 32768;
}

TEST(Spectrum, IsTheTransformOfTheLeftUnderATriangleAroundWhatIsHeardNow) {
    const Noise noise(44100, 2.5);
    FMOD_Song_Set(&noise.song);
    Player player;
    player.play("noise");
    for (const unsigned int place : {0U, 1U, 500U, 999U}) { // there is silence around it
        player.go(place);
        for (const int count : {64, 512, 8192}) {
            const std::vector<float> values = player.spectrum(count);
            for (int k = 0; k < count; k += 1 + count / 8) {
                ASSERT_NEAR(values[k], 2.5 * magnitude(noise.song, place * 441 / 10, count, k), 1e-5)
                    << place << ' ' << count << ' ' << k;
            }
        }
    }
    FMOD_Song_Set(nullptr);
}

TEST(Channel, GoesExactlyByTheClockAndIsOverAtTheEnd) {
    Player player;
    player.play(tone("tone.mp3", 1000, 44642)); // its last frame ends 1012290.2 us after the first began
    FMOD_Channel_SetLoopCount(player.channel, -1);
    // Whether to pause, where to go unless it is 0, the time that then passes, and where that leads.
    using Step = std::tuple<int, unsigned, unsigned long long, unsigned>;
    for (const auto& [pause, jump, time, expected] :
         {Step(0, 0, 999, 0), Step(0, 0, 499001, 500), Step(7, 0, 3600000000, 500), Step(0, 0, 1000, 501),
          Step(0, 100, 2000, 102), Step(1, 1012, 2000, 1012), Step(0, 0, 290, 1012),
          Step(0, 0, 1, Player::OVER)}) {
        FMOD_Channel_SetPaused(player.channel, pause);
        if (jump > 0) {
            player.go(jump);
        }
        clockTime += time;
        EXPECT_EQ(player.position(), expected);
        FMOD_BOOL paused = 0;
        FMOD_Channel_GetPaused(player.channel, &paused);
        EXPECT_EQ(paused, pause != 0 ? 1 : 0);
        const std::vector<float> heard = player.spectrum();
        EXPECT_EQ(std::count(heard.begin(), heard.end(), 0) == 512, pause != 0 || expected == Player::OVER);
    }
}
