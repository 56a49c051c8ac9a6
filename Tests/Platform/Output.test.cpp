// What the sound device plays, and what becomes of the show without one.

#include "Output.h"

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

std::shared_ptr<Channel> play(const std::shared_ptr<const Track>& track, bool paused = false) {
    FMOD_Clock_Set(supplied);
    return std::make_shared<Channel>(track, Clock(), paused, true);
}

/// A track that has been decoded.
std::shared_ptr<const Track> trackOf(const Signal& signal, int samples, int rate = 44100) {
    const auto track = std::make_shared<Track>(encode("output.mp3", signal, samples, rate), true);
    track->isOver(INT_MAX);
    return track;
}

/// Somebody in the room, while a channel plays.
struct Listener {
    explicit Listener(std::shared_ptr<Channel> played) : channel(std::move(played)), voice(channel) {}

    /// Lets the device play on for 10 ms. Returns whether the channel goes on.
    bool step() {
        const bool goesOn = voice.update();
        voice.report();
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
        const auto same = [](const Speakers& levels, const Frame& frame) {
            return levels == Speakers{1.0f * frame.left, 1.0f * frame.right};
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

    Room room{true};
    std::shared_ptr<Channel> channel;
    Voice voice;
    std::vector<Speakers> heard;
};

constexpr std::int64_t SILENCE = 1000000000; ///< where no track has a frame

} // namespace

TEST(Voice, PlaysEveryFrameAtItsTimeWhateverTheRateAndTheWayToTheEar) {
    const auto tone = sineLeft(50);
    for (const auto& [rate, latency] : {std::pair(44100, 30), std::pair(48000, 0), std::pair(22050, 300)}) {
        Listener listener(play(trackOf(tone, rate * 3 / 2, rate)));
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

TEST(Voice, DoesWhatItsChannelIsToldAndGivesBackWhatItTakes) {
    Listener listener(play(trackOf(rising, 5 * 44100), true));
    Channel& channel = *listener.channel;
    listener.expect(1, SILENCE, 0);
    channel.setPaused(false);
    listener.expect(10, 0, 100000);
    channel.setPaused(true);
    listener.expect(10, SILENCE, 100000);
    channel.setPaused(false);
    listener.expect(10, 4410, 200000);
    channel.setPosition(2000000);
    listener.voice.report();
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
    // No device has sources for so many voices at a time. Of buffers the lowest number that is free comes
    // next.
    std::array<ALuint, 2> next{};
    for (ALuint& buffer : next) {
        alGenBuffers(1, &buffer);
        alDeleteBuffers(1, &buffer);
        for (int i = 0; i < 300; ++i) {
            ASSERT_TRUE(Voice(listener.channel).update());
        }
    }
    EXPECT_EQ(next[0], next[1]);
    channel.stop();
    EXPECT_FALSE(listener.step());
}

TEST(Voice, WaitsForTheDecoder) {
    const std::string path = encode("rising.mp3", rising, 44100);
    decodable = 10;
    Listener listener(play(std::make_shared<Track>(path, false)));
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

/// Whether a channel goes by the clock alone. One that is on the device waits there to be let go on.
static bool hasLeft(Channel& channel) {
    channel.setPosition(500000);
    channel.setPaused(true);
    channel.setPaused(false);
    now += 7;
    return channel.getPosition() == 500007;
}

TEST(Output, IsLeftByWhatItDoesNotTakeAndWhenItIsLost) {
    const auto track = trackOf(rising, 44100);
    const auto stopped = play(track);
    const auto channel = play(track);
    const auto waiting = play(track);
    const auto late = play(track);
    Room room;
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
    const auto isHeard = [&room] { return room.hear(441)[100][0] != 0; };
    output->play(stopped);
    EXPECT_TRUE(happens(isHeard));
    stopped->stop();
    EXPECT_TRUE(happens([&] { return !isHeard() && stopped.use_count() == 1; }))
        << "nobody plays it any more";
    output->play(channel);
    EXPECT_TRUE(happens(isHeard));
    std::vector<std::shared_ptr<Channel>> crowd;
    for (int i = 0; i < 300; ++i) {
        crowd.push_back(play(track, true));
        output->play(crowd.back());
    }
    EXPECT_TRUE(happens([&] { return hasLeft(*crowd.back()); })) << "the device does not take so many";
    EXPECT_FALSE(hasLeft(*waiting));
    const std::int64_t place = channel->getPosition();
    failing = true;
    EXPECT_TRUE(happens([&] { return hasLeft(*waiting); })) << "it was about to be played";
    EXPECT_LT(channel->getPosition(), place + 200000);
    EXPECT_TRUE(hasLeft(*channel));
    output->play(late);
    EXPECT_TRUE(hasLeft(*late));
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
static void playInRealTime(const std::string& drivers) {
    ::setenv("ALSOFT_DRIVERS", drivers.c_str(), 1);
    ::setenv("ALSOFT_LOGLEVEL", "1", 1); // OpenAL tells of devices that were left open
    ::setenv("ALSA_CONFIG_PATH", "/nowhere", 1);
    void* const alsa = ::dlopen("libasound.so.2", RTLD_LAZY);
    const std::string track = encode("rising.mp3", rising, 24000, 48000);
    {
        const Player player(REAL_TIME);
        FMOD_SOUND* const sound = player.load(track);
        const auto begin = std::chrono::steady_clock::now();
        FMOD_CHANNEL* const channel = player.play(sound);
        EXPECT_TRUE(happens([channel] { return position(channel) == OVER; }));
        EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(500));
        if (drivers == "null") {
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
    for (const char* const drivers : {"null", "alsa"}) {
        EXPECT_EXIT(playInRealTime(drivers), testing::ExitedWithCode(0), "^Closed[.] (ALSA lib[^\n]*\n)+$");
    }
}
