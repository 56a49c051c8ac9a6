// The six scenes at the pace of the show: how each fades and pulses, what it writes, and what the music does
// in it. Where their cameras fly, the reference pictures see.

#include "3D/Camera/RotatingCamera.h"
#include "Objects/Font.h"
#include "Scenes/ScenePartWorld.h"
#include "Scenes/SceneSad.h"
#include "Scenes/SceneSadSpectrum.h"
#include "Scenes/SceneSadSpectrumGreet.h"
#include "Scenes/SceneSpectrumImpulsePart.h"
#include "Scenes/SceneSpectrumPart.h"
#include "StandIns/Stage.h"

#include <memory>

namespace {
using Ms = unsigned int;
using Scenes = OnStage;

/// A random number as a part of 1.
float part(int n) { return n / 2147483648.0f; }

template <typename S>
std::unique_ptr<Scene> make() {
    return std::make_unique<S>();
}

enum { OPENING, FLIGHT, GREETINGS, FOUNTAINS, WAVES, DESCENT };
std::unique_ptr<Scene> (*const SCENES[])() = {
    make<SceneSad>,          make<SceneSadSpectrum>,         make<SceneSadSpectrumGreet>,
    make<SceneSpectrumPart>, make<SceneSpectrumImpulsePart>, make<ScenePartWorld>};

/// A scene over a lattice of its own.
struct Screening {
    explicit Screening(int number) : scene(SCENES[number]()) {}

    /// A frame, on a clock that wraps in every scene; whether the scene goes on.
    bool play() { return scene->update(camera, &grid, &music, std::exchange(ms, ms + 15) - 7000); }
    /// Up to the update at this time on the scene's own clock.
    void playTo(Ms end) {
        while (ms <= end && !testing::Test::HasFatalFailure()) {
            ASSERT_TRUE(play()) << ms;
        }
    }
    /// A frame in which some bands are loud; answers the random numbers drawn for it.
    std::vector<int> hear(std::size_t from, std::size_t to, float magnitude = 0.3f) {
        std::fill(stage.spectrum.begin() + from, stage.spectrum.begin() + to, magnitude);
        stage.chance.clear();
        play();
        stage.spectrum.fill(0);
        return stage.chance;
    }
    std::vector<Drawing> draw() const {
        return drawn([this] { scene->draw(nullptr); });
    }
    /// A point of the lattice; waves count x along z.
    std::string colourAt(Ms z, Ms x) const { return text(grid.getPoints().at(100 * x + z).colour); }

