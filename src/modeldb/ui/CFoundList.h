// SPDX-License-Identifier: MIT
#pragma once

#include <wx/listctrl.h>

#include <functional>
#include <vector>

#include "modeldb/records/store_records.h"
#include "widgets/access/ui/CAccessibleRows.h"

/** The models that a search has found. A click or Enter chooses one; arrows only move. */
class CFoundList final : public wxListView {
  public:
    CFoundList(wxWindow* parent, std::function<void(const CFoundModel&)> choose);

    /** What is selected stays so where it is among them. */
    void Show(std::vector<CFoundModel> models);
    using wxListView::Show;
    [[nodiscard]] const std::vector<CFoundModel>& Models() const { return m_models; }
    /** The number of the model at a place of MainWindow(); -1 for none. */
    [[nodiscard]] long ModelAt(wxPoint place) const;
    /** The window in which the models are drawn. */
    [[nodiscard]] wxWindow& MainWindow() const { return *m_main; }
    /** Gives the first model the keyboard's focus, if none has it. */
    void TakeFocus();

  private:
    [[nodiscard]] wxString OnGetItemText(long item, long column) const override;
    void ChooseAt(long number);
    void FitColumns();
    [[nodiscard]] CDrawnItem Described(std::size_t number) const;
    [[nodiscard]] std::optional<std::size_t> AtKeys() const;

    std::function<void(const CFoundModel&)> m_choose;
    wxWindow* m_main;
    std::vector<CFoundModel> m_models;
    CAccessibleRows m_access;
};
