// SPDX-License-Identifier: MIT
#include "modeldb/server/http/http_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <ctime>

#include "base/text/ascii_text.h"
#include "base/text/number_text.h"

namespace {

constexpr std::size_t kLoggedTarget = 200;

struct CStatusText {
    int status;
    std::string_view text;
};
constexpr std::array<CStatusText, 32> kStatusTexts = {{
    {200, "OK"},
    {201, "Created"},
    {202, "Accepted"},
    {204, "No Content"},
    {206, "Partial Content"},
    {301, "Moved Permanently"},
    {302, "Found"},
    {303, "See Other"},
    {304, "Not Modified"},
    {307, "Temporary Redirect"},
    {308, "Permanent Redirect"},
    {400, "Bad Request"},
    {401, "Unauthorized"},
    {403, "Forbidden"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {406, "Not Acceptable"},
    {408, "Request Timeout"},
    {409, "Conflict"},
    {411, "Length Required"},
    {412, "Precondition Failed"},
    {413, "Payload Too Large"},
    {414, "URI Too Long"},
    {415, "Unsupported Media Type"},
    {416, "Range Not Satisfiable"},
    {417, "Expectation Failed"},
    {422, "Unprocessable Entity"},
    {429, "Too Many Requests"},
    {431, "Request Header Fields Too Large"},
    {500, "Internal Server Error"},
    {503, "Service Unavailable"},
    {505, "HTTP Version Not Supported"},
}};

std::string_view StatusText(int status) {
    const auto found = std::ranges::find(kStatusTexts, status, &CStatusText::status);
    return found == kStatusTexts.end() ? "Status" : found->text;
}

template <class Number>
void AppendNumber(std::string& out, Number number) {
    std::array<char, 24> text{};
    out.append(text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr);
}

void AppendField(std::string& out, std::string_view name, std::string_view value) {
    out.append(name).append(": ").append(value).append("\r\n");
}

bool IsNameCharacter(char c) {
    const char lower = ascii_text::Lower(c);
    return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
}
bool IsValueCharacter(char c) {
    const auto code = static_cast<unsigned char>(c);
    return (code >= ' ' && code != 0x7f) || c == '\t';
}

bool IsOursAlone(std::string_view name) {
    constexpr std::array<std::string_view, 4> kOurs = {"Connection", "Content-Length", "Date",
                                                       "Transfer-Encoding"};
    return std::ranges::any_of(kOurs,
                               [&](std::string_view ours) { return ascii_text::EqualNoCase(ours, name); });
}

void AppendTwoDigits(std::string& out, int number) {
    out += static_cast<char>('0' + number / 10 % 10);
    out += static_cast<char>('0' + number % 10);
}

void AppendEscaped(std::string& out, std::string_view text) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    for (char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (code < ' ' || code >= 0x7f || c == '"' || c == '\\') {
            out.append("\\u00") += kDigits[code >> 4];
            out += kDigits[code & 15];
        } else {
            out += c;
        }
    }
}

bool NamesSecret(std::string_view field) {
    const std::string name = ascii_text::Lowered(field.substr(0, field.find('=')));
    return name.find("token") != name.npos || name.find("password") != name.npos;
}

// The target as the log may have it.
void AppendTarget(std::string& out, std::string_view target) {
    const std::string_view shown = target.substr(0, kLoggedTarget);
    std::size_t begin = shown.find('?');
    AppendEscaped(out, shown.substr(0, begin));
    while (begin < shown.size()) {
        const std::size_t end = std::min(shown.find('&', begin + 1), shown.size());
        const std::string_view field = shown.substr(begin, end - begin);
        AppendEscaped(out, NamesSecret(field) ? field.substr(0, field.find('=') + 1) : field);
        begin = end;
    }
    if (shown.size() < target.size()) out += "...";
}

// 2026-01-31T23:59:59.123Z
void AppendTime(std::string& out, std::int64_t microseconds) {
    const std::time_t seconds = microseconds / 1'000'000;
    std::tm parts{};
    ::gmtime_r(&seconds, &parts);
    AppendNumber(out, parts.tm_year + 1900);
    const std::array<int, 5> rest = {parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min,
                                     parts.tm_sec};
    for (std::size_t i = 0; i < rest.size(); ++i) {
        out += "--T::"[i];
        AppendTwoDigits(out, rest[i]);
    }
    const auto milliseconds = static_cast<int>(microseconds / 1000 % 1000);
    out += '.';
    out += static_cast<char>('0' + milliseconds / 100);
    AppendTwoDigits(out, milliseconds);
    out += 'Z';
}

}  // namespace

