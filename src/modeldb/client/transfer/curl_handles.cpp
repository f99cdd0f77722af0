// SPDX-License-Identifier: MIT
#include "modeldb/client/transfer/curl_handles.h"

#include <cstdio>
#include <exception>
#include <mutex>
#include <utility>

#include "base/text/ascii_text.h"
#include "base/text/lng.h"

using lng::Mark;

namespace {

constexpr std::uint64_t kAskFirstBytes =
    64 << 10;  ///< a body from which on the server is asked whether it wants it

/** What a call of ours returns; or nothing, where memory ran out, since no exception may pass through libcurl. */
template <class TCall>
auto Guarded(void* exchange, TCall call) -> decltype(call(std::declval<CTransferExchange&>())) {
    auto& own = *static_cast<CTransferExchange*>(exchange);
    try {
        return call(own);
    } catch (const std::exception&) {
        own.RunOutOfMemory();
        return {};
    }
}

std::size_t OnHeader(char* line, std::size_t size, std::size_t count, void* exchange) {
    const std::size_t bytes = size * count;
    const bool taken = Guarded(exchange, [&](CTransferExchange& own) {
        return own.TakeHeader({line, bytes});
    });
    return taken ? bytes : CURL_WRITEFUNC_ERROR;
}

std::size_t OnBody(char* piece, std::size_t size, std::size_t count, void* exchange) {
    const auto bytes = std::as_bytes(std::span(piece, size * count));
    const bool taken = Guarded(exchange, [&](CTransferExchange& own) { return own.TakeBody(bytes); });
    return taken ? bytes.size() : CURL_WRITEFUNC_ERROR;
}

std::size_t OnSend(char* room, std::size_t size, std::size_t count, void* exchange) {
    const auto bytes = std::as_writable_bytes(std::span(room, size * count));
    return Guarded(exchange, [&](CTransferExchange& own) { return own.GiveBody(bytes); })
        .value_or(CURL_READFUNC_ABORT);
}

int OnSeek(void* exchange, curl_off_t offset, int origin) {
    const bool toBegin = offset == 0 && origin == SEEK_SET;
    return toBegin && static_cast<CTransferExchange*>(exchange)->RewindBody() ? CURL_SEEKFUNC_OK
                                                                              : CURL_SEEKFUNC_CANTSEEK;
}

template <class T>
bool Set(CURL* easy, CURLoption option, T value) {
    return curl_easy_setopt(easy, option, value) == CURLE_OK;
}

/** The host of an address is this machine, where no proxy has a business. */
bool IsLoopback(const std::string& url) {
    const std::unique_ptr<CURLU, void (*)(CURLU*)> parts(curl_url(), curl_url_cleanup);
    char* text = nullptr;
    if (curl_url_set(parts.get(), CURLUPART_URL, url.c_str(), 0) != CURLUE_OK ||
        curl_url_get(parts.get(), CURLUPART_HOST, &text, 0) != CURLUE_OK)
        return false;
    const std::string host = text;
    curl_free(text);
    return ascii_text::EqualNoCase(host, "localhost") || host == "[::1]" || host.starts_with("127.");
}

bool Add(CCurlList& list, const std::string& header) {
    curl_slist* longer = curl_slist_append(list.get(), header.c_str());
    if (longer == nullptr) return false;
    (void)list.release();
    list.reset(longer);
    return true;
}

bool SetHeaders(CURL* easy, const CTransferRequest& request, CCurlList& list) {
    for (const std::string& header : request.headers)
        if (!Add(list, header)) return false;
    if (!request.token.empty() && !Add(list, "Authorization: Bearer " + request.token)) return false;
    // Without it a large upload that is refused would be sent first.
    if (request.body.size > kAskFirstBytes && !Add(list, "Expect: 100-continue")) return false;
    return Set(easy, CURLOPT_HTTPHEADER, list.get());
}

bool SetMethod(CURL* easy, const CTransferRequest& request) {
    if (request.method == ETransferMethod::Head) return Set(easy, CURLOPT_NOBODY, 1L);
    if (request.method == ETransferMethod::Get) return Set(easy, CURLOPT_HTTPGET, 1L);
    return Set(easy, CURLOPT_POST, 1L) &&
           Set(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.body.size));
}

