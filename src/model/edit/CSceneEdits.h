// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

#include "base/CResult.h"
#include "base/math/CMatrix.h"
#include "lib3ds/types.h"

class CScene;
struct CPreparedScene;

/** Edits of one scene. They change the Lib3dsFile, so that whatever is written or exported
 * afterwards has them.
 *
 * Nodes and materials go on answering to the names they had when the object was made, although splitting
 * one off gives the new part another name in the file: a list of edits may name the same node and material
 * again and again.
 *
 * After edits the prepared scene is out of date: moving and turning nodes needs EvaluateNodes, everything
 * for which NeedsPreparing() says so needs PrepareScene, and then Renew() before the next edit that takes
 * a prepared scene. */
class CSceneEdits {
  public:
    using CMaterialChange = std::function<void(Lib3dsMaterial&)>;

    /** The scene is not owned and must outlive this; prepared was made from it and is only read now. */
    CSceneEdits(CScene& scene, const CPreparedScene& prepared);

    /** Takes a node out, and its mesh when no other node shows it. One that has children becomes a dummy,
     * which draws nothing, so that they stay where they are. */
    [[nodiscard]] CStatus DeleteNode(std::string_view node);
    /** Shows the mesh of another file's node (UTF-8 path) in place of this node's: the new mesh's own origin
     * comes to where the old one's was, with the node's position, turn, size and animation. newNode empty:
     * the node of the same name, or else the first one with a mesh. Its materials come along, under new names
     * where the scene has others so named. */
    [[nodiscard]] CStatus ReplaceNode(std::string_view node, std::string_view path, std::string_view newNode);
    /** Moves a node (and its children) by offset in scene coordinates; prepared tells where
     * its parent stands. */
    [[nodiscard]] CStatus MoveNode(const CPreparedScene& prepared, std::string_view node, CVec3 offset);
    /** Turns a node (and its children) about its own origin by RotationOfAngles in scene coordinates. */
    [[nodiscard]] CStatus RotateNode(const CPreparedScene& prepared, std::string_view node, CVec3 anglesDeg);
    /** Changes a material on this node alone: what it shares with other nodes is split off first. An empty
     * name stands for all its materials; faces without one then get one. */
    [[nodiscard]] CStatus ChangeNodeMaterial(std::string_view node, std::string_view material,
                                             const CMaterialChange& change);
    /** Changes a material wherever it is used, split or not. */
    [[nodiscard]] CStatus ChangeMaterial(std::string_view material, const CMaterialChange& change);

    [[nodiscard]] bool NeedsPreparing() const { return m_needsPreparing; }
    /** Takes a newly prepared scene: gives its nodes the names they answer to here. */
    void Renew(CPreparedScene& prepared);

  private:
    struct CTarget {
        Lib3dsNode* node = nullptr;   ///< null for a mesh without one
        Lib3dsMesh* mesh = nullptr;   ///< null for a dummy
        bool isPlacedByMesh = false;  ///< as in CPreparedNode
    };

    [[nodiscard]] CTarget* Find(std::string_view node);
    void Index(const CPreparedScene& prepared);
    [[nodiscard]] bool Answers(std::string_view material, std::string_view asked) const;
    [[nodiscard]] bool IsShared(const Lib3dsMesh* mesh) const;
    [[nodiscard]] bool OwnMesh(CTarget& target);
    [[nodiscard]] Lib3dsMaterial* OwnMaterial(Lib3dsMesh& mesh, const std::string& material);
    [[nodiscard]] CStatus TransformMesh(CTarget& target, const CMat4& transform);
    void DropMesh(Lib3dsMesh* mesh);
    void HideMorphTargets(const Lib3dsNode& node);
    void PutMesh(CTarget& target, Lib3dsMesh* mesh, const CMat4& meshToNode);
    void TakeMaterials(CScene& from, Lib3dsMesh& mesh);
    void Changed();

    CScene& m_scene;
    std::map<std::string, CTarget, std::less<>> m_targets;
    std::unordered_map<const void*, std::string> m_names;  ///< by node, or mesh without one
    std::map<std::string, std::string, std::less<>>
        m_materialOrigin;  ///< new name to the one it was split from
    bool m_needsPreparing = false;
};
