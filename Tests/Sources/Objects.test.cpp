// The lattice, letters and fountains.

#include "GridModel.h"
#include "Objects/Font.h"
#include "Objects/Particules3.h"
#include "StandIns/Stage.h"

#include <cmath>
#include <random>

namespace {
class Objects : public OnStage {};

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
            std::generate_n(spectrum.begin(), 16, [&] { return random() % 3 == 0 ? unit(random) : 0; });
            const float spike = frame % 3 == 0 ? 15 : 8;
            grid.setImpulsionValue(spike);
            grid.updateSpectrum(spectrum.data(), 512);
            model.spectrum(spectrum.data(), spike);
            if (random() % 8 == 0) { // some of them off the lattice, some bright enough to stay
                const Colour4 colour(unit(random), unit(random) / 2, unit(random) / 2, 0.7f);
                const int x = static_cast<int>(random() % 50) - 5;
                const int y = static_cast<int>(random() % 50) - 5;
                const unsigned int step = random() % 3;
                grid.makeImpulsion(x, y, colour, step, 6);
                model.impulsion(x, y, colour, step, 6);
            }
            grid.updateImpulsion();
            model.waves();
            ASSERT_NO_FATAL_FAILURE(model.expectAlike(grid)) << X << " x " << Y << " " << frame;
        }
    }
}

TEST_F(Objects, lettersHaveTheirStrokesAndPlaces) {
    const Font font(Colour4(0.7f, 0, 0, 0.7f));
    float sum = 0; // of the ends of the strokes, each weighted by its place: no two may change theirs
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        font.getLetterRenderer(letter)->draw(1);
        const std::vector<Point> glyph = drawings().at(0);
        for (std::size_t i = 0; i < glyph.size(); ++i) {
            const Vector3f& p = glyph[i].position;
            sum += static_cast<float>((i + 1) * (letter - '`')) * (2 * p.x + 3 * p.z + p.y);
        }
    }
    EXPECT_NEAR(sum, 15848, 0.05);
    font.drawText2({10, 1, 20}, "1\xE9", 2);
    EXPECT_EQ(
        calls(" glTranslatef glRotatef glScalef "),
        "Translatef 10 1 20; Rotatef 270 0 1 0; Scalef 2 2 2; Translatef 1.5 0 0; Translatef 1.5 0 0; ");
}

TEST_F(Objects, fountainsEmitSinkFadeAndBury) {
    Particules3 fountain({5, 2, 9}, Colour4(1, 0.8f, 0, 1), 250, 0.7f);
    std::vector<std::pair<float, int>> living; // phases of their births and ages, in their places
    for (std::size_t update = 0; update < 500; ++update) {
        for (std::size_t i = 0; i < living.size(); ++i) {
            if (++living[i].second > 201) {
                living[i] = living.back(); // the newest takes the place, and is not aged this time
                living.pop_back();
            }
        }
        living.emplace_back(0.03f * static_cast<float>(update), 0);
        fountain.update();
        fountain.draw();
        const std::vector<Point> drawn = drawings().at(0);
        ASSERT_EQ(drawn.size(), living.size()) << update;
        for (std::size_t i = 0; i < living.size(); ++i) {
            const auto [c, age] = living[i];
            ASSERT_NEAR(drawn[i].position.x, 5 + std::sin(c) + c + std::sin(c + 0.7f), 1e-3) << update;
            ASSERT_NEAR(drawn[i].position.y, 3 - 0.002f * age + std::cos(2 * c + 0.7f), 1e-3) << update;
            ASSERT_NEAR(drawn[i].colour.r + drawn[i].colour.a, 1.3f - 0.005f * age, 1e-4) << update;
        }
    }
}
} // namespace
