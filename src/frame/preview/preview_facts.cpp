// SPDX-License-Identifier: MIT
#include "frame/preview/preview_facts.h"

#include <sys/stat.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/text/ascii_text.h"
#include "base/text/character_kind.h"
#include "base/text/lng.h"
#include "base/text/number_text.h"
#include "files/file_util_ex.h"
#include "script/CSceneScript.h"

namespace preview_facts {
namespace {

constexpr std::uint64_t kMaxPictureBytes = 64 << 20;
constexpr std::size_t kMaxProblemLetters = 300;

struct CFileFacts {
    std::uint64_t bytes = 0;
    std::int64_t changedNs = 0;
};

std::optional<CFileFacts> FactsOf(const std::string& path) {
    struct stat facts = {};
    if (::stat(path.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode)) return std::nullopt;
    return CFileFacts{static_cast<std::uint64_t>(facts.st_size),
                      std::int64_t{facts.st_mtim.tv_sec} * 1'000'000'000 + facts.st_mtim.tv_nsec};
}

bool IsScript(const std::string& path) {
    return ascii_text::EqualNoCase(file_util_ex::GetFileExt(path), "orv");
}

std::int64_t Count(const nlohmann::json& stats, const char* key) {
    const auto found = stats.find(key);
    if (found == stats.end() || !found->is_number_unsigned()) return -1;
    return static_cast<std::int64_t>(std::min(found->get<std::uint64_t>(), std::uint64_t{1} << 62));
}

}  // namespace

std::optional<CPreviewRequest> RequestFor(const std::string& path, const CLook& look) {
    const std::optional<CFileFacts> facts = FactsOf(path);
    if (!facts) return std::nullopt;
    CPreviewRequest request{path,        facts->bytes,   facts->changedNs, path, facts->changedNs,
                            look.sidePx, look.background};
    if (IsScript(path)) {
        // The program draws the script's first scene; a change of its model makes another picture.
        const CResult<std::string> named = FirstModelOf(path);
        const std::optional<CFileFacts> model = named ? FactsOf(named.Value()) : std::nullopt;
        if (!model) request.modelPath.clear();
        request.modelChangedNs = model ? model->changedNs : 0;
    }
    return request;
}

CPreviewResult ResultOf(const CPreviewRequest& request, const COutcome& outcome) {
    CPreviewResult result;
    if (outcome.exitCode == 0) {
        auto picture = file_util_ex::ReadWholeFile(outcome.picturePath, kMaxPictureBytes);
        if (picture) result.png = std::move(picture.Value());
        const nlohmann::json stats = nlohmann::json::parse(outcome.output, nullptr, false);
        if (stats.is_object()) {
            result.triangles = Count(stats, "triangles");
            result.objects = Count(stats, "nodes");
        }
    } else {
        result.problem = ProblemText(outcome.errors, request.modelPath);
    }
    if (result.triangles == 0) {
        result.png.clear();
        result.problem = lng::Text("There is nothing to see in this file.");
    }
    if (result.png.empty() && result.problem.empty())
        result.problem = lng::Text("No preview can be drawn of this file.");
    return result;
}

// The program's line is "program: path: reason"; the user needs only the reason.
std::wstring ProblemText(std::string_view errors, std::string_view path) {
    std::string_view line = errors.substr(0, errors.find('\n'));
    for (const std::string_view known : {std::string_view("orbivue-render"), path}) {
        if (line.starts_with(known) && line.substr(known.size()).starts_with(": "))
            line.remove_prefix(known.size() + 2);
    }
    const std::size_t colon = line.rfind(": ");
    const std::string_view where = line.substr(0, colon == std::string_view::npos ? 0 : colon);
    const std::string_view message = where.empty() ? line : line.substr(colon + 2);
    std::wstring reason = lng::Text(CError{{}, std::string(message), std::string(where)});
    std::erase_if(reason, [](wchar_t c) {
        using enum character_kind::EKind;  // not of a direction: the reason may have isolates of ours
        return character_kind::Of(c) == Control || character_kind::Of(c) == LineEnd;
    });
    if (reason.size() > kMaxProblemLetters) reason = reason.substr(0, kMaxProblemLetters) + L"\u2026";
    return reason;
}

}  // namespace preview_facts
