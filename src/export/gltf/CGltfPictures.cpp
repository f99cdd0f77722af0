// SPDX-License-Identifier: MIT
#include "export/gltf/CGltfPictures.h"

#include <algorithm>
#include <string_view>

#include "base/jobs/parallel_for.h"
#include "base/text/lng.h"
#include "export/gltf/glb/CGlbFile.h"
#include "export/gltf/glb/CJsonText.h"
#include "export/gltf/parts/CGltfNames.h"
#include "files/file_util_ex.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/material_kinds.h"
#include "model/textures/CTextureLocator.h"
#include "picture/image_writer.h"
#include "picture/picture_limits.h"
#include "picture/shrink_image.h"

namespace {

/** What scenes have anyway for pictures that are made of two. */
constexpr std::uint64_t kFreePixels = 4 << 20;

std::uint64_t PixelsOf(const CImage& image) {
    return image.rgba.size() / 4;
}

/** The alpha that an opacity map stands for. */
std::uint8_t OpacityOf(const std::uint8_t* pixel, const CGltfPicture& picture) {
    const std::uint8_t value = picture.opacityByAlpha ? pixel[3] : GreyOf(pixel);
    const std::uint8_t counted = CountedAlpha(value);
    return picture.opacityNegative ? static_cast<std::uint8_t>(255 - counted) : counted;
}

CImage White(const CImage& ofSize) {
    CImage image{ofSize.width, ofSize.height, {}};
    image.rgba.assign(ofSize.rgba.size(), 255);
    return image;
}

void TakeOpacity(const CImage& from, const CGltfPicture& picture, CImage& image) {
    for (int y = 0; y < image.height; ++y) {
        const int fromY = static_cast<int>(std::int64_t{y} * from.height / image.height);
        for (int x = 0; x < image.width; ++x) {
            const int fromX = static_cast<int>(std::int64_t{x} * from.width / image.width);
            const auto at = (static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width) +
                             static_cast<std::size_t>(x)) *
                            4;
            image.rgba[at + 3] = OpacityOf(from.Pixel(fromX, fromY), picture);
        }
    }
}

bool HasAlpha(const CImage& image) {
    for (std::size_t i = 3; i < image.rgba.size(); i += 4) {
        if (image.rgba[i] != 255) return true;
    }
    return false;
}

const char* MimeOf(EPictureFormat format) {
    return format == EPictureFormat::Jpeg ? "image/jpeg" : "image/png";
}

}  // namespace

CGltfPictures::CGltfPictures(const CGltfSource& source, const CGltfOptions& options)
    : m_scene(source.scene), m_locator(source.textures), m_options(options), m_pixelsLeft(kFreePixels) {
    for (const CPreparedTexture& texture : m_scene.textures) m_pixelsLeft += PixelsOf(texture.image);
}

const CPreparedTexture& CGltfPictures::Texture(int texture) const {
    return m_scene.textures[static_cast<std::size_t>(texture)];
}

bool CGltfPictures::Has(int texture) const {
    if (texture < 0 || static_cast<std::size_t>(texture) >= m_scene.textures.size()) return false;
    const CImage& image = Texture(texture).image;
    return m_options.withTextures && !image.IsEmpty() && !image.rgba.empty();
}

int CGltfPictures::FirstAlike(int texture) {
    if (texture < 0 || Texture(texture).foundAt.empty()) return texture;
    const CPreparedTexture& source = Texture(texture);
    const auto hit = m_locator.Find(source.reference);
    // Pictures in memory may have one name and other bytes.
    const auto bytes = reinterpret_cast<std::uintptr_t>(hit ? hit->data : nullptr);
    return m_firstAt.emplace(std::to_string(bytes) + ' ' + source.foundAt, texture).first->second;
}

bool CGltfPictures::MayJoin(CGltfPicture picture) {
    picture.colour = FirstAlike(picture.colour);
    picture.opacity = FirstAlike(picture.opacity);
    const auto [place, isNew] = m_mayJoin.try_emplace(picture, false);
    const std::uint64_t pixels = PixelsOf(Texture(picture.colour).image);
    if (isNew && pixels <= m_pixelsLeft) {
        m_pixelsLeft -= pixels;
        place->second = true;
    }
    return place->second;
}

int CGltfPictures::Use(CGltfPicture picture, EGltfWrap wrap) {
    picture.colour = FirstAlike(picture.colour);
    picture.opacity = FirstAlike(picture.opacity);
    const auto [place, isNew] = m_known.try_emplace(picture, m_pictures.size());
    if (isNew) m_pictures.push_back(picture);
    const auto [texture, isNewTexture] =
        m_knownTextures.try_emplace({place->second, wrap}, static_cast<int>(m_textures.size()));
    if (isNewTexture) m_textures.emplace_back(place->second, wrap);
    return texture->second;
}

bool CGltfPictures::IsCutOut(CGltfPicture picture) {
    const auto [place, isNew] = m_isCutOut.try_emplace(picture, false);
    if (!isNew) return place->second;
    const CImage& image = Texture(picture.opacity >= 0 ? picture.opacity : picture.colour).image;
    picture.opacityByAlpha |= picture.opacity < 0;
    std::size_t between = 0;
    for (std::size_t i = 0; i + 3 < image.rgba.size(); i += 4) {
        const std::uint8_t alpha = OpacityOf(&image.rgba[i], picture);
        if (alpha > 0 && alpha < 255) ++between;
    }
    // The edges of leaves and fences are soft, too.
    return place->second = between * 8 < image.rgba.size() / 4;
}

