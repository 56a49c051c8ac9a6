// Real time: with a sound device, without one, and with one that gets lost.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "Music.h"

namespace {

using sound::Folder;
using sound::Sample;

struct Frame {
    std::int16_t left;
    std::int16_t right;
};

struct Line {
    double time;       // ms
    unsigned position; // ms
    int entry;
    double value;
};

// A tone that gets higher and louder, so that no two moments look alike.
Sample rising(double time) {
    const double loudness = 0.2 + 0.2 * time;
    return {loudness * std::sin(2 * M_PI * (1000 + 500 * time) * time), 0};
}

class Device : public testing::Test {
protected:
    const Folder folder;
    const std::string track = folder.encode("rising.mp3", rising, 3 * 44100);

    // Plays the track by the probe, which finds the devices that the environment allows. Nothing may be
    // written to standard error.
    std::vector<Line> play(const std::string& environment, const std::string& frames) const {
        const std::string command = environment + " exec " + std::string(PROBE) + " '" + track + "' " +
                                    frames + " >'" + folder.path("out") + "' 2>'" + folder.path("err") + "'";
        EXPECT_EQ(std::system(command.c_str()), 0);
        EXPECT_EQ(sound::read(folder.path("err")), "");
        std::ifstream out(folder.path("out"));
        std::vector<Line> lines;
        for (Line line{}; out >> line.time >> line.position >> line.entry >> line.value;) {
            lines.push_back(line);
        }
        return lines;
    }

    // A device that writes what it plays into a file.
    std::string recorder() const {
        const std::string settings =
            folder.write("settings", "[general]\nsample-type = int16\nfrequency = 44100\nchannels = stereo\n"
                                     "[wave]\nfile = " +
                                         folder.path("played.wav") + "\n");
        return "ALSOFT_DRIVERS=wave ALSOFT_CONF='" + settings + "'";
    }
};

// The position keeps the speed of the time, and each frame sees something new of the tone that is there.
void expectTrueSpeed(const std::vector<Line>& lines, std::size_t begin, std::size_t end) {
    ASSERT_GE(lines.size(), end);
    int uneven = 0;
    for (std::size_t i = begin + 1; i < end; ++i) {
        const double time = lines[i].time - lines[begin].time;
        const double position = lines[i].position - lines[begin].position;
        EXPECT_NEAR(position, time, 25) << i;
        const double passed = lines[i].time - lines[i - 1].time;
        const double step = static_cast<double>(lines[i].position) - lines[i - 1].position;
        uneven += std::abs(step - passed) > 6 ? 1 : 0;
        // On a busy machine a late frame may be followed closely by the next.
        EXPECT_TRUE(passed < 5 || lines[i].value != lines[i - 1].value) << i;
        const double seconds = lines[i].position / 1000.0;
        EXPECT_NEAR(lines[i].entry, (1000 + 1000 * seconds) * 1024 / 44100, 3) << i;
        const double loudness = lines[i].value / (0.2 + 0.2 * seconds);
        EXPECT_TRUE(loudness > 0.7 && loudness < 1.1) << i << ' ' << loudness;
    }
    EXPECT_LT(uneven, static_cast<int>(end - begin) / 10);
}

TEST_F(Device, IsNotNeededForTheShowToRun) {
    // A sound library that finds no settings, complains, and has no device.
    const std::vector<Line> lines = play("ALSOFT_DRIVERS=alsa ALSA_CONFIG_PATH=/nowhere", "300 60 80");
    ASSERT_GT(lines.size(), 200U);
    expectTrueSpeed(lines, 5, 60);
    for (std::size_t i = 60; i < 80; ++i) {
        EXPECT_EQ(lines[i].position, lines[60].position);
        EXPECT_EQ(lines[i].value, 0);
    }
    expectTrueSpeed(lines, 80, 200);
    EXPECT_NEAR(lines.back().position, 3000, 30);
    // Nor does whatever this machine has put a line on standard error.
    play("", "10");
}

TEST_F(Device, SetsThePaceOfASmoothPosition) {
    const std::vector<Line> lines = play("ALSOFT_DRIVERS=null", "300 60 80");
    ASSERT_GT(lines.size(), 200U);
    expectTrueSpeed(lines, 10, 60);
    for (std::size_t i = 60; i < 80; ++i) {
        EXPECT_EQ(lines[i].position, lines[60].position);
    }
    EXPECT_NEAR(lines[85].position, lines[60].position + 75, 40);
    expectTrueSpeed(lines, 85, 200);
    EXPECT_NEAR(lines.back().position, 3000, 30);
}

TEST_F(Device, GetsTheTrackItself) {
    const std::vector<Line> lines = play(recorder(), "300");
    expectTrueSpeed(lines, 10, 150);
    EXPECT_NEAR(lines.back().position, 3000, 30);
    // What was played is the track, sample by sample, on the left, and nothing on the right.
    const std::string wave = sound::read(folder.path("played.wav"));
    const std::size_t sounds = wave.find("data") + 8;
    std::vector<Frame> frames((wave.size() - sounds) / sizeof(Frame));
    std::memcpy(frames.data(), &wave[sounds], frames.size() * sizeof(Frame));
    const auto isLoud = [](const Frame& frame) { return std::abs(frame.left) > 50; };
    const auto begin = std::find_if(frames.begin(), frames.end(), isLoud) - frames.begin();
    constexpr int compared = 3 * 44000;
    ASSERT_GT(static_cast<int>(frames.size() - begin), compared + 20);
    // The encoding changes little, but the place of the first sample is only known to a few: take the best.
    double best = 1;
    for (int shift = -20; shift <= 20; ++shift) {
        double difference = 0;
        for (int i = 100; i < compared; ++i) {
            const double played = frames[begin + i + shift].left / 32768.0;
            difference += std::abs(played - rising(i / 44100.0).left);
        }
        best = std::min(best, difference / compared);
    }
    EXPECT_LT(best, 0.01);
    const auto isOnTheRight = [](const Frame& frame) { return std::abs(frame.right) > 50; };
    EXPECT_TRUE(std::none_of(frames.begin(), frames.end(), isOnTheRight));
}

TEST_F(Device, MayBeLostDuringTheShow) {
    // The recorder runs out of space after a second. A pause is possible nevertheless.
    const std::vector<Line> lines = play("trap '' XFSZ; ulimit -f 300; " + recorder(), "300 100 120");
    EXPECT_LT(sound::read(folder.path("played.wav")).size(), 200000U);
    expectTrueSpeed(lines, 10, 100);
    EXPECT_EQ(lines[119].position, lines[100].position);
    expectTrueSpeed(lines, 120, 190);
    EXPECT_NEAR(lines.back().position, 3000, 30);
}

} // namespace
