// The six scenes against scripts of what they should do, frame by frame.

#include "3D/Camera/RotatingCamera.h"
#include "GridModel.h"
#include "Objects/Font.h"
#include "Scenes/ScenePartWorld.h"
#include "Scenes/SceneSad.h"
#include "Scenes/SceneSadSpectrum.h"
#include "Scenes/SceneSadSpectrumGreet.h"
#include "Scenes/SceneSpectrumImpulsePart.h"
#include "Scenes/SceneSpectrumPart.h"
#include "StandIns/Stage.h"

#include <map>
#include <memory>
#include <random>

namespace {
using Ms = unsigned int;

/// What a scene is to do.
struct Script {
    std::unique_ptr<Scene> pScene;
    bool rests;        ///< in the first update
    bool listens;      ///< moves the spikes
    bool waves;        ///< moves the waves
    float spike;       ///< height of the spikes in the end
    std::size_t fires; ///< bands that fire waves
};

enum { SAD, SPECTRUM, GREET, PART, IMPULSE, WORLD, GREET_AGAIN };

/// When each is updated, from its first moment to its last: where something begins or ends, and between.
const std::vector<Ms> MOMENTS[] = {
    {0,    250,  490,  500,  570,  580,  1410, 2820, 2821, 3000,  3400,  4410, 5820,
     5821, 6000, 7410, 8820, 8821, 9000, 9020, 9030, 9040, 10410, 11820, 11821},
    {0,    10,   250,   490,   500,   2760,  4490,  4500,  4510,  5000,  5510,  5511,
     5600, 8350, 11100, 11101, 11200, 13950, 16700, 16701, 16800, 19566, 22332, 22333},
    {0, 16, 33, 490, 500, 2700, 6000, 6010, 6020, 6030, 9775, 19000, 19010, 19020, 19030, 19040, 19050, 19546,
     19547},
    {0, 10, 250, 490, 500, 2510, 4490, 4500, 4510, 5000, 5010, 5011, 5100, 7600, 9510, 10100, 10101},
    {0, 250, 490, 500, 7500, 7510, 7520, 14490, 14500, 14510, 15000, 15001},
    {0,    250,  490,  500,  1000, 2000,  3000,  4000,  5000,  6000,  7000,  8000,  8100, 8200,
     8300, 8400, 8500, 8600, 9990, 10000, 10001, 12500, 24490, 24500, 24510, 25000, 25001},
    {0, 1, 2790, 2791, 5580, 5581, 16740, 16741, 19532}};

/// A random number as a part of the largest.
float unit(int drawn) { return static_cast<float>(drawn) / 2147483648.0f; }

/// What the scene writes: where and how, and the letters, each with a dot for the step behind it.
std::string writtenBy(Scene& scene, const Colour4& ink) {
    const Font font(ink);
    std::map<std::string, std::string> letters;
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        font.getLetterRenderer(letter)->draw(8);
        letters[told(stage.drawings.back())] = letter;
    }
    stage.drawings.clear();
    stage.calls.clear();
    scene.draw(nullptr);
    std::string text;
    auto drawing = stage.drawings.begin();
    for (const std::string& call : stage.calls) {
        const std::string name = call.substr(0, call.find(' '));
        const bool places = name == "glTranslatef" || name == "glRotatef" || name == "glScalef";
        text += name == "glDrawElements"         ? letters[told(*drawing++)]
                : call == "glTranslatef 1.5 0 0" ? "."
                : places                         ? " " + call + " "
                                                 : "";
    }
    return text;
}

using Scenes = OnStage;

