// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <utility>

class CSession;

/** The way of edits into a scene script, with the questions that it takes. */
class CEditSaving {
  public:
    /** Asks for the script to write; folder and name are the proposal. Empty when the user cancels. */
    using CAskWhere = std::function<std::wstring(const std::wstring& folder, const std::wstring& name)>;

    /** session must outlive it. */
    CEditSaving(CSession& session, CAskWhere askWhere)
        : m_session(session), m_askWhere(std::move(askWhere)) {}

    /** Saves the edits into the scene's script, or asks for a place when there is none, or when the script is no longer
     * the one that was read. A message box tells why it fails; the edits and what was saved before then stay. */
    [[nodiscard]] bool Save();
    /** Asks what is to become of unsaved edits, and saves them if that is wanted. False when they are to stay. */
    [[nodiscard]] bool MayLose();

  private:
    [[nodiscard]] bool SaveTo(const std::wstring& script);
    [[nodiscard]] std::wstring AskWhere();

    CSession& m_session;
    CAskWhere m_askWhere;
};
