// Selecting rows by mouse and keys: numbers in the order of selection, the maximum, disabled
// items, selected items kept first, Space, Enter and double clicks, and the host's reset.
#include "listbox_test.h"
#include <string>

namespace {

using namespace listbox_test;

class ListBoxSelection : public ListBoxTest {};

TEST_F(ListBoxSelection, NumbersFollowTheOrderOfSelectionAndCloseUp) {
    build(kNumbered);
    click(2);
    click(0);
    click(4);
    EXPECT_EQ((Numbers{2, 0, 1, 0, 3, 0}), numbers());
    EXPECT_EQ(3, notifications(LBN_SELCHANGE));
    click(0);  // the second of three: the third becomes 2
    EXPECT_EQ((Numbers{0, 0, 1, 0, 2, 0}), numbers());
    EXPECT_EQ((Ids{2, 4}), selectedRows());
    EXPECT_EQ((Ids{0, 1, 2, 3, 4, 5}), shown());  // the order stays without KVLB_SELECTEDFIRST

    rebuild(0);  // single selection: the selected item is 1, the others 0, also by the keyboard
    click(1);
    click(3);
    key(VK_DOWN);
    EXPECT_EQ((Numbers{0, 0, 0, 0, 1, 0}), numbers());
    EXPECT_EQ(3, notifications(LBN_SELCHANGE));
}

TEST_F(ListBoxSelection, MaximumAndDisabledItemsRefuseSelection) {
    record.maxSelected = 2;
    items[5].flags = KVLB_ITEM_DISABLED;
    build(kNumbered);
    for (int row : {0, 1, 2, 5}) click(row);  // 2 is past the maximum, 5 disabled
    send(LB_SETCARETINDEX, 3);
    key(VK_SPACE, L' ');  // swallowed: the caret row cannot be selected
    EXPECT_EQ(LB_ERR, send(LB_SETSEL, TRUE, 3));
    EXPECT_EQ((Ids{0, 1}), selectedRows());
    click(0);  // a numbered row can always be unselected, which makes room again
    click(2);
    EXPECT_EQ((Numbers{0, 1, 2, 0, 0, 0}), numbers());
}

TEST_F(ListBoxSelection, SelectedItemsMoveToTheTopGroupAtOnce) {
    record.sortMode = KVLB_SORT_TEXT;
    build(kNumbered | KVLB_SELECTEDFIRST);
    EXPECT_EQ((Ids{4, 1, 5, 2, 3, 0}), shown());
    click(4);  // Haas
    EXPECT_EQ((Ids{3, 4, 1, 5, 2, 0}), shown());
    click(5);  // Lindholm joins the top group, which is sorted by text too
    EXPECT_EQ((Ids{3, 0, 4, 1, 5, 2}), shown());
    send(LB_SETCARETINDEX, 2);
    key(VK_SPACE, L' ');  // re-sorted on the key-up
    EXPECT_EQ((Ids{2, 3, 0, 4, 1, 5}), shown());
    EXPECT_EQ(2, send(LB_GETCARETINDEX, 0));
    send(LB_SETSEL, TRUE, 4);  // the host's selection re-sorts as well
    EXPECT_EQ((Ids{4, 2, 3, 0, 1, 5}), shown());
    EXPECT_EQ((Numbers{2, 0, 3, 1, 4, 0}), numbers());
}

TEST_F(ListBoxSelection, HostSelectionLeavesClicksSpaceAndDoubleClicksAlone) {
    build(KVLB_MULTIPLESEL | KVLB_HOSTSELECTS);
    send(LB_SETCARETINDEX, 1);
    key(VK_SPACE, L' ');
    click(3);
    mouse(WM_LBUTTONDBLCLK, rowCentre(3));
    mouse(WM_LBUTTONUP, rowCentre(3));
    EXPECT_TRUE(selectedRows().empty());
    EXPECT_EQ(2, notifications(LBN_SELCHANGE));  // the host hears of the clicks all the same
    EXPECT_EQ(1, notifications(LBN_DBLCLK));

    rebuild(kNumbered | KVLB_DBLCLKTOGGLES);  // a single click does nothing, a double click toggles
    click(1);
    EXPECT_TRUE(selectedRows().empty());
    mouse(WM_LBUTTONDBLCLK, rowCentre(1));
    mouse(WM_LBUTTONUP, rowCentre(1));
    EXPECT_EQ((Numbers{0, 1, 0, 0, 0, 0}), numbers());
}

TEST_F(ListBoxSelection, EnterFiresOnlyAfterItsOwnKeyDown) {
    build(0);
    SendMessageW(box(), WM_KEYUP, VK_RETURN, 0xC0000001);  // its key-down went elsewhere
    EXPECT_EQ(0, notifications(LBN_DBLCLK));
    key(VK_RETURN);
    EXPECT_EQ(1, notifications(LBN_DBLCLK));
    MSG enter = {box(), WM_KEYDOWN, VK_RETURN, 1};  // a dialog lets the list have it
    EXPECT_TRUE(SendMessageW(box(), WM_GETDLGCODE, VK_RETURN, reinterpret_cast<LPARAM>(&enter)) & DLGC_WANTMESSAGE);
}

TEST_F(ListBoxSelection, ResetSelSetsClearsAndSelectsAll) {
    items[3].flags = KVLB_ITEM_HIDDEN;
    items[4].flags = KVLB_ITEM_DISABLED;
    build(kNumbered);
    short flags[] = {0, 1, 0, 1, 1, 7};
    EXPECT_EQ(1, Kx1LbResetSel(container, KVLB_RESET_FROM_FLAGS, flags));
    EXPECT_EQ((Numbers{0, 1, 0, 0, 2, 3}), numbers());  // the hidden item is left alone
    EXPECT_EQ((Ids{1, 3, 4}), selectedRows());
    short given[] = {5, 0, 2, 9, 0, 1};
    EXPECT_EQ(1, Kx1LbResetSel(container, KVLB_RESET_NUMBERS, given));
    EXPECT_EQ((Numbers{5, 0, 2, 0, 0, 1}), numbers());
    EXPECT_EQ(1, Kx1LbResetSel(container, KVLB_RESET_CLEAR, nullptr));
    EXPECT_TRUE(selectedRows().empty());
    EXPECT_EQ(1, Kx1LbResetSel(container, KVLB_RESET_ALL, nullptr));
    EXPECT_EQ((Numbers{1, 2, 3, 0, 0, 4}), numbers());  // not the disabled one
    EXPECT_EQ(0, Kx1LbResetSel(container, KVLB_RESET_FROM_FLAGS, nullptr));
    EXPECT_EQ(0, Kx1LbResetSel(container, 4, flags));

    rebuild(KVLB_CHECKCOLUMN);  // single selection: only the first
    EXPECT_EQ(1, Kx1LbResetSel(container, KVLB_RESET_ALL, nullptr));
    EXPECT_EQ((Numbers{1, 0, 0, 0, 0, 0}), numbers());
    EXPECT_EQ(0, SendMessageW(box(), LB_GETCURSEL, 0, 0));
}

// Reads the limit message box as soon as it is activated and presses its button.
HHOOK g_hook;
std::wstring g_text, g_caption;
LRESULT CALLBACK answerMessageBox(int code, WPARAM wParam, LPARAM lParam) {
    HWND window = reinterpret_cast<HWND>(wParam);
    wchar_t buffer[200] = L"";
    if (code == HCBT_ACTIVATE && GetClassNameW(window, buffer, 200) && lstrcmpW(buffer, L"#32770") == 0) {
        GetWindowTextW(window, buffer, 200);
        g_caption = buffer;
        GetDlgItemTextW(window, 0xFFFF, buffer, 200);
        g_text = buffer;
        PostMessageW(window, WM_COMMAND, IDOK, 0);
    }
    return CallNextHookEx(g_hook, code, wParam, lParam);
}

TEST_F(ListBoxSelection, SelectingAllStopsAtTheMaximumWithAMessage) {
    record.maxSelected = 3;
    build(kNumbered);
    click(4);
    g_hook = SetWindowsHookExW(WH_CBT, answerMessageBox, nullptr, GetCurrentThreadId());
    EXPECT_EQ(1, Kx1LbResetSel(container, KVLB_RESET_ALL, nullptr));
    UnhookWindowsHookEx(g_hook);
    EXPECT_EQ(L"No more than 3 entries can be selected.", g_text);
    EXPECT_EQ(L"Selection", g_caption);
    EXPECT_EQ((Numbers{2, 3, 0, 0, 1, 0}), numbers());
    EXPECT_EQ((Ids{0, 1, 4}), selectedRows());
}

}  // namespace
