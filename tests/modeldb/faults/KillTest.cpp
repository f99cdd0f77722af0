// SPDX-License-Identifier: MIT
// Servers and clients that are killed at any moment of an upload: nothing that was acknowledged is lost, no half model stays.
#include <random>
#include <set>
#include <thread>

#include "CServedStore.h"
#include "made_models.h"

namespace {

enum class EVictim { Server, Client };

struct CVictimRow {
    std::string name;
    CEngineRow engine;
    EVictim victim = EVictim::Server;
};
std::vector<CVictimRow> Rows() {
    std::vector<CVictimRow> rows;
    for (const CEngineRow& engine : Engines()) {
        rows.push_back({engine.name + "Server", engine, EVictim::Server});
        rows.push_back({engine.name + "Client", engine, EVictim::Client});
    }
    return rows;
}

/** Uploads until a call fails, and tells the key of each model that the server took. */
bool UploadForEver(const CServedStore& served, std::uint64_t series, const CPipe& acknowledged) {
    C3DModelsLoadApi::SetToken(served.token);
    if (!C3DModelsLoadApi::Open(served.Address())) return false;
    for (std::uint64_t n = 0;; ++n) {
        const made_models::CMade made = made_models::Make(series, n);
        if (!made.Upload() || !acknowledged.Tell(made.Key())) return false;
    }
}

class KillTest : public testing::TestWithParam<CVictimRow> {
  protected:
    /** One upload after the other, ended at a random moment. */
    void RunAndKill(std::uint64_t series) {
        CPipe told;
        CChildProcess client([&] { return UploadForEver(*m_served, series, told); });
        (void)told.write.Close();
        std::this_thread::sleep_for(
            std::chrono::milliseconds(std::uniform_int_distribution<>(20, 500)(m_random)));
        if (GetParam().victim == EVictim::Server)
            m_served->Kill();
        else
            EXPECT_TRUE(client.Kill()) << "the client ended by itself";
        // Those that a server acknowledged just before it was killed are still told.
        for (std::uint32_t key = 0; told.Hear(key); ++m_count) m_acknowledged.insert(key);
    }
    void Renew() {
        m_served = std::make_unique<CServedStore>(GetParam().engine);
        m_acknowledged.clear();
        m_served->Start();
    }

    std::mt19937 m_random{20};  // NOLINT(cert-msc51-cpp): the moments are random anyhow
    std::unique_ptr<CServedStore> m_served;
    std::set<std::uint32_t> m_acknowledged;
    std::size_t m_count = 0;
};
INSTANTIATE_TEST_SUITE_P(, KillTest, testing::ValuesIn(Rows()), kRowName);

TEST_P(KillTest, LosesNothingThatWasAcknowledged) {
    const char* wanted = std::getenv("ORBIVUE_KILLS");
    const int kills = wanted ? std::atoi(wanted) : 10;
    for (int i = 0; i < kills && !HasFailure(); ++i) {
        if (i % 20 == 0) Renew();
        RunAndKill(static_cast<std::uint64_t>(i));
        CModelStore store = m_served->Open();
        EXPECT_EQ(LostOf(store, m_acknowledged), 0u) << "of " << m_acknowledged.size();
        if (GetParam().victim == EVictim::Server) m_served->Start();
    }
    EXPECT_GT(m_count, 0u);
    std::printf("%d kills, %zu models acknowledged, none lost\n", kills, m_count);
}

}  // namespace
