// SPDX-License-Identifier: MIT
#pragma once

#include <cassert>
#include <string>
#include <utility>
#include <variant>

/** Why an operation failed. The code is for programs, the message for people. */
enum class EErrorCode {
    NotFound,     ///< no file, entry or object of that name
    Unreadable,   ///< it exists, but the system does not let us read it
    BadFormat,    ///< the bytes are not what they should be
    Unsupported,  ///< well formed, but of a kind that we do not read
    TooLarge,     ///< over one of our limits
    WriteFailed,  ///< not all bytes could be written
    NoGraphics,   ///< no OpenGL context can be had
    BadArgument,  ///< the caller passed invalid values
    Cancelled,    ///< the caller or the user cancelled it
    Exists,       ///< something else has the name or the key already
    Busy,         ///< not now: others hold it, or it cannot be reached; a later try may succeed
    NoSpace,      ///< the disk is full
};

/** One failure. lng::Text gives its line in the current language. */
struct CError {
    EErrorCode code = EErrorCode::BadFormat;
    std::string message;  ///< one line: our own literal, marked by lng::Mark, or the text of a library
    std::string where;    ///< the path, file entry or object concerned; may be empty

    /** One line of English: "where: message", or the message alone when there is no place. */
    [[nodiscard]] std::string Text() const { return where.empty() ? message : where + ": " + message; }
};

/** A value, or the CError that explains why there is none. Never empty. */
template <class T>
class [[nodiscard]] CResult {
  public:
    CResult(T value)
        : m_state(std::in_place_index<0>, std::move(value)) {}  // NOLINT(google-explicit-constructor)
    CResult(CError error)
        : m_state(std::in_place_index<1>, std::move(error)) {}  // NOLINT(google-explicit-constructor)

    [[nodiscard]] bool HasValue() const { return m_state.index() == 0; }
    explicit operator bool() const { return HasValue(); }

    /** The value; calling it on a failure is a programming error. */
    [[nodiscard]] T& Value() & {
        assert(HasValue());
        return *std::get_if<0>(&m_state);
    }
    [[nodiscard]] const T& Value() const& {
        assert(HasValue());
        return *std::get_if<0>(&m_state);
    }
    [[nodiscard]] T&& Value() && {
        assert(HasValue());
        return std::move(*std::get_if<0>(&m_state));
    }
    /** The failure; calling it on a value is a programming error. */
    [[nodiscard]] const CError& Error() const {
        assert(!HasValue());
        return *std::get_if<1>(&m_state);
    }

  private:
    std::variant<T, CError> m_state;
};

/** For operations that succeed without a value. */
struct CDone {};
using CStatus = CResult<CDone>;
