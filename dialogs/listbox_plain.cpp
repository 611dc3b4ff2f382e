// Helpers for plain list boxes: type-ahead on the rows' data, the row under a point, and moving
// the selected row to another place with the mouse.
#include "dialogs/listbox_internal.h"
#include "core/library.h"
#include "kvtext.h"

namespace {

const wchar_t kOldProcProperty[] = L"OldProc";
// Distance from a row border within which a click moves the selected row there.
const int kBorderReach = 3;

bool isMultiple(HWND box) {
    return (GetWindowLongW(box, GWL_STYLE) & (LBS_MULTIPLESEL | LBS_EXTENDEDSEL)) != 0;
}

// The border under the point as the row that the selected row would be moved in front of; -1
// away from a border, around the selected row itself, or without a selection.
int borderTarget(HWND box, POINT point) {
    int row = Kx1GetLbMousePos(box, point.x, point.y);
    if (row < 0) return -1;
    RECT rect;
    SendMessageW(box, LB_GETITEMRECT, row, reinterpret_cast<LPARAM>(&rect));
    int target;
    if (point.y < rect.top + kBorderReach) target = row;
    else if (point.y >= rect.bottom - kBorderReach) target = row + 1;
    else return -1;
    int selected = static_cast<int>(SendMessageW(box, LB_GETCURSEL, 0, 0));
    if (selected < 0 || target == selected || target == selected + 1) return -1;
    return target;
}

bool showMoveCursor(HWND box, POINT point) {
    if (borderTarget(box, point) < 0) return false;
    SetCursor(LoadCursorW(g_libraryModule, L"movecur"));
    return true;
}

LRESULT CALLBACK moveRowProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam) {
    auto previous = reinterpret_cast<WNDPROC>(GetPropW(box, kOldProcProperty));
    POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    switch (message) {
    case WM_MOUSEMOVE:
        showMoveCursor(box, point);
        break;
    case WM_SETCURSOR:
        // Keeps the list's own cursor from replacing "movecur" between two mouse moves.
        if (LOWORD(lParam) == HTCLIENT) {
            GetCursorPos(&point);
            ScreenToClient(box, &point);
            if (showMoveCursor(box, point)) return TRUE;
        }
        break;
    case WM_LBUTTONDOWN: {
        int target = borderTarget(box, point);
        if (target >= 0) {
            PostMessageW(GetParent(box), KLM_MOVEITEM, target, reinterpret_cast<LPARAM>(box));
            return 0;
        }
        break;
    }
    case WM_DESTROY:
        RemovePropW(box, kOldProcProperty);
        if (previous) SetWindowLongW(box, GWL_WNDPROC, reinterpret_cast<LONG>(previous));
        break;
    }
    if (!previous) return 0;
    return CallWindowProcW(previous, box, message, wParam, lParam);
}

}  // namespace

int FindRowByKey(HWND box, WORD key, bool highWord) {
    int count = static_cast<int>(SendMessageW(box, LB_GETCOUNT, 0, 0));
    if (count <= 0) return -1;
    int caret = static_cast<int>(SendMessageW(box, LB_GETCARETINDEX, 0, 0));
    bool hasCaret = caret >= 0 && caret < count;
    int first = hasCaret ? caret + 1 : 0;
    int steps = hasCaret ? count - 1 : count;
    for (int step = 0; step < steps; ++step) {
        int row = (first + step) % count;
        LRESULT data = SendMessageW(box, LB_GETITEMDATA, row, 0);
        if ((highWord ? HIWORD(data) : LOWORD(data)) == key) return row;
    }
    return -1;
}

