// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "update/CAppcast.h"

namespace {

std::string List(const std::string& items) {
    return "<?xml version=\"1.0\"?><rss xmlns:sparkle=\"x\"><channel>" + items + "</channel></rss>";
}

CAppcastItem ItemOf(const std::string& content) {
    const CResult<CAppcast> list = ReadAppcast(List("<item>" + content + "</item>"));
    EXPECT_TRUE(list && list.Value().items.size() == 1) << content;
    return list && !list.Value().items.empty() ? list.Value().items.front() : CAppcastItem{};
}

TEST(AppcastTest, AnItemSaysWhatItIs) {
    const CAppcastItem item = ItemOf(
        "<title>ignored</title><sparkle:version> 2.0 "
        "</sparkle:version><link>https://a.example/?a=1&amp;b=2</link>"
        "<sparkle:shortVersionString>2.0\n\u202E(spring)</sparkle:shortVersionString>"
        "<sparkle:minimumSystemVersion>6.1</sparkle:minimumSystemVersion>"
        "<description>\n<![CDATA[<p>One]]><![CDATA[ &amp; two</p>]]></description>"
        "<enclosure url='https://a.example/x.deb' sparkle:version='1.0' sparkle:os='Linux'/><enclosure "
        "sparkle:os='windows'/>");
    EXPECT_EQ(item.version, "2.0");
    EXPECT_EQ(item.shownVersion, L"2.0 (spring)");
    EXPECT_EQ(item.minimumSystem, "6.1");
    EXPECT_EQ(item.page, "https://a.example/?a=1&b=2");
    EXPECT_EQ(item.notes, L"One & two");
    EXPECT_EQ(item.systems, (std::vector<std::string>{"linux", "windows"}));
}

TEST(AppcastTest, TheEnclosureMaySayTheVersion) {
    const CAppcastItem item = ItemOf("<enclosure sparkle:version='2.1' sparkle:shortVersionString='2.1 b'/>");
    EXPECT_EQ(item.version, "2.1");
    EXPECT_EQ(item.shownVersion, L"2.1 b");
    EXPECT_EQ(item.page, "");
}

TEST(AppcastTest, OnlyPagesOfTheWebAreKept) {
    for (const char* link :
         {"file:///etc/passwd", "javascript:alert(1)", "ftp://a.example", "-https://a.example",
          "https://a.example/ b", "https://a.example/\u202Egpj", "https", "/a", "data:text/html,x"})
        EXPECT_EQ(ItemOf(std::string("<sparkle:version>2</sparkle:version><link>") + link + "</link>").page,
                  "")
            << link;
    const std::string longOne = "https://a.example/" + std::string(2'000, 'x');
    EXPECT_EQ(ItemOf("<sparkle:version>2</sparkle:version><link>" + longOne + "</link>").page, "");
}

TEST(AppcastTest, WhatIsNoListIsRefused) {
    const std::string version = "<item><sparkle:version>2</sparkle:version></item>";
    const std::string noLists[] = {"",
                                   "{\"version\": 2}",
                                   "<!DOCTYPE html><html><body><p>Sign in<br></body></html>",
                                   "<html><rss><channel>" + version + "</channel></rss></html>",
                                   "<feed><entry/></feed>",
                                   List(""),
                                   List("<item><title>News of a blog</title></item>"),
                                   List(version).substr(0, 90),
                                   std::string("\0\0<rss>", 7)};
    for (const std::string& text : noLists) {
        const CResult<CAppcast> list = ReadAppcast(text);
        ASSERT_FALSE(list) << text;
        EXPECT_EQ(list.Error().code, EErrorCode::BadFormat);
    }
}

TEST(AppcastTest, EntitiesAreNotReplaced) {
    const std::string bomb =
        "<!DOCTYPE rss [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;\"><!ENTITY f SYSTEM "
        "\"file:///etc/passwd\">]>"
        "<rss><channel><item><sparkle:version>2.0</sparkle:version><description>&b;&f;</description></item></"
        "channel></rss>";
    const CResult<CAppcast> list = ReadAppcast(bomb);
    ASSERT_TRUE(list);
    EXPECT_EQ(list.Value().items.front().notes, L"&b;&f;");
}

TEST(AppcastTest, SizesAreBounded) {
    std::string deep, many;
    for (int i = 0; i < 150'000; ++i) deep += "<item>";
    EXPECT_FALSE(ReadAppcast("<rss><channel>" + deep));
    for (int i = 0; i < 10'000; ++i)
        many += "<item><sparkle:version>2." + std::to_string(i) + "</sparkle:version></item>";
    const CResult<CAppcast> list = ReadAppcast(List(many));
    ASSERT_TRUE(list);
    EXPECT_EQ(list.Value().items.size(), 500U);
}

TEST(AppcastTest, ChannelsOfTestersAreLeftOut) {
    const CResult<CAppcast> list = ReadAppcast(
        List("<item><sparkle:version>3</sparkle:version><sparkle:channel>beta</sparkle:channel></item>"));
    ASSERT_TRUE(list);
    EXPECT_TRUE(list.Value().items.empty());
}

}  // namespace
