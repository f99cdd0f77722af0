// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/** One texture held in memory: the name by which materials refer to it, and the bytes of the image file. */
struct CImageDataText {
    std::string name;  ///< UTF-8; file name as the scene's materials have it, or an archive entry
    std::vector<std::byte> data;
};
using CImageDataTextVec = std::vector<CImageDataText>;

/** Where a texture was found: a file, or bytes in memory (then data is set, and lives as long
 * as the locator). */
struct CTextureHit {
    std::string foundAt;  ///< UTF-8 path, or name in memory
    const std::vector<std::byte>* data = nullptr;
};

class CTextureFolders;
class CTexturesInMemory;

/** Finds the picture that a material names. Folders are listed once, only when the search gets there, and
 * remembered, so one object serves a scene; a picture that is put there later is not seen. Any thread may
 * ask. Copies share that memory (the second owner), as a scene and its exporters ask for the same names. */
class CTextureLocator {
  public:
    /** Finds nothing. */
    CTextureLocator() = default;
    /** Looks beside a model on disk: its folder, its sub-folders and usual sister folders (see
     * CTextureFolders for the order), never elsewhere, whatever a reference says. modelPath is UTF-8
     * and need not exist. */
    [[nodiscard]] static CTextureLocator BesideModel(std::string_view modelPath);
    /** Looks only among these. model: the path that the model has among them, to prefer what is near it. */
    [[nodiscard]] static CTextureLocator InMemory(CImageDataTextVec textures, std::string_view model = {});

    /** Nothing when there is no such picture. reference is as the file has it: any case, DOS path, code page.
     * The same name is looked for everywhere first, then with the ending of another picture format, then (if
     * it may be a name that DOS cut down) a longer name, where there is only one. */
    [[nodiscard]] std::optional<CTextureHit> Find(std::string_view reference) const;

    /** From now on this object finds the picture wherever its name is asked for, with whatever ending (saving
     * changes endings), before all others. Copies made earlier do not. */
    void Add(std::shared_ptr<const CImageDataText> texture);

  private:
    [[nodiscard]] const CImageDataText* FindAdded(std::string_view reference) const;

    std::vector<std::shared_ptr<const CImageDataText>> m_added;  ///< shared with copies, as the rest
    std::shared_ptr<CTextureFolders> m_folders;
    std::shared_ptr<const CTexturesInMemory> m_memory;
};
