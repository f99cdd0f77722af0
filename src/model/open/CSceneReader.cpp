// SPDX-License-Identifier: MIT
#include "model/open/CSceneReader.h"

#include <algorithm>
#include <filesystem>
#include <new>
#include <span>
#include <system_error>

#include "base/text/lng.h"
#include "files/CZipReader.h"
#include "files/file_util_ex.h"
#include "model/open/zip_scene.h"
#include "model/read_3ds/C3dsParser.h"
#include "model/read_obj/CObjConv3ds.h"

namespace {
/** The format's sizes are 32-bit. */
constexpr std::size_t kMaxFileBytes = 0xFFFFFFFFu;

bool IsZip(std::span<const std::byte> bytes) {
    return CZipReader::LooksLikeZip({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

CResult<CScene> ReadObj(std::string_view path, std::uint64_t maxBytes) {
    std::error_code error;
    const std::uintmax_t bytes = std::filesystem::file_size(path, error);
    if (!error && bytes > maxBytes)
        return CError{EErrorCode::TooLarge, lng::Mark("the file is too large"), std::string(path)};
    std::vector<CSceneNote> notes;
    std::vector<std::string> libraries;
    CResult<CLib3dsFilePtr> file = CObjConv3ds::ConvertResult(path, notes, &libraries);
    if (!file) return file.Error();
    CScene scene = CScene::Adopt(std::move(file).Value());
    for (CSceneNote& note : notes) scene.AddNote(std::move(note));
    for (std::string& library : libraries) scene.AddSourceFile(std::move(library));
    scene.SetTextures(CTextureLocator::BesideModel(path));
    return scene;
}

CResult<CScene> ReadContents(std::string_view path, std::uint64_t maxBytes,
                             const std::atomic<bool>* cancelled) {
    // Compared exactly on purpose: a "model.OBJ" is taken for no OBJ file anywhere.
    if (file_util_ex::GetFileExt(path) == "obj") return ReadObj(path, maxBytes);
    // Of anything else the parser need not see more than the beginning to refuse it.
    const auto wanted = [](std::span<const std::byte> first) {
        return IsZip(first) || C3dsParser::MayBeScene(first);
    };
    CResult<std::vector<std::byte>> bytes = file_util_ex::ReadWholeFile(
        path, std::min<std::uint64_t>(kMaxFileBytes, maxBytes), wanted, cancelled);
    if (!bytes) return bytes.Error();
    if (IsZip(bytes.Value())) return ReadZipScene(std::move(bytes).Value(), path, maxBytes);
    return CSceneReader::ReadBytes(std::move(bytes).Value(), CTextureLocator::BesideModel(path));
}
}  // namespace

CResult<CScene> CSceneReader::ReadFile(std::string_view path, std::uint64_t maxBytes,
                                       const std::atomic<bool>* cancelled) {
    try {
        CResult<CScene> scene = ReadContents(path, maxBytes, cancelled);
        if (scene) scene.Value().AddSourceFile(std::string(path));
        if (scene || !scene.Error().where.empty()) return scene;
        return CError{scene.Error().code, scene.Error().message, std::string(path)};
    } catch (const std::bad_alloc&) {
        return CError{EErrorCode::TooLarge, lng::Mark("There is not enough memory for this scene"),
                      std::string(path)};
    }
}

CResult<CScene> CSceneReader::ReadBytes(std::vector<std::byte> bytes, CTextureLocator textures) {
    try {
        CResult<CScene> scene = C3dsParser::Parse(std::move(bytes));
        if (scene) scene.Value().SetTextures(std::move(textures));
        return scene;
    } catch (const std::bad_alloc&) {
        return CError{EErrorCode::TooLarge, lng::Mark("There is not enough memory for this scene"), ""};
    }
}
