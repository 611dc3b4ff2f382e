// Selecting rows by mouse and keys: numbers in the order of selection, the maximum, disabled
// items, selected items kept first, Space and Enter, double clicks, and the host's reset.
#include "listbox_test.h"

namespace {

using listbox_test::ListBoxTest;
using Numbers = std::vector<long>;
using Ids = std::vector<int>;

const unsigned long kNumbered = KVLB_MULTIPLESEL | KVLB_CHECKCOLUMN | KVLB_NUMBERS;

class ListBoxSelection : public ListBoxTest {};

TEST_F(ListBoxSelection, NumbersFollowTheOrderOfSelectionAndCloseUp) {
    build(kNumbered);
    click(2);
    click(0);
    click(4);
    EXPECT_EQ((Numbers{2, 0, 1, 0, 3, 0}), numbers());
    EXPECT_EQ((Ids{0, 2, 4}), selectedRows());
    EXPECT_EQ(3, notifications(LBN_SELCHANGE));
    // Unselecting the second of three: the third becomes 2.
    click(0);
    EXPECT_EQ((Numbers{0, 0, 1, 0, 2, 0}), numbers());
    EXPECT_EQ(2, SendMessageW(container, LB_GETSEL, 4, 0));
    EXPECT_EQ(2, SendMessageW(container, LB_GETCURSEL, 0, 0));  // first numbered item in array order
    EXPECT_EQ(Ids({0, 1, 2, 3, 4, 5}), shown());                 // the order stays without 0x200
}

TEST_F(ListBoxSelection, MaximumAndDisabledItemsRefuseSelection) {
    record.maxSelected = 2;
    items[5].flags = KVLB_ITEM_DISABLED;
    build(kNumbered);
    click(0);
    click(1);
    click(2);  // past the maximum: refused
    click(5);  // disabled
    EXPECT_EQ((Numbers{1, 2, 0, 0, 0, 0}), numbers());
    EXPECT_EQ((Ids{0, 1}), selectedRows());
    // Space on a row that cannot be selected is swallowed; the host's LB_SETSEL is refused too.
    SendMessageW(container, LB_SETCARETINDEX, 3, 0);
    key(VK_SPACE, L' ');
    EXPECT_EQ(LB_ERR, SendMessageW(container, LB_SETSEL, TRUE, 3));
    EXPECT_EQ((Ids{0, 1}), selectedRows());
    // A numbered row can always be unselected, which makes room again.
    click(0);
    click(2);
    EXPECT_EQ((Numbers{0, 1, 2, 0, 0, 0}), numbers());
}

TEST_F(ListBoxSelection, SelectedItemsMoveToTheTopGroupAtOnce) {
    record.sortMode = KVLB_SORT_TEXT;
    build(kNumbered | KVLB_SELECTEDFIRST);
    // By text: Anders(4) Berg(1) Brandt(5) Falk(2) Haas(3) Lindholm(0).
    EXPECT_EQ((Ids{4, 1, 5, 2, 3, 0}), shown());
    click(4);  // Haas
    EXPECT_EQ((Ids{3, 4, 1, 5, 2, 0}), shown());
    EXPECT_EQ((Ids{0}), selectedRows());
    click(5);  // Lindholm joins the top group, which is sorted by text too
    EXPECT_EQ((Ids{3, 0, 4, 1, 5, 2}), shown());
    EXPECT_EQ((Ids{0, 1}), selectedRows());
    // The host's selection re-sorts as well.
    SendMessageW(container, LB_SETSEL, TRUE, 4);
    EXPECT_EQ((Ids{4, 3, 0, 1, 5, 2}), shown());
    EXPECT_EQ((Numbers{2, 0, 0, 1, 3, 0}), numbers());
}

TEST_F(ListBoxSelection, SingleSelectionNumbersTheSelectedItemOnly) {
    build(0);
    click(1);
    click(3);
    EXPECT_EQ((Numbers{0, 0, 0, 1, 0, 0}), numbers());
    EXPECT_EQ(3, SendMessageW(box(), LB_GETCURSEL, 0, 0));
    EXPECT_EQ(3, SendMessageW(container, LB_GETCURSEL, 0, 0));
    // Arrow keys are the list's own; its notification reaches the host through the container.
    host->clear();
    key(VK_DOWN);
    EXPECT_EQ(4, SendMessageW(box(), LB_GETCURSEL, 0, 0));
    EXPECT_EQ((Numbers{0, 0, 0, 0, 1, 0}), numbers());
    EXPECT_EQ(1, notifications(LBN_SELCHANGE));
    EXPECT_EQ(LB_ERR, SendMessageW(container, LB_SETCURSEL, -1, 0));
    EXPECT_EQ((Numbers{0, 0, 0, 0, 0, 0}), numbers());
}

TEST_F(ListBoxSelection, SpaceTogglesTheCaretRowAndHostSelectionSwallowsIt) {
    build(kNumbered | KVLB_SELECTEDFIRST);
    SendMessageW(container, LB_SETCARETINDEX, 2, 0);
    key(VK_SPACE, L' ');
    EXPECT_EQ((Numbers{0, 0, 1, 0, 0, 0}), numbers());
    EXPECT_EQ((Ids{2, 0, 1, 3, 4, 5}), shown());  // re-sorted on the key-up
    EXPECT_EQ(2, SendMessageW(container, LB_GETCARETINDEX, 0, 0));
    destroy();
    FreeMemory(record.order);
    record.order = nullptr;

    items[2].selection = 0;
    build(KVLB_MULTIPLESEL | KVLB_HOSTSELECTS);
    SendMessageW(container, LB_SETCARETINDEX, 1, 0);
    key(VK_SPACE, L' ');
    EXPECT_TRUE(selectedRows().empty());
    click(3);
    EXPECT_TRUE(selectedRows().empty());
    EXPECT_EQ(1, notifications(LBN_SELCHANGE));  // the host hears of the click all the same
}

TEST_F(ListBoxSelection, EnterFiresOnlyAfterItsOwnKeyDown) {
    build(0);
    SendMessageW(box(), WM_KEYUP, VK_RETURN, 0xC0000001);  // its key-down went elsewhere
    EXPECT_EQ(0, notifications(LBN_DBLCLK));
    key(VK_RETURN);
    EXPECT_EQ(1, notifications(LBN_DBLCLK));
}

TEST_F(ListBoxSelection, DoubleClicksToggleWithDoubleClickStyle) {
    build(kNumbered | KVLB_DBLCLKTOGGLES);
    click(1);
    EXPECT_TRUE(selectedRows().empty());
    doubleClick(1);
    EXPECT_EQ((Ids{1}), selectedRows());
    EXPECT_EQ((Numbers{0, 1, 0, 0, 0, 0}), numbers());
    EXPECT_EQ(1, notifications(LBN_DBLCLK));
}

TEST_F(ListBoxSelection, ResetSelSetsClearsAndSelectsAll) {
    items[3].flags = KVLB_ITEM_HIDDEN;
    items[4].flags = KVLB_ITEM_DISABLED;
    build(kNumbered);
    short flags[] = {0, 1, 0, 1, 1, 7};
    EXPECT_EQ(1, Kx1LbResetSel(container, KVLB_RESET_FROM_FLAGS, flags));
    EXPECT_EQ((Numbers{0, 1, 0, 0, 2, 3}), numbers());  // the hidden item is left alone
    EXPECT_EQ((Ids{1, 3, 4}), selectedRows());            // rows of items 1, 4, 5
    short given[] = {5, 0, 2, 9, 0, 1};
    EXPECT_EQ(1, Kx1LbResetSel(container, KVLB_RESET_NUMBERS, given));
    EXPECT_EQ((Numbers{5, 0, 2, 0, 0, 1}), numbers());
    EXPECT_EQ(1, Kx1LbResetSel(container, KVLB_RESET_CLEAR, nullptr));
    EXPECT_TRUE(selectedRows().empty());
    EXPECT_EQ(1, Kx1LbResetSel(container, KVLB_RESET_ALL, nullptr));
    EXPECT_EQ((Numbers{1, 2, 3, 0, 0, 4}), numbers());  // not the disabled one
    EXPECT_EQ(0, Kx1LbResetSel(container, KVLB_RESET_FROM_FLAGS, nullptr));
    EXPECT_EQ(0, Kx1LbResetSel(container, 4, flags));
    destroy();
    FreeMemory(record.order);
    record.order = nullptr;

    build(KVLB_CHECKCOLUMN);
    EXPECT_EQ(1, Kx1LbResetSel(container, KVLB_RESET_ALL, nullptr));
    EXPECT_EQ((Numbers{1, 0, 0, 0, 0, 0}), numbers());
    EXPECT_EQ(0, SendMessageW(box(), LB_GETCURSEL, 0, 0));
}

// Presses the button of the limit message box as soon as it is activated, after reading it.
struct LimitMessage {
    static HHOOK hook;
    static std::wstring text, caption;
    static LRESULT CALLBACK watch(int code, WPARAM wParam, LPARAM lParam) {
        HWND box = reinterpret_cast<HWND>(wParam);
        wchar_t name[16] = L"";
        if (code == HCBT_ACTIVATE && GetClassNameW(box, name, 16) && lstrcmpW(name, L"#32770") == 0) {
            wchar_t buffer[200] = L"";
            GetWindowTextW(box, buffer, 200);
            caption = buffer;
            GetDlgItemTextW(box, 0xFFFF, buffer, 200);
            text = buffer;
            PostMessageW(box, WM_COMMAND, IDOK, 0);
        }
        return CallNextHookEx(hook, code, wParam, lParam);
    }
};
HHOOK LimitMessage::hook;
std::wstring LimitMessage::text, LimitMessage::caption;

TEST_F(ListBoxSelection, SelectingAllStopsAtTheMaximumWithAMessage) {
    record.maxSelected = 3;
    build(kNumbered);
    click(4);
    LimitMessage::hook = SetWindowsHookExW(WH_CBT, LimitMessage::watch, nullptr, GetCurrentThreadId());
    ASSERT_NE(nullptr, LimitMessage::hook);
    EXPECT_EQ(1, Kx1LbResetSel(container, KVLB_RESET_ALL, nullptr));
    UnhookWindowsHookEx(LimitMessage::hook);
    EXPECT_EQ(L"No more than 3 entries can be selected.", LimitMessage::text);
    EXPECT_EQ(L"Selection", LimitMessage::caption);
    EXPECT_EQ((Numbers{2, 3, 0, 0, 1, 0}), numbers());
    EXPECT_EQ((Ids{0, 1, 4}), selectedRows());
}

}  // namespace

