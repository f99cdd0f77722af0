// SPDX-License-Identifier: MIT
#include "session/folder_models.h"

#include <algorithm>

#include "files/file_util_ex.h"

namespace folder_models {

namespace {

std::vector<std::wstring> List(const std::wstring& folder, const std::vector<std::wstring>& masks) {
    std::vector<std::wstring> files;
    (void)file_util_ex::GetAllFiles(folder, files, masks);  // a folder that cannot be read counts as empty
    return files;
}

const std::vector<std::wstring> kMasks{L"*.3ds", L"*.zip"};

}  // namespace

std::vector<std::wstring> ListBeside(const std::wstring& path) {
    return List(file_util_ex::GetFilePath(path), kMasks);
}

std::vector<std::wstring> ListInside(const std::wstring& folder) {
    std::vector<std::wstring> files = List(folder, kMasks);
    return files.empty() ? List(folder, {L"*.obj"}) : files;
}

std::wstring Neighbour(const std::vector<std::wstring>& listing, const std::wstring& current, EStep step) {
    if (listing.size() < 2) return {};
    const auto found = std::find(listing.begin(), listing.end(), current);
    if (found == listing.end()) return step == EStep::Next ? listing.front() : listing.back();
    if (step == EStep::Next) return found + 1 == listing.end() ? listing.front() : *(found + 1);
    return found == listing.begin() ? listing.back() : *(found - 1);
}

}  // namespace folder_models
