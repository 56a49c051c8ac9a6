#pragma once

#include "fmod.h"
#include "fmod_clock.h"

#include <array>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

// Music made for the purpose, and what plays it. What fails here shows in what the tests then see.

/// Left and right, -1..1.
using Sample = std::array<double, 2>;

/// What is heard at a time in seconds.
using Signal = std::function<Sample(double)>;

/// A sine of full scale on the left, and nothing on the right.
inline Signal sineLeft(double hertz) {
    return [hertz](double time) { return Sample{std::sin(2 * M_PI * hertz * time), 0}; };
}

/// The process has a folder of its own, which goes with it.
struct Folder {
    Folder() { path = ::mkdtemp(path.data()) + std::string("/"); }
    ~Folder() { std::filesystem::remove_all(path); }

    std::string path = std::filesystem::temp_directory_path() / "sound-XXXXXX";
};
inline const Folder folder;

inline std::string read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Writes a file into the folder and returns its path.
inline std::string write(const std::string& name, const std::string& bytes) {
    std::ofstream(folder.path + name, std::ios::binary) << bytes;
    return folder.path + name;
}

inline auto openFiles() { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); }

/// Encodes so many samples of a signal, by default as well as can be and each side for itself, and returns
/// the path of the MP3.
inline std::string encode(const std::string& name, const Signal& signal, int samples, int rate = 44100,
                          const std::string& options = "-b 320 -m s") {
    std::string raw;
    for (int i = 0; i < samples; ++i) {
        for (const double side : signal(static_cast<double>(i) / rate)) {
            const auto value = std::lround(side * 32767);
            raw += {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8)};
        }
    }
    // As loud as the source, and with all its frequencies. It warns that it takes the samples as they are.
    const std::string command = LAME " --quiet --noreplaygain --scale 1 --lowpass -1 " + options + " -r -s " +
                                std::to_string(rate / 1000.0) + " '" + write(name + ".raw", raw) + "' '" +
                                folder.path + name + "' 2>/dev/null";
    [[maybe_unused]] const int status = std::system(command.c_str());
    return folder.path + name;
}

/// The supplied clock, in microseconds: it stands still unless a test moves it.
inline std::atomic<unsigned long long> now{5000000};
inline unsigned long long supplied() { return now; }
constexpr FMOD_CLOCK REAL_TIME = nullptr;

/// The way that the show opens its track.
constexpr FMOD_MODE MODE =
    FMOD_LOOP_OFF | FMOD_2D | FMOD_SOFTWARE | FMOD_CREATESAMPLE | FMOD_ACCURATETIME | FMOD_UNIQUE;

/// A system of ten channels, as the show has it.
struct Player {
    explicit Player(FMOD_CLOCK clock = supplied, int channels = 10) {
        FMOD_Clock_Set(clock);
        FMOD_System_Create(&system);
        FMOD_System_Init(system, channels, FMOD_INIT_NORMAL, nullptr);
    }
    ~Player() { FMOD_System_Release(system); }

    FMOD_SOUND* load(const std::string& path) const {
        FMOD_SOUND* sound = nullptr;
        FMOD_System_CreateStream(system, path.c_str(), MODE, nullptr, &sound);
        return sound;
    }
    FMOD_CHANNEL* play(FMOD_SOUND* sound, bool paused = false) const {
        FMOD_CHANNEL* channel = nullptr;
        FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, paused, &channel);
        return channel;
    }
    FMOD_CHANNEL* play(const std::string& path) const { return play(load(path)); }

    FMOD_SYSTEM* system = nullptr;
};

inline unsigned int length(FMOD_SOUND* sound) {
    unsigned int milliseconds = 0;
    FMOD_Sound_GetLength(sound, &milliseconds, FMOD_TIMEUNIT_MS);
    return milliseconds;
}

/// Where a channel is, in milliseconds, unless it is over.
constexpr unsigned int OVER = 77777777;
inline unsigned int position(FMOD_CHANNEL* channel) {
    unsigned int milliseconds = OVER;
    FMOD_Channel_GetPosition(channel, &milliseconds, FMOD_TIMEUNIT_MS);
    return milliseconds;
}
