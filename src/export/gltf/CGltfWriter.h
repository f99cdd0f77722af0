// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "export/gltf/CGltfMaterials.h"
#include "export/gltf/CGltfMeshes.h"
#include "export/gltf/CGltfNodes.h"
#include "export/gltf/CGltfPictures.h"
#include "export/gltf/glb/CGlbFile.h"
#include "export/gltf/glb/CJsonText.h"
#include "export/gltf/write_gltf.h"

class CGltfViewers;

/** Writes one scene as glTF; see WriteGlb. An object writes only once. */
class CGltfWriter {
  public:
    /** What source refers to must outlive it. */
    CGltfWriter(const CGltfSource& source, const CGltfOptions& options);

    [[nodiscard]] CResult<std::vector<std::byte>> Write(CJobProgress* progress);

  private:
    void WriteScene(const CGltfViewers& viewers);
    void WriteExtras();

    CGltfSource m_source;
    CGltfOptions m_options;
    CGlbFile m_file;
    CGltfPictures m_pictures;
    CGltfMaterials m_materials;
    CGltfMeshes m_meshes;
    CGltfNodes m_nodes;
    CJsonText m_json;
};
