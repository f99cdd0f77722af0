// SPDX-License-Identifier: MIT
// What one connection may send, and what it gets for it.
#include "CHttpTestSite.h"
#include "raw_client.h"
#include "row_name.h"

namespace {

struct CRefusedRow {
    const char* name;
    std::string request;
    int status;
};

std::string Many(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
}

std::string WithFields(const std::string& fields, const std::string& method = "POST") {
    return method + " /a HTTP/1.1\r\nHost: a\r\n" + fields + "\r\n";
}

class HttpRefusedTest : public testing::TestWithParam<CRefusedRow> {};

// Two requests could hide in each of these, or none: the connection is closed, and the site hears of nothing.
TEST_P(HttpRefusedTest, IsToldAndClosed) {
    CHttpTestServer test;
    CRawClient client(test.server->Port());
    client.Send(GetParam().request);
    client.Send(Get("/second"));
    const std::string all = client.ReadAll();
    EXPECT_EQ(StatusOf(all), GetParam().status) << all;
    EXPECT_NE(all.find("Connection: close\r\n"), all.npos);
    EXPECT_EQ(all.find("HTTP/1.1", 1), all.npos) << "one answer";
    EXPECT_EQ(test.site.calls, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Requests, HttpRefusedTest,
    testing::Values(
        CRefusedRow{"TwoLengths", WithFields("Content-Length: 1\r\nContent-Length: 2\r\n"), 400},
        CRefusedRow{"TwoEqualLengths", WithFields("Content-Length: 1\r\nContent-Length: 1\r\n"), 400},
        CRefusedRow{"LengthList", WithFields("Content-Length: 1, 1\r\n"), 400},
        CRefusedRow{"LengthAndChunked", WithFields("Content-Length: 1\r\nTransfer-Encoding: chunked\r\n"),
                    400},
        CRefusedRow{"ChunkedAndLength", WithFields("Transfer-Encoding: chunked\r\nContent-Length: 1\r\n"),
                    400},
        CRefusedRow{"LengthAndOtherCoding",
                    WithFields("Content-Length: 1\r\nTransfer-Encoding: xchunked\r\n"), 400},
        CRefusedRow{"LengthWithSign", WithFields("Content-Length: +1\r\n"), 400},
        CRefusedRow{"LengthBeyondNumbers", WithFields("Content-Length: 99999999999999999999\r\n"), 400},
        CRefusedRow{"EmptyLength", WithFields("Content-Length:\r\n"), 400},
        CRefusedRow{"NoLength", WithFields(""), 411},
        CRefusedRow{"ChunkedAlone", WithFields("Transfer-Encoding: chunked\r\n"), 411},
        CRefusedRow{"BodyTooLarge", WithFields("Content-Length: 99999999999\r\n"), 413},
        CRefusedRow{"BodyOfGet", WithFields("Content-Length: 1\r\n", "GET"), 400},
        CRefusedRow{"ChunkedGet", WithFields("Transfer-Encoding: chunked\r\n", "GET"), 400},
        CRefusedRow{"OtherExpectation", WithFields("Content-Length: 1\r\nExpect: tea\r\n"), 417},
        CRefusedRow{"ContinuedLine", WithFields("X: a\r\n b\r\n", "GET"), 400},
        CRefusedRow{"ContinuedFirstLine", "GET /a HTTP/1.1\r\n X: a\r\nHost: a\r\n\r\n", 400},
        CRefusedRow{"LineFeedAlone", "GET /a HTTP/1.1\nHost: a\r\n\r\n", 400},
        CRefusedRow{"ReturnAlone", "GET /a HTTP/1.1\rHost: a\r\n\r\n", 400},
        CRefusedRow{"ReturnInValue", WithFields("X: a\rY: b\r\n", "GET"), 400},
        CRefusedRow{"BlankBeforeColon", WithFields("X : a\r\n", "GET"), 400},
        CRefusedRow{"NoColon", WithFields("X\r\n", "GET"), 400},
        CRefusedRow{"NoFieldName", WithFields(": a\r\n", "GET"), 400},
        CRefusedRow{"ZeroByte", WithFields(std::string("X: a\0b\r\n", 8), "GET"), 400},
        CRefusedRow{"NoHost", "GET /a HTTP/1.1\r\n\r\n", 400},
        CRefusedRow{"TwoHosts", WithFields("Host: b\r\n", "GET"), 400},
        CRefusedRow{"OddHost", "GET /a HTTP/1.1\r\nHost: a/b@c\r\n\r\n", 400},
        CRefusedRow{"TwoAuthorizations", WithFields("Authorization: a\r\nauthorization: b\r\n", "GET"), 400},
        CRefusedRow{"WholeAddress", Get("http://a/b"), 400}, CRefusedRow{"TwoSlashes", Get("//a/b"), 400},
        CRefusedRow{"BlankInTarget", Get("/a b"), 400}, CRefusedRow{"TabInTarget", Get("/a\tb"), 400},
        CRefusedRow{"Fragment", Get("/a#b"), 400}, CRefusedRow{"HighByteInTarget", Get("/\xc3\xa4"), 400},
        CRefusedRow{"LongTarget", Get("/" + std::string(4096, 'a')), 414},
        CRefusedRow{"OtherVersion", "GET /a HTTP/2.0\r\nHost: a\r\n\r\n", 505},
        CRefusedRow{"NoVersion", "GET /a\r\n\r\n", 400},
        CRefusedRow{"TlsHello", std::string("\x16\x03\x01\x02\x00\x01\x00", 7), 400},
        CRefusedRow{"HeadTooLarge", WithFields("X: " + std::string(9000, 'a') + "\r\n", "GET"), 431},
        CRefusedRow{"TooManyFields", WithFields(Many("X: a\r\n", 200), "GET"), 431}),
    kRowName);

struct CServedRow {
    const char* name;
    std::string request;
    std::string answer;  ///< begins so, behind the status line's version
    std::string body;
    bool closes = false;
    bool isHead = false;
};

class HttpServedTest : public testing::TestWithParam<CServedRow> {};

// Whole, and byte for byte.
TEST_P(HttpServedTest, GetsItsAnswer) {
    for (const bool inPieces : {false, true}) {
        CHttpTestServer test;
        CRawClient client(test.server->Port());
        const std::string& request = GetParam().request;
        for (std::size_t i = 0; i < request.size(); i += inPieces ? 1 : request.size()) {
            client.Send(std::string_view(request).substr(i, inPieces ? 1 : request.npos));
        }
        const std::string answer = client.ReadAnswer(!GetParam().isHead);
        EXPECT_EQ(answer.substr(0, GetParam().answer.size()), GetParam().answer);
        EXPECT_EQ(BodyOf(answer), GetParam().body);
        const std::string next = client.Ask(Get("/next"));
        EXPECT_EQ(StatusOf(next), GetParam().closes ? 0 : 200) << next;
    }
}

const CServedRow kHttpServedTestRows[] = {
    {"Get", Get("/a?b=c?d"), "HTTP/1.1 200 OK\r\n", "/a?b=c?d"},
    {"Head", "HEAD /a HTTP/1.1\r\nHost: a\r\n\r\n", "HTTP/1.1 200 OK\r\n", "", false, true},
    {"LastOne", "GET /a HTTP/1.1\r\nHost: a\r\nConnection: close\r\n\r\n", "HTTP/1.1 200", "/a?", true},
    {"OldVersion", "GET /a HTTP/1.0\r\n\r\n", "HTTP/1.1 200", "/a?", true},
    {"OldVersionKept", "GET /a HTTP/1.0\r\nConnection: keep-alive\r\n\r\n", "HTTP/1.1 200", "/a?"},
    {"EmptyLineBefore", "\r\n" + Get("/a"), "HTTP/1.1 200", "/a?"},
    {"File", Get("/file"), "HTTP/1.1 200", "cdefgh"},
    {"NoContent", Get("/none"), "HTTP/1.1 204 No Content\r\n", ""},
    {"Body", Post("/a", "hello"), "HTTP/1.1 201 Created\r\n", "5:hello"},
    {"EmptyBody", Post("/a", ""), "HTTP/1.1 201", "0:"},
    {"RefusedBody", Post("/refused", "hello"), "HTTP/1.1 401", "no", true},
    {"OtherMethodWithBody", "PUT /a HTTP/1.1\r\nHost: a\r\nContent-Length: 9\r\n\r\n", "HTTP/1.1 200", "/a?",
     true},
    {"Dropped", Get("/drop"), "HTTP/1.1 500", "the server failed\n"},
    {"Thrown", Get("/throw"), "HTTP/1.1 500", "the server failed\n"},
    {"HeaderThatSplits", Get("/split"), "HTTP/1.1 500", "the server failed\n"},
};
INSTANTIATE_TEST_SUITE_P(Requests, HttpServedTest, testing::ValuesIn(kHttpServedTestRows), kRowName);

TEST(HttpServerTest, RequestsSentAheadAreAnsweredInTheirOrder) {
    CHttpTestServer test;
    CRawClient client(test.server->Port());
    std::string requests;
    for (int i = 0; i < 50; ++i) requests += Get("/" + std::to_string(i)) + Post("/p", std::to_string(i));
    client.Send(requests + Get("/hold") + Get("/last"));
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(BodyOf(client.ReadAnswer()), "/" + std::to_string(i) + "?");
        EXPECT_EQ(BodyOf(client.ReadAnswer()),
                  std::to_string(std::to_string(i).size()) + ":" + std::to_string(i));
    }
    ASSERT_TRUE(WaitFor([&] { return test.site.HeldCount() == 1; }));
    test.site.TakeHeld().front().Send(CHttpAnswer::OfText(200, "", "held"));
    EXPECT_EQ(BodyOf(client.ReadAnswer()), "held");
    EXPECT_EQ(BodyOf(client.ReadAnswer()), "/last?");
}

TEST(HttpServerTest, AsksForABodyThatWaitsForThat) {
    CHttpTestServer test;
    CRawClient client(test.server->Port());
    client.Send("POST /a HTTP/1.1\r\nHost: a\r\nContent-Length: 3\r\nExpect: 100-continue\r\n\r\n");
    EXPECT_EQ(client.ReadAnswer(), "HTTP/1.1 100 Continue\r\n\r\n");
    EXPECT_EQ(BodyOf(client.Ask("abc")), "3:abc");
    client.Send("POST /refused HTTP/1.1\r\nHost: a\r\nContent-Length: 3\r\nExpect: 100-continue\r\n\r\n");
    EXPECT_EQ(StatusOf(client.ReadAll()), 401);
}

TEST(HttpServerTest, AFileThatIsShorterThanPromisedIsNoWholeAnswer) {
    CHttpTestServer test;
    CRawClient client(test.server->Port());
    client.Send(Get("/short_file"));
    const std::string all = client.ReadAll();
    EXPECT_NE(all.find("Content-Length: 60\r\n"), all.npos);
    EXPECT_EQ(BodyOf(all), "cdefghij");
}

}  // namespace
