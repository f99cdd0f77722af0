// SPDX-License-Identifier: MIT
#pragma once

#include <curl/curl.h>

#include <memory>
#include <string>

#include "modeldb/client/transfer/CTransferExchange.h"

// libcurl's handles, and how a request becomes their options. For this room's sources alone.

struct CCurlEasyDeleter {
    void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
};
struct CCurlMultiDeleter {
    void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
};
struct CCurlListDeleter {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
using CCurlEasy = std::unique_ptr<CURL, CCurlEasyDeleter>;
using CCurlMulti = std::unique_ptr<CURLM, CCurlMultiDeleter>;
using CCurlList = std::unique_ptr<curl_slist, CCurlListDeleter>;

/** Makes the library ready; the first call of the process does it. */
[[nodiscard]] bool StartCurl();

/** Gives the handle the options of a request, and no others. headers: kept there for as long as the request runs. False when
 * the handle takes one of them not: then it must not be used. */
[[nodiscard]] bool SetOptions(CURL* easy, const CTransferRequest& request, const CTransferTimes& times,
                              CTransferExchange& exchange, CCurlList& headers);

/** What a failure of libcurl means, and whether it is one of the connection. */
struct CCurlFailure {
    CError error;
    bool isLost = false;
};
[[nodiscard]] CCurlFailure FailureOf(CURLcode code);
