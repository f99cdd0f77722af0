// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "base/jobs/CJob.h"
#include "model/open/load_scene.h"
#include "session/CFileStamp.h"

/** A scene that was loaded before anybody asked to see it, and the file as it was then. */
struct CReadyScene {
    CLoadedScene scene;
    CFileStamp stamp;
};

/** Loads a scene on a thread of its own, from its making on, within limits. Whoever made it asks from time to
 * time whether it is done. Destroyed before that it cancels, and waits the moment that this takes. */
class CSceneLoading {
  public:
    explicit CSceneLoading(std::wstring path, const CLoadLimits& limits = {});

    void Cancel() { m_job.Progress().Cancel(); }
    [[nodiscard]] bool IsDone() const { return m_job.HasEndedWithin(std::chrono::milliseconds(0)); }
    [[nodiscard]] const CJobProgress& Progress() { return m_job.Progress(); }
    [[nodiscard]] const std::wstring& Path() const { return m_path; }
    /** The outcome, once; waits for it. A file that was written while it was read gives Unreadable. */
    [[nodiscard]] CResult<CReadyScene> Take();

  private:
    std::wstring m_path;
    std::optional<CResult<CReadyScene>> m_result;
    bool m_isTaken = false;
    CJob m_job;  // last: its thread uses the others
};
