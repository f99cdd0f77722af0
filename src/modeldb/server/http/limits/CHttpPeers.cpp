// SPDX-License-Identifier: MIT
#include "modeldb/server/http/limits/CHttpPeers.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>
#include <cstring>

#include "base/hash_secret.h"
#include "base/text/ascii_text.h"

namespace {

constexpr std::array<std::uint8_t, 12> kIpv4Prefix = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff};

std::uint64_t Mixed(std::uint64_t value) {
    value ^= value >> 32;
    value *= kHashSecret[2];
    return value ^ (value >> 29);
}

// The hash of a peer; never 0.
std::uint64_t HashOf(const CPeerAddress& peer) {
    std::uint64_t high = 0, low = 0;
    std::memcpy(&high, peer.bytes.data(), sizeof high);
    if (peer.IsIpv4()) std::memcpy(&low, peer.bytes.data() + sizeof high, sizeof low);
    return Mixed(Mixed(high ^ kHashSecret[0]) + low * kHashSecret[1]) | 1;
}

}  // namespace

std::optional<CPeerAddress> CPeerAddress::Parse(std::string_view text) {
    const std::string terminated(text.substr(0, INET6_ADDRSTRLEN));
    CPeerAddress address;
    if (::inet_pton(AF_INET6, terminated.c_str(), address.bytes.data()) == 1) return address;
    std::ranges::copy(kIpv4Prefix, address.bytes.begin());
    if (::inet_pton(AF_INET, terminated.c_str(), address.bytes.data() + kIpv4Prefix.size()) == 1)
        return address;
    return std::nullopt;
}

CPeerAddress CPeerAddress::Of(const sockaddr& address) {
    CPeerAddress peer;
    if (address.sa_family == AF_INET6) {
        std::memcpy(peer.bytes.data(), &reinterpret_cast<const sockaddr_in6&>(address).sin6_addr, 16);
    } else if (address.sa_family == AF_INET) {
        std::ranges::copy(kIpv4Prefix, peer.bytes.begin());
        std::memcpy(peer.bytes.data() + kIpv4Prefix.size(),
                    &reinterpret_cast<const sockaddr_in&>(address).sin_addr, 4);
    }
    return peer;
}

std::string CPeerAddress::Text() const {
    std::array<char, INET6_ADDRSTRLEN> text{};
    if (IsIpv4()) {
        ::inet_ntop(AF_INET, bytes.data() + kIpv4Prefix.size(), text.data(), text.size());
    } else {
        ::inet_ntop(AF_INET6, bytes.data(), text.data(), text.size());
    }
    return text.data();
}

bool CPeerAddress::IsIpv4() const {
    return std::equal(kIpv4Prefix.begin(), kIpv4Prefix.end(), bytes.begin());
}

bool CPeerAddress::IsLoopback() const {
    if (IsIpv4()) return bytes[kIpv4Prefix.size()] == 127;
    CPeerAddress loopback;
    loopback.bytes.back() = 1;
    return *this == loopback;
}

bool CForwardedPeers::Trust(std::string_view proxy) {
    const std::optional<CPeerAddress> address = CPeerAddress::Parse(proxy);
    if (address) m_trusted.push_back(*address);
    return address.has_value();
}

bool CForwardedPeers::IsTrusted(const CPeerAddress& peer) const {
    return std::ranges::find(m_trusted, peer) != m_trusted.end();
}

CPeerAddress CForwardedPeers::ClientOf(const CPeerAddress& peer, std::string_view forwardedFor) const {
    CPeerAddress client = peer;
    while (IsTrusted(client) && !forwardedFor.empty()) {
        const std::size_t comma = forwardedFor.rfind(',');
        const std::size_t begin = comma == forwardedFor.npos ? 0 : comma + 1;
        const std::optional<CPeerAddress> before =
            CPeerAddress::Parse(ascii_text::Trimmed(forwardedFor.substr(begin)));
        if (!before) break;
        client = *before;
        forwardedFor = comma == forwardedFor.npos ? std::string_view() : forwardedFor.substr(0, comma);
    }
    return client;
}

CHttpPeers::CHttpPeers(const CLimits& limits) : m_limits(limits) {
    m_limits.burst = std::max(m_limits.burst, 1.0);
    if (m_limits.requestsPerSecond > 0) m_buckets.resize(kWays * kSets);
}

bool CHttpPeers::IsFree(const CPeerAddress& peer) const {
    return !m_limits.limitLoopback && peer.IsLoopback();
}

bool CHttpPeers::Connect(const CPeerAddress& peer) {
    if (m_limits.connections == 0 || IsFree(peer)) return true;
    const std::lock_guard lock(m_connectionsLock);
    std::size_t& count = m_connections[HashOf(peer)];
    if (count >= m_limits.connections) return false;
    ++count;
    return true;
}

void CHttpPeers::Disconnect(const CPeerAddress& peer) {
    if (m_limits.connections == 0 || IsFree(peer)) return;
    const std::lock_guard lock(m_connectionsLock);
    const auto found = m_connections.find(HashOf(peer));
    if (found != m_connections.end() && --found->second == 0) m_connections.erase(found);
}

double CHttpPeers::TokensAt(const CBucket& bucket, Time now) const {
    const double seconds = std::chrono::duration<double>(now - bucket.filled).count();
    return std::min(m_limits.burst, bucket.tokens + std::max(seconds, 0.0) * m_limits.requestsPerSecond);
}

CHttpPeers::CBucket& CHttpPeers::BucketOf(std::uint64_t peer, Time now) {
    CBucket* const set = &m_buckets[(peer >> 16) % kSets * kWays];
    CBucket* fullest = nullptr;
    for (CBucket* bucket = set; bucket != set + kWays; ++bucket) {
        if (bucket->peer == peer) return *bucket;
        if (fullest && fullest->peer == 0) continue;
        if (!fullest || bucket->peer == 0 || TokensAt(*bucket, now) > TokensAt(*fullest, now))
            fullest = bucket;
    }
    *fullest = {peer, m_limits.burst, now};
    return *fullest;
}

bool CHttpPeers::TakeRequest(const CPeerAddress& peer, Time now) {
    if (m_limits.requestsPerSecond <= 0 || IsFree(peer)) return true;
    const std::uint64_t hash = HashOf(peer);
    const std::lock_guard lock(m_bucketLocks[(hash >> 16) % kSets % kLocks]);
    CBucket& bucket = BucketOf(hash, now);
    bucket.tokens = TokensAt(bucket, now);
    bucket.filled = now;
    if (bucket.tokens < 1) return false;
    bucket.tokens -= 1;
    return true;
}
