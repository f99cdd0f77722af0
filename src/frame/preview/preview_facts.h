// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "frame/preview/CPreviewRequest.h"
#include "frame/preview/CPreviewResult.h"

/** Makes the request for a preview and reads the result of its drawing. Narrow strings are UTF-8. */
namespace preview_facts {

/** Size and background of preview pictures. */
struct CLook {
    int sidePx = 256;
    std::array<std::uint8_t, 3> background{};
};

/** The request for a selected path; nothing unless it is a regular file. For a scene script it draws the
 * first scene, if its model is there. */
[[nodiscard]] std::optional<CPreviewRequest> RequestFor(const std::string& path, const CLook& look);

/** What the drawing program left when it ended. */
struct COutcome {
    int exitCode = 0;
    std::string output;  ///< its statistics, JSON
    std::string errors;
    std::string picturePath;
};
/** The result of a drawing; a failed one gives a result with a problem. The outcome's texts may have
 * any content. */
[[nodiscard]] CPreviewResult ResultOf(const CPreviewRequest& request, const COutcome& outcome);

/** Why the drawing program drew no picture of a file, as people see it: the translated reason in its first line of errors,
 * without the program's and the file's names. Any text gives one line of limited length. */
[[nodiscard]] std::wstring ProblemText(std::string_view errors, std::string_view path);

}  // namespace preview_facts
