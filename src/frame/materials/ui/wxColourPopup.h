// SPDX-License-Identifier: MIT
#pragma once

#include <wx/bitmap.h>
#include <wx/colour.h>
#include <wx/combo.h>
#include <wx/window.h>

#include <memory>

#include "widgets/access/ui/CAccessibleRows.h"

class wxColorPopupListener;

/** The colours that a wxColourCombo opens: common ones to click, and a field and a strip to find any other one in.
 * Dragging over them chooses all the while. Keys: the arrows go through the common colours; with Shift they change the saturation
 * and the brightness, Page up and Page down the hue; Enter closes, Esc goes back to the colour that was there when it opened. */
class wxColourPopup final : public wxWindow, public wxComboPopup {
  public:
    /** listener may be null and must outlive it. */
    explicit wxColourPopup(wxColorPopupListener* listener) : m_listener(listener) {}

    void SetColour(const wxColour& color);
    [[nodiscard]] const wxColour& GetColour() const { return m_color; }

    // --- what the combo calls ------------------------------------------------------------------------------
    bool Create(wxWindow* parent) override;
    wxWindow* GetControl() override { return this; }
    [[nodiscard]] wxString GetStringValue() const override;
    wxSize GetAdjustedSize(int minWidth, int preferredHeight, int maxHeight) override;
    void PaintComboControl(wxDC& dc, const wxRect& rect) override;
    void OnPopup() override;
    void OnComboKeyEvent(wxKeyEvent& event) override;
    void OnDismiss() override;
    /** Tells screen readers of the combo, its colour and the common ones. To be called once it has this popup. */
    void TellReaders();

  private:
    enum class EArea { None, Palette, Field, Strip };
    [[nodiscard]] wxRect AreaOf(EArea area) const;
    [[nodiscard]] wxRect CellOf(int index) const;
    [[nodiscard]] int CellAt(wxPoint where) const;
    void Paint();
    void PaintPalette(wxDC& dc) const;
    void PaintField(wxDC& dc);
    void Press(wxMouseEvent& event);
    void Drag(wxPoint where);
    void Release();
    void Key(wxKeyEvent& event);
    [[nodiscard]] bool FineKey(const wxKeyEvent& event);
    void ChooseByParts(double hue, double saturation, double value);
    void NameCombo();
    [[nodiscard]] CDrawnItem Described(std::size_t index) const;
    void Choose(const wxColour& color);

    wxColorPopupListener* m_listener;
    wxColour m_color{220, 127, 30}, m_colorAtOpening = m_color;
    double m_hue = 0, m_saturation = 0, m_value = 0;  ///< of m_color, 0..1; a grey one keeps its hue
    EArea m_dragged = EArea::None;
    wxBitmap m_field;  ///< of m_fieldHue
    double m_fieldHue = -1;
    std::unique_ptr<CAccessibleRows> m_access;
};
