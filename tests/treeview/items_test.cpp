// Items of a real tree view: inserting, copying and moving, text and value, marks, state bits and
// expanding the whole tree; null and destroyed trees.
#include "tree_fixture.h"

namespace {

using Lines = std::vector<std::wstring>;

int overlayOf(HWND tree, HTREEITEM item) {
    return (TreeView_GetItemState(tree, item, TVIS_OVERLAYMASK) & TVIS_OVERLAYMASK) >> 8;
}

TEST_F(TreeTest, InsertsAtTheEndAfterAnItemOrSorted) {
    auto insert = [&](const wchar_t* name, HTREEITEM after, int sort) {
        return KxTreeView_InsertItemEx(tree, nullptr, carl, after, nullptr, nullptr, nullptr, name, name[0], sort);
    };
    HTREEITEM berg2 = insert(L"Berg", nullptr, 1);
    insert(L"Lind", nullptr, 1);
    insert(L"Falk", nullptr, 1);
    insert(L"Zorn", nullptr, 0);
    insert(L"Arndt", berg2, 0);
    insert(L"Kern", berg2, 1);  // sorting wins over the position
    EXPECT_EQ((Lines{L"Berg", L"Arndt", L"Falk", L"Kern", L"Lind", L"Zorn"}), outline(child(carl)));
    EXPECT_EQ(L'F', KxTreeView_GetItemData(tree, next(next(berg2))));
    HTREEITEM blank = KxTreeView_InsertItem(tree, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 9, 0);
    EXPECT_EQ(L"", text(blank));
    EXPECT_EQ(blank, next(lind));
}

TEST_F(TreeTest, InsertAddsTheNamedBitmapToTheImageList) {
    HIMAGELIST images = ImageList_Create(16, 16, ILC_COLOR24 | ILC_MASK, 2, 2);
    int image = -5;
    for (int expected : {0, 1}) {
        HTREEITEM item = KxTreeView_InsertItem(tree, kvtest::ResourceModule(), nullptr, images,
                                               L"BtnDelFmt", &image, L"x", 1, 0);
        EXPECT_EQ(expected, image);
        TVITEMW data = itemRecord(item, TVIF_IMAGE | TVIF_SELECTEDIMAGE);
        TreeView_GetItem(tree, &data);
        EXPECT_EQ(expected, data.iImage);
        EXPECT_EQ(expected, data.iSelectedImage);
    }
    // A missing bitmap inserts nothing and leaves the index alone.
    EXPECT_EQ(nullptr, KxTreeView_InsertItem(tree, kvtest::ResourceModule(), nullptr, images,
                                             L"NoSuchBitmap", &image, L"y", 2, 0));
    EXPECT_EQ(1, image);
    EXPECT_EQ(2, ImageList_GetImageCount(images));
    EXPECT_EQ(8u, TreeView_GetCount(tree));
    ImageList_Destroy(images);
}

TEST_F(TreeTest, CopyFillsAnInsertRecordWithoutStateOrMark) {
    TVITEMW images = itemRecord(berg, TVIF_IMAGE | TVIF_SELECTEDIMAGE);
    images.iImage = 2;
    images.iSelectedImage = 3;
    TreeView_SetItem(tree, &images);
    KxTreeView_SetCheckState(tree, berg, 1);
    KxTreeView_SetMark(tree, berg, 2);

    TVINSERTSTRUCTW record = {};
    ASSERT_EQ(1, KxTreeView_CopyItem(tree, berg, 6, &record));
    EXPECT_STREQ(L"(1001)", record.item.pszText);  // at most 6 characters
    EXPECT_EQ(1001, record.item.lParam);
    EXPECT_EQ(2, record.item.iImage);
    EXPECT_EQ(3, record.item.iSelectedImage);
    EXPECT_EQ(1, record.item.cChildren);
    record.hParent = lind;
    record.hInsertAfter = TVI_LAST;
    HTREEITEM copy = TreeView_InsertItem(tree, &record);
    FreeMemory(record.item.pszText);
    EXPECT_EQ(L"(1001)", text(copy));
    EXPECT_EQ(0, KxTreeView_GetCheckState(tree, copy));
    EXPECT_EQ(0, overlayOf(tree, copy));

    EXPECT_EQ(0, KxTreeView_CopyItem(tree, berg, 8, nullptr));
    EXPECT_EQ(0, KxTreeView_CopyItem(tree, nullptr, 8, &record));
    KvText_FailAllocation(1);
    EXPECT_EQ(0, KxTreeView_CopyItem(tree, berg, 8, &record));
}

TEST_F(TreeTest, MoveKeepsValuesAndChildrenButNotStateAndMark) {
    KxTreeView_SetCheckState(tree, berg, 1);
    KxTreeView_SetMark(tree, berg, 3);
    KxTreeView_SetCheckState(tree, notes, 1);
    HTREEITEM moved = KxTreeView_MoveItem(tree, berg, lind, nullptr, 1);
    EXPECT_EQ((Lines{L"(1002) Lind GmbH", L"  Carl Lind", L"  (1001) Berg & Co", L"    Anna Berg",
                     L"      Notes", L"    Bernd Berg"}),
              outline());
    EXPECT_EQ(moved, selection());
    EXPECT_EQ(1001, KxTreeView_GetItemData(tree, moved));
    HTREEITEM movedNotes = child(child(moved));
    EXPECT_EQ(111, KxTreeView_GetItemData(tree, movedNotes));
    EXPECT_EQ(0, KxTreeView_GetCheckState(tree, moved));
    EXPECT_EQ(0, KxTreeView_GetCheckState(tree, movedNotes));
    EXPECT_EQ(0, overlayOf(tree, moved));

    // Without its children, after an item; texts of up to 256 characters move along.
    std::wstring longText(300, L'x');
    TVITEMW data = itemRecord(carl, TVIF_TEXT);
    data.pszText = &longText[0];
    TreeView_SetItem(tree, &data);
    HTREEITEM movedCarl = KxTreeView_MoveItem(tree, carl, nullptr, lind, 0);
    EXPECT_EQ(256u, text(movedCarl).size());
    EXPECT_EQ(movedCarl, next(lind));
    KxTreeView_MoveItem(tree, moved, nullptr, nullptr, 0);
    EXPECT_EQ((Lines{L"(1002) Lind GmbH", std::wstring(256, L'x'), L"(1001) Berg & Co"}), outline());
}

TEST_F(TreeTest, MoveRefusesItsOwnSubtreeAndLosesNothingWhenMemoryRunsOut) {
    Lines before = outline();
    EXPECT_EQ(nullptr, KxTreeView_MoveItem(tree, berg, notes, nullptr, 1));
    EXPECT_EQ(nullptr, KxTreeView_MoveItem(tree, berg, berg, nullptr, 1));
    EXPECT_EQ(nullptr, KxTreeView_MoveItem(tree, nullptr, lind, nullptr, 1));
    // The third copy (the notes) fails: the half-made copy goes, the original stays.
    KvText_FailAllocation(3);
    EXPECT_EQ(nullptr, KxTreeView_MoveItem(tree, berg, lind, nullptr, 1));
    EXPECT_EQ(before, outline());
    EXPECT_EQ(berg, root());
}

TEST_F(TreeTest, TextAndValueAccessWithKvtextBlocks) {
    wchar_t* read = KxTreeView_GetItemText(tree, annaBerg);
    EXPECT_STREQ(L"Anna Berg", read);
    FreeMemory(read);
    auto* block = static_cast<wchar_t*>(GetMemory(300 * sizeof(wchar_t)));
    kv_strcpy(block, std::wstring(200, L'y').c_str(), 300);
    EXPECT_EQ(1, KxTreeView_SetItemText(tree, annaBerg, block));  // the caller keeps the block
    read = KxTreeView_GetItemText(tree, annaBerg);
    EXPECT_EQ(119, lstrlenW(read));
    FreeMemory(read);
    EXPECT_EQ(0, KxTreeView_SetItemText(tree, nullptr, block));
    EXPECT_EQ(0, KxTreeView_SetItemText(tree, annaBerg, nullptr));
    // An item of another tree: this one refuses the text, and the block is freed.
    HWND other = host->createChild(WC_TREEVIEWW, L"", 0, 0, 0, 10, 10, 2);
    HTREEITEM foreign = KxTreeView_InsertItem(other, nullptr, nullptr, nullptr, nullptr, nullptr, L"o", 5, 0);
    int live = KvText_LiveAllocations();
    EXPECT_EQ(0, KxTreeView_SetItemText(tree, foreign, block));
    EXPECT_EQ(live - 1, KvText_LiveAllocations());
    EXPECT_EQ(0, KxTreeView_SetItemData(tree, foreign, 3));
    DestroyWindow(other);
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, KxTreeView_GetItemText(tree, annaBerg));

