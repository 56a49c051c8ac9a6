#include "Scenes/ScenePartWorld.h"

#include "Utils/Random.h"

#include <algorithm>

namespace {
const unsigned int SOLIDS = 150;            // of each kind
const float GROUND_SIZE = 150;              // world units
const unsigned int MOVE_TIME = 25000;       // ms
const unsigned int LONG_FADE_START = 10000; // ms
const unsigned int BANDS = 10;              // that fire waves

Vector3f randomPlace() {
    // One draw a statement: their order is part of the show.
    const float x = Random::unit() * GROUND_SIZE;
    const float z = Random::unit() * GROUND_SIZE;
    return {x, 0, z};
}

/// A lattice coordinate, from 10 below 0 on; what is below 0 comes out far beyond the lattice.
unsigned int randomCoordinate(unsigned int numberPoints) {
    return static_cast<unsigned int>(
        static_cast<int>(Random::unit() * static_cast<float>(numberPoints) - 10));
}

template <typename S>
void launchNext(const std::vector<S*>& solids) {
    const auto next =
        std::find_if(solids.begin(), solids.end(), [](const S* pSolid) { return !pSolid->getActive(); });
    if (next != solids.end()) {
        (*next)->setActive(true);
    }
}
} // namespace

ScenePartWorld::ScenePartWorld() : coloursList(PALETTE.begin(), PALETTE.end()) {
    addMove({20, 5.5f, 20}, {75, 0, 75}, {30, 1, 30}, {78, 1, 78}, MOVE_TIME);
    addCluster(parts, {45, 3, 45});
    addCluster(parts2, {55, 2, 45});
    addCluster(parts2, {45, 2, 60});

    const Vector3f upright;
    const Colour3 grey(gridColour.r, gridColour.g, gridColour.b);
    for (unsigned int i = 0; i < SOLIDS; ++i) {
        cubes.push_back(new Cube(randomPlace(), upright, grey, 0.5f, 0));
    }
    for (unsigned int i = 0; i < SOLIDS; ++i) {
        piramides.push_back(new Pyramide(randomPlace(), upright, grey, 0.5f));
    }
    for (unsigned int i = 0; i < SOLIDS; ++i) {
        spheres.push_back(new Sphere(randomPlace(), upright, grey, 0.5f, 10, 0));
    }
}

WorldObjects::~WorldObjects() {
    deleteAll(cubes);
    deleteAll(piramides);
    deleteAll(spheres);
    deleteAll(parts2);
}

void ScenePartWorld::draw(Window* /*pWindow*/) {
    drawAll(cubes);
    drawAll(piramides);
    drawAll(spheres);
    drawFountains(parts2, parts);
}

bool ScenePartWorld::update(const Camera& /*camera*/, Grid* pGrid, Music* pMusic, unsigned int time) {
    static Spectrum spectrum{};

    pGrid->setImpulsionValue(8);
    updateAll(cubes);
    updateAll(piramides);
    updateAll(spheres);
    updateAll(parts2);
    updateAll(parts);
    starts(time);
    fadeValue = 1;
    if (!playFlight(startTime, time)) {
        return false;
    }
    listen(spectrum, pMusic); // the spikes stay as they are, the waves run over them
    bool launched = false;
    for (unsigned int band = 0; band < BANDS; ++band) {
        if (spectrum[band] > LOUD) {
            fireWave(pGrid);
            if (!launched) {
                launch();
                launched = true;
            }
        }
    }
    pGrid->updateImpulsion();
    pulse(spectrum, 0.08f);

    const unsigned int elapsed = time - startTime;
    if (elapsed > LONG_FADE_START) {
        fadeValue = static_cast<float>(MOVE_TIME - elapsed) / (MOVE_TIME - LONG_FADE_START);
    }
    return true;
}

void ScenePartWorld::launch() {
    launchNext(cubes);
    launchNext(piramides);
    launchNext(spheres);
}

void ScenePartWorld::fireWave(Grid* pGrid) {
    Random::unit(); // one that moves nothing, but counts
    const unsigned int yImp = randomCoordinate(pGrid->getNumberPointsX());
    const unsigned int xImp = randomCoordinate(pGrid->getNumberPointsY());
    pGrid->makeImpulsion(xImp, yImp, Colour4(0, 0, 0, 1), 1, 6);
}
