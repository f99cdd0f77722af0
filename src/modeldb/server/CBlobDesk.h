// SPDX-License-Identifier: MIT
#pragma once

#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "modeldb/protocol/wire_address.h"
#include "modeldb/server/CStorePool.h"
#include "modeldb/server/CWorkers.h"
#include "modeldb/server/cache/CHotFolder.h"
#include "modeldb/server/http/CHttpReply.h"
#include "modeldb/server/http/CHttpRequest.h"

/** Answers requests for bytes. Those in the hot folder go out at once; others a worker fetches first, once for all who ask for
 * them meanwhile. Once a minute the store is asked whether it still has them, so what was removed is
 * gone a minute later; while the store cannot be asked, what is there is given. */
class CBlobDesk {
  public:
    /** All must outlive this object, and the workers must be stopped before it goes. */
    CBlobDesk(CStorePool& stores, CWorkers& workers, CHotFolder& folder, bool isPrivate)
        : m_stores(stores), m_workers(workers), m_folder(folder), m_isPrivate(isPrivate) {}

    /** Any thread; does not block. */
    void Answer(const CBlobAddress& address, CHttpRequest request, CHttpReply reply);

  private:
    struct CWaiting {
        CHttpRequest request;
        CHttpReply reply;
    };
    void Fetch(const CBlobAddress& address, const std::string& name);
    [[nodiscard]] CResult<CHotFile> Get(const CBlobAddress& address, const std::string& name);
    [[nodiscard]] CStatus Confirm(const CBlobAddress& address, const std::string& name);
    [[nodiscard]] CResult<CHotFile> Fill(const CBlobAddress& address, const std::string& name);
    [[nodiscard]] std::vector<CWaiting> TakeWaiting(const std::string& name);

    CStorePool& m_stores;
    CWorkers& m_workers;
    CHotFolder& m_folder;
    const bool m_isPrivate;
    std::mutex m_mutex;
    std::unordered_map<std::string, std::vector<CWaiting>> m_waiting;  ///< by the file's name
};