short KVKIT_CALL Kx1LbSelectChar(HWND box, UINT character, int useHighWord, int, int upper, int) {
    wchar_t key = static_cast<wchar_t>(LOWORD(character));
    if (key == L' ' || SendMessageW(box, LB_GETCOUNT, 0, 0) <= 0) return -2;
    auto* asPointer = reinterpret_cast<LPWSTR>(static_cast<UINT_PTR>(key));
    key = static_cast<wchar_t>(reinterpret_cast<UINT_PTR>(upper ? CharUpperW(asPointer) : CharLowerW(asPointer)));
    int row = FindRowByKey(box, key, useHighWord != 0);
    if (row < 0) return -1;
    if (isMultiple(box)) SendMessageW(box, LB_SETCARETINDEX, row, FALSE);
    else SendMessageW(box, LB_SETCURSEL, row, 0);
    return static_cast<short>(row);
}

int KVKIT_CALL Kx1GetLbMousePos(HWND box, int x, int y) {
    int count = static_cast<int>(SendMessageW(box, LB_GETCOUNT, 0, 0));
    POINT point = {x, y};
    for (int row = static_cast<int>(SendMessageW(box, LB_GETTOPINDEX, 0, 0)); row >= 0 && row < count; ++row) {
        RECT rect;
        if (SendMessageW(box, LB_GETITEMRECT, row, reinterpret_cast<LPARAM>(&rect)) == LB_ERR) continue;
        if (PtInRect(&rect, point)) return row;
    }
    return -1;
}

int KVKIT_CALL KlSetListProc(HWND box, HINSTANCE) {
    if (!IsWindow(box)) return 0;
    if (reinterpret_cast<WNDPROC>(GetWindowLongW(box, GWL_WNDPROC)) == moveRowProc) return 1;
    if (GetPropW(box, kOldProcProperty)) return 0;  // the property holds another replacement's
    // The property is in place before the first message reaches the replacement.
    SetPropW(box, kOldProcProperty, reinterpret_cast<HANDLE>(GetWindowLongW(box, GWL_WNDPROC)));
    SetWindowLongW(box, GWL_WNDPROC, reinterpret_cast<LONG>(moveRowProc));
    return 1;
}

int KVKIT_CALL KlMoveItem(HWND box, int target) {
    if (!IsWindow(box)) return 0;
    bool multiple = isMultiple(box);
    int selected = -1;
    if (multiple) {
        if (SendMessageW(box, LB_GETSELITEMS, 1, reinterpret_cast<LPARAM>(&selected)) != 1) selected = -1;
    } else {
        selected = static_cast<int>(SendMessageW(box, LB_GETCURSEL, 0, 0));
    }
    if (selected < 0) return 0;
    DWORD style = static_cast<DWORD>(GetWindowLongW(box, GWL_STYLE));
    bool hasStrings = !(style & (LBS_OWNERDRAWFIXED | LBS_OWNERDRAWVARIABLE)) || (style & LBS_HASSTRINGS);
    LPARAM data = SendMessageW(box, LB_GETITEMDATA, selected, 0);
    wchar_t* text = nullptr;
    if (hasStrings) {
        int length = static_cast<int>(SendMessageW(box, LB_GETTEXTLEN, selected, 0));
        text = static_cast<wchar_t*>(GetMemory((length + 1) * static_cast<int>(sizeof(wchar_t))));
        if (!text) return 0;
        SendMessageW(box, LB_GETTEXT, selected, reinterpret_cast<LPARAM>(text));
    }
    int count = static_cast<int>(SendMessageW(box, LB_GETCOUNT, 0, 0));
    if (target < 0) target = 0;
    if (target > count) target = count;
    if (target > selected) --target;  // the rows below close up once it is taken out
    SendMessageW(box, LB_DELETESTRING, selected, 0);
    int row = static_cast<int>(
        SendMessageW(box, LB_INSERTSTRING, target, hasStrings ? reinterpret_cast<LPARAM>(text) : data));
    FreeMemory(text);
    if (row < 0) return 0;
    SendMessageW(box, LB_SETITEMDATA, row, data);
    if (multiple) SendMessageW(box, LB_SETSEL, TRUE, row);
    else SendMessageW(box, LB_SETCURSEL, row, 0);
    SetFocus(box);
    return 1;
}
