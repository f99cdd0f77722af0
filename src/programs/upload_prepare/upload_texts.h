// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

/** A size for people, "812 bytes" excepted always with one decimal where that says more: "3.4 KB", "12 MB". The decimal
 * point is that of no language, so that it may stand in a page, too. */
[[nodiscard]] std::string SizeText(std::uint64_t bytes, std::string_view decimalPoint = ".");

/** A model's file name as people see it: without control characters and those that turn the direction of writing. */
[[nodiscard]] std::string ShownName(const std::string& modelName);
/** The same without the ending of a model file; "Model" where nothing is left. */
[[nodiscard]] std::string TitleOf(const std::string& modelName);

/** A name for the folder of one upload in the drive, "chess 2026-11-22 09.15.30", which no earlier upload has. Sound
 * wherever files are kept: nothing but letters, digits, marks that mean nothing there, and single blanks inside. */
[[nodiscard]] std::string RemoteFolderName(const std::string& modelName, std::time_t now);
