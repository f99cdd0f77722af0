// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "base/name_hash.h"

/** Pieces of a scene's text that are needed in several places and written once. */
class CPovShared {
  public:
    /** names: what the names of the pieces begin with. */
    explicit CPovShared(std::string_view names) : m_letters(names) {}

    /** Declares a piece, such as pigment{body}, and returns its name; the same name for the same piece. */
    [[nodiscard]] std::string Declare(std::string_view kind, const std::string& body);
    /** The same for a piece that is no object of its own: a macro, and the text that calls it. */
    [[nodiscard]] std::string Macro(const std::string& body);
    /** All declarations, each before the first that uses it. */
    [[nodiscard]] const std::string& Text() const { return m_text; }

  private:
    [[nodiscard]] std::string NextName() const { return m_letters + std::to_string(m_nameOf.size()); }

    std::string m_letters, m_text;
    CNameMap<std::string> m_nameOf;
};
