// OpenGL, for whose Stage it is built: keeps how it is set while the stage watches.

#include "Drawing.h"

#include <GL/glew.h>
#include <GL/glu.h>

#include <Stage.h>
#include <cmath>
#include <cstring>
#include <map>
#include <string>

namespace {
GLuint names = 0; // of objects of all kinds, so that none passes for another
Drawing pen;
std::vector<Place> places(1); // the current one last; all matrices share them, the show loads each anew
std::array<float, 3> background{};
std::map<GLenum, bool> enabled;
bool adds = false;
GLuint framebuffer = 0;
std::map<GLuint, GLuint> attached; // textures to framebuffers
std::map<std::pair<GLuint, GLint>, float> uniforms;
const char* positions = nullptr;
const char* colours = nullptr;
std::size_t stride = 0;

GLuint make(const char* call) { return stage.works(call) ? ++names : 0; }

void draw(GLenum kind, GLsizei count, const GLuint* indices) {
    if (stage.watching) {
        pen.kind = kind;
        pen.target = attached[framebuffer];
        pen.beat = uniforms[{pen.program, 'a'}];
        pen.fade = uniforms[{pen.program, 'f'}];
        pen.added = enabled[GL_BLEND] && adds;
        pen.tested = enabled[GL_DEPTH_TEST];
    }
    stage.show(pen, places.back(), count, indices, positions, colours, stride);
}

void query(GLuint object, GLenum what, GLint* value) {
    *value = what == GL_INFO_LOG_LENGTH ? 4 : stage.isBroken(object) ? 0 : 1;
}

void fetchLog(GLuint, GLsizei size, GLsizei*, GLchar* log) { std::strncpy(log, "log", size); }
} // namespace

#define ENTRY(name) decltype(__glew##name) __glew##name
#define QUIET(name) ENTRY(name) = [](auto...) {};
#define QUIET5(a, b, c, d, e) QUIET(a) QUIET(b) QUIET(c) QUIET(d) QUIET(e)
#define QUIET_ENUM(name)                                                                                     \
    void name(GLenum) {}
#define MOVES(name, effect)                                                                                  \
    void name(GLfloat x, GLfloat y, GLfloat z) {                                                             \
        Place& p = places.back();                                                                            \
        stage.watching ? void(p = (effect)) : void();                                                        \
    }

