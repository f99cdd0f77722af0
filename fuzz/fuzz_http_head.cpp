// SPDX-License-Identifier: MIT
// Heads of requests: what is let through means one thing to everybody, and may stand in a log.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "modeldb/server/http/http_head.h"
#include "modeldb/server/http/http_text.h"

namespace {

void Expect(bool isTrue) {
    if (!isTrue) std::abort();
}

bool IsPrintable(char c) {
    return c >= ' ' && c < 0x7f;
}

// The same bytes one by one come to the same end at the same place.
CHeadScan::EState LookSlowly(std::string_view text, CHeadScan& scan) {
    for (std::size_t size = 1; size <= text.size(); ++size) {
        const CHeadScan::EState state = scan.Look(text.substr(0, size));
        if (state != CHeadScan::EState::Partial) return state;
    }
    return CHeadScan::EState::Partial;
}

void CheckHead(const CHttpHead& head) {
    const CHttpRequest& request = head.request;
    Expect(request.target.starts_with('/') && std::ranges::all_of(request.target, IsPrintable));
    Expect(request.target.find(' ') == std::string::npos && request.CountHeader("content-length") <= 1);
    Expect(!(request.HasHeader("content-length") && request.HasHeader("transfer-encoding")));
    Expect(request.HasHeader("host") || head.isHttp10);
    const std::string_view length = request.Header("content-length");
    if (head.hasLength) Expect(std::strtoull(std::string(length).c_str(), nullptr, 10) == request.bodyBytes);
    Expect(length.find_first_not_of("0123456789") == length.npos && head.hasLength == !length.empty());
    Expect(request.Path().size() + request.Query().size() <= request.target.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    CHeadScan scan, slowScan;
    const CHeadScan::EState state = scan.Look(text);
    Expect(state == LookSlowly(text, slowScan));
    if (state != CHeadScan::EState::Whole) return 0;
    Expect(scan.HeadBytes() == slowScan.HeadBytes());
    CHttpHead head;
    if (!ParseHead(text.substr(0, scan.HeadBytes()), head)) CheckHead(head);
    std::string line;
    AppendLogLine(line,
                  {.peer = head.forwardedFor, .method = head.methodText, .target = head.request.target});
    Expect(std::ranges::all_of(line, IsPrintable) &&
           std::ranges::count(line, '\\') * 6 <= static_cast<long>(line.size()));
    return 0;
}
