// Plays the track the way the show does, an update every 15 ms, and holds its spectrum against what each
// scene needs of it. Prints a row for every need; fails if one of them is not met. Into a folder, if one is
// named, it writes what a picture of it is drawn from: see check.

#include "Timeline.h"
#include "sceneTable.h"

#include <fmod.h>
#include <fmod_clock.h>
#include <fmod_errors.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr std::size_t BAND_COUNT = 16;
constexpr int SPECTRUM_SIZE = 512;
constexpr double UPDATE_SECONDS = timeline::FRAME_MS / 1000.0;

constexpr double shotSeconds(std::size_t scene, std::size_t shot = 0) {
    return timeline::shotStart(scene, shot) * UPDATE_SECONDS;
}

constexpr double SECOND_SCENE = shotSeconds(1);
constexpr double THIRD_SCENE = shotSeconds(2);
constexpr double FOURTH_SCENE = shotSeconds(3);
constexpr double FIFTH_SCENE = shotSeconds(4);
constexpr double SIXTH_SCENE = shotSeconds(5);
constexpr double LAST_FADE = SIXTH_SCENE + 10;
constexpr double FINISH = shotSeconds(6);

/// What the scenes hear: a beat in band 2, a wave or a launch in one of the lowest bands.
constexpr std::size_t BEAT_BAND = 2;
constexpr float BEAT = 0.25f;
constexpr float LOUD = 0.2f;
constexpr std::size_t LAST_WAVE_BAND = 7;
constexpr std::size_t LAST_LAUNCH_BAND = 9;

using Bands = std::array<float, BAND_COUNT>;

/// What the show makes of the track: the lowest bands at each of its updates, the first at 0 s.
struct Performance {
    std::vector<Bands> updates;
    double length = 0;

    std::size_t at(double seconds) const {
        return std::min(updates.size(),
                        static_cast<std::size_t>(std::lround(std::max(0.0, seconds) / UPDATE_SECONDS)));
    }

    /// The largest magnitude among bands first to last.
    float highest(std::size_t update, std::size_t first = 0, std::size_t last = BAND_COUNT - 1) const {
        const Bands& bands = updates[update];
        float result = 0;
        for (std::size_t band = first; band <= last; ++band) {
            result = std::max(result, bands[band]);
        }
        return result;
    }

    float highestBetween(double from, double to) const {
        float result = 0;
        for (std::size_t update = at(from); update < at(to); ++update) {
            result = std::max(result, highest(update));
        }
        return result;
    }

    /// How much louder the bands have become since the update before: large where something is struck.
    float onset(std::size_t update) const {
        float result = 0;
        for (std::size_t band = 0; band < BAND_COUNT; ++band) {
            const float before = update == 0 ? 0 : updates[update - 1][band];
            result += std::max(0.0f, updates[update][band] - before);
        }
        return result;
    }
};

/// Updates in a row; begin is the first, end the one after the last.
struct Run {
    std::size_t begin;
    std::size_t end;
};

unsigned long long showMicroseconds = 0;

void require(FMOD_RESULT result) {
    if (result != FMOD_OK) {
        throw std::runtime_error(FMOD_ErrorString(result));
    }
}

Performance perform(const char* track) {
    FMOD_Clock_Set([] { return showMicroseconds; });
    FMOD_SYSTEM* created = nullptr;
    require(FMOD_System_Create(&created));
    const std::unique_ptr<FMOD_SYSTEM, FMOD_RESULT (*)(FMOD_SYSTEM*)> system(created, FMOD_System_Release);
    require(FMOD_System_Init(system.get(), 1, FMOD_INIT_NORMAL, nullptr));
    FMOD_SOUND* sound = nullptr;
    require(FMOD_System_CreateStream(
        system.get(), track, FMOD_LOOP_OFF | FMOD_2D | FMOD_SOFTWARE | FMOD_ACCURATETIME, nullptr, &sound));
    Performance performance;
    unsigned int milliseconds = 0;
    require(FMOD_Sound_GetLength(sound, &milliseconds, FMOD_TIMEUNIT_MS));
    performance.length = milliseconds / 1000.0;
    FMOD_CHANNEL* channel = nullptr;
    require(FMOD_System_PlaySound(system.get(), FMOD_CHANNEL_FREE, sound, 0, &channel));
    std::array<float, SPECTRUM_SIZE> spectrum{};
    while (performance.updates.size() < timeline::SHOW_FRAMES) {
        showMicroseconds += timeline::FRAME_MS * 1000ULL;
        require(FMOD_Channel_GetSpectrum(channel, spectrum.data(), SPECTRUM_SIZE, 0,
                                         FMOD_DSP_FFT_WINDOW_TRIANGLE));
        Bands bands{};
        std::copy_n(spectrum.begin(), BAND_COUNT, bands.begin());
        performance.updates.push_back(bands);
    }
    return performance;
}

