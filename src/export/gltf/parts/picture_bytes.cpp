// SPDX-License-Identifier: MIT
#include "export/gltf/parts/picture_bytes.h"

#include <string_view>

#include "picture/image_probe.h"

namespace {

using CBytes = std::span<const std::byte>;

unsigned At(CBytes bytes, std::size_t i) {
    return i < bytes.size() ? static_cast<unsigned>(bytes[i]) : 0;
}
std::size_t Be16(CBytes bytes, std::size_t i) {
    return At(bytes, i) << 8 | At(bytes, i + 1);
}

/** What to do with a JPEG segment. */
enum class ESegment { Keep, Drop, Refuse };

ESegment KindOf(CBytes file, std::size_t at) {
    constexpr std::string_view kTables = "\xC4\xDA\xDB\xDC\xDD";
    constexpr std::size_t kWithoutThumbnail = 16;
    const unsigned marker = At(file, at + 1);
    // A thumbnail may show what was cut off the picture since.
    if (marker == 0xE0) return Be16(file, at + 2) == kWithoutThumbnail ? ESegment::Keep : ESegment::Drop;
    // Adobe's says how colours are stored.
    if (marker == 0xEE || kTables.find(static_cast<char>(marker)) != kTables.npos) return ESegment::Keep;
    if ((marker >= 0xE0 && marker <= 0xEF) || marker == 0xFE) return ESegment::Drop;
    return marker >= 0xC0 && marker <= 0xC2 ? ESegment::Keep : ESegment::Refuse;
}

bool IsUsualFrame(CBytes file, std::size_t at) {
    const unsigned components = At(file, at + 9);
    return At(file, at + 4) == 8 && (components == 1 || components == 3);
}

/** Where the entropy-coded data that begins there ends: at a marker. */
std::size_t EndOfData(CBytes file, std::size_t at) {
    for (; at + 1 < file.size(); ++at) {
        const unsigned next = At(file, at + 1);
        if (At(file, at) == 0xFF && next != 0 && next != 0xFF && !(next >= 0xD0 && next <= 0xD7)) return at;
    }
    return file.size();
}

std::vector<std::byte> BareJpeg(CBytes file) {
    std::vector<std::byte> out(file.begin(), file.begin() + 2);
    bool hasFrame = false, hasScan = false;
    for (std::size_t at = 2; at + 1 < file.size();) {
        const unsigned marker = At(file, at + 1);
        if (At(file, at) != 0xFF) return {};
        if (marker == 0xFF) {
            ++at;
            continue;
        }
        if (marker == 0xD9) {
            out.insert(out.end(), {std::byte{0xFF}, std::byte{0xD9}});
            return hasFrame && hasScan ? out : std::vector<std::byte>();
        }
        const ESegment kind = KindOf(file, at);
        std::size_t end = at + 2 + Be16(file, at + 2);
        if (kind == ESegment::Refuse || end > file.size() || end < at + 4) return {};
        if (marker <= 0xC2) {
            if (hasFrame || !IsUsualFrame(file, at)) return {};
            hasFrame = true;
        }
        if (marker == 0xDA) {
            hasScan = true;
            end = EndOfData(file, end);
        }
        if (kind == ESegment::Keep)
            out.insert(out.end(), file.begin() + static_cast<std::ptrdiff_t>(at),
                       file.begin() + static_cast<std::ptrdiff_t>(end));
        at = end;
    }
    return {};
}

std::vector<std::byte> BarePng(CBytes file) {
    std::vector<std::byte> out(file.begin(), file.begin() + 8);
    for (std::size_t at = 8; at + 12 <= file.size();) {
        const std::size_t size = Be16(file, at) << 16 | Be16(file, at + 2);
        if (size > file.size() - at - 12) return {};
        const std::string_view name(reinterpret_cast<const char*>(&file[at + 4]), 4);
        if (name == "IHDR" || name == "PLTE" || name == "IDAT" || name == "tRNS" || name == "IEND") {
            const auto begin = file.begin() + static_cast<std::ptrdiff_t>(at);
            out.insert(out.end(), begin, begin + static_cast<std::ptrdiff_t>(size + 12));
        } else if (name[0] < 'a') {
            return {};
        }
        if (name == "IEND") return out;
        at += size + 12;
    }
    return {};
}

}  // namespace

CPictureBytes BarePicture(std::span<const std::byte> file) {
    CPictureBytes result;
    const auto claim = image_probe::ClaimOf(file, {});
    if (!claim || file.size() < 16) return result;
    result.format = claim.Value().format;
    result.width = static_cast<int>(claim.Value().width);
    result.height = static_cast<int>(claim.Value().height);
    if (result.format == EPictureFormat::Jpeg) result.bytes = BareJpeg(file);
    if (result.format == EPictureFormat::Png) result.bytes = BarePng(file);
    return result;
}
