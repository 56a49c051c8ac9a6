// What the scenes are made of: the lattice, letters, solids and fountains.

#include "Objects/Cube.h"
#include "Objects/Font.h"
#include "Objects/Grid.h"
#include "Objects/Particules.h"
#include "Objects/Particules2.h"
#include "Objects/Particules3.h"
#include "Objects/Particules4.h"
#include "Objects/Particules5.h"
#include "Objects/Pyramide.h"
#include "Objects/Sphere.h"
#include "StandIns/Stage.h"

#include <algorithm>

namespace {
const std::string GREY = "0.459 0.459 0.459 0.7";
const std::string WHITE = "1 1 1 0.7";
const Colour4 BLACK(0, 0, 0, 1);
const Colour4 BLUE(0, 0, 0.4f, 1);

class Grids : public OnStage {
protected:
    /// Waves count x along z.
    std::string colourAt(int z, int x) const { return text(grid.getPoints()[100 * x + z].colour); }
    void hear(std::size_t band, float magnitude) {
        std::array<float, 512> spectrum{};
        spectrum.at(band) = magnitude;
        grid.updateSpectrum(spectrum.data(), spectrum.size());
    }
    void spread(int updates) {
        for (int i = 0; i < updates; ++i) {
            grid.updateImpulsion();
        }
    }
    Grid grid{100, 100, 1.5f};
};

TEST_F(Grids, liftSixtyFourPointsByEachOfSixteenBands) {
    for (const std::size_t band : {0, 7, 15, 16}) {
        grid.clearElevation();
        hear(band, 0.5f);
        const auto first = stage.chance.begin() + static_cast<std::ptrdiff_t>(64 * band);
        const std::vector<int> mine(first, band < 16 ? first + 64 : first);
        for (int i = 0; i < 10000; ++i) {
            const bool isMine = std::any_of(mine.begin(), mine.end(), [i](int n) { return n % 10000 == i; });
            ASSERT_EQ(grid.getPoints()[i].position.y > 0, isMine) << band << " " << i;
        }
    }
}

TEST_F(Grids, spikesRiseAtOnceAndSinkByATenthAFrame) {
    // One of the last band, which comes last; it has 60 % of the rest colour of the lattice's point of that
    // number.
    const Point& spike = grid.getPoints()[stage.chance.back() % 10000];
    grid.makeImpulsion(15, 0, Colour4(0.2f, 0.4f, 0.6f, 0.5f), 1, 2);
    // Height per unit of magnitude, magnitude, height. What counts as louder is 15 times the magnitude.
    const std::array<float, 3> FRAMES[] = {{15, 0.2f, 3},     {15, 0, 2.9f},     {15, 0.19f, 2.85f},
                                           {10, 0.19f, 1.9f}, {10, 0.13f, 1.3f}, {10, 0.08f, 1.2f},
                                           {10, 0.05f, 1.1f}, {5, 0.13f, 0.65f}, {5, 0, 0.55f},
                                           {5, 0, 0.45f},     {5, 0, 0.35f}};
    for (const auto& [perUnit, magnitude, height] : FRAMES) {
        grid.setImpulsionValue(perUnit);
        hear(15, magnitude);
        EXPECT_EQ(text(spike.position.y, text(spike.colour)), text(height, "0.12 0.24 0.36 0.3"))
            << magnitude;
    }
    hear(15, 0);
    EXPECT_EQ(text(spike.position.y, text(spike.colour)), "0 0.2 0.4 0.6 0.5"); // flat, and at rest
    hear(15, 1);
    grid.clearElevation();
    grid.clearColour();
    EXPECT_EQ(text(spike.position.y, text(spike.colour)), "0 " + GREY);
    hear(15, 1);
    EXPECT_EQ(text(spike.colour), "0.275 0.275 0.275 0.42"); // no colour of before comes back
}

TEST_F(Grids, wavesRunOutRingByRingInWhiteAndLeaveTheirColour) {
    // White fades by a tenth a frame; where the lattice's grey is near, that is over.
    grid.makeImpulsion(50, 60, BLACK, 1, 6); // steps 1 to 5
    for (int update = 1; update <= 9; ++update) {
        grid.updateImpulsion();
        for (const auto& [z, x] : {std::pair(50, 60), {51, 60}, {50, 58}, {48, 59}, {52, 62}}) {
            const int front = update - 1 - std::abs(z - 50) - std::abs(x - 60);
            const float white = std::pow(0.9f, static_cast<float>(front));
            const std::string fading = front < 7 ? text(white, white, white, 1 - 0.3f * white) : "0 0 0 1";
            EXPECT_EQ(colourAt(z, x), front < 0 ? GREY : fading) << update << ": " << z << " " << x;
        }
        EXPECT_EQ(colourAt(50, 65) + colourAt(53, 62), GREY + GREY) << "beyond the last ring";
    }
    spread(20);
    hear(15, 1); // all is over: a spike keeps the colour it rises with
    spread(20);
    EXPECT_EQ(text(grid.getPoints()[stage.chance.back() % 10000].colour), "0.275 0.275 0.275 0.42");
}

TEST_F(Grids, wavesEndAtTheEdgesAndStopEachOther) {
    const int PLACES[][3] = {{50, 50, 12}, {0, 0, 4},  {99, 99, 4}, {0, 50, 7}, {50, 99, 7},
                             {-1, 5, 0},   {5, -3, 0}, {100, 5, 0}, {5, 100, 0}};
    for (const auto& [z, x, third] : PLACES) { // and the number of points three steps from there
        grid.clearColour();
        grid.makeImpulsion(z, x, BLACK, 1, 6);
        spread(4);
        const auto isWhite = [](const Point& p) { return text(p.colour) == WHITE; };
        EXPECT_EQ(std::count_if(grid.getPoints().begin(), grid.getPoints().end(), isWhite), third)
            << z << " " << x;
        spread(100);
    }
    // A second one starts the front anew and takes what it reaches sooner, no more.
    grid.clearColour();
    grid.makeImpulsion(50, 50, BLACK, 1, 6);
    spread(1);
    grid.makeImpulsion(50, 54, BLUE, 1, 6);
    spread(1);
    EXPECT_EQ(colourAt(50, 50) + colourAt(50, 54), WHITE + WHITE);
    spread(60);
    EXPECT_EQ(colourAt(50, 52) + ", " + colourAt(50, 53) + ", " + colourAt(50, 58),
              "0 0 0 1, 0 0 0.4 1, 0 0 0.4 1");
}

using Objects = OnStage;

TEST_F(Objects, lettersLookLikeThis) {
    const char* ALPHABET[] = {
        "  #   ##### ##### ####  ##### ##### ##### #   #   #  ",
        " ###  #   # #     #  #  #     #     #     #   #   #  ",
        " ###  ##### #     #  #  ##### ##### # #   #####   #  ",
        "## ## #   # #     #  #  #     #     # #   #   #   #  ",
        "#   # ##### ##### ####  ##### #     ###   #   #   #  ",
        "   #  #  ## #     #   # #   # ##### ##### ##### #####",
        "   #  ####  #     ## ## ##  # #   # #   # #   # #   #",
        " # #  ##    #     # # # # # # #   # ##### # # # #####",
        " # #  ####  #     #   # #  ## #   # #     #  ## #### ",
        " ###  #  ## ##### #   # #   # ##### #     ##### #  ##",
        "##### ##### #   # #   # #   # #   # #   # #####      ",
        "#       #   #   # ## ## #   #  # #   # #   #         ",
        "#####   #   #   #  # #  # # #   #     #     #        ",
        "    #   #   #   #  ###  ## ##  # #    #      #       ",
        "#####   #   #####   #   #   # #   #   #   #####      ",
    };
    const Font font(BLUE);
    for (std::size_t letter = 0; letter < 26; ++letter) {
        const Points lines =
            drawn([&] { font.getLetterRenderer(static_cast<char>('A' + letter))->draw(8); })[0].points;
        Words rows(5, "     "); // as seen from above, in quarters of a letter
        for (std::size_t i = 0; i < lines.size(); i += 2) {
            for (int hundredths = 0; hundredths < 100; ++hundredths) {
                const float t = 0.003f + 0.01f * static_cast<float>(hundredths);
                const Vector3f p = lines[i].position * (1 - t) + lines[i + 1].position * t;
                rows.at(std::lround(4 * p.z)).at(std::lround(4 * p.x + 2)) = '#';
            }
        }
        for (std::size_t row = 0; row < 5; ++row) {
            EXPECT_EQ(rows[row], std::string(ALPHABET[letter / 9 * 5 + row]).substr(letter % 9 * 6, 5));
        }
    }
}

TEST_F(Objects, wordsRunInTwoDirectionsOnTheGround) {
    const Font font(BLUE);
    Words lines;
    for (const Drawing& letter : drawn([&] {
             font.drawText({36, 1, 42}, "i \xE9I", 0.4f);
             font.drawText2({10, 1, 20}, "iz", 2);
             font.drawText({1, 2, 3}, "I", 1); // where it should: nothing stays of the others
         })) {
        const Points& p = letter.points;
        lines.push_back(text(p.front().position) + " to " + text(p.back().position));
        EXPECT_EQ(text(letter.sizes[1], text(p.back().colour)), "8 0 0 0.4 1");
    }
    EXPECT_EQ(lines, Words({"36 1 42 to 36 1 41.6", "34.2 1 42 to 34.2 1 41.6", "10 1 20 to 8 1 20",
                            "8 1 22 to 10 1 24", "1 2 3 to 1 2 2"}));
}

/// The number of different lines, the longest, and the corners of the box that holds them.
std::string shape(const Drawing& drawing) {
    std::set<std::string> lines;
    float longest = 0;
    Vector3f low(99, 99, 99);
    Vector3f high;
    for (std::size_t i = 0; i < drawing.points.size(); ++i) {
        const Vector3f& p = drawing.points[i].position;
        const Vector3f& q = drawing.points[i ^ 1].position;
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
        longest = std::max(longest, (p - q).dot(p - q));
        lines.insert(std::min(text(p), text(q)) + std::max(text(p), text(q)));
    }
    return text(lines.size(), "up to", std::sqrt(longest), "in", text(low), "to", text(high));
}

TEST_F(Objects, solidsStandWhereTheyShouldAndRiseOnceActive) {
    const Vector3f at(1, 2, 3);
    const Colour3 colour(0.1f, 0.2f, 0.3f);
    Cube cube(at, {}, colour, 0.5f, 0);
    for (const auto& [active, height] : {std::pair(false, 2.0f), {true, 2.5f}, {false, 2.5f}}) {
        cube.setActive(active);
        for (int update = 0; update < 10; ++update) {
            cube.update();
        }
        EXPECT_EQ(text(cube.getActive(), shape(drawn([&] { cube.draw(); })[0])),
                  text(active, "12 up to 1 in 0.5", height - 0.5f, "2.5 to 1.5", height + 0.5f, "3.5"));
    }
    const Pyramide pyramid(at, {90, 0, 90}, colour,
                           0.5f); // its top to the left by z, where the turn by x leaves it
    const Drawing turned = drawn([&] { pyramid.draw(); })[0];
    EXPECT_EQ(shape(turned), "8 up to 1.436 in 0.25 1.5 2.5 to 1.5 2.5 3.5");
    EXPECT_EQ(text(turned.sizes[1], text(turned.points[0].colour)), "4 0.1 0.2 0.3 1");
    const Sphere sphere(at, {}, colour, 0.5f, 10, 0); // nine rings of ten, and the poles
    EXPECT_EQ(shape(drawn([&] { sphere.draw(); })[0]), "92 up to 0.309 in 0.5 1.524 2.5 to 1.5 2.476 3.5");
}

template <typename Particules>
void expectFountain(float size, const std::string& first, const std::string& hundredth) {
    Particules fountain({5, 2, 9}, Colour4(1, 0.8f, 0.5f, 0.9f), 210, 0.7f);
    for (unsigned int update = 0; update < 300; ++update, fountain.update()) {
        const Drawing drawing = drawn([&] { fountain.draw(); })[0];
        const Points& points = drawing.points;
        ASSERT_EQ(points.size(), std::min(update, 202U)); // updates of a life
        EXPECT_EQ(drawing.sizes[0], size);
        if (update == 1 || update == 100) { // 30 % of the colour, and all of the alpha
            EXPECT_EQ(text(points.back().position), update == 1 ? first : hundredth);
            EXPECT_EQ(text(points.back().colour), "0.3 0.24 0.15 0.9");
        } else if (update == 202) { // the first one, sunk by 0.402 and faded by 1.005
            EXPECT_NEAR(points[0].position.y, std::stof(first.substr(6)) - 0.402, 1e-3);
            EXPECT_NEAR(points[0].colour.a, -0.105, 1e-3);
        }
    }
}

TEST_F(Objects, fountainsEmitAlongTheirCurvesSinkFadeAndBury) {
    expectFountain<Particules>(4, "5.644 3 10", "6.829 3 9.549");
    expectFountain<Particules2>(3, "5.644 3.765 10", "7.819 2.105 10.539");
    expectFountain<Particules3>(3, "5.644 3.765 10", "7.637 3.937 8.015");
    expectFountain<Particules4>(3, "5.644 3.765 10.465", "7.637 3.937 11.806");
    expectFountain<Particules5>(3, "5.644 3.765 10.344", "7.637 3.937 12.166");
}
} // namespace
