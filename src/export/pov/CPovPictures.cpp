// SPDX-License-Identifier: MIT
#include "export/pov/CPovPictures.h"

#include <algorithm>

#include "base/text/lng.h"
#include "export/pov/text/CPovText.h"
#include "files/file_util_ex.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/material_kinds.h"
#include "model/textures/CTextureLocator.h"
#include "picture/image_probe.h"
#include "picture/image_writer.h"
#include "picture/picture_limits.h"

namespace {

unsigned At(const std::vector<std::byte>& bytes, std::size_t i) {
    return i < bytes.size() ? static_cast<unsigned>(bytes[i]) : 0;
}
std::size_t Be16(const std::vector<std::byte>& bytes, std::size_t i) {
    return At(bytes, i) << 8 | At(bytes, i + 1);
}

/** What libjpeg stops at: POV-Ray reads to the end, and takes no scene with a picture that it cannot read. */
bool IsJpegMarker(unsigned marker) {
    constexpr std::string_view kKnown = "\xC4\xDA\xDB\xDC\xDD\xFE";
    return (marker >= 0xE0 && marker <= 0xEF) || kKnown.find(static_cast<char>(marker)) != kKnown.npos;
}

/** The number of components in a JPEG's frame header; 0 for none or an unusual one, and where it is damaged behind. */
unsigned JpegComponents(const std::vector<std::byte>& bytes) {
    unsigned components = 0;
    for (std::size_t i = 2; i + 1 < bytes.size();) {
        const unsigned marker = At(bytes, i + 1);
        const bool isData = At(bytes, i) != 0xFF || marker == 0 || (marker >= 0xD0 && marker <= 0xD7);
        if (isData || marker == 0xFF) {
            if (components == 0 && marker != 0xFF) return 0;
            ++i;
            continue;
        }
        if (marker == 0xD9) break;
        if (marker >= 0xC0 && marker <= 0xC2 && components == 0) {
            if (At(bytes, i + 4) != 8) return 0;
            components = At(bytes, i + 9);
        } else if (!IsJpegMarker(marker)) {
            return 0;
        }
        i += 2 + std::max<std::size_t>(2, Be16(bytes, i + 2));
    }
    return components;
}

bool IsPlainPng(const std::vector<std::byte>& bytes) {
    constexpr unsigned kGrey = 0, kRgb = 2;
    const unsigned bits = At(bytes, 24), color = At(bytes, 25);
    if (bits != 8 || (color != kGrey && color != kRgb)) return false;
    for (std::size_t i = 8; i + 12 <= bytes.size();) {
        const std::string_view name(reinterpret_cast<const char*>(&bytes[i + 4]), 4);
        if (name == "IEND") return Be16(bytes, i + 8) == 0xAE42 && Be16(bytes, i + 10) == 0x6082;
        const bool isKnown = name == "IHDR" || name == "IDAT" || name == "PLTE" || name[0] >= 'a';
        if (!isKnown || name == "gAMA" || name == "iCCP" || name == "cHRM" || name == "tRNS") return false;
        i += 12 + (Be16(bytes, i) << 16 | Be16(bytes, i + 2));
    }
    return false;
}

bool IsNegative(EPovPicture kind) {
    return kind == EPovPicture::NegativeColor || kind == EPovPicture::NegativeValue ||
           kind == EPovPicture::NegativeOpacity || kind == EPovPicture::NegativeAlpha;
}

/** The one value of a pixel that a kind other than the colours needs. */
std::uint8_t ValueOf(const std::uint8_t* pixel, EPovPicture kind) {
    if (kind == EPovPicture::Alpha || kind == EPovPicture::NegativeAlpha) return CountedAlpha(pixel[3]);
    const std::uint8_t grey = GreyOf(pixel);
    const bool isOpacity = kind == EPovPicture::Opacity || kind == EPovPicture::NegativeOpacity;
    return isOpacity ? CountedAlpha(grey) : grey;
}

/** The picture to write for POV-Ray. */
CImage Converted(const CImage& source, EPovPicture kind) {
    CImage image = source;
    const std::uint8_t flip = IsNegative(kind) ? 255 : 0;
    for (std::size_t i = 0; i + 3 < image.rgba.size(); i += 4) {
        std::uint8_t* pixel = &image.rgba[i];
        if (kind != EPovPicture::Color && kind != EPovPicture::NegativeColor)
            std::fill_n(pixel, 3, ValueOf(pixel, kind));
        for (int c = 0; c < 3; ++c) pixel[c] = static_cast<std::uint8_t>(pixel[c] ^ flip);
    }
    return image;
}

}  // namespace

