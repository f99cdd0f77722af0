// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

class CGlCurrent;

/** One buffer object with its data. Move-only; empty until filled. Destroyed while its context is current. */
class CGlBuffer {
  public:
    enum class ETarget { Vertices, Indices };
    enum class EUsage { Static, Stream };

    CGlBuffer() = default;
    CGlBuffer(CGlBuffer&& other) noexcept;
    CGlBuffer& operator=(CGlBuffer&& other) noexcept;
    ~CGlBuffer();

    /** Replaces the buffer's data by a copy of these bytes. Leaves the buffer bound. */
    void Fill(CGlCurrent& gl, ETarget target, const void* data, std::size_t bytes,
              EUsage usage = EUsage::Static);
    /** Binds the buffer; an empty one unbinds the target. */
    void Bind(CGlCurrent& gl, ETarget target) const;

    [[nodiscard]] bool IsEmpty() const { return m_id == 0; }
    [[nodiscard]] std::size_t Bytes() const { return m_bytes; }

  private:
    unsigned m_id = 0;
    std::size_t m_bytes = 0;
};
