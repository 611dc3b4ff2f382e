// Type-ahead on a real list view: the parent hands the list view's LVN_KEYDOWN to the library as
// a host does, and the keys are sent to the list view.
#include "../listview/listview_fixture.h"
#include "kvkit_search.h"

namespace {

class TypeAheadTest : public ListViewTest {
protected:
    void SetUp() override {
        ListViewTest::SetUp();
        SetWindowLongW(list, GWL_STYLE, GetWindowLongW(list, GWL_STYLE) | LVS_SINGLESEL);
        addColumns({L"Name", L"City"});
        host->setHandler([this](HWND, UINT message, WPARAM, LPARAM lParam, LRESULT*) {
            auto* keyDown = reinterpret_cast<NMLVKEYDOWN*>(lParam);
            if (message == WM_NOTIFY && keyDown->hdr.hwndFrom == list && keyDown->hdr.code == LVN_KEYDOWN)
                results.push_back(KxListView_SetCharSel(list, keyDown, nullptr));
            return false;
        });
    }
    // A key pressed while the list view has the focus.
    int press(WORD key) {
        SendMessageW(list, WM_KEYDOWN, key, 1);
        kvtest::PumpMessages();
        return results.empty() ? -2 : results.back();
    }
    int selected() const { return ListView_GetNextItem(list, -1, LVNI_SELECTED); }

    std::vector<int> results;
};

TEST_F(TypeAheadTest, RepeatedLettersStepThroughTheMatchesAndWrapAround) {
    for (const wchar_t* name : {L"Anna", L"Bernd", L"berta", L"Carl", L" Bodo"}) addRow(rowCount() + 1, {name});
    EXPECT_EQ(1, press('B'));
    EXPECT_EQ(1, selected());
    EXPECT_EQ(LVIS_FOCUSED, ListView_GetItemState(list, 1, LVIS_FOCUSED));
    EXPECT_EQ(2, press('B'));
    EXPECT_EQ(4, press('B'));
    EXPECT_EQ(1, press('B'));  // past the last row: from the top again
    EXPECT_EQ(3, press('C'));
    EXPECT_EQ(3, selected());
    EXPECT_EQ(-1, press('Z'));
    EXPECT_EQ(3, selected());
    // Nothing below the selection matches: the second attempt finds the row from the top.
    ListView_SetItemState(list, 3, LVIS_SELECTED, LVIS_SELECTED);
    EXPECT_EQ(0, press('A'));
    EXPECT_EQ(0, selected());
}

TEST_F(TypeAheadTest, KeyWithoutACharacterSelectsNothing) {
    for (const wchar_t* name : {L"Anna", L"Bernd", L"Carl"}) addRow(rowCount() + 1, {name});
    ListView_SetItemState(list, 0, LVIS_SELECTED, LVIS_SELECTED);
    // F5 gives no character: the empty text matches the next non-empty row, which is reported
    // but not selected.
    EXPECT_EQ(1, press(VK_F5));
    EXPECT_EQ(0, selected());
}

TEST_F(TypeAheadTest, SearchesTheSortedColumnUnlessTold) {
    addRow(1, {L"Anna", L"Kiel"});
    addRow(2, {L"Karl", L"Aachen"});
    addRow(3, {L"Kurt", L"Bonn"});
    EXPECT_EQ(1, press('K'));  // no sorted column: column 0
    KxListView_SortItems(list, 1, 0, 0, -1);  // by city: Aachen, Bonn, Kiel
    ASSERT_EQ(3, KxListView_GetItemData(list, 1));
    EXPECT_EQ(2, press('K'));  // Kiel, now row 2
    EXPECT_EQ(0, KxListView_SetCharSelEx(list, nullptr, L"kar", 0));
    EXPECT_EQ(0, selected());
}

TEST_F(TypeAheadTest, GivenTextSearchesFromTheTopAndScrollsTheRowIntoView) {
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);  // a quicker fill
    for (int i = 0; i < 300; ++i) addRow(i + 1, {(L"Name " + std::to_wstring(1000 + i)).c_str()});
    SendMessageW(list, WM_SETREDRAW, TRUE, 0);
    ListView_SetItemState(list, 280, LVIS_SELECTED, LVIS_SELECTED);
    EXPECT_EQ(250, KxListView_SetCharSel(list, nullptr, L"name 125"));
    EXPECT_EQ(250, selected());
    int top = ListView_GetTopIndex(list);
    EXPECT_LE(top, 250);
    EXPECT_GT(top + ListView_GetCountPerPage(list), 250);
    EXPECT_EQ(-1, KxListView_SetCharSel(list, nullptr, L""));
    EXPECT_EQ(-1, KxListView_SetCharSel(list, nullptr, nullptr));
    EXPECT_EQ(-1, KxListView_SetCharSel(list, nullptr, L"Other"));
    EXPECT_EQ(250, selected());
}

}  // namespace
