// SPDX-License-Identifier: MIT
#pragma once

class CGlCurrent;
struct CFrameView;
struct CPreparedScene;

/** Draws for GL_SELECT with the two current matrices: for each node that may be hit glLoadName(its index),
 * then its triangles. OpenGL selects triangle by triangle on the processor, so only nodes whose bounds, and
 * of these only triangles whose corners, are not all beyond one side of the view volume are handed over.
 *
 * What can be hit is what can be seen: one-sided materials not from behind, and no hidden node or invisible
 * material. Wires count as if they were filled, for they are too thin to be hit. */
void DrawSelectable(CGlCurrent& gl, const CPreparedScene& scene, const CFrameView& view);
