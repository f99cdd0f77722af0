// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/CResult.h"

/** One texture held in memory: the name by which materials refer to it, and the bytes of the image file. */
struct CImageDataText {
    std::string name;  ///< UTF-8; file name as the scene's materials have it, or an archive entry
    std::vector<std::byte> data;
};
using CImageDataTextVec = std::vector<CImageDataText>;

/** Where a texture was found: a file, or bytes in memory (then data is set, and lives as long
 * as the locator). */
struct CTextureHit {
    std::string foundAt;  ///< UTF-8 path without links, or name in memory
    const std::vector<std::byte>* data = nullptr;
    bool outsideModelFolder = false;  ///< a file that lies neither in the model's folder nor below it
};

/** The bytes of what was found. A file that has meanwhile become a link, or anything but a regular file, is
 * Unreadable; TooLarge, when it has more than maxBytes. */
[[nodiscard]] CResult<std::vector<std::byte>> ReadTexture(const CTextureHit& hit, std::uint64_t maxBytes);

class CTextureFolders;
class CTexturesInMemory;

/** Finds the picture that a material names. Folders are listed once, only when the search gets there, and
 * remembered, so one object serves a scene; a picture that is put there later is not seen. Any thread may
 * ask. Copies share that memory (the second owner), as a scene and its exporters ask for the same names. */
class CTextureLocator {
  public:
    /** Finds nothing. */
    CTextureLocator() = default;
    /** Looks in the surroundings of a model on disk (see CModelSurroundings for what that is, CTextureFolders for the
     * order), never elsewhere, whatever a reference or a link says. modelPath is UTF-8 and need not exist. */
    [[nodiscard]] static CTextureLocator BesideModel(std::string_view modelPath);
    /** Looks only among these. model: the path that the model has among them, to prefer what is near it. */
    [[nodiscard]] static CTextureLocator InMemory(CImageDataTextVec textures, std::string_view model = {});

    /** Nothing when there is no such picture. reference is as the file has it: any case, DOS path, code page.
     * The same name is looked for everywhere first, then with the ending of another picture format, then (if
     * it may be a name that DOS cut down) a longer name, where there is only one. Of NAME.jpg that lies beside
     * NAME.jpg.png, as Compress to zip writes pictures with transparent parts, the latter is found. */
    [[nodiscard]] std::optional<CTextureHit> Find(std::string_view reference) const;

    /** From now on this object finds the picture wherever its name is asked for, with whatever ending (saving
     * changes endings), before all others. Copies made earlier do not. */
    void Add(std::shared_ptr<const CImageDataText> texture);

  private:
    struct CAdded {
        std::shared_ptr<const CImageDataText> texture;  ///< shared with copies, as the rest
        std::string key;                                ///< of its name
    };
    [[nodiscard]] const CImageDataText* FindAdded(std::string_view reference) const;

    std::vector<CAdded> m_added;
    std::shared_ptr<CTextureFolders> m_folders;
    std::shared_ptr<const CTexturesInMemory> m_memory;
};
