// SPDX-License-Identifier: MIT
#pragma once

#include <wx/event.h>
#include <wx/timer.h>

#include <functional>
#include <memory>
#include <string>

class CSearchModelsThread;
class wxGUIThreadEvent;
struct CFoundData;

/** Asks the library for models while a text is typed: a moment after the last key, one question at a time. Only the answer
 * to the last text is told of. */
class CModelSearch final : public wxEvtHandler {
  public:
    using CAnswered = std::function<void(const CFoundData&)>;

    explicit CModelSearch(CAnswered answered);
    /** Waits for the question that runs. */
    ~CModelSearch() override;

    /** UTF-8; an empty text ends the search. */
    void SearchFor(std::string text);
    /** An answer is to come. */
    [[nodiscard]] bool IsSearching() const { return m_thread || m_delay.IsRunning(); }

  private:
    void Ask();
    void OnAnswer(wxGUIThreadEvent& event);

    CAnswered m_answered;
    std::string m_text;
    wxTimer m_delay;
    std::unique_ptr<CSearchModelsThread> m_thread;
};
