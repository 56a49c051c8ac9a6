// What a frame of the show costs us, without OpenGL and the window: everything between two buffer swaps, that
// is an update and the two drawings, sound layer included, scene by scene over the whole show.
//
// The yardstick is what no frame can do without: two plain copies of the lattice's points and indices, made
// now and then between the frames of the same run. Times are medians over several shows, frame by frame.
//
//     cd <where data/ lies> && frame_bench [shows]
//
// Instructions instead of times, which do not depend on what else the machine does: a profile a scene, of
// which the first is the start-up, and over the whole show the functions, hottest first. Divide by the frames
// printed.
//
//     valgrind --tool=callgrind --dump-before='*sceneBegins*' frame_bench --once
//     grep ^totals callgrind.out.*
//
//     valgrind --tool=callgrind frame_bench --once
//     callgrind_annotate callgrind.out.*

#include "Host.h"
#include "Stage.h"
#include "Timeline.h"

#include <fmod_clock.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <iostream>
#include <numeric>
#include <streambuf>
#include <string_view>
#include <thread>
#include <vector>

namespace {
using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;

const std::size_t COPY_INTERVAL =
    16; // frames: often enough to see the same machine, seldom enough to leave its caches

struct Show {
    std::vector<double> frames; // us each, of all but the first, which ends the start-up
    std::vector<double> copies; // us each pair of copies
};

Show* pShow = nullptr;
bool measuring = true;
Clock::time_point frameStart;

std::vector<char> lattice(10000 * 28 + 39600 * 4, 1);
std::vector<char> copied(lattice.size());

double copyTwice() {
    std::memcpy(copied.data(), lattice.data(), lattice.size()); // warms up
    const Clock::time_point start = Clock::now();
    for (int i = 0; i < 2; ++i) {
        std::memcpy(copied.data(), lattice.data(), lattice.size());
        __asm__ volatile("" : : "r"(copied.data()) : "memory"); // both copies count
    }
    return Microseconds(Clock::now() - start).count();
}

/// The track is decoded in the background; that is over soon, and no part of a frame.
void awaitDecoding() {
    std::clock_t last = 0;
    do {
        last = std::clock();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    } while (std::clock() - last > CLOCKS_PER_SEC / 200);
}

/// Profilers find the scenes by this.
__attribute__((noinline)) void sceneBegins() { __asm__ volatile(""); }

std::size_t sceneOf(std::size_t measured) {
    return timeline::sceneOf(static_cast<unsigned int>(measured) + 1);
}

class Silence : public std::streambuf {
protected:
    int overflow(int character) override { return character; }
};

Show play() {
    Show show;
    pShow = &show;
    stage.now = 1000;
    frameStart = Clock::time_point();
    Silence silence;
    std::streambuf* pConsole = std::cout.rdbuf(&silence);
    const int status = host::playShow();
    std::cout.rdbuf(pConsole);
    pShow = nullptr;
    if (status != 0) {
        std::fprintf(stderr, "The show failed with %d\n", status);
        std::exit(1);
    }
    return show;
}

/// Of what each show has at the same place.
std::vector<double> medians(const std::vector<Show>& shows, std::vector<double> Show::*values) {
    std::vector<double> result;
    for (std::size_t i = 0; i < (shows.front().*values).size(); ++i) {
        std::vector<double> all;
        all.reserve(shows.size());
        for (const Show& show : shows) {
            all.push_back((show.*values)[i]);
        }
        std::nth_element(all.begin(), all.begin() + all.size() / 2, all.end());
        result.push_back(all[all.size() / 2]);
    }
    return result;
}

double mean(const std::vector<double>& values) {
    return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

void printLine(const char* name, const std::vector<double>& frames, double yardstick) {
    std::printf("%-26s %6zu %10.1f %8.2f\n", name, frames.size(), mean(frames), mean(frames) / yardstick);
}

void report(const std::vector<Show>& shows) {
    const std::vector<double> frames = medians(shows, &Show::frames);
    const std::vector<double> copies = medians(shows, &Show::copies);
    const double yardstick = mean(copies);
    std::printf("%zu shows; two copies of the lattice: %.1f us\n\n", shows.size(), yardstick);
    std::printf("%-26s %6s %10s %8s\n", "scene", "frames", "us/frame", "ratio");
    double worst = 0;
    const char* worstName = "";
    for (std::size_t i = 0; i < timeline::SCENES.size(); ++i) {
        std::vector<double> ofScene;
        for (std::size_t frame = 0; frame < frames.size(); ++frame) {
            if (sceneOf(frame) == i) {
                ofScene.push_back(frames[frame]);
            }
        }
        printLine(timeline::SCENES[i].name, ofScene, yardstick);
        if (mean(ofScene) > worst) {
            worst = mean(ofScene);
            worstName = timeline::SCENES[i].name;
        }
    }
    printLine("whole show", frames, yardstick);
    std::printf("\nmean ratio %.2f, worst scene %.2f (%s)\n", mean(frames) / yardstick, worst / yardstick,
                worstName);
}
} // namespace

int host::start(int argc, char** argv) {
    const std::string_view argument = argc > 1 ? argv[1] : "9";
    FMOD_Clock_Set([]() { return stage.now * 1000ULL; });
    if (argument == "--once") {
        measuring = false;
        const Show show = play();
        std::printf("%zu frames\n", show.frames.size());
        return 0;
    }
    std::vector<Show> shows(std::max(1, std::atoi(argument.data())));
    std::generate(shows.begin(), shows.end(), play);
    report(shows);
    return 0;
}

void Stage::atSwap() {
    const Clock::time_point frameEnd = Clock::now();
    std::vector<double>& frames = pShow->frames;
    const bool first = frameStart == Clock::time_point();
    if (first) {
        awaitDecoding();
    } else {
        frames.push_back(Microseconds(frameEnd - frameStart).count());
        if (measuring && frames.size() % COPY_INTERVAL == 0) {
            pShow->copies.push_back(copyTwice());
        }
    }
    if (first || sceneOf(frames.size()) != sceneOf(frames.size() - 1)) {
        sceneBegins();
    }
    frameStart = Clock::now();
}
