// What happens to handles that are not good, and in which order things may be given back.

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "Music.h"
#include "Player.h"

namespace {

using sound::Folder;
using sound::Player;

// Every call on a handle of each kind, with arguments that are all right and results that must not change.
template <typename Handle>
using Calls = std::vector<std::function<FMOD_RESULT(Handle*)>>;

unsigned int number = 77;
std::array<char, 8> text{};
std::array<float, 512> values{};
FMOD_BOOL answer = 77;
FMOD_SOUND* soundResult = nullptr;
FMOD_CHANNEL* channelResult = nullptr;

Calls<FMOD_SYSTEM> systemCalls(const std::string& path, FMOD_SOUND* sound) {
    return {[](FMOD_SYSTEM* s) { return FMOD_System_Init(s, 10, FMOD_INIT_NORMAL, nullptr); },
            [path](FMOD_SYSTEM* s) { return sound::createStream(s, path, &soundResult); },
            [sound](FMOD_SYSTEM* s) {
                return FMOD_System_PlaySound(s, FMOD_CHANNEL_FREE, sound, 0, &channelResult);
            },
            FMOD_System_Update,
            FMOD_System_Close,
            FMOD_System_Release};
}

Calls<FMOD_SOUND> soundCalls() {
    return {[](FMOD_SOUND* s) { return FMOD_Sound_GetLength(s, &number, FMOD_TIMEUNIT_MS); },
            [](FMOD_SOUND* s) { return FMOD_Sound_GetName(s, text.data(), text.size()); },
            FMOD_Sound_Release};
}

Calls<FMOD_CHANNEL> channelCalls() {
    return {[](FMOD_CHANNEL* c) { return FMOD_Channel_GetPaused(c, &answer); },
            [](FMOD_CHANNEL* c) { return FMOD_Channel_SetPaused(c, 1); },
            [](FMOD_CHANNEL* c) { return FMOD_Channel_SetLoopCount(c, -1); },
            [](FMOD_CHANNEL* c) {
                return FMOD_Channel_GetSpectrum(c, values.data(), 512, 0, FMOD_DSP_FFT_WINDOW_TRIANGLE);
            },
            [](FMOD_CHANNEL* c) { return FMOD_Channel_GetPosition(c, &number, FMOD_TIMEUNIT_MS); },
            [](FMOD_CHANNEL* c) { return FMOD_Channel_SetPosition(c, 0, FMOD_TIMEUNIT_MS); },
            FMOD_Channel_Stop};
}

template <typename Handle>
void expectRefusal(const Calls<Handle>& calls, const std::vector<void*>& handles) {
    for (std::size_t i = 0; i < calls.size(); ++i) {
        for (void* const handle : handles) {
            EXPECT_EQ(calls[i](static_cast<Handle*>(handle)), FMOD_ERR_HANDLE) << i << ' ' << handle;
        }
    }
}

class Handles : public testing::Test {
protected:
    const Folder folder;
    const std::string tone = folder.encode("tone.mp3", sound::sineLeft(1000), 44100);
};

TEST_F(Handles, ThatAreNullForeignOrOverAreRefusedByEveryCall) {
    const Player player;
    FMOD_SOUND* const sound = player.load(tone);
    FMOD_CHANNEL* const channel = player.play(sound);
    FMOD_SOUND* const releasedSound = player.load(tone);
    FMOD_CHANNEL* const stopped = player.play(releasedSound);
    EXPECT_EQ(FMOD_Channel_Stop(stopped), FMOD_OK);
    EXPECT_EQ(FMOD_Sound_Release(releasedSound), FMOD_OK);
    FMOD_SYSTEM* released = nullptr;
    FMOD_System_Create(&released);
    EXPECT_EQ(FMOD_System_Release(released), FMOD_OK);

    int local = 0;
    const std::vector<void*> strangers = {nullptr, &local, reinterpret_cast<void*>(1)};
    const auto with = [&strangers](std::initializer_list<void*> more) {
        std::vector<void*> all = strangers;
        all.insert(all.end(), more);
        return all;
    };
    expectRefusal(systemCalls(tone, sound), with({sound, channel, released}));
    expectRefusal(soundCalls(), with({player.system(), channel, releasedSound}));
    expectRefusal(channelCalls(), with({player.system(), sound, stopped}));
    EXPECT_EQ(number, 77U);
    EXPECT_EQ(answer, 77);
    EXPECT_EQ(text[0], '\0');
    EXPECT_EQ(soundResult, nullptr);
    EXPECT_EQ(channelResult, nullptr);

    // A sound of another system, and a system that has nowhere to put its results.
    const Player other;
    EXPECT_EQ(FMOD_System_PlaySound(other.system(), FMOD_CHANNEL_FREE, sound, 0, &channelResult),
              FMOD_ERR_HANDLE);
    EXPECT_EQ(FMOD_System_PlaySound(player.system(), FMOD_CHANNEL_FREE, sound, 0, nullptr),
              FMOD_ERR_ARGUMENT);
    EXPECT_EQ(sound::createStream(player.system(), tone, nullptr), FMOD_ERR_ARGUMENT);
    EXPECT_EQ(FMOD_System_CreateStream(player.system(), nullptr, FMOD_2D, nullptr, &soundResult),
              FMOD_ERR_ARGUMENT);
    EXPECT_EQ(FMOD_System_CreateStream(player.system(), tone.c_str(), 0x2, nullptr, &soundResult),
              FMOD_ERR_ARGUMENT);
    EXPECT_EQ(FMOD_System_Create(nullptr), FMOD_ERR_ARGUMENT);
    EXPECT_EQ(FMOD_Sound_GetLength(sound, nullptr, FMOD_TIMEUNIT_MS), FMOD_ERR_ARGUMENT);
    EXPECT_EQ(FMOD_Sound_GetLength(sound, &number, 2), FMOD_ERR_ARGUMENT);
    EXPECT_EQ(FMOD_Channel_GetPaused(channel, nullptr), FMOD_ERR_ARGUMENT);
    EXPECT_EQ(FMOD_Channel_GetPosition(channel, nullptr, FMOD_TIMEUNIT_MS), FMOD_ERR_ARGUMENT);
    EXPECT_EQ(FMOD_Channel_GetPosition(channel, &number, 0), FMOD_ERR_ARGUMENT);
    EXPECT_EQ(FMOD_Channel_SetPosition(channel, 0, 0), FMOD_ERR_ARGUMENT);
    // None of all that has touched what is alive.
    EXPECT_EQ(sound::length(sound), 1000U);
    EXPECT_TRUE(sound::alive(channel));
}

TEST_F(Handles, OfASystemFollowItsState) {
    FMOD_SYSTEM* system = nullptr;
    FMOD_SOUND* sound = nullptr;
    FMOD_CHANNEL* channel = nullptr;
    ASSERT_EQ(FMOD_System_Create(&system), FMOD_OK);
    EXPECT_EQ(FMOD_System_Update(system), FMOD_ERR_NOT_INITIALISED);
    EXPECT_EQ(sound::createStream(system, tone, &sound), FMOD_ERR_NOT_INITIALISED);
    for (const int count : {-1, 0, 4097}) {
        EXPECT_EQ(FMOD_System_Init(system, count, FMOD_INIT_NORMAL, nullptr), FMOD_ERR_ARGUMENT);
    }
    EXPECT_EQ(FMOD_System_Close(system), FMOD_OK);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(FMOD_System_Init(system, 10, FMOD_INIT_NORMAL, nullptr), FMOD_OK);
        EXPECT_EQ(FMOD_System_Init(system, 10, FMOD_INIT_NORMAL, nullptr), FMOD_ERR_INITIALISED);
        EXPECT_EQ(FMOD_System_Update(system), FMOD_OK);
        EXPECT_EQ(sound::createStream(system, tone, &sound), FMOD_OK);
        EXPECT_EQ(FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 0, &channel), FMOD_OK);
        EXPECT_TRUE(sound::alive(channel));
        EXPECT_EQ(FMOD_System_Close(system), FMOD_OK);
        EXPECT_EQ(FMOD_System_Close(system), FMOD_OK);
        EXPECT_FALSE(sound::alive(channel));
        EXPECT_EQ(FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 0, &channel),
                  FMOD_ERR_NOT_INITIALISED);
        EXPECT_EQ(sound::length(sound), 1000U);
    }
    EXPECT_EQ(FMOD_System_Release(system), FMOD_OK);
    EXPECT_EQ(FMOD_System_Release(system), FMOD_ERR_HANDLE);
    EXPECT_EQ(FMOD_Sound_Release(sound), FMOD_ERR_HANDLE);
}

