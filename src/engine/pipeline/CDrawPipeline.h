// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

#include "base/math/CMatrix.h"
#include "engine/gl/CGlTexture.h"
#include "engine/pipeline/shader_source.h"

class CGlCurrent;
class CTextureSet;
struct CFrameLights;
struct CFrameView;
struct CPreparedMaterial;

/** What stays the same during one drawing of the view. */
struct CFrame {
    const CFrameView& view;
    const CFrameLights& lights;
    CTextureSet& textures;
    ETextureFilter filter = ETextureFilter::Trilinear;
    bool asLines = false;  ///< the caller draws a wire frame
};

/** One way of giving materials, lights and transforms to OpenGL. Begin and End enclose one drawing of the
 * view. The caller sets culling, blending and buffers, and restores the state that the pipeline changes. */
class CDrawPipeline {
  public:
    virtual ~CDrawPipeline() = default;
    virtual void Begin(CGlCurrent& gl, const CFrame& frame) = 0;
    virtual void End(CGlCurrent& gl) = 0;
    /** Parts with equal keys need few changes of state between them, so the caller groups them. */
    [[nodiscard]] virtual std::uint32_t SortKey(const CPreparedMaterial& material,
                                                const CSurfaceUse& use) const = 0;
    virtual void UseMaterial(CGlCurrent& gl, const CPreparedMaterial& material, const CSurfaceUse& use) = 0;
    /** True where the colours that are drawn are already multiplied by their opacity. */
    [[nodiscard]] virtual bool MultipliesByOpacity() const = 0;
    /** Sets the transform of the triangles drawn next. Call it after UseMaterial. */
    virtual void UseTransform(CGlCurrent& gl, const CMatrix4d& eyeModelView) = 0;
};

/** CPreparedMap::UvTransform for textures whose first row is the top row: rows for s and t over (u, v, 1). */
struct CMapRows {
    std::array<float, 3> s, t;
};
[[nodiscard]] CMapRows MapRows(const struct CPreparedMap& map);
