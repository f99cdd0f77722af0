// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>
#include <vector>

#include "model/textures/CTextureLocator.h"

struct Lib3dsFile;
struct Lib3dsMaterial;
struct Lib3dsTextureMap;

/** Queries about the materials of a scene. */
class CLib3dsMatUtil {
  public:
    /** All maps of a material, each with its mask behind it. */
    [[nodiscard]] static std::array<Lib3dsTextureMap*, 16> MapsOf(Lib3dsMaterial& material);
    /** The picture names in all maps and masks of all materials, as the file has them, each once in
     * any letter case. */
    [[nodiscard]] static std::vector<std::string> MapNames(const Lib3dsFile& file);

    /** Appends each picture that the materials name: its bytes as found, under the file name that the
     * materials have (without folders, so it is safe to write it into one; with the ending of what was
     * found). What is not found or not readable is left out. Null appends nothing. */
    static void GetMatTextures(Lib3dsFile* file, CImageDataTextVec& textures, const CTextureLocator& locator);
    /** The same with the locator that a CTexturesOfScene has made known for this scene;
     * nothing without one. */
    static void GetMatTextures(Lib3dsFile* file, CImageDataTextVec& textures);
};

/** Registers where the textures of a scene lie, as long as this object lives: a Lib3dsFile has no field for
 * that. The owner of a scene keeps one beside it. Any thread may use any such object; of two for one scene
 * the later one counts. */
class CTexturesOfScene {
  public:
    CTexturesOfScene() = default;
    CTexturesOfScene(const Lib3dsFile* file, CTextureLocator locator);
    CTexturesOfScene(CTexturesOfScene&& other) noexcept;
    CTexturesOfScene& operator=(CTexturesOfScene&& other) noexcept;
    ~CTexturesOfScene();

    /** The locator that is known for a scene; one that finds nothing where none is. */
    [[nodiscard]] static CTextureLocator Find(const Lib3dsFile* file);

  private:
    const Lib3dsFile* m_file = nullptr;
    unsigned long long m_number = 0;  ///< tells this entry from a later one for the same scene
};
