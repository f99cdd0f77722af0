// SPDX-License-Identifier: MIT
#include "modeldb/bytes/pack_bytes.h"

#include <string>

#include "bytes_of.h"
#include "files/CTestFolder.h"
#include "modeldb/bytes/CBlobHash.h"
#include "modeldb/bytes/calc_crc.h"
#include "row_name.h"

namespace {

struct CPacked {
    EBlobCodec codec = EBlobCodec::Plain;
    std::vector<std::byte> kept;
};
CPacked Pack(std::string_view text, std::size_t piece) {
    CMemorySink kept(64 << 20);
    CBytePacker packer(kept);
    for (; !text.empty(); text.remove_prefix(std::min(piece, text.size())))
        EXPECT_TRUE(packer.Add(BytesOf(text.substr(0, piece))));
    const EBlobCodec codec = packer.Finish().Value();
    return {codec, std::move(kept.bytes)};
}

/** What comes out; nothing where it is refused. */
std::optional<std::string> Unpack(const CPacked& packed, std::uint64_t size, std::size_t piece) {
    CMemorySink plain(64 << 20);
    CByteUnpacker unpacker(packed.codec, size, plain);
    std::span<const std::byte> rest = packed.kept;
    for (; !rest.empty(); rest = rest.subspan(std::min(piece, rest.size())))
        if (!unpacker.Take(rest.first(std::min(piece, rest.size())))) return std::nullopt;
    if (!unpacker.Finish()) return std::nullopt;
    return CTestFolder::TextOf(plain.bytes);
}

struct CContentRow {
    std::string name, content;
    EBlobCodec codec;
};
class PackBytesTest : public testing::TestWithParam<CContentRow> {};
const CContentRow kContents[] = {
    {"Empty", "", EBlobCodec::Plain},
    {"OneByte", "x", EBlobCodec::Plain},
    {"Even", std::string(3'000'000, 'e'), EBlobCodec::Zstd},
    {"Noise", NoiseOf(300'000), EBlobCodec::Plain},
    {"NoiseBehindText", std::string(90'000, 't') + NoiseOf(300'000), EBlobCodec::Zstd},
    {"Jpeg", "\xFF\xD8\xFF" + std::string(90'000, 'j'), EBlobCodec::Plain},
    {"ExactlyTheTrial", std::string(64 << 10, 'k'), EBlobCodec::Zstd},
};
INSTANTIATE_TEST_SUITE_P(, PackBytesTest, testing::ValuesIn(kContents), kRowName);

TEST_P(PackBytesTest, ComesOutAsItWentInWhateverThePieces) {
    const std::string& content = GetParam().content;
    for (const std::size_t piece : {std::size_t{1000}, std::size_t{65537}, std::size_t{10'000'000}}) {
        const CPacked packed = Pack(content, piece);
        EXPECT_EQ(packed.codec, GetParam().codec);
        EXPECT_EQ(Unpack(packed, content.size(), piece), content);
        EXPECT_EQ(Unpack(packed, content.size() + 1, piece), std::nullopt) << "too short";
        if (!content.empty()) {
            EXPECT_EQ(Unpack(packed, content.size() - 1, piece), std::nullopt) << "too long";
        }
    }
}

TEST(PackedBytesTest, DamageIsSeenOrChangesWhatAHashSees) {
    const std::string content = std::string(5000, 'a') + NoiseOf(3000);
    const CPacked packed = Pack(content, 1000);
    for (std::size_t i = 0; i < packed.kept.size(); i += 7) {
        CPacked damaged = packed;
        damaged.kept[i] ^= std::byte{0x10};
        EXPECT_NE(Unpack(damaged, content.size(), 100), content) << i;
        damaged = packed;
        damaged.kept.resize(i);
        EXPECT_EQ(Unpack(damaged, content.size(), 100), std::nullopt) << i;
    }
    CPacked twice = packed;
    twice.kept.insert(twice.kept.end(), packed.kept.begin(), packed.kept.end());
    EXPECT_EQ(Unpack(twice, content.size() * 2, 100), std::nullopt) << "a second frame";
}

TEST(BlobHashTest, IsThatOfTheStandards) {
    EXPECT_EQ(CBlobHash::Of(BytesOf("abc")).ToHex(),
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(CBlobHash::FromHex(CBlobHash::Of({}).ToHex()), CBlobHash::Of({}));
    EXPECT_EQ(CBlobHash::FromHex(std::string(63, 'a') + "g"), std::nullopt);
    EXPECT_EQ(CalcCrc(BytesOf("123456789")), 0xCBF43926u);
    EXPECT_EQ(CalcCrc(BytesOf("56789"), CalcCrc(BytesOf("1234"))), 0xCBF43926u);
    EXPECT_EQ(model_key::ToText(0x0BF43926), "0bf43926");
    EXPECT_EQ(model_key::FromText("CBF43926"), 0xCBF43926u);
    for (const char* text : {"", "cbf4392", "cbf439260", "0xcbf439", "-1234567", " 1234567"})
        EXPECT_FALSE(model_key::FromText(text)) << text;
}

}  // namespace