TEST_F(Scenes, followTheirScripts) {
    srand(3);
    GridModel model(100, 100, 1.5f);
    srand(3);
    Grid grid(100, 100, 1.5f);
    RotatingCamera camera({6, 0, 6}, 6, 0.3f);
    Music music;
    std::array<float, 512> spectrum{};
    stage.spectrum = [&spectrum](float* heard) { std::copy(spectrum.begin(), spectrum.end(), heard); };
    std::mt19937 random{11};
    std::vector<std::string> story;
    stage.drawn.clear();
    const Script SCRIPTS[] = {{std::make_unique<SceneSad>(), false, false, false, 15, 0},
                              {std::make_unique<SceneSadSpectrum>(), true, true, false, 15, 0},
                              {std::make_unique<SceneSadSpectrumGreet>(), true, false, true, 15, 0},
                              {std::make_unique<SceneSpectrumPart>(), true, true, false, 10, 0},
                              {std::make_unique<SceneSpectrumImpulsePart>(), false, true, true, 8, 8},
                              {std::make_unique<ScenePartWorld>(), false, false, true, 8, 10},
                              {std::make_unique<SceneSadSpectrumGreet>(), true, false, true, 15, 0}};
    const std::vector<int> places = stage.drawn; // of the solids of the last scene, x and z
    ASSERT_EQ(places.size(), 900U);
    std::array<float, 150> heights{};
    auto* launched = heights.begin();
    for (const Script& script : SCRIPTS) {
        const auto index = &script - SCRIPTS;
        Scene& scene = *script.pScene;
        const bool greets = index == GREET || index == GREET_AGAIN;
        grid.setImpulsionValue(15);
        grid.makeImpulsion(50, 60, Colour4(0.3f, 0.2f, 0.1f, 0.5f), 1, 20);
        model.impulsion(50, 60, {0.3f, 0.2f, 0.1f, 0.5f}, 1, 20);
        story.push_back(call("Scene", index));
        std::string written;
        int frame = 0;
        for (const Ms moment : MOMENTS[index]) {
            SCOPED_TRACE(call("scene", index, "at", moment));
            const int loudest = ++frame % 2 == 0 ? 45 : 21;
            std::generate_n(spectrum.begin(), 16,
                            [&] { return static_cast<float>(random() % loudest) / 100; });
            spectrum[2] = frame % 16 == 3 ? 0.25f : 0.24f;
            stage.drawn.clear();
            const bool plays =
                scene.update(camera, &grid, &music, moment - 7001); // across the wrap of the clock
            ASSERT_EQ(plays, moment != MOMENTS[index].back());
            if (plays) {
                scene.setSceneRender();
            }
            story.push_back(call(moment, "ms", plays ? stage.calls.back() : "over", "fade",
                                 scene.getFadeValue(), "pulse", scene.getPulseValue()));
            std::for_each(heights.begin(), launched, [](float& height) { height += 0.05f; });
            if (plays && !(script.rests && frame == 1)) {
                if (script.listens) {
                    model.spectrum(spectrum.data(), script.spike);
                }
                if (greets) {
                    model.level();
                }
                // The waves, by the random numbers that were drawn for them.
                const std::size_t numbers = index == IMPULSE ? 5 : 3;
                const auto isLoud = [](float magnitude) { return magnitude > 0.2f; };
                const auto loud = std::count_if(spectrum.begin(), spectrum.begin() + script.fires, isLoud);
                ASSERT_EQ(stage.drawn.size(), numbers * loud);
                for (auto n = stage.drawn.begin(); n != stage.drawn.end(); n += numbers) {
                    if (index == IMPULSE) {
                        const auto ahead = static_cast<float>(stage.view[0]) / 1.5f + unit(n[3]) * 20;
                        model.impulsion(unit(n[4]) * 10 + 20, ahead,
                                        {unit(n[0]), unit(n[1]), unit(n[2]), 0.7f}, 1, 6);
                    } else {
                        model.impulsion(unit(n[2]) * 100 - 10, unit(n[1]) * 100 - 10, {0, 0, 0, 1}, 1, 6);
                    }
                }
                launched += index == WORLD && !stage.drawn.empty() ? 1 : 0;
                if (script.waves) {
                    model.waves();
                }
            } else if (greets && !plays) {
                model.paint(GREY);
            }
            ASSERT_NO_FATAL_FAILURE(model.expectAlike(grid));

            if (index == SAD || greets) {
                const Colour4 ink =
                    index == SAD ? Colour4(0.7f, 0, 0, 0.7f) : Colour4(0.9f, 0.9f, 0.9f, 0.7f);
                const std::string all = writtenBy(scene, ink);
                if (all != written) {
                    story.push_back("writes" + all.substr(all.find(written) == 0 ? written.size() : 0));
                }
                written = all;
                continue;
            }
            stage.calls.clear();
            stage.drawings.clear();
            scene.draw(nullptr);
            for (std::size_t i = 0; index == WORLD && i < 450; ++i) { // cubes, pyramids and spheres
                ASSERT_EQ(stage.drawings.at(i).size(), i < 150 ? 24U : i < 300 ? 16U : 400U);
                const std::string place = call("glTranslatef", 150 * unit(places[2 * i]), heights[i % 150],
                                               150 * unit(places[2 * i + 1]));
                ASSERT_EQ(stage.calls.at(14 * i + 1), place);
                for (const int axis : {2, 3, 4}) {
                    ASSERT_EQ(stage.calls.at(14 * i + axis).find("glRotatef 0 "), 0U);
                }
            }
            if (!plays) { // tells how it is drawn, fountains and some solids by their ends
                keep("glDisable |glEnable |glBlendFunc|glDraw");
                const std::size_t drawings = stage.drawings.size();
                for (std::size_t i = 0; i<drawings; i += drawings> i + 18 ? 150 : 1) {
                    tell(told({stage.drawings[i].front(), stage.drawings[i].back()}));
                }
                story.insert(story.end(), stage.calls.begin(), stage.calls.end());
            }
        }
        // What the next scene finds, besides the wave.
        spectrum.fill(0.4f);
        grid.updateSpectrum(spectrum.data(), 512);
        model.spectrum(spectrum.data(), script.spike);
    }
    stage.calls = story;
    expectStory("Scenes");
}
} // namespace
