// The whole program on the stage.

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "StandIns/Stage.h"

namespace {
using testing::ExitedWithCode;

const std::string BEGINNING =
    "Zentrik initiliased\nMusic created\nScene creation\nGeometry generation\n"
    "Texture preparation (R2T)\nGL Texture ID created: 1\nGL Texture ID created: 2\n"
    "Frame buffer preparation (R2T)\nNew FrameBuffer id: 1\nFrameBuffer created\nStart !\n";
const std::string END = "End !\nFrameBuffer '1' deleted\nMusic deleted\nZentrik closed\n";

/// As a regular expression.
std::string escaped(std::string text) {
    for (std::size_t at = 0; (at = text.find_first_of("()", at)) != std::string::npos; at += 2) {
        text.insert(at, "\\");
    }
    return text;
}

class Show : public OnStage {
protected:
    Show() { stage().listening = false; }

    /// A whole show on a slow machine, with a spectrum of its own in every frame. A hash of everything drawn.
    static std::uint64_t play(Uint32 start) {
        stage() = Stage();
        stage().listening = false;
        stage().hashing = true;
        stage().now = start;
        stage().atSwap = [] { stage().now += 200; };
        stage().spectrum = [](float* spectrum) {
            static unsigned int frame;
            frame = stage().drawn.size() < 2000 ? 0 : frame + 1; // the show begins with these
            for (unsigned int band = 0; band < 16; ++band) {
                spectrum[band] = static_cast<float>((frame * 7 + band * band * 5) % 31) / 100;
            }
        };
        EXPECT_EQ(perform(), 0);
        return stage().hash;
    }
    /// Escape is held from the frame of that number on.
    static void escapeIn(int frame) {
        stage().atSwap = [frame]() mutable { stage().keys[SDLK_ESCAPE] = --frame <= 0 ? 1 : 0; };
    }
};

TEST_F(Show, goesByTheSeedAndTheMusicAloneToItsEnd) {
    play(1000); // lays in what is kept for the life of the program, greetings among it
    EXPECT_EQ(out(), BEGINNING + END);
    EXPECT_EQ(err(), "");
    EXPECT_EQ(stage().liveObjects, 0);
    EXPECT_NEAR(stage().now, 106000, 4000);
    srandom(42);
    for (const int number : stage().drawn) {
        ASSERT_EQ(number, random());
    }
    const std::uint64_t hash = play(1000);
    EXPECT_EQ(play(0xFFFFFFFF - 50005), hash); // across the wrap of the clock

    namespace fs = std::filesystem;
    const fs::path home = fs::current_path();
    const fs::path elsewhere = testing::TempDir() + "show." + std::to_string(getpid());
    fs::create_directories(elsewhere / "data");
    fs::copy("data/shaders", elsewhere / "data/shaders", fs::copy_options::recursive);
    fs::current_path(elsewhere);
    out();
    EXPECT_EQ(play(1000), hash); // without settings it is the show of the seed 42
    EXPECT_EQ(err(), "Fail to open the setting file\n");
    std::ofstream("data/settings.ini") << "seed 43.9";
    EXPECT_NE(play(1000), hash);
    std::ofstream("data/settings.ini") << "hres 800.9 vres 600.2 seed -3e30";
    stage() = Stage();
    escapeIn(1);
    EXPECT_EQ(perform(), 0);
    EXPECT_THAT(calls(), testing::Contains("glViewport 0 0 800 600"));
    fs::current_path(home);
    fs::remove_all(elsewhere);
}

TEST_F(Show, allocatesNothingPerFrameButTheListOfSegments) {
    std::vector<std::size_t> counts;
    counts.reserve(10000);
    stage().drawn.reserve(1000000);
    stage().spectrum = [](float* spectrum) { std::fill(spectrum, spectrum + 512, 0.26f); };
    stage().atSwap = [&] { counts.push_back(allocations()); };
    perform();
    counts.clear();
    EXPECT_EQ(perform(), 0);
    ASSERT_GT(counts.size(), 6500U);
    for (std::size_t frame = 2; frame < counts.size(); ++frame) {
        ASSERT_LE(counts[frame] - counts[frame - 1], 2U) << frame;
    }
}

TEST_F(Show, composesItsFrameFromFourPasses) {
    stage().listening = true;
    stage().keys[SDLK_ESCAPE] = 1;
    EXPECT_EQ(perform(), 0);
    EXPECT_EQ(out(), BEGINNING + END);
    const std::string WATCHED =
        " SDL_Init SDL_SetVideoMode SDL_PumpEvents SDL_GL_SwapBuffers SDL_Quit glEnable glDisable "
        "glBindTexture "
        "glTexImage2D glBindFramebuffer glFramebufferTexture2D glCompileShader glLinkProgram glUseProgram "
        "glUniform1f "
        "glGetUniformLocation glViewport gluPerspective gluOrtho2D gluLookAt glClearColor glClear "
        "glBlendFunc "
        "glVertex2f glTexCoord2f glDeleteProgram glDeleteTextures glDeleteFramebuffers FMOD_System_PlaySound "
        "FMOD_Channel_Stop FMOD_System_Close ";
    std::string story;
    for (const std::string& line : calls()) {
        if (WATCHED.find(" " + line.substr(0, line.find(' ')) + " ") != std::string::npos ||
            line == call("glDrawElements", GL_LINES, 39600, GL_UNSIGNED_INT)) {
            story += line.substr(line.rfind("gl", 0) == 0 ? 2 : 0) + "; ";
        }
    }
    const auto texture = [](int name) {
        return call("BindTexture 3553", name) +
               "; TexImage2D 3553 0 32856 640 480 0 6408 5121 ; BindTexture 3553 0; ";
    };
    const auto target = [](int name) {
        return call("BindFramebuffer 36160 1; FramebufferTexture2D 36160 36064 3553", name) +
               " 0; BindFramebuffer 36160 0; BindFramebuffer 36160 1; ";
    };
    const std::string window = "BindFramebuffer 36160 0; ";
    const std::string clear = "ClearColor 0 0 0 1; Clear 16640; ";
    const std::string scene =
        "UseProgram 3; GetUniformLocation 3 amplif; Uniform1f 97 0; GetUniformLocation 3 fade; "
        "Uniform1f 102 0; uLookAt 38 4 34 36 0 37 0 1 0; DrawElements 1 39600 5125; UseProgram 0; ";
    const auto quad = [](int program, int texture) {
        return call("UseProgram", program) + call("; GetUniformLocation", program, "blurOffset") +
               "; Viewport 0 0 640 480; uOrtho2D 0 1 0 1; Disable 2929; Enable 3553; " +
               call("BindTexture 3553", texture) +
               "; TexCoord2f 1 1; Vertex2f 1 1; TexCoord2f 0 1; Vertex2f 0 1; TexCoord2f 0 0; Vertex2f 0 0; "
               "TexCoord2f "
               "1 0; Vertex2f 1 0; BindTexture 3553 0; Disable 3553; Enable 2929; UseProgram 0; ";
    };
    EXPECT_EQ(
        story,
        "SDL_Init 32; SDL_SetVideoMode 640 480 32 2147483650; SDL_PumpEvents; CompileShader 1; CompileShader "
        "2; "
        "LinkProgram 3; CompileShader 4; CompileShader 5; LinkProgram 6; CompileShader 7; CompileShader 8; "
        "LinkProgram 9; Enable 3553; Disable 2884; " +
            texture(1) + texture(2) + target(1) + window + "FMOD_System_PlaySound 1 -1 2 0; " + //
            target(1) + "Viewport 0 0 640 480; uPerspective 45 1 0.1 120; " + clear + scene + window +
            target(2) + "ClearColor 0 0 0.25 1; Clear 16640; " + quad(6, 1) + window + clear + scene +
            "Disable 2929; Enable 3042; BlendFunc 770 1; " + quad(9, 2) +
            "Disable 3042; Enable 2929; SDL_GL_SwapBuffers; SDL_PumpEvents; UseProgram 0; DeleteProgram 9; "
            "UseProgram 0; DeleteProgram 6; UseProgram 0; DeleteProgram 3; FMOD_Channel_Stop 3; "
            "DeleteFramebuffers 1; DeleteTextures 2; DeleteTextures 1; FMOD_System_Close 1; SDL_Quit; ");
}

TEST_F(Show, startsOnlyWhereItCanBeSeen) {
    const std::tuple<const char*, int, const char*> CASES[] = {
        {"SDL_SetVideoMode", 252, "^Fail to create the window\nException cought\n$"},
        {"glewInit", 254, "^GLEW is unwell\nGlew failed to initialise\n$"},
        {"GL_ARB_framebuffer_object", 0,
         "^Zentrik initiliased\nExtension 'GL_ARB_framebuffer_object' not found\nThe demo needs better "
         "hardware. Sorry "
         "about it\nZentrik closed\n$"},
        {"GL_ARB_framebuffer_sRGB", 0, "\nExtension 'GL_ARB_framebuffer_sRGB' not found\nThe demo needs"},
        {"glGenFramebuffers", 252,
         "id: 0\nMusic deleted\nZentrik closed\nFrameBuffer id is 0\nException cought\n$"},
        {"glCheckFramebufferStatus", 0, "\nFail to validate the FBO\n$"},
        {"SDL_Init", 0, "\nEnd !\n"},
    };
    escapeIn(1);
    for (const auto& [failing, status, text] : CASES) {
        stage().failing = {failing};
        EXPECT_EXIT(performAndExit(), ExitedWithCode(status), text);
    }
    stage().failing = {};
    const std::pair<GLuint, std::string> SHADERS[] = {
        {1, "Fail to link the shader 'data/shaders/pulse.vs': log\nFail to create the shader"},
        {5, "Fail to link the shader 'data/shaders/hblur.ps': log\nFail to create the shader"},
        {9, "Fail to create the shader: data/shaders/vblur.vs data/shaders/vblur.ps Linking"}};
    for (const auto& [shader, text] : SHADERS) {
        stage().broken = {shader};
        EXPECT_EXIT(performAndExit(), ExitedWithCode(253),
                    "\nGeometry generation\n" + text + "\nMusic deleted\nZentrik closed\n");
    }
    stage().broken = {};
    stage().errors = {GL_STACK_OVERFLOW}; // left over from the start of the libraries
    EXPECT_EXIT(performAndExit(), ExitedWithCode(0), "OpenGL Error: 1283\n$");
}

TEST_F(Show, everyErrorOfOpenGlIsNamedAndEndsIt) {
    const std::vector<std::string> texture = {"glGenTextures", "glBindTexture", "glTexParameterf",
                                              "glBindTexture (unbind)", "Texture creation"};
    const std::vector<std::string> attach = {"glBindFrameBuffer", "glFramebufferTexture2D",
                                             "glBindFrameBuffer (unbind)", "glBindFrameBuffer"};
    const std::vector<std::string> unbind = {"glBindFrameBuffer (unbind)"};
    const std::vector<std::string> scene = {"glGetUniformLocation 'amplif'", "glGetUniformLocation 'fade'"};
    const std::vector<std::string> quad = {"glGetUniformLocation 'blurOffset'", "glBindTexture",
                                           "glBindTexture (unbind)"};
    std::vector<std::string> labels = {"glCreateShader", "glCreateShader", "glCreateShader"};
    for (const auto& step : {texture,
                             texture,
                             {"glGenFrameBuffers"},
                             attach,
                             unbind, // the start
                             attach,
                             scene,
                             unbind,
                             attach,
                             quad,
                             {"Draw"},
                             unbind,
                             scene,
                             quad}) {
        labels.insert(labels.end(), step.begin(), step.end());
    }
    escapeIn(1);
    for (std::size_t n = 0; n < labels.size(); ++n) {
        stage().errors.assign(n + 1, GL_NO_ERROR); // the very first is only reported
        stage().errors.push_back(GL_INVALID_OPERATION);
        EXPECT_EXIT(performAndExit(), ExitedWithCode(253),
                    "\nZentrik closed\nInvalid operation in '" + escaped(labels[n]) + "'\n$");
    }
    stage().errors = {};
    EXPECT_EQ(perform(), 0);
    EXPECT_EQ(stage().errorChecks, labels.size() + 1);
}

TEST_F(Show, goesOnWithWhateverTheSoundLayerRefuses) {
    std::size_t soundCalls = 1;
    for (std::size_t n = 0; n <= soundCalls; ++n) { // first none, then each
        stage() = Stage();
        escapeIn(4);
        stage().failingSoundCall = n;
        EXPECT_EQ(perform(), 0);
        EXPECT_EQ(out(), BEGINNING + END);
        const std::string reports =
            err(); // of what was to be opened, and of the track when the system was not
        EXPECT_EQ(std::count(reports.begin(), reports.end(), '\n'), n == 1             ? 2
                                                                    : n == 2 || n == 4 ? 1
                                                                                       : 0)
            << n;
        soundCalls = std::max(soundCalls, stage().soundCalls);
    }
    EXPECT_GT(soundCalls, 9U);
}
} // namespace
