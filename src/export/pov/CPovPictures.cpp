// SPDX-License-Identifier: MIT
#include "export/pov/CPovPictures.h"

#include <algorithm>

#include "export/pov/text/CPovText.h"
#include "files/CAtomicFile.h"
#include "files/file_util_ex.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/source_files.h"
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

/** The number of components in a JPEG's frame header; 0 for none or an unusual one. */
unsigned JpegComponents(const std::vector<std::byte>& bytes) {
    for (std::size_t i = 2; i + 9 < bytes.size();) {
        if (At(bytes, i) != 0xFF) return 0;
        const unsigned marker = At(bytes, i + 1);
        if (marker >= 0xC0 && marker <= 0xC2) return At(bytes, i + 4) == 8 ? At(bytes, i + 9) : 0;
        i += marker == 0xFF ? 1 : 2 + std::max<std::size_t>(2, Be16(bytes, i + 2));
    }
    return 0;
}

bool IsPlainPng(const std::vector<std::byte>& bytes) {
    constexpr unsigned kGrey = 0, kRgb = 2;
    const unsigned bits = At(bytes, 24), color = At(bytes, 25);
    if (bits != 8 || (color != kGrey && color != kRgb)) return false;
    for (std::size_t i = 8; i + 8 < bytes.size();) {
        const std::string_view name(reinterpret_cast<const char*>(&bytes[i + 4]), 4);
        if (name == "IDAT") return true;
        if (name == "gAMA" || name == "iCCP" || name == "cHRM" || name == "tRNS") return false;
        i += 12 + (Be16(bytes, i) << 16 | Be16(bytes, i + 2));
    }
    return false;
}

std::uint8_t Grey(const std::uint8_t* pixel) {
    return static_cast<std::uint8_t>((299u * pixel[0] + 587u * pixel[1] + 114u * pixel[2] + 500u) / 1000u);
}

bool IsNegative(EPovPicture kind) {
    return kind == EPovPicture::NegativeColor || kind == EPovPicture::NegativeValue ||
           kind == EPovPicture::NegativeAlpha;
}

/** The picture to write for POV-Ray. */
CImage Converted(const CImage& source, EPovPicture kind) {
    CImage image = source;
    const std::uint8_t flip = IsNegative(kind) ? 255 : 0;
    for (std::size_t i = 0; i + 3 < image.rgba.size(); i += 4) {
        std::uint8_t* pixel = &image.rgba[i];
        if (kind == EPovPicture::Value || kind == EPovPicture::NegativeValue) {
            std::fill_n(pixel, 3, Grey(pixel));
        } else if (kind == EPovPicture::Alpha || kind == EPovPicture::NegativeAlpha) {
            std::fill_n(pixel, 3, pixel[3]);
        }
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
      m_folder(file_util_ex::GetFilePath(outputPath)),
      m_stem(pov_text::FileStem(file_util_ex::GetFileNameWithPath(file_util_ex::GetFileName(outputPath)))) {}

const CPovPictures::CPicture* CPovPictures::Use(int texture, EPovPicture kind) {
    if (texture < 0 || static_cast<std::size_t>(texture) >= m_scene.textures.size()) return nullptr;
    const CPreparedTexture& source = m_scene.textures[static_cast<std::size_t>(texture)];
    if (source.image.IsEmpty()) return nullptr;
    const auto [place, isNew] = m_known.try_emplace({texture, kind}, m_planned.size());
    if (isNew) {
        CPlanned planned;
        planned.texture = texture;
        planned.kind = kind;
        planned.picture.type = "png";
        planned.picture.width = source.image.width;
        planned.picture.height = source.image.height;
        if (kind == EPovPicture::Color && !source.hasTranslucency) {
            std::string_view type;
            std::vector<std::byte> bytes = Original(source);
            if (PovReadsAlike(bytes, type)) {
                planned.picture.type = type;
                planned.original = std::move(bytes);
            }
        }
        planned.picture.fileName = FreeName(planned.picture.type == "jpeg" ? ".jpg" : ".png");
        planned.path = file_util_ex::MakePath(m_folder, planned.picture.fileName);
        m_planned.push_back(std::move(planned));
    }
    return &m_planned[place->second].picture;
}

std::vector<std::byte> CPovPictures::Original(const CPreparedTexture& texture) const {
    const auto hit = m_locator.Find(texture.reference);
    if (!hit) return {};
    if (hit->data != nullptr) return *hit->data;
    auto bytes = file_util_ex::ReadWholeFile(hit->foundAt, image_codec::kMaxFileBytes);
    return bytes ? std::move(bytes).Value() : std::vector<std::byte>();
}

std::string CPovPictures::FreeName(const std::string& extension) const {
    for (std::size_t number = m_planned.size();; number += 1000) {
        std::string name = m_stem + "-t" + std::to_string(number) + extension;
        const std::string path = file_util_ex::MakePath(m_folder, name);
        if (SourceAt(m_scene, path) == ESource::None) return name;
    }
}

CStatus CPovPictures::Stage(std::size_t i) {
    const CPlanned& planned = m_planned[i];
    CResult<CAtomicFile> file = CAtomicFile::Create(planned.path);
    if (!file) return file.Error();
    if (!planned.original.empty()) {
        if (CStatus status = file.Value().Write(planned.original); !status) return status;
    } else {
        const CImage& image = m_scene.textures[static_cast<std::size_t>(planned.texture)].image;
        const auto bytes = image_codec::PngBytes(Converted(image, planned.kind), false);
        if (!bytes) return bytes.Error();
        if (CStatus status = file.Value().Write(bytes.Value()); !status) return status;
    }
    m_staged.Add(planned.path, std::move(file).Value());
    return CDone{};
}
