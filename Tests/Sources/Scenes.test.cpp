// The six scenes at the pace of the show: how each is filmed, fades and pulses, what it writes, and what the
// music does in it.

#include "3D/Camera/RotatingCamera.h"
#include "Objects/Font.h"
#include "Scenes/ScenePartWorld.h"
#include "Scenes/SceneSad.h"
#include "Scenes/SceneSadSpectrum.h"
#include "Scenes/SceneSadSpectrumGreet.h"
#include "Scenes/SceneSpectrumImpulsePart.h"
#include "Scenes/SceneSpectrumPart.h"
#include "StandIns/Stage.h"
#include "Timeline.h"

#include <algorithm>
#include <memory>

namespace {
using Ms = unsigned int;
const Ms START = 0xFFFFFFFF - 7000; // on the engine clock, which wraps in every scene
const std::string WHITE = "1 1 1 0.7";

/// A scene whose clock can be read.
template <typename Filmed>
struct Clocked : Filmed {
    using Filmed::startTime;
};

template <typename Filmed>
std::pair<Scene*, const std::uint32_t*> make() {
    auto* pScene = new Clocked<Filmed>();
    return {pScene, &pScene->startTime};
}

enum { OPENING, FLIGHT, GREETINGS, FOUNTAINS, WAVES, DESCENT };
std::pair<Scene*, const std::uint32_t*> (*const SCENES[])() = {
    make<SceneSad>,          make<SceneSadSpectrum>,         make<SceneSadSpectrumGreet>,
    make<SceneSpectrumPart>, make<SceneSpectrumImpulsePart>, make<ScenePartWorld>};

/// A scene over a lattice of its own.
struct Screening {
    explicit Screening(int scene) : again(std::exchange(shown.at(scene), true)) {
        std::tie(pScene, pClock) = SCENES[scene]();
        stage.spectrum = [this](float* heard) { std::copy(spectrum.begin(), spectrum.end(), heard); };
    }
    ~Screening() { delete pScene; }
    Screening(const Screening&) = delete;
    Screening& operator=(const Screening&) = delete;

    /// A frame; whether the scene goes on.
    bool play() { return pScene->update(camera, &grid, &music, START + std::exchange(ms, ms + 15)); }
    /// Up to the update at this time on the scene's own clock.
    void playTo(Ms end) {
        while (ms <= end) {
            ASSERT_TRUE(play()) << ms;
        }
    }
    /// A frame in which some bands are loud; answers the random numbers drawn for it, as parts of the
    /// largest.
    std::vector<float> hear(std::size_t from, std::size_t to, float magnitude = 0.3f) {
        std::fill(spectrum.begin() + from, spectrum.begin() + to, magnitude);
        stage.chance.clear();
        play();
        spectrum.fill(0);
        std::vector<float> parts(stage.chance.size());
        std::transform(stage.chance.begin(), stage.chance.end(), parts.begin(),
                       [](int n) { return n / 2147483648.0f; });
        return parts;
    }
    /// All there is to see of the scene's own, or of what else is drawn.
    Words look() const {
        return look([this] { pScene->draw(nullptr); });
    }
    template <typename Action>
    static Words look(const Action& action) {
        Words all;
        for (const Drawing& drawing : drawn(action)) {
            std::string& its = all.emplace_back(text(drawing.kind, drawing.sizes.at(drawing.kind)));
            for (const Point& point : drawing.points) {
                its += ", " + text(point.position) + " in " + text(point.colour);
            }
        }
        return all;
    }
    /// A point of the lattice; waves count x along z.
    std::string colourAt(Ms z, Ms x) const { return text(grid.getPoints().at(100 * x + z).colour); }

