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

    /** Reads the files that mtllib lines name; a line names one file, perhaps with blanks in its name, or
     * several. Reads only regular files in the model's folder, below it or, where the line leads there, below
     * one of the few folders above it. Missing files are noted. Where none is found, the MTL file with the
     * model's own name is taken, as a renamed model often still refers to the old name. */
    [[nodiscard]] static CMtlLibrary OfLines(const std::vector<std::string>& lines,
                                             std::string_view modelPath, CNoteList& notes);

    /** Adds the text of an MTL file. Of several materials with one name the first counts; materials after the
     * first 100,000 are ignored. */
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
