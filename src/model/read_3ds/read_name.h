// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "model/read_3ds/CChunkWalker.h"
#include "model/scene/CNoteList.h"
#include "model/scene/lib3ds_name.h"

/** A name of the file as it fits lib3ds' structures; a note tells where it had to be cut. */
[[nodiscard]] inline std::string ReadName(CByteCursor& in, CNoteList& notes) {
    std::string name = in.ReadString();
    const std::size_t length = lib3ds_name::Cut(name).size();
    if (length == name.size()) return name;
    notes.Repaired("A long name was cut", CNoteList::Printable(name));
    name.resize(length);
    return name;
}
