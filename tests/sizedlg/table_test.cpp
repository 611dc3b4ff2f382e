// The dialog table: tab pages, adding and removing children, ending dialogs in any order, and
// what stays allocated afterwards.
#include "sizedlg_test.h"
#include <commctrl.h>

using sizedlg_test::Dialog;
using sizedlg_test::rectOf;

namespace {

class SizeDlgTable : public kvtest::KvTest {};

// v + trunc(v x growth / 100) for the 25 % and 50 % growth of 400 x 300 -> 500 x 450.
RECT grown(const RECT& r) {
    return Rect(r.left + r.left / 4, r.top + r.top / 2, r.right + r.right / 4, r.bottom + r.bottom / 2);
}

// A page is registered against the tab control (200) the way the tab manager does it.
TEST_F(SizeDlgTable, TabPagesTakeThePageAreaAndChildrenComeAndGo) {
    Dialog dialog;
    HWND tab = dialog.add(WC_TABCONTROLW, 0, 200, Rect(20, 20, 380, 260));
    RECT area = Rect(20, 20, 380, 260);
    SendMessageW(tab, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&area));
    ASSERT_FALSE(area == Rect(20, 20, 380, 260)) << area;  // the page area lies inside the tab
    KxSizeDlgStart(dialog, 0, nullptr, 0);
    HWND page = dialog.add(L"Static", 0, 300, Rect(0, 0, 50, 50));
    HWND text = CreateWindowExW(0, L"Static", L"", WS_CHILD | WS_VISIBLE, 10, 10, 100, 24, page,
                                reinterpret_cast<HMENU>(10), nullptr, nullptr);
    ASSERT_EQ(1, Kx1SizeDlgAddChilds(page, 1, 1, 200));

    // The next pass leaves the page alone but lays out its children; the one after moves it.
    MoveWindow(text, 0, 0, 5, 5, FALSE);
    KxSizeDlg(dialog, 0, 0);
    EXPECT_EQ(Rect(0, 0, 50, 50), rectOf(page));
    EXPECT_EQ(Rect(10, 10, 110, 34), rectOf(text));
    dialog.resize(500, 450);
    EXPECT_EQ(grown(area), rectOf(page));
    EXPECT_EQ(Rect(12, 15, 137, 51), rectOf(text));

    // Removed children are no longer laid out; the page itself still is.
    EXPECT_EQ(1, Kx1SizeDlgRemoveChilds(page));
    dialog.resize(400, 300);
    EXPECT_EQ(area, rectOf(page));
    EXPECT_EQ(Rect(12, 15, 137, 51), rectOf(text));

    // Removing the last child frees the child array. Children added back are laid out again, and a
    // re-created control only takes over the record of the one it replaces.
    int live = KvText_LiveAllocations();
    EXPECT_EQ(1, Kx1SizeDlgRemoveChilds(dialog));
    EXPECT_EQ(live - 1, KvText_LiveAllocations());
    EXPECT_EQ(1, Kx1SizeDlgAddChilds(dialog, 0, 1, -1));
    DestroyWindow(tab);
    EXPECT_EQ(1, KxSizeAddWindow(dialog, dialog.add(WC_TABCONTROLW, 0, 200, Rect(0, 0, 10, 10)), 0, -1));
    EXPECT_EQ(1, KxSizeAddWindow(dialog, dialog.add(L"Static", 0, 103), KXSIZE_BOTTOM_RIGHT, -1));
    dialog.resize(500, 450);
    EXPECT_EQ(grown(Rect(20, 20, 380, 260)), dialog.rect(200));
    EXPECT_EQ(Rect(141, 211, 243, 237), dialog.rect(103));
    KxSizeDlgEnd(dialog);
}

// Three dialogs with a grip and an attribute list each. Ending a dialog that is not the last one
// releases the record that moves into its slot instead of its own, so two blocks and a bitmap
// are left behind on purpose: this test counts blocks itself instead of using the fixture.
TEST(SizeDlgTableOrder, EndingInAnyOrderReleasesTheSlotAsItStands) {
    int live = KvText_LiveAllocations();
    Dialog dialogs[3];
    HBITMAP grips[3];
    const KXSIZE_ATTR attributes[] = {{100, KXSIZE_SCALE}};
    for (int i = 0; i < 3; ++i) {
        dialogs[i].add(L"Static", 0, 100);
        KxSizeDlgStart(dialogs[i], 1, attributes, 1);
        grips[i] = reinterpret_cast<HBITMAP>(
            SendDlgItemMessageW(dialogs[i], 39999, STM_GETIMAGE, IMAGE_BITMAP, 0));
    }
    ASSERT_EQ(live + 7, KvText_LiveAllocations());  // the table, 3 x (children, attributes)

    EXPECT_EQ(1, KxSizeDlgEnd(dialogs[2]));  // the last one releases its own
    EXPECT_FALSE(kvtest::IsGdiObject(grips[2]));
    EXPECT_EQ(live + 5, KvText_LiveAllocations());
    for (int i : {0, 1}) {
        dialogs[i].resize(500, 450);
        EXPECT_EQ(Rect(51, 91, 178, 130), dialogs[i].rect(100));
    }

    EXPECT_EQ(1, KxSizeDlgEnd(dialogs[0]));  // releases the second, which moved into its slot
    EXPECT_TRUE(kvtest::IsGdiObject(grips[0]));
    EXPECT_FALSE(kvtest::IsGdiObject(grips[1]));
    EXPECT_EQ(live + 3, KvText_LiveAllocations());
    dialogs[1].resize(400, 300);  // still registered, with nothing left to lay out
    EXPECT_EQ(1, KxSizeDlg(dialogs[1], 0, 0));
    EXPECT_EQ(Rect(51, 91, 178, 130), dialogs[1].rect(100));

    EXPECT_EQ(1, KxSizeDlgEnd(dialogs[1]));
    EXPECT_EQ(live + 2, KvText_LiveAllocations());  // the table is gone
    DeleteObject(grips[0]);

    // Unregistered windows are refused.
    RECT rect = {0, 0, 10, 10};
    HWND child = GetDlgItem(dialogs[0], 100);
    EXPECT_EQ(0, KxSizeDlg(dialogs[0], 0, 0));
    EXPECT_EQ(0, KxSizingDlg(dialogs[0], WMSZ_RIGHT, reinterpret_cast<LPARAM>(&rect)));
    EXPECT_EQ(0, KxSizeDlgEnd(dialogs[0]));
    EXPECT_EQ(0, KxSizeAddWindow(dialogs[0], child, 0, -1));
    EXPECT_EQ(0, Kx1SizeDlgAddChilds(child, 1, 1, -1));
    EXPECT_EQ(0, Kx1SizeDlgRemoveChilds(dialogs[0]));
    EXPECT_EQ(0, KxSizeChildUpdate(dialogs[0], 100));
}

TEST_F(SizeDlgTable, FailedTableAppendKeepsNothing) {
    Dialog dialog;
    dialog.add(L"Static", 0, 100);
    const KXSIZE_ATTR attributes[] = {{100, KXSIZE_MOVE}};
    KvText_FailAllocation(4);  // after the attributes, the child and the grip: the table
    EXPECT_EQ(1, KxSizeDlgStart(dialog, 1, attributes, 1));
    EXPECT_EQ(0, KxSizeDlg(dialog, 0, 0));
    EXPECT_EQ(nullptr, GetDlgItem(dialog, 39999));
}

}  // namespace
