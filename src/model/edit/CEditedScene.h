// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/name_hash.h"
#include "lib3ds/types.h"
#include "model/prepare/CPreparedScene.h"
#include "model/scene/CScene.h"
#include "model/scene/unique_names.h"

class CPictureShelf;

/** Changes a scene and its prepared form together, in small steps, and records for each step how to undo it
 * exactly. Indices are those of the prepared scene. Meshes and materials have the same index in both forms,
 * except that the last prepared material stands for faces without one.
 *
 * A mesh that is taken out leaves an empty one in its place. What is taken out is kept until this object
 * is destroyed. */
class CEditedScene {
  public:
    using CMaterialChange = std::function<void(Lib3dsMaterial&)>;

    /** Owns none of the three, which must outlive this. Nobody else may change them meanwhile, except by
     * evaluating the prepared scene. */
    CEditedScene(CScene& scene, CPreparedScene& prepared, CPictureShelf& shelf);

    [[nodiscard]] const CScene& Scene() const { return m_scene; }
    [[nodiscard]] const CPreparedScene& Prepared() const { return m_prepared; }

    // --- taking back ---------------------------------------------------------------------------------------
    [[nodiscard]] std::size_t StepCount() const { return m_undo.size(); }
    /** Undoes the last steps until `count` of them are left. */
    void UndoTo(std::size_t count);
    /** Call it after a series of steps or UndoTo: evaluates nodes and counts parts again as far as
     * they changed. */
    void Finish();

    // --- materials -----------------------------------------------------------------------------------------
    [[nodiscard]] std::uint32_t NoMaterial() const;
    /** The material in the scene; null for NoMaterial(). */
    [[nodiscard]] const Lib3dsMaterial* Material(std::uint32_t index) const;
    /** The material's name in the file, also for a copy; empty for NoMaterial(). */
    [[nodiscard]] const std::string& NameInFile(std::uint32_t index) const;
    /** See material_edits, as it was before any edit: so a colour looks the same whatever colours came before. */
    [[nodiscard]] float AmbientShare(std::uint32_t index) const { return m_materials[index].ambientShare; }
    void ChangeMaterial(std::uint32_t index, const CMaterialChange& change);
    /** The same; the surface also shows another picture: an index into textures, -1 for none. */
    void ChangeMaterial(std::uint32_t index, const CMaterialChange& change, int texture);
    /** Adds a material under a name that is not taken, and returns its index. */
    std::uint32_t AddMaterial(const Lib3dsMaterial& values, CPreparedMaterial look,
                              const std::string& nameInFile);
    /** Adds a copy of a material; of NoMaterial(), one that faces without a material can get. */
    std::uint32_t CopyMaterial(std::uint32_t index);
    /** Replaces material `from` by `to` on a mesh of which no part has `to` yet. */
    void UseMaterial(std::size_t mesh, std::uint32_t from, std::uint32_t to);

    // --- pictures ------------------------------------------------------------------------------------------
    void SetTextures(CTextureLocator textures);
    /** The index of the texture that a material's reference names. Its picture is decoded once; where it is
     * not found or cannot be read, the image is empty and a note says so. */
    [[nodiscard]] int TextureOf(const std::string& reference);

    // --- meshes --------------------------------------------------------------------------------------------
    /** A mesh name that is not taken, made from base. */
    [[nodiscard]] std::string NewMeshName(const std::string& base);
    /** Adds a mesh as the last one of scene and prepared scene. */
    void AddMesh(CNewMesh mesh, CPreparedMesh prepared);
    void TakeMeshOut(std::size_t mesh);
    void PlaceMesh(std::size_t mesh, const CMeshPlacing& placing);
    /** Where a mesh was prepared without the texture coordinates that it has, prepares it again with them. */
    void AddTexCoords(std::size_t mesh);
    /** True where several nodes show it. */
    [[nodiscard]] bool IsShared(std::size_t mesh) const;
    /** Where a node shares its mesh with others, gives it a copy of its own. Returns the mesh that it
     * then shows. */
    std::size_t OwnMesh(std::size_t node);

    // --- nodes ---------------------------------------------------------------------------------------------
    /** The object or dummy of that name. */
    [[nodiscard]] std::optional<std::size_t> FindNode(const std::string& name) const;
    /** The node, for changes of anything but its name and source. */
    [[nodiscard]] CPreparedNode& ChangeNode(std::size_t node);
    /** The file's node, for changes of name, instance and pivot. The node must have a source. */
    [[nodiscard]] Lib3dsNode& ChangeSource(std::size_t node);
    /** The file's node, for changes of position and rotation keys. The node must have a source. */
    [[nodiscard]] Lib3dsNode& ChangeTracks(std::size_t node);
    /** Takes out a node that has no children. */
    void RemoveNode(std::size_t node);

  private:
    struct CMaterial {
        Lib3dsMaterial* file;
        std::string nameInFile;
        float ambientShare;
    };
    [[nodiscard]] std::uint64_t PictureBytesLeft() const;
    void DecideLook(CPreparedMaterial& look);
    void RenumberNoMaterial(std::uint32_t from, std::uint32_t to);
    [[nodiscard]] std::uint16_t FaceMaterial(std::uint32_t index) const;
    void LinkPrepared(std::size_t index, CPreparedNode node);
    void UnlinkPrepared(std::size_t index);

    CScene& m_scene;
    CPreparedScene& m_prepared;
    CPictureShelf& m_shelf;
    std::vector<std::function<void()>> m_undo;
    std::vector<CMaterial> m_materials;
    CUniqueNames m_materialNames, m_meshNames;
    mutable CNameMap<std::size_t> m_nodes;  ///< by name; empty: to be made anew
    bool m_placesChanged = false;
};
