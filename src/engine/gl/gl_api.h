// SPDX-License-Identifier: MIT
#pragma once

/** OpenGL as this folder includes it: the entry points of libOpenGL, which exist at link time whatever the
 * context is. Ask CGlCapabilities before anything beyond OpenGL 1.5 is called. */
#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>
