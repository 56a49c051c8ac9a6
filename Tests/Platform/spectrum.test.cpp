// What the spectrum shows, with a supplied clock.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "Heap.h"
#include "Music.h"
#include "Player.h"

namespace {

using sound::Folder;
using sound::Player;
using sound::Sample;
using sound::spectrum;
using testing::Each;

constexpr int rate = 44100;

TEST(Spectrum, ShowsASineOnTheLeftInItsEntry) {
    const Folder folder;
    const Player player;
    struct Case {
        int count;
        int entry;
    };
    for (const Case c : {Case{64, 5}, Case{512, 1}, Case{512, 40}, Case{512, 200}, Case{8192, 700}}) {
        const double entryWidth = rate / (2.0 * c.count);
        // The right side is as loud and must not be seen.
        const auto signal = [=](double time) {
            return Sample{std::sin(2 * M_PI * entryWidth * c.entry * time), std::sin(2 * M_PI * 7000 * time)};
        };
        FMOD_CHANNEL* const channel = player.play(folder.encode("sine.mp3", signal, rate));
        sound::passTime(500000);
        const std::vector<float> values = spectrum(channel, c.count);
        for (int k = 0; k < c.count; ++k) {
            const int distance = std::abs(k - c.entry);
            if (distance == 0) {
                EXPECT_NEAR(values[k], 1, 0.02) << c.count << ' ' << k;
            } else if (distance > 1) {
                EXPECT_LT(values[k], 0.06) << c.count << ' ' << k;
            }
        }
        FMOD_Channel_Stop(channel);
    }
}

TEST(Spectrum, LooksAtBothSidesOfThePresentMoment) {
    // Silent until 1 s, then a tone: at that moment half of the triangle is filled.
    const Folder folder;
    const Player player;
    const double hertz = 40.0 * rate / 1024;
    const auto signal = [=](double time) {
        return Sample{time < 1 ? 0 : std::sin(2 * M_PI * hertz * time), 0};
    };
    FMOD_CHANNEL* const channel = player.play(folder.encode("start.mp3", signal, 2 * rate));
    const auto heightAt = [channel](unsigned milliseconds) {
        FMOD_Channel_SetPosition(channel, milliseconds, FMOD_TIMEUNIT_MS);
        return spectrum(channel)[40];
    };
    EXPECT_LT(heightAt(985), 0.01);
    EXPECT_NEAR(heightAt(1000), 0.5, 0.02);
    EXPECT_NEAR(heightAt(1015), 1, 0.02);
    // Long before, there is nothing at all; nor in what a paused channel lets hear.
    FMOD_Channel_SetPosition(channel, 500, FMOD_TIMEUNIT_MS);
    EXPECT_THAT(spectrum(channel), Each(0.0F));
    FMOD_Channel_SetPosition(channel, 1500, FMOD_TIMEUNIT_MS);
    FMOD_Channel_SetPaused(channel, 1);
    EXPECT_THAT(spectrum(channel), Each(0.0F));
    FMOD_Channel_SetPaused(channel, 0);
    EXPECT_NEAR(spectrum(channel)[40], 1, 0.02);
}

TEST(Spectrum, OfSilenceIsExactlyZeroInEverySize) {
    const Folder folder;
    const Player player;
    FMOD_CHANNEL* const channel = player.play(folder.encode("silence.mp3", sound::silence, rate));
    for (int count = 64; count <= 8192; count *= 2) {
        EXPECT_THAT(spectrum(channel, count), Each(0.0F)) << count;
        sound::passTime(15000);
    }
}

TEST(Spectrum, ChangesFromFrameToFrame) {
    const Folder folder;
    const Player player;
    const auto sweep = [](double time) { return Sample{std::sin(2 * M_PI * 500 * (1 + time) * time), 0}; };
    FMOD_CHANNEL* const channel = player.play(folder.encode("sweep.mp3", sweep, 2 * rate));
    sound::passTime(100000);
    std::vector<float> before = spectrum(channel);
    EXPECT_EQ(spectrum(channel), before) << "the clock stands still";
    for (int frame = 0; frame < 100; ++frame) {
        sound::passTime(15000);
        const std::vector<float> now = spectrum(channel);
        ASSERT_NE(now, before) << frame;
        before = now;
    }
}

TEST(Spectrum, RefusesWhatItCannotShowAndClearsTheValues) {
    const Folder folder;
    const Player player;
    FMOD_CHANNEL* const channel = player.play(folder.encode("sine.mp3", sound::sineLeft(1000), rate));
    sound::passTime(500000);
    std::array<float, 8192> values{};
    const auto ask = [&values](FMOD_CHANNEL* of, int count, int side, FMOD_DSP_FFT_WINDOW window) {
        values.fill(7);
        return FMOD_Channel_GetSpectrum(of, values.data(), count, side, window);
    };
    const auto triangle = FMOD_DSP_FFT_WINDOW_TRIANGLE;
    for (const int count : {1, 32, 63, 65, 500, 513, 8191}) {
        EXPECT_EQ(ask(channel, count, 0, triangle), FMOD_ERR_ARGUMENT) << count;
        auto* const end = values.begin() + count;
        EXPECT_THAT(std::vector<float>(values.begin(), end), Each(0.0F)) << count;
        EXPECT_THAT(std::vector<float>(end, values.end()), Each(7.0F)) << count;
    }
    for (const int count : {-2147483647 - 1, -512, -1, 0, 8193, 16384, 1 << 30, 2147483647}) {
        EXPECT_EQ(ask(channel, count, 0, triangle), FMOD_ERR_ARGUMENT) << count;
        EXPECT_THAT(values, Each(7.0F)) << count;
    }
    EXPECT_EQ(ask(channel, 8192, 1, triangle), FMOD_ERR_ARGUMENT);
    EXPECT_THAT(values, Each(0.0F));
    EXPECT_EQ(ask(channel, 8192, 0, static_cast<FMOD_DSP_FFT_WINDOW>(0)), FMOD_ERR_ARGUMENT);
    EXPECT_THAT(values, Each(0.0F));
    EXPECT_EQ(ask(nullptr, 8192, 0, triangle), FMOD_ERR_HANDLE);
    EXPECT_THAT(values, Each(0.0F));
    EXPECT_EQ(FMOD_Channel_GetSpectrum(channel, nullptr, 512, 0, triangle), FMOD_ERR_ARGUMENT);
    EXPECT_EQ(ask(channel, 512, 0, triangle), FMOD_OK);
}

TEST(Spectrum, TakesNothingFromTheHeapAfterTheFirst) {
    const Folder folder;
    const Player player;
    FMOD_CHANNEL* const channel = player.play(folder.encode("sine.mp3", sound::sineLeft(1000), rate));
    std::array<float, 512> values{};
    const auto ask = [&] {
        sound::passTime(15000);
        FMOD_Channel_GetSpectrum(channel, values.data(), 512, 0, FMOD_DSP_FFT_WINDOW_TRIANGLE);
    };
    const int atStart = sound::allocations();
    ask();
    const int afterFirst = sound::allocations();
    EXPECT_GT(afterFirst, atStart) << "nothing is counted";
    for (int frame = 0; frame < 20; ++frame) {
        ask();
    }
    EXPECT_EQ(sound::allocations(), afterFirst);
}

} // namespace
