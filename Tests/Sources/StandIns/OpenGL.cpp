// OpenGL, for whose Stage it is built.

#include <GL/glew.h>
#include <GL/glu.h>

#include <Stage.h>
#include <cstring>
#include <string>

namespace {
GLuint names = 0; // of objects of all kinds, so that none passes for another
const char* positions = nullptr;
const char* colours = nullptr;
std::size_t stride = 0;

GLuint make(const char* call) { return stage.note(call) ? ++names : 0; }

void query(GLuint object, GLenum what, GLint* value) {
    *value = what == GL_INFO_LOG_LENGTH ? 4 : stage.isBroken(object) ? 0 : 1;
}

void fetchLog(GLuint, GLsizei size, GLsizei*, GLchar* log) { std::strncpy(log, "log", size); }
} // namespace

// Entry points, most of which are noted and do nothing else.
#define ENTRY(name) decltype(__glew##name) __glew##name
#define NOTED(name) ENTRY(name) = [](auto... a) { stage.note("gl" #name, a...); };
#define NOTED3(a, b, c) NOTED(a) NOTED(b) NOTED(c)
#define NOTED5(a, b, c, d, e) NOTED3(a, b, c) NOTED(d) NOTED(e)
#define PLAIN(name)                                                                                          \
    void name() { stage.note(#name); }
#define PLAIN4(a, b, c, d) PLAIN(a) PLAIN(b) PLAIN(c) PLAIN(d)
#define ENUM(name)                                                                                           \
    void name(GLenum a) { stage.note(#name, a); }
#define ENUM3(a, b, c) ENUM(a) ENUM(b) ENUM(c)
#define ENUM4(a, b, c, d) ENUM(a) ENUM3(b, c, d)

extern "C" {
NOTED5(AttachShader, BindFramebuffer, CompileShader, DeleteProgram, DeleteShader)
NOTED5(DetachShader, FramebufferTexture2D, LinkProgram, Uniform1f, UseProgram)
NOTED3(BindRenderbuffer, FramebufferRenderbuffer, RenderbufferStorage)
PLAIN4(glLoadIdentity, glPushMatrix, glPopMatrix, glEnd)
ENUM4(glEnable, glDisable, glEnableClientState, glDisableClientState)
ENUM3(glBegin, glClear, glMatrixMode)
ENTRY(GenFramebuffers) = [](auto, auto* p) { *p = make("glGenFramebuffers"); };
ENTRY(CreateShader) = [](auto type) { return stage.note("glCreateShader", type) ? ++names : 0; };
ENTRY(CreateProgram) = [] { return make("glCreateProgram"); };
ENTRY(GenRenderbuffers) = [](auto, auto* p) { *p = make("glGenRenderbuffers"); };
ENTRY(DeleteFramebuffers) = [](auto, auto* p) { stage.note("glDeleteFramebuffers", *p); };
ENTRY(DeleteRenderbuffersEXT) = [](auto, auto* p) { stage.note("glDeleteRenderbuffersEXT", *p); };
ENTRY(CheckFramebufferStatus) = [](GLenum target) -> GLenum {
    return stage.note("glCheckFramebufferStatus", target) ? GL_FRAMEBUFFER_COMPLETE : 0;
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
GLboolean glewIsSupported(const char* name) { return stage.note(name) ? GL_TRUE : GL_FALSE; }
const GLubyte* glewGetErrorString(GLenum) { return reinterpret_cast<const GLubyte*>("GLEW is unwell"); }

GLenum glGetError() { return stage.nextError(); }
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
void glVertexPointer(GLint size, GLenum type, GLsizei pitch, const void* first) {
    stage.note(__func__, size, type);
    positions = static_cast<const char*>(first);
    stride = pitch;
}
void glColorPointer(GLint size, GLenum type, GLsizei pitch, const void* first) {
    stage.note(__func__, size, type, pitch == static_cast<GLsizei>(stride));
    colours = static_cast<const char*>(first);
}
void glLineWidth(GLfloat width) { stage.note(__func__, width); }
void glPointSize(GLfloat size) { stage.note(__func__, size); }
void glDrawElements(GLenum mode, GLsizei count, GLenum type, const void* indices) {
    stage.note(__func__, mode, count, type);
    stage.show(count, static_cast<const GLuint*>(indices), positions, colours, stride);
}
void glDrawArrays(GLenum mode, GLint first, GLsizei count) {
    stage.note(__func__, mode, first, count);
    stage.show(count, nullptr, positions, colours, stride);
}
void glTexCoord2f(GLfloat s, GLfloat t) { stage.note(__func__, s, t); }
void glVertex2f(GLfloat x, GLfloat y) { stage.note(__func__, x, y); }
void glGenTextures(GLsizei, GLuint* p) { *p = make(__func__); }
void glDeleteTextures(GLsizei, const GLuint* p) { stage.note(__func__, *p); }
void glBindTexture(GLenum target, GLuint name) { stage.note(__func__, target, name); }
void glTexParameterf(GLenum target, GLenum name, GLfloat v) { stage.note(__func__, target, name, v); }
void glTexImage2D(GLenum target, GLint level, GLint inside, GLsizei w, GLsizei h, GLint border, GLenum format,
                  GLenum type, const void* pixels) {
    std::string texels = pixels != nullptr ? "of" : "empty";
    for (int i = 0; pixels != nullptr && i < 4 * w * h; ++i) {
        texels += " " + std::to_string(static_cast<const GLubyte*>(pixels)[i]);
    }
    stage.note(__func__, target, level, inside, w, h, border, format, type, texels);
}
}
