// SPDX-License-Identifier: MIT
#include "programs/orbivue_modeldb/model_source.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "base/text/ascii_text.h"
#include "base/text/utf8_text.h"
#include "files/file_util_ex.h"
#include "files/system_error.h"
#include "model/open/CSceneReader.h"
#include "model/textures/CLib3dsMatUtil.h"

namespace fs = std::filesystem;

namespace {

bool IsModel(const fs::directory_entry& entry) {
    std::error_code error;
    return ascii_text::EqualNoCase(file_util_ex::GetFileExt(entry.path().native()), "3ds") &&
           !entry.is_symlink(error) && entry.is_regular_file(error);
}

CError SystemFailure(const std::string& path, const std::error_code& error) {
    const bool missing = error == std::errc::no_such_file_or_directory;
    return {missing ? EErrorCode::NotFound : EErrorCode::Unreadable, SystemErrorText(error.value()), path};
}

/** A file's name as text, without its extension. */
std::string NameOf(const std::string& path) {
    const std::string stem = file_util_ex::GetFileNameWithPath(file_util_ex::GetFileName(path));
    const std::string text = file_util_ex::ConvertToUTF8(file_util_ex::ConvertFromUTF8W(stem));
    return std::string(utf8_text::Cut(text, store_limits::kModelName));
}

CStatus AddTextures(CScene& scene, const std::string& path, CModelStore* store, CNewModel& model) {
    CImageDataTextVec textures;
    CLib3dsMatUtil::GetMatTextures(scene.File(), textures, CTextureLocator::BesideModel(path));
    for (CImageDataText& texture : textures) {
        const std::string name = file_util_ex::ConvertToUTF8(file_util_ex::ConvertFromUTF8W(texture.name));
        CResult<CNewBlob> blob = CBlobWriter::Write(store, texture.data);
        if (!blob) return blob.Error();
        texture.data = {};
        model.textures.push_back(
            {std::string(utf8_text::Cut(name, store_limits::kTextureName)), std::move(blob).Value()});
    }
    return CDone{};
}

}  // namespace

CResult<std::vector<CModelSource>> FindModels(const std::string& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status))
        return SystemFailure(path, std::make_error_code(std::errc::no_such_file_or_directory));
    if (!fs::is_directory(status)) return std::vector<CModelSource>{{path, fs::file_size(path, error)}};
    std::vector<CModelSource> found;
    fs::recursive_directory_iterator entry(path, fs::directory_options::skip_permission_denied, error);
    if (error) return SystemFailure(path, error);
    for (; entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        if (error) return SystemFailure(path, error);
        if (entry->path().filename().native().starts_with('.')) entry.disable_recursion_pending();
        if (IsModel(*entry)) found.push_back({entry->path().native(), entry->file_size(error)});
    }
    std::ranges::sort(found, {}, &CModelSource::path);
    return found;
}

CResult<CNewModel> ReadModel(const std::string& path, const std::string& group, CModelStore* store) {
    CResult<std::vector<std::byte>> bytes = file_util_ex::ReadWholeFile(path, store_limits::kBlobBytes);
    if (!bytes) return bytes.Error();
    CNewModel model;
    model.group = group;
    model.name = NameOf(path);
    CResult<CNewBlob> file = CBlobWriter::Write(store, bytes.Value());
    if (!file) return file.Error();
    model.file = std::move(file).Value();
    // These very bytes, not the file, which may have changed since.
    CResult<CScene> scene = CSceneReader::ReadBytes(std::move(bytes).Value());
    if (!scene) return CError{scene.Error().code, scene.Error().message, path};
    if (CStatus added = AddTextures(scene.Value(), path, store, model); !added) return added.Error();
    return model;
}
