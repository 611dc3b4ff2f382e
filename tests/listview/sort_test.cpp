// Sorting a real list view in place: directions, key types, tie-breaks, the arrow and re-sorting.
#include "listview_fixture.h"
#include <algorithm>
#include <string>
#include "kvkit_core.h"

namespace {

using Values = std::vector<LPARAM>;
using Texts = std::vector<std::wstring>;

class SortTest : public ListViewTest {
protected:
    void SetUp() override {
        ListViewTest::SetUp();
        addColumns({L"Name", L"Amount", L"Date"});
    }
};

TEST_F(SortTest, RepeatedSortsAlternateAndColumnsRememberTheirOwnDirection) {
    addRow(1, {L"pear", L"3"});
    addRow(2, {L"Apple", L"1"});
    addRow(3, {L"fig", L"2"});

    EXPECT_EQ(1, KxListView_SortItems(list, 0, 0, 0, -1));
    EXPECT_EQ((Texts{L"Apple", L"fig", L"pear"}), column(0));
    int ascending = -1;
    EXPECT_EQ(0, KxListView_GetSortColumn(list, 0, &ascending));
    EXPECT_EQ(1, ascending);
    KxListView_SortItems(list, 0, 0, 0, -1);
    EXPECT_EQ((Texts{L"pear", L"fig", L"Apple"}), column(0));
    EXPECT_EQ(0, KxListView_GetHeaderData(list, 0));

    // Another column starts ascending and takes the arrow; the first keeps its direction.
    KxListView_SortItems(list, 1, 1, 0, -1);
    EXPECT_EQ((Values{2, 3, 1}), rowValues());
    EXPECT_EQ(1, KxListView_GetSortColumn(list, 0, &ascending));
    EXPECT_EQ(0, KxListView_GetHeaderData(list, 0));
    KxListView_SortItems(list, 0, 0, 0, -1);
    EXPECT_EQ((Texts{L"Apple", L"fig", L"pear"}), column(0));
}

TEST_F(SortTest, EmptyListStillTogglesDirectionAndArrow) {
    KxListView_SortItems(list, 2, 0, 0, -1);
    EXPECT_EQ(1, KxListView_GetHeaderData(list, 2));
    EXPECT_TRUE(arrowOf(2));
    KxListView_SortItems(list, 2, 0, 0, -1);
    EXPECT_EQ(0, KxListView_GetHeaderData(list, 2));
    EXPECT_EQ(2, KxListView_GetSortColumn(list, 0, nullptr));
}

TEST_F(SortTest, DuplicateRowValuesShareOneKeyAndLoseNoRow) {
    addRow(5, {L"m"});
    addRow(9, {L"z"});
    addRow(5, {L"a"});
    addRow(1, {L"b"});
    KxListView_SortItems(list, 0, 0, 0, -1);
    Values values = rowValues();
    ASSERT_EQ(4u, values.size());
    // Both rows of value 5 compare by one entry's text, so they stay next to each other.
    auto first = std::find(values.begin(), values.end(), 5) - values.begin();
    EXPECT_EQ(5, values[first + 1]);
    EXPECT_EQ(9, values.back());
}

TEST_F(SortTest, NumbersCompareAsSignedValuesAndEmptyCellsAsZero) {
    addRow(1, {L"a", L"10"});
    addRow(2, {L"b", L""});
    addRow(3, {L"c", L"-5"});
    addRow(4, {L"d", L"9"});
    addRow(5, {L"e", L"1"});
    KxListView_SortItemsNew(list, 1, KX_SORT_NUMBER, 0, -1, -1, 0, 0, nullptr, 0);
    EXPECT_EQ((Values{3, 2, 5, 4, 1}), rowValues());
    KxListView_SortItemsNew(list, 1, KX_SORT_NUMBER, 0, -1, -1, 0, 0, nullptr, 0);
    EXPECT_EQ((Values{1, 4, 5, 2, 3}), rowValues());
}

TEST_F(SortTest, DatesNeedASessionOtherwiseTheyAreText) {
    addRow(1, {L"a", L"", L"01.02.2020"});
    addRow(2, {L"b", L"", L"15.01.2021"});
    addRow(3, {L"c", L"", L""});
    addRow(4, {L"d", L"", L"31.12.2019"});
    KxListView_SortItemsNew(list, 2, KX_SORT_DATE, 0, -1, -1, 0, 0, GlobalSession(), 0);
    EXPECT_EQ((Values{3, 4, 1, 2}), rowValues());

    KxListView_SetHeaderData(list, 2, 0);
    KxListView_SortItemsNew(list, 2, KX_SORT_DATE, 0, -1, -1, 0, 0, nullptr, 0);
    EXPECT_EQ((Values{3, 1, 2, 4}), rowValues());
}

TEST_F(SortTest, SecondColumnBreaksTiesInTheSameDirection) {
    addRow(1, {L"x", L"2"});
    addRow(2, {L"y", L"1"});
    addRow(3, {L"x", L"1"});
    addRow(4, {L"y", L"3"});
    KxListView_SortItemsEx(list, 0, 0, 0, -1, 1, 1, 0, nullptr);
    EXPECT_EQ((Values{3, 1, 2, 4}), rowValues());
    KxListView_SortItemsEx(list, 0, 0, 0, -1, 1, 1, 0, nullptr);
    EXPECT_EQ((Values{4, 2, 1, 3}), rowValues());
}

TEST_F(SortTest, ImageKeysWithAndWithoutPreferredImage) {
    const int images[] = {2, 0, 1, 2, 0};
    for (int i = 0; i < 5; ++i) addRow(i + 1, {L"row"}, images[i]);
    ASSERT_TRUE(KxListView_SetItemBmp(list, 4, 0, I_IMAGENONE));
    auto imageOrder = [&] {
        std::vector<int> order;
        for (int row = 0; row < rowCount(); ++row) order.push_back(KxListView_GetItemBmp(list, row, 0));
        return order;
    };

    KxListView_SortItems(list, 0, 0, 1, -1);
    EXPECT_EQ((std::vector<int>{I_IMAGENONE, 0, 1, 2, 2}), imageOrder());

    KxListView_SetHeaderData(list, 0, 0);
    KxListView_SortItems(list, 0, 0, 1, 1);  // image 1 first, the rest by index
    EXPECT_EQ((std::vector<int>{1, I_IMAGENONE, 0, 2, 2}), imageOrder());
    KxListView_SortItems(list, 0, 0, 1, 1);  // descending: the preferred image goes last
    EXPECT_EQ((std::vector<int>{2, 2, 0, I_IMAGENONE, 1}), imageOrder());
}

TEST_F(SortTest, TextWithASessionUsesItsCollation) {
    addRow(1, {L"zebra"});
    addRow(2, {L"\u00e4pple"});
    addRow(3, {L"Apple"});
    KVSESSION swedish = {};
    swedish.size = sizeof(swedish);
    swedish.collation = MAKELCID(MAKELANGID(LANG_SWEDISH, SUBLANG_SWEDISH), SORT_DEFAULT);
    KxListView_SortItemsEx(list, 0, 0, 0, -1, -1, 0, 0, &swedish);
    EXPECT_EQ((Values{3, 1, 2}), rowValues());  // a Swedish a-umlaut follows z

    KxListView_SetHeaderData(list, 0, 0);
    KxListView_SortItems(list, 0, 0, 0, -1);  // no session: case-insensitive, umlaut by its base letter
    EXPECT_EQ((Values{3, 2, 1}), rowValues());
}

TEST_F(SortTest, AllocationFailures) {
    addRow(1, {L"b"});
    addRow(2, {L"c"});
    addRow(3, {L"a"});
    // Allocation 1 is the key table, 2 the pool's first growth: row 1's text sorts as empty.
    KvText_FailAllocation(2);
    KxListView_SortItems(list, 0, 0, 0, -1);
    EXPECT_EQ((Values{1, 3, 2}), rowValues());
    // Without a key table the order stays, but the direction and the arrow still change.
    KvText_FailAllocation(1);
    KxListView_SortItems(list, 0, 0, 0, -1);
    EXPECT_EQ((Values{1, 3, 2}), rowValues());
    EXPECT_EQ(0, KxListView_GetHeaderData(list, 0));
    EXPECT_EQ(0, KxListView_GetSortColumn(list, 0, nullptr));
}

TEST_F(SortTest, SelectedRowIsScrolledIntoView) {
    for (int i = 0; i < 200; ++i) addRow(i + 1, {L"row", std::to_wstring(i).c_str()});
    ListView_SetItemState(list, 0, LVIS_SELECTED, LVIS_SELECTED);
    KxListView_SortItems(list, 1, 1, 0, -1);  // ascending: row 0 stays first
    KxListView_SortItems(list, 1, 1, 0, -1);  // descending: the selected row moves to the end
    EXPECT_EQ(199, KxListView_GetSelection(list, nullptr));
    int top = ListView_GetTopIndex(list);
    EXPECT_GT(top, 0);
    EXPECT_LE(199, top + ListView_GetCountPerPage(list));
}

TEST_F(SortTest, ResortKeepsTheDirectionThroughTheParentsColumnClick) {
    addRow(1, {L"b"});
    addRow(2, {L"c"});
    std::vector<NMLISTVIEW> clicks;
    host->setHandler([&](HWND, UINT message, WPARAM, LPARAM lParam, LRESULT*) {
        auto* click = reinterpret_cast<NMLISTVIEW*>(lParam);
        if (message == WM_NOTIFY && click->hdr.code == LVN_COLUMNCLICK) {
            clicks.push_back(*click);
            KxListView_SortItems(click->hdr.hwndFrom, click->iSubItem, 0, 0, -1);
        }
        return false;
    });
    EXPECT_EQ(-1, KxListView_GetSortColumn(list, 1, nullptr));  // no arrow: no click either
    EXPECT_TRUE(clicks.empty());
    KxListView_SortItems(list, 0, 0, 0, -1);
    KxListView_SortItems(list, 0, 0, 0, -1);  // descending now
    addRow(3, {L"d"});                         // lands at the end, out of order

    int ascending = -1;
    EXPECT_EQ(0, KxListView_GetSortColumn(list, 1, &ascending));
    EXPECT_EQ(0, ascending);
    ASSERT_EQ(1u, clicks.size());
    EXPECT_EQ(static_cast<UINT_PTR>(kListId), clicks[0].hdr.idFrom);
    EXPECT_EQ(-1, clicks[0].iItem);
    EXPECT_EQ((Texts{L"d", L"c", L"b"}), column(0));
    EXPECT_EQ(0, KxListView_GetHeaderData(list, 0));
}

}  // namespace
