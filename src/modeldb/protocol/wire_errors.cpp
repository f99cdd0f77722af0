// SPDX-License-Identifier: MIT
#include "modeldb/protocol/wire_errors.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "modeldb/protocol/read_json.h"
#include "modeldb/protocol/wire_limits.h"
#include "modeldb/protocol/write_json.h"

namespace wire_errors {

namespace {

constexpr const char* kNotUnderstood = lng::Mark("the server does not understand the request");
constexpr CWireErrorKind kKinds[] = {
    {400, EErrorCode::BadArgument, "bad_request", kNotUnderstood, true},
    {401, EErrorCode::Unreadable, "token_needed", lng::Mark("the server wants a valid token"), false},
    {403, EErrorCode::Unreadable, "forbidden", lng::Mark("the token does not allow this"), false},
    {404, EErrorCode::NotFound, "not_found", lng::Mark("the server does not have this"), false},
    {405, EErrorCode::Unsupported, "method", kNotUnderstood, false},
    {408, EErrorCode::Busy, "too_slow", lng::Mark("the transfer took too long"), false},
    {409, EErrorCode::Exists, "exists", lng::Mark("another model has the same key"), false},
    {411, EErrorCode::BadArgument, "length_needed", kNotUnderstood, true},
    {413, EErrorCode::TooLarge, "too_large", lng::Mark("the model is larger than the server takes"), false},
    {414, EErrorCode::TooLarge, "address_too_long", kNotUnderstood, false},
    {415, EErrorCode::Unsupported, "type", kNotUnderstood, true},
    {416, EErrorCode::BadArgument, "range", kNotUnderstood, true},
    {417, EErrorCode::BadArgument, "expectation", kNotUnderstood, true},
    {422, EErrorCode::BadFormat, "refused", lng::Mark("the server refused the model"), true},
    {429, EErrorCode::Busy, "too_many", lng::Mark("the server got too many requests; try again later"),
     false},
    {431, EErrorCode::TooLarge, "headers", kNotUnderstood, true},
    {500, EErrorCode::Unreadable, "internal", lng::Mark("the server has a fault"), false},
    {502, EErrorCode::Busy, "gateway", lng::Mark("the server is not reachable"), false},
    {503, EErrorCode::Busy, "busy", lng::Mark("the server is busy; try again later"), false},
    {504, EErrorCode::Busy, "gateway_slow", lng::Mark("the server is not reachable"), false},
    {505, EErrorCode::Unsupported, "http_version", kNotUnderstood, false},
    {507, EErrorCode::NoSpace, "no_space", lng::Mark("the server has no space left"), false},
};

/** What a stranger wrote as one line; empty where it wrote none. */
std::string Shown(std::string_view text) {
    return utf8_text::Printable(utf8_text::Cut(text, wire_limits::kMessage), '?');
}

}  // namespace

std::span<const CWireErrorKind> Kinds() {
    return kKinds;
}

const CWireErrorKind& KindOf(int status) {
    const auto known = [](int wanted) { return std::ranges::find(kKinds, wanted, &CWireErrorKind::status); };
    const auto found = known(status);
    return found != std::end(kKinds) ? *found : *known(status >= 400 && status < 500 ? 400 : 500);
}

int StatusOf(EErrorCode error) {
    switch (error) {
        case EErrorCode::BadArgument:
            return 400;
        case EErrorCode::NotFound:
            return 404;
        case EErrorCode::Exists:
            return 409;
        case EErrorCode::TooLarge:
            return 413;
        case EErrorCode::Busy:
            return 503;
        case EErrorCode::NoSpace:
            return 507;
        default:
            return 500;
    }
}

int StatusOfUpload(EErrorCode error) {
    return error == EErrorCode::BadFormat ? 400 : StatusOf(error);
}

std::string Write(int status, std::string_view message) {
    const CWireErrorKind& kind = KindOf(status);
    std::string out = R"({"error":{"code":)";
    write_json::AppendText(out, kind.code);
    out += R"(,"message":)";
    write_json::AppendText(out, message.empty() ? std::string(kind.message) : Shown(message));
    out += "}}";
    return out;
}

CError Read(int status, std::string_view body) {
    const CWireErrorKind& kind = KindOf(status);
    CError error{kind.error, std::string(kind.message), {}};
    if (!kind.explains) return error;
    const auto json = read_json::Parse(body, {wire_limits::kSmallBody, 100});
    if (!json || !json.Value().is_object()) return error;
    const auto inner = json.Value().find("error");
    if (inner == json.Value().end() || !inner->is_object()) return error;
    const auto message = inner->find("message");
    if (message == inner->end() || !message->is_string()) return error;
    if (std::string shown = Shown(message->get_ref<const std::string&>()); !shown.empty())
        error.message = std::move(shown);
    return error;
}

}  // namespace wire_errors
