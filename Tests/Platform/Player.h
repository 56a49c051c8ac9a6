#pragma once

#include "fmod.h"
#include "fmod_clock.h"
#include "fmod_song.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

// Music made for the purpose, and what plays it. What fails here shows in what the tests then see.

/// The process has a folder of its own, which goes with it.
struct Folder {
    Folder() { path = ::mkdtemp(path.data()) + std::string("/"); }
    ~Folder() { std::filesystem::remove_all(path); }

    std::string path = std::filesystem::temp_directory_path() / "sound-XXXXXX";
};
inline const Folder folder;

/// Has the shell, or FFmpeg, make a file of the folder, and returns its path.
inline std::string shell(const std::string& name, const std::string& command) {
    [[maybe_unused]] const int status = std::system(("cd '" + folder.path + "' && " + command).c_str());
    return folder.path + name;
}
inline std::string make(const std::string& name, const std::string& options) {
    return shell(name, "ffmpeg -nostdin -v error -y " + options + " 'file:" + name + "'");
}

/// Likewise a sine of full scale on the left, and nothing on the right, of so many samples.
inline std::string tone(const std::string& name, int hertz, int samples, int rate = 44100,
                        const std::string& options = "-b:a 320k -joint_stereo 0") {
    return make(name, "-f lavfi -i 'aevalsrc=sin(2*PI*" + std::to_string(hertz) +
                          "*t)|0:s=" + std::to_string(rate) +
                          "' -af atrim=end_sample=" + std::to_string(samples) + ' ' + options);
}

/// The supplied clock, in microseconds: it stands still unless a test moves it.
inline unsigned long long clockTime = 5000000;

/// The sound system as the show has it.
struct Player {
    explicit Player(bool realTime = false) {
        FMOD_Clock_Set(realTime ? nullptr : +[] { return clockTime; });
        FMOD_System_Create(&system);
        FMOD_System_Init(system, 10, FMOD_INIT_NORMAL, nullptr);
    }
    ~Player() { FMOD_System_Release(system); }

    FMOD_RESULT load(const std::string& path) {
        return FMOD_System_CreateStream(system, path.c_str(), FMOD_LOOP_OFF, nullptr, &sound);
    }
    void play() { FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 0, &channel); }
    void play(const std::string& path) {
        load(path);
        play();
    }
    unsigned int length() const {
        unsigned int milliseconds = 0;
        FMOD_Sound_GetLength(sound, &milliseconds, FMOD_TIMEUNIT_MS);
        return milliseconds;
    }

    /// Where the channel is, in milliseconds, unless it is over.
    static constexpr unsigned int OVER = 77777777;
    unsigned int position() const {
        unsigned int milliseconds = OVER;
        FMOD_Channel_GetPosition(channel, &milliseconds, FMOD_TIMEUNIT_MS);
        return milliseconds;
    }
    void go(unsigned int place) const { FMOD_Channel_SetPosition(channel, place, FMOD_TIMEUNIT_MS); }
    std::vector<float> spectrum(int count = 512) const {
        std::vector<float> values(count, 7);
        FMOD_Channel_GetSpectrum(channel, values.data(), count, 0, FMOD_DSP_FFT_WINDOW_TRIANGLE);
        return values;
    }

    FMOD_SYSTEM* system = nullptr;
    FMOD_SOUND* sound = nullptr;
    FMOD_CHANNEL* channel = nullptr;
};

/// A song of so many frames that never repeats itself, on the left and half as loud on the right.
struct Noise {
    explicit Noise(long long count, float gain = 1, unsigned int start = 0)
        : song{nullptr, count, 44100, gain, start} {
        for (unsigned int state = 1; static_cast<long long>(samples.size()) < 2 * count;) {
            state = state * 1664525 + 1013904223;
            const auto left = static_cast<short>(state >> 16);
            samples.insert(samples.end(), {left, static_cast<short>(left / 2)});
        }
        song.frames = samples.data();
    }

    std::vector<short> samples;
    FMOD_SONG song;
};
