// What a listener hears, and that what the show sees is in step with it.

#include "Output.h"
#include "Player.h"
#include "Playing.h"
#include "Track.h"

#include <AL/alext.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <dlfcn.h>
#include <iostream>
#include <thread>
#include <vector>

/// What comes from front left, front right, rear left and rear right: -1..1.
using Speakers = std::array<float, 4>;

/// While one lives, the sound device is the mixer of OpenAL alone, which plays on when told to, into a room
/// where one can hear what of a song is played.
struct Room {
    explicit Room(const FMOD_SONG& song) : song(song) { present = this; }
    ~Room() { present = nullptr; }

    /// Listens to so many frames. Whether they are heard, from the front speakers only, as they stand in the
    /// song from the one numbered first; the device may fade in where it starts in the midst of it.
    bool hears(int frames, long long first, int fading = 0) const {
        std::vector<Speakers> heard(frames);
        alcRenderSamplesSOFT(device, heard.data(), frames);
        return std::all_of(heard.begin() + fading, heard.end(), [&](const Speakers& levels) {
            const long long place = first + (&levels - heard.data());
            const bool inside = place >= 0 && place < song.count;
            return levels == (inside ? Speakers{song.frames[2 * place] / 32768.0f,
                                                song.frames[2 * place + 1] / 32768.0f}
                                     : Speakers{});
        });
    }

    inline static Room* present = nullptr;
    const FMOD_SONG song;
    std::int64_t latency = 0; ///< nanoseconds from the mixer to the ear
    bool lost = false;        ///< pulled out of the machine
    ALCdevice* device = nullptr;
};

/// What this machine has for sound is none of our business, unless somebody asks for it. OpenAL reads it
/// once, when it is first called, and starts threads of the sound servers that it finds.
[[maybe_unused]] static const int NO_SOUND_SERVERS = ::setenv("ALSOFT_DRIVERS", "null", 0);

