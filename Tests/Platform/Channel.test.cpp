// Where a channel is, by a supplied clock and with a device that reports, and what is heard there.

#include "Channel.h"

#include "Player.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <complex>
#include <memory>
#include <random>
#include <tuple>

using namespace fmodex;

/// How often this thread has taken something from the heap, in the program and in the layer alike.
int allocations();

static std::shared_ptr<const Track> noiseOf(int samples, int rate = 44100) {
    FMOD_Clock_Set(supplied);
    const auto noise = [source = std::mt19937(1)](double /*time*/) mutable {
        return Sample{static_cast<double>(source()) / std::mt19937::max(), 0.5};
    };
    return std::make_shared<Track>(encode("noise.mp3", noise, samples, rate), true);
}

/// Entry k of the transform of some frames, by its definition.
static double magnitude(const std::vector<Frame>& frames, int k) {
    const double count = static_cast<double>(frames.size()) / 2;
    std::complex<double> sum = 0;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const double weight = 1 - std::abs(static_cast<double>(i) - count) / count;
        sum += weight * frames[i].left * std::polar(1.0, -M_PI * k * static_cast<double>(i) / count);
    }
    return std::abs(sum) * 2 / count / 32768;
}

TEST(Spectrum, IsTheTransformOfTheLeftUnderATriangleAroundWhatIsHeardNow) {
    for (const int rate : {44100, 22050}) {
        const auto track = noiseOf(rate, rate);
        Channel channel(track, Clock(), false, false);
        // There is silence around the track. The last place is a microsecond before its end.
        for (const int place : {0, 1000, 499999, 999000, 999999}) {
            channel.setPosition(place);
            for (const int count : {64, 512, 8192}) {
                std::vector<Frame> frames(2L * count);
                track->copy(place * static_cast<std::int64_t>(rate) / 1000000 - count, frames.size(),
                            frames.data());
                std::vector<float> values(count + 1, -1);
                channel.getSpectrum(values.data(), count);
                for (int k = 0; k < count; k += 1 + count / 8) {
                    ASSERT_NEAR(values[k], magnitude(frames, k), 5e-6) << place << ' ' << count << ' ' << k;
                }
                EXPECT_EQ(values[count], -1) << "the entry at half the rate";
                const int taken = allocations();
                channel.getSpectrum(values.data(), count);
                EXPECT_EQ(allocations(), taken);
            }
        }
        for (const bool over : {false, true}) {
            channel.setPaused(!over);
            now += over ? 1 : 0;
            std::vector<float> values(64, 7);
            channel.getSpectrum(values.data(), 64);
            EXPECT_THAT(values, testing::Each(0.0f)) << "paused, then over";
            EXPECT_EQ(channel.isOver(), over);
        }
    }
}

TEST(Channel, GoesByTheClockAndIsKeptInStepWithTheDevice) {
    const auto track = noiseOf(3 * 44100); // which supplies the clock
    Channel channel(track, Clock(), false, true);
    const auto report = [&](std::int64_t place, std::uint64_t jumps = 0) {
        return [&, place, jumps] { channel.follow(place, jumps); };
    };
    const auto jump = [&](std::int64_t place) { return [&, place] { channel.setPosition(place); }; };
    const auto hold = [&] { channel.setPaused(true); };
    const auto go = [&] { channel.setPaused(false); };
    const auto starve = [&] { channel.wait(); };
    const auto leave = [&] { channel.leaveDevice(); };
    // What happens, the microseconds that then pass, and where that leads. A channel waits for the first
    // report (and a device has not heard of a pause or jump yet when it reports another number of jumps). Of
    // what the device is ahead or behind it takes a 64th, above 100 ms all; but it never runs backwards.
    using Step = std::tuple<std::function<void()>, unsigned, std::int64_t>;
    for (const auto& [act, time, expected] : {Step(go, 50000, 0),
                                              Step(report(-30000), 20000, 0),
                                              Step(go, 30000, 20000),
                                              Step(report(26400), 0, 20100),
                                              Step(report(120100), 0, 21662),
                                              Step(report(121663), 1000, 122663),
                                              Step(report(116263), 90, 122663),
                                              Step(go, 30, 122683),
                                              Step(report(22682), 110000, 132682),
                                              Step(hold, 70000, 132682),
                                              Step(report(200000), 0, 132682),
                                              Step(go, 70000, 132682),
                                              Step(report(131682), 1010, 132692),
                                              Step(jump(2000000), 30000, 2000000),
                                              Step(report(140000), 30, 2000000),
                                              Step(report(1999000, 1), 1500, 2000500),
                                              Step(starve, 5000, 2000500),
                                              Step(report(2000500, 1), 500, 2001000),
                                              Step(jump(100000), 30, 100000),
                                              Step(report(2001000, 1), 30, 100000),
                                              Step(hold, 30, 100000),
                                              Step(jump(200000), 30, 200000),
                                              Step(report(7, 3), 30, 200000),
                                              Step(leave, 30, 200000),
                                              Step(go, 30, 200030),
                                              Step(go, 30, 200060),
                                              Step(leave, 40, 200100),
                                              Step(jump(2999000), 999, 2999999)}) {
        act();
        now += time;
        EXPECT_EQ(channel.getPosition(), expected);
    }
    EXPECT_FALSE(channel.isOver());
    now += 1;
    EXPECT_TRUE(channel.isOver());
}
