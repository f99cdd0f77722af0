// SPDX-License-Identifier: MIT
#pragma once

#include <unistd.h>

#include <utility>

/** Owns a POSIX file descriptor; -1 is none. */
class CFileDescriptor {
  public:
    CFileDescriptor() = default;
    explicit CFileDescriptor(int fd) : m_fd(fd) {}
    CFileDescriptor(CFileDescriptor&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    CFileDescriptor& operator=(CFileDescriptor&& other) noexcept {
        if (this != &other) {
            (void)Close();  // a descriptor that is replaced has nobody left to tell
            m_fd = std::exchange(other.m_fd, -1);
        }
        return *this;
    }
    ~CFileDescriptor() { (void)Close(); }

    [[nodiscard]] bool IsOpen() const { return m_fd >= 0; }
    [[nodiscard]] int Get() const { return m_fd; }
    /** The descriptor, which is the caller's from now on. */
    [[nodiscard]] int Release() { return std::exchange(m_fd, -1); }
    /** False when closing reported a late write error. The descriptor is closed either way. */
    [[nodiscard]] bool Close() { return m_fd < 0 || ::close(std::exchange(m_fd, -1)) == 0; }

  private:
    int m_fd = -1;
};
