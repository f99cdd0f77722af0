// SPDX-License-Identifier: MIT
#pragma once

class CGlCurrent;
struct CFrameView;
struct CPreparedScene;

/** Draws for GL_SELECT with the two current matrices: calls glLoadName with the index of each node that may
 * be hit, then draws its triangles. OpenGL selects on the processor, triangle by triangle; so nodes and
 * triangles that lie wholly beyond one side of the view volume are left out.
 *
 * Only what can be seen can be hit: no one-sided material from behind, no hidden node, no invisible material.
 * Triangles of wire materials are filled, because lines are too thin to be hit. */
void DrawSelectable(CGlCurrent& gl, const CPreparedScene& scene, const CFrameView& view);