template <typename Predicate>
std::vector<Run> runsBetween(const Performance& performance, double from, double to, Predicate holds) {
    std::vector<Run> runs;
    const std::size_t last = performance.at(to);
    for (std::size_t update = performance.at(from); update < last; ++update) {
        if (!holds(update)) {
            continue;
        }
        if (!runs.empty() && runs.back().end == update) {
            ++runs.back().end;
        } else {
            runs.push_back({update, update + 1});
        }
    }
    return runs;
}

class Table {
public:
    void scene(const char* title) { std::printf("\n%s\n", title); }

    void row(const std::string& wanted, const std::string& measured, bool isMet) {
        std::printf("  %-66s %-24s %s\n", wanted.c_str(), measured.c_str(), isMet ? "met" : "NOT met");
        isAllMet = isAllMet && isMet;
    }

    bool allMet() const { return isAllMet; }

private:
    bool isAllMet = true;
};

std::string number(double value, int digits) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.*f", digits, value);
    return text.data();
}

/// An accent is what is struck hardest in the second around a moment; it has to lie within 40 ms of it.
void accentRow(Table& table, const Performance& performance, const std::string& moment, double seconds) {
    std::size_t hardest = performance.at(seconds - 0.5);
    for (std::size_t update = hardest; update < performance.at(seconds + 0.5); ++update) {
        if (performance.onset(update) > performance.onset(hardest)) {
            hardest = update;
        }
    }
    const double distance = static_cast<double>(hardest) * UPDATE_SECONDS - seconds;
    table.row("accent within 40 ms of " + moment + " at " + number(seconds, 2) + " s",
              number(std::abs(distance) * 1000, 0) + " ms off, rises " +
                  number(performance.onset(hardest), 2),
              std::abs(distance) <= 0.04 && performance.onset(hardest) >= 0.2f);
}

void checkTitles(Table& table, const Performance& performance) {
    table.scene("Scene 1: titles");
    const std::array<double, 5> cuts{0, shotSeconds(0, 1), shotSeconds(0, 2), shotSeconds(0, 3),
                                     SECOND_SCENE};
    for (std::size_t title = 0; title + 1 < cuts.size(); ++title) {
        accentRow(table, performance, title == 0 ? "the start" : "the cut", cuts[title]);
        const float accent = performance.highestBetween(cuts[title], cuts[title] + 0.1);
        const float between = performance.highestBetween(cuts[title] + 0.6, cuts[title + 1] - 0.06);
        table.row("quiet after it: at most a third of the accent",
                  number(between, 2) + " after " + number(accent, 2), between <= accent / 3);
    }
}