    std::unique_ptr<Scene> scene;
    RotatingCamera camera{{6, 0, 6}, 6, 0.3f};
    Grid grid{100, 100, 1.5f};
    Music music;
    Ms ms = 0;
};

TEST_F(Scenes, fadeInAndOut) {
    // Brightness at ms of the scene.
    const std::vector<std::pair<Ms, float>> FADES[] = {
        // each shot of the opening in for half a second, out for two and a quarter
        {{0, 0}, {240, 0.48f}, {570, 0.99f}, {585, 0.993f}, {1410, 0.627f}, {2805, 0.007f}, {11265, 0.007f}},
        // every five seconds, whatever the shots
        {{0, 0}, {240, 0.48f}, {4500, 0.99f}, {4515, 0.97f}, {5010, 0.02f}, {20010, 0.02f}, {22095, 0.98f}},
        {{0, 0}, {240, 0.48f}, {19545, 0.99f}},
        // by flights, of which the second one's fades run ahead of its camera
        {{0, 0}, {240, 0.48f}, {4515, 0.97f}, {5010, 0.02f}, {9510, 0.98f}, {10005, 0.01f}, {10020, 0.04f}},
        {{0, 0}, {240, 0.48f}, {510, 1}, {14490, 1}, {14505, 0.99f}, {15000, 0}},
        {{0, 0}, {240, 0.48f}, {510, 1}, {10005, 1}, {10020, 0.999f}, {17505, 0.5f}, {24990, 0.001f}}};
    for (int scene = OPENING; scene <= DESCENT; ++scene) {
        Screening screening(scene);
        EXPECT_EQ(screening.scene->getFadeValue(), 0) << "before it begins";
        for (const auto& [ms, fade] : FADES[scene]) {
            screening.playTo(ms);
            EXPECT_NEAR(screening.scene->getFadeValue(), fade, 6e-4) << scene << " at " << ms;
        }
        while (!HasFatalFailure() && screening.play()) {
        }
        EXPECT_EQ(screening.scene->getFadeValue(), 0) << "after its end";
    }
}

/// A scene whose clock can be read.
template <typename S>
struct Clocked : S {
    /// By how much it has moved on after the last frame.
    Ms playToItsEnd() {
        Screening other(OPENING); // for its lattice
        for (Ms ms = 1000; S::update(other.camera, &other.grid, &other.music, ms); ms += 15) {
        }
        return S::startTime - 1000;
    }
};

TEST_F(Scenes, moveTheirClocksOnWithEachFlightTheLastOneToo) {
    EXPECT_EQ(Clocked<SceneSpectrumPart>().playToItsEnd(), 10000U);
    EXPECT_EQ(Clocked<SceneSpectrumImpulsePart>().playToItsEnd(), 15000U);
    EXPECT_EQ(Clocked<ScenePartWorld>().playToItsEnd(), 25000U);
}

TEST_F(Scenes, greetSevenGroups) {
    Screening screening(GREETINGS);
    std::string letters; // that are there when 2.79 s have passed again, and two frames later
    for (Ms step = 0; step < 7; ++step) {
        for (const Ms frames : {0, 2}) {
            screening.playTo(2790 * step + 15 * frames);
            letters += text(screening.draw().size()) + (frames == 0 ? " to " : ", ");
        }
    }
    EXPECT_EQ(letters, "0 to 9, 9 to 15, 15 to 27, 27 to 36, 36 to 41, 41 to 45, 45 to 54, ");
    const Font white(Colour4(0.9f, 0.9f, 0.9f, 0.7f));
    const std::vector<Drawing> wanted = drawn([&white] {
        white.drawText({45, 1, 50}, "tunko crew", 1);
        white.drawText({43, 1, 47}, "vastor", 1);
        white.drawText2({72, 1, 52}, "kelpfounders", 1.5f);
        white.drawText2({66, 1, 59}, "marigrove", 1.7f);
        white.drawText2({64, 1, 33}, "ziiiz", 1.7f);
        white.drawText2({58, 1, 33}, "q ton", 1.7f);
        white.drawText({54, 1, 76}, "plinth orb", 1.8f);
    });
    const std::vector<Drawing> written = screening.draw();
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        EXPECT_EQ(text(middleOf(written.at(i).points)), text(middleOf(wanted[i].points))) << "letter " << i;
    }
}

TEST_F(Scenes, heedTheMusicEachInItsWay) {
    // The height of the spikes, from 1 before; what the pulse falls by; random numbers for all loud bands.
    const std::tuple<int, float, float, std::size_t> WAYS[] = {
        {OPENING, 1, 0, 0},       {FLIGHT, 4.5f, 0, 0},        {GREETINGS, 0, 0, 0},
        {FOUNTAINS, 3, 0.04f, 0}, {WAVES, 2.4f, 0.04f, 5 * 8}, {DESCENT, 1, 0.08f, 3 * 10}};
    for (const auto& [scene, height, decay, numbers] : WAYS) {
        SCOPED_TRACE(scene);
        Screening screening(scene);
        const Scene& its = *screening.scene;
        const Points& points = screening.grid.getPoints();
        const auto isLower = [](const Point& p, const Point& q) { return p.position.y < q.position.y; };
        stage.spectrum.fill(1 / 15.0f);
        screening.grid.updateSpectrum(stage.spectrum.data(), 512); // as the scene before left it
        stage.spectrum.fill(0);
        screening.playTo(0);
        EXPECT_EQ(screening.hear(0, 512, 0.2f).size(), 0U);
        EXPECT_EQ(screening.hear(0, 512, 0.2499f).size(), numbers);
        EXPECT_EQ(its.getPulseValue(), 0);
        screening.hear(0, 512);
        EXPECT_NEAR(std::max_element(points.begin(), points.end(), isLower)->position.y, height, 1e-4);
        screening.hear(2, 3, 0.25f);
        EXPECT_EQ(its.getPulseValue(), decay > 0 ? 1 : 0);
        screening.hear(0, 512, 0.2499f);
        EXPECT_EQ(its.getPulseValue(), decay > 0 ? 1 - decay : 0);
        screening.playTo(500);
        EXPECT_EQ(its.getPulseValue(), 0);
    }
}

