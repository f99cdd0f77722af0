// SPDX-License-Identifier: MIT
#pragma once

#include <thread>

/** A thread whose body is an operation of a derived class. All but the body belongs to the thread that made the object. */
class wxThreadEx {
  public:
    /** The thread must have been waited for, because the body may still use what derived classes own. */
    virtual ~wxThreadEx();
    wxThreadEx(const wxThreadEx&) = delete;
    wxThreadEx& operator=(const wxThreadEx&) = delete;

    /** Starts the body; once in the life of the object. False when the system has no further thread. */
    bool RunThread();
    /** Returns when the body has ended; at once when it was never started, or has been waited for. */
    void Wait();

  protected:
    wxThreadEx() = default;
    /** What the thread does. What it throws ends the thread and nothing else. */
    virtual void Entry() = 0;

  private:
    std::thread m_thread;
};
