// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "error_code_of.h"
#include "files/CTestFolder.h"
#include "files/CZipReader.h"
#include "files/file_util_ex.h"
#include "files/zip_file_util.h"

using namespace std::string_literals;

namespace {

using CBytes = std::vector<std::byte>;

CBytes BytesOf(std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

// A little-endian number of so many bytes.
std::string Le(std::uint64_t value, int count) {
    std::string text;
    for (int i = 0; i < count; ++i, value >>= 8) text += static_cast<char>(value & 0xFF);
    return text;
}

// One stored file of an archive that nobody's packer would write.
struct CStored {
    std::string name;
    std::string data = "data";
    std::uint32_t crc = 0xADF3F363;  // of "data"
    std::uint32_t size = 4;
    std::uint16_t flags = 0;
    std::uint16_t method = 0;
    bool sharesFirst = false;  // its bytes are those of the first file
};

CBytes Archive(const std::vector<CStored>& files) {
    std::string body, directory;
    for (const CStored& f : files) {
        const std::string common = Le(20, 2) + Le(f.flags, 2) + Le(f.method, 2) + Le(0, 4) + Le(f.crc, 4) +
                                   Le(f.data.size(), 4) + Le(f.size, 4) + Le(f.name.size(), 2) + Le(0, 2);
        directory +=
            "PK\x01\x02" + Le(20, 2) + common + Le(0, 10) + Le(f.sharesFirst ? 0 : body.size(), 4) + f.name;
        if (!f.sharesFirst) body += "PK\x03\x04" + common + f.name + f.data;
    }
    const std::string count = Le(files.size(), 2);
    return BytesOf(body + directory + "PK\x05\x06" + Le(0, 4) + count + count + Le(directory.size(), 4) +
                   Le(body.size(), 4) + Le(0, 2));
}

}  // namespace

TEST(ZipTest, WhatIsPackedIsReadBack) {
    const CTestFolder folder;
    const std::string big(3 << 20, 'b');
    ASSERT_TRUE(file_util_ex::Mkdir(folder / "sub"));
    const std::vector<std::string> files = {folder.Add("model.3ds", big),
                                            folder.Add("sub/t\xC3\xA9x.jpg", "jpeg"), folder / "model.3ds"};
    ASSERT_TRUE(zip_file_util::CreateZip(folder / "a.zip", files));
    EXPECT_LT(std::filesystem::file_size(folder / "a.zip"), 20000U);
    CZipReader reader = CZipReader::OpenFile(folder / "a.zip").Value();
    const std::vector<CZipEntry> entries = reader.Entries();
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].name, "model.3ds");
    EXPECT_EQ(entries[1].name, "t\xC3\xA9x.jpg");
    EXPECT_TRUE(CTestFolder::TextOf(reader.Read(entries[0]).Value()) == big);
    EXPECT_EQ(CTestFolder::TextOf(reader.Read(entries[1], 4).Value()), "jpeg");
}

TEST(ZipTest, AFailedPackingLeavesTheOldArchive) {
    const CTestFolder folder;
    const std::string target = folder.Add("a.zip", "old");
    ASSERT_TRUE(file_util_ex::Mkdir(folder / "sub"));
    const std::string one = folder.Add("one", "1"), other = folder.Add("sub/one", "2");
    using CList = std::vector<std::string>;
    for (const CList& files :
         {CList{}, CList{one, folder / "missing"}, CList{one, other}, CList{folder.Path()}}) {
        EXPECT_FALSE(zip_file_util::CreateZip(target, files));
        EXPECT_EQ(CTestFolder::TextOf(target), "old");
    }
    EXPECT_FALSE(zip_file_util::CreateZip(folder / "none/a.zip", std::vector{one}));
}

TEST(ZipTest, ListsOnlyNamesThatStayInTheirFolder) {
    const std::vector<std::string> names = {"a/b.3ds",    "a\\c.jpg",    "./d.3ds",     "/abs.3ds",
                                            "..\\up.3ds", "a/../up.3ds", "C:\\x.3ds",   "folder/",
                                            "..",         "e//f.3ds",    "\\\\host\\x", "."};
    std::vector<CStored> files;
    for (const std::string& name : names) files.push_back({.name = name});
    const auto reader = CZipReader::Open(Archive(files));
    ASSERT_TRUE(reader);
    std::vector<std::string> listed;
    for (const CZipEntry& entry : reader.Value().Entries()) listed.push_back(entry.name);
    EXPECT_EQ(listed, (std::vector<std::string>{"a/b.3ds", "a/c.jpg", "d.3ds", "e/f.3ds"}));
}