TEST_F(Scenes, fireColouredWavesAheadOfTheCameraAndBlackOnesAnywhere) {
    Screening waves(WAVES);
    waves.playTo(7485);
    const std::vector<int> n = waves.hear(7, 8);
    const auto ahead = static_cast<Ms>(45 / 1.5f + part(n.at(3)) * 20);
    const auto aside = static_cast<Ms>(part(n.at(4)) * 10 + 20);
    EXPECT_EQ(waves.colourAt(aside, ahead), WHITE);
    waves.playTo(7560);
    EXPECT_EQ(waves.colourAt(aside, ahead + 4), WHITE) << "the last ring";
    waves.playTo(9500);
    EXPECT_EQ(waves.colourAt(aside + 1, ahead), text(part(n[0]), part(n[1]), part(n[2]), 0.7));

    Screening descent(DESCENT);
    for (int wave = 0; wave < 50; ++wave) { // about nine of them beside the lattice
        descent.grid.clearColour();
        const std::vector<int> place = descent.hear(9, 10);
        const float x = part(place.at(1)) * 100 - 10;
        const float z = part(place.at(2)) * 100 - 10;
        const bool lands = x > -1 && z > -1;
        EXPECT_EQ(whitesOf(descent.grid.getPoints()), lands ? 1 : 0);
        descent.playTo(descent.ms + 400);
        EXPECT_TRUE(!lands || descent.colourAt(z, x) == "0 0 0 1");
    }
}

TEST_F(Scenes, launchASolidOfEachKindInEveryLoudFrame) {
    Screening screening(DESCENT);
    const std::vector<int> places = stage.chance; // x and z of cubes, pyramids and spheres come first
    for (const float magnitude : {0.3f, 0.3f, 0.2f, 0.3f, 0.3f}) {
        screening.hear(0, 10, magnitude);
    }
    const std::vector<Drawing> solids = screening.draw();
    for (std::size_t i = 0; i < 450; ++i) {
        const float RISEN[] = {0.2f, 0.15f, 0.05f}; // and the fourth one is about to
        const Vector3f middle = middleOf(solids.at(i).points);
        EXPECT_NEAR(middle.x, part(places[2 * i]) * 150, 1e-3) << i;
        EXPECT_NEAR(middle.z, part(places[2 * i + 1]) * 150, 1e-3) << i;
        const float rest = 150 <= i && i < 300 ? -0.1875f : 0; // most of a pyramid lies below its place
        EXPECT_NEAR(middle.y, rest + (i % 150 < 3 ? RISEN[i % 150] : 0), 1e-4) << i;
    }
}

TEST_F(Scenes, haveFountainsWhoseLightIsAdded) {
    // In the show's six colours, at 30 %. How many, and where on average their first points are.
    const Words COLOURS = {"0 0.222 0.057 1",     "0.117 0.261 0.156 1", "0.057 0.026 0.216 1",
                           "0.117 0.087 0.254 1", "0.3 0.24 0 1",        "0.3 0.033 0 1"};
    for (const auto& [scene, count, average] : {std::tuple(FOUNTAINS, 12, "15.766 2.818 16"),
                                                {WAVES, 6, "55.579 4.736 41"},
                                                {DESCENT, 18, "48.912 4.069 51.289"}}) {
        Screening screening(scene);
        screening.playTo(0);
        std::vector<Drawing> fountains = screening.draw();
        fountains.erase(fountains.begin(), fountains.end() - count);
        Points firsts;
        for (const Drawing& fountain : fountains) {
            EXPECT_TRUE(fountain.kind == GL_POINTS && fountain.added() && !fountain.tested);
            EXPECT_EQ(text(fountain.points.at(0).colour), COLOURS[firsts.size() % 6]);
            firsts.push_back(fountain.points[0]);
        }
        EXPECT_EQ(text(middleOf(firsts)), average);
        const Drawing next = drawn([] { LineRenderer().draw(4); })[0];
        EXPECT_TRUE(next.tested && !next.added()) << "what comes after " << scene;
    }
}
} // namespace
