// The whole program on the stage.

#include "StandIns/Stage.h"

#include <cstdlib>
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
    std::ofstream("data/settings.ini") << "seed 43.9";
    EXPECT_NE(play(1000), hash);
    fs::current_path(home);
    fs::remove_all(elsewhere);
}

TEST_F(Show, allocatesNothingPerFrameButTheListOfSegments) {
    std::vector<std::size_t> counts;
    counts.reserve(10000);
    stage.drawn.reserve(1000000);
    stage.spectrum = [](float* spectrum) { std::fill(spectrum, spectrum + 512, 0.26f); };
    stage.atSwap = [&] { counts.push_back(allocations); };
    host::playShow();
    counts.clear();
    EXPECT_EQ(host::playShow(), 0);
    ASSERT_GT(counts.size(), 6500U);
    for (std::size_t frame = 2; frame < counts.size(); ++frame) {
        ASSERT_LE(counts[frame] - counts[frame - 1], 2U) << frame;
    }
}

TEST_F(Show, composesItsFrameFromFourPasses) {
    stage.listening = true;
    stage.keys[SDLK_ESCAPE] = 1;
    EXPECT_EQ(host::playShow(), 0);
    const std::string clear = "ClearColor 0 0 0 1; Clear 16640; ";
    const std::string window = "BindFramebuffer 36160 0; ";
    const std::string scene =
        "UseProgram 3; Uniform1f 97 0; Uniform1f 102 0; uLookAt 38 4 34 36 0 37 0 1 0; UseProgram 0; ";
    const auto target = [&](const std::string& texture) {
        const std::string bind = "BindFramebuffer 36160 12; ";
        return bind + "FramebufferTexture2D 36160 36064 3553 " + texture + " 0; " + window + bind;
    };
    const auto quad = [](const std::string& program, const std::string& texture) {
        return "UseProgram " + program + "; uOrtho2D 0 1 0 1; Disable 2929; Enable 3553; BindTexture 3553 " +
               texture + "; BindTexture 3553 0; Disable 3553; Enable 2929; UseProgram 0; ";
    };
    const std::string off = "UseProgram 0; DeleteProgram ";
    EXPECT_THAT(
        calls(" glFramebufferTexture2D glBindFramebuffer glUseProgram glUniform1f gluPerspective gluOrtho2D "
              "gluLookAt glClearColor glClear glEnable glDisable glBlendFunc glBindTexture glDeleteProgram "
              "glDeleteTextures glDeleteFramebuffers SDL_GL_SwapBuffers SDL_Quit "),
        testing::EndsWith(target("10") + "uPerspective 45 1 0.1 120; " + clear + scene + window +
                          target("11") + "ClearColor 0 0 0.25 1; Clear 16640; " + quad("6", "10") + window +
                          clear + scene + "Disable 2929; Enable 3042; BlendFunc 770 1; " + quad("9", "11") +
                          "Disable 3042; Enable 2929; L_GL_SwapBuffers; " + off + "9; " + off + "6; " + off +
                          "3; DeleteFramebuffers 12; DeleteTextures 11; DeleteTextures 10; L_Quit; "));
}

TEST_F(Show, startsOnlyWhereItCanBeSeen) {
    const std::string needs = "' not found\nThe demo needs better hardware. Sorry about it\nZentrik closed\n";
    const std::string ended = "\nMusic deleted\nZentrik closed\n";
    const std::tuple<const char*, int, std::string> CASES[] = {
        // numbers are those of shaders and programs
        {"SDL_SetVideoMode", 252, "Fail to create the window\nException cought\n"},
        {"glewInit", 254, "GLEW is unwell\nGlew failed to initialise\n"},
        {"GL_ARB_framebuffer_object", 0, "Extension 'GL_ARB_framebuffer_object" + needs},
        {"GL_ARB_framebuffer_sRGB", 0, "Extension 'GL_ARB_framebuffer_sRGB" + needs},
        {"glGenFramebuffers", 252, "Music deleted\nZentrik closed\nFrameBuffer id is 0\nException cought\n"},
        {"glCheckFramebufferStatus", 0, "\nFail to validate the FBO\n"},
        {"1", 253, "Fail to link the shader 'data/shaders/pulse.vs': log\nFail to create the shader" + ended},
        {"5", 253, "Fail to link the shader 'data/shaders/hblur.ps': log\nFail to create the shader" + ended},
        {"9", 253, "Fail to create the shader: data/shaders/vblur.vs data/shaders/vblur.ps Linking" + ended},
    };
    escapeIn(1);
    for (const auto& [failing, status, text] : CASES) {
        stage.failing = failing;
        stage.broken = std::strtoul(failing, nullptr, 10);
        expectExit(status, text);
    }
    stage.failing = "";
    stage.broken = 0;
    stage.errors = {GL_STACK_OVERFLOW}; // left over from the start of the libraries
    expectExit(0, "OpenGL Error: 1283\n");
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
        stage.errors.assign(n, GL_NO_ERROR);
        stage.errors.push_back(GL_INVALID_OPERATION);
        expectExit(253, "\nZentrik closed\nInvalid operation in '" + label + "'\n");
    }
    stage.errors = {};
    EXPECT_EQ(host::playShow(), 0);
    EXPECT_EQ(stage.errorChecks, n);
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
