// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "modeldb/server/http/CHttpAnswer.h"
#include "modeldb/server/http/CHttpBody.h"
#include "modeldb/server/http/CHttpReply.h"
#include "modeldb/server/http/CHttpRequest.h"

/** What answers requests. All functions are called on the server's threads, several at once, and must not block: a lookup in
 * memory or a prepared SELECT is fine, work that takes longer than a millisecond goes to another thread together with the
 * reply. An exception that leaves one of them becomes a 500. None is called after CHttpServer::Stop has returned. */
class CHttpSite {
  public:
    virtual ~CHttpSite() = default;

    /** A request without a body: every one that is not POST. Unknown methods come as EHttpMethod::Other, to be told 405. */
    virtual void Answer(CHttpRequest request, CHttpReply reply) = 0;

    /** A POST whose body has not been read; nothing lets it in: its body is read and AnswerBody follows. What is given is sent, and
     * the connection closed without reading the body. The place for the checks of address, token, content type and
     * size (413), and for 503 while too much work waits. */
    [[nodiscard]] virtual std::optional<CHttpAnswer> RefuseBody(const CHttpRequest& request) = 0;

    /** A POST whose body has come whole, all of its request.bodyBytes (0 is possible). Of a body that was cut short or came too
     * slowly nobody hears. */
    virtual void AnswerBody(CHttpRequest request, CHttpBody body, CHttpReply reply) = 0;
};