bool SetCalls(CURL* easy, CTransferExchange& exchange) {
    return Set(easy, CURLOPT_HEADERFUNCTION, &OnHeader) && Set(easy, CURLOPT_HEADERDATA, &exchange) &&
           Set(easy, CURLOPT_WRITEFUNCTION, &OnBody) && Set(easy, CURLOPT_WRITEDATA, &exchange) &&
           Set(easy, CURLOPT_READFUNCTION, &OnSend) && Set(easy, CURLOPT_READDATA, &exchange) &&
           Set(easy, CURLOPT_SEEKFUNCTION, &OnSeek) && Set(easy, CURLOPT_SEEKDATA, &exchange);
}

bool SetRules(CURL* easy, const CTransferTimes& times) {
    return Set(easy, CURLOPT_PROTOCOLS_STR, "http,https") && Set(easy, CURLOPT_FOLLOWLOCATION, 0L) &&
           Set(easy, CURLOPT_SSL_VERIFYPEER, 1L) && Set(easy, CURLOPT_SSL_VERIFYHOST, 2L) &&
           Set(easy, CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_1_1) && Set(easy, CURLOPT_NOSIGNAL, 1L) &&
           Set(easy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(times.connect.count())) &&
           Set(easy, CURLOPT_QUICK_EXIT, 1L) &&  // or a cancelled call waits for the resolver
           Set(easy, CURLOPT_USERAGENT, "Orbivue/" ORBIVUE_VERSION) && Set(easy, CURLOPT_TCP_NODELAY, 1L);
}

}  // namespace

bool StartCurl() {
    static std::once_flag once;
    static bool started = false;
    std::call_once(once, [] { started = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK; });
    return started;
}

bool SetOptions(CURL* easy, const CTransferRequest& request, const CTransferTimes& times,
                CTransferExchange& exchange, CCurlList& headers) {
    curl_easy_reset(easy);
    return SetRules(easy, times) && SetMethod(easy, request) && SetHeaders(easy, request, headers) &&
           SetCalls(easy, exchange) && Set(easy, CURLOPT_URL, request.url.c_str()) &&
           (!IsLoopback(request.url) || Set(easy, CURLOPT_PROXY, ""));
}

CCurlFailure FailureOf(CURLcode code) {
    switch (code) {
        case CURLE_COULDNT_RESOLVE_HOST:
        case CURLE_COULDNT_RESOLVE_PROXY:
            return {{EErrorCode::Busy, Mark("nobody knows a server of this name"), {}}, true};
        case CURLE_COULDNT_CONNECT:
        case CURLE_OPERATION_TIMEDOUT:
        case CURLE_INTERFACE_FAILED:
            return {{EErrorCode::Busy, Mark("the server cannot be reached"), {}}, true};
        case CURLE_PEER_FAILED_VERIFICATION:
        case CURLE_SSL_ISSUER_ERROR:
        case CURLE_SSL_CACERT_BADFILE:
        case CURLE_SSL_INVALIDCERTSTATUS:
            return {{EErrorCode::Unreadable, Mark("the server's certificate is not trusted"), {}}, false};
        case CURLE_SSL_CONNECT_ERROR:
        case CURLE_WEIRD_SERVER_REPLY:
        case CURLE_UNSUPPORTED_PROTOCOL:
        case CURLE_BAD_CONTENT_ENCODING:
            return {{EErrorCode::BadFormat, Mark("the server does not answer as one of models does"), {}},
                    false};
        case CURLE_URL_MALFORMAT:
            return {{EErrorCode::BadArgument, Mark("this is no address of a server"), {}}, false};
        case CURLE_OUT_OF_MEMORY:
            return {{EErrorCode::TooLarge, Mark("there is not enough memory"), {}}, false};
        default:
            return {{EErrorCode::Busy, Mark("the connection to the server was lost"), {}}, true};
    }
}
