// The OpenGL, GLU and GLEW that the show calls, and no more of them: matrices and state are kept here, what
// is drawn goes to the page by way of Drawing. The library's names are in the headers of the system.

#include "OpenGL.h"

#include "Drawing.h"
#include "Widths.h"

#include <GL/glew.h>
#include <GL/glu.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <glm/ext.hpp>
#include <map>
#include <string>
#include <vector>

namespace {
web::Drawing drawing;

std::vector<glm::mat4> projections{glm::mat4(1)};
std::vector<glm::mat4> modelViews{glm::mat4(1)};
std::vector<glm::mat4>* matrices = &modelViews;

struct {
    GLfloat r, g, b, a;
} clearColour;
web::Vertices vertices;
GLfloat lineWidth = 1;
GLfloat pointSize = 1;
GLuint boundTexture = 0;
GLuint attachedTexture = 0; // to the show's one framebuffer
std::vector<GLfloat> corners;
GLfloat textureCoordinates[2];

/// Objects are numbered from 1 on. None is ever given back: the player may return to a moment before that.
GLuint lastName = 0;
void giveNames(GLsizei n, GLuint* names) {
    std::generate_n(names, n, [] { return ++lastName; });
}
void keepNames(GLsizei /*n*/, const GLuint* /*names*/) {}
void keep(GLuint /*object*/) {}

/// A shader or a program. Room for the longest log that is of use.
struct Object {
    bool ofVertices = false;
    std::string text;
    std::array<char, 4096> log{};
    std::vector<GLuint> shaders; // of a program
};
std::map<GLuint, Object> objects;

void tellStatus(GLuint object, GLenum what, GLint* value) {
    const std::size_t length = std::strlen(objects[object].log.data());
    if (what == GL_INFO_LOG_LENGTH) {
        *value = static_cast<GLint>(length == 0 ? 0 : length + 1);
    } else {
        *value = length == 0 ? GL_TRUE : GL_FALSE;
    }
}
void tellLog(GLuint object, GLsizei size, GLsizei* /*length*/, GLchar* log) {
    if (size > 0) {
        log[std::string(objects[object].log.data()).copy(log, size - 1)] = 0;
    }
}

/// The uniforms' names, by location.
std::vector<std::string> uniforms;

/// The scene and the pictures are drawn under the matrices of the moment.
void takeMatrices() {
    if (drawing.projection != projections.back()) {
        drawing.flush();
        drawing.projection = projections.back();
    }
    drawing.modelView = modelViews.back();
}
} // namespace

void web::setDrawing(bool on) { drawing.on = on; }
void web::forgetDrawn() { drawing.forget(); }

