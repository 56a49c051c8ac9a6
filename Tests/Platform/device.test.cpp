// Real time, with a sound device and without one.

#include "Player.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

/// A tone that gets higher and louder, so that no two moments look alike.
static Sample rising(double time) {
    return {(0.2 + 0.2 * time) * std::sin(2 * M_PI * (1000 + 500 * time) * time), 0};
}

/// Plays it as the show does, by frames of 15 ms, with a pause in the middle.
static void play(const std::string& track) {
    const Player player(REAL_TIME);
    FMOD_CHANNEL* const channel = player.play(track);
    const auto begin = std::chrono::steady_clock::now();
    double lead = 0; // of the position over the time
    double expected = 0;
    int uneven = 0;
    for (int frame = 0; frame < 120; ++frame) {
        std::this_thread::sleep_until(begin + std::chrono::milliseconds(15 * frame));
        const unsigned int place = position(channel);
        const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - begin;
        const std::vector<float> values = spectrum(channel);
        const auto loudest = std::max_element(values.begin(), values.end());
        const double before = std::exchange(lead, place - time.count());
        if (frame == 40 || frame == 60) {
            FMOD_Channel_SetPaused(channel, frame == 40);
        } else if (frame % 60 == 10) {
            expected = lead; // it takes a while to get going
        } else if (frame > 41 && frame < 60) {
            EXPECT_EQ(*loudest, 0) << frame;
        } else if (frame % 60 > 10 && frame != 41) {
            EXPECT_NEAR(lead, expected, 25) << frame;
            EXPECT_NEAR(loudest - values.begin(), (1000 + place) * 1024 / 44100.0, 3) << frame;
            uneven += std::abs(lead - before) > 6 ? 1 : 0;
        }
    }
    EXPECT_LT(uneven, 8);
    EXPECT_NEAR(lead, -300, 150) << "not as long as the pause";
    FMOD_Channel_SetPosition(channel, 1950, FMOD_TIMEUNIT_MS);
    std::this_thread::sleep_for(std::chrono::milliseconds(250));
    EXPECT_EQ(position(channel), OVER);
}

// In processes of their own, because a process looks for its sound devices once.
TEST(Device, SetsThePaceAndIsNotNeeded) {
    const std::string track = encode("rising.mp3", rising, 2 * 44100);
    const std::string errors = folder.path + "errors";
    for (const char* const driver : {"alsa", "null"}) {
        const ::pid_t child = ::fork();
        if (child == 0) {
            ::setenv("ALSOFT_DRIVERS", driver, 1);
            ::setenv("ALSA_CONFIG_PATH", "/nowhere", 1);
            [[maybe_unused]] const std::FILE* const file = std::freopen(errors.c_str(), "w", stderr);
            play(track);
            std::fflush(nullptr);
            ::_exit(HasFailure() ? EXIT_FAILURE : EXIT_SUCCESS);
        }
        int status = -1;
        ::waitpid(child, &status, 0);
        EXPECT_EQ(status, 0) << driver;
        EXPECT_EQ(read(errors), "") << driver;
    }
}
