// The whole program on the stage.

#include "StandIns/Stage.h"
#include "Timeline.h"

#include <cmath>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>

namespace {
const auto ENDS = testing::EndsWith("End !\nFrameBuffer '12' deleted\nMusic deleted\nZentrik closed\n");
const auto ENDS_WELL = testing::ExitedWithCode(0);

class Show : public OnStage {
protected:
    Show() { stage.listening = false; }

    /// Escape is held from the frame of that number on.
    static void escapeIn(int frame) {
        stage.atSwap = [frame]() mutable { stage.keys[SDLK_ESCAPE] = --frame <= 0 ? 1 : 0; };
    }
    /// Drops the calls from the one to the other, which stays.
    static void cut(const char* from, const char* to) {
        const auto first = std::find(stage.calls.begin(), stage.calls.end(), from);
        stage.calls.erase(first, std::find(first, stage.calls.end(), to));
    }
    /// In a process of its own: whether the show ends well in its frame of that number.
    static void playTo(int wanted, const std::function<void(int frame)>& inFrame) {
        int frame = 0;
        stage.atSwap = [&frame] { ++frame; };
        stage.atPump = [&] { inFrame(frame); }; // the keyboard, which comes first, is being asked
        const bool well = host::playShow() == 0 && frame == wanted && err().empty();
        std::exit(well && testing::Matches(ENDS)(out()) ? 0 : 1);
    }
};

TEST_F(Show, goesByItsSettingsAndItsSeed) {
    namespace fs = std::filesystem;
    const fs::path home = fs::current_path();
    const fs::path elsewhere = testing::TempDir() + "show." + std::to_string(getpid());
    fs::create_directories(elsewhere / "data");
    fs::copy("data/shaders", elsewhere / "data/shaders", fs::copy_options::recursive);
    fs::current_path(elsewhere);
    stage.listening = true;
    escapeIn(1);
    for (const unsigned int seed : {42U, 43U}) { // first without settings
        stage.drawn.clear();
        EXPECT_EQ(host::playShow(), 0);
        srandom(seed); // nobody seeds anew
        EXPECT_TRUE(std::all_of(stage.drawn.begin(), stage.drawn.end(), [](int n) { return n == random(); }));
        std::ofstream("data/settings.ini") << "seed 43.9 hres 9e9 vres -9e9";
    }
    fs::current_path(home);
    fs::remove_all(elsewhere);
    keep("SDL_SetVideoMode|glViewport|glTexImage2D");
    out();
    expectStory("Settings of the show");
}

TEST_F(Show, keepsItsTimelineAndAllocatesNothingInAFrame) {
    std::vector<std::size_t> counts;
    std::vector<unsigned int> cuts;
    counts.reserve(10000);
    cuts.reserve(100);
    stage.drawn.reserve(1000000);
    stage.now = 0xFFFFFFFF - 50005; // the clock wraps on the way
    stage.spectrum = [](float* spectrum) { std::fill(spectrum, spectrum + 512, 0.26f); };
    stage.atSwap = [&, last = stage.view]() mutable {
        const auto& [x, y, z, u, v, w, upX, upY, upZ] = stage.view;
        if (std::hypot(x - last[0], y - last[1], z - last[2]) > 1) { // none moves as fast as that
            cuts.push_back(static_cast<unsigned int>(counts.size()));
        }
        last = stage.view;
        counts.push_back(allocations);
    };
    EXPECT_EQ(host::playShow(), 0);
    for (std::size_t frame = 1; frame < counts.size(); ++frame) {
        ASSERT_EQ(counts[frame], counts[frame - 1]) << frame;
    }
    std::vector<unsigned int> planned;
    for (std::size_t scene = 0; scene < timeline::SCENES.size(); ++scene) {
        for (std::size_t shot = 0; timeline::shotFrames(scene, shot) != 0; ++shot) {
            planned.push_back(timeline::shotStart(scene, shot));
            EXPECT_EQ(timeline::sceneOf(planned.back()), scene);
        }
    }
    EXPECT_EQ(cuts, planned);
    EXPECT_EQ(counts.size(), timeline::SHOW_FRAMES);
}

TEST_F(Show, makesExactlyTheseCalls) {
    // From the start to the first picture, and from there to the end.
    stage.listening = true;
    stage.now = 5; // early enough to wait
    escapeIn(1);
    EXPECT_EQ(host::playShow(), 0);
    cut("glUseProgram 3", "SDL_GL_SwapBuffers");
    keep("(?!glShaderSource)");
    expectStory("Start and end");

    // The last frames of a show that Escape ends in the second scene, and the lattice there.
    stage.listening = false;
    stage.keys = {};
    stage.spectrum = [](float* spectrum) { std::fill(spectrum, spectrum + 512, 0.2f); };
    stage.atSwap = [frame = 0]() mutable {
        stage.now += 7;
        ++frame;
        stage.keys[SDLK_ESCAPE] = frame > 780 ? 1 : 0;
        stage.listening = frame >= 780;
    };
    EXPECT_EQ(host::playShow(), 0);
    cut("glDetachShader 9 8", "");
    const Points& lattice = stage.drawings.back();
    const auto isLower = [](const Point& p, const Point& q) { return p.position.y < q.position.y; };
    tell("The highest point:", told({*std::max_element(lattice.begin(), lattice.end(), isLower)}));
    tell("The last point:", told({lattice.back()}));
    out();
    expectStory("Frame");

    // All that the sound layer hears of a whole show, the same spectra as one.
    stage.keys = {};
    stage.atSwap = [] {
        stage.now += 400;
        stage.drawings.clear();
        keep("FMOD");
    };
    EXPECT_EQ(host::playShow(), 0);
    keep("FMOD");
    out();
    expectStory("Sound");
}

TEST_F(Show, startsOnlyWhereItCanBeSeen) {
    escapeIn(1);
    const auto tellShow = [](const std::string& failing, GLuint broken) {
        stage.failing = failing;
        stage.broken = {broken};
        tell(failing, broken, "status", host::playShow());
        tell(out() + err());
    };
    for (const char* failing : {"SDL_SetVideoMode", "glewInit", "GL_ARB_framebuffer_object",
                                "GL_ARB_framebuffer_sRGB", "glGenFramebuffers", "glCheckFramebufferStatus"}) {
        tellShow(failing, 0);
    }
    for (GLuint broken = 1; broken <= 9; ++broken) {
        tellShow("shader or program", broken);
    }
    expectStory("Failures");
}

TEST_F(Show, everyErrorOfOpenGlIsNamedAndEndsIt) {
    escapeIn(1);
    tellChecks([] {
        tell("status", host::playShow());
        EXPECT_THAT(out(), testing::EndsWith("\nZentrik closed\n"));
    });
    keep("status");
    expectStory("Checks of the show");
}

TEST_F(Show, heedsSignalsUnlessTheyAreIgnored) {
    const auto playWith = [](int wanted, const std::vector<int>& requests) {
        playTo(wanted, [&requests](int frame) {
            stage.keys[SDLK_ESCAPE] = frame == 5 ? 1 : 0;
            for (const int request : requests) {
                EXPECT_EQ(frame == 3 ? raise(request) : 0, 0);
            }
        });
    };
    for (const int request : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        std::signal(request, SIG_DFL); // whatever the tests were started with
        EXPECT_EXIT(playWith(3, {request}), ENDS_WELL, "");
        EXPECT_EXIT(playWith(3, {SIGTERM, request}), testing::KilledBySignal(request), "");
        std::signal(request, SIG_IGN);
        EXPECT_EXIT(playWith(5, {request}), ENDS_WELL, "");
        std::signal(request, SIG_DFL);
    }
}

TEST_F(Show, printsNowhereWhenTheConsoleIsClosed) {
    const auto run = [] {
        const int next = dup(STDIN_FILENO); // the first that is free
        close(next);
        for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            close(descriptor);
        }
        playTo(1, [next](int frame) {
            char any = 0;
            const bool open = write(1, &any, 1) == 1 && write(2, &any, 1) == 1 && read(0, &any, 1) == 0;
            stage.keys[SDLK_ESCAPE] = frame == 1 && open && dup(1) == next ? 1 : 0;
        });
    };
    EXPECT_EXIT(run(), ENDS_WELL, "");
}

TEST_F(Show, goesOnWithWhateverTheSoundLayerRefuses) {
    std::size_t calls = 1;
    std::ptrdiff_t before = 0;
    for (std::size_t n = 0; n <= calls; ++n) { // first none, then each
        stage = Stage();
        EXPECT_TRUE(n < 3 || living == before) << n; // released all but what the first words on err lay in
        before = living;
        escapeIn(4);
        stage.failingSoundCall = n;
        EXPECT_EQ(host::playShow(), 0);
        EXPECT_THAT(out(), ENDS);
        const std::string said = err(); // of what was to be opened, and of the track when the system was not
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'),
                  n == 1 ? 2 : static_cast<int>(n == 2 || n == 4));
        calls = std::max(calls, stage.soundCalls);
    }
    EXPECT_GT(calls, 9U);
}
} // namespace
