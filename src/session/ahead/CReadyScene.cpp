// SPDX-License-Identifier: MIT
#include "session/ahead/CReadyScene.h"

#include <algorithm>
#include <cerrno>
#include <optional>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/system_error.h"

namespace {

using CStampedFiles = std::vector<std::pair<std::string, CFileStamp>>;

/** Adds the stamp of a file as it is now; the name of an entry in an archive is that of no file. */
void AddFile(const std::string& path, CStampedFiles& files) {
    const bool isKnown = std::ranges::find(files, path, &CStampedFiles::value_type::first) != files.end();
    if (path.empty() || path.front() != '/' || isKnown) return;
    if (const std::optional<CFileStamp> stamp = CFileStamp::Of(path)) files.emplace_back(path, *stamp);
}

}  // namespace

bool CReadyScene::IsCurrent() const {
    return std::ranges::all_of(files,
                               [](const auto& file) { return CFileStamp::Of(file.first) == file.second; });
}

CResult<CReadyScene> LoadReadyScene(const std::wstring& path, CJobProgress& progress,
                                    const CLoadLimits& limits) {
    const std::string utf8 = file_util_ex::ConvertToUTF8(path);
    const std::optional<CFileStamp> before = CFileStamp::Of(utf8);
    // A script may name a device, which must not be touched before somebody asks for it.
    if (!before) return CError{EErrorCode::NotFound, SystemErrorText(ENOENT), utf8};
    CResult<CLoadedScene> loaded = LoadScene(utf8, &progress, limits);
    if (!loaded) return loaded.Error();
    if (CFileStamp::Of(utf8) != before)
        return CError{EErrorCode::Unreadable, lng::Mark("the file was changed while it was read"), utf8};
    CReadyScene ready{std::move(loaded).Value(), {{utf8, *before}}};
    for (const std::string& file : ready.scene.prepared.sourceFiles) AddFile(file, ready.files);
    for (const CPreparedTexture& texture : ready.scene.prepared.textures)
        AddFile(texture.foundAt, ready.files);
    return ready;
}
