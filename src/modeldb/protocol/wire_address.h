// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "base/CResult.h"
#include "modeldb/bytes/CBlobHash.h"
#include "modeldb/protocol/wire_limits.h"
#include "modeldb/records/store_records.h"

/** How bytes are asked for. */
enum class EBlobForm {
    Plain,   ///< the bytes themselves
    Stored,  ///< as they are kept, where they are kept as a zstd frame; other bytes have no such address
};

// What the addresses of a server name. API:
struct CVersionAddress {
    std::string client;  ///< the version that the client speaks
};
struct CGroupsAddress {};
struct CGroupAddress {
    std::string name;
};
struct CModelsAddress {
    std::int64_t groupId = 0;
    std::optional<CPagePlace> after;
    std::size_t limit = wire_limits::kPageModels;  ///< 1 to store_limits::kPageModels
};
struct CUploadAddress {};  ///< takes POST alone
struct CModelAddress {
    std::uint32_t key = 0;
};
struct CSearchAddress {
    std::string text;          ///< not empty
    std::int64_t groupId = 0;  ///< 0: all groups
    std::size_t limit = wire_limits::kFound;
};
struct CBlobAddress {
    CBlobHash hash;
    EBlobForm form = EBlobForm::Plain;
};
struct CHealthAddress {};
struct CMetricsAddress {};
// Web pages:
struct CHomePage {};
struct CGroupPage {
    std::int64_t groupId = 0;
    std::optional<CPagePlace> after;
};
struct CModelPage {
    std::uint32_t key = 0;
};
struct CModelView {
    std::uint32_t key = 0;
};
struct CSearchPage {
    std::string text;  ///< may be empty
};
struct CSiteFile {
    std::string name;  ///< letters, digits, "-", "_" and single dots inside; no path
};

using CWireAddress =
    std::variant<CVersionAddress, CGroupsAddress, CGroupAddress, CModelsAddress, CUploadAddress,
                 CModelAddress, CSearchAddress, CBlobAddress, CHealthAddress, CMetricsAddress, CHomePage,
                 CGroupPage, CModelPage, CModelView, CSearchPage, CSiteFile>;

/** The addresses of a server of models, below the server's own: path and query, beginning with "/". The texts in an
 * address may be any valid UTF-8. */
namespace wire_address {

/** The path and query of an address. Reading it gives the same again, as long as its texts keep to their limits. */
[[nodiscard]] std::string Write(const CWireAddress& address);

/** What a request's target names. NotFound: nothing has this address; BadArgument, with a sentence for the client: a
 * parameter is missing, comes twice, is too long or no valid text or number, or the target is ill-formed. Parameters that nobody
 * knows are refused, but at web pages and at the version's address, where they mean nothing. */
[[nodiscard]] CResult<CWireAddress> Read(std::string_view target);

/** The methods that an address takes, as the header "Allow" has them: "GET, HEAD". */
[[nodiscard]] std::string_view MethodsOf(const CWireAddress& address);

/** The strong ETag of bytes, with its quotation marks. */
[[nodiscard]] std::string BlobTag(const CBlobHash& hash, EBlobForm form);

/** The address of a server as requests are put behind it: without "/" at its end. BadArgument unless it is
 * http://HOST or https://HOST with, perhaps, a port and a path; it has no user, query and fragment, and at most 1,000 bytes. */
[[nodiscard]] CResult<std::string> CheckServer(std::string_view address);

}  // namespace wire_address
