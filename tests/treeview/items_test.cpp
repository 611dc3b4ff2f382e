// Items of a real tree view: inserting, copying and moving, text and value, marks, state bits and
// expanding the whole tree.
#include "tree_fixture.h"

namespace {

using Lines = std::vector<std::wstring>;

// A customer tree: A { A1 { note }, A2 }, B, with values.
class CustomerTreeTest : public TreeTest {
protected:
    void SetUp() override {
        TreeTest::SetUp();
        a = add(nullptr, L"Customer A", 1);
        a1 = add(a, L"Contact A1", 11);
        note = add(a1, L"Note", 111);
        a2 = add(a, L"Contact A2", 12);
        b = add(nullptr, L"Customer B", 2);
    }
    int overlay(HTREEITEM item) const { return (state(item, TVIS_OVERLAYMASK) & TVIS_OVERLAYMASK) >> 8; }
    LPARAM value(HTREEITEM item) const { return KxTreeView_GetItemData(tree, item); }

    HTREEITEM a, a1, note, a2, b;
};

TEST_F(TreeTest, InsertsAtTheEndAfterAnItemOrSorted) {
    HTREEITEM top = add(nullptr, L"Customers", 1);
    auto insert = [&](const wchar_t* text, HTREEITEM after, int sort) {
        return KxTreeView_InsertItemEx(tree, nullptr, top, after, nullptr, nullptr, nullptr, text,
                                       text[0], sort);
    };
    HTREEITEM berg = insert(L"Berg", nullptr, 1);
    insert(L"Lind", nullptr, 1);
    insert(L"Falk", nullptr, 1);
    insert(L"Zorn", nullptr, 0);
    insert(L"Arndt", berg, 0);
    insert(L"Kern", berg, 1);  // sorting wins over the position
    EXPECT_EQ((Lines{L"Customers", L"  Berg", L"  Arndt", L"  Falk", L"  Kern", L"  Lind", L"  Zorn"}),
              outline());
    EXPECT_EQ(L'K', KxTreeView_GetItemData(tree, next(next(next(child(top))))));
    HTREEITEM blank = KxTreeView_InsertItem(tree, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 9, 0);
    EXPECT_EQ(L"", text(blank));
    EXPECT_EQ(blank, next(top));
}

TEST_F(TreeTest, InsertAddsTheNamedBitmapToTheImageList) {
    HIMAGELIST images = ImageList_Create(16, 16, ILC_COLOR24 | ILC_MASK, 2, 2);
    TreeView_SetImageList(tree, images, TVSIL_NORMAL);
    int image = -5;
    HTREEITEM first = KxTreeView_InsertItem(tree, kvtest::ResourceModule(), nullptr, images,
                                            L"BtnDelFmt", &image, L"first", 1, 0);
    ASSERT_TRUE(first);
    EXPECT_EQ(0, image);
    HTREEITEM second = KxTreeView_InsertItem(tree, kvtest::ResourceModule(), nullptr, images,
                                             L"BtnDelFmt", &image, L"second", 2, 0);
    EXPECT_EQ(1, image);
    EXPECT_EQ(2, ImageList_GetImageCount(images));
    TVITEMW item = {};
    item.mask = TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    item.hItem = second;
    TreeView_GetItem(tree, &item);
    EXPECT_EQ(1, item.iImage);
    EXPECT_EQ(1, item.iSelectedImage);
    // The bitmap's pixel (0, 0) is transparent in the list's mask.
    HDC screen = GetDC(nullptr);
    HDC dc = CreateCompatibleDC(screen);
    HBITMAP canvas = CreateCompatibleBitmap(screen, 16, 16);
    HGDIOBJ old = SelectObject(dc, canvas);
    RECT all = {0, 0, 16, 16};
    FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    HBITMAP picture = LoadBitmapW(kvtest::ResourceModule(), L"BtnDelFmt");
    HDC pictureDc = CreateCompatibleDC(screen);
    HGDIOBJ oldPicture = SelectObject(pictureDc, picture);
    COLORREF background = GetPixel(pictureDc, 0, 0);
    SelectObject(pictureDc, oldPicture);
    DeleteDC(pictureDc);
    DeleteObject(picture);
    ImageList_Draw(images, 0, dc, 0, 0, ILD_TRANSPARENT);
    EXPECT_NE(RGB(0, 0, 0), background);
    EXPECT_EQ(RGB(0, 0, 0), GetPixel(dc, 0, 0));
    SelectObject(dc, old);
    DeleteObject(canvas);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);

