// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

/** What a model can be converted to, by the ending of a file name. */
enum class EOutputKind { Glb, Html, Pov, Model3ds, Zip, Png, Jpeg };

/** The kind that an ending means, with or without its dot, in any letter case; nothing for any other. */
[[nodiscard]] std::optional<EOutputKind> KindOfEnding(std::string_view ending);
/** "glb, html, pov, ..." for messages. */
[[nodiscard]] std::string KnownEndings();
