// SPDX-License-Identifier: MIT
#include "export/webgl/download_archive.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "files/CAtomicFile.h"
#include "files/CFileDescriptor.h"
#include "files/file_util_ex.h"
#include "model/prepare/source_files.h"
#include "model/save/save_scene.h"

namespace download_archive {

namespace {

/** Marks our archives, so that a later export knows them. */
constexpr std::string_view kComment =
    "Made by Orbivue for a web page; the next export of the page replaces it.";
constexpr std::size_t kMostName = 230;  // bytes; file systems have room for 255
constexpr int kMostTries = 1000;

/** True for a regular file, none by a link, that ends with the comment. */
bool IsOurs(const std::string& path) {
    const CFileDescriptor file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat info = {};
    if (!file.IsOpen() || ::fstat(file.Get(), &info) != 0 || !S_ISREG(info.st_mode)) return false;
    const auto size = static_cast<off_t>(kComment.size());
    std::string end(kComment.size(), '\0');
    return info.st_size > size &&
           ::pread(file.Get(), end.data(), end.size(), info.st_size - size) == static_cast<ssize_t>(size) &&
           end == kComment;
}

/** Whether the archive may have that name; old: the one that it replaces. */
bool IsFree(const std::string& path, const CPreparedScene& scene, std::optional<CFileId>& old) {
    old = CFileId::Of(path);
    if (!old) return errno == ENOENT;
    return IsOurs(path) && SourceAt(scene, path) == ESource::None;
}

/** The model's file name, which may be anything, as one that is not too long. */
std::string NameOfModel(const std::string& modelFileName) {
    const std::string name(utf8_text::Cut(file_util_ex::GetFileName(modelFileName), kMostName));
    return name.empty() || name == "." || name == ".." ? "model" : name;
}

struct CPlace {
    std::string name;
    std::optional<CFileId> old;
};

CResult<CPlace> PlaceFor(const std::string& page, const std::string& modelFileName,
                         const CPreparedScene& scene) {
    const std::string model = NameOfModel(modelFileName);
    CPlace place;
    for (int i = 1; i < kMostTries; ++i) {
        place.name = model + (i > 1 ? "-" + std::to_string(i) : "") + ".zip";
        if (place.name == file_util_ex::GetFileName(page)) continue;
        if (IsFree(file_util_ex::MakePath(file_util_ex::GetFilePath(page), place.name), scene, place.old))
            return place;
    }
    return CError{EErrorCode::WriteFailed, lng::Mark("other files have all names that this file could get"),
                  model + ".zip"};
}

}  // namespace

CResult<std::string> NameFor(const std::string& page, const std::string& modelFileName,
                             const CPreparedScene& scene) {
    const CResult<CPlace> place = PlaceFor(page, modelFileName, scene);
    if (!place) return place.Error();
    return place.Value().name;
}

CStatus Make(const std::string& page, const std::string& modelFileName, const CPreparedScene& prepared,
             const CContent& content) {
    const CResult<CPlace> place = PlaceFor(page, modelFileName, prepared);
    if (!place) return place.Error();
    const std::string path = file_util_ex::MakePath(file_util_ex::GetFilePath(page), place.Value().name);
    const std::optional<CFileId>& old = place.Value().old;
    CResult<CAtomicFile> archive = old ? CAtomicFile::CreateOver(path, *old) : CAtomicFile::CreateNew(path);
    if (!archive) return archive.Error();
    CPacking packing;
    // No archive takes the control characters that a name on a disk may have.
    packing.sceneName =
        utf8_text::Printable(file_util_ex::SetFileExt(NameOfModel(modelFileName), "3ds"), '_');
    packing.asFound = true;
    packing.viewName = "preview.jpg";
    packing.viewWriter = content.writePicture;
    packing.comment = kComment;
    return PackScene(content.scene, content.writeScene, packing, std::move(archive).Value());
}

}  // namespace download_archive
