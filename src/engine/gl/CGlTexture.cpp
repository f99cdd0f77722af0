// SPDX-License-Identifier: MIT
#include "engine/gl/CGlTexture.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <utility>

#include "engine/gl/CGlCapabilities.h"
#include "engine/gl/gl_api.h"
#include "picture/CImage.h"

namespace {

constexpr float kAnisotropy = 8;

GLint Name(ETextureWrap wrap) {
    switch (wrap) {
        case ETextureWrap::Repeat:
            return GL_REPEAT;
        case ETextureWrap::Mirror:
            return GL_MIRRORED_REPEAT;
        case ETextureWrap::Clamp:
            break;
    }
    return GL_CLAMP_TO_EDGE;
}

int FittingSide(int side, const CGlCapabilities& can) {
    const int limited = std::min(side, can.maxTextureSize);
    return can.anyTextureSize ? limited : static_cast<int>(std::bit_floor(static_cast<unsigned>(limited)));
}

bool IsOpaque(const CImage& image) {
    for (std::size_t i = 3; i < image.rgba.size(); i += 4) {
        if (image.rgba[i] != 255) return false;
    }
    return true;
}

/** First and one past the last source pixel that a target pixel covers; never empty. */
std::pair<int, int> Cover(int target, int targetSize, int sourceSize) {
    const auto at = [&](int t) {
        return static_cast<int>(static_cast<std::int64_t>(t) * sourceSize / targetSize);
    };
    const int first = std::min(at(target), sourceSize - 1);
    return {first, std::clamp(at(target + 1), first + 1, sourceSize)};
}

}  // namespace

CImage ResizeForTexture(const CImage& image, int width, int height) {
    CImage result{width, height, {}};
    result.rgba.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    for (int y = 0; y < height; ++y) {
        const auto [y0, y1] = Cover(y, height, image.height);
        for (int x = 0; x < width; ++x) {
            const auto [x0, x1] = Cover(x, width, image.width);
            std::array<std::uint64_t, 4> sum{};
            for (int sy = y0; sy < y1; ++sy) {
                for (int sx = x0; sx < x1; ++sx) {
                    for (std::size_t c = 0; c < 4; ++c) sum[c] += image.Pixel(sx, sy)[c];
                }
            }
            const auto count = static_cast<std::uint64_t>(x1 - x0) * static_cast<std::uint64_t>(y1 - y0);
            for (std::uint64_t s : sum)
                result.rgba.push_back(static_cast<std::uint8_t>((s + count / 2) / count));
        }
    }
    return result;
}

CGlTexture::CGlTexture(CGlTexture&& other) noexcept
    : m_id(std::exchange(other.m_id, 0)),
      m_bytes(std::exchange(other.m_bytes, 0)),
      m_filter(other.m_filter),
      m_anisotropy(other.m_anisotropy) {}

CGlTexture& CGlTexture::operator=(CGlTexture&& other) noexcept {
    std::swap(m_id, other.m_id);
    std::swap(m_bytes, other.m_bytes);
    std::swap(m_filter, other.m_filter);
    std::swap(m_anisotropy, other.m_anisotropy);
    return *this;
}

CGlTexture::~CGlTexture() {
    if (m_id != 0) glDeleteTextures(1, &m_id);
}

void CGlTexture::Fill(CGlCurrent& gl, const CGlCapabilities& can, const CImage& image, ETextureWrap wrap) {
    if (image.IsEmpty()) return;
    const int width = FittingSide(image.width, can), height = FittingSide(image.height, can);
    const bool fits = width == image.width && height == image.height;
    const CImage scaled = fits ? CImage{} : ResizeForTexture(image, width, height);
    const CImage& source = fits ? image : scaled;

    if (m_id == 0) glGenTextures(1, &m_id);
    glBindTexture(GL_TEXTURE_2D, m_id);
    if (!can.generateMipmap) glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, GL_TRUE);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glTexImage2D(GL_TEXTURE_2D, 0, IsOpaque(source) ? GL_RGB8 : GL_RGBA8, width, height, 0, GL_RGBA,
                 GL_UNSIGNED_BYTE, source.rgba.data());
    if (can.generateMipmap) glGenerateMipmap(GL_TEXTURE_2D);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, Name(wrap));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, Name(wrap));
    m_bytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4 * 4 / 3;
    m_anisotropy = can.software ? 1 : std::min(kAnisotropy, can.maxAnisotropy);
    m_filter = ETextureFilter::Nearest;
    Bind(gl, 0, ETextureFilter::Trilinear);
}

void CGlTexture::Bind(CGlCurrent&, int unit, ETextureFilter filter) {
    glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
    glBindTexture(GL_TEXTURE_2D, m_id);
    if (filter == m_filter || m_id == 0) return;
    m_filter = filter;
    const bool nearest = filter == ETextureFilter::Nearest;
    const bool trilinear = filter == ETextureFilter::Trilinear;
    const GLint minify = nearest ? GL_NEAREST : trilinear ? GL_LINEAR_MIPMAP_LINEAR : GL_LINEAR;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, minify);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, nearest ? GL_NEAREST : GL_LINEAR);
    if (m_anisotropy > 1) {
        glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAX_ANISOTROPY_EXT, trilinear ? m_anisotropy : 1.0f);
    }
}

void CGlTexture::SetBorder(CGlCurrent&, const std::array<float, 4>& color) {
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_BORDER);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_BORDER);
    glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, color.data());
}
