// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "base/CResult.h"

class CGlCurrent;

/** One linked GLSL program. Move-only; empty by default. Destroyed while its context is current. */
class CGlProgram {
  public:
    CGlProgram() = default;
    CGlProgram(CGlProgram&& other) noexcept;
    CGlProgram& operator=(CGlProgram&& other) noexcept;
    ~CGlProgram();

    /** Compiles and links; a failure carries the compiler's own text. */
    [[nodiscard]] static CResult<CGlProgram> Build(CGlCurrent& gl, const std::string& vertex,
                                                   const std::string& fragment);

    void Use(CGlCurrent& gl) const;
    /** -1 for a uniform that the program does not have; setting that one does nothing. */
    [[nodiscard]] int Uniform(CGlCurrent& gl, const char* name) const;
    [[nodiscard]] bool IsEmpty() const { return m_id == 0; }

  private:
    unsigned m_id = 0;
};
