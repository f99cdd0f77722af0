// SPDX-License-Identifier: MIT
#include "model/levels/CThinner.h"

#include <meshoptimizer.h>

#include <algorithm>
#include <array>

#include "base/math/CBox.h"

namespace {

constexpr std::uint32_t kNone = 0xFFFFFFFFu;

float Coordinate(CVec3 p, int axis) {
    return axis == 0 ? p.x : axis == 1 ? p.y : p.z;
}

int LongestSide(const CBox& box) {
    const CVec3 size = box.max - box.min;
    if (size.x >= size.y && size.x >= size.z) return 0;
    return size.y >= size.z ? 1 : 2;
}

}  // namespace

CThinner::CThinner(const std::vector<CVec3>& places, const std::atomic<bool>& stop)
    : m_places(places), m_stop(stop), m_numberInPiece(places.size(), kNone) {}

std::vector<std::uint32_t> CThinner::Thin(std::vector<std::uint32_t> triangles, std::size_t wanted,
                                          float& error) {
    std::vector<std::array<std::uint32_t, 3>> all(triangles.size() / 3);
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i] = {triangles[3 * i], triangles[3 * i + 1], triangles[3 * i + 2]};
    std::vector<std::uint32_t>().swap(triangles);
    const CGoal goal{static_cast<double>(wanted) / static_cast<double>(std::max<std::size_t>(all.size(), 1)),
                     all.size() > kMostInPiece ? unsigned{meshopt_SimplifyLockBorder} : 0u};
    std::vector<std::uint32_t> result;
    error = 0;
    ThinPieces(all, goal, result, error);
    return result;
}

void CThinner::ThinPieces(CTriangles triangles, const CGoal& goal, std::vector<std::uint32_t>& result,
                          float& error) {
    if (m_stop || triangles.empty()) return;
    if (triangles.size() <= kMostInPiece) return ThinPiece(triangles, goal, result, error);
    const std::size_t cut = Cut(triangles);
    ThinPieces(triangles.first(cut), goal, result, error);
    ThinPieces(triangles.subspan(cut), goal, result, error);
}

/** Puts the triangles in order so that both halves lie apart from each other. */
std::size_t CThinner::Cut(CTriangles triangles) const {
    CBox box;
    for (const auto& triangle : triangles) box.Add(m_places[triangle[0]]);
    const int axis = LongestSide(box);
    const auto middle = triangles.begin() + static_cast<std::ptrdiff_t>(triangles.size() / 2);
    std::nth_element(triangles.begin(), middle, triangles.end(), [&](const auto& a, const auto& b) {
        return Coordinate(m_places[a[0]], axis) < Coordinate(m_places[b[0]], axis);
    });
    return triangles.size() / 2;
}

void CThinner::ThinPiece(CTriangles triangles, const CGoal& goal, std::vector<std::uint32_t>& result,
                         float& error) {
    std::vector<CVec3> places;
    std::vector<std::uint32_t> used, indices, thinned(triangles.size() * 3);
    indices.reserve(thinned.size());
    for (const auto& triangle : triangles) {
        for (const std::uint32_t vertex : triangle) {
            std::uint32_t& number = m_numberInPiece[vertex];
            if (number == kNone) {
                number = static_cast<std::uint32_t>(places.size());
                places.push_back(m_places[vertex]);
                used.push_back(vertex);
            }
            indices.push_back(number);
        }
    }
    const auto wanted = static_cast<std::size_t>(goal.share * static_cast<double>(triangles.size())) * 3;
    constexpr float kAnyError = 1;
    float relative = 0;
    thinned.resize(meshopt_simplify(thinned.data(), indices.data(), indices.size(), &places[0].x,
                                    places.size(), sizeof(CVec3), wanted, kAnyError, goal.options,
                                    &relative));
    error = std::max(error, relative * meshopt_simplifyScale(&places[0].x, places.size(), sizeof(CVec3)));
    for (const std::uint32_t number : thinned) result.push_back(used[number]);
    for (const std::uint32_t vertex : used) m_numberInPiece[vertex] = kNone;
}
