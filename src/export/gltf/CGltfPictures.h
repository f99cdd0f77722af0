// SPDX-License-Identifier: MIT
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "base/CResult.h"
#include "base/name_hash.h"
#include "export/gltf/parts/picture_bytes.h"
#include "export/gltf/write_gltf.h"

class CGlbFile;
class CJsonText;
struct CImage;
struct CPreparedTexture;

/** The picture that a map needs: that of one texture, or one that is made of two. */
struct CGltfPicture {
    int colour = -1;        ///< texture of the scene; -1: white
    bool negative = false;  ///< of the colour
    int opacity = -1;       ///< texture of the scene that becomes the alpha; -1: the picture's own
    bool opacityNegative = false, opacityByAlpha = false;  ///< which value of it counts
    // clang-tidy 14 takes the comparison with 0 in it for a pointer.
    auto operator<=>(const CGltfPicture&) const = default;  // NOLINT(modernize-use-nullptr)
};

/** How a picture goes on beyond its edges. */
enum class EGltfWrap : std::uint8_t { Repeat, Mirror, Clamp };

/** The pictures of a glTF file: each found file once, and what is equal byte for byte once, however it is named. */
class CGltfPictures {
  public:
    /** All must outlive it. */
    CGltfPictures(const CGltfSource& source, const CGltfOptions& options);

    /** True when a texture of the scene has a picture. */
    [[nodiscard]] bool Has(int texture) const;
    /** Whether a picture may be made of two. There may be as many pairs as the square of the pictures: such pictures
     * together have little more pixels than the scene's. Counts the picture. */
    [[nodiscard]] bool MayJoin(CGltfPicture picture);
    /** The number of a glTF texture. */
    [[nodiscard]] int Use(CGltfPicture picture, EGltfWrap wrap);
    /** True where hardly any pixel is neither solid nor clear: fit for a test of the alpha in place of blending. */
    [[nodiscard]] bool IsCutOut(CGltfPicture picture);

    /** Encodes what is used, on all cores, and adds it to the file. */
    [[nodiscard]] CStatus Encode(CGlbFile& file, CJobProgress* progress);
    /** Writes the members "images", "samplers" and "textures". */
    void Write(CJsonText& json) const;

  private:
    struct CImageView {
        int view = 0;
        const char* mime = "";
        std::string name;
    };
    [[nodiscard]] std::string NameOf(std::size_t picture) const;
    /** Those that are used; returns what each is for. */
    std::vector<EGltfWrap> WriteSamplers(CJsonText& json) const;
    [[nodiscard]] const CPreparedTexture& Texture(int texture) const;
    /** The first texture that was found at the same place as this one. */
    [[nodiscard]] int FirstAlike(int texture);
    [[nodiscard]] CPictureBytes Original(int texture) const;
    [[nodiscard]] bool Fits(const CPictureBytes& found) const;
    [[nodiscard]] CPictureBytes Encoded(const CGltfPicture& picture) const;
    [[nodiscard]] CImage Shrunk(CImage image) const;

    const CPreparedScene& m_scene;
    const CTextureLocator& m_locator;
    CGltfOptions m_options;
    CNameMap<int> m_firstAt;  ///< by where they were found
    std::map<CGltfPicture, std::size_t> m_known;
    std::vector<CGltfPicture> m_pictures;
    std::map<std::pair<std::size_t, EGltfWrap>, int> m_knownTextures;
    std::vector<std::pair<std::size_t, EGltfWrap>> m_textures;  ///< picture and wrap
    std::vector<int> m_imageOf;                                 ///< by picture
    std::vector<CImageView> m_images;
    std::map<CGltfPicture, bool> m_isCutOut;
    std::map<CGltfPicture, bool> m_mayJoin;
    std::uint64_t m_pixelsLeft;  ///< for pictures that are made of two
};
