// SPDX-License-Identifier: MIT
#include "modeldb/store/store_names.h"

#include "base/text/lng.h"
#include "base/text/natural_order.h"
#include "base/text/utf8_text.h"

namespace store_names {

CStatus CheckText(std::string_view text, std::size_t mostBytes) {
    if (text.size() > mostBytes)
        return CError{EErrorCode::BadArgument, lng::Mark("the name is too long"), {}};
    if (text.find('\0') != text.npos || !utf8_text::Decode(text))
        return CError{EErrorCode::BadArgument, lng::Mark("the name is no valid text"), {}};
    return CDone{};
}

CStatus Check(std::string_view name, std::size_t mostBytes) {
    if (name.empty()) return CError{EErrorCode::BadArgument, lng::Mark("the name is empty"), {}};
    return CheckText(name, mostBytes);
}

std::string Folded(std::string_view text) {
    return file_util_ex::ConvertToUTF8(natural_order::Folded(file_util_ex::ConvertFromUTF8W(text)));
}

}  // namespace store_names
