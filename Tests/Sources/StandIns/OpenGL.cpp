// OpenGL as the show uses it, as far as the matrix that places its lines.

#include <cmath>
#include <cstring>

#include <GL/glew.h>
#include <GL/glu.h>

#include "StandIns/Stage.h"

namespace {
template <typename... Arguments>
void note(const Arguments&... arguments) {
    stage().record(arguments...);
}

/// What the model-view matrix does beside the camera: scale, turn about the vertical, move.
struct Placement {
    double x, y, z, degrees, scale;

    Vector3f of(const Vector3f& p) const {
        const double s = std::sin(degrees * M_PI / 180);
        const double c = std::cos(degrees * M_PI / 180);
        return {static_cast<float>(x + scale * (c * p.x + s * p.z)), static_cast<float>(y + scale * p.y),
                static_cast<float>(z + scale * (c * p.z - s * p.x))};
    }
};
const Placement UNMOVED = {0, 0, 0, 0, 1};

/// What a new context begins with.
struct Context {
    std::vector<Placement> modelView = {UNMOVED};
    GLenum matrixMode = GL_MODELVIEW;
    const char* positions = nullptr;
    const char* colours = nullptr;
    std::size_t stride = 0;
    float lineWidth = 1;
    float pointSize = 1;
    GLuint textures = 0;
    GLuint framebuffers = 0;
    GLuint renderbuffers = 0;
    GLuint objects = 0; ///< shaders and programs

    Placement& place() { return modelView.back(); }
} gl;

void show(GLenum mode, float size, GLsizei count, const GLuint* indices) {
    if (!stage().hashing && !stage().watching) {
        return;
    }
    Drawing drawing = {mode, size, {}};
    for (GLuint i = 0; i < static_cast<GLuint>(count); ++i) {
        const std::size_t at = gl.stride * (indices != nullptr ? indices[i] : i);
        Point point;
        std::memcpy(&point.position, gl.positions + at, sizeof point.position);
        std::memcpy(&point.colour, gl.colours + at, sizeof point.colour);
        if (stage().hashing) {
            stage().mix(point);
        }
        if (stage().watching) {
            point.position = gl.place().of(point.position);
            drawing.points.push_back(point);
        }
    }
    if (stage().watching) {
        stage().drawings.push_back(drawing);
    }
}

GLuint make(const char* call, GLuint& last) {
    note(call);
    ++stage().liveObjects;
    return stage().fails(call) ? 0 : ++last;
}

void destroy(const char* call, GLuint name) {
    note(call, name);
    --stage().liveObjects;
}

void query(GLuint object, GLenum what, GLint* value) {
    *value = what == GL_INFO_LOG_LENGTH ? stage().logLength
                                        : static_cast<GLint>(stage().broken.count(object) == 0);
}

void fetchLog(GLuint /*object*/, GLsizei size, GLsizei* /*length*/, GLchar* log) {
    std::strncpy(log, stage().log.c_str(), size);
}
} // namespace

