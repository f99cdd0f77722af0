// SPDX-License-Identifier: MIT
#include "modeldb/client/transfer/CTransferExchange.h"

#include <algorithm>
#include <charconv>

#include "base/text/ascii_text.h"
#include "base/text/lng.h"

using lng::Mark;

namespace {

constexpr std::uint64_t kMostHeaderBytes = 64 << 10;  ///< of all answers to one request, with interim ones
constexpr std::size_t kMostErrorBytes = 64 << 10;

/** What stands behind "Name:", if the line is that header. */
std::optional<std::string_view> ValueOf(std::string_view line, std::string_view name) {
    if (line.size() <= name.size() || line[name.size()] != ':') return std::nullopt;
    if (!ascii_text::EqualNoCase(line.substr(0, name.size()), name)) return std::nullopt;
    line.remove_prefix(name.size() + 1);
    const std::size_t first = line.find_first_not_of(" \t");
    const std::size_t last = line.find_last_not_of(" \t\r\n");
    return first == std::string_view::npos ? std::string_view() : line.substr(first, last + 1 - first);
}

template <class T>
std::optional<T> NumberOf(std::string_view text) {
    T number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

}  // namespace

bool CTransferExchange::Fail(CError error) {
    if (!m_failure) m_failure = std::move(error);
    return false;
}

bool CTransferExchange::TakeHeader(std::string_view line) {
    m_lastByte = CClock::now();
    m_headerBytes += line.size();
    if (m_headerBytes > kMostHeaderBytes)
        return Fail({EErrorCode::TooLarge, Mark("the server sends more than was expected"), {}});
    if (m_isHeadComplete) return true;  // behind a body in chunks
    if (line.starts_with("HTTP/"))
        m_answer.head = {
            NumberOf<int>(line.substr(std::min(line.find(' ') + 1, line.size()), 3)).value_or(0), {}, {}};
    else if (line == "\r\n" || line == "\n")
        return m_answer.head.status < 200 || EndHead();  // else the answer proper is still to come
    else
        ReadHeader(line);
    return true;
}

void CTransferExchange::ReadHeader(std::string_view line) {
    if (const auto length = ValueOf(line, "Content-Length"))
        m_answer.head.length = NumberOf<std::uint64_t>(*length);
    if (const auto range = ValueOf(line, "Content-Range")) m_answer.head.contentRange = *range;
}

bool CTransferExchange::EndHead() {
    m_isHeadComplete = true;
    if (!m_answer.IsSuccess()) return true;
    if (m_request.method != ETransferMethod::Head && m_answer.head.length.value_or(0) > m_request.mostBytes)
        return Fail({EErrorCode::TooLarge, Mark("the server sends more than was expected"), {}});
    const CStatus taken = m_watcher.OnHead(m_answer.head);
    return taken || Fail(taken.Error());
}

bool CTransferExchange::TakeBody(std::span<const std::byte> piece) {
    m_lastByte = CClock::now();
    if (!m_answer.IsSuccess()) {
        const std::size_t wanted = std::min(piece.size(), kMostErrorBytes - m_answer.errorBody.size());
        m_answer.errorBody.append(reinterpret_cast<const char*>(piece.data()), wanted);
        return wanted == piece.size();
    }
    m_bodyBytes += piece.size();
    if (m_bodyBytes > m_request.mostBytes)
        return Fail({EErrorCode::TooLarge, Mark("the server sends more than was expected"), {}});
    const CStatus taken = m_watcher.OnBytes(piece);
    return taken || Fail(taken.Error());
}

std::optional<std::size_t> CTransferExchange::GiveBody(std::span<std::byte> room) {
    m_lastByte = CClock::now();
    if (!m_watcher.DoContinue()) {
        (void)Fail({EErrorCode::Cancelled, Mark("cancelled"), {}});
        return std::nullopt;
    }
    const CResult<std::size_t> given = m_request.body.bytes->Give(room);
    if (!given) {
        (void)Fail(given.Error());
        return std::nullopt;
    }
    m_sentBytes += given.Value();
    m_watcher.OnSent(m_sentBytes);
    return given.Value();
}

bool CTransferExchange::RewindBody() {
    m_sentBytes = 0;
    if (m_request.body.rewind) m_request.body.rewind();
    return m_request.body.rewind != nullptr;
}

void CTransferExchange::RunOutOfMemory() {
    (void)Fail({EErrorCode::TooLarge, Mark("there is not enough memory"), {}});
}

std::optional<CError> CTransferExchange::ReasonToEnd(const CTransferTimes& times) {
    if (!m_watcher.DoContinue()) return CError{EErrorCode::Cancelled, Mark("cancelled"), {}};
    const CClock::time_point now = CClock::now();
    m_isOutOfTime = now - m_lastByte > times.silence || now - m_started > m_request.deadline;
    if (!m_isOutOfTime) return std::nullopt;
    return CError{EErrorCode::Busy, Mark("the server takes too long to answer"), {}};
}
