// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/CResult.h"
#include "engine/gl/CGlProgram.h"
#include "engine/pipeline/CDrawPipeline.h"
#include "engine/pipeline/shader_source.h"

struct CMaterialLook;

/** Per-pixel Blinn-Phong in GLSL 1.20; programs are built when a scene first needs them, and kept. */
class CShaderPipeline final : public CDrawPipeline {
  public:
    /** Builds a program from the sources of a vertex and a fragment shader. */
    using CBuilder = CResult<CGlProgram> (*)(CGlCurrent&, const std::string&, const std::string&);
    explicit CShaderPipeline(CBuilder build = &CGlProgram::Build) : m_build(build) {}

    void Begin(CGlCurrent& gl, const CFrame& frame) override;
    void End(CGlCurrent& gl) override;
    [[nodiscard]] std::uint32_t SortKey(const CPreparedMaterial& material,
                                        const CSurfaceUse& use) const override;
    void UseMaterial(CGlCurrent& gl, const CPreparedMaterial& material, const CSurfaceUse& use) override;
    [[nodiscard]] bool MultipliesByOpacity() const override { return true; }
    void UseTransform(CGlCurrent& gl, const CMatrix4d& eyeModelView) override;

    /** Builds the simplest program. An error means that this context cannot compile our shaders. */
    [[nodiscard]] CStatus Check(CGlCurrent& gl);
    /** To be called between two scenes: keeps the programs for the next one, but of more than kMostKept only those that were
     * used since the last call. A software renderer holds half a megabyte of machine code for each. True when it has
     * deleted any. */
    bool Trim() {
        constexpr std::size_t kMostKept = 12;
        const std::uint64_t before = std::exchange(m_trimmedAt, m_frameNumber);
        if (m_programs.size() <= kMostKept) return false;
        return std::erase_if(m_programs, [&](const auto& item) { return item.second.frame <= before; }) > 0;
    }

  private:
    struct CVariantProgram {
        CGlProgram program;
        std::uint64_t frame = 0;  ///< the drawing (m_frameNumber) in which its lights were last set
        int normal = -1, toViewer = -1, viewer = -1, base = -1, diffuse = -1, ambient = -1, self = -1,
            specular = -1;
        int ambientLight = -1, lightPosition = -1, lightDirection = -1, lightColor = -1, lightRange = -1;
        int mapS = -1, mapT = -1, mapValue = -1, mapWeight = -1;
    };
    [[nodiscard]] CShaderVariant Variant(const CPreparedMaterial& material, const CSurfaceUse& use) const;
    [[nodiscard]] CResult<CVariantProgram> Build(CGlCurrent& gl, const CShaderVariant& variant) const;
    CVariantProgram& Program(CGlCurrent& gl, const CShaderVariant& variant);
    void SetFrame(const CVariantProgram& program) const;
    void SetLook(const CVariantProgram& program, const CMaterialLook& look) const;
    void SetMaps(CGlCurrent& gl, const CVariantProgram& program, const CPreparedMaterial& material,
                 const CMaterialLook& look) const;

    CBuilder m_build;
    std::unordered_map<std::uint32_t, CVariantProgram> m_programs;
    std::unordered_set<std::uint32_t> m_rejected;  ///< variants that the driver cannot compile
    CVariantProgram* m_current = nullptr;
    std::optional<CFrame> m_frame;
    std::array<float, 9> m_toViewer{};  ///< CFrameView::PixelToViewer of this drawing
    std::uint64_t m_frameNumber = 0, m_trimmedAt = 0;
};
