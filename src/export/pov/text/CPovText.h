// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "base/math/CVec.h"

/** POV-Ray text that is being built: appends without the locale and without clearing memory first, as a large
 * scene is a hundred megabytes of small numbers. */
class CPovText {
  public:
    CPovText& operator<<(std::string_view text);
    CPovText& operator<<(char c);
    CPovText& operator<<(std::uint32_t value);
    /** The shortest text that reads back as the same value; what is not finite is 0. */
    CPovText& operator<<(float value);
    CPovText& operator<<(double value);
    /** "<x,y,z>" */
    CPovText& operator<<(CVec3 v);

    /** value / 10^decimals without zeros at either end: -1250 with 3 decimals is "-1.25", 0 is "0". */
    void AppendFixed(std::int64_t value, int decimals);
    /** "<a,b,c>" of such values, as many as there are. */
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
    /** Room for that many more characters. */
    char* Reserve(std::size_t count);

    std::unique_ptr<char[]> m_text;
    std::size_t m_size = 0, m_capacity = 0;
};

namespace pov_text {

/** A name of the scene as it may stand in a line comment: ASCII, what could end or begin a comment, a line or
 * a text is percent-escaped, long ones are cut. */
[[nodiscard]] std::string CommentText(std::string_view name);

/** A file name of ASCII letters, digits and '_' alone, never empty, for any base name. Names that differ stay
 * different as good as surely: what was replaced goes into a number at the end. */
[[nodiscard]] std::string FileStem(std::string_view name);

/** The text of a value, or of a vector. */
template <class T>
[[nodiscard]] std::string Of(T value) {
    CPovText text;
    text << value;
    return text.String();
}

}  // namespace pov_text
