// The six scenes against scripts of what they should do, frame by frame, and their order.

#include "3D/Camera/RotatingCamera.h"
#include "DrawnModels.h"
#include "Scenes/SceneManager.h"
#include "Scenes/ScenePartWorld.h"
#include "Scenes/SceneSad.h"
#include "Scenes/SceneSadSpectrum.h"
#include "Scenes/SceneSadSpectrumGreet.h"
#include "Scenes/SceneSpectrumImpulsePart.h"
#include "Scenes/SceneSpectrumPart.h"

#include <memory>
#include <random>

namespace {
using Ms = unsigned int;

struct Move {
    std::array<float, 3> eyeFrom, eyeTo, lookFrom, lookTo;
    Ms duration;
};

template <typename S>
Scene* make() {
    return new S();
}

const std::vector<Move> OPENING = {{{38, 4, 34}, {34, 4, 34}, {36, 0, 37}, {34, 0, 36}, 2820},
                                   {{44, 4, 34}, {41, 4, 34}, {38, 0, 37}, {41, 0, 36}, 2820},
                                   {{44, 5, 40}, {41, 5, 41}, {38, 0, 39}, {41, 0, 43}, 2820},
                                   {{34, 5, 40}, {38, 5, 43}, {36, 0, 42}, {34, 0, 42}, 2820}};
const std::vector<Move> SWEEPS = {{{92, 4, 56}, {40, 5.5f, 48}, {86, 1, 52}, {34, 1, 48}, 5500},
                                  {{52, 5.5f, 48}, {104, 6.5f, 96}, {52, 1, 67}, {12, 0, 67}, 5500},
                                  {{48, 8, 48}, {96, 8, 48}, {38, 0, 38}, {28, 0, 38}, 5500},
                                  {{56, 4, 104}, {12, 5.5f, 47}, {23, 1, 56}, {46, 1, 29}, 5532}};
const std::vector<Move> RISE = {
    {{50, 50, 50}, {50, 80, 50}, {50.01f, 0, 50.01f}, {50.01f, 0, 50.01f}, 19530}};
const std::vector<Move> FLIGHTS = {{{49, 5.5f, 59}, {79, 4, 89}, {98, 1, 89}, {37, 1, 43}, 5000},
                                   {{79, 5.5f, 89}, {40, 4, 40}, {40, 1, 50}, {20, 1, 20}, 5000}};
const std::vector<Move> GLIDE = {{{25, 5.5f, 20}, {65, 2, 20}, {35, 1, 30}, {75, 1, 30}, 15000}};
const std::vector<Move> DESCENT = {{{20, 5.5f, 20}, {75, 0, 75}, {30, 1, 30}, {78, 1, 78}, 25000}};

const std::vector<TextModel> TITLES = {{{36, 1, 36}, "Olmbrex", 0.3},
                                       {{42, 1, 36}, "Presents", 0.3},
                                       {{42, 1, 42}, "A new demo", 0.3},
                                       {{36, 1, 42}, "Quelar", 0.4}};
const std::vector<TextModel> GREETINGS = {
    {{45, 1, 50}, "Tunko crew", 1},           {{43, 1, 47}, "Vastor", 1},
    {{72, 1, 52}, "KelpFounders", 1.5, true}, {{66, 1, 59}, "Marigrove", 1.7, true},
    {{64, 1, 33}, "ZiiiZ", 1.7, true},        {{58, 1, 33}, "Q ton", 1.7, true},
    {{54, 1, 76}, "Plinth ORB", 1.8}};

/// A cluster of fountains: their kind, the place of the first, and the step from the usual offsets.
struct Cluster {
    int kind;
    std::array<double, 3> start;
    double later;
};

/// What a scene is to do, frame by frame.
struct Script {
    const char* name;
    Scene* (*make)();
    bool rests;         ///< in the first update
    bool listens;       ///< moves the spikes
    bool waves;         ///< moves the waves
    float spike, decay; ///< height of the spikes in the end; decay of the pulse
    std::vector<Move> moves;
    std::vector<TextModel> texts;
    std::vector<Cluster> clusters; ///< in the order in which they are drawn
};

enum { SAD, SPECTRUM, GREET, PART, IMPULSE, WORLD };
const Script SCRIPTS[] = {
    {"SceneSad", make<SceneSad>, false, false, false, 15, 0, OPENING, TITLES, {}},
    {"SceneSadSpectrum", make<SceneSadSpectrum>, true, true, false, 15, 0, SWEEPS, {}, {}},
    {"SceneSadSpectrumGreet", make<SceneSadSpectrumGreet>, true, false, true, 15, 0, RISE, GREETINGS, {}},
    {"SceneSpectrumPart",
     make<SceneSpectrumPart>,
     true,
     true,
     false,
     10,
     0.04f,
     FLIGHTS,
     {},
     {{2, {20, 1, 20}, 0}, {2, {10, 2, 10}, 1}}},
    {"SceneSpectrumImpulsePart",
     make<SceneSpectrumImpulsePart>,
     false,
     true,
     true,
     8,
     0.04f,
     GLIDE,
     {},
     {{3, {55, 3, 40}, 0}}},
    {"ScenePartWorld",
     make<ScenePartWorld>,
     false,
     false,
     true,
     8,
     0.08f,
     DESCENT,
     {},
     {{5, {55, 2, 45}, 0}, {5, {45, 2, 60}, 0}, {4, {45, 3, 45}, 0}}}};

/// The brightness at a time of the scene, or of its move.
float fadeAt(int scene, Ms time, Ms duration, float before) {
    const Ms period = scene == SPECTRUM ? 5000 : scene == GREET ? 0xFFFFFFFF : duration;
    const Ms t = time % period;
    const auto share = [](Ms part, float whole) { return static_cast<float>(part) / whole; };
    if (t < 500) {
        return share(t, 500);
    }
    if (scene == WORLD) {
        return time > 10000 ? share(25000 - time, 15000) : 1;
    }
    const Ms out = scene == SAD ? 2250 : 500;
    return t > period - out ? share(period - t, static_cast<float>(out)) : scene == IMPULSE ? 1 : before;
}

/// From a to b, at t = 0 to 1.
std::array<float, 3> between(const std::array<float, 3>& a, const std::array<float, 3>& b, float t) {
    return {a[0] + (b[0] - a[0]) * t, a[1] + (b[1] - a[1]) * t, a[2] + (b[2] - a[2]) * t};
}

/// Fires the waves of a frame by the random numbers it drew. Tells how many they should be.
std::size_t fireWaves(int scene, GridModel& grid, const float* spectrum, const Move& move, float t) {
    std::size_t n = 0;
    const auto next = [&] { return static_cast<float>(stage.drawn.at(n++)) / 2147483648.0f; };
    for (int band = 0; band < (scene == IMPULSE ? 8 : scene == WORLD ? 10 : 0); ++band) {
        if (spectrum[band] > 0.2f) {
            Rgba colour = {next(), 0, 0, 0.7f};
            colour[1] = scene == IMPULSE ? next() : 0;
            colour[2] = scene == IMPULSE ? next() : 0;
            colour = scene == IMPULSE ? colour : Rgba{0, 0, 0, 1};
            const float u = next();
            const float v = next();
            const float ahead = between(move.eyeFrom, move.eyeTo, t)[0] / 1.5f;
            const float x = scene == IMPULSE ? v * 10 + 20 : v * 100 - 10;
            const float y = scene == IMPULSE ? ahead + u * 20 : u * 100 - 10;
            grid.impulsion(static_cast<int>(x), static_cast<int>(y), colour, 1, 6);
        }
    }
    return n;
}

/// The solids of the last scene: 150 cubes, pyramids and spheres, each told by the first point that it draws.
struct SolidsModel {
    static constexpr std::size_t EACH = 150;

