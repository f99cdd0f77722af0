// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "frame/preview/CPreviewDisplay.h"

struct _GtkWidget;

/** The picture and the facts beside the list of the open dialog, made of GTK's controls like the rest of the
 * dialog. Its width never changes, so the list of files does not move while the user goes through it. */
class CPreviewPane final : public CPreviewDisplay {
  public:
    static constexpr int kSide = 256;  ///< of the picture, in device-independent pixels

    explicit CPreviewPane(const std::array<std::uint8_t, 3>& background);
    ~CPreviewPane() override;

    /** The control, owned by the pane; a container that it is added to holds a reference of its own. */
    [[nodiscard]] _GtkWidget* Widget() const { return m_box; }
    /** Pixels per device-independent pixel on the pane's display. */
    [[nodiscard]] int ScaleFactor() const;

    void ShowNothing() override;
    void ShowWaiting(const CPreviewRequest& request) override;
    void ShowResult(const CPreviewRequest& request, const CPreviewResult& result) override;

  private:
    struct CRow {
        _GtkWidget* name = nullptr;
        _GtkWidget* value = nullptr;
    };
    void BuildFrame(const std::array<std::uint8_t, 3>& background);
    void BuildFacts();
    [[nodiscard]] CRow AddRow(_GtkWidget* grid, int line, const char* englishName);
    static void SetRow(const CRow& row, const std::wstring& value);
    void ShowPage(const char* page);
    [[nodiscard]] bool SetPicture(const CPreviewResult& result);

    _GtkWidget* m_box;
    _GtkWidget* m_stack;
    _GtkWidget* m_picture;
    _GtkWidget* m_problem;
    CRow m_size, m_triangles, m_objects;
};
