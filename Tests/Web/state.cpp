// The state behind the picture, for whoever plays the show elsewhere and wants to know whether it is the same
// show: a line for each frame, a sum over the brightness and the beat that the frame is drawn with and the
// heights and colours of the lattice. Or a track, decoded: two samples of 16 bits at a time, left and right.
//
//     cd <where data/ lies> && state
//     state TRACK.mp3

#include "Host.h"
#include "Track.h"

#include <fmod_clock.h>

#include <Stage.h>
#include <cstddef>
#include <cstdio>
#include <iostream>

int host::start(int argc, char** argv) {
    if (argc == 2) {
        const fmodex::Track track(argv[1]);
        const FMOD_SONG song = track.getSong();
        std::fwrite(song.frames, 2 * sizeof(short), static_cast<std::size_t>(song.count), stdout);
        return 0;
    }
    FMOD_Clock_Set([]() { return stage.now * 1000ULL; });
    std::cout.setstate(std::ios::failbit); // the show's own lines
    return playShow();
}

void Stage::atSwap() {
    std::printf("%08x\n", sum);
    sum = 0;
}
