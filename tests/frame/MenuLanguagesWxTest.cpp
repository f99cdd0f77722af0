// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <wx/menu.h>

#include <map>
#include <string>
#include <vector>

#include "base/text/lng.h"
#include "files/std_file_paths.h"
#include "frame/ui/command_menus.h"
#include "settings/language_catalogue.h"

namespace {

/** The letter after a single "&", as the keyboard has it; empty where there is none. */
wxString MnemonicOf(wxString label) {
    label.Replace("&&", "");
    const std::size_t at = label.find('&');
    return at == wxString::npos || at + 1 >= label.size() ? wxString() : label.Mid(at + 1, 1).Lower();
}

/** Complains of labels of one menu that have the same mnemonic. */
void ExpectNoRepeats(const std::vector<wxString>& labels) {
    std::map<wxString, wxString> seen;
    for (const wxString& label : labels) {
        const wxString mnemonic = MnemonicOf(label);
        if (mnemonic.empty()) continue;
        const auto [first, isNew] = seen.emplace(mnemonic, label);
        EXPECT_TRUE(isNew) << "\"" << first->second.utf8_string() << "\" and \"" << label.utf8_string()
                           << "\"";
    }
}

void CheckMenu(const wxMenu& menu) {
    std::vector<wxString> labels;
    for (const wxMenuItem* item : menu.GetMenuItems()) {
        labels.push_back(item->GetItemLabel());
        if (item->GetSubMenu()) CheckMenu(*item->GetSubMenu());
    }
    ExpectNoRepeats(labels);
}

TEST(MenuLanguagesWxTest, NoMenuHasAMnemonicTwice) {
    std::vector<std::wstring> languages;
    std_file_paths::GetLngDirNames(languages);
    ASSERT_GT(languages.size(), 1u) << "no catalogue was built";
    for (const std::wstring& language : languages) {
        SCOPED_TRACE(std::string(language.begin(), language.end()));
        lng_util_internal::SetDomain(lng::Domain(), "viewer");
        lng::LoadCatalogue(language);
        const auto bar = MakeMenuBar();
        std::vector<wxString> titles;
        for (std::size_t i = 0; i < bar->GetMenuCount(); ++i) {
            titles.push_back(bar->GetMenuLabel(i));
            CheckMenu(*bar->GetMenu(i));
        }
        ExpectNoRepeats(titles);
    }
    lng_util_internal::SetDomain(lng::Domain(), {});
}

}  // namespace
