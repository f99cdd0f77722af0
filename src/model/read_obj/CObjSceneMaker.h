// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "model/read_obj/CMtlLibrary.h"
#include "model/read_obj/CObjGeometry.h"
#include "model/read_obj/CObjMeshBuilder.h"
#include "model/read_obj/obj_smoothing.h"
#include "model/scene/CNoteList.h"
#include "model/scene/CScene.h"
#include "model/scene/unique_names.h"

struct Lib3dsMaterial;
struct Lib3dsMesh;

/** Puts the lib3ds scene together: one mesh for each piece, and the materials that they use. */
class CObjSceneMaker {
  public:
    CObjSceneMaker(const CObjGeometry& geometry, const CMtlLibrary& library, CNoteList& notes);

    /** Called once. A scene without meshes when no face can be drawn. */
    [[nodiscard]] CLib3dsFilePtr Make();

  private:
    [[nodiscard]] EObjSmoothing SmoothingSource() const;
    void AddMesh(std::uint32_t group, CObjPiece piece);
    /** The name of the lib3ds material, which is made when it is first asked for; -1 asks for the default. */
    [[nodiscard]] const std::string& MaterialName(std::int32_t material);
    void AddMaterial(std::int32_t material);

    const CObjGeometry& m_geometry;
    const CMtlLibrary& m_library;
    CNoteList& m_notes;
    CLib3dsFilePtr m_file;
    Lib3dsMaterial** m_materialLink;
    Lib3dsMesh** m_meshLink;
    EObjSmoothing m_smoothing;
    std::vector<std::string> m_materialNames;  ///< of material number i - 1; empty until it is used
    CUniqueNames m_meshNames, m_namesOfMaterials;
};
