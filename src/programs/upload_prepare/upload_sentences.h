// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "programs/upload_prepare/CUpload.h"
#include "programs/upload_prepare/join_upload.h"

/** What the window says, in the program's language. */
namespace upload_sentences {

/** "7 files, 1.2 MB". */
/** In the program's language. */
[[nodiscard]] std::wstring Size(std::uint64_t bytes);
[[nodiscard]] std::wstring Sum(const CUploadContent& content);
/** Of the pictures from outside the model's folder: that there are some, or that nobody knows; empty where there are
 * none. */
[[nodiscard]] std::wstring Outside(const CUploadContent& content);

struct CState {
    std::wstring heading, text;
};
/** What has come of the upload. */
[[nodiscard]] CState Of(const CUpload& upload);
/** "2 of 7 files, 0.4 MB of 1.2 MB"; empty before anything is known. */
[[nodiscard]] std::wstring Progress(const CUpload& upload);

}  // namespace upload_sentences
