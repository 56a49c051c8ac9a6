// The six scenes against scripts of what they should do, frame by frame, and their order.

#include "Scenes/SceneManager.h"
#include "Scenes/ScenePartWorld.h"
#include "Scenes/SceneSad.h"
#include "Scenes/SceneSadSpectrum.h"
#include "Scenes/SceneSadSpectrumGreet.h"
#include "Scenes/SceneSpectrumImpulsePart.h"
#include "Scenes/SceneSpectrumPart.h"

#include <cmath>
#include <memory>
#include <random>

#include "3D/Camera/RotatingCamera.h"
#include "GridModel.h"
#include "StandIns/Stage.h"
#include "Utils/MathUtils.h"

namespace {
using testing::ElementsAre;
using Ms = unsigned int;

struct Move {
    Vector3f eyeFrom, eyeTo, lookFrom, lookTo;
    Ms duration;
};

template <typename S>
Scene* make() {
    return new S();
}

/// What a scene is to do: whether it rests in its first update, whether its time base follows its moves;
/// heights of spikes, 0 where it leaves them as they are; decay of the pulse, 0 where there is none.
struct Script {
    const char* name;
    Scene* (*make)();
    std::size_t numbersAtBirth;
    bool rests, followsMoves, listens;
    float spike, decay;
    std::vector<Move> moves;
};

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

enum { SAD, SPECTRUM, GREET, PART, IMPULSE, WORLD };
const Script SCRIPTS[] = {
    {"SceneSad", make<SceneSad>, 0, false, false, false, 0, 0, OPENING},
    {"SceneSadSpectrum", make<SceneSadSpectrum>, 0, true, false, true, 0, 0, SWEEPS},
    {"SceneSadSpectrumGreet", make<SceneSadSpectrumGreet>, 0, true, false, false, 0, 0, RISE},
    {"SceneSpectrumPart", make<SceneSpectrumPart>, 0, true, true, true, 10, 0.04f, FLIGHTS},
    {"SceneSpectrumImpulsePart", make<SceneSpectrumImpulsePart>, 0, false, true, true, 8, 0.04f, GLIDE},
    {"ScenePartWorld", make<ScenePartWorld>, 900, false, true, true, 8, 0.08f, DESCENT}};

/// The brightness at a time of the scene, or of its move.
float fadeAt(int scene, Ms time, Ms duration, float before) {
    const Ms period = scene == SAD ? 2820 : scene == SPECTRUM ? 5000 : scene == GREET ? 0xFFFFFFFF : duration;
    const Ms t = time % period;
    if (t < 500) {
        return static_cast<float>(t) / 500;
    }
    if (scene == SAD && t > 570) {
        return static_cast<float>(2820 - t) / 2250;
    }
    if (scene == WORLD) {
        return time > 10000 ? static_cast<float>(25000 - time) / 15000 : 1;
    }
    if (scene != SAD && t > period - 500) {
        return static_cast<float>(period - t) / 500;
    }
    return scene == IMPULSE ? 1 : before;
}

/// Fires the waves of a frame. Tells how many random numbers they take.
std::size_t fireWaves(int scene, GridModel& grid, const float* spectrum, const std::vector<int>& numbers,
                      float eyeX) {
    std::size_t n = 0;
    const auto next = [&] { return static_cast<float>(numbers.at(n++)) / 2147483648.0f; };
    for (int band = 0; band < (scene == IMPULSE ? 8 : scene == WORLD ? 10 : 0); ++band) {
        if (spectrum[band] > 0.2f) {
            Colour4 colour(next(), 0, 0, 1);
            if (scene == IMPULSE) {
                colour.g = next();
                colour.b = next();
                colour.a = 0.7f;
            } else {
                colour.r = 0;
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
        glewInit();
        music.create();
        music.loadFile("");
        music.play();
        srand(3);
        stage().drawn.clear();
        calls();
        stage().spectrum = [this](float* target) { std::copy(spectrum.begin(), spectrum.end(), target); };
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
    for (const Ms start : {777U, 0xFFFFFFFFU - 6000}) { // across the wrap of the clock, too
        srand(3);
        GridModel model(100, 100);
        srand(3);
        Grid grid(100, 100, 1.5f);
        stage().drawn.clear();
        const std::unique_ptr<Scene> pScene(script.make());
        EXPECT_EQ(stage().drawn.size(), script.numbersAtBirth);

        float fade = 0;
        float pulse = 0;
        auto move = script.moves.begin();
        bool moving = false;
        Ms timeBase = start;
        Ms moveStart = 0;
        for (Ms now = start;; now += random() % 4 == 0 ? random() % 300 : 10 + random() % 20) {
            std::generate_n(spectrum.begin(), 16, [this] { return static_cast<float>(random() % 45) / 100; });
            spectrum[2] = random() % 8 == 0 ? 0.25f : spectrum[2] / 2;
            stage().drawn.clear();
            stage().listening = false;
            pScene->draw(nullptr); // moves nothing
            stage().listening = true;
            const bool playing = pScene->update(camera, &grid, &music, now);
            float t = 0;
            if (!script.rests || now != start) {
                if (!moving) {
                    moveStart = now;
                    moving = true;
                } else if (now - moveStart > move->duration) {
                    timeBase += script.followsMoves ? move->duration : 0;
                    moving = false;
                    ++move;
                } else {
                    t = static_cast<float>(now - moveStart) / static_cast<float>(move->duration);
                }
                ASSERT_EQ(playing, move != script.moves.end()) << now - start;
                if (!playing) {
                    break;
                }
                fade = fadeAt(index, now - timeBase, move->duration, fade);
                if (script.listens) {
                    model.spectrum(spectrum.data(), script.spike != 0 ? script.spike : 15);
                }
                const float eyeX = move->eyeFrom.x * (1 - t) + move->eyeTo.x * t;
                ASSERT_EQ(fireWaves(index, model, spectrum.data(), stage().drawn, eyeX),
                          stage().drawn.size());
                if (index == GREET) {
                    model.clearElevation();
                }
                model.waves();
                pulse = script.decay == 0      ? 0
                        : spectrum[2] >= 0.25f ? 1
                        : pulse > 0            ? pulse - script.decay
                                               : 0;
            }
            ASSERT_TRUE(playing);
            ASSERT_FLOAT_EQ(pScene->getFadeValue(), fade) << now - start;
            ASSERT_NEAR(pScene->getPulseValue(), pulse, 1e-6) << now - start;
            ASSERT_NO_FATAL_FAILURE(expectAlike(grid, model)) << now - start;
            calls();
            pScene->setSceneRender();
            std::istringstream view(calls().back().substr(9));
            for (const Vector3f& point : {move->eyeFrom * (1 - t) + move->eyeTo * t,
                                          move->lookFrom * (1 - t) + move->lookTo * t, Vector3f(0, 1, 0)}) {
                Vector3f seen;
                view >> seen.x >> seen.y >> seen.z;
                ASSERT_LT((seen - point).dot(seen - point), 1e-7) << now - start;
            }
        }
        EXPECT_EQ(pScene->getFadeValue(), 0);
        EXPECT_EQ(stage().drawn.size(), 0U);
        expectAlike(grid, model);
    }
}

INSTANTIATE_TEST_SUITE_P(Show, Scripts, testing::Range(0, 6),
                         [](const auto& info) { return std::string(SCRIPTS[info.param].name); });

TEST_F(SceneTest, openingShowsATitleAShot) {
    SceneSad scene;
    Ms now = 1000;
    for (const auto& [letters, place] : {std::pair(7, "36 1 36"), std::pair(8, "42 1 36"),
                                         std::pair(8, "42 1 42"), std::pair(6, "36 1 42")}) {
        calls();
        scene.draw(nullptr);
        const std::vector<std::string> drawn = calls();
        EXPECT_EQ(drawn[1], call("glTranslatef", place));
        EXPECT_EQ(drawn[3], call("glScalef", letters == 6 ? 0.4f : 0.3f, letters == 6 ? 0.4f : 0.3f,
                                 letters == 6 ? 0.4f : 0.3f));
        EXPECT_EQ(std::count(drawn.begin(), drawn.end(), "glLineWidth 8"), letters);
        EXPECT_TRUE(update(scene, now));
        EXPECT_EQ(update(scene, now += 2821), letters != 6);
    }
    calls();
    scene.draw(nullptr);
    EXPECT_THAT(calls(), ElementsAre());
}

TEST_F(SceneTest, greetingsAreArmedOnceForTheLifeOfTheProgram) {
    const auto greetings = [](Scene& scene) {
        calls();
        scene.draw(nullptr);
        const std::vector<std::string> drawn = calls();
        std::vector<std::string> places;
        for (std::size_t i = 0; i + 2 < drawn.size(); ++i) {
            if (drawn[i] == "glPushMatrix") {
                places.push_back(drawn[i + 1].substr(13) + " " + drawn[i + 2].substr(10, 3));
            }
        }
        return places;
    };
    const auto countsAt = [&](std::initializer_list<Ms> times) {
        SceneSadSpectrumGreet scene;
        std::string counts;
        for (const Ms time : times) {
            EXPECT_TRUE(update(scene, 5000 + time));
            counts += call("", greetings(scene).size());
        }
        return counts;
    };
    EXPECT_EQ(countsAt({0, 16, 33, 2700, 6000, 6010, 6020, 6030, 19000, 19010, 19020, 19030, 19040, 19050}),
              " 0 0 1 1 1 2 3 3 3 4 5 6 7 7");
    EXPECT_EQ(countsAt({0, 16, 2800, 2810, 6000, 9000}), " 0 1 2 2 3 4"); // a second showing
    SceneSadSpectrumGreet scene;
    for (const Ms time : {1U, 2U, 19000U, 19001U, 19002U, 19003U, 19004U, 19005U, 19006U}) {
        update(scene, time);
    }
    grid.clearColour(Colour3());
    EXPECT_FALSE(update(scene, 20000));
    EXPECT_EQ(grid.getPoints().back().colour.r, gridColour.r);
    EXPECT_THAT(greetings(scene), ElementsAre("45 1 50 180", "43 1 47 180", "72 1 52 270", "66 1 59 270",
                                              "64 1 33 270", "58 1 33 270", "54 1 76 180"));
}

TEST_F(SceneTest, fountainsAreAddedToThePictureInTheirPlaces) {
    struct Cluster {
        Vector3f place;
        float later; ///< by so much its offsets are more than the common ones
        float (*z)(float offset);
    };
    const auto one = [](float) { return 1.0f; };
    const auto sine = [](float o) { return std::sin(o) + o; };
    const auto cosine = [](float o) { return std::cos(o) + o; };
    const std::pair<Scene*, std::vector<Cluster>> SCENES[] = {
        {new SceneSpectrumPart(), {{{20, 1, 20}, 0, one}, {{10, 2, 10}, 1, one}}},
        {new SceneSpectrumImpulsePart(), {{{55, 3, 40}, 0, one}}},
        {new ScenePartWorld(), {{{55, 2, 45}, 0, sine}, {{45, 2, 60}, 0, sine}, {{45, 3, 45}, 0, cosine}}}};
    const float OFFSETS[] = {0.2f, 0.4f, 0.6f, 0.7f, 0.9f, 1.1f};
    const double GREENS[] = {0.74, 0.87, 0.086, 0.29, 0.8, 0.11};
    for (const auto& [pScene, clusters] : SCENES) {
        update(*pScene, 1000); // each fountain gets its point of phase 0
        stage().watching = true;
        stage().drawings.clear();
        calls();
        pScene->draw(nullptr);
        stage().watching = false;
        const std::vector<std::string> drawn = calls();
        delete pScene;
        const auto blend = std::find(drawn.begin(), drawn.end(), call("glDisable", GL_DEPTH_TEST));
        EXPECT_THAT(
            std::vector(blend, blend + 3),
            ElementsAre(call("glDisable", GL_DEPTH_TEST), call("glEnable", GL_BLEND), "glBlendFunc 770 1"));
        EXPECT_THAT(std::vector(drawn.end() - 2, drawn.end()),
                    ElementsAre(call("glDisable", GL_BLEND), call("glEnable", GL_DEPTH_TEST)));
        auto next = stage().drawings.end() - static_cast<int>(6 * clusters.size());
        for (const Cluster& cluster : clusters) {
            for (std::size_t k = 0; k < 6; ++k) {
                const Point& point = (next++)->points.at(0);
                const float o = OFFSETS[k] + cluster.later;
                EXPECT_NEAR(point.position.x, cluster.place.x + std::sin(o), 1e-5);
                EXPECT_NEAR(point.position.y,
                            cluster.place.y - 0.01f * static_cast<float>(k) + std::cos(o) + 1, 1e-5);
                EXPECT_NEAR(point.position.z, cluster.place.z + cluster.z(o), 1e-5);
                EXPECT_NEAR(point.colour.g, 0.3 * GREENS[k], 1e-6);
            }
        }
    }
}

TEST_F(SceneTest, beatsLaunchOneSolidOfEachKind) {
    for (int i = 0; i < 900; ++i) {
        stage().chance.push_back(i < 4 ? 1 << (30 - i) : 0);
    }
    ScenePartWorld world;
    /// Heights of the solids in the order drawn, as far as they have left the ground: kind by kind.
    const auto risen = [&] {
        calls();
        world.draw(nullptr);
        std::string all;
        int n = 0;
        for (const std::string& line : calls()) {
            if (line.rfind("glTranslatef", 0) == 0) {
                std::istringstream numbers(line.substr(12));
                float x = 0;
                float y = 0;
                numbers >> x >> y;
                all += y > 0 ? call("", n, std::lround(y * 100)) : "";
                ++n;
            }
        }
        EXPECT_EQ(n, 450);
        return all;
    };
    world.draw(nullptr);
    EXPECT_THAT(calls(), testing::Contains("glTranslatef 18.75 0 9.375")); // the second cube
    Ms now = 1000;
    spectrum.fill(0.2f);
    spectrum[2] = 0.21f;
    EXPECT_TRUE(update(world, now));
    EXPECT_EQ(stage().drawn.size(), 903U);
    spectrum[2] = 0;
    spectrum[0] = 0.3f;
    spectrum[9] = 0.5f;
    stage().chance.assign(6, 0); // both waves far off the lattice
    EXPECT_TRUE(update(world, ++now));
    EXPECT_EQ(stage().drawn.size(), 909U);
    EXPECT_EQ(risen(), " 0 5 150 5 300 5");
    world.launch();
    spectrum.fill(0);
    EXPECT_TRUE(update(world, ++now));
    EXPECT_EQ(risen(), " 0 10 1 5 2 5 150 10 151 5 152 5 300 10 301 5 302 5");
    EXPECT_EQ(risen(), " 0 10 1 5 2 5 150 10 151 5 152 5 300 10 301 5 302 5");
    for (int i = 0; i < 200; ++i) {
        world.launch();
    }
    EXPECT_TRUE(update(world, ++now));
    EXPECT_EQ(std::count(spectrum.begin(), spectrum.end(), 0), 512);
}

/// A scene that plays for a number of updates and tells its life.
struct Act : Scene {
    Act(std::string& story, char name, int length) : story(story), name(name), length(length) {}
    ~Act() override { story += call("", "deleted", name); }
    void setSceneRender() override { story += call("", "view", name); }
    void draw(Window* /*pWindow*/) override { story += call("", stage().drawings.size(), "draw", name); }
    bool update(const Camera& /*camera*/, Grid* pGrid, Music* /*pMusic*/, unsigned int time) override {
        pGrid->makeElevation(0, 0, 3, 5);
        story += call("", time, name);
        return --length > 0;
    }

    std::string& story;
    char name;
    int length;
};

TEST_F(SceneTest, managerPlaysOneSceneAfterTheOther) {
    std::string story;
    {
        stage().drawn.clear();
        SceneManager manager;
        EXPECT_EQ(stage().drawn.size(), 1024U);
        manager.addScene(new Act(story, 'a', 1));
        manager.addScene(new Act(story, 'b', 2));
        EXPECT_DEATH(manager.addScene(nullptr), "pScene");
        stage().watching = true;
        manager.draw(nullptr);
        EXPECT_EQ(stage().drawings.at(0).points.size(), 39600U);
        EXPECT_EQ(stage().drawings[0].size, 4);
        EXPECT_FALSE(manager.update(camera, &music, 5));
        EXPECT_EQ(manager.getCurrentScene()->getFadeValue() + manager.getCurrentScene()->getPulseValue(), 0);
        manager.draw(nullptr);
        manager.draw(nullptr);
        EXPECT_EQ(stage().drawings.at(2).points[0].position.y, 3); // as the scene before left it
        EXPECT_FALSE(manager.update(camera, &music, 6));
        EXPECT_TRUE(manager.update(camera, &music, 7));
    }
    EXPECT_EQ(story, " view a 1 draw a 5 a view b 2 draw b view b 3 draw b 6 b 7 b deleted a deleted b");
}
} // namespace
