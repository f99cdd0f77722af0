// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "modeldb/records/store_records.h"

/** What the protocol between a client and a server of models fixes, and how much of what the other side sends is believed.
 * docs/model-protocol.md tells it to those who write another client. Lengths of texts are those of store_limits. */
namespace wire_limits {

constexpr std::string_view kProtocol = "1.5";
constexpr std::string_view kUploadType = "application/vnd.orbivue.model";
constexpr std::string_view kJsonType = "application/json";

// --- what clients send ---------------------------------------------------------------------------------------
constexpr std::size_t kTarget = 4096;        ///< bytes of path and query
constexpr std::size_t kHeadBytes = 1 << 20;  ///< of an upload's head
constexpr std::size_t kVersionText = 40;     ///< a client's version
constexpr std::size_t kSearchText = 400;
constexpr std::size_t kPageModels =
    1000;  ///< of a page whose limit is not given; the most is store_limits::kPageModels
constexpr std::size_t kFound = 1000;  ///< the most of a search
constexpr std::uint64_t kUploadBytes =
    64 << 20;  ///< of a whole body, unless a server's owner chooses another number

// --- what servers send ---------------------------------------------------------------------------------------
constexpr std::size_t kGroups = 100'000;          ///< of one list
constexpr std::size_t kSmallBody = 64 << 10;      ///< version, one group, an upload's answer, an error
constexpr std::size_t kModelBody = 8 << 20;       ///< one model
constexpr std::size_t kListBody = 32 << 20;       ///< groups, a page, what a search found
constexpr std::size_t kMessage = 1000;            ///< an error's sentence
constexpr std::size_t kProtocols = 100;           ///< that a server speaks
constexpr std::uint64_t kPreviewBytes = 4 << 20;  ///< a preview's picture

}  // namespace wire_limits
