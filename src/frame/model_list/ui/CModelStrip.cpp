// SPDX-License-Identifier: MIT
// What the mouse and the keys do in the list; its look is in CModelStrip_draw.cpp.
#include "frame/model_list/ui/CModelStrip.h"

#include <wx/settings.h>

#include <cmath>
#include <utility>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "frame/model_list/CListToolBarMgr.h"
#include "frame/model_list/tool_tip_text.h"
#include "frame/model_list/ui/CModelPictures.h"
#include "widgets/ui/accessible_name.h"

using CClock = std::chrono::steady_clock;

CModelStrip::CModelStrip(wxWindow* parent, CListToolBarMgr& manager, CActions actions)
    : wxWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
               wxBORDER_NONE | wxWANTS_CHARS | wxFULL_REPAINT_ON_RESIZE),
      m_manager(manager),
      m_actions(std::move(actions)),
      m_access(
          *this, EAccessibleRole::List,
          {[this] { return m_manager.List().Size(); }, [this](std::size_t index) { return Described(index); },
           [this] { return std::optional(m_manager.List().Cursor()); },
           [this](std::size_t index) { m_manager.Choose(index); }}) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    // The toolkit would mirror positions in part; the layout does it as a whole.
    SetLayoutDirection(wxLayout_LeftToRight);
    BindMouse();
    BindKeys();
    Bind(wxEVT_PAINT, [this](wxPaintEvent&) { OnPaint(); });
    Bind(wxEVT_SIZE, [this](wxSizeEvent&) { FitWindow(); });
    const auto repaint = [this](wxEvent& event) {
        Refresh(false);
        event.Skip();
    };
    Bind(wxEVT_SET_FOCUS, repaint);
    Bind(wxEVT_KILL_FOCUS, repaint);
    Bind(wxEVT_SYS_COLOUR_CHANGED, repaint);
    SetAccessibleName(*this, lng::Text("Models of this folder"));
}

void CModelStrip::SetPictures(CModelPictures* pictures) {
    m_pictures = pictures;
    if (m_pictures) m_pictures->SetFiles(m_manager.List().Paths());
    Scrolled(true);
}

void CModelStrip::ShowList() {
    const CModelList& list = m_manager.List();
    const bool isNew = m_shownSize == 0;
    m_layout.SetCells(list.Size(), CellWidth());
    if (m_pictures) m_pictures->SetFiles(list.Paths());
    if (list.Current() && (isNew || list.Current() != m_shownCurrent))
        isNew ? m_layout.ScrollToMiddle(*list.Current()) : m_layout.ScrollIntoView(*list.Current());
    else if (list.Cursor() != m_shownCursor && list.Size() > 0)
        (void)m_layout.ScrollIntoView(list.Cursor());
    m_shownCurrent = list.Current();
    m_shownCursor = list.Cursor();
    m_shownSize = list.Size();
    m_access.Changed();
    Hover(std::nullopt);
    Scrolled(true);
}

void CModelStrip::ScrollBy(long pixels) {
    m_manager.NoteUse();
    Scrolled(m_layout.ScrollBy(pixels));
}

void CModelStrip::FitWindow() {
    m_layout.SetCells(m_manager.List().Size(), CellWidth());
    const bool wasNarrow = m_layout.CellsOfPage() <= 1;
    m_layout.SetWindow(GetClientSize().x, GetParent()->GetLayoutDirection() == wxLayout_RightToLeft);
    // Before its first layout the window has no width to scroll in.
    if (wasNarrow && m_manager.List().Current()) (void)m_layout.ScrollToMiddle(*m_manager.List().Current());
    Scrolled(true);
}

void CModelStrip::Scrolled(bool changed) {
    if (!changed) return;
    if (m_pictures) m_pictures->SetVisible(m_layout.Visible());
    m_actions.scrolled();
    // Another entry is under the mouse now.
    if (m_hovered) Hover(m_layout.At(ScreenToClient(wxGetMousePosition()).x));
    Refresh(false);
}

CDrawnItem CModelStrip::Described(std::size_t index) const {
    const CModelList& list = m_manager.List();
    return {.role = EAccessibleRole::ListItem,
            .name = list.Name(index),
            .description = m_pictures ? m_pictures->ProblemOf(list.Path(index)) : std::wstring(),
            .place = CellOf(index).Intersect(GetClientRect()),
            .isSelected = list.Current() == index};
}

// --- the mouse -------------------------------------------------------------------------------------------

void CModelStrip::BindMouse() {
    Bind(wxEVT_LEFT_DOWN, [this](wxMouseEvent& event) { OnPress(event); });
    Bind(wxEVT_LEFT_DCLICK, [this](wxMouseEvent& event) { OnPress(event); });
    Bind(wxEVT_MOTION, [this](wxMouseEvent& event) { OnMotion(event); });
    Bind(wxEVT_LEFT_UP, [this](wxMouseEvent& event) { OnRelease(event); });
    Bind(wxEVT_MOUSE_CAPTURE_LOST, [this](wxMouseCaptureLostEvent&) { EndPress(); });
    Bind(wxEVT_LEAVE_WINDOW, [this](wxMouseEvent&) { Hover(std::nullopt); });
    Bind(wxEVT_MOUSEWHEEL, [this](wxMouseEvent& event) { OnWheel(event); });
}

