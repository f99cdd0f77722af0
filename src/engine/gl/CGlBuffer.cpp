// SPDX-License-Identifier: MIT
#include "engine/gl/CGlBuffer.h"

#include <utility>

#include "engine/gl/gl_api.h"

namespace {

GLenum Name(CGlBuffer::ETarget target) {
    return target == CGlBuffer::ETarget::Vertices ? GL_ARRAY_BUFFER : GL_ELEMENT_ARRAY_BUFFER;
}

}  // namespace

CGlBuffer::CGlBuffer(CGlBuffer&& other) noexcept
    : m_id(std::exchange(other.m_id, 0)), m_bytes(std::exchange(other.m_bytes, 0)) {}

CGlBuffer& CGlBuffer::operator=(CGlBuffer&& other) noexcept {
    std::swap(m_id, other.m_id);
    std::swap(m_bytes, other.m_bytes);
    return *this;
}

CGlBuffer::~CGlBuffer() {
    if (m_id != 0) glDeleteBuffers(1, &m_id);
}

void CGlBuffer::Fill(CGlCurrent&, ETarget target, const void* data, std::size_t bytes, EUsage usage) {
    if (m_id == 0) glGenBuffers(1, &m_id);
    glBindBuffer(Name(target), m_id);
    glBufferData(Name(target), static_cast<GLsizeiptr>(bytes), data,
                 usage == EUsage::Static ? GL_STATIC_DRAW : GL_STREAM_DRAW);
    m_bytes = bytes;
}

void CGlBuffer::FillInPlace(CGlCurrent& gl, ETarget target, const void* data, std::size_t bytes) {
    if (m_id == 0) glGenBuffers(1, &m_id);
    (void)glGetError();
    glBindBuffer(GL_EXTERNAL_VIRTUAL_MEMORY_BUFFER_AMD, m_id);
    glBufferData(GL_EXTERNAL_VIRTUAL_MEMORY_BUFFER_AMD, static_cast<GLsizeiptr>(bytes), data, GL_STATIC_DRAW);
    glBindBuffer(GL_EXTERNAL_VIRTUAL_MEMORY_BUFFER_AMD, 0);
    if (glGetError() != GL_NO_ERROR) return Fill(gl, target, data, bytes);
    glBindBuffer(Name(target), m_id);
    m_bytes = bytes;
}

void CGlBuffer::Bind(CGlCurrent&, ETarget target) const {
    glBindBuffer(Name(target), m_id);
}
