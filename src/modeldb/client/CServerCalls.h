// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "base/CResult.h"
#include "modeldb/client/CProgressUnits.h"
#include "modeldb/client/transfer/CTransferPool.h"
#include "modeldb/protocol/wire_address.h"

/** Requests to one server of models. Errors have its name in `where`; what it says of a refusal is their message. */
class CServerCalls {
  public:
    struct CServer {
        std::string address;           ///< as wire_address::CheckServer gives it
        std::string token;             ///< "" for none
        std::function<void()> onLost;  ///< see C3DModelsLoadApi::SetConnLostListner; may be empty
        CTransferTimes times;
    };
    explicit CServerCalls(CServer server);

    /** The body of a success, of at most so many bytes. */
    [[nodiscard]] CResult<std::string> Get(const CWireAddress& address, std::uint64_t mostBytes,
                                           CProgressUnits& units);
    /** The record that such a body is. */
    template <class T>
    [[nodiscard]] CResult<T> GetRecord(const CWireAddress& address, std::uint64_t mostBytes,
                                       CProgressUnits& units, CResult<T> (*read)(std::string_view)) {
        const CResult<std::string> body = Get(address, mostBytes, units);
        if (!body) return body.Error();
        CResult<T> record = read(body.Value());
        if (!record) return Named(record.Error());
        return record;
    }
    /** There is something at the address. */
    [[nodiscard]] CResult<bool> Has(const CWireAddress& address);
    /** Any request: url and token are set here. A refusal by the server is a failure, unless it has the status `allowed`. */
    [[nodiscard]] CResult<CTransferAnswer> Run(const CWireAddress& address, CTransferRequest request,
                                               CTransferWatcher& watcher, int allowed = 0);
    void Stop() { m_pool.Stop(); }
    /** The error with the server's name, unless it tells a place already. */
    [[nodiscard]] CError Named(CError error) const;

    /** The time for so many bytes on a slow line. */
    [[nodiscard]] static std::chrono::milliseconds DeadlineFor(std::uint64_t bytes);

  private:
    void NoteConnection(bool isLost);

    CServer m_server;
    std::string m_name;  ///< host and port, for messages
    CTransferPool m_pool;
    std::atomic<bool> m_isConnected = false;
};

/** A watcher whose call goes on as long as the units' does. */
class CUnitsWatcher : public CTransferWatcher {
  public:
    explicit CUnitsWatcher(CProgressUnits& units) : m_units(units) {}
    CStatus OnHead(const CTransferHead& /*head*/) override { return CDone{}; }
    CStatus OnBytes(std::span<const std::byte> /*piece*/) override { return CDone{}; }
    void OnSent(std::uint64_t /*total*/) override {}
    bool DoContinue() override { return m_units.DoContinue(); }

  protected:
    ~CUnitsWatcher() = default;
    CProgressUnits& m_units;
};

/** Gathers a body. */
class CTextWatcher final : public CUnitsWatcher {
  public:
    using CUnitsWatcher::CUnitsWatcher;
    CStatus OnBytes(std::span<const std::byte> piece) override {
        text.append(reinterpret_cast<const char*>(piece.data()), piece.size());
        return CDone{};
    }
    std::string text;
};
