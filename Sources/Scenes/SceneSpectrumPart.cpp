#include "Scenes/SceneSpectrumPart.h"

static const std::array<float, 6> SECOND_OFFSETS = {1.2f, 1.4f, 1.6f, 1.7f, 1.9f, 2.1f};

SceneSpectrumPart::SceneSpectrumPart() {
    addMove({49, 5.5f, 59}, {79, 4, 89}, {98, 1, 89}, {37, 1, 43}, 5000);
    addMove({79, 5.5f, 89}, {40, 4, 40}, {40, 1, 50}, {20, 1, 20}, 5000);
    addCluster(parts, {20, 1, 20});
    addCluster(parts, {10, 2, 10}, SECOND_OFFSETS);
}

void SceneSpectrumPart::draw(Window* /*pWindow*/) { drawFountains(parts); }

bool SceneSpectrumPart::update(const Camera& /*camera*/, Grid* pGrid, Music* pMusic, unsigned int time) {
    static Spectrum spectrum{};

    pGrid->setImpulsionValue(10);
    updateAll(parts);
    if (starts(time)) {
        return true;
    }
    if (!playFlight(startTime, time)) {
        return false;
    }
    listen(spectrum, pMusic, pGrid);
    pulse(spectrum, 0.04f);
    return true;
}
