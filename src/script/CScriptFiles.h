// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/name_hash.h"
#include "model/textures/CModelSurroundings.h"
#include "model/textures/CTextureLocator.h"
#include "model/textures/CTextureNames.h"

/** Finds the files that a scene script names, as people write them: with '/' or '\', in another letter case or code page,
 * with blanks or quotes round them, with the drive of another computer. Paths are UTF-8. Only regular files are found, and
 * nothing is opened but folders. Folders are listed once, and the effort is bounded. One thread at a time. */
class CScriptFiles {
  public:
    /** The file that was opened; others that name files are its templates. */
    void SetScript(std::string path) { m_script = std::move(path); }

    /** The path of a file anywhere on the disk, without "." and "..". folder: of the file that names it. */
    [[nodiscard]] std::optional<std::string> Find(const std::string& folder, std::string_view written);

    /** Where a file that Find does not find should be. */
    [[nodiscard]] std::string Unfound(const std::string& folder, std::string_view written);

    enum class EPicture { Found, Outside, Missing };
    struct CPicture {
        EPicture answer = EPicture::Missing;
        std::string path;          ///< without links; set only for Found
        bool isElsewhere = false;  ///< neither in the naming file's nor in the model's folder, nor below them
    };
    /** A picture in the surroundings (see CModelSurroundings) of the file that names it, or of the model: a script comes
     * from anywhere, and what it puts on a model is shown, packed and exported with it. modelPath may be empty. A private
     * folder that the model or a template lies in counts only if the script lies there, too. */
    [[nodiscard]] CPicture FindPicture(const std::string& namingFile, const std::string& modelPath,
                                       std::string_view written);
    /** False once the files of replaced objects that were asked for, this one too, are more bytes than are read for a
     * script; the first one may have any size. */
    [[nodiscard]] bool MayRead(const std::string& path);
    /** True for a path in the surroundings of one of the two. */
    [[nodiscard]] bool IsNear(const std::string& namingFile, const std::string& modelPath,
                              const std::string& path);

  private:
    /** What lies round a script or model. */
    struct CPlace {
        explicit CPlace(const std::string& file);
        CModelSurroundings surroundings;
        CTextureLocator locator;
    };
    /** Null where there are too many. */
    [[nodiscard]] const CPlace* PlaceOf(const std::string& file);
    /** The same for a file that another chose: null also in a private folder in which that is not. */
    [[nodiscard]] const CPlace* PlaceChosen(const std::string& file, const std::string& chooser);
    /** Those of the naming file and of a model that is there. */
    [[nodiscard]] std::array<const CPlace*, 2> PlacesOf(const std::string& namingFile,
                                                        const std::string& modelPath);
    /** False for a path that is too long, and once all paths together are. */
    [[nodiscard]] bool MayFollow(std::string_view path);
    [[nodiscard]] std::optional<std::string> Walk(std::string folder, std::string_view path);
    [[nodiscard]] std::optional<std::string> FindEntry(const std::string& folder, const std::string& name,
                                                       bool isLast);
    [[nodiscard]] const CTextureNames& NamesIn(const std::string& folder);

    std::string m_script;
    CNameMap<std::unique_ptr<CPlace>> m_places;  ///< by folder
    CNameMap<CTextureNames> m_listed;
    std::size_t m_listedEntries = 0;
    std::size_t m_lookUps = 0, m_steps = 0;
    std::uintmax_t m_bytes = 0;
};
