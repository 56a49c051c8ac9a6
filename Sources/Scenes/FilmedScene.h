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

    /// Goes on with the current move; once it has ended the next one is current, and starts with the next
    /// call. False when that was the last: the scene has finished and is black.
    bool playMove(unsigned int time);

    /// Fades in over the first 500 ms of camTime; true while it does.
    bool fadeIn(unsigned int camTime);
    /// Fades in over the first and out over the last 500 ms of duration; in between fadeValue stays as it is.
    void fadeInAndOut(unsigned int camTime, unsigned int duration);

    /// Reads what is heard now.
    static void listen(Spectrum& spectrum, Music* pMusic);
    /// Reads what is heard now and moves the spikes of the grid by it.
    static void listen(Spectrum& spectrum, Music* pMusic, Grid* pGrid);
    /// Lets the pulse fall by decay, and raises it again on a strong bass.
    void pulse(const Spectrum& spectrum, float decay);

    std::vector<LinearCamera*> cams;
    std::uint32_t currentCam = 0;
};

/// The clock of a filmed scene, behind the objects of its Base.
template <typename Base>
class Timed : public Base {
protected:
    using Base::Base;

    /// Starts the scene's clock; true in the first update.
    bool starts(unsigned int time) {
        const bool first = startTime == 0;
        if (first) {
            startTime = time;
        }
        return first;
    }

    /// ms on the engine clock: the scene's first update, or from where its current flight fades; 0 before.
    std::uint32_t startTime = 0;
};
