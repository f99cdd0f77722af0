// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "export/gltf/parts/CGltfNames.h"
#include "export/gltf/parts/CGltfTransform.h"

class CGltfMeshes;
class CJsonText;
struct CPreparedScene;

/** One node of a glTF file. */
struct CGltfNode {
    std::string name;
    CGltfTransform transform;
    int mesh = -1, camera = -1, light = -1;
    std::vector<float> weights;
    std::vector<int> children;
};

/** The nodes of a glTF file. Number 0 is the root, which turns the file's axes (z up) into glTF's (y up). */
class CGltfNodes {
  public:
    CGltfNodes();

    /** Adds the nodes that show something or may, those that they hang on, and their meshes, posed as they are at the
     * scene's frame. */
    void AddObjects(const CPreparedScene& scene, const CGltfMeshes& meshes, const std::vector<bool>& shown);
    int Add(CGltfNode node, int parent);

    [[nodiscard]] CGltfNode& At(int node) { return m_nodes[static_cast<std::size_t>(node)]; }
    [[nodiscard]] const CGltfNode& At(int node) const { return m_nodes[static_cast<std::size_t>(node)]; }
    /** The node that has the pose of a node of the scene; -1: none, or it never moves. */
    [[nodiscard]] int PosedBy(std::size_t node) const { return m_posed[node]; }
    /** The nodes of glTF that belong to the mesh of a node of the scene. */
    struct CHolder {
        int mesh = -1;    ///< that has it; -1: none
        int hiding = -1;  ///< whose scale is 0 while the mesh is hidden; -1: it is always shown
        CVec3 scale;      ///< of that one, while it is shown
    };
    [[nodiscard]] const CHolder& HolderOf(std::size_t node) const { return m_holders[node]; }

    /** Writes the member "nodes". */
    void Write(CJsonText& json) const;

  private:
    /** Adds nodes whose product is the matrix, and returns the innermost; the parent for an identity. */
    int AddChain(const CMatrix4d& matrix, int parent, std::string name, bool mayBeNone);
    void AddPosed(const CPreparedScene& scene, std::size_t n);
    void AddObject(const CPreparedScene& scene, const CGltfMeshes& meshes, std::size_t n, bool showsMesh);
    void AddMesh(const CPreparedScene& scene, const CGltfMeshes& meshes, std::size_t n, int parent);

    CGltfNames m_names;
    std::vector<CGltfNode> m_nodes;
    std::vector<int> m_inner;  ///< by node of the scene: what its children hang on; -1: not there
    std::vector<int> m_posed;
    std::vector<CHolder> m_holders;
};

/** For each node of the scene whether its mesh is shown: now, or at some frame between its first and last. */
[[nodiscard]] std::vector<bool> ShownNodes(const CPreparedScene& scene);