void CModelStrip::OnPress(const wxMouseEvent& event) {
    SetFocus();
    if (!HasCapture()) CaptureMouse();
    m_press = CPress{event.GetX(), m_layout.Offset(), false};
    m_manager.SetPressed(true);
}

void CModelStrip::OnMotion(const wxMouseEvent& event) {
    if (!m_press) return Hover(m_layout.At(event.GetX()));
    constexpr int kDragFrom = 8;
    const int moved = event.GetX() - m_press->x;
    if (std::abs(moved) > FromDIP(kDragFrom)) m_press->isDrag = true;
    if (m_press->isDrag) Scrolled(m_layout.ScrollTo(m_press->offset - m_layout.TowardsEnd(moved)));
}

void CModelStrip::OnRelease(const wxMouseEvent& event) {
    const std::optional<CPress> press = m_press;
    EndPress();
    if (!press || press->isDrag) return;
    const auto index = m_layout.At(event.GetX());
    if (index && index == m_layout.At(press->x)) m_manager.Choose(*index);
}

void CModelStrip::EndPress() {
    if (!m_press) return;
    m_press.reset();
    if (HasCapture()) ReleaseMouse();
    m_manager.SetPressed(false);
}

void CModelStrip::OnWheel(const wxMouseEvent& event) {
    if (event.GetWheelDelta() == 0) return;
    const double notches = static_cast<double>(event.GetWheelRotation()) / event.GetWheelDelta();
    const long pixels = std::lround(notches * m_layout.CellWidth());
    // A wheel turned towards the person goes on, as it does down a page.
    ScrollBy(event.GetWheelAxis() == wxMOUSE_WHEEL_HORIZONTAL ? m_layout.TowardsEnd(pixels) : -pixels);
}

void CModelStrip::Hover(std::optional<std::size_t> index) {
    if (index == m_hovered) return;
    m_hovered = index;
    Refresh(false);
    if (!index) return UnsetToolTip();
    const std::wstring& path = m_manager.List().Path(*index);
    SetToolTip(ToolTipText(path, m_pictures ? m_pictures->ProblemOf(path) : std::wstring()));
}

// --- the keys --------------------------------------------------------------------------------------------

void CModelStrip::BindKeys() {
    // Before the window's own keys, of which Home and Escape are some.
    Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
        if (!OnKey(event)) event.Skip();
    });
    Bind(wxEVT_CHAR, [this](wxKeyEvent& event) { OnLetter(event); });
}

bool CModelStrip::OnKey(const wxKeyEvent& event) {
    if (event.HasAnyModifiers()) return false;
    switch (event.GetKeyCode()) {
        case WXK_RETURN:
        case WXK_NUMPAD_ENTER:
            m_manager.Choose(m_manager.List().Cursor());
            return true;
        case WXK_ESCAPE:
        case WXK_TAB:
            m_typeAhead.Forget();
            m_actions.leave();
            return true;
        default:
            return MoveByKey(event.GetKeyCode());
    }
}

bool CModelStrip::MoveByKey(int keyCode) {
    const auto page = static_cast<std::ptrdiff_t>(m_layout.CellsOfPage());
    const auto all = static_cast<std::ptrdiff_t>(m_manager.List().Size());
    std::ptrdiff_t by = 0;
    switch (keyCode) {
        case WXK_LEFT:
            by = m_layout.TowardsEnd(-1);
            break;
        case WXK_RIGHT:
            by = m_layout.TowardsEnd(1);
            break;
        case WXK_PAGEUP:
            by = -page;
            break;
        case WXK_PAGEDOWN:
            by = page;
            break;
        case WXK_HOME:
            by = -all;
            break;
        case WXK_END:
            by = all;
            break;
        case WXK_UP:
        case WXK_DOWN:
            return true;  // the toolkit would take the focus elsewhere
        default:
            return false;
    }
    m_typeAhead.Forget();
    m_manager.NoteUse();
    m_manager.MoveCursor(by);
    return true;
}

void CModelStrip::OnLetter(wxKeyEvent& event) {
    const auto letter = static_cast<wchar_t>(event.GetUnicodeKey());
    const CClock::time_point now = CClock::now();
    const bool isBlank = letter == L' ' && !m_typeAhead.IsTyping(now);
    if (letter < L' ' || letter == 0x7F || isBlank || event.ControlDown() || event.AltDown()) {
        if (!m_actions.viewKey(event.GetKeyCode())) event.Skip();
        return;
    }
    m_manager.NoteUse();
    if (const auto found = m_typeAhead.Type(letter, m_manager.List(), now)) m_manager.SetCursor(*found);
}
