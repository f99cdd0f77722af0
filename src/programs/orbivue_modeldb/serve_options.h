// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/** How "serve" listens, and what it allows. */
struct CServeOptions {
    std::vector<std::string> addresses = {"127.0.0.1", "::1"};  ///< numeric
    int port = 8095;                                            ///< 0: one that the system chooses
    std::vector<std::string> trustedProxies;                    ///< numeric
    bool isPrivate = false, hasOpenUploads = false, drawsNoPreviews = false, isQuiet = false;
    std::string baseUrl, cacheFolder;
    std::uint64_t cacheBytes = 4ULL << 30;
    std::uint64_t uploadBytes = 64ULL << 20;
    std::uint64_t groupModels = 100'000;
    double uploadsPerMinute = 120;
    unsigned workers = 4, threads = 2;
    std::size_t connections = 4096;
};

/** Values of options for "serve": each function gives what is wrong with its value, or nothing. */
namespace serve_options {

using COutcome = std::optional<std::string>;

/** "PORT", "ADDRESS:PORT", "[ADDRESS]:PORT" or several with a comma between, of one port. A port alone is that of the loopback
 * addresses, and so is "localhost". */
[[nodiscard]] COutcome SetListen(CServeOptions& options, std::string_view value);
/** Addresses with commas between. */
[[nodiscard]] COutcome SetProxies(CServeOptions& options, std::string_view value);
[[nodiscard]] COutcome SetBaseUrl(CServeOptions& options, std::string_view value);
/** A number of bytes; K, M or G behind it are powers of 1024. */
[[nodiscard]] COutcome SetBytes(std::uint64_t& bytes, std::string_view value, std::uint64_t least,
                                std::uint64_t most);
[[nodiscard]] COutcome SetNumber(std::uint64_t& number, std::string_view value, std::uint64_t least,
                                 std::uint64_t most);

/** What is wrong with options together: whoever listens to others must not let everybody upload. */
[[nodiscard]] COutcome CheckTogether(const CServeOptions& options);

}  // namespace serve_options
