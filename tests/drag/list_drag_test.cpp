// List rows dragged with the real mouse: within the list (the row moves), onto another window
// (the drop is reported), cancelled by Escape or a lost capture; and the cell click helpers.
#include "drag_fixture.h"

namespace {

using Values = std::vector<int>;
const Values kUnmoved = {100, 101, 102, 103, 104, 105, 106, 107};

TEST_F(DragTest, ARowMovesToTheTargetWithItsCellsAndIsSelected) {
    ListView_SetItemState(list, 6, LVIS_CUT, LVIS_CUT);
    bool captured = false;
    duringDrag = [&] { captured = captured || GetCapture() == *host; };
    dragTo(list, onRow(5), list, onRow(2));
    EXPECT_EQ(2u, listResult);
    EXPECT_EQ((Values{100, 101, 105, 102, 103, 104, 106, 107}), rowValues());
    wchar_t city[20];
    ListView_GetItemText(list, 2, 1, city, 20);
    EXPECT_STREQ(L"City 5", city);
    EXPECT_EQ(static_cast<UINT>(LVIS_SELECTED), ListView_GetItemState(list, 2, LVIS_SELECTED));
    EXPECT_EQ(static_cast<UINT>(LVIS_CUT), ListView_GetItemState(list, 6, LVIS_CUT));  // states stay
    EXPECT_TRUE(captured);  // the parent held the mouse meanwhile
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_EQ(0, cancels);  // releasing the capture at the end is no cancel
    ASSERT_GE(events.size(), 3u);
    EXPECT_EQ((std::vector<UINT>{LVN_BEGINDRAG, WM_MOUSEMOVE}), std::vector<UINT>(events.begin(), events.begin() + 2));
    EXPECT_EQ(static_cast<UINT>(WM_LBUTTONUP), events.back());

    // Dropped lower: inserted at the target and the old row deleted, it stands above the target.
    dragTo(list, onRow(1), list, onRow(4));
    EXPECT_EQ(4u, listResult);
    EXPECT_EQ((Values{100, 105, 102, 101, 103, 104, 106, 107}), rowValues());
    // On itself, or outside every row from the start: -1 and nothing moves.
    dragTo(list, onRow(3), list, onRow(3));
    EXPECT_EQ(static_cast<UINT>(-1), listResult);
    RECT client;
    GetClientRect(list, &client);
    dragTo(list, onRow(7), list, {60, client.bottom - 5});
    EXPECT_EQ(static_cast<UINT>(-1), listResult);
    EXPECT_EQ((Values{100, 105, 102, 101, 103, 104, 106, 107}), rowValues());
    EXPECT_EQ(static_cast<UINT>(-1), KxListView_OnLButtonUp(nullptr, list, 0, 0));  // no drag
}

TEST_F(DragTest, SubItemImagesMoveOnlyWithTheWindowStyleBit) {
    auto cellImage = [&](int row) { return KxListView_GetItemBmp(list, row, 1); };
    ListView_SetExtendedListViewStyle(list, LVS_EX_SUBITEMIMAGES);  // so the list keeps them
    for (int row = 0; row < 8; ++row) KxListView_SetItemBmp(list, row, 1, 20 + row);
    dragTo(list, onRow(4), list, onRow(0));
    EXPECT_NE(24, cellImage(0));
    SetWindowLongW(list, GWL_EXSTYLE, GetWindowLongW(list, GWL_EXSTYLE) | 0x2);
    dragTo(list, onRow(6), list, onRow(1));
    EXPECT_EQ(26, cellImage(1));
}

TEST_F(DragTest, ARowDraggedOntoAnotherWindowReportsWhereItLanded) {
    listMode = kTowards;
    POINT onTree = onItem(items[3]);
    MapWindowPoints(tree, *host, &onTree, 1);
    dragTo(list, onRow(2), *host, onTree);
    EXPECT_EQ(1, exResult);
    EXPECT_EQ(tree, dropWindow);
    EXPECT_EQ(items[3], dropItem);
    EXPECT_EQ(nullptr, GetCapture());
    // Onto another list view: the window, no item. Onto the parent itself: nothing.
    MoveWindow(tree, 260, 0, 260, 200, TRUE);
    HWND other = host->createChild(WC_LISTVIEWW, L"", WS_VISIBLE | LVS_REPORT, 260, 300, 250, 60, 9);
    dragTo(list, onRow(2), *host, {300, 330});
    EXPECT_EQ(0, exResult);
    EXPECT_EQ(other, dropWindow);
    EXPECT_EQ(nullptr, dropItem);
    dragTo(list, onRow(2), *host, {400, 250});
    EXPECT_EQ(0, exResult);
    EXPECT_EQ(nullptr, dropWindow);
    EXPECT_EQ(kUnmoved, rowValues());
    // No drag under way, or nowhere to report it: 0 and nothing stored.
    dropWindow = *host;
    EXPECT_EQ(0, KxListView_OnLButtonUpEx(*host, 0, 0, &dropWindow, nullptr));
    EXPECT_EQ(*host, dropWindow);
}

TEST_F(DragTest, EscapeOrALostCaptureEndsAListDragLeavingNothing) {
    for (Mode mode : {kWithin, kTowards}) {
        listMode = mode;
        cancels = 0;
        PressAndPull(list, onRow(5));
        MoveMouse(list, onRow(1).x, onRow(1).y);
        SetFocus(list);
        PressKey(VK_ESCAPE);
        EXPECT_EQ(1, cancels);
        EXPECT_EQ(nullptr, GetCapture());
        Release();
        PressAndPull(list, onRow(5));
        MoveMouse(list, onRow(1).x, onRow(1).y);
        SetCapture(tree);  // another window takes the capture, and keeps it
        kvtest::PumpMessages();
        EXPECT_EQ(2, cancels);
        EXPECT_EQ(tree, GetCapture());
        ReleaseCapture();
        Release();
        EXPECT_EQ(kUnmoved, rowValues());
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
    // Clicks on the icon of a toggling column swap images 1 and 2.
    const int toggling[] = {2, 0};
    row = column = -1;
    EXPECT_EQ(1, KxListView_HandleMouseClick(list, 1, 2, toggling, 1, 2, &row, &column));
    EXPECT_EQ(3, row);
    EXPECT_EQ(1, KxListView_GetItemBmp(list, 3, 0));
    row = column = -1;
    EXPECT_EQ(1, KxListView_HandleMouseClick(list, 1, 2, toggling, 1, 2, &row, &column));
    EXPECT_EQ(2, KxListView_GetItemBmp(list, 3, 0));
    // A given cell counts as a click on its icon; a third image stays; so does a column not
    // among the first `count`, and every image without the toggle flag.
    KxListView_SetItemBmp(list, 5, 0, 3);
    row = 5;
    column = 0;
    EXPECT_EQ(1, KxListView_HandleMouseClick(list, 1, 2, toggling, 1, 2, &row, &column));
    EXPECT_EQ(3, KxListView_GetItemBmp(list, 5, 0));
    row = 6;
    EXPECT_EQ(1, KxListView_HandleMouseClick(list, 1, 1, toggling, 1, 2, &row, &column));
    EXPECT_EQ(1, KxListView_HandleMouseClick(list, 0, 2, toggling, 1, 2, &row, &column));
    EXPECT_EQ(1, KxListView_GetItemBmp(list, 6, 0));
    // On the label: found, but nothing toggles. Below the rows: nothing is hit.
    MoveMouse(list, onRow(3).x + 20, onRow(3).y);
    row = column = -1;
    EXPECT_EQ(1, KxListView_HandleMouseClick(list, 1, 2, toggling, 1, 2, &row, &column));
    EXPECT_EQ(2, KxListView_GetItemBmp(list, 3, 0));
    RECT client;
    GetClientRect(list, &client);
    MoveMouse(list, 20, client.bottom - 4);
    EXPECT_EQ(0, KxListView_HitTest(list, &row, &column));
    EXPECT_EQ(-1, row);
    EXPECT_EQ(-1, column);
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
    // A list destroyed in the middle of its drag: the release still ends it.
    PressAndPull(list, onRow(2));
    DestroyWindow(list);
    Release();
    EXPECT_EQ(static_cast<UINT>(-1), listResult);
    EXPECT_EQ(nullptr, GetCapture());
}

}  // namespace
