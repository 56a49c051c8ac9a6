#include "Objects/Grid.h"

#include <memory>
#include <random>

#include "GridModel.h"
#include "StandIns/Stage.h"

namespace {
using testing::ElementsAre;

class GridTest : public OnStage {
protected:
    /// The same chance for both.
    void build(unsigned int X, unsigned int Y) {
        stage().drawn.clear();
        srand(7);
        pGrid = std::make_unique<Grid>(X, Y, 1.5f);
        EXPECT_EQ(std::exchange(stage().drawn, {}).size(), 1024U);
        srand(7);
        pModel = std::make_unique<GridModel>(X, Y);
    }
    void wave(unsigned int x, unsigned int y, const Colour4& colour, unsigned int step, unsigned int limit) {
        pGrid->makeImpulsion(x, y, colour, step, limit);
        pModel->impulsion(x, y, colour, step, limit);
    }
    std::unique_ptr<Grid> pGrid;
    std::unique_ptr<GridModel> pModel;
    std::mt19937 random{5};
};

TEST_F(GridTest, isALatticeOfSegments) {
    build(2, 3);
    EXPECT_THAT(pGrid->getIndices(), ElementsAre(0, 1, 1, 2, 3, 4, 4, 5, 0, 3, 1, 4, 2, 5));
    EXPECT_EQ(pGrid->getPoints()[5].position.x, 1.5f);
    EXPECT_EQ(pGrid->getPoints()[5].position.z, 3);
    EXPECT_EQ(pGrid->getNumberPointsX() * 10 + pGrid->getNumberPointsY(), 23U);
    expectAlike(*pGrid, *pModel);
    build(100, 100);
    EXPECT_EQ(pGrid->getIndices().size(), 39600U);
    EXPECT_EQ(pGrid->getPoints().back().position.x, 148.5f);
}

TEST_F(GridTest, obeysMusicAndWavesAsTheModelDoes) {
    for (const auto& [X, Y] : {std::pair(16, 16), std::pair(20, 7), std::pair(3, 30), std::pair(40, 40)}) {
        build(X, Y);
        std::uniform_real_distribution<float> unit(0, 1);
        for (int frame = 0; frame < 400; ++frame) {
            std::array<float, 16> spectrum{};
            for (float& magnitude : spectrum) {
                magnitude = random() % 3 == 0 ? unit(random) : 0;
            }
            const float spike = frame % 3 == 0 ? 15 : 8;
            if (frame % 5 < 3) {
                pGrid->setImpulsionValue(spike);
                pGrid->updateSpectrum(spectrum.data(), 512);
                pModel->spectrum(spectrum.data(), spike);
            }
            if (random() % 8 == 0) { // some of them off the lattice, some bright enough to stay
                const Colour4 colour(unit(random), unit(random) / 2, unit(random) / 2, 0.7f);
                wave(random() % 50 - 5, random() % 50 - 5, colour, random() % 3, random() % 8);
            }
            pGrid->updateImpulsion();
            pModel->waves();
            if (frame % 100 == 99) {
                pGrid->clearColour(Colour3(0.1f, 0.2f, 0.3f));
                pModel->clearColour(Colour4(0.1f, 0.2f, 0.3f, 1));
            }
            if (frame % 130 == 129) {
                pGrid->clearElevation();
                pModel->clearElevation();
            }
            ASSERT_NO_FATAL_FAILURE(expectAlike(*pGrid, *pModel)) << X << " x " << Y << " " << frame;
        }
    }
}

TEST_F(GridTest, wavesRunOutRingByRing) {
    build(100, 100);
    pGrid->makeImpulsion(0, 0, Colour4(0.3f, 0.3f, 0.3f, 0.7f), 1, 6);
    for (const int ring : {1, 2, 3, 4, 5, 0}) {
        pGrid->makeImpulsion(50, 50, Colour4(), 6, 6); // nothing, not even a new front
        pGrid->updateImpulsion();
        EXPECT_EQ(std::count_if(pGrid->getPoints().begin(), pGrid->getPoints().end(),
                                [](const Point& point) { return point.colour.r == 1; }),
                  ring);
    }
}

TEST_F(GridTest, moundsFallAwayFromTheirTop) {
    build(9, 8);
    pGrid->makeElevation(6, 4, 12, 0);
    pGrid->makeElevation(9, 4, 12, 0);
    pGrid->makeElevation(6, 8, 12, 0);
    for (const auto& [x, height] : {std::pair(6, 12), {5, 12}, {4, 11}, {3, 9}, {2, 6}, {1, 2}, {0, 0}}) {
        EXPECT_EQ(pGrid->getPoints()[4 * 9 + x].position.y, height) << x;
    }
    pGrid->makeElevation(6, 4, 99, 0);
    EXPECT_EQ(pGrid->getPoints()[4 * 9 + 6].position.y, 12); // raised already
}
} // namespace
