// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/name_hash.h"
#include "model/textures/CModelSurroundings.h"
#include "model/textures/CTextureNames.h"

/** The folders in a model's surroundings in which its pictures may lie, nearest first, listed only when the search gets
 * there and remembered. The order: the model's folder; its sub-folders with a usual name (textures, maps ...); its other
 * sub-folders, level by level; then for each folder upwards its sub-folders with a usual name. CModelSurroundings tells
 * which of them may be entered. Hidden folders are passed over, and all is bounded (see the constants in the source), so
 * a model that lies in a huge folder costs some milliseconds, and a missing name no more than one that is found. Any
 * thread may call it. */
class CTextureFolders {
  public:
    /** levelsUp: looks as from a folder so far above the model's, if that is one of its surroundings, else
     * nowhere; for FindBesideModel only. */
    explicit CTextureFolders(const std::filesystem::path& modelFolder, std::size_t levelsUp = 0);

    /** The path of the picture, without links. */
    [[nodiscard]] std::optional<std::filesystem::path> Find(const CTextureQuery& query);
    /** Looks only in the model's folder and along the reference's own path below it, and only for
     * that name. */
    [[nodiscard]] std::optional<std::filesystem::path> FindBesideModel(const CTextureQuery& query);
    /** True for a path that was found in the model's folder or below it. */
    [[nodiscard]] bool IsInModelFolder(const std::filesystem::path& found) const {
        return m_surroundings.IsInFolder(found);
    }

  private:
    using CFound = std::optional<std::filesystem::path>;

    struct CFolder {
        std::filesystem::path path;
        std::vector<std::string> files;        ///< sorted
        std::unique_ptr<CTextureNames> names;  ///< of files, once a reference's own path leads here
        CTextureNames folders;                 ///< not hidden
        bool complete = true;                  ///< false: more entries than we list
        bool isPlace = false;
    };

    CFolder& List(const std::filesystem::path& path);
    /** The folder at a path, if it may be entered; remembered. */
    [[nodiscard]] CFolder* Enter(const std::filesystem::path& path);
    void ReadEntries(CFolder& folder);
    void AddMorePlaces();
    void AddPlace(const std::filesystem::path& path);
    void AddUsualSubFolders(CFolder& parent);
    void AddOtherSubFolders();
    [[nodiscard]] CFound FindMatch(const CTextureQuery& query, ETextureMatch match);
    [[nodiscard]] CFound FindInPlaces(const CTextureQuery& query, ETextureMatch match, std::size_t first,
                                      std::size_t last);
    [[nodiscard]] CFound FindOnWay(const CTextureQuery& query, ETextureMatch match);
    [[nodiscard]] CFound FindBelow(CFolder& folder, const CTextureQuery& query, std::size_t step,
                                   ETextureMatch match);
    [[nodiscard]] CFound FindIn(CFolder& folder, const CTextureQuery& query, ETextureMatch match);
    [[nodiscard]] CFound Guess(const CFolder& folder, const CTextureQuery& query, ETextureMatch match);
    [[nodiscard]] const CFound& FileNumber(std::size_t number);

    CModelSurroundings m_surroundings;
    std::filesystem::path m_folder;  ///< looked from; empty: nothing is found
    enum class EStage { Model, Usual, Others, Upwards, Done } m_stage = EStage::Model;
    std::size_t m_levelsUp = 0;
    std::size_t m_listedEntries = 0, m_guesses = 0, m_stepsOnWays = 0;
    CNameMap<std::unique_ptr<CFolder>> m_listed;
    CNameMap<CFolder*> m_entered;
    std::vector<CFolder*> m_places;
    CTextureNames m_names;  ///< the files of all places
    std::unordered_map<std::size_t, CFound> m_checked;
    std::mutex m_mutex;
};
