// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <set>
#include <tuple>

class CDrawPipeline;
class CGlCurrent;
class CSceneMeshes;
class CSortedBatches;
struct CDrawItem;
struct CFramePlan;
struct CFrameView;
struct CGlCapabilities;
struct CPreparedScene;

/** What a rehearsal draws. Refers to it. */
struct CRehearsedScene {
    const CPreparedScene& scene;
    const CFrameView& view;
    CDrawPipeline& pipeline;
    const CSceneMeshes& meshes;
    CSortedBatches& sorted;
};

/** Draws a pixel of each kind of item before it is needed: a software renderer makes the machine code for one when it is
 * first drawn, and that takes as long as several frames. */
class CRehearsal {
  public:
    /** Draws one item of a kind that was not drawn yet, into the corner of the current framebuffer; false when there is none
     * in the plan. Inside a CGlStateGuard. */
    bool DrawNext(CGlCurrent& gl, const CGlCapabilities& can, const CRehearsedScene& what,
                  const CFramePlan& plan);
    void Forget() { m_drawn.clear(); }

  private:
    using CKind =
        std::tuple<int, bool, std::uint32_t>;  ///< how it blends, whether it has texture coordinates, key
    [[nodiscard]] bool IsNew(const CDrawItem& item, int blending);

    std::set<CKind> m_drawn;
};
