// The whole program on the stage.

#include "StandIns/Stage.h"
#include "Timeline.h"

#include <cmath>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {
const auto ENDS = testing::EndsWith("End !\nFrameBuffer '12' deleted\nMusic deleted\nZentrik closed\n");

class Show : public OnStage {
protected:
    Show() { stage.watching = false; }

    /// Escape is held from the frame of that number on.
    static void escapeIn(int frame) {
        stage.atSwap = [frame]() mutable { stage.keys[SDLK_ESCAPE] = --frame <= 0 ? 1 : 0; };
    }
};

TEST_F(Show, goesByItsSettingsAndItsSeed) {
    namespace fs = std::filesystem;
    const fs::path home = fs::current_path();
    const fs::path elsewhere = testing::TempDir() + "show." + std::to_string(getpid());
    fs::create_directories(elsewhere / "data");
    fs::current_path(elsewhere);
    std::ofstream("data/settings.ini") << "seed -1.9 hres 800.9 vres 600.2";
    stage.watching = true;
    EXPECT_EQ(host::playShow(), -3) << "all is there before the shaders, which are not";
    EXPECT_THAT(story(), testing::HasSubstr("SDL_SetVideoMode 800 600"));
    srandom(0xFFFFFFFF); // nobody seeds anew
    for (const int drawn : stage.chance) {
        ASSERT_EQ(drawn, random());
    }
    fs::current_path(home);
    fs::remove_all(elsewhere);
}

