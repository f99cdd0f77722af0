// SPDX-License-Identifier: MIT
#pragma once

class CPovText;
struct CPovMesh;
struct CPovPart;

/** Writes a part as "mesh2{..." with its lists and textures, without the closing brace.
 *
 * In POV-Ray normals and texture coordinates can use the vertices' indices or their own index lists. Which is
 * shorter depends on how many vertices share them; this writes the shortest of the four combinations. */
void WritePovMesh2(CPovText& text, const CPovMesh& mesh, const CPovPart& part);
