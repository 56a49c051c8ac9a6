#include "Scenes/SceneSadSpectrumGreet.h"

namespace {
const unsigned int GREETING_TIME = 2790; // ms from one to the next

struct Greeting {
    Vector3f position;
    std::string text;
    void (Font::*write)(const Vector3f&, const std::string&, float) const;
    float scale;
};

/// In the order in which they appear.
const std::vector<Greeting>& greetings() {
    static const std::vector<Greeting> all = {
        {{45, 1, 50}, "Tunko crew", &Font::drawText, 1},
        {{43, 1, 47}, "Vastor", &Font::drawText, 1},
        {{72, 1, 52}, "KelpFounders", &Font::drawText2, 1.5f},
        {{66, 1, 59}, "Marigrove", &Font::drawText2, 1.7f},
        {{64, 1, 33}, "ZiiiZ", &Font::drawText2, 1.7f},
        {{58, 1, 33}, "Q ton", &Font::drawText2, 1.7f},
        {{54, 1, 76}, "Plinth ORB", &Font::drawText, 1.8f},
    };
    return all;
}
} // namespace

SceneSadSpectrumGreet::SceneSadSpectrumGreet() : WritingScene(Colour4(0.9f, 0.9f, 0.9f, 0.7f)) {
    // Looking a little aside, so that the line of sight is never parallel to the up vector.
    addMove({50, 50, 50}, {50, 80, 50}, {50.01f, 0, 50.01f}, {50.01f, 0, 50.01f}, 19530);
}

void SceneSadSpectrumGreet::draw(Window* /*pWindow*/) {
    for (std::uint32_t i = 0; i < step; ++i) {
        const Greeting& greeting = greetings()[i];
        (f.*greeting.write)(greeting.position, greeting.text, greeting.scale);
    }
}

bool SceneSadSpectrumGreet::update(const Camera& /*camera*/, Grid* pGrid, Music* /*pMusic*/,
                                   unsigned int time) {
    // Whether a greeting's time has come before; it is written when it has come again.
    static std::array<bool, 7> armed{};

    if (startTime == 0) {
        startTime = time;
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