TEST_F(Show, keepsItsTimelineAndAllocatesNothingInAFrame) {
    std::vector<std::size_t> counts;
    std::vector<unsigned int> cuts;
    counts.reserve(10000);
    cuts.reserve(100);
    stage.chance.reserve(1000000);
    stage.now = 0xFFFFFFFF - 50005; // the clock wraps on the way
    stage.spectrum.fill(0.26f);
    stage.atSwap = [&, last = view]() mutable {
        const double way = std::hypot(view[0] - last[0], view[1] - last[1], view[2] - last[2]);
        if (way > 1) { // no camera moves as fast as that
            cuts.push_back(static_cast<unsigned int>(counts.size()));
        }
        last = view;
        counts.push_back(allocations);
    };
    EXPECT_EQ(host::playShow(), 0);
    EXPECT_EQ(counts.front(), counts.back());
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

TEST_F(Show, startsWithTheMusic) {
    escapeIn(1);
    stage.watching = true;
    EXPECT_EQ(host::playShow(), 0);
    const std::string all = story();
    EXPECT_THAT(all, testing::StartsWith(
                         "SDL_Init 32, SDL_SetVideoMode 640 480 32 2147483650, SDL_WM_SetCaption Kavel, "
                         "SDL_WM_SetCaption Kavel- (OpenGL), FMOD_System_Create, FMOD_System_Init 10, "
                         "FMOD_System_CreateStream data/music/quelar.mp3 147785, keys, shader"));
    EXPECT_THAT(all, testing::HasSubstr("texture of 640 480 , texture of 640 480 , FMOD_System_PlaySound, "
                                        "FMOD_Channel_SetLoopCount -1, clear"));
}

TEST_F(Show, composesAFrameInFourPassesAndEndsOnEscape) {
    // The last frame of a show that Escape ends in the second scene.
    stage.spectrum.fill(0.2f);
    stage.atSwap = [frame = 0]() mutable {
        stage.now += 7;
        ++frame;
        stage.watching = frame >= 779;
        stage.keys[SDLK_ESCAPE] = frame == 780 ? 1 : 0;
    };
    EXPECT_EQ(host::playShow(), 0);
    EXPECT_EQ(story(),
              "keys, wait 8, FMOD_Channel_GetSpectrum 512 0 1, clear 10, lines into 10 by 3 by depth, "
              "clear 11, picture 10 into 11 by 6 over all, "
              "clear 0, lines into 0 by 3 by depth, picture 11 into 0 by 9 added, swap, keys, wait 8, "
              "FMOD_Channel_Stop, FMOD_Sound_Release, FMOD_System_Close, FMOD_System_Release, SDL_Quit");
}

TEST_F(Show, startsOnlyWhereItCanBeSeen) {
    const std::string unmade = "Fail to create the shader\nMusic deleted\n";
    // What fails, or the number of the shader or program that cannot be built; the status, the last words.
    const std::tuple<const char*, GLuint, int, std::string, const char*> FAILURES[] = {
        {"GL_ARB_framebuffer_object", 0, 0, "The demo needs better hardware. Sorry about it\n", ""},
        {"glGenFramebuffers", 0, -4, "id: 0\nMusic deleted\n", "FrameBuffer id is 0\nException cought\n"},
        {"complete", 0, 0, "End !\nFrameBuffer '12' deleted\nMusic deleted\n", "Fail to validate the FBO\n"},
        {"", 8, -3, "Fail to link the shader 'data/shaders/vblur.ps': log\n" + unmade, ""},
        {"", 6, -3, "shader: data/shaders/hblur.vs data/shaders/hblur.ps Linking\nMusic deleted\n",
         "Erreur lors du liage du shader:\nlog"}};
    escapeIn(1);
    for (const auto& [failing, broken, status, lastWords, complaint] : FAILURES) {
        stage.failing = failing;
        stage.broken = broken;
        EXPECT_EQ(host::playShow(), status) << failing << broken;
        EXPECT_THAT(out(), testing::EndsWith(lastWords + "Zentrik closed\n"));
        EXPECT_EQ(err(), complaint);
    }
}

TEST_F(Show, everyErrorOfOpenGlIsNamedAndEndsIt) {
    escapeIn(1);
    stage.failingCheck = 1; // one that waits at the start is only told
    EXPECT_EQ(host::playShow(), 0);
    EXPECT_EQ(err(), "OpenGL Error: 1282\n");
    ASSERT_LT(stage.errorChecks, 1000U) << "Escape did not end it";
    for (const std::size_t checks = stage.errorChecks; ++stage.failingCheck <= checks;) {
        stage.errorChecks = 0;
        EXPECT_EQ(host::playShow(), -3) << stage.failingCheck;
        EXPECT_THAT(err(), testing::MatchesRegex("Invalid operation in '.+'\n"));
    }
}

TEST_F(Show, heedsSignalsUnlessTheyAreIgnored) {
    // In a process of its own: whether the show ends well in its frame of that number.
    const auto playTo = [this](int wanted, int first, int request) {
        int frame = 0;
        stage.atSwap = [&] {
            stage.keys[SDLK_ESCAPE] = ++frame == 5 ? 1 : 0;
            EXPECT_EQ(frame == 3 ? raise(first) + raise(request) : 0, 0);
        };
        std::exit(host::playShow() == 0 && frame == wanted && testing::Matches(ENDS)(out()) ? 0 : 1);
    };
    for (const int request : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        std::signal(request, SIG_DFL); // whatever the tests were started with
        EXPECT_EXIT(playTo(3, 0, request), testing::ExitedWithCode(0), "");
        EXPECT_EXIT(playTo(3, SIGTERM, request), testing::KilledBySignal(request), "");
        std::signal(request, SIG_IGN);
        EXPECT_EXIT(playTo(5, 0, request), testing::ExitedWithCode(0), "");
        std::signal(request, SIG_DFL);
    }
}

TEST_F(Show, goesOnWithWhateverTheSoundLayerRefuses) {
    std::size_t calls = 1;
    for (std::size_t n = 0; n <= calls; ++n) { // first none, then each
        stage = Stage();
        escapeIn(4);
        stage.failingSoundCall = n;
        EXPECT_EQ(host::playShow(), 0);
        EXPECT_THAT(out(), ENDS);
        // A word for each of what was to be opened, the track too when there is no system for it.
        EXPECT_THAT(err(), testing::MatchesRegex(n == 1 ? ".+\n.+\n" : n == 2 || n == 4 ? ".+\n" : ""));
        calls = std::max(calls, stage.soundCalls);
        ASSERT_LT(calls, 1000U) << "Escape did not end it";
    }
    EXPECT_GT(calls, 9U);
}
} // namespace
