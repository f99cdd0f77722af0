// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "model/textures/CPrivateFolders.h"

/** The usual names of folders of pictures in lower case, the likeliest first. The last kLoosePictureFolders may as well
 * hold somebody's photographs. */
inline constexpr std::array<std::string_view, 20> kPictureFolders{
    "textures", "texture", "maps",  "map",      "tex",     "materials", "material",
    "bitmaps",  "bitmap",  "skins", "skin",     "sprites", "gfx",       "bmp",
    "images",   "image",   "img",   "pictures", "pics",    "graphics"};
inline constexpr std::size_t kLoosePictureFolders = 6;

/** The part of the disk in which the pictures of one model may lie. A model file comes from anywhere and names what it
 * likes, and what it names is shown, packed and exported; so the surroundings hold nothing that is not the model's:
 *
 * - its folder and all below it;
 * - above it, as far as a project goes (kMostLevelsUp folders, or up to one that holds a repository), the folders that
 *   are named as folders of pictures are, and all below those; loose files above the model's folder do not count;
 * - never a private folder (CPrivateFolders), nor anything above one.
 *
 * A model may lie in a private folder itself. Then its surroundings are the files beside it and nothing else, because
 * the folders there are not the model's; at the root of a mount (a disc, a stick) those named for textures count, too.
 *
 * What a link leads to must lie in the surroundings itself. Everything is resolved when this object is made, so
 * it holds for relative and linked paths. Constant; any thread may ask. */
class CModelSurroundings {
  public:
    static constexpr std::size_t kMostLevelsUp = 4;

    /** A folder that is not there has no surroundings. */
    explicit CModelSurroundings(const std::filesystem::path& modelFolder);

    /** The model's folder without links; empty when it is not there. */
    [[nodiscard]] const std::filesystem::path& Folder() const { return m_folder; }
    /** The folders above it in which picture folders may lie, nearest first. */
    [[nodiscard]] const std::vector<std::filesystem::path>& Above() const { return m_above; }
    /** True where folders beside the model may be entered whatever their name. */
    [[nodiscard]] bool OwnsFoldersBeside() const { return m_below == EBelow::All; }
    /** The names of picture folders that count in a folder: Folder() or one of Above(). */
    [[nodiscard]] std::size_t PictureFolderCount(const std::filesystem::path& parent) const;

    /** The path without links, if it is that of a regular file in the surroundings. */
    [[nodiscard]] std::optional<std::filesystem::path> File(const std::filesystem::path& path) const;
    /** The same for a folder that may be listed. */
    [[nodiscard]] std::optional<std::filesystem::path> SubFolder(const std::filesystem::path& path) const;
    /** Folders that may be entered with all below, and where the model's folder may not be, the files beside the model
     * (some thousands at most): all that the look-up of pictures and materials may want to read. */
    [[nodiscard]] std::vector<std::filesystem::path> Readable() const;
    /** True for a resolved path in the model's folder or below it. */
    [[nodiscard]] bool IsInFolder(const std::filesystem::path& resolved) const;

  private:
    enum class EBelow { All, TextureFolders, Nothing };

    void FindAbove();
    [[nodiscard]] bool Holds(const std::filesystem::path& folder) const;
    [[nodiscard]] bool IsOpenDownTo(const std::filesystem::path& top,
                                    const std::filesystem::path& folder) const;

    std::shared_ptr<const CPrivateFolders> m_private;
    std::filesystem::path m_folder;
    std::vector<std::filesystem::path> m_above;
    EBelow m_below = EBelow::Nothing;
};
