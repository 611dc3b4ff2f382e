// Finding rows of a real list view by value and by text, and the selected-rows array.
#include "../listview/listview_fixture.h"
#include "kvkit_search.h"

namespace {

class ListSearchTest : public ListViewTest {
protected:
    void SetUp() override {
        ListViewTest::SetUp();
        addColumns({L"Name", L"Number"});
    }
    void addRows(std::initializer_list<const wchar_t*> names) {
        LPARAM value = rowCount() + 1;
        for (const wchar_t* name : names) addRow(value++, {name});
    }
    void addNumbers(std::initializer_list<const wchar_t*> numbers) {
        LPARAM value = rowCount() + 1;
        for (const wchar_t* number : numbers) addRow(value++, {L"n", number});
    }
    int find(const wchar_t* text, int start, BYTE flags, int number = 0, int exact = 0,
             KVSESSION* session = nullptr, DWORD option = 0, int column = 0) {
        return KxListView_GetItemWithTextEx(list, column, start, text, number, exact, flags,
                                            session, option, 0);
    }
    int findNumber(int number, BYTE flags) { return find(nullptr, 0, flags, number, 0, nullptr, 0, 1); }
    std::vector<int> selectedRows() const {
        std::vector<int> rows;
        for (int row = -1; (row = ListView_GetNextItem(list, row, LVNI_SELECTED)) >= 0;) rows.push_back(row);
        return rows;
    }
};

TEST_F(ListSearchTest, RowByValueIsTheFirstWithThatValue) {
    EXPECT_EQ(-1, KxListView_GetItemWithData(list, 10));
    addRow(10, {L"a"});
    addRow(20, {L"b"});
    addRow(10, {L"c"});
    EXPECT_EQ(0, KxListView_GetItemWithData(list, 10));
    EXPECT_EQ(1, KxListView_GetItemWithData(list, 20));
    EXPECT_EQ(-1, KxListView_GetItemWithData(list, 30));
}

TEST_F(ListSearchTest, PrefixSearchRunsFromTheStartRowWithoutWrappingAndSkipsBlanks) {
    addRows({L"Apple", L"  Banana", L"Berry", L"   ", L"", L"blue"});
    wchar_t b[] = L"b";
    EXPECT_EQ(1, KxListView_GetItemWithText(list, 0, -1, b, 0));  // leading blanks skipped
    EXPECT_EQ(2, KxListView_GetItemWithText(list, 0, 2, b, 0));
    EXPECT_EQ(5, KxListView_GetItemWithText(list, 0, 3, b, 0));   // case ignored
    EXPECT_EQ(1, KxListView_GetItemWithText(list, 0, 6, b, 0));   // past the end: from row 0
    wchar_t apple[] = L"apple";
    EXPECT_EQ(-1, KxListView_GetItemWithText(list, 0, 1, apple, 0));  // no wrap-around
    // Blank and empty cells never match, not even an empty text.
    wchar_t empty[] = L"";
    EXPECT_EQ(5, KxListView_GetItemWithText(list, 0, 3, empty, 0));
    wchar_t tooLong[] = L"Berry pie";
    EXPECT_EQ(-1, KxListView_GetItemWithText(list, 0, 0, tooLong, 0));
}

TEST_F(ListSearchTest, ExactSearchLowersTheCallersTextButTheFullFormWorksOnACopy) {
    addRows({L"  Berry", L"Berry", L"Berry pie"});
    wchar_t text[] = L"BERRY";
    EXPECT_EQ(1, KxListView_GetItemWithText(list, 0, 0, text, 1));
    EXPECT_STREQ(L"berry", text);

    const wchar_t fixed[] = L"BERRY";
    EXPECT_EQ(1, find(fixed, 0, KX_FIND_TEXT, 0, 1));
    EXPECT_STREQ(L"BERRY", fixed);
    // Exact searches end after the first pass: no wrap-around from row 2.
    EXPECT_EQ(-1, find(fixed, 2, KX_FIND_TEXT, 0, 1));
}

TEST_F(ListSearchTest, OtherColumnsAndBadArguments) {
    addRow(1, {L"x", L"Zeta"});
    addRow(2, {L"y", L"Alpha"});
    wchar_t alpha[] = L"al";
    EXPECT_EQ(1, KxListView_GetItemWithText(list, 1, 0, alpha, 0));
    EXPECT_EQ(-1, KxListView_GetItemWithText(list, 0, 0, alpha, 0));
    EXPECT_EQ(-1, KxListView_GetItemWithText(list, 0, 0, nullptr, 0));
    EXPECT_EQ(-1, find(nullptr, 0, KX_FIND_TEXT));
    for (HWND bad : {static_cast<HWND>(nullptr), host->createChild(L"Static", L"", 0, 0, 0, 1, 1, 1)}) {
        DestroyWindow(bad);
        EXPECT_EQ(-1, KxListView_GetItemWithData(bad, 1));
        EXPECT_EQ(-1, KxListView_GetItemWithText(bad, 0, 0, alpha, 0));
        EXPECT_EQ(-1, KxListView_GetItemWithTextEx(bad, 0, 0, L"a", 0, 0, 1, nullptr, 0, 1));
        int count = 5;
        EXPECT_EQ(nullptr, KxListView_GetSelItems(bad, &count));
        EXPECT_EQ(0, count);
        EXPECT_EQ(-1, KxListView_SetCharSel(bad, nullptr, L"a"));
    }
}

TEST_F(ListSearchTest, FallbackPassWrapsToTheTopForTheFirstSharedPrefix) {
    addRows({L"Apple", L"Bob", L"Berry", L"Be", L"Cherry"});
    // Nothing begins with "Bez": the first row from the top that is long enough and shares a
    // prefix, or with the longest-prefix flag the row sharing most of it.
    EXPECT_EQ(1, find(L"Bez", 0, KX_FIND_TEXT));
    EXPECT_EQ(2, find(L"Bez", 0, KX_FIND_TEXT | KX_FIND_LONGEST_PREFIX));
    // A start below every match: the first pass fails, the second starts from the top.
    EXPECT_EQ(0, find(L"Ap", 3, KX_FIND_TEXT));
    EXPECT_EQ(3, find(L"be", 3, KX_FIND_TEXT));
    // The flag that skips the prefix passes leaves a text search without a result.
    EXPECT_EQ(-1, find(L"Be", 0, KX_FIND_TEXT | KX_FIND_NO_PREFIX_PASSES));
    EXPECT_EQ(-1, find(L"Xylophone", 0, KX_FIND_TEXT));
}

TEST_F(ListSearchTest, SessionCollationAndOptionDecideTheComparison) {
    addRows({L"\u00c4pfel", L"Apfel"});
    // Without a session case is ignored but accents are not.
    EXPECT_EQ(1, find(L"apf", 0, KX_FIND_TEXT));
    KVSESSION session = {};
    session.size = sizeof(session);
    EXPECT_EQ(0, find(L"Apf", 0, KX_FIND_TEXT, 0, 0, &session, NORM_IGNORENONSPACE));
    EXPECT_EQ(1, find(L"Apf", 0, KX_FIND_TEXT, 0, 0, &session, 0));
}

TEST_F(ListSearchTest, NumbersMatchExactlyThenByNearestValue) {
    addNumbers({L"12", L"42", L"", L"7", L"42", L"-3"});
    EXPECT_EQ(1, findNumber(42, 0));
    EXPECT_EQ(1, findNumber(42, KX_FIND_NO_PREFIX_PASSES | KX_FIND_AT_OR_BELOW));
    // Nearest at or below 40: 12 beats 7 and the empty cell, which reads as 0.
    EXPECT_EQ(0, findNumber(40, KX_FIND_NO_PREFIX_PASSES | KX_FIND_AT_OR_BELOW));
    // Nearest at or above 13: the topmost 42.
    EXPECT_EQ(1, findNumber(13, KX_FIND_NO_PREFIX_PASSES | KX_FIND_AT_OR_ABOVE));
    // Nearest at or below 5: the empty cell counts as 0 (above -3).
    EXPECT_EQ(2, findNumber(5, KX_FIND_NO_PREFIX_PASSES | KX_FIND_AT_OR_BELOW));
    EXPECT_EQ(-1, findNumber(-4, KX_FIND_NO_PREFIX_PASSES | KX_FIND_AT_OR_BELOW));
    EXPECT_EQ(-1, findNumber(43, KX_FIND_NO_PREFIX_PASSES | KX_FIND_AT_OR_ABOVE));
    // With the prefix passes, 4 finds the first number sharing its first digit.
    EXPECT_EQ(1, findNumber(4, KX_FIND_AT_OR_ABOVE));
    // Without flags there is no preload: the empty cell is not 0, and 0 is found nowhere.
    EXPECT_EQ(-1, findNumber(0, 0));
    EXPECT_EQ(2, findNumber(0, KX_FIND_NO_PREFIX_PASSES | KX_FIND_AT_OR_ABOVE));
}

TEST_F(ListSearchTest, PreloadFailureReadsTheListViewDirectly) {
    addNumbers({L"5", L"", L"-4"});
    const BYTE nearestBelow = KX_FIND_NO_PREFIX_PASSES | KX_FIND_AT_OR_BELOW;
    EXPECT_EQ(1, findNumber(3, nearestBelow));  // the empty cell reads as 0
    // Without the preload array (allocation 1) or the empty cell's copy (allocation 3) the
    // empty cell is read from the list view again, and empty cells are skipped.
    KvText_FailAllocation(1);
    EXPECT_EQ(2, findNumber(3, nearestBelow));
    KvText_FailAllocation(3);
    EXPECT_EQ(2, findNumber(3, nearestBelow));
    KvText_FailAllocation(2);  // the row "5": read again, the same
    EXPECT_EQ(1, findNumber(3, nearestBelow));
}

TEST_F(ListSearchTest, SelectFlagSelectsFocusesAndScrollsTheRowIntoView) {
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);  // a quicker fill
    for (int i = 0; i < 200; ++i) addRow(i + 1, {(L"row " + std::to_wstring(i)).c_str()});
    SendMessageW(list, WM_SETREDRAW, TRUE, 0);
    EXPECT_EQ(150, KxListView_GetItemWithTextEx(list, 0, 0, L"row 150", 0, 1, KX_FIND_TEXT,
                                                nullptr, 0, 1));
    EXPECT_EQ((std::vector<int>{150}), selectedRows());
    EXPECT_EQ(LVIS_FOCUSED, ListView_GetItemState(list, 150, LVIS_FOCUSED));
    int top = ListView_GetTopIndex(list);
    EXPECT_LE(top, 150);
    EXPECT_GT(top + ListView_GetCountPerPage(list), 150);
    // Nothing found: nothing selected.
    EXPECT_EQ(-1, KxListView_GetItemWithTextEx(list, 0, 0, L"none", 0, 1, KX_FIND_TEXT, nullptr, 0, 1));
    EXPECT_EQ((std::vector<int>{150}), selectedRows());
}

TEST_F(ListSearchTest, SelectedRowsComeInAscendingOrderInAKvtextBlock) {
    int count = 7;
    EXPECT_EQ(nullptr, KxListView_GetSelItems(list, &count));
    EXPECT_EQ(0, count);
    addRows({L"a", L"b", L"c", L"d", L"e", L"f"});
    count = 7;
    EXPECT_EQ(nullptr, KxListView_GetSelItems(list, &count));
    EXPECT_EQ(0, count);

    for (int row : {4, 1, 3}) ListView_SetItemState(list, row, LVIS_SELECTED, LVIS_SELECTED);
    int* rows = KxListView_GetSelItems(list, &count);
    ASSERT_TRUE(rows);
    EXPECT_EQ((std::vector<int>{1, 3, 4}), std::vector<int>(rows, rows + count));
    FreeMemory(rows);
    rows = KxListView_GetSelItems(list, nullptr);
    EXPECT_TRUE(rows);
    FreeMemory(rows);

    KvText_FailAllocation(1);
    count = 7;
    EXPECT_EQ(nullptr, KxListView_GetSelItems(list, &count));
    EXPECT_EQ(0, count);
}

}  // namespace