    EXPECT_TRUE(KxTreeView_SetItemData(tree, carl, -77));
    EXPECT_EQ(-77, KxTreeView_GetItemData(tree, carl));
}

TEST_F(TreeTest, MarksAreOverlayBitsAndMarkAllWalksFromTheStart) {
    KxTreeView_SetCheckState(tree, berg, 1);
    TreeView_SetItemState(tree, berg, TVIS_BOLD, TVIS_BOLD);
    EXPECT_TRUE(KxTreeView_SetMark(tree, berg, 3));
    EXPECT_EQ(0, KxTreeView_SetMark(tree, berg, 16));
    EXPECT_EQ(0, KxTreeView_SetMark(tree, berg, -1));
    EXPECT_EQ(3, overlayOf(tree, berg));
    EXPECT_EQ(1, KxTreeView_GetCheckState(tree, berg));
    EXPECT_EQ(static_cast<UINT>(TVIS_BOLD), state(berg, TVIS_BOLD));

    auto marks = [&] {
        std::vector<int> overlays;
        for (HTREEITEM item : {berg, annaBerg, notes, berndBerg, lind, carl}) overlays.push_back(overlayOf(tree, item));
        return overlays;
    };
    // From Anna Berg: her subtree and her following sibling, but not the notes.
    EXPECT_EQ(1, KxTreeView_MarkAll(tree, notes, 5, annaBerg));
    EXPECT_EQ((std::vector<int>{3, 5, 0, 5, 0, 0}), marks());
    // From the top, except Berg: its children are still marked.
    EXPECT_EQ(1, KxTreeView_MarkAll(tree, berg, 1, nullptr));
    EXPECT_EQ((std::vector<int>{3, 1, 1, 1, 1, 1}), marks());
}

