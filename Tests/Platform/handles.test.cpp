// What is refused, and in which order things may be given back.

#include "Player.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

using testing::AllOf;

TEST(Handles, ThatAreNullForeignOrOverAreRefusedByEveryCall) {
    const std::string tone = encode("tone.mp3", sineLeft(1000), 44100);
    const char* const path = tone.c_str();
    const Player player;
    FMOD_SYSTEM* const system = player.system;
    FMOD_SOUND* const sound = player.load(tone);
    FMOD_CHANNEL* const channel = player.play(sound);
    int number = 77;
    unsigned int place = 77;
    char letter = 77;
    std::vector<float> values(512, 7);
    FMOD_SOUND* newSound = nullptr;
    FMOD_CHANNEL* newChannel = nullptr;
    constexpr auto free = FMOD_CHANNEL_FREE;
    constexpr auto ms = FMOD_TIMEUNIT_MS;
    constexpr auto triangle = FMOD_DSP_FFT_WINDOW_TRIANGLE;
    const auto refuses = [&](void* first, void* second, void* third) {
        auto* const ofSystem = static_cast<FMOD_SYSTEM*>(first);
        auto* const ofSound = static_cast<FMOD_SOUND*>(second);
        auto* const ofChannel = static_cast<FMOD_CHANNEL*>(third);
        return AllOf(
            FMOD_System_Init(ofSystem, 10, 0, nullptr), FMOD_System_Update(ofSystem),
            FMOD_System_Close(ofSystem), FMOD_System_CreateStream(ofSystem, path, MODE, nullptr, &newSound),
            FMOD_System_PlaySound(ofSystem, free, sound, 0, &newChannel), FMOD_System_Release(ofSystem),
            FMOD_System_PlaySound(system, free, ofSound, 0, &newChannel), FMOD_Sound_Release(ofSound),
            FMOD_Sound_GetLength(ofSound, &place, ms), FMOD_Sound_GetName(ofSound, &letter, 1),
            FMOD_Channel_GetPaused(ofChannel, &number), FMOD_Channel_SetPaused(ofChannel, 1),
            FMOD_Channel_SetLoopCount(ofChannel, -1),
            FMOD_Channel_GetSpectrum(ofChannel, values.data(), 512, 0, triangle),
            FMOD_Channel_Stop(ofChannel), FMOD_Channel_GetPosition(ofChannel, &place, ms),
            FMOD_Channel_SetPosition(ofChannel, 0, ms));
    };
    for (void* const handle : std::vector<void*>{nullptr, &number, reinterpret_cast<void*>(1),
                                                 Player().system, Player().load(tone), Player().play(tone)}) {
        EXPECT_THAT(FMOD_ERR_HANDLE, refuses(handle, handle, handle)) << handle;
    }
    EXPECT_THAT(FMOD_ERR_HANDLE, refuses(sound, channel, system));
    EXPECT_THAT(FMOD_ERR_HANDLE, refuses(channel, system, sound));
    EXPECT_EQ(FMOD_System_PlaySound(Player().system, free, sound, 0, &newChannel), FMOD_ERR_HANDLE);
    // The handles are right, something else is not.
    const auto wrong = AllOf(
        FMOD_System_Create(nullptr), FMOD_System_Init(system, 0, 0, nullptr),
        FMOD_System_Init(system, 4097, 0, nullptr),
        FMOD_System_CreateStream(system, path, MODE, nullptr, nullptr),
        FMOD_System_CreateStream(system, nullptr, MODE, nullptr, &newSound),
        FMOD_System_PlaySound(system, free, sound, 0, nullptr), FMOD_Sound_GetLength(sound, nullptr, ms),
        FMOD_Sound_GetName(sound, nullptr, 8), FMOD_Sound_GetName(sound, &letter, 0),
        FMOD_Channel_GetPaused(channel, nullptr), FMOD_Channel_SetLoopCount(channel, -2),
        FMOD_Channel_GetPosition(channel, nullptr, ms), FMOD_Channel_SetPosition(channel, 1001, ms),
        FMOD_Channel_GetSpectrum(channel, nullptr, 512, 0, triangle));
    EXPECT_THAT(FMOD_ERR_ARGUMENT, wrong);
    // None of all that has written anything, but the zeroes, or touched what is alive.
    EXPECT_EQ(std::tuple(number, place, letter), std::tuple(77, 77U, 77));
    EXPECT_EQ(std::pair(newSound, newChannel), (std::pair<FMOD_SOUND*, FMOD_CHANNEL*>()));
    EXPECT_THAT(values, testing::Each(0.0f));
    EXPECT_EQ(std::pair(length(sound), position(channel)), std::pair(1000U, 0U));
    // The number of values, the side, and how many values a refusal clears.
    using Case = std::tuple<int, int, int>;
    for (const auto& [count, side, cleared] :
         {Case(1, 0, 1), Case(32, 0, 32), Case(65, 0, 65), Case(8191, 0, 8191), Case(8192, 1, 8192),
          Case(8193, 0, 0), Case(16384, 0, 0), Case(0, 0, 0), Case(-512, 0, 0), Case(-2147483647, 0, 0)}) {
        values.assign(8192, 7);
        EXPECT_EQ(FMOD_Channel_GetSpectrum(channel, values.data(), count, side, triangle), FMOD_ERR_ARGUMENT);
        EXPECT_EQ(std::count(values.begin(), values.begin() + cleared, 0), cleared) << count;
        EXPECT_EQ(std::count(values.begin(), values.end(), 7), 8192 - cleared) << count;
    }
}

TEST(Handles, MayBeGivenBackInAnyOrder) {
    const std::string tone = encode("tone.mp3", sineLeft(1000), 44100);
    for (int order = 0; order < 8; ++order) {
        const Player player(order < 4 ? supplied : REAL_TIME);
        FMOD_SOUND* const sound = player.load(tone);
        FMOD_CHANNEL* const channel = player.play(sound);
        EXPECT_EQ(FMOD_System_Init(player.system, 10, 0, nullptr), FMOD_ERR_INITIALISED);
        if (order % 2 == 1) {
            EXPECT_EQ(FMOD_Sound_Release(sound), FMOD_OK);
            EXPECT_NE(position(channel), OVER);
        }
        if (order / 2 % 2 == 1) {
            EXPECT_EQ(FMOD_System_Close(player.system), FMOD_OK);
            EXPECT_EQ(FMOD_System_Update(player.system), FMOD_ERR_NOT_INITIALISED);
            EXPECT_EQ(position(channel), OVER);
            EXPECT_EQ(FMOD_System_Init(player.system, 10, 0, nullptr), FMOD_OK);
            EXPECT_EQ(player.play(sound) == nullptr, order % 2 == 1);
        }
        EXPECT_EQ(FMOD_System_Release(player.system), FMOD_OK);
        EXPECT_EQ(FMOD_Sound_Release(sound), FMOD_ERR_HANDLE);
        EXPECT_EQ(position(channel), OVER);
    }
}
