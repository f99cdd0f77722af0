// SPDX-License-Identifier: MIT
#pragma once

#include <wx/listctrl.h>

#include "programs/upload_prepare/join_upload.h"
#include "widgets/access/ui/CAccessibleRows.h"

/** The files that would be uploaded, with their sizes. */
class CUploadFileList final : public wxListView {
  public:
    CUploadFileList(wxWindow* parent, const CUploadContent& content);
    CUploadFileList(const CUploadFileList&) = delete;
    CUploadFileList& operator=(const CUploadFileList&) = delete;
    ~CUploadFileList() override;

  private:
    [[nodiscard]] CDrawnItem Described(std::size_t number) const;
    void OnItem(wxListEvent& event);
    void FitColumns();

    wxWindow* m_rows;
    CAccessibleRows m_access;
};
