// SPDX-License-Identifier: MIT
#include "programs/orbivue_convert/output_kinds.h"

#include <array>
#include <utility>

#include "base/text/ascii_text.h"

namespace {

constexpr std::array<std::pair<std::string_view, EOutputKind>, 9> kEndings{{{"glb", EOutputKind::Glb},
                                                                            {"html", EOutputKind::Html},
                                                                            {"htm", EOutputKind::Html},
                                                                            {"pov", EOutputKind::Pov},
                                                                            {"3ds", EOutputKind::Model3ds},
                                                                            {"zip", EOutputKind::Zip},
                                                                            {"png", EOutputKind::Png},
                                                                            {"jpg", EOutputKind::Jpeg},
                                                                            {"jpeg", EOutputKind::Jpeg}}};

}  // namespace

std::optional<EOutputKind> KindOfEnding(std::string_view ending) {
    if (ending.starts_with('.')) ending.remove_prefix(1);
    for (const auto& [known, kind] : kEndings)
        if (ascii_text::EqualNoCase(known, ending)) return kind;
    return std::nullopt;
}

std::string KnownEndings() {
    std::string text;
    for (const auto& [known, kind] : kEndings) text += (text.empty() ? "" : ", ") + std::string(known);
    return text;
}
