// SPDX-License-Identifier: MIT
#include "view/ui/view_hint.h"

#include <GL/gl.h>

#include <array>

#include "picture/CImage.h"
#include "view/ui/CGlAttribGuard.h"

void DrawViewHint(const CImage& hint) {
    std::array<int, 4> viewport{};
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    DrawOverView(hint, (viewport[2] - hint.width) / 2, (viewport[3] - hint.height) / 2);
}

void DrawOverView(const CImage& picture, int left, int top) {
    if (picture.IsEmpty()) return;
    const CGlAttribGuard attributes;
    std::array<int, 4> viewport{};
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    const CGlMatrixGuard projection(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0, viewport[2], viewport[3], 0, -1, 1);
    const CGlMatrixGuard modelView(GL_MODELVIEW);
    glLoadIdentity();
    glDisable(GL_DEPTH_TEST);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    // A raster position outside the view is invalid and draws nothing; so it starts inside and is moved
    // with glBitmap.
    glRasterPos2i(0, 0);
    glBitmap(0, 0, 0, 0, static_cast<float>(left), -static_cast<float>(top), nullptr);
    glPixelZoom(1, -1);
    glDrawPixels(picture.width, picture.height, GL_RGBA, GL_UNSIGNED_BYTE, picture.rgba.data());
}
