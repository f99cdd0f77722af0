// SPDX-License-Identifier: MIT
#include "programs/orbivue_modeldb/serve_options.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <charconv>

#include "base/text/lng.h"
#include "modeldb/protocol/wire_address.h"

namespace serve_options {

namespace {

bool IsAddress(const std::string& text) {
    std::array<unsigned char, 16> bytes{};
    return ::inet_pton(AF_INET, text.c_str(), bytes.data()) == 1 ||
           ::inet_pton(AF_INET6, text.c_str(), bytes.data()) == 1;
}

bool IsLoopback(const std::string& address) {
    return address.starts_with("127.") || address == "::1";
}

std::optional<std::uint64_t> Number(std::string_view text) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

std::vector<std::string_view> AtCommas(std::string_view text) {
    std::vector<std::string_view> parts;
    while (true) {
        const std::size_t comma = text.find(',');
        parts.push_back(text.substr(0, comma));
        if (comma == text.npos) return parts;
        text.remove_prefix(comma + 1);
    }
}

struct CPlace {
    std::string_view host;  ///< empty: the loopback addresses
    std::uint64_t port = 0;
};

std::optional<CPlace> PlaceOf(std::string_view text) {
    const std::size_t colon = text.rfind(':');
    const std::optional<std::uint64_t> port = Number(colon == text.npos ? text : text.substr(colon + 1));
    if (!port || *port > 65535) return std::nullopt;
    std::string_view host = colon == text.npos ? std::string_view() : text.substr(0, colon);
    if (host.size() > 2 && host.front() == '[' && host.back() == ']')
        host = host.substr(1, host.size() - 2);
    else if (host.find(':') != host.npos)
        return std::nullopt;  // of an IPv6 address it is not clear where it ends
    if (host == "localhost") host = {};
    if (!host.empty() && !IsAddress(std::string(host))) return std::nullopt;
    return CPlace{host, *port};
}

}  // namespace

COutcome SetListen(CServeOptions& options, std::string_view value) {
    options.addresses.clear();
    for (const std::string_view part : AtCommas(value)) {
        const std::optional<CPlace> place = PlaceOf(part);
        if (!place) return lng::TextUtf8("needs ADDRESS:PORT, with a numeric address, or PORT");
        const int port = static_cast<int>(place->port);
        if (!options.addresses.empty() && port != options.port)
            return lng::TextUtf8("takes several addresses, but one port");
        options.port = port;
        if (place->host.empty())
            options.addresses.insert(options.addresses.end(), {"127.0.0.1", "::1"});
        else
            options.addresses.emplace_back(place->host);
    }
    return {};
}

COutcome SetProxies(CServeOptions& options, std::string_view value) {
    options.trustedProxies.clear();
    for (const std::string_view part : AtCommas(value)) {
        options.trustedProxies.emplace_back(part);
        if (!IsAddress(options.trustedProxies.back())) return lng::TextUtf8("needs numeric addresses");
    }
    return {};
}

COutcome SetBaseUrl(CServeOptions& options, std::string_view value) {
    const CResult<std::string> address = wire_address::CheckServer(value);
    if (!address) return lng::TextUtf8("needs http://HOST/PATH or https://HOST/PATH");
    options.baseUrl = address.Value();
    return {};
}

COutcome SetNumber(std::uint64_t& number, std::string_view value, std::uint64_t least, std::uint64_t most) {
    const std::optional<std::uint64_t> read = Number(value);
    if (!read || *read < least || *read > most)
        return lng::TextUtf8("needs a number from %s to %s", {std::to_string(least), std::to_string(most)});
    number = *read;
    return {};
}

COutcome SetBytes(std::uint64_t& bytes, std::string_view value, std::uint64_t least, std::uint64_t most) {
    constexpr std::string_view kUnits = "KMG";
    const std::size_t unit = value.empty() ? kUnits.npos : kUnits.find(value.back());
    const unsigned shift = unit == kUnits.npos ? 0 : 10 * (static_cast<unsigned>(unit) + 1);
    if (shift > 0) value.remove_suffix(1);
    const std::optional<std::uint64_t> read = Number(value);
    if (!read || *read > (most >> shift) || (*read << shift) < least)
        return lng::TextUtf8("needs a number of bytes from %s to %s, such as 64M",
                             {std::to_string(least), std::to_string(most)});
    bytes = *read << shift;
    return {};
}

COutcome CheckTogether(const CServeOptions& options) {
    if (!options.hasOpenUploads) return {};
    if (options.isPrivate) return lng::TextUtf8("takes --private or --open-uploads, not both");
    const auto other = std::ranges::find_if_not(options.addresses, IsLoopback);
    if (other == options.addresses.end()) return {};
    return lng::TextUtf8(
        "does not listen on %s with --open-uploads: everybody who reaches it could add models", {*other});
}

}  // namespace serve_options
