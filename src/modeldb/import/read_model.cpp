// SPDX-License-Identifier: MIT
#include "modeldb/import/read_model.h"

#include <utility>

#include "base/text/utf8_text.h"
#include "files/file_util_ex.h"
#include "model/open/CSceneReader.h"
#include "model/textures/CLib3dsMatUtil.h"

namespace {

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
