// SPDX-License-Identifier: MIT
#include "frame/scene_summary.h"

#include <algorithm>

#include "model/CPreparedScene.h"
#include "model/load_scene.h"
#include "platform/lng.h"

std::wstring GroupedNumber(std::uint64_t number) {
    // The catalogue's entry for this text is the language's separator.
    static constexpr const char* kSeparator = lng::Mark(",");
    const std::wstring separator = lng::Text(kSeparator);
    std::wstring text = std::to_wstring(number);
    for (std::size_t at = text.size(); at > 3;) {
        at -= 3;
        text.insert(at, separator);
    }
    return text;
}

CSceneSummary SummaryOf(const CPreparedScene& scene) {
    const auto objects =
        std::count_if(scene.nodes.begin(), scene.nodes.end(), [](const CPreparedNode& n) { return n.mesh >= 0; });
    CSceneSummary summary;
    summary.triangles = lng::Text("Triangles: %s", GroupedNumber(scene.triangleCount));
    summary.objects = lng::Text("Objects: %s", GroupedNumber(static_cast<std::uint64_t>(objects)));
    for (const CSceneNote& note : scene.notes) summary.lines.push_back(lng::ConvertFromUTF8(note.text));
    if (!summary.lines.empty()) summary.notes = lng::Text("Notes: %s", GroupedNumber(summary.lines.size()));
    return summary;
}

CProgressText ProgressOf(const CLoadProgress& progress) {
    const unsigned count = progress.meshCount, done = progress.meshesDone;
    if (progress.phase == CLoadProgress::EPhase::Reading || count == 0) return {lng::Text("Reading the file..."), -1};
    return {lng::Text("Preparing the picture..."), static_cast<int>(std::min(100u, 100u * done / count))};
}
