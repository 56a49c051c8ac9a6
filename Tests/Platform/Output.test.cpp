// What the sound device plays, and what becomes of the show without one.

#include "Output.h"

#include "Error.h"
#include "Player.h"
#include "Room.h"

#include <AL/al.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdio>
#include <dlfcn.h>
#include <memory>
#include <thread>
#include <utility>

using namespace fmodex;

namespace {

/// A tone that gets higher and louder, so that no two moments look alike, and another one on the right.
Sample rising(double time) {
    return {(0.2 + 0.2 * time) * std::sin(2 * M_PI * (1000 + 500 * time) * time),
            0.3 * std::sin(5000 * time)};
}

/// However long something takes, it must happen.
bool happens(const std::function<bool()>& something) {
    int patience = 20000;
    while (!something() && --patience > 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return patience > 0;
}

std::shared_ptr<Channel> channelOf(const std::string& path, bool patient = true, bool paused = false) {
    FMOD_Clock_Set(supplied);
    const auto track = std::make_shared<Track>(path, patient);
    if (patient) {
        track->isOver(INT_MAX); // has been decoded then
    }
    return std::make_shared<Channel>(track, Clock(), paused, true);
}

/// Somebody in the room, while a channel plays.
struct Listener {
    explicit Listener(std::shared_ptr<Channel> played) : channel(std::move(played)) {
        room.enter();
        voice = std::make_unique<Voice>(channel);
    }

    /// Lets the device play on for 10 ms. Returns whether the channel goes on.
    bool step() {
        const bool goesOn = voice->update();
        voice->report();
        hear(441);
        now += 10000;
        return goesOn;
    }

    void hear(int frames) {
        const std::vector<Speakers> more = room.hear(frames);
        heard.insert(heard.end(), more.begin(), more.end());
    }

    /// Says how many frames since the last such question were heard as they stand in the track from the one
    /// numbered first, from the front speakers only.
    long heardFrom(std::int64_t first) {
        std::vector<Frame> expected(heard.size());
        channel->getTrack().copy(first, expected.size(), expected.data());
        const auto same = [](const Speakers& speakers, const Frame& frame) {
            return speakers == Speakers{frame.left, frame.right, 0, 0};
        };
        const std::vector<Speakers> all = std::exchange(heard, {});
        return std::mismatch(all.begin(), all.end(), expected.begin(), same).first - all.begin();
    }

    /// So many steps, during which the track is heard from a frame on, up to a place in microseconds.
    void expect(int steps, std::int64_t first, std::int64_t place) {
        for (int i = 0; i < steps; ++i) {
            EXPECT_TRUE(step());
        }
        EXPECT_EQ(heardFrom(first), steps * 441) << first;
        EXPECT_NEAR(channel->getPosition(), place, 2) << first;
    }

    Room room;
    std::shared_ptr<Channel> channel;
    std::unique_ptr<Voice> voice;
    std::vector<Speakers> heard;
};

constexpr std::int64_t SILENCE = 1000000000; ///< where no track has a frame

} // namespace

TEST(Voice, PlaysEveryFrameAtItsTimeWhateverTheRateAndTheWayToTheEar) {
    for (const auto& [rate, latency] : {std::pair(44100, 30), std::pair(48000, 0), std::pair(22050, 300)}) {
        const auto tone = sineLeft(50);
        Listener listener(channelOf(encode("tone.mp3", tone, rate * 3 / 2, rate)));
        listener.room.latency = latency * 1000000LL;
        for (int time = 10; time < 1510 + latency; time += 10) {
            ASSERT_TRUE(listener.step()) << rate << ' ' << time;
            ASSERT_NEAR(listener.channel->getPosition(), std::max(0, time - latency) * 1000.0, 20) << rate;
        }
        EXPECT_FALSE(listener.step() && listener.step()) << "all has reached the ear";
        for (int i = 2000; i < 64000; ++i) {
            ASSERT_NEAR(listener.heard[i][0], 32767 * tone(i / 44100.0)[0], 2500) << rate << ' ' << i;
        }
        EXPECT_TRUE(rate != 44100 || listener.heardFrom(0) >= 67473);
    }
}

TEST(Voice, DoesWhatItsChannelIsTold) {
    Listener listener(channelOf(encode("rising.mp3", rising, 5 * 44100), true, true));
    Channel& channel = *listener.channel;
    listener.expect(1, SILENCE, 0);
    channel.setPaused(false);
    listener.expect(10, 0, 100000);
    channel.setPaused(true);
    listener.expect(10, SILENCE, 100000);
    channel.setPaused(false);
    listener.expect(10, 4410, 200000);
    channel.setPosition(2000000);
    listener.voice->report();
    now += 1000;
    EXPECT_EQ(channel.getPosition(), 2000000) << "the device has not been told yet";
    listener.expect(10, 88200, 2100000);
    // Nobody supplies the device for a second. It plays what it has, four portions, and waits; so does the
    // channel, which has gone on meanwhile, until the device comes to where it is.
    now += 1000000;
    listener.hear(44100);
    EXPECT_EQ(listener.heardFrom(92610), 4 * 4096 - 4410);
    std::int64_t last = channel.getPosition();
    for (int i = 0; i < 90; ++i) {
        ASSERT_TRUE(listener.step());
        ASSERT_GE(channel.getPosition(), last) << "never backwards";
        last = channel.getPosition();
    }
    EXPECT_EQ(listener.heardFrom(88200 + 4 * 4096), 90 * 441);
    EXPECT_NEAR(last, 2000000 + 4 * 4096 / 0.0441 + 900000, 2);
    channel.stop();
    EXPECT_FALSE(listener.step());
}

TEST(Voice, WaitsForTheDecoder) {
    const std::string path = encode("rising.mp3", rising, 44100);
    decodable = 10;
    Listener listener(channelOf(path, false));
    const Track& track = listener.channel->getTrack();
    EXPECT_TRUE(happens([&] { return decodable == 0 && track.getDecoded() > 8192; }));
    for (int i = 0; i < 50; ++i) {
        EXPECT_TRUE(listener.step());
    }
    EXPECT_EQ(listener.heardFrom(0), 8192) << "whole portions only";
    EXPECT_LE(listener.channel->getPosition(), 190000);
    decodable = INT_MAX;
    EXPECT_TRUE(happens([&] { return track.isComplete(); }));
    listener.expect(50, 8192, 8192 / 0.0441 + 500000);
}

TEST(Voice, GivesBackWhatItTakes) {
    const std::string path = encode("tone.mp3", sineLeft(500), 4410);
    Room room;
    room.enter();
    const auto channel = channelOf(path);
    ALuint before = 0;
    alGenBuffers(1, &before);
    alDeleteBuffers(1, &before);
    ALuint source = 0;
    ALuint last = 0;
    while (alGenSources(1, &source), alGetError() == AL_NO_ERROR) {
        last = source;
    }
    EXPECT_THROW(Voice{channel}, Error) << "the device takes no more";
    alDeleteSources(1, &last);
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(Voice(channel).update());
    }
    ALuint after = 0;
    alGenBuffers(1, &after);
    EXPECT_EQ(after, before);
}

