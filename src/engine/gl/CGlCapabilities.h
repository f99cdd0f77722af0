// SPDX-License-Identifier: MIT
#pragma once

class CGlCurrent;

/** What the current context can do; asked once, as the answers never change for a context. */
struct CGlCapabilities {
    int version = 10;             ///< ten times major plus minor: 21 is OpenGL 2.1
    bool shaders = false;         ///< GLSL 1.20
    bool framebuffers = false;    ///< framebuffer objects with multisampling and blits
    bool anyTextureSize = false;  ///< sides need not be powers of two
    bool generateMipmap = false;  ///< glGenerateMipmap exists
    bool fences = false;          ///< glFenceSync exists
    bool memoryInPlace = false;   ///< software that reads buffers where they lie, without a copy
    bool software = false;        ///< drawn by the processor: costly filters do not pay
    int maxTextureSize = 64;
    float maxAnisotropy = 1;  ///< 1: no anisotropic filtering

    [[nodiscard]] static CGlCapabilities Query(CGlCurrent& gl);
};
