// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct sockaddr;

/** An IP address; IPv4 as IPv6 maps it (::ffff:a.b.c.d). */
struct CPeerAddress {
    std::array<std::uint8_t, 16> bytes{};

    /** Nothing for text that is no numeric address. */
    [[nodiscard]] static std::optional<CPeerAddress> Parse(std::string_view text);
    [[nodiscard]] static CPeerAddress Of(const sockaddr& address);
    /** As people write it: dotted for IPv4. */
    [[nodiscard]] std::string Text() const;
    [[nodiscard]] bool IsIpv4() const;
    [[nodiscard]] bool IsLoopback() const;
    bool operator==(const CPeerAddress&) const = default;
};

/** Who a client is: its address, or the one that a trusted proxy tells. */
class CForwardedPeers {
  public:
    /** False, and nothing changes, for text that is no numeric address. */
    [[nodiscard]] bool Trust(std::string_view proxy);
    [[nodiscard]] bool IsTrusted(const CPeerAddress& peer) const;
    /** The client behind peer: of forwardedFor ("client, proxy, proxy") the last address that is no trusted proxy's.
     * peer itself when it is not trusted or the list does not end in addresses. */
    [[nodiscard]] CPeerAddress ClientOf(const CPeerAddress& peer, std::string_view forwardedFor) const;

  private:
    std::vector<CPeerAddress> m_trusted;
};

/** Counts what each peer has: connections exactly, requests in token buckets. An IPv6 peer is its /64 network. Memory is
 * bounded: for the buckets by their fixed number, for connections by how many are open. Any thread. */
class CHttpPeers {
  public:
    using Time = std::chrono::steady_clock::time_point;
    struct CLimits {
        std::size_t connections = 0;   ///< 0: no limit
        double requestsPerSecond = 0;  ///< 0: no limit
        double burst = 1;
        bool limitLoopback = false;
    };
    explicit CHttpPeers(const CLimits& limits);

    /** Counts one more connection of the peer; false, and nothing is counted, when it has as many as it may. */
    [[nodiscard]] bool Connect(const CPeerAddress& peer);
    /** To each Connect that was true. */
    void Disconnect(const CPeerAddress& peer);
    /** Takes one request out of the peer's bucket; false when it is empty. */
    [[nodiscard]] bool TakeRequest(const CPeerAddress& peer, Time now);

  private:
    // Where a peer's bucket is depends on a secret, so that nobody can aim at another's. Of four places the fullest makes
    // room: forgetting it gives its peer least.
    static constexpr std::size_t kWays = 4, kSets = 1 << 13, kLocks = 64;
    struct CBucket {
        std::uint64_t peer = 0;  ///< its hash; 0: free
        double tokens = 0;
        Time filled{};
    };
    [[nodiscard]] bool IsFree(const CPeerAddress& peer) const;
    [[nodiscard]] double TokensAt(const CBucket& bucket, Time now) const;
    [[nodiscard]] CBucket& BucketOf(std::uint64_t peer, Time now);

    CLimits m_limits;
    std::vector<CBucket> m_buckets;
    std::array<std::mutex, kLocks> m_bucketLocks;
    std::unordered_map<std::uint64_t, std::size_t> m_connections;
    std::mutex m_connectionsLock;
};
