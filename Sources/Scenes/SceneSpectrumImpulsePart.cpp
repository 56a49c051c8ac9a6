#include "Scenes/SceneSpectrumImpulsePart.h"

#include "Utils/Random.h"

static const unsigned int BANDS = 8; // that fire waves

SceneSpectrumImpulsePart::SceneSpectrumImpulsePart() {
    addMove({25, 5.5f, 20}, {65, 2, 20}, {35, 1, 30}, {75, 1, 30}, 15000);
    addCluster(parts, {55, 3, 40});
}

void SceneSpectrumImpulsePart::draw(Window* /*pWindow*/) { drawFountains(parts); }

bool SceneSpectrumImpulsePart::update(const Camera& /*camera*/, Grid* pGrid, Music* pMusic,
                                      unsigned int time) {
    static Spectrum spectrum{};

    pGrid->setImpulsionValue(8);
    updateAll(parts);
    starts(time);
    fadeValue = 1;
    if (!playFlight(startTime, time)) {
        return false;
    }
    listen(spectrum, pMusic, pGrid);
    for (unsigned int band = 0; band < BANDS; ++band) {
        if (spectrum[band] > LOUD) {
            fireWave(pGrid);
        }
    }
    pGrid->updateImpulsion();
    pulse(spectrum, 0.04f);
    return true;
}

void SceneSpectrumImpulsePart::fireWave(Grid* pGrid) const {
    // One draw a statement: their order is part of the show.
    const float r = Random::unit();
    const float g = Random::unit();
    const float b = Random::unit();
    const auto yImp = static_cast<unsigned int>(camera().getPosition().x / 1.5f + Random::unit() * 20);
    const auto xImp = static_cast<unsigned int>(Random::unit() * 10 + 20);
    pGrid->makeImpulsion(xImp, yImp, Colour4(r, g, b, 0.7f), 1, 6);
}
