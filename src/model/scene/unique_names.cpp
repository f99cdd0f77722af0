// SPDX-License-Identifier: MIT
#include "model/scene/unique_names.h"

#include <lib3ds/camera.h>
#include <lib3ds/file.h>
#include <lib3ds/light.h>
#include <lib3ds/material.h>
#include <lib3ds/mesh.h>
#include <lib3ds/node.h>

#include <algorithm>
#include <unordered_map>
#include <vector>

#include "model/scene/lib3ds_name.h"

std::string UniqueName(std::string_view name, std::set<std::string>& taken) {
    constexpr std::size_t kFewTries = 9, kManyTries = 100;
    std::string candidate(name);
    std::size_t number = 2;
    for (std::size_t tries = 1; !taken.insert(candidate).second; ++tries) {
        // A file of 60,000 equal names must not try every number from 2 on for each; the size is a good first
        // guess. Nor may a file that has taken all numbers near that guess make us try them one by one.
        if (tries == kFewTries) number = std::max(number, taken.size());
        if (tries > kManyTries) number *= 3;
        candidate = lib3ds_name::WithSuffix(name, "#" + std::to_string(number++));
    }
    return candidate;
}

namespace {
using CNewNames = std::unordered_map<std::string, std::vector<std::string>>;

/** Renames all but the first of each name; the result lists, for names that were not unique, all
 * that stand for it. */
template <class T>
CNewNames RenameRepeated(T* first, CNoteList& notes) {
    std::set<std::string> taken;
    CNewNames names;
    for (T* item = first; item; item = item->next) {
        const std::string old = item->name;
        const std::string name = UniqueName(old, taken);
        names[old].push_back(name);
        if (name == old) continue;
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

    std::unordered_map<std::string, std::size_t> used;
    for (Lib3dsNode* node = file.nodes; node; node = node->next) {
        if (node->type != LIB3DS_OBJECT_NODE || node->data.object.instance[0]) continue;
        const auto found = meshNames.find(node->name);
        if (found == meshNames.end() || found->second.size() < 2) continue;
        const std::size_t turn = used[found->first]++;
        if (turn < found->second.size()) CopyName(node->name, found->second[turn]);
    }
}
