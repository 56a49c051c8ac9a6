#include "3D/Shader.h"

#include "Utils/GLUtils.h"

#include <cstring>
#include <iostream>
#include <memory>
#include <new>

using Text = std::unique_ptr<char[]>;

// Room for that many characters, the first of them zero, so that a log nobody writes prints as nothing.
// Null if there is no memory for it.
static Text allocateText(std::size_t length) {
    Text text(new (std::nothrow) char[length + 1]);
    if (text != nullptr) {
        text[0] = 0;
    }
    return text;
}

static char* reportUnreadable(const std::string& fileName) {
    std::cerr << "Erreur d'ouverture du fichier: '" << fileName << "'" << std::endl;
    return nullptr;
}

Shader::Shader(const std::string& vertexShaderFileName, const std::string& pixelShaderFile) {
    vsid = static_cast<GLint>(glCreateShader(GL_VERTEX_SHADER));
    psid = static_cast<GLint>(glCreateShader(GL_FRAGMENT_SHADER));
    GLUtils::checkError("glCreateShader");

    const Text vertexSource(readFile(vertexShaderFileName));
    const Text pixelSource(readFile(pixelShaderFile));
    if (vertexSource == nullptr || pixelSource == nullptr) {
        throw ShaderException("Fail to read shaders");
    }

    const char* vertexText = vertexSource.get();
    const char* pixelText = pixelSource.get();
    const auto vertexLength = static_cast<GLint>(std::strlen(vertexText));
    const auto pixelLength = static_cast<GLint>(std::strlen(pixelText));
    glShaderSource(vsid, 1, &vertexText, &vertexLength);
    glShaderSource(psid, 1, &pixelText, &pixelLength);
    glCompileShader(vsid);
    glCompileShader(psid);
    if (!checkShaderCompilation(vertexShaderFileName, vsid) ||
        !checkShaderCompilation(pixelShaderFile, psid)) {
        throw ShaderCreationException();
    }

    pgid = static_cast<GLint>(glCreateProgram());
    glAttachShader(pgid, vsid);
    glAttachShader(pgid, psid);
    glLinkProgram(pgid);
    GLint linked = 0;
    glGetProgramiv(pgid, GL_LINK_STATUS, &linked);
    if (linked != GL_TRUE) {
        GLint logLength = 0;
        glGetProgramiv(pgid, GL_INFO_LOG_LENGTH, &logLength);
        const Text log = allocateText(logLength);
        if (log == nullptr) {
            std::cerr << "Erreur d'allocation de m\xE9moire pour le log de la compilation du programme\n";
            throw ShaderException("Fail to allocate memory for linker log");
        }
        glGetProgramInfoLog(pgid, logLength, nullptr, log.get());
        std::cerr << "Erreur lors du liage du shader:\n" << log.get() << std::flush;
        throw ShaderLoadingException(vertexShaderFileName + " " + pixelShaderFile + " Linking");
    }
}

Shader::~Shader() {
    disable();
    glDetachShader(pgid, psid);
    glDetachShader(pgid, vsid);
    glDeleteProgram(pgid);
    glDeleteShader(psid);
    glDeleteShader(vsid);
}

void Shader::enable() { glUseProgram(pgid); }

void Shader::disable() { glUseProgram(0); }

GLint Shader::getProgram() const { return pgid; }

char* Shader::readFile(const std::string& fileName) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(fileName.c_str(), "r"),
                                                               std::fclose);
    if (file == nullptr) {
        return reportUnreadable(fileName);
    }
    const std::size_t size = getFileSize(file.get());
    Text text = allocateText(size);
    if (text == nullptr) {
        std::cerr << "Erreur d'allocation de la m\xE9moire pour y placer le contenu du fichier\n"
                  << std::endl;
        return nullptr;
    }
    // Ends after what was read, should the file be shorter than it said.
    text[std::fread(text.get(), 1, size, file.get())] = 0;
    if (std::ferror(file.get()) != 0) { // a folder opens, too
        return reportUnreadable(fileName);
    }
    return text.release();
}

unsigned int Shader::getFileSize(std::FILE* file) {
    std::fseek(file, 0, SEEK_END);
    const auto size = static_cast<unsigned int>(std::ftell(file));
    std::fseek(file, 0, SEEK_SET);
    return size;
}

bool Shader::checkShaderCompilation(const std::string& shaderName, GLuint shaderID) {
    GLint compiled = 0;
    glGetShaderiv(shaderID, GL_COMPILE_STATUS, &compiled);
    if (compiled == GL_TRUE) {
        return true;
    }
    GLint logLength = 0;
    glGetShaderiv(shaderID, GL_INFO_LOG_LENGTH, &logLength);
    const Text log = allocateText(logLength);
    if (log != nullptr) {
        glGetShaderInfoLog(shaderID, logLength, nullptr, log.get());
    }
    std::cout << "Fail to link the shader '" << shaderName << "': " << (log != nullptr ? log.get() : "")
              << std::endl;
    return false;
}