    // A missing bitmap inserts nothing and leaves the index alone; without a name the index is
    // the caller's.
    image = 7;
    EXPECT_EQ(nullptr, KxTreeView_InsertItem(tree, kvtest::ResourceModule(), nullptr, images,
                                             L"NoSuchBitmap", &image, L"third", 3, 0));
    EXPECT_EQ(7, image);
    EXPECT_EQ(2, itemCount());
    image = 0;
    HTREEITEM third = KxTreeView_InsertItem(tree, nullptr, nullptr, images, nullptr, &image, L"third", 3, 0);
    item.hItem = third;
    TreeView_GetItem(tree, &item);
    EXPECT_EQ(0, item.iImage);
    EXPECT_EQ(2, ImageList_GetImageCount(images));
    TreeView_SetImageList(tree, nullptr, TVSIL_NORMAL);
    ImageList_Destroy(images);
}

TEST_F(CustomerTreeTest, CopyFillsAnInsertRecordWithoutState) {
    TVITEMW images = {};
    images.mask = TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    images.hItem = a;
    images.iImage = 2;
    images.iSelectedImage = 3;
    TreeView_SetItem(tree, &images);
    KxTreeView_SetCheckState(tree, a, 1);
    KxTreeView_SetMark(tree, a, 2);

    TVINSERTSTRUCTW record = {};
    ASSERT_EQ(1, KxTreeView_CopyItem(tree, a, 8, &record));
    EXPECT_STREQ(L"Customer", record.item.pszText);  // at most 8 characters
    EXPECT_EQ(1, record.item.lParam);
    EXPECT_EQ(2, record.item.iImage);
    EXPECT_EQ(3, record.item.iSelectedImage);
    EXPECT_EQ(1, record.item.cChildren);
    EXPECT_EQ(0u, record.item.mask & TVIF_STATE);
    record.hParent = b;
    record.hInsertAfter = TVI_LAST;
    HTREEITEM copy = TreeView_InsertItem(tree, &record);
    FreeMemory(record.item.pszText);
    EXPECT_EQ(L"Customer", text(copy));
    EXPECT_EQ(1, value(copy));
    EXPECT_EQ(0, KxTreeView_GetCheckState(tree, copy));
    EXPECT_EQ(0, overlay(copy));

    EXPECT_EQ(0, KxTreeView_CopyItem(tree, a, 8, nullptr));
    EXPECT_EQ(0, KxTreeView_CopyItem(tree, nullptr, 8, &record));
    EXPECT_EQ(0, KxTreeView_CopyItem(tree, a, -1, &record));
    KvText_FailAllocation(1);
    EXPECT_EQ(0, KxTreeView_CopyItem(tree, a, 8, &record));
}

TEST_F(CustomerTreeTest, MoveWithChildrenKeepsValuesAndOrderButDropsStateAndMark) {
    KxTreeView_SetCheckState(tree, a, 1);
    KxTreeView_SetMark(tree, a, 3);
    KxTreeView_SetCheckState(tree, note, 1);
    HTREEITEM moved = KxTreeView_MoveItem(tree, a, b, nullptr, 1);
    ASSERT_TRUE(moved);
    EXPECT_EQ((Lines{L"Customer B", L"  Customer A", L"    Contact A1", L"      Note", L"    Contact A2"}),
              outline());
    EXPECT_EQ(moved, selection());
    EXPECT_EQ(1, value(moved));
    EXPECT_EQ(111, value(child(child(moved))));
    EXPECT_EQ(12, value(next(child(moved))));
    EXPECT_EQ(0, KxTreeView_GetCheckState(tree, moved));
    EXPECT_EQ(0, KxTreeView_GetCheckState(tree, child(child(moved))));
    EXPECT_EQ(0, overlay(moved));
}

