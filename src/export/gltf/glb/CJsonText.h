// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/** Writes JSON from the first byte to the last, without blanks. The caller sees to it that what is begun is ended, and
 * that a key stands before each value of an object. Numbers do not follow the locale; one that is not finite is
 * written as 0. Texts must be well-formed UTF-8. */
class CJsonText {
  public:
    CJsonText& BeginObject() { return Begin('{'); }
    CJsonText& EndObject() { return End('}'); }
    CJsonText& BeginArray() { return Begin('['); }
    CJsonText& EndArray() { return End(']'); }
    CJsonText& Key(std::string_view key);

    CJsonText& Value(std::string_view text);
    CJsonText& Value(const char* text) { return Value(std::string_view(text)); }
    CJsonText& Value(bool value);
    CJsonText& Value(std::int64_t value);
    CJsonText& Value(std::uint64_t value) { return Value(static_cast<std::int64_t>(value)); }
    CJsonText& Value(int value) { return Value(static_cast<std::int64_t>(value)); }
    /** The shortest text that reads back as the same float. */
    CJsonText& Value(float value);
    /** With nine digits, as accessors state their bounds: some readers compare the texts' doubles. */
    CJsonText& ValueOfNineDigits(double value);
    /** An array of numbers. */
    CJsonText& Value(std::span<const float> values);

    template <class T>
    CJsonText& Member(std::string_view key, const T& value) {
        return Key(key).Value(value);
    }
    /** A value that is JSON already. */
    CJsonText& Raw(std::string_view json);

    [[nodiscard]] const std::string& Text() const { return m_text; }
    [[nodiscard]] bool IsEmpty() const { return m_text.empty(); }

  private:
    CJsonText& Begin(char bracket);
    CJsonText& End(char bracket);
    void Separate();

    std::string m_text;
    bool m_needsComma = false;
};
