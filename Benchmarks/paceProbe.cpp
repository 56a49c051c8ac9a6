// Preloaded into the program, measures its pace from outside: stands between it and the window library's
// swap and delay, and prints what it saw on standard error when the program ends. Where QUELAR_PACE names a
// folder, it leaves the time of every frame there as well. See soak.

#include "Timeline.h"
#include "sceneTable.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <fstream>
#include <limits>
#include <string>
#include <unistd.h>
#include <vector>

namespace {
using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

const double FRAME_TIME = timeline::FRAME_MS / 1000.0;

template <typename Function>
Function* original(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// Seconds since the system started this process, to a hundredth.
double processAge() {
    std::ifstream file("/proc/self/stat");
    file.ignore(std::numeric_limits<std::streamsize>::max(), ')'); // the name, which may hold spaces
    std::string word;
    for (int field = 3; field <= 22; ++field) { // the 22nd is the start time
        file >> word;
    }
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    const double started = std::stod(word) / static_cast<double>(sysconf(_SC_CLK_TCK));
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9 - started;
}

/// The most memory the process ever had resident, in MiB.
double peakMemory() {
    std::ifstream file("/proc/self/status");
    std::string word;
    double kilobytes = 0;
    while (file >> word && word != "VmHWM:") {
    }
    file >> kilobytes;
    return kilobytes / 1024;
}

/// Frames of a stretch of the show: the time between swaps, and how much of it was spent waiting.
struct Stretch {
    std::uint32_t frames = 0;
    double time = 0;
    double waited = 0;
    double longest = 0; ///< without its wait

    void add(double frameTime, double frameWait) {
        ++frames;
        time += frameTime;
        waited += frameWait;
        longest = std::max(longest, frameTime - frameWait);
    }

    void print(const std::string& name) const {
        if (frames != 0) {
            std::fprintf(
                stderr,
                "%-10s %5u frames %7.2f s %6.1f fps  pace %5.1f %%  work: mean %5.2f ms, most %6.2f ms\n",
                name.c_str(), frames, time, frames / time, 100 * frames * FRAME_TIME / time,
                1000 * (time - waited) / frames, 1000 * longest);
        }
    }
};

class Probe {
public:
    Probe() { frames.reserve(std::size_t{2} * timeline::SHOW_FRAMES); }

    ~Probe() {
        if (swaps != 0) {
            std::fprintf(stderr, "%u swaps, the first after %.2f s; peak memory %.1f MiB\n", swaps,
                         firstFrame, peakMemory());
            for (std::size_t i = 0; i < scenes.size(); ++i) {
                scenes[i].print("scene " + std::to_string(i + 1));
            }
            show.print("show");
            if (const char* pFolder = std::getenv("QUELAR_PACE")) {
                write(pFolder);
            }
        }
    }

    void swapped() {
        const Clock::time_point now = Clock::now();
        if (swaps++ == 0) {
            firstFrame = processAge();
            start = now;
        } else {
            const double time = Seconds(now - last).count();
            const double elapsed = Seconds(now - start).count();
            const auto ms = static_cast<unsigned int>(elapsed * 1000);
            scenes[timeline::sceneOf(timeline::frameAt(ms))].add(time, wait);
            show.add(time, wait);
            frames.push_back({elapsed, time - wait});
        }
        last = now;
        wait = 0;
    }

    void waited(double time) { wait += time; }

private:
    struct Frame {
        double elapsed; ///< s, at its end
        double work;    ///< s
    };

    void write(const std::string& folder) const {
        std::ofstream file(folder + "/frames");
        for (const Frame& frame : frames) {
            file << frame.elapsed << ' ' << 1000 * frame.work << '\n';
        }
        writeSceneTable((folder + "/scenes").c_str());
    }

    std::uint32_t swaps = 0;
    double firstFrame = 0;
    double wait = 0; ///< since the last swap
    Clock::time_point start;
    Clock::time_point last;
    std::array<Stretch, timeline::SCENES.size()> scenes;
    Stretch show;
    std::vector<Frame> frames;
};

Probe probe;
} // namespace

#pragma GCC visibility push(default)
extern "C" void SDL_GL_SwapBuffers() {
    static auto* const swap = original<void()>("SDL_GL_SwapBuffers");
    swap();
    probe.swapped();
}

extern "C" void SDL_Delay(std::uint32_t ms) {
    static auto* const delay = original<void(std::uint32_t)>("SDL_Delay");
    const Clock::time_point start = Clock::now();
    delay(ms);
    probe.waited(Seconds(Clock::now() - start).count());
}
#pragma GCC visibility pop
