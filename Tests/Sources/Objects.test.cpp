// The lattice, letters, solids and fountains.

#include "FountainModel.h"
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

#include <random>

namespace {
using Grids = OnStage;
using Objects = OnStage;

TEST_F(Grids, obeyMusicAndWavesAsTheModelDoes) {
    std::mt19937 random{5};
    std::uniform_real_distribution<float> unit(0, 1);
    for (const auto& [X, Y] : {std::pair(16, 16), {20, 7}, {3, 30}, {40, 40}}) {
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
                const Colour4 colour(unit(random), unit(random) / 2, unit(random) / 2, 0.7f);
                const int x = static_cast<int>(random() % 50) - 5;
                const int y = static_cast<int>(random() % 50) - 5;
                const unsigned int step = random() % 3;
                const unsigned int limit = 4 + random() % 3;
                grid.makeImpulsion(x, y, colour, step, limit);
                model.impulsion(x, y, colour, step, limit);
            }
            if (frame == 200) {
                grid.clearColour();
                model.paint(GREY);
            } else if (frame == 250) {
                grid.clearColour(Colour3(0.1f, 0.2f, 0.3f));
                grid.clearElevation();
                model.paint(Colour4(0.1f, 0.2f, 0.3f, 1));
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
    tell(small.getNumberPointsX(), "by", small.getNumberPointsY());
    for (std::size_t i = 0; i < small.getIndices().size(); i += 2) {
        tell(small.getIndices()[i], "to", small.getIndices()[i + 1]);
    }
    const int MOUNDS[][5] = {{20, 1, 10, 0, 20}, {1, 20, 0, 10, 20}, {7, 1, 3, 0, 2},
                             {2, 2, 0, 0, 20},   {3, 1, 3, 0, 9},    {1, 3, 0, 3, 9}};
    for (const auto& [X, Y, x, y, height] : MOUNDS) {
        Grid grid(X, Y, 1);
        grid.makeElevation(x, y, static_cast<float>(height), 0);
        tell(told(grid.getPoints()));
    }
    expectStory("Grids");
}

TEST_F(Objects, writeAllLettersInTwoWaysAndScroll) {
    Font font(Colour4(0.7f, 0.1f, 0.2f, 0.6f));
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        font.getLetterRenderer(letter)->draw(1);
        tell(letter, told(stage.drawings.back()));
    }
    keep("[a-z] ");
    stage.drawings.clear();
    expectStory("Letters");

    font.drawText({36, 1, 42}, "", 0.3f);
    font.drawText2({10, 1, 20}, "i1Z\xE9", 2);
    expectStory("Writing");

    // Letters within 40 units of the middle are seen; far away it comes back from the other side.
    for (const auto& [z, updates] : {std::pair(43.0f, 0), {-37.0f, 0}, {199.99f, 1}, {199.9f, 2}}) {
        Scroller scroller(&font, {3, 1, z}, "iiii i");
        for (int i = 0; i < updates; ++i) {
            scroller.update();
        }
        scroller.draw(0.5f);
    }
    keep("glP|glT|glS|glLineWidth|glDraw");
    expectStory("Scrolling");
}

/// Tells how it is drawn, turned by 90 degrees about each axis, and how it moves.
template <typename Solid>
void tellSolid(Solid&& solid) {
    solid.draw();
    tell(told(stage.drawings.back()));
    if constexpr (!std::is_same_v<Solid, Star>) {
        for (const bool active : {solid.getActive(), true, false}) {
            solid.setActive(active);
            for (int i = 0; i < 10; ++i) {
                solid.update();
            }
            tell("active", solid.getActive());
            solid.draw();
        }
    }
}

TEST_F(Objects, haveTheirCornersAndEdgesAndRiseOnceActive) {
    const Vector3f at(1, 2, 3);
    const Vector3f turn(90, 91, 92);
    const Colour3 colour(0.1f, 0.2f, 0.3f);
    tellSolid(Cube(at, turn, colour, 0.5f, 7));
    tellSolid(Pyramide(at, turn, colour, 0.5f));
    tellSolid(Sphere(at, turn, colour, 2, 3, 7));
    tellSolid(Star(at, turn, colour));
    keep("[0-9]|active|glTranslatef");
    expectStory("Solids");
    Star star(at, turn, colour);
    star.update();
    star.draw();
    expectStory("Stars");
}

template <typename Particules>
void expectFountain(int kind) {
    for (const unsigned int capacity : {0U, 150U, 250U}) {
        Particules fountain({5, 2, 9}, Colour4(1, 0.8f, 0.5f, 0.9f), capacity, 0.7f);
        FountainModel model{kind, capacity};
        for (std::size_t update = 0; update < 500; ++update) {
            SCOPED_TRACE(call("kind", kind, "update", update));
            fountain.draw();
            ASSERT_NO_FATAL_FAILURE(model.expectDrawn(stage.drawings.back()));
            fountain.update();
            model.update();
        }
    }
}

TEST_F(Objects, emitAlongTheirCurvesSinkFadeAndBury) {
    expectFountain<Particules>(1);
    expectFountain<Particules2>(2);
    expectFountain<Particules3>(3);
    keep("glPointSize");
    expectFountain<Particules4>(4);
    expectFountain<Particules5>(5);
    keep("glPointSize");
    Particules2({}, {}, 3, 0).draw();
    expectStory("Fountains");
}
} // namespace
