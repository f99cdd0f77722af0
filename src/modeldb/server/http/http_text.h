// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "modeldb/server/http/CHttpAnswer.h"

/** What an answer's head needs beside the answer. */
struct CAnswerHeadFacts {
    std::string_view date;        ///< of the field Date
    std::string_view serverName;  ///< empty: no field Server
    bool closes = false;
    bool namesKeepAlive = false;  ///< HTTP/1.0 clients want to be told
};

/** The bytes that the body has, sent or not. */
[[nodiscard]] std::uint64_t BodyBytesOf(const CHttpAnswer& answer);
/** True where HTTP allows no body: 1xx, 204, 304. */
[[nodiscard]] bool HasNoBody(int status);
/** False for an answer that would break the protocol: a status out of range, control characters in a header, fields that
 * are the server's own, a file that is not open. */
[[nodiscard]] bool CanBeSent(const CHttpAnswer& answer);
/** Appends status line and header fields with their empty line. */
void AppendAnswerHead(std::string& out, const CHttpAnswer& answer, const CAnswerHeadFacts& facts);
/** The time as the field Date has it ("Sun, 06 Nov 1994 08:49:37 GMT"). secondsSinceEpoch: from 1970 on. */
[[nodiscard]] std::string HttpDate(std::int64_t secondsSinceEpoch);

/** One request, for the log. */
struct CLoggedRequest {
    std::int64_t microsecondsSinceEpoch = 0;
    std::uint64_t id = 0;
    std::string_view peer, method, target;
    int status = 0;
    std::uint64_t receivedBytes = 0, sentBytes = 0;
    double milliseconds = 0;
};
/** Appends one line of JSON without its end. The target is escaped and cut after 200 bytes, and the value of a query's field
 * whose name holds "token" or "password" is left out. */
void AppendLogLine(std::string& out, const CLoggedRequest& request);
