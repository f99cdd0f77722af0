// SPDX-License-Identifier: MIT
#include "../../model/read_3ds/C3dsBytes.h"
#include "CTestServer.h"

namespace {

std::string ModelText(const char* name) {
    return CTestFolder::TextOf(Scene(Cube(name)));
}

/** A PNG's head that claims a size. */
std::string PictureText(unsigned char sideHigh) {
    std::string png = "\x89PNG\r\n\x1a\n";
    png += std::string("\0\0\0\rIHDR", 8);
    const std::string side{'\0', '\0', static_cast<char>(sideHigh), '\x01'};
    return png + side + side + std::string("\x08\x06\0\0\0", 5) + std::string(100, 'p');
}

class UploadTest : public testing::TestWithParam<CEngineRow> {
  protected:
    /** All about what the store holds. */
    [[nodiscard]] CCheckReport Report() const {
        return place.Open().Check(CModelStore::ECheck::Full).Value();
    }

    CTestPlace place{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(Store, UploadTest, testing::ValuesIn(Engines()), kRowName);

TEST_P(UploadTest, KeepsAModelOnceAndForgetsNothing) {
    CTestServer server(place, [](CServerOptions& options) { options.hasOpenUploads = true; });
    const std::string model = ModelText("Cube"), picture = PictureText(0);
    const CGot added = server.Upload(BodyOf("Cube", "Upload", model, picture));
    ASSERT_EQ(added.status, 201) << added.body;
    EXPECT_EQ(added.Json()["how"], "added");
    const CGot again = server.Upload(BodyOf("other name", "Other group", model));
    EXPECT_EQ(again.status, 200) << again.body;
    EXPECT_EQ(again.Json()["how"], "same");
    CTestServer other(place);
    const nlohmann::json record = other.Get(added.Header("Location")).Json();
    EXPECT_EQ(record["name"], "Cube");
    EXPECT_EQ(record["group"], "Upload");
    EXPECT_TRUE(other.Get("/b/" + record["file"]["sha256"].get<std::string>()).body == model);
    EXPECT_TRUE(other.Get("/b/" + record["textures"][0]["sha256"].get<std::string>()).body == picture);
    EXPECT_EQ(server.Metric("uploads_added_total"), 1);
}

struct CBadUpload {
    std::string name, body;
    int status;
    std::string words;
};

TEST_P(UploadTest, RefusesAndKeepsNothing) {
    const std::string model = ModelText("Cube");
    // Both have the CRC-32 0x4DDB0C25.
    ASSERT_TRUE(place.Open().AddModel(ModelOf("Upload", "first", "plumless")));
    std::string wrongHash = BodyOf("a", "Upload", model);
    wrongHash.back() = static_cast<char>(~wrongHash.back());
    const CBadUpload rows[] = {
        {"OtherFileOfTheKey", BodyOf("a", "Upload", "buckeroo"), 409, "key"},
        {"NoModel", BodyOf("a", "Upload", "MM and nothing else"), 422, ""},
        {"Noise", BodyOf("a", "Upload", NoiseOf(5'000, 2)), 422, ""},
        {"NoPicture", BodyOf("a", "Upload", model, "#!/bin/sh"), 422, "\"t.png\" is no picture"},
        {"HugePicture", BodyOf("a", "Upload", model, PictureText(0x7F)), 422, "\"t.png\" is no picture"},
        {"WrongHash", wrongHash, 400, ""},
        {"NoUpload", "hello", 400, ""},
        {"TooLarge", BodyOf("a", "Upload", NoiseOf(100'001, 1)), 413, ""},
        {"FullGroup", BodyOf("a", "Full", model), 422, "full"},
        {"EmptyName", BodyOf("a", "Upload", model).replace(9, 1, "["), 400, ""},
    };
    for (const char* name : {"1", "2", "3"}) ASSERT_TRUE(place.Open().AddModel(ModelOf("Full", name, name)));
    const CCheckReport before = Report();
    CTestServer server(place, [](CServerOptions& options) {
        options.hasOpenUploads = true;
        options.groupModels = 3;
        options.uploadBytes = 100'000;
    });
    for (const CBadUpload& row : rows) {
        SCOPED_TRACE(row.name);
        const CGot got = server.Upload(row.body);
        EXPECT_EQ(got.status, row.status);
        EXPECT_NE(got.Error().find(row.words), std::string::npos) << got.body;
    }
    const CCheckReport after = Report();
    EXPECT_EQ(after.faultCount, 0U);
    EXPECT_EQ(after.models, before.models);
    EXPECT_EQ(after.blobs, before.blobs);
}

TEST_P(UploadTest, WantsATokenATypeAndPatience) {
    CTestServer server(place, [](CServerOptions& options) { options.uploadsPerMinute = 10; });
    const std::string body = BodyOf("Cube", "Upload", ModelText("Cube"));
    EXPECT_EQ(server.Upload(body).status, 401);
    EXPECT_NE(server.Upload(body).Error().find("token create"), std::string::npos);
    CModelStore store = place.Open();
    const std::string reader = store.CreateToken("r", {1}).Value(),
                      writer = store.CreateToken("w", {2}).Value();
    EXPECT_EQ(server.Upload(body, {{"Authorization", "Bearer " + reader}}).status, 403);
    const CTestServer::CHeaders good{{"Authorization", "Bearer " + writer}};
    EXPECT_EQ(server.Upload(body, good).status, 201);
    for (int i = 0; i < 10; ++i) EXPECT_EQ(server.Upload(body, good, "192.0.2.1").status, 200);
    EXPECT_EQ(server.Upload(body, good, "192.0.2.1").status, 429);
    EXPECT_EQ(server.Upload(body, good, "192.0.2.2").status, 200);
    // Whoever guesses tokens is not listened to for a while, not even with a right one.
    for (int i = 0; i < 20; ++i)
        (void)server.Upload(body, {{"Authorization", "Bearer orbivue_1_" + std::to_string(i)}}, "192.0.2.3");
    EXPECT_EQ(server.Upload(body, good, "192.0.2.3").status, 429);
}

// Its host's name may have been turned to this machine, so that the browser takes the server for the page's own.
TEST_P(UploadTest, IsNotOpenToWebPages) {
    CTestServer server(place, [](CServerOptions& options) { options.hasOpenUploads = true; });
    const std::string body = BodyOf("Cube", "Upload", ModelText("Cube"));
    EXPECT_EQ(server.Upload(body, {{"Origin", "http://pages.example:8095"}}).status, 401);
    EXPECT_EQ(server.Upload(body, {{"Origin", "null"}}).status, 401);
    EXPECT_EQ(server.Upload(body).status, 201);
}

TEST_P(UploadTest, TakesManyAtOnceOnTwoServers) {
    const auto open = [](CServerOptions& options) { options.hasOpenUploads = true; };
    CTestServer one(place, open), two(place, open);
    std::vector<std::thread> threads;
    std::atomic<int> added{0};
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&, i] {
            CTestServer& server = i % 2 == 0 ? one : two;
            // Each model comes twice, by each server.
            const std::string name = "Cube" + std::to_string(i / 2);
            const CGot got = server.Upload(BodyOf(name, "Upload", ModelText(name.c_str())));
            EXPECT_LT(got.status, 300) << got.body;
            added += got.status == 201;
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(added, 4);
    EXPECT_EQ(one.Get("/api/groups").Json()["groups"][0]["models"], 4);
    EXPECT_EQ(Report().faultCount, 0U);
}

}  // namespace
