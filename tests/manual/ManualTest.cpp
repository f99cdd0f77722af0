// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

#include "frame/command_table.h"

namespace {

/** All pages, with every run of blanks and line ends as one blank. */
std::string WholeManual() {
    std::string all;
    for (const auto& entry : std::filesystem::directory_iterator(MANUAL_FOLDER)) {
        if (entry.path().extension() != ".md") continue;
        std::ifstream file(entry.path());
        for (std::string word; file >> word;) all += word + ' ';
    }
    return all;
}

std::string WithoutMnemonic(std::string text) {
    std::erase(text, '&');
    return text.substr(0, text.find('\t'));
}

TEST(ManualTest, NamesEveryCommandAsTheMenusDo) {
    const std::string manual = WholeManual();
    for (const CCommand& command : Commands()) {
        if (command.id == kCmdFirstRecentFile) continue;  // its items are names of files
        const std::string name =
            "**" + WithoutMnemonic(MenuTitle(command.menu)) + ", " + WithoutMnemonic(command.text) + "**";
        EXPECT_NE(manual.find(name), std::string::npos) << name;
    }
}

TEST(ManualTest, NamesEveryKeyBesideItsCommand) {
    const std::string manual = WholeManual();
    for (const CCommand& command : Commands()) {
        const std::string text = command.text;
        const std::size_t tab = text.find('\t');
        if (tab == std::string::npos) continue;
        const std::string key = text.substr(tab + 1);
        const std::string name =
            "**" + WithoutMnemonic(MenuTitle(command.menu)) + ", " + WithoutMnemonic(text) + "**";
        // In one row of a table or one sentence: the key stands shortly before or behind the command.
        constexpr std::size_t kNear = 60;
        bool isNear = false;
        for (std::size_t at = manual.find(name); at != std::string::npos && !isNear;
             at = manual.find(name, at + 1)) {
            const std::size_t from = at - std::min(at, kNear);
            isNear = manual.substr(from, at - from + name.size() + kNear).find(key) != std::string::npos;
        }
        EXPECT_TRUE(isNear) << key << ' ' << name;
    }
}

}  // namespace
