// SPDX-License-Identifier: MIT
// A network that drops, delays, cuts and changes what client and server say: calls fail or give what is right, and the next one
// works.
#include <random>

#include "CFaultyProxy.h"
#include "CServedStore.h"
#include "base/CStopwatch.h"
#include "made_models.h"

namespace {

using CApi = C3DModelsLoadApi;

class ProxyTest : public testing::Test {
  protected:
    ProxyTest() : m_served(Engines().front()) {
        m_served.Start();
        m_proxy = std::make_unique<CFaultyProxy>(m_served.port);
        CApi::SetToken(m_served.token);
        EXPECT_TRUE(CApi::Open("http://127.0.0.1:" + std::to_string(m_proxy->Port()))) << CApi::LastError();
        for (std::uint64_t n = 0; n < 4; ++n) {
            m_models.push_back(made_models::Make(1, n));
            EXPECT_TRUE(m_models.back().Upload()) << CApi::LastError();
        }
    }
    ~ProxyTest() override {
        CApi::Close();
        CApi::SetToken("");
    }

    /** Downloads a model: true when it came, and then it is right. */
    static bool Download(const made_models::CMade& model, bool isNameSure) {
        std::string name, group;
        CBlobData data;
        CImageDataTextVec textures;
        if (!CApi::DownloadModel(model.Key(), name, group, data, textures, nullptr)) {
            EXPECT_EQ(data.size, 0u);
            EXPECT_TRUE(textures.empty());
            EXPECT_FALSE(CApi::LastError().empty());
            return false;
        }
        const auto* bytes = reinterpret_cast<const char*>(data.data);
        EXPECT_TRUE(std::string_view(bytes, data.size) == model.file) << "wrong bytes";
        EXPECT_EQ(textures.size(), model.textures.size());
        for (std::size_t i = 0; i < textures.size(); ++i)
            EXPECT_TRUE(textures[i].data == model.textures[i].data);
        EXPECT_TRUE(!isNameSure || name == model.name) << name;
        return true;
    }

    /** Some call; a list that came is whole, unless the network changed letters of it. */
    void CallSomething(const CFault& fault, std::uint64_t round) {
        const made_models::CMade& model = m_models[round % m_models.size()];
        const bool isSure = fault.kind != CFault::EKind::Corrupt;
        if (round % 3 == 0) CApi::ClearCache();
        switch (round % 5) {
            case 0: {
                CSmpModelArr list;
                CApi::GetGroupModels("Upload", list, nullptr);
                EXPECT_TRUE(!isSure || !CApi::LastError().empty() || list.size() >= m_models.size());
                break;
            }
            case 1: {
                const made_models::CMade fresh = made_models::Make(2, round);
                m_acknowledged += fresh.Upload() ? 1u : 0u;
                break;
            }
            case 2:
                EXPECT_TRUE(CApi::DoesModelExist(model.Key()) || !isSure || !CApi::LastError().empty());
                break;
            default:
                (void)Download(model, isSure);
                break;
        }
    }

    CServedStore m_served;
    std::unique_ptr<CFaultyProxy> m_proxy;
    std::vector<made_models::CMade> m_models;
    std::size_t m_acknowledged = 0;
};

TEST_F(ProxyTest, FaultsEndACallAndNothingElse) {
    using EKind = CFault::EKind;
    constexpr EKind kKinds[] = {EKind::Refuse, EKind::Cut, EKind::Reset, EKind::Corrupt, EKind::Slow};
    std::mt19937 random(7);  // NOLINT(cert-msc51-cpp): the same faults each time
    for (std::uint64_t round = 0; round < 150 && !HasFailure(); ++round) {
        CFault fault{kKinds[random() % std::size(kKinds)], random() % 3 != 0, random() % 400};
        if (random() % 2 == 0) fault.at = random() % 60'000;
        m_proxy->SetFault(fault);
        const CStopwatch watch;
        CallSomething(fault, round);
        EXPECT_LT(watch.Ms(), 20'000) << "round " << round;
        m_proxy->SetFault({});
        EXPECT_TRUE(Download(m_models[round % m_models.size()], true)) << round << ": " << CApi::LastError();
    }
    EXPECT_GT(m_acknowledged, 5u);
    CModelStore store = m_served.Open();
    EXPECT_EQ(FaultOf(store), "");
    EXPECT_GE(store.Check(CModelStore::ECheck::Quick).Value().models, m_acknowledged + m_models.size());
}

// The silence that a client bears is 30 s.
TEST_F(ProxyTest, ASilentServerEndsTheCallInTime) {
    m_proxy->SetFault({CFault::EKind::Stall, true, 300});
    const CStopwatch watch;
    CApi::ClearCache();
    EXPECT_FALSE(Download(m_models[2], true));
    EXPECT_LT(watch.Ms(), 45'000);
    m_proxy->SetFault({});
    EXPECT_TRUE(Download(m_models[2], true)) << CApi::LastError();
}

}  // namespace
