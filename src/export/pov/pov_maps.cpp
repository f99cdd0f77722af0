// SPDX-License-Identifier: MIT
#include "export/pov/pov_maps.h"

#include <array>
#include <cmath>

#include "export/pov/text/CPovText.h"
#include "model/prepare/CPreparedScene.h"

namespace pov_maps {
namespace {

std::string ImageFile(const CPovPictures::CPicture& picture) {
    return '{' + std::string(picture.type) + " \"" + picture.fileName + "\" interpolate 2";
}

std::string Matrix(const CPreparedMap& map) {
    const std::array<float, 6> t = map.UvTransform();
    constexpr std::array<float, 6> kSame{1, 0, 0, 1, 0, 0};
    if (t == kSame) return {};
    const double a = t[0], b = t[1], c = t[2], d = t[3], e = t[4], f = t[5];
    const double det = a * d - b * c;
    // A map without extent would show one pixel of its picture everywhere; unchanged, it shows the
    // whole picture.
    if (!std::isfinite(det) || std::abs(det) < 1e-12) return {};
    CPovText text;
    text << " matrix<";
    for (const double value : {d / det, -b / det, 0.0, -c / det, a / det, 0.0, 0.0, 0.0, 1.0,
                               (c * f - d * e) / det, (b * e - a * f) / det}) {
        text << static_cast<float>(value) << ',';
    }
    return text.String() + "0>";
}

}  // namespace

std::string Number(float value) {
    constexpr float kLargest = 1e9f;
    CPovText text;
    const float sound = std::isfinite(value) ? std::clamp(value, -kLargest, kLargest) : 0.0f;
    text.AppendFixed(std::llround(static_cast<double>(sound) * 1e5), 5);
    return text.String();
}

std::string Placement(const CPreparedMap& map) {
    const std::string mirror = map.mirror && map.tile ? " warp{repeat x flip x} warp{repeat y flip y}" : "";
    return mirror + Matrix(map);
}

std::string ImageMap(const CPovPictures::CPicture& picture, const std::string& modifiers) {
    return "image_map" + ImageFile(picture) + modifiers + '}';
}

std::string Pattern(const CPovPictures::CPicture& picture) {
    return "image_pattern" + ImageFile(picture) + '}';
}

std::string Within(const CPreparedMap& map) {
    return "uv_mapping function{max(abs(x-.5),abs(y-.5))<=.5001}" + Matrix(map);
}

std::string Choice(const std::string& pattern, const std::string& listKeyword, const std::string& zero,
                   const std::string& one) {
    return pattern + ' ' + listKeyword + "{[0 " + zero + "][1 " + one + "]}";
}

std::string Once(const std::string& pattern, const std::string& listKeyword, const std::string& outside,
                 const std::string& inside) {
    return pattern + ' ' + listKeyword + "{[.5 " + outside + "][.5 " + inside + "]}";
}

}  // namespace pov_maps
