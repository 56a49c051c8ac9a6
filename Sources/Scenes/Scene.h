#pragma once

#include "3D/Camera/Camera.h"
#include "Music/Music.h"
#include "Objects/Grid.h"
#include "Zentrik/Window.h"

/// One scene of the show. It is drawn before its first update, and any number of times between two: drawing
/// advances nothing.
class Scene {
public:
    Scene() = default;
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    /// Sets the view, before the grid is drawn.
    virtual void setSceneRender() = 0;
    /// Draws the scene's own objects, after the grid.
    virtual void draw(Window* pWindow) = 0;
    /// Advances the scene by a frame. camera: the driver's; pGrid: the show's one, as the scene before left
    /// it; time: ms on the engine clock. True while the scene plays, false in the frame in which it has
    /// finished.
    virtual bool update(const Camera& camera, Grid* pGrid, Music* pMusic, unsigned int time) = 0;

    /// Strength of the beat, 0..1; it may dip just below 0.
    virtual float getPulseValue() const;
    /// Brightness, from 0, black, to 1.
    virtual float getFadeValue() const;

    virtual ~Scene() = default;

protected:
    float pulseValue = 0;
    float fadeValue = 0;
};
