// SPDX-License-Identifier: MIT
#include "camera/framing.h"

#include <algorithm>
#include <vector>

#include "camera/CViewCamera.h"
#include "model/prepare/CPreparedScene.h"

namespace {
/** An object this many times smaller than the picture is a dot of some twenty pixels. */
constexpr float kSmallestShare = 1.0f / 20;
/** Objects belong together whose distance is at most so many radii of the group. */
constexpr float kReach = 4;

CSphere SphereOf(const CBox& box) {
    return {box.Center(), Length(box.max - box.min) * 0.5f};
}

/** The largest object with everything within reach of what was taken so far. */
CSphere LargestGroup(std::vector<CBox> boxes) {
    const auto size = [](const CBox& box) { return Length(box.max - box.min); };
    std::sort(boxes.begin(), boxes.end(), [&](const CBox& a, const CBox& b) { return size(a) > size(b); });
    CBox group = boxes.front();
    std::vector<CBox> outside(boxes.begin() + 1, boxes.end());
    for (std::size_t before = outside.size() + 1; before != outside.size();) {
        before = outside.size();
        const CSphere sphere = SphereOf(group);
        std::erase_if(outside, [&](const CBox& box) {
            if (Length(box.Center() - sphere.center) > kReach * sphere.radius) return false;
            group.Add(box);
            return true;
        });
    }
    return SphereOf(group);
}

CSphere SphereOfViewers(const CPreparedScene& scene) {
    CBox box = scene.bounds;
    for (const CPreparedLight& light : scene.lights) box.Add(light.position);
    for (const CPreparedCamera& camera : scene.cameras) box.Add(camera.position);
    return box.IsEmpty() ? CSphere{} : SphereOf(box);
}
}  // namespace

CSphere FramingSphere(const CPreparedScene& scene) {
    if (!(scene.boundingSphere.radius > 0)) return SphereOfViewers(scene);
    std::vector<CBox> boxes;
    float largest = 0;
    for (const CPreparedNode& node : scene.nodes) {
        if (node.mesh < 0 || !node.visible || node.worldBounds.IsEmpty()) continue;
        boxes.push_back(node.worldBounds);
        largest = std::max(largest, SphereOf(node.worldBounds).radius);
    }
    const bool visible = largest > scene.boundingSphere.radius * kSmallestShare;
    // Thousands of grains that fill the sphere are seen well enough together.
    constexpr std::size_t kFewObjects = 50;
    return visible || boxes.empty() || boxes.size() > kFewObjects ? scene.boundingSphere
                                                                  : LargestGroup(std::move(boxes));
}

void ChooseCamera(CViewCamera& camera, const CPreparedScene& scene, std::string_view name) {
    const auto named = std::ranges::find(scene.cameras, name, &CPreparedCamera::name);
    ECameraPreset preset = ECameraPreset::Iso;
    const bool isPreset = PresetOfName(name, preset);
    if (named == scene.cameras.end() || (isPreset && NameOfPreset(preset) == name)) {
        camera.SetPreset(preset);
    } else {
        camera.SetFileCamera(*named);
    }
}
