// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "base/CResult.h"
#include "model/read_3ds/CChunkWalker.h"
#include "model/read_3ds/CMeshChunk.h"
#include "model/read_3ds/keyframer_reading.h"
#include "model/scene/CNoteList.h"
#include "model/scene/CScene.h"

/** Turns the bytes of a 3DS file into a CScene: the guard in front of lib3ds, which trusts its input.
 *
 * The chunk tree is walked inside its bounds. Small chunks are handed to lib3ds as clean copies
 * (clean_chunks.h); the large arrays of meshes are left where they lie and mended there; key lists
 * and the node tree are built directly. Source of the format: lib3ds 1.3's reader and the 3D Studio
 * File Format (3DSFF). */
class C3dsParser {
  public:
    /** Fails with BadFormat when the bytes are no 3DS file. */
    [[nodiscard]] static CResult<CScene> Parse(std::vector<std::byte> bytes);
    /** False when Parse would refuse any file that begins with these bytes. */
    [[nodiscard]] static bool MayBeScene(std::span<const std::byte> firstBytes);

  private:
    explicit C3dsParser(std::vector<std::byte> bytes);
    [[nodiscard]] CStatus ReadMain();
    void ReadSections(const C3dsChunk& main);
    void ReadMeshData(const C3dsChunk& chunk);
    void ReadSetting(const C3dsChunk& chunk);
    void ReadMaterial(const C3dsChunk& chunk);
    void ReadNamedObject(const C3dsChunk& chunk);
    void AddCamera(const std::string& name, const C3dsChunk& chunk, std::uint32_t objectFlags);
    void AddLight(const std::string& name, const C3dsChunk& chunk, std::uint32_t objectFlags);
    void AddMesh(const std::string& name, const C3dsChunk& chunk, std::uint32_t objectFlags);
    /** False where the scene has as many meshes as it may have; a note says so. */
    [[nodiscard]] bool MayAddMesh(bool hasFaces);
    void FinishMeshes();
    /** Nodes that share a mesh and change its shape each get a mesh of their own. */
    void SeparateMorphs();
    [[nodiscard]] std::span<const std::byte> Bytes() const { return m_scene.m_bytes; }

    CScene m_scene;
    CNoteList m_notes;
    std::vector<CMeshChunk> m_meshChunks;  ///< one for each mesh of the file, in order
    CKeyframerReader m_keyframer;
    struct Lib3dsMaterial** m_nextMaterial;
    struct Lib3dsMesh** m_nextMesh;
    struct Lib3dsCamera** m_nextCamera;
    struct Lib3dsLight** m_nextLight;
    std::size_t m_materialCount = 0, m_cameraCount = 0, m_lightCount = 0, m_emptyMeshCount = 0;
};
