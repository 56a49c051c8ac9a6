// Plays a track in real time as the show does, and writes what it sees: a line for each frame of 15 ms with
// the time and the position in milliseconds, and the loudest entry of the spectrum with its value. Usage:
// sound_probe TRACK FRAMES [FIRST-PAUSED-FRAME FIRST-RUNNING-FRAME]

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "Player.h"

int main(int count, char** arguments) {
    const int frames = std::atoi(arguments[2]);
    const int pause = count > 4 ? std::atoi(arguments[3]) : -1;
    const int resume = count > 4 ? std::atoi(arguments[4]) : -1;
    const sound::Player player(sound::Player::Time::real);
    FMOD_CHANNEL* const channel = player.play(arguments[1]);
    const auto begin = std::chrono::steady_clock::now();
    for (int frame = 0; frame < frames && sound::alive(channel); ++frame) {
        std::this_thread::sleep_until(begin + std::chrono::milliseconds(15 * frame));
        if (frame == pause || frame == resume) {
            FMOD_Channel_SetPaused(channel, frame == pause);
        }
        std::array<float, 512> values{};
        unsigned int position = 0;
        if (FMOD_Channel_GetPosition(channel, &position, FMOD_TIMEUNIT_MS) != FMOD_OK) {
            break;
        }
        const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - begin;
        FMOD_Channel_GetSpectrum(channel, values.data(), 512, 0, FMOD_DSP_FFT_WINDOW_TRIANGLE);
        const auto* const loudest = std::max_element(values.begin(), values.end());
        std::printf("%f %u %d %.9g\n", time.count(), position, static_cast<int>(loudest - values.begin()),
                    static_cast<double>(*loudest));
    }
    return EXIT_SUCCESS;
}
