// SPDX-License-Identifier: MIT
#include "programs/orbivue_render/render_stats.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/text/number_text.h"
#include "engine/C3dsDisplayWrap.h"
#include "files/file_util_ex.h"
#include "model/prepare/CPreparedScene.h"

namespace {

using nlohmann::json;

/** Four significant digits are enough for times and positions, and easier to read than sixteen. */
double Rounded(double value) {
    return std::round(value * 1e4) / 1e4;
}

json Vector(float x, float y, float z) {
    return json::array({x, y, z});
}

json Textures(const CPreparedScene& scene) {
    json found = json::array(), missing = json::array();
    for (const CPreparedTexture& texture : scene.textures) {
        if (texture.image.IsEmpty()) {
            missing.push_back(texture.reference);
        } else {
            found.push_back({{"name", texture.reference},
                             {"at", texture.foundAt},
                             {"width", texture.image.width},
                             {"height", texture.image.height}});
        }
    }
    return {{"found", found}, {"missing", missing}};
}

json Notes(const CPreparedScene& scene, std::span<const CSceneNote> more) {
    json notes = json::array();
    for (const CSceneNote& note : more) notes.push_back(note.Text());
    for (const CSceneNote& note : scene.notes) notes.push_back(note.Text());
    return notes;
}

json Camera(const C3dsDisplayWrap& engine) {
    return {{"name", engine.GetCameraName()},
            {"eye", Vector(engine.GetEyeX(), engine.GetEyeY(), engine.GetEyeZ())},
            {"target", Vector(engine.GetXOrg(), engine.GetYOrg(), engine.GetZOrg())},
            {"up", Vector(engine.GetUpX(), engine.GetUpY(), engine.GetUpZ())},
            {"fovY", engine.GetFovY()}};
}

}  // namespace

std::size_t DrawnNodes(const CPreparedScene& scene) {
    return static_cast<std::size_t>(
        std::ranges::count_if(scene.nodes, [](const CPreparedNode& node) { return node.mesh >= 0; }));
}

double PeakMemoryMb() {
    const auto status = file_util_ex::ReadWholeFile("/proc/self/status");
    if (!status) return 0;
    const std::string_view text(reinterpret_cast<const char*>(status.Value().data()), status.Value().size());
    const std::size_t at = text.find("VmHWM:");
    if (at == std::string_view::npos) return 0;
    return number_text::ParseLeading(text.substr(at + 6)).value_or(0) * 1024 / 1e6;
}

std::string RenderStatsJson(const C3dsDisplayWrap& engine, std::span<const CSceneNote> more,
                            const CRenderTimes& times, const std::string& renderer, int samples,
                            const std::optional<CConfined>& confined) {
    const CPreparedScene& scene = *engine.Prepared();
    const CVec3 center = scene.boundingSphere.center;
    json cameras = json::array();
    for (const CPreparedCamera& camera : scene.cameras) cameras.push_back(camera.name);
    json stats{
        {"triangles", scene.triangleCount},
        {"vertices", scene.vertexCount},
        {"nodes", DrawnNodes(scene)},
        {"meshes", scene.meshes.size()},
        {"materials", scene.materials.empty() ? 0 : scene.materials.size() - 1},  // the last one is our own
        {"lights", scene.lights.size()},
        {"cameras", cameras},
        {"textures", Textures(scene)},
        {"notes", Notes(scene, more)},
        {"animated", scene.animated},
        {"frames", {{"first", scene.firstFrame}, {"last", scene.lastFrame}, {"shown", scene.currentFrame}}},
        {"model",
         {{"center", Vector(center.x, center.y, center.z)}, {"radius", scene.boundingSphere.radius}}},
        {"camera", Camera(engine)},
        {"milliseconds",
         {{"read", Rounded(times.read)},
          {"prepare", Rounded(times.prepare)},
          {"draw", Rounded(times.draw)},
          {"write", Rounded(times.write)},
          {"total", Rounded(times.total)}}},
        {"peakMemoryMb", Rounded(PeakMemoryMb())},
        {"samples", engine.GetLastReduction() > 0 ? 0 : samples},
        {"coarser", engine.GetLastReduction() > 0},
        {"sidesDividedBy", std::max(engine.GetLastReduction(), 1)},
        {"renderer", renderer},
    };
    if (confined) {
        stats["confined"] = {
            {"limits", confined->limits}, {"systemCalls", confined->systemCalls}, {"files", confined->files}};
    }
    // Names are the file's bytes; bytes that are not UTF-8 become the replacement character.
    return stats.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
}
