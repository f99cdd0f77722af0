// SPDX-License-Identifier: MIT
#pragma once

#include <future>
#include <optional>
#include <string>

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
    CSceneLoading(const CSceneLoading&) = delete;
    CSceneLoading& operator=(const CSceneLoading&) = delete;
    ~CSceneLoading();

    void Cancel() { m_progress.cancelled = true; }
    [[nodiscard]] bool IsDone() const;
    [[nodiscard]] const CLoadProgress& Progress() const { return m_progress; }
    [[nodiscard]] const std::wstring& Path() const { return m_path; }
    /** The outcome, once; waits for it. A file that was written while it was read gives Unreadable. */
    [[nodiscard]] CResult<CReadyScene> Take();

  private:
    std::wstring m_path;
    CLoadProgress m_progress;
    std::future<CResult<CReadyScene>> m_result;  // last: its thread uses the others
};
