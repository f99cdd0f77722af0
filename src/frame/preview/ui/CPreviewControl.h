// SPDX-License-Identifier: MIT
#pragma once

#include <wx/timer.h>

#include <array>
#include <cstdint>

#include "frame/preview/CPreviewQueue.h"
#include "frame/preview/ui/CPreviewPane.h"
#include "frame/preview/ui/CPreviewProcess.h"

class CPreviewCache;
struct _GtkFileChooser;

/** Adds a preview to an open dialog and updates it when the selection changes. */
class CPreviewControl {
  public:
    /** Neither pointer nor reference is owned: chooser and cache must outlive this object. */
    CPreviewControl(_GtkFileChooser* chooser, const std::array<std::uint8_t, 3>& background,
                    CPreviewCache& cache);
    CPreviewControl(const CPreviewControl&) = delete;
    CPreviewControl& operator=(const CPreviewControl&) = delete;
    ~CPreviewControl();

  private:
    static void OnSelection(_GtkFileChooser* chooser, void* self);
    void SetTimer();

    _GtkFileChooser* m_chooser;
    std::array<std::uint8_t, 3> m_background;
    CPreviewPane m_pane;
    CPreviewProcess m_process;
    CPreviewQueue m_queue;
    wxTimer m_timer;
};
