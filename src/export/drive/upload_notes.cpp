// SPDX-License-Identifier: MIT
#include "export/drive/upload_notes.h"

#include <nlohmann/json.hpp>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "model/textures/CLib3dsMatUtil.h"

namespace {

using CJson = nlohmann::json;
constexpr int kVersion = 1;
constexpr std::uint64_t kMostBytes = 4 << 20;
constexpr std::size_t kMostPictures = 10'000, kLongestPath = 16'384;

}  // namespace

CUploadNotes UploadNotesOf(const Lib3dsFile& file, const CTextureLocator& locator) {
    CUploadNotes notes;
    for (const CScenePicture& picture : CLib3dsMatUtil::PicturesOf(file, locator))
        if (picture.hit.outsideModelFolder) notes.outside.push_back(picture.hit.foundAt);
    return notes;
}

CStatus WriteUploadNotes(const std::string& folder, const CUploadNotes& notes) {
    const CJson json{{"version", kVersion}, {"outside", notes.outside}};
    // A path may hold any bytes; JSON may not.
    const std::string text = json.dump(2, ' ', false, CJson::error_handler_t::replace) + '\n';
    return file_util_ex::WriteFileAtomically(file_util_ex::MakePath(folder, kUploadNotesFile), text);
}

CResult<CUploadNotes> ReadUploadNotes(const std::string& folder) {
    const std::string path = file_util_ex::MakePath(folder, kUploadNotesFile);
    const auto bytes = file_util_ex::ReadPlainFile(path, kMostBytes);
    if (!bytes) return bytes.Error();
    const CError bad{EErrorCode::BadFormat, lng::Mark("this file is damaged"), path};
    const auto* text = reinterpret_cast<const char*>(bytes.Value().data());
    const CJson json = CJson::parse(text, text + bytes.Value().size(), nullptr, false);
    if (!json.is_object() || json.value("version", CJson()) != kVersion) return bad;
    const CJson outside = json.value("outside", CJson());
    if (!outside.is_array() || outside.size() > kMostPictures) return bad;
    CUploadNotes notes;
    for (const CJson& picture : outside) {
        if (!picture.is_string() || picture.get_ref<const std::string&>().size() > kLongestPath) return bad;
        notes.outside.push_back(picture.get<std::string>());
    }
    return notes;
}
