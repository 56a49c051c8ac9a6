#pragma once

#include "3D/Camera/LinearCamera.h"
#include "Scenes/Scene.h"

#include <array>
#include <cstdint>
#include <vector>

/// What the scenes of the show share: they are filmed by a list of timed moves, one after another, fade
/// between them, and hear the music as a spectrum.
class FilmedScene : public Scene {
public:
    ~FilmedScene() override;

    /// Applies the current camera.
    void setSceneRender() override;

protected:
    /// Magnitudes, the lowest band first. Each scene keeps one for the life of the program.
    using Spectrum = std::array<float, 512>;

    /// Adds a move of the eye, from and to, looking at points that move as well; ms: its duration.
    void addMove(const Vector3f& eyeFrom, const Vector3f& eyeTo, const Vector3f& lookFrom,
                 const Vector3f& lookTo, unsigned int ms);

    LinearCamera& camera() const { return *cams[currentCam]; }
    /// Whether there is a move to play; when there is none the scene has finished and is black.
    bool hasMove();

    /// Fades in over the first 500 ms of camTime; true while it does.
    bool fadeIn(unsigned int camTime);
    /// Fades in over the first and out over the last 500 ms of duration; in between fadeValue stays as it is.
    void fadeInAndOut(unsigned int camTime, unsigned int duration);

    /// Reads the spectrum and moves the spikes of the grid by it.
    static void listen(Spectrum& spectrum, Grid* pGrid, Music* pMusic);
    /// Lets the pulse fall by decay, and raises it again on a strong bass.
    void pulse(const Spectrum& spectrum, float decay);

    std::vector<LinearCamera*> cams;
    std::uint32_t currentCam = 0;
};
