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

#include <cstdio>
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
    {"ScenePartWorld", make<ScenePartWorld>, false, 8, 0.08f, 18, DESCENT}};

/// The brightness at a time of the scene, or of its move.
float fadeAt(int scene, Ms time, Ms duration, float before) {
    const Ms period = scene == SPECTRUM ? 5000 : scene == GREET ? 0xFFFFFFFF : duration;
    const Ms t = time % period;
    const auto share = [](Ms part, float whole) { return static_cast<float>(part) / whole; };
    if (t < 500) {
        return share(t, 500);
    }
    if (scene == SAD || scene == WORLD) {
        return scene == WORLD ? (time > 10000 ? share(25000 - time, 15000) : 1)
                              : (t > 570 ? share(2820 - t, 2250) : before);
    }
    return t > period - 500 ? share(period - t, 500) : scene == IMPULSE ? 1 : before;
}

/// Fires the waves of a frame by the random numbers it drew. Tells how many they should be.
std::size_t fireWaves(int scene, GridModel& grid, const float* spectrum, float eyeX) {
    std::size_t n = 0;
    const auto next = [&] { return static_cast<float>(stage.drawn.at(n++)) / 2147483648.0f; };
    for (int band = 0; band < (scene == IMPULSE ? 8 : scene == WORLD ? 10 : 0); ++band) {
        if (spectrum[band] > 0.2f) {
            Colour4 colour(next(), 0, 0, 0.7f);
            if (scene == IMPULSE) {
                colour.g = next();
                colour.b = next();
            } else {
                colour = Colour4(0, 0, 0, 1);
            }
            const float u = next();
            const float v = next();
            const float x = scene == IMPULSE ? v * 10 + 20 : v * 100 - 10;
            const float y = scene == IMPULSE ? eyeX / 1.5f + u * 20 : u * 100 - 10;
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
    /// A hash of what is drawn.
    static std::uint64_t ink(const std::function<void()>& drawing) {
        stage.hashing = true;
        stage.hash = 0;
        drawing();
        return stage.hash;
    }

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
            const float eyeX = move->eyeFrom.x * (1 - t) + move->eyeTo.x * t;
            ASSERT_EQ(fireWaves(index, model, spectrum.data(), eyeX), stage.drawn.size());
            model.waves();
            pulse = script.decay != 0 && spectrum[2] >= 0.25f ? 1 : pulse > 0 ? pulse - script.decay : 0;
        }
        ASSERT_TRUE(playing);
        ASSERT_FLOAT_EQ(pScene->getFadeValue(), fade);
        ASSERT_NEAR(pScene->getPulseValue(), pulse, 1e-6);
        ASSERT_NO_FATAL_FAILURE(model.expectAlike(grid));
        calls();
        pScene->setSceneRender();
        float seen[6];
        ASSERT_EQ(std::sscanf(calls().back().c_str(), "gluLookAt %f %f %f %f %f %f 0 1 0", &seen[0], &seen[1],
                              &seen[2], &seen[3], &seen[4], &seen[5]),
                  6);
        const Vector3f eye = move->eyeFrom * (1 - t) + move->eyeTo * t - Vector3f(seen[0], seen[1], seen[2]);
        const Vector3f look =
            move->lookFrom * (1 - t) + move->lookTo * t - Vector3f(seen[3], seen[4], seen[5]);
        ASSERT_LT(eye.dot(eye) + look.dot(look), 1e-7);
    }
    EXPECT_EQ(pScene->getFadeValue(), 0);
    EXPECT_EQ(stage.drawn.size(), 0U);
    model.expectAlike(grid);

    calls();
    pScene->draw(nullptr);
    std::string state;
    for (const std::string& line : calls()) { // what is drawn in what state
        const bool watched = line.rfind("glDi", 0) * line.rfind("glEn", 0) * line.rfind("glB", 0) == 0;
        state += watched && line.find("Client") == std::string::npos ? line + ';'
                 : line == "glPointSize 3"                           ? "."
                                                                     : "";
    }
    const std::string fountains(script.fountains, '.');
    EXPECT_EQ(state, fountains.empty() ? ""
                                       : "glDisable 2929;glEnable 3042;glBlendFunc 770 1;" + fountains +
                                             "glDisable 3042;glEnable 2929;");
}

INSTANTIATE_TEST_SUITE_P(Show, Scripts, testing::Range(0, 6),
                         [](const auto& info) { return std::string(SCRIPTS[info.param].name); });

