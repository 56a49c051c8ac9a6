// The six scenes against scripts of what they should do, frame by frame, and their order.

#include "3D/Camera/RotatingCamera.h"
#include "GridModel.h"
#include "Scenes/SceneManager.h"
#include "Scenes/ScenePartWorld.h"
#include "Scenes/SceneSad.h"
#include "Scenes/SceneSadSpectrum.h"
#include "Scenes/SceneSadSpectrumGreet.h"
#include "Scenes/SceneSpectrumImpulsePart.h"
#include "Scenes/SceneSpectrumPart.h"
#include "StandIns/Stage.h"
#include "Utils/MathUtils.h"

#include <memory>
#include <random>

namespace {
using Ms = unsigned int;

struct Move {
    Vector3f eyeFrom, eyeTo, lookFrom, lookTo;
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

/// What a scene is to do: the heights of its spikes, 0 where it leaves them as they are; the decay of its
/// pulse. Those that have a decay also have fountains, and a time base that follows their moves.
struct Script {
    const char* name;
    Scene* (*make)();
    bool rests; ///< in the first update
    float spike, decay;
    int fountains;
    std::vector<Move> moves;
};

enum { SAD, SPECTRUM, GREET, PART, IMPULSE, WORLD };
const Script SCRIPTS[] = {
    {"SceneSad", make<SceneSad>, false, 0, 0, 0, OPENING},
    {"SceneSadSpectrum", make<SceneSadSpectrum>, true, 15, 0, 0, SWEEPS},
    {"SceneSadSpectrumGreet", make<SceneSadSpectrumGreet>, true, 0, 0, 0, RISE},
    {"SceneSpectrumPart", make<SceneSpectrumPart>, true, 10, 0.04f, 12, FLIGHTS},
    {"SceneSpectrumImpulsePart", make<SceneSpectrumImpulsePart>, false, 8, 0.04f, 6, GLIDE},
    {"ScenePartWorld", make<ScenePartWorld>, false, 0, 0.08f, 18, DESCENT}};

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

/// Fires the waves of a frame by the random numbers it drew. Tells how many they should be.
std::size_t fireWaves(int scene, GridModel& grid, const float* spectrum, const Move& move, float t) {
    std::size_t n = 0;
    const auto next = [&] { return static_cast<float>(stage.drawn.at(n++)) / 2147483648.0f; };
    for (int band = 0; band < (scene == IMPULSE ? 8 : scene == WORLD ? 10 : 0); ++band) {
        if (spectrum[band] > 0.2f) {
            Colour4 colour(next(), 0, 0, 0.7f);
            colour.g = scene == IMPULSE ? next() : 0;
            colour.b = scene == IMPULSE ? next() : 0;
            colour = scene == IMPULSE ? colour : Colour4(0, 0, 0, 1);
            const float u = next();
            const float v = next();
            const float x = scene == IMPULSE ? v * 10 + 20 : v * 100 - 10;
            const float y = scene == IMPULSE ? MathUtils::lerp(move.eyeFrom, move.eyeTo, t).x / 1.5f + u * 20
                                             : u * 100 - 10;
            grid.impulsion(static_cast<int>(x), static_cast<int>(y), colour, 1, 6);
        }
    }
    return n;
}

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

class Scripts : public SceneTest, public testing::WithParamInterface<int> {};

TEST_P(Scripts, areFollowedFrameByFrame) {
    const int index = GetParam();
    const Script& script = SCRIPTS[index];
    srand(3);
    GridModel model(100, 100);
    srand(3);
    grid = Grid(100, 100, 1.5f);
    stage.drawn.clear();
    const std::unique_ptr<Scene> pScene(script.make());
    EXPECT_EQ(stage.drawn.size(), index == WORLD ? 900U : 0U);
    pScene->draw(nullptr); // possible from the start

    const Ms start = 0xFFFFFFFF - 6000; // across the wrap of the clock
    float fade = 0;
    float pulse = 0;
    auto move = script.moves.begin();
    bool moving = false;
    Ms timeBase = start;
    Ms moveStart = 0;
    for (Ms now = start;; now += random() % 4 == 0 ? random() % 300 : 10 + random() % 20) {
        SCOPED_TRACE(now - start);
        std::generate_n(spectrum.begin(), 16, [this] { return static_cast<float>(random() % 45) / 100; });
        spectrum[2] = random() % 8 == 0 ? 0.25f : spectrum[2] / 2;
        stage.drawn.clear();
        const bool playing = pScene->update(camera, &grid, &music, now);
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
            if (script.spike != 0) {
                model.spectrum(spectrum.data(), script.spike);
            }
            ASSERT_EQ(fireWaves(index, model, spectrum.data(), *move, t), stage.drawn.size());
            model.waves();
            pulse = script.decay != 0 && spectrum[2] >= 0.25f ? 1 : pulse > 0 ? pulse - script.decay : 0;
        }
        ASSERT_TRUE(playing);
        ASSERT_FLOAT_EQ(pScene->getFadeValue(), fade);
        ASSERT_NEAR(pScene->getPulseValue(), pulse, 1e-6);
        ASSERT_NO_FATAL_FAILURE(model.expectAlike(grid));
        calls();
        pScene->setSceneRender();
        const Vector3f eye = MathUtils::lerp(move->eyeFrom, move->eyeTo, t);
        const Vector3f look = MathUtils::lerp(move->lookFrom, move->lookTo, t);
        ASSERT_EQ(calls().back(), call("gluLookAt", eye.x, eye.y, eye.z, look.x, look.y, look.z, 0, 1, 0));
    }
    EXPECT_EQ(pScene->getFadeValue(), 0);

