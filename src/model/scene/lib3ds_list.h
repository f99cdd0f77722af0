// SPDX-License-Identifier: MIT
#pragma once

#include <cstring>
#include <string>
#include <vector>

/** lib3ds keeps materials, meshes, cameras and lights in lists linked by `next`. */
template <class T>
[[nodiscard]] std::vector<T*> ListOf(T* first) {
    std::vector<T*> result;
    for (T* item = first; item; item = item->next) result.push_back(item);
    return result;
}

/** Appends at the end, in constant time: link points at the place of the next one and is moved on. */
template <class T>
void AppendToList(T**& link, T* item) {
    *link = item;
    link = &item->next;
}

/** Copies at most Size - 1 bytes of a name and ends it. */
template <std::size_t Size>
void CopyName(char (&target)[Size], const std::string& name) {
    const std::size_t length = name.size() < Size ? name.size() : Size - 1;
    std::memcpy(target, name.data(), length);
    target[length] = 0;
}
