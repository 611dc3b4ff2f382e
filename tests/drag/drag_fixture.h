// A host window with a customer list (report view) and a flat tree, whose parent forwards the
// drag notifications, the captured mouse, the scroll timer, Escape and a lost capture to the
// library's handlers as a host does. The mouse is the real one: SetCursorPos and SendInput.
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
inline void SendInputs(std::vector<INPUT> inputs) {
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
    kvtest::PumpFor(30);
}
inline INPUT MouseInput(DWORD flag) {
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flag;
    return input;
}
inline void Release() { SendInputs({MouseInput(MOUSEEVENTF_LEFTUP)}); }
inline void PressKey(WORD key) {
    INPUT inputs[2] = {};
    inputs[0].type = inputs[1].type = INPUT_KEYBOARD;
    inputs[0].ki.wVk = inputs[1].ki.wVk = key;
    inputs[1].ki.dwFlags = KEYEVENTF_KEYUP;
    SendInputs({inputs[0], inputs[1]});
}
// Presses the left button at a point of the window and moves the mouse far enough for the
// control to see a drag. A press near the last one and soon after it would be a double click,
// which starts no drag: it moves a little to the side.
inline void PressAndPull(HWND window, POINT at) {
    static DWORD lastTime;
    static POINT last;
    POINT screen = at;
    ClientToScreen(window, &screen);
    int sideways = GetSystemMetrics(SM_CXDOUBLECLK) + 2;
    if (GetTickCount() - lastTime < GetDoubleClickTime() && abs(screen.x - last.x) < sideways &&
        abs(screen.y - last.y) < sideways) {
        at.x += sideways;
        screen.x += sideways;
    }
    lastTime = GetTickCount();
    last = screen;
    MoveMouse(window, at.x, at.y);
    INPUT press = MouseInput(MOUSEEVENTF_LEFTDOWN);
    SendInput(1, &press, sizeof(INPUT));
    SetCursorPos(screen.x + 2, screen.y + 2 * GetSystemMetrics(SM_CYDRAG) + 6);
    kvtest::PumpFor(30);
}

class DragTest : public kvtest::KvTest {
protected:
    enum Mode { kWithin, kTowards };
    enum TreeEnd { kPlainEnd, kWithMove, kMoveUnder };

    void SetUp() override {
        KvTest::SetUp();
        host = std::make_unique<kvtest::HostWindow>(520, 360);
        list = host->createChild(WC_LISTVIEWW, L"", WS_VISIBLE | LVS_REPORT | LVS_SHOWSELALWAYS, 0, 0,
                                 250, 360, 400);
        KxListView_AddHeader(list, L"Customer", 0, 120);
        KxListView_AddHeader(list, L"City", 1, 100);
        for (int row = 0; row < 8; ++row) {
            KxListView_AddSpalte(list, row, 0, (L"Customer " + std::to_wstring(row)).c_str(), -1, 100 + row);
            KxListView_AddSpalte(list, row, 1, (L"City " + std::to_wstring(row)).c_str(), -1, 0);
        }
        tree = host->createChild(WC_TREEVIEWW, L"", WS_VISIBLE | TVS_HASLINES | TVS_SHOWSELALWAYS, 260, 0,
                                 260, 360, 401);
        treeImages = ImageList_Create(16, 16, ILC_COLOR24, 1, 0);
        HBITMAP picture = kvtest::MakeBitmap(16, 16, [](int x, int y) { return RGB(40, 120 + x * 8, 200 - y * 8); });
        ImageList_Add(treeImages, picture, nullptr);
        DeleteObject(picture);
        TreeView_SetImageList(tree, treeImages, TVSIL_NORMAL);
        for (int i = 0; i < 8; ++i) addItem(i);
        host->setHandler([this](HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT*) {
            return forward(message, wParam, lParam);
        });
        SetForegroundWindow(*host);
        UpdateWindow(*host);
        kvtest::PumpMessages();
    }
    void TearDown() override {
        Release();
        host.reset();
        ImageList_Destroy(treeImages);
        KvTest::TearDown();
    }

