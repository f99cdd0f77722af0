// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "base/CResult.h"
#include "picture/CImage.h"

class CGlCurrent;

/** An OpenGL context (compatibility profile) without a window, drawing into a picture in memory. It needs no
 * display server: EGL's surfaceless platform, then its device platform, then its default display are tried.
 *
 * Move-only. One thread uses it at a time, and each thread has at most one context current. */
class COffscreenContext {
  public:
    /** samples: per pixel, 0 or 1 for no multisampling, at most as many as the context has. On success the
     * context is current in this thread. */
    [[nodiscard]] static CResult<COffscreenContext> Create(int width, int height, int samples = 0);

    COffscreenContext(COffscreenContext&&) noexcept;
    COffscreenContext& operator=(COffscreenContext&&) noexcept;
    ~COffscreenContext();

    /** Makes it current in this thread and its picture the target of drawing, with a viewport of
     * the whole picture. */
    CGlCurrent& MakeCurrent();
    /** Changes size and samples; the picture's content is lost. On failure the old picture stays. */
    [[nodiscard]] CStatus Resize(int width, int height, int samples);
    /** What was drawn, samples averaged, alpha as drawn. */
    [[nodiscard]] CResult<CImage> ReadPixels();

    [[nodiscard]] int Width() const;
    [[nodiscard]] int Height() const;
    [[nodiscard]] int Samples() const;
    /** The renderer's name as the driver gives it. */
    [[nodiscard]] std::string RendererName() const;

  private:
    struct CState;
    explicit COffscreenContext(std::unique_ptr<CState> state);
    std::unique_ptr<CState> m_state;
};
