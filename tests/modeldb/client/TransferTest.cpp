// SPDX-License-Identifier: MIT
// What a server may do to a request, and how long.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <future>

#include "CChildProgram.h"
#include "CScriptedServer.h"
#include "modeldb/client/transfer/CTransferPool.h"
#include "row_name.h"

using namespace std::chrono_literals;
using CMs = std::chrono::milliseconds;

namespace {

constexpr CTransferTimes kQuick{2s, 1s};

class CTestWatcher final : public CTransferWatcher {
  public:
    CStatus OnHead(const CTransferHead& /*head*/) override { return CDone{}; }
    CStatus OnBytes(std::span<const std::byte> piece) override {
        body.append(reinterpret_cast<const char*>(piece.data()), piece.size());
        return CDone{};
    }
    void OnSent(std::uint64_t total) override { sent = total; }
    bool DoContinue() override { return !isCancelled; }

    std::string body;
    std::uint64_t sent = 0;
    std::atomic<bool> isCancelled = false;
};

CTransferRequest Get(const std::string& url, std::uint64_t mostBytes = 1000, CMs deadline = 2s) {
    CTransferRequest request;
    request.url = url;
    request.mostBytes = mostBytes;
    request.deadline = deadline;
    return request;
}

std::string Outcome(const CResult<CTransferAnswer>& answer) {
    if (!answer) return answer.Error().message;
    return std::to_string(answer.Value().head.status);
}

struct CBadServerRow {
    std::string name;
    CScriptedServer::CHandler handler;
    std::string outcome;
    bool isLost = false;
};

bool SendForEver(CScriptedPeer& peer, std::string_view piece, CMs pause = 0ms) {
    while (peer.Send(piece) && (pause == 0ms || peer.Wait(pause))) {
    }
    return false;
}

const char* const kOk = "HTTP/1.1 200 OK\r\n";

const CBadServerRow kBadServers[] = {
    {"SilentAtOnce", [](auto&, auto& peer) { return peer.Stall(), false; },
     "the server takes too long to answer", true},
    {"SilentInTheBody",
     [](auto&, auto& peer) {
         peer.Send(std::string(kOk) + "Content-Length: 100\r\n\r\nabc");
         return peer.Stall(), false;
     },
     "the server takes too long to answer", true},
    {"AByteNowAndThen",
     [](auto&, auto& peer) {
         peer.Send(std::string(kOk) + "Content-Length: 900\r\n\r\n");
         return SendForEver(peer, "x", 100ms);
     },
     "the server takes too long to answer", true},
    {"EndlessBody",
     [](auto&, auto& peer) {
         peer.Send(std::string(kOk) + "Transfer-Encoding: chunked\r\n\r\n");
         return SendForEver(peer, "5\r\nabcde\r\n");
     },
     "the server sends more than was expected"},
    {"LongerThanAllowed",
     [](auto&, auto& peer) {
         peer.Send(std::string(kOk) + "Content-Length: 1001\r\n\r\n");
         return peer.Stall(), false;
     },
     "the server sends more than was expected"},
    {"HeadersWithoutEnd",
     [](auto&, auto& peer) {
         peer.Send(kOk);
         return SendForEver(peer, "X-Header: " + std::string(1000, 'x') + "\r\n");
     },
     "the server sends more than was expected"},
    {"InterimAnswersWithoutEnd",
     [](auto&, auto& peer) { return SendForEver(peer, "HTTP/1.1 103 Hints\r\nLink: x\r\n\r\n"); },
     "the server sends more than was expected"},
    {"NoHttp", [](auto&, auto& peer) { return peer.Send("220 mail.example.com ready\r\n\r\n"), false; },
     "the server does not answer as one of models does"},
    {"CutInTheBody",
     [](auto&, auto& peer) { return peer.Send(std::string(kOk) + "Content-Length: 100\r\n\r\nabc"), false; },
     "the connection to the server was lost", true},
    {"CutAtOnce", [](auto&, auto&) { return false; }, "the connection to the server was lost", true},
    {"ElsewhereIsNotFollowed", [](auto&, auto& peer) { return peer.Answer(302, "", "Location: /other\r\n"); },
     "302"},
    {"RefusalWithEndlessReason",
     [](auto&, auto& peer) {
         peer.Send("HTTP/1.1 500 No\r\nTransfer-Encoding: chunked\r\n\r\n");
         return SendForEver(peer, "5\r\nabcde\r\n");
     },
     "500"},
};

class BadServerTest : public testing::TestWithParam<CBadServerRow> {};
INSTANTIATE_TEST_SUITE_P(Transfer, BadServerTest, testing::ValuesIn(kBadServers), kRowName);

TEST_P(BadServerTest, EndsSoonAndSaysWhy) {
    CScriptedServer server(GetParam().handler);
    CTransferPool pool(kQuick);
    CTestWatcher watcher;
    bool isLost = false;
    const auto start = std::chrono::steady_clock::now();
    const auto answer = pool.Run(Get(server.Address() + "/"), watcher, isLost);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 6s);
    EXPECT_EQ(Outcome(answer), GetParam().outcome);
    EXPECT_EQ(isLost, GetParam().isLost);
    EXPECT_LE(watcher.body.size(), 1000U);
    EXPECT_EQ(server.Requests().size(), 1U);
}

