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

/** Draws previews with the program orbivue-render, which is installed beside this one. A file that makes it
 * crash or hang does not affect this process, and cannot reach the network, other programs or other files
 * (--confined). It runs with low priority. */
class CPreviewProcess final : public CPreviewWorker {
  public:
    /** Called from the event loop each time a drawing has ended. */
    using CEnded = std::function<void(const CPreviewRequest&, const preview_facts::COutcome&)>;

    explicit CPreviewProcess(CEnded ended);
    /** Kills the running drawing without calling CEnded, and deletes the pictures. */
    ~CPreviewProcess() override;

    [[nodiscard]] bool Start(const CPreviewRequest& request) override;
    void Kill() override;

  private:
    [[nodiscard]] std::string PicturePath() const { return m_folder + "/preview.png"; }
    /** Detects the child's end, and reads its pipes so that it does not block on a full one. */
    void LookAfterChild();

    CEnded m_ended;
    std::string m_folder;  // of its own, so that a killed child's remains go with it
    std::optional<CStartedProgram> m_child;
    CPreviewRequest m_request;
    preview_facts::COutcome m_outcome;
    wxTimer m_pipeTimer;
};