/// Whether a channel goes by the clock alone. One that is on the device waits there to be let go on.
static bool hasLeft(Channel& channel) {
    channel.setPosition(500000);
    channel.setPaused(true);
    channel.setPaused(false);
    now += 7;
    return channel.getPosition() == 500007;
}

TEST(Output, IsLeftWhenItIsLostAndTheShowGoesOn) {
    const std::string path = encode("rising.mp3", rising, 44100);
    Room room;
    const auto channel = channelOf(path);
    const auto waiting = channelOf(path);
    const auto late = channelOf(path);
    std::unique_ptr<Output> output;
    std::atomic<bool> failing{false};
    bool failed = false;
    room.isConnected = [&] {
        if (failed) {
            output->play(waiting);
        } else if (failing) {
            room.hear(20000); // what a lost device says of where it is means nothing
        }
        return !std::exchange(failed, failing);
    };
    output = Output::open();
    output->play(channel);
    EXPECT_TRUE(happens([&] { return room.hear(441)[100][0] != 0; })) << "it is heard";
    EXPECT_FALSE(hasLeft(*waiting));
    const std::int64_t place = channel->getPosition();
    failing = true;
    EXPECT_TRUE(happens([&] { return hasLeft(*waiting); })) << "it was about to be played";
    EXPECT_LT(channel->getPosition(), place + 200000);
    EXPECT_TRUE(hasLeft(*channel));
    output->play(late);
    EXPECT_TRUE(hasLeft(*late));
}

