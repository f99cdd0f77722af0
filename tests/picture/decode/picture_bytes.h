// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "files/CTestFolder.h"
#include "picture/decode/image_codec.h"

inline std::string Le16(unsigned value) {
    return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8)};
}
inline std::string Le32(unsigned value) {
    return Le16(value & 0xFFFF) + Le16(value >> 16);
}

inline CResult<CImage> Decode(std::string_view bytes, std::string_view name = "") {
    CResult<image_codec::CDecodedImage> decoded =
        image_codec::DecodeImage(std::as_bytes(std::span(bytes)), name);
    if (!decoded) return decoded.Error();
    return std::move(decoded).Value().image;
}

inline std::string Be16(unsigned value) {
    return {static_cast<char>(value >> 8), static_cast<char>(value & 0xFF)};
}
inline std::string Be32(unsigned value) {
    return Be16(value >> 16) + Be16(value & 0xFFFF);
}

// The pixels as "rrggbbaa", one after another.
inline std::string Hex(const CImage& image) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < image.rgba.size(); ++i) {
        if (i > 0 && i % 4 == 0) text += ' ';
        (text += kDigits[image.rgba[i] >> 4]) += kDigits[image.rgba[i] & 15];
    }
    return text;
}

/** One of the fuzzers' seeds. */
inline std::string Seed(const std::string& name) {
    return CTestFolder::TextOf(ORBIVUE_PICTURE_SEEDS + name);
}
/** Bytes with other ones in a place. */
inline std::string With(std::string bytes, std::size_t at, std::string_view part) {
    return bytes.replace(at, part.size(), part);
}