std::uint64_t BodyBytesOf(const CHttpAnswer& answer) {
    if (const auto* file = std::get_if<CHttpFile>(&answer.body)) return file->length;
    const auto* text = std::get_if<std::shared_ptr<const std::string>>(&answer.body);
    return text && *text ? (*text)->size() : 0;
}

bool HasNoBody(int status) {
    return status < 200 || status == 204 || status == 304;
}

bool CanBeSent(const CHttpAnswer& answer) {
    if (answer.status < 200 || answer.status > 599) return false;
    if (!std::ranges::all_of(answer.contentType, IsValueCharacter)) return false;
    for (const auto& [name, value] : answer.headers) {
        if (name.empty() || !std::ranges::all_of(name, IsNameCharacter) || IsOursAlone(name)) return false;
        if (!std::ranges::all_of(value, IsValueCharacter)) return false;
    }
    const auto* file = std::get_if<CHttpFile>(&answer.body);
    return !file || (file->file && file->file->IsOpen());
}

void AppendAnswerHead(std::string& out, const CHttpAnswer& answer, const CAnswerHeadFacts& facts) {
    out += "HTTP/1.1 ";
    AppendNumber(out, answer.status);
    out.append(" ").append(StatusText(answer.status)).append("\r\n");
    AppendField(out, "Date", facts.date);
    if (!facts.serverName.empty()) AppendField(out, "Server", facts.serverName);
    if (!answer.contentType.empty()) AppendField(out, "Content-Type", answer.contentType);
    if (!HasNoBody(answer.status)) {
        out += "Content-Length: ";
        AppendNumber(out, BodyBytesOf(answer));
        out += "\r\n";
    }
    for (const auto& [name, value] : answer.headers) AppendField(out, name, value);
    if (facts.closes) {
        AppendField(out, "Connection", "close");
    } else if (facts.namesKeepAlive) {
        AppendField(out, "Connection", "keep-alive");
    }
    out += "\r\n";
}

std::string HttpDate(std::int64_t secondsSinceEpoch) {
    constexpr std::string_view kDays = "SunMonTueWedThuFriSat",
                               kMonths = "JanFebMarAprMayJunJulAugSepOctNovDec";
    const std::time_t seconds = secondsSinceEpoch;
    std::tm parts{};
    ::gmtime_r(&seconds, &parts);
    std::string text(kDays.substr(static_cast<std::size_t>(parts.tm_wday) * 3, 3));
    text += ", ";
    AppendTwoDigits(text, parts.tm_mday);
    text.append(" ").append(kMonths.substr(static_cast<std::size_t>(parts.tm_mon) * 3, 3)).append(" ");
    AppendNumber(text, parts.tm_year + 1900);
    const std::array<int, 3> clock = {parts.tm_hour, parts.tm_min, parts.tm_sec};
    for (std::size_t i = 0; i < clock.size(); ++i) {
        text += i == 0 ? ' ' : ':';
        AppendTwoDigits(text, clock[i]);
    }
    return text + " GMT";
}

void AppendLogLine(std::string& out, const CLoggedRequest& request) {
    out += R"({"time":")";
    AppendTime(out, request.microsecondsSinceEpoch);
    out += R"(","id":)";
    AppendNumber(out, request.id);
    out += R"(,"peer":")";
    AppendEscaped(out, request.peer);
    out += R"(","method":")";
    AppendEscaped(out, request.method.substr(0, 16));
    out += R"(","target":")";
    AppendTarget(out, request.target);
    out += R"(","status":)";
    AppendNumber(out, request.status);
    out += R"(,"received":)";
    AppendNumber(out, request.receivedBytes);
    out += R"(,"sent":)";
    AppendNumber(out, request.sentBytes);
    out += R"(,"ms":)";
    number_text::AppendFixed(out, request.milliseconds, 3);
    out += '}';
}
