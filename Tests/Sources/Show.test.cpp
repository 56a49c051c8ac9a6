// The whole program on the stage.

#include "StandIns/Stage.h"
#include "Timeline.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <regex>

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
    /// Compares line by line.
    static void expectCalls(const std::string& wanted) {
        const std::regex end("; ");
        EXPECT_EQ(std::regex_replace(calls(), end, "\n"), std::regex_replace(wanted, end, "\n"));
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
    const std::string size = "Viewport 0 0 800 600; ";
    const std::string texture = "TexImage2D TEXTURE_2D 0 RGBA8 800 600 0 RGBA UNSIGNED_BYTE; ";
    EXPECT_EQ(calls(" SDL_SetVideoMode Viewport TexImage2D "),
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

std::string lines(int width, int ends) {
    return "EnableClientState VERTICES; EnableClientState COLOURS; VertexPointer 3 FLOAT; ColorPointer 4 "
           "FLOAT "
           "1; LineWidth " +
           call(std::to_string(width) + "; DrawElements 1", ends) +
           " UNSIGNED_INT; DisableClientState COLOURS; DisableClientState VERTICES; ";
}

/// The calls of a frame: its scene's view, pulse and fade, and what it draws besides the lattice.
std::string frame(const std::string& view, const std::string& pulse, const std::string& fade,
                  const std::string& own) {
    const std::string window = "BindFramebuffer FRAMEBUFFER 0; ";
    const std::string clear = "ClearColor 0 0 0 1; Clear COLOR|DEPTH; ";
    const std::string size = "Viewport 0 0 640 480; ";
    const std::string scene = "UseProgram 3; GetUniformLocation 3 amplif; Uniform1f 97 " + pulse +
                              "; GetUniformLocation 3 fade; Uniform1f 102 " + fade +
                              "; LoadIdentity; gluLookAt " + view + "; " + lines(4, 39600) + own +
                              "UseProgram 0; ";
    const auto target = [&](const std::string& texture) {
        const std::string bind = "BindFramebuffer FRAMEBUFFER 12; ";
        return bind + "FramebufferTexture2D FRAMEBUFFER COLOR0 TEXTURE_2D " + texture + " 0; " + window +
               bind;
    };
    const auto quad = [&](const std::string& program, const std::string& texture) {
        return "UseProgram " + program + "; GetUniformLocation " + program + " blurOffset; " + size +
               "MatrixMode PROJECTION; PushMatrix; LoadIdentity; gluOrtho2D 0 1 0 1; MatrixMode MODELVIEW; "
               "PushMatrix; LoadIdentity; Disable DEPTH_TEST; Enable TEXTURE_2D; BindTexture TEXTURE_2D " +
               texture +
               "; Begin 7; TexCoord2f 1 1; Vertex2f 1 1; TexCoord2f 0 1; Vertex2f 0 1; TexCoord2f 0 0; "
               "Vertex2f 0 "
               "0; TexCoord2f 1 0; Vertex2f 1 0; End; BindTexture TEXTURE_2D 0; Disable TEXTURE_2D; Enable "
               "DEPTH_TEST; MatrixMode PROJECTION; PopMatrix; MatrixMode MODELVIEW; PopMatrix; UseProgram "
               "0; ";
    };
    return target("10") + size +
           "MatrixMode PROJECTION; LoadIdentity; gluPerspective 45 1 0.1 120; MatrixMode MODELVIEW; " +
           clear + scene + window + target("11") + "ClearColor 0 0 0.25 1; Clear COLOR|DEPTH; " +
           quad("6", "10") + window + clear + scene + "Disable DEPTH_TEST; Enable BLEND; BlendFunc 770 1; " +
           quad("9", "11") + "Disable BLEND; Enable DEPTH_TEST; SDL_GL_SwapBuffers; ";
}

TEST_F(Show, makesExactlyTheseCalls) {
    std::string start = "SDL_Init 32; SDL_SetVideoMode 640 480 32 2147483650; SDL_WM_SetCaption Kavel; "
                        "SDL_WM_SetCaption Kavel- (OpenGL); glewInit; GL_ARB_framebuffer_object; "
                        "GL_ARB_framebuffer_sRGB; FMOD_System_Create 1; FMOD_System_Init 1 10 0 1; "
                        "FMOD_Sound_Release 0; FMOD_System_CreateStream 1 data/music/quelar.mp3 147785 1; "
                        "SDL_PumpEvents; SDL_GetKeyState; ";
    std::string end = "FMOD_Channel_Stop 1; DeleteFramebuffers 12; DeleteTextures 11; DeleteTextures 10; "
                      "FMOD_Sound_Release 1; FMOD_System_Close 1; FMOD_System_Release 1; SDL_Quit; ";
    for (int p = 3; p <= 9; p += 3) {
        start += call("CreateShader VERTEX; CreateShader FRAGMENT; CompileShader", p - 2) +
                 call("; CompileShader", p - 1) + call("; CreateProgram; AttachShader", p, p - 2) +
                 call("; AttachShader", p, p - 1) + call("; LinkProgram", p) + "; ";
        end = call("UseProgram 0; DetachShader", p, p - 1) + call("; DetachShader", p, p - 2) +
              call("; DeleteProgram", p) + call("; DeleteShader", p - 1) + call("; DeleteShader", p - 2) +
              "; " + end;
    }
    start += "Enable TEXTURE_2D; Disable CULL_FACE; ";
    for (const char* texture : {"10", "11"}) {
        start += std::string("GenTextures; BindTexture TEXTURE_2D ") + texture +
                 "; TexParameterf TEXTURE_2D MIN_FILTER LINEAR; TexImage2D TEXTURE_2D 0 RGBA8 640 480 0 RGBA "
                 "UNSIGNED_BYTE; BindTexture TEXTURE_2D 0; ";
    }
    start +=
        "GenFramebuffers; BindFramebuffer FRAMEBUFFER 12; FramebufferTexture2D FRAMEBUFFER COLOR0 TEXTURE_2D "
        "10 0; BindFramebuffer FRAMEBUFFER 0; BindFramebuffer FRAMEBUFFER 12; CheckFramebufferStatus "
        "FRAMEBUFFER; BindFramebuffer FRAMEBUFFER 0; FMOD_Channel_GetPaused 0; FMOD_System_PlaySound 1 -1 0; "
        "FMOD_Channel_SetLoopCount 1 -1; ";
    std::string title = "PushMatrix; Translatef 36 1 36; Rotatef 180 0 1 0; Scalef 0.3 0.3 0.3; ";
    for (const int strokes : {4, 2, 4, 5, 5, 4, 2}) {
        title += lines(8, 2 * strokes) + "Translatef 1.5 0 0; ";
    }
    const std::string input = "SDL_PumpEvents; SDL_GetKeyState; ";
    stage.listening = true;
    escapeIn(1);
    EXPECT_EQ(host::playShow(), 0);
    stage.calls.erase(std::remove_if(stage.calls.begin(), stage.calls.end(),
                                     [](auto& line) { return line.substr(0, 14) == "glShaderSource"; }),
                      stage.calls.end());
    expectCalls(start + frame("38 4 34 36 0 37 0 1 0", "0", "0", title + "PopMatrix; ") + input + end);

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
    expectCalls(input + "SDL_Delay 8; FMOD_Channel_GetSpectrum 1 512 0 1; " +
                frame("89.4473 4.07364 55.6073 83.4473 1 51.8036 0 1 0", "0", "0.57", ""));

    // All that the sound layer hears of a short show, the spectra of the frames as one.
    const auto keepSounds = [] {
        const auto noSound = [](const std::string& line) { return line.substr(0, 4) != "FMOD"; };
        stage.calls.erase(std::remove_if(stage.calls.begin(), stage.calls.end(), noSound), stage.calls.end());
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
    expectCalls("FMOD_System_Create 1; FMOD_System_Init 1 10 0 1; FMOD_Sound_Release 0; "
                "FMOD_System_CreateStream 1 data/music/quelar.mp3 147785 1; FMOD_Channel_GetPaused 0; "
                "FMOD_System_PlaySound 1 -1 0; FMOD_Channel_SetLoopCount 1 -1; "
                "FMOD_Channel_GetSpectrum 1 512 0 1; FMOD_Channel_Stop 1; FMOD_Sound_Release 1; "
                "FMOD_System_Close 1; FMOD_System_Release 1; ");
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
