// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "base/math/CMatrix.h"
#include "model/scene/CSceneNote.h"
#include "model/textures/CTextureLocator.h"

struct Lib3dsFile;
struct Lib3dsMaterial;
struct Lib3dsMesh;

struct CLib3dsFileDeleter {
    bool keeps = false;  ///< somebody else owns it
    void operator()(Lib3dsFile* file) const;
};
using CLib3dsFilePtr = std::unique_ptr<Lib3dsFile, CLib3dsFileDeleter>;

struct CLib3dsMeshDeleter {
    void operator()(Lib3dsMesh* mesh) const;
};
using CLib3dsMeshPtr = std::unique_ptr<Lib3dsMesh, CLib3dsMeshDeleter>;

/** Where an edit puts a mesh: `points` transforms its points as the file has them, and `matrix` is the mesh
 * matrix that belongs to the result. Where `points` mirrors, faces are turned round, so that they show the
 * same side. */
struct CMeshPlacing {
    CMat4 points, matrix;
};

/** Where the arrays of one mesh lie: in the bytes of the file as they were read, or in a Lib3dsMesh. Both
 * are walked with a stride, so the scene is prepared by one piece of code. All indices and numbers are
 * already repaired. Arrays and matrix stay as they were read, whatever is edited. */
struct CMeshView {
    Lib3dsMesh* mesh = nullptr;         ///< name and flags; its lists may still be empty
    CMat4 matrix;                       ///< the mesh matrix
    const std::byte* points = nullptr;  ///< three floats each
    std::size_t pointStride = 0, pointCount = 0;
    const std::byte* texels = nullptr;  ///< two floats each; count is 0 or >= pointCount
    std::size_t texelStride = 0, texelCount = 0;
    const std::byte* faces = nullptr;  ///< three 16-bit indices and 16-bit flags each
    std::size_t faceStride = 0, faceCount = 0;
    const std::byte* smoothing = nullptr;  ///< 32 bits each, null when the mesh has none
    std::size_t smoothingStride = 0;
    /** For each face the index of its material in file order, kNoMaterial for none; empty: none at all. */
    std::vector<std::uint16_t> faceMaterials;
    /** True where the points are as the file has them although the mesh matrix mirrors (lib3ds turns such
     * points over when it reads them, and back when it writes). */
    bool pointsUnflipped = false;

    // What edits ask for; CScene::File() brings the Lib3dsMesh up to date with it.
    bool isFilled = false;                ///< the lists of mesh hold the arrays
    bool isInFile = true;                 ///< false: taken out of the file, and kept
    std::optional<CMeshPlacing> placing;  ///< none: as it was read
    bool faceNamesAreOld = false, placeIsOld = false;
    bool facesAreTurned = false;   ///< the lists hold faces of mirrored points, the other way round
    std::vector<CVec3> ownPoints;  ///< what points refers to once the lists hold other ones

    static constexpr std::uint16_t kNoMaterial = 0xFFFF;
};

/** A mesh that is in no file yet, and the view of it. */
struct CNewMesh {
    CLib3dsMeshPtr mesh;
    CMeshView view;
};

/** One scene in memory: the Lib3dsFile, the textures' whereabouts, and notes of what was repaired.
 *
 * The large arrays of a scene that was read from bytes stay where they were read, and are copied into the
 * Lib3dsFile only when somebody asks for it (File): viewing needs no second copy, which would be four times
 * as large (lib3ds keeps a 64-byte material name in every face).
 *
 * Meshes and materials are known by their numbers: the order of the file, new ones behind. A mesh that is
 * taken out keeps its number. */
class CScene {
  public:
    CScene();
    CScene(CScene&&) noexcept;
    CScene& operator=(CScene&&) noexcept;
    ~CScene();

    /** Takes a scene made by somebody else (never null) and repairs it in place. */
    [[nodiscard]] static CScene Adopt(CLib3dsFilePtr file);
    /** The same for a scene that its owner keeps; it must outlive the result. */
    [[nodiscard]] static CScene Borrow(Lib3dsFile& file);

    /** The complete scene with all edits, owned by this object, never null. The first call fills the mesh
     * arrays; further ones write what edits changed since. */
    [[nodiscard]] Lib3dsFile* File();
    /** The same structure; mesh arrays may be empty, and older than the edits. */
    [[nodiscard]] Lib3dsFile* Header() const { return m_file.get(); }
    [[nodiscard]] const std::vector<CMeshView>& Meshes() const { return m_meshes; }

    // --- edits, each with the one that takes it back (the last one first) -----------------------------------
    /** Adds a mesh as the last one. */
    void AddMesh(CNewMesh mesh);
    void DropLastMesh();
    /** A mesh of the same arrays under another name. */
    [[nodiscard]] CNewMesh CopyOfMesh(std::size_t mesh, std::string_view name) const;
    /** False takes a mesh out of the file and keeps it; true puts it back. */
    void SetInFile(std::size_t mesh, bool isInFile);
    /** Puts a mesh where an edit wants it; without a value, where it was read. */
    void Place(std::size_t mesh, const std::optional<CMeshPlacing>& placing);
    /** Where the mesh stands with all edits. */
    [[nodiscard]] CMat4 MatrixOf(std::size_t mesh) const;
    /** Replaces material `from` by `to` on all faces of a mesh; both may be kNoMaterial. */
    void ChangeFaceMaterial(std::size_t mesh, std::uint16_t from, std::uint16_t to);
    /** Adds a material as the last one and takes ownership of it. */
    void AddMaterial(Lib3dsMaterial* material);
    void DropLastMaterial();

    [[nodiscard]] const std::vector<CSceneNote>& Notes() const { return m_notes; }
    [[nodiscard]] const CTextureLocator& Textures() const { return m_textures; }
    void SetTextures(CTextureLocator textures) { m_textures = std::move(textures); }
    void AddNote(CSceneNote note) { m_notes.push_back(std::move(note)); }
    /** The files that it was read from, pictures apart: UTF-8 paths. */
    [[nodiscard]] const std::vector<std::string>& SourceFiles() const { return m_sourceFiles; }
    void AddSourceFile(std::string path) { m_sourceFiles.push_back(std::move(path)); }
    /** Frees the raw bytes, for programs that only draw. File() can no longer fill the mesh arrays then. */
    void DropArrays();

  private:
    friend class C3dsParser;
    explicit CScene(CLib3dsFilePtr file) : m_file(std::move(file)) {}
    /** What points at the mesh in the file's list, or would. */
    [[nodiscard]] Lib3dsMesh*& LinkTo(std::size_t mesh);

    CLib3dsFilePtr m_file;
    std::vector<std::byte> m_bytes;                 ///< what m_meshes points into; repaired in place
    std::vector<std::vector<std::byte>> m_patches;  ///< lists that were too short in m_bytes
    std::vector<CMeshView> m_meshes;
    std::map<std::size_t, CLib3dsMeshPtr> m_takenOut;  ///< by their numbers
    std::vector<Lib3dsMaterial*> m_materials;          ///< of the file, once one was added
    CTextureLocator m_textures;
    std::vector<CSceneNote> m_notes;
    std::vector<std::string> m_sourceFiles;
};
