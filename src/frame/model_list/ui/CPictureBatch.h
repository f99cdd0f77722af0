// SPDX-License-Identifier: MIT
#pragma once

#include <wx/timer.h>

#include <deque>
#include <functional>
#include <optional>
#include <string>

#include "files/start_program.h"
#include "frame/model_list/batch_answer.h"

/** Draws pictures with one process of the program orbivue-render, installed beside this one, which draws one after the other
 * and confines itself. It has the lowest priority, and ends when it has had nothing to do
 * for a while. */
class CPictureBatch {
  public:
    struct CDrawn {
        std::wstring path;
        CBatchAnswer answer;
        std::string pngPath;  ///< the picture, unless the answer tells of a problem
    };
    /** Called from the event loop after each drawing. */
    using CEnded = std::function<void(const CDrawn&)>;

    CPictureBatch(int sidePx, CEnded ended);
    CPictureBatch(const CPictureBatch&) = delete;
    CPictureBatch& operator=(const CPictureBatch&) = delete;
    ~CPictureBatch();

    /** Adds a picture to those that are drawn; CEnded follows, later, also when no process can be started. */
    void Draw(const std::wstring& path);
    /** Ends all drawing; CEnded is not called. */
    void Stop();

  private:
    [[nodiscard]] bool Start();
    [[nodiscard]] bool Send(const std::wstring& path);
    void LookAfterProcess();
    void TakeAnswers();
    void FailAll();

    int m_sidePx;
    CEnded m_ended;
    std::string m_folder;  ///< of its own, for the pictures
    std::optional<CStartedProgram> m_process;
    std::size_t m_lastNumber = 0;         ///< of the picture that was begun last
    std::deque<std::wstring> m_underWay;  ///< in their order, the last has m_lastNumber
    std::string m_output, m_errors;
    int m_idleMs = 0;
    wxTimer m_timer;
};
