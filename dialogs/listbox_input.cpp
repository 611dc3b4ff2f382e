// Multi-column list box: the mouse and keys of the inner list box (clicks, dragging rows to
// another place, Space, Enter, type-ahead) and the hints of the toggle buttons.
#include "dialogs/listbox_internal.h"
#include "core/library.h"
#include "kvkit2.h"
#include "kvtext.h"

namespace {

// A press on a row, from button-down to button-up. Process-wide: one list at a time.
struct Press {
    HWND box;        // null when no press is under way
    int row;
    RECT rowRect;
    bool dragArmed;  // releasing on another row moves the item there
};
Press g_press;
// Space whose key-down was let through, waiting for its key-up.
bool g_spacePending;
// Set by Enter's key-down: only an Enter pressed in a list fires on its key-up.
bool g_enterGuard;

const int kCaptionCapacity = 81;

HWND containerOf(HWND box) { return GetParent(box); }

POINT pointOf(LPARAM lParam) {
    POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    return point;
}

void setLibraryCursor(const wchar_t* name) { SetCursor(LoadCursorW(g_libraryModule, name)); }

// In multiple selection, rows may only be dragged while the numbers rise in display order, so
// that recounting them after the move keeps the order the user chose.
bool numbersAscend(HWND box, const KVLB_LIST* list) {
    long last = 0;
    int count = ShownCount(list);
    for (int row = 0; row < count; ++row) {
        const KVLB_ITEM* item = FindItem(list, list->order[row]);
        if (!item || !item->selection) continue;
        if (item->selection < last) return false;
        last = item->selection;
    }
    return true;
}

void setCaret(HWND box, KVLB_LIST* list, int row) {
    SendMessageW(box, LB_SETCARETINDEX, row, FALSE);
    if (KVLB_ITEM* item = ItemOfRow(box, list, row)) list->anchor = static_cast<unsigned short>(item->id);
}

void drawPressFocus(HWND box, const RECT& rect) {
    HDC dc = GetDC(box);
    DrawFocusRect(dc, &rect);
    ReleaseDC(box, dc);
}

// Toggles (multiple selection) or selects (single) a row as a click does; beeps when the row
// cannot be selected. True when the selection changed.
bool clickRow(HWND box, KVLB_LIST* list, int row) {
    KVLB_ITEM* item = ItemOfRow(box, list, row);
    if (!item) return false;
    bool selected = SendMessageW(box, LB_GETSEL, row, 0) > 0;
    bool select = IsMultiple(list) ? !selected : true;
    if (select == selected) return false;
    if (!SelectRow(box, list, row, select)) {
        MessageBeep(0);
        return false;
    }
    return true;
}

bool clicksSelect(const KVLB_LIST* list) {
    if (list->style & KVLB_HOSTSELECTS) return false;
    return !(IsMultiple(list) && (list->style & KVLB_DBLCLKTOGGLES));
}

// --- mouse -------------------------------------------------------------------------------------

bool onButtonDown(HWND box, POINT point) {
    KVLB_LIST* list = ListRecord(containerOf(box));
    if (!list) return false;
    SetFocus(box);
    int row = Kx1GetLbMousePos(box, point.x, point.y);
    if (row < 0) return true;
    RECT rect;
    SendMessageW(box, LB_GETITEMRECT, row, reinterpret_cast<LPARAM>(&rect));
    const KVLB_ITEM* item = ItemOfRow(box, list, row);
    g_press.box = box;
    g_press.row = row;
    g_press.rowRect = rect;
    g_press.dragArmed = (list->style & KVLB_DRAGROWS) && item && !(item->flags & KVLB_ITEM_DISABLED) &&
                        (!IsMultiple(list) || numbersAscend(box, list));
    if (IsMultiple(list)) setCaret(box, list, row);
    else drawPressFocus(box, rect);
    SetCapture(box);
    return true;
}

// While a drag is armed: the arrow over the start row, "move" elsewhere in the list, "nofeld"
// outside it, where the list scrolls towards the pointer.
void onPressMove(HWND box, POINT point) {
    if (!g_press.dragArmed) return;
    RECT client;
    GetClientRect(box, &client);
    if (PtInRect(&g_press.rowRect, point)) {
        SetCursor(LoadCursorW(nullptr, IDC_ARROW));
        return;
    }
    if (PtInRect(&client, point)) {
        setLibraryCursor(L"move");
        return;
    }
    setLibraryCursor(L"nofeld");
    if (GetWindowLongW(box, GWL_STYLE) & LBS_MULTICOLUMN) return;
    int top = static_cast<int>(SendMessageW(box, LB_GETTOPINDEX, 0, 0));
    if (point.y < client.top && top > 0) SendMessageW(box, LB_SETTOPINDEX, top - 1, 0);
    if (point.y >= client.bottom) SendMessageW(box, LB_SETTOPINDEX, top + 1, 0);
}

void onButtonUp(HWND box, POINT point) {
    Press press = g_press;
    g_press = Press();
    ReleaseCapture();
    SetCursor(LoadCursorW(nullptr, IDC_ARROW));
    HWND container = containerOf(box);
    KVLB_LIST* list = ListRecord(container);
    if (!list) return;
    if (!IsMultiple(list)) InvalidateRect(box, &press.rowRect, FALSE);  // takes the press focus off
    RECT client;
    GetClientRect(box, &client);
    if (PtInRect(&press.rowRect, point)) {
        if (clicksSelect(list) && clickRow(box, list, press.row)) AfterSelectionChange(container);
        else NotifyParent(container, LBN_SELCHANGE);
    } else if (press.dragArmed && PtInRect(&client, point)) {
        MoveShownItem(container, press.row, Kx1GetLbMousePos(box, point.x, point.y));
    }
}

// A double click presses the row again (so that its button-up acts as a click); with
// double-click toggling it toggles the caret row. The container hears LBN_DBLCLK.
void onDoubleClick(HWND box, POINT point) {
    HWND container = containerOf(box);
    KVLB_LIST* list = ListRecord(container);
    if (!list) return;
    onButtonDown(box, point);
    unsigned long style = list->style;
    if ((style & KVLB_DBLCLKTOGGLES) && (style & KVLB_MULTIPLESEL) && !(style & KVLB_HOSTSELECTS)) {
        int caret = static_cast<int>(SendMessageW(box, LB_GETCARETINDEX, 0, 0));
        if (clickRow(box, list, caret)) {
            RECT rect;
            if (SendMessageW(box, LB_GETITEMRECT, caret, reinterpret_cast<LPARAM>(&rect)) != LB_ERR)
                InvalidateRect(box, &rect, FALSE);
            if (style & KVLB_SELECTEDFIRST) {
                CancelPress(box);  // the rows move under the pointer
                SortList(container, list->sortMode);
            }
        }
    }
    SendMessageW(container, WM_COMMAND, MAKEWPARAM(KVLB_LIST_ID, LBN_DBLCLK), reinterpret_cast<LPARAM>(box));
}

// --- keys --------------------------------------------------------------------------------------

// Space's key-down goes on to the list only when the caret row may be toggled.
bool letSpaceDown(HWND box) {
    KVLB_LIST* list = ListRecord(containerOf(box));
    if (!list) return true;
    if (list->style & KVLB_HOSTSELECTS) return false;
    int caret = static_cast<int>(SendMessageW(box, LB_GETCARETINDEX, 0, 0));
    if (!CanSelect(box, list, ItemOfRow(box, list, caret))) return false;
    g_spacePending = true;
    return true;
}

// After the list toggled the caret row on Space.
void afterSpace(HWND box) {
    HWND container = containerOf(box);
    KVLB_LIST* list = ListRecord(container);
    if (!list) return;
    int caret = static_cast<int>(SendMessageW(box, LB_GETCARETINDEX, 0, 0));
    if (KVLB_ITEM* item = ItemOfRow(box, list, caret)) {
        if (IsMultiple(list)) SyncSelectionNumber(box, list, item, SendMessageW(box, LB_GETSEL, caret, 0) > 0);
        else NumberSingleSelection(box, list);
    }
    if (list->style & KVLB_SELECTEDFIRST) SortList(container, list->sortMode);
}

// Enter fires LBN_DBLCLK on its key-up, unless its key-down went to another window.
void onEnterUp(HWND box) {
    if (!g_enterGuard) {
        g_enterGuard = true;
        return;
    }
    g_enterGuard = false;
    SendMessageW(containerOf(box), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(box), LBN_DBLCLK),
                 LOWORD(reinterpret_cast<UINT_PTR>(box)));
}

