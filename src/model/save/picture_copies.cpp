// SPDX-License-Identifier: MIT
#include "model/save/picture_copies.h"

#include <algorithm>

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
        const std::string name = file_util_ex::GetFileName(picture.name);
        if (!WriteNew(file_util_ex::MakePath(folder, name), picture.data)) refused.push_back(name);
    }
    return refused;
}

}  // namespace picture_copies
