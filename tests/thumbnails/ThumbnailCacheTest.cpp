// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <zlib.h>

#include <filesystem>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "picture/decode/image_codec.h"
#include "picture/image_writer.h"
#include "row_name.h"
#include "thumbnails/CThumbnailCache.h"

namespace {

namespace fs = std::filesystem;

CImage Picture(int side) {
    CImage image{side, side, {}};
    image.rgba.assign(static_cast<std::size_t>(side) * static_cast<std::size_t>(side) * 4, 255);
    return image;
}

class ThumbnailCacheTest : public testing::Test {
  protected:
    [[nodiscard]] CThumbnailSource Source() const { return *CThumbnailSource::Of(model); }
    [[nodiscard]] std::string Place(const char* size = "normal") const {
        return root + "/" + size + "/" + Source().name;
    }
    void PutFile(const std::vector<std::byte>& bytes) const {
        fs::create_directories(root + "/normal");
        folder.Add("cache/thumbnails/normal/" + Source().name, bytes);
    }
    [[nodiscard]] bool Reads() const { return cache.Read(Source(), EThumbnailSize::Normal).has_value(); }

    CTestFolder folder;
    std::string model = folder.Add("m\u00F6del 1.3ds", "MM");
    std::string root = folder / "cache/thumbnails";
    CThumbnailCache cache{root};
};

TEST(ThumbnailSource, IsNamedAsOtherProgramsNameIt) {
    // The example of the standard.
    EXPECT_EQ(ThumbnailNameOf("file:///home/jens/photos/me.png"), "c6ee772d9e49320e97ec29a7eb5b1697.png");
    const CTestFolder folder;
    const auto source = CThumbnailSource::Of(folder.Add("a b#\xFF.3ds", "MM"));
    ASSERT_TRUE(source);
    EXPECT_EQ(source->uri, "file://" + folder.Path() + "/a%20b%23%FF.3ds");
    EXPECT_FALSE(CThumbnailSource::Of("relative.3ds"));
    EXPECT_FALSE(CThumbnailSource::Of(folder.Path()));
    EXPECT_EQ(CThumbnailSource::Of(folder / "./a b#\xFF.3ds")->uri, source->uri);
}

TEST_F(ThumbnailCacheTest, KeepsAPictureUntilTheFileChanges) {
    const CThumbnailSource before = Source();
    ASSERT_TRUE(cache.Write(before, EThumbnailSize::Normal, Picture(128)));
    EXPECT_EQ(cache.Read(before, EThumbnailSize::Normal)->width, 128);
    EXPECT_EQ(fs::status(root).permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(root + "/normal").permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(Place()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(std::distance(fs::directory_iterator(root + "/normal"), {}), 1) << "no temporary file is left";
    fs::last_write_time(model, fs::last_write_time(model) + std::chrono::seconds(5));
    EXPECT_FALSE(Reads());
}

TEST_F(ThumbnailCacheTest, GivesALargerPictureWhereItsOwnIsMissing) {
    ASSERT_TRUE(cache.Write(Source(), EThumbnailSize::Large, Picture(200)));
    EXPECT_EQ(cache.Read(Source(), EThumbnailSize::Normal)->width, 200);
    EXPECT_FALSE(cache.Read(Source(), EThumbnailSize::XLarge));
    EXPECT_FALSE(cache.Write(Source(), EThumbnailSize::Normal, Picture(200)));
}

TEST_F(ThumbnailCacheTest, KeepsAFailureAndItsReason) {
    EXPECT_FALSE(cache.ReadFailure(Source()));
    ASSERT_TRUE(cache.WriteFailure(Source(), "This is not a 3D Studio file"));
    EXPECT_EQ(cache.ReadFailure(Source()), "This is not a 3D Studio file");
    EXPECT_FALSE(Reads());
    folder.Add("m\u00F6del 1.3ds", "MM now longer");
    EXPECT_FALSE(cache.ReadFailure(Source()));
}

TEST_F(ThumbnailCacheTest, MakesNoThumbnailsOfThumbnails) {
    ASSERT_TRUE(cache.Write(Source(), EThumbnailSize::Normal, Picture(8)));
    const auto inside = CThumbnailSource::Of(Place());
    EXPECT_FALSE(cache.Write(*inside, EThumbnailSize::Normal, Picture(8)));
    EXPECT_FALSE(cache.WriteFailure(*inside, "no"));
}

TEST_F(ThumbnailCacheTest, ReplacesALinkAndNotWhatItLeadsTo) {
    const std::string other = folder.Add("precious.txt", "precious");
    fs::create_directories(root + "/normal");
    fs::create_symlink(other, Place());
    ASSERT_TRUE(cache.Write(Source(), EThumbnailSize::Normal, Picture(8)));
    EXPECT_EQ(CTestFolder::TextOf(other), "precious");
    EXPECT_TRUE(Reads());
}

TEST_F(ThumbnailCacheTest, SaysThatItCannotWrite) {
    folder.Add("file", "");
    const CThumbnailCache blocked(folder / "file/thumbnails");
    EXPECT_EQ(blocked.Write(Source(), EThumbnailSize::Normal, Picture(8)).Error().code,
              EErrorCode::WriteFailed);
    fs::create_directories(Place());  // a folder has the name
    EXPECT_FALSE(cache.Write(Source(), EThumbnailSize::Normal, Picture(8)));
    EXPECT_EQ(std::distance(fs::directory_iterator(root + "/normal"), {}), 1) << "no temporary file is left";
}

std::vector<std::byte> Png(const CThumbnailSource& source, png_texts::CTexts more, bool own = true,
                           int side = 16) {
    std::vector<std::byte> png = image_codec::PngBytes(Picture(side), false).Value();
    if (own) {
        more.insert(more.begin(), {"Thumb::URI", source.uri});
        more.insert(more.begin(), {"Thumb::MTime", std::to_string(source.changedSec)});
    }
    png_texts::Add(more, png);
    return png;
}

/** A packed text, as some toolkits write long ones. */
std::vector<std::byte> WithPackedUri(const CThumbnailSource& source, std::size_t moreBytes) {
    const std::string uri = source.uri + std::string(moreBytes, 'x');
    std::string packed(compressBound(uri.size()), '\0');
    uLongf size = packed.size();
    (void)compress(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(uri.data()),
                   uri.size());
    std::vector<std::byte> png = Png(source, {{"Thumb::MTime", std::to_string(source.changedSec)}}, false);
    std::vector<std::byte> other = image_codec::PngBytes(Picture(1), false).Value();
    png_texts::Add({{"Thumb::URI", std::string(1, '\0') + packed.substr(0, size)}}, other);
    // The chunk's kind is changed afterwards; its checksum is that of a plain text, which nobody asks for.
    const std::size_t length = 12 + 10 + 2 + size;
    other[33 + 4] = std::byte{'z'};
    other[33 + 5] = std::byte{'T'};
    png.insert(png.begin() + 33, other.begin() + 33,
               other.begin() + 33 + static_cast<std::ptrdiff_t>(length));
    return png;
}

/** A sound thumbnail, changed a little. */
struct CEntryCase {
    const char* name;
    png_texts::CTexts more;
    bool isRead = false;
    bool hasOwn = true;  ///< the texts that it needs
    int side = 16;
    std::ptrdiff_t longer = 0;  ///< in bytes
};

class ThumbnailCacheEntry : public ThumbnailCacheTest, public testing::WithParamInterface<CEntryCase> {};

TEST_P(ThumbnailCacheEntry, IsReadWhereItBelongsToTheFile) {
    const CEntryCase& row = GetParam();
    std::vector<std::byte> png = Png(Source(), row.more, row.hasOwn, row.side);
    png.resize(png.size() + static_cast<std::size_t>(row.longer));
    PutFile(png);
    EXPECT_EQ(Reads(), row.isRead);
}

const CEntryCase kEntries[] = {
    {"OfAnotherProgram", {{"Software", "Files"}}, true},
    {"WithoutTexts", {}, false, false},
    {"OtherAddress", {{"Thumb::URI", "file:///etc/passwd"}}},
    {"OtherTime", {{"Thumb::MTime", "12"}}},
    {"OtherSize", {{"Thumb::Size", "12"}}},
    {"LargerThanItsFolder", {}, false, true, 129},
    {"Cut", {}, false, true, 16, -20},
    {"HugeFile", {}, false, true, 16, 9 << 20},
};
INSTANTIATE_TEST_SUITE_P(Entries, ThumbnailCacheEntry, testing::ValuesIn(kEntries), kRowName);

TEST_F(ThumbnailCacheTest, UnpacksTextsWithinLimits) {
    PutFile(WithPackedUri(Source(), 0));
    EXPECT_TRUE(Reads());
    PutFile(WithPackedUri(Source(), 50 << 20));
    EXPECT_FALSE(Reads());
    png_texts::CTexts many(100, {"Comment", "x"});
    many.push_back({"Thumb::URI", Source().uri});
    many.push_back({"Thumb::MTime", std::to_string(Source().changedSec)});
    PutFile(Png(Source(), many, false));
    EXPECT_FALSE(Reads());
    PutFile(std::vector<std::byte>(100));
    EXPECT_FALSE(Reads()) << "no picture";
}

TEST_F(ThumbnailCacheTest, OpensNeitherLinksNorPipes) {
    fs::create_directories(root + "/normal");
    ASSERT_EQ(::mkfifo(Place().c_str(), 0600), 0);
    EXPECT_FALSE(Reads());
    fs::remove(Place());
    folder.Add("elsewhere.png", Png(Source(), {}));
    fs::create_symlink(folder / "elsewhere.png", Place());
    EXPECT_FALSE(Reads());
}

}  // namespace
