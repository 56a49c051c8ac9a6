#include "Scenes/FilmedScene.h"

static const unsigned int FADE_TIME = 500; // ms
static const float STRONG_BASS = 0.25f;
static const std::size_t BASS_BAND = 2;

FilmedScene::~FilmedScene() {
    for (const LinearCamera* pCamera : cams) {
        delete pCamera;
    }
}

void FilmedScene::setSceneRender() { camera().apply(); }

void FilmedScene::addMove(const Vector3f& eyeFrom, const Vector3f& eyeTo, const Vector3f& lookFrom,
                          const Vector3f& lookTo, unsigned int ms) {
    cams.push_back(new LinearCamera(eyeFrom, eyeTo, lookFrom, lookTo, Vector3f(0, 1, 0), ms));
}

bool FilmedScene::playMove(unsigned int time) {
    if (camera().update(time)) {
        return true;
    }
    ++currentCam;
    if (currentCam < cams.size()) {
        return true;
    }
    fadeValue = 0;
    return false;
}

bool FilmedScene::fadeIn(unsigned int camTime) {
    if (camTime >= FADE_TIME) {
        return false;
    }
    fadeValue = static_cast<float>(camTime) / FADE_TIME;
    return true;
}

void FilmedScene::fadeInAndOut(unsigned int camTime, unsigned int duration) {
    if (!fadeIn(camTime) && camTime > duration - FADE_TIME) {
        fadeValue = static_cast<float>(duration - camTime) / FADE_TIME;
    }
}

void FilmedScene::listen(Spectrum& spectrum, Music* pMusic) {
    pMusic->getSpectrum(spectrum.data(), spectrum.size());
}

void FilmedScene::listen(Spectrum& spectrum, Music* pMusic, Grid* pGrid) {
    listen(spectrum, pMusic);
    pGrid->updateSpectrum(spectrum.data(), spectrum.size());
}

void FilmedScene::pulse(const Spectrum& spectrum, float decay) {
    pulseValue = pulseValue > 0 ? pulseValue - decay : 0;
    if (spectrum[BASS_BAND] >= STRONG_BASS) {
        pulseValue = 1;
    }
}
