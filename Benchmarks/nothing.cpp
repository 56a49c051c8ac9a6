// OpenGL and a window that do nothing, as fast as that can be done.

#include <GL/glew.h>
#include <GL/glu.h>
#include <SDL.h>

namespace {
// Names of objects are not told apart.
void oneName(GLsizei /*n*/, GLuint* names) { *names = 1; }
void noName(GLsizei /*n*/, const GLuint* /*names*/) {}
void objectOnly(GLuint /*object*/) {}
void twoObjects(GLuint /*a*/, GLuint /*b*/) {}
void bindObject(GLenum /*target*/, GLuint /*name*/) {}
void success(GLuint /*object*/, GLenum /*name*/, GLint* value) { *value = GL_TRUE; }
void noLog(GLuint /*object*/, GLsizei /*size*/, GLsizei* /*length*/, GLchar* /*log*/) {}
} // namespace

extern "C" {
PFNGLGENFRAMEBUFFERSPROC __glewGenFramebuffers = oneName;
PFNGLDELETEFRAMEBUFFERSPROC __glewDeleteFramebuffers = noName;
PFNGLBINDFRAMEBUFFERPROC __glewBindFramebuffer = bindObject;
PFNGLFRAMEBUFFERTEXTURE2DPROC __glewFramebufferTexture2D = [](GLenum, GLenum, GLenum, GLuint, GLint) {};
PFNGLFRAMEBUFFERRENDERBUFFERPROC __glewFramebufferRenderbuffer = [](GLenum, GLenum, GLenum, GLuint) {};
PFNGLCHECKFRAMEBUFFERSTATUSPROC __glewCheckFramebufferStatus = [](GLenum) -> GLenum {
    return GL_FRAMEBUFFER_COMPLETE;
};
PFNGLGENRENDERBUFFERSPROC __glewGenRenderbuffers = oneName;
PFNGLDELETERENDERBUFFERSEXTPROC __glewDeleteRenderbuffersEXT = noName;
PFNGLBINDRENDERBUFFERPROC __glewBindRenderbuffer = bindObject;
PFNGLRENDERBUFFERSTORAGEPROC __glewRenderbufferStorage = [](GLenum, GLenum, GLsizei, GLsizei) {};
PFNGLCREATESHADERPROC __glewCreateShader = [](GLenum) -> GLuint { return 1; };
PFNGLSHADERSOURCEPROC __glewShaderSource = [](GLuint, GLsizei, const GLchar* const*, const GLint*) {};
PFNGLCOMPILESHADERPROC __glewCompileShader = objectOnly;
PFNGLGETSHADERIVPROC __glewGetShaderiv = success;
PFNGLGETSHADERINFOLOGPROC __glewGetShaderInfoLog = noLog;
PFNGLDELETESHADERPROC __glewDeleteShader = objectOnly;
PFNGLCREATEPROGRAMPROC __glewCreateProgram = []() -> GLuint { return 1; };
PFNGLATTACHSHADERPROC __glewAttachShader = twoObjects;
PFNGLDETACHSHADERPROC __glewDetachShader = twoObjects;
PFNGLLINKPROGRAMPROC __glewLinkProgram = objectOnly;
PFNGLGETPROGRAMIVPROC __glewGetProgramiv = success;
PFNGLGETPROGRAMINFOLOGPROC __glewGetProgramInfoLog = noLog;
PFNGLUSEPROGRAMPROC __glewUseProgram = objectOnly;
PFNGLDELETEPROGRAMPROC __glewDeleteProgram = objectOnly;
PFNGLGETUNIFORMLOCATIONPROC __glewGetUniformLocation = [](GLuint, const GLchar*) -> GLint { return 0; };
PFNGLUNIFORM1FPROC __glewUniform1f = [](GLint, GLfloat) {};

GLenum glewInit() { return GLEW_OK; }
GLboolean glewIsSupported(const char* /*name*/) { return GL_TRUE; }
const GLubyte* glewGetErrorString(GLenum /*error*/) { return nullptr; }

GLenum glGetError() { return GL_NO_ERROR; }
void glEnable(GLenum /*what*/) {}
void glDisable(GLenum /*what*/) {}
void glBlendFunc(GLenum /*source*/, GLenum /*destination*/) {}
void glClear(GLbitfield /*buffers*/) {}
void glClearColor(GLclampf /*r*/, GLclampf /*g*/, GLclampf /*b*/, GLclampf /*a*/) {}
void glViewport(GLint /*x*/, GLint /*y*/, GLsizei /*width*/, GLsizei /*height*/) {}
void glMatrixMode(GLenum /*mode*/) {}
void glLoadIdentity() {}
void glPushMatrix() {}
void glPopMatrix() {}
void glTranslatef(GLfloat /*x*/, GLfloat /*y*/, GLfloat /*z*/) {}
void glRotatef(GLfloat /*angle*/, GLfloat /*x*/, GLfloat /*y*/, GLfloat /*z*/) {}
void glScalef(GLfloat /*x*/, GLfloat /*y*/, GLfloat /*z*/) {}
void gluPerspective(GLdouble /*fov*/, GLdouble /*aspect*/, GLdouble /*near*/, GLdouble /*far*/) {}
void gluOrtho2D(GLdouble /*left*/, GLdouble /*right*/, GLdouble /*bottom*/, GLdouble /*top*/) {}
void glEnableClientState(GLenum /*array*/) {}
void glDisableClientState(GLenum /*array*/) {}
void glVertexPointer(GLint /*size*/, GLenum /*type*/, GLsizei /*stride*/, const void* /*first*/) {}
void glColorPointer(GLint /*size*/, GLenum /*type*/, GLsizei /*stride*/, const void* /*first*/) {}
void glLineWidth(GLfloat /*width*/) {}
void glPointSize(GLfloat /*size*/) {}
void glDrawElements(GLenum /*mode*/, GLsizei /*count*/, GLenum /*type*/, const void* /*indices*/) {}
void glDrawArrays(GLenum /*mode*/, GLint /*first*/, GLsizei /*count*/) {}
void glBegin(GLenum /*mode*/) {}
void glEnd() {}
void glTexCoord2f(GLfloat /*s*/, GLfloat /*t*/) {}
void glVertex2f(GLfloat /*x*/, GLfloat /*y*/) {}
void glGenTextures(GLsizei n, GLuint* names) { oneName(n, names); }
void glDeleteTextures(GLsizei /*n*/, const GLuint* /*names*/) {}
void glBindTexture(GLenum /*target*/, GLuint /*name*/) {}
void glTexParameterf(GLenum /*target*/, GLenum /*name*/, GLfloat /*value*/) {}
void glTexImage2D(GLenum /*target*/, GLint /*level*/, GLint /*inside*/, GLsizei /*width*/, GLsizei /*height*/,
                  GLint /*border*/, GLenum /*format*/, GLenum /*type*/, const void* /*pixels*/) {}

int SDL_Init(Uint32 /*flags*/) { return 0; }
SDL_Surface* SDL_SetVideoMode(int width, int height, int /*bpp*/, Uint32 /*flags*/) {
    static SDL_Surface window{};
    window.w = width;
    window.h = height;
    return &window;
}
void SDL_WM_SetCaption(const char* /*title*/, const char* /*icon*/) {}
int SDL_FillRect(SDL_Surface* /*dst*/, SDL_Rect* /*dstrect*/, Uint32 /*color*/) { return 0; }
Uint32 SDL_MapRGB(const SDL_PixelFormat* /*format*/, Uint8 /*r*/, Uint8 /*g*/, Uint8 /*b*/) { return 0; }
void SDL_UpdateRect(SDL_Surface* /*surface*/, Sint32 /*x*/, Sint32 /*y*/, Uint32 /*w*/, Uint32 /*h*/) {}
void SDL_PumpEvents() {}
Uint8* SDL_GetKeyState(int* numkeys) {
    static Uint8 keys[SDLK_LAST] = {};
    *numkeys = SDLK_LAST;
    return keys;
}
}
