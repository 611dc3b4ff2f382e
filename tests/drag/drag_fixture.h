// A host window with a customer list (report view) and a flat tree, whose parent forwards the
// drag notifications and the captured mouse to the library's handlers as a host does. The mouse
// is the real one: the cursor is set and the buttons pressed with SendInput.
#pragma once
#include "kvtest.h"
#include <commctrl.h>
#include <stdlib.h>
#include <functional>
#include <memory>
#include <string>
#include <vector>
#include "kvkit_drag.h"
#include "kvkit_listview.h"
#include "kvkit_search.h"
#include "kvkit_treeview.h"

// Moves the cursor to a point of the window's client area; the system sends the mouse move.
inline void MoveMouse(HWND window, int x, int y) {
    POINT point = {x, y};
    ClientToScreen(window, &point);
    SetCursorPos(point.x, point.y);
    kvtest::PumpFor(15);
}
inline void MouseButton(DWORD flag) {
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flag;
    SendInput(1, &input, sizeof(input));
}
inline void PressKey(WORD key) {
    INPUT inputs[2] = {};
    inputs[0].type = inputs[1].type = INPUT_KEYBOARD;
    inputs[0].ki.wVk = inputs[1].ki.wVk = key;
    inputs[1].ki.dwFlags = KEYEVENTF_KEYUP;
    SendInput(2, inputs, sizeof(INPUT));
    kvtest::PumpFor(15);
}
// Presses the left button at a point of the window and moves the mouse far enough for the
// control to see a drag.
inline void PressAndPull(HWND window, POINT at) {
    // A press close to the last one, soon after it, would be a double click, which starts no drag.
    static DWORD lastTime;
    static POINT lastPoint;
    POINT screen = at;
    ClientToScreen(window, &screen);
    if (GetTickCount() - lastTime < GetDoubleClickTime() &&
        abs(screen.x - lastPoint.x) <= GetSystemMetrics(SM_CXDOUBLECLK) &&
        abs(screen.y - lastPoint.y) <= GetSystemMetrics(SM_CYDOUBLECLK)) {
        at.x += GetSystemMetrics(SM_CXDOUBLECLK) + 2;
        screen.x += GetSystemMetrics(SM_CXDOUBLECLK) + 2;
    }
    lastTime = GetTickCount();
    lastPoint = screen;
    MoveMouse(window, at.x, at.y);
    MouseButton(MOUSEEVENTF_LEFTDOWN);
    POINT pulled = {at.x + 2, at.y + 2 * GetSystemMetrics(SM_CYDRAG) + 6};
    ClientToScreen(window, &pulled);
    SetCursorPos(pulled.x, pulled.y);
    kvtest::PumpFor(30);
}
inline void Release() {
    MouseButton(MOUSEEVENTF_LEFTUP);
    kvtest::PumpFor(30);
}

class DragTest : public kvtest::KvTest {
protected:
    static const int kListId = 400;
    static const int kTreeId = 401;
    enum Mode { kWithin, kTowards };
    enum TreeEnd { kPlainEnd, kWithMove, kMoveUnder };

