// SPDX-License-Identifier: MIT
#pragma once

#include <wx/window.h>

#include <functional>
#include <optional>

#include "frame/model_list/CStripLayout.h"
#include "frame/model_list/CTypeAhead.h"
#include "widgets/access/ui/CAccessibleRows.h"

class CListToolBarMgr;
class CModelPictures;
class wxDC;

/** The row of pictures and names. One window draws those that are seen, however long the list is. */
class CModelStrip final : public wxWindow {
  public:
    static constexpr int kPictureSide = 96;  ///< device-independent pixels

    struct CActions {
        std::function<void()> leave;  ///< the keyboard goes back to the view
        std::function<bool(int keyCode)>
            viewKey;                     ///< a key that the list does not use; true when it was used
        std::function<void()> scrolled;  ///< other entries are seen
    };
    /** manager must outlive it. */
    CModelStrip(wxWindow* parent, CListToolBarMgr& manager, CActions actions);

    /** Null: no pictures are shown. The pictures must outlive the strip, or the next call. */
    void SetPictures(CModelPictures* pictures);
    /** The manager's list, its open entry or the place of the keyboard has changed. */
    void ShowList();
    /** A picture has come. */
    void ShowPictures() { Refresh(false); }
    void ScrollBy(long pixels);
    [[nodiscard]] const CStripLayout& Cells() const { return m_layout; }
    bool AcceptsFocus() const override { return true; }
    bool AcceptsFocusFromKeyboard() const override { return true; }

  private:
    struct CPress {
        int x = 0;            ///< where the button went down
        long offset = 0;      ///< of the strip at that time
        bool isDrag = false;  ///< the mouse was moved too far for a click
    };

    wxSize DoGetBestSize() const override;
    void BindMouse();
    void BindKeys();
    [[nodiscard]] int CellWidth() const;
    void FitWindow();
    void Scrolled(bool changed);

    void OnPaint();
    void DrawCell(wxDC& dc, std::size_t index);
    void DrawPicture(wxDC& dc, std::size_t index, const wxRect& place, const wxColour& ink);

    void OnPress(const wxMouseEvent& event);
    void OnMotion(const wxMouseEvent& event);
    void OnRelease(const wxMouseEvent& event);
    void EndPress();
    void OnWheel(const wxMouseEvent& event);
    void Hover(std::optional<std::size_t> index);
    [[nodiscard]] bool OnKey(const wxKeyEvent& event);
    [[nodiscard]] bool MoveByKey(int keyCode);
    void OnLetter(wxKeyEvent& event);
    [[nodiscard]] CDrawnItem Described(std::size_t index) const;
    [[nodiscard]] wxRect CellOf(std::size_t index) const;

    CListToolBarMgr& m_manager;
    CActions m_actions;
    CModelPictures* m_pictures = nullptr;
    CStripLayout m_layout;
    CTypeAhead m_typeAhead;
    std::optional<CPress> m_press;
    std::optional<std::size_t> m_hovered;
    std::optional<std::size_t> m_shownCurrent;  ///< as of the last ShowList
    std::size_t m_shownCursor = 0, m_shownSize = 0;
    CAccessibleRows m_access;
};
