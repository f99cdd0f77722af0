// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "export/pov/C3ds2Pov.h"
#include "export/pov/CPovCamera.h"
#include "export/pov/CPovMaterials.h"
#include "export/pov/CPovPictures.h"
#include "export/pov/text/CPovText.h"
#include "export/pov/text/pov_parts.h"

class CAtomicFile;
class CTextureLocator;
struct CPreparedScene;

/** Writes one prepared scene, whose pictures must be loaded, as a POV-Ray file. An object writes
 * only once. */
class CPovWriter {
  public:
    /** Ignores the camera and the angles of format; seen replaces them. scene and textures must outlive
     * this object. */
    CPovWriter(const CPreparedScene& scene, const CTextureLocator& textures, const CSeenView& seen,
               const C3ds2Pov::COutFormat& format);

    /** See C3ds2Pov. Exceptions of the flow are passed on. output is UTF-8; flow may be null. */
    [[nodiscard]] CStatus Write(const std::string& output, C3ds2PovExportFlow* flow);

  private:
    /** A mesh with the nodes that show it. If a node's transform flattens it, the mesh is written for that
     * node alone, with transformed vertices (moved). */
    struct CExportWork {
        std::uint32_t mesh = 0;
        std::vector<std::uint32_t> nodes;
        bool moved = false;
    };

    void CollectWork();
    void UseMaterials(CPovMaterials& materials);
    [[nodiscard]] CPovText Head(const CPovMaterials& materials) const;
    void WriteEnvironment(CPovText& text, const CPovPictures::CPicture& picture) const;
    [[nodiscard]] CStatus WriteMeshes(CAtomicFile& file, C3ds2PovExportFlow* flow);
    [[nodiscard]] CPovText WorkText(std::size_t workIndex) const;
    [[nodiscard]] std::vector<CVec3> EyesOf(const CExportWork& work) const;
    [[nodiscard]] float ExtentFor(const CExportWork& work) const;
    void WritePlaced(CPovText& text, const CExportWork& work, std::uint32_t node, float enlarged) const;
    /** The transform of a node's mesh to written coordinates, without m_scale. */
    [[nodiscard]] CMat4 PlaceOf(std::uint32_t node) const;
    [[nodiscard]] bool HasMode(C3ds2Pov::EMode bit) const { return (m_format.mode & bit) != 0; }

    const CPreparedScene& m_scene;
    const CTextureLocator& m_locator;
    C3ds2Pov::COutFormat m_format;
    CPovCamera m_camera;
    float m_scale = 1;  ///< of the whole scene: POV-Ray is imprecise with tiny and huge ones
    std::vector<CExportWork> m_work;
    std::uint32_t m_leftOut = 0;                    ///< flattened nodes beyond the budget of CollectWork
    std::vector<std::vector<CPovBatch>> m_batches;  ///< by mesh
};
