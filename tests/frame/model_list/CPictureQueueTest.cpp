// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <deque>

#include "frame/model_list/CPictureQueue.h"
#include "frame/model_list/CPictureWork.h"

namespace {

using CNames = std::vector<std::wstring>;

class CRecordedWork final : public CPictureWork {
  public:
    void Look(const std::wstring& path) override { looks.push_back(path); }
    void Draw(const std::wstring& path) override { drawings.push_back(path); }
    void StopDrawing() override {
        drawings.clear();
        ++stops;
    }
    void Drop(const std::wstring& path) override { dropped.push_back(path); }

    std::deque<std::wstring> looks, drawings;
    CNames dropped;
    int stops = 0;
};

class CPictureQueueTest : public testing::Test {
  protected:
    static CNames Files(int count, const std::wstring& folder = L"/") {
        CNames files;
        for (int i = 0; i < count; ++i) files.push_back(folder + std::to_wstring(i));
        return files;
    }
    /** Ends the next look. */
    std::wstring EndLook(EPictureEnd end) {
        const std::wstring path = work.looks.front();
        work.looks.pop_front();
        queue.OnLooked(path, end);
        return path;
    }
    void EndLooks(EPictureEnd end) {
        while (!work.looks.empty()) (void)EndLook(end);
    }

    CRecordedWork work;
    CPictureQueue queue{work, 20};
};

TEST_F(CPictureQueueTest, LooksAtWhatIsSeenFirstThenAroundIt) {
    queue.SetFiles(Files(100));
    queue.SetVisible({10, 13});
    CNames order;
    while (!work.looks.empty()) {
        EXPECT_LE(work.looks.size(), CPictureQueue::kMostLooks);
        order.push_back(EndLook(EPictureEnd::Ready));
    }
    EXPECT_EQ(order, (CNames{L"/10", L"/11", L"/12", L"/13", L"/9", L"/14", L"/8", L"/15", L"/7"}));
    EXPECT_TRUE(queue.IsDone());
}

TEST_F(CPictureQueueTest, DrawsWhatIsMissingAndSeenNow) {
    queue.SetFiles(Files(100));
    queue.SetVisible({0, 3});
    EndLooks(EPictureEnd::Missing);
    EXPECT_EQ(work.drawings, (std::deque<std::wstring>{L"/0", L"/1"}));
    queue.SetVisible({50, 51});
    EndLooks(EPictureEnd::Missing);
    queue.OnDrawn(L"/0", EPictureEnd::Ready);
    EXPECT_EQ(work.drawings.back(), L"/50") << "what is seen goes before what was";
    queue.OnDrawn(L"/1", EPictureEnd::Failed);
    queue.OnDrawn(L"/50", EPictureEnd::Ready);
    EXPECT_FALSE(queue.IsDone());
}

TEST_F(CPictureQueueTest, DrawsNothingWhilePaused) {
    queue.SetPaused(true);
    queue.SetFiles(Files(3));
    queue.SetVisible({0, 3});
    EndLooks(EPictureEnd::Missing);
    EXPECT_TRUE(work.drawings.empty());
    queue.SetPaused(false);
    EXPECT_EQ(work.drawings.size(), CPictureQueue::kMostDrawings);
}

TEST_F(CPictureQueueTest, StopsDrawingWhenTheFolderChanges) {
    queue.SetFiles(Files(5));
    queue.SetVisible({0, 5});
    EndLooks(EPictureEnd::Missing);
    queue.SetFiles(Files(6));
    EXPECT_EQ(work.stops, 0) << "a file more";
    queue.SetFiles(Files(5, L"/other/"));
    EXPECT_EQ(work.stops, 1);
    queue.OnDrawn(L"/0", EPictureEnd::Ready);  // it was under way already
    EXPECT_EQ(work.dropped, CNames{L"/0"});
    queue.SetVisible({0, 5});
    EndLooks(EPictureEnd::Missing);
    EXPECT_EQ(work.drawings.size(), CPictureQueue::kMostDrawings);
}

TEST_F(CPictureQueueTest, KeepsABoundedNumberOfPictures) {
    queue.SetFiles(Files(1000));
    for (std::size_t first = 0; first < 990; first += 5) {
        queue.SetVisible({first, first + 5});
        EndLooks(EPictureEnd::Ready);
    }
    EXPECT_TRUE(queue.IsDone());
    EXPECT_GE(work.dropped.size(), 1000u - 20 - 10);
    EXPECT_EQ(work.dropped.front(), L"/0");
    queue.SetVisible({0, 5});  // they are looked for again
    EXPECT_EQ(work.looks.front(), L"/0");
}

TEST_F(CPictureQueueTest, LooksAgainForAFileThatWasChanged) {
    queue.SetFiles(Files(2));
    queue.SetVisible({0, 2});
    EndLooks(EPictureEnd::Failed);
    EXPECT_TRUE(queue.IsDone());
    queue.Forget(L"/1");
    EXPECT_EQ(work.looks, (std::deque<std::wstring>{L"/1"}));
}

}  // namespace
