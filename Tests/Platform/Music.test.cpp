// What the show sees of its music, by the clock that it goes by.

#include "Player.h"
#include "Song.h"
#include "Track.h"

#include <fmod_errors.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <functional>
#include <tuple>

using testing::Each;

/// How often something has been taken from the heap.
int allocations();

TEST(Music, IsThatOfItsFile) {
    // Of one side made of two FFmpeg takes each times 0.7; entry 23 of 512 is where the tone is.
    for (const auto& [rate, options, height] :
         {std::tuple(44100, "-b:a 320k -joint_stereo 0", 1.0), std::tuple(44100, "-ac 1 -b:a 64k", 0.7),
          std::tuple(48000, "-q:a 0", 1.0), std::tuple(22050, "-b:a 96k -metadata title=Night", 1.0)}) {
        Player player;
        EXPECT_EQ(player.load(tone("kind.mp3", rate * 23 / 1024, 2 * rate + 123, rate, options)), FMOD_OK);
        EXPECT_EQ(player.length(), 2000 + 123000 / rate) << rate << options;
        player.play();
        clockTime += 1000000;
        const std::vector<float> heard = player.spectrum();
        EXPECT_NEAR(heard[23], height, 0.1) << rate << options;
        EXPECT_LT(std::max(heard[20], heard[26]), 0.1);
    }
    // Another decoder finds the same samples, give or take what rounding does.
    const std::string path = make("noise.mp3", "-f lavfi -i anoisesrc=r=44100:d=2:a=0.5:s=1 -ac 2 -q:a 2");
    const fmodex::Track track(path);
    const FMOD_SONG decoded = track.getSong();
    const song::Song other(path);
    ASSERT_EQ(decoded.count, other.getCount());
    for (long long i = 0; i < 2 * decoded.count; ++i) {
        ASSERT_NEAR(decoded.frames[i], other.getSamples()[i], 2) << i;
    }
}

TEST(Music, IsRefusedForAReasonAndTheShowGoesOnWithoutIt) {
    const std::string good = tone("good.mp3", 1000, 4410);
    const auto before = openFiles();
    for (const auto& [path, fault] : {std::pair(folder.path + "none", "The music file does not exist."),
                                      std::pair(good + "/below", "The music file does not exist."),
                                      std::pair(folder.path + std::string(300, 'x'), "cannot be read"),
                                      std::pair(folder.path, "The music file is a folder."),
                                      std::pair(write("empty.mp3", ""), "The music file is empty."),
                                      std::pair(write("text.mp3", std::string(99999, 'x')), "is not an MP3"),
                                      std::pair(write("head.mp3", read(good).substr(0, 4)), "not an MP3"),
                                      std::pair(good, "All is well")}) {
        Player player;
        EXPECT_THAT(FMOD_ErrorString(player.load(path)), testing::HasSubstr(fault)) << path;
        EXPECT_EQ(player.sound != nullptr, path == good);
        player.play();
        EXPECT_EQ(player.position() == 0, path == good);
        EXPECT_EQ(player.length() > 0, path == good);
    }
    EXPECT_EQ(openFiles(), before);
    // Damage in the middle is a gap: there is less of it, and the end is as it was.
    std::string damaged = read(tone("damaged.mp3", 1000, 441000));
    damaged.replace(damaged.size() / 2, 50000, std::string(20000, 'x'));
    Player player;
    player.play(write("damaged.mp3", damaged));
    EXPECT_GT(player.length(), 8000U);
    FMOD_Channel_SetPosition(player.channel, player.length() - 100, FMOD_TIMEUNIT_MS);
    EXPECT_GT(player.spectrum()[23], 0.8);
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
        FMOD_Channel_SetPosition(player.channel, place, FMOD_TIMEUNIT_MS);
        for (const int count : {64, 512, 8192}) {
            const std::vector<float> values = player.spectrum(count);
            for (int k = 0; k < count; k += 1 + count / 8) {
                ASSERT_NEAR(values[k], 2.5 * magnitude(noise.song, place * 441 / 10, count, k), 1e-5)
                    << place << ' ' << count << ' ' << k;
            }
        }
    }
    std::vector<float> values(512);
    const int taken = allocations();
    FMOD_Channel_GetSpectrum(player.channel, values.data(), 512, 0, FMOD_DSP_FFT_WINDOW_TRIANGLE);
    EXPECT_EQ(allocations(), taken) << "nothing is allocated in a frame";
    EXPECT_THAT(player.spectrum(500), Each(0.0f)) << "no power of two";
    FMOD_Channel_SetPaused(player.channel, 1);
    EXPECT_THAT(player.spectrum(), Each(0.0f)) << "paused";
    FMOD_Channel_SetPaused(player.channel, 0);
    clockTime += 1000;
    EXPECT_THAT(player.spectrum(), Each(0.0f)) << "over";
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
            FMOD_Channel_SetPosition(player.channel, jump, FMOD_TIMEUNIT_MS);
        }
        clockTime += time;
        EXPECT_EQ(player.position(), expected);
        FMOD_BOOL paused = 0;
        FMOD_Channel_GetPaused(player.channel, &paused);
        EXPECT_EQ(paused, pause != 0 ? 1 : 0);
    }
    player.play();
    EXPECT_EQ(player.position(), 0U) << "from its beginning";
}

