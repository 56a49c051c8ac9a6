// How tracks run, with a supplied clock.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "Music.h"
#include "Player.h"

namespace {

using sound::alive;
using sound::Folder;
using sound::passTime;
using sound::Player;
using sound::position;
using testing::Each;

class Playing : public testing::Test {
protected:
    // One second and a bit: the last sample ends 1.0123 s after the first began.
    const Folder folder;
    const std::string tone = folder.encode("tone.mp3", sound::sineLeft(1000), 44642);
    const Player player;
};

TEST_F(Playing, GoesExactlyByTheClock) {
    sound::setTime(5000000);
    FMOD_CHANNEL* const channel = player.play(tone);
    EXPECT_EQ(position(channel), 0U);
    passTime(999);
    EXPECT_EQ(position(channel), 0U);
    passTime(1);
    EXPECT_EQ(position(channel), 1U);
    passTime(499000);
    EXPECT_EQ(position(channel), 500U);

    FMOD_Channel_SetPaused(channel, 1);
    FMOD_BOOL paused = 0;
    EXPECT_EQ(FMOD_Channel_GetPaused(channel, &paused), FMOD_OK);
    EXPECT_EQ(paused, 1);
    passTime(3600000000ULL);
    EXPECT_EQ(position(channel), 500U);
    FMOD_Channel_SetPaused(channel, 7);
    FMOD_Channel_SetPaused(channel, 0);
    FMOD_Channel_SetPaused(channel, 0);
    EXPECT_EQ(FMOD_Channel_GetPaused(channel, &paused), FMOD_OK);
    EXPECT_EQ(paused, 0);
    passTime(1000);
    EXPECT_EQ(position(channel), 501U);

    FMOD_Channel_SetPosition(channel, 100, FMOD_TIMEUNIT_MS);
    EXPECT_EQ(position(channel), 100U);
    passTime(2000);
    EXPECT_EQ(position(channel), 102U);
    FMOD_Channel_SetPaused(channel, 1);
    FMOD_Channel_SetPosition(channel, 1000, FMOD_TIMEUNIT_MS);
    passTime(2000);
    EXPECT_EQ(position(channel), 1000U);
    EXPECT_EQ(FMOD_Channel_SetPosition(channel, 1013, FMOD_TIMEUNIT_MS), FMOD_ERR_ARGUMENT);
    EXPECT_EQ(position(channel), 1000U);
}

TEST_F(Playing, StopsAtTheEndEvenIfAskedToLoop) {
    FMOD_CHANNEL* const channel = player.play(tone);
    EXPECT_EQ(FMOD_Channel_SetLoopCount(channel, -2), FMOD_ERR_ARGUMENT);
    EXPECT_EQ(FMOD_Channel_SetLoopCount(channel, -1), FMOD_OK);
    // 44642 samples last 1012290.2 us.
    passTime(1012290);
    EXPECT_EQ(position(channel), 1012U);
    passTime(1);
    unsigned int where = 77;
    EXPECT_EQ(FMOD_Channel_GetPosition(channel, &where, FMOD_TIMEUNIT_MS), FMOD_ERR_HANDLE);
    EXPECT_EQ(where, 77U);
    std::array<float, 512> values{};
    values.fill(7);
    EXPECT_EQ(FMOD_Channel_GetSpectrum(channel, values.data(), 512, 0, FMOD_DSP_FFT_WINDOW_TRIANGLE),
              FMOD_ERR_HANDLE);
    EXPECT_THAT(values, Each(0.0F));
}

TEST_F(Playing, StartsAgainFromTheBeginning) {
    FMOD_SOUND* const sound = player.load(tone);
    FMOD_CHANNEL* const first = player.play(sound);
    passTime(300000);
    EXPECT_EQ(FMOD_Channel_Stop(first), FMOD_OK);
    FMOD_CHANNEL* const second = player.play(sound, true);
    passTime(300000);
    EXPECT_FALSE(alive(first));
    EXPECT_EQ(position(second), 0U);
    FMOD_Channel_SetPaused(second, 0);
    passTime(300000);
    EXPECT_EQ(position(second), 300U);
}

TEST_F(Playing, IsNotDisturbedByOtherTracks) {
    const Player alone;
    FMOD_CHANNEL* const undisturbed = alone.play(tone);
    FMOD_SOUND* const sound = player.load(tone);
    FMOD_CHANNEL* const channel = player.play(sound);
    passTime(100000);
    EXPECT_EQ(FMOD_Sound_Release(sound), FMOD_OK);
    FMOD_CHANNEL* const other = player.play(folder.encode("other.mp3", sound::sineLeft(5000), 22050, 22050));
    passTime(400000);
    EXPECT_EQ(position(channel), 500U);
    EXPECT_EQ(position(other), 400U);
    EXPECT_EQ(sound::spectrum(channel), sound::spectrum(undisturbed));
    EXPECT_GT(sound::spectrum(channel)[23], 0.5);
}

TEST_F(Playing, HasSoManyChannelsAndNoMore) {
    const Player small(Player::Time::supplied, 2);
    FMOD_SOUND* const sound = small.load(tone);
    FMOD_CHANNEL* const first = small.play(sound);
    passTime(500000);
    small.play(sound, true);
    FMOD_CHANNEL* third = nullptr;
    const auto playThird = [&] {
        return FMOD_System_PlaySound(small.system(), FMOD_CHANNEL_FREE, sound, 0, &third);
    };
    EXPECT_EQ(playThird(), FMOD_ERR_CHANNELS_BUSY);
    EXPECT_EQ(third, nullptr);
    EXPECT_EQ(position(first), 500U);
    passTime(600000); // the first comes to its end
    EXPECT_EQ(playThird(), FMOD_OK);
    EXPECT_EQ(playThird(), FMOD_ERR_CHANNELS_BUSY);
    EXPECT_EQ(FMOD_Channel_Stop(third), FMOD_OK);
    EXPECT_EQ(playThird(), FMOD_OK);
}

} // namespace
