// SPDX-License-Identifier: MIT
#include "modeldb/server/CAccess.h"

#include <arpa/inet.h>
#include <sys/random.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>

#include "base/text/ascii_text.h"
#include "modeldb/server/server_answers.h"

namespace {

constexpr std::size_t kMostPeers = 65'536;
constexpr std::size_t kMostKnown = 4'096;
constexpr std::size_t kMostTokenBytes = 200;
constexpr std::chrono::seconds kBelieved{5};

/** What a peer is counted by; empty for a loopback address, and for what is no address. */
std::string NetworkOf(std::string_view peer) {
    const std::string text(peer);
    std::array<unsigned char, 16> bytes{};
    if (::inet_pton(AF_INET, text.c_str(), bytes.data()) == 1) return bytes[0] == 127 ? std::string() : text;
    if (::inet_pton(AF_INET6, text.c_str(), bytes.data()) != 1) return {};
    std::array<unsigned char, 16> loopback{};
    loopback[15] = 1;
    if (bytes == loopback) return {};
    return {bytes.begin(), bytes.begin() + 8};
}

int Base64Value(char c) {
    if (c >= 'A' && c <= 'Z') return c - 'A';
    if (c >= 'a' && c <= 'z') return c - 'a' + 26;
    if (c >= '0' && c <= '9') return c - '0' + 52;
    if (c == '+') return 62;
    return c == '/' ? 63 : -1;
}

/** The bytes of a text in base 64; empty where it is none. */
std::string FromBase64(std::string_view text) {
    while (!text.empty() && text.back() == '=') text.remove_suffix(1);
    std::string bytes;
    unsigned bits = 0, count = 0;
    for (const char c : text) {
        const int value = Base64Value(c);
        if (value < 0) return {};
        bits = (bits << 6 | static_cast<unsigned>(value)) & 0xFFFF;
        count += 6;
        if (count < 8) continue;
        count -= 8;
        bytes += static_cast<char>(bits >> count & 0xFF);
    }
    return bytes;
}

/** The token of a request; empty without one. */
std::string TokenOf(const CHttpRequest& request, bool takesPassword) {
    constexpr std::string_view kBearer = "Bearer ", kBasic = "Basic ";
    const std::string_view header = request.Header("Authorization");
    const auto begins = [&](std::string_view scheme) {
        return header.size() > scheme.size() &&
               ascii_text::EqualNoCase(header.substr(0, scheme.size()), scheme);
    };
    if (begins(kBearer)) return std::string(header.substr(kBearer.size()));
    if (!takesPassword || !begins(kBasic)) return {};
    const std::string both = FromBase64(header.substr(kBasic.size()));
    const std::size_t colon = both.find(':');
    return colon == both.npos ? std::string() : both.substr(colon + 1);
}

EStoreRight RightFor(EAccess wanted) {
    if (wanted == EAccess::Upload) return EStoreRight::Upload;
    return wanted == EAccess::Remove ? EStoreRight::Remove : EStoreRight::Read;
}

}  // namespace

double& CTurns::LeftOf(const std::string& peer) {
    if (m_peers.size() >= kMostPeers) m_peers.clear();  // each begins anew, which harms nobody
    const CClock::time_point now = CClock::now();
    const auto [place, isNew] = m_peers.try_emplace(peer, CPeer{m_most, now});
    CPeer& known = place->second;
    const double minutes = std::chrono::duration<double, std::ratio<60>>(now - known.at).count();
    known.left = std::min(m_most, known.left + minutes * m_perMinute);
    known.at = now;
    return known.left;
}

bool CTurns::Take(std::string_view peer) {
    const std::string network = m_perMinute > 0 ? NetworkOf(peer) : std::string();
    if (network.empty()) return true;
    const std::lock_guard lock(m_mutex);
    double& left = LeftOf(network);
    if (left < 1) return false;
    left -= 1;
    return true;
}

bool CTurns::Has(std::string_view peer) {
    const std::string network = m_perMinute > 0 ? NetworkOf(peer) : std::string();
    if (network.empty()) return true;
    const std::lock_guard lock(m_mutex);
    return LeftOf(network) >= 1;
}

