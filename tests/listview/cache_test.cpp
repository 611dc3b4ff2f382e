// The text cache: its content, sorting and rebuilding from it, and release after failures.
#include "listview_fixture.h"

namespace {

class CacheTest : public ListViewTest {
protected:
    void SetUp() override {
        ListViewTest::SetUp();
        addColumns({L"Name", L"City", L"Code"});
        addRow(11, {L"delta", L"Oslo", L"4"});
        addRow(12, {L"Alpha", L"Rome", L"1"});
        addRow(13, {L"charlie", L"Lima", L"3"});
        addRow(14, {L"bravo", L"Kiev", L"2"});
    }
    void TearDown() override {
        FreeCacheListView(&cache);
        ListViewTest::TearDown();
    }
    CACHE_LISTVIEW cache = {};
};

TEST_F(CacheTest, FillCopiesEveryCellAndFreeEmptiesIt) {
    int live = KvText_LiveAllocations();
    EXPECT_EQ(0, FillCacheListView(list, &cache));
    ASSERT_EQ(4, cache.rowCount);
    EXPECT_EQ(3, cache.columnCount);
    EXPECT_EQ(13, cache.rows[2].rowValue);
    EXPECT_STREQ(L"Kiev", cache.rows[3].cells[1]);

    // A second fill replaces the content instead of adding to it.
    ListView_SetItemText(list, 0, 1, const_cast<wchar_t*>(L"Bergen"));
    FillCacheListView(list, &cache);
    EXPECT_EQ(1 + 4 * (1 + 3), KvText_LiveAllocations() - live);
    EXPECT_STREQ(L"Bergen", cache.rows[0].cells[1]);

    EXPECT_EQ(0, FreeCacheListView(&cache));
    EXPECT_EQ(0, cache.rowCount);
    EXPECT_EQ(nullptr, cache.rows);
    EXPECT_EQ(live, KvText_LiveAllocations());
    EXPECT_EQ(0, FreeCacheListView(&cache));  // freeing twice is harmless
}

TEST_F(CacheTest, SortRebuildsTheListAlternatingDirection) {
    FillCacheListView(list, &cache);
    EXPECT_EQ(0, SortListViewFromCache(nullptr, list, 1, &cache));
    EXPECT_EQ((std::vector<std::wstring>{L"Kiev", L"Lima", L"Oslo", L"Rome"}), column(1));
    EXPECT_EQ((std::vector<LPARAM>{14, 13, 11, 12}), rowValues());
    EXPECT_EQ(L"2", cell(0, 2));  // every cell moves with its row
    EXPECT_EQ(LVIS_SELECTED | LVIS_FOCUSED, ListView_GetItemState(list, 0, LVIS_SELECTED | LVIS_FOCUSED));
    EXPECT_EQ(1, KxListView_GetHeaderData(list, 1));
    EXPECT_EQ(1, KxListView_GetSortColumn(list, 0, nullptr));

    SortListViewFromCache(nullptr, list, 1, &cache);
    EXPECT_EQ((std::vector<LPARAM>{12, 11, 13, 14}), rowValues());
    EXPECT_EQ(0, KxListView_GetHeaderData(list, 1));

    SortListViewFromCache(nullptr, list, 0, &cache);
    EXPECT_EQ((std::vector<std::wstring>{L"Alpha", L"bravo", L"charlie", L"delta"}), column(0));
}

TEST_F(CacheTest, FillStoppedByAnyFailedAllocationKeepsCompleteRowsAndFreesCleanly) {
    int live = KvText_LiveAllocations();
    const int allocationsPerRow = 1 + 3;  // pointer array and three texts
    for (int failing = 1; failing <= 1 + 4 * allocationsPerRow; ++failing) {
        KvText_FailAllocation(failing);
        FillCacheListView(list, &cache);
        KvText_FailAllocation(0);
        int completeRows = failing == 1 ? 0 : (failing - 2) / allocationsPerRow;
        EXPECT_EQ(completeRows, cache.rowCount) << "allocation " << failing;
        for (int row = 0; row < cache.rowCount; ++row)
            for (int column = 0; column < 3; ++column) ASSERT_TRUE(cache.rows[row].cells[column]);
        FreeCacheListView(&cache);
        EXPECT_EQ(live, KvText_LiveAllocations()) << "allocation " << failing;
    }
}

}  // namespace
