// SPDX-License-Identifier: MIT
#pragma once

struct COpenReport;

/** Hears what happens to the document. Called on the session's thread, when all of it has happened. A listener
 * may ask the session for another model. */
class CSessionListener {
  public:
    virtual ~CSessionListener() = default;
    /** After every opening, exactly once: failed ones, repeats and reloads included. */
    virtual void OnOpened(const COpenReport& report) = 0;
    /** It was closed, edited or saved; the recent files or what can be undone changed. */
    virtual void OnDocumentChanged() {}
};
