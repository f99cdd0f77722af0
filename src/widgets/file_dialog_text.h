// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

/** How file dialogs read wildcards and complete names; needs no window. */
namespace file_dialog_text {

/** One line of a dialog's list of file kinds. */
struct CFilter {
    std::wstring label;
    std::vector<std::wstring> patterns;  ///< "*.3ds", "*"; never empty

    bool operator==(const CFilter&) const = default;
};

/** Splits a wildcard into kinds of files: "label|pattern;pattern|label|pattern...", with or without bars at
 * the end, or one pattern, which is then also the label. A label without patterns is its own pattern. Blanks
 * around labels and patterns are dropped. Empty for an empty wildcard. */
[[nodiscard]] std::vector<CFilter> ParseWildcard(std::wstring_view wildcard);
/** The same as one text in the toolkit's form: "label|pattern;pattern|...", no bars at the end. */
[[nodiscard]] std::wstring JoinWildcard(const std::vector<CFilter>& filters);
/** The extension that a pattern ends in: "jpg" of "*.jpg", ".jpg" or "jpg"; empty for "*" and "*.*". */
[[nodiscard]] std::wstring ExtensionOf(std::wstring_view pattern);

/** The extension for a name that came without one: defaultExtension (in any form that ExtensionOf takes)
 * where the chosen kind has it, else the first of the chosen kind, else defaultExtension. chosen: index of
 * the kind; one that is out of range counts as none chosen. */
[[nodiscard]] std::wstring ExtensionFor(const std::vector<CFilter>& filters, int chosen,
                                        std::wstring_view defaultExtension);
/** Adds the extension to a path whose name has none. A number after the last dot ("Room 2.5") is no
 * extension, and a dot at the end is dropped. */
[[nodiscard]] std::wstring AddExtension(std::wstring_view path, std::wstring_view extension);
/** Changes the name's extension to the first of the chosen kind, unless the kind has its
 * extension already. */
[[nodiscard]] std::wstring NameForFilter(std::wstring_view name, const CFilter& filter);

}  // namespace file_dialog_text