TEST_F(SceneTest, openingShowsATitleAShot) {
    SceneSad scene;
    const Font red(Colour4(0.7f, 0, 0, 0.7f));
    Ms now = 1000;
    const auto expectTitle = [&](const Vector3f& place, const char* text, float scale) {
        EXPECT_EQ(ink([&] { scene.draw(nullptr); }), ink([&] { red.drawText(place, text, scale); })) << text;
        update(scene, now);
        update(scene, now += 2821);
    };
    expectTitle({36, 1, 36}, "Olmbrex", 0.3f);
    expectTitle({42, 1, 36}, "Presents", 0.3f);
    expectTitle({42, 1, 42}, "A new demo", 0.3f);
    expectTitle({36, 1, 42}, "Quelar", 0.4f);
    EXPECT_EQ(ink([&] { scene.draw(nullptr); }), 0U);
}

TEST_F(SceneTest, greetingsAreArmedOnceForTheLifeOfTheProgram) {
    std::unique_ptr<SceneSadSpectrumGreet> pScene;
    const auto countsAt = [&](std::initializer_list<Ms> times) {
        pScene = std::make_unique<SceneSadSpectrumGreet>();
        std::string counts;
        for (const Ms time : times) {
            EXPECT_TRUE(update(*pScene, 5000 + time));
            calls();
            pScene->draw(nullptr);
            const std::vector<std::string> drawn = calls();
            counts += call("", std::count(drawn.begin(), drawn.end(), "glPushMatrix"));
        }
        return counts;
    };
    EXPECT_EQ(countsAt({0, 16, 33, 2700, 6000, 6010, 6020, 6030, 19000, 19010, 19020, 19030, 19040, 19050}),
              " 0 0 1 1 1 2 3 3 3 4 5 6 7 7");
    EXPECT_EQ(countsAt({0, 1, 2790, 2791, 6000, 16740, 16741}), " 0 1 1 2 3 6 7"); // a second showing
    const Font white(Colour4(0.9f, 0.9f, 0.9f, 0.7f));
    EXPECT_EQ(ink([&] { pScene->draw(nullptr); }), ink([&] {
                  white.drawText({45, 1, 50}, "Tunko crew", 1);
                  white.drawText({43, 1, 47}, "Vastor", 1);
                  white.drawText2({72, 1, 52}, "KelpFounders", 1.5f);
                  white.drawText2({66, 1, 59}, "Marigrove", 1.7f);
                  white.drawText2({64, 1, 33}, "ZiiiZ", 1.7f);
                  white.drawText2({58, 1, 33}, "Q ton", 1.7f);
                  white.drawText({54, 1, 76}, "Plinth ORB", 1.8f);
              }));
    grid.clearColour(Colour3());
    EXPECT_FALSE(update(*pScene, 50000));
    EXPECT_EQ(grid.getPoints().back().colour.r, gridColour.r);
}

TEST_F(SceneTest, loudFramesLaunchOneSolidOfEachKind) {
    ScenePartWorld world;
    std::string risen; // solids that have left the ground
    for (const float magnitude : {0.2f, 0.21f, 0.2f, 0.3f, 0.2f}) {
        spectrum.fill(magnitude);
        EXPECT_TRUE(update(world, 1000));
        calls();
        world.draw(nullptr);
        const std::vector<std::string> drawn = calls();
        risen +=
            call("", std::count_if(drawn.begin(), drawn.end(), [](const std::string& line) {
                     return line.rfind("glTranslatef", 0) == 0 && line.find(" 0 ", 13) == std::string::npos;
                 }));
    }
    EXPECT_EQ(risen, " 0 0 3 3 6");
}

TEST_F(SceneTest, managerPlaysOneSceneAfterTheOtherOverOneLattice) {
    SceneManager manager;
    manager.addScene(new SceneSpectrumPart());
    manager.addScene(new SceneSad());
    spectrum.fill(0.3f);
    for (const Ms now : {1000, 2000, 8000, 9000, 19000}) {
        EXPECT_FALSE(manager.update(camera, &music, now));
    }
    calls();
    drawings();
    manager.draw(nullptr);
    EXPECT_EQ(calls().at(1), call("gluLookAt", 38, 4, 34, 36, 0, 37, 0, 1, 0)); // the second one's
    const std::vector<Point> lattice = drawings().at(0);
    EXPECT_EQ(lattice.size(), 39600U);
    EXPECT_GT(std::count_if(lattice.begin(), lattice.end(), [](auto& p) { return p.position.y > 0; }), 0);
    for (const Ms now : {20000, 23000, 24000, 27000, 28000, 31000, 32000, 35000}) {
        EXPECT_EQ(manager.update(camera, &music, now), now == 35000);
    }
}
} // namespace
