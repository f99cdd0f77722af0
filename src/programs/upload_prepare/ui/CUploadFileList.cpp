// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/ui/CUploadFileList.h"

#include <algorithm>
#include <optional>

#include "base/text/lng.h"
#include "programs/upload_prepare/ui/page_parts.h"
#include "programs/upload_prepare/upload_sentences.h"
#include "widgets/ui/accessible_name.h"

CUploadFileList::CUploadFileList(wxWindow* parent, const CUploadContent& content)
    : wxListView(
          parent, wxID_ANY, wxDefaultPosition,
          wxSize(page_parts::TextWidth(*parent), std::max(parent->FromDIP(140), 8 * parent->GetCharHeight())),
          wxLC_REPORT | wxLC_SINGLE_SEL),
      m_rows(GetChildren().front()),  // in which the toolkit draws them
      m_access(*m_rows, EAccessibleRole::List,
               {[this] { return static_cast<std::size_t>(GetItemCount()); },
                [this](std::size_t number) { return Described(number); },
                [this] {
                    const long row = GetFocusedItem();
                    return row < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(row));
                },
                nullptr}) {
    const std::wstring name = lng::Text("Files to upload");
    SetAccessibleName(*this, name);
    SetAccessibleName(*m_rows, name);
    AppendColumn(lng::Text("File"));
    AppendColumn(lng::Text("Size"), wxLIST_FORMAT_RIGHT);
    for (const CUploadContent::CFile& file : content.files) {
        const long row = InsertItem(GetItemCount(), page_parts::Shown(file.name));
        SetItem(row, 1, upload_sentences::Size(file.bytes));
    }
    SetColumnWidth(1, wxLIST_AUTOSIZE_USEHEADER);
    Bind(wxEVT_LIST_ITEM_SELECTED, &CUploadFileList::OnItem, this);
    Bind(wxEVT_LIST_ITEM_FOCUSED, &CUploadFileList::OnItem, this);
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        FitColumns();
        event.Skip();
    });
}

/** The toolkit reports on items still while it deletes them. */
CUploadFileList::~CUploadFileList() {
    Unbind(wxEVT_LIST_ITEM_SELECTED, &CUploadFileList::OnItem, this);
    Unbind(wxEVT_LIST_ITEM_FOCUSED, &CUploadFileList::OnItem, this);
}

void CUploadFileList::OnItem(wxListEvent& event) {
    m_access.Changed();
    event.Skip();
}

CDrawnItem CUploadFileList::Described(std::size_t number) const {
    const auto row = static_cast<long>(number);
    wxRect place;
    if (GetItemRect(row, place)) place.Offset(-m_rows->GetPosition());
    return {.role = EAccessibleRole::ListItem,
            .name = GetItemText(row, 0).ToStdWstring(),
            .description = GetItemText(row, 1).ToStdWstring(),
            .place = place.Intersect(m_rows->GetClientRect()),
            .isSelected = IsSelected(row)};
}

/** The sizes have the room that they need in letters of any size, the names have the rest. */
void CUploadFileList::FitColumns() {
    SetColumnWidth(0, std::max(GetClientSize().x - GetColumnWidth(1), FromDIP(80)));
}
