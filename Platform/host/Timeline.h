#pragma once

#include <array>
#include <cstddef>

/// The show's time in frames, for whoever needs to know it ahead: frame n is on screen from 15 n milliseconds
/// on.
namespace timeline {

constexpr unsigned int FRAME_MS = 15;

/// A scene: its class, and how many frames each of its shots is on screen; 0 behind the last.
struct SceneLength {
    const char* name;
    std::array<unsigned int, 4> shots;
};

/// The show at its full pace, in playing order. A shot lasts its time on the clock and a frame or two at the
/// cut.
constexpr std::array<SceneLength, 6> SCENES = {{
    {"SceneSad", {190, 190, 190, 190}},
    {"SceneSadSpectrum", {369, 368, 368, 370}},
    {"SceneSadSpectrumGreet", {1305}},
    {"SceneSpectrumPart", {336, 335}},
    {"SceneSpectrumImpulsePart", {1002}},
    {"ScenePartWorld", {1668}},
}};

/// Frame at which a shot of a scene starts; that of the scene behind the last is the end of the show.
constexpr unsigned int shotStart(std::size_t scene, std::size_t shot = 0) {
    unsigned int frames = 0;
    for (std::size_t s = 0; s <= scene && s < SCENES.size(); ++s) {
        for (std::size_t i = 0; i < SCENES[s].shots.size() && (s < scene || i < shot); ++i) {
            frames += SCENES[s].shots[i];
        }
    }
    return frames;
}

constexpr unsigned int SHOW_FRAMES = shotStart(SCENES.size());
constexpr unsigned int SHOW_MS = SHOW_FRAMES * FRAME_MS;

/// The frame on screen at a time in ms.
constexpr unsigned int frameAt(unsigned int time) { return time / FRAME_MS; }

/// The first frame that appears at a time in ms or later.
constexpr unsigned int firstFrameFrom(unsigned int time) { return (time + FRAME_MS - 1) / FRAME_MS; }

/// The scene that a frame of the show belongs to, counted from 0.
constexpr std::size_t sceneOf(unsigned int frame) {
    std::size_t scene = 0;
    while (scene + 1 < SCENES.size() && frame >= shotStart(scene + 1)) {
        ++scene;
    }
    return scene;
}

} // namespace timeline
