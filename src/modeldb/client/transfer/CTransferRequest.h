// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "modeldb/bytes/byte_stream.h"

enum class ETransferMethod { Get, Head, Post };

/** What is sent behind a request's headers. */
struct CTransferBody {
    CByteSource* bytes = nullptr;  ///< null: nothing
    std::uint64_t size = 0;        ///< exactly so many come
    std::function<void()> rewind;  ///< has the bytes begin anew, for a connection that turns out to be closed
};

struct CTransferRequest {
    std::string url;  ///< http or https
    ETransferMethod method = ETransferMethod::Get;
    std::vector<std::string> headers;  ///< "Name: value", texts of ours
    std::string token;                 ///< printable ASCII; "" for none
    CTransferBody body;
    std::uint64_t mostBytes = 0;            ///< of the answer's body
    std::chrono::milliseconds deadline{0};  ///< for all of it
};

/** The beginning of an answer, nothing of which is trusted. */
struct CTransferHead {
    int status = 0;
    std::optional<std::uint64_t> length;  ///< of the body, where it is announced
    std::string contentRange;
};

/** How a request was answered. Answers that are no success (2xx) are values, too. */
struct CTransferAnswer {
    CTransferHead head;
    std::string errorBody;  ///< of an answer that is no success: its first 64 KiB

    [[nodiscard]] bool IsSuccess() const { return head.status >= 200 && head.status < 300; }
};

/** What a transfer tells its caller, on the caller's thread. A failure of OnHead or OnBytes ends the transfer and is what
 * its caller gets. */
class CTransferWatcher {
  public:
    /** A success begins. Not called for other answers. */
    [[nodiscard]] virtual CStatus OnHead(const CTransferHead& head) = 0;
    /** Bytes of the body of a success. */
    [[nodiscard]] virtual CStatus OnBytes(std::span<const std::byte> piece) = 0;
    /** So many bytes of the request's body are on their way. */
    virtual void OnSent(std::uint64_t total) = 0;
    /** Asked several times a second; false ends the transfer with Cancelled. */
    [[nodiscard]] virtual bool DoContinue() = 0;

  protected:
    ~CTransferWatcher() = default;
};

/** How long a server may keep us waiting. */
struct CTransferTimes {
    std::chrono::milliseconds connect{5'000};
    std::chrono::milliseconds silence{30'000};  ///< since the last byte, of headers too, in either direction
};
