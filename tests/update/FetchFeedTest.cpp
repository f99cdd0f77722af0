// SPDX-License-Identifier: MIT
#include "update/fetch_feed.h"

#include <gtest/gtest.h>

#include <thread>

#include "modeldb/client/CChildProgram.h"
#include "row_name.h"
#include "update/check_for_update.h"

using namespace std::chrono_literals;

namespace {

/** One server for all tests; its certificate is for 127.0.0.1, and nobody vouches for it. */
class FetchFeedTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        for (const char* name : {"https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"}) ::unsetenv(name);
        s_server = std::make_unique<CChildProgram>(
            std::vector<std::string>{"python3", ORBIVUE_FEED_SERVER, ORBIVUE_TEST_CERTIFICATE});
    }
    static void TearDownTestSuite() { s_server.reset(); }
    static CFeedRequest Request(const std::string& path) {
        return {s_server->Address("https") + path, "Orbivue/test", 2s, ORBIVUE_TEST_CERTIFICATE};
    }
    /** The error's message, or that there is none. */
    static std::string Outcome(const CFeedRequest& request) {
        const std::atomic<bool> cancelled = false;
        const CResult<std::string> feed = FetchFeed(request, cancelled);
        return feed ? "fetched" : feed.Error().message;
    }

    static inline std::unique_ptr<CChildProgram> s_server;
};

struct CAnswer {
    const char* name;
    const char* path;
    const char* outcome;
};
class FeedAnswerTest : public FetchFeedTest, public testing::WithParamInterface<CAnswer> {};

TEST_P(FeedAnswerTest, HasAClearOutcome) {
    EXPECT_EQ(Outcome(Request(GetParam().path)), GetParam().outcome);
}

constexpr const char* kNotHttps = "the address is not one of https, or leads to another that is not";
constexpr const char* kTooLarge = "the server sends more than was expected";
constexpr const char* kTooSlow = "the server takes too long to answer";
const CAnswer kAnswers[] = {
    {"Feed", "feed", "fetched"},
    {"TwoRedirects", "twice", "fetched"},
    {"RedirectToHttp", "to-http", kNotHttps},
    {"RedirectToFile", "to-file", kNotHttps},
    {"RedirectWithAName", "to-user", kNotHttps},
    {"RedirectLoop", "loop", "the server redirects too often"},
    {"HugeAnnounced", "announced", kTooLarge},
    {"HugeUnannounced", "endless", kTooLarge},
    {"Drip", "drip", kTooSlow},
    {"Silence", "silent", kTooSlow},
    {"CutShort", "cut", "the connection to the server was lost"},
    {"Missing", "nothing", "the server has no list of versions there"},
};
INSTANTIATE_TEST_SUITE_P(Answers, FeedAnswerTest, testing::ValuesIn(kAnswers), kRowName);

TEST_F(FetchFeedTest, CertificatesAreVerified) {
    CFeedRequest request = Request("feed");
    request.certificates.clear();
    EXPECT_EQ(Outcome(request), "the server's certificate is not trusted");
    request = Request("feed");
    request.address.replace(request.address.find("127.0.0.1"), 9, "localhost");
    EXPECT_EQ(Outcome(request), "the server's certificate is not trusted");
}

TEST_F(FetchFeedTest, NothingIsAskedWithoutHttps) {
    for (const char* address :
         {"http://127.0.0.1:1/", "file:///etc/passwd", "127.0.0.1", "", "https://a:b@127.0.0.1:1/"})
        EXPECT_EQ(Outcome({.address = address}), kNotHttps) << address;
    EXPECT_EQ(Outcome({.address = "https://127.0.0.1:1/", .deadline = 2s}), "the server cannot be reached");
}

TEST_F(FetchFeedTest, ACheckEndsAtOnceWhenItIsCancelled) {
    std::atomic<bool> cancelled = false;
    const auto start = std::chrono::steady_clock::now();
    std::thread canceller([&] {
        std::this_thread::sleep_for(100ms);
        cancelled = true;
    });
    CFeedRequest request = Request("silent");
    request.deadline = 20s;
    const CResult<std::string> feed = FetchFeed(request, cancelled);
    canceller.join();
    ASSERT_FALSE(feed);
    EXPECT_EQ(feed.Error().code, EErrorCode::Cancelled);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
}

TEST_F(FetchFeedTest, ACheckSaysWhatItFound) {
    const auto sentence = [](const std::string& path, const char* version, bool isPackaged = false) {
        const std::atomic<bool> cancelled = false;
        const CFeedRequest request = path.empty() ? CFeedRequest{} : Request(path);
        return SentenceOf(CheckForUpdate(request, CUpdateTarget::Here(version), cancelled), L"X", isPackaged);
    };
    const std::wstring failed = L"It could not be found out whether there is a new version: ";
    EXPECT_EQ(sentence("feed", "1.9.5"), L"A new version of Orbivue is available: 9.0. This is version X.");
    EXPECT_EQ(sentence("feed", "9.0"), L"Orbivue X is the newest version.");
    EXPECT_EQ(sentence("", "1.9.5"),
              L"Orbivue knows no address to ask for new versions; nothing was looked for.");
    for (const char* path : {"html", "bomb"})
        EXPECT_EQ(sentence(path, "1.9.5"), failed + L"the address gives no list of versions");
    EXPECT_EQ(sentence("to-http", "1.9.5"),
              failed + L"the address is not one of https, or leads to another that is not");
    const std::wstring package =
        L"Orbivue was installed as a package of this system, whose package manager updates it.";
    EXPECT_EQ(sentence("", "1.9.5", true), package);
    EXPECT_EQ(sentence("feed", "9.0", true), L"Orbivue X is the newest version.\n" + package);
}

}  // namespace
