#pragma once

#include <array>
#include <cstddef>

/// The show's time in frames, for whoever needs to know it ahead: frame n is on screen from 15 n milliseconds
/// on.
namespace timeline {

constexpr unsigned int FRAME_MS = 15;

/// A scene: its class, what it is called in front of an audience, and its moves as its constructor lists
/// them.
struct Scene {
    const char* name;
    const char* title;
    std::array<unsigned int, 4> moves; ///< ms; 0 behind the last
    bool startsFirst;                  ///< its first update does nothing but start its clock
};

/// The show in playing order.
constexpr std::array SCENES = {
    Scene{"SceneSad", "Opening", {2820, 2820, 2820, 2820}, false},
    Scene{"SceneSadSpectrum", "Flight", {5500, 5500, 5500, 5532}, true},
    Scene{"SceneSadSpectrumGreet", "Greetings", {19530}, true},
    Scene{"SceneSpectrumPart", "Fountains", {5000, 5000}, true},
    Scene{"SceneSpectrumImpulsePart", "Waves", {15000}, false},
    Scene{"ScenePartWorld", "Descent", {25000}, false},
};

/// Frames for which a shot is on screen at full pace: one before its move starts, and one after each update
/// from its start to its end. 0 behind the last.
constexpr unsigned int shotFrames(std::size_t scene, std::size_t shot) {
    const Scene& its = SCENES[scene];
    if (shot >= its.moves.size() || its.moves[shot] == 0) {
        return 0;
    }
    return its.moves[shot] / FRAME_MS + 2 + (its.startsFirst && shot == 0 ? 1 : 0);
}

/// Frame at which a shot of a scene starts; that of the scene behind the last is the end of the show.
constexpr unsigned int shotStart(std::size_t scene, std::size_t shot = 0) {
    unsigned int frames = 0;
    for (std::size_t s = 0; s <= scene && s < SCENES.size(); ++s) {
        for (std::size_t i = 0; shotFrames(s, i) != 0 && (s < scene || i < shot); ++i) {
            frames += shotFrames(s, i);
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