    void SetUp() override {
        KvTest::SetUp();
        host = std::make_unique<kvtest::HostWindow>(520, 360);
        list = host->createChild(WC_LISTVIEWW, L"", WS_VISIBLE | LVS_REPORT | LVS_SHOWSELALWAYS, 0, 0,
                                 250, 360, kListId);
        KxListView_AddHeader(list, L"Customer", 0, 120);
        KxListView_AddHeader(list, L"City", 1, 100);
        for (int row = 0; row < 8; ++row) {
            wchar_t name[16], city[16];
            swprintf(name, 16, L"Customer %d", row);
            swprintf(city, 16, L"City %d", row);
            KxListView_AddSpalte(list, row, 0, name, -1, 100 + row);
            KxListView_AddSpalte(list, row, 1, city, -1, 0);
        }
        tree = host->createChild(WC_TREEVIEWW, L"", WS_VISIBLE | TVS_HASLINES | TVS_SHOWSELALWAYS, 260,
                                 0, 260, 360, kTreeId);
        // The tree makes drag images only of items with a picture.
        treeImages = ImageList_Create(16, 16, ILC_COLOR24, 1, 0);
        HBITMAP picture = kvtest::MakeBitmap(16, 16, [](int x, int y) { return RGB(40, 120 + x * 8, 200 - y * 8); });
        ImageList_Add(treeImages, picture, nullptr);
        DeleteObject(picture);
        TreeView_SetImageList(tree, treeImages, TVSIL_NORMAL);
        for (int i = 0; i < 8; ++i) {
            wchar_t name[16];
            swprintf(name, 16, L"Item %d", i);
            int image = 0;
            items.push_back(KxTreeView_InsertItem(tree, nullptr, nullptr, nullptr, nullptr, &image, name, i, 0));
        }
        host->setHandler([this](HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT*) {
            return forward(message, wParam, lParam);
        });
        SetForegroundWindow(*host);
        UpdateWindow(*host);
        kvtest::PumpMessages();
    }
    void TearDown() override {
        MouseButton(MOUSEEVENTF_LEFTUP);
        kvtest::PumpMessages();
        host.reset();
        ImageList_Destroy(treeImages);
        KvTest::TearDown();
    }

    // Row values of the list, top to bottom.
    std::vector<int> rowValues() const {
        std::vector<int> values;
        for (int row = 0; row < ListView_GetItemCount(list); ++row)
            values.push_back(static_cast<int>(KxListView_GetItemData(list, row)));
        return values;
    }
    // Values of the tree's items in pre-order, children after their parent as -(value) - 100.
    std::vector<int> treeValues(HTREEITEM first = nullptr, int level = 0) const {
        std::vector<int> values;
        for (HTREEITEM item = first ? first : TreeView_GetRoot(tree); item;
             item = TreeView_GetNextSibling(tree, item)) {
            int value = static_cast<int>(KxTreeView_GetItemData(tree, item));
            values.push_back(level == 0 ? value : -value - 100 * level);
            HTREEITEM child = TreeView_GetChild(tree, item);
            if (!child) continue;
            std::vector<int> below = treeValues(child, level + 1);
            values.insert(values.end(), below.begin(), below.end());
        }
        return values;
    }
    HTREEITEM itemWithValue(int value) const {
        for (HTREEITEM item = TreeView_GetRoot(tree); item; item = TreeView_GetNextVisible(tree, item))
            if (KxTreeView_GetItemData(tree, item) == value) return item;
        return nullptr;
    }
    // A point on the row's label, in the list's client coordinates.
    POINT onRow(int row) const {
        RECT rect = {};
        ListView_GetItemRect(list, row, &rect, LVIR_LABEL);
        return {rect.left + 12, (rect.top + rect.bottom) / 2};
    }
    POINT onItem(HTREEITEM item, int dx = 8) const {
        RECT rect = {};
        TreeView_GetItemRect(tree, item, &rect, TRUE);
        return {rect.left + dx, (rect.top + rect.bottom) / 2};
    }
    // Timer 0 messages that reached the host since it was last cleared.
    int scrollTimerTicks() const {
        int ticks = 0;
        for (const kvtest::RecordedMessage& m : host->messages(WM_TIMER)) ticks += m.wParam == 0;
        return ticks;
    }