void checkFlight(Table& table, const Performance& performance) {
    table.scene("Scene 2: spectrum spikes");
    const std::size_t begin = performance.at(SECOND_SCENE);
    const std::size_t end = performance.at(THIRD_SCENE);
    const auto updates = static_cast<double>(end - begin);
    double leastShare = 1;
    std::size_t leastBand = 0;
    for (std::size_t band = 0; band < BAND_COUNT; ++band) {
        const auto live = runsBetween(performance, SECOND_SCENE, THIRD_SCENE, [&](std::size_t update) {
            return performance.updates[update][band] >= 0.07f;
        });
        double share = 0;
        for (const Run& run : live) {
            share += static_cast<double>(run.end - run.begin) / updates;
        }
        if (share < leastShare) {
            leastShare = share;
            leastBand = band;
        }
    }
    table.row("each of 16 bands at 0.07 or more in 5 % of the updates",
              "least " + number(leastShare * 100, 1) + " % (band " + std::to_string(leastBand) + ")",
              leastShare >= 0.05);

    double inside = 0;
    double mean = 0;
    for (std::size_t update = begin; update < end; ++update) {
        const float spike = 15 * performance.highest(update);
        inside += spike >= 2 && spike <= 7 ? 1 / updates : 0;
        mean += spike / updates;
    }
    table.row("highest spike of an update mostly 2 to 7 units", number(inside * 100, 1) + " % of the updates",
              inside > 0.6);
    const float highest = 15 * performance.highestBetween(SECOND_SCENE, THIRD_SCENE);
    table.row("never above 10 units", number(highest, 1) + " at most", highest <= 10);

    // Spikes that follow the beat look the same a bar later: four cuts of two bars each.
    const auto bar = static_cast<std::size_t>(std::lround((THIRD_SCENE - SECOND_SCENE) / 8 / UPDATE_SECONDS));
    double variance = 0;
    double covariance = 0;
    for (std::size_t update = begin; update + bar < end; ++update) {
        const double now = 15 * performance.highest(update) - mean;
        covariance += now * (15 * performance.highest(update + bar) - mean);
        variance += now * now;
    }
    table.row("spikes follow the beat: likeness to the next bar 0.5 or more",
              number(covariance / variance, 2), variance > 0 && covariance >= 0.5 * variance);
}

void checkGreetings(Table& table, const Performance& performance) {
    table.scene("Scene 3: greetings");
    for (int greeting = 0; greeting < 7; ++greeting) {
        accentRow(table, performance, "the greeting", THIRD_SCENE + 2.79 * greeting);
    }
}

void checkFountains(Table& table, const Performance& performance) {
    table.scene("Scene 4: fountains");
    const auto beats = runsBetween(performance, FOURTH_SCENE, FIFTH_SCENE, [&](std::size_t update) {
        return performance.updates[update][BEAT_BAND] >= BEAT;
    });
    table.row("10 to 28 beats of band 2 at 0.25 or more", std::to_string(beats.size()) + " beats",
              beats.size() >= 10 && beats.size() <= 28);
    // A flash takes 25 updates to fade; the eye sees it fall if it loses half of its light.
    std::size_t shortest = 1000;
    for (std::size_t beat = 1; beat < beats.size(); ++beat) {
        shortest = std::min(shortest, beats[beat].begin - beats[beat - 1].end);
    }
    table.row("the pulse falls between them: 13 updates or more",
              "shortest " + std::to_string(shortest) + " updates", shortest >= 13);
}

void checkWaves(Table& table, const Performance& performance) {
    table.scene("Scene 5: waves in the ground");
    const auto bursts = runsBetween(performance, FIFTH_SCENE, SIXTH_SCENE, [&](std::size_t update) {
        return performance.highest(update, 0, LAST_WAVE_BAND) > LOUD;
    });
    std::size_t good = 0;
    for (std::size_t burst = 0; burst < bursts.size(); ++burst) {
        const std::size_t next =
            burst + 1 < bursts.size() ? bursts[burst + 1].begin : performance.at(SIXTH_SCENE);
        const bool isShort = bursts[burst].end - bursts[burst].begin <= 4;
        good += isShort && next - bursts[burst].end >= 6 ? 1 : 0;
    }
    table.row("bursts of at most 4 updates, then 6 quiet ones, for 4 of 5",
              std::to_string(good) + " of " + std::to_string(bursts.size()),
              !bursts.empty() && 5 * good >= 4 * bursts.size());
    const double rate = static_cast<double>(bursts.size()) / (SIXTH_SCENE - FIFTH_SCENE);
    table.row("several waves at once: 1 to 3 bursts a second", number(rate, 2) + " a second",
              rate >= 1 && rate <= 3);
}

