// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>

class CGlCurrent;
struct CGlCapabilities;
struct CImage;

enum class ETextureWrap { Repeat, Mirror, Clamp };
enum class ETextureFilter { Trilinear, Bilinear, Nearest };

/** One two-dimensional texture with all its mipmap levels. Move-only; empty until filled. Its first row is
 * the picture's top row: callers mirror v, which saves a copy of the picture. Destroyed while its context
 * is current. */
class CGlTexture {
  public:
    CGlTexture() = default;
    CGlTexture(CGlTexture&& other) noexcept;
    CGlTexture& operator=(CGlTexture&& other) noexcept;
    ~CGlTexture();

    /** Uploads a picture, scaled down where the context cannot hold it. An empty picture
     * leaves it as it is. */
    void Fill(CGlCurrent& gl, const CGlCapabilities& can, const CImage& image, ETextureWrap wrap);
    /** Binds it to a texture unit, which becomes the active one, and sets the filter if it was another. */
    void Bind(CGlCurrent& gl, int unit, ETextureFilter filter);
    /** The colour beside a clamped picture for the fixed pipeline: red, green, blue, alpha, 0..1. The texture
     * must be bound. */
    void SetBorder(CGlCurrent& gl, const std::array<float, 4>& color);

    [[nodiscard]] bool IsEmpty() const { return m_id == 0; }
    [[nodiscard]] std::size_t Bytes() const { return m_bytes; }

  private:
    unsigned m_id = 0;
    std::size_t m_bytes = 0;
    ETextureFilter m_filter = ETextureFilter::Trilinear;
    float m_anisotropy = 1;
};

/** Scales a picture to a size by averaging; up only to the next power of two. Public for its test. */
[[nodiscard]] CImage ResizeForTexture(const CImage& image, int width, int height);