TEST(ZipTest, AnEntryThatIsNotReadSaysWhy) {
    struct CRow {
        CStored file;
        EErrorCode code;
        std::uint64_t maxBytes = 1000;
    };
    const CRow rows[] = {
        {{.name = "a", .crc = 1}, EErrorCode::BadFormat},
        {{.name = "a", .size = 5}, EErrorCode::BadFormat},
        {{.name = "a", .size = 0xFFFFFFF0}, EErrorCode::TooLarge},
        {{.name = "a", .flags = 1}, EErrorCode::Unsupported},    // encrypted
        {{.name = "a", .method = 97}, EErrorCode::Unsupported},  // unknown
        {{.name = "a", .method = 8}, EErrorCode::BadFormat},     // packed, and is not
        {{.name = "a"}, EErrorCode::TooLarge, 3},
    };
    for (const CRow& row : rows) {
        auto reader = CZipReader::Open(Archive({row.file}));
        ASSERT_TRUE(reader);
        EXPECT_EQ(CodeOf(reader.Value().Read(reader.Value().Entries().at(0), row.maxBytes)), row.code);
    }
}

TEST(ZipTest, RefusesTooManyEntriesAndARatioThatNoModelHas) {
    std::vector<CStored> files(CZipReader::kMaxEntries, {.name = "a"});
    for (std::size_t i = 0; i < files.size(); ++i) files[i].name = std::to_string(i);
    EXPECT_TRUE(CZipReader::Open(Archive(files)));
    files.push_back({.name = "one more"});
    EXPECT_EQ(CZipReader::Open(Archive(files)).Error().code, EErrorCode::TooLarge);

    const CTestFolder folder;
    const std::string bomb = folder.Add("bomb", std::string(64 << 20, '\0'));
    ASSERT_TRUE(zip_file_util::CreateZip(folder / "a.zip", std::vector{bomb}));
    CZipReader reader = CZipReader::OpenFile(folder / "a.zip").Value();
    EXPECT_EQ(reader.Read(reader.Entries()[0]).Error().code, EErrorCode::TooLarge);

    // Within the ratio of an entry, but not all of them together.
    std::string half;
    for (std::uint32_t i = 0; half.size() < 31U << 20; ++i)
        half += std::string(4000, '\0') + std::to_string(i * i);
    std::vector<std::string> halves;
    for (const char* name : {"1", "2", "3", "4", "5"}) halves.push_back(folder.Add(name, half));
    ASSERT_TRUE(zip_file_util::CreateZip(folder / "b.zip", halves));
    reader = CZipReader::OpenFile(folder / "b.zip").Value();
    for (std::size_t i = 0; i < 4; ++i) EXPECT_TRUE(reader.Read(reader.Entries()[i])) << i;
    EXPECT_EQ(reader.Read(reader.Entries()[4]).Error().code, EErrorCode::TooLarge);
}

TEST(ZipTest, EntriesThatShareTheirBytesAreReadOnlyWhileTheArchiveHasAsMany) {
    const CStored first{.name = "a", .data = std::string(100'000, 'x'), .crc = 0xFE071171, .size = 100'000};
    std::vector<CStored> files(50, first);
    for (std::size_t i = 1; i < files.size(); ++i) files[i].sharesFirst = true;
    CZipReader reader = CZipReader::Open(Archive(files)).Value();
    EXPECT_TRUE(reader.Read(reader.Entries()[0]));
    EXPECT_TRUE(reader.Read(reader.Entries()[0])) << "once more";
    EXPECT_EQ(reader.Read(reader.Entries()[49]).Error().code, EErrorCode::BadFormat);
}

TEST(ZipTest, EveryPrefixAndEveryChangedByteHasAClearOutcome) {
    const CBytes whole = Archive({{.name = "a.3ds"}, {.name = "b/c.jpg"}});
    for (std::size_t i = 0; i < whole.size(); ++i) {
        EXPECT_FALSE(CZipReader::Open(CBytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(i))));
        CBytes changed = whole;
        changed[i] ^= std::byte{0xFF};
        auto reader = CZipReader::Open(std::move(changed));
        if (!reader) continue;
        for (const CZipEntry& entry : reader.Value().Entries()) {
            const auto bytes = reader.Value().Read(entry);
            EXPECT_TRUE(!bytes || CTestFolder::TextOf(bytes.Value()) == "data");
        }
    }
}
