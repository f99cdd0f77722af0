// SPDX-License-Identifier: MIT
#pragma once

#include <wx/bitmap.h>
#include <wx/timer.h>
#include <wx/vlbox.h>

#include <map>
#include <string>
#include <vector>

#include "frame/materials/CNodePictures.h"
#include "frame/materials/node_picture.h"
#include "widgets/access/ui/CAccessibleRows.h"

struct CPreparedScene;

/** A list of nodes with a picture of each. Pictures are made of what is visible, beside the window. */
class CNodeList final : public wxVListBox {
  public:
    /** scene must outlive it. */
    CNodeList(wxWindow* parent, const CPreparedScene& scene, std::vector<CChoice> choices);

    /** Shows only the nodes whose names contain the text, whatever the case of its letters. */
    void Search(const std::wstring& text);
    /** Selects the first choice of this name, or the first row. */
    void Select(const std::string& name);
    /** The selected node; null for none. */
    [[nodiscard]] const CChoice* Selected() const;

  private:
    static constexpr int kSide = 64;               ///< of a picture, in device-independent pixels
    static constexpr std::size_t kMostKept = 300;  ///< pictures

    void OnDrawItem(wxDC& dc, const wxRect& rect, std::size_t row) const override;
    wxCoord OnMeasureItem(std::size_t row) const override;
    [[nodiscard]] int PixelsOfSide() const;
    void FetchPictures();
    [[nodiscard]] CDrawnItem Described(std::size_t row) const;
    void SelectRow(int row);

    std::vector<CChoice> m_choices;
    std::vector<std::size_t> m_rows;             ///< indices into m_choices
    std::map<std::size_t, wxBitmap> m_pictures;  ///< by node
    CNodePictures m_maker;
    wxTimer m_timer;
    CAccessibleRows m_access;
};
