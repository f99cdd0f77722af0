// SPDX-License-Identifier: MIT
#include "camera/CSeenOptions.h"

#include <charconv>
#include <cmath>
#include <numbers>

#include "base/text/lng.h"

namespace {

constexpr double kDegree = std::numbers::pi / 180;

/** As many numbers as wanted, with commas between them, and nothing else. */
template <std::size_t count>
std::optional<std::array<double, count>> Numbers(std::string_view text) {
    std::array<double, count> numbers{};
    for (std::size_t i = 0; i < count; ++i) {
        const bool isLast = i + 1 == count;
        const std::size_t end = isLast ? text.size() : text.find(',');
        if (end == std::string_view::npos) return std::nullopt;
        const char* stop = text.data() + end;
        const auto [read, error] = std::from_chars(text.data(), stop, numbers[i]);
        if (error != std::errc() || read != stop || !std::isfinite(numbers[i])) return std::nullopt;
        text.remove_prefix(isLast ? end : end + 1);
    }
    return numbers;
}

CRotation RotationOf(CVec3 deg) {
    const auto about = [](CVec3d axis, float angleDeg) {
        return CRotation::About(axis, static_cast<double>(angleDeg) * kDegree);
    };
    return about({1, 0, 0}, deg.x) * about({0, 1, 0}, deg.y) * about({0, 0, 1}, deg.z);
}

}  // namespace

std::optional<std::string> CSeenOptions::Set(std::string_view name, std::string_view value) {
    if (name == "zoom" || name == "orbit") {
        const auto number = Numbers<1>(value);
        if (!number || std::abs((*number)[0]) > 1e6) return lng::TextUtf8("needs a number");
        if (name == "orbit")
            orbitDeg = (*number)[0];
        else
            zoom = static_cast<int>(std::lround((*number)[0]));
        return {};
    }
    if (name == "pan") {
        const auto n = Numbers<2>(value);
        if (!n) return lng::TextUtf8("needs DX,DY in pixels");
        pan = *n;
        return {};
    }
    if (name == "zoom-box") {
        const auto n = Numbers<4>(value);
        if (!n) return lng::TextUtf8("needs LEFT,TOP,RIGHT,BOTTOM in pixels");
        zoomBox = C2DRect((*n)[0], (*n)[1], (*n)[2], (*n)[3]);
        return {};
    }
    const auto n = Numbers<3>(value);
    if (!n) return lng::TextUtf8("needs X,Y,Z");
    const CVec3d v{(*n)[0], (*n)[1], (*n)[2]};
    const CVec3 f{static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
    if (name == "angles") anglesDeg = f;
    if (name == "turn") turnDeg = f;
    if (name == "pivot") pivot = v;
    if (name == "scale") scale = v;
    return {};
}

void CSeenOptions::Apply(CSeenView& seen) const {
    seen.rotX += anglesDeg.x;
    seen.rotY += anglesDeg.y;
    seen.rotZ += anglesDeg.z;
    seen.turn = RotationOf(turnDeg);
    seen.orbit = orbitDeg * kDegree;
    seen.pivot = pivot;
    seen.scale = scale;
    seen.Pan(pan[0], pan[1]);
    if (zoomBox) (void)seen.ZoomTo(*zoomBox);  // one without area shows all, as in the window
    if (zoom != 0) seen.camera.Zoom(zoom);
}
