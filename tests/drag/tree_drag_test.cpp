// Tree items dragged with the real mouse: within the tree (drop highlight, timer, scrolling, the
// three ways of ending), onto another window, cancelled; the tree drag flag, which keeps tree copy,
// move and search by value from working for exactly the life of the drag; and the drag image on
// the screen.
#include "drag_fixture.h"

namespace {

using Values = std::vector<int>;
const Values kUnmoved = {0, 1, 2, 3, 4, 5, 6, 7};

TEST_F(DragTest, ATreeItemMovesAfterTheTargetWithTheFlagSetMeanwhile) {
    // While the item is dragged: the target is highlighted, the scroll timer runs, and copy, move
    // and search by value refuse to work.
    HTREEITEM highlighted = nullptr, found = nullptr, moved = items[0];
    int copied = -1;
    duringDrag = [&] {
        highlighted = TreeView_GetDropHilight(tree);
        found = KxTreeView_GetItemWithData(tree, nullptr, 6, nullptr);
        TVINSERTSTRUCTW record = {};
        copied = KxTreeView_CopyItem(tree, items[6], 20, &record);
        moved = KxTreeView_MoveItem(tree, items[6], nullptr, nullptr, 0);
    };
    PressAndPull(tree, onItem(items[5]));
    MoveMouse(tree, onItem(items[1]).x, onItem(items[1]).y);
    kvtest::PumpFor(200);
    EXPECT_GE(scrollTimerTicks(), 1);
    Release();
    EXPECT_EQ(items[1], highlighted);
    EXPECT_EQ(nullptr, found);
    EXPECT_EQ(0, copied);
    EXPECT_EQ(nullptr, moved);
    EXPECT_EQ((Values{0, 1, 5, 2, 3, 4, 6, 7}), treeValues());
    EXPECT_EQ(itemWithValue(5), TreeView_GetSelection(tree));
    EXPECT_EQ(nullptr, TreeView_GetDropHilight(tree));
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_EQ(0, cancels);
    EXPECT_EQ(static_cast<UINT>(TVN_BEGINDRAGW), events.front());
    // Afterwards they work again, and the timer has stopped.
    EXPECT_EQ(items[6], KxTreeView_GetItemWithData(tree, nullptr, 6, nullptr));
    host->clear();
    kvtest::PumpFor(200);
    EXPECT_EQ(0, scrollTimerTicks());

    // Within 10 pixels of the top: first. On the last sibling: last. On itself: nothing moves.
    dragTo(tree, onItem(items[4]), tree, {onItem(items[0]).x, 4});
    EXPECT_EQ((Values{4, 0, 1, 5, 2, 3, 6, 7}), treeValues());
    dragTo(tree, onItem(itemWithValue(0)), tree, onItem(itemWithValue(7)));
    EXPECT_EQ((Values{4, 1, 5, 2, 3, 6, 7, 0}), treeValues());
    dragTo(tree, onItem(itemWithValue(2)), tree, onItem(itemWithValue(2)));
    EXPECT_EQ((Values{4, 1, 5, 2, 3, 6, 7, 0}), treeValues());
    // Within 10 pixels of the bottom of a tree whose items reach it: last.
    MoveWindow(tree, 260, 0, 260, 60, TRUE);
    kvtest::PumpMessages();
    RECT client;
    GetClientRect(tree, &client);
    TVHITTESTINFO hit = {{onItem(itemWithValue(4)).x, client.bottom - 3}, 0, nullptr};
    ASSERT_TRUE(TreeView_GetNextSibling(tree, TreeView_HitTest(tree, &hit)));
    dragTo(tree, onItem(itemWithValue(4)), tree, hit.pt);
    EXPECT_EQ(4, treeValues().back());
}

TEST_F(DragTest, TheTreeScrollsWhileTheCursorRestsOutsideIt) {
    for (int value = 8; value < 40; ++value) addItem(value);
    MoveWindow(tree, 260, 60, 260, 120, TRUE);
    kvtest::PumpMessages();
    auto firstVisible = [&] { return static_cast<int>(KxTreeView_GetItemData(tree, TreeView_GetFirstVisible(tree))); };
    PressAndPull(tree, onItem(items[1]));
    RECT client;
    GetClientRect(tree, &client);
    // Within 10 pixels below the tree nothing scrolls; further down it does, a line at a time.
    MoveMouse(tree, 40, client.bottom + 5);
    kvtest::PumpFor(250);
    EXPECT_EQ(0, firstVisible());
    MoveMouse(tree, 40, client.bottom + 30);
    kvtest::PumpFor(600);
    EXPECT_GE(firstVisible(), 2);
    // Above the tree it scrolls back up to the first line and stops there.
    MoveMouse(tree, 40, -30);
    for (DWORD start = GetTickCount(); firstVisible() > 0 && GetTickCount() - start < 5000;) kvtest::PumpFor(50);
    kvtest::PumpFor(200);
    EXPECT_EQ(0, firstVisible());
    // Back over an item: it becomes the target.
    MoveMouse(tree, onItem(items[3]).x, onItem(items[3]).y);
    Release();
    Values values = treeValues();
    EXPECT_EQ((Values{0, 2, 3, 1, 4}), Values(values.begin(), values.begin() + 5));
}

TEST_F(DragTest, TheOtherEndingsMoveUnderOrBeforeTheTarget) {
    // Under the target, with its children; never into its own subtree.
    treeEnd = kMoveUnder;
    addItem(50, items[5]);
    TreeView_Expand(tree, items[5], TVE_EXPAND);
    dragTo(tree, onItem(items[5]), tree, onItem(items[2]));
    EXPECT_EQ((Values{0, 1, 2, -105, -250, 3, 4, 6, 7}), treeValues());
    EXPECT_EQ(items[2], newParent);
    EXPECT_EQ(items[1], insertAfter);  // the target's previous sibling
    HTREEITEM moved = newItem;
    EXPECT_EQ(moved, TreeView_GetChild(tree, items[2]));
    TreeView_Expand(tree, items[2], TVE_EXPAND);
    newItem = newParent = insertAfter = nullptr;
    dragTo(tree, onItem(items[2]), tree, onItem(moved));
    EXPECT_EQ(nullptr, newItem);
    EXPECT_EQ((Values{0, 1, 2, -105, -250, 3, 4, 6, 7}), treeValues());
    // Dropped on itself at the tree's left edge: to the top level.
    TreeView_Expand(tree, moved, TVE_EXPAND);
    dragTo(tree, onItem(moved), tree, {1, onItem(moved).y});
    EXPECT_EQ(TVI_ROOT, newParent);
    EXPECT_EQ(TVI_FIRST, insertAfter);  // it had no previous sibling
    EXPECT_EQ((Values{5, -150, 0, 1, 2, 3, 4, 6, 7}), treeValues());

    // Before the target, without children; without the move flag the drag only ends.
    treeEnd = kWithMove;
    dragTo(tree, onItem(itemWithValue(6)), tree, onItem(itemWithValue(1)));
    EXPECT_EQ((Values{5, -150, 0, 6, 1, 2, 3, 4, 7}), treeValues());
    EXPECT_EQ(itemWithValue(0), insertAfter);
    EXPECT_EQ(itemWithValue(6), newItem);
    dragTo(tree, onItem(itemWithValue(4)), tree, onItem(itemWithValue(5)));
    EXPECT_EQ(TVI_FIRST, insertAfter);
    EXPECT_EQ((Values{4, 5, -150, 0, 6, 1, 2, 3, 7}), treeValues());
    moveFlag = 0;
    newItem = nullptr;
    dragTo(tree, onItem(itemWithValue(7)), tree, onItem(itemWithValue(1)));
    EXPECT_EQ(nullptr, newItem);
    EXPECT_EQ((Values{4, 5, -150, 0, 6, 1, 2, 3, 7}), treeValues());
    EXPECT_EQ(nullptr, TreeView_GetDropHilight(tree));
    EXPECT_EQ(itemWithValue(7), KxTreeView_GetItemWithData(tree, nullptr, 7, nullptr));
}

TEST_F(DragTest, ATreeItemDraggedOntoAnotherWindowReportsWhereItLanded) {
    treeMode = kTowards;
    MoveWindow(list, 0, 0, 250, 200, TRUE);  // room below it for a button and for the parent
    HWND button = host->createChild(L"Button", L"Drop", WS_VISIBLE, 100, 300, 100, 40, 8);
    // Onto a list row: 1 and the row, the window left as it was; this drag needs no timer.
    POINT row = onRow(4);
    MapWindowPoints(list, *host, &row, 1);
    dragTo(tree, onItem(items[2]), *host, row);
    EXPECT_EQ(1, exResult);
    EXPECT_EQ(4, dropRow);
    EXPECT_EQ(nullptr, dropWindow);
    EXPECT_EQ(0, scrollTimerTicks());
    // Onto a window of another class: 1 and the window. Onto the parent: 0, the parent, no row.
    dragTo(tree, onItem(items[2]), *host, {150, 320});
    EXPECT_EQ(1, exResult);
    EXPECT_EQ(button, dropWindow);
    dragTo(tree, onItem(items[2]), *host, {50, 250});
    EXPECT_EQ(0, exResult);
    EXPECT_EQ(*host, dropWindow);
    EXPECT_EQ(-1, dropRow);
    EXPECT_EQ(kUnmoved, treeValues());
    EXPECT_EQ(nullptr, GetCapture());
}

TEST_F(DragTest, EscapeOrALostCaptureEndsATreeDragLeavingNothing) {
    for (Mode mode : {kWithin, kTowards}) {
        treeMode = mode;
        cancels = 0;
        PressAndPull(tree, onItem(items[5]));
        MoveMouse(tree, onItem(items[1]).x, onItem(items[1]).y);
        SetFocus(tree);
        PressKey(VK_ESCAPE);
        EXPECT_EQ(1, cancels);
        EXPECT_EQ(nullptr, GetCapture());
        EXPECT_EQ(nullptr, TreeView_GetDropHilight(tree));
        EXPECT_EQ(items[6], KxTreeView_GetItemWithData(tree, nullptr, 6, nullptr));
        host->clear();
        kvtest::PumpFor(200);
        EXPECT_EQ(0, scrollTimerTicks());
        Release();
        PressAndPull(tree, onItem(items[5]));
        MoveMouse(tree, onItem(items[1]).x, onItem(items[1]).y);
        SetCapture(list);  // another window takes the capture, and keeps it
        kvtest::PumpMessages();
        EXPECT_EQ(2, cancels);
        EXPECT_EQ(list, GetCapture());
        ReleaseCapture();
        EXPECT_EQ(items[6], KxTreeView_GetItemWithData(tree, nullptr, 6, nullptr));
        Release();
        EXPECT_EQ(kUnmoved, treeValues());
    }
    EXPECT_EQ(0, KxTreeView_OnCancelDrag(tree));
}

TEST_F(DragTest, TreeHandlersSurviveNullAndDestroyedWindows) {
    HWND destroyed = host->createChild(WC_TREEVIEWW, L"", 0, 0, 0, 10, 10, 9);
    DestroyWindow(destroyed);
    NMTREEVIEWW notify = {};
    notify.itemNew.hItem = items[1];
    for (HWND bad : {static_cast<HWND>(nullptr), destroyed}) {
        KxTreeView_OnBeginDrag(bad, &notify);
        KxTreeView_OnBeginDragEx(bad, &notify);
        KxTreeView_OnMouseMove(bad, bad, 1, 1);
        KxTreeView_OnMouseMoveEx(bad, bad, 1, 1);
        KxTreeView_OnTimer(bad);
        KxTreeView_OnLButtonUp(bad);
        KxTreeView_OnLButtonUpWithMove(bad, 1);
        KxTreeView_OnLButtonUpWithMoveEx(bad, 1, &newItem, &insertAfter);
        KxTreeView_OnLButtonUpMoveUnder(bad, &newItem, &newParent, &insertAfter);
        EXPECT_EQ(0, KxTreeView_OnLButtonUpEx(bad, 1, 1, &dropWindow, &dropRow));
        EXPECT_EQ(0, KxTreeView_OnCancelDrag(bad));
    }
    KxTreeView_OnBeginDrag(tree, nullptr);
    KxTreeView_OnBeginDragEx(tree, nullptr);
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_EQ(items[1], KxTreeView_GetItemWithData(tree, nullptr, 1, nullptr));
    // A tree destroyed in the middle of its drag: the release still ends it, flag and timer too.
    PressAndPull(tree, onItem(items[2]));
    DestroyWindow(tree);
    Release();
    EXPECT_EQ(nullptr, GetCapture());
    host->clear();
    kvtest::PumpFor(200);
    EXPECT_EQ(0, scrollTimerTicks());
    EXPECT_EQ(0, KxTreeView_OnCancelDrag(nullptr));
}

// The screen's pixels over the window (frame and children included), row by row.
std::vector<COLORREF> screenOf(HWND window, RECT* frame) {
    GetWindowRect(window, frame);
    int width = frame->right - frame->left, height = frame->bottom - frame->top;
    kvtest::Canvas canvas(width, height);
    HDC screen = GetDC(nullptr);
    BitBlt(canvas.dc(), 0, 0, width, height, screen, frame->left, frame->top, SRCCOPY);
    ReleaseDC(nullptr, screen);
    std::vector<COLORREF> pixels;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) pixels.push_back(canvas.pixel(x, y));
    return pixels;
}

