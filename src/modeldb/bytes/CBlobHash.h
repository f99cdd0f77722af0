// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

struct evp_md_ctx_st;

/** The SHA-256 of bytes: their name wherever they are kept or sent. */
struct CBlobHash {
    std::array<std::byte, 32> bytes{};

    auto operator<=>(const CBlobHash&) const = default;

    [[nodiscard]] static CBlobHash Of(std::span<const std::byte> content);
    /** Of 32 bytes, as a database has them. */
    [[nodiscard]] static std::optional<CBlobHash> FromBytes(std::span<const std::byte> hash);
    /** 64 hexadecimal digits, lower case when written. */
    [[nodiscard]] std::string ToHex() const;
    [[nodiscard]] static std::optional<CBlobHash> FromHex(std::string_view text);
};

/** Compares in a time that does not tell where they differ. */
[[nodiscard]] bool EqualInConstantTime(const CBlobHash& a, const CBlobHash& b);

/** Makes the hash of bytes that come in pieces. */
class CBlobHasher {
  public:
    CBlobHasher();
    void Add(std::span<const std::byte> piece);
    /** The hash of all that was added; the next one begins anew. */
    [[nodiscard]] CBlobHash Finish();

  private:
    struct CDeleter {
        void operator()(evp_md_ctx_st* context) const;
    };
    std::unique_ptr<evp_md_ctx_st, CDeleter> m_context;
};
