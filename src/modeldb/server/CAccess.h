// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "modeldb/bytes/CBlobHash.h"
#include "modeldb/server/CStorePool.h"
#include "modeldb/server/http/CHttpAnswer.h"
#include "modeldb/server/http/CHttpRequest.h"

/** Counts what peers do: each has so many turns, and gets further ones as time goes by. An IPv6 peer is its /64 network;
 * loopback addresses, behind which a proxy may stand for all, are not counted. Any thread. */
class CTurns {
  public:
    /** perMinute: 0 counts nothing. most: that a peer can save up. */
    CTurns(double perMinute, double most) : m_perMinute(perMinute), m_most(most) {}
    /** Takes a turn; false where there is none left. */
    [[nodiscard]] bool Take(std::string_view peer);
    /** True where a turn is left. */
    [[nodiscard]] bool Has(std::string_view peer);

  private:
    using CClock = std::chrono::steady_clock;
    struct CPeer {
        double left = 0;
        CClock::time_point at;
    };
    [[nodiscard]] double& LeftOf(const std::string& peer);

    const double m_perMinute, m_most;
    std::mutex m_mutex;
    std::unordered_map<std::string, CPeer> m_peers;
};

/** What a request wants to do. */
enum class EAccess { Anything, Read, Upload, Remove };

/** Decides who may do what. A token comes as "Authorization: Bearer TOKEN"; where the server is private, a browser may send it
 * as a password for reading. Open uploads are not open to web pages. What the store said of a token is believed for some seconds; the token itself is not kept. Any thread. */
class CAccess {
  public:
    struct COptions {
        bool isPrivate = false, hasOpenUploads = false;
    };
    CAccess(CStorePool& stores, COptions options);

    /** Nothing where the request may go on, else its answer. Asks the store by one SELECT at most. */
    [[nodiscard]] std::optional<CHttpAnswer> Refuse(const CHttpRequest& request, EAccess wanted);
    /** Whether Refuse would ask the store now. */
    [[nodiscard]] bool AsksStore(const CHttpRequest& request, EAccess wanted);

  private:
    using CRights = std::optional<CStoreRights>;  // nothing: it is no token
    struct CKnown {
        CRights rights;
        std::chrono::steady_clock::time_point until;
    };
    [[nodiscard]] bool IsOpen(const CHttpRequest& request, EAccess wanted) const;
    [[nodiscard]] std::string TokenFor(const CHttpRequest& request, EAccess wanted) const;
    [[nodiscard]] CBlobHash NameOf(std::string_view token) const;
    [[nodiscard]] CHttpAnswer AskForToken(std::string_view message) const;
    [[nodiscard]] CResult<CRights> RightsOf(std::string_view token);
    [[nodiscard]] std::optional<CRights> Remembered(const CBlobHash& name);
    void Remember(const CBlobHash& name, const CRights& rights);

    CStorePool& m_stores;
    const COptions m_options;
    CTurns m_wrongTokens;
    std::string m_salt;  ///< random: what is remembered of tokens is of no use outside
    std::mutex m_mutex;
    std::unordered_map<std::string, CKnown> m_known;  ///< by the hash of salt and token
};
