// SPDX-License-Identifier: MIT
#include "thumbnails/png_texts.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

namespace png_texts {
namespace {

constexpr std::string_view kSignature("\x89PNG\r\n\x1A\n", 8);
constexpr std::size_t kHeaderEnd = 8 + 12 + 13;  // the signature and the first chunk
constexpr std::size_t kMostTexts = 64, kMostBytes = 64 << 10, kMostKeyBytes = 79;

std::uint32_t NumberAt(std::string_view bytes) {
    std::uint32_t number = 0;
    for (const char c : bytes.substr(0, 4)) number = number << 8 | static_cast<unsigned char>(c);
    return number;
}

/** What ends in a zero byte; the rest of the bytes follows it. */
std::optional<std::string_view> TakeField(std::string_view& bytes) {
    const std::size_t end = bytes.find('\0');
    if (end == bytes.npos) return std::nullopt;
    const std::string_view field = bytes.substr(0, end);
    bytes.remove_prefix(end + 1);
    return field;
}

std::optional<std::string> Unpacked(std::string_view packed) {
    std::string text(kMostBytes, '\0');
    uLongf size = text.size();
    if (uncompress(reinterpret_cast<Bytef*>(text.data()), &size,
                   reinterpret_cast<const Bytef*>(packed.data()), packed.size()) != Z_OK)
        return std::nullopt;
    text.resize(size);
    return text;
}

std::optional<std::string> Value(std::string_view kind, std::string_view rest) {
    bool isPacked = false;
    if (kind == "zTXt") {
        if (!rest.starts_with('\0')) return std::nullopt;  // the one way of packing
        rest.remove_prefix(1);
        isPacked = true;
    } else if (kind == "iTXt") {
        if (rest.size() < 2) return std::nullopt;
        isPacked = rest.front() != '\0';
        rest.remove_prefix(2);
        if (!TakeField(rest) || !TakeField(rest)) return std::nullopt;  // the language, the key in it
    }
    if (isPacked) return Unpacked(rest);
    if (rest.size() > kMostBytes) return std::nullopt;
    return std::string(rest);
}

bool IsText(std::string_view kind) {
    return kind == "tEXt" || kind == "zTXt" || kind == "iTXt";
}

void Take(std::string_view kind, std::string_view data, CTexts& texts) {
    const std::optional<std::string_view> key = TakeField(data);
    if (!key || key->empty() || key->size() > kMostKeyBytes) return;
    if (std::optional<std::string> value = Value(kind, data)) texts.emplace_back(*key, std::move(*value));
}

void AppendNumber(std::uint32_t number, std::string& to) {
    for (int shift = 24; shift >= 0; shift -= 8) to += static_cast<char>(number >> shift & 0xFF);
}

}  // namespace

CTexts Read(std::span<const std::byte> png) {
    std::string_view rest(reinterpret_cast<const char*>(png.data()), png.size());
    CTexts texts;
    if (!rest.starts_with(kSignature)) return texts;
    rest.remove_prefix(kSignature.size());
    constexpr std::size_t kAround = 12;  // length, kind, checksum
    std::size_t count = 0;               // those that cannot be unpacked cost most
    while (rest.size() >= kAround && count < kMostTexts) {
        const std::size_t length = NumberAt(rest);
        if (length > rest.size() - kAround) break;
        const std::string_view kind = rest.substr(4, 4);
        if (IsText(kind)) {
            Take(kind, rest.substr(8, length), texts);
            ++count;
        }
        rest.remove_prefix(length + kAround);
    }
    return texts;
}

void Add(const CTexts& texts, std::vector<std::byte>& png) {
    std::string chunks;
    for (const auto& [key, value] : texts) {
        const std::string chunk = "tEXt" + key + '\0' + value;
        AppendNumber(static_cast<std::uint32_t>(chunk.size() - 4), chunks);
        chunks += chunk;
        const auto* bytes = reinterpret_cast<const Bytef*>(chunk.data());
        AppendNumber(static_cast<std::uint32_t>(crc32(0, bytes, static_cast<uInt>(chunk.size()))), chunks);
    }
    const auto added = std::as_bytes(std::span(chunks));
    png.insert(png.begin() + kHeaderEnd, added.begin(), added.end());
}

}  // namespace png_texts
