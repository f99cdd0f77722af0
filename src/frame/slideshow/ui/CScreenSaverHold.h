// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

/** During its lifetime the desktop's screen saver does not start, where the desktop offers that (by the session bus,
 * org.freedesktop.ScreenSaver). Never waits for an answer; where nobody gives one nothing happens. */
class CScreenSaverHold {
  public:
    /** reason: translated, for people, UTF-8. */
    explicit CScreenSaverHold(const std::string& reason);
    CScreenSaverHold(const CScreenSaverHold&) = delete;
    CScreenSaverHold& operator=(const CScreenSaverHold&) = delete;
    ~CScreenSaverHold();

    struct CState;

  private:
    std::shared_ptr<CState> m_state;  ///< the answer, which may come after the end, holds it, too
};
