// SPDX-License-Identifier: MIT
#include "frame/model_list/tool_tip_text.h"

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "files/file_util_ex.h"
#include "frame/preview/preview_facts.h"
#include "session/ahead/CFileStamp.h"

std::wstring ToolTipText(const std::wstring& path, const std::wstring& problem) {
    std::wstring text = file_util_ex::ShownName(path);
    if (const auto stamp = CFileStamp::Of(file_util_ex::ConvertToUTF8(path)))
        text += L"\n" + lng::Size(stamp->bytes);
    if (!problem.empty()) text += L"\n" + problem;
    return text;
}
