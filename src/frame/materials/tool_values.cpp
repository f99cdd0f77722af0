// SPDX-License-Identifier: MIT
#include "frame/materials/tool_values.h"

#include <algorithm>
#include <array>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "files/file_util_ex.h"

namespace {

/** "#DC7F1E" */
std::wstring HexOf(CToolColor color) {
    constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
    std::wstring text = L"#";
    for (const unsigned byte : {color.r, color.g, color.b}) {
        text += kDigits[byte / 16];
        text += kDigits[byte % 16];
    }
    return text;
}

std::wstring Name(const std::string& node) {
    return file_util_ex::ShownName(lng::ConvertFromUTF8(node));
}

/** The texts of a tool; in those of a step "%s" is the node. */
struct CTexts {
    const char* hint = nullptr;
    const char* step = nullptr;
};

CTexts TextsOf(EMaterialTool tool) {
    switch (tool) {
        case EMaterialTool::Color:
            return {lng::Mark("Colour: click a part of the model. Esc or a right click ends it."),
                    lng::Mark("colour of %s")};
        case EMaterialTool::Shininess:
            return {lng::Mark("Shininess: click a part of the model. Esc or a right click ends it."),
                    lng::Mark("shininess of %s")};
        case EMaterialTool::Transparency:
            return {lng::Mark("Transparency: click a part of the model. Esc or a right click ends it."),
                    lng::Mark("transparency of %s")};
        case EMaterialTool::Replace:
            return {lng::Mark("Replace: click the parts to be replaced. Esc or a right click ends it."),
                    lng::Mark("replaced %s")};
        case EMaterialTool::Filter:
            return {lng::Mark(
                "Filter: click a part to see what has the same material. Esc or a right click ends it.")};
        case EMaterialTool::None:
            break;
    }
    return {};
}

}  // namespace

float SliderValue(int position) {
    return static_cast<float>(std::clamp(position, 0, CToolValues::kSliderMax)) /
           static_cast<float>(CToolValues::kSliderMax);
}

std::wstring SliderText(int position) {
    constexpr int kStepPercent = 100 / CToolValues::kSliderMax;
    const int percent = std::clamp(position, 0, CToolValues::kSliderMax) * kStepPercent;
    return lng::Isolated(std::to_wstring(percent) + lng::TextIn("behind a number", "%"));
}

CVec3 ColorValue(CToolColor color) {
    const auto channel = [](std::uint8_t byte) { return static_cast<float>(byte / 255.0); };
    return {channel(color.r), channel(color.g), channel(color.b)};
}

std::optional<CEdit> ToolEdit(EMaterialTool tool, const std::string& node, const CToolValues& values) {
    const CMaterialTarget whole{node, {}};
    switch (tool) {
        case EMaterialTool::Color:
            return CColorEdit{whole, ColorValue(values.color)};
        case EMaterialTool::Shininess:
            return CShininessEdit{whole, SliderValue(values.shininess)};
        case EMaterialTool::Transparency:
            return CTransparencyEdit{whole, SliderValue(values.transparency)};
        case EMaterialTool::Replace:
            return CReplaceEdit{node, values.replacement.path, values.replacement.node};
        case EMaterialTool::None:
        case EMaterialTool::Filter:
            break;
    }
    return std::nullopt;
}

std::wstring ToolStepName(EMaterialTool tool, const std::string& node) {
    const char* text = TextsOf(tool).step;
    return text ? lng::Text(text, Name(node)) : std::wstring();
}

std::wstring AboutNode(const std::string& node, std::wstring_view text) {
    return lng::Labelled(lng::Isolated(Name(node)), text);
}

std::wstring ToolMessage(EMaterialTool tool, const std::string& node, const CToolValues& values) {
    switch (tool) {
        case EMaterialTool::Color:
            return AboutNode(node, lng::Text("colour %s", HexOf(values.color)));
        case EMaterialTool::Shininess:
            return AboutNode(node, lng::Text("shininess %s", SliderText(values.shininess)));
        case EMaterialTool::Transparency:
            return AboutNode(node, lng::Text("transparency %s", SliderText(values.transparency)));
        case EMaterialTool::Replace:
            return AboutNode(node, lng::Text("replaced by %s", Name(values.replacement.node)));
        case EMaterialTool::None:
        case EMaterialTool::Filter:
            break;
    }
    return {};
}

std::wstring ToolHint(EMaterialTool tool) {
    const char* text = TextsOf(tool).hint;
    return text ? lng::Text(text) : std::wstring();
}
