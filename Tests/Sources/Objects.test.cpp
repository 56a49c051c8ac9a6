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

namespace {
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
    /// A point that the last band lifts: the last one, which has 60 % of the rest colour of point 15.
    std::string spike() const {
        const Point& point = grid.getPoints()[stage.chance.back() % 10000];
        return text(point.position.y, text(point.colour));
    }
    Grid grid{100, 100, 1.5f};
};

TEST_F(Grids, liftSixtyFourPointsByEachOfSixteenBands) {
    const Points& points = grid.getPoints();
    for (const std::size_t band : {0, 7, 15}) {
        grid.clearElevation();
        hear(band, 0.5f);
        for (std::size_t i = 64 * band; i < 64 * band + 64; ++i) {
            EXPECT_GT(points[stage.chance[i] % 10000].position.y, 0) << band;
        }
        EXPECT_LE(std::count_if(points.begin(), points.end(), [](auto& p) { return p.position.y > 0; }), 64);
    }
}

TEST_F(Grids, spikesRiseAtOnceAndSinkByATenthAFrame) {
    grid.makeImpulsion(15, 0, Colour4(0.2f, 0.4f, 0.6f, 0.5f), 1, 2);
    // Height per unit of magnitude, magnitude, height. What counts as louder is 15 times the magnitude.
    const std::array<float, 3> FRAMES[] = {{15, 0.2f, 3},    {15, 0, 2.9f},     {10, 0.19f, 1.9f},
                                           {10, 0.1f, 1.8f}, {5, 0.13f, 0.65f}, {5, 0, 0.55f},
                                           {5, 0, 0.45f},    {5, 0, 0.35f}};
    for (const auto& [perUnit, magnitude, height] : FRAMES) {
        grid.setImpulsionValue(perUnit);
        hear(15, magnitude);
        EXPECT_EQ(spike(), text(height, "0.12 0.24 0.36 0.3")) << magnitude;
    }
    hear(15, 0);
    EXPECT_EQ(spike(), "0 0.2 0.4 0.6 0.5") << "flat, and at rest";
    grid.clearElevation();
    grid.clearColour();
    EXPECT_EQ(spike(), "0 " + GREY);
    hear(15, 0.2f);
    EXPECT_EQ(spike(), "1 0.275 0.275 0.275 0.42") << "no colour of before comes back";
}

TEST_F(Grids, wavesRunOutRingByRingInWhiteLeaveTheirColourAndStopEachOther) {
    // Where a wave starts, and how many points are white in its first frames.
    const std::tuple<int, int, const char*> WAVES[] = {{50, 50, "1 4 8 12 16 0 "},
                                                       {0, 0, "1 2 3 4 5 0 "},
                                                       {99, 50, "1 3 5 7 9 0 "},
                                                       {-1, 5, "0 0 0 0 0 0 "}};
    for (const auto& [z, x, rings] : WAVES) {
        grid.clearColour();
        grid.makeImpulsion(z, x, BLACK, 1, 6);
        std::string found;
        for (int update = 1; update <= 6; ++update) {
            spread(1);
            found += text(whitesOf(grid.getPoints())) + " ";
        }
        EXPECT_EQ(found, rings) << z << " " << x;
        spread(100);
    }
    // White fades by a tenth a frame; where the lattice's grey is near, that is over.
    grid.makeImpulsion(50, 60, BLACK, 1, 2);
    spread(7);
    EXPECT_EQ(colourAt(50, 60), "0.531 0.531 0.531 0.841");
    spread(1);
    EXPECT_EQ(colourAt(50, 60), "0 0 0 1");
    hear(15, 1);
    spread(20);
    EXPECT_EQ(spike(), "15 0.275 0.275 0.275 0.42") << "all is over: a spike keeps the colour it rises with";

    // A second one starts the front anew and takes what it reaches sooner, no more.
    grid.makeImpulsion(50, 50, BLACK, 1, 6);
    spread(1);
    grid.makeImpulsion(50, 54, BLUE, 1, 6);
    spread(1);
    EXPECT_EQ(colourAt(50, 50) + colourAt(50, 54), WHITE + WHITE);
    spread(60);
    EXPECT_EQ(colourAt(50, 52) + ", " + colourAt(50, 53), "0 0 0 1, 0 0 0.4 1");
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
        const LineRenderer* pLetter = font.getLetterRenderer(static_cast<char>('A' + letter));
        const Points lines = drawn([&] { pLetter->draw(8); })[0].points;
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

/// The length of all lines, each counted once, and the middle of their ends.
std::string shape(const Points& points) {
    std::set<std::string> lines;
    float length = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Vector3f& from = points[i].position;
        const Vector3f way = points[i ^ 1].position - from; // to the other end
        length += lines.insert(text(from) + text(way)).second ? std::sqrt(way.dot(way)) / 2 : 0;
    }
    return text(length, "around", text(middleOf(points)));
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
        EXPECT_EQ(shape(drawn([&] { cube.draw(); })[0].points), text("12 around 1", height, "3"));
    }
    const Pyramide pyramid(at, {90, 0, 90}, colour, 0.5f); // turned by x, then by z: its top points left
    const Drawing turned = drawn([&] { pyramid.draw(); })[0];
    EXPECT_EQ(shape(turned.points), "9.745 around 1.188 2 3");
    EXPECT_EQ(text(turned.sizes[1], text(turned.points[0].colour)), "4 0.1 0.2 0.3 1");
    const Sphere sphere(at, {}, colour, 0.5f, 10, 0); // nine rings of ten
    EXPECT_EQ(shape(drawn([&] { sphere.draw(); })[0].points), "19.511 around 1 2 3");
}

template <typename Particules>
void expectFountain(float size, const std::string& first, const std::string& hundredth) {
    Particules fountain({5, 2, 9}, Colour4(1, 0.8f, 0.5f, 0.9f), 210, 0.7f);
    for (unsigned int update = 0; update < 2000; ++update, fountain.update()) {
        const Drawing drawing = drawn([&] { fountain.draw(); })[0];
        const Points& points = drawing.points;
        ASSERT_NEAR(points.size(), std::min(update, 202U), 1) << "about the updates of a life";
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
