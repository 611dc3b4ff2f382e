// List rows dragged with the real mouse: within the list (the row moves), onto another window
// (the drop is reported), cancelled by Escape or a lost capture; and the cell click helpers.
#include "drag_fixture.h"

namespace {

using Values = std::vector<int>;

TEST_F(DragTest, ARowDraggedUpwardsMovesWithItsCellsAndIsSelected) {
    ListView_SetItemState(list, 6, LVIS_CUT, LVIS_CUT);
    bool captured = false;
    duringDrag = [&] { captured = captured || GetCapture() == *host; };
    PressAndPull(list, onRow(5));
    POINT target = onRow(2);
    MoveMouse(list, target.x, target.y);
    Release();

    ASSERT_EQ(1u, listResults.size());
    EXPECT_EQ(2u, listResults[0]);
    EXPECT_EQ((Values{100, 101, 105, 102, 103, 104, 106, 107}), rowValues());
    wchar_t city[20];
    ListView_GetItemText(list, 2, 1, city, 20);
    EXPECT_STREQ(L"City 5", city);
    EXPECT_EQ(static_cast<UINT>(LVIS_SELECTED), ListView_GetItemState(list, 2, LVIS_SELECTED));
    EXPECT_EQ(static_cast<UINT>(LVIS_CUT), ListView_GetItemState(list, 6, LVIS_CUT));  // states stay
    EXPECT_TRUE(captured);  // the parent held the mouse while the row was dragged
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_EQ(0, cancels);  // releasing the capture at the end is no cancel
    // The parent saw the notification, then the mouse, then the release.
    ASSERT_GE(events.size(), 3u);
    EXPECT_EQ(static_cast<UINT>(LVN_BEGINDRAG), events.front());
    EXPECT_EQ(static_cast<UINT>(WM_MOUSEMOVE), events[1]);
    EXPECT_EQ(static_cast<UINT>(WM_LBUTTONUP), events.back());
}

TEST_F(DragTest, ARowDroppedLowerLandsAboveTheTargetRow) {
    PressAndPull(list, onRow(1));
    POINT target = onRow(4);
    MoveMouse(list, target.x, target.y);
    Release();
    // Inserted at 4 and the old row 1 deleted: the row stands at 3, the target row at 4.
    EXPECT_EQ(4u, listResults.back());
    EXPECT_EQ((Values{100, 102, 103, 101, 104, 105, 106, 107}), rowValues());
    EXPECT_EQ(static_cast<UINT>(LVIS_SELECTED), ListView_GetItemState(list, 4, LVIS_SELECTED));
}

TEST_F(DragTest, ARowDroppedOnItselfOrOutsideEveryRowStays) {
    PressAndPull(list, onRow(3));
    POINT same = onRow(3);
    MoveMouse(list, same.x, same.y);
    Release();
    EXPECT_EQ(static_cast<UINT>(-1), listResults.back());
    // Outside every row from the start: no target.
    RECT client;
    GetClientRect(list, &client);
    PressAndPull(list, onRow(7));
    MoveMouse(list, 60, client.bottom - 5);
    Release();
    EXPECT_EQ(static_cast<UINT>(-1), listResults.back());
    EXPECT_EQ((Values{100, 101, 102, 103, 104, 105, 106, 107}), rowValues());
    EXPECT_EQ(nullptr, GetCapture());
    // No drag under way: -1.
    EXPECT_EQ(static_cast<UINT>(-1), KxListView_OnLButtonUp(nullptr, list, 0, 0));
}

TEST_F(DragTest, SubItemImagesMoveOnlyWithTheWindowStyleBit) {
    auto cellImage = [&](int row) {
        LVITEMW item = {};
        item.mask = LVIF_IMAGE;
        item.iItem = row;
        item.iSubItem = 1;
        ListView_GetItem(list, &item);
        return item.iImage;
    };
    // The list keeps sub-item images only with its own extended style.
    ListView_SetExtendedListViewStyle(list, LVS_EX_SUBITEMIMAGES);
    for (int row = 0; row < 8; ++row) KxListView_SetItemBmp(list, row, 1, 20 + row);
    PressAndPull(list, onRow(4));
    POINT target = onRow(0);
    MoveMouse(list, target.x, target.y);
    Release();
    EXPECT_NE(24, cellImage(0));
    SetWindowLongW(list, GWL_EXSTYLE, GetWindowLongW(list, GWL_EXSTYLE) | 0x2);
    PressAndPull(list, onRow(6));
    target = onRow(1);
    MoveMouse(list, target.x, target.y);
    Release();
    EXPECT_EQ(26, cellImage(1));
}

TEST_F(DragTest, ARowDraggedOntoAnotherWindowReportsWhereItLanded) {
    listMode = kTowards;
    // Onto the tree: the item under the point.
    PressAndPull(list, onRow(2));
    POINT onTree = onItem(items[3]);
    MapWindowPoints(tree, *host, &onTree, 1);
    MoveMouse(*host, onTree.x, onTree.y);
    Release();
    EXPECT_EQ(1, exResults.back());
    EXPECT_EQ(tree, dropWindow);
    EXPECT_EQ(items[3], dropItem);
    EXPECT_EQ(nullptr, GetCapture());

    // Onto another list view: the window, no item.
    MoveWindow(tree, 260, 0, 260, 200, TRUE);
    HWND other = host->createChild(WC_LISTVIEWW, L"", WS_VISIBLE | LVS_REPORT, 260, 300, 250, 60, 9);
    PressAndPull(list, onRow(2));
    MoveMouse(*host, 300, 330);
    Release();
    EXPECT_EQ(0, exResults.back());
    EXPECT_EQ(other, dropWindow);
    EXPECT_EQ(nullptr, dropItem);
    DestroyWindow(other);

    // Onto the parent itself: nothing.
    PressAndPull(list, onRow(2));
    MoveMouse(*host, 400, 300);
    Release();
    EXPECT_EQ(0, exResults.back());
    EXPECT_EQ(nullptr, dropWindow);
    EXPECT_EQ(nullptr, dropItem);
    EXPECT_EQ((Values{100, 101, 102, 103, 104, 105, 106, 107}), rowValues());
    // No drag under way, or nowhere to report: 0 and nothing stored.
    dropWindow = *host;
    EXPECT_EQ(0, KxListView_OnLButtonUpEx(*host, 0, 0, &dropWindow, nullptr));
    EXPECT_EQ(*host, dropWindow);
}

TEST_F(DragTest, EscapeOrALostCaptureEndsAListDragLeavingNothing) {
    for (Mode mode : {kWithin, kTowards}) {
        listMode = mode;
        cancels = 0;
        PressAndPull(list, onRow(5));
        POINT target = onRow(1);
        MoveMouse(list, target.x, target.y);
        SetFocus(list);
        PressKey(VK_ESCAPE);
        EXPECT_EQ(1, cancels);
        EXPECT_EQ(nullptr, GetCapture());
        Release();
        EXPECT_EQ((Values{100, 101, 102, 103, 104, 105, 106, 107}), rowValues());

        // Another window takes the capture.
        PressAndPull(list, onRow(5));
        MoveMouse(list, target.x, target.y);
        SetCapture(tree);
        kvtest::PumpMessages();
        EXPECT_EQ(2, cancels);
        EXPECT_EQ(tree, GetCapture());  // the new holder keeps it
        ReleaseCapture();
        Release();
        EXPECT_EQ((Values{100, 101, 102, 103, 104, 105, 106, 107}), rowValues());
    }
    EXPECT_EQ(0, KxListView_OnCancelDrag(list));
}

TEST_F(DragTest, HitTestAndClickToggleWorkOnCells) {
    HIMAGELIST images = ImageList_Create(16, 16, ILC_COLOR24, 4, 0);
    HBITMAP picture = kvtest::MakeBitmap(64, 16, [](int x, int) { return RGB(x * 4, 0, 0); });
    ImageList_Add(images, picture, nullptr);
    DeleteObject(picture);
    ListView_SetImageList(list, images, LVSIL_SMALL);
    for (int row = 0; row < 8; ++row) KxListView_SetItemBmp(list, row, 0, row == 3 ? 2 : 1);

    RECT icon = {};
    ListView_GetItemRect(list, 3, &icon, LVIR_ICON);
    MoveMouse(list, (icon.left + icon.right) / 2, (icon.top + icon.bottom) / 2);
    int row = -5, column = -5;
    EXPECT_EQ(1, KxListView_HitTest(list, &row, &column));
    EXPECT_EQ(3, row);
    EXPECT_EQ(0, column);
    // A click on the icon of a toggling column swaps images 1 and 2.
    const int toggling[] = {2, 0};
    row = column = -1;
    EXPECT_EQ(1, KxListView_HandleMouseClick(list, 1, 2, toggling, 1, 2, &row, &column));
    EXPECT_EQ(3, row);
    EXPECT_EQ(1, KxListView_GetItemBmp(list, 3, 0));
    EXPECT_EQ(1, KxListView_HandleMouseClick(list, 1, 2, toggling, 1, 2, &row, &column));
    EXPECT_EQ(2, KxListView_GetItemBmp(list, 3, 0));
    // Given cells count as clicks on the icon; a third image stays.
    KxListView_SetItemBmp(list, 5, 0, 3);
    row = 5;
    column = 0;
    EXPECT_EQ(1, KxListView_HandleMouseClick(list, 1, 1, toggling + 1, 1, 2, &row, &column));
    EXPECT_EQ(3, KxListView_GetItemBmp(list, 5, 0));
    row = 6;
    EXPECT_EQ(1, KxListView_HandleMouseClick(list, 1, 1, toggling, 1, 2, &row, &column));
    EXPECT_EQ(1, KxListView_GetItemBmp(list, 6, 0));  // column 0 is not among the first entry
    EXPECT_EQ(1, KxListView_HandleMouseClick(list, 0, 2, toggling, 1, 2, &row, &column));
    EXPECT_EQ(1, KxListView_GetItemBmp(list, 6, 0));  // toggling off

    // On the label: found, but not on the icon, so nothing toggles.
    POINT label = onRow(3);
    MoveMouse(list, label.x + 20, label.y);
    row = column = -1;
    EXPECT_EQ(1, KxListView_HandleMouseClick(list, 1, 2, toggling, 1, 2, &row, &column));
    EXPECT_EQ(2, KxListView_GetItemBmp(list, 3, 0));
    // Below the rows nothing is hit.
    RECT client;
    GetClientRect(list, &client);
    MoveMouse(list, 20, client.bottom - 4);
    EXPECT_EQ(0, KxListView_HitTest(list, &row, &column));
    EXPECT_EQ(-1, row);
    EXPECT_EQ(-1, column);
    row = column = -1;
    EXPECT_EQ(0, KxListView_HandleMouseClick(list, 1, 2, toggling, 1, 2, &row, &column));
    EXPECT_EQ(0, KxListView_HandleMouseClick(list, 1, 2, toggling, 1, 2, nullptr, nullptr));
    ImageList_Destroy(ListView_SetImageList(list, nullptr, LVSIL_SMALL));
}

TEST_F(DragTest, ListHandlersSurviveNullAndDestroyedWindows) {
    HWND destroyed = host->createChild(WC_LISTVIEWW, L"", LVS_REPORT, 0, 0, 10, 10, 9);
    DestroyWindow(destroyed);
    NMLISTVIEW notify = {};
    notify.iItem = 1;
    for (HWND bad : {static_cast<HWND>(nullptr), destroyed}) {
        KxListView_OnBeginDrag(bad, &notify);
        KxListView_OnBeginDragEx(bad, &notify);
        KxListView_OnMouseMove(bad, bad, 1, 1);
        KxListView_OnMouseMoveEx(bad, bad, 1, 1);
        EXPECT_EQ(static_cast<UINT>(-1), KxListView_OnLButtonUp(bad, bad, 1, 1));
        EXPECT_EQ(0, KxListView_OnLButtonUpEx(bad, 1, 1, &dropWindow, &dropItem));
        EXPECT_EQ(0, KxListView_OnCancelDrag(bad));
        int row = 3, column = 3;
        EXPECT_EQ(0, KxListView_HitTest(bad, &row, &column));
        EXPECT_EQ(-1, row);
        EXPECT_EQ(0, KxListView_HandleMouseClick(bad, 1, 0, nullptr, 1, 2, &row, &column));
    }
    KxListView_OnBeginDrag(list, nullptr);
    EXPECT_EQ(nullptr, GetCapture());
    // A list destroyed in the middle of its drag: the drag still ends cleanly.
    PressAndPull(list, onRow(2));
    DestroyWindow(list);
    Release();
    EXPECT_EQ(static_cast<UINT>(-1), listResults.back());
    EXPECT_EQ(nullptr, GetCapture());
}

}  // namespace