void checkDescent(Table& table, const Performance& performance) {
    table.scene("Scene 6: descent");
    const auto launches = runsBetween(performance, SIXTH_SCENE, FINISH, [&](std::size_t update) {
        return performance.highest(update, 0, LAST_LAUNCH_BAND) > LOUD;
    });
    std::size_t updates = 0;
    for (const Run& run : launches) {
        updates += run.end - run.begin;
    }
    table.row("100 to 150 updates with one of bands 0 to 9 above 0.2", std::to_string(updates) + " updates",
              updates >= 100 && updates <= 150);
    const double first =
        launches.empty() ? FINISH : static_cast<double>(launches.front().begin) * UPDATE_SECONDS;
    const double last = launches.empty() ? 0 : static_cast<double>(launches.back().end - 1) * UPDATE_SECONDS;
    table.row("the first of them within a second", number(first - SIXTH_SCENE, 2) + " s",
              first <= SIXTH_SCENE + 1);
    table.row("the last after the fifteenth second", number(last - SIXTH_SCENE, 2) + " s",
              last >= SIXTH_SCENE + 15);
    const auto flashes = runsBetween(performance, SIXTH_SCENE, FINISH, [&](std::size_t update) {
        return performance.updates[update][BEAT_BAND] >= BEAT;
    });
    table.row("band 2 flashes the frame", std::to_string(flashes.size()) + " flashes", !flashes.empty());
    const std::array<float, 3> thirds{performance.highestBetween(LAST_FADE, LAST_FADE + 5),
                                      performance.highestBetween(LAST_FADE + 5, LAST_FADE + 10),
                                      performance.highestBetween(LAST_FADE + 10, FINISH)};
    table.row("thins out with the fade, 5 s by 5 s",
              number(thirds[0], 2) + ", " + number(thirds[1], 2) + ", " + number(thirds[2], 2),
              thirds[0] > thirds[1] && thirds[1] > thirds[2] && thirds[2] > 0.01f);
    const float ending = performance.highestBetween(FINISH - 0.15, FINISH);
    table.row("and is over when the picture is: below 0.02", number(ending, 3), ending < 0.02f);
}

/// Several updates become one column of the picture, which has no room for more.
constexpr std::size_t UPDATES_A_COLUMN = 5;

/// Writes FOLDER/bands: seconds at the middle of a column, a band, and its largest magnitude there;
/// FOLDER/heard: seconds, and what a scene hears then (1 a beat, 2 a wave, 3 a launch).
void writeFigures(const Performance& performance, const std::string& folder) {
    std::ofstream bands(folder + "/bands");
    for (std::size_t first = 0; first < performance.updates.size(); first += UPDATES_A_COLUMN) {
        const std::size_t end = std::min(first + UPDATES_A_COLUMN, performance.updates.size());
        const double middle = static_cast<double>(2 * first + UPDATES_A_COLUMN) / 2 * UPDATE_SECONDS;
        for (std::size_t band = 0; band < BAND_COUNT; ++band) {
            float most = 0;
            for (std::size_t update = first; update < end; ++update) {
                most = std::max(most, performance.updates[update][band]);
            }
            bands << middle << ' ' << band << ' ' << most << '\n';
        }
    }
    std::ofstream heard(folder + "/heard");
    for (std::size_t update = performance.at(FOURTH_SCENE); update < performance.updates.size(); ++update) {
        const std::size_t scene = timeline::sceneOf(static_cast<unsigned int>(update));
        const std::array<bool, 3> hears{
            performance.updates[update][BEAT_BAND] >= BEAT,
            scene == 4 && performance.highest(update, 0, LAST_WAVE_BAND) > LOUD,
            scene == 5 && performance.highest(update, 0, LAST_LAUNCH_BAND) > LOUD,
        };
        for (std::size_t kind = 0; kind < hears.size(); ++kind) {
            if (hears[kind]) {
                heard << static_cast<double>(update) * UPDATE_SECONDS << ' ' << kind + 1 << '\n';
            }
        }
    }
    writeSceneTable((folder + "/scenes").c_str());
}

} // namespace

int main(int argc, char** argv) {
    try {
        if (argc < 2 || argc > 3) {
            std::fputs("Usage: spectra TRACK.mp3 [FOLDER]\n", stderr);
            return 2;
        }
        const Performance performance = perform(argv[1]);
        Table table;
        checkTitles(table, performance);
        checkFlight(table, performance);
        checkGreetings(table, performance);
        checkFountains(table, performance);
        checkWaves(table, performance);
        checkDescent(table, performance);
        table.scene("The track");
        table.row("104 to 107 s long", number(performance.length, 3) + " s",
                  performance.length >= 104 && performance.length <= 107);
        if (argc == 3) {
            writeFigures(performance, argv[2]);
        }
        return table.allMet() ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "spectra: %s\n", problem.what());
        return 2;
    }
}
