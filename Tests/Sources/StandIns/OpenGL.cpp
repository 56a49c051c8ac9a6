// OpenGL, for whose Stage it is built: keeps how it is set while the stage watches.

#include "Drawing.h"

#include <GL/glew.h>
#include <GL/glu.h>

#include <Stage.h>
#include <cmath>
#include <cstring>
#include <map>
#include <string>
#include <tuple>

namespace {
GLuint names = 0; // of objects of all kinds, so that none passes for another
Drawing pen;
std::vector<Place> places(1); // the current one last; all matrices share them, the show loads each anew
std::array<float, 3> background{};
bool blends = false, adds = false;
Point corner;
GLuint framebuffer = 0;
std::map<GLuint, GLuint> attached; // textures to framebuffers
std::map<std::pair<GLuint, GLint>, float> uniforms;
const char* positions = nullptr;
const char* colours = nullptr;
std::size_t stride = 0;

GLuint make(const char* call) {
    if (!stage.works(call)) {
        return 0;
    }
    stage.own(++names, true);
    return names;
}

void turn(double degrees, const Vector3f& axis) {
    const auto s = static_cast<float>(std::sin(degrees * M_PI / 180));
    const auto c = static_cast<float>(std::cos(degrees * M_PI / 180));
    Place& p = places.back();
    const auto turned = [&](const Vector3f& v) {
        return p.at(v * c + axis.cross(v) * s + axis * (axis.dot(v) * (1 - c))) - p.origin;
    };
    std::tie(p.x, p.y, p.z) = std::tuple(turned({1, 0, 0}), turned({0, 1, 0}), turned({0, 0, 1}));
}

GLuint target() { return framebuffer != 0 ? attached[framebuffer] : 0; }

void draw(GLenum kind, GLsizei count, const GLuint* indices) {
    if (stage.watching) {
        pen.target = target();
        pen.beat = uniforms[{pen.program, 'a'}];
        pen.fade = uniforms[{pen.program, 'f'}];
        pen.kind = kind;
        pen.added = blends && adds;
    }
    stage.show(pen, places.back(), count, indices, positions, colours, stride);
}

void able(GLenum what, bool on) {
    (what == GL_BLEND ? blends : what == GL_DEPTH_TEST ? pen.tested : on) = on;
}

void query(GLuint object, GLenum what, GLint* value) {
    *value = what == GL_INFO_LOG_LENGTH ? 4 : stage.isBroken(object) ? 0 : 1;
}

void fetchLog(GLuint, GLsizei size, GLsizei*, GLchar* log) { std::strncpy(log, "log", size); }
} // namespace

#define ENTRY(name) decltype(__glew##name) __glew##name
#define QUIET(name) ENTRY(name) = [](auto...) {};
#define QUIET5(a, b, c, d, e) QUIET(a) QUIET(b) QUIET(c) QUIET(d) QUIET(e)
#define DELETES(name) ENTRY(name) = [](auto object) { stage.own(object, false); };
#define WATCHED(signature, effect)                                                                           \
    void signature {                                                                                         \
        if (stage.watching) {                                                                                \
            effect;                                                                                          \
        }                                                                                                    \
    }

