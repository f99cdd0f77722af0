// SPDX-License-Identifier: MIT
#include "frame/materials/ui/CNodeList.h"

#include <wx/dc.h>
#include <wx/image.h>
#include <wx/settings.h>

#include <cmath>
#include <numeric>
#include <utility>

#include "base/text/ascii_text.h"
#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "files/file_util_ex.h"
#include "widgets/tools/ui/layout_direction.h"
#include "widgets/ui/accessible_name.h"

namespace {

constexpr int kFetchMs = 30;
constexpr int kMargin = 4;

wxBitmap BitmapOf(const CImage& image, double scale) {
    if (image.IsEmpty()) return {};
    wxImage made(image.width, image.height);
    made.InitAlpha();
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x) {
            const std::uint8_t* pixel = image.Pixel(x, y);
            made.SetRGB(x, y, pixel[0], pixel[1], pixel[2]);
            made.SetAlpha(x, y, pixel[3]);
        }
    return {made, -1, scale};
}

}  // namespace

CNodeList::CNodeList(wxWindow* parent, const CPreparedScene& scene, std::vector<CChoice> choices)
    : wxVListBox(parent, wxID_ANY, wxDefaultPosition, parent->FromDIP(wxSize(380, 360)), wxBORDER_THEME),
      m_choices(std::move(choices)),
      m_maker(scene, static_cast<int>(std::ceil(parent->FromDIP(kSide) * parent->GetContentScaleFactor()))),
      m_timer(this),
      m_access(*this, EAccessibleRole::List,
               {[this] { return m_rows.size(); }, [this](std::size_t row) { return Described(row); },
                [this]() -> std::optional<std::size_t> {
                    return GetSelection() < 0 ? std::nullopt : std::optional<std::size_t>(GetSelection());
                },
                [this](std::size_t row) { SelectRow(static_cast<int>(row)); }}) {
    SetAccessibleName(*this, lng::Text("Parts of the file"));
    Bind(
        wxEVT_TIMER, [this](wxTimerEvent&) { FetchPictures(); }, m_timer.GetId());
    Bind(wxEVT_LISTBOX, [this](wxCommandEvent& event) {
        m_access.Changed();
        event.Skip();
    });
    Search({});
    m_timer.Start(kFetchMs);
}

void CNodeList::Search(const std::wstring& text) {
    m_rows.clear();
    const std::string wanted = ascii_text::Lowered(file_util_ex::ConvertToUTF8(text));
    for (std::size_t i = 0; i < m_choices.size(); ++i)
        if (ascii_text::Lowered(m_choices[i].name).find(wanted) != std::string::npos) m_rows.push_back(i);
    SetItemCount(m_rows.size());
    SetSelection(m_rows.empty() ? wxNOT_FOUND : 0);
    m_access.Changed();
    Refresh();
}

CDrawnItem CNodeList::Described(std::size_t row) const {
    const CChoice& choice = m_choices[m_rows[row]];
    const wxRect place = row < GetVisibleBegin() || row >= GetVisibleEnd() ? wxRect() : GetItemRect(row);
    return {.role = EAccessibleRole::ListItem,
            .name = file_util_ex::ShownName(lng::ConvertFromUTF8(choice.name)),
            .description = lng::Text("Triangles: %s", lng::Number(choice.triangles)),
            .place = place,
            .isSelected = IsSelected(row)};
}

/** As a click does. */
void CNodeList::SelectRow(int row) {
    SetSelection(row);
    wxCommandEvent event(wxEVT_LISTBOX, GetId());
    event.SetEventObject(this);
    event.SetInt(row);
    ProcessWindowEvent(event);
}

void CNodeList::Select(const std::string& name) {
    for (std::size_t row = 0; row < m_rows.size(); ++row)
        if (m_choices[m_rows[row]].name == name) return SetSelection(static_cast<int>(row));
}

const CChoice* CNodeList::Selected() const {
    const int row = GetSelection();
    return row < 0 || static_cast<std::size_t>(row) >= m_rows.size()
               ? nullptr
               : &m_choices[m_rows[static_cast<std::size_t>(row)]];
}

wxCoord CNodeList::OnMeasureItem(std::size_t) const {
    return FromDIP(kSide + 2 * kMargin);
}

void CNodeList::OnDrawItem(wxDC& dc, const wxRect& rect, std::size_t row) const {
    const CChoice& choice = m_choices[m_rows[row]];
    const int margin = FromDIP(kMargin), side = FromDIP(kSide);
    const auto picture = m_pictures.find(choice.node);
    if (picture != m_pictures.end() && picture->second.IsOk())
        dc.DrawBitmap(picture->second, PlaceOfBitmap(dc, picture->second, rect.x + margin), rect.y + margin,
                      true);
    const bool isSelected = IsSelected(row);
    dc.SetTextForeground(wxSystemSettings::GetColour(isSelected ? wxSYS_COLOUR_LISTBOXHIGHLIGHTTEXT
                                                                : wxSYS_COLOUR_LISTBOXTEXT));
    const wxString name = file_util_ex::ShownName(lng::ConvertFromUTF8(choice.name));
    const int left = rect.x + side + 3 * margin, lineHeight = dc.GetCharHeight();
    dc.DrawText(wxControl::Ellipsize(name, dc, wxELLIPSIZE_END, rect.GetRight() - left), left,
                rect.y + rect.height / 2 - lineHeight);
    if (!isSelected) dc.SetTextForeground(wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT));
    dc.DrawText(lng::Text("Triangles: %s", lng::Number(choice.triangles)), left, rect.y + rect.height / 2);
}

void CNodeList::FetchPictures() {
    if (m_pictures.size() > kMostKept) m_pictures.clear();
    bool hasCome = false;
    for (auto& [node, image] : m_maker.Take()) {
        m_pictures[node] = BitmapOf(image, GetContentScaleFactor());
        hasCome = true;
    }
    if (hasCome) Refresh();
    std::vector<std::size_t> wanted;
    for (std::size_t row = GetVisibleBegin(); row < GetVisibleEnd() && row < m_rows.size(); ++row)
        if (const std::size_t node = m_choices[m_rows[row]].node; !m_pictures.contains(node))
            wanted.push_back(node);
    m_maker.Want(std::move(wanted));
}
