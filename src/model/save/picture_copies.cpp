// SPDX-License-Identifier: MIT
#include "model/save/picture_copies.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "files/CAtomicFile.h"
#include "files/file_util_ex.h"
#include "model/textures/CLib3dsMatUtil.h"

namespace picture_copies {

namespace {

bool HasBytes(const CTextureHit& hit, const std::vector<std::byte>& bytes) {
    const auto found = ReadTexture(hit, bytes.size());
    return found && found.Value() == bytes;
}

CStatus WriteNew(const std::string& path, const std::vector<std::byte>& bytes) {
    CResult<CAtomicFile> file = CAtomicFile::CreateNew(path);
    if (!file) return file.Error();
    (void)file.Value().Write(bytes);  // Commit tells
    return file.Value().Commit();
}

}  // namespace

CImageDataTextVec MissingAt(Lib3dsFile* scene, std::string_view path) {
    CImageDataTextVec pictures;
    CLib3dsMatUtil::GetMatTextures(scene, pictures);
    const CTextureLocator there = CTextureLocator::BesideModel(path);
    std::erase_if(pictures, [&](const CImageDataText& picture) {
        const auto hit = there.Find(picture.name);
        return hit && HasBytes(*hit, picture.data);
    });
    return pictures;
}

std::vector<std::string> CopyInto(std::string_view folder, const CImageDataTextVec& pictures) {
    std::vector<std::string> refused;
    for (const CImageDataText& picture : pictures) {
        const std::string within = file_util_ex::GetFilePath(picture.name);
        const bool isSound = within.find('/') == within.npos && within != "..";
        const std::string path = file_util_ex::MakePath(folder, picture.name);
        const std::string last = file_util_ex::GetFilePath(path);
        // Through a link the picture might get anywhere.
        std::error_code error;
        const bool isThere = within.empty() || (isSound && file_util_ex::Mkdir(last) &&
                                                !std::filesystem::is_symlink(last, error));
        if (!isThere || !WriteNew(path, picture.data)) refused.push_back(picture.name);
    }
    return refused;
}

}  // namespace picture_copies
