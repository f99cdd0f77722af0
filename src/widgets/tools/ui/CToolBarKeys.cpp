// SPDX-License-Identifier: MIT
#include "widgets/tools/ui/CToolBarKeys.h"

#include <algorithm>
#include <vector>

#include "base/text/lng.h"

namespace {

constexpr CDrawnItems::CKey kArrow = ~CDrawnItems::CKey{0};

int IdOf(CDrawnItems::CKey item) {
    return static_cast<int>(item);
}

CDrawnItems::CKey KeyOf(int id) {
    return static_cast<unsigned>(id);
}

bool IsTool(const wxAuiToolBarItem& item) {
    return item.GetKind() == wxITEM_NORMAL || item.GetKind() == wxITEM_CHECK;
}

bool HasState(const wxAuiToolBarItem& item, int states) {
    return (item.GetState() & states) != 0;
}

/** Those that are seen, in their order. */
std::vector<CDrawnItems::CKey> ToolsOf(const wxAuiToolBar& bar) {
    std::vector<CDrawnItems::CKey> tools;
    for (int i = 0; i < static_cast<int>(bar.GetToolCount()); ++i)
        if (const wxAuiToolBarItem& item = *bar.FindToolByIndex(i); IsTool(item) && bar.GetToolFitsByIndex(i))
            tools.push_back(KeyOf(item.GetId()));
    if (bar.GetOverflowVisible()) tools.push_back(kArrow);
    return tools;
}

}  // namespace

void CToolBarKeys::Give(wxAuiToolBar& bar) {
    bar.SetClientObject(new CToolBarKeys(bar));
}

CToolBarKeys* CToolBarKeys::Of(const wxWindow& window) {
    return dynamic_cast<CToolBarKeys*>(window.GetClientObject());
}

CToolBarKeys::CToolBarKeys(wxAuiToolBar& bar)
    : m_bar(bar),
      m_access(std::make_unique<CAccessibleItems>(bar, EAccessibleRole::ToolBar,
                                                  static_cast<CDrawnItems&>(*this))) {
    // Before the main window's keys, of which Space is one.
    bar.Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
        if (event.GetKeyCode() == WXK_TAB && (event.GetModifiers() & ~wxMOD_SHIFT) == 0)
            return StepControl(event.ShiftDown() ? -1 : 1);
        if (!m_bar.HasFocus() || event.HasAnyModifiers() || !OnKey(event)) event.Skip();
    });
    const auto repaint = [this](wxFocusEvent& event) {
        m_bar.Refresh(false);
        event.Skip();
    };
    bar.Bind(wxEVT_SET_FOCUS, repaint);
    bar.Bind(wxEVT_KILL_FOCUS, repaint);
    bar.Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        event.Skip();
        m_bar.CallAfter([this] { ToolsChanged(); });
    });
    bar.Bind(wxEVT_DESTROY, [this](wxWindowDestroyEvent& event) {
        if (event.GetEventObject() == &m_bar) m_access.reset();
        event.Skip();
    });
}

void CToolBarKeys::ToolsChanged() {
    if (m_access) m_access->Changed();
}

bool CToolBarKeys::IsCurrent(int toolId) const {
    return m_bar.HasFocus() && Current() == KeyOf(toolId);
}

bool CToolBarKeys::IsArrowCurrent() const {
    return m_bar.HasFocus() && Current() == kArrow;
}

// --- the keys -------------------------------------------------------------------------------------------

bool CToolBarKeys::OnKey(const wxKeyEvent& event) {
    const int forward = m_bar.GetLayoutDirection() == wxLayout_RightToLeft ? -1 : 1;
    switch (event.GetKeyCode()) {
        case WXK_LEFT:
        case WXK_NUMPAD_LEFT:
            Step(-forward, Current());
            return true;
        case WXK_RIGHT:
        case WXK_NUMPAD_RIGHT:
            Step(forward, Current());
            return true;
        case WXK_HOME:
            GoTo(Usable(0, 1));
            return true;
        case WXK_END:
            GoTo(Usable(CountOf(kNone) - 1, -1));
            return true;
        case WXK_SPACE:
        case WXK_RETURN:
        case WXK_NUMPAD_ENTER:
            if (Current() != kNone) Press(Current());
            return true;
        default:
            return false;
    }
}

