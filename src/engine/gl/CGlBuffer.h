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
    /** Has the driver read these bytes where they lie. They must stay there until the buffer is filled again or destroyed, and
     * must not change while it is drawn from. Needs CGlCapabilities::memoryInPlace; where the driver refuses, they are
     * copied. Leaves the buffer bound. */
    void FillInPlace(CGlCurrent& gl, ETarget target, const void* data, std::size_t bytes);
    /** Binds the buffer; an empty one unbinds the target. */
    void Bind(CGlCurrent& gl, ETarget target) const;

    [[nodiscard]] bool IsEmpty() const { return m_id == 0; }
    [[nodiscard]] std::size_t Bytes() const { return m_bytes; }

  private:
    unsigned m_id = 0;
    std::size_t m_bytes = 0;
};
