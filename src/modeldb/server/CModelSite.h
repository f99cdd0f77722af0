// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "base/CResult.h"
#include "modeldb/protocol/wire_address.h"
#include "modeldb/server/CServerOptions.h"
#include "modeldb/server/CStorePool.h"
#include "modeldb/server/http/CHttpCounters.h"
#include "modeldb/server/http/CHttpSite.h"

class CWorkers;

/** Answers the protocol's requests, and those for web pages, out of a store. It has no state that would matter: any number of
 * servers may use one store, and each sees at once what the others have changed. */
class CModelSite final : public CHttpSite {
  public:
    /** Opens the store, which is made or brought up to date where need be, and the hot folder. Errors are those of
     * CModelStore::Open and CHotFolder::Open. */
    [[nodiscard]] static CResult<std::unique_ptr<CModelSite>> Make(CServerOptions options);
    ~CModelSite() override;

    void Answer(CHttpRequest request, CHttpReply reply) override;
    [[nodiscard]] std::optional<CHttpAnswer> RefuseBody(const CHttpRequest& request) override;
    void AnswerBody(CHttpRequest request, CHttpBody body, CHttpReply reply) override;

    /** Where the counts of the HTTP server come from, for /metrics; until it is called they are zero. Any thread. */
    void SetHttpCounters(std::function<CHttpCounters()> counters);
    /** Ends the work that is under way, on models too. Call it when no request comes any more. */
    void Stop();

  private:
    struct CState;
    using CWork = std::function<CResult<CHttpAnswer>(CModelStore&, const CHttpRequest&)>;

    explicit CModelSite(std::unique_ptr<CState> state);
    /** Has a worker answer; 503 where too much waits. */
    void OnWorker(CWorkers& workers, CHttpRequest request, CHttpReply reply, CWork work);
    [[nodiscard]] CHttpAnswer FromStore(const CHttpRequest& request, const CWork& work);
    [[nodiscard]] CHttpAnswer Failed(const CError& error);
    /** Answers, or hands on, where the token allows it; asks the store for the token where need be. */
    void AnswerIfAllowed(const CWireAddress& address, CHttpRequest request, CHttpReply reply);

    // One for each kind of address; defined in CModelSite_answers.cpp.
    struct CDispatch;
    [[nodiscard]] CHttpAnswer Version(const CVersionAddress& address) const;
    [[nodiscard]] CHttpAnswer Metrics() const;
    [[nodiscard]] CResult<CHttpAnswer> Groups(CModelStore& store, const CHttpRequest& request);
    [[nodiscard]] CResult<CHttpAnswer> Models(CModelStore& store, const CModelsAddress& address,
                                              const CHttpRequest& request);
    [[nodiscard]] std::optional<CHttpAnswer> KeptModels(const CModelsAddress& address,
                                                        const CHttpRequest& request);
    [[nodiscard]] CResult<CHttpAnswer> Search(CModelStore& store, const CSearchAddress& address) const;
    [[nodiscard]] CHttpAnswer WebPage(CModelStore& store, const CHttpRequest& request) const;

    std::unique_ptr<CState> m_state;
};
