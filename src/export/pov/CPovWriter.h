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

/** Writes one prepared scene, whose pictures are loaded, as a POV-Ray file. Use it once. */
class CPovWriter {
  public:
    /** What is seen comes from seen; of format its camera and angles are not looked at. The first two must
     * outlive it. */
    CPovWriter(const CPreparedScene& scene, const CTextureLocator& textures, const CSeenView& seen,
               const C3ds2Pov::COutFormat& format);

    /** See C3ds2Pov; exceptions of the flow come through. output is UTF-8. */
    [[nodiscard]] CStatus Write(const std::string& output, C3ds2PovExportFlow* flow);

  private:
    /** A mesh with the nodes that show it; one that a node flattens stands alone and is moved already. */
    struct CJob {
        std::uint32_t mesh = 0;
        std::vector<std::uint32_t> nodes;
        bool moved = false;
    };

    [[nodiscard]] CStatus CheckOutput(const std::string& output) const;
    void CollectJobs();
    void UseMaterials(CPovMaterials& materials);
    [[nodiscard]] CPovText Head(const CPovMaterials& materials) const;
    void WriteEnvironment(CPovText& text, const CPovPictures::CPicture& picture) const;
    [[nodiscard]] CStatus WriteMeshes(CAtomicFile& file, C3ds2PovExportFlow* flow);
    [[nodiscard]] CPovText JobText(std::size_t job) const;
    [[nodiscard]] std::vector<CVec3> EyesOf(const CJob& job) const;
    [[nodiscard]] float ExtentFor(const CJob& job) const;
    void WritePlaced(CPovText& text, const CJob& job, std::uint32_t node, float enlarged) const;
    /** Of a node's mesh, to written coordinates but for m_scale. */
    [[nodiscard]] CMat4 PlaceOf(std::uint32_t node) const;
    [[nodiscard]] bool HasMode(C3ds2Pov::EMode bit) const { return (m_format.mode & bit) != 0; }

    const CPreparedScene& m_scene;
    const CTextureLocator& m_locator;
    C3ds2Pov::COutFormat m_format;
    CPovCamera m_camera;
    float m_scale = 1;  ///< of the whole written scene, as POV-Ray is imprecise with tiny and huge ones
    std::vector<CJob> m_jobs;
    std::vector<std::vector<CPovBatch>> m_batches;  ///< by mesh
};
