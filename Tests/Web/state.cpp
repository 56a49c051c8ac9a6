// The state behind the picture, for whoever plays the show elsewhere and wants to know whether it is the same
// show: a line for each frame, a sum over the brightness and the beat that the frame is drawn with and the
// heights and colours of the lattice. Or the track, decoded, as a WAV file.
//
//     cd <where data/ lies> && state
//     state --wav TRACK.mp3 FILE.wav

#include "Host.h"
#include "Track.h"

#include <fmod_clock.h>

#include <Stage.h>
#include <array>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {
int writeWav(const char* track, const char* name) {
    const fmodex::Track decoded(track, true);
    std::vector<fmodex::Frame> frames(decoded.getLength());
    decoded.copy(0, frames.size(), frames.data());
    std::vector<float> samples; // which a browser takes as they are
    samples.reserve(frames.size());
    for (const fmodex::Frame& frame : frames) {
        samples.push_back(static_cast<float>(frame.left) / 32768);
    }
    const auto bytes = static_cast<std::uint32_t>(4 * samples.size());
    const auto rate = static_cast<std::uint32_t>(decoded.getRate());
    // RIFF, WAVE, a format of 16 bytes: floats, one channel, rate, bytes a second, 4 bytes of 32 bits; data.
    const std::array<std::uint32_t, 11> head = {0x46464952, 36 + bytes, 0x45564157, 0x20746D66,
                                                16,         0x00010003, rate,       4 * rate,
                                                0x00200004, 0x61746164, bytes};
    std::ofstream file(name, std::ios::binary);
    file.write(reinterpret_cast<const char*>(head.data()), sizeof head);
    file.write(reinterpret_cast<const char*>(samples.data()), bytes);
    return file.flush() ? 0 : 1;
}
} // namespace

int host::start(int argc, char** argv) {
    if (argc == 4 && std::string(argv[1]) == "--wav") {
        return writeWav(argv[2], argv[3]);
    }
    FMOD_Clock_Set([]() { return stage.now * 1000ULL; });
    std::cout.setstate(std::ios::failbit); // the show's own lines
    return playShow();
}

void Stage::atSwap() {
    std::printf("%08x\n", sum);
    sum = 0;
}
