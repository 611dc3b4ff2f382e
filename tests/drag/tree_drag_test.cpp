// Tree items dragged with the real mouse: within the tree (drop highlight, timer, scrolling, the
// three ways of ending), onto another window, cancelled; and the tree drag flag, which keeps tree
// copy, move and search by value from working for exactly the life of the drag.
#include "drag_fixture.h"

namespace {

using Values = std::vector<int>;

TEST_F(DragTest, ATreeItemMovesAfterTheTargetWithTheFlagSetMeanwhile) {
    // While the item is dragged: the target is highlighted, the scroll timer runs, and copy,
    // move and search by value refuse to work.
    HTREEITEM highlighted = nullptr;
    int found = -1, copied = -1;
    HTREEITEM moved = reinterpret_cast<HTREEITEM>(1);
    duringDrag = [&] {
        highlighted = TreeView_GetDropHilight(tree);
        found = KxTreeView_GetItemWithData(tree, nullptr, 6, nullptr) != nullptr;
        TVINSERTSTRUCTW record = {};
        copied = KxTreeView_CopyItem(tree, items[6], 20, &record);
        moved = KxTreeView_MoveItem(tree, items[6], nullptr, nullptr, 0);
    };
    PressAndPull(tree, onItem(items[5]));
    POINT target = onItem(items[1]);
    MoveMouse(tree, target.x, target.y);
    kvtest::PumpFor(200);
    EXPECT_GE(scrollTimerTicks(), 1);
    Release();

    EXPECT_EQ(items[1], highlighted);
    EXPECT_EQ(0, found);
    EXPECT_EQ(0, copied);
    EXPECT_EQ(nullptr, moved);
    EXPECT_EQ((Values{0, 1, 5, 2, 3, 4, 6, 7}), treeValues());
    EXPECT_EQ(itemWithValue(5), TreeView_GetSelection(tree));
    EXPECT_EQ(nullptr, TreeView_GetDropHilight(tree));
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_EQ(0, cancels);
    // Afterwards they work again, and the timer has stopped.
    EXPECT_EQ(itemWithValue(6), KxTreeView_GetItemWithData(tree, nullptr, 6, nullptr));
    host->clear();
    kvtest::PumpFor(200);
    EXPECT_EQ(0, scrollTimerTicks());
    ASSERT_GE(events.size(), 3u);
    EXPECT_EQ(static_cast<UINT>(TVN_BEGINDRAGW), events.front());
    EXPECT_EQ(static_cast<UINT>(WM_LBUTTONUP), events.back());
}

TEST_F(DragTest, ATreeItemDroppedNearTheTopGoesFirstAndNearTheBottomLast) {
    RECT client;
    GetClientRect(tree, &client);
    // The top item reaches into the top 10 pixels.
    PressAndPull(tree, onItem(items[4]));
    MoveMouse(tree, onItem(items[0]).x, 4);
    Release();
    EXPECT_EQ((Values{4, 0, 1, 2, 3, 5, 6, 7}), treeValues());
    // A target that is the last sibling puts the item last.
    PressAndPull(tree, onItem(itemWithValue(0)));
    POINT last = onItem(itemWithValue(7));
    MoveMouse(tree, last.x, last.y);
    Release();
    EXPECT_EQ((Values{4, 1, 2, 3, 5, 6, 7, 0}), treeValues());
    // Dropped on itself: nothing moves.
    PressAndPull(tree, onItem(itemWithValue(2)));
    POINT same = onItem(itemWithValue(2));
    MoveMouse(tree, same.x, same.y);
    Release();
    EXPECT_EQ((Values{4, 1, 2, 3, 5, 6, 7, 0}), treeValues());
    // Near the bottom edge of a tree whose items reach it.
    MoveWindow(tree, 260, 0, 260, 60, TRUE);
    kvtest::PumpMessages();
    GetClientRect(tree, &client);
    TVHITTESTINFO hit = {};
    hit.pt = {onItem(itemWithValue(4)).x, client.bottom - 3};
    HTREEITEM bottom = TreeView_HitTest(tree, &hit);
    ASSERT_TRUE(bottom);
    ASSERT_TRUE(TreeView_GetNextSibling(tree, bottom));
    PressAndPull(tree, onItem(itemWithValue(4)));
    MoveMouse(tree, hit.pt.x, hit.pt.y);
    Release();
    EXPECT_EQ(4, treeValues().back());
}

TEST_F(DragTest, TheTreeScrollsWhileTheCursorRestsOutsideIt) {
    for (int i = 8; i < 40; ++i)
        items.push_back(KxTreeView_InsertItem(tree, nullptr, nullptr, nullptr, nullptr, nullptr, L"More", i, 0));
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
    int scrolled = firstVisible();
    EXPECT_GE(scrolled, 2);
    EXPECT_LE(scrolled, 40);
    // Above the tree it scrolls back up to the first line and stops there.
    MoveMouse(tree, 40, -30);
    DWORD start = GetTickCount();
    while (firstVisible() > 0 && GetTickCount() - start < 5000) kvtest::PumpFor(50);
    EXPECT_EQ(0, firstVisible());
    kvtest::PumpFor(200);
    EXPECT_EQ(0, firstVisible());
    // Back over an item: it becomes the target, and the drop puts the item after it.
    POINT over = onItem(items[3]);
    MoveMouse(tree, over.x, over.y);
    Release();
    Values values = treeValues();
    EXPECT_EQ((Values{0, 2, 3, 1, 4}), Values(values.begin(), values.begin() + 5));
}

TEST_F(DragTest, AnItemDroppedOnAnotherGoesUnderItWithItsChildren) {
    treeEnd = kMoveUnder;
    HTREEITEM child = KxTreeView_InsertItem(tree, nullptr, items[5], nullptr, nullptr, nullptr, L"Child", 50, 0);
    TreeView_Expand(tree, items[5], TVE_EXPAND);
    PressAndPull(tree, onItem(items[5]));
    POINT target = onItem(items[2]);
    MoveMouse(tree, target.x, target.y);
    Release();
    EXPECT_EQ((Values{0, 1, 2, -105, -250, 3, 4, 6, 7}), treeValues());
    EXPECT_EQ(items[2], newParent);
    EXPECT_EQ(items[1], insertAfter);  // the target's previous sibling
    EXPECT_EQ(newItem, TreeView_GetChild(tree, items[2]));
    (void)child;

    // Onto its own child: nothing moves and nothing is stored.
    HTREEITEM moved = newItem;
    TreeView_Expand(tree, items[2], TVE_EXPAND);
    newItem = newParent = insertAfter = nullptr;
    PressAndPull(tree, onItem(items[2]));
    POINT own = onItem(moved);
    MoveMouse(tree, own.x, own.y);
    Release();
    EXPECT_EQ(nullptr, newItem);
    EXPECT_EQ((Values{0, 1, 2, -105, -250, 3, 4, 6, 7}), treeValues());

    // Dropped on itself at the tree's left edge: to the top level, with its children.
    TreeView_Expand(tree, moved, TVE_EXPAND);
    PressAndPull(tree, onItem(moved));
    MoveMouse(tree, 1, onItem(moved).y);
    Release();
    EXPECT_EQ(TVI_ROOT, newParent);
    EXPECT_EQ(TVI_FIRST, insertAfter);  // it had no previous sibling
    EXPECT_EQ((Values{5, -150, 0, 1, 2, 3, 4, 6, 7}), treeValues());
}

TEST_F(DragTest, WithMoveTheItemGoesBeforeTheTargetAndWithoutItStays) {
    treeEnd = kWithMove;
    PressAndPull(tree, onItem(items[6]));
    POINT target = onItem(items[2]);
    MoveMouse(tree, target.x, target.y);
    Release();
    EXPECT_EQ((Values{0, 1, 6, 2, 3, 4, 5, 7}), treeValues());
    EXPECT_EQ(items[1], insertAfter);
    EXPECT_EQ(itemWithValue(6), newItem);
    // Before the first item: TVI_FIRST.
    PressAndPull(tree, onItem(items[4]));
    target = onItem(items[0]);
    MoveMouse(tree, target.x, target.y);
    Release();
    EXPECT_EQ(TVI_FIRST, insertAfter);
    EXPECT_EQ((Values{4, 0, 1, 6, 2, 3, 5, 7}), treeValues());
    // Without the move flag the drag only ends.
    moveFlag = 0;
    newItem = nullptr;
    PressAndPull(tree, onItem(items[7]));
    target = onItem(items[1]);
    MoveMouse(tree, target.x, target.y);
    Release();
    EXPECT_EQ(nullptr, newItem);
    EXPECT_EQ((Values{4, 0, 1, 6, 2, 3, 5, 7}), treeValues());
    EXPECT_EQ(nullptr, TreeView_GetDropHilight(tree));
    EXPECT_EQ(itemWithValue(7), KxTreeView_GetItemWithData(tree, nullptr, 7, nullptr));
}

TEST_F(DragTest, ATreeItemDraggedOntoAnotherWindowReportsWhereItLanded) {
    treeMode = kTowards;
    MoveWindow(list, 0, 0, 250, 200, TRUE);  // room below it for a button and for the parent
    int timerTicks = 0;
    duringDrag = [&] { timerTicks += scrollTimerTicks(); };
    // Onto a list row: 1, the row, the window left as it was.
    PressAndPull(tree, onItem(items[2]));
    POINT row = onRow(4);
    MapWindowPoints(list, *host, &row, 1);
    MoveMouse(*host, row.x, row.y);
    dropWindow = nullptr;
    Release();
    EXPECT_EQ(1, exResults.back());
    EXPECT_EQ(4, dropRow);
    EXPECT_EQ(nullptr, dropWindow);
    EXPECT_EQ(0, timerTicks);  // this drag needs no scrolling
    // Onto a window of another class: 1 and the window.
    HWND button = host->createChild(L"Button", L"Drop", WS_VISIBLE, 100, 300, 100, 40, 8);
    PressAndPull(tree, onItem(items[2]));
    MoveMouse(*host, 150, 320);
    Release();
    EXPECT_EQ(1, exResults.back());
    EXPECT_EQ(button, dropWindow);
    // Onto the parent itself: 0, the parent and no row.
    PressAndPull(tree, onItem(items[2]));
    MoveMouse(*host, 50, 250);
    Release();
    EXPECT_EQ(0, exResults.back());
    EXPECT_EQ(*host, dropWindow);
    EXPECT_EQ(-1, dropRow);
    EXPECT_EQ((Values{0, 1, 2, 3, 4, 5, 6, 7}), treeValues());
    EXPECT_EQ(nullptr, GetCapture());
    DestroyWindow(button);
}

TEST_F(DragTest, EscapeOrALostCaptureEndsATreeDragLeavingNothing) {
    for (Mode mode : {kWithin, kTowards}) {
        treeMode = mode;
        cancels = 0;
        PressAndPull(tree, onItem(items[5]));
        POINT target = onItem(items[1]);
        MoveMouse(tree, target.x, target.y);
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
        MoveMouse(tree, target.x, target.y);
        SetCapture(list);
        kvtest::PumpMessages();
        EXPECT_EQ(2, cancels);
        EXPECT_EQ(list, GetCapture());
        ReleaseCapture();
        EXPECT_EQ(items[6], KxTreeView_GetItemWithData(tree, nullptr, 6, nullptr));
        Release();
        EXPECT_EQ((Values{0, 1, 2, 3, 4, 5, 6, 7}), treeValues());
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

namespace {

// The screen's pixels over the window (frame and children included).
std::vector<COLORREF> screenOf(HWND window) {
    RECT rect;
    GetWindowRect(window, &rect);
    int width = rect.right - rect.left, height = rect.bottom - rect.top;
    kvtest::Canvas canvas(width, height);
    HDC screen = GetDC(nullptr);
    BitBlt(canvas.dc(), 0, 0, width, height, screen, rect.left, rect.top, SRCCOPY);
    ReleaseDC(nullptr, screen);
    std::vector<COLORREF> pixels;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) pixels.push_back(canvas.pixel(x, y));
    return pixels;
}

int differences(const std::vector<COLORREF>& a, const std::vector<COLORREF>& b) {
    int count = 0;
    for (size_t i = 0; i < a.size() && i < b.size(); ++i) count += a[i] != b[i];
    return count;
}

// Pixels that change when the window and its children paint themselves again: what a drag image
// left on the screen.
int leftOnScreen(HWND window) {
    kvtest::PumpFor(30);
    std::vector<COLORREF> before = screenOf(window);
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
    kvtest::PumpFor(30);
    return differences(before, screenOf(window));
}

TEST_F(DragTest, TheDragImageFollowsTheMouseAndLeavesNoTrail) {
    // The image is watched over the empty part of each control, where nothing else changes.
    RECT frame;
    GetWindowRect(*host, &frame);
    int frameWidth = frame.right - frame.left;
    // Pixels of the screen shot that differ near the cursor (a point of `control`).
    auto nearCursor = [&](const std::vector<COLORREF>& a, const std::vector<COLORREF>& b, HWND control, POINT at) {
        ClientToScreen(control, &at);
        int count = 0;
        for (int y = at.y - frame.top; y < at.y - frame.top + 8; ++y)
            for (int x = at.x - frame.left; x < at.x - frame.left + 24; ++x)
                count += a[y * frameWidth + x] != b[y * frameWidth + x];
        return count;
    };
    auto drag = [&](HWND control, POINT start, bool cancel) {
        POINT empty = {60, 300};
        PressAndPull(control, start);
        for (int step = 3; step >= 0; --step) MoveMouse(control, empty.x + 9 * step, empty.y - 7 * step);
        std::vector<COLORREF> during = screenOf(*host);
        if (cancel) {
            SetFocus(control);
            PressKey(VK_ESCAPE);
        }
        Release();
        int trail = leftOnScreen(*host);
        return std::make_pair(nearCursor(during, screenOf(*host), control, empty), trail);
    };
    for (bool cancel : {false, true}) {
        SCOPED_TRACE(cancel ? "cancelled" : "dropped");
        for (Mode mode : {kWithin, kTowards}) {
            treeMode = listMode = mode;
            auto tree1 = drag(tree, onItem(items[2]), cancel);
            EXPECT_GT(tree1.first, 10);
            EXPECT_EQ(0, tree1.second);
            auto list1 = drag(list, onRow(2), cancel);
            EXPECT_GT(list1.first, 10);
            EXPECT_EQ(0, list1.second);
        }
    }
}

}  // namespace