void CToolBarKeys::StepControl(int by) {
    std::vector<wxWindow*> stops{&m_bar};
    for (wxWindow* control : m_bar.GetChildren())
        if (control->CanAcceptFocusFromKeyboard()) stops.push_back(control);
    const auto here = std::ranges::find(stops, wxWindow::FindFocus());
    const auto next = here - stops.begin() + by;
    if (next >= 0 && next < std::ssize(stops))
        stops[static_cast<std::size_t>(next)]->SetFocus();
    else
        LeaveBar(by > 0);
}

/** GTK goes on from a widget that has the keyboard; from what is in one that could have it it would go there. */
void CToolBarKeys::LeaveBar(bool forward) {
    m_bar.SetFocus();
    m_bar.Navigate(forward ? wxNavigationKeyEvent::IsForward : wxNavigationKeyEvent::IsBackward);
}

void CToolBarKeys::Step(int by, CKey from) {
    if (from != kNone) GoTo(Usable(IndexOf(from) + static_cast<std::size_t>(by), by));
}

void CToolBarKeys::GoTo(CKey item) {
    if (item == kNone) return;  // at the end
    m_current = item;
    m_bar.Refresh(false);
    ToolsChanged();
}

/** The first enabled tool from a place on, in a direction. */
CDrawnItems::CKey CToolBarKeys::Usable(std::size_t from, int by) const {
    const std::vector<CKey> tools = ToolsOf(m_bar);
    for (std::size_t i = from; i < tools.size(); i += static_cast<std::size_t>(by))
        if (tools[i] == kArrow || m_bar.GetToolEnabled(IdOf(tools[i]))) return tools[i];
    return kNone;
}

// --- what is told of the tools ----------------------------------------------------------------------------

std::size_t CToolBarKeys::CountOf(CKey parent) const {
    return parent == kNone ? ToolsOf(m_bar).size() : 0;
}

CDrawnItems::CKey CToolBarKeys::ItemOf(CKey, std::size_t index) const {
    return ToolsOf(m_bar)[index];
}

bool CToolBarKeys::HasItem(CKey item) const {
    return IndexOf(item) < CountOf(kNone);
}

std::size_t CToolBarKeys::IndexOf(CKey item) const {
    const std::vector<CKey> tools = ToolsOf(m_bar);
    return static_cast<std::size_t>(std::find(tools.begin(), tools.end(), item) - tools.begin());
}

wxRect CToolBarKeys::ArrowPlace() const {
    const wxSize size = m_bar.GetClientSize();
    const int width = m_bar.GetArtProvider()->GetElementSize(wxAUI_TBART_OVERFLOW_SIZE);
    return {size.x - width, 0, width, size.y};
}

CDrawnItem CToolBarKeys::Describe(CKey item) const {
    if (item == kArrow)
        return {.role = EAccessibleRole::Button, .name = lng::Text("More tools"), .place = ArrowPlace()};
    const wxAuiToolBarItem& tool = *m_bar.FindTool(IdOf(item));
    const bool isToggle = tool.GetKind() == wxITEM_CHECK;
    return {.role = isToggle ? EAccessibleRole::ToggleButton : EAccessibleRole::Button,
            .name = tool.GetShortHelp().ToStdWstring(),
            .place = m_bar.GetToolRect(IdOf(item)),
            .isEnabled = !HasState(tool, wxAUI_BUTTON_STATE_DISABLED),
            .isChecked = HasState(tool, isToggle ? wxAUI_BUTTON_STATE_CHECKED : wxAUI_BUTTON_STATE_PRESSED)};
}

CDrawnItems::CKey CToolBarKeys::Current() const {
    return HasItem(m_current) ? m_current : Usable(0, 1);
}

/** As the toolkit does it for a click. */
void CToolBarKeys::Press(CKey item) {
    if (item == kArrow) {
        wxMouseEvent click(wxEVT_LEFT_DOWN);
        click.SetEventObject(&m_bar);
        const wxRect place = ArrowPlace();
        click.SetPosition(place.GetPosition() + place.GetSize() / 2);
        m_bar.ProcessWindowEvent(click);
        return;
    }
    const int id = IdOf(item);
    if (!m_bar.GetToolEnabled(id)) return;
    wxCommandEvent press(wxEVT_MENU, id);
    press.SetEventObject(&m_bar);
    if (m_bar.FindTool(id)->GetKind() == wxITEM_CHECK) {
        const bool isOn = !m_bar.GetToolToggled(id);
        m_bar.ToggleTool(id, isOn);
        press.SetInt(isOn);
        m_bar.Refresh(false);
    }
    m_bar.ProcessWindowEvent(press);
}
