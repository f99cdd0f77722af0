// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/scene/CNoteList.h"

/** The materials of the MTL files that an OBJ file names: where the text of each stands. */
class CMtlLibrary {
  public:
    CMtlLibrary() = default;
    CMtlLibrary(CMtlLibrary&&) = default;  // a copy would point into the texts of the original

    /** Of the files that mtllib lines name, each line one with blanks in its name or several: regular files in
     * the model's folder or below, or below one of the few folders above it where the line says so; nothing
     * else. What is missing is noted; where nothing is found a file of the model's name is taken, as renamed
     * models often still name the old one. */
    [[nodiscard]] static CMtlLibrary OfLines(const std::vector<std::string>& lines,
                                             std::string_view modelPath, CNoteList& notes);

    /** Of several materials with one name the first counts, and of over 100,000 the first. */
    void Add(std::string text);

    /** What the file says of a material; none where nothing has that name. */
    [[nodiscard]] std::optional<std::string_view> TextOf(const std::string& name) const;

    /** The paths of the files that it was read from. */
    [[nodiscard]] const std::vector<std::string>& FilesRead() const { return m_filesRead; }

  private:
    std::deque<std::string> m_texts;
    std::map<std::string_view, std::string_view> m_materials;  ///< both lie in m_texts
    std::vector<std::string> m_filesRead;
};
