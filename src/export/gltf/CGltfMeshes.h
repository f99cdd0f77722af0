// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "export/gltf/parts/CGltfGeometry.h"
#include "export/gltf/parts/CGltfNames.h"
#include "export/gltf/parts/gltf_morphs.h"

class CGlbFile;
class CGltfMaterials;
class CJobProgress;
class CJsonText;
struct CPreparedMesh;
struct CPreparedScene;

/** The meshes of a glTF file. What is equal is written once: the numbers of a mesh, and a mesh with its materials. */
class CGltfMeshes {
  public:
    /** All must outlive it. */
    CGltfMeshes(const CPreparedScene& scene, CGltfMaterials& materials, CGlbFile& file)
        : m_scene(scene), m_materials(materials), m_file(file) {}

    using CMorphs = std::map<std::size_t, CGltfMorph>;  ///< by mesh of the scene

    /** Works out the meshes that are used (one entry for each of the scene's), on all cores. */
    [[nodiscard]] CStatus Add(const std::vector<bool>& used, CMorphs morphs, CJobProgress* progress);

    /** The number of a mesh; -1 where it shows nothing. */
    [[nodiscard]] int NumberOf(std::size_t mesh) const { return m_numbers[mesh]; }
    /** What takes its written points back to the file's: times the scale, plus the offset. */
    [[nodiscard]] CVec3 OffsetOf(std::size_t mesh) const { return At(mesh).offset; }
    [[nodiscard]] float ScaleOf(std::size_t mesh) const { return At(mesh).scale; }

    [[nodiscard]] const CMorphs& Morphs() const { return m_morphs; }
    /** The weights of its shapes; empty for a mesh that has one shape. */
    [[nodiscard]] std::vector<float> WeightsOf(std::size_t mesh, const CMorphShape& shape) const;

    /** Writes the member "meshes". */
    void Write(CJsonText& json) const;

  private:
    /** One primitive for each batch that shows something. */
    struct CParts {
        std::vector<CGltfRange> ranges;
        std::vector<std::uint32_t> materials;  ///< of the scene
    };
    struct CTarget {
        int positions = -1, normals = -1;  ///< accessors
    };
    struct CWritten {
        CVec3 offset;
        float scale = 1;
        int positions = -1, normals = -1, texCoords = -1;  ///< accessors
        std::vector<int> indices;                          ///< accessors, one for each range
        std::vector<CTarget> targets;
    };
    struct CMesh {
        std::string name;
        std::size_t geometry = 0;
        std::vector<int> materials;
        std::vector<bool> isFlat;  ///< readers make flat normals where there are none
    };

    [[nodiscard]] const CWritten& At(std::size_t mesh) const { return m_written[m_geometryOf[mesh]]; }
    void FindParts(const std::vector<bool>& used);
    /** Gives equal meshes one number; returns a mesh for each. */
    [[nodiscard]] std::vector<std::size_t> FindEqual();
    [[nodiscard]] bool AreEqual(std::size_t one, std::size_t other) const;
    [[nodiscard]] const CPreparedMesh& Source(std::size_t mesh) const;
    /** Geometry and shapes of one mesh. */
    struct CMade {
        CGltfGeometry geometry;
        std::vector<CGltfDeltas> shapes;
    };
    [[nodiscard]] CMade Make(std::size_t mesh) const;
    void Append(const CMade& made);
    [[nodiscard]] CTarget Append(const CGltfDeltas& shape, std::size_t count);
    void WriteTargets(CJsonText& json, const CWritten& written, bool isFlat) const;
    void NumberMaterials();
    void NumberMeshes();

    const CPreparedScene& m_scene;
    CGltfMaterials& m_materials;
    CGlbFile& m_file;
    CMorphs m_morphs;
    std::vector<CParts> m_parts;              ///< by mesh of the scene
    std::vector<std::size_t> m_geometryOf;    ///< by mesh of the scene; valid where it has parts
    std::vector<CWritten> m_written;          ///< by geometry
    std::vector<int> m_numbers;               ///< by mesh of the scene
    std::map<std::vector<int>, int> m_known;  ///< meshes by geometry and materials
    CGltfNames m_names;
    std::vector<CMesh> m_meshes;
};
