// SPDX-License-Identifier: MIT
#include "session/scene_summary.h"

#include <algorithm>

#include "base/text/lng.h"
#include "model/open/load_scene.h"
#include "model/prepare/CPreparedScene.h"

namespace {

std::wstring TextOf(const CSceneNote& note) {
    std::wstring text = lng::Text(note.what);
    if (!note.subject.empty()) text += L": " + lng::ConvertFromUTF8(note.subject);
    if (!note.reason.empty()) text += L" (" + lng::Text(CError{{}, note.reason, {}}) + L")";
    if (note.times > 1) text += L" " + lng::Text("(%s times)", lng::Number(note.times));
    return text;
}

}  // namespace

CSceneSummary SummaryOf(const CPreparedScene& scene) {
    const auto objects = std::count_if(scene.nodes.begin(), scene.nodes.end(),
                                       [](const CPreparedNode& n) { return n.mesh >= 0; });
    CSceneSummary summary;
    summary.triangles = lng::Text("Triangles: %s", lng::Number(scene.triangleCount));
    summary.objects = lng::Text("Objects: %s", lng::Number(static_cast<std::uint64_t>(objects)));
    for (const CSceneNote& note : scene.notes) summary.lines.push_back(TextOf(note));
    if (!summary.lines.empty()) summary.notes = lng::Text("Notes: %s", lng::Number(summary.lines.size()));
    return summary;
}

CProgressText ProgressOf(const CLoadProgress& progress) {
    const unsigned count = progress.meshCount, done = progress.meshesDone;
    if (progress.phase == CLoadProgress::EPhase::Reading || count == 0)
        return {lng::Text("Reading the file..."), -1};
    return {lng::Text("Preparing the picture..."), static_cast<int>(std::min(100u, 100u * done / count))};
}