CAccess::CAccess(CStorePool& stores, COptions options)
    : m_stores(stores), m_options(options), m_wrongTokens(20, 20), m_salt(32, '\0') {
    if (::getrandom(m_salt.data(), m_salt.size(), 0) != static_cast<ssize_t>(m_salt.size()))
        throw std::runtime_error("the system gives no random numbers");
}

// Browsers name the origin of a page whose script uploads. One whose host's name has been turned to this machine is
// stopped by nothing else.
bool CAccess::IsOpen(const CHttpRequest& request, EAccess wanted) const {
    return wanted == EAccess::Anything || (wanted == EAccess::Read && !m_options.isPrivate) ||
           (wanted == EAccess::Upload && m_options.hasOpenUploads && !request.HasHeader("Origin"));
}

// A browser sends a password on its own, so it must not be enough for changes.
std::string CAccess::TokenFor(const CHttpRequest& request, EAccess wanted) const {
    return TokenOf(request, m_options.isPrivate && wanted == EAccess::Read);
}

CBlobHash CAccess::NameOf(std::string_view token) const {
    const std::string salted = m_salt + std::string(token);
    return CBlobHash::Of(std::as_bytes(std::span(salted)));
}

bool CAccess::AsksStore(const CHttpRequest& request, EAccess wanted) {
    if (IsOpen(request, wanted)) return false;
    const std::string token = TokenFor(request, wanted);
    return !token.empty() && token.size() <= kMostTokenBytes && !Remembered(NameOf(token));
}

CHttpAnswer CAccess::AskForToken(std::string_view message) const {
    CHttpAnswer answer = server_answers::Refusal(401, message);
    answer.headers.emplace_back("WWW-Authenticate", "Bearer");
    if (m_options.isPrivate)
        answer.headers.emplace_back("WWW-Authenticate", "Basic realm=\"models\", charset=\"UTF-8\"");
    return answer;
}

std::optional<CHttpAnswer> CAccess::Refuse(const CHttpRequest& request, EAccess wanted) {
    if (IsOpen(request, wanted)) return std::nullopt;
    const std::string token = TokenFor(request, wanted);
    if (token.empty())
        return AskForToken(wanted == EAccess::Read
                               ? "this server is private: it needs a token that may read"
                               : "changes need a token: whoever runs this server makes one with "
                                 "\"orbivue-modeldb token create\"");
    if (!m_wrongTokens.Has(request.peer)) return server_answers::Refusal(429, "too many wrong tokens");
    const CResult<CRights> rights = RightsOf(token);
    if (!rights) return server_answers::Refusal(rights.Error());
    if (!rights.Value()) {
        (void)m_wrongTokens.Take(request.peer);  // what is left of them shows next time
        return AskForToken("the token is unknown or has been revoked");
    }
    if (!rights.Value()->Has(RightFor(wanted)))
        return server_answers::Refusal(403, "the token does not allow this");
    return std::nullopt;
}

CResult<CAccess::CRights> CAccess::RightsOf(std::string_view token) {
    if (token.size() > kMostTokenBytes) return CRights();
    const CBlobHash name = NameOf(token);
    if (const std::optional<CRights> known = Remembered(name)) return *known;
    const CResult<std::optional<CTokenRecord>> found =
        m_stores.Run([&](CModelStore& store) { return store.FindToken(token); });
    if (!found) return found.Error();
    const CRights rights = found.Value() ? CRights(found.Value()->rights) : CRights();
    Remember(name, rights);
    return rights;
}

std::optional<CAccess::CRights> CAccess::Remembered(const CBlobHash& name) {
    const std::lock_guard lock(m_mutex);
    const auto known = m_known.find(name.ToHex());
    if (known == m_known.end() || known->second.until < std::chrono::steady_clock::now()) return std::nullopt;
    return known->second.rights;
}

void CAccess::Remember(const CBlobHash& name, const CRights& rights) {
    const std::lock_guard lock(m_mutex);
    if (m_known.size() >= kMostKnown) m_known.clear();
    m_known[name.ToHex()] = {rights, std::chrono::steady_clock::now() + kBelieved};
}
