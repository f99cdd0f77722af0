// SPDX-License-Identifier: MIT
#include "widgets/window_place.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace {

constexpr int kLeastWidth = 160;
constexpr int kLeastHeight = 80;
constexpr int kMostSide = 32767;  // display servers count in 16 bits
constexpr int kTitleHeight = 32;
constexpr int kGripWidth = 100;  // this width of title bar is enough to drag the window

// Stored numbers may have any value, so sums are computed in 64 bits.
struct CSpan {
    std::int64_t begin = 0;
    std::int64_t end = 0;
};

CSpan Across(const CPlaceRect& r) {
    return {r.x, std::int64_t{r.x} + r.width};
}
CSpan Down(const CPlaceRect& r) {
    return {r.y, std::int64_t{r.y} + r.height};
}

std::int64_t Shared(CSpan a, CSpan b) {
    return std::max<std::int64_t>(0, std::min(a.end, b.end) - std::max(a.begin, b.begin));
}
std::int64_t Gap(CSpan a, CSpan b) {
    return std::max<std::int64_t>({0, b.begin - a.end, a.begin - b.end});
}

const CPlaceRect& BestScreen(const CPlaceRect& place, std::span<const CPlaceRect> screens) {
    const CPlaceRect* best = screens.data();
    std::int64_t mostArea = 0;
    std::int64_t leastGap = std::numeric_limits<std::int64_t>::max();
    for (const CPlaceRect& screen : screens) {
        const std::int64_t area = Shared(Across(place), Across(screen)) * Shared(Down(place), Down(screen));
        const std::int64_t gap = Gap(Across(place), Across(screen)) + Gap(Down(place), Down(screen));
        if (area > mostArea || (mostArea == 0 && gap < leastGap)) best = &screen;
        mostArea = std::max(mostArea, area);
        leastGap = std::min(leastGap, gap);
    }
    return *best;
}

bool CanBeDragged(const CPlaceRect& place, std::span<const CPlaceRect> screens) {
    const std::int64_t grip = std::min(place.width, kGripWidth);
    return std::ranges::any_of(screens, [&](const CPlaceRect& screen) {
        const bool topIsOn = place.y >= screen.y && std::int64_t{place.y} + kTitleHeight <= Down(screen).end;
        return topIsOn && Shared(Across(place), Across(screen)) >= grip;
    });
}

int Moved(int begin, int length, CSpan screen) {
    return static_cast<int>(std::max(screen.begin, std::min<std::int64_t>(begin, screen.end - length)));
}

}  // namespace

namespace window_place {

CPlaceRect BringOntoScreen(const CPlaceRect& place, std::span<const CPlaceRect> screens) {
    CPlaceRect result = place;
    result.width = std::clamp(place.width, kLeastWidth, kMostSide);
    result.height = std::clamp(place.height, kLeastHeight, kMostSide);
    if (screens.empty()) return result;
    const CPlaceRect& screen = BestScreen(result, screens);
    result.width = std::min(result.width, std::max(screen.width, kLeastWidth));
    result.height = std::min(result.height, std::max(screen.height, kLeastHeight));
    if (CanBeDragged(result, screens)) return result;
    result.x = Moved(result.x, result.width, Across(screen));
    result.y = Moved(result.y, result.height, Down(screen));
    return result;
}

}  // namespace window_place
