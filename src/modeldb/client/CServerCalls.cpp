// SPDX-License-Identifier: MIT
#include "modeldb/client/CServerCalls.h"

#include <utility>

#include "base/text/lng.h"
#include "modeldb/protocol/wire_errors.h"

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kShortCall = 15s;  ///< one that nobody watches, perhaps the windows' own
constexpr std::uint64_t kSlowestBytesPerSecond = 16 << 10;
constexpr int kNotFound = 404;

std::string NameOf(const std::string& address) {
    const std::size_t host = address.find("://") + 3;
    return address.substr(host, address.find('/', host) - host);
}

CError RefusalOf(const CTransferAnswer& answer) {
    const int status = answer.head.status;
    if (status >= 300 && status < 400)
        return {EErrorCode::Unsupported,
                lng::Mark("the server sends its callers to another address, which is not followed"),
                {}};
    return wire_errors::Read(status, answer.errorBody);
}

}  // namespace

CServerCalls::CServerCalls(CServer server)
    : m_server(std::move(server)), m_name(NameOf(m_server.address)), m_pool(m_server.times) {}

std::chrono::milliseconds CServerCalls::DeadlineFor(std::uint64_t bytes) {
    return 60s + std::chrono::seconds(bytes / kSlowestBytesPerSecond);
}

void CServerCalls::NoteConnection(bool isLost) {
    const bool wasConnected = m_isConnected.exchange(!isLost);
    if (isLost && wasConnected && m_server.onLost) m_server.onLost();
}

CResult<CTransferAnswer> CServerCalls::Run(const CWireAddress& address, CTransferRequest request,
                                           CTransferWatcher& watcher, int allowed) {
    request.url = m_server.address + wire_address::Write(address);
    request.token = m_server.token;
    bool isLost = false;
    CResult<CTransferAnswer> answer = m_pool.Run(request, watcher, isLost);
    if (answer || isLost) NoteConnection(isLost);
    if (!answer) return Named(answer.Error());
    if (answer.Value().IsSuccess() || answer.Value().head.status == allowed) return answer;
    return Named(RefusalOf(answer.Value()));
}

CError CServerCalls::Named(CError error) const {
    if (error.where.empty()) error.where = m_name;
    return error;
}

CResult<std::string> CServerCalls::Get(const CWireAddress& address, std::uint64_t mostBytes,
                                       CProgressUnits& units) {
    CTransferRequest request;
    request.mostBytes = mostBytes;
    request.deadline = units.IsWatched() ? DeadlineFor(mostBytes) : kShortCall;
    CTextWatcher watcher(units);
    const CResult<CTransferAnswer> answer = Run(address, std::move(request), watcher);
    if (!answer) return answer.Error();
    return std::move(watcher.text);
}

CResult<bool> CServerCalls::Has(const CWireAddress& address) {
    CTransferRequest request;
    request.method = ETransferMethod::Head;
    request.deadline = kShortCall;
    CProgressUnits units(nullptr);
    CTextWatcher watcher(units);
    const CResult<CTransferAnswer> answer = Run(address, std::move(request), watcher, kNotFound);
    if (!answer) return answer.Error();
    return answer.Value().IsSuccess();
}
