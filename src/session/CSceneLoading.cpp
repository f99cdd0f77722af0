// SPDX-License-Identifier: MIT
#include "session/CSceneLoading.h"

#include <chrono>
#include <system_error>
#include <utility>

#include "base/text/lng.h"
#include "files/file_util_ex.h"

namespace {

CResult<CReadyScene> Load(const std::string& path, CLoadProgress& progress, const CLoadLimits& limits) {
    const std::optional<CFileStamp> before = CFileStamp::Of(path);
    CResult<CLoadedScene> loaded = LoadScene(path, &progress, limits);
    if (!loaded) return loaded.Error();
    if (!before || CFileStamp::Of(path) != before)
        return CError{EErrorCode::Unreadable, lng::Mark("the file was changed while it was read"), path};
    return CReadyScene{std::move(loaded).Value(), *before};
}

}  // namespace

CSceneLoading::CSceneLoading(std::wstring path, const CLoadLimits& limits) : m_path(std::move(path)) {
    const auto work = [this, limits, utf8 = file_util_ex::ConvertToUTF8(m_path)] {
        return Load(utf8, m_progress, limits);
    };
    try {
        m_result = std::async(std::launch::async, work);
    } catch (const std::system_error&) {
        m_result = std::async(std::launch::deferred, work);  // no thread can be had: done when it is taken
    }
}

CSceneLoading::~CSceneLoading() {
    Cancel();
}

bool CSceneLoading::IsDone() const {
    return !m_result.valid() || m_result.wait_for(std::chrono::seconds(0)) != std::future_status::timeout;
}

CResult<CReadyScene> CSceneLoading::Take() {
    if (!m_result.valid()) return CError{EErrorCode::NotFound, lng::Mark("no model is open"), {}};
    return m_result.get();
}
