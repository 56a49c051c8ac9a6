#include "Scenes/FountainScene.h"

const std::array<Colour4, FountainScene::CLUSTER> FountainScene::PALETTE = {
    Colour4(0, 0.74f, 0.19f, 1),      Colour4(0.39f, 0.87f, 0.52f, 1), Colour4(0.19f, 0.086f, 0.72f, 1),
    Colour4(0.39f, 0.29f, 0.847f, 1), Colour4(1, 0.8f, 0, 1),          Colour4(1, 0.11f, 0, 1),
};

const FountainScene::Offsets FountainScene::OFFSETS = {0.2f, 0.4f, 0.6f, 0.7f, 0.9f, 1.1f};

bool FountainScene::playFlight(std::uint32_t& startTime, unsigned int time) {
    const std::uint32_t flight = currentCam;
    const bool playing = playMove(time);
    if (currentCam != flight) {
        startTime += cams[flight]->getMsTime();
    }
    if (playing) {
        const unsigned int duration = camera().getMsTime();
        fadeInAndOut((time - startTime) % duration, duration);
    }
    return playing;
}