    void addItem(int value, HTREEITEM parent = nullptr) {
        items.push_back(KxTreeView_InsertItem(tree, nullptr, parent, nullptr, nullptr, nullptr,
                                              (L"Item " + std::to_wstring(value)).c_str(), value, 0));
    }
    std::vector<int> rowValues() const {
        std::vector<int> values;
        for (int row = 0; row < ListView_GetItemCount(list); ++row)
            values.push_back(static_cast<int>(KxListView_GetItemData(list, row)));
        return values;
    }
    // Item values in pre-order; an item n levels down shows as -(value) - 100 n.
    std::vector<int> treeValues(HTREEITEM first = nullptr, int level = 0) const {
        std::vector<int> values;
        for (HTREEITEM item = first ? first : TreeView_GetRoot(tree); item; item = TreeView_GetNextSibling(tree, item)) {
            int value = static_cast<int>(KxTreeView_GetItemData(tree, item));
            values.push_back(level == 0 ? value : -value - 100 * level);
            if (HTREEITEM child = TreeView_GetChild(tree, item)) {
                std::vector<int> below = treeValues(child, level + 1);
                values.insert(values.end(), below.begin(), below.end());
            }
        }
        return values;
    }
    HTREEITEM itemWithValue(int value) const {
        for (HTREEITEM item = TreeView_GetRoot(tree); item; item = TreeView_GetNextVisible(tree, item))
            if (KxTreeView_GetItemData(tree, item) == value) return item;
        return nullptr;
    }
    // A point on the row's or the item's label, in the control's client coordinates.
    POINT onRow(int row) const {
        RECT rect = {};
        ListView_GetItemRect(list, row, &rect, LVIR_LABEL);
        return {rect.left + 12, (rect.top + rect.bottom) / 2};
    }
    POINT onItem(HTREEITEM item) const {
        RECT rect = {};
        TreeView_GetItemRect(tree, item, &rect, TRUE);
        return {rect.left + 8, (rect.top + rect.bottom) / 2};
    }
    // Drags from a point of the control to another point of the window and releases there.
    void dragTo(HWND control, POINT from, HWND window, POINT to) {
        PressAndPull(control, from);
        MoveMouse(window, to.x, to.y);
        Release();
    }
    int scrollTimerTicks() const {
        int ticks = 0;
        for (const kvtest::RecordedMessage& m : host->messages(WM_TIMER)) ticks += m.wParam == 0;
        return ticks;
    }

    std::unique_ptr<kvtest::HostWindow> host;
    HWND list = nullptr;
    HWND tree = nullptr;
    HIMAGELIST treeImages = nullptr;
    std::vector<HTREEITEM> items;
    // How the host forwards a drag.
    Mode listMode = kWithin, treeMode = kWithin;
    TreeEnd treeEnd = kPlainEnd;
    int moveFlag = 1;
    // What the handlers answered, and what the parent saw.
    UINT listResult = 0;
    int exResult = -5;
    HWND dropWindow = nullptr;
    HTREEITEM dropItem = nullptr;
    int dropRow = -7;
    HTREEITEM newItem = nullptr, newParent = nullptr, insertAfter = nullptr;
    int cancels = 0;
    std::vector<UINT> events;  // begin notifications (their codes), mouse moves and releases
    std::function<void()> duringDrag;  // called on every mouse move the parent forwards

private:
    bool forward(UINT message, WPARAM wParam, LPARAM lParam) {
        int x = static_cast<short>(LOWORD(lParam)), y = static_cast<short>(HIWORD(lParam));
        switch (message) {
        case WM_NOTIFY: {
            auto* header = reinterpret_cast<NMHDR*>(lParam);
            switch (header->code) {
            case LVN_BEGINDRAG:
                events.push_back(header->code);
                if (listMode == kWithin) KxListView_OnBeginDrag(list, reinterpret_cast<NMLISTVIEW*>(lParam));
                else KxListView_OnBeginDragEx(list, reinterpret_cast<NMLISTVIEW*>(lParam));
                return true;
            case TVN_BEGINDRAGW:
                events.push_back(header->code);
                if (treeMode == kWithin) KxTreeView_OnBeginDrag(tree, reinterpret_cast<NMTREEVIEWW*>(lParam));
                else KxTreeView_OnBeginDragEx(tree, reinterpret_cast<NMTREEVIEWW*>(lParam));
                return true;
            case LVN_KEYDOWN:
                if (reinterpret_cast<NMLVKEYDOWN*>(lParam)->wVKey == VK_ESCAPE) cancels += KxListView_OnCancelDrag(list);
                return true;
            case TVN_KEYDOWN:
                if (reinterpret_cast<NMTVKEYDOWN*>(lParam)->wVKey == VK_ESCAPE) cancels += KxTreeView_OnCancelDrag(tree);
                return true;
            }
            return false;
        }
        case WM_MOUSEMOVE:
            events.push_back(message);
            if (listMode == kWithin) KxListView_OnMouseMove(*host, list, x, y);
            else KxListView_OnMouseMoveEx(*host, nullptr, x, y);
            if (treeMode == kWithin) KxTreeView_OnMouseMove(*host, tree, x, y);
            else KxTreeView_OnMouseMoveEx(*host, nullptr, x, y);
            if (duringDrag) duringDrag();
            return true;
        case WM_LBUTTONUP:
            // Only the handlers of the drag under way answer; the others do nothing.
            events.push_back(message);
            if (listMode == kWithin) listResult = KxListView_OnLButtonUp(*host, list, x, y);
            else exResult = KxListView_OnLButtonUpEx(*host, x, y, &dropWindow, &dropItem);
            if (treeMode == kTowards) exResult = KxTreeView_OnLButtonUpEx(*host, x, y, &dropWindow, &dropRow);
            else if (treeEnd == kPlainEnd) KxTreeView_OnLButtonUp(tree);
            else if (treeEnd == kWithMove) KxTreeView_OnLButtonUpWithMoveEx(tree, moveFlag, &newItem, &insertAfter);
            else KxTreeView_OnLButtonUpWithMoveEx(tree, &newItem, &newParent, &insertAfter);
            return true;
        case WM_TIMER:
            if (wParam == 0) KxTreeView_OnTimer(tree);
            return wParam == 0;
        case WM_CAPTURECHANGED:
            cancels += KxListView_OnCancelDrag(list) + KxTreeView_OnCancelDrag(tree);
            return false;
        }
        return false;
    }
};
