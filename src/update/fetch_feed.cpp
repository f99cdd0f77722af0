// SPDX-License-Identifier: MIT
#include "update/fetch_feed.h"

#include <curl/curl.h>

#include <algorithm>
#include <exception>
#include <memory>
#include <mutex>

#include "base/text/ascii_text.h"
#include "base/text/lng.h"

using lng::Mark;

namespace {

constexpr std::size_t kMostBytes = 1 << 20;
constexpr long kMostRedirects = 3;
constexpr long kConnectMs = 10'000;
constexpr int kAskEveryMs = 50;  ///< whether the transfer may go on

struct CEasyDeleter {
    void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
};
struct CMultiDeleter {
    void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
};
using CEasy = std::unique_ptr<CURL, CEasyDeleter>;
using CMulti = std::unique_ptr<CURLM, CMultiDeleter>;

struct CBody {
    std::string bytes;
    bool isTooLarge = false;
};

/** No exception may pass through libcurl. */
std::size_t OnBody(char* piece, std::size_t size, std::size_t count, void* target) {
    auto& body = *static_cast<CBody*>(target);
    const std::size_t bytes = size * count;
    body.isTooLarge = body.isTooLarge || bytes > kMostBytes - body.bytes.size();
    if (body.isTooLarge) return CURL_WRITEFUNC_ERROR;
    try {
        body.bytes.append(piece, bytes);
    } catch (const std::exception&) {
        return CURL_WRITEFUNC_ERROR;
    }
    return bytes;
}

bool StartCurl() {
    static std::once_flag once;
    static bool started = false;
    std::call_once(once, [] { started = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK; });
    return started;
}

template <class T>
bool Set(CURL* easy, CURLoption option, T value) {
    return curl_easy_setopt(easy, option, value) == CURLE_OK;
}

bool SetRules(CURL* easy) {
    return Set(easy, CURLOPT_PROTOCOLS_STR, "https") && Set(easy, CURLOPT_REDIR_PROTOCOLS_STR, "https") &&
           Set(easy, CURLOPT_FOLLOWLOCATION, 1L) && Set(easy, CURLOPT_MAXREDIRS, kMostRedirects) &&
           Set(easy, CURLOPT_SSL_VERIFYPEER, 1L) && Set(easy, CURLOPT_SSL_VERIFYHOST, 2L) &&
           Set(easy, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2)) &&
           Set(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1)) &&
           Set(easy, CURLOPT_DISALLOW_USERNAME_IN_URL, 1L) && Set(easy, CURLOPT_FAILONERROR, 1L) &&
           Set(easy, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(kMostBytes)) &&
           Set(easy, CURLOPT_NOSIGNAL, 1L) &&
           Set(easy, CURLOPT_QUICK_EXIT, 1L);  // or a check that is cancelled waits for the resolver
}

bool SetOptions(CURL* easy, const CFeedRequest& request, CBody& body) {
    const auto deadline = static_cast<long>(request.deadline.count());
    return SetRules(easy) && Set(easy, CURLOPT_URL, request.address.c_str()) &&
           Set(easy, CURLOPT_USERAGENT, request.agent.c_str()) && Set(easy, CURLOPT_TIMEOUT_MS, deadline) &&
           Set(easy, CURLOPT_CONNECTTIMEOUT_MS, std::min(kConnectMs, deadline)) &&
           Set(easy, CURLOPT_WRITEFUNCTION, &OnBody) && Set(easy, CURLOPT_WRITEDATA, &body) &&
           (request.certificates.empty() || Set(easy, CURLOPT_CAINFO, request.certificates.c_str()));
}

CError NotPossible() {
    return {EErrorCode::Unsupported, Mark("transfers are not possible here"), {}};
}

CError NotHttps() {
    return {EErrorCode::BadArgument,
            Mark("the address is not one of https, or leads to another that is not"),
            {}};
}

CError FailureOf(CURLcode code) {
    switch (code) {
        case CURLE_UNSUPPORTED_PROTOCOL:
        case CURLE_URL_MALFORMAT:
        case CURLE_LOGIN_DENIED:
            return NotHttps();
        case CURLE_COULDNT_RESOLVE_HOST:
        case CURLE_COULDNT_RESOLVE_PROXY:
            return {EErrorCode::Busy, Mark("nobody knows a server of this name"), {}};
        case CURLE_COULDNT_CONNECT:
            return {EErrorCode::Busy, Mark("the server cannot be reached"), {}};
        case CURLE_OPERATION_TIMEDOUT:
            return {EErrorCode::Busy, Mark("the server takes too long to answer"), {}};
        case CURLE_PEER_FAILED_VERIFICATION:
        case CURLE_SSL_ISSUER_ERROR:
        case CURLE_SSL_CACERT_BADFILE:
        case CURLE_SSL_INVALIDCERTSTATUS:
            return {EErrorCode::Unreadable, Mark("the server's certificate is not trusted"), {}};
        case CURLE_FILESIZE_EXCEEDED:
            return {EErrorCode::TooLarge, Mark("the server sends more than was expected"), {}};
        case CURLE_TOO_MANY_REDIRECTS:
            return {EErrorCode::Unsupported, Mark("the server redirects too often"), {}};
        case CURLE_HTTP_RETURNED_ERROR:
            return {EErrorCode::NotFound, Mark("the server has no list of versions there"), {}};
        case CURLE_OUT_OF_MEMORY:
            return {EErrorCode::TooLarge, Mark("there is not enough memory"), {}};
        default:
            return {EErrorCode::Busy, Mark("the connection to the server was lost"), {}};
    }
}

/** How libcurl ended; nothing when it was cancelled. */
CResult<CURLcode> Drive(CURLM* multi, const std::atomic<bool>& cancelled) {
    int running = 1;
    while (running > 0) {
        if (cancelled) return CError{EErrorCode::Cancelled, Mark("cancelled"), {}};
        if (curl_multi_perform(multi, &running) != CURLM_OK) return NotPossible();
        if (running > 0 && curl_multi_poll(multi, nullptr, 0, kAskEveryMs, nullptr) != CURLM_OK)
            return NotPossible();
    }
    int left = 0;
    const CURLMsg* message = curl_multi_info_read(multi, &left);
    return message != nullptr && message->msg == CURLMSG_DONE ? message->data.result : CURLE_RECV_ERROR;
}

}  // namespace

CResult<std::string> FetchFeed(const CFeedRequest& request, const std::atomic<bool>& cancelled) {
    if (!ascii_text::Lowered(request.address).starts_with("https://")) return NotHttps();
    if (!StartCurl()) return NotPossible();
    CBody body;
    const CMulti multi(curl_multi_init());
    const CEasy easy(curl_easy_init());  // ends before the other, which it belongs to
    if (!multi || !easy || !SetOptions(easy.get(), request, body)) return NotPossible();
    if (curl_multi_add_handle(multi.get(), easy.get()) != CURLM_OK) return NotPossible();
    const CResult<CURLcode> ended = Drive(multi.get(), cancelled);
    (void)curl_multi_remove_handle(multi.get(), easy.get());
    if (!ended) return ended.Error();
    if (body.isTooLarge) return FailureOf(CURLE_FILESIZE_EXCEEDED);
    if (ended.Value() != CURLE_OK) return FailureOf(ended.Value());
    return std::move(body.bytes);
}
