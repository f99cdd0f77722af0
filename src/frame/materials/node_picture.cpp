// SPDX-License-Identifier: MIT
#include "frame/materials/node_picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "base/jobs/CJobProgress.h"
#include "base/math/CMatrix.h"
#include "base/text/ascii_text.h"
#include "model/prepare/CPreparedScene.h"

namespace {

constexpr int kSamples = 2;  ///< along each side of a pixel
constexpr std::int64_t kMostPixels = 20'000'000;
constexpr std::uint32_t kMostTriangles = 4'000'000;
constexpr std::uint32_t kLookAtCancel = 256;  ///< triangles

/** The mean colour of a picture, from a few of its pixels. */
CVec3 MeanOf(const CImage& image) {
    constexpr int kSteps = 16;
    CVec3 sum;
    for (int i = 0; i < kSteps * kSteps; ++i) {
        const std::uint8_t* pixel =
            image.Pixel(image.width * (i % kSteps) / kSteps, image.height * (i / kSteps) / kSteps);
        sum = sum +
              CVec3{static_cast<float>(pixel[0]), static_cast<float>(pixel[1]), static_cast<float>(pixel[2])};
    }
    return sum * (1.0f / (255.0f * kSteps * kSteps));
}

CVec3 ColorOf(const CPreparedScene& scene, const CPreparedMaterial& material) {
    if (!material.texture.HasEffect()) return material.diffuse;
    const CImage& image = scene.textures[static_cast<std::size_t>(material.texture.texture)].image;
    return image.IsEmpty() ? material.diffuse : MeanOf(image);
}

/** A point as it is seen: pixels to the right and down, and how near it is. */
struct CSeenPoint {
    float x = 0, y = 0, near = 0;
};

/** Draws triangles with a depth buffer. */
class CNodeDrawing {
  public:
    CNodeDrawing(int sidePx, const CBox& bounds) : m_side(sidePx * kSamples) {
        const auto pixels = static_cast<std::size_t>(m_side) * static_cast<std::size_t>(m_side);
        m_near.assign(pixels, -std::numeric_limits<float>::infinity());
        m_color.resize(pixels);
        m_middle = (bounds.min + bounds.max) * 0.5f;
        const float radius = Length(bounds.max - bounds.min) * 0.5f;
        m_scale = radius > 0 ? 0.49f * static_cast<float>(m_side) / radius : 0;
    }

    [[nodiscard]] bool IsExhausted() const { return m_pixels > kMostPixels; }

    void Draw(const std::array<CVec3, 3>& corners, CVec3 color) {
        const CVec3 normal = Normalized(Cross(corners[1] - corners[0], corners[2] - corners[0]));
        constexpr float kAmbient = 0.35f;
        const float light =
            kAmbient + (1 - kAmbient) * std::abs(Dot(normal, Normalized(CVec3{-0.4f, -0.7f, 0.9f})));
        Fill({Seen(corners[0]), Seen(corners[1]), Seen(corners[2])}, color * light);
    }

    [[nodiscard]] CImage Picture() const {
        const int side = m_side / kSamples;
        CImage image{side, side, {}};
        image.rgba.resize(static_cast<std::size_t>(side) * static_cast<std::size_t>(side) * 4);
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x) Mix(x, y, &image.rgba[static_cast<std::size_t>(y * side + x) * 4]);
        return image;
    }

  private:
    [[nodiscard]] CSeenPoint Seen(CVec3 point) const {
        const CVec3 p = (point - m_middle) * m_scale;
        const float half = static_cast<float>(m_side) / 2;
        // From the front, the right and above.
        constexpr float kRight = 0.70711f, kUp = 0.5f, kNear = 0.5f, kHigh = 0.70711f;
        return {half + kRight * (p.x + p.y), half - (kUp * (p.y - p.x) + kHigh * p.z),
                kNear * (p.x - p.y) + kHigh * p.z};
    }

