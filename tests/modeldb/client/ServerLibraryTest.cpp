// SPDX-License-Identifier: MIT
// A library on a server that misbehaves, and on one that does not.
#include <gtest/gtest.h>

#include "CCountingProgress.h"
#include "CScriptedServer.h"
#include "bytes_of.h"
#include "files/CTestFolder.h"
#include "modeldb/client/CServerLibrary.h"
#include "modeldb/client/download_model.h"
#include "modeldb/protocol/wire_errors.h"
#include "modeldb/protocol/wire_records.h"
#include "modeldb/store/CBlobWriter.h"
#include "row_name.h"

using namespace std::chrono_literals;

namespace {

/** A server's one model, and how a server that behaves well answers for it. */
class CServedModel {
  public:
    explicit CServedModel(std::string_view file) {
        const CNewBlob blob = CBlobWriter::Write(nullptr, BytesOf(file)).Value();
        for (const auto& part : blob.parts) m_stored += CTestFolder::TextOf(part);
        record.key = blob.crc;
        record.group = "Chairs";
        record.name = record.code = "chair";
        record.file = blob.facts;
    }
    bool Answer(const CScriptedRequest& request, CScriptedPeer& peer) const {
        if (request.target.starts_with("/api/models/"))
            return peer.Answer(200, wire_records::WriteModel(record));
        if (request.target.starts_with("/api/group"))
            return peer.Answer(200, wire_records::WriteGroup({1, "Chairs", 1, 1}));
        const std::string range = request.Header("Range");
        if (range.empty()) return peer.Answer(200, m_stored);
        const std::size_t from = std::stoul(range.substr(6));
        EXPECT_NE(request.Header("If-Range").find(record.file.hash.ToHex()), std::string::npos);
        return peer.Answer(206, m_stored.substr(from),
                           "Content-Range: bytes " + std::to_string(from) + "-" +
                               std::to_string(m_stored.size() - 1) + "/" + std::to_string(m_stored.size()) +
                               "\r\n");
    }

    CModelRecord record;

  private:
    std::string m_stored;
};

class ServerLibraryTest : public testing::Test {
  protected:
    void SetUp() override { ::setenv("XDG_CACHE_HOME", (m_folder / "cache").c_str(), 1); }
    void TearDown() override { ::unsetenv("XDG_CACHE_HOME"); }

    /** before: answers what it wants to answer otherwise, and returns true then. */
    void Serve(const std::function<bool(const CScriptedRequest&, CScriptedPeer&)>& before = {}) {
        m_server = std::make_unique<CScriptedServer>([this, before](const auto& request, auto& peer) {
            if (before && before(request, peer)) return false;
            return m_model->Answer(request, peer);
        });
        CServerCalls::CServer facts;
        facts.address = m_server->Address();
        facts.onLost = [this] { ++m_lost; };
        facts.times = {2s, 1s};
        m_library = std::make_unique<CServerLibrary>(std::move(facts));
    }
    /** The file's bytes, or why there are none. */
    [[nodiscard]] std::string Download(std::uint32_t key, CCountingProgress* progress = nullptr) {
        CProgressUnits units(progress);
        const CResult<CDownloadedModel> model = DownloadFrom(*m_library, key, units);
        if (!model) return model.Error().message;
        return {reinterpret_cast<const char*>(model.Value().file.data), model.Value().file.size};
    }
    /** Gives the server this file; its key. */
    std::uint32_t Add(std::string_view file) {
        m_model = std::make_unique<CServedModel>(file);
        return m_model->record.key;
    }

