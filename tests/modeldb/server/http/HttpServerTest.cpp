// SPDX-License-Identifier: MIT
#include "modeldb/server/http/CHttpServer.h"

#include <thread>

#include "CHttpTestSite.h"
#include "error_code_of.h"
#include "modeldb/server/http/http_text.h"
#include "raw_client.h"
#include "sanitized.h"

namespace {

using namespace std::chrono_literals;

TEST(HttpServerTest, ServesManyAtOnce) {
    CHttpTestServer test;
    std::atomic<int> good{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 200; ++i) {
        threads.emplace_back([&, i] {
            CRawClient client(test.server->Port());
            for (int j = 0; j < 10; ++j) {
                const std::string name = "/" + std::to_string(i) + "-" + std::to_string(j);
                good += BodyOf(client.Ask(Get(name))) == name + "?" ? 1 : 0;
                const std::string body(static_cast<std::size_t>(1000 * j), 'b');
                good += BodyOf(client.Ask(Post("/p", body))).starts_with(std::to_string(body.size()) + ":")
                            ? 1
                            : 0;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(good, 4000);
    // An answer counts when it has been sent, which the one who reads it may see first.
    EXPECT_TRUE(WaitFor([&] { return test.server->Counters().answers[2] >= 4000; }));
    const CHttpCounters counters = test.server->Counters();
    EXPECT_EQ(counters.answers[2], 4000U);
    EXPECT_EQ(counters.connections, 200U);
    EXPECT_EQ(counters.spoolBytes, 0U);
}

TEST(HttpServerTest, AnswersFromOtherThreads) {
    CHttpTestServer test;
    std::atomic<bool> ended{false};
    std::thread worker([&] {
        while (!ended) {
            for (CHttpReply& reply : test.site.TakeHeld()) reply.Send(CHttpAnswer::OfText(200, "", "worked"));
            std::this_thread::yield();
        }
    });
    std::vector<CRawClient> clients;
    for (int i = 0; i < 20; ++i) clients.emplace_back(test.server->Port());
    for (int round = 0; round < 20; ++round) {
        for (CRawClient& client : clients) client.Send(Get("/hold"));
        for (CRawClient& client : clients) EXPECT_EQ(BodyOf(client.ReadAnswer()), "worked");
    }
    ended = true;
    worker.join();
}

TEST(HttpServerTest, StopLetsRunningRequestsEnd) {
    CHttpTestServer test;
    CRawClient idle(test.server->Port()), running(test.server->Port()), reading(test.server->Port());
    EXPECT_EQ(StatusOf(idle.Ask(Get("/a"))), 200);
    running.Send(Get("/hold"));
    reading.Send("POST /a HTTP/1.1\r\nHost: a\r\nContent-Length: 3\r\n\r\na");
    ASSERT_TRUE(
        WaitFor([&] { return test.site.HeldCount() == 1 && test.server->Counters().spoolBytes == 3; }));
    const int port = test.server->Port();
    std::thread stopper([&] { test.server->Stop(10s); });
    EXPECT_EQ(idle.ReadAll(), "");
    EXPECT_FALSE(CRawClient(port).IsConnected());
    reading.Send("bc");
    test.site.TakeHeld().front().Send(CHttpAnswer::OfText(200, "", "held"));
    for (CRawClient* client : {&running, &reading}) {
        const std::string all = client->ReadAll();
        EXPECT_TRUE(all.ends_with(client == &running ? "held" : "3:abc")) << all;
        EXPECT_NE(all.find("Connection: close\r\n"), all.npos);
    }
    stopper.join();
}

TEST(HttpServerTest, StopCutsWhatDoesNotEndInTime) {
    auto test = std::make_unique<CHttpTestServer>();
    CRawClient held(test->server->Port()), half(test->server->Port()), full(test->server->Port(), 4096);
    held.Send(Get("/hold"));
    half.Send("GET /a");
    full.Send(Get("/big"));
    ASSERT_TRUE(
        WaitFor([&] { return test->site.HeldCount() == 1 && test->server->Counters().sentBytes > 0; }));
    const auto start = std::chrono::steady_clock::now();
    test->server->Stop(200ms);
    EXPECT_LT(std::chrono::steady_clock::now() - start, kSanitized ? 8s : 2s);
    EXPECT_EQ(test->server->Counters().openConnections, 0U);
    std::vector<CHttpReply> late = test->site.TakeHeld();
    test.reset();
    late.front().Send(CHttpAnswer::OfText(200, "", "nobody hears this"));
}

TEST(HttpServerTest, HoldsOnePortForBothFamilies) {
    CHttpTestSite site;
    auto server = CHttpServer::Start({.addresses = {"127.0.0.1", "::1"}}, site);
    ASSERT_TRUE(server);
    const auto second =
        CHttpServer::Start({.addresses = {"127.0.0.1"}, .port = server.Value()->Port()}, site);
    EXPECT_EQ(CodeOf(second), EErrorCode::Exists);
    EXPECT_EQ(CodeOf(CHttpServer::Start({.addresses = {"localhost"}}, site)), EErrorCode::BadArgument);
}

TEST(HttpServerTest, LogsEachRequestInOneLineWithoutSecrets) {
    std::mutex lock;
    std::vector<std::string> lines;
    CHttpServerOptions options;
    options.log = [&](std::string_view line) {
        const std::lock_guard guard(lock);
        lines.emplace_back(line);
    };
    {
        CHttpTestServer test(std::move(options));
        CRawClient client(test.server->Port());
        client.Ask("GET /a?x=\"1\"&Token=abc&y HTTP/1.1\r\nHost: a\r\nAuthorization: Bearer abc\r\n\r\n");
        client.Ask(Post("/b", "hello"));
        client.Ask(Get("/" + std::string(1000, 'c')));
        client.Ask("\n");
    }
    ASSERT_EQ(lines.size(), 4U);
    const std::string first =
        R"("peer":"127.0.0.1","method":"GET","target":"/a?x=\u00221\u0022&Token=&y","status":200,)";
    EXPECT_NE(lines[0].find(first), std::string::npos) << lines[0];
    EXPECT_EQ(lines[0].find("abc"), std::string::npos);
    EXPECT_NE(lines[1].find(R"("status":201,"received":5,"sent":7,)"), std::string::npos) << lines[1];
    EXPECT_LT(lines[2].size(), 400U);
    EXPECT_NE(lines[3].find(R"("method":"","target":"","status":400,)"), std::string::npos) << lines[3];
}

TEST(HttpTextTest, DatesAreHttpDates) {
    EXPECT_EQ(HttpDate(784111777), "Sun, 06 Nov 1994 08:49:37 GMT");
    EXPECT_EQ(HttpDate(1709210096), "Thu, 29 Feb 2024 12:34:56 GMT");
}

}  // namespace