    std::array<float, 512> spectrum{};
    Scene* pScene = nullptr;
    const std::uint32_t* pClock = nullptr;
    RotatingCamera camera{{6, 0, 6}, 6, 0.3f};
    Grid grid{100, 100, 1.5f};
    Music music;
    Ms ms = 0;
    bool again; ///< whether this process has shown it before
    static inline std::array<bool, std::size(SCENES)> shown{};
};

using Scenes = OnStage;

TEST_F(Scenes, areFilmedInStraightMoves) {
    // Eye from and to, point looked at from and to.
    const std::pair<int, std::array<Vector3f, 4>> SHOTS[] = {
        {OPENING, {{{38, 4, 34}, {34, 4, 34}, {36, 0, 37}, {34, 0, 36}}}},
        {OPENING, {{{44, 4, 34}, {41, 4, 34}, {38, 0, 37}, {41, 0, 36}}}},
        {OPENING, {{{44, 5, 40}, {41, 5, 41}, {38, 0, 39}, {41, 0, 43}}}},
        {OPENING, {{{34, 5, 40}, {38, 5, 43}, {36, 0, 42}, {34, 0, 42}}}},
        {FLIGHT, {{{92, 4, 56}, {40, 5.5f, 48}, {86, 1, 52}, {34, 1, 48}}}},
        {FLIGHT, {{{52, 5.5f, 48}, {104, 6.5f, 96}, {52, 1, 67}, {12, 0, 67}}}},
        {FLIGHT, {{{48, 8, 48}, {96, 8, 48}, {38, 0, 38}, {28, 0, 38}}}},
        {FLIGHT, {{{56, 4, 104}, {12, 5.5f, 47}, {23, 1, 56}, {46, 1, 29}}}},
        {GREETINGS, {{{50, 50, 50}, {50, 80, 50}, {50.01f, 0, 50.01f}, {50.01f, 0, 50.01f}}}},
        {FOUNTAINS, {{{49, 5.5f, 59}, {79, 4, 89}, {98, 1, 89}, {37, 1, 43}}}},
        {FOUNTAINS, {{{79, 5.5f, 89}, {40, 4, 40}, {40, 1, 50}, {20, 1, 20}}}},
        {WAVES, {{{25, 5.5f, 20}, {65, 2, 20}, {35, 1, 30}, {75, 1, 30}}}},
        {DESCENT, {{{20, 5.5f, 20}, {75, 0, 75}, {30, 1, 30}, {78, 1, 78}}}},
    };
    std::unique_ptr<Screening> pScreening;
    for (std::size_t row = 0, shot = 0; row < std::size(SHOTS); ++row, ++shot) {
        const auto& [scene, places] = SHOTS[row];
        if (row == 0 || scene != SHOTS[row - 1].first) {
            pScreening = std::make_unique<Screening>(scene);
            shot = 0;
        }
        const Ms waits = shot == 0 && timeline::SCENES[scene].startsFirst ? 2 : 1; // frames before it moves
        for (Ms frame = 0; frame < timeline::shotFrames(scene, shot); ++frame) {
            pScreening->pScene->setSceneRender();
            const float part =
                15.0f * (std::max(frame, waits) - waits) / timeline::SCENES[scene].moves.at(shot);
            const Vector3f eye = places[0] + (places[1] - places[0]) * part;
            const Vector3f look = places[2] + (places[3] - places[2]) * part;
            const std::array<double, 9> wanted = {eye.x, eye.y, eye.z, look.x, look.y, look.z, 0, 1, 0};
            ASSERT_THAT(view, testing::Pointwise(testing::DoubleNear(1e-3), wanted)) << text(row, frame);
            const bool last =
                frame + 1 == timeline::shotFrames(scene, shot) && timeline::shotFrames(scene, shot + 1) == 0;
            ASSERT_EQ(pScreening->play(), !last) << text(row, frame);
        }
    }
}

TEST_F(Scenes, fadeInAndOutAndMoveTheirClocksOn) {
    // What the clock has moved on by in the end; at ms: brightness.
    const std::tuple<int, Ms, const char*> FADES[] = {
        // On the clock of the scene each shot fades in for half a second, out for two and a quarter.
        {OPENING, 0,
         "0: 0, 240: 0.48, 495: 0.99, 570: 0.99, 585: 0.993, 1410: 0.627, 2805: 0.007, 2820: 0, 3060: 0.48, "
         "8475: 0.03, 11265: 0.007, "},
        {FLIGHT, 0,
         "0: 0, 15: 0.03, 495: 0.99, 4500: 0.99, 4515: 0.97, 4995: 0.01, 5010: 0.02, 20010: 0.02, 22095: "
         "0.98, "},
        {GREETINGS, 0, "0: 0, 15: 0.03, 495: 0.99, 19545: 0.99, "},
        // By flights; the second one's fades run ahead of its camera.
        {FOUNTAINS, 10000,
         "0: 0, 15: 0.03, 495: 0.99, 4500: 0.99, 4515: 0.97, 4995: 0.01, 5010: 0.02, 5490: 0.98, "
         "9495: 0.98, 9510: 0.98, 9990: 0.02, 10005: 0.01, 10020: 0.04, "},
        {WAVES, 15000, "0: 0, 240: 0.48, 495: 0.99, 510: 1, 14490: 1, 14505: 0.99, 14985: 0.03, 15000: 0, "},
        {DESCENT, 25000,
         "0: 0, 495: 0.99, 510: 1, 9990: 1, 10005: 1, 10020: 0.999, 17505: 0.5, 24990: 0.001, "},
    };
    for (const auto& [scene, clock, fades] : FADES) {
        Screening screening(scene);
        EXPECT_EQ(screening.pScene->getFadeValue(), 0); // before it begins
        std::istringstream wanted(fades);
        std::string found;
        std::string rest;
        for (Ms ms = 0; wanted >> ms; wanted >> rest >> rest) {
            screening.playTo(ms);
            found += std::to_string(ms) + ": " + text(screening.pScene->getFadeValue()) + ", ";
        }
        EXPECT_EQ(found, fades);
        while (screening.play()) {
        }
        EXPECT_EQ(screening.pScene->getFadeValue(), 0) << scene;
        EXPECT_EQ(*screening.pClock - START, clock) << scene;
    }
}

TEST_F(Scenes, writeTheirWordsOnTheGround) {
    const Font red(Colour4(0.7f, 0, 0, 0.7f));
    const Font white(Colour4(0.9f, 0.9f, 0.9f, 0.7f));
    // NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): in the order in which a row is read
    const struct {
        int scene;
        Ms from;
        Vector3f place;
        const char* words;
        float size;
        void (Font::*way)(const Vector3f&, const std::string&, float) const;
    } WORDS[] = {
        {OPENING, 0, {36, 1, 36}, "olmbrex", 0.3f, &Font::drawText},
        {OPENING, 2835, {42, 1, 36}, "presents", 0.3f, &Font::drawText},
        {OPENING, 5685, {42, 1, 42}, "a new demo", 0.3f, &Font::drawText},
        {OPENING, 8535, {36, 1, 42}, "quelar", 0.4f, &Font::drawText},
        {GREETINGS, 30, {45, 1, 50}, "tunko crew", 1, &Font::drawText},
        {GREETINGS, 2820, {43, 1, 47}, "vastor", 1, &Font::drawText},
        {GREETINGS, 5610, {72, 1, 52}, "kelpfounders", 1.5f, &Font::drawText2},
        {GREETINGS, 8400, {66, 1, 59}, "marigrove", 1.7f, &Font::drawText2},
        {GREETINGS, 11190, {64, 1, 33}, "ziiiz", 1.7f, &Font::drawText2},
        {GREETINGS, 13980, {58, 1, 33}, "q ton", 1.7f, &Font::drawText2},
        {GREETINGS, 16770, {54, 1, 76}, "plinth orb", 1.8f, &Font::drawText},
    };
    for (const int scene : {OPENING, GREETINGS, GREETINGS}) {
        Screening screening(scene);
        Words written;
        for (const auto& row : WORDS) {
            if (row.scene != scene) {
                continue;
            }
            // Later shows in one process greet a frame earlier.
            const Ms moment = row.from - (scene == GREETINGS && screening.again ? 15 : 0);
            while (screening.ms < moment) {
                screening.play();
            }
            EXPECT_TRUE(moment == 0 || screening.look() == written) << row.words << " too early";
            screening.play();
            const Font& font = scene == OPENING ? red : white;
            const Words its = Screening::look([&] { (font.*row.way)(row.place, row.words, row.size); });
            written.erase(scene == OPENING ? written.begin() : written.end(),
                          written.end()); // titles take turns
            written.insert(written.end(), its.begin(), its.end());
            EXPECT_TRUE(screening.look() == written) << row.words;
        }
    }
}

TEST_F(Scenes, heedTheMusicEachInItsWay) {
    // The height of the spikes, from 1 before; what the pulse falls by; random numbers for each of the loud
    // bands.
    const std::tuple<int, float, float, std::size_t, std::size_t> WAYS[] = {
        {OPENING, 1, 0, 0, 0},       {FLIGHT, 4.5f, 0, 0, 0},    {GREETINGS, 0, 0, 0, 0},
        {FOUNTAINS, 3, 0.04f, 0, 0}, {WAVES, 2.4f, 0.04f, 5, 8}, {DESCENT, 1, 0.08f, 3, 10}};
    for (const auto& [scene, height, decay, numbers, bands] : WAYS) {
        SCOPED_TRACE(scene);
        Screening screening(scene);
        const Scene& its = *screening.pScene;
        screening.spectrum.fill(1 / 15.0f);
        screening.grid.updateSpectrum(screening.spectrum.data(), 512); // as the scene before left it
        screening.spectrum.fill(0);
        screening.playTo(0);
        EXPECT_EQ(screening.hear(0, 512, 0.2f).size(), 0U);
        EXPECT_EQ(screening.hear(0, 512, 0.2499f).size(), numbers * bands);
        EXPECT_EQ(its.getPulseValue(), 0);
        screening.hear(0, 512);
        EXPECT_NEAR(highest(screening.grid.getPoints()), height, 1e-4);
        screening.hear(2, 3, 0.25f);
        EXPECT_EQ(its.getPulseValue(), decay > 0 ? 1 : 0);
        for (float pulse = 1; pulse > 0 && decay > 0;) {
            screening.hear(2, 3, 0.24f);
            EXPECT_NEAR(its.getPulseValue(), pulse -= decay, 1e-4); // also just below zero
        }
        screening.hear(2, 3, 0.24f);
        EXPECT_EQ(its.getPulseValue(), 0);
    }
}

TEST_F(Scenes, fireColouredWavesAheadOfTheCamera) {
    for (const auto& [ms, camera] : {std::pair(0U, 25.0f), {7500, 45}}) {
        Screening screening(WAVES);
        while (screening.ms < ms) {
            screening.play();
        }
        const std::vector<float> n = screening.hear(7, 8);
        const auto x = static_cast<Ms>(camera / 1.5f + n.at(3) * 20);
        const auto z = static_cast<Ms>(n.at(4) * 10 + 20);
        EXPECT_EQ(screening.colourAt(z, x), WHITE) << ms;
        screening.playTo(ms + 60);
        EXPECT_EQ(screening.colourAt(z, x + 4), WHITE) << "the last ring";
        screening.playTo(ms + 2000);
        EXPECT_EQ(screening.colourAt(z + 1, x), text(n[0], n[1], n[2], 0.7));
    }
}

TEST_F(Scenes, fireBlackWavesAnywhereOnTheGroundOrBesideIt) {
    Screening screening(DESCENT);
    for (int wave = 0; wave < 50; ++wave) { // about nine of them beside it
        screening.grid.clearColour();
        const std::vector<float> n = screening.hear(9, 10);
        const float x = n.at(1) * 100 - 10;
        const float z = n.at(2) * 100 - 10;
        const Points& points = screening.grid.getPoints();
        const bool any =
            std::any_of(points.begin(), points.end(), [](const Point& p) { return p.colour.g == 1; });
        ASSERT_TRUE(any ? screening.colourAt(z, x) == WHITE : x <= -1 || z <= -1) << x << " " << z;
        screening.playTo(screening.ms + 400);
        ASSERT_TRUE(!any || screening.colourAt(z, x) == "0 0 0 1");
    }
}

TEST_F(Scenes, launchASolidOfEachKindInEveryLoudFrame) {
    Screening screening(DESCENT);
    // Of cubes, pyramids and spheres: x, then z.
    const std::vector<int> chance(stage.chance.end() - 900, stage.chance.end());
    std::vector<int> launched;
    for (int frame = 0; frame < 200; ++frame) {
        const bool loud = frame % 2 == 0 || frame > 10;
        screening.hear(0, 10, loud ? 0.3f : 0.2f);
        launched.insert(launched.end(), loud && launched.size() < 150 ? 1 : 0, frame);
        if (frame == 9 || frame == 199) {
            const std::vector<Drawing> solids = drawn([&] { screening.pScene->draw(nullptr); });
            for (std::size_t i = 0; i < 450; ++i) {
                const float height = i % 150 < launched.size() ? 0.05f * (frame - launched[i % 150]) : 0;
                // Where its first line begins, on the lower left or on the lowest ring.
                const Vector3f corner =
                    i < 300 ? Vector3f(-0.5f, -0.5f, -0.5f) : Vector3f(0.1545f, 0, -0.4755f);
                const float x = chance[2 * i] / 2147483648.0f * 150;
                const float z = chance[2 * i + 1] / 2147483648.0f * 150;
                const Vector3f miss = solids.at(i).points[0].position - corner - Vector3f(x, height, z);
                ASSERT_LT(miss.dot(miss), 1e-6) << i << " after " << frame;
                ASSERT_EQ(solids[i].points.size(), i < 150 ? 24U : i < 300 ? 16 : 400);
                ASSERT_EQ(text(solids[i].points[0].colour), "0.459 0.459 0.459 1");
            }
        }
    }
}

TEST_F(Scenes, greetTheWavesToTheirEnd) {
    Screening screening(GREETINGS);
    screening.grid.makeImpulsion(50, 50, Colour4(0, 0, 0, 1), 1, 6);
    screening.playTo(30);
    EXPECT_EQ(screening.colourAt(50, 51), WHITE);
    screening.playTo(19545);
    EXPECT_EQ(screening.colourAt(50, 51), "0 0 0 1");
    EXPECT_FALSE(screening.play());
    EXPECT_EQ(screening.colourAt(50, 51), "0.459 0.459 0.459 0.7");
}

TEST_F(Scenes, haveFountainsWhoseLightIsAdded) {
    // In the show's six colours, at 30 %. How many; where their first points are: the first, and on average.
    const Words COLOURS = {"0 0.222 0.057 1",     "0.117 0.261 0.156 1", "0.057 0.026 0.216 1",
                           "0.117 0.087 0.254 1", "0.3 0.24 0 1",        "0.3 0.033 0 1"};
    const std::tuple<int, std::size_t, const char*, const char*> ROWS[] = {
        {FOUNTAINS, 12, "20.199 2.98 21", "15.766 2.818 16"},
        {WAVES, 6, "55.199 4.98 41", "55.579 4.736 41"},
        {DESCENT, 18, "55.199 3.98 45.399", "48.912 4.069 51.289"}};
    glEnable(GL_DEPTH_TEST);
    for (const auto& [scene, count, first, average] : ROWS) {
        Screening screening(scene);
        screening.playTo(0);
        for (const bool again : {false, true}) { // drawing leaves all as it was
            stage.events.clear();
            std::vector<Drawing> drawings = drawn([&] { screening.pScene->draw(nullptr); });
            drawings.erase(drawings.begin(), drawings.end() - count);
            Vector3f sum;
            for (std::size_t i = 0; i < count; ++i) {
                const auto& [position, colour] = drawings[i].points.at(0);
                EXPECT_EQ(text(colour), COLOURS[i % 6]);
                sum = sum + position;
            }
            EXPECT_EQ(text(drawings[0].points[0].position), first) << again;
            EXPECT_EQ(text(sum * (1.0f / count)), average) << again;
            for (const std::string& event : stage.events) {
                EXPECT_EQ(event, event[0] == 'p' ? "points into 0 by 0 added" : "lines into 0 by 0 by depth");
            }
        }
    }
}
} // namespace
