// SPDX-License-Identifier: MIT
#include "modeldb/bytes/CBlobHash.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <algorithm>
#include <new>

#include "modeldb/bytes/hex_text.h"

CBlobHash CBlobHash::Of(std::span<const std::byte> content) {
    CBlobHasher hasher;
    hasher.Add(content);
    return hasher.Finish();
}

std::optional<CBlobHash> CBlobHash::FromBytes(std::span<const std::byte> hash) {
    CBlobHash result;
    if (hash.size() != result.bytes.size()) return std::nullopt;
    std::ranges::copy(hash, result.bytes.begin());
    return result;
}

std::string CBlobHash::ToHex() const {
    return hex_text::Write(bytes);
}

std::optional<CBlobHash> CBlobHash::FromHex(std::string_view text) {
    CBlobHash result;
    if (!hex_text::Read(text, result.bytes)) return std::nullopt;
    return result;
}

bool EqualInConstantTime(const CBlobHash& a, const CBlobHash& b) {
    return CRYPTO_memcmp(a.bytes.data(), b.bytes.data(), a.bytes.size()) == 0;
}

void CBlobHasher::CDeleter::operator()(evp_md_ctx_st* context) const {
    EVP_MD_CTX_free(context);
}

// Of these calls only lack of memory is to be expected.
CBlobHasher::CBlobHasher() : m_context(EVP_MD_CTX_new()) {
    if (!m_context || EVP_DigestInit_ex(m_context.get(), EVP_sha256(), nullptr) != 1) throw std::bad_alloc();
}

void CBlobHasher::Add(std::span<const std::byte> piece) {
    if (EVP_DigestUpdate(m_context.get(), piece.data(), piece.size()) != 1) throw std::bad_alloc();
}

CBlobHash CBlobHasher::Finish() {
    CBlobHash hash;
    if (EVP_DigestFinal_ex(m_context.get(), reinterpret_cast<unsigned char*>(hash.bytes.data()), nullptr) !=
            1 ||
        EVP_DigestInit_ex(m_context.get(), EVP_sha256(), nullptr) != 1)
        throw std::bad_alloc();
    return hash;
}
