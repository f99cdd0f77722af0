// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <map>
#include <string>
#include <vector>

/** Reads the lists of a "mesh2{" block again, by a way of its own. */
class CMesh2Text {
  public:
    using CRow = std::vector<double>;

    explicit CMesh2Text(const std::string& text) {
        for (const char* name : {"vertex_vectors", "normal_vectors", "uv_vectors", "face_indices",
                                 "normal_indices", "uv_indices"}) {
            const std::size_t at = text.find(std::string(name) + '{');
            if (at != std::string::npos) Read(text, text.find('{', at) + 1, name);
        }
    }

    [[nodiscard]] bool Has(const std::string& name) const { return m_lists.contains(name); }
    [[nodiscard]] const std::vector<CRow>& List(const std::string& name) const { return m_lists.at(name); }
    /** The count that stands before a list. */
    [[nodiscard]] std::size_t Said(const std::string& name) const { return m_said.at(name); }
    /** The entry of a list that a face's corner has, through its own indices or those of the vertices. */
    [[nodiscard]] CRow Corner(const std::string& list, const std::string& indices, std::size_t face,
                              std::size_t corner) const {
        const auto& rows = List(Has(indices) ? indices : "face_indices");
        return List(list).at(static_cast<std::size_t>(rows.at(face).at(corner)));
    }

  private:
    void Read(const std::string& text, std::size_t at, const std::string& name) {
        const std::size_t end = text.find('}', at);
        m_said[name] = std::strtoul(&text[at], nullptr, 10);
        for (at = text.find('<', at); at < end; at = text.find('<', at)) {
            CRow row;
            while (text[at] != '>') {
                char* next = nullptr;
                row.push_back(std::strtod(&text[at + 1], &next));
                at = static_cast<std::size_t>(next - text.data());
            }
            m_lists[name].push_back(row);
        }
    }

    std::map<std::string, std::vector<CRow>> m_lists;
    std::map<std::string, std::size_t> m_said;
};
