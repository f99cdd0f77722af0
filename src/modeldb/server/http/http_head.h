// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "modeldb/server/http/CHttpRequest.h"

/** Finds the end of a request's head in bytes as they come, and sees at once what no head may hold. */
class CHeadScan {
  public:
    enum class EState { Partial, Whole, Malformed };

    /** text: all bytes since the head's first; what was looked at before is not looked at again. Malformed: control
     * characters, a line that does not end in CR LF, a continued line (obs-fold). */
    [[nodiscard]] EState Look(std::string_view text);
    /** After Whole: the bytes of the head, its empty line included. */
    [[nodiscard]] std::size_t HeadBytes() const { return m_at; }

  private:
    std::size_t m_at = 0;
    bool m_inLine = false;  // a byte of the line was seen
    bool m_sawReturn = false;
};

/** Why a head is refused. */
struct CHeadFault {
    int status = 400;
    const char* why = "";
};

/** A head, and what of it is the connection's business. */
struct CHttpHead {
    CHttpRequest request;
    std::string methodText;    ///< as sent
    std::string forwardedFor;  ///< the last X-Forwarded-For
    bool keepAlive = false;
    bool isHttp10 = false;
    bool hasLength = false;
    bool expectsContinue = false;
};

/** Parses a whole head. A fault for everything that another reader might read otherwise: two lengths, a length beside a transfer
 * coding, a length that is not all digits, repeated fields that mean one thing, targets that are no path. */
[[nodiscard]] std::optional<CHeadFault> ParseHead(std::string_view text, CHttpHead& head);
