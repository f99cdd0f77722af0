// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

/** lib3ds keeps materials, meshes, cameras and lights in lists linked by `next`. */
template <class T>
[[nodiscard]] std::vector<T*> ListOf(T* first) {
    std::vector<T*> result;
    for (T* item = first; item; item = item->next) result.push_back(item);
    return result;
}

/** Appends at the end, in constant time: link points at the pointer that takes the next item, and is
 * moved on. */
template <class T>
void AppendToList(T**& link, T* item) {
    *link = item;
    link = &item->next;
}
