#include "Scenes/SceneSadSpectrum.h"

static const unsigned int FADE_PERIOD = 5000; // ms, shorter than the shots: the dips do not fall on the cuts

SceneSadSpectrum::SceneSadSpectrum() : WritingScene(Colour4(0.9f, 0.9f, 0.9f, 0.7f)) {
    addMove({92, 4, 56}, {40, 5.5f, 48}, {86, 1, 52}, {34, 1, 48}, 5500);
    addMove({52, 5.5f, 48}, {104, 6.5f, 96}, {52, 1, 67}, {12, 0, 67}, 5500);
    addMove({48, 8, 48}, {96, 8, 48}, {38, 0, 38}, {28, 0, 38}, 5500);
    addMove({56, 4, 104}, {12, 5.5f, 47}, {23, 1, 56}, {46, 1, 29}, 5532);
}

void SceneSadSpectrum::draw(Window* /*pWindow*/) {}

bool SceneSadSpectrum::update(const Camera& /*camera*/, Grid* pGrid, Music* pMusic, unsigned int time) {
    static Spectrum spectrum{};

    if (starts(time)) {
        return true;
    }
    if (!playMove(time)) {
        return false;
    }
    fadeInAndOut((time - startTime) % FADE_PERIOD, FADE_PERIOD);
    listen(spectrum, pMusic, pGrid);
    return true;
}
