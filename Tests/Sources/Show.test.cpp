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
    Show() { stage.watching = false; }

    /// Escape is held from the frame of that number on.
    static void escapeIn(int frame) {
        stage.atSwap = [frame]() mutable { stage.keys[SDLK_ESCAPE] = --frame <= 0 ? 1 : 0; };
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
    fs::copy("data/shaders", elsewhere / "data/shaders");
    fs::current_path(elsewhere);
    escapeIn(1);
    std::string complaint = "Fail to open the setting file\n"; // first there are none
    for (const auto& [settings, seed, size] : {std::tuple("seed 43.9 hres 800.9 vres 600.2", 42U, "640 480"),
                                               {"seed -1 hres 9e9 vres -9e9", 43, "800 600"},
                                               {"", 0xFFFFFFFF, "2147483520 -2147483648"}}) {
        stage.chance.clear();
        stage.watching = true;
        EXPECT_EQ(host::playShow(), 0);
        srandom(seed); // nobody seeds anew
        EXPECT_TRUE(
            std::all_of(stage.chance.begin(), stage.chance.end(), [](int n) { return n == random(); }));
        EXPECT_THAT(story(), testing::HasSubstr(text("SDL_SetVideoMode", size, "32 2147483650")));
        EXPECT_EQ(err(), complaint);
        complaint.clear();
        std::ofstream("data/settings.ini") << settings;
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
    stage.spectrum = [](float* spectrum) { std::fill(spectrum, spectrum + 512, 0.26f); };
    stage.atSwap = [&, last = view]() mutable {
        if (std::hypot(view[0] - last[0], view[1] - last[1], view[2] - last[2]) >
            1) { // none moves as fast as that
            cuts.push_back(static_cast<unsigned int>(counts.size()));
        }
        last = view;
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

TEST_F(Show, composesAFrameInFourPassesAndEndsOnEscape) {
    // The last frame of a show that Escape ends in the second scene.
    stage.spectrum = [](float* spectrum) { std::fill(spectrum, spectrum + 512, 0.2f); };
    stage.atSwap = [frame = 0]() mutable {
        stage.now += 7;
        ++frame;
        stage.watching = frame >= 779;
        stage.keys[SDLK_ESCAPE] = frame == 780 ? 1 : 0;
    };
    EXPECT_EQ(host::playShow(), 0);
    EXPECT_EQ(
        story(),
        "keys, wait 8, FMOD_Channel_GetSpectrum 512 0 1, clear 10 to 0 0 0, lines into 10 by 3 by depth, "
        "clear 11 to 0 0 0.25, picture 10 into 11 by 6 over all, "
        "clear 0 to 0 0 0, lines into 0 by 3 by depth, picture 11 into 0 by 9 added, swap, keys, wait 8, "
        "FMOD_Channel_Stop, FMOD_Sound_Release, FMOD_System_Close, FMOD_System_Release, SDL_Quit");
    for (const int pass : {0, 2}) { // the lattice, through the pulse program
        const Drawing& scene = stage.drawings.at(pass);
        EXPECT_EQ(text(scene.beat, scene.fade, scene.sizes[1], scene.points.size()), "0 0.54 4 39600");
        EXPECT_EQ(text(scene.lens[0], scene.lens[1], scene.lens[3]), "45 1 120");
        EXPECT_EQ(highest(scene.points), 3);
    }
}

TEST_F(Show, startsWithTheMusicAndSaysWhatItDoes) {
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
    EXPECT_EQ(out(), "Zentrik initiliased\nMusic created\nScene creation\nGeometry generation\n"
                     "Texture preparation (R2T)\nGL Texture ID created: 10\nGL Texture ID created: 11\n"
                     "Frame buffer preparation (R2T)\nNew FrameBuffer id: 12\nFrameBuffer created\nStart !\n"
                     "End !\nFrameBuffer '12' deleted\nMusic deleted\nZentrik closed\n");
    EXPECT_EQ(err(), "");
}

TEST_F(Show, startsOnlyWhereItCanBeSeen) {
    const std::string closed = "Zentrik closed\n";
    const std::string poor = "' not found\nThe demo needs better hardware. Sorry about it\n" + closed;
    const std::tuple<const char*, int, std::string, const char*> FAILURES[] = {
        {"SDL_SetVideoMode", -4, "", "Fail to create the window\nException cought\n"},
        {"glewInit", -2, "", "GLEW is unwell\nGlew failed to initialise\n"},
        {"GL_ARB_framebuffer_object", 0, "Extension 'GL_ARB_framebuffer_object" + poor, ""},
        {"GL_ARB_framebuffer_sRGB", 0, "Extension 'GL_ARB_framebuffer_sRGB" + poor, ""},
        {"glGenFramebuffers", -4, "New FrameBuffer id: 0\nMusic deleted\n" + closed,
         "FrameBuffer id is 0\nException cought\n"},
        {"complete", 0, "End !\nFrameBuffer '12' deleted\nMusic deleted\n" + closed,
         "Fail to validate the FBO\n"}};
    escapeIn(1);
    for (const auto& [failing, status, lastWords, complaint] : FAILURES) {
        stage.failing = failing;
        EXPECT_EQ(host::playShow(), status) << failing;
        EXPECT_THAT(out(), testing::EndsWith(lastWords)) << failing;
        EXPECT_EQ(err(), complaint);
    }
    stage.failing = "";
    const std::string ending = "Music deleted\n" + closed;
    for (GLuint broken = 1; broken <= 9; ++broken) { // two shaders and their program, three times
        stage.broken = broken;
        const std::string file = std::string("data/shaders/") + (broken < 4   ? "pulse"
                                                                 : broken < 7 ? "hblur"
                                                                              : "vblur");
        const bool links = broken % 3 != 0;
        const std::string words =
            links ? "Fail to link the shader '" + file + (broken % 3 == 1 ? ".vs" : ".ps") +
                        "': log\nFail to create the shader\n"
                  : text("Fail to create the shader:", file + ".vs", file + ".ps", "Linking\n");
        EXPECT_EQ(host::playShow(), -3);
        EXPECT_THAT(out(),
                    testing::EndsWith(std::string("Geometry generation\n").append(words).append(ending)));
        EXPECT_EQ(err(), links ? "" : "Erreur lors du liage du shader:\nlog");
    }
}

TEST_F(Show, everyErrorOfOpenGlIsNamedAndEndsIt) {
    escapeIn(1);
    std::map<int, int> statuses;
    std::set<std::string> said;
    std::size_t n = 0;
    do { // at each check in turn
        stage.errorChecks = 0;
        stage.errors.assign(n, GL_NO_ERROR);
        stage.errors.push_back(GL_INVALID_OPERATION);
        ++statuses[host::playShow()];
        EXPECT_THAT(out(), testing::EndsWith("\nZentrik closed\n"));
        said.insert(err());
    } while (stage.errorChecks > n++);
    EXPECT_EQ(said.size(),
              16U); // one waits at the start, which is reported; behind the last check nobody looks
    EXPECT_THAT(
        said, testing::Each(testing::ContainsRegex("^(|OpenGL Error: 1282\n|Invalid operation in '.+'\n)$")));
    EXPECT_EQ(statuses, (std::map<int, int>{{-3, 40}, {0, 2}}));
}

TEST_F(Show, heedsSignalsUnlessTheyAreIgnored) {
    const auto playWith = [](int wanted, int first, int request) {
        playTo(wanted, [=](int frame) {
            stage.keys[SDLK_ESCAPE] = frame == 5 ? 1 : 0;
            EXPECT_EQ(frame == 3 ? raise(first) + raise(request) : 0, 0);
        });
    };
    for (const int request : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        std::signal(request, SIG_DFL); // whatever the tests were started with
        EXPECT_EXIT(playWith(3, 0, request), ENDS_WELL, "");
        EXPECT_EXIT(playWith(3, SIGTERM, request), testing::KilledBySignal(request), "");
        std::signal(request, SIG_IGN);
        EXPECT_EXIT(playWith(5, 0, request), ENDS_WELL, "");
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