TEST_F(CustomerTreeTest, MoveAfterAnItemWithoutChildrenLeavesThemBehind) {
    HTREEITEM moved = KxTreeView_MoveItem(tree, a1, nullptr, a, 0);
    EXPECT_EQ((Lines{L"Customer A", L"  Contact A2", L"Contact A1", L"Customer B"}), outline());
    EXPECT_EQ(11, value(moved));
    // Text up to 256 characters moves along.
    std::wstring longText(300, L'x');
    HTREEITEM item = add(nullptr, longText.c_str());
    HTREEITEM longMoved = KxTreeView_MoveItem(tree, item, b, nullptr, 0);
    EXPECT_EQ(256u, text(longMoved).size());
}

TEST_F(CustomerTreeTest, MoveRefusesItsOwnSubtreeAndLosesNothingWhenMemoryRunsOut) {
    Lines before = outline();
    EXPECT_EQ(nullptr, KxTreeView_MoveItem(tree, a, a1, nullptr, 1));
    EXPECT_EQ(nullptr, KxTreeView_MoveItem(tree, a, a, nullptr, 1));
    EXPECT_EQ(nullptr, KxTreeView_MoveItem(tree, nullptr, b, nullptr, 1));
    // The note's copy fails (the third text block): the half-made copy goes, the original stays.
    KvText_FailAllocation(3);
    EXPECT_EQ(nullptr, KxTreeView_MoveItem(tree, a, b, nullptr, 1));
    EXPECT_EQ(before, outline());
    EXPECT_EQ(a, root());
}

TEST_F(CustomerTreeTest, TextBlocksComeFromKvtextAndARefusedTextIsFreed) {
    wchar_t* read = KxTreeView_GetItemText(tree, a1);
    ASSERT_TRUE(read);
    EXPECT_STREQ(L"Contact A1", read);
    FreeMemory(read);
    std::wstring longText(200, L'y');
    add(nullptr, longText.c_str());
    read = KxTreeView_GetItemText(tree, next(b));
    EXPECT_EQ(119, lstrlenW(read));
    FreeMemory(read);

    auto* block = static_cast<wchar_t*>(GetMemory(16 * sizeof(wchar_t)));
    kv_strcpy(block, L"Falk", 16);
    EXPECT_EQ(1, KxTreeView_SetItemText(tree, a1, block));
    EXPECT_EQ(L"Falk", text(a1));
    EXPECT_EQ(0, KxTreeView_SetItemText(tree, nullptr, block));  // the caller keeps the block
    EXPECT_EQ(0, KxTreeView_SetItemText(tree, a1, nullptr));
    // An item of another tree: the tree refuses, and the block is freed.
    HWND other = host->createChild(WC_TREEVIEWW, L"", 0, 0, 0, 10, 10, 2);
    HTREEITEM foreign = KxTreeView_InsertItem(other, nullptr, nullptr, nullptr, nullptr, nullptr, L"o", 5, 0);
    int live = KvText_LiveAllocations();
    EXPECT_EQ(0, KxTreeView_SetItemText(tree, foreign, block));
    EXPECT_EQ(live - 1, KvText_LiveAllocations());

    EXPECT_EQ(0, KxTreeView_SetItemData(tree, foreign, 3));
    DestroyWindow(other);
    EXPECT_EQ(nullptr, KxTreeView_GetItemText(tree, nullptr));
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, KxTreeView_GetItemText(tree, a1));
}

TEST_F(CustomerTreeTest, ValuesAreSignedAndZeroForNoItem) {
    EXPECT_TRUE(KxTreeView_SetItemData(tree, a2, -77));
    EXPECT_EQ(-77, value(a2));
    EXPECT_EQ(0, KxTreeView_SetItemData(tree, nullptr, 5));
    EXPECT_EQ(0, KxTreeView_GetItemData(tree, nullptr));
}

