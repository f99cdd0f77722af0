// SPDX-License-Identifier: MIT
#include <functional>

#include "error_code_of.h"
#include "modeldb/protocol/CUploadBodyReader.h"
#include "modeldb/protocol/CUploadBodySource.h"
#include "modeldb/protocol/wire_limits.h"
#include "row_name.h"

namespace {

using CBytes = std::vector<std::byte>;

CBytes BytesOf(std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

/** Keeps all parts, and can fail at a moment. */
class CKeeper final : public CUploadTaker {
  public:
    std::string failAt;  ///< "head", "part 1", "end 0"
    CUploadHead head;
    std::vector<CBytes> parts;
    std::size_t ended = 0;

    CStatus OnHead(const CUploadHead& read) override {
        head = read;
        return Go("head");
    }
    CResult<CByteSink*> OnPart(std::size_t number) override {
        EXPECT_EQ(number, parts.size());
        m_sink = std::make_unique<CMemorySink>(1 << 20);
        const CStatus go = Go("part " + std::to_string(number));
        return go ? CResult<CByteSink*>(m_sink.get()) : go.Error();
    }
    CStatus OnPartEnd(std::size_t number) override {
        EXPECT_EQ(number, ended++);
        parts.push_back(std::move(m_sink->bytes));
        return Go("end " + std::to_string(number));
    }

  private:
    [[nodiscard]] CStatus Go(const std::string& moment) const {
        if (moment == failAt) return CError{EErrorCode::NoSpace, "no", {}};
        return CDone{};
    }
    std::unique_ptr<CMemorySink> m_sink;
};

constexpr std::size_t kMostTextures = 4;
const CBytes kFile = BytesOf("MM the file"), kPicture = BytesOf("a picture");

CUploadHead TextsOf(std::string name) {
    return {std::move(name), "Upload", "", "note", {}, {}};
}

CBytes Body() {
    const CUploadBodySource::CPicture pictures[] = {
        {"empty.png", {}}, {"../t.png", kPicture}, {"last.png", {}}};
    CUploadBodySource source = CUploadBodySource::Make(TextsOf("chair"), kFile, pictures).Value();
    CBytes body(source.Size() + 1);
    std::size_t size = 0;
    for (std::size_t given = 1; given > 0; size += given)
        given =
            source.Give(std::span(body).subspan(size, std::min<std::size_t>(7, body.size() - size))).Value();
    EXPECT_EQ(size, source.Size());
    body.resize(size);
    source.Rewind();
    CBytes again(size);
    EXPECT_EQ(source.Give(again).Value(), size);
    EXPECT_EQ(again, body);
    return body;
}

CStatus Read(const CBytes& body, CKeeper& keeper, std::size_t piece, std::uint64_t announced) {
    CUploadBodyReader reader({announced, kMostTextures}, keeper);
    for (std::size_t at = 0; at < body.size(); at += piece)
        if (CStatus taken = reader.Take(std::span(body).subspan(at, std::min(piece, body.size() - at)));
            !taken) {
            EXPECT_FALSE(reader.Finish()) << "a failure was forgotten";
            return taken;
        }
    return reader.Finish();
}

TEST(UploadBodyTest, ArrivesInPiecesOfAnySize) {
    const CBytes body = Body();
    for (std::size_t piece = 1; piece <= body.size(); ++piece) {
        CKeeper keeper;
        const CStatus read = Read(body, keeper, piece, body.size());
        ASSERT_TRUE(read) << read.Error().Text();
        EXPECT_EQ(keeper.parts, (std::vector<CBytes>{kFile, {}, kPicture, {}}));
        EXPECT_EQ(keeper.head.name + keeper.head.note + keeper.head.textures[1].name, "chairnote../t.png");
    }
}

TEST(UploadBodyTest, EveryBeginningIsRefused) {
    const CBytes body = Body();
    for (std::size_t size = 0; size < body.size(); ++size) {
        const CBytes cut(body.begin(), body.begin() + static_cast<std::ptrdiff_t>(size));
        for (const std::uint64_t announced : {size, body.size()}) {
            CKeeper keeper;
            EXPECT_EQ(CodeOf(Read(cut, keeper, 16, announced)), EErrorCode::BadFormat) << size;
        }
    }
}

// The file and its name are covered by the hashes and the form; what people wrote in the head is any text.
TEST(UploadBodyTest, AChangedByteIsFoundOrIsText) {
    const CBytes body = Body();
    for (std::size_t at = 0; at < body.size(); ++at) {
        CBytes changed = body;
        changed[at] ^= std::byte{0x04};
        CKeeper keeper;
        if (!Read(changed, keeper, body.size(), body.size())) continue;
        EXPECT_EQ(keeper.parts, (std::vector<CBytes>{kFile, {}, kPicture, {}})) << at;
    }
}

struct CFaultRow {
    const char* name;
    std::function<void(CBytes&)> spoil;
    EErrorCode code = EErrorCode::BadFormat;
};
class UploadFaultTest : public testing::TestWithParam<CFaultRow> {};
void SetLength(CBytes& body, std::uint32_t length) {
    for (std::size_t i = 0; i < 4; ++i) body[5 + i] = static_cast<std::byte>(length >> (8 * i));
}
const CFaultRow kUploadFaultTestRows[] = {
    {"BytesBehind", [](CBytes& body) { body.push_back({}); }},
    {"OtherMark", [](CBytes& body) { body[0] = std::byte{'M'}; }},
    {"OtherForm", [](CBytes& body) { body[4] = std::byte{2}; }},
    {"NoHead", [](CBytes& body) { SetLength(body, 0); }},
    {"HugeHead", [](CBytes& body) { SetLength(body, UINT32_MAX); }, EErrorCode::TooLarge},
    {"OtherByteOfTheFile", [](CBytes& body) { body[body.size() - 10] ^= std::byte{1}; }},
    {"OtherByteOfATexture", [](CBytes& body) { body.back() ^= std::byte{1}; }},
};
INSTANTIATE_TEST_SUITE_P(, UploadFaultTest, testing::ValuesIn(kUploadFaultTestRows), kRowName);

TEST_P(UploadFaultTest, IsFound) {
    CBytes body = Body();
    GetParam().spoil(body);
    CKeeper keeper;
    const CStatus read = Read(body, keeper, 8, body.size());
    ASSERT_EQ(CodeOf(read), GetParam().code);
}

TEST(UploadBodyTest, TheTakersFailureEndsIt) {
    const CBytes body = Body();
    for (const char* moment : {"head", "part 0", "end 0", "part 1", "end 3"}) {
        CKeeper keeper;
        keeper.failAt = moment;
        EXPECT_EQ(CodeOf(Read(body, keeper, 8, body.size())), EErrorCode::NoSpace) << moment;
    }
}

TEST(UploadBodyTest, WhatNoServerWouldTakeIsNotSent) {
    using CPictures = std::vector<CUploadBodySource::CPicture>;
    const auto code = [](const std::string& name, const CPictures& pictures) {
        return CodeOf(CUploadBodySource::Make(TextsOf(name), kFile, pictures));
    };
    for (const std::string& name :
         {std::string(), std::string("\xff"), std::string("a\0b", 3), std::string(401, 'a')})
        EXPECT_EQ(code(name, {}), EErrorCode::BadArgument) << name;
    EXPECT_EQ(code("a", CPictures(1, {"", {}})), EErrorCode::BadArgument);
    EXPECT_EQ(code("a", CPictures(2001, {"t", {}})), EErrorCode::TooLarge);
    EXPECT_EQ(code("a", CPictures(2000, {std::string(400, '\x01'), {}})), EErrorCode::TooLarge);
}

}  // namespace
