// SPDX-License-Identifier: MIT
#pragma once

#include "view/ui/CViewer3DSWindowHandler.h"

/** What exporters take from the view. */

/** Stops rotation and animation during its lifetime: the view keeps showing what is exported, and repaints do
 * not slow the export down. */
class CStillView {
  public:
    explicit CStillView(CViewer3DSWindowHandler& view)
        : m_view(view), m_rotates(view.IsRotating()), m_plays(view.IsPlaying()) {
        view.SetRotate(false);
        view.SetPlaying(false);
    }
    CStillView(const CStillView&) = delete;
    CStillView& operator=(const CStillView&) = delete;
    ~CStillView() {
        m_view.SetRotate(m_rotates);
        m_view.SetPlaying(m_plays);
    }

  private:
    CViewer3DSWindowHandler& m_view;
    bool m_rotates, m_plays;
};

/** The view's scene; null without one. The wait cursor is shown because preparing a large scene after an edit
 * takes time. */
[[nodiscard]] const CPreparedScene* SceneOf(CViewer3DSWindowHandler& view);