TEST(Output, FallsSilentWhenTheChannelIsStopped) {
    const std::string path = encode("tone.mp3", sineLeft(500), 10 * 44100);
    const Room room;
    const Player player(REAL_TIME);
    FMOD_CHANNEL* const channel = player.play(path);
    const auto sounds = [&] {
        const std::vector<Speakers> heard = room.hear(20);
        return std::any_of(heard.begin(), heard.end(), [](const Speakers& level) { return level[0] != 0; });
    };
    EXPECT_TRUE(happens(sounds));
    EXPECT_EQ(FMOD_Channel_Stop(channel), FMOD_OK);
    EXPECT_TRUE(happens([&] { return !sounds(); }));
}

TEST(Output, PlaysOnUnheardWhatTheDeviceDoesNotTake) {
    FMOD_Clock_Set(supplied);
    const auto track = std::make_shared<Track>(encode("tone.mp3", sineLeft(500), 44100), true);
    const Room room;
    const auto output = Output::open();
    std::vector<std::shared_ptr<Channel>> channels;
    for (int i = 0; i < 300; ++i) {
        channels.push_back(std::make_shared<Channel>(track, Clock(), false, true));
        output->play(channels.back());
    }
    EXPECT_TRUE(happens([&] { return hasLeft(*channels.back()); }));
}

/// ALSA has something to complain about: there is no device of that name.
static void provoke(void* alsa) {
    using Open = int (*)(void**, const char*, int, int);
    const auto open = reinterpret_cast<Open>(alsa != nullptr ? ::dlsym(alsa, "snd_pcm_open") : nullptr);
    void* device = nullptr;
    if (open == nullptr || open(&device, "nothing", 0, 0) == 0) {
        std::fputs("ALSA lib is missing, or has a device called nothing\n", stderr);
    }
}

/// A whole track in real time, as the show plays it. Ends the process.
static void playInRealTime(const char* drivers) {
    ::setenv("ALSOFT_DRIVERS", drivers, 1);
    ::setenv("ALSOFT_LOGLEVEL", "1", 1); // OpenAL tells of devices that were left open
    ::setenv("ALSA_CONFIG_PATH", "/nowhere", 1);
    void* const alsa = ::dlopen("libasound.so.2", RTLD_LAZY);
    constexpr int RATE = 48000;
    const std::string track = encode("rising.mp3", rising, RATE * 3 / 2, RATE);
    {
        const Player player(REAL_TIME);
        FMOD_SOUND* const sound = player.load(track);
        const auto begin = std::chrono::steady_clock::now();
        FMOD_CHANNEL* const channel = player.play(sound);
        unsigned int last = 0;
        for (;;) {
            const unsigned int before = position(channel);
            const std::vector<float> values = spectrum(channel);
            const unsigned int after = position(channel);
            const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - begin;
            if (after == OVER) {
                EXPECT_GE(time.count(), 1499);
                break;
            }
            EXPECT_LE(last, before) << "never backwards";
            EXPECT_LE(after, time.count()) << "never ahead of the time";
            const auto loudest = std::max_element(values.begin(), values.end());
            if (*loudest > 0.1f) {
                EXPECT_GT(loudest - values.begin(), (1000 + before) * 1024.0 / RATE - 3);
                EXPECT_LT(loudest - values.begin(), (1000 + after) * 1024.0 / RATE + 3);
            }
            last = after;
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        if (drivers == std::string("null")) {
            provoke(alsa);
        }
    }
    std::fputs("Closed. ", stderr);
    provoke(alsa);
    std::exit(testing::Test::HasFailure() ? EXIT_FAILURE : EXIT_SUCCESS);
}

// In processes of their own, because a process looks for its sound devices once.
TEST(Output, SetsThePaceQuietlyAndIsNotNeeded) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(playInRealTime("null"), testing::ExitedWithCode(0), "^Closed[.] (ALSA lib[^\n]*\n)+$");
    EXPECT_EXIT(playInRealTime("alsa"), testing::ExitedWithCode(0), "^Closed[.] (ALSA lib[^\n]*\n)+$");
}
