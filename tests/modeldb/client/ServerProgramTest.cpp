// SPDX-License-Identifier: MIT
// The client with the server that people run.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>

#include "files/CFileDescriptor.h"
#include "files/CTestFolder.h"
#include "files/std_file_paths.h"
#include "modeldb/client/C3DModelsLoadApi.h"
#include "modeldb/store/CModelStore.h"

using namespace std::chrono_literals;
using CApi = C3DModelsLoadApi;

namespace {

/** orbivue-modeldb serve, until the end of the object. */
class CServerProgram {
  public:
    CServerProgram(const std::string& store, int port, bool isPrivate = false) {
        int ends[2] = {-1, -1};
        EXPECT_EQ(::pipe2(ends, O_CLOEXEC), 0);
        CFileDescriptor output(ends[0]), input(ends[1]);
        const std::string listen = "127.0.0.1:" + std::to_string(port);
        m_pid = ::fork();
        if (m_pid == 0) {
            ::dup2(input.Get(), STDOUT_FILENO);
            ::execl(ORBIVUE_MODELDB_PROGRAM, "orbivue-modeldb", "serve", "--quiet", "--listen",
                    listen.c_str(), "--store", store.c_str(), isPrivate ? "--private" : nullptr, nullptr);
            ::_exit(127);
        }
        (void)input.Close();
        std::string line;
        for (char c = 0; ::read(output.Get(), &c, 1) == 1 && c != '\n';) line += c;
        const std::size_t colon = line.rfind(':');
        m_port = colon == std::string::npos ? 0 : ::atoi(line.c_str() + colon + 1);
        EXPECT_GT(m_port, 0) << line;
    }
    CServerProgram(const CServerProgram&) = delete;
    CServerProgram& operator=(const CServerProgram&) = delete;
    ~CServerProgram() {
        ::kill(m_pid, SIGKILL);
        ::waitpid(m_pid, nullptr, 0);
    }
    [[nodiscard]] int Port() const { return m_port; }
    [[nodiscard]] std::string Address() const { return "http://127.0.0.1:" + std::to_string(m_port) + "/"; }

  private:
    pid_t m_pid = -1;
    int m_port = 0;
};

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
    const CServerProgram server(m_store, 0);
    ASSERT_TRUE(CApi::Open(server.Address())) << CApi::LastError();
    EXPECT_TRUE(CApi::CheckVersion("1.5"));
    EXPECT_FALSE(CApi::CheckVersion("0.9"));
    EXPECT_FALSE(Upload("knot.3ds", file, texture));
    EXPECT_NE(CApi::LastError().find("token"), std::string::npos) << CApi::LastError();
    CApi::SetToken(m_token);
    ASSERT_TRUE(CApi::Open(server.Address()));
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
    auto server = std::make_unique<CServerProgram>(m_store, 0);
    const int port = server->Port();
    ASSERT_TRUE(CApi::Open(server->Address()));
    server.reset();
    EXPECT_FALSE(CApi::DoesModelExist(1));
    EXPECT_FALSE(CApi::LastError().empty());
    EXPECT_EQ(lost, 1);
    server = std::make_unique<CServerProgram>(m_store, port);
    EXPECT_FALSE(CApi::DoesModelExist(1));
    EXPECT_EQ(CApi::LastError(), "");
}

TEST_F(ServerProgramTest, APrivateOneOpensWithATokenAlone) {
    const CServerProgram server(m_store, 0, true);
    EXPECT_FALSE(CApi::Open(server.Address()));
    EXPECT_NE(CApi::LastError().find("token"), std::string::npos) << CApi::LastError();
    CApi::SetToken(m_token);
    EXPECT_TRUE(CApi::Open(server.Address())) << CApi::LastError();
}

}  // namespace
