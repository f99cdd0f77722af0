// SPDX-License-Identifier: MIT
#include "modeldb/protocol/wire_address.h"

#include <charconv>

#include "base/text/ascii_text.h"
#include "base/text/lng.h"
#include "modeldb/bytes/calc_crc.h"
#include "modeldb/protocol/percent_text.h"

namespace wire_address {

namespace {

/** Appends "?name=value", or "&name=value" behind the first one. */
void AppendText(std::string& out, std::string_view name, std::string_view value) {
    out += out.find('?') == out.npos ? '?' : '&';
    out += name;
    out += '=';
    percent_text::Append(out, value);
}

void AppendPlace(std::string& out, const std::optional<CPagePlace>& after) {
    if (!after) return;
    AppendText(out, "after_name", after->name);
    AppendText(out, "after_key", model_key::ToText(after->key));
}

struct CWriter {
    std::string operator()(const CVersionAddress& address) const {
        std::string out = "/api/version";
        AppendText(out, "client", address.client);
        return out;
    }
    std::string operator()(const CGroupsAddress&) const { return "/api/groups"; }
    std::string operator()(const CGroupAddress& address) const {
        std::string out = "/api/group";
        AppendText(out, "name", address.name);
        return out;
    }
    std::string operator()(const CModelsAddress& address) const {
        std::string out = "/api/groups/" + std::to_string(address.groupId) + "/models";
        AppendText(out, "limit", std::to_string(address.limit));
        AppendPlace(out, address.after);
        return out;
    }
    std::string operator()(const CUploadAddress&) const { return "/api/models"; }
    std::string operator()(const CModelAddress& address) const {
        return "/api/models/" + model_key::ToText(address.key);
    }
    std::string operator()(const CSearchAddress& address) const {
        std::string out = "/api/search";
        AppendText(out, "text", address.text);
        if (address.groupId != 0) AppendText(out, "group", std::to_string(address.groupId));
        AppendText(out, "limit", std::to_string(address.limit));
        return out;
    }
    std::string operator()(const CBlobAddress& address) const {
        return "/b/" + address.hash.ToHex() + (address.form == EBlobForm::Stored ? ".zst" : "");
    }
    std::string operator()(const CHealthAddress&) const { return "/health"; }
    std::string operator()(const CMetricsAddress&) const { return "/metrics"; }
    std::string operator()(const CHomePage&) const { return "/"; }
    std::string operator()(const CGroupPage& page) const {
        std::string out = "/g/" + std::to_string(page.groupId);
        AppendPlace(out, page.after);
        return out;
    }
    std::string operator()(const CModelPage& page) const { return "/m/" + model_key::ToText(page.key); }
    std::string operator()(const CModelView& page) const {
        return "/m/" + model_key::ToText(page.key) + "/view";
    }
    std::string operator()(const CSearchPage& page) const {
        std::string out = "/search";
        if (!page.text.empty()) AppendText(out, "text", page.text);
        return out;
    }
    std::string operator()(const CSiteFile& file) const { return "/site/" + file.name; }
};

/** A host's name or address, perhaps with a port: "host", "127.0.0.1:80", "[::1]:8095". */
bool IsHost(std::string_view host) {
    const std::size_t bracket = host.starts_with('[') ? host.find(']') : 0;
    if (bracket == host.npos) return false;
    const std::size_t colon = host.find(':', bracket);
    const std::string_view name = host.substr(0, colon);
    if (name.empty() || name == "[]") return false;
    constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._";
    const bool isNumber = name.front() == '[';
    if (isNumber
            ? name.back() != ']' ||
                  name.substr(1, name.size() - 2).find_first_not_of("0123456789abcdefABCDEF:.") != name.npos
            : name.find_first_not_of(kLetters) != name.npos) {
        return false;
    }
    if (colon == host.npos) return true;
    unsigned port = 0;
    const char* const end = host.data() + host.size();
    const auto read = std::from_chars(host.data() + colon + 1, end, port);
    return read.ec == std::errc() && read.ptr == end && port >= 1 && port <= 65535;
}

}  // namespace

std::string Write(const CWireAddress& address) {
    return std::visit(CWriter{}, address);
}

std::string_view MethodsOf(const CWireAddress& address) {
    if (std::holds_alternative<CUploadAddress>(address)) return "POST";
    return std::holds_alternative<CModelAddress>(address) ? "GET, HEAD, DELETE" : "GET, HEAD";
}

std::string BlobTag(const CBlobHash& hash, EBlobForm form) {
    return '"' + hash.ToHex() + (form == EBlobForm::Stored ? ".zst\"" : "\"");
}

CResult<std::string> CheckServer(std::string_view address) {
    const CError bad{EErrorCode::BadArgument, lng::Mark("no address of a model server"), {}};
    constexpr std::size_t kMostBytes = 1000;
    const std::size_t behindScheme = address.find("://");
    if (behindScheme == address.npos || address.size() > kMostBytes) return bad;
    const std::string scheme = ascii_text::Lowered(address.substr(0, behindScheme));
    if (scheme != "http" && scheme != "https") return bad;
    std::string_view rest = address.substr(behindScheme + 3);
    while (rest.ends_with('/')) rest.remove_suffix(1);
    const std::string_view host = rest.substr(0, rest.find('/'));
    const std::string_view path = rest.substr(host.size());
    constexpr std::string_view kPath =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~!$&'()*+,;=:@%/";
    if (!IsHost(host) || path.find_first_not_of(kPath) != path.npos) return bad;
    return scheme + "://" + std::string(rest);
}

}  // namespace wire_address
