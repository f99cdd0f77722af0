// SPDX-License-Identifier: MIT
#include "model/prepare/facing.h"
#include "base/text/lng.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

namespace {
constexpr std::size_t kMaxSamples = 20'000;
/** Points and lights to decide whether a scene is lit. */
constexpr std::size_t kLitPoints = 4'000, kMostLights = 64;

/** Picks triangles of one batch after the other. At random, as every n-th one of many boxes would show the
 * same sides of all. */
class CSampler {
  public:
    CSampler(std::size_t triangleCount, std::size_t samples)
        : m_step(std::max<std::size_t>(1, triangleCount / samples)) {}

    template <class Visit>
    void VisitSome(std::size_t triangles, Visit visit) {
        for (; m_next < triangles; m_next += 1 + m_random() % (2 * m_step - 1)) visit(m_next);
        m_next -= triangles;
    }

  private:
    std::size_t m_step;
    std::size_t m_next = 0;
    std::minstd_rand m_random;
};

/** A triangle in the scene; its normal points to its front and is twice its area long. */
struct CTriangle {
    CVec3 point[3];
    CVec3 normal;
    const CPreparedMaterial& material;

    [[nodiscard]] bool HasBothSides() const { return material.twoSided || material.wire; }
};

CTriangle TriangleAt(const CPreparedScene& scene, const CPreparedNode& node, const CPreparedBatch& batch,
                     std::size_t triangle) {
    const CPreparedMesh& mesh = scene.meshes[static_cast<std::size_t>(node.mesh)];
    CTriangle result{{}, {}, scene.materials[batch.material]};
    for (std::size_t k = 0; k < 3; ++k) {
        const std::size_t index = batch.firstIndex + triangle * 3 + k;
        result.point[k] = node.meshToWorld.TransformPoint(
            mesh.vertices[mesh.Index(static_cast<std::uint32_t>(index))].Position());
    }
    const CVec3* p = result.point;
    result.normal = Cross(p[1] - p[0], p[2] - p[0]) * (node.mirrored ? -1.0f : 1.0f);
    return result;
}

template <class Visit>
void VisitTriangles(const CPreparedScene& scene, std::size_t samples, Visit visit) {
    CSampler sampler(scene.triangleCount, samples);
    for (const CPreparedNode& node : scene.nodes) {
        if (node.mesh < 0 || !node.visible) continue;
        for (const CPreparedBatch& batch : scene.meshes[static_cast<std::size_t>(node.mesh)].batches) {
            sampler.VisitSome(batch.indexCount / 3,
                              [&](std::size_t triangle) { visit(TriangleAt(scene, node, batch, triangle)); });
        }
    }
}

float Strength(const CPreparedLight& light) {
    return std::max({light.color.x, light.color.y, light.color.z, 0.0f}) * std::max(light.multiplier, 0.0f);
}

float CosOfHalf(float coneDeg) {
    return std::cos(std::clamp(coneDeg, 0.0f, 360.0f) * 0.5f * std::numbers::pi_v<float> / 180);
}

/** How much of a light comes to a point, as the view draws it. */
float Reaching(const CPreparedLight& light, CVec3 point, CVec3 normal, bool bothSides) {
    const CVec3 way = light.position - point;
    const float distance = Length(way);
    if (!(distance > 0)) return 0;
    const float facing = Dot(normal, way) / distance;
    float result = Strength(light) * (bothSides ? std::abs(facing) : std::max(facing, 0.0f));
    if (light.spot) {
        const float outer = CosOfHalf(light.falloffDeg);
        const float inner = std::max(CosOfHalf(light.hotspotDeg), outer + 1e-4f);
        const float angle = -Dot(way, Normalized(light.target - light.position)) / distance;
        result *= std::clamp((angle - outer) / (inner - outer), 0.0f, 1.0f);
    }
    if (light.attenuate) {
        const float width = std::max(light.outerRange - light.innerRange, 1e-6f);
        result *= std::clamp((light.outerRange - distance) / width, 0.0f, 1.0f);
    }
    return result;
}

std::vector<CPreparedLight> StrongestLights(const CPreparedScene& scene) {
    std::vector<CPreparedLight> lights;
    for (const CPreparedLight& light : scene.lights) {
        if (!light.off) lights.push_back(light);
    }
    if (lights.size() > kMostLights) {
        const auto stronger = [](const CPreparedLight& a, const CPreparedLight& b) {
            return Strength(a) > Strength(b);
        };
        std::stable_sort(lights.begin(), lights.end(), stronger);
        lights.resize(kMostLights);
    }
    return lights;
}

/** Whether enough comes to a point that it is seen. */
bool IsLit(const CTriangle& triangle, CVec3 point, float ambient, const std::vector<CPreparedLight>& lights) {
    constexpr float kVisible = 0.1f;
    float light = std::max(ambient, triangle.material.selfIllumination);
    const CVec3 normal = Normalized(triangle.normal);
    for (std::size_t i = 0; i < lights.size() && light < kVisible; ++i)
        light += Reaching(lights[i], point, normal, triangle.HasBothSides());
    return light >= kVisible;
}

/** A point of a triangle, each as likely as any other; a and b: 0 to 1. */
CVec3 PointIn(const CTriangle& triangle, float a, float b) {
    const float root = std::sqrt(a);
    return triangle.point[0] * (1 - root) + triangle.point[1] * (root * (1 - b)) +
           triangle.point[2] * (root * b);
}
}  // namespace

