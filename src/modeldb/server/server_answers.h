// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "base/CResult.h"
#include "modeldb/server/http/CHttpAnswer.h"
#include "modeldb/server/http/CHttpRequest.h"

/** The answers of a server of models, as the protocol has them. */
namespace server_answers {

/** An error's status and body, with Retry-After where a later try may succeed. message: a sentence for people; empty: that of
 * the protocol for this status. */
[[nodiscard]] CHttpAnswer Refusal(int status, std::string_view message = {});
/** The same for a failure of the store or of what a request asks for. Nothing of where it happened is told. */
[[nodiscard]] CHttpAnswer Refusal(const CError& error);
/** For a method that an address does not take. allowed: the methods that it does, as "Allow" has them. */
[[nodiscard]] CHttpAnswer WrongMethod(std::string_view allowed);

[[nodiscard]] CHttpAnswer Json(int status, std::string json);

/** Of a private server: says that it is for no shared cache, where the answer says nothing of caches itself. */
void KeepFromSharedCaches(CHttpAnswer& answer);
/** Adds a tag, in quotation marks, and that the answer must be asked for again each time. isPrivate: it is for no shared cache. */
void AddTag(CHttpAnswer& answer, std::string_view tag, bool isPrivate);
/** True where the client has what this tag stands for, so that 304 is enough. */
[[nodiscard]] bool HasTag(const CHttpRequest& request, std::string_view tag);
[[nodiscard]] CHttpAnswer NotModified(std::string_view tag, bool isPrivate);

}  // namespace server_answers
