// SPDX-License-Identifier: MIT
#include "model/scene/CMaterialIndex.h"

#include <lib3ds/material.h>

#include "model/scene/CScene.h"

CMaterialIndex::CMaterialIndex(const Lib3dsMaterial* first) {
    std::size_t index = 0;
    for (const Lib3dsMaterial* material = first; material; material = material->next, ++index) {
        m_indexOfName.emplace(material->name, static_cast<std::uint16_t>(index));
    }
}

std::uint16_t CMaterialIndex::Find(std::string_view name) const {
    const auto found = m_indexOfName.find(name);
    return found == m_indexOfName.end() ? CMeshView::kNoMaterial : found->second;
}