bool PovReadsAlike(const std::vector<std::byte>& bytes, std::string_view& type) {
    switch (image_probe::FormatOf(bytes, {})) {
        case image_probe::EFormat::Jpeg: {
            type = "jpeg";
            const unsigned components = JpegComponents(bytes);
            return components == 1 || components == 3;
        }
        case image_probe::EFormat::Png:
            type = "png";
            return IsPlainPng(bytes);
        default:
            return false;
    }
}

CPovPictures::CPovPictures(const CPreparedScene& scene, const CTextureLocator& locator,
                           std::string_view outputPath)
    : m_scene(scene),
      m_locator(locator),
      m_stem(pov_text::FileStem(file_util_ex::GetFileNameWithPath(file_util_ex::GetFileName(outputPath)))),
      m_files(outputPath) {
    for (const std::string& source : scene.sourceFiles) m_files.Protect(source);
    for (const CPreparedTexture& texture : scene.textures) {
        if (!texture.foundAt.empty()) m_files.Protect(texture.foundAt);
    }
}

const CPovPictures::CPicture* CPovPictures::Use(int texture, EPovPicture kind) {
    if (texture < 0 || static_cast<std::size_t>(texture) >= m_scene.textures.size()) return nullptr;
    if (m_scene.textures[static_cast<std::size_t>(texture)].image.IsEmpty()) return nullptr;
    texture = FirstAlike(texture);
    const auto [place, isNew] = m_known.try_emplace({texture, kind}, m_planned.size());
    if (isNew) m_planned.push_back(Plan(texture, kind));
    return &m_planned[place->second].picture;
}

int CPovPictures::FirstAlike(int texture) {
    const CPreparedTexture& source = m_scene.textures[static_cast<std::size_t>(texture)];
    if (source.foundAt.empty()) return texture;
    const auto hit = m_locator.Find(source.reference);
    // Pictures in memory may have one name and other bytes.
    const auto bytes = reinterpret_cast<std::uintptr_t>(hit ? hit->data : nullptr);
    return m_firstAt.emplace(std::to_string(bytes) + ' ' + source.foundAt, texture).first->second;
}

CPovPictures::CPlanned CPovPictures::Plan(int texture, EPovPicture kind) {
    const CPreparedTexture& source = m_scene.textures[static_cast<std::size_t>(texture)];
    CPlanned planned{{{}, "png", source.image.width, source.image.height}, texture, kind, false};
    std::string_view type;
    if (kind == EPovPicture::Color && !source.hasTranslucency && PovReadsAlike(Original(source), type)) {
        planned.picture.type = type;
        planned.isCopied = true;
    }
    const CResult<std::string> name =
        m_files.ChooseName(m_stem + "-t", planned.picture.type == "jpeg" ? ".jpg" : ".png");
    if (name) {
        planned.picture.fileName = name.Value();
    } else if (!m_error) {
        m_error = name.Error();
    }
    return planned;
}

std::vector<std::byte> CPovPictures::Original(const CPreparedTexture& texture) const {
    const auto hit = m_locator.Find(texture.reference);
    if (!hit) return {};
    auto bytes = ReadTexture(*hit, image_codec::kMaxFileBytes);
    return bytes ? std::move(bytes).Value() : std::vector<std::byte>();
}

CStatus CPovPictures::Stage(std::size_t i) {
    if (m_error) return *m_error;
    const CPlanned& planned = m_planned[i];
    const CPreparedTexture& source = m_scene.textures[static_cast<std::size_t>(planned.texture)];
    if (planned.isCopied) {
        std::string_view type;
        const std::vector<std::byte> original = Original(source);
        if (PovReadsAlike(original, type) && type == planned.picture.type)
            return m_files.Write(planned.picture.fileName, original);
        return CError{EErrorCode::Unreadable, lng::Mark("a picture of the model has been changed meanwhile"),
                      source.foundAt};
    }
    const auto bytes = image_codec::PngBytes(Converted(source.image, planned.kind), false);
    if (!bytes) return bytes.Error();
    return m_files.Write(planned.picture.fileName, bytes.Value());
}

std::string CPovPictures::Record() const {
    std::string text;
    for (const std::string& line : m_files.ToRecord()) text += "// " + line + '\n';
    return text.empty() ? text
                        : "// The pictures written with this file, for the next export to it:\n" + text;
}
