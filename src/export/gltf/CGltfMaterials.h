// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "export/gltf/CGltfNames.h"
#include "export/gltf/write_gltf.h"

class CJsonText;
struct CPreparedMaterial;

/** The materials of a glTF file that are used. */
class CGltfMaterials {
  public:
    CGltfMaterials(const CPreparedScene& scene, const CGltfOptions& options)
        : m_scene(scene), m_options(options) {}

    /** The number of a material of the scene. One that has maps is another on a mesh without texture coordinates. */
    [[nodiscard]] int Use(std::uint32_t material, bool hasTexCoords);
    /** Writes the member "materials". */
    void Write(CJsonText& json) const;

  private:
    void WriteOne(CJsonText& json, const CPreparedMaterial& material) const;

    const CPreparedScene& m_scene;
    CGltfOptions m_options;
    std::map<std::pair<std::uint32_t, bool>, int> m_known;
    std::vector<std::uint32_t> m_used;
};
