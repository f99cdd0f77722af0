// SPDX-License-Identifier: MIT
// The client with the server that people run.
#include <gtest/gtest.h>
#include <stdlib.h>

#include "CChildProgram.h"
#include "files/CTestFolder.h"
#include "files/std_file_paths.h"
#include "modeldb/client/C3DModelsLoadApi.h"
#include "modeldb/store/CModelStore.h"

using CApi = C3DModelsLoadApi;

namespace {

class ServerProgramTest : public testing::Test {
  protected:
    void SetUp() override {
        ::setenv("XDG_CACHE_HOME", (m_folder / "cache").c_str(), 1);
        CModelStore store =
            std::move(CModelStore::Open(CStoreAddress::Parse(m_store), EStoreUse::Create)).Value();
        const auto bits =
            static_cast<std::uint32_t>(EStoreRight::Upload) | static_cast<std::uint32_t>(EStoreRight::Read);
        m_token = store.CreateToken("test", {bits}).Value();
    }
    void TearDown() override {
        CApi::Close();
        CApi::SetToken("");
        CApi::SetConnLostListner({});
        ::unsetenv("XDG_CACHE_HOME");
    }
    [[nodiscard]] static std::string Sample(const std::string& name) {
        return CTestFolder::TextOf(std_file_paths::GetDataPath("samples/" + name));
    }
    [[nodiscard]] std::unique_ptr<CChildProgram> Serve(int port = 0, const char* option = "--quiet") const {
        return std::make_unique<CChildProgram>(
            std::vector<std::string>{ORBIVUE_MODELDB_PROGRAM, "serve", option, "--listen",
                                     "127.0.0.1:" + std::to_string(port), "--store", m_store});
    }
    static bool Upload(const std::string& name, const std::string& file, const std::string& texture = "") {
        CBlobData data(new unsigned char[file.size()], static_cast<std::uint32_t>(file.size()));
        std::ranges::copy(file, data.data);
        const auto bytes = std::as_bytes(std::span(texture));
        const CImageDataTextVec textures = {{"marble.jpg", {bytes.begin(), bytes.end()}}};
        return CApi::UploadModel(name, "Upload", data, textures, nullptr);
    }
    static std::string Download(std::uint32_t id, CImageDataTextVec& textures) {
        std::string name, group;
        CBlobData data;
        if (!CApi::DownloadModel(id, name, group, data, textures, nullptr)) return CApi::LastError();
        return {reinterpret_cast<const char*>(data.data), data.size};
    }

    CTestFolder m_folder;
    std::string m_store = m_folder / "store.sqlite";
    std::string m_token;
};

TEST_F(ServerProgramTest, TakesAndGivesModels) {
    const std::string file = Sample("knot.3ds"), texture = Sample("marble.jpg");
    const std::uint32_t id = CApi::CalcCrc(file.data(), file.size());
    const auto server = Serve();
    ASSERT_TRUE(CApi::Open(server->Address())) << CApi::LastError();
    EXPECT_TRUE(CApi::CheckVersion("1.5"));
    EXPECT_FALSE(CApi::CheckVersion("0.9"));
    EXPECT_FALSE(Upload("knot.3ds", file, texture));
    EXPECT_NE(CApi::LastError().find("token"), std::string::npos) << CApi::LastError();
    CApi::SetToken(m_token);
    ASSERT_TRUE(CApi::Open(server->Address()));
    ASSERT_TRUE(Upload("knot.3ds", file, texture)) << CApi::LastError();
    EXPECT_TRUE(Upload("knot.3ds", file, texture)) << CApi::LastError();
    EXPECT_FALSE(Upload("nonsense", std::string(5000, 'x')));
    EXPECT_FALSE(CApi::LastError().empty());
    EXPECT_TRUE(CApi::DoesModelExist(id));
    EXPECT_EQ(CApi::GetModelGroup(id), "Upload");
    CSmpModelArr models;
    CApi::GetGroupModels("Upload", models, nullptr);
    EXPECT_EQ(models.size(), 1U);
    CImageDataTextVec textures;
    EXPECT_EQ(Download(id, textures), file);
    ASSERT_EQ(textures.size(), 1U);
    EXPECT_EQ(CTestFolder::TextOf(textures[0].data), texture);
}

TEST_F(ServerProgramTest, AKilledServerIsFoundAgain) {
    int lost = 0;
    CApi::SetConnLostListner([&] { ++lost; });
    auto server = Serve();
    const int port = server->Port();
    ASSERT_TRUE(CApi::Open(server->Address()));
    server.reset();
    EXPECT_FALSE(CApi::DoesModelExist(1));
    EXPECT_FALSE(CApi::LastError().empty());
    EXPECT_EQ(lost, 1);
    server = Serve(port);
    EXPECT_FALSE(CApi::DoesModelExist(1));
    EXPECT_EQ(CApi::LastError(), "");
}

TEST_F(ServerProgramTest, APrivateOneOpensWithATokenAlone) {
    const auto server = Serve(0, "--private");
    EXPECT_FALSE(CApi::Open(server->Address()));
    EXPECT_NE(CApi::LastError().find("token"), std::string::npos) << CApi::LastError();
    CApi::SetToken(m_token);
    EXPECT_TRUE(CApi::Open(server->Address())) << CApi::LastError();
}

}  // namespace
