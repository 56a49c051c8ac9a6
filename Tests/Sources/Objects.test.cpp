// The lattice, letters, solids and fountains.

#include "DrawnModels.h"
#include "Objects/Cube.h"
#include "Objects/Font.h"
#include "Objects/Particules.h"
#include "Objects/Particules2.h"
#include "Objects/Particules3.h"
#include "Objects/Particules4.h"
#include "Objects/Particules5.h"
#include "Objects/Pyramide.h"
#include "Objects/Scroller.h"
#include "Objects/Sphere.h"
#include "Objects/Star.h"

#include <complex>
#include <random>

namespace {
using Grids = OnStage;
using Fonts = OnStage;
using Solids = OnStage;
using Fountains = OnStage;

TEST_F(Grids, obeyMusicAndWavesAsTheModelDoes) {
    std::mt19937 random{5};
    std::uniform_real_distribution<float> unit(0, 1);
    for (const auto& [X, Y] : {std::pair(16, 16), std::pair(20, 7), std::pair(3, 30), std::pair(40, 40)}) {
        srand(7);
        Grid grid(X, Y, 1.25f);
        srand(7); // the same chance for both
        GridModel model(X, Y, 1.25f);
        ASSERT_NO_FATAL_FAILURE(model.expectAlike(grid));
        for (int frame = 0; frame < 400; ++frame) {
            std::array<float, 16> spectrum{};
            std::generate_n(spectrum.begin(), 16, [&] { return random() % 3 == 0 ? unit(random) : 0; });
            const float spike = frame < 3 ? 15 : frame % 3 == 0 ? 20 : 8; // 15 unless told otherwise
            if (frame >= 3) {
                grid.setImpulsionValue(spike);
            }
            grid.updateSpectrum(spectrum.data(), 512);
            model.spectrum(spectrum.data(), spike);
            if (random() % 8 == 0) { // some of them off the lattice, some bright enough to stay
                const Rgba colour = {unit(random), unit(random) / 2, unit(random) / 2, 0.7f};
                const int x = static_cast<int>(random() % 50) - 5;
                const int y = static_cast<int>(random() % 50) - 5;
                const unsigned int step = random() % 3;
                const unsigned int limit = 4 + random() % 3;
                grid.makeImpulsion(x, y, {colour[0], colour[1], colour[2], colour[3]}, step, limit);
                model.impulsion(x, y, colour, step, limit);
            }
            if (frame == 200) {
                grid.clearColour();
                model.paint(GREY);
            } else if (frame == 250) {
                grid.clearColour(Colour3(0.1f, 0.2f, 0.3f));
                grid.clearElevation();
                model.paint({0.1f, 0.2f, 0.3f, 1});
                model.level();
            }
            grid.updateImpulsion();
            model.waves();
            ASSERT_NO_FATAL_FAILURE(model.expectAlike(grid)) << X << " x " << Y << " " << frame;
        }
    }
}

TEST_F(Grids, haveSegmentsBetweenNeighboursAndMounds) {
    const Grid small(2, 3, 1);
    EXPECT_EQ(small.getIndices(), std::vector<unsigned int>({0, 1, 1, 2, 3, 4, 4, 5, 0, 3, 1, 4, 2, 5}));
    EXPECT_EQ(call("", small.getNumberPointsX(), small.getNumberPointsY()), " 2 3");
    // Worked out by hand: where the way there that is tried first has left a point.
    const std::tuple<int, int, int, int, float, const char*> MOUNDS[] = {
        {20, 1, 10, 0, 20, " 0 0 0 0 0 10 14 17 19 20 20 10 14 10 14 10 0 0 0 0"},
        {1, 20, 0, 10, 20, " 0 0 0 0 0 10 14 17 19 20 20 10 14 10 14 10 0 0 0 0"},
        {7, 1, 3, 0, 2, " 0 1 2 2 2 1 0"},
        {2, 2, 0, 0, 20, " 20 10 20 14"},
        {3, 1, 3, 0, 9, " 0 0 0"},
        {1, 3, 0, 3, 9, " 0 0 0"}};
    for (const auto& [X, Y, x, y, height, wanted] : MOUNDS) {
        Grid grid(X, Y, 1);
        grid.makeElevation(x, y, height, 0);
        std::string heights;
        for (const Point& point : grid.getPoints()) {
            heights += call("", point.position.y);
        }
        EXPECT_EQ(heights, wanted);
    }
}

TEST_F(Fonts, haveTheStrokesOfAllLettersAndTwoWaysToWriteThem) {
    const Rgba red = {0.7f, 0.1f, 0.2f, 0.6f};
    const Font font(Colour4(0.7f, 0.1f, 0.2f, 0.6f));
    const TextModel TEXTS[] = {{{36, 1, 42}, "abcdefghijklmnopqrstuvwxyz", 0.3},
                               {{10, 1, 20}, "Quelar ABC xyz", 2, true},
                               {{0, 0, 0}, "", 1}};
    for (const TextModel& text : TEXTS) {
        const Vector3f at(text.position[0], text.position[1], text.position[2]);
        const auto scale = static_cast<float>(text.scale);
        text.turned ? font.drawText2(at, text.text, scale) : font.drawText(at, text.text, scale);
        const std::vector<Drawing> drawn = drawings();
        const Drawing* pDrawing = drawn.data();
        text.expectDrawn(pDrawing, red);
        EXPECT_EQ(pDrawing, drawn.data() + drawn.size());
    }
    EXPECT_EQ(font.getLetterRenderer('A'), font.getLetterRenderer('a'));
    EXPECT_EQ(font.getLetterRenderer('1'), nullptr);
    stage.calls.clear();
    font.drawText2({10, 1, 20}, "1\xE9", 2);
    expectStory("Fonts");
}

TEST_F(Fonts, scrollAwayAndBack) {
    Font font((Colour4()));
    Scroller scroller(&font, {3, 1, 45}, std::string(59, 'i') + " i");
    scroller.draw(0.5f);
    const std::vector<Drawing> drawn = drawings();
    ASSERT_EQ(drawn.size(), 53U); // letters 4 to 56
    for (std::size_t i = 0; i < drawn.size(); ++i) {
        const double z = 45 - 0.75 * static_cast<double>(i + 4);
        expectPoints(drawn[i], {{3, 1, z}, {3, 1, z + 0.5}}, {0, 0, 0, 1});
    }
    for (const auto& [z, steps, wanted] : {std::tuple(199.99f, 1, -100.0f), {199.9f, 2, 199.97f}}) {
        Scroller other(&font, {3, 1, z}, "");
        for (int i = 0; i < steps; ++i) {
            other.update();
        }
        stage.calls.clear();
        other.draw(1);
        EXPECT_EQ(calls(" glTranslatef "), call("glTranslatef 3 1", wanted) + "; ");
    }
}

using Corners = std::vector<std::array<double, 3>>;

/// The solid stands at (1, 2, 3), turned by 90 degrees about each axis; edges are pairs of corners' digits.
template <typename Solid>
void expectSolid(Solid& solid, const Corners& corners, const std::string& edges) {
    const auto heightAfter = [&](int updates) {
        for (; updates > 0; --updates) {
            solid.update();
        }
        stage.drawings.clear();
        solid.draw();
        double mean = 0;
        for (const Point& point : stage.drawings.at(0).points) {
            mean += point.position.y / static_cast<double>(stage.drawings[0].points.size());
        }
        return mean;
    };
    const double height = heightAfter(0);
    Corners wanted;
    for (std::size_t i = 0; i < (edges.empty() ? corners.size() : edges.size()); ++i) {
        const auto& [x, y, z] = corners[edges.empty() ? i : edges[i] - '0'];
        wanted.push_back({1 + z, 2 - y, 3 + x});
    }
    EXPECT_EQ(stage.drawings.at(0).size, 4);
    expectPoints(stage.drawings.at(0), wanted, {0.1f, 0.2f, 0.3f, 1});
    if constexpr (!std::is_same_v<Solid, Star>) {
        EXPECT_FALSE(solid.getActive());
        EXPECT_EQ(heightAfter(10), height);
        solid.setActive(true);
        EXPECT_TRUE(solid.getActive());
        EXPECT_NEAR(heightAfter(10), height + 0.5, 1e-4);
        solid.setActive(false);
        EXPECT_NEAR(heightAfter(10), height + 0.5, 1e-4);
    }
}

TEST_F(Solids, haveTheirCornersAndEdgesAndRiseOnceActive) {
    const Vector3f at(1, 2, 3);
    const Vector3f turn(90, 90, 90);
    const Colour3 colour(0.1f, 0.2f, 0.3f);
    Corners corners;
    for (int i = 0; i < 8; ++i) {
        corners.push_back({i % 2 - 0.5, i / 2 % 2 - 0.5, i / 4 - 0.5});
    }
    Cube cube(at, turn, colour, 0.5f, 7);
    expectSolid(cube, corners, "010204131523263745465767");
    Pyramide pyramide(at, turn, colour, 0.5f);
    expectSolid(pyramide, {corners[0], corners[1], corners[4], corners[5], {0, 0.75, 0}}, "0102041314242334");
    Star star(at, turn, colour);
    expectSolid(star,
                {{0.5, 0, 0.5},
                 {0.5, 0.5, 1},
                 {0, 0.66, 0.33},
                 {1, 0.66, 0.33},
                 {0.5, 1, 0.5},
                 {0.5, 0.5, 0},
                 {0, 0.33, 0.66},
                 {1, 0.33, 0.66}},
                "010203121323454647565767");
    stage.calls.clear();
    star.update();
    star.draw();
    expectStory("Solids");

    Corners rings; // seen as a plane turned about z: radius and height of a ring, and an angle
    for (int i = 0; i < 5 * 5 * 4; ++i) {
        const int upper = i % 4 < 2 ? 1 : 0;
        const int sector = i / 4 % 5 + (i % 4 == 1 || i % 4 == 2 ? 1 : 0);
        const double lift = -M_PI / 2 + M_PI / 5 * (i / 20 + upper);
        const auto around = std::polar(2 * std::cos(lift), 2 * M_PI / 5 * sector);
        rings.push_back({around.real(), around.imag(), 2 * std::sin(lift)});
    }
    Sphere sphere(at, turn, colour, 2, 5, 7);
    expectSolid(sphere, rings, "");
}

template <typename Particules>
void expectFountain(int kind) {
    for (const unsigned int capacity : {0U, 150U, 250U}) {
        Particules fountain({5, 2, 9}, Colour4(1, 0.8f, 0.5f, 0.9f), capacity, 0.7f);
        FountainModel model{kind, {5, 2, 9}, {0.3f, 0.24f, 0.15f, 0.9f}, 0.7, capacity};
        for (std::size_t update = 0; update < 500; ++update) {
            SCOPED_TRACE(call("kind", kind, "update", update));
            fountain.draw();
            ASSERT_NO_FATAL_FAILURE(model.expectDrawn(stage.drawings.at(0)));
            stage.drawings.clear();
            fountain.update();
            model.update();
        }
    }
}

TEST_F(Fountains, emitAlongTheirCurvesSinkFadeAndBury) {
    expectFountain<Particules>(1);
    expectFountain<Particules2>(2);
    expectFountain<Particules3>(3);
    expectFountain<Particules4>(4);
    expectFountain<Particules5>(5);
    stage.calls.clear();
    Particules2({}, {}, 3, 0).draw();
    expectStory("Fountains");
}
} // namespace
