// SPDX-License-Identifier: MIT
#include "modeldb/server/http/http_head.h"

#include <algorithm>
#include <array>
#include <boost/beast/http/basic_parser.hpp>
#include <charconv>
#include <limits>

#include "base/text/ascii_text.h"

namespace {

namespace beast_http = boost::beast::http;

constexpr std::size_t kMostFields = 100;
constexpr std::size_t kMostTarget = 4096;

// Fields that mean one thing: two of them might be read differently by a proxy and by us.
constexpr std::array<std::string_view, 9> kSingleFields = {
    "Host",     "Content-Length", "Transfer-Encoding", "Authorization", "Content-Type", "Range",
    "If-Range", "Expect",         "If-Modified-Since"};

std::string_view ViewOf(boost::beast::string_view text) {
    return {text.data(), text.size()};
}

// Beast's parser, which splits the head; what it tells goes into a CHttpHead.
class CHeadParser final : public beast_http::basic_parser<true> {
  public:
    explicit CHeadParser(CHttpHead& head) : m_head(head) {
        // Beast 1.74 takes "no limit" for 0.
        body_limit(std::numeric_limits<std::uint64_t>::max());
    }

  private:
    using error_code = boost::beast::error_code;
    using string_view = boost::beast::string_view;

    void on_request_impl(beast_http::verb method, string_view methodText, string_view target, int version,
                         error_code&) override {
        m_head.methodText = ViewOf(methodText);
        m_head.request.target = ViewOf(target);
        m_head.request.method = method == beast_http::verb::get       ? EHttpMethod::Get
                                : method == beast_http::verb::head    ? EHttpMethod::Head
                                : method == beast_http::verb::post    ? EHttpMethod::Post
                                : method == beast_http::verb::delete_ ? EHttpMethod::Delete
                                                                      : EHttpMethod::Other;
        m_head.isHttp10 = version < 11;
    }
    void on_field_impl(beast_http::field, string_view name, string_view value, error_code& error) override {
        if (++m_fieldCount > kMostFields) {
            error = beast_http::error::header_limit;
            return;
        }
        if (ascii_text::EqualNoCase(ViewOf(name), "X-Forwarded-For")) m_head.forwardedFor = ViewOf(value);
        m_head.request.AddHeader(ViewOf(name), ViewOf(value));
    }
    void on_response_impl(int, string_view, int, error_code&) override {}
    void on_header_impl(error_code&) override {}
    void on_body_init_impl(const boost::optional<std::uint64_t>&, error_code&) override {}
    std::size_t on_body_impl(string_view, error_code&) override { return 0; }
    void on_chunk_header_impl(std::uint64_t, string_view, error_code&) override {}
    std::size_t on_chunk_body_impl(std::uint64_t, string_view, error_code&) override { return 0; }
    void on_finish_impl(error_code&) override {}

    CHttpHead& m_head;
    std::size_t m_fieldCount = 0;
};

// True for a request line of three parts of which the last is a version, whichever.
bool NamesVersion(std::string_view text) {
    const std::string_view line = text.substr(0, text.find('\r'));
    return std::ranges::count(line, ' ') == 2 && line.substr(line.rfind(' ') + 1).starts_with("HTTP/");
}

CHeadFault FaultOf(const boost::beast::error_code& error, std::string_view text) {
    if (error == beast_http::error::bad_version && NamesVersion(text)) {
        return {505, "this HTTP version is not spoken here"};
    }
    if (error == beast_http::error::header_limit) return {431, "too many header fields"};
    if (error == beast_http::error::bad_content_length) return {400, "bad Content-Length"};
    if (error == beast_http::error::bad_transfer_encoding) return {400, "bad Transfer-Encoding"};
    if (error == beast_http::error::bad_target) return {400, "bad target"};
    return {400, "bad request"};
}

bool IsTargetCharacter(char c) {
    return c > ' ' && c < 0x7f && c != '#';
}

std::optional<CHeadFault> CheckTarget(std::string_view target) {
    if (target.size() > kMostTarget) return CHeadFault{414, "the target is too long"};
    const bool isPath = !target.empty() && target[0] == '/' && (target.size() == 1 || target[1] != '/');
    if (!isPath || !std::ranges::all_of(target, IsTargetCharacter)) return CHeadFault{400, "bad target"};
    return std::nullopt;
}

bool IsHostCharacter(char c) {
    return c > ' ' && c < 0x7f && std::string_view("/\\@?#,\"<>").find(c) == std::string_view::npos;
}

// The length, checked by itself: it decides where the next request begins.
std::optional<CHeadFault> ReadLength(CHttpHead& head) {
    const CHttpRequest& request = head.request;
    head.hasLength = request.HasHeader("Content-Length");
    if (!head.hasLength) return std::nullopt;
    if (request.HasHeader("Transfer-Encoding")) return CHeadFault{400, "a length beside a transfer coding"};
    const std::string_view text = request.Header("Content-Length");
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), head.request.bodyBytes);
    const bool isNumber = error == std::errc() && end == text.data() + text.size() && text.size() <= 19;
    if (!isNumber) return CHeadFault{400, "bad Content-Length"};
    return std::nullopt;
}

std::optional<CHeadFault> CheckFields(CHttpHead& head) {
    const CHttpRequest& request = head.request;
    for (std::string_view name : kSingleFields) {
        if (request.CountHeader(name) > 1)
            return CHeadFault{400, "a header field that may stand once stands twice"};
    }
    if (!head.isHttp10 && !request.HasHeader("Host")) return CHeadFault{400, "no Host"};
    if (!std::ranges::all_of(request.Header("Host"), IsHostCharacter)) return CHeadFault{400, "bad Host"};
    if (auto fault = ReadLength(head)) return fault;
    const std::string_view expect = request.Header("Expect");
    if (!expect.empty() && !ascii_text::EqualNoCase(expect, "100-continue")) {
        return CHeadFault{417, "nothing but 100-continue can be expected"};
    }
    head.expectsContinue = !expect.empty() && !head.isHttp10;
    return std::nullopt;
}

}  // namespace

CHeadScan::EState CHeadScan::Look(std::string_view text) {
    for (; m_at < text.size(); ++m_at) {
        const char c = text[m_at];
        const bool isLineEnd = c == '\n';
        if (isLineEnd != m_sawReturn) return EState::Malformed;
        m_sawReturn = c == '\r';
        if (isLineEnd) {
            if (!m_inLine) {
                ++m_at;
                return EState::Whole;
            }
            m_inLine = false;
        } else if (!m_sawReturn) {
            const auto code = static_cast<unsigned char>(c);
            const bool continuesLine = !m_inLine && (c == ' ' || c == '\t');
            if ((code < ' ' && c != '\t') || code == 0x7f || continuesLine) return EState::Malformed;
            m_inLine = true;
        }
    }
    return EState::Partial;
}

std::optional<CHeadFault> ParseHead(std::string_view text, CHttpHead& head) {
    CHeadParser parser(head);
    parser.header_limit(static_cast<std::uint32_t>(text.size()) + 1);
    boost::beast::error_code error;
    const std::size_t used = parser.put(boost::asio::buffer(text.data(), text.size()), error);
    if (error) return FaultOf(error, text);
    if (used != text.size() || !parser.is_header_done()) return CHeadFault{400, "bad request"};
    head.keepAlive = parser.keep_alive();
    if (auto fault = CheckTarget(head.request.target)) return fault;
    return CheckFields(head);
}
