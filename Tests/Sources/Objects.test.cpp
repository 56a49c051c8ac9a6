// The lattice, letters and fountains.

#include "GridModel.h"
#include "Objects/Font.h"
#include "Objects/Particules3.h"
#include "StandIns/Stage.h"

#include <cmath>
#include <random>

namespace {
class Objects : public OnStage {};

TEST_F(Objects, latticeIsMadeOfSegments) {
    const Grid grid(2, 3, 1.5f);
    EXPECT_THAT(grid.getIndices(), testing::ElementsAre(0, 1, 1, 2, 3, 4, 4, 5, 0, 3, 1, 4, 2, 5));
    EXPECT_EQ(grid.getPoints()[5].position.x, 1.5f);
    EXPECT_EQ(grid.getPoints()[5].position.z, 3);
    EXPECT_EQ(stage.drawn.size(), 1024U);
}

TEST_F(Objects, latticeObeysMusicAndWavesAsTheModelDoes) {
    std::mt19937 random{5};
    std::uniform_real_distribution<float> unit(0, 1);
    for (const auto& [X, Y] : {std::pair(16, 16), std::pair(20, 7), std::pair(3, 30), std::pair(40, 40)}) {
        srand(7);
        Grid grid(X, Y, 1.5f);
        srand(7); // the same chance for both
        GridModel model(X, Y);
        for (int frame = 0; frame < 400; ++frame) {
            std::array<float, 16> spectrum{};
            std::generate(spectrum.begin(), spectrum.end(),
                          [&] { return random() % 3 == 0 ? unit(random) : 0; });
            const float spike = frame % 3 == 0 ? 15 : 8;
            if (frame % 5 < 3) {
                grid.setImpulsionValue(spike);
                grid.updateSpectrum(spectrum.data(), 512);
                model.spectrum(spectrum.data(), spike);
            }
            if (random() % 8 == 0) { // some of them off the lattice, some bright enough to stay
                const Colour4 colour(unit(random), unit(random) / 2, unit(random) / 2, 0.7f);
                const std::array<int, 4> at{int(random() % 50) - 5, int(random() % 50) - 5, int(random() % 3),
                                            int(random() % 8)};
                grid.makeImpulsion(at[0], at[1], colour, at[2], at[3]);
                model.impulsion(at[0], at[1], colour, at[2], at[3]);
            }
            grid.updateImpulsion();
            model.waves();
            if (frame % 100 == 99) {
                grid.clearColour(Colour3(0.1f, 0.2f, 0.3f));
                model.clearColour(Colour4(0.1f, 0.2f, 0.3f, 1));
            }
            if (frame % 130 == 129) {
                grid.clearElevation();
                model.clearElevation();
            }
            ASSERT_NO_FATAL_FAILURE(model.expectAlike(grid)) << X << " x " << Y << " " << frame;
        }
    }
}

TEST_F(Objects, lettersHaveTheirStrokesAndPlaces) {
    const Font font(Colour4(0.7f, 0, 0, 0.7f));
    std::string segments;
    float sum = 0; // of the ends of the strokes, each weighted by its place: no two may change theirs
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        font.getLetterRenderer(letter)->draw(1);
        const std::vector<Point> glyph = drawings().at(0);
        segments += std::to_string(glyph.size() / 2);
        for (std::size_t i = 0; i < glyph.size(); ++i) {
            const Vector3f& p = glyph[i].position;
            sum += static_cast<float>((i + 1) * (letter - '`')) * (2 * p.x + 3 * p.z + p.y);
        }
    }
    EXPECT_EQ(segments, "35344353133243445552324233");
    EXPECT_NEAR(sum, 15848, 0.05);
    calls();
    font.drawText2({10, 1, 20}, " 1\xE9", 2);
    const std::string step = "glTranslatef 1.5 0 0";
    EXPECT_THAT(calls(), testing::ElementsAre("glPushMatrix", "glTranslatef 10 1 20", "glRotatef 270 0 1 0",
                                              "glScalef 2 2 2", step, step, step, "glPopMatrix"));
}

TEST_F(Objects, fountainsEmitSinkFadeAndBury) {
    Particules3 fountain({5, 2, 9}, Colour4(1, 0.8f, 0, 1), 250, 0.7f);
    Particules3 few({5, 2, 9}, Colour4(), 3, 0);
    std::vector<std::pair<float, int>> living; // phases of their births and ages, in their places
    float phase = 0;
    for (std::size_t update = 1; update <= 500; ++update) {
        for (std::size_t i = 0; i < living.size(); ++i) {
            if (++living[i].second > 201) {
                living[i] = living.back(); // the newest takes the place, and is not aged this time
                living.pop_back();
            }
        }
        living.emplace_back(phase, 0);
        phase = static_cast<float>(phase + 0.03);
        fountain.update();
        few.update();
        fountain.draw();
        few.draw();
        const std::vector<std::vector<Point>> drawn = drawings();
        ASSERT_EQ(drawn[0].size(), living.size()) << update;
        ASSERT_EQ(drawn[1].size(), std::min<std::size_t>(update, 3));
        for (std::size_t i = 0; i < living.size(); ++i) {
            const auto [c, age] = living[i];
            const Vector3f place(5 + std::sin(c) + c + std::sin(c + 0.7f),
                                 3 - 0.002f * age + std::cos(2 * c + 0.7f), 9 + std::cos(c));
            const Vector3f miss = place - drawn[0][i].position;
            const Colour4 tint = drawn[0][i].colour - Colour4(0.3f, 0.24f, 0, 1 - 0.005f * age);
            ASSERT_LT(miss.dot(miss) + tint.dot(tint), 1e-7) << update << " " << i;
        }
    }
}
} // namespace
