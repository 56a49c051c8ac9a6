// How tracks run and what their spectrum shows, exactly by a supplied clock.

#include "Player.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <tuple>
#include <utility>
#include <vector>

/// How often this thread has taken something from the heap, in the program and in the layer alike.
int allocations();

TEST(Spectrum, ShowsWhatIsOnTheLeftAtThisMoment) {
    const Player player;
    for (const auto& [count, entry] : {std::pair(64, 5), std::pair(512, 40), std::pair(8192, 700)}) {
        // Silent until 0.5 s, then a sine in the middle of its entry. The right side must not be seen.
        const double hertz = 22050.0 * entry / count;
        const auto signal = [hertz](double time) {
            return Sample{time < 0.5 ? 0 : std::sin(2 * M_PI * hertz * time), std::sin(44000 * time)};
        };
        FMOD_CHANNEL* const channel = player.play(encode("sine.mp3", signal, 44100));
        now += 250000;
        EXPECT_THAT(spectrum(channel, count), testing::Each(0.0f)) << count;
        now += 250000;
        EXPECT_NEAR(spectrum(channel, count)[entry], 0.5, 0.02) << "half of the window is filled";
        now += 250000;
        std::vector<float> values = spectrum(channel, count);
        for (int k = 0; k < count; ++k) {
            // The transform of a triangle.
            const int distance = std::abs(k - entry);
            const double odd = distance % 2 == 0 ? 0 : 4 / std::pow(M_PI * distance, 2);
            EXPECT_NEAR(values[k], distance == 0 ? 1 : odd, 0.02) << count << ' ' << k;
        }
        FMOD_Channel_SetPaused(channel, 1);
        EXPECT_THAT(spectrum(channel, count), testing::Each(0.0f)) << count;
        FMOD_Channel_SetPaused(channel, 0);
        EXPECT_EQ(spectrum(channel, count), values) << "the clock stands still";
        // Each frame is a new one, and takes nothing from the heap.
        const int before = allocations();
        for (int frame = 0; frame < 15; ++frame) {
            const float last = values[0];
            now += 15000;
            FMOD_Channel_GetSpectrum(channel, values.data(), count, 0, FMOD_DSP_FFT_WINDOW_TRIANGLE);
            EXPECT_NE(values[0], last) << count << ' ' << frame;
        }
        EXPECT_EQ(allocations(), before);
    }
}

TEST(Playing, GoesExactlyByTheClockAndStopsAtTheEnd) {
    // One second and a bit: the last sample ends 1012290.2 us after the first began.
    const Player player;
    FMOD_CHANNEL* const channel = player.play(encode("tone.mp3", sineLeft(1000), 44642));
    FMOD_Channel_SetLoopCount(channel, -1);
    // Whether to pause, where to go unless it is 0, the time that then passes, and where that leads.
    using Step = std::tuple<int, unsigned, unsigned long long, unsigned>;
    for (const auto& [pause, jump, time, expected] :
         {Step(0, 0, 999, 0), Step(0, 0, 499001, 500), Step(7, 0, 3600000000, 500), Step(0, 0, 1000, 501),
          Step(0, 100, 2000, 102), Step(1, 1000, 2000, 1000), Step(1, 1013, 0, 1000), Step(0, 0, 12290, 1012),
          Step(0, 0, 1, OVER)}) {
        FMOD_BOOL paused = -1;
        FMOD_Channel_SetPaused(channel, pause);
        FMOD_Channel_GetPaused(channel, &paused);
        EXPECT_EQ(paused, pause != 0 ? 1 : 0);
        if (jump > 0) {
            FMOD_Channel_SetPosition(channel, jump, FMOD_TIMEUNIT_MS);
        }
        now += time;
        EXPECT_EQ(position(channel), expected);
    }
}

TEST(Playing, IsNotDisturbedByOtherTracks) {
    const Player player;
    const Player two(supplied, 2);
    const std::string tone = encode("tone.mp3", sineLeft(1000), 44100);
    FMOD_CHANNEL* const alone = player.play(tone);
    FMOD_SOUND* const first = two.load(tone);
    FMOD_CHANNEL* const channel = two.play(first);
    now += 100000;
    EXPECT_EQ(FMOD_Sound_Release(first), FMOD_OK);
    FMOD_SOUND* const second = two.load(encode("other.mp3", sineLeft(5000), 22050, 22050));
    FMOD_CHANNEL* const other = two.play(second);
    now += 400000;
    EXPECT_EQ(position(channel), 500U);
    EXPECT_EQ(spectrum(channel), spectrum(alone));
    // There are two channels and no more. The next one starts from the beginning again, and waits there.
    EXPECT_EQ(two.play(second), nullptr);
    EXPECT_EQ(FMOD_Channel_Stop(other), FMOD_OK);
    FMOD_CHANNEL* const third = two.play(second, true);
    EXPECT_EQ(two.play(second), nullptr);
    now += 500000;
    EXPECT_EQ(position(third), 0U);
    // The first has come to its end.
    EXPECT_NE(two.play(second), nullptr);
}
