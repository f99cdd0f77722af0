// SPDX-License-Identifier: MIT
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "files/CFileDescriptor.h"

/** A program that listens, prints a line that ends with its port, and is killed at the end of the object. */
class CChildProgram {
  public:
    explicit CChildProgram(const std::vector<std::string>& arguments) {
        int ends[2] = {-1, -1};
        EXPECT_EQ(::pipe2(ends, O_CLOEXEC), 0);
        const CFileDescriptor output(ends[0]);
        CFileDescriptor input(ends[1]);
        std::vector<char*> words;
        words.reserve(arguments.size() + 1);
        for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
        words.push_back(nullptr);
        m_pid = ::fork();
        if (m_pid == 0) {
            ::dup2(input.Get(), STDOUT_FILENO);
            ::execvp(words[0], words.data());
            ::_exit(127);
        }
        (void)input.Close();
        std::string line;
        for (char c = 0; ::read(output.Get(), &c, 1) == 1 && c != '\n';) line += c;
        m_port = ::atoi(line.substr(line.rfind(':') + 1).c_str());
        EXPECT_GT(m_port, 0) << line;
    }
    CChildProgram(const CChildProgram&) = delete;
    CChildProgram& operator=(const CChildProgram&) = delete;
    ~CChildProgram() {
        ::kill(m_pid, SIGKILL);
        ::waitpid(m_pid, nullptr, 0);
    }
    [[nodiscard]] int Port() const { return m_port; }
    [[nodiscard]] std::string Address(const std::string& scheme = "http") const {
        return scheme + "://127.0.0.1:" + std::to_string(m_port) + "/";
    }

  private:
    pid_t m_pid = -1;
    int m_port = 0;
};
