// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/math/CVec.h"
#include "model/edit/CEdit.h"

/** What a press on a part of the model does. The numbers are fixed. */
enum class EMaterialTool { None = 0, Color = 1, Shininess = 2, Transparency = 3, Replace = 4, Filter = 5 };

/** Red, green, blue. */
struct CToolColor {
    std::uint8_t r = 0, g = 0, b = 0;
    friend bool operator==(const CToolColor&, const CToolColor&) = default;
};

/** The node of another file that the replace tool puts in; UTF-8. */
struct CReplacement {
    std::string path, node;
    friend bool operator==(const CReplacement&, const CReplacement&) = default;
};

/** The values that the tools apply.
 *
 * The sliders have the positions 0 to 10, a tenth each: scripts keep shininess and transparency with one decimal, so
 * every value that can be set is read back as it was. For the same reason colours are whole bytes. */
struct CToolValues {
    static constexpr int kSliderMax = 10;

    CToolColor color{220, 127, 30};
    int shininess = 5;     ///< position of the slider: 0 dull .. kSliderMax a small bright highlight
    int transparency = 5;  ///< 0 opaque .. kSliderMax invisible
    CReplacement replacement;

    friend bool operator==(const CToolValues&, const CToolValues&) = default;
};

/** The value of a slider's position, 0..1; positions beyond the ends count as the ends. */
[[nodiscard]] float SliderValue(int position);
/** What stands beside the slider: "30 %". */
[[nodiscard]] std::wstring SliderText(int position);
/** 0..1. */
[[nodiscard]] CVec3 ColorValue(CToolColor color);

/** What a tool does to a node, to all of its materials; nothing for None and Filter, which change no scene. */
[[nodiscard]] std::optional<CEdit> ToolEdit(EMaterialTool tool, const std::string& node,
                                            const CToolValues& values);
/** The name of that step in the menu, translated: "colour of Box01". */
[[nodiscard]] std::wstring ToolStepName(EMaterialTool tool, const std::string& node);
/** What the status bar says of a node: "Box01: ", then the text. */
[[nodiscard]] std::wstring AboutNode(const std::string& node, std::wstring_view text);
/** What the status bar says of it, translated: "Box01: colour #DC7F1E" */
[[nodiscard]] std::wstring ToolMessage(EMaterialTool tool, const std::string& node,
                                       const CToolValues& values);
/** What the status bar says when a tool is chosen, translated: what to do with it. */
[[nodiscard]] std::wstring ToolHint(EMaterialTool tool);
