// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "export/gltf/CGltfPictures.h"
#include "export/gltf/parts/CGltfNames.h"
#include "export/gltf/write_gltf.h"

class CGlbFile;
class CJsonText;
struct CPreparedMap;
struct CPreparedMaterial;

/** The materials of a glTF file that are used. docs/manual/gltf.md tells how a Phong material becomes one of metal and
 * roughness. */
class CGltfMaterials {
  public:
    /** All must outlive it. */
    CGltfMaterials(const CPreparedScene& scene, const CGltfOptions& options, CGltfPictures& pictures,
                   CGlbFile& file)
        : m_scene(scene), m_options(options), m_pictures(pictures), m_file(file) {}

    /** The number of a material of the scene. One that has maps is another on a mesh without texture coordinates. */
    [[nodiscard]] int Use(std::uint32_t material, bool hasTexCoords);
    /** Writes the member "materials", and tells the pictures which are used. */
    void Write(CJsonText& json);

  private:
    struct CUsed {
        std::uint32_t material = 0;
        bool hasTexCoords = false;
        std::string name;
    };
    /** How the maps of a material become one picture with alpha. */
    struct CBase {
        const CPreparedMap* map = nullptr;  ///< that places the picture; null: no picture
        CGltfPicture picture;
        bool hasOpacity = false;  ///< the alpha is that of the opacity map
    };

    [[nodiscard]] bool Has(const CPreparedMap& map, bool hasTexCoords) const;
    [[nodiscard]] CBase BaseOf(const CPreparedMaterial& material, bool hasTexCoords);
    [[nodiscard]] bool CanJoin(const CPreparedMap& texture, const CPreparedMap& opacity) const;
    void WriteOne(CJsonText& json, const CUsed& used);
    void WriteBase(CJsonText& json, const CPreparedMaterial& material, const CBase& base);
    void WriteEmission(CJsonText& json, const CPreparedMaterial& material, const CBase& base,
                       bool hasTexCoords);
    void WriteAlphaMode(CJsonText& json, const CPreparedMaterial& material, const CBase& base);
    void WriteSpecular(CJsonText& json, const CPreparedMaterial& material);
    void WriteTexture(CJsonText& json, const char* key, const CGltfPicture& picture, const CPreparedMap& map);
    void WriteExtras(CJsonText& json, const CPreparedMaterial& material, const CBase& base,
                     bool hasTexCoords);
    void WriteMaps(CJsonText& json, const CPreparedMaterial& material, const CBase& base, bool hasTexCoords);

    const CPreparedScene& m_scene;
    CGltfOptions m_options;
    CGltfPictures& m_pictures;
    CGlbFile& m_file;
    std::map<std::pair<std::uint32_t, bool>, int> m_known;
    CGltfNames m_names;
    std::vector<CUsed> m_used;
};