float FrontShare(const CPreparedScene& scene, CVec3 towardsViewer) {
    double front = 0, all = 0;
    VisitTriangles(scene, kMaxSamples, [&](const CTriangle& triangle) {
        const float seen = Dot(triangle.normal, towardsViewer);
        all += static_cast<double>(std::abs(seen));
        if (seen > 0 || triangle.HasBothSides()) front += static_cast<double>(std::abs(seen));
    });
    return all > 0 ? static_cast<float>(front / all) : 1.0f;
}

float LitShare(const CPreparedScene& scene) {
    const std::vector<CPreparedLight> lights = StrongestLights(scene);
    const float ambient = std::max({scene.ambientLight.x, scene.ambientLight.y, scene.ambientLight.z, 0.0f});
    const std::size_t pointsEach =
        std::clamp<std::size_t>(kLitPoints / std::max<std::size_t>(scene.triangleCount, 1), 1, 256);
    std::minstd_rand random;
    const auto share = [&random] {
        return static_cast<float>(random() - std::minstd_rand::min()) /
               static_cast<float>(std::minstd_rand::max() - std::minstd_rand::min());
    };
    double lit = 0, all = 0;
    VisitTriangles(scene, kLitPoints, [&](const CTriangle& triangle) {
        const double area = static_cast<double>(Length(triangle.normal));
        if (!std::isfinite(area)) return;
        for (std::size_t i = 0; i < pointsEach; ++i) {
            const float a = share(), b = share();
            all += area;
            if (IsLit(triangle, PointIn(triangle, a, b), ambient, lights)) lit += area;
        }
    });
    return all > 0 ? static_cast<float>(lit / all) : 1.0f;
}

void JoinHeadlightIfDark(CPreparedScene& scene) {
    constexpr float kNearlyNothing = 0.1f;
    const bool anyOn = std::any_of(scene.lights.begin(), scene.lights.end(),
                                   [](const CPreparedLight& light) { return !light.off; });
    if (!anyOn || LitShare(scene) > kNearlyNothing) return;
    scene.headlightJoins = true;
    scene.notes.push_back(
        {CSceneNote::EKind::Repaired,
         lng::Mark("The file's lights leave the model in the dark; it is lit from the eye, too")});
}

void ShowBothSidesIfTurnedAway(CPreparedScene& scene) {
    constexpr float kNextToNothing = 0.02f;
    constexpr CVec3 kFirstCorner{1, -1, 1};
    if (FrontShare(scene, kFirstCorner) > kNextToNothing) return;
    for (CPreparedMaterial& material : scene.materials) material.twoSided = true;
    scene.notes.push_back(
        {CSceneNote::EKind::Repaired, lng::Mark("All surfaces face away; they are shown from both sides")});
}
