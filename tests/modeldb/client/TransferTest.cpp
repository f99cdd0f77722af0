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

/** A request, and what became of it. */
struct CRun {
    /** The status, or why there is none. */
    std::string Of(CTransferPool& pool, const CTransferRequest& request) {
        const auto answer = pool.Run(request, watcher, isLost);
        if (answer) errorBody = answer.Value().errorBody;
        return answer ? std::to_string(answer.Value().head.status) : answer.Error().message;
    }
    CTestWatcher watcher;
    std::string errorBody;
    bool isLost = false;
};

struct CBadServerRow {
    std::string name;
    CScriptedServer::CHandler handler;
    std::string outcome;
    bool isLost = false;
};

/** Sends this, and stalls. */
CScriptedServer::CHandler Stalls(const std::string& first) {
    return [first](auto&, auto& peer) { return peer.Send(first), peer.Stall(), false; };
}
/** Sends this, and ends. */
CScriptedServer::CHandler Ends(const std::string& first) {
    return [first](auto&, auto& peer) { return peer.Send(first), false; };
}
/** Sends this, and something else for ever. */
CScriptedServer::CHandler Repeats(const std::string& first, const std::string& piece, CMs pause = 0ms) {
    return [=](auto&, auto& peer) {
        peer.Send(first);
        while (peer.Send(piece) && (pause == 0ms || peer.Wait(pause))) {
        }
        return false;
    };
}

const std::string kOk = "HTTP/1.1 200 OK\r\n", kChunked = "Transfer-Encoding: chunked\r\n\r\n",
                  kSlow = "the server takes too long to answer",
                  kTooMuch = "the server sends more than was expected",
                  kCut = "the connection to the server was lost";
constexpr bool kIsLost = true;

const CBadServerRow kBadServers[] = {
    {"SilentAtOnce", Stalls(""), kSlow, kIsLost},
    {"SilentInTheBody", Stalls(kOk + "Content-Length: 100\r\n\r\nabc"), kSlow, kIsLost},
    {"AByteNowAndThen", Repeats(kOk + "Content-Length: 900\r\n\r\n", "x", 100ms), kSlow, kIsLost},
    {"EndlessBody", Repeats(kOk + kChunked, "5\r\nabcde\r\n"), kTooMuch},
    {"LongerThanAllowed", Stalls(kOk + "Content-Length: 1001\r\n\r\n"), kTooMuch},
    {"HeadersWithoutEnd", Repeats(kOk, "X-Header: " + std::string(1000, 'x') + "\r\n"), kTooMuch},
    {"InterimAnswersWithoutEnd", Repeats("", "HTTP/1.1 103 Hints\r\nLink: x\r\n\r\n"), kTooMuch},
    {"NoHttp", Ends("220 mail ready\r\n\r\n"), "the server does not answer as one of models does"},
    {"CutInTheBody", Ends(kOk + "Content-Length: 100\r\n\r\nabc"), kCut, kIsLost},
    {"CutAtOnce", Ends(""), kCut, kIsLost},
    {"ElsewhereIsNotFollowed", Ends("HTTP/1.1 302 No\r\nContent-Length: 0\r\nLocation: /a\r\n\r\n"), "302"},
    {"RefusalWithEndlessReason", Repeats("HTTP/1.1 500 No\r\n" + kChunked, "5\r\nabcde\r\n"), "500"},
};

class BadServerTest : public testing::TestWithParam<CBadServerRow> {};
INSTANTIATE_TEST_SUITE_P(Transfer, BadServerTest, testing::ValuesIn(kBadServers), kRowName);

TEST_P(BadServerTest, EndsSoonAndSaysWhy) {
    CScriptedServer server(GetParam().handler);
    CTransferPool pool(kQuick);
    CRun run;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(run.Of(pool, Get(server.Address() + "/")), GetParam().outcome);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 6s);
    EXPECT_EQ(run.isLost, GetParam().isLost);
    EXPECT_LE(run.watcher.body.size(), 1000U);
    EXPECT_EQ(server.Requests().size(), 1U);
}

