// SPDX-License-Identifier: MIT
#include <openssl/evp.h>
#include <sys/stat.h>

#include <fstream>

#include "CTestServer.h"
#include "modeldb/bytes/calc_crc.h"

namespace {

const std::string kPacked(100'000, 'm');         // becomes smaller in the store
const std::string kNoise = NoiseOf(600'000, 1);  // does not, and is of several parts

std::string KeyOf(std::string_view file) {
    return model_key::ToText(CalcCrc(BytesOf(file)));
}
std::string HashOf(std::string_view bytes) {
    return CBlobHash::Of(BytesOf(bytes)).ToHex();
}

/** A server of a store with two groups. */
class ModelSiteTest : public testing::TestWithParam<CEngineRow> {
  protected:
    ModelSiteTest() {
        CModelStore store = place.Open();
        CNewModel chair = ModelOf("Cars & more", "a chair", kPacked);
        chair.textures.push_back({"../../etc/passwd", BlobOf(nullptr, kNoise)});
        EXPECT_TRUE(store.AddModel(std::move(chair)));
        for (const char* name : {"b", "c", "d"}) EXPECT_TRUE(store.AddModel(ModelOf("Übrige", name, name)));
    }

    CTestPlace place{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(Store, ModelSiteTest, testing::ValuesIn(Engines()), kRowName);

struct CAskRow {
    std::string target;
    std::string words;  ///< that the body holds
    int status;
    EHttpMethod method = EHttpMethod::Get;
};

TEST_P(ModelSiteTest, AnswersEachAddress) {
    const CAskRow rows[] = {
        {"/api/version?client=1.5", R"("accepted":true)", 200},
        {"/api/version?client=1.4", R"("accepted":false)", 200},
        {"/api/groups", R"("name":"Übrige","models":3)", 200},
        {"/api/group?name=Cars%20%26%20more", R"("models":1)", 200},
        {"/api/group?name=%27%20OR%201=1", "not_found", 404},
        {"/api/groups/2/models?limit=2", R"({"models":[["b",)", 200},
        {"/api/groups/2/models?limit=2", R"("more":true)", 200},
        {"/api/groups/2/models?limit=3", R"("more":false)", 200},
        {"/api/groups/2/models?limit=2&after_name=c&after_key=" + KeyOf("c"), R"([["d",)", 200},
        {"/api/groups/9/models", "not_found", 404},
        {"/api/models/" + KeyOf(kPacked), R"("name":"../../etc/passwd")", 200},
        {"/api/models/" + KeyOf("b"), R"("preview":null)", 200, EHttpMethod::Head},
        {"/api/groups", "method", 405, EHttpMethod::Delete},
        {"/api/groups", "method", 405, EHttpMethod::Other},
        {"/api/search?text=CHAIR", R"("group":"Cars & more")", 200},
        {"/api/search?text=%25", R"({"models":[])", 200},
        {"/b/" + HashOf("b"), "b", 200},
        {"/b/" + HashOf(kNoise), kNoise, 200},
        {"/b/" + HashOf(kPacked), kPacked, 200},
        {"/b/" + HashOf(kPacked) + ".zst", "\x28\xB5\x2F\xFD", 200},
        {"/b/" + HashOf(kNoise) + ".zst", "not_found", 404},
        {"/b/../api/groups", "not_found", 404},
        {"/metrics", "orbivue_modeldb_hot_files 4\n", 200},
    };
    CTestServer server(place);
    for (const CAskRow& row : rows) {
        SCOPED_TRACE(row.target);
        const CGot got = server.Get(row.target, {}, row.method);
        EXPECT_EQ(got.status, row.status);
        EXPECT_NE(got.body.find(row.words), std::string::npos) << got.body.substr(0, 300);
    }
}

TEST_P(ModelSiteTest, TagsTellWhatHasChanged) {
    CTestServer server(place), other(place);
    for (const std::string target : {"/api/groups", "/api/groups/2/models"}) {
        SCOPED_TRACE(target);
        const CGot before = server.Get(target);
        const std::string tag = before.Header("ETag");
        EXPECT_EQ(server.Get(target, {{"If-None-Match", "\"x\", W/" + tag}}).status, 304);
        EXPECT_EQ(server.Get(target, {{"If-None-Match", "\"x\""}}).body, before.body);
        // Another server's change shows at once.
        ASSERT_TRUE(place.Open().AddModel(ModelOf("Übrige", "new", "new for " + target)));
        const CGot after = server.Get(target, {{"If-None-Match", tag}});
        EXPECT_EQ(after.status, 200);
        EXPECT_NE(after.body, before.body);
        EXPECT_EQ(other.Get(target).body, after.body);
    }
}

struct CRangeRow {
    std::string name;
    CTestServer::CHeaders headers;
    int status;
    std::size_t first = 0, length = 0;
};

TEST_P(ModelSiteTest, GivesRanges) {
    const std::string tag = "\"" + HashOf(kNoise) + "\"";
    const std::size_t size = kNoise.size();
    const CRangeRow rows[] = {
        {"Whole", {}, 200, 0, size},
        {"Middle", {{"Range", "bytes=262143-262145"}}, 206, 262'143, 3},
        {"ToTheEnd", {{"Range", "bytes=599990-"}}, 206, 599'990, 10},
        {"PastTheEnd", {{"Range", "bytes=599990-9999999"}}, 206, 599'990, 10},
        {"Last", {{"Range", "bytes=-5"}}, 206, size - 5, 5},
        {"MoreThanAll", {{"Range", "bytes=-9999999"}}, 206, 0, size},
        {"Behind", {{"Range", "bytes=600000-"}}, 416},
        {"NothingOfIt", {{"Range", "bytes=-0"}}, 416},
        {"Several", {{"Range", "bytes=0-1,3-4"}}, 200, 0, size},
        {"Backwards", {{"Range", "bytes=5-4"}}, 200, 0, size},
        {"NoNumber", {{"Range", "bytes=0x1-4"}}, 200, 0, size},
        {"TooLargeANumber", {{"Range", "bytes=99999999999999999999-"}}, 200, 0, size},
        {"OtherUnit", {{"Range", "lines=1-2"}}, 200, 0, size},
        {"SameBytes", {{"Range", "bytes=0-0"}, {"If-Range", tag}}, 206, 0, 1},
        {"OtherBytes", {{"Range", "bytes=0-0"}, {"If-Range", "\"other\""}}, 200, 0, size},
        {"WeakTag", {{"Range", "bytes=0-0"}, {"If-Range", "W/" + tag}}, 200, 0, size},
        {"HasThem", {{"Range", "bytes=0-0"}, {"If-None-Match", tag}}, 304},
    };
    CTestServer server(place);
    for (const CRangeRow& row : rows) {
        SCOPED_TRACE(row.name);
        const CGot got = server.Get("/b/" + HashOf(kNoise), row.headers);
        EXPECT_EQ(got.status, row.status);
        const std::string all = "/" + std::to_string(kNoise.size());
        const std::string part =
            "bytes " + std::to_string(row.first) + "-" + std::to_string(row.first + row.length - 1) + all;
        const std::string told = row.status == 206 ? part : row.status == 416 ? "bytes *" + all : "";
        EXPECT_EQ(got.Header("Content-Range"), told);
        if (row.status == 416) continue;
        EXPECT_EQ(got.Header("ETag"), tag);
        EXPECT_TRUE(got.body == kNoise.substr(row.first, row.length));
    }
}

TEST_P(ModelSiteTest, FetchesOnceForAllWhoAsk) {
    CTestServer server(place, [](CServerOptions& options) { options.workers = 3; });
    std::vector<std::future<CHttpAnswer>> waiting;
    waiting.reserve(40);
    for (int i = 0; i < 40; ++i) waiting.push_back(server.Begin("/b/" + HashOf(kNoise)));
    for (auto& one : waiting) EXPECT_TRUE(CTestServer::Take(one).body == kNoise);
    EXPECT_EQ(server.Metric("hot_fills_total"), 1);
}

TEST_P(ModelSiteTest, SearchesWhileModelsAreMadePagesOf) {
    const std::string program = place.folder / "slow.sh";
    std::ofstream(program) << "#!/bin/sh\nexec sleep 3\n";
    ASSERT_EQ(::chmod(program.c_str(), 0700), 0);
    CTestServer server(place, [&](CServerOptions& options) { options.workerProgram = program; });
    std::vector<std::future<CHttpAnswer>> views;
    const auto models = place.Open().Models(2, std::nullopt, 3);
    for (const CModelSummary& model : models.Value())
        views.push_back(server.Begin("/m/" + model_key::ToText(model.key) + "/view"));
    ASSERT_EQ(views.size(), 3U);
    EXPECT_EQ(server.Get("/api/search?text=chair").status, 200);
    for (auto& view : views) EXPECT_EQ(view.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
}

TEST_P(ModelSiteTest, RefusesWhatIsTooMuch) {
    CTestServer server(place, [](CServerOptions& options) {
        options.workers = 1;
        options.waiting = 2;
    });
    std::vector<std::future<CHttpAnswer>> waiting;
    waiting.reserve(200);
    for (int i = 0; i < 200; ++i) waiting.push_back(server.Begin("/api/search?text=" + std::to_string(i)));
    int busy = 0;
    for (auto& one : waiting) {
        const CGot got = CTestServer::Take(one);
        if (got.status == 200) continue;
        ++busy;
        EXPECT_EQ(got.status, 503);
        EXPECT_NE(got.Header("Retry-After"), "");
    }
    EXPECT_GT(busy, 0);
    EXPECT_EQ(server.Get("/health").status, 200);
}

struct CTokenRow {
    std::string name, authorization;
    int reads, removes;
};

TEST_P(ModelSiteTest, KeepsPrivateWhatIsPrivate) {
    CModelStore store = place.Open();
    const auto token = [&](const char* name, std::uint32_t rights) {
        return store.CreateToken(name, {rights}).Value();
    };
    const std::string reader = token("reader", 1), remover = token("remover", 4);
    const auto basic = [](const std::string& user) {
        std::string packed(4 * user.size(), '\0');
        const auto* plain = reinterpret_cast<const unsigned char*>(user.data());
        packed.resize(static_cast<std::size_t>(::EVP_EncodeBlock(
            reinterpret_cast<unsigned char*>(packed.data()), plain, static_cast<int>(user.size()))));
        return "Basic " + packed;
    };
    const CTokenRow rows[] = {
        {"None", "", 401, 401},
        {"Reader", "bearer " + reader, 200, 403},
        {"Remover", "Bearer " + remover, 403, 404},
        {"Password", basic("any name:" + reader), 200, 401},
        {"Forged", "Bearer " + reader.substr(0, reader.size() - 1) + "x", 401, 401},
        {"Long", "Bearer " + std::string(4000, 'a'), 401, 401},
        {"Other", "Digest " + reader, 401, 401},
    };
    CTestServer server(place, [](CServerOptions& options) { options.isPrivate = true; });
    for (const CTokenRow& row : rows) {
        SCOPED_TRACE(row.name);
        CTestServer::CHeaders headers;
        if (!row.authorization.empty()) headers.emplace_back("Authorization", row.authorization);
        for (const std::string& target :
             {std::string("/api/groups"), std::string("/metrics"), "/b/" + HashOf("b"), std::string("/")})
            EXPECT_EQ(server.Get(target, headers).status, row.reads) << target;
        EXPECT_EQ(server.Get("/api/models/00000000", headers, EHttpMethod::Delete).status, row.removes);
    }
    EXPECT_EQ(server.Get("/api/version?client=1.5").Json()["private"], true);
    const CTestServer::CHeaders headers{{"Authorization", "Bearer " + reader}};
    const CModelSummary model = store.Models(1, std::nullopt, 1).Value().at(0);
    for (const std::string& target :
         {"/b/" + HashOf("b"), std::string("/api/groups"), "/api/models/" + model_key::ToText(model.key),
          std::string("/api/search?text=a"), std::string("/metrics"), std::string("/")})
        EXPECT_TRUE(server.Get(target, headers).Header("Cache-Control").starts_with("private")) << target;
}

}  // namespace
