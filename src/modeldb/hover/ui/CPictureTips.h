// SPDX-License-Identifier: MIT
#pragma once

#include <wx/gdicmn.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

class CPreviewFetcher;
class wxWindow;
struct _GtkTooltip;  // NOLINT(bugprone-reserved-identifier): the toolkit's name
struct _GtkWidget;

/** Shows a tooltip with name and picture for the model under the pointer. */
class CPictureTips {
  public:
    struct CModel {
        std::uint32_t id = 0;
        std::wstring text;
        wxRect area;  ///< of the window, in which the tip stays the same
    };
    /** The model at a place of the window; for none, where the keyboard is. Nothing where there is no model. */
    using CFind = std::function<std::optional<CModel>(std::optional<wxPoint> place)>;

    /** Window and pictures must outlive it. */
    CPictureTips(wxWindow& window, CPreviewFetcher& pictures, CFind find);
    CPictureTips(const CPictureTips&) = delete;
    CPictureTips& operator=(const CPictureTips&) = delete;
    ~CPictureTips();

    /** A picture has come: a tip that is shown gets it. */
    void Renew();

  private:
    static int OnQuery(_GtkWidget* widget, int x, int y, int byKeyboard, _GtkTooltip* tip, void* self);

    _GtkWidget* m_widget;
    CPreviewFetcher& m_pictures;
    CFind m_find;
};
