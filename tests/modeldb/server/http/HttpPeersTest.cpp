// SPDX-License-Identifier: MIT
#include "modeldb/server/http/limits/CHttpPeers.h"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

CPeerAddress Address(const std::string& text) {
    return CPeerAddress::Parse(text).value();
}

TEST(ForwardedPeersTest, TellTheClient) {
    CForwardedPeers proxies;
    ASSERT_TRUE(proxies.Trust("10.0.0.1") && proxies.Trust("fd00::1"));
    EXPECT_FALSE(proxies.Trust("proxy.example"));
    for (const auto& [peer, list, client] : {std::tuple{"10.0.0.2", "1.1.1.1", "10.0.0.2"},
                                             {"10.0.0.1", "1.1.1.1", "1.1.1.1"},
                                             {"::ffff:10.0.0.1", "1.1.1.1", "1.1.1.1"},
                                             {"10.0.0.1", "9.9.9.9,8.8.8.8 , 1.1.1.1", "1.1.1.1"},
                                             {"10.0.0.1", "9.9.9.9, 2001:db8::7, fd00::1", "2001:db8::7"},
                                             {"10.0.0.1", "fd00::1", "fd00::1"},
                                             {"10.0.0.1", "", "10.0.0.1"},
                                             {"10.0.0.1", "1.1.1.1, unknown", "10.0.0.1"}})
        EXPECT_EQ(proxies.ClientOf(Address(peer), list).Text(), client) << peer << " " << list;
}

TEST(HttpPeersTest, BucketsFillWithTime) {
    CHttpPeers peers({.requestsPerSecond = 2, .burst = 4});
    CHttpPeers::Time now{100s};
    const auto taken = [&](const char* peer) {
        int count = 0;
        while (peers.TakeRequest(Address(peer), now)) ++count;
        return count;
    };
    EXPECT_EQ(taken("10.0.0.1"), 4);
    EXPECT_EQ(taken("10.0.0.2"), 4);
    EXPECT_EQ(taken("2001:db8::1"), 4);
    EXPECT_EQ(taken("2001:db8::2"), 0) << "the same network";
    EXPECT_EQ(taken("2001:db8:0:1::1"), 4);
    now += 1500ms;
    EXPECT_EQ(taken("10.0.0.1"), 3);
    now += 1h;
    EXPECT_EQ(taken("10.0.0.1"), 4);
    EXPECT_TRUE(peers.TakeRequest(Address("127.0.0.1"), now));
}

// A flood of addresses must not give a greedy one its requests back.
TEST(HttpPeersTest, ManyPeersDoNotMakeAnEmptyBucketForgotten) {
    CHttpPeers peers({.requestsPerSecond = 0.001, .burst = 3});
    const CHttpPeers::Time now{100s};
    const CPeerAddress greedy = Address("10.0.0.1");
    while (peers.TakeRequest(greedy, now)) {
    }
    for (int i = 0; i < 200'000; ++i) {
        CPeerAddress other = Address("10.0.0.0");
        for (std::size_t place = 0; place < 3; ++place) {
            other.bytes[13 + place] = static_cast<std::uint8_t>(i >> (place * 8));
        }
        if (other != greedy) (void)peers.TakeRequest(other, now);
    }
    EXPECT_FALSE(peers.TakeRequest(greedy, now));
}

}  // namespace
