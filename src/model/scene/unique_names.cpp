// SPDX-License-Identifier: MIT
#include "model/scene/unique_names.h"

#include <lib3ds/camera.h>
#include <lib3ds/file.h>
#include <lib3ds/light.h>
#include <lib3ds/material.h>
#include <lib3ds/mesh.h>
#include <lib3ds/node.h>

#include <vector>

#include "base/text/utf8_text.h"
#include "model/scene/lib3ds_name.h"

std::string CUniqueNames::Take(std::string_view name) {
    if (const auto [place, isNew] = m_taken.emplace(name); isNew) return *place;
    // Names that only differ where a number may cut them share one row of numbers, so that no number is tried
    // twice for any of them.
    constexpr std::size_t kLongestNumber = 8;  // "#" and seven digits
    const std::string_view beginning = utf8_text::Cut(name, lib3ds_name::kMaxBytes - kLongestNumber);
    std::uint32_t& number = m_nextNumber.try_emplace(std::string(beginning), 2).first->second;
    while (true) {
        const auto [place, isNew] =
            m_taken.insert(lib3ds_name::WithSuffix(name, "#" + std::to_string(number++)));
        if (isNew) return *place;
    }
}

void CUniqueNames::Release(const std::string& name) {
    m_taken.erase(name);
    m_nextNumber.clear();  // so that the same name comes next again
}

namespace {
/** For names that were not unique all that stand for them, in order. */
using CNewNames = CNameMap<std::vector<std::string>>;

/** Renames all but the first of each name. */
template <class T>
CNewNames RenameRepeated(T* first, CNoteList& notes) {
    CUniqueNames taken;
    CNewNames names;
    for (T* item = first; item; item = item->next) {
        const std::string name = taken.Take(item->name);
        if (name == item->name) continue;
        std::vector<std::string>& all = names[item->name];
        if (all.empty()) all.emplace_back(item->name);
        all.push_back(name);
        CopyName(item->name, name);
        notes.Repaired("A name was there twice; the second got another", CNoteList::Printable(name));
    }
    return names;
}
}  // namespace

void MakeNamesUnique(Lib3dsFile& file, CNoteList& notes) {
    (void)RenameRepeated(file.materials, notes);  // faces name the first; nothing tells them apart
    (void)RenameRepeated(file.cameras, notes);
    (void)RenameRepeated(file.lights, notes);
    const CNewNames meshNames = RenameRepeated(file.meshes, notes);

    if (meshNames.empty()) return;
    CNameMap<std::size_t> used;
    for (Lib3dsNode* node = file.nodes; node; node = node->next) {
        if (node->type != LIB3DS_OBJECT_NODE || node->data.object.instance[0]) continue;
        const auto found = meshNames.find(std::string_view(node->name));
        if (found == meshNames.end()) continue;
        const std::size_t turn = used[found->first]++;
        if (turn < found->second.size()) CopyName(node->name, found->second[turn]);
    }
}
