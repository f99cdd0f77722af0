// SPDX-License-Identifier: MIT
#pragma once

#include <stdlib.h>

#include <string>
#include <vector>

#include "child_process.h"

/** A program that listens, prints a line that ends with its port, and is killed at the end of the object. */
class CChildProgram {
  public:
    explicit CChildProgram(const std::vector<std::string>& arguments)
        : m_process([&] { return Run(arguments); }) {
        (void)m_output.write.Close();
        std::string line;
        for (char c = 0; m_output.Hear(c) && c != '\n';) line += c;
        m_port = ::atoi(line.substr(line.rfind(':') + 1).c_str());
        EXPECT_GT(m_port, 0) << line;
    }

    /** True where it was still running. */
    bool Kill() { return m_process.Kill(); }
    [[nodiscard]] int Port() const { return m_port; }
    [[nodiscard]] std::string Address(const std::string& scheme = "http") const {
        return scheme + "://127.0.0.1:" + std::to_string(m_port) + "/";
    }

  private:
    bool Run(const std::vector<std::string>& arguments) const {
        std::vector<char*> words;
        for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
        words.push_back(nullptr);
        ::dup2(m_output.write.Get(), STDOUT_FILENO);
        ::execvp(words[0], words.data());
        return false;
    }

    CPipe m_output;
    CChildProcess m_process;
    int m_port = 0;
};
