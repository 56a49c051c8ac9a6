// The whole program on the stage.

#include "StandIns/Stage.h"
#include "Timeline.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>

namespace {
const std::string BEGINNING =
    "Zentrik initiliased\nMusic created\nScene creation\nGeometry generation\n"
    "Texture preparation (R2T)\nGL Texture ID created: 10\nGL Texture ID created: 11\n"
    "Frame buffer preparation (R2T)\nNew FrameBuffer id: 12\nFrameBuffer created\nStart !\n";
const std::string END = "End !\nFrameBuffer '12' deleted\nMusic deleted\nZentrik closed\n";

class Show : public OnStage {
protected:
    Show() { stage.listening = false; }

    /// A whole show on a slow machine, with a spectrum of its own in every frame. A hash of everything drawn.
    static std::uint64_t play(Uint32 start) {
        stage = Stage();
        stage.listening = false;
        stage.hashing = true;
        stage.now = start;
        stage.atSwap = [] { stage.now += 200; };
        stage.spectrum = [frame = 0U](float* spectrum) mutable {
            ++frame;
            for (unsigned int band = 0; band < 16; ++band) {
                spectrum[band] = static_cast<float>((frame * 7 + band * band * 5) % 31) / 100;
            }
        };
        EXPECT_EQ(host::playShow(), 0);
        return stage.hash;
    }
    /// Escape is held from the frame of that number on.
    static void escapeIn(int frame) {
        stage.atSwap = [frame]() mutable { stage.keys[SDLK_ESCAPE] = --frame <= 0 ? 1 : 0; };
    }
    /// In a process of its own: whether the show ends well in its frame of that number.
    static void playTo(int wanted, const std::function<void(int frame)>& inFrame) {
        int frame = 0;
        stage.atSwap = [&frame] { ++frame; };
        stage.atPump = [&] { inFrame(frame); }; // the keyboard, which comes first, is being asked
        const bool well = host::playShow() == 0 && frame == wanted && out() + err() == BEGINNING + END;
        std::exit(well ? 0 : 1);
    }
};

TEST_F(Show, goesByTheSeedAndTheMusicAloneToItsEnd) {
    play(1000); // lays in what is kept for the life of the program, greetings among it
    EXPECT_EQ(out() + err(), BEGINNING + END);
    EXPECT_NEAR(stage.now, 106000, 4000);
    srandom(42); // nobody seeds anew
    EXPECT_TRUE(std::all_of(stage.drawn.begin(), stage.drawn.end(), [](int n) { return n == random(); }));
    const std::uint64_t hash = play(1000);
    EXPECT_EQ(play(0xFFFFFFFF - 50005), hash); // across the wrap of the clock

    namespace fs = std::filesystem;
    const fs::path home = fs::current_path();
    const fs::path elsewhere = testing::TempDir() + "show." + std::to_string(getpid());
    fs::create_directories(elsewhere / "data");
    fs::copy("data/shaders", elsewhere / "data/shaders", fs::copy_options::recursive);
    fs::current_path(elsewhere);
    EXPECT_EQ(play(1000), hash); // without settings it is the show of the seed 42
    EXPECT_EQ(err(), "Fail to open the setting file\n");
    std::ofstream("data/settings.ini") << "seed 43.9 hres 800.9 vres 600.2";
    EXPECT_NE(play(1000), hash);
    srandom(43);
    EXPECT_TRUE(std::all_of(stage.drawn.begin(), stage.drawn.end(), [](int n) { return n == random(); }));
    stage.listening = true;
    escapeIn(1);
    EXPECT_EQ(host::playShow(), 0);
    const std::string size = "glViewport 0 0 800 600; ";
    const std::string texture = "glTexImage2D 3553 0 32856 800 600 0 6408 5121 empty; ";
    EXPECT_EQ(calls(" SDL_SetVideoMode glViewport glTexImage2D "),
              "SDL_SetVideoMode 800 600 32 2147483650; " + texture + texture + size + size + size);
    std::ofstream("data/settings.ini") << "hres 9e9 vres -9e9";
    EXPECT_EQ(host::playShow(), 0);
    EXPECT_EQ(calls(" SDL_SetVideoMode "), "SDL_SetVideoMode 2147483520 -2147483648 32 2147483650; ");
    fs::current_path(home);
    fs::remove_all(elsewhere);
}

TEST_F(Show, keepsItsTimelineAndAllocatesNothingInAFrame) {
    std::vector<std::size_t> counts;
    std::vector<unsigned int> cuts;
    counts.reserve(10000);
    cuts.reserve(100);
    stage.drawn.reserve(1000000);
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
        for (std::size_t shot = 0; shot < 4 && timeline::SCENES[scene].shots[shot] != 0; ++shot) {
            planned.push_back(timeline::shotStart(scene, shot));
            EXPECT_EQ(timeline::sceneOf(planned.back()), scene);
        }
    }
    EXPECT_EQ(cuts, planned);
    EXPECT_EQ(counts.size(), timeline::SHOW_FRAMES);
}

