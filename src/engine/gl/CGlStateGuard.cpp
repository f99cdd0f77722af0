// SPDX-License-Identifier: MIT
#include "engine/gl/CGlStateGuard.h"

#include "engine/gl/gl_api.h"

CGlStateGuard::CGlStateGuard(CGlCurrent&, bool hasShaders) : m_hasShaders(hasShaders) {
    if (m_hasShaders) glGetIntegerv(GL_CURRENT_PROGRAM, &m_program);
    glPushAttrib(GL_ENABLE_BIT | GL_LIGHTING_BIT | GL_POLYGON_BIT | GL_COLOR_BUFFER_BIT |
                 GL_DEPTH_BUFFER_BIT | GL_TEXTURE_BIT | GL_LINE_BIT | GL_CURRENT_BIT | GL_TRANSFORM_BIT);
    glPushClientAttrib(GL_CLIENT_ALL_ATTRIB_BITS);
    glGetFloatv(GL_PROJECTION_MATRIX, m_projection.data());
    glActiveTexture(GL_TEXTURE0);
    glMatrixMode(GL_TEXTURE);
    glPushMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
}

CGlStateGuard::~CGlStateGuard() {
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(m_projection.data());
    glActiveTexture(GL_TEXTURE0);
    glMatrixMode(GL_TEXTURE);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
    glPopClientAttrib();
    glPopAttrib();
    if (m_hasShaders) glUseProgram(static_cast<GLuint>(m_program));
}