// Type-ahead on the rows' first characters. Space never searches.
bool onChar(HWND box, WPARAM character) {
    if (character == L' ') return true;
    if (character < L' ') return false;
    HWND container = containerOf(box);
    KVLB_LIST* list = ListRecord(container);
    if (!list) return false;
    int row = FindRowByKey(box, LowerCase(static_cast<wchar_t>(character)), true);
    if (row < 0) return true;
    if (IsMultiple(list)) {
        setCaret(box, list, row);
    } else {
        if (!CanSelect(box, list, ItemOfRow(box, list, row))) {
            MessageBeep(0);
            return true;
        }
        SendMessageW(box, LB_SETCURSEL, row, 0);
        NumberSingleSelection(box, list);
    }
    PostMessageW(container, WM_COMMAND, MAKEWPARAM(KVLB_LIST_ID, LBN_SELCHANGE), reinterpret_cast<LPARAM>(box));
    return true;
}

// The font came from the container's parent at building; it goes with the list.
void onDestroy(HWND box) {
    DeleteObject(reinterpret_cast<HFONT>(SendMessageW(box, WM_GETFONT, 0, 0)));
    if (g_press.box == box) g_press = Press();
    g_spacePending = false;
    g_enterGuard = false;
}

LRESULT forward(HWND box, UINT message, WPARAM wParam, LPARAM lParam) {
    WNDPROC previous = Kx1GetSubProc(message == WM_DESTROY, box);
    if (!previous) return 0;
    return CallWindowProcW(previous, box, message, wParam, lParam);
}

