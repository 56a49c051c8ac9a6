#include "StandIns/Stage.h"

#include <GL/glew.h>
#include <GL/glu.h>

#include <cstring>

namespace {
GLuint names = 0; // of objects of all kinds, so that none passes for another
const char* positions = nullptr;
const char* colours = nullptr;
std::size_t stride = 0;

void show(GLsizei count, const GLuint* indices) {
    if (!stage.hashing && !stage.listening) {
        return;
    }
    std::vector<Point>& drawing = stage.drawings.emplace_back(count);
    for (Point& point : drawing) {
        const std::size_t at = stride * (indices != nullptr ? *indices++ : &point - drawing.data());
        std::memcpy(&point.position, positions + at, sizeof point.position);
        std::memcpy(&point.colour, colours + at, sizeof point.colour);
    }
    stage.mix(std::string_view(reinterpret_cast<const char*>(drawing.data()), count * sizeof(Point)));
    stage.drawings.resize(stage.listening ? stage.drawings.size() : 0);
}

GLuint make(const char* call) { return stage.note(call) ? ++names : 0; }

void query(GLuint object, GLenum what, GLint* value) {
    *value = what == GL_INFO_LOG_LENGTH ? 4 : stage.broken != object ? 1 : 0;
}

void fetchLog(GLuint, GLsizei size, GLsizei*, GLchar* log) { std::strncpy(log, "log", size); }
} // namespace

// Entry points, most of which are noted and do nothing else.
#define ENTRY(name) decltype(__glew##name) __glew##name
#define NOTED(name) ENTRY(name) = [](auto... a) { stage.note("gl" #name, a...); };
#define NOTED5(a, b, c, d, e) NOTED(a) NOTED(b) NOTED(c) NOTED(d) NOTED(e)
#define PLAIN(name)                                                                                          \
    void name() { stage.note(#name); }
#define PLAIN4(a, b, c, d) PLAIN(a) PLAIN(b) PLAIN(c) PLAIN(d)
#define ENUM(name)                                                                                           \
    void name(GLenum a) { stage.note(#name, a); }
#define ENUM3(a, b, c) ENUM(a) ENUM(b) ENUM(c)
#define ENUM4(a, b, c, d) ENUM(a) ENUM3(b, c, d)

extern "C" {
NOTED5(AttachShader, BindFramebuffer, CompileShader, DeleteProgram, DeleteShader)
NOTED5(DetachShader, FramebufferTexture2D, DeleteRenderbuffersEXT, Uniform1f, UseProgram)
NOTED5(BindRenderbuffer, FramebufferRenderbuffer, RenderbufferStorage, GenRenderbuffers, LinkProgram)
PLAIN4(glLoadIdentity, glPushMatrix, glPopMatrix, glEnd)
ENUM4(glEnable, glDisable, glEnableClientState, glDisableClientState)
ENUM3(glBegin, glClear, glMatrixMode)
ENTRY(GenFramebuffers) = [](auto, auto* p) { *p = make("glGenFramebuffers"); };
ENTRY(CreateShader) = [](auto) { return make("glCreateShader"); };
ENTRY(CreateProgram) = [] { return make("glCreateProgram"); };
ENTRY(DeleteFramebuffers) = [](auto, auto* p) { stage.note("glDeleteFramebuffers", *p); };
ENTRY(CheckFramebufferStatus) = [](GLenum) -> GLenum {
    return stage.note("glCheckFramebufferStatus") ? GL_FRAMEBUFFER_COMPLETE : 0;
};
ENTRY(ShaderSource) = [](auto shader, auto, auto* text, auto* size) {
    stage.note("glShaderSource", shader, std::string(*text, *size));
};
// Told apart by its first letter.
ENTRY(GetUniformLocation) = [](auto program, auto* name) -> GLint {
    return stage.note("glGetUniformLocation", program, name) ? name[0] : -1;
};
ENTRY(GetShaderiv) = query;
ENTRY(GetProgramiv) = query;
ENTRY(GetShaderInfoLog) = fetchLog;
ENTRY(GetProgramInfoLog) = fetchLog;

GLenum glewInit() {
    names = 0;
    return stage.note("glewInit") ? GLEW_OK : 1;
}
GLboolean glewIsSupported(const char* name) { return stage.failing == name ? GL_FALSE : GL_TRUE; }
const GLubyte* glewGetErrorString(GLenum) { return reinterpret_cast<const GLubyte*>("GLEW is unwell"); }

GLenum glGetError() {
    const bool any = ++stage.errorChecks <= stage.errors.size();
    return any ? stage.errors[stage.errorChecks - 1] : GL_NO_ERROR;
}
void glBlendFunc(GLenum source, GLenum destination) { stage.note(__func__, source, destination); }
void glClearColor(GLclampf r, GLclampf g, GLclampf b, GLclampf a) { stage.note(__func__, r, g, b, a); }
void glViewport(GLint x, GLint y, GLsizei w, GLsizei h) { stage.note(__func__, x, y, w, h); }
void glTranslatef(GLfloat x, GLfloat y, GLfloat z) { stage.note(__func__, x, y, z); }
void glScalef(GLfloat x, GLfloat y, GLfloat z) { stage.note(__func__, x, y, z); }
void glRotatef(GLfloat degrees, GLfloat x, GLfloat y, GLfloat z) { stage.note(__func__, degrees, x, y, z); }
void gluPerspective(GLdouble f, GLdouble a, GLdouble n, GLdouble z) { stage.note(__func__, f, a, n, z); }
void gluOrtho2D(GLdouble l, GLdouble r, GLdouble b, GLdouble t) { stage.note(__func__, l, r, b, t); }
void gluLookAt(GLdouble x, GLdouble y, GLdouble z, GLdouble u, GLdouble v, GLdouble w, GLdouble a, GLdouble b,
               GLdouble c) {
    stage.note(__func__, x, y, z, u, v, w, a, b, c);
}
void glVertexPointer(GLint, GLenum, GLsizei pitch, const void* first) {
    positions = static_cast<const char*>(first);
    stride = pitch;
}
void glColorPointer(GLint, GLenum, GLsizei, const void* p) { colours = static_cast<const char*>(p); }
void glLineWidth(GLfloat width) { stage.note(__func__, width); }
void glPointSize(GLfloat size) { stage.note(__func__, size); }
void glDrawElements(GLenum mode, GLsizei count, GLenum type, const void* indices) {
    stage.note(__func__, mode, count, type);
    show(count, static_cast<const GLuint*>(indices));
}
void glDrawArrays(GLenum mode, GLint first, GLsizei count) {
    stage.note(__func__, mode, first, count);
    show(count, nullptr);
}
void glTexCoord2f(GLfloat s, GLfloat t) { stage.note(__func__, s, t); }
void glVertex2f(GLfloat x, GLfloat y) { stage.note(__func__, x, y); }
void glGenTextures(GLsizei, GLuint* p) { *p = make(__func__); }
void glDeleteTextures(GLsizei, const GLuint* p) { stage.note(__func__, *p); }
void glBindTexture(GLenum target, GLuint name) { stage.note(__func__, target, name); }
void glTexParameterf(GLenum target, GLenum name, GLfloat v) { stage.note(__func__, target, name, v); }
void glTexImage2D(GLenum target, GLint level, GLint inside, GLsizei w, GLsizei h, GLint, GLenum format,
                  GLenum type, const void*) {
    stage.note(__func__, target, level, inside, w, h, format, type);
}
}