extern "C" {
QUIET5(AttachShader, CompileShader, DetachShader, LinkProgram, RenderbufferStorage)
QUIET(BindRenderbuffer)
QUIET(FramebufferRenderbuffer)
ENTRY(UseProgram) = [](auto program) { pen.program = program; };
ENTRY(BindFramebuffer) = [](auto, auto name) { framebuffer = name; };
ENTRY(FramebufferTexture2D) = [](auto, auto, auto, auto texture, auto) { attached[framebuffer] = texture; };
ENTRY(Uniform1f) = [](auto where, auto value) { stage.tell(uniforms[{pen.program, where}] = value); };
ENTRY(GenFramebuffers) = [](auto, auto* p) { *p = make("glGenFramebuffers"); };
ENTRY(GenRenderbuffers) = [](auto, auto* p) { *p = make("glGenRenderbuffers"); };
ENTRY(CreateShader) = [](auto) { return make("glCreateShader"); };
ENTRY(CreateProgram) = [] { return make("glCreateProgram"); };
ENTRY(DeleteFramebuffers) = [](auto, auto* p) { stage.own(*p, false); };
ENTRY(DeleteRenderbuffersEXT) = [](auto, auto* p) { stage.own(*p, false); };
ENTRY(DeleteProgram) = [](auto program) { stage.own(program, false); };
ENTRY(DeleteShader) = [](auto shader) { stage.own(shader, false); };
ENTRY(CheckFramebufferStatus) = [](auto) -> GLenum {
    return stage.works("glCheckFramebufferStatus") ? GL_FRAMEBUFFER_COMPLETE : 0;
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
    places.assign(1, Place());
    return stage.works("glewInit") ? GLEW_OK : 1;
}
GLboolean glewIsSupported(const char* name) { return stage.works(name) ? GL_TRUE : GL_FALSE; }
const GLubyte* glewGetErrorString(GLenum) { return reinterpret_cast<const GLubyte*>("GLEW is unwell"); }
GLenum glGetError() { return stage.nextError(); }
void glMatrixMode(GLenum) {}
WATCHED(glPushMatrix(), places.push_back(Place(places.back())))
WATCHED(glPopMatrix(), places.pop_back())
WATCHED(glLoadIdentity(), places.back() = Place())
WATCHED(glTranslatef(GLfloat x, GLfloat y, GLfloat z), places.back().origin = places.back().at({x, y, z}))
WATCHED(glRotatef(GLfloat degrees, GLfloat x, GLfloat y, GLfloat z), turn(degrees, Vector3f(x, y, z)))
void glScalef(GLfloat x, GLfloat y, GLfloat z) {
    Place& p = places.back();
    p = {p.x * x, p.y * y, p.z * z, p.origin};
}
void gluLookAt(GLdouble x, GLdouble y, GLdouble z, GLdouble u, GLdouble v, GLdouble w, GLdouble a, GLdouble b,
               GLdouble c) {
    view = {x, y, z, u, v, w, a, b, c};
}
void gluPerspective(GLdouble f, GLdouble a, GLdouble n, GLdouble z) { pen.lens = {f, a, n, z}; }
void gluOrtho2D(GLdouble l, GLdouble r, GLdouble b, GLdouble t) { pen.lens = {l, r, b, t}; }
void glEnable(GLenum what) { able(what, true); }
void glDisable(GLenum what) { able(what, false); }
void glEnableClientState(GLenum) {}
void glDisableClientState(GLenum) {}
void glBlendFunc(GLenum from, GLenum to) { adds = from == GL_SRC_ALPHA && to == GL_ONE; }
void glViewport(GLint, GLint, GLsizei, GLsizei) {}
void glClearColor(GLclampf r, GLclampf g, GLclampf b, GLclampf) { background = {r, g, b}; }
WATCHED(glClear(GLbitfield), stage.note("clear", target(), "to", background[0], background[1], background[2]))
void glVertexPointer(GLint, GLenum, GLsizei pitch, const void* first) {
    positions = static_cast<const char*>(first);
    stride = pitch;
}
void glColorPointer(GLint, GLenum, GLsizei, const void* first) { colours = static_cast<const char*>(first); }
void glLineWidth(GLfloat width) { pen.sizes[1] = width; }
void glPointSize(GLfloat size) { pen.sizes[0] = size; }
void glDrawElements(GLenum mode, GLsizei count, GLenum, const void* indices) {
    draw(mode, count, static_cast<const GLuint*>(indices));
}
void glDrawArrays(GLenum mode, GLint, GLsizei count) { draw(mode, count, nullptr); }
void glBegin(GLenum) { pen.points.clear(); }
void glTexCoord2f(GLfloat s, GLfloat t) { corner.colour = Colour4(s, t, 0, 1); }
void glVertex2f(GLfloat x, GLfloat y) {
    corner.position = Vector3f(x, y, 0);
    pen.points.push_back(corner);
}
void glEnd() {
    draw(GL_QUADS, 0, nullptr);
    pen.points.clear();
}
void glGenTextures(GLsizei, GLuint* p) { *p = make(__func__); }
void glDeleteTextures(GLsizei, const GLuint* p) { stage.own(*p, false); }
void glBindTexture(GLenum, GLuint name) { pen.texture = name; }
void glTexParameterf(GLenum, GLenum, GLfloat) {}
void glTexImage2D(GLenum, GLint, GLint, GLsizei w, GLsizei h, GLint, GLenum, GLenum, const void* pixels) {
    std::string texels;
    for (int i = 0; pixels != nullptr && i < 4 * w * h; ++i) {
        texels += " " + std::to_string(static_cast<const GLubyte*>(pixels)[i]);
    }
    stage.note("texture of", w, "x", h, texels);
}
}
