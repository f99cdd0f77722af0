// SPDX-License-Identifier: MIT
#include "modeldb/ui/CFoundList.h"

#include <algorithm>
#include <utility>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "widgets/ui/accessible_name.h"

namespace {

/** The toolkit draws the rows in the first child that it makes. */
wxWindow* RowsOf(const wxListView& list) {
    return list.GetChildren().front();
}

}  // namespace

CFoundList::CFoundList(wxWindow* parent, std::function<void(const CFoundModel&)> choose)
    : wxListView(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                 wxLC_REPORT | wxLC_VIRTUAL | wxLC_SINGLE_SEL | wxBORDER_NONE),
      m_choose(std::move(choose)),
      m_main(RowsOf(*this)),
      m_access(*m_main, EAccessibleRole::List,
               {[this] { return m_models.size(); }, [this](std::size_t number) { return Described(number); },
                [this] { return AtKeys(); },
                [this](std::size_t number) { ChooseAt(static_cast<long>(number)); }}) {
    AppendColumn(lng::Text("Model"));
    AppendColumn(lng::Text("Group"));
    SetAccessibleName(*this, lng::Text("Models found"));
    SetAccessibleName(MainWindow(), lng::Text("Models found"));
    // By Enter; a double click chose with its first half already.
    MainWindow().Bind(wxEVT_KEY_DOWN, [this](wxKeyEvent& event) {
        const int key = event.GetKeyCode();
        if (key == WXK_RETURN || key == WXK_NUMPAD_ENTER)
            ChooseAt(GetFirstSelected());
        else
            event.Skip();
    });
    MainWindow().Bind(wxEVT_LEFT_UP, [this](wxMouseEvent& event) {
        ChooseAt(ModelAt(event.GetPosition()));
        event.Skip();
    });
    const auto tell = [this](wxListEvent& event) {
        m_access.Changed();
        event.Skip();
    };
    Bind(wxEVT_LIST_ITEM_SELECTED, tell);
    Bind(wxEVT_LIST_ITEM_FOCUSED, tell);
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        FitColumns();
        event.Skip();
    });
}

void CFoundList::Show(std::vector<CFoundModel> models) {
    const long selected = GetFirstSelected();
    const std::uint32_t key =
        selected >= 0 ? m_models[static_cast<std::size_t>(selected)].key : std::uint32_t{0};
    if (selected >= 0) Select(selected, false);
    m_models = std::move(models);
    SetItemCount(static_cast<long>(m_models.size()));
    const auto again = std::ranges::find(m_models, key, &CFoundModel::key);
    if (selected >= 0 && again != m_models.end()) {
        Select(again - m_models.begin());
        Focus(again - m_models.begin());
    }
    m_access.Changed();
    Refresh();
}

CDrawnItem CFoundList::Described(std::size_t number) const {
    const auto row = static_cast<long>(number);
    wxRect place;
    if (GetItemRect(row, place)) place.Offset(-m_main->GetPosition());
    return {.role = EAccessibleRole::ListItem,
            .name = OnGetItemText(row, 0).ToStdWstring(),
            .description = OnGetItemText(row, 1).ToStdWstring(),
            .place = place.Intersect(m_main->GetClientRect()),
            .isSelected = IsSelected(row)};
}

std::optional<std::size_t> CFoundList::AtKeys() const {
    const long row = GetFocusedItem();
    return row < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(row));
}

long CFoundList::ModelAt(wxPoint place) const {
    int flags = 0;
    const long number = HitTest(place, flags);  // it counts from the rows' window, not from the control's
    return number >= 0 && static_cast<std::size_t>(number) < m_models.size() ? number : -1;
}

void CFoundList::TakeFocus() {
    MainWindow().SetFocus();
    if (GetFirstSelected() < 0 && !m_models.empty()) {
        Select(0);
        Focus(0);
    }
}

wxString CFoundList::OnGetItemText(long item, long column) const {
    const CFoundModel& model = m_models[static_cast<std::size_t>(item)];
    return lng::ConvertFromUTF8(utf8_text::Printable(column == 0 ? model.name : model.group, '_'));
}

void CFoundList::ChooseAt(long number) {
    if (number < 0) return;
    const CFoundModel model = m_models[static_cast<std::size_t>(number)];  // the list may change meanwhile
    m_choose(model);
}

void CFoundList::FitColumns() {
    const int width = GetClientSize().x;
    SetColumnWidth(0, width * 3 / 5);
    SetColumnWidth(1, width - width * 3 / 5);
}
