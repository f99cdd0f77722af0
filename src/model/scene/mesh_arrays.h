// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <vector>

#include "model/scene/CNoteList.h"

class CMaterialIndex;
struct CMeshView;
struct Lib3dsMesh;
struct Lib3dsMaterial;

/** Mends the arrays in place: points that are not finite become 0 and their faces are emptied (all three
 * indices 0), as are faces that refer to points that are not there; texture coordinates that are not finite
 * become 0. Different meshes may be mended by different threads, each with its own notes. */
void RepairMeshArrays(CMeshView& view, CNoteList& notes);

/** A view of the lists of a Lib3dsMesh, which must stay as they are while the view is used. materials: of its
 * file. */
[[nodiscard]] CMeshView ViewOfMesh(Lib3dsMesh& mesh, const CMaterialIndex& materials);

/** Copies the view's arrays into the lists of a mesh that has none, as lib3ds would have read them; name,
 * matrix and the rest of it stay. False: no memory. */
[[nodiscard]] bool FillMesh(const CMeshView& view, std::span<Lib3dsMaterial* const> materials,
                            Lib3dsMesh& mesh);
/** From now on the view reads the lists of its Lib3dsMesh, which FillMesh has filled from it. */
void PointAtLists(CMeshView& view);
/** Names the faces of a filled mesh after the view's materials. */
void WriteFaceMaterials(const CMeshView& view, std::span<Lib3dsMaterial* const> materials, Lib3dsMesh& mesh);
/** Writes points and matrix of a filled mesh as the view's placing wants them, or without one as they were;
 * the view keeps points of its own from then on. */
void PlacePoints(CMeshView& view);
/** Turns the faces of a filled mesh the other way round. */
void TurnFaces(CMeshView& view);
