// OpenGL, for whose Stage it is built: keeps how it is set while the stage watches.

#include "Drawing.h"

#include <GL/glew.h>
#include <GL/glu.h>

#include <Stage.h>
#include <cmath>
#include <cstring>
#include <string>

namespace {
GLuint names = 0; // of objects of all kinds, so that none passes for another
Drawing pen;
std::vector<Place> places(1);  // the current one last; all matrices share them, the show loads each anew
GLuint attached = 0;           // to the framebuffer
const char* records = nullptr; // positions come first, colours behind them
std::size_t stride = 0;

GLuint make(const char* call) { return stage.works(call) ? ++names : 0; }

void enable(GLenum what, bool on) {
    pen.blends = what == GL_BLEND ? on : pen.blends;
    pen.tested = what == GL_DEPTH_TEST ? on : pen.tested;
}

void draw(GLenum kind, GLsizei count, const GLuint* indices) {
    pen.kind = kind;
    stage.show(pen, places.back(), count, indices, records, stride);
}

void query(GLuint object, GLenum what, GLint* value) {
    *value = what == GL_INFO_LOG_LENGTH ? 4 : stage.isBroken(object) ? 0 : 1;
}

void fetchLog(GLuint object, GLsizei size, GLsizei*, GLchar* log) {
    std::strncpy(log, stage.isBroken(object) ? "log" : "", size);
}
} // namespace

#define ENTRY(name) decltype(__glew##name) __glew##name
#define QUIET(name) ENTRY(name) = [](auto...) {};
#define QUIET5(a, b, c, d, e) QUIET(a) QUIET(b) QUIET(c) QUIET(d) QUIET(e)

extern "C" {
QUIET5(AttachShader, CompileShader, DetachShader, LinkProgram, DeleteShader)
QUIET(DeleteProgram)
QUIET5(BindRenderbuffer, FramebufferRenderbuffer, RenderbufferStorage, DeleteFramebuffers,
       DeleteRenderbuffersEXT)
ENTRY(UseProgram) = [](auto program) { pen.program = program; };
ENTRY(BindFramebuffer) = [](auto, auto name) { pen.target = name != 0 ? attached : 0; };
ENTRY(FramebufferTexture2D) = [](auto, auto, auto, auto texture, auto) { attached = texture; };
ENTRY(Uniform1f) = [](auto, auto value) { stage.tell(value); };
ENTRY(GenFramebuffers) = [](auto, auto* p) { *p = make("glGenFramebuffers"); };
ENTRY(GenRenderbuffers) = [](auto, auto* p) { *p = make("glGenRenderbuffers"); };
ENTRY(CreateShader) = [](auto) { return make("glCreateShader"); };
ENTRY(CreateProgram) = [] { return make("glCreateProgram"); };
ENTRY(CheckFramebufferStatus) = [](auto) -> GLenum {
    return stage.works("complete") ? GL_FRAMEBUFFER_COMPLETE : 0;
};
ENTRY(ShaderSource) = [](auto...) { stage.note("shader"); };
ENTRY(GetUniformLocation) = [](auto...) { return 0; };
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
void glTranslatef(GLfloat x, GLfloat y, GLfloat z) { places.back().move({x, y, z}); }
void glScalef(GLfloat x, GLfloat y, GLfloat z) { places.back().scale({x, y, z}); }
void glRotatef(GLfloat degrees, GLfloat x, GLfloat y, GLfloat z) {
    stage.watching ? places.back().turn(degrees, {x, y, z}) : void();
}
void gluLookAt(GLdouble x, GLdouble y, GLdouble z, GLdouble u, GLdouble v, GLdouble w, GLdouble a, GLdouble b,
               GLdouble c) {
    view = {x, y, z, u, v, w, a, b, c};
}
void gluPerspective(GLdouble, GLdouble, GLdouble, GLdouble) {}
void gluOrtho2D(GLdouble, GLdouble, GLdouble, GLdouble) {}
void glMatrixMode(GLenum) {}
void glEnableClientState(GLenum) {}
void glDisableClientState(GLenum) {}
void glBegin(GLenum) {}
void glEnable(GLenum what) { enable(what, true); }
void glDisable(GLenum what) { enable(what, false); }
void glBlendFunc(GLenum from, GLenum to) { pen.adds = from == GL_SRC_ALPHA && to == GL_ONE; }
void glViewport(GLint, GLint, GLsizei, GLsizei) {}
void glClearColor(GLclampf, GLclampf, GLclampf, GLclampf) {}
void glClear(GLbitfield) { stage.note("clear", pen.target); }
void glVertexPointer(GLint, GLenum, GLsizei pitch, const void* first) {
    records = static_cast<const char*>(first);
    stride = pitch;
}
void glColorPointer(GLint, GLenum, GLsizei, const void*) {}
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
    stage.note("texture of", w, h, pixels != nullptr ? std::string(static_cast<const char*>(pixels), 4) : "");
}
}
