// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "base/math/CVec.h"

/** Builds POV-Ray text. Numbers do not depend on the locale. New memory is not cleared, because the text of a
 * large scene has a hundred megabytes. */
class CPovText {
  public:
    CPovText& operator<<(std::string_view text);
    CPovText& operator<<(char c);
    CPovText& operator<<(std::uint32_t value);
    /** Appends the shortest text that reads back as the same value; 0 for a value that is not finite. */
    CPovText& operator<<(float value);
    CPovText& operator<<(double value);
    /** "<x,y,z>" */
    CPovText& operator<<(CVec3 v);

    /** Appends value / 10^decimals without superfluous zeros: -1250 with 3 decimals is "-1.25", 0 is "0". */
    void AppendFixed(std::int64_t value, int decimals);
    /** Appends a vector "<a,b,...>" of such values. */
    template <std::size_t N>
    void AppendFixedVector(const std::array<std::int64_t, N>& values, int decimals) {
        *this << '<';
        for (std::size_t i = 0; i < N; ++i) {
            if (i > 0) *this << ',';
            AppendFixed(values[i], decimals);
        }
        *this << '>';
    }
    /** "<a,b,c>" */
    void AppendIndices(std::uint32_t a, std::uint32_t b, std::uint32_t c);

    [[nodiscard]] std::string_view View() const { return {m_text.get(), m_size}; }
    [[nodiscard]] std::string String() const { return std::string(View()); }
    void Clear() { m_size = 0; }

  private:
    /** Makes room for count more characters; returns where they go. */
    char* Reserve(std::size_t count);

    std::unique_ptr<char[]> m_text;
    std::size_t m_size = 0, m_capacity = 0;
};

namespace pov_text {

/** A name of the scene for a line comment, in ASCII. Characters that could end or begin a comment, a line or
 * a string are percent-escaped; long names are cut. */
[[nodiscard]] std::string CommentText(std::string_view name);

/** A file name of ASCII letters, digits and '_', never empty, for any base name. If characters were replaced,
 * it ends in a hash of the name, so different names almost certainly stay different. */
[[nodiscard]] std::string FileStem(std::string_view name);

/** The text of a value, or of a vector. */
template <class T>
[[nodiscard]] std::string Of(T value) {
    CPovText text;
    text << value;
    return text.String();
}

}  // namespace pov_text
