// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "model/scene/unique_names.h"

/** The names of one kind of thing in a glTF file: well-formed UTF-8, each given once. */
class CGltfNames {
  public:
    /** The name as it is written; empty for an empty one. */
    [[nodiscard]] std::string Take(std::string_view name);
    /** As people see it: each byte of no well-formed sequence becomes U+FFFD. */
    [[nodiscard]] static std::string WellFormed(std::string_view name);

  private:
    CUniqueNames m_names;
};
