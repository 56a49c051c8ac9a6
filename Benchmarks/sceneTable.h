#pragma once

#include "Timeline.h"

#include <cstdio>

/// For pictures of what is measured: a line for each shot of the show, with the seconds at which it starts
/// and ends, its scene counted from 1, whether it is the scene's first, and the scene's name.
inline void writeSceneTable(const char* path) {
    std::FILE* const pFile = std::fopen(path, "w");
    if (pFile == nullptr) {
        std::perror(path);
        return;
    }
    const auto seconds = [](unsigned int frame) { return frame * timeline::FRAME_MS / 1000.0; };
    for (std::size_t scene = 0; scene < timeline::SCENES.size(); ++scene) {
        for (std::size_t shot = 0; timeline::shotFrames(scene, shot) != 0; ++shot) {
            const unsigned int start = timeline::shotStart(scene, shot);
            std::fprintf(pFile, "%.3f %.3f %zu %d %s\n", seconds(start),
                         seconds(start + timeline::shotFrames(scene, shot)), scene + 1, shot == 0 ? 1 : 0,
                         timeline::SCENES[scene].name);
        }
    }
    std::fclose(pFile);
}