TEST(Handle, IsGoodForAsLongAsWhatItStandsFor) {
    const std::string path = tone("tone.mp3", 1000, 44100);
    const auto before = openFiles();
    for (int order = 0; order < 8; ++order) {
        Player player(order >= 4);
        EXPECT_EQ(FMOD_System_Create(&player.system), FMOD_ERR_INITIALISED) << "there is one at a time";
        player.play(path);
        std::array<char, 8> name{};
        EXPECT_EQ(FMOD_Sound_GetName(player.sound, name.data(), 8), FMOD_OK);
        EXPECT_STREQ(name.data(), "tone.mp");
        if (order % 2 == 1) {
            EXPECT_EQ(FMOD_Sound_Release(player.sound), FMOD_OK);
            EXPECT_EQ(FMOD_Sound_Release(player.sound), FMOD_ERR_HANDLE);
            EXPECT_NE(player.position(), Player::OVER) << "it plays on";
        }
        if (order / 2 % 2 == 1) {
            FMOD_CHANNEL* const first = player.channel;
            player.play(path);
            EXPECT_EQ(FMOD_Channel_Stop(first), FMOD_ERR_HANDLE) << "another track plays now";
            EXPECT_EQ(FMOD_Channel_Stop(player.channel), FMOD_OK);
            EXPECT_EQ(player.position(), Player::OVER);
            EXPECT_EQ(FMOD_System_Close(player.system), FMOD_OK);
            EXPECT_EQ(player.load(path), FMOD_ERR_NOT_INITIALISED);
            EXPECT_EQ(FMOD_System_Init(player.system, 1, 0, nullptr), FMOD_OK);
            player.play();
            EXPECT_EQ(player.position(), 0U) << "from its beginning";
        }
        EXPECT_EQ(FMOD_System_Release(player.system), FMOD_OK);
        EXPECT_EQ(FMOD_Sound_Release(player.sound), FMOD_ERR_HANDLE);
        EXPECT_EQ(player.position(), Player::OVER);
        EXPECT_THAT(player.spectrum(), Each(0.0f));
    }
    EXPECT_EQ(openFiles(), before);
}

TEST(Song, IsPlayedInPlaceOfTheTrackFromWhereTheShowBegins) {
    const std::string path = tone("tone.mp3", 1000, 44100);
    const Noise noise(3LL * 44100, 1, 1700);
    FMOD_Song_Set(&noise.song);
    for (int round = 0; round < 2; ++round) {
        Player player;
        player.play(folder.path + "none");
        EXPECT_EQ(player.length(), 3000U);
        clockTime += 15000;
        EXPECT_EQ(player.position(), 1715U);
        EXPECT_EQ(FMOD_Song_IsOver(), 0);
        clockTime += 1285000;
        EXPECT_EQ(player.position(), Player::OVER);
        EXPECT_EQ(FMOD_Song_IsOver(), 1);
    }
    FMOD_Song_Set(nullptr);
    Player player;
    player.play(path);
    EXPECT_EQ(player.length(), 1000U) << "the track again";
}
