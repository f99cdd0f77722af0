// SPDX-License-Identifier: MIT
#include "export/gltf/parts/CGltfNames.h"

#include "base/text/utf8_text.h"

std::string CGltfNames::WellFormed(std::string_view name) {
    return file_util_ex::ConvertToUTF8(file_util_ex::ConvertFromUTF8W(name));
}

std::string CGltfNames::Take(std::string_view name) {
    // Making a name unique may cut it within a character.
    return name.empty() ? std::string() : WellFormed(m_names.Take(WellFormed(name)));
}
