#include "Scenes/SceneSadSpectrumGreet.h"

static const unsigned int GREETING_TIME = 2790; // ms from one to the next

const std::array<WritingScene::Words, SceneSadSpectrumGreet::GREETINGS>& SceneSadSpectrumGreet::greetings() {
    static const std::array<Words, GREETINGS> all = {{
        {{45, 1, 50}, "Tunko crew", 1},
        {{43, 1, 47}, "Vastor", 1},
        {{72, 1, 52}, "KelpFounders", 1.5f, &Font::drawText2},
        {{66, 1, 59}, "Marigrove", 1.7f, &Font::drawText2},
        {{64, 1, 33}, "ZiiiZ", 1.7f, &Font::drawText2},
        {{58, 1, 33}, "Q ton", 1.7f, &Font::drawText2},
        {{54, 1, 76}, "Plinth ORB", 1.8f},
    }};
    return all;
}

SceneSadSpectrumGreet::SceneSadSpectrumGreet() : WritingScene(Colour4(0.9f, 0.9f, 0.9f, 0.7f)) {
    // Looking a little aside, so that the line of sight is never parallel to the up vector.
    addMove({50, 50, 50}, {50, 80, 50}, {50.01f, 0, 50.01f}, {50.01f, 0, 50.01f}, 19530);
}

void SceneSadSpectrumGreet::draw(Window* /*pWindow*/) {
    for (std::uint32_t i = 0; i < step; ++i) {
        write(greetings()[i]);
    }
}

bool SceneSadSpectrumGreet::update(const Camera& /*camera*/, Grid* pGrid, Music* /*pMusic*/,
                                   unsigned int time) {
    // Whether a greeting's time has come before; it is written when it has come again.
    static std::array<bool, GREETINGS> armed{};

    if (starts(time)) {
        return true;
    }
    if (!playMove(time)) {
        pGrid->clearColour();
        return false;
    }
    const unsigned int camTime = time - startTime;
    fadeIn(camTime);
    pGrid->clearElevation();
    for (std::uint32_t k = 0; k < armed.size(); ++k) {
        if (step == k && camTime > GREETING_TIME * k) {
            if (armed[k]) {
                step = k + 1;
            }
            armed[k] = true;
        }
    }
    pGrid->updateImpulsion();
    return true;
}