TEST_F(DragTest, TheDragImageFollowsTheMouseAndLeavesNoTrail) {
    // Watched over the empty part of each control, where nothing but the image changes pixels.
    RECT frame;
    auto drag = [&](HWND control, POINT start, bool cancel) {
        POINT empty = {60, 300};
        PressAndPull(control, start);
        for (int step = 3; step >= 0; --step) MoveMouse(control, empty.x + 9 * step, empty.y - 7 * step);
        std::vector<COLORREF> during = screenOf(*host, &frame);
        if (cancel) {
            SetFocus(control);
            PressKey(VK_ESCAPE);
        }
        Release();
        // What changes when everything paints itself again was left by the image.
        std::vector<COLORREF> after = screenOf(*host, &frame);
        RedrawWindow(*host, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
        kvtest::PumpFor(30);
        std::vector<COLORREF> repainted = screenOf(*host, &frame);
        int width = frame.right - frame.left, trail = 0, image = 0;
        for (size_t i = 0; i < after.size(); ++i) trail += after[i] != repainted[i];
        ClientToScreen(control, &empty);
        for (int y = empty.y - frame.top; y < empty.y - frame.top + 8; ++y)
            for (int x = empty.x - frame.left; x < empty.x - frame.left + 24; ++x)
                image += during[y * width + x] != after[y * width + x];
        EXPECT_GT(image, 10);
        EXPECT_EQ(0, trail);
    };
    for (bool cancel : {false, true}) {
        for (Mode mode : {kWithin, kTowards}) {
            SCOPED_TRACE(std::string(cancel ? "cancelled" : "dropped") + (mode == kWithin ? " within" : " towards"));
            treeMode = listMode = mode;
            drag(tree, onItem(items[2]), cancel);
            drag(list, onRow(2), cancel);
        }
    }
}

TEST(DragExports, ResolveByPlainName) {
    HMODULE kvkit = GetModuleHandleW(L"kvkit.dll");
    const char* const names[] = {
        "KxListView_OnBeginDrag", "KxListView_OnBeginDragEx", "KxListView_OnMouseMove",
        "KxListView_OnMouseMoveEx", "KxListView_OnLButtonUp", "KxListView_OnLButtonUpEx",
        "KxListView_OnCancelDrag", "KxListView_HitTest", "KxListView_HandleMouseClick",
        "KxTreeView_OnBeginDrag", "KxTreeView_OnBeginDragEx", "KxTreeView_OnMouseMove",
        "KxTreeView_OnMouseMoveEx", "KxTreeView_OnTimer", "KxTreeView_OnLButtonUp",
        "KxTreeView_OnLButtonUpWithMove", "KxTreeView_OnLButtonUpWithMoveEx",
        "KxTreeView_OnLButtonUpMoveUnder", "KxTreeView_OnLButtonUpEx", "KxTreeView_OnCancelDrag",
        "Kx1BeginDrag", "Kx1Drag", "Kx1EndDrag", "Kx1StopDrag", "Kx1ResumeDrag",
        "Kx1StartGlobalDragAndDrop", "Kx1StopGlobalDragAndDrop", "Kx1IsActiveGlobalDragAndDrop",
        "Kx1GetAppRoot"};
    for (const char* name : names) EXPECT_NE(nullptr, GetProcAddress(kvkit, name)) << name;
}

}  // namespace
