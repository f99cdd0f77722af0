// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cerrno>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/system_error.h"
#include "settings/choose_language.h"

namespace {

TEST(LanguageWxTest, ErrorsAndNumbersAreToldInTheLanguageInForce) {
    lng_util_internal::SetDomain(lng::Domain(), "viewer");
    lng::SetLanguage(L"de");
    const CError missing = file_util_ex::ReadWholeFile("/no/such/file").Error();
    EXPECT_EQ(lng::Text(missing), L"/no/such/file: diese Datei oder diesen Ordner gibt es nicht");
    EXPECT_EQ(lng::Text(CError{EErrorCode::WriteFailed, SystemErrorText(ENOSPC), {}}),
              L"der Datenträger ist voll");
    // A library's own words pass, whatever they are.
    EXPECT_EQ(lng::Text(CError{EErrorCode::BadFormat, "Bogus \xFF marker", "a.jpg"}),
              L"a.jpg: Bogus \uFFFD marker");
    EXPECT_EQ(lng::Text(CError{EErrorCode::BadFormat, "", "a.jpg"}), L"a.jpg: ");
    EXPECT_EQ(lng::Number(1'234'567), L"1.234.567");
    lng::SetLanguage(L"fr");
    EXPECT_EQ(lng::Text(CError{EErrorCode::BadFormat, "%s of %d", "100%s"}), L"100%s\u00A0: %s of %d");
    lng::SetLanguage(L"en");
    EXPECT_EQ(lng::Number(1'234'567), L"1,234,567");
}

}  // namespace
