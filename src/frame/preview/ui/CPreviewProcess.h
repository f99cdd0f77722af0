// SPDX-License-Identifier: MIT
#pragma once

#include <wx/timer.h>

#include <functional>
#include <optional>
#include <string>

#include "files/start_program.h"
#include "frame/preview/CPreviewRequest.h"
#include "frame/preview/CPreviewWorker.h"
#include "frame/preview/preview_facts.h"

/** Draws previews by the program orbivue-render, which stands beside this one: whatever a file does to it,
 * the windows go on. It runs with a low priority. */
class CPreviewProcess final : public CPreviewWorker {
  public:
    /** Told of each end, on the event loop. */
    using CEnded = std::function<void(const CPreviewRequest&, const preview_facts::COutcome&)>;

    explicit CPreviewProcess(CEnded ended);
    /** Kills what runs, tells nobody, and deletes the pictures. */
    ~CPreviewProcess() override;

    [[nodiscard]] bool Start(const CPreviewRequest& request) override;
    void Kill() override;

  private:
    [[nodiscard]] std::string PicturePath() const { return m_folder + "/preview.png"; }
    /** Sees its end, and keeps it from waiting for a full pipe. */
    void LookAfterChild();

    CEnded m_ended;
    std::string m_folder;  // of its own, so that a killed child's remains go with it
    std::optional<CStartedProgram> m_child;
    CPreviewRequest m_request;
    preview_facts::COutcome m_outcome;
    wxTimer m_pipeTimer;
};
