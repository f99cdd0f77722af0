// SPDX-License-Identifier: MIT
#include "programs/shared/option_values.h"

#include <array>

#include "base/text/lng.h"

namespace option_values {

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

COutcome SetSize(CPictureOptions& options, std::string_view value) {
    const auto parts = Split(value, 'x');
    const auto width = parts.size() == 2 ? Number<int>(parts[0]) : std::nullopt;
    const auto height = parts.size() == 2 ? Number<int>(parts[1]) : std::nullopt;
    if (!width || !height) return lng::TextUtf8("needs WIDTHxHEIGHT in pixels");
    if (*width < 1 || *height < 1 || *width > kMaxPictureSide || *height > kMaxPictureSide) {
        return lng::TextUtf8("each side must be from 1 to %s pixels", {std::to_string(kMaxPictureSide)});
    }
    options.width = *width;
    options.height = *height;
    return {};
}

COutcome SetCamera(CPictureOptions& options, std::string_view value) {
    if (value.empty()) return lng::TextUtf8("needs a name");
    options.camera = value;
    return {};
}

COutcome SetScene(CPictureOptions& options, std::string_view value) {
    const auto number = Number<std::size_t>(value);
    if (!number || *number < 1) return lng::TextUtf8("needs a number from 1 on");
    options.scene = *number - 1;
    return {};
}

COutcome SetFrame(CPictureOptions& options, std::string_view value) {
    options.frame = Number<float>(value);
    if (!options.frame) return lng::TextUtf8("needs a number");
    return {};
}

COutcome SetBackground(CPictureOptions& options, std::string_view value) {
    const auto parts = Split(value, ',');
    std::array<float, 3> rgb{};
    for (std::size_t i = 0; i < rgb.size(); ++i) {
        const auto number = parts.size() == rgb.size() ? Number<int>(parts[i]) : std::nullopt;
        if (!number || *number < 0 || *number > 255) return lng::TextUtf8("needs R,G,B, each from 0 to 255");
        rgb[i] = static_cast<float>(*number) / 255.0f;
    }
    options.background = {rgb[0], rgb[1], rgb[2]};
    return {};
}

COutcome SetWire(CPictureOptions& options, std::string_view) {
    options.wire = true;
    return {};
}

}  // namespace option_values
