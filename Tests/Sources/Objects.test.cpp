// Words, solids and fountains.

#include <algorithm>
#include <cmath>

#include "Objects/Cube.h"
#include "Objects/Particules.h"
#include "Objects/Particules2.h"
#include "Objects/Particules3.h"
#include "Objects/Particules4.h"
#include "Objects/Particules5.h"
#include "Objects/Pyramide.h"
#include "Objects/Scroller.h"
#include "Objects/Sphere.h"
#include "Objects/Star.h"
#include "StandIns/Stage.h"

namespace {
class Objects : public OnStage {
protected:
    Objects() {
        glewInit();
        stage().watching = true;
    }
    static std::vector<Drawing> drawings() { return std::exchange(stage().drawings, {}); }
    /// From where to where the points reach along x, y and z, to the hundredth.
    static std::string box(const std::vector<Point>& points) {
        std::string text;
        for (float Vector3f::*axis : {&Vector3f::x, &Vector3f::y, &Vector3f::z}) {
            const auto [from, to] =
                std::minmax_element(points.begin(), points.end(), [axis](const Point& a, const Point& b) {
                    return a.position.*axis < b.position.*axis;
                });
            text += call("", std::lround(from->position.*axis * 100), std::lround(to->position.*axis * 100));
        }
        return text;
    }
};

TEST_F(Objects, fontHasItsStrokes) {
    const Font font(Colour4(0.7f, 0, 0, 0.7f));
    const std::string SEGMENTS = "35344353133243445552324233"; // of a to z
    unsigned int points = 0;
    float sum = 0; // of the ends of the strokes, each weighted by its place: no two may change theirs
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        const LineRenderer* pRenderer = font.getLetterRenderer(letter);
        EXPECT_EQ(pRenderer, font.getLetterRenderer(static_cast<char>(letter - 'a' + 'A')));
        EXPECT_EQ(pRenderer->getNbIndices() / 2, static_cast<unsigned int>(SEGMENTS[letter - 'a'] - '0'))
            << letter;
        points += pRenderer->getNbPoints();
        pRenderer->draw(1);
        const Drawing glyph = drawings().at(0);
        for (std::size_t i = 0; i < glyph.points.size(); ++i) {
            const Vector3f& p = glyph.points[i].position;
            EXPECT_EQ(glyph.points[i].colour.r, 0.7f);
            EXPECT_EQ(p.y, 0);
            sum += static_cast<float>((i + 1) * (letter - '`')) * (2 * p.x + 3 * p.z);
        }
    }
    EXPECT_EQ(points, 119U);
    EXPECT_NEAR(sum, 15848, 0.05);
    EXPECT_EQ(font.getLetterRenderer('1'), nullptr);
    EXPECT_EQ(font.getLetterRenderer('\xE9'), nullptr);
}

TEST_F(Objects, textLiesOnTheGround) {
    const Font font{Colour4()};
    font.drawText({0, 1, 0}, "A 1b", 1);
    font.drawText2({10, 1, 20}, "ab", 2);
    const std::vector<Drawing> letters = drawings();
    ASSERT_EQ(letters.size(), 4U);
    EXPECT_EQ(box(letters[0].points), " -50 50 100 100 -100 0");
    EXPECT_EQ(box(letters[1].points), " -500 -400 100 100 -100 0");
    EXPECT_EQ(box(letters[2].points), " 800 1000 100 100 1900 2100");
    EXPECT_EQ(box(letters[3].points), " 800 1000 100 100 2200 2400");
    EXPECT_EQ(letters[3].size, 8);
}

TEST_F(Objects, scrollerShowsWhatIsNearAndStartsAgain) {
    Font font{Colour4()};
    Scroller(&font, {0, 0, 45}, std::string(59, 'i') + " ").draw(0.5f);
    const std::vector<Drawing> letters = drawings();
    ASSERT_EQ(letters.size(), 53U);
    EXPECT_EQ(box(letters[0].points), " 0 0 0 0 4200 4250"); // the fifth
    EXPECT_EQ(box(letters[52].points), " 0 0 0 0 300 350");
    for (const auto& [z, next] :
         {std::pair(199.99f, -100.0f), std::pair(1.0f, 1.035f), std::pair(199.965f, 200.0f)}) {
        Scroller scroller(&font, {0, 0, z}, "");
        scroller.update();
        calls();
        scroller.draw(1);
        EXPECT_EQ(calls().at(1), call("glTranslatef", 0, 0, next));
    }
}

