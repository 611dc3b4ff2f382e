// The dialog table and its child records: unregistered windows, tab pages, adding and removing
// children, ending dialogs in either order, and allocation failures.
#include "kvtest.h"
#include <commctrl.h>
#include "test_dialog.h"

using sizedlg_test::TemplateItem;
using sizedlg_test::TestDialog;

namespace {

class SizeDlgTable : public kvtest::KvTest {};

HBITMAP gripBitmap(const TestDialog& dialog) {
    return reinterpret_cast<HBITMAP>(SendMessageW(dialog.item(39999), STM_GETIMAGE, IMAGE_BITMAP, 0));
}

TEST_F(SizeDlgTable, UnregisteredWindowsAreRefused) {
    TestDialog dialog({{L"Static", SS_LEFT, 100}});
    HWND child = dialog.item(100);
    RECT rect = {0, 0, 10, 10};
    EXPECT_EQ(0, KxSizeDlg(dialog, 0, 0));
    EXPECT_EQ(0, KxSizingDlg(dialog, WMSZ_RIGHT, reinterpret_cast<LPARAM>(&rect)));
    EXPECT_EQ(0, KxSizeDlgEnd(dialog));
    EXPECT_EQ(0, KxSizeAddWindow(dialog, child, 0, -1));
    EXPECT_EQ(0, Kx1SizeDlgAddChilds(child, 1, 1, -1));
    EXPECT_EQ(0, Kx1SizeDlgRemoveChilds(dialog));
    EXPECT_EQ(0, KxSizeChildUpdate(dialog, 100));
    EXPECT_EQ(0, KxSizeDlg(nullptr, 0, 0));
    EXPECT_EQ(Rect(0, 0, 10, 10), rect);

    // A registered dialog does not make its children registered dialogs.
    KxSizeDlgStart(dialog, 0, nullptr, 0);
    EXPECT_EQ(0, KxSizeDlg(child, 0, 0));
    EXPECT_EQ(0, KxSizeChildUpdate(child, 100));
    EXPECT_EQ(1, KxSizeDlgEnd(dialog));
    EXPECT_EQ(0, KxSizeDlgEnd(dialog));
}

// A dialog with a tab control (200) and a page dialog with one static (10) that is placed into
// the tab the way the tab manager does it.
class TabbedDialog {
public:
    TabbedDialog() : dialog({{WC_TABCONTROLW, WS_CLIPSIBLINGS, 200}}) {
        dialog.place(200, 20, 20, 380, 260);
        TCITEMW item = {};
        item.mask = TCIF_TEXT;
        item.pszText = const_cast<wchar_t*>(L"Page");
        SendMessageW(dialog.item(200), TCM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
        pageArea = Rect(20, 20, 380, 260);
        SendMessageW(dialog.item(200), TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&pageArea));
        KxSizeDlgStart(dialog, 0, nullptr, 0);
        page = new TestDialog({{L"Static", SS_LEFT, 10}}, WS_CHILD | WS_VISIBLE | DS_CONTROL, dialog);
        page->place(10, 10, 10, 110, 34);
        MoveWindow(*page, 0, 0, 50, 50, FALSE);
    }
    ~TabbedDialog() {
        delete page;
        KxSizeDlgEnd(dialog);
    }
    TestDialog dialog;
    TestDialog* page;
    RECT pageArea;
};

// v + trunc(v x growth / 100) for the 25 % and 50 % growth of 400 x 300 -> 500 x 450.
int grownX(int v) { return v + v / 4; }
int grownY(int v) { return v + v / 2; }

TEST_F(SizeDlgTable, TabPagesTakeThePageAreaAndSitOutOnePass) {
    TabbedDialog tabbed;
    HWND page = *tabbed.page;
    ASSERT_EQ(1, Kx1SizeDlgAddChilds(page, 1, 1, 200));

    // The first pass leaves the page where it is but lays out its children.
    MoveWindow(tabbed.page->item(10), 0, 0, 5, 5, FALSE);
    KxSizeDlg(tabbed.dialog, 0, 0);
    EXPECT_EQ(Rect(0, 0, 50, 50), TestDialog::rectOf(page));
    EXPECT_EQ(Rect(10, 10, 110, 34), tabbed.page->rect(10));

    KxSizeDlg(tabbed.dialog, 0, 0);
    EXPECT_EQ(tabbed.pageArea, TestDialog::rectOf(page));

    tabbed.dialog.setClientSize(500, 450);
    KxSizeDlg(tabbed.dialog, 0, 0);
    const RECT& area = tabbed.pageArea;
    EXPECT_EQ(Rect(grownX(area.left), grownY(area.top), grownX(area.right), grownY(area.bottom)),
              TestDialog::rectOf(page));
    EXPECT_EQ(Rect(12, 15, 137, 51), tabbed.page->rect(10));
    EXPECT_EQ(Rect(25, 30, 475, 390), tabbed.dialog.rect(200));
}

TEST_F(SizeDlgTable, RemovedChildrenAreNoLongerLaidOut) {
    TabbedDialog tabbed;
    HWND page = *tabbed.page;
    Kx1SizeDlgAddChilds(page, 1, 1, 200);
    KxSizeDlg(tabbed.dialog, 0, 0);
    ASSERT_EQ(1, Kx1SizeDlgRemoveChilds(page));

    MoveWindow(tabbed.page->item(10), 0, 0, 5, 5, FALSE);
    tabbed.dialog.setClientSize(500, 450);
    KxSizeDlg(tabbed.dialog, 0, 0);
    EXPECT_EQ(Rect(0, 0, 5, 5), tabbed.page->rect(10));
    const RECT& area = tabbed.pageArea;
    EXPECT_EQ(grownX(area.right), TestDialog::rectOf(page).right);  // the page itself stays

    // Removing every child of the dialog frees its child array; adding them back works again.
    int live = KvText_LiveAllocations();
    EXPECT_EQ(1, Kx1SizeDlgRemoveChilds(tabbed.dialog));
    EXPECT_EQ(live - 1, KvText_LiveAllocations());
    MoveWindow(tabbed.dialog.item(200), 1, 2, 3, 4, FALSE);
    EXPECT_EQ(1, KxSizeDlg(tabbed.dialog, 0, 0));
    EXPECT_EQ(Rect(1, 2, 4, 6), tabbed.dialog.rect(200));

    tabbed.dialog.setClientSize(400, 300);
    tabbed.dialog.place(200, 20, 20, 380, 260);
    EXPECT_EQ(1, Kx1SizeDlgAddChilds(tabbed.dialog, 0, 1, -1));
    tabbed.dialog.setClientSize(500, 450);
    KxSizeDlg(tabbed.dialog, 0, 0);
    EXPECT_EQ(Rect(25, 30, 475, 390), tabbed.dialog.rect(200));
}

TEST_F(SizeDlgTable, AddWindowReplacesRecreatedControlsAndRegistersNewOnes) {
    TestDialog dialog({{L"Edit", WS_BORDER, 102}});
    dialog.place(102, 40, 60, 140, 84);
    KxSizeDlgStart(dialog, 0, nullptr, 0);

    DestroyWindow(dialog.item(102));
    auto create = [&](const wchar_t* className, DWORD style, int id) {
        return CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE | style, 40, 60, 100, 24,
                               dialog, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                               GetModuleHandleW(nullptr), nullptr);
    };
    HWND recreated = create(L"Edit", WS_BORDER, 102);
    MoveWindow(recreated, 0, 0, 10, 10, FALSE);  // the old design rectangle still counts
    EXPECT_EQ(1, KxSizeAddWindow(dialog, recreated, 0, -1));
    EXPECT_EQ(1, KxSizeAddWindow(dialog, create(L"Static", 0, 103), KXSIZE_BOTTOM_RIGHT, -1));
    EXPECT_EQ(1, KxSizeAddWindow(dialog, create(L"Edit", ES_MULTILINE, 104), 0, -1));