CPictureBytes CGltfPictures::Original(int texture) const {
    const auto hit = m_locator.Find(Texture(texture).reference);
    if (!hit) return {};
    const auto bytes = ReadTexture(*hit, image_codec::kMaxFileBytes);
    return bytes ? BarePicture(bytes.Value()) : CPictureBytes();
}

bool CGltfPictures::Fits(const CPictureBytes& found) const {
    const int most = m_options.maxTextureSide;
    return most <= 0 || std::max(found.width, found.height) <= most;
}

CImage CGltfPictures::Shrunk(CImage image) const {
    int side = std::max(image.width, image.height);
    while (m_options.maxTextureSide > 0 && side > m_options.maxTextureSide) side /= 2;
    return ShrinkImage(std::move(image), side);
}

CPictureBytes CGltfPictures::Encoded(const CGltfPicture& picture) const {
    const bool isPlain = picture.opacity < 0 && !picture.negative;
    CPictureBytes found;
    if (isPlain) found = Original(picture.colour);
    if (!found.bytes.empty() && Fits(found)) return found;
    CImage image =
        picture.colour >= 0 ? Texture(picture.colour).image : White(Texture(picture.opacity).image);
    if (picture.negative) {
        for (std::size_t i = 0; i < image.rgba.size(); ++i) {
            if (i % 4 != 3) image.rgba[i] = static_cast<std::uint8_t>(255 - image.rgba[i]);
        }
    }
    if (picture.opacity >= 0) TakeOpacity(Texture(picture.opacity).image, picture, image);
    image = Shrunk(std::move(image));
    const bool isPhoto = isPlain && found.format == EPictureFormat::Jpeg;
    const bool hasAlpha = !isPhoto && HasAlpha(image);
    auto bytes = isPhoto ? image_codec::JpegBytes(image) : image_codec::PngBytes(image, hasAlpha, true);
    if (!bytes) return {};
    return {isPhoto ? EPictureFormat::Jpeg : EPictureFormat::Png, image.width, image.height,
            std::move(bytes).Value()};
}

std::string CGltfPictures::NameOf(std::size_t picture) const {
    const CGltfPicture& of = m_pictures[picture];
    return file_util_ex::GetFileName(Texture(of.colour >= 0 ? of.colour : of.opacity).foundAt);
}

CStatus CGltfPictures::Encode(CGlbFile& file, CJobProgress* progress) {
    std::vector<CPictureBytes> encoded(m_pictures.size());
    ParallelFor(encoded.size(), 0, [&](std::size_t i) {
        if (NotCancelled(progress)) encoded[i] = Encoded(m_pictures[i]);
    });
    if (CStatus status = NotCancelled(progress); !status) return status;
    std::map<std::string_view, int> known;
    m_imageOf.clear();
    CGltfNames names;
    for (std::size_t i = 0; i < encoded.size(); ++i) {
        const CPictureBytes& picture = encoded[i];
        if (picture.bytes.empty())
            return CError{EErrorCode::WriteFailed, lng::Mark("the picture could not be packed"), NameOf(i)};
        const std::string_view key(reinterpret_cast<const char*>(picture.bytes.data()), picture.bytes.size());
        const auto [place, isNew] = known.try_emplace(key, static_cast<int>(m_images.size()));
        if (isNew)
            m_images.push_back(
                {file.AddPicture(picture.bytes), MimeOf(picture.format), names.Take(NameOf(i))});
        m_imageOf.push_back(place->second);
    }
    return CDone{};
}

void CGltfPictures::Write(CJsonText& json) const {
    if (m_textures.empty()) return;
    json.Key("images").BeginArray();
    for (const CImageView& image : m_images) {
        json.BeginObject();
        if (!image.name.empty()) json.Member("name", image.name);
        json.Member("bufferView", image.view).Member("mimeType", image.mime).EndObject();
    }
    json.EndArray();
    const std::vector<EGltfWrap> wraps = WriteSamplers(json);
    json.Key("textures").BeginArray();
    for (const auto& [picture, wrap] : m_textures) {
        const auto sampler = std::find(wraps.begin(), wraps.end(), wrap) - wraps.begin();
        json.BeginObject().Member("sampler", static_cast<int>(sampler));
        json.Member("source", m_imageOf[picture]).EndObject();
    }
    json.EndArray();
}

std::vector<EGltfWrap> CGltfPictures::WriteSamplers(CJsonText& json) const {
    constexpr int kLinear = 9729, kLinearMipmaps = 9987;
    constexpr int kModes[] = {10497, 33648, 33071};  // as EGltfWrap; the first is the default
    std::vector<EGltfWrap> wraps;
    for (const auto& [picture, wrap] : m_textures) wraps.push_back(wrap);
    std::sort(wraps.begin(), wraps.end());
    wraps.erase(std::unique(wraps.begin(), wraps.end()), wraps.end());
    json.Key("samplers").BeginArray();
    for (const EGltfWrap wrap : wraps) {
        json.BeginObject().Member("magFilter", kLinear).Member("minFilter", kLinearMipmaps);
        const int mode = kModes[static_cast<std::size_t>(wrap)];
        if (wrap != EGltfWrap::Repeat) json.Member("wrapS", mode).Member("wrapT", mode);
        json.EndObject();
    }
    json.EndArray();
    return wraps;
}
