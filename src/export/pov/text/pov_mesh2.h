// SPDX-License-Identifier: MIT
#pragma once

class CPovText;
struct CPovMesh;
struct CPovPart;

/** Writes a part as "mesh2{..." with its lists and textures, without the closing brace.
 *
 * POV-Ray lets normals and texture coordinates follow the vertices or have index lists of their own. Which is
 * shorter depends on how many vertices share them, so of the four ways the shortest is taken. */
void WritePovMesh2(CPovText& text, const CPovMesh& mesh, const CPovPart& part);
