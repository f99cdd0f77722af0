// SPDX-License-Identifier: MIT
#include "thumbnails/CThumbnailCache.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "picture/decode/image_codec.h"
#include "picture/image_writer.h"
#include "thumbnails/private_file.h"

namespace {

constexpr std::string_view kUri = "Thumb::URI", kTime = "Thumb::MTime", kBytes = "Thumb::Size";
constexpr std::string_view kWhy = "Description";
constexpr char kFailures[] = "fail/orbivue-" ORBIVUE_VERSION;
constexpr std::uint64_t kMostFileBytes = 8 << 20;

struct CKind {
    EThumbnailSize size;
    const char* folder;
};
constexpr std::array kKinds{CKind{EThumbnailSize::Normal, "normal"}, CKind{EThumbnailSize::Large, "large"},
                            CKind{EThumbnailSize::XLarge, "x-large"},
                            CKind{EThumbnailSize::XxLarge, "xx-large"}};

/** Every text that names a property must name this state's: a picture that says two things says nothing. */
bool AreOf(const png_texts::CTexts& texts, const CThumbnailSource& source) {
    bool hasUri = false, hasTime = false;
    for (const auto& [key, value] : texts) {
        if (key == kUri && value != source.uri) return false;
        if (key == kTime && value != std::to_string(source.changedSec)) return false;
        if (key == kBytes && value != std::to_string(source.bytes)) return false;
        hasUri = hasUri || key == kUri;
        hasTime = hasTime || key == kTime;
    }
    return hasUri && hasTime;
}

struct CEntry {
    std::vector<std::byte> png;
    png_texts::CTexts texts;
};

/** What is kept of this state of the file in a folder. */
std::optional<CEntry> EntryIn(const std::string& folder, const CThumbnailSource& source) {
    auto png = file_util_ex::ReadPlainFile(file_util_ex::MakePath(folder, source.name), kMostFileBytes);
    if (!png) return std::nullopt;
    png_texts::CTexts texts = png_texts::Read(png.Value());
    if (!AreOf(texts, source)) return std::nullopt;
    return CEntry{std::move(png).Value(), std::move(texts)};
}

bool Fits(std::uint64_t width, std::uint64_t height, EThumbnailSize size) {
    const auto side = static_cast<std::uint64_t>(size);
    return width > 0 && height > 0 && width <= side && height <= side;
}

std::optional<CImage> PictureIn(const CEntry& entry, EThumbnailSize size) {
    const auto claim = image_codec::ClaimOf(entry.png, {});
    if (!claim || claim.Value().format != EPictureFormat::Png) return std::nullopt;
    if (!Fits(claim.Value().width, claim.Value().height, size)) return std::nullopt;
    auto decoded = image_codec::DecodeImage(entry.png, {});
    if (!decoded) return std::nullopt;
    return std::move(decoded.Value().image);
}

/** Makes root and below it a path of folders. Returns the whole path; where they could not be made, writing there
 * tells why. */
std::string MakeFolders(const std::string& root, std::string_view below) {
    (void)file_util_ex::Mkdir(file_util_ex::GetFilePath(root));
    (void)private_file::MakeFolder(root);
    std::string path = root;
    while (!below.empty()) {
        const std::size_t end = std::min(below.find('/'), below.size());
        path = file_util_ex::MakePath(path, below.substr(0, end));
        (void)private_file::MakeFolder(path);
        below.remove_prefix(std::min(end + 1, below.size()));
    }
    return path;
}

bool HasAlpha(const CImage& picture) {
    for (std::size_t i = 3; i < picture.rgba.size(); i += 4)
        if (picture.rgba[i] != 255) return true;
    return false;
}

}  // namespace

EThumbnailSize ThumbnailSizeFor(int sidePx) {
    for (const CKind& kind : kKinds)
        if (static_cast<int>(kind.size) >= sidePx) return kind.size;
    return kKinds.back().size;
}

CThumbnailCache::CThumbnailCache(std::string root) : m_root(std::move(root)) {}

CThumbnailCache CThumbnailCache::OfUser() {
    return CThumbnailCache(file_util_ex::MakePath(std_file_paths::GetCacheHomePath(), "thumbnails"));
}

bool CThumbnailCache::Holds(const CThumbnailSource& source) const {
    return source.path.starts_with(m_root + "/");
}

std::optional<CImage> CThumbnailCache::Read(const CThumbnailSource& source, EThumbnailSize size) const {
    for (const CKind& kind : kKinds) {
        if (kind.size < size) continue;
        const auto entry = EntryIn(file_util_ex::MakePath(m_root, kind.folder), source);
        std::optional<CImage> picture = entry ? PictureIn(*entry, kind.size) : std::nullopt;
        if (picture) return picture;
    }
    return std::nullopt;
}

CStatus CThumbnailCache::Write(const CThumbnailSource& source, EThumbnailSize size,
                               const CImage& picture) const {
    if (picture.IsEmpty() ||
        !Fits(static_cast<std::uint64_t>(picture.width), static_cast<std::uint64_t>(picture.height), size))
        return CError{EErrorCode::BadArgument, lng::Mark("thumbnails have no such size"), source.path};
    const auto* kind = std::ranges::find(kKinds, size, &CKind::size);
    return Put(kind->folder, source, picture, {});
}

std::optional<std::string> CThumbnailCache::ReadFailure(const CThumbnailSource& source) const {
    const auto entry = EntryIn(file_util_ex::MakePath(m_root, kFailures), source);
    if (!entry) return std::nullopt;
    const auto why = std::ranges::find(entry->texts, kWhy, &std::pair<std::string, std::string>::first);
    return why == entry->texts.end() ? std::string() : why->second;
}

CStatus CThumbnailCache::WriteFailure(const CThumbnailSource& source, const std::string& why) const {
    return Put(kFailures, source, CImage{1, 1, {0, 0, 0, 0}}, {{std::string(kWhy), why}});
}

CStatus CThumbnailCache::Put(const std::string& folder, const CThumbnailSource& source, const CImage& picture,
                             const png_texts::CTexts& more) const {
    if (Holds(source))
        return CError{EErrorCode::BadArgument, lng::Mark("thumbnails have no thumbnails"), source.path};
    CResult<std::vector<std::byte>> png = image_codec::PngBytes(picture, HasAlpha(picture));
    if (!png) return png.Error();
    png_texts::CTexts texts{{std::string(kUri), source.uri},
                            {std::string(kTime), std::to_string(source.changedSec)},
                            {std::string(kBytes), std::to_string(source.bytes)},
                            {"Software", "Orbivue"}};
    texts.insert(texts.end(), more.begin(), more.end());
    png_texts::Add(texts, png.Value());
    return private_file::Write(MakeFolders(m_root, folder), source.name, png.Value());
}
