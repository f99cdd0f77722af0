// SPDX-License-Identifier: MIT
#include "modeldb/client/transfer/CTransferLine.h"

#include <atomic>

#include "base/text/lng.h"
#include "modeldb/client/transfer/curl_handles.h"

using lng::Mark;

namespace {

constexpr int kAskEveryMs = 100;  ///< whether the transfer may go on

/** Has the handle take part in the other's transfers as long as it lives. */
class CTakingPart {
  public:
    CTakingPart(CURLM* multi, CURL* easy)
        : m_multi(multi), m_easy(easy), m_taken(curl_multi_add_handle(multi, easy) == CURLM_OK) {}
    CTakingPart(const CTakingPart&) = delete;
    CTakingPart& operator=(const CTakingPart&) = delete;
    ~CTakingPart() {
        if (m_taken) (void)curl_multi_remove_handle(m_multi, m_easy);
    }
    [[nodiscard]] bool IsTaken() const { return m_taken; }

  private:
    CURLM* m_multi;
    CURL* m_easy;
    bool m_taken;
};

CError NotPossible() {
    return {EErrorCode::Unsupported, Mark("transfers are not possible here"), {}};
}

}  // namespace

struct CTransferLine::CState {
    CTransferTimes times;
    bool isReady = StartCurl();
    CCurlMulti multi{isReady ? curl_multi_init() : nullptr};
    CCurlEasy easy{isReady ? curl_easy_init() : nullptr};
    std::atomic<bool> isStopped = false;
    bool wasLost = false;

    /** How libcurl ended; or why we end it. */
    [[nodiscard]] CResult<CURLcode> Drive(CTransferExchange& exchange);
    [[nodiscard]] CResult<CTransferAnswer> Judge(CTransferExchange& exchange, CURLcode code);
};

CTransferLine::CTransferLine(const CTransferTimes& times) : m_state(std::make_unique<CState>()) {
    m_state->times = times;
}

CTransferLine::~CTransferLine() = default;

bool CTransferLine::WasLost() const {
    return m_state->wasLost;
}

void CTransferLine::Stop() {
    m_state->isStopped = true;
    if (m_state->multi) (void)curl_multi_wakeup(m_state->multi.get());
}

CResult<CURLcode> CTransferLine::CState::Drive(CTransferExchange& exchange) {
    int running = 0;
    while (true) {
        if (isStopped) return CError{EErrorCode::Cancelled, Mark("cancelled"), {}};
        if (auto reason = exchange.ReasonToEnd(times)) {
            wasLost = exchange.IsOutOfTime();
            return *reason;
        }
        if (curl_multi_perform(multi.get(), &running) != CURLM_OK) return NotPossible();
        if (running == 0) break;
        if (curl_multi_poll(multi.get(), nullptr, 0, kAskEveryMs, nullptr) != CURLM_OK) return NotPossible();
    }
    int left = 0;
    const CURLMsg* message = curl_multi_info_read(multi.get(), &left);
    return message != nullptr && message->msg == CURLMSG_DONE ? message->data.result : CURLE_RECV_ERROR;
}

CResult<CTransferAnswer> CTransferLine::CState::Judge(CTransferExchange& exchange, CURLcode code) {
    if (exchange.Failure()) return *exchange.Failure();
    // A refusal is an answer even where the rest of it, or of what was to be sent, got lost.
    if (code == CURLE_OK || exchange.HasRefusal()) return std::move(exchange.Answer());
    CCurlFailure failure = FailureOf(code);
    wasLost = failure.isLost;
    return std::move(failure.error);
}

CResult<CTransferAnswer> CTransferLine::Run(const CTransferRequest& request, CTransferWatcher& watcher) {
    CState& state = *m_state;
    state.wasLost = false;
    if (!state.multi || !state.easy) return NotPossible();
    CTransferExchange exchange(request, watcher);
    CCurlList headers;
    if (!SetOptions(state.easy.get(), request, state.times, exchange, headers)) return NotPossible();
    const CTakingPart part(state.multi.get(), state.easy.get());
    if (!part.IsTaken()) return NotPossible();
    const CResult<CURLcode> ended = state.Drive(exchange);
    if (!ended) return ended.Error();
    return state.Judge(exchange, ended.Value());
}
