// SPDX-License-Identifier: MIT
#include "modeldb/server/server_answers.h"

#include <algorithm>

#include "modeldb/protocol/wire_errors.h"
#include "modeldb/protocol/wire_limits.h"

namespace server_answers {

namespace {

constexpr std::string_view kRetrySeconds = "2";
constexpr std::string_view kForOneClient = "private, no-cache";

}  // namespace

CHttpAnswer Refusal(int status, std::string_view message) {
    CHttpAnswer answer = Json(status, wire_errors::Write(status, message));
    answer.headers.emplace_back("Cache-Control", "no-store");
    if (status == 503 || status == 429) answer.headers.emplace_back("Retry-After", kRetrySeconds);
    return answer;
}

CHttpAnswer Refusal(const CError& error) {
    const int status = wire_errors::StatusOf(error.code);
    // What is wrong with the store itself is no matter of strangers.
    return Refusal(status,
                   status >= 500 && error.code != EErrorCode::NoSpace ? std::string_view() : error.message);
}

CHttpAnswer WrongMethod(std::string_view allowed) {
    CHttpAnswer answer = Refusal(405);
    answer.headers.emplace_back("Allow", allowed);
    return answer;
}

CHttpAnswer Json(int status, std::string json) {
    return CHttpAnswer::OfText(status, std::string(wire_limits::kJsonType), std::move(json));
}

void AddTag(CHttpAnswer& answer, std::string_view tag, bool isPrivate) {
    answer.headers.emplace_back("ETag", tag);
    answer.headers.emplace_back("Cache-Control", isPrivate ? kForOneClient : "no-cache");
}

void KeepFromSharedCaches(CHttpAnswer& answer) {
    const bool isTold = std::ranges::any_of(
        answer.headers, [](const auto& header) { return header.first == "Cache-Control"; });
    if (!isTold) answer.headers.emplace_back("Cache-Control", kForOneClient);
}

bool HasTag(const CHttpRequest& request, std::string_view tag) {
    std::string_view list = request.Header("If-None-Match");
    if (list == "*") return true;
    while (!list.empty()) {
        const std::size_t comma = list.find(',');
        std::string_view one = list.substr(0, comma);
        list = comma == list.npos ? std::string_view() : list.substr(comma + 1);
        while (!one.empty() && (one.front() == ' ' || one.front() == '\t')) one.remove_prefix(1);
        while (!one.empty() && (one.back() == ' ' || one.back() == '\t')) one.remove_suffix(1);
        if (one.starts_with("W/")) one.remove_prefix(2);  // a proxy that packs an answer weakens its tag
        if (one == tag) return true;
    }
    return false;
}

CHttpAnswer NotModified(std::string_view tag, bool isPrivate) {
    CHttpAnswer answer{304, {}, {}, {}};
    AddTag(answer, tag, isPrivate);
    return answer;
}

}  // namespace server_answers