    CTestFolder m_folder;
    std::unique_ptr<CServedModel> m_model;
    std::unique_ptr<CScriptedServer> m_server;
    std::unique_ptr<CServerLibrary> m_library;
    std::atomic<int> m_lost = 0;
};

TEST_F(ServerLibraryTest, ADownloadGoesOnWhereItEnded) {
    const std::string file = NoiseOf(300'000);
    const std::uint32_t key = Add(file);
    std::atomic<bool> isCut = true;
    Serve([&](const auto& request, auto& peer) {
        if (!request.target.starts_with("/b/") || !isCut.exchange(false)) return false;
        return peer.Send("HTTP/1.1 200 OK\r\nContent-Length: 300000\r\n\r\n" + file.substr(0, 200'000));
    });
    CCountingProgress first;
    EXPECT_EQ(Download(key, &first), "the connection to the server was lost");
    EXPECT_EQ(first.total, 5);
    EXPECT_EQ(first.steps, 3);
    EXPECT_EQ(m_lost, 1);
    CCountingProgress second;
    EXPECT_EQ(Download(key, &second), file);
    EXPECT_EQ(second.steps, 5);
    EXPECT_EQ(m_server->Requests().back().Header("Range"), "bytes=200000-");
    const std::size_t requests = m_server->Requests().size();
    EXPECT_EQ(Download(key), file);
    EXPECT_EQ(m_server->Requests().size(), requests + 1) << "the bytes are kept";
}

struct CResumeRow {
    std::string name;
    int status;  ///< with the rest, the answer to the request for the bytes from 100 on
    std::string body, range = {};
    std::string outcome = {};  ///< empty: the file
};

const std::string kFile = NoiseOf(300);

const CResumeRow kResumes[] = {
    {"AllOfItAgain", 200, kFile},
    {"OtherPartThanAsked", 206, kFile.substr(90), "90-299/300"},
    {"PartOfALongerFile", 206, kFile.substr(100), "100-299/301"},
    {"PartWithoutItsPlace", 206, kFile.substr(100)},
    {"OtherBytes", 206, std::string(200, 'x'), "100-299/300"},
    {"NoSuchPart", 416, ""},
    {"NothingToo", 204, ""},
    {"Busy", 503, "<html>busy</html>", "", "the server is busy; try again later"},
};

class ResumeTest : public ServerLibraryTest, public testing::WithParamInterface<CResumeRow> {};
INSTANTIATE_TEST_SUITE_P(, ResumeTest, testing::ValuesIn(kResumes), kRowName);

TEST_P(ResumeTest, EndsWithTheRightBytesOrNone) {
    const std::uint32_t key = Add(kFile);
    const CResumeRow& row = GetParam();
    Serve([&](const auto& request, auto& peer) {
        if (!request.target.starts_with("/b/")) return false;
        if (!request.Header("Range").empty())
            return peer.Answer(row.status, row.body,
                               row.range.empty() ? "" : "Content-Range: bytes " + row.range + "\r\n");
        return m_server->Requests().size() == 2 &&
               peer.Send("HTTP/1.1 200 OK\r\nContent-Length: 300\r\n\r\n" + kFile.substr(0, 100));
    });
    EXPECT_EQ(Download(key), "the connection to the server was lost");
    EXPECT_EQ(Download(key), row.outcome.empty() ? kFile : row.outcome);
}

/** What a server may tell of a model. */
struct CLieRow {
    std::string name;
    std::function<void(CModelRecord&)> lie;
    std::string message;
};

const CLieRow kLies[] = {
    {"OtherModel", [](CModelRecord& model) { ++model.key; },
     "the server sends another model than was asked for"},
    {"HugeFile", [](CModelRecord& model) { model.file.size = model.file.stored = 1ULL << 30; },
     "the model is too large"},
    {"ManyLargeTextures",
     [](CModelRecord& model) {
         model.textures.assign(6, {"../../.bashrc", {{}, 100 << 20, 100 << 20, EBlobCodec::Plain}});
     },
     "the model is too large"},
    {"PackedLargerThanItIs", [](CModelRecord& model) { model.file.stored = 1 << 20; },
     "what is told of the model's bytes cannot be true"},
    {"UnpacksToMoreThanTold", [](CModelRecord& model) { model.file.size -= 1; }, ""},
    {"NothingInIt", [](CModelRecord& model) { model.file.size = model.file.stored = 0; }, ""},
    {"OtherBytes", [](CModelRecord& model) { model.file.hash = CBlobHash::Of(BytesOf("other")); }, ""},
};

class LieTest : public ServerLibraryTest, public testing::WithParamInterface<CLieRow> {};
INSTANTIATE_TEST_SUITE_P(, LieTest, testing::ValuesIn(kLies), kRowName);

TEST_P(LieTest, IsNotBelieved) {
    const std::string file(5000, 'x');
    const std::uint32_t key = Add(file);
    GetParam().lie(m_model->record);
    Serve();
    const std::string got = Download(key);
    EXPECT_TRUE(GetParam().message.empty() || got == GetParam().message) << got;
    EXPECT_NE(got.substr(0, 100), file.substr(0, 100));
    EXPECT_EQ(m_lost, 0);
}

TEST_F(ServerLibraryTest, AGroupWithoutEndIsCutOff) {
    Add("file");
    Serve([](const auto& request, auto& peer) {
        const std::vector<CModelSummary> page = {{"a", 1}, {"b", 2}};
        if (request.target.find("/models?") == std::string::npos) return false;
        return peer.Answer(200, wire_records::WriteModels(page, true));
    });
    CCountingProgress progress;
    CProgressUnits units(&progress);
    const CResult<CSmpModelArr> models = m_library->Models("Chairs", units);
    ASSERT_FALSE(models);
    EXPECT_EQ(models.Error().message, "the server sends the same models again and again");
    EXPECT_EQ(progress.total, 1);
    EXPECT_LE(progress.steps, 1);
}

TEST_F(ServerLibraryTest, ACountOfModelsIsNoOrderForSteps) {
    Add("file");
    Serve([](const auto& request, auto& peer) {
        const bool isPage = request.target.find("/models?") != std::string::npos;
        return peer.Answer(200, isPage ? wire_records::WriteModels({{{"a", 1}}}, false)
                                       : wire_records::WriteGroup({1, "Chairs", 1'000'000'000'000, 1}));
    });
    CCountingProgress progress;
    CProgressUnits units(&progress);
    EXPECT_TRUE(m_library->Models("Chairs", units));
    EXPECT_EQ(progress.steps, progress.total);
    EXPECT_LT(progress.total, 1'000'000);
}

TEST_F(ServerLibraryTest, NestedJsonAndPagesOfProxiesAreNoAnswers) {
    for (const std::string& body : {std::string(60'000, '['), std::string("<html>Welcome</html>"),
                                    std::string("{\"groups\":[{\"id\":-1,\"name\":\"x\"}]}")}) {
        Serve([&](const auto&, auto& peer) { return peer.Answer(200, body); });
        CProgressUnits units(nullptr);
        const CStatus opened = m_library->Open();
        ASSERT_FALSE(opened);
        EXPECT_EQ(opened.Error().message, "the server does not answer as one of models does");
        EXPECT_FALSE(m_library->Groups(units));
    }
}

TEST_F(ServerLibraryTest, WhatAServerSaysOfARefusalIsOneLine) {
    Serve([&](const auto&, auto& peer) {
        return peer.Answer(422, R"({"error":{"code":"bad","message":"no\n\u001b[31mmodel\u0000"}})");
    });
    const CImageDataTextVec textures = {{"wood.jpg", std::vector<std::byte>(10)}};
    const std::string name = "chair", group = "Upload";
    CProgressUnits units(nullptr);
    const CStatus uploaded = m_library->Upload({name, group, BytesOf("file"), textures}, units);
    ASSERT_FALSE(uploaded);
    EXPECT_EQ(uploaded.Error().where, m_server->Address().substr(7));
    EXPECT_TRUE(std::ranges::none_of(uploaded.Error().message, [](char c) { return c > 0 && c < ' '; }));
}

}  // namespace
