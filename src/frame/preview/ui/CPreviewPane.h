// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "frame/preview/CPreviewDisplay.h"

struct _GtkWidget;

/** The picture and the facts at the side of the open dialog, made of the desktop's own controls as the
 * rest of the dialog is. Always of the same width, so that the list of files does not move while somebody
 * walks through it. */
class CPreviewPane final : public CPreviewDisplay {
  public:
    static constexpr int kSide = 256;  ///< of the picture, in device-independent pixels

    explicit CPreviewPane(const std::array<std::uint8_t, 3>& background);
    ~CPreviewPane() override;

    /** The control; whoever puts it into a container shares it. */
    [[nodiscard]] _GtkWidget* Widget() const { return m_box; }
    /** Of the display that the pane is on: pixels for each device-independent pixel. */
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
