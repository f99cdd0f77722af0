// SPDX-License-Identifier: MIT
#include "modeldb/server/byte_ranges.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "base/text/ascii_text.h"
#include "modeldb/server/server_answers.h"

namespace byte_ranges {

namespace {

using EKind = CRange::EKind;

/** All of a text as a number. */
std::optional<std::uint64_t> Number(std::string_view text) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

CRange Last(std::uint64_t count, std::uint64_t size) {
    const std::uint64_t length = std::min(count, size);
    if (length == 0) return {EKind::Outside, 0, 0};
    return {EKind::Part, size - length, length};
}

void AddForEver(CHttpAnswer& answer, std::string_view tag, bool isPrivate) {
    answer.headers.emplace_back("ETag", tag);
    answer.headers.emplace_back("Cache-Control", isPrivate ? "private, max-age=31536000, immutable"
                                                           : "public, max-age=31536000, immutable");
    answer.headers.emplace_back("Accept-Ranges", "bytes");
    // They are a stranger's: no browser may take them for a page of this server.
    answer.headers.emplace_back("X-Content-Type-Options", "nosniff");
    answer.headers.emplace_back("Content-Security-Policy", "default-src 'none'; sandbox");
}

CHttpAnswer Outside(std::uint64_t size) {
    CHttpAnswer answer = server_answers::Refusal(416);
    answer.headers.emplace_back("Content-Range", "bytes */" + std::to_string(size));
    return answer;
}

/** The range that counts: a client that holds other bytes (If-Range) gets all. */
CRange Wanted(const CHttpRequest& request, std::uint64_t size, std::string_view tag) {
    if (request.method != EHttpMethod::Get) return {};
    if (request.HasHeader("If-Range") && request.Header("If-Range") != tag) return {};
    return Read(request.Header("Range"), size);
}

}  // namespace

CRange Read(std::string_view header, std::uint64_t size) {
    constexpr std::string_view kUnit = "bytes=";
    if (header.size() < kUnit.size() || !ascii_text::EqualNoCase(header.substr(0, kUnit.size()), kUnit))
        return {};
    header.remove_prefix(kUnit.size());
    if (header.find(',') != header.npos) return {};
    const std::size_t dash = header.find('-');
    if (dash == header.npos) return {};
    const std::string_view from = header.substr(0, dash), to = header.substr(dash + 1);
    const std::optional<std::uint64_t> first = Number(from), last = Number(to);
    if (from.empty()) return last ? Last(*last, size) : CRange{};
    if (!first || (!to.empty() && (!last || *last < *first))) return {};
    if (*first >= size) return {EKind::Outside, 0, 0};
    const std::uint64_t end = last ? std::min(*last, size - 1) : size - 1;
    return {EKind::Part, *first, end - *first + 1};
}

CHttpAnswer Answer(const CHttpRequest& request, const CHotFile& file, std::string_view tag, bool isPrivate) {
    CHttpAnswer answer;
    if (server_answers::HasTag(request, tag)) {
        answer.status = 304;
        AddForEver(answer, tag, isPrivate);
        return answer;
    }
    const CRange range = Wanted(request, file.bytes, tag);
    if (range.kind == EKind::Outside) return Outside(file.bytes);
    answer.contentType = file.mime;
    AddForEver(answer, tag, isPrivate);
    if (range.kind == EKind::Whole) {
        answer.body = CHttpFile{file.file, 0, file.bytes};
        return answer;
    }
    answer.status = 206;
    answer.headers.emplace_back("Content-Range", "bytes " + std::to_string(range.first) + "-" +
                                                     std::to_string(range.first + range.length - 1) + "/" +
                                                     std::to_string(file.bytes));
    answer.body = CHttpFile{file.file, range.first, range.length};
    return answer;
}

}  // namespace byte_ranges
