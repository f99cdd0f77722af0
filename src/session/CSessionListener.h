// SPDX-License-Identifier: MIT
#pragma once

struct COpenReport;

/** Is told about changes of the document, on the session's thread, when the change is complete. A listener
 * may open another model in the call. */
class CSessionListener {
  public:
    virtual ~CSessionListener() = default;
    /** Called exactly once after every opening, including failed ones, repeats and reloads. */
    virtual void OnOpened(const COpenReport& report) = 0;
    /** The document was closed, edited or saved, or the recent files or the steps to undo changed. */
    virtual void OnDocumentChanged() {}
};
