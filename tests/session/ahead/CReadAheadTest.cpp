// SPDX-License-Identifier: MIT
#include "session/ahead/CReadAhead.h"

#include <gtest/gtest.h>
#include <lib3ds/file.h>

#include <chrono>
#include <semaphore>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "scene_builder/large_scene.h"

namespace {

class CReadAheadTest : public testing::Test {
  protected:
    std::wstring Model(const std::string& name, int triangles = 2'000) {
        MakeLargeScene(triangles, folder / name, "CHECKER.JPG");
        return file_util_ex::ConvertFromUTF8W(folder / name);
    }
    static void WaitFor(const std::function<bool()>& condition) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (!condition() && std::chrono::steady_clock::now() < end) std::this_thread::yield();
        EXPECT_TRUE(condition());
    }
    void WaitUntilIdle() {
        WaitFor([this] { return ahead.IsIdle(); });
    }
    /** Lets the thread begin a file when that is allowed, and reads scripts named "SCRIPT" as model b. */
    std::wstring Find(const std::wstring& path) {
        if (m_isHeld) m_allowed.acquire();
        return path == L"SCRIPT" ? b : path;
    }

    static constexpr int kMostTriangles = 500'000;  ///< at 64 bytes each
    CTestFolder folder;
    const std::wstring a = Model("a.3ds"), b = Model("b.3ds"), c = Model("c.3ds");
    bool m_isHeld = false;
    std::counting_semaphore<> m_allowed{0};
    std::vector<std::wstring> m_found;  ///< by the thread that reads
    CReadAhead ahead{[this](const std::wstring& path, const std::atomic<bool>&) {
                         m_found.push_back(path);
                         return Find(path);
                     },
                     kMostTriangles * 64};
};

TEST_F(CReadAheadTest, ReadsWhatIsWantedInItsOrder) {
    EXPECT_TRUE(ahead.IsIdle());
    ahead.Want({b, a, c});
    WaitUntilIdle();
    EXPECT_EQ(m_found, (std::vector<std::wstring>{b, a})) << "not more than it may";
    ahead.Want({a, b});
    ahead.Want({c, b});
    WaitUntilIdle();
    EXPECT_EQ(m_found, (std::vector<std::wstring>{b, a, c})) << "what is ready is not read again";
    const std::shared_ptr<CReadyScene> ready = ahead.Take(b);
    ASSERT_TRUE(ready && ready->IsCurrent());
    EXPECT_GE(ready->scene.prepared.triangleCount, 2'000u);
    EXPECT_FALSE(ahead.Take(c)) << "taking one drops the others";
}

TEST_F(CReadAheadTest, GivesTheModelOfAScript) {
    ahead.Want({L"SCRIPT"});
    WaitUntilIdle();
    EXPECT_FALSE(ahead.Take(L"SCRIPT"));
    ahead.Want({L"SCRIPT"});
    WaitUntilIdle();
    EXPECT_TRUE(ahead.Take(b));
}

TEST_F(CReadAheadTest, KeepsNothingOfWhatCannotBeOpened) {
    const std::wstring broken = file_util_ex::ConvertFromUTF8W(folder.Add("broken.3ds", "no model"));
    const std::wstring large = Model("large.3ds", 2 * kMostTriangles);
    for (const std::wstring& path :
         {broken, large, file_util_ex::ConvertFromUTF8W(folder.Path()), std::wstring()}) {
        ahead.Want({path, a});
        WaitUntilIdle();
        EXPECT_FALSE(ahead.IsNearlyReady(path));
        EXPECT_FALSE(ahead.Take(path));
    }
    ahead.Want({broken, a});
    WaitUntilIdle();
    EXPECT_TRUE(ahead.Take(a)) << "the next one is read all the same";
}

TEST_F(CReadAheadTest, CancelsAtOnceWhatIsNoLongerWanted) {
    m_isHeld = true;
    ahead.Want({a, b});
    EXPECT_FALSE(ahead.Take(c));
    EXPECT_TRUE(ahead.IsIdle()) << "nobody waits for the thread";
    ahead.Want({c});
    m_allowed.release(3);
    WaitUntilIdle();
    EXPECT_FALSE(ahead.Take(a)) << "it was given up";
    ahead.Want({c});
    m_allowed.release(3);
    WaitUntilIdle();
    EXPECT_TRUE(ahead.Take(c));
    m_allowed.release(3);
}

TEST_F(CReadAheadTest, WaitsForWhatIsNearlyReady) {
    const std::wstring large = Model("large.3ds", 400'000);
    for (const bool cancels : {false, true}) {
        ahead.Want({large});
        WaitFor([&] { return ahead.IsNearlyReady(large) || ahead.IsIdle(); });
        EXPECT_FALSE(ahead.IsNearlyReady(a));
        CJobProgress progress;
        if (cancels) progress.Cancel();
        ahead.Await(a, progress);
        EXPECT_EQ(progress.Share(), 0) << "that one is not being read";
        ahead.Await(large, progress);
        EXPECT_EQ(ahead.IsIdle(), !cancels);
        EXPECT_EQ(ahead.Take(large) != nullptr, !cancels);
    }
}

}  // namespace
