// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lib3ds/types.h"
#include "model/prepare/CPreparedScene.h"
#include "model/scene/CScene.h"

class CPictureShelf;

/** A scene and its prepared form, changed in step by small steps, each of which notes what takes it back
 * exactly. Indices are those of the prepared scene; a mesh has the same one in both, and so has a material,
 * but for the last prepared one, which stands for none.
 *
 * A mesh that is taken out leaves an empty one in its place. What is taken out lives on until this goes. */
class CEditedScene {
  public:
    using CMaterialChange = std::function<void(Lib3dsMaterial&)>;

    /** Neither is owned, both must outlive this, and nobody else may change them meanwhile but by evaluating
     * the prepared one. */
    CEditedScene(CScene& scene, CPreparedScene& prepared, CPictureShelf& shelf);

    [[nodiscard]] const CScene& Scene() const { return m_scene; }
    [[nodiscard]] const CPreparedScene& Prepared() const { return m_prepared; }

    // --- taking back ---------------------------------------------------------------------------------------
    [[nodiscard]] std::size_t StepCount() const { return m_undo.size(); }
    /** Takes the last steps back until so many are left. */
    void UndoTo(std::size_t count);
    /** After steps and their taking back: evaluates and counts anew what they changed. */
    void Finish();

    // --- materials -----------------------------------------------------------------------------------------
    [[nodiscard]] std::uint32_t NoMaterial() const;
    /** In the scene; null for NoMaterial(). */
    [[nodiscard]] const Lib3dsMaterial* Material(std::uint32_t index) const;
    /** As the file has it, also for one that was split off; empty for NoMaterial(). */
    [[nodiscard]] const std::string& NameInFile(std::uint32_t index) const;
    void ChangeMaterial(std::uint32_t index, const CMaterialChange& change);
    /** The same, and the surface shows another picture, -1 for none. */
    void ChangeMaterial(std::uint32_t index, const CMaterialChange& change, int texture);
    /** A new material; it gets a name that is free. */
    std::uint32_t AddMaterial(const Lib3dsMaterial& values, CPreparedMaterial look,
                              const std::string& nameInFile);
    /** A copy of a material, or one for faces without. */
    std::uint32_t CopyMaterial(std::uint32_t index);
    /** Gives the parts of a mesh that have one material another one, which no part of it has. */
    void UseMaterial(std::size_t mesh, std::uint32_t from, std::uint32_t to);

    // --- pictures ------------------------------------------------------------------------------------------
    void SetTextures(CTextureLocator textures);
    /** The picture that is found under a name, decoded once; one that is not found or not readable has an
     * empty image, and a note says so. */
    [[nodiscard]] int TextureOf(const std::string& reference);

    // --- meshes --------------------------------------------------------------------------------------------
    /** A name for a further mesh. */
    [[nodiscard]] std::string NewMeshName(const std::string& base);
    /** As the last ones of both. */
    void AddMesh(CNewMesh mesh, CPreparedMesh prepared);
    void TakeMeshOut(std::size_t mesh);
    void PlaceMesh(std::size_t mesh, const CMeshPlacing& placing);
    /** Prepares a mesh again that was prepared without texture coordinates, if it has some. */
    void AddTexCoords(std::size_t mesh);
    /** True where several nodes show it. */
    [[nodiscard]] bool IsShared(std::size_t mesh) const;
    /** Gives a node a copy of the mesh that it shares with others; the mesh that it shows then. */
    std::size_t OwnMesh(std::size_t node);

    // --- nodes ---------------------------------------------------------------------------------------------
    /** The object or dummy of that name. */
    [[nodiscard]] std::optional<std::size_t> FindNode(const std::string& name) const;
    /** For changing anything but its name and source. */
    [[nodiscard]] CPreparedNode& ChangeNode(std::size_t node);
    /** For changing name, instance and pivot of a node that has a source. */
    [[nodiscard]] Lib3dsNode& ChangeSource(std::size_t node);
    /** For changing position and rotation keys. */
    [[nodiscard]] Lib3dsNode& ChangeTracks(std::size_t node);
    /** Of a node without children. */
    void RemoveNode(std::size_t node);

  private:
    struct CMaterial {
        Lib3dsMaterial* file;
        std::string nameInFile;
    };
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
    std::set<std::string> m_materialNames{""}, m_meshNames{""};    ///< taken
    mutable std::unordered_map<std::string, std::size_t> m_nodes;  ///< by name; empty: to be made anew
    bool m_placesChanged = false;
};