    void Fill(const std::array<CSeenPoint, 3>& t, CVec3 color) {
        const auto [left, right] = std::minmax({t[0].x, t[1].x, t[2].x});
        const auto [top, bottom] = std::minmax({t[0].y, t[1].y, t[2].y});
        const float area = (t[1].x - t[0].x) * (t[2].y - t[0].y) - (t[2].x - t[0].x) * (t[1].y - t[0].y);
        if (!std::isfinite(area) || area == 0) return;
        const int x0 = Inside(left), x1 = Inside(right), y0 = Inside(top), y1 = Inside(bottom);
        m_pixels += static_cast<std::int64_t>(x1 - x0 + 1) * (y1 - y0 + 1);
        for (int y = y0; y <= y1; ++y) {
            for (int x = x0; x <= x1; ++x) {
                const float px = static_cast<float>(x) + 0.5f, py = static_cast<float>(y) + 0.5f;
                const float b =
                    ((px - t[0].x) * (t[2].y - t[0].y) - (t[2].x - t[0].x) * (py - t[0].y)) / area;
                const float c =
                    ((t[1].x - t[0].x) * (py - t[0].y) - (px - t[0].x) * (t[1].y - t[0].y)) / area;
                if (b < 0 || c < 0 || b + c > 1) continue;
                const float near = t[0].near + b * (t[1].near - t[0].near) + c * (t[2].near - t[0].near);
                const std::size_t at = PlaceOf(x, y);
                if (!(near > m_near[at])) continue;
                m_near[at] = near;
                m_color[at] = color;
            }
        }
    }

    [[nodiscard]] int Inside(float place) const {
        return static_cast<int>(std::clamp(place, 0.0f, static_cast<float>(m_side - 1)));
    }

    [[nodiscard]] std::size_t PlaceOf(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_side) + static_cast<std::size_t>(x);
    }

    /** One pixel out of its samples. */
    void Mix(int x, int y, std::uint8_t* rgba) const {
        CVec3 sum;
        int covered = 0;
        for (int i = 0; i < kSamples * kSamples; ++i) {
            const int sx = x * kSamples + i % kSamples, sy = y * kSamples + i / kSamples;
            const std::size_t at = PlaceOf(sx, sy);
            if (!std::isfinite(m_near[at])) continue;
            sum = sum + m_color[at];
            ++covered;
        }
        if (covered == 0) return;
        const auto byte = [covered](float value) {
            return static_cast<std::uint8_t>(
                std::clamp(255 * value / static_cast<float>(covered), 0.0f, 255.0f));
        };
        rgba[0] = byte(sum.x);
        rgba[1] = byte(sum.y);
        rgba[2] = byte(sum.z);
        rgba[3] = static_cast<std::uint8_t>(255 * covered / (kSamples * kSamples));
    }

    int m_side;
    CVec3 m_middle;
    float m_scale = 0;
    std::int64_t m_pixels = 0;
    std::vector<float> m_near;
    std::vector<CVec3> m_color;
};

}  // namespace

std::vector<CChoice> ChoicesIn(const CPreparedScene& scene) {
    std::vector<CChoice> choices;
    for (std::size_t i = 0; i < scene.nodes.size(); ++i) {
        const CPreparedNode& node = scene.nodes[i];
        if (node.kind != ENodeKind::Object || node.mesh < 0) continue;
        const std::size_t triangles = scene.meshes[static_cast<std::size_t>(node.mesh)].IndexCount() / 3;
        if (triangles > 0) choices.push_back({i, node.name, triangles});
    }
    return choices;
}

int ChoiceFor(const std::vector<CChoice>& choices, const std::string& node) {
    const auto isNode = [&](const CChoice& choice) { return choice.name == node; };
    const auto isAlike = [&](const CChoice& choice) { return ascii_text::EqualNoCase(choice.name, node); };
    auto found = std::find_if(choices.begin(), choices.end(), isNode);
    if (found == choices.end()) found = std::find_if(choices.begin(), choices.end(), isAlike);
    if (found != choices.end()) return static_cast<int>(found - choices.begin());
    return choices.empty() ? -1 : 0;
}

CImage DrawNodePicture(const CPreparedScene& scene, std::size_t node, int sidePx,
                       const CJobProgress& progress) {
    const CPreparedNode& shown = scene.nodes[node];
    const CPreparedMesh& mesh = scene.meshes[static_cast<std::size_t>(shown.mesh)];
    const CMat4& place = shown.meshToWorld;
    CBox bounds;
    for (const CPreparedVertex& vertex : mesh.vertices) bounds.Add(place.TransformPoint(vertex.Position()));
    CNodeDrawing drawing(sidePx, bounds);
    std::uint32_t drawn = 0;
    for (const CPreparedBatch& batch : mesh.batches) {
        const CVec3 color = ColorOf(scene, scene.materials[batch.material]);
        for (std::uint32_t i = 0; i + 2 < batch.indexCount; i += 3) {
            if (++drawn % kLookAtCancel == 0 && progress.IsCancelled()) return {};
            if (drawn > kMostTriangles || drawing.IsExhausted()) return drawing.Picture();
            std::array<CVec3, 3> corners;
            for (std::uint32_t k = 0; k < 3; ++k)
                corners[k] =
                    place.TransformPoint(mesh.vertices[mesh.Index(batch.firstIndex + i + k)].Position());
            drawing.Draw(corners, color);
        }
    }
    return drawing.Picture();
}