// --- toggle hints ------------------------------------------------------------------------------

// The hint of a toggle button: language string hintBase + 0..3 when the record names a base,
// else its caption. Set as its tooltip when it differs from the one it has.
void showToggleHint(HWND button) {
    KVLB_LIST* list = ListRecord(GetParent(button));
    if (!list) return;
    wchar_t hint[kCaptionCapacity] = L"";
    if (list->hintBase) {
        wchar_t* text = LoadLanguageString(list->hintBase + GetDlgCtrlID(button) - KVLB_TOGGLE_PICTURES);
        if (text) kv_strcpy(hint, text, kCaptionCapacity);
        FreeMemory(text);
    } else {
        GetWindowTextW(button, hint, kCaptionCapacity);
    }
    wchar_t current[kCaptionCapacity];
    Kx2_GetToolTip(button, current, kCaptionCapacity);
    if (lstrcmpW(current, hint) != 0) Kx2_SetToolTip(button, hint);
}

}  // namespace

void ClearEnterGuard() { g_enterGuard = false; }

void CancelPress(HWND box) {
    if (!box || g_press.box != box) return;
    g_press = Press();
    if (GetCapture() == box) ReleaseCapture();
    SetCursor(LoadCursorW(nullptr, IDC_ARROW));
}

LRESULT KVKIT_CALL Kx1LbListSubProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_LBUTTONDOWN:
        if (onButtonDown(box, pointOf(lParam))) return 0;
        break;
    case WM_MOUSEMOVE:
        if (g_press.box == box && (wParam & MK_LBUTTON)) {
            onPressMove(box, pointOf(lParam));
            return 0;
        }
        break;
    case WM_LBUTTONUP:
        if (g_press.box == box) {
            onButtonUp(box, pointOf(lParam));
            return 0;
        }
        break;
    case WM_CAPTURECHANGED:
        if (g_press.box == box && reinterpret_cast<HWND>(lParam) != box) CancelPress(box);
        break;
    case WM_LBUTTONDBLCLK:
        if (ListRecord(containerOf(box))) {
            onDoubleClick(box, pointOf(lParam));
            return 0;
        }
        break;
    case WM_KEYDOWN:
        if (wParam == VK_SPACE && !letSpaceDown(box)) return 0;
        if (wParam == VK_RETURN) g_enterGuard = true;
        break;
    case WM_KEYUP:
        if (wParam == VK_SPACE && g_spacePending) {
            g_spacePending = false;
            LRESULT result = forward(box, message, wParam, lParam);
            afterSpace(box);
            return result;
        }
        if (wParam == VK_RETURN) {
            onEnterUp(box);
            return 0;
        }
        break;
    case WM_CHAR:
        if (onChar(box, wParam)) return 0;
        break;
    case WM_GETDLGCODE: {
        // In a dialog, Enter on the list chooses its row instead of pressing the default button.
        LRESULT code = forward(box, message, wParam, lParam);
        const MSG* keys = reinterpret_cast<const MSG*>(lParam);
        if (keys && (keys->message == WM_KEYDOWN || keys->message == WM_KEYUP) && keys->wParam == VK_RETURN)
            code |= DLGC_WANTMESSAGE;
        return code;
    }
    case WM_DESTROY:
        onDestroy(box);
        break;
    }
    return forward(box, message, wParam, lParam);
}

LRESULT KVKIT_CALL Kx1LbBtnSubProc(HWND button, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_MOUSEMOVE) showToggleHint(button);
    // The tooltip hooks the button too: it lets go before the button's procedure is put back.
    if (message == WM_DESTROY) Kx2_SetToolTip(button, nullptr);
    WNDPROC previous = Kx1GetSubProc(message == WM_DESTROY, button);
    if (!previous) return 0;
    return CallWindowProcW(previous, button, message, wParam, lParam);
}