/// The function that one of the same name and kind stands before.
template <typename Function>
static Function* real(Function* /*before*/, const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

// Answers of the sound device that a test has a say in; the rest is left to the real ones.

ALCdevice* alcOpenDevice(const ALCchar* name) {
    if (Room::present == nullptr) {
        return real(alcOpenDevice, "alcOpenDevice")(name);
    }
    return Room::present->device = alcLoopbackOpenDeviceSOFT(nullptr);
}

ALCcontext* alcCreateContext(ALCdevice* device, const ALCint* attributes) {
    constexpr std::array<ALCint, 7> QUAD{
        ALC_FREQUENCY,  44100, ALC_FORMAT_CHANNELS_SOFT, ALC_QUAD_SOFT, ALC_FORMAT_TYPE_SOFT,
        ALC_FLOAT_SOFT, 0};
    const ALCint* const wanted = Room::present != nullptr ? QUAD.data() : attributes;
    return real(alcCreateContext, "alcCreateContext")(device, wanted);
}

void alGetSourcei(ALuint source, ALenum what, ALint* value) {
    real(alGetSourcei, "alGetSourcei")(source, what, value);
    if (Room::present != nullptr && Room::present->lost && what == AL_SOURCE_STATE) {
        *value = AL_STOPPED;
    }
}

void alGetSourcei64vSOFT(ALuint source, ALenum what, ALint64SOFT* values) {
    real(alGetSourcei64vSOFT, "alGetSourcei64vSOFT")(source, what, values);
    if (Room::present != nullptr) {
        values[1] = Room::present->latency;
    }
}

constexpr long long SILENCE = 1000000000; // where no song has a frame
constexpr int FADE = 2048;                // one portion of the mixer

TEST(Device, PlaysEveryFrameAndTheShowIsInStepWithTheEar) {
    const Noise noise(5LL * 44100 - 123); // the last of any portions is not full
    Room room(noise.song);
    FMOD_Clock_Set([] { return clockTime; });
    const auto output = fmodex::Output::open();
    for (const int latency : {0, 300}) { // ms
        room.latency = latency * 1000000LL;
        fmodex::Playing playing(noise.song, nullptr, true);
        std::int64_t begin = 0; // where it plays from, in ms
        std::int64_t last = 0;
        // Lets the device play on for so many steps of 10 ms.
        const auto expect = [&](int steps) {
            for (int i = 0; i < steps; ++i) {
                EXPECT_TRUE(room.hears(441, 441 * (begin / 10 + i), i == 0 ? 441 : 0)) << begin << ' ' << i;
                clockTime += 10000;
                const std::int64_t place = playing.getPosition() / 1000;
                const std::int64_t expected = std::max(last, begin + 10L * (i + 1) - latency);
                EXPECT_NEAR(place, expected, 1) << "never backwards, " << begin << ' ' << i;
                last = place;
            }
            begin += 10L * steps;
        };
        expect(50);
        playing.setPaused(true);
        clockTime += 70000;
        room.hears(441, 0); // in which it may fade out
        EXPECT_TRUE(room.hears(441, SILENCE));
        EXPECT_EQ(playing.getPosition() / 1000, last);
        playing.setPaused(false);
        expect(50);
        playing.setPosition(3000000);
        begin = last = 3000;
        expect(50);
        clockTime += 1000000; // the device stumbles, and the show waits for it
        expect(50);
        // It moves on in steps of 20 ms, and the show smoothly.
        for (int i = 0; i < 100; ++i) {
            const int frames = i < 99 ? 882 : 882 - 123; // behind its end it may fade out
            EXPECT_TRUE(i % 2 == 0 || room.hears(frames, 441 * (begin / 10 + i - 1))) << i;
            clockTime += 10000;
            const std::int64_t place = playing.getPosition() / 1000;
            EXPECT_NEAR(place, last + 10, 1) << i;
            last = place;
        }
    }
}

TEST(Device, LosesNothingButTheSoundWhenItIsPulledOut) {
    const Noise noise(44100);
    Room room(noise.song);
    FMOD_Clock_Set([] { return clockTime; });
    const auto output = fmodex::Output::open();
    fmodex::Playing playing(noise.song, nullptr, true);
    room.hears(4410, 0);
    clockTime += 100000;
    EXPECT_NEAR(playing.getPosition(), 100000, 30);
    room.lost = true;
    clockTime += 400000;
    EXPECT_NEAR(playing.getPosition(), 500000, 30) << "by the clock";
    clockTime += 499900;
    EXPECT_FALSE(playing.isOver());
    clockTime += 200;
    EXPECT_TRUE(playing.isOver());
}

TEST(Device, PlaysASongOnWithoutAGapWhileTheShowStartsOver) {
    const Noise noise(44100, 1, 100);
    Room room(noise.song);
    FMOD_Song_Set(&noise.song);
    int heard = 4410;
    for (int round = 0; round < 3; ++round) {
        Player player(true);
        player.play("whatever.mp3");
        EXPECT_TRUE(room.hears(4410, heard, round == 0 ? FADE : 0)) << round;
        FMOD_Channel_Stop(player.channel);
        EXPECT_EQ(player.position(), Player::OVER);
        EXPECT_TRUE(room.hears(4410, heard + 4410)) << "between the rounds";
        heard += 2 * 4410;
    }
    FMOD_Song_Set(nullptr);
}

TEST(Device, PlaysATrackFromItsBeginningIntoTheRestWithoutAGap) {
    const std::string path = tone("long.mp3", 1000, 5 * 44100);
    const fmodex::Track track(path);
    const Room room(track.getSong());
    EXPECT_LT(track.getBeginning().count, 4 * 44100);
    Player player(true);
    player.play(path);
    EXPECT_GT(player.length(), 4900U); // which waits for the rest
    for (int step = 0; step < 49; ++step) {
        EXPECT_NE(player.position(), Player::OVER);
        EXPECT_TRUE(room.hears(4410, 4410LL * step)) << step;
    }
}

/// A track in real time, as the show plays it, on a device or with none that works. Ends the process.
static void playInRealTime(const char* drivers) {
    ::setenv("ALSOFT_DRIVERS", drivers, 1);
    ::setenv("ALSOFT_LOGLEVEL", "1", 1); // OpenAL tells of devices that were left open
    ::setenv("ALSA_CONFIG_PATH", "/nowhere", 1);
    {
        Player player(true);
        player.load(tone("tone.mp3", 1000, 24000, 48000));
        const auto begin = std::chrono::steady_clock::now();
        player.play();
        for (int i = 0; i < 30000 && player.position() != Player::OVER; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        EXPECT_EQ(player.position(), Player::OVER);
        EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(500));
        std::cerr << "the show's own line";
    }
    std::exit(testing::Test::HasFailure() ? EXIT_FAILURE : EXIT_SUCCESS);
}

// In processes of their own, because a process looks for its sound devices once.
TEST(Device, SetsThePaceQuietlyAndIsNotNeeded) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const char* const drivers : {"null", "alsa"}) {
        EXPECT_EXIT(playInRealTime(drivers), testing::ExitedWithCode(0), "^the show's own line$") << drivers;
    }
}
