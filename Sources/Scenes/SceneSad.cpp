#include "Scenes/SceneSad.h"

static const unsigned int SHOT_TIME = 2820;     // ms
static const unsigned int FADE_OUT_TIME = 2250; // ms, at the end of a shot

const std::array<WritingScene::Words, 4>& SceneSad::titles() {
    static const std::array<Words, 4> all = {{
        {{36, 1, 36}, "Olmbrex", 0.3f},
        {{42, 1, 36}, "Presents", 0.3f},
        {{42, 1, 42}, "A new demo", 0.3f},
        {{36, 1, 42}, "Quelar", 0.4f},
    }};
    return all;
}

SceneSad::SceneSad() : WritingScene(Colour4(0.7f, 0, 0, 0.7f)) {
    addMove({38, 4, 34}, {34, 4, 34}, {36, 0, 37}, {34, 0, 36}, SHOT_TIME);
    addMove({44, 4, 34}, {41, 4, 34}, {38, 0, 37}, {41, 0, 36}, SHOT_TIME);
    addMove({44, 5, 40}, {41, 5, 41}, {38, 0, 39}, {41, 0, 43}, SHOT_TIME);
    addMove({34, 5, 40}, {38, 5, 43}, {36, 0, 42}, {34, 0, 42}, SHOT_TIME);
}

void SceneSad::draw(Window* /*pWindow*/) {
    if (step < titles().size()) {
        write(titles()[step]);
    }
}

bool SceneSad::update(const Camera& /*camera*/, Grid* /*pGrid*/, Music* /*pMusic*/, unsigned int time) {
    starts(time);
    const bool playing = playMove(time);
    step = currentCam;
    if (!playing) {
        return false;
    }
    // On the scene's own clock: a shot starts a frame late, the fades do not wait for it.
    const unsigned int camTime = (time - startTime) % SHOT_TIME;
    if (!fadeIn(camTime) && camTime > SHOT_TIME - FADE_OUT_TIME) {
        fadeValue = static_cast<float>(SHOT_TIME - camTime) / FADE_OUT_TIME;
    }
    return true;
}
