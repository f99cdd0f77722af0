// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

/** A folder of a test's own, deleted with all in it at the end. */
class CTestFolder {
  public:
    CTestFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "orbivue-test-XXXXXX").string();
        EXPECT_NE(::mkdtemp(name.data()), nullptr);
        m_path = name;
    }
    CTestFolder(const CTestFolder&) = delete;
    CTestFolder& operator=(const CTestFolder&) = delete;
    ~CTestFolder() {
        std::error_code error;
        std::filesystem::remove_all(m_path, error);
    }

    [[nodiscard]] const std::string& Path() const { return m_path; }
    [[nodiscard]] std::string operator/(std::string_view name) const {
        return m_path + "/" + std::string(name);
    }
    /** Writes a file and returns its path. */
    std::string Add(std::string_view name, std::string_view text) const {
        std::ofstream(*this / name, std::ios::binary) << text;
        return *this / name;
    }
    std::string Add(std::string_view name, const std::vector<std::byte>& bytes) const {
        return Add(name, TextOf(bytes));
    }
    [[nodiscard]] static std::string TextOf(const std::vector<std::byte>& bytes) {
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    }
    [[nodiscard]] static std::string TextOf(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    [[nodiscard]] std::size_t Count() const {
        using CIterator = std::filesystem::directory_iterator;
        return static_cast<std::size_t>(std::distance(CIterator(m_path), CIterator()));
    }

  private:
    std::string m_path;
};
