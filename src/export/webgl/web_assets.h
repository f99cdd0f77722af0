// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/** The files of web/ that pages are made of; the build puts them into the program. */
namespace web_assets {

[[nodiscard]] std::string_view PageForm();  ///< page/index.html, for page_text::Fill
[[nodiscard]] std::string_view Style();
[[nodiscard]] std::string_view Viewer();  ///< a classic script
[[nodiscard]] std::string_view MinifiedViewer();

}  // namespace web_assets
