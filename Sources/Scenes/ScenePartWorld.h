#pragma once

#include "Objects/Cube.h"
#include "Objects/Particules4.h"
#include "Objects/Particules5.h"
#include "Objects/Pyramide.h"
#include "Objects/Sphere.h"
#include "Scenes/FountainScene.h"

/// What stands in the world of the last scene.
class WorldObjects : public FountainsScene<Particules4> {
public:
    ~WorldObjects() override;

protected:
    std::vector<Particules5*> parts2;
    std::vector<Cube*> cubes;
    std::vector<Pyramide*> piramides;
    std::vector<Sphere*> spheres;
};

/// The end: a descent through 450 solids, of which every loud frame launches some into the sky while black
/// waves darken the grid, and a long fade.
class ScenePartWorld : public Timed<WorldObjects> {
public:
    /// Draws 900 random numbers: where the cubes stand, then the pyramids, then the spheres.
    ScenePartWorld();

    void draw(Window* pWindow) override;
    bool update(const Camera& camera, Grid* pGrid, Music* pMusic, unsigned int time) override;

    /// Lets the next cube, pyramid and sphere rise.
    void launch();

private:
    /// A black wave at a random place, of which some lie outside the grid. Draws three random numbers.
    static void fireWave(Grid* pGrid);

    std::vector<Colour4> coloursList;
};