    std::vector<std::array<double, 3>> places;
    std::size_t launched = 0; ///< of each kind

    /// Where they stand, by the random numbers that the scene drew.
    explicit SolidsModel(const std::vector<int>& random) {
        for (std::size_t i = 0; i + 1 < random.size(); i += 2) {
            places.push_back({random[i] / 2147483648.0 * 150, 0, random[i + 1] / 2147483648.0 * 150});
        }
    }
    void update() {
        for (std::size_t i = 0; i < places.size(); ++i) {
            places[i][1] += i % EACH < launched ? 0.05 : 0;
        }
    }
    void launch() { launched = std::min(launched + 1, EACH); }
    void expectDrawn(const Drawing*& pDrawing) const {
        const double tilt = 72 * M_PI / 180;
        for (std::size_t i = 0; i < places.size(); ++i) {
            const auto& [x, y, z] = places[i];
            const bool round = i >= 2 * EACH;
            const std::array<double, 3> first = {x + (round ? 0.5 * std::cos(tilt) : -0.5),
                                                 y - (round ? 0 : 0.5),
                                                 z - (round ? 0.5 * std::sin(tilt) : 0.5)};
            ASSERT_EQ(pDrawing->points.size(), i < EACH ? 24U : round ? 400U : 16U);
            ASSERT_FALSE(pDrawing->glows);
            ASSERT_NO_FATAL_FAILURE(
                expectPoints({4, false, {pDrawing->points[0]}}, {first}, {GREY[0], GREY[1], GREY[2], 1}));
            ++pDrawing;
        }
    }
};

class SceneTest : public OnStage {
protected:
    SceneTest() {
        music.create();
        music.loadFile("");
        music.play();
        stage.spectrum = [this](float* target) { std::copy(spectrum.begin(), spectrum.end(), target); };
    }
    bool update(Scene& scene, Ms time) { return scene.update(camera, &grid, &music, time); }

