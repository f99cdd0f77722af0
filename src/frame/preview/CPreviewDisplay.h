// SPDX-License-Identifier: MIT
#pragma once

struct CPreviewRequest;
struct CPreviewResult;

/** Shows the previews of a CPreviewQueue. */
class CPreviewDisplay {
  public:
    CPreviewDisplay() = default;
    CPreviewDisplay(const CPreviewDisplay&) = delete;
    CPreviewDisplay& operator=(const CPreviewDisplay&) = delete;
    virtual ~CPreviewDisplay() = default;

    virtual void ShowNothing() = 0;
    /** The picture is not there yet. */
    virtual void ShowWaiting(const CPreviewRequest& request) = 0;
    virtual void ShowResult(const CPreviewRequest& request, const CPreviewResult& result) = 0;
};
