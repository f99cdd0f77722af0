// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "engine/pipeline/CDrawPipeline.h"

struct CMaterialLook;

/** OpenGL's built-in lighting, for contexts without shaders: the same colours as the shaders, computed for
 * each vertex. It shows only the first texture, limits the exponent of highlights to 128 and approximates the
 * soft edge of spots. */
class CFixedPipeline final : public CDrawPipeline {
  public:
    void Begin(CGlCurrent& gl, const CFrame& frame) override;
    void End(CGlCurrent& gl) override;
    [[nodiscard]] std::uint32_t SortKey(const CPreparedMaterial& material,
                                        const CSurfaceUse& use) const override;
    void UseMaterial(CGlCurrent& gl, const CPreparedMaterial& material, const CSurfaceUse& use) override;
    [[nodiscard]] bool MultipliesByOpacity() const override { return false; }
    void UseTransform(CGlCurrent& gl, const CMatrix4d& eyeModelView) override;

  private:
    void UseTexture(CGlCurrent& gl, const CPreparedMaterial& material, const CMaterialLook& look);

    std::optional<CFrame> m_frame;
};
