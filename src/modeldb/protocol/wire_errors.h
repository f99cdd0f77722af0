// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "base/CResult.h"

/** A way in which a request fails: what it is on the wire and what its client makes of it. */
struct CWireErrorKind {
    int status = 500;
    EErrorCode error;          ///< for the client
    std::string_view code;     ///< in the body, for programs
    std::string_view message;  ///< in the body, where the server knows nothing better
    bool explains = false;     ///< what the server writes tells people more than the message
};

/** Requests that fail: {"error":{"code":"exists","message":"..."}}. */
namespace wire_errors {

/** All of them, by status; each status once. */
[[nodiscard]] std::span<const CWireErrorKind> Kinds();
/** That of a status; for one that the table lacks that of 400 (below 500) or 500. */
[[nodiscard]] const CWireErrorKind& KindOf(int status);
/** The status for a failure of the store. */
[[nodiscard]] int StatusOf(EErrorCode error);
/** The status for a failure of CUploadBodyReader. */
[[nodiscard]] int StatusOfUpload(EErrorCode error);

/** The body for a status. The message is a sentence for people; empty: the table's. Control characters and bytes that
 * are no text become "?", and it is cut at wire_limits::kMessage. */
[[nodiscard]] std::string Write(int status, std::string_view message = {});
/** What a client makes of an answer whose status is no success: the table's message, which can be translated, unless the
 * server explains itself. The body may be anything, also a proxy's page. What is taken from it is one line without control
 * characters. */
[[nodiscard]] CError Read(int status, std::string_view body);

}  // namespace wire_errors
