// SPDX-License-Identifier: MIT
// The search: what is loaded is filtered at once, and the library is asked for the rest.
#include <wx/simplebook.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <utility>

#include "base/text/ascii_text.h"
#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "modeldb/transfer/ui/payload_records.h"
#include "modeldb/ui/CFoundList.h"
#include "modeldb/ui/CModelSearch.h"
#include "modeldb/ui/CModelsDlg.h"
#include "modeldb/ui/CModelsDlgHost.h"
#include "modeldb/ui/CModelsTree.h"

namespace {

constexpr std::size_t kMostFound = 10'000;

}  // namespace

std::string CModelsDlg::SearchText() const {
    const std::string text = file_util_ex::ConvertToUTF8(m_searchText->GetValue().ToStdWstring());
    return std::string(ascii_text::Trimmed(text));
}

void CModelsDlg::OnSearchText() {
    const std::string text = SearchText();
    m_answer.reset();
    m_search->SearchFor(text);
    const bool isSearch = !text.empty();
    m_book->ChangeSelection(isSearch ? 1 : 0);
    if (m_foundText->IsShown() != isSearch) {
        m_foundText->Show(isSearch);
        Layout();
    }
    if (isSearch) ShowFound();
}

void CModelsDlg::ShowFound() {
    std::vector<CFoundModel> models = m_tree->Models().Find(SearchText(), kMostFound);
    if (m_answer) AppendNew(models, m_answer->models);
    const std::size_t count = models.size();
    m_found->Show(std::move(models));
    if (!m_answer && m_search->IsSearching())
        m_foundText->SetLabel(lng::Text("Searching..."));
    else if (m_answer && !m_answer->hasSucceeded)
        m_foundText->SetLabel(lng::Text("The library cannot be searched now."));
    else if (count == 0)
        m_foundText->SetLabel(lng::Text("No model was found."));
    else
        m_foundText->SetLabel(lng::Text("Models found: %s", lng::Number(count)));
}

void CModelsDlg::OnAnswer(const CFoundData& found) {
    if (found.text != SearchText()) return;
    m_answer = std::make_unique<CFoundData>(found);
    ShowFound();
    if (!found.hasSucceeded) m_host.TellOfTransfer(lng::Text("The library cannot be searched now."));
}

void CModelsDlg::Choose(const CFoundModel& model) {
    m_tree->Download(model.key, lng::ConvertFromUTF8(utf8_text::Printable(model.name, '_')));
}
