// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "model/textures/CTextureNames.h"

/** The folders round a model in which its pictures may lie, nearest first, listed only when the search gets
 * there and remembered. The order: the model's folder; its sub-folders with a usual name (textures, maps
 * ...); its other sub-folders, level by level; then for each folder upwards its sub-folders with a usual
 * name, and the parent itself. Hidden folders and other file systems are passed over, and all is bounded
 * (see the constants in the source), so a model that lies in a huge folder costs some milliseconds. Any
 * thread may call it. */
class CTextureFolders {
  public:
    /** modelFolder is made absolute. */
    explicit CTextureFolders(const std::filesystem::path& modelFolder);

    /** The path of the picture. */
    [[nodiscard]] std::optional<std::filesystem::path> Find(const CTextureQuery& query);
    /** Looks only in the model's folder and along the reference's own path below it, and only for
     * that name. */
    [[nodiscard]] std::optional<std::filesystem::path> FindBesideModel(const CTextureQuery& query);

  private:
    struct CFolder {
        std::filesystem::path path;
        CTextureNames files;
        CTextureNames folders;  ///< not hidden
        bool complete = true;   ///< false: more entries than we list
    };

    CFolder& List(const std::filesystem::path& path);
    /** The place of that number, or null after the last. */
    CFolder* Place(std::size_t number);
    void AddMorePlaces();
    void AddPlace(const std::filesystem::path& path);
    void AddUsualSubFolders(CFolder& parent);
    void AddOtherSubFolders();
    [[nodiscard]] bool MayEnter(const std::filesystem::path& folder) const;
    [[nodiscard]] std::optional<std::filesystem::path> FindOnWay(const CTextureQuery& query,
                                                                 ETextureMatch match);
    [[nodiscard]] std::optional<std::filesystem::path> FindBelow(CFolder& folder, const CTextureQuery& query,
                                                                 std::size_t step, ETextureMatch match);
    [[nodiscard]] std::optional<std::filesystem::path> FindIn(CFolder& folder, const CTextureQuery& query,
                                                              ETextureMatch match) const;

    std::mutex m_mutex;
    std::filesystem::path m_modelFolder;
    std::filesystem::path m_ancestor;  ///< whose sub-folders became places last
    std::size_t m_levelsUp = 0;
    enum class EStage { Model, Usual, Others, Upwards, Done } m_stage = EStage::Model;
    std::size_t m_listedEntries = 0;
    unsigned long long m_device = 0;
    std::unordered_map<std::string, std::unique_ptr<CFolder>> m_listed;
    std::vector<CFolder*> m_places;
};
