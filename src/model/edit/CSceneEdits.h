// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "model/edit/CEdit.h"
#include "model/edit/CEditedScene.h"
#include "model/edit/CPictureShelf.h"

struct CPreparedScene;

/** Applies edits to one scene and its prepared form, and takes them back, the last one first.
 *
 * An edit changes only what it names: all other places, names and visible sides stay as they were
 * decided when the scene was opened. Changing the values of a material prepares no mesh, and a picture
 * is decoded once while the scene is open. Only a mesh from another file, or one that gets its first
 * picture, is prepared. */
class CSceneEdits {
  public:
    /** Neither is owned, both must outlive this. prepared was made from scene, and may be evaluated at other
     * frames meanwhile. */
    CSceneEdits(CScene& scene, CPreparedScene& prepared);
    CSceneEdits(const CSceneEdits&) = delete;
    CSceneEdits& operator=(const CSceneEdits&) = delete;

    /** Applies edits in their order and returns one status for each. An edit that fails changes
     * nothing, and those after it are still applied. Moves and rotations refer to the frame at which
     * prepared was evaluated. */
    [[nodiscard]] std::vector<CStatus> Apply(std::span<const CEdit> edits);
    /** Undoes the last `count` edits that succeeded: everything is as it was before them. False when there
     * are fewer; then nothing is undone. */
    [[nodiscard]] bool TakeBack(std::size_t count);
    /** True while the scene has an edit that was not taken back. */
    [[nodiscard]] bool IsEdited() const { return !m_starts.empty(); }

    /** The names of the materials that a node's parts have, as the file has them, each once. Parts
     * without a material give an empty name, which as a target means all of the node. Empty when there is
     * no such node. */
    [[nodiscard]] std::vector<std::string> MaterialNamesOf(const std::string& node) const;

    /** Call it before the scene is written. A program that opens the file decides again from its contents
     * where objects stand and how they face. Where it would decide otherwise because of the edits, the file
     * gets other values with the same meaning. The next edit undoes this. */
    void SettleForSaving();

  private:
    using CMaterialChange = CEditedScene::CMaterialChange;
    /** What SettleForSaving wrote, to be undone before the next edit. */
    struct CSettled {
        struct CPivot {
            Lib3dsNode* node;
            CVec3 before;
        };
        std::vector<std::size_t> meshes;
        std::vector<CPivot> pivots;
        std::vector<Lib3dsMaterial*> twoSided;
    };

    [[nodiscard]] CStatus Do(const CColorEdit& edit);
    [[nodiscard]] CStatus Do(const CShininessEdit& edit);
    [[nodiscard]] CStatus Do(const CTransparencyEdit& edit);
    [[nodiscard]] CStatus Do(const CTextureEdit& edit);
    [[nodiscard]] CStatus Do(const CMoveEdit& edit);
    [[nodiscard]] CStatus Do(const CRotateEdit& edit);
    [[nodiscard]] CStatus Do(const CReplaceEdit& edit);
    [[nodiscard]] CStatus Do(const CDeleteEdit& edit);

    /** The materials that an edit may change; what is shared with other nodes is split off. */
    [[nodiscard]] CResult<std::vector<std::uint32_t>> Targets(const CMaterialTarget& target);
    [[nodiscard]] CResult<std::vector<std::uint32_t>> TargetsOnNode(const CMaterialTarget& target);
    [[nodiscard]] std::uint32_t OwnMaterial(std::size_t mesh, std::uint32_t material);
    [[nodiscard]] CStatus ChangeValue(const CMaterialTarget& target, bool isNumber,
                                      const CMaterialChange& change);
    [[nodiscard]] CResult<std::string> AddPictureFile(const std::string& path);
    [[nodiscard]] std::string AddPicture(const CPictureShelf::CPicture& picture);
    void AdoptPictures(const CScene& from, Lib3dsMaterial& material);

    [[nodiscard]] CStatus PlaceByMesh(std::size_t node, const CMat4& transform);
    [[nodiscard]] CVec3 TurningPoint(const CPreparedNode& node) const;
    void DropMorphTargets(const Lib3dsNode& deleted);
    [[nodiscard]] bool IsMorphTarget(const std::string& mesh, const Lib3dsNode* exceptOf) const;
    void LeaveEmptyMesh(std::size_t node);
    void PutMesh(std::size_t node, CNewMesh mesh, const CMat4& place);
    void AdoptMaterials(const CScene& from, CMeshView& view);
    [[nodiscard]] std::uint32_t AdoptMaterial(const CScene& from, const Lib3dsMaterial& material);

    void Unsettle();
    void Settle(std::size_t mesh, const CMeshPlacing& placing);
    void SettlePlacedTwice();
    void SettleMirroring();
    void SettleNotPlacedTwice();

    CScene& m_scene;
    CPreparedScene& m_prepared;
    CPictureShelf m_shelf;
    CEditedScene m_edited;
    std::vector<std::size_t> m_starts;  ///< for each edit not taken back, the number of steps before it
    float m_firstFrame;                 ///< that the scene was opened at
    CSettled m_settled;
};
