// SPDX-License-Identifier: MIT
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <utility>

#include "files/CFileDescriptor.h"

/** What one process tells another. */
struct CPipe {
    CPipe() {
        int ends[2] = {-1, -1};
        EXPECT_EQ(::pipe2(ends, O_CLOEXEC), 0);
        read = CFileDescriptor(ends[0]);
        write = CFileDescriptor(ends[1]);
    }
    template <class T>
    bool Tell(const T& value) const {
        return ::write(write.Get(), &value, sizeof(value)) == sizeof(value);
    }
    /** Waits for a value; false where all who might tell one have ended. */
    template <class T>
    bool Hear(T& value) const {
        return ::read(read.Get(), &value, sizeof(value)) == sizeof(value);
    }

    CFileDescriptor read, write;
};

/** A process that works until it is killed, or done. It ends with the object, and with the test, however that ends. */
class CChildProcess {
  public:
    explicit CChildProcess(const std::function<bool()>& work) : m_pid(::fork()) {
        if (m_pid != 0) return;
        (void)::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::_exit(work() ? 0 : 1);
    }
    CChildProcess(CChildProcess&& other) noexcept : m_pid(std::exchange(other.m_pid, -1)) {}
    ~CChildProcess() { Kill(); }

    /** True where it was still running. */
    bool Kill() {
        if (m_pid <= 0) return false;
        ::kill(m_pid, SIGKILL);
        return WIFSIGNALED(End());
    }
    /** Waits for its end; true where the work was done. */
    bool EndsWell() {
        const int status = End();
        return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

  private:
    int End() {
        int status = -1;
        EXPECT_EQ(::waitpid(m_pid, &status, 0), m_pid);
        m_pid = -1;
        return status;
    }
    pid_t m_pid = -1;
};