TEST_F(CustomerTreeTest, MarksLiveInTheOverlayBitsAndMarkAllWalksFromTheStart) {
    KxTreeView_SetCheckState(tree, a, 1);
    TreeView_SetItemState(tree, a, TVIS_BOLD, TVIS_BOLD);
    EXPECT_TRUE(KxTreeView_SetMark(tree, a, 3));
    EXPECT_EQ(3, overlay(a));
    EXPECT_EQ(1, KxTreeView_GetCheckState(tree, a));
    EXPECT_EQ(static_cast<UINT>(TVIS_BOLD), state(a, TVIS_BOLD));
    EXPECT_EQ(0, KxTreeView_SetMark(tree, a, 16));
    EXPECT_EQ(0, KxTreeView_SetMark(tree, a, -1));
    EXPECT_EQ(3, overlay(a));

    // From A1: A1, its subtree and its following sibling A2, except the note.
    EXPECT_EQ(1, KxTreeView_MarkAll(tree, note, 5, a1));
    EXPECT_EQ((std::vector<int>{3, 5, 0, 5, 0}),
              (std::vector<int>{overlay(a), overlay(a1), overlay(note), overlay(a2), overlay(b)}));
    // From the top, except A: its children are still marked.
    EXPECT_EQ(1, KxTreeView_MarkAll(tree, a, 1, nullptr));
    EXPECT_EQ((std::vector<int>{3, 1, 1, 1, 1}),
              (std::vector<int>{overlay(a), overlay(a1), overlay(note), overlay(a2), overlay(b)}));
}

TEST_F(CustomerTreeTest, SettingStateBitsNeedsThemClearAndClearingFlipsThem) {
    KxTreeView_SetCheckState(tree, a, 1);
    EXPECT_TRUE(KxTreeView_SetItemState(tree, a, 1, TVIS_BOLD));
    EXPECT_EQ(0, KxTreeView_SetItemState(tree, a, 1, TVIS_BOLD | TVIS_CUT));  // bold is set
    EXPECT_EQ(0u, state(a, TVIS_CUT));
    // Clearing bold and cut with only bold set turns cut on.
    EXPECT_TRUE(KxTreeView_SetItemState(tree, a, 0, TVIS_BOLD | TVIS_CUT));
    EXPECT_EQ(static_cast<UINT>(TVIS_CUT), state(a, TVIS_BOLD | TVIS_CUT));
    EXPECT_EQ(0, KxTreeView_SetItemState(tree, a, 0, TVIS_BOLD));
    EXPECT_EQ(1, KxTreeView_GetCheckState(tree, a));  // only the low byte is written

    EXPECT_EQ(1, KxTreeView_SetAllItemsState(tree, a2, 1, TVIS_BOLD, nullptr));
    for (HTREEITEM item : {a, a1, note, b}) EXPECT_EQ(static_cast<UINT>(TVIS_BOLD), state(item, TVIS_BOLD));
    EXPECT_EQ(0u, state(a2, TVIS_BOLD));
    EXPECT_EQ(1, KxTreeView_SetAllItemsState(tree, nullptr, 0, TVIS_BOLD, b));
    EXPECT_EQ(0u, state(b, TVIS_BOLD));
    EXPECT_EQ(static_cast<UINT>(TVIS_BOLD), state(a, TVIS_BOLD));
}

TEST_F(CustomerTreeTest, ExpandTreeOpensEveryLevelAndCollapsesOnlyTheTop) {
    for (HTREEITEM item : {a, a1}) TreeView_Expand(tree, item, TVE_COLLAPSE);
    HTREEITEM b1 = KxTreeView_InsertItem(tree, nullptr, b, nullptr, nullptr, nullptr, L"B1", 21, 0);
    EXPECT_EQ(1, KxTreeView_ExpandTree(tree, 1));
    for (HTREEITEM item : {a, a1, b}) EXPECT_EQ(static_cast<UINT>(TVIS_EXPANDED), state(item, TVIS_EXPANDED));
    EXPECT_EQ(1, KxTreeView_ExpandTree(tree, 0));
    EXPECT_EQ(0u, state(a, TVIS_EXPANDED));
    EXPECT_EQ(0u, state(b, TVIS_EXPANDED));
    EXPECT_EQ(static_cast<UINT>(TVIS_EXPANDED), state(a1, TVIS_EXPANDED));
    (void)b1;
}

TEST_F(TreeTest, ExpandTreeScrollsTheSelectionIntoView) {
    HTREEITEM last = nullptr;
    for (int i = 0; i < 60; ++i) {
        HTREEITEM top = KxTreeView_InsertItem(tree, nullptr, nullptr, nullptr, nullptr, nullptr, L"customer", i, 0);
        last = KxTreeView_InsertItem(tree, nullptr, top, nullptr, nullptr, nullptr, L"contact", i, 0);
    }
    TreeView_SelectItem(tree, TreeView_GetParent(tree, last));
    TreeView_EnsureVisible(tree, root());
    KxTreeView_ExpandTree(tree, 1);
    RECT rect;
    EXPECT_TRUE(TreeView_GetItemRect(tree, selection(), &rect, TRUE));
    RECT client;
    GetClientRect(tree, &client);
    EXPECT_GE(rect.top, 0);
    EXPECT_LE(rect.bottom, client.bottom);
}