    calls();
    pScene->draw(nullptr);
    std::string light = script.fountains != 0 ? "Disable 2929; Enable 3042; BlendFunc 770 1; " : "";
    for (int i = 0; i < script.fountains; ++i) {
        light += i + 1 < script.fountains ? "PointSize 3; " : "PointSize 3; Disable 3042; Enable 2929; ";
    }
    EXPECT_EQ(calls(" glDisable glEnable glBlendFunc glPointSize "), light);
}

INSTANTIATE_TEST_SUITE_P(Show, Scripts, testing::Range(0, 6),
                         [](const auto& info) { return std::string(SCRIPTS[info.param].name); });

TEST_F(SceneTest, greetingsAreArmedOnceForTheLifeOfTheProgram) {
    std::unique_ptr<SceneSadSpectrumGreet> pScene;
    const auto countsAt = [&](std::initializer_list<Ms> times) {
        pScene = std::make_unique<SceneSadSpectrumGreet>();
        std::string counts;
        for (const Ms time : times) {
            EXPECT_TRUE(update(*pScene, 5000 + time));
            calls();
            pScene->draw(nullptr);
            counts += call("", calls(" glPushMatrix ").size() / 12);
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

TEST_F(SceneTest, managerHandsTheLatticeOnToTheNextScene) {
    SceneManager manager;
    manager.addScene(new SceneSpectrumPart());
    manager.addScene(new SceneSad());
    spectrum.fill(0.3f);
    for (const Ms now : {1000, 2000, 8000, 9000, 19000, 20000, 23000, 24000, 27000, 28000, 31000, 32000}) {
        EXPECT_FALSE(manager.update(camera, &music, now));
    }
    manager.draw(nullptr);
    EXPECT_EQ(calls(" gluLookAt "), "uLookAt 34 5 40 36 0 42 0 1 0; "); // the last of the second scene
    const std::vector<Point> lattice = drawings().at(0);
    EXPECT_GT(std::count_if(lattice.begin(), lattice.end(), [](auto& p) { return p.position.y > 0; }), 0);
    EXPECT_TRUE(manager.update(camera, &music, 35000));
}
} // namespace
