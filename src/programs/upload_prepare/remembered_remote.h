// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** The remote that was uploaded to last, in upload.ini of the settings folder: it is offered first. That is all that is
 * kept: each upload is confirmed anew. Empty: none. */
namespace remembered_remote {

[[nodiscard]] std::string Get();
void Keep(const std::string& remote);

}  // namespace remembered_remote