    std::unique_ptr<kvtest::HostWindow> host;
    HWND list = nullptr;
    HWND tree = nullptr;
    std::vector<HTREEITEM> items;
    HIMAGELIST treeImages = nullptr;
    // How the host forwards a drag.
    Mode listMode = kWithin;
    Mode treeMode = kWithin;
    TreeEnd treeEnd = kPlainEnd;
    int moveFlag = 1;
    bool cancelOnCaptureLoss = true;
    // What the button-up handlers answered.
    std::vector<UINT> listResults;
    std::vector<int> exResults;
    HWND dropWindow = reinterpret_cast<HWND>(-1);
    HTREEITEM dropItem = reinterpret_cast<HTREEITEM>(-1);
    int dropRow = -7;
    HTREEITEM newItem = nullptr, newParent = nullptr, insertAfter = nullptr;
    // Called while the drag is under way, on every mouse move the host forwards.
    std::function<void()> duringDrag;
    int cancels = 0;
    // Begin notifications (their codes), mouse moves and releases, as the parent got them.
    std::vector<UINT> events;

private:
    bool forward(UINT message, WPARAM wParam, LPARAM lParam) {
        switch (message) {
        case WM_NOTIFY: {
            auto* header = reinterpret_cast<NMHDR*>(lParam);
            if (header->code == LVN_BEGINDRAG || header->code == TVN_BEGINDRAGW) events.push_back(header->code);
            if (header->code == LVN_BEGINDRAG) {
                auto* notify = reinterpret_cast<NMLISTVIEW*>(lParam);
                if (listMode == kWithin) KxListView_OnBeginDrag(list, notify);
                else KxListView_OnBeginDragEx(list, notify);
                return true;
            }
            if (header->code == TVN_BEGINDRAGW) {
                auto* notify = reinterpret_cast<NMTREEVIEWW*>(lParam);
                if (treeMode == kWithin) KxTreeView_OnBeginDrag(tree, notify);
                else KxTreeView_OnBeginDragEx(tree, notify);
                return true;
            }
            if (header->code == LVN_KEYDOWN && reinterpret_cast<NMLVKEYDOWN*>(lParam)->wVKey == VK_ESCAPE) {
                cancels += KxListView_OnCancelDrag(list);
                return true;
            }
            if (header->code == TVN_KEYDOWN && reinterpret_cast<NMTVKEYDOWN*>(lParam)->wVKey == VK_ESCAPE) {
                cancels += KxTreeView_OnCancelDrag(tree);
                return true;
            }
            return false;
        }
        case WM_MOUSEMOVE: {
            events.push_back(message);
            int x = static_cast<short>(LOWORD(lParam)), y = static_cast<short>(HIWORD(lParam));
            if (listMode == kWithin) KxListView_OnMouseMove(*host, list, x, y);
            else KxListView_OnMouseMoveEx(*host, nullptr, x, y);
            if (treeMode == kWithin) KxTreeView_OnMouseMove(*host, tree, x, y);
            else KxTreeView_OnMouseMoveEx(*host, nullptr, x, y);
            if (duringDrag) duringDrag();
            return true;
        }
        case WM_LBUTTONUP: {
            events.push_back(message);
            int x = static_cast<short>(LOWORD(lParam)), y = static_cast<short>(HIWORD(lParam));
            if (listMode == kWithin) listResults.push_back(KxListView_OnLButtonUp(*host, list, x, y));
            else exResults.push_back(KxListView_OnLButtonUpEx(*host, x, y, &dropWindow, &dropItem));
            if (treeMode == kTowards) {
                exResults.push_back(KxTreeView_OnLButtonUpEx(*host, x, y, &dropWindow, &dropRow));
            } else if (treeEnd == kPlainEnd) {
                KxTreeView_OnLButtonUp(tree);
            } else if (treeEnd == kWithMove) {
                KxTreeView_OnLButtonUpWithMoveEx(tree, moveFlag, &newItem, &insertAfter);
            } else {
                KxTreeView_OnLButtonUpWithMoveEx(tree, &newItem, &newParent, &insertAfter);
            }
            return true;
        }
        case WM_TIMER:
            if (wParam != 0) return false;
            KxTreeView_OnTimer(tree);
            return true;
        case WM_CAPTURECHANGED:
            if (cancelOnCaptureLoss) cancels += KxListView_OnCancelDrag(list) + KxTreeView_OnCancelDrag(tree);
            return false;
        }
        return false;
    }
};
