// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "model/textures/CTextureLocator.h"

struct Lib3dsFile;
struct Lib3dsMaterial;
struct Lib3dsTextureMap;

/** One picture of a scene. */
struct CScenePicture {
    std::vector<std::string> references;  ///< the materials' names for it, as they have them
    std::string name;                     ///< a file name for it: UTF-8, no folder, sound on every system
    CTextureHit hit;                      ///< where it is, and whether outside of the model's folder
};

constexpr std::uint64_t kMostTextureBytes = 512'000'000;

/** Queries about the materials of a scene. */
class CLib3dsMatUtil {
  public:
    /** All maps of a material, each with its mask behind it. */
    [[nodiscard]] static std::array<Lib3dsTextureMap*, 16> MapsOf(Lib3dsMaterial& material);
    /** The pictures that go with a scene wherever it is packed, exported or sent: those in maps and masks of
     * materials that a face has, each once however many names lead to it, in the order of the materials. What is
     * not found is left out. */
    [[nodiscard]] static std::vector<CScenePicture> PicturesOf(const Lib3dsFile& file,
                                                               const CTextureLocator& locator);

    /** Appends the PicturesOf a scene with their bytes, under the file name that the materials have (without folders,
     * so it is safe to write it into one; with the ending of what was found; of pictures with one name the later ones
     * with the last folder of their reference before it, "red/hull.jpg"). What is not readable is left out, and what
     * is more than kMostTextureBytes together. Null appends nothing. */
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
