// SPDX-License-Identifier: MIT
#include "frame/scene_summary.h"

#include <algorithm>

#include "base/jobs/CJobProgress.h"
#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "model/prepare/CPreparedScene.h"

namespace {

std::wstring TextOf(const CSceneNote& note) {
    std::wstring text = lng::Text(note.what);
    if (!note.subject.empty())
        text =
            lng::Labelled(text, lng::Isolated(file_util_ex::ShownName(lng::ConvertFromUTF8(note.subject))));
    if (!note.reason.empty()) text += L" (" + lng::Text(CError{{}, note.reason, {}}) + L")";
    if (note.times > 1) text += L" " + lng::TextN("(%s time)", "(%s times)", note.times);
    return text;
}

}  // namespace

CSceneSummary SummaryOf(const CPreparedScene& scene, std::span<const CSceneNote> more) {
    const auto objects = std::count_if(scene.nodes.begin(), scene.nodes.end(),
                                       [](const CPreparedNode& n) { return n.mesh >= 0; });
    CSceneSummary summary;
    summary.triangles = lng::Text("Triangles: %s", lng::Number(scene.triangleCount));
    summary.objects = lng::Text("Objects: %s", lng::Number(static_cast<std::uint64_t>(objects)));
    for (const CSceneNote& note : more) summary.lines.push_back(TextOf(note));
    for (const CSceneNote& note : scene.notes) summary.lines.push_back(TextOf(note));
    if (!summary.lines.empty()) summary.notes = lng::Text("Notes: %s", lng::Number(summary.lines.size()));
    return summary;
}

std::wstring PlaceText(unsigned place, unsigned count) {
    if (place == 0) return {};
    std::wstring text = lng::Text("%s of %s", lng::Number(place));
    const std::size_t second = text.find(L"%s");
    return second == std::wstring::npos ? text : text.replace(second, 2, lng::Number(count));
}

CProgressText ProgressOf(const CJobProgress& progress) {
    const std::string phase = progress.Phase();
    const double share = progress.Share();
    return {phase.empty() ? std::wstring() : lng::Text(phase.c_str()),
            share > 0 ? static_cast<int>(100 * share) : -1};
}