extern "C" {

PFNGLGENFRAMEBUFFERSPROC __glewGenFramebuffers = giveNames;
PFNGLDELETEFRAMEBUFFERSPROC __glewDeleteFramebuffers = keepNames;
PFNGLBINDFRAMEBUFFERPROC __glewBindFramebuffer = [](GLenum /*target*/, GLuint framebuffer) {
    drawing.setTarget(framebuffer == 0 ? 0 : attachedTexture);
};
PFNGLFRAMEBUFFERTEXTURE2DPROC __glewFramebufferTexture2D = [](GLenum /*target*/, GLenum /*place*/,
                                                              GLenum /*kind*/, GLuint texture,
                                                              GLint /*level*/) { attachedTexture = texture; };
PFNGLFRAMEBUFFERRENDERBUFFERPROC __glewFramebufferRenderbuffer = [](GLenum, GLenum, GLenum, GLuint) {};
PFNGLCHECKFRAMEBUFFERSTATUSPROC __glewCheckFramebufferStatus = [](GLenum /*target*/) -> GLenum {
    return GL_FRAMEBUFFER_COMPLETE;
};
PFNGLGENRENDERBUFFERSPROC __glewGenRenderbuffers = giveNames;
PFNGLDELETERENDERBUFFERSEXTPROC __glewDeleteRenderbuffersEXT = keepNames;
PFNGLBINDRENDERBUFFERPROC __glewBindRenderbuffer = [](GLenum, GLuint) {};
PFNGLRENDERBUFFERSTORAGEPROC __glewRenderbufferStorage = [](GLenum, GLenum, GLsizei, GLsizei) {};

PFNGLCREATESHADERPROC __glewCreateShader = [](GLenum kind) -> GLuint {
    objects[++lastName].ofVertices = kind == GL_VERTEX_SHADER;
    return lastName;
};
PFNGLSHADERSOURCEPROC __glewShaderSource = [](GLuint shader, GLsizei /*count*/, const GLchar* const* texts,
                                              const GLint* lengths) {
    objects[shader].text.assign(texts[0], lengths[0]);
};
PFNGLCOMPILESHADERPROC __glewCompileShader = [](GLuint shader) {
    Object& object = objects[shader];
    pageCompile(object.ofVertices ? 1 : 0, object.text.c_str(), object.log.data(),
                static_cast<int>(object.log.size()));
};
PFNGLGETSHADERIVPROC __glewGetShaderiv = tellStatus;
PFNGLGETSHADERINFOLOGPROC __glewGetShaderInfoLog = tellLog;
PFNGLDELETESHADERPROC __glewDeleteShader = keep;
PFNGLCREATEPROGRAMPROC __glewCreateProgram = []() -> GLuint { return ++lastName; };
PFNGLATTACHSHADERPROC __glewAttachShader = [](GLuint program, GLuint shader) {
    objects[program].shaders.push_back(shader);
};
PFNGLDETACHSHADERPROC __glewDetachShader = [](GLuint, GLuint) {};
PFNGLLINKPROGRAMPROC __glewLinkProgram = [](GLuint program) {
    Object& object = objects[program];
    std::array<const char*, 2> texts{"", ""};
    for (const GLuint shader : object.shaders) {
        texts[objects[shader].ofVertices ? 0 : 1] = objects[shader].text.c_str();
    }
    pageMakeProgram(program, texts[0], texts[1], object.log.data(), static_cast<int>(object.log.size()));
};
PFNGLGETPROGRAMIVPROC __glewGetProgramiv = tellStatus;
PFNGLGETPROGRAMINFOLOGPROC __glewGetProgramInfoLog = tellLog;
PFNGLUSEPROGRAMPROC __glewUseProgram = [](GLuint program) {
    drawing.flush();
    drawing.program = program;
};
PFNGLDELETEPROGRAMPROC __glewDeleteProgram = keep;
PFNGLGETUNIFORMLOCATIONPROC __glewGetUniformLocation = [](GLuint /*program*/, const GLchar* name) -> GLint {
    const auto found = std::find(uniforms.begin(), uniforms.end(), name);
    const auto location = static_cast<GLint>(found - uniforms.begin());
    if (found == uniforms.end()) {
        uniforms.emplace_back(name);
    }
    return location;
};
PFNGLUNIFORM1FPROC __glewUniform1f = [](GLint location, GLfloat value) {
    if (drawing.on) {
        pageSetUniform(drawing.program, uniforms[location].c_str(), value);
    }
};

GLenum glewInit() { return GLEW_OK; }
GLboolean glewIsSupported(const char* /*name*/) { return GL_TRUE; }
const GLubyte* glewGetErrorString(GLenum /*error*/) { return nullptr; }

GLenum glGetError() { return GL_NO_ERROR; }

static void switchState(GLenum what, bool on) {
    bool* pState = what == GL_BLEND ? &drawing.blended : what == GL_DEPTH_TEST ? &drawing.tested : nullptr;
    if (pState != nullptr && *pState != on) {
        drawing.flush();
        *pState = on;
    }
}
void glEnable(GLenum what) { switchState(what, true); }
void glDisable(GLenum what) { switchState(what, false); }
void glBlendFunc(GLenum /*source*/, GLenum /*destination*/) {} // light is always added, by its alpha
void glClearColor(GLclampf r, GLclampf g, GLclampf b, GLclampf a) { clearColour = {r, g, b, a}; }
void glClear(GLbitfield /*buffers*/) {
    drawing.clear(clearColour.r, clearColour.g, clearColour.b, clearColour.a);
}
void glViewport(GLint /*x*/, GLint /*y*/, GLsizei /*width*/, GLsizei /*height*/) {} // always the whole target

void glMatrixMode(GLenum mode) { matrices = mode == GL_PROJECTION ? &projections : &modelViews; }
void glLoadIdentity() { matrices->back() = glm::mat4(1); }
void glPushMatrix() { matrices->push_back(matrices->back()); }
void glPopMatrix() { matrices->pop_back(); }
void glTranslatef(GLfloat x, GLfloat y, GLfloat z) {
    matrices->back() = glm::translate(matrices->back(), {x, y, z});
}
void glRotatef(GLfloat angle, GLfloat x, GLfloat y, GLfloat z) {
    matrices->back() = glm::rotate(matrices->back(), glm::radians(angle), {x, y, z});
}
void glScalef(GLfloat x, GLfloat y, GLfloat z) { matrices->back() = glm::scale(matrices->back(), {x, y, z}); }
void gluPerspective(GLdouble fov, GLdouble aspect, GLdouble near, GLdouble far) {
    matrices->back() *= glm::mat4(glm::perspective(glm::radians(fov), aspect, near, far));
}
void gluOrtho2D(GLdouble left, GLdouble right, GLdouble bottom, GLdouble top) {
    matrices->back() *= glm::mat4(glm::ortho(left, right, bottom, top));
}
void gluLookAt(GLdouble x, GLdouble y, GLdouble z, GLdouble cx, GLdouble cy, GLdouble cz, GLdouble ux,
               GLdouble uy, GLdouble uz) {
    matrices->back() *= glm::mat4(glm::lookAt(glm::dvec3(x, y, z), {cx, cy, cz}, {ux, uy, uz}));
}

void glEnableClientState(GLenum /*array*/) {}
void glDisableClientState(GLenum /*array*/) {}
void glVertexPointer(GLint /*size*/, GLenum /*type*/, GLsizei stride, const void* first) {
    vertices = {first, static_cast<std::size_t>(stride)};
}
void glColorPointer(GLint /*size*/, GLenum /*type*/, GLsizei /*stride*/, const void* /*first*/) {
    // Right behind the position.
}
void glLineWidth(GLfloat width) { lineWidth = host::shownWidth(width, host::pixelScale()); }
void glPointSize(GLfloat size) { pointSize = host::shownWidth(size, host::pixelScale()); }
void glDrawElements(GLenum /*lines*/, GLsizei count, GLenum /*type*/, const void* indices) {
    takeMatrices();
    drawing.addLines(vertices, static_cast<const std::uint32_t*>(indices), count, lineWidth);
}
void glDrawArrays(GLenum /*points*/, GLint /*first*/, GLsizei count) {
    takeMatrices();
    drawing.addPoints(vertices, count, pointSize);
}

void glBegin(GLenum /*quads*/) { corners.clear(); }
void glTexCoord2f(GLfloat s, GLfloat t) {
    textureCoordinates[0] = s;
    textureCoordinates[1] = t;
}
void glVertex2f(GLfloat x, GLfloat y) {
    corners.insert(corners.end(), {x, y, textureCoordinates[0], textureCoordinates[1]});
}
void glEnd() {
    takeMatrices();
    drawing.drawQuad(boundTexture, corners.data());
}

void glGenTextures(GLsizei n, GLuint* names) { giveNames(n, names); }
void glDeleteTextures(GLsizei n, const GLuint* names) { keepNames(n, names); }
void glBindTexture(GLenum /*target*/, GLuint texture) { boundTexture = texture; }
void glTexParameterf(GLenum /*target*/, GLenum /*name*/, GLfloat /*value*/) {} // always linear
void glTexImage2D(GLenum /*target*/, GLint /*level*/, GLint /*inside*/, GLsizei /*width*/, GLsizei /*height*/,
                  GLint /*border*/, GLenum /*format*/, GLenum /*type*/, const void* /*pixels*/) {
    pageMakeTexture(boundTexture);
}
}
