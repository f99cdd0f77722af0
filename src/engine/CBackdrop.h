// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "engine/gl/CGlTexture.h"

class CGlCurrent;
struct CImage;

/** Draws a picture behind a scene: it covers the viewport, as CoverWithPicture describes, blended by its alpha with
 * what is there. It is scaled and uploaded once for each size of the viewport. Restores all OpenGL state. */
class CBackdrop {
  public:
    /** image: shared with the seen views that show it; null draws nothing and frees the texture. */
    void Draw(CGlCurrent& gl, const std::shared_ptr<const CImage>& image);
    /** The picture drawn last, into a smaller viewport for a while. */
    void DrawReduced(CGlCurrent& gl);
    /** Deletes the texture. */
    void Clear(CGlCurrent& gl);

  private:
    void Fit(CGlCurrent& gl, const std::shared_ptr<const CImage>& image, int width, int height);
    void DrawTexture(CGlCurrent& gl, ETextureFilter filter);

    std::shared_ptr<const CImage>
        m_image;  ///< that the texture was made of; held, so that its address stays its own
    int m_width = 0, m_height = 0;
    CGlTexture m_texture;
    bool m_hasShaders = false;
    bool m_isOpaque = false;
    bool m_isExact = false;  ///< a texel for each pixel
};
