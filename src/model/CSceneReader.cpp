// SPDX-License-Identifier: MIT
#include "model/CSceneReader.h"

#include <new>

#include "model/C3dsParser.h"
#include "platform/file_util_ex.h"

namespace {
/** The format's sizes are 32-bit. */
constexpr std::size_t kMaxFileBytes = 0xFFFFFFFFu;
}  // namespace

CResult<CScene> CSceneReader::ReadFile(std::string_view path) {
    CResult<std::vector<std::byte>> bytes = file_util_ex::ReadWholeFile(path, kMaxFileBytes);
    if (!bytes) return bytes.Error();
    CResult<CScene> scene = ReadBytes(std::move(bytes).Value(), CTextureLocator::BesideModel(path));
    if (!scene) return CError{scene.Error().code, scene.Error().message, std::string(path)};
    return scene;
}

CResult<CScene> CSceneReader::ReadBytes(std::vector<std::byte> bytes, CTextureLocator textures) {
    try {
        CResult<CScene> scene = C3dsParser::Parse(std::move(bytes));
        if (scene) scene.Value().SetTextures(std::move(textures));
        return scene;
    } catch (const std::bad_alloc&) {
        return CError{EErrorCode::TooLarge, "There is not enough memory for this scene", ""};
    }
}
