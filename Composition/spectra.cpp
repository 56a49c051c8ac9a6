// Plays the track the way the show does, an update every 15 ms, and holds its spectrum against what each
// scene needs of it. Prints a row for every need; fails if one of them is not met.

#include "fmod.h"
#include "fmod_clock.h"
#include "fmod_errors.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr std::size_t bandCount = 16;
constexpr int spectrumSize = 512;
constexpr int updateMilliseconds = 15;
constexpr double updateSeconds = updateMilliseconds / 1000.0;

constexpr double secondScene = 11.40;
constexpr double thirdScene = 33.53;
constexpr double fourthScene = 53.10;
constexpr double fifthScene = 63.17;
constexpr double sixthScene = 78.20;
constexpr double lastFade = 88.20;
constexpr double finish = 103.20;

using Bands = std::array<float, bandCount>;

// What the show makes of the track: the lowest bands at each of its updates, the first at 0 s.
struct Performance {
    std::vector<Bands> updates;
    double length = 0;

    std::size_t at(double seconds) const {
        return std::min(updates.size(),
                        static_cast<std::size_t>(std::lround(std::max(0.0, seconds) / updateSeconds)));
    }

    // The largest magnitude among bands first to last.
    float highest(std::size_t update, std::size_t first = 0, std::size_t last = bandCount - 1) const {
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

    // How much louder the bands have become since the update before: large where something is struck.
    float onset(std::size_t update) const {
        float result = 0;
        for (std::size_t band = 0; band < bandCount; ++band) {
            const float before = update == 0 ? 0 : updates[update - 1][band];
            result += std::max(0.0F, updates[update][band] - before);
        }
        return result;
    }
};

// Updates in a row; begin is the first, end the one after the last.
struct Run {
    std::size_t begin;
    std::size_t end;
};

std::atomic<unsigned long long>& showMicroseconds() {
    static std::atomic<unsigned long long> microseconds{0};
    return microseconds;
}

void require(FMOD_RESULT result) {
    if (result != FMOD_OK) {
        throw std::runtime_error(FMOD_ErrorString(result));
    }
}

Performance perform(const char* track) {
    FMOD_Clock_Set([] { return showMicroseconds().load(); });
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
    std::array<float, spectrumSize> spectrum{};
    const auto updates = static_cast<std::size_t>(std::lround(finish / updateSeconds));
    while (performance.updates.size() < updates) {
        showMicroseconds() += updateMilliseconds * 1000ULL;
        require(FMOD_Channel_GetSpectrum(channel, spectrum.data(), spectrumSize, 0,
                                         FMOD_DSP_FFT_WINDOW_TRIANGLE));
        Bands bands{};
        std::copy_n(spectrum.begin(), bandCount, bands.begin());
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

// An accent is what is struck hardest in the second around a moment; it has to lie within 40 ms of it.
void accentRow(Table& table, const Performance& performance, const std::string& moment, double seconds) {
    std::size_t hardest = performance.at(seconds - 0.5);
    for (std::size_t update = hardest; update < performance.at(seconds + 0.5); ++update) {
        if (performance.onset(update) > performance.onset(hardest)) {
            hardest = update;
        }
    }
    const double distance = static_cast<double>(hardest) * updateSeconds - seconds;
    table.row("accent within 40 ms of " + moment + " at " + number(seconds, 2) + " s",
              number(std::abs(distance) * 1000, 0) + " ms off, rises " +
                  number(performance.onset(hardest), 2),
              std::abs(distance) <= 0.04 && performance.onset(hardest) >= 0.2F);
}

void checkTitles(Table& table, const Performance& performance) {
    table.scene("Scene 1: titles");
    const std::array<double, 5> cuts{0, 2.85, 5.70, 8.55, secondScene};
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
    const std::size_t begin = performance.at(secondScene);
    const std::size_t end = performance.at(thirdScene);
    const auto updates = static_cast<double>(end - begin);
    double leastShare = 1;
    std::size_t leastBand = 0;
    for (std::size_t band = 0; band < bandCount; ++band) {
        const auto live = runsBetween(performance, secondScene, thirdScene, [&](std::size_t update) {
            return performance.updates[update][band] >= 0.07F;
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
    const float highest = 15 * performance.highestBetween(secondScene, thirdScene);
    table.row("never above 10 units", number(highest, 1) + " at most", highest <= 10);

    // Spikes that follow the beat look the same a bar later: four cuts of two bars each.
    const auto bar = static_cast<std::size_t>(std::lround((thirdScene - secondScene) / 8 / updateSeconds));
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
        accentRow(table, performance, "the greeting", thirdScene + 2.79 * greeting);
    }
}

void checkFountains(Table& table, const Performance& performance) {
    table.scene("Scene 4: fountains");
    const auto beats = runsBetween(performance, fourthScene, fifthScene, [&](std::size_t update) {
        return performance.updates[update][2] >= 0.25F;
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
    const auto bursts = runsBetween(performance, fifthScene, sixthScene, [&](std::size_t update) {
        return performance.highest(update, 0, 7) > 0.2F;
    });
    std::size_t good = 0;
    for (std::size_t burst = 0; burst < bursts.size(); ++burst) {
        const std::size_t next =
            burst + 1 < bursts.size() ? bursts[burst + 1].begin : performance.at(sixthScene);
        const bool isShort = bursts[burst].end - bursts[burst].begin <= 4;
        good += isShort && next - bursts[burst].end >= 6 ? 1 : 0;
    }
    table.row("bursts of at most 4 updates, then 6 quiet ones, for 4 of 5",
              std::to_string(good) + " of " + std::to_string(bursts.size()),
              !bursts.empty() && 5 * good >= 4 * bursts.size());
    const double rate = static_cast<double>(bursts.size()) / (sixthScene - fifthScene);
    table.row("several waves at once: 1 to 3 bursts a second", number(rate, 2) + " a second",
              rate >= 1 && rate <= 3);
}

void checkDescent(Table& table, const Performance& performance) {
    table.scene("Scene 6: descent");
    const auto launches = runsBetween(performance, sixthScene, finish, [&](std::size_t update) {
        return performance.highest(update, 0, 9) > 0.2F;
    });
    std::size_t updates = 0;
    for (const Run& run : launches) {
        updates += run.end - run.begin;
    }
    table.row("100 to 150 updates with one of bands 0 to 9 above 0.2", std::to_string(updates) + " updates",
              updates >= 100 && updates <= 150);
    const double first =
        launches.empty() ? finish : static_cast<double>(launches.front().begin) * updateSeconds;
    const double last = launches.empty() ? 0 : static_cast<double>(launches.back().end - 1) * updateSeconds;
    table.row("the first of them within a second", number(first - sixthScene, 2) + " s",
              first <= sixthScene + 1);
    table.row("the last after the fifteenth second", number(last - sixthScene, 2) + " s",
              last >= sixthScene + 15);
    const auto flashes = runsBetween(performance, sixthScene, finish, [&](std::size_t update) {
        return performance.updates[update][2] >= 0.25F;
    });
    table.row("band 2 flashes the frame", std::to_string(flashes.size()) + " flashes", !flashes.empty());
    const std::array<float, 3> thirds{performance.highestBetween(lastFade, lastFade + 5),
                                      performance.highestBetween(lastFade + 5, lastFade + 10),
                                      performance.highestBetween(lastFade + 10, finish)};
    table.row("thins out with the fade, 5 s by 5 s",
              number(thirds[0], 2) + ", " + number(thirds[1], 2) + ", " + number(thirds[2], 2),
              thirds[0] > thirds[1] && thirds[1] > thirds[2] && thirds[2] > 0.01F);
    const float ending = performance.highestBetween(finish - 0.15, finish);
    table.row("and is over when the picture is: below 0.02", number(ending, 3), ending < 0.02F);
}

} // namespace

int main(int argc, char** argv) {
    try {
        if (argc != 2) {
            std::fputs("Usage: spectra TRACK.mp3\n", stderr);
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
        return table.allMet() ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "spectra: %s\n", problem.what());
        return 2;
    }
}