extern "C" {
PFNGLGENFRAMEBUFFERSPROC __glewGenFramebuffers = [](GLsizei, GLuint* p) {
    *p = make("glGenFramebuffers", gl.framebuffers);
};
PFNGLDELETEFRAMEBUFFERSPROC __glewDeleteFramebuffers = [](GLsizei, const GLuint* p) {
    destroy("glDeleteFramebuffers", *p);
};
PFNGLBINDFRAMEBUFFERPROC __glewBindFramebuffer = [](auto... a) { note("glBindFramebuffer", a...); };
PFNGLFRAMEBUFFERTEXTURE2DPROC __glewFramebufferTexture2D = [](auto... a) {
    note("glFramebufferTexture2D", a...);
};
PFNGLFRAMEBUFFERRENDERBUFFERPROC __glewFramebufferRenderbuffer = [](auto... a) {
    note("glFramebufferRenderbuffer", a...);
};
PFNGLCHECKFRAMEBUFFERSTATUSPROC __glewCheckFramebufferStatus = [](GLenum) -> GLenum {
    return stage().fails("glCheckFramebufferStatus") ? GL_FRAMEBUFFER_UNSUPPORTED : GL_FRAMEBUFFER_COMPLETE;
};
PFNGLGENRENDERBUFFERSPROC __glewGenRenderbuffers = [](GLsizei, GLuint* p) {
    *p = make("glGenRenderbuffers", gl.renderbuffers);
};
PFNGLDELETERENDERBUFFERSEXTPROC __glewDeleteRenderbuffersEXT = [](GLsizei, const GLuint* p) {
    destroy("glDeleteRenderbuffersEXT", *p);
};
PFNGLBINDRENDERBUFFERPROC __glewBindRenderbuffer = [](auto... a) { note("glBindRenderbuffer", a...); };
PFNGLRENDERBUFFERSTORAGEPROC __glewRenderbufferStorage = [](auto... a) {
    note("glRenderbufferStorage", a...);
};
PFNGLCREATESHADERPROC __glewCreateShader = [](GLenum) { return make("glCreateShader", gl.objects); };
PFNGLSHADERSOURCEPROC __glewShaderSource = [](GLuint shader, GLsizei, const GLchar* const* text,
                                              const GLint* size) {
    note("glShaderSource", shader, std::string(*text, *size));
};
PFNGLCOMPILESHADERPROC __glewCompileShader = [](auto... a) { note("glCompileShader", a...); };
PFNGLGETSHADERIVPROC __glewGetShaderiv = query;
PFNGLGETSHADERINFOLOGPROC __glewGetShaderInfoLog = fetchLog;
PFNGLDELETESHADERPROC __glewDeleteShader = [](GLuint shader) { destroy("glDeleteShader", shader); };
PFNGLCREATEPROGRAMPROC __glewCreateProgram = [] { return make("glCreateProgram", gl.objects); };
PFNGLATTACHSHADERPROC __glewAttachShader = [](auto... a) { note("glAttachShader", a...); };
PFNGLDETACHSHADERPROC __glewDetachShader = [](auto... a) { note("glDetachShader", a...); };
PFNGLLINKPROGRAMPROC __glewLinkProgram = [](auto... a) { note("glLinkProgram", a...); };
PFNGLGETPROGRAMIVPROC __glewGetProgramiv = query;
PFNGLGETPROGRAMINFOLOGPROC __glewGetProgramInfoLog = fetchLog;
PFNGLUSEPROGRAMPROC __glewUseProgram = [](auto... a) { note("glUseProgram", a...); };
PFNGLDELETEPROGRAMPROC __glewDeleteProgram = [](GLuint program) { destroy("glDeleteProgram", program); };
PFNGLGETUNIFORMLOCATIONPROC __glewGetUniformLocation = [](GLuint program, const GLchar* name) -> GLint {
    note("glGetUniformLocation", program, name);
    return name[0]; // told apart by that
};
PFNGLUNIFORM1FPROC __glewUniform1f = [](auto... a) { note("glUniform1f", a...); };

GLenum glewInit() {
    note("glewInit");
    gl = Context();
    return stage().fails("glewInit") ? 1 : GLEW_OK;
}
GLboolean glewIsSupported(const char* name) { return stage().fails(name) ? GL_FALSE : GL_TRUE; }
const GLubyte* glewGetErrorString(GLenum /*error*/) {
    return reinterpret_cast<const GLubyte*>("GLEW is unwell");
}

GLenum glGetError() {
    ++stage().errorChecks;
    GLenum error = GL_NO_ERROR;
    if (!stage().errors.empty()) {
        error = stage().errors.front();
        stage().errors.pop_front();
    }
    return error;
}
void glEnable(GLenum what) { note("glEnable", what); }
void glDisable(GLenum what) { note("glDisable", what); }
void glBlendFunc(GLenum source, GLenum destination) { note("glBlendFunc", source, destination); }
void glClear(GLbitfield buffers) { note("glClear", buffers); }
void glClearColor(GLclampf r, GLclampf g, GLclampf b, GLclampf a) { note("glClearColor", r, g, b, a); }
void glViewport(GLint x, GLint y, GLsizei w, GLsizei h) { note("glViewport", x, y, w, h); }
void glMatrixMode(GLenum mode) { note("glMatrixMode", gl.matrixMode = mode); }
void glLoadIdentity() {
    note("glLoadIdentity");
    gl.place() = gl.matrixMode == GL_MODELVIEW ? UNMOVED : gl.place();
}
// The other stack is pushed and popped in step with this one.
void glPushMatrix() {
    note("glPushMatrix");
    gl.modelView.push_back(gl.place());
}
void glPopMatrix() {
    note("glPopMatrix");
    gl.modelView.pop_back();
}
void glTranslatef(GLfloat x, GLfloat y, GLfloat z) {
    note("glTranslatef", x, y, z);
    const Vector3f p = gl.place().of({x, y, z});
    gl.place() = {p.x, p.y, p.z, gl.place().degrees, gl.place().scale};
}
void glScalef(GLfloat x, GLfloat y, GLfloat z) {
    note("glScalef", x, y, z);
    gl.place().scale *= x;
}
void glRotatef(GLfloat degrees, GLfloat x, GLfloat y, GLfloat z) {
    note("glRotatef", degrees, x, y, z);
    gl.place().degrees += degrees * y;
}
void gluPerspective(GLdouble fov, GLdouble aspect, GLdouble near, GLdouble far) {
    note("gluPerspective", fov, aspect, near, far);
}
void gluOrtho2D(GLdouble l, GLdouble r, GLdouble b, GLdouble t) { note("gluOrtho2D", l, r, b, t); }
void gluLookAt(GLdouble x, GLdouble y, GLdouble z, GLdouble cx, GLdouble cy, GLdouble cz, GLdouble ux,
               GLdouble uy, GLdouble uz) {
    note("gluLookAt", x, y, z, cx, cy, cz, ux, uy, uz);
}
void glEnableClientState(GLenum array) { note("glEnableClientState", array); }
void glDisableClientState(GLenum array) { note("glDisableClientState", array); }
void glVertexPointer(GLint size, GLenum type, GLsizei stride, const void* first) {
    note("glVertexPointer", size, type, stride);
    gl.positions = static_cast<const char*>(first);
    gl.stride = stride;
}
void glColorPointer(GLint size, GLenum type, GLsizei stride, const void* first) {
    note("glColorPointer", size, type, stride);
    gl.colours = static_cast<const char*>(first);
}
void glLineWidth(GLfloat width) { note("glLineWidth", gl.lineWidth = width); }
void glPointSize(GLfloat size) { note("glPointSize", gl.pointSize = size); }
void glDrawElements(GLenum mode, GLsizei count, GLenum type, const void* indices) {
    note("glDrawElements", mode, count, type);
    show(mode, gl.lineWidth, count, static_cast<const GLuint*>(indices));
}
void glDrawArrays(GLenum mode, GLint first, GLsizei count) {
    note("glDrawArrays", mode, first, count);
    show(mode, gl.pointSize, count, nullptr);
}
void glBegin(GLenum mode) { note("glBegin", mode); }
void glEnd() { note("glEnd"); }
void glTexCoord2f(GLfloat s, GLfloat t) { note("glTexCoord2f", s, t); }
void glVertex2f(GLfloat x, GLfloat y) { note("glVertex2f", x, y); }
void glGenTextures(GLsizei /*n*/, GLuint* names) { *names = make("glGenTextures", gl.textures); }
void glDeleteTextures(GLsizei /*n*/, const GLuint* names) { destroy("glDeleteTextures", *names); }
void glBindTexture(GLenum target, GLuint name) { note("glBindTexture", target, name); }
void glTexParameterf(GLenum target, GLenum name, GLfloat value) {
    note("glTexParameterf", target, name, value);
}
void glTexImage2D(GLenum target, GLint level, GLint inside, GLsizei width, GLsizei height, GLint border,
                  GLenum format, GLenum type, const void* pixels) {
    std::string texels;
    for (GLsizei i = 0; pixels != nullptr && i < 4 * width * height; ++i) {
        texels += ' ' + std::to_string(static_cast<const GLubyte*>(pixels)[i]);
    }
    note("glTexImage2D", target, level, inside, width, height, border, format, type, texels);
}
}
