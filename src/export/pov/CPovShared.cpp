// SPDX-License-Identifier: MIT
#include "export/pov/CPovShared.h"

std::string CPovShared::Declare(std::string_view kind, const std::string& body) {
    const std::string piece = std::string(kind) + '{' + body + '}';
    const auto [place, isNew] = m_nameOf.try_emplace(piece, NextName());
    if (isNew) m_text += "#declare " + place->second + '=' + piece + '\n';
    return place->second;
}

std::string CPovShared::Macro(const std::string& body) {
    const auto [place, isNew] = m_nameOf.try_emplace(body, NextName());
    if (isNew) m_text += "#macro " + place->second + "() " + body + " #end\n";
    return place->second + "()";
}