TEST_F(Objects, solidsAreBuiltAroundTheirPlace) {
    /// Lengths of the segments in the order drawn, times ten.
    const auto lengths = [](const std::vector<Point>& points) {
        std::string text;
        for (std::size_t i = 0; i < points.size(); i += 2) {
            const Vector3f way = points[i + 1].position - points[i].position;
            text += call("", std::lround(10 * std::sqrt(way.dot(way))));
        }
        return text;
    };
    const Colour3 grey(0.4f, 0.4f, 0.4f);
    Cube({10, 0, 20}, {0, 0, 0}, grey, 0.5f, 0).draw();
    Pyramide({10, 0, 20}, {0, 0, 0}, grey, 0.5f).draw();
    Star({10, 0, 20}, {0, 0, 0}, grey).draw();
    Sphere({10, 0, 20}, {0, 0, 0}, grey, 0.5f, 10, 0).draw();
    const std::vector<Drawing> solids = drawings();
    EXPECT_EQ(box(solids[0].points), " 950 1050 -50 50 1950 2050");
    EXPECT_EQ(lengths(solids[0].points), " 10 10 10 10 10 10 10 10 10 10 10 10");
    EXPECT_EQ(box(solids[1].points), " 950 1050 -50 75 1950 2050");
    EXPECT_EQ(lengths(solids[1].points), " 10 10 14 10 14 14 10 14");
    EXPECT_EQ(box(solids[2].points), " 1000 1100 0 100 2000 2100");
    EXPECT_EQ(lengths(solids[2].points), " 7 8 8 9 9 10 7 9 9 8 8 10");
    EXPECT_EQ(solids[0].size, 4);
    ASSERT_EQ(solids[3].points.size(), 400U);
    for (std::size_t i = 0; i < 400;
         ++i) { // forty a band: the ring above and the one below, sector by sector
        const std::size_t band = i / 40 + (i % 4 < 2 ? 1 : 0);
        const std::size_t sector = i % 40 / 4 + (i % 4 == 1 || i % 4 == 2 ? 1 : 0);
        const double latitude = (18 * static_cast<double>(band) - 90) * M_PI / 180;
        const double longitude = 36 * static_cast<double>(sector) * M_PI / 180;
        const Point& point = solids[3].points[i];
        EXPECT_NEAR(point.position.x, 10 + 0.5 * std::cos(latitude) * std::cos(longitude), 1e-5);
        EXPECT_NEAR(point.position.y, 0.5 * std::cos(latitude) * std::sin(longitude), 1e-5);
        EXPECT_NEAR(point.position.z, 20 + 0.5 * std::sin(latitude), 1e-5);
        EXPECT_EQ(point.colour.r + point.colour.a, 1.4f);
    }

    Cube cube({0, 0, 0}, {10, 20, 30}, grey, 1, 0);
    Star star({0, 0, 0}, {0, 0, 0}, grey);
    for (int i = 0; i < 20; ++i) {
        cube.update();
        star.update();
        cube.setActive(i >= 9);
    }
    calls();
    cube.draw();
    star.draw();
    const std::vector<std::string> drawn = calls();
    EXPECT_THAT(drawn[1], testing::StartsWith("glTranslatef 0 0.5"));
    EXPECT_EQ(drawn[2] + drawn[3] + drawn[4], "glRotatef 10 1 0 0glRotatef 20 0 1 0glRotatef 30 0 0 1");
    EXPECT_THAT(drawn, testing::Contains(testing::StartsWith("glRotatef 2.0")));
}

template <typename Variant>
class Fountains : public Objects {
protected:
    /// Where a fountain at the origin emits at the phase c with the offset o.
    static Vector3f emission(float c, float o) {
        const bool ring = std::is_same_v<Variant, Particules>;
        const float z = ring || std::is_same_v<Variant, Particules3> ? 0
                        : std::is_same_v<Variant, Particules2>       ? c
                                                                     : o + c;
        const float phase =
            std::is_same_v<Variant, Particules4> || std::is_same_v<Variant, Particules5> ? c + o : c;
        return {std::sin(c) + (ring ? 0 : c) + std::sin(c + o), ring ? 1 : std::cos(2 * c + o) + 1,
                z + (std::is_same_v<Variant, Particules5> ? std::sin(phase) : std::cos(phase))};
    }
    static constexpr bool slow = std::is_same_v<Variant, Particules> || std::is_same_v<Variant, Particules2>;
};
using Variants = testing::Types<Particules, Particules2, Particules3, Particules4, Particules5>;
TYPED_TEST_SUITE(Fountains, Variants);

TYPED_TEST(Fountains, emitSinkFadeAndBury) {
    const float o = 0.7f;
    TypeParam fountain({5, 2, 9}, Colour4(1, 0.8f, 0, 1), 250, o);
    TypeParam few({5, 2, 9}, Colour4(), 3, o);
    std::vector<std::pair<float, int>> living; // phases of their births and ages, in their places
    float phase = 0;
    for (int update = 1; update <= 700; ++update) {
        for (std::size_t i = 0; i < living.size(); ++i) {
            if (++living[i].second > 201) {
                living[i] = living.back(); // the newest takes the place, and is not aged this time
                living.pop_back();
            }
        }
        living.emplace_back(phase, 0);
        phase = static_cast<float>(phase + (TestFixture::slow ? 0.01 : 0.03));
        fountain.update();
        few.update();
        fountain.draw();
        few.draw();
        const std::vector<Drawing> drawn = this->drawings();
        ASSERT_EQ(drawn[0].points.size(), living.size()) << update;
        ASSERT_EQ(drawn[1].points.size(), static_cast<std::size_t>(std::min(update, 3)));
        ASSERT_EQ(drawn[0].size, (std::is_same_v<TypeParam, Particules> ? 4 : 3));
        for (std::size_t i = 0; i < living.size(); ++i) {
            const auto age = static_cast<float>(living[i].second);
            const Vector3f place = Vector3f(5, 2 - 0.002f * age, 9) + this->emission(living[i].first, o);
            const Vector3f miss = place - drawn[0].points[i].position;
            ASSERT_LT(miss.dot(miss), 1e-7) << update << " " << i;
            const Colour4 tint = drawn[0].points[i].colour - Colour4(0.3f, 0.24f, 0, 1 - 0.005f * age);
            ASSERT_LT(tint.dot(tint), 1e-8) << update << " " << i;
        }
    }
}
} // namespace