TEST_F(CustomerTreeTest, EveryExportSurvivesNullAndDestroyedTrees) {
    HWND destroyed = host->createChild(WC_TREEVIEWW, L"", 0, 0, 0, 10, 10, 3);
    DestroyWindow(destroyed);
    for (HWND bad : {static_cast<HWND>(nullptr), destroyed}) {
        int image = 0;
        EXPECT_EQ(nullptr, KxTreeView_InsertItem(bad, nullptr, nullptr, nullptr, nullptr, &image, L"x", 1, 0));
        TVINSERTSTRUCTW record = {};
        EXPECT_EQ(0, KxTreeView_CopyItem(bad, a, 10, &record));
        EXPECT_EQ(nullptr, KxTreeView_MoveItem(bad, a, nullptr, nullptr, 1));
        auto* block = static_cast<wchar_t*>(GetMemory(8));
        EXPECT_EQ(0, KxTreeView_SetItemText(bad, a, block));  // refused: freed
        EXPECT_EQ(nullptr, KxTreeView_GetItemText(bad, a));
        EXPECT_EQ(0, KxTreeView_SetItemData(bad, a, 1));
        EXPECT_EQ(0, KxTreeView_GetItemData(bad, a));
        EXPECT_EQ(0, KxTreeView_SetCheckState(bad, a, 1));
        EXPECT_EQ(-1, KxTreeView_GetCheckState(bad, a));
        EXPECT_EQ(0, KxTreeView_SetMark(bad, a, 1));
        EXPECT_EQ(0, KxTreeView_MarkAll(bad, nullptr, 1, nullptr));
        EXPECT_EQ(0, KxTreeView_SetItemState(bad, a, 1, TVIS_BOLD));
        EXPECT_EQ(0, KxTreeView_SetAllItemsState(bad, nullptr, 1, TVIS_BOLD, nullptr));
        EXPECT_EQ(0, KxTreeView_CheckAll(bad, nullptr, 1, nullptr, 0, nullptr));
        EXPECT_EQ(0, KxTreeView_GetAllChecked(bad, nullptr, -1));
        EXPECT_EQ(0, KxTreeView_ExpandTree(bad, 1));
        UINT flags = 99;
        EXPECT_EQ(nullptr, KxTreeView_GetMouseHit(bad, &flags));
        EXPECT_EQ(0u, flags);
        HTREEITEM item = nullptr;
        EXPECT_EQ(0, KxTreeView_CheckChange(bad, &item));
        EXPECT_EQ(0, KxTreeView_HandleCheckChange(bad, 1, 1, &item));
        item = a;
        EXPECT_EQ(0, KxTreeView_HandleCheckChangeEx(bad, 1, 1, 1, &item));
        EXPECT_EQ(0, KxTreeView_HandleCheckChangeExRight(bad, 1, 1, 1, nullptr, 0, &item));
        EXPECT_EQ(nullptr, KxTreeView_GetItemWithData(bad, nullptr, 1, nullptr));
        wchar_t text[] = L"customer";
        EXPECT_EQ(nullptr, KxTreeView_GetItemWithText(bad, nullptr, text, 0, 0, nullptr));
        NMHDR notify = {bad, 0, static_cast<UINT>(NM_RCLICK)};
        EXPECT_EQ(nullptr, Kx1TreeView_RButtonEx(*host, &notify, 1, nullptr, nullptr, 1, 1, 1, 0));
        EXPECT_EQ(1, KxTreeView_DlgSuche(bad, 0));
        EXPECT_EQ(0, Kx1SetTreeViewProc(bad));
    }
    EXPECT_EQ(nullptr, Kx1TreeView_RButton(*host, nullptr, 1, nullptr, nullptr, 1, 1, 0));
    EXPECT_EQ(0, KxTreeView_SetItemColorFont(*host, tree, nullptr, -1, 0, 0, nullptr));
    EXPECT_EQ(0, loopsEndedForcibly);  // no dialog opened
}

}  // namespace
