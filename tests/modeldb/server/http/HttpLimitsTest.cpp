// SPDX-License-Identifier: MIT
// Who is slow, large or many.
#include <sys/resource.h>

#include <fstream>
#include <thread>

#include "CHttpTestSite.h"
#include "raw_client.h"
#include "row_name.h"
#include "sanitized.h"

namespace {

using namespace std::chrono_literals;

CHttpServerOptions HastyOptions() {
    CHttpServerOptions options;
    options.headTime = options.bodyGrace = options.answerGrace = CHttpServerOptions::Seconds(1);
    options.idleTime = options.stallTime = CHttpServerOptions::Seconds(0.5);
    options.bodyBytesPerSecond = options.answerBytesPerSecond = 1e9;
    options.addresses = {"127.0.0.1"};
    return options;
}

// What the process has in memory.
std::size_t ResidentBytes() {
    std::ifstream file("/proc/self/statm");
    std::size_t all = 0, resident = 0;
    file >> all >> resident;
    return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

struct CSlowRow {
    const char* name;
    std::string first;  ///< sent at once
    std::string drip;   ///< sent again and again, four times a second
    int status;         ///< of the last answer; 0: closed without one
    std::chrono::milliseconds soonest, latest;
};

class HttpSlowTest : public testing::TestWithParam<CSlowRow> {};

TEST_P(HttpSlowTest, IsCutInTime) {
    CHttpTestServer test(HastyOptions());
    CRawClient client(test.server->Port()), other(test.server->Port());
    const auto start = std::chrono::steady_clock::now();
    client.Send(GetParam().first);
    std::string all = client.ReadAll(250ms);
    for (; all.ends_with("<waiting>"); all = client.ReadAll(250ms)) {
        client.Send(GetParam().drip);
        EXPECT_EQ(StatusOf(other.Ask(Get("/a"))), 200) << "others are served meanwhile";
    }
    const auto time = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(StatusOf(all), GetParam().status) << all;
    EXPECT_GE(time, GetParam().soonest);
    EXPECT_LE(time, GetParam().latest * (kSanitized ? 4 : 1));
}

const CSlowRow kHttpSlowTestRows[] = {
    {"Silent", "", "", 0, 900ms, 3s},
    {"HeadStops", "GET /a HTT", "", 408, 900ms, 3s},
    {"HeadDrips", "GET /", "a", 408, 900ms, 3s},
    {"BodyStops", "POST /a HTTP/1.1\r\nHost: a\r\nContent-Length: 99\r\n\r\nb", "", 408, 400ms, 3s},
    {"BodyDrips", "POST /a HTTP/1.1\r\nHost: a\r\nContent-Length: 99\r\n\r\n", "b", 408, 900ms, 3s},
};
INSTANTIATE_TEST_SUITE_P(Clients, HttpSlowTest, testing::ValuesIn(kHttpSlowTestRows), kRowName);

TEST(HttpLimitsTest, IdleConnectionsAreClosed) {
    CHttpTestServer test(HastyOptions());
    CRawClient client(test.server->Port());
    EXPECT_EQ(StatusOf(client.Ask(Get("/a"))), 200);
    EXPECT_EQ(client.ReadAll(), "");
    EXPECT_EQ(test.server->Counters().timedOut, 0U);
}

TEST(HttpLimitsTest, WhoDoesNotReadIsCut) {
    CHttpTestServer test(HastyOptions());
    CRawClient stopped(test.server->Port(), 4096), slow(test.server->Port(), 4096);
    stopped.Send(Get("/big"));
    slow.Send(Get("/big"));
    EXPECT_TRUE(WaitFor([&] { return test.server->Counters().timedOut == 2; }));
    EXPECT_LT(slow.ReadAll().size(), 16U << 20);
}

TEST(HttpLimitsTest, WhoReadsSlowlyButSteadilyGetsAll) {
    CHttpServerOptions options = HastyOptions();
    options.answerGrace = CHttpServerOptions::Seconds(30);
    CHttpTestServer test(options);
    CRawClient client(test.server->Port(), 64 << 10);
    client.Send(Get("/big"));
    std::size_t bytes = 0;
    for (int i = 0; i < 8; ++i) {
        std::this_thread::sleep_for(300ms);
        bytes += client.ReadAll(0ms).size();
    }
    bytes += client.ReadAll().size();
    EXPECT_GE(bytes, 16U << 20);
}

TEST(HttpLimitsTest, TooManyConnectionsAreToldToComeAgain) {
    CHttpTestServer test({.connections = 3});
    std::vector<CRawClient> clients;
    for (int i = 0; i < 3; ++i) {
        clients.emplace_back(test.server->Port());
        EXPECT_EQ(StatusOf(clients.back().Ask(Get("/a"))), 200);
    }
    CRawClient refused(test.server->Port());
    refused.Send(Get("/a"));
    const std::string answer = refused.ReadAll();
    EXPECT_EQ(StatusOf(answer), 503) << answer;
    EXPECT_NE(answer.find("Retry-After: 2\r\n"), answer.npos);
    clients.pop_back();
    EXPECT_TRUE(WaitFor([&] { return StatusOf(CRawClient(test.server->Port()).Ask(Get("/a"))) == 200; }));
}

TEST(HttpLimitsTest, OnePeerMayHaveSoManyConnectionsAndRequests) {
    CHttpTestServer test(
        {.peerConnections = 2, .peerRequestsPerSecond = 1, .peerBurst = 3, .limitLoopback = true});
    CRawClient first(test.server->Port()), second(test.server->Port());
    for (const int status : {200, 200, 200, 429}) EXPECT_EQ(StatusOf(first.Ask(Get("/a"))), status);
    const std::string refused = second.Ask(Get("/a"));
    EXPECT_EQ(StatusOf(refused), 429) << "its connections share what it may ask";
    EXPECT_NE(refused.find("Retry-After: "), refused.npos);
    CRawClient third(test.server->Port());
    third.Send(Get("/a"));
    EXPECT_NE(third.ReadAll().find("too many connections of one client"), std::string::npos);
    EXPECT_TRUE(WaitFor([&] { return StatusOf(first.Ask(Get("/a"))) == 200; }))
        << "with time it may ask again";
}

TEST(HttpLimitsTest, BehindATrustedProxyEachClientIsLimitedForItself) {
    CHttpTestServer test({.trustedProxies = {"127.0.0.1"}, .peerRequestsPerSecond = 0.001, .peerBurst = 1});
    CRawClient proxy(test.server->Port());
    const auto ask = [&](const char* forwarded) {
        return proxy.Ask("GET /peer HTTP/1.1\r\nHost: a\r\nX-Forwarded-For: " + std::string(forwarded) +
                         "\r\n\r\n");
    };
    EXPECT_EQ(BodyOf(ask("10.0.0.1")), "10.0.0.1");
    EXPECT_EQ(StatusOf(ask("10.9.9.9, 10.0.0.1")), 429) << "what a client says of itself does not count";
    EXPECT_EQ(BodyOf(ask("10.0.0.2")), "10.0.0.2");
    EXPECT_EQ(BodyOf(ask("nonsense")), "127.0.0.1");
}

TEST(HttpLimitsTest, RequestsThatWaitForTheSiteAreCounted) {
    CHttpTestServer test({.waitingRequests = 1});
    CRawClient first(test.server->Port()), second(test.server->Port());
    first.Send(Get("/hold"));
    ASSERT_TRUE(WaitFor([&] { return test.site.HeldCount() == 1; }));
    EXPECT_EQ(StatusOf(second.Ask(Get("/a"))), 503);
    test.site.TakeHeld();
    EXPECT_EQ(StatusOf(first.ReadAnswer()), 500) << "a dropped reply";
    EXPECT_EQ(StatusOf(second.Ask(Get("/a"))), 200);
    EXPECT_EQ(test.server->Counters().waitingRequests, 0U);
}

TEST(HttpLimitsTest, ASiteThatNeverAnswersIsNotWaitedForForEver) {
    CHttpServerOptions options = HastyOptions();
    options.siteTime = CHttpServerOptions::Seconds(0.3);
    CHttpTestServer test(options);
    CRawClient client(test.server->Port());
    client.Send(Get("/hold"));
    EXPECT_EQ(StatusOf(client.ReadAll()), 503);
    test.site.TakeHeld().front().Send(CHttpAnswer::OfText(200, "", "late"));
}

TEST(HttpLimitsTest, BodiesTogetherHaveSoMuchRoom) {
    CHttpTestServer test({.spoolBytes = 100'000});
    CRawClient first(test.server->Port()), second(test.server->Port());
    first.Send(Post("/hold", std::string(60'000, 'a')));
    ASSERT_TRUE(WaitFor([&] { return test.site.HeldCount() == 1; }));
    EXPECT_EQ(test.server->Counters().spoolBytes, 60'000U);
    second.Send(Post("/a", std::string(60'000, 'a')));
    EXPECT_EQ(StatusOf(second.ReadAll()), 503);
    test.site.TakeHeld();
    EXPECT_EQ(test.server->Counters().spoolBytes, 0U);
    EXPECT_EQ(BodyOf(CRawClient(test.server->Port()).Ask(Post("/a", std::string(60'000, 'b')))).substr(0, 7),
              "60000:b");
    CRawClient(test.server->Port()).Send("POST /a HTTP/1.1\r\nHost: a\r\nContent-Length: 60000\r\n\r\nabc");
    EXPECT_TRUE(WaitFor([&] { return test.server->Counters().openConnections <= 1; }));
    EXPECT_TRUE(WaitFor([&] { return test.server->Counters().spoolBytes == 0; })) << "of a client that left";
}

TEST(HttpLimitsTest, WithoutDescriptorsClientsWaitAndAreServedLater) {
    CHttpTestServer test;
    CRawClient early(test.server->Port());
    EXPECT_EQ(StatusOf(early.Ask(Get("/a"))), 200);
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    CFileDescriptor lowest(::dup(0));
    const rlimit oneMore{static_cast<rlim_t>(lowest.Get()) + 1, before.rlim_max};
    (void)lowest.Close();
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &oneMore), 0);  // for a client; the server finds none
    CRawClient waiting(test.server->Port());
    EXPECT_TRUE(waiting.IsConnected());
    EXPECT_TRUE(WaitFor([&] { return test.server->Counters().acceptPauses > 0; }));
    EXPECT_EQ(StatusOf(early.Ask(Get("/a"))), 200) << "those that are in are served";
    ::setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(StatusOf(waiting.Ask(Get("/a"))), 200);
}

TEST(HttpLimitsTest, MemoryIsFlat) {
    if (kSanitized) GTEST_SKIP() << "sanitizers keep what is freed";
    CHttpTestServer test;
    const auto askALot = [&] {
        for (int i = 0; i < 20; ++i) {
            CRawClient client(test.server->Port());
            for (int j = 0; j < 500; ++j)
                client.Ask(Get("/a?" + std::string(static_cast<std::size_t>(j), 'q')));
            client.Ask(Post("/a", std::string(1 << 20, 'b')));
            client.Send("GET /half");
        }
    };
    askALot();
    const std::size_t before = ResidentBytes();
    for (int i = 0; i < 3; ++i) askALot();
    EXPECT_LT(ResidentBytes(), before + (2 << 20));
}

}  // namespace
