// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "base/jobs/CJob.h"
#include "model/open/load_scene.h"
#include "session/CFileStamp.h"

/** A scene that was loaded before it is to be shown, with the stamp of its file at that time. */
struct CReadyScene {
    CLoadedScene scene;
    CFileStamp stamp;
};

/** Loads a scene on a thread of its own, which the constructor starts. The owner polls IsDone. The destructor
 * cancels loading and waits until the thread has ended. */
class CSceneLoading {
  public:
    explicit CSceneLoading(std::wstring path, const CLoadLimits& limits = {});

    void Cancel() { m_job.Progress().Cancel(); }
    [[nodiscard]] bool IsDone() const { return m_job.HasEndedWithin(std::chrono::milliseconds(0)); }
    [[nodiscard]] const CJobProgress& Progress() { return m_job.Progress(); }
    [[nodiscard]] const std::wstring& Path() const { return m_path; }
    /** Waits for the result and moves it out; call it once. The error is Unreadable for a file that was
     * written while it was read. */
    [[nodiscard]] CResult<CReadyScene> Take();

  private:
    std::wstring m_path;
    std::optional<CResult<CReadyScene>> m_result;
    bool m_isTaken = false;
    CJob m_job;  // last: its thread uses the others
};
