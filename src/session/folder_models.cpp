// SPDX-License-Identifier: MIT
#include "session/folder_models.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "base/text/natural_order.h"
#include "files/file_util_ex.h"

namespace folder_models {

namespace {

const std::vector<std::string> kMasks{"*.3ds", "*.zip", "*.orv"};

/** A path with what its place depends on. */
struct CListed {
    std::wstring stem, ending;  ///< of the name, folded
    std::wstring path;

    explicit CListed(std::wstring listed) : path(std::move(listed)) {
        const std::size_t name = path.rfind(L'/') + 1, dot = path.rfind(L'.');
        stem = natural_order::Folded(std::wstring_view(path).substr(name, dot - name));
        ending = natural_order::Folded(std::wstring_view(path).substr(dot));
    }
    [[nodiscard]] bool IsBefore(const CListed& other) const {
        if (const auto order = natural_order::Compare(stem, other.stem); order != 0) return order < 0;
        return std::tie(ending, path) < std::tie(other.ending, other.path);
    }
};

std::vector<std::wstring> List(const std::wstring& folder, const std::vector<std::string>& masks) {
    std::vector<std::string> files;
    // A folder that cannot be read counts as empty.
    (void)file_util_ex::GetAllFiles(file_util_ex::ConvertToUTF8(folder), files, masks);
    std::vector<CListed> listed;
    listed.reserve(files.size());
    for (const std::string& file : files) listed.emplace_back(file_util_ex::PathFromBytes(file));
    std::ranges::sort(listed, [](const CListed& a, const CListed& b) { return a.IsBefore(b); });
    std::vector<std::wstring> paths;
    paths.reserve(listed.size());
    for (CListed& one : listed) paths.push_back(std::move(one.path));
    return paths;
}

}  // namespace

std::vector<std::wstring> ListBeside(const std::wstring& path) {
    return List(file_util_ex::GetFilePath(path), kMasks);
}

std::vector<std::wstring> ListInside(const std::wstring& folder) {
    std::vector<std::wstring> files = List(folder, kMasks);
    return files.empty() ? List(folder, {"*.obj"}) : files;
}

std::size_t PlaceOf(const std::vector<std::wstring>& listing, const std::wstring& path) {
    const auto found = std::find(listing.begin(), listing.end(), path);
    return found == listing.end() ? 0 : static_cast<std::size_t>(found - listing.begin()) + 1;
}

std::wstring Neighbour(const std::vector<std::wstring>& listing, const std::wstring& current, EStep step) {
    const std::size_t count = listing.size(), place = PlaceOf(listing, current);
    if (count < 2) return {};
    if (place == 0) return step == EStep::Next ? listing.front() : listing.back();
    return listing[(place - 1 + (step == EStep::Next ? 1 : count - 1)) % count];
}

}  // namespace folder_models
