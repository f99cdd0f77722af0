// SPDX-License-Identifier: MIT
#include "engine/gl/CGlProgram.h"

#include <array>
#include <utility>

#include "engine/gl/gl_api.h"

namespace {

CResult<GLuint> Compile(GLenum kind, const std::string& source) {
    const GLuint shader = glCreateShader(kind);
    const char* text = source.c_str();
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);
    GLint ok = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &ok);
    if (ok) return shader;
    std::array<char, 1024> log{};
    glGetShaderInfoLog(shader, static_cast<GLsizei>(log.size()), nullptr, log.data());
    glDeleteShader(shader);
    return CError{EErrorCode::NoGraphics, std::string("The shader does not compile: ") + log.data(), ""};
}

}  // namespace

CGlProgram::CGlProgram(CGlProgram&& other) noexcept : m_id(std::exchange(other.m_id, 0)) {}

CGlProgram& CGlProgram::operator=(CGlProgram&& other) noexcept {
    std::swap(m_id, other.m_id);
    return *this;
}

CGlProgram::~CGlProgram() {
    if (m_id != 0) glDeleteProgram(m_id);
}

CResult<CGlProgram> CGlProgram::Build(CGlCurrent&, const std::string& vertex, const std::string& fragment) {
    const CResult<GLuint> first = Compile(GL_VERTEX_SHADER, vertex);
    if (!first) return first.Error();
    const CResult<GLuint> second = Compile(GL_FRAGMENT_SHADER, fragment);
    CGlProgram program;
    if (second) {
        program.m_id = glCreateProgram();
        glAttachShader(program.m_id, first.Value());
        glAttachShader(program.m_id, second.Value());
        glLinkProgram(program.m_id);
        glDeleteShader(second.Value());
    }
    glDeleteShader(first.Value());
    if (!second) return second.Error();
    GLint ok = 0;
    glGetProgramiv(program.m_id, GL_LINK_STATUS, &ok);
    if (ok) return program;
    std::array<char, 1024> log{};
    glGetProgramInfoLog(program.m_id, static_cast<GLsizei>(log.size()), nullptr, log.data());
    return CError{EErrorCode::NoGraphics, std::string("The shader does not link: ") + log.data(), ""};
}

void CGlProgram::Use(CGlCurrent&) const {
    glUseProgram(m_id);
}

int CGlProgram::Uniform(CGlCurrent&, const char* name) const {
    return glGetUniformLocation(m_id, name);
}
