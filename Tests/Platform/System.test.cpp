// The C interface: what is refused, in which order things may be given back, and how tracks are played.

#include "Player.h"
#include "Room.h"

#include <fmod_errors.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

using testing::AllOf;

TEST(Handle, IsRefusedByEveryCallWhenNullForeignOrOver) {
    const std::string tone = encode("tone.mp3", sineLeft(1000), 44100);
    const char* const path = tone.c_str();
    const Player player;
    auto* const system = player.system;
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
    const auto refuses = [&](void* handle) {
        auto* const ofSystem = static_cast<FMOD_SYSTEM*>(handle);
        auto* const ofSound = static_cast<FMOD_SOUND*>(handle);
        auto* const ofChannel = static_cast<FMOD_CHANNEL*>(handle);
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
        EXPECT_THAT(FMOD_ERR_HANDLE, refuses(handle)) << handle;
    }
    EXPECT_EQ(FMOD_System_PlaySound(Player().system, free, sound, 0, &newChannel), FMOD_ERR_HANDLE);
    // The handles are right, something else is not.
    auto* const wishes = reinterpret_cast<FMOD_CREATESOUNDEXINFO*>(&number);
    const auto wrong = AllOf(
        FMOD_System_Create(nullptr), FMOD_System_Init(system, 0, 0, nullptr),
        FMOD_System_Init(system, 4097, 0, nullptr), FMOD_System_Init(system, 10, 1, nullptr),
        FMOD_System_Init(system, 10, 0, &number),
        FMOD_System_CreateStream(system, path, MODE, nullptr, nullptr),
        FMOD_System_CreateStream(system, nullptr, MODE, nullptr, &newSound),
        FMOD_System_CreateStream(system, path, MODE | 2, nullptr, &newSound),
        FMOD_System_CreateStream(system, path, MODE, wishes, &newSound),
        FMOD_System_PlaySound(system, free, sound, 0, nullptr), FMOD_Sound_GetLength(sound, nullptr, ms),
        FMOD_System_PlaySound(system, static_cast<FMOD_CHANNELINDEX>(0), sound, 0, &newChannel),
        FMOD_Sound_GetLength(sound, &place, 2), FMOD_Channel_GetPosition(channel, &place, 2),
        FMOD_Sound_GetName(sound, nullptr, 8), FMOD_Sound_GetName(sound, &letter, 0),
        FMOD_Channel_GetPaused(channel, nullptr), FMOD_Channel_SetLoopCount(channel, -2),
        FMOD_Channel_GetPosition(channel, nullptr, ms), FMOD_Channel_SetPosition(channel, 1001, ms),
        FMOD_Channel_SetPosition(channel, 0, 2),
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
    EXPECT_EQ(FMOD_Channel_GetSpectrum(channel, values.data(), 8192, 0, triangle), FMOD_OK);
    EXPECT_GT(*std::max_element(values.begin(), values.end()), 0.1);
}

TEST(Handle, MayBeGivenBackInAnyOrder) {
    const std::string tone = encode("tone.mp3", sineLeft(1000), 44100);
    const auto before = openFiles();
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
    EXPECT_EQ(openFiles(), before);
}

TEST(Error, IsPutIntoWords) {
    int result = 0;
    for (const char* const word :
         {"well", "handle", "argument", "not been initialised", "initialised before", "memory", "not exist",
          "cannot be read", "folder", "empty", "not an MP3", "busy", "unknown"}) {
        EXPECT_THAT(FMOD_ErrorString(static_cast<FMOD_RESULT>(result++)), testing::HasSubstr(word));
    }
}

TEST(System, GoesExactlyByTheClockAndStopsAtTheEnd) {
    const Room room; // its device would be another clock, if anybody opened it
    // One second and a bit: the last sample ends 1012290.2 us after the first began.
    const Player player;
    FMOD_SOUND* const sound = player.load(encode("tone.mp3", sineLeft(1000), 44642));
    EXPECT_EQ(length(sound), 1012U) << "rounded down";
    EXPECT_EQ(length(player.load(encode("low.mp3", sineLeft(1000), 22050, 22050))), 1000U);
    FMOD_CHANNEL* const channel = player.play(sound);
    for (const int count : {-1, 0, 5}) {
        EXPECT_EQ(FMOD_Channel_SetLoopCount(channel, count), FMOD_OK) << "but it plays once";
    }
    // Whether to pause, where to go unless it is 0, the time that then passes, and where that leads.
    using Step = std::tuple<int, unsigned, unsigned long long, unsigned>;
    for (const auto& [pause, jump, time, expected] :
         {Step(0, 0, 999, 0), Step(0, 0, 499001, 500), Step(7, 0, 3600000000, 500), Step(0, 0, 1000, 501),
          Step(0, 100, 2000, 102), Step(1, 1012, 2000, 1012), Step(1, 1013, 0, 1012), Step(0, 0, 290, 1012),
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

TEST(System, PlaysAsManyTracksAsItHasChannelsApartFromOtherSystems) {
    const std::string tone = encode("tone.mp3", sineLeft(1000), 44100);
    const Player other;
    other.play(tone);
    std::set<void*> handles;
    for (const int most : {2, 10}) {
        const Player player(supplied, most);
        FMOD_SOUND* const sound = player.load(tone);
        std::vector<FMOD_CHANNEL*> channels{player.play(sound), player.play(sound, true)};
        for (int i = 2; i < most; ++i) {
            channels.push_back(player.play(sound));
        }
        FMOD_CHANNEL* none = nullptr;
        EXPECT_EQ(FMOD_System_PlaySound(player.system, FMOD_CHANNEL_FREE, sound, 0, &none),
                  FMOD_ERR_CHANNELS_BUSY);
        EXPECT_EQ(none, nullptr);
        now += 400000;
        EXPECT_EQ(position(channels[0]), 400U);
        EXPECT_EQ(position(channels[1]), 0U) << "it waits there";
        EXPECT_EQ(FMOD_Channel_Stop(channels[1]), FMOD_OK);
        channels.push_back(player.play(sound));
        EXPECT_EQ(position(channels.back()), 0U) << "started afresh";
        now += 600000;
        channels.push_back(player.play(sound));
        EXPECT_NE(channels.back(), nullptr) << "the first has come to its end";
        EXPECT_EQ(player.play(sound) == nullptr, most == 2);
        handles.insert({player.system, sound});
        handles.insert(channels.begin(), channels.end());
    }
    EXPECT_EQ(handles.size(), 4U + 4 + 12) << "none is handed out twice";
    for (const void* const handle : handles) {
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(handle) % 2, 1U) << "no address of anything";
    }
    FMOD_CHANNEL* const again = other.play(other.load(tone));
    now += 1000;
    EXPECT_EQ(position(again), 1U) << "other systems came and went";
}
