// SPDX-License-Identifier: MIT
#pragma once

#include <wx/treebase.h>

#include <cstdint>
#include <string>
#include <utility>

/** What an item of the tree stands for: a model, or a group of them. */
class C3dsTreeItemData final : public wxTreeItemData {
  public:
    explicit C3dsTreeItemData(std::string group) : name(std::move(group)) {}
    C3dsTreeItemData(std::uint32_t model, std::string modelName)
        : id(model), isModel(true), name(std::move(modelName)) {}

    std::uint32_t id = 0;  ///< of a model
    bool isModel = false;
    std::string name;     ///< as the library has it, UTF-8
    bool loaded = false;  ///< of a group: its models were asked for
};