TEST_F(TreeTest, SettingStateBitsNeedsThemClearAndClearingFlipsThem) {
    KxTreeView_SetCheckState(tree, berg, 1);
    EXPECT_TRUE(KxTreeView_SetItemState(tree, berg, 1, TVIS_BOLD));
    EXPECT_EQ(0, KxTreeView_SetItemState(tree, berg, 1, TVIS_BOLD | TVIS_CUT));  // bold is set
    // Clearing bold and cut with only bold set turns cut on.
    EXPECT_TRUE(KxTreeView_SetItemState(tree, berg, 0, TVIS_BOLD | TVIS_CUT));
    EXPECT_EQ(static_cast<UINT>(TVIS_CUT), state(berg, TVIS_BOLD | TVIS_CUT));
    EXPECT_EQ(0, KxTreeView_SetItemState(tree, berg, 0, TVIS_BOLD));
    EXPECT_EQ(1, KxTreeView_GetCheckState(tree, berg));  // only the low byte is written

    EXPECT_EQ(1, KxTreeView_SetAllItemsState(tree, berndBerg, 1, TVIS_BOLD, nullptr));
    for (HTREEITEM item : {berg, annaBerg, notes, lind, carl}) EXPECT_TRUE(state(item, TVIS_BOLD));
    EXPECT_FALSE(state(berndBerg, TVIS_BOLD));
    EXPECT_EQ(1, KxTreeView_SetAllItemsState(tree, nullptr, 0, TVIS_BOLD, lind));
    EXPECT_FALSE(state(carl, TVIS_BOLD));
    EXPECT_TRUE(state(berg, TVIS_BOLD));
}

TEST_F(TreeTest, ExpandTreeOpensEveryLevelAndCollapsesOnlyTheTop) {
    for (HTREEITEM item : {berg, annaBerg}) TreeView_Expand(tree, item, TVE_COLLAPSE);
    EXPECT_EQ(1, KxTreeView_ExpandTree(tree, 1));
    for (HTREEITEM item : {berg, annaBerg, lind}) EXPECT_TRUE(state(item, TVIS_EXPANDED));
    EXPECT_EQ(1, KxTreeView_ExpandTree(tree, 0));
    EXPECT_FALSE(state(berg, TVIS_EXPANDED) | state(lind, TVIS_EXPANDED));
    EXPECT_TRUE(state(annaBerg, TVIS_EXPANDED));
}

TEST_F(TreeTest, EveryExportSurvivesNullAndDestroyedTrees) {
    HWND destroyed = host->createChild(WC_TREEVIEWW, L"", 0, 0, 0, 10, 10, 3);
    DestroyWindow(destroyed);
    for (HWND bad : {static_cast<HWND>(nullptr), destroyed}) {
        int image = 0;
        EXPECT_EQ(nullptr, KxTreeView_InsertItem(bad, nullptr, nullptr, nullptr, nullptr, &image, L"x", 1, 0));
        TVINSERTSTRUCTW record = {};
        EXPECT_EQ(0, KxTreeView_CopyItem(bad, berg, 10, &record));
        EXPECT_EQ(nullptr, KxTreeView_MoveItem(bad, berg, nullptr, nullptr, 1));
        EXPECT_EQ(0, KxTreeView_SetItemText(bad, berg, static_cast<wchar_t*>(GetMemory(8))));  // freed
        EXPECT_EQ(nullptr, KxTreeView_GetItemText(bad, berg));
        EXPECT_EQ(0, KxTreeView_SetItemData(bad, berg, 1));
        EXPECT_EQ(0, KxTreeView_GetItemData(bad, berg));
        EXPECT_EQ(0, KxTreeView_SetCheckState(bad, berg, 1));
        EXPECT_EQ(-1, KxTreeView_GetCheckState(bad, berg));
        EXPECT_EQ(0, KxTreeView_SetMark(bad, berg, 1));
        EXPECT_EQ(0, KxTreeView_MarkAll(bad, nullptr, 1, nullptr));
        EXPECT_EQ(0, KxTreeView_SetItemState(bad, berg, 1, TVIS_BOLD));
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
        item = berg;
        EXPECT_EQ(0, KxTreeView_HandleCheckChangeEx(bad, 1, 1, 1, &item));
        EXPECT_EQ(0, KxTreeView_HandleCheckChangeExRight(bad, 1, 1, 1, nullptr, 0, &item));
        EXPECT_EQ(nullptr, KxTreeView_GetItemWithData(bad, nullptr, 1, nullptr));
        wchar_t text[] = L"berg";
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