TEST_F(Handles, MayBeGivenBackInAnyOrder) {
    for (const auto time : {Player::Time::supplied, Player::Time::real}) {
        for (const bool soundFirst : {true, false}) {
            for (const bool close : {true, false}) {
                const Player player(time);
                FMOD_SOUND* const sound = player.load(tone);
                FMOD_CHANNEL* const channel = player.play(sound);
                player.load(tone); // never given back
                if (soundFirst) {
                    EXPECT_EQ(FMOD_Sound_Release(sound), FMOD_OK);
                    EXPECT_TRUE(sound::alive(channel));
                }
                if (close) {
                    EXPECT_EQ(FMOD_System_Close(player.system()), FMOD_OK);
                }
                EXPECT_EQ(FMOD_System_Release(player.system()), FMOD_OK);
                EXPECT_EQ(FMOD_Sound_Release(sound), FMOD_ERR_HANDLE);
                EXPECT_FALSE(sound::alive(channel));
            }
        }
    }
}

TEST_F(Handles, MayBeUsedByManyThreads) {
    const Player player(Player::Time::real);
    FMOD_SOUND* const sound = player.load(tone);
    FMOD_CHANNEL* const channel = player.play(sound, true);
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&, number] {
            for (unsigned int i = 0; i < 200; ++i) {
                std::array<float, 512> mine{};
                FMOD_Channel_GetSpectrum(channel, mine.data(), 512, 0, FMOD_DSP_FFT_WINDOW_TRIANGLE);
                FMOD_Channel_SetPaused(channel, static_cast<int>(i) % 2);
                FMOD_Channel_SetPosition(channel, i, FMOD_TIMEUNIT_MS);
                FMOD_CHANNEL* other = nullptr;
                if (FMOD_System_PlaySound(player.system(), FMOD_CHANNEL_FREE, sound, 0, &other) == FMOD_OK) {
                    FMOD_Channel_Stop(other);
                }
                if (number == 0 && i == 100) {
                    FMOD_Sound_Release(sound);
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    FMOD_Channel_SetPosition(channel, 500, FMOD_TIMEUNIT_MS);
    FMOD_Channel_SetPaused(channel, 1);
    EXPECT_GE(sound::position(channel), 500U);
}

} // namespace
