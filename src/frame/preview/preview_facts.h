// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "frame/preview/CPreviewRequest.h"
#include "frame/preview/CPreviewResult.h"

/** What stands before and after the drawing of a preview. Narrow text is UTF-8. */
namespace preview_facts {

/** How pictures are wanted. */
struct CLook {
    int sidePx = 256;
    std::array<std::uint8_t, 3> background{};
};

/** The request for a selected path; none for what is no regular file (folders, pipes, devices, nothing). A
 * scene script's request is for the model that its section "Model" names, relative to the script's folder. */
[[nodiscard]] std::optional<CPreviewRequest> RequestFor(const std::string& path, const CLook& look);

/** What the drawing program left. */
struct COutcome {
    int exitCode = 0;
    std::string output;  ///< its statistics, JSON
    std::string errors;
    std::string picturePath;
};
/** Never fails: a drawing that did not end well is a result with a problem. Anything may
 * stand in the texts. */
[[nodiscard]] CPreviewResult ResultOf(const CPreviewRequest& request, const COutcome& outcome);

/** "812 bytes", "12.3 kB", "4.0 MB": steps of 1,000. */
[[nodiscard]] std::wstring SizeText(std::uint64_t bytes);

}  // namespace preview_facts