TEST_F(Show, makesExactlyTheseCalls) {
    const auto drop = [](const auto& isUnwanted) {
        stage.calls.erase(std::remove_if(stage.calls.begin(), stage.calls.end(), isUnwanted),
                          stage.calls.end());
    };
    // From the start to the first frame, and from there to the end.
    escapeIn(1);
    stage.atSwap = [escape = stage.atSwap, &drop] {
        escape();
        drop([framed = false](const std::string& line) mutable {
            framed = framed || line == "glUseProgram 3";
            return framed || line.find("glShaderSource") == 0;
        });
    };
    stage.listening = true;
    EXPECT_EQ(host::playShow(), 0);
    expectStory("Start and end");

    // One frame of the second scene, from the end of the one before.
    stage.listening = false;
    stage.keys = {};
    stage.atSwap = [count = 0]() mutable {
        stage.now += 7;
        ++count;
        stage.keys[SDLK_ESCAPE] = count > 780 ? 1 : 0;
        stage.listening = count == 780;
    };
    EXPECT_EQ(host::playShow(), 0);
    out();
    expectStory("Frame");

    // All that the sound layer hears of a short show, the same spectra as one.
    const auto keepSounds = [&drop] {
        drop([](const std::string& line) { return line.substr(0, 4) != "FMOD"; });
        stage.calls.erase(std::unique(stage.calls.begin(), stage.calls.end()), stage.calls.end());
        stage.drawings.clear();
    };
    stage.keys = {};
    stage.atSwap = [&keepSounds] {
        stage.now += 400;
        keepSounds();
    };
    stage.listening = true;
    EXPECT_EQ(host::playShow(), 0);
    keepSounds();
    out();
    expectStory("Sound");
}

TEST_F(Show, startsOnlyWhereItCanBeSeen) {
    const std::string needs = "' not found\nThe demo needs better hardware. Sorry about it\nZentrik closed\n";
    const std::string failed = "Fail to create the shader";
    const std::string ended = "\nMusic deleted\nZentrik closed\n";
    const std::tuple<const char*, std::set<GLuint>, int, std::string> CASES[] = {
        {"SDL_SetVideoMode", {}, -4, "Fail to create the window\nException cought\n"},
        {"glewInit", {}, -2, "GLEW is unwell\nGlew failed to initialise\n"},
        {"GL_ARB_framebuffer_object", {}, 0, "\nExtension 'GL_ARB_framebuffer_object" + needs},
        {"GL_ARB_framebuffer_sRGB", {}, 0, "\nExtension 'GL_ARB_framebuffer_sRGB" + needs},
        {"glGenFramebuffers", {}, -4, ended + "FrameBuffer id is 0\nException cought\n"},
        {"glCheckFramebufferStatus", {}, 0, "\nZentrik closed\nFail to validate the FBO\n"},
        {"", {1}, -3, "Fail to link the shader 'data/shaders/pulse.vs': log\n" + failed + ended},
        {"", {5}, -3, "Fail to link the shader 'data/shaders/hblur.ps': log\n" + failed + ended},
        {"",
         {9},
         -3,
         failed + ": data/shaders/vblur.vs data/shaders/vblur.ps Linking" + ended +
             "Erreur lors du liage du shader:\nlog"}};
    escapeIn(1);
    for (const auto& [failing, broken, status, text] : CASES) {
        stage.failing = failing;
        stage.broken = broken;
        EXPECT_EQ(host::playShow(), status);
        EXPECT_THAT(out() + err(), testing::EndsWith(text));
    }
    stage.failing = "";
    stage.broken = {};
    stage.errorChecks = 0;
    stage.errors = {GL_STACK_OVERFLOW}; // left over from the start of the libraries
    EXPECT_EQ(host::playShow(), 0);
    EXPECT_EQ(out() + err(), BEGINNING + END + "OpenGL Error: 1283\n");
}