    dialog.setClientSize(500, 450);
    KxSizeDlg(dialog, 0, 0);
    EXPECT_EQ(Rect(50, 90, 175, 114), dialog.rect(102));   // 7, single-line edit
    EXPECT_EQ(Rect(140, 210, 240, 234), dialog.rect(103)); // pinned to the corner
    EXPECT_EQ(Rect(50, 90, 175, 126), dialog.rect(104));   // 15, multi-line edit
    KxSizeDlgEnd(dialog);
}

// Three dialogs, each with a grip and an attribute list; a static at (40, 60, 140, 84) scales.
struct ThreeDialogs {
    ThreeDialogs() {
        const KXSIZE_ATTR attributes[] = {{100, KXSIZE_SCALE}};
        for (auto& dialog : dialogs) {
            dialog = new TestDialog({{L"Static", SS_LEFT, 100}});
            dialog->place(100, 40, 60, 140, 84);
            KxSizeDlgStart(*dialog, 1, attributes, 1);
            grips.push_back(gripBitmap(*dialog));
        }
    }
    ~ThreeDialogs() {
        for (auto* dialog : dialogs) delete dialog;
    }
    bool laysOut(int index) {
        TestDialog& dialog = *dialogs[index];
        dialog.setClientSize(500, 450);
        bool registered = KxSizeDlg(dialog, 0, 0) == 1;
        bool moved = dialog.rect(100) == Rect(50, 90, 175, 126);
        dialog.setClientSize(400, 300);
        KxSizeDlg(dialog, 0, 0);
        return registered && moved;
    }
    TestDialog* dialogs[3];
    std::vector<HBITMAP> grips;
};

