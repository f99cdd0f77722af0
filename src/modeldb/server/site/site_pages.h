// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "modeldb/bytes/CBlobHash.h"
#include "modeldb/records/store_records.h"

/** What all pages share. */
struct CPageFrame {
    std::string basePath, title;  ///< see CSite::COptions
};

/** A model in a grid. */
struct CModelTile {
    std::string name;
    std::uint32_t key = 0;
    std::optional<CBlobHash> preview;
    std::string group;  ///< shown where it is not empty
};
/** A group with the previews of some of its models. */
struct CGroupTile {
    CGroupRecord group;
    std::vector<std::optional<CBlobHash>> previews;
};

/** The pages as text, functions of what is to be shown: HTML that is well-formed XML, too, whatever texts it holds. */
namespace site_pages {

/** others: groups that are shown by their names alone. */
[[nodiscard]] std::string Front(const CPageFrame& frame, const std::vector<CGroupTile>& groups,
                                const std::vector<CGroupRecord>& others);

struct CGroupContent {
    CGroupRecord group;
    std::optional<CPagePlace> after;  ///< where this page begins
    std::vector<CModelTile> models;
    bool isMore = false;
};
[[nodiscard]] std::string Group(const CPageFrame& frame, const CGroupContent& content);

[[nodiscard]] std::string Model(const CPageFrame& frame, const CModelRecord& model, std::int64_t groupId);

struct CFoundContent {
    std::string text;  ///< what was looked for; empty: nothing yet
    std::vector<CModelTile> models;
    bool isMore = false;
};
[[nodiscard]] std::string Found(const CPageFrame& frame, const CFoundContent& content);

/** A page that says one thing. reloads: after some seconds it is asked for again. */
[[nodiscard]] std::string Message(const CPageFrame& frame, std::string_view heading, std::string_view text,
                                  bool reloads = false);

/** The name of the file "/site/...": another one for each content. */
[[nodiscard]] std::string StyleName();
[[nodiscard]] std::string IconName();

}  // namespace site_pages