extern "C" {
QUIET5(AttachShader, CompileShader, DetachShader, LinkProgram, DeleteShader)
QUIET(DeleteProgram)
QUIET5(BindRenderbuffer, FramebufferRenderbuffer, RenderbufferStorage, DeleteFramebuffers,
       DeleteRenderbuffersEXT)
QUIET_ENUM(glMatrixMode)
QUIET_ENUM(glEnableClientState)
QUIET_ENUM(glDisableClientState)
QUIET_ENUM(glBegin)
ENTRY(UseProgram) = [](auto program) { pen.program = program; };
ENTRY(BindFramebuffer) = [](auto, auto name) { framebuffer = name; };
ENTRY(FramebufferTexture2D) = [](auto, auto, auto, auto texture, auto) { attached[framebuffer] = texture; };
ENTRY(Uniform1f) = [](auto where, auto value) { stage.tell(uniforms[{pen.program, where}] = value); };
ENTRY(GenFramebuffers) = [](auto, auto* p) { *p = make("glGenFramebuffers"); };
ENTRY(GenRenderbuffers) = [](auto, auto* p) { *p = make("glGenRenderbuffers"); };
ENTRY(CreateShader) = [](auto) { return make("glCreateShader"); };
ENTRY(CreateProgram) = [] { return make("glCreateProgram"); };
ENTRY(CheckFramebufferStatus) = [](auto) -> GLenum {
    return stage.works("complete") ? GL_FRAMEBUFFER_COMPLETE : 0;
};
ENTRY(ShaderSource) = [](auto, auto, auto* text, auto* size) {
    stage.note("shader", std::string(*text, *size));
};
ENTRY(GetUniformLocation) = [](auto, auto* name) -> GLint { return name[0]; }; // they differ in it
ENTRY(GetShaderiv) = query;
ENTRY(GetProgramiv) = query;
ENTRY(GetShaderInfoLog) = fetchLog;
ENTRY(GetProgramInfoLog) = fetchLog;

GLenum glewInit() {
    names = 0;
    pen = Drawing();
    view = {};
    return stage.works("glewInit") ? GLEW_OK : 1;
}
GLboolean glewIsSupported(const char* name) { return stage.works(name) ? GL_TRUE : GL_FALSE; }
const GLubyte* glewGetErrorString(GLenum) { return reinterpret_cast<const GLubyte*>("GLEW is unwell"); }
GLenum glGetError() { return stage.nextError(); }
void glPushMatrix() { places.emplace_back(Place(places.back())); }
void glPopMatrix() { places.pop_back(); }
void glLoadIdentity() { places.back() = Place(); }
MOVES(glTranslatef, p.moved({x, y, z}))
MOVES(glScalef, p.scaled({x, y, z}))
void glRotatef(GLfloat degrees, GLfloat x, GLfloat y, GLfloat z) {
    stage.watching ? places.back().turn(degrees, {x, y, z}) : void();
}
void gluLookAt(GLdouble x, GLdouble y, GLdouble z, GLdouble u, GLdouble v, GLdouble w, GLdouble a, GLdouble b,
               GLdouble c) {
    view = {x, y, z, u, v, w, a, b, c};
}
void gluPerspective(GLdouble f, GLdouble a, GLdouble n, GLdouble z) { pen.lens = {f, a, n, z}; }
void gluOrtho2D(GLdouble, GLdouble, GLdouble, GLdouble) {}
void glEnable(GLenum what) { enabled[what] = true; }
void glDisable(GLenum what) { enabled[what] = false; }
void glBlendFunc(GLenum from, GLenum to) { adds = from == GL_SRC_ALPHA && to == GL_ONE; }
void glViewport(GLint, GLint, GLsizei, GLsizei) {}
void glClearColor(GLclampf r, GLclampf g, GLclampf b, GLclampf) { background = {r, g, b}; }
void glClear(GLbitfield) {
    stage.note("clear", attached[framebuffer], "to", background[0], background[1], background[2]);
}
void glVertexPointer(GLint, GLenum, GLsizei pitch, const void* first) {
    positions = static_cast<const char*>(first);
    stride = pitch;
}
void glColorPointer(GLint, GLenum, GLsizei, const void* first) { colours = static_cast<const char*>(first); }
void glLineWidth(GLfloat width) { pen.sizes[1] = width; }
void glPointSize(GLfloat size) { pen.sizes[0] = size; }
void glDrawElements(GLenum kind, GLsizei count, GLenum, const void* indices) {
    draw(kind, count, static_cast<const GLuint*>(indices));
}
void glDrawArrays(GLenum kind, GLint, GLsizei count) { draw(kind, count, nullptr); }
void glTexCoord2f(GLfloat, GLfloat) {}
void glVertex2f(GLfloat, GLfloat) {}
void glEnd() { draw(GL_QUADS, 0, nullptr); }
void glGenTextures(GLsizei, GLuint* p) { *p = make(__func__); }
void glDeleteTextures(GLsizei, const GLuint*) {}
void glBindTexture(GLenum, GLuint name) { pen.texture = name; }
void glTexParameterf(GLenum, GLenum, GLfloat) {}
void glTexImage2D(GLenum, GLint, GLint, GLsizei w, GLsizei h, GLint, GLenum, GLenum, const void* pixels) {
    stage.note("texture of", w, h,
               std::string(static_cast<const char*>(pixels), pixels != nullptr ? 4 * w * h : 0));
}
}