TEST_F(Show, everyErrorOfOpenGlIsNamedAndEndsIt) {
    const std::string texture =
        "glGenTextures;glBindTexture;glTexParameterf;glBindTexture (unbind);Texture creation;";
    const std::string unbind = "glBindFrameBuffer (unbind);";
    const std::string attach = "glBindFrameBuffer;glFramebufferTexture2D;" + unbind + "glBindFrameBuffer;";
    const std::string scene = "glGetUniformLocation 'amplif';glGetUniformLocation 'fade';";
    const std::string quad = "glGetUniformLocation 'blurOffset';glBindTexture;glBindTexture (unbind);";
    std::istringstream labels("glCreateShader;glCreateShader;glCreateShader;" + texture + texture +
                              "glGenFrameBuffers;" + attach + unbind + attach + scene + unbind + attach +
                              quad + "Draw;" + unbind + scene + quad);
    escapeIn(1);
    std::size_t n = 1; // the very first error is only reported
    for (std::string label; std::getline(labels, label, ';'); ++n) {
        stage.errorChecks = 0;
        stage.errors.assign(n, GL_NO_ERROR);
        stage.errors.push_back(GL_INVALID_OPERATION);
        EXPECT_EQ(host::playShow(), -3);
        EXPECT_THAT(out(), testing::EndsWith("\nZentrik closed\n"));
        EXPECT_EQ(err(), "Invalid operation in '" + label + "'\n");
        stage.places.resize(1);
    }
    stage.errors = {};
    stage.errorChecks = 0;
    EXPECT_EQ(host::playShow(), 0);
    EXPECT_EQ(stage.errorChecks, n);
}

using Signals = Show;
const auto ENDS_WELL = testing::ExitedWithCode(0);

TEST_F(Signals, endTheShowAsEscapeDoesAndTheSecondAtOnce) {
    for (const int request : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        std::signal(request, SIG_DFL); // whatever the tests were started with
        const auto ask = [request](int frame) { return frame == 3 ? raise(request) : 0; };
        EXPECT_EXIT(playTo(3, ask), ENDS_WELL, "");
        const auto insist = [request](int frame) { return frame == 3 ? raise(SIGTERM) + raise(request) : 0; };
        EXPECT_EXIT(playTo(3, insist), testing::KilledBySignal(request), "");
    }
}

TEST_F(Signals, areLeftToWhoeverIgnoresThem) {
    std::signal(SIGHUP, SIG_IGN);
    const auto ask = [](int frame) {
        stage.keys[SDLK_ESCAPE] = frame == 5 ? 1 : 0;
        return frame == 3 ? raise(SIGHUP) : 0;
    };
    EXPECT_EXIT(playTo(5, ask), ENDS_WELL, "");
    std::signal(SIGHUP, SIG_DFL);
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
    std::size_t soundCalls = 1;
    for (std::size_t n = 0; n <= soundCalls; ++n) { // first none, then each
        stage = Stage();
        escapeIn(4);
        stage.failingSoundCall = n;
        EXPECT_EQ(host::playShow(), 0);
        EXPECT_EQ(out(), BEGINNING + END);
        const std::string said = err(); // of what was to be opened, and of the track when the system was not
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'),
                  n == 1 ? 2 : static_cast<int>(n == 2 || n == 4));
        soundCalls = std::max(soundCalls, stage.soundCalls);
    }
    EXPECT_GT(soundCalls, 9U);
}
} // namespace