TEST(TransferTest, CallsAreCancelledInAStall) {
    CScriptedServer server(Stalls(""));
    CTransferPool pool(CTransferTimes{});
    std::vector<CMs> waits;
    for (const CMs pause : {130ms, 270ms, 410ms, 550ms, 690ms}) {
        CRun run;
        auto running =
            std::async(std::launch::async, [&] { return run.Of(pool, Get(server.Address(), 10, 60s)); });
        std::this_thread::sleep_for(pause);
        const auto start = std::chrono::steady_clock::now();
        run.watcher.isCancelled = true;
        if (waits.size() == 4) pool.Stop();
        EXPECT_EQ(running.get(), "cancelled");
        waits.push_back(std::chrono::duration_cast<CMs>(std::chrono::steady_clock::now() - start));
        EXPECT_FALSE(run.isLost);
    }
    std::ranges::sort(waits);
    EXPECT_LT(waits[3], 300ms) << "but for one, as others may use the machine";
    EXPECT_EQ(CRun().Of(pool, Get(server.Address())), "cancelled") << "stopped for good";
}

TEST(TransferTest, AConnectionServesManyRequestsAndIsReplacedWhenItIsClosed) {
    std::atomic<int> count = 0;
    CScriptedServer server([&](auto&, auto& peer) { return peer.Answer(200, "body") && ++count != 3; });
    CTransferPool pool(kQuick);
    for (int i = 0; i < 6; ++i) {
        CRun run;
        EXPECT_EQ(run.Of(pool, Get(server.Address())), "200");
        EXPECT_EQ(run.watcher.body, "body");
        if (i == 2) std::this_thread::sleep_for(50ms);  // until the end of the connection has come
    }
    EXPECT_EQ(server.Connections(), 2);
}

class CZeros final : public CByteSource {
  public:
    CResult<std::size_t> Give(std::span<std::byte> room) override { return room.size(); }
};

TEST(TransferTest, ARefusedUploadIsNotSent) {
    CScriptedServer server([](auto&, auto& peer) { return peer.Answer(413, "too much"), false; }, false);
    CTransferPool pool(kQuick);
    CRun run;
    CZeros zeros;
    CTransferRequest request = Get(server.Address());
    request.method = ETransferMethod::Post;
    request.body = {&zeros, 10 << 20, {}};
    EXPECT_EQ(run.Of(pool, request), "413");
    EXPECT_EQ(run.errorBody, "too much");
    EXPECT_EQ(run.watcher.sent, 0U);
}

TEST(TransferTest, ThisMachineNeedsNoProxy) {
    ::setenv("http_proxy", "http://127.0.0.1:1", 1);
    CScriptedServer server([](auto&, auto& peer) { return peer.Answer(200, ""); });
    CTransferPool pool(kQuick);
    EXPECT_EQ(CRun().Of(pool, Get(server.Address())), "200");
    ::unsetenv("http_proxy");
}

TEST(TransferTest, ACertificateThatNobodyVouchesForIsRefused) {
    const std::string folder = ORBIVUE_CLIENT_TESTS;
    const CChildProgram server({"python3", folder + "/https_server.py", folder + "/untrusted.pem"});
    CTransferPool pool(CTransferTimes{});
    CRun run;
    EXPECT_EQ(run.Of(pool, Get(server.Address("https"))), "the server's certificate is not trusted");
    EXPECT_EQ(run.watcher.body, "");
}

TEST(TransferTest, NothingButHttpIsSpoken) {
    CTransferPool pool(kQuick);
    CRun run;
    EXPECT_EQ(run.Of(pool, Get("file:///etc/passwd")), "the server does not answer as one of models does");
    EXPECT_EQ(run.watcher.body, "");
}

}  // namespace