TEST(TransferTest, CallsAreCancelledInAStall) {
    CScriptedServer server([](auto&, auto& peer) { return peer.Stall(), false; });
    CTransferPool pool(CTransferTimes{});
    std::vector<CMs> waits;
    for (const CMs pause : {130ms, 270ms, 410ms, 550ms, 690ms}) {
        CTestWatcher watcher;
        bool isLost = false;
        auto running = std::async(std::launch::async,
                                  [&] { return pool.Run(Get(server.Address(), 10, 60s), watcher, isLost); });
        std::this_thread::sleep_for(pause);
        const auto start = std::chrono::steady_clock::now();
        watcher.isCancelled = true;
        if (waits.size() == 4) pool.Stop();
        EXPECT_EQ(Outcome(running.get()), "cancelled");
        waits.push_back(std::chrono::duration_cast<CMs>(std::chrono::steady_clock::now() - start));
        EXPECT_FALSE(isLost);
    }
    std::ranges::sort(waits);
    EXPECT_LT(waits[3], 300ms) << "but for one, as others may use the machine";
    CTestWatcher watcher;
    bool isLost = false;
    EXPECT_EQ(Outcome(pool.Run(Get(server.Address()), watcher, isLost)), "cancelled") << "stopped for good";
}

TEST(TransferTest, AConnectionServesManyRequestsAndIsReplacedWhenItIsClosed) {
    std::atomic<int> count = 0;
    CScriptedServer server([&](auto&, auto& peer) { return peer.Answer(200, "body") && ++count != 3; });
    CTransferPool pool(kQuick);
    for (int i = 0; i < 6; ++i) {
        CTestWatcher watcher;
        bool isLost = false;
        EXPECT_EQ(Outcome(pool.Run(Get(server.Address()), watcher, isLost)), "200");
        EXPECT_EQ(watcher.body, "body");
        if (i == 2) std::this_thread::sleep_for(50ms);  // until the end of the connection has come
    }
    EXPECT_EQ(server.Connections(), 2);
}

class CZeros final : public CByteSource {
  public:
    CResult<std::size_t> Give(std::span<std::byte> room) override { return room.size(); }
};

TEST(TransferTest, ARefusedUploadIsNotSent) {
    CScriptedServer server([](auto&, auto& peer) { return peer.Answer(413, "too much"), false; }, 0, false);
    CTransferPool pool(kQuick);
    CTestWatcher watcher;
    CZeros zeros;
    CTransferRequest request = Get(server.Address());
    request.method = ETransferMethod::Post;
    request.body = {&zeros, 10 << 20, {}};
    bool isLost = false;
    const auto answer = pool.Run(request, watcher, isLost);
    ASSERT_EQ(Outcome(answer), "413");
    EXPECT_EQ(answer.Value().errorBody, "too much");
    EXPECT_EQ(watcher.sent, 0U);
}

TEST(TransferTest, ThisMachineNeedsNoProxy) {
    ::setenv("http_proxy", "http://127.0.0.1:1", 1);
    CScriptedServer server([](auto&, auto& peer) { return peer.Answer(200, ""); });
    CTransferPool pool(kQuick);
    CTestWatcher watcher;
    bool isLost = false;
    EXPECT_EQ(Outcome(pool.Run(Get(server.Address()), watcher, isLost)), "200");
    ::unsetenv("http_proxy");
}

TEST(TransferTest, ACertificateThatNobodyVouchesForIsRefused) {
    const std::string folder = ORBIVUE_CLIENT_TESTS;
    const CChildProgram server({"python3", folder + "/https_server.py", folder + "/untrusted.pem"});
    CTransferPool pool(CTransferTimes{});
    CTestWatcher watcher;
    bool isLost = false;
    EXPECT_EQ(Outcome(pool.Run(Get(server.Address("https")), watcher, isLost)),
              "the server's certificate is not trusted");
    EXPECT_EQ(watcher.body, "");
}

TEST(TransferTest, NothingButHttpIsSpoken) {
    CTransferPool pool(kQuick);
    CTestWatcher watcher;
    bool isLost = false;
    EXPECT_EQ(Outcome(pool.Run(Get("file:///etc/passwd"), watcher, isLost)),
              "the server does not answer as one of models does");
    EXPECT_EQ(watcher.body, "");
}

}  // namespace