    Music music;
    Grid grid{100, 100, 1.5f};
    RotatingCamera camera{{6, 0, 6}, 6, 0.3f};
    std::array<float, 512> spectrum{};
    std::mt19937 random{11};
};

class Scenes : public SceneTest, public testing::WithParamInterface<int> {};

TEST_P(Scenes, followTheirScriptsFrameByFrame) {
    const int index = GetParam();
    const Script& script = SCRIPTS[index];
    srand(3);
    GridModel model(100, 100, 1.5f);
    srand(3);
    grid = Grid(100, 100, 1.5f);
    // What another scene has left: spikes, and a wave on its way.
    spectrum.fill(0.3f);
    grid.updateSpectrum(spectrum.data(), 512);
    model.spectrum(spectrum.data(), 15);
    grid.makeImpulsion(50, 60, Colour4(0.3f, 0.2f, 0.1f, 0.5f), 1, 20);
    model.impulsion(50, 60, {0.3f, 0.2f, 0.1f, 0.5f}, 1, 20);
    delete script.make();
    const std::ptrdiff_t before = living;
    delete script.make();
    EXPECT_EQ(living, before); // it has released everything
    stage.drawn.clear();
    const std::unique_ptr<Scene> pScene(script.make());
    EXPECT_EQ(stage.drawn.size(), index == WORLD ? 900U : 0U);
    SolidsModel solids(stage.drawn);
    std::vector<FountainModel> fountains;
    for (const auto& [kind, start, later] : script.clusters) {
        const Rgba colours[] = {{0, 0.222f, 0.057f, 1},       {0.117f, 0.261f, 0.156f, 1},
                                {0.057f, 0.0258f, 0.216f, 1}, {0.117f, 0.087f, 0.2541f, 1},
                                {0.3f, 0.24f, 0, 1},          {0.3f, 0.033f, 0, 1}};
        const double offsets[] = {0.2, 0.4, 0.6, 0.7, 0.9, 1.1};
        for (int k = 0; k < 6; ++k) {
            const std::array<double, 3> place = {start[0], start[1] - 0.01 * k, start[2]};
            fountains.push_back({kind, place, colours[k], offsets[k] + later});
        }
    }
    std::size_t greeted = 0;
    // Draws, between updates as well as before the first.
    const auto expectDrawn = [&](std::size_t shot) {
        stage.drawings.clear();
        pScene->draw(nullptr);
        const Drawing* pDrawing = stage.drawings.data();
        for (std::size_t i = 0; i < script.texts.size(); ++i) {
            if (index == SAD ? i == shot : i < greeted) {
                const float red = index == SAD ? 0.7f : 0.9f;
                const float other = index == SAD ? 0 : 0.9f;
                ASSERT_NO_FATAL_FAILURE(script.texts[i].expectDrawn(pDrawing, {red, other, other, 0.7f}));
            }
        }
        ASSERT_NO_FATAL_FAILURE(solids.expectDrawn(pDrawing));
        for (const FountainModel& fountain : fountains) {
            ASSERT_TRUE(pDrawing->glows);
            ASSERT_NO_FATAL_FAILURE(fountain.expectDrawn(*pDrawing++));
        }
        ASSERT_EQ(pDrawing, stage.drawings.data() + stage.drawings.size());
    };
    stage.calls.clear();
    ASSERT_NO_FATAL_FAILURE(expectDrawn(0));
    EXPECT_EQ(calls(" glDisable glEnable glBlendFunc "),
              script.decay == 0
                  ? ""
                  : "glDisable 2929; glEnable 3042; glBlendFunc 770 1; glDisable 3042; glEnable 2929; ");
    const Ms start = 0xFFFFFFFF - 6000; // across the wrap of the clock
    float fade = 0;
    float pulse = 0;
    auto move = script.moves.begin();
    bool moving = false;
    Ms timeBase = start;
    Ms moveStart = 0;
    int frame = 0;
    // In tens, and often on the half second: also where something begins or ends.
    for (Ms now = start;; now += random() % 4 == 0 ? 500 - (now - start) % 500 : 10 * (1 + random() % 3)) {
        SCOPED_TRACE(now - start);
        const int loudest = random() % 2 == 0 ? 45 : 21;
        std::generate_n(spectrum.begin(), 16, [&] { return static_cast<float>(random() % loudest) / 100; });
        spectrum[2] = random() % 8 == 0 ? 0.25f : spectrum[2] / 2;
        stage.drawn.clear();
        const bool playing = update(*pScene, now);
        for (FountainModel& fountain : fountains) {
            fountain.update();
        }
        solids.update();
        float t = 0;
        if (!script.rests || now != start) {
            if (!moving) {
                moveStart = now;
                moving = true;
            } else if (now - moveStart > move->duration) {
                timeBase += script.decay != 0 ? move->duration : 0;
                moving = false;
                ++move;
            } else {
                t = static_cast<float>(now - moveStart) / static_cast<float>(move->duration);
            }
            ASSERT_EQ(playing, move != script.moves.end());
            if (!playing) {
                break;
            }
            fade = fadeAt(index, now - timeBase, move->duration, fade);
            if (script.listens) {
                model.spectrum(spectrum.data(), script.spike);
            }
            if (index == GREET) {
                model.level();
            }
            const std::size_t numbers = fireWaves(index, model, spectrum.data(), *move, t);
            ASSERT_EQ(numbers, stage.drawn.size());
            if (index == WORLD && numbers != 0) {
                solids.launch();
            }
            if (script.waves) {
                model.waves();
            }
            pulse = script.decay != 0 && spectrum[2] >= 0.25f ? 1 : pulse > 0 ? pulse - script.decay : 0;
        }
        ASSERT_TRUE(playing);
        ASSERT_FLOAT_EQ(pScene->getFadeValue(), fade);
        ASSERT_NEAR(pScene->getPulseValue(), pulse, 1e-6);
        ASSERT_NO_FATAL_FAILURE(model.expectAlike(grid));
        stage.calls.clear();
        pScene->setSceneRender();
        EXPECT_EQ(stage.calls.size(), 2U);
        const auto [x, y, z] = between(move->eyeFrom, move->eyeTo, t);
        const auto [u, v, w] = between(move->lookFrom, move->lookTo, t);
        const std::array<double, 9> view = {x, y, z, u, v, w, 0, 1, 0};
        for (std::size_t i = 0; i < view.size(); ++i) {
            ASSERT_NEAR(stage.view[i], view[i], 1e-4);
        }
        if (++frame % 16 == 0 && index != GREET) { // whose texts depend on what was played before
            ASSERT_NO_FATAL_FAILURE(expectDrawn(move - script.moves.begin()));
        }
    }
    EXPECT_EQ(pScene->getFadeValue(), 0);
    if (index == GREET) {
        model.paint(GREY);
        greeted = 7;
        ASSERT_NO_FATAL_FAILURE(expectDrawn(0));
    } else if (index == SAD) {
        ASSERT_NO_FATAL_FAILURE(expectDrawn(4)); // nothing
    }
    ASSERT_NO_FATAL_FAILURE(model.expectAlike(grid));
    spectrum.fill(0.4f);
    grid.updateSpectrum(spectrum.data(), 512);
    model.spectrum(spectrum.data(), script.spike);
    ASSERT_NO_FATAL_FAILURE(model.expectAlike(grid));
}

INSTANTIATE_TEST_SUITE_P(Show, Scenes, testing::Range(0, 6),
                         [](const auto& info) { return std::string(SCRIPTS[info.param].name); });

using SceneSadSpectrumGreets = SceneTest;
using SceneManagers = SceneTest;

TEST_F(SceneSadSpectrumGreets, greetingsAreArmedOnceForTheLifeOfTheProgram) {
    std::unique_ptr<SceneSadSpectrumGreet> pScene;
    const auto countsAt = [&](std::initializer_list<Ms> times) {
        pScene = std::make_unique<SceneSadSpectrumGreet>();
        std::string counts;
        for (const Ms time : times) {
            EXPECT_TRUE(update(*pScene, 5000 + time));
            stage.calls.clear();
            pScene->draw(nullptr);
            counts += call("", calls(" glPushMatrix ").size() / 14);
        }
        return counts;
    };
    EXPECT_EQ(countsAt({0, 16, 33, 2700, 6000, 6010, 6020, 6030, 19000, 19010, 19020, 19030, 19040, 19050}),
              " 0 0 1 1 1 2 3 3 3 4 5 6 7 7");
    EXPECT_EQ(countsAt({0, 1, 2790, 2791, 6000, 16740, 16741}), " 0 1 1 2 3 6 7"); // a second showing
    grid.makeElevation(0, 0, 9, 5);
    EXPECT_TRUE(update(*pScene, 22000));
    EXPECT_EQ(grid.getPoints()[0].position.y, 0); // level ground
    grid.clearColour(Colour3());
    EXPECT_FALSE(update(*pScene, 50000));
    EXPECT_EQ(grid.getPoints().back().colour.r, gridColour.r);
}

TEST_F(SceneManagers, handTheLatticeOnToTheNextScene) {
    std::ptrdiff_t before = 0;
    for (int round = 0; round < 2; ++round) { // the first lays in what is kept for the life of the program
        calls("");
        before = living;
        SceneManager manager;
        manager.addScene(new SceneSpectrumPart());
        manager.addScene(new SceneSad());
        const Scene* pFirst = manager.getCurrentScene();
        spectrum.fill(0.3f);
        stage.listening = false;
        for (const Ms now :
             {1000, 2000, 8000, 9000, 19000, 20000, 23000, 24000, 27000, 28000, 31000, 32000}) {
            EXPECT_EQ(manager.getCurrentScene() == pFirst, now < 20000);
            EXPECT_FALSE(manager.update(camera, &music, now));
        }
        stage.listening = true;
        manager.draw(nullptr);
        EXPECT_EQ(calls(" gluLookAt "), "gluLookAt 34 5 40 36 0 42 0 1 0; "); // the last of the second scene
        const std::vector<Drawing> drawn = drawings();
        ASSERT_EQ(drawn.size(), 7U); // the lattice and six letters
        EXPECT_EQ(drawn[0].size, 4);
        const auto lifted = [](const Point& point) { return point.position.y > 0; };
        EXPECT_GT(std::count_if(drawn[0].points.begin(), drawn[0].points.end(), lifted), 0);
        EXPECT_TRUE(manager.update(camera, &music, 35000));
    }
    EXPECT_EQ(living, before);
}
} // namespace
