// SPDX-License-Identifier: MIT
#include "session/CSceneLoading.h"

#include <utility>

#include "base/text/lng.h"
#include "files/file_util_ex.h"

namespace {

CResult<CReadyScene> Load(const std::string& path, CJobProgress& progress, const CLoadLimits& limits) {
    const std::optional<CFileStamp> before = CFileStamp::Of(path);
    CResult<CLoadedScene> loaded = LoadScene(path, &progress, limits);
    if (!loaded) return loaded.Error();
    if (!before || CFileStamp::Of(path) != before)
        return CError{EErrorCode::Unreadable, lng::Mark("the file was changed while it was read"), path};
    return CReadyScene{std::move(loaded).Value(), *before};
}

}  // namespace

CSceneLoading::CSceneLoading(std::wstring path, const CLoadLimits& limits)
    : m_path(std::move(path)),
      m_job([this, limits, utf8 = file_util_ex::ConvertToUTF8(m_path)](CJobProgress& progress) {
          m_result.emplace(Load(utf8, progress, limits));
      }) {}

CResult<CReadyScene> CSceneLoading::Take() {
    if (std::exchange(m_isTaken, true))
        return CError{EErrorCode::NotFound, lng::Mark("no model is open"), {}};
    m_job.Finish();
    return std::move(*m_result);
}