TEST_F(SizeDlgTable, EndingFromTheLastReleasesEverything) {
    ThreeDialogs three;
    EXPECT_EQ(1, KxSizeDlgEnd(*three.dialogs[2]));
    EXPECT_FALSE(kvtest::IsGdiObject(three.grips[2]));
    EXPECT_TRUE(three.laysOut(0));
    EXPECT_TRUE(three.laysOut(1));
    EXPECT_EQ(1, KxSizeDlgEnd(*three.dialogs[1]));
    EXPECT_FALSE(kvtest::IsGdiObject(three.grips[1]));
    EXPECT_TRUE(kvtest::IsGdiObject(three.grips[0]));
    EXPECT_TRUE(three.laysOut(0));
    EXPECT_EQ(1, KxSizeDlgEnd(*three.dialogs[0]));
    EXPECT_FALSE(kvtest::IsGdiObject(three.grips[0]));
    for (auto* dialog : three.dialogs) EXPECT_EQ(0, KxSizeDlg(*dialog, 0, 0));
}

// Ending a dialog that is not the last releases the record that moves into its slot, and the
// ended dialog's own arrays stay allocated: two blocks are left behind on purpose, so this test
// counts them itself instead of using the balance check of the fixture.
TEST(SizeDlgTableOrder, EndingAnEarlierDialogReleasesTheOneBehindIt) {
    int live = KvText_LiveAllocations();
    {
        ThreeDialogs three;
        ASSERT_EQ(live + 7, KvText_LiveAllocations());  // table, 3 x (children, attributes)
        EXPECT_EQ(1, KxSizeDlgEnd(*three.dialogs[0]));
        EXPECT_EQ(live + 5, KvText_LiveAllocations());
        EXPECT_TRUE(kvtest::IsGdiObject(three.grips[0]));   // never released
        EXPECT_FALSE(kvtest::IsGdiObject(three.grips[1]));  // released in its place
        EXPECT_TRUE(kvtest::IsGdiObject(three.grips[2]));

        EXPECT_EQ(0, KxSizeDlg(*three.dialogs[0], 0, 0));
        EXPECT_EQ(1, KxSizeDlg(*three.dialogs[1], 0, 0));  // still registered, nothing left to lay out
        EXPECT_TRUE(three.laysOut(2));

        EXPECT_EQ(1, KxSizeDlgEnd(*three.dialogs[1]));  // now not the last either: releases the third
        EXPECT_FALSE(kvtest::IsGdiObject(three.grips[2]));
        EXPECT_EQ(live + 3, KvText_LiveAllocations());
        EXPECT_EQ(1, KxSizeDlgEnd(*three.dialogs[2]));  // its record was already emptied
        EXPECT_EQ(live + 2, KvText_LiveAllocations());  // the table is gone
        EXPECT_EQ(0, KxSizeDlgEnd(*three.dialogs[2]));
        DeleteObject(three.grips[0]);
    }
}

TEST_F(SizeDlgTable, FailedChildAppendDropsOnlyThatChild) {
    TestDialog dialog({{L"Static", SS_LEFT, 100}, {L"Static", SS_LEFT, 101}});
    dialog.place(100, 40, 60, 140, 84);
    dialog.place(101, 40, 60, 140, 84);
    KvText_FailAllocation(1);  // the first child's record
    EXPECT_EQ(1, KxSizeDlgStart(dialog, 0, nullptr, 0));
    dialog.setClientSize(500, 450);
    KxSizeDlg(dialog, 0, 0);
    EXPECT_EQ(Rect(40, 60, 140, 84), dialog.rect(100));
    EXPECT_EQ(Rect(50, 90, 175, 126), dialog.rect(101));
    KxSizeDlgEnd(dialog);
}

TEST_F(SizeDlgTable, FailedTableAppendLeavesTheDialogUnmanaged) {
    TestDialog dialog({{L"Static", SS_LEFT, 100}, {L"Static", SS_LEFT, 101}});
    KvText_FailAllocation(4);  // two children, the grip, then the table
    EXPECT_EQ(1, KxSizeDlgStart(dialog, 0, nullptr, 1));
    EXPECT_EQ(0, KxSizeDlg(dialog, 0, 0));
    EXPECT_EQ(nullptr, dialog.item(39999));
    EXPECT_EQ(0, KxSizeDlgEnd(dialog));
}

}  // namespace
