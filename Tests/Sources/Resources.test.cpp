// Owners of OpenGL objects where the show's own frame does not lead, and the line renderer.

#include <cstdio>
#include <fstream>

#include "3D/FrameBuffer.h"
#include "3D/Shader.h"
#include "3D/Texture.h"
#include "StandIns/Stage.h"
#include "Utils/GLUtils.h"

namespace {
using testing::ElementsAre;

class Resources : public OnStage {
protected:
    Resources() { glewInit(); }
    ~Resources() override {
        std::remove(vs.c_str());
        std::remove(ps.c_str());
    }

    /// The message of the ShaderException of the two files.
    static std::string failure(const std::string& vertex, const std::string& pixel) {
        try {
            const Shader shader(vertex, pixel);
        } catch (const ShaderException& exception) {
            return exception.what();
        }
        return "";
    }

    const std::string vs = testing::TempDir() + std::to_string(getpid()) + ".vs";
    const std::string ps = testing::TempDir() + std::to_string(getpid()) + ".ps";
};

TEST_F(Resources, pendingErrorsAreNamedOneAtATime) {
    const std::pair<GLenum, const char*> TEXTS[] = {{0x500, "Invalid enumerator"}, {0x501, "Invalid value"},
                                                    {0x502, "Invalid operation"},  {0x503, "Unknown error"},
                                                    {0x505, "Out of memory"},      {0x506, "Unknown error"}};
    for (const auto& text : TEXTS) {
        stage().errors.push_back(text.first);
    }
    for (const auto& [code, text] : TEXTS) {
        try {
            GLUtils::checkError("Draw");
            FAIL() << code;
        } catch (const GLErrorException& exception) {
            EXPECT_EQ(exception.what(), text + std::string(" in 'Draw'"));
        }
    }
    EXPECT_NO_THROW(GLUtils::checkError(""));
    EXPECT_STREQ(GLErrorException(0, "").what(),
                 "No error occured (so why this exception has been lunched in ''");
}

TEST_F(Resources, textureOfOneColourHasItsBytes) {
    { const Texture texture(2, 1, Colour4(1, 0.5f, 0, 2)); }
    EXPECT_THAT(calls(), ElementsAre("glewInit", "glGenTextures", call("glBindTexture", GL_TEXTURE_2D, 1),
                                     call("glTexParameterf", GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, 9729),
                                     call("glTexImage2D", GL_TEXTURE_2D, 0, 4, 2, 1, 0, GL_RGBA,
                                          GL_UNSIGNED_BYTE, " 255 127 0 254 255 127 0 254"),
                                     call("glBindTexture", GL_TEXTURE_2D, 0), "glDeleteTextures 1"));
}

TEST_F(Resources, framebufferTakesARenderbuffer) {
    const GLenum F = GL_FRAMEBUFFER;
    const GLenum R = GL_RENDERBUFFER;
    {
        FrameBuffer frameBuffer;
        RenderBuffer renderBuffer;
        renderBuffer.create(R, GL_DEPTH_COMPONENT24, 8, 9);
        frameBuffer.attach(F, GL_DEPTH_ATTACHMENT, renderBuffer);
        renderBuffer.bind(R);
        RenderBuffer::unbind(R);
        stage().errors = {0, GL_INVALID_VALUE};
        EXPECT_THROW(frameBuffer.attach(F, GL_DEPTH_ATTACHMENT, renderBuffer), GLErrorException);
    }
    std::vector<std::string> all = calls();
    all.resize(11);
    EXPECT_THAT(all, ElementsAre("glewInit", "glGenFramebuffers", "glGenRenderbuffers",
                                 call("glBindRenderbuffer", R, 1),
                                 call("glRenderbufferStorage", R, GL_DEPTH_COMPONENT24, 8, 9),
                                 call("glBindRenderbuffer", R, 0), call("glBindFramebuffer", F, 1),
                                 call("glFramebufferRenderbuffer", F, GL_DEPTH_ATTACHMENT, R, 1),
                                 call("glBindFramebuffer", F, 0), call("glBindRenderbuffer", R, 1),
                                 call("glBindRenderbuffer", R, 0)));
    EXPECT_EQ(out(),
              "New FrameBuffer id: 1\nFrameBuffer created\nNew RenderBuffer id: 1\nRenderBuffer created\n"
              "deleted created\nFrameBuffer '1' deleted\n");
    EXPECT_EQ(stage().liveObjects, 0);
    stage().failing = {"glGenRenderbuffers"};
    stage().errors = {GL_OUT_OF_MEMORY}; // comes second
    EXPECT_THROW(RenderBuffer(), RenderBufferException);
    EXPECT_EQ(out(), "New RenderBuffer id: 0\n");
}

TEST_F(Resources, shadersTellWhatIsWrongWithTheirFiles) {
    std::ofstream(vs, std::ios::binary) << "vertex\xE9";
    std::ofstream(ps, std::ios::binary).flush();
    EXPECT_EQ(failure(vs, ps), ""); // an empty one is the driver's affair
    EXPECT_THAT(calls(), testing::IsSupersetOf({"glShaderSource 1 vertex\xE9", "glShaderSource 2 "}));
    const std::string CANNOT = "Erreur d'ouverture du fichier: '";
    EXPECT_EQ(failure(vs, "none.ps"), "Fail to read shaders");
    EXPECT_EQ(err(), CANNOT + "none.ps'\n");
    EXPECT_EQ(failure("none.vs", testing::TempDir()), "Fail to read shaders");
    EXPECT_EQ(err(), CANNOT + "none.vs'\n" + CANNOT + testing::TempDir() + "'\n");
    stage().memoryIsShort = true;
    EXPECT_EQ(failure(vs, "none.ps"), "Fail to read shaders");
    EXPECT_EQ(err(), "Erreur d'allocation de la m\xE9moire pour y placer le contenu du fichier\n\n" + CANNOT +
                         "none.ps'\n");
}

TEST_F(Resources, shadersPassOnWhatTheDriverSays) {
    std::ofstream(vs, std::ios::binary).flush();
    std::ofstream(ps, std::ios::binary).flush();
    stage().broken = {1, 2};
    EXPECT_EQ(failure(vs, ps), "Fail to create the shader");
    EXPECT_EQ(out(), "Fail to link the shader '" + vs + "': log\n"); // the first one alone
    stage().broken = {4, 7};
    stage().logLength = 0; // no room for what a driver may write nevertheless
    EXPECT_EQ(failure(vs, ps), "Fail to create the shader");
    EXPECT_EQ(out(), "Fail to link the shader '" + ps + "': \n");
    const std::string CANNOT_LINK = "Fail to create the shader: " + vs + " " + ps + " Linking";
    EXPECT_EQ(failure(vs, ps), CANNOT_LINK);
    EXPECT_EQ(err(), "Erreur lors du liage du shader:\n");
    stage().broken = {10};
    stage().logLength = 4;
    EXPECT_EQ(failure(vs, ps), CANNOT_LINK);
    EXPECT_EQ(err(), "Erreur lors du liage du shader:\nlog");
}

TEST_F(Resources, linesAreDrawnAsTheyWereAdded) {
    const auto at = [](float x) { return Point({x, 0, 0}, Colour4(x, 0, 0, 1)); };
    const auto drawn = [](const LineRenderer& renderer) {
        stage().drawings.clear();
        renderer.draw(4);
        std::string xs;
        for (const Point& point : stage().drawings.at(0).points) {
            EXPECT_EQ(point.position.x, point.colour.r);
            xs += call("", point.position.x);
        }
        return xs;
    };
    calls();
    stage().watching = true;
    LineRenderer renderer;
    EXPECT_EQ(drawn(renderer), "");
    EXPECT_THAT(calls(),
                ElementsAre(call("glEnableClientState", GL_VERTEX_ARRAY),
                            call("glEnableClientState", GL_COLOR_ARRAY),
                            call("glVertexPointer", 3, GL_FLOAT, 28), call("glColorPointer", 4, GL_FLOAT, 28),
                            "glLineWidth 4", call("glDrawElements", GL_LINES, 0, GL_UNSIGNED_INT),
                            call("glDisableClientState", GL_COLOR_ARRAY),
                            call("glDisableClientState", GL_VERTEX_ARRAY)));
    renderer.addLine(at(1), at(2));
    renderer.addLines({at(3), at(4), at(5), at(6), at(99)});
    EXPECT_EQ(out(),
              "Warning: You are trying to add a odd number to the LineRenderer (last point truncated)\n");
    renderer.addLines({at(7), at(8), at(9)}, {0, 1, 1, 2});
    renderer.addLines({at(10), at(11)});
    EXPECT_EQ(drawn(renderer), " 1 2 3 4 5 6 7 8 8 9 10 11");
    EXPECT_EQ(renderer.getNbPoints() * 100 + renderer.getNbIndices(), 1112U);
    renderer.clear();
    renderer.addLines({at(1), at(2), at(3)}, {0, 2});
    EXPECT_EQ(drawn(renderer), " 1 3"); // nothing is left of what was there
    renderer.addLines({at(4), at(5)}, {1, 0});
    EXPECT_EQ(drawn(renderer), " 1 3 5 4");
    EXPECT_EQ(out(), "");
}
} // namespace
