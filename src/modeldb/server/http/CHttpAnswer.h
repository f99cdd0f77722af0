// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "files/CFileDescriptor.h"

/** A stretch of a file as an answer's body, sent without a copy through the process. The file's own position does not move, so
 * many answers may share one descriptor. It must not be cut shorter meanwhile: the client then gets a closed
 * connection instead of the rest. */
struct CHttpFile {
    std::shared_ptr<const CFileDescriptor> file;  ///< shared by all answers that it is sent in
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
};

/** What a client is told. The server adds Date, Server, Content-Length and Connection; everything else is in headers. */
struct CHttpAnswer {
    int status = 200;         ///< 200..599
    std::string contentType;  ///< empty: no such field
    /** Further fields. A name or value that holds a control character makes the answer a 500. */
    std::vector<std::pair<std::string, std::string>> headers;
    /** The body; the text is shared with caches. To a HEAD request give the same as to a GET: its length is told, its bytes
     * are not sent. With 204 and 304 no body is sent, whatever stands here. */
    std::variant<std::monostate, std::shared_ptr<const std::string>, CHttpFile> body;

    /** A whole answer of a text. */
    [[nodiscard]] static CHttpAnswer OfText(int status, std::string contentType, std::string text) {
        CHttpAnswer answer{status, std::move(contentType), {}, {}};
        answer.body = std::make_shared<const std::string>(std::move(text));
        return answer;
    }
};
