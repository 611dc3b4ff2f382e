// The arrow-button scroller: range, position and flags in the window's extra bytes, the text
// between the arrows in the property "Hd", two owner-drawn arrow buttons carrying their pictures
// in the property "Bm", and the auto-repeat that keeps a held arrow stepping.
#include "core/library.h"
#include "include/kvkit_scroll.h"
#include "controls/buttonface.h"
#include <commctrl.h>
#include <windowsx.h>
#include "kvtext.h"

namespace {

const wchar_t kScrollClass[] = L"KVScrollClass";
const wchar_t kTextProperty[] = L"Hd";
const wchar_t kBitmapProperty[] = L"Bm";
const DWORD kVisibleStyle = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN;
const DWORD kArrowStyle = WS_CHILD | WS_VISIBLE | BS_OWNERDRAW;
const int kArrowIds[] = {KVS_ID_DECREMENT, KVS_ID_INCREMENT};
// A held arrow steps once at once, then again only after this pause.
const DWORD kRepeatDelay = 400;
// An overlay's one-shot timer that paints its arrows again after the windows beneath: timer
// messages come only when no paint is pending.
const UINT_PTR kArrowTimer = 1;

// The text between the arrows, a 16-byte kvtext record.
struct ScrollText {
    wchar_t* text;  // owned by the control
    HFONT font;     // the caller's
    DWORD extra1;   // kept for the caller, not used
    DWORD extra2;
};
static_assert(sizeof(ScrollText) == 16, "the text record is four 32-bit values");

// Only one arrow can hold the mouse, so one set of values serves every control.
struct RepeatState {
    bool repeating;
    DWORD pressTick;
    WNDPROC buttonProc;  // the system button procedure that the arrows were subclassed from
};
RepeatState g_repeat;

bool hasClass(HWND window, const wchar_t* className) {
    wchar_t name[32];
    return window && GetClassNameW(window, name, 32) && lstrcmpiW(name, className) == 0;
}

bool isScroller(HWND window) { return hasClass(window, kScrollClass); }

unsigned flagsOf(HWND control) {
    return LOWORD(GetWindowLongW(control, KVS_OFFSET_FLAGS));
}

ScrollText* textRecord(HWND control) {
    return static_cast<ScrollText*>(GetPropW(control, kTextProperty));
}

void redrawWithArrows(HWND control) {
    RedrawWindow(control, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

// --- layout -----------------------------------------------------------------------------------

void layoutArrows(HWND control) {
    HWND decrement = GetDlgItem(control, KVS_ID_DECREMENT);
    HWND increment = GetDlgItem(control, KVS_ID_INCREMENT);
    if (!decrement || !increment) return;  // not made by KVScroll_CreateWindow (yet)
    RECT client;
    GetClientRect(control, &client);
    int width = client.right, height = client.bottom;
    unsigned flags = flagsOf(control);
    if (flags & KVS_OVERLAY) {
        bool vertical = flags & KVS_VERTICAL;
        int arrowWidth = vertical ? width : height, arrowHeight = arrowWidth;
        if (flags & KVS_KEEPBUTTONSIZE) {
            RECT own;
            GetClientRect(decrement, &own);
            if (vertical) {
                arrowWidth = width;
                arrowHeight = own.bottom;
            } else {
                arrowWidth = own.right;
                arrowHeight = height;
            }
        }
        MoveWindow(decrement, 0, 0, arrowWidth, arrowHeight, FALSE);
        if (vertical)
            MoveWindow(increment, 0, height - arrowHeight, arrowWidth, arrowHeight, FALSE);
        else
            MoveWindow(increment, width - arrowWidth, 0, arrowWidth, arrowHeight, FALSE);
    } else if (flags & KVS_NOTEXT) {
        MoveWindow(decrement, 0, 0, width, height / 2, FALSE);
        MoveWindow(increment, 0, height / 2, width, height - height / 2, FALSE);
    } else if (textRecord(control)) {
        MoveWindow(decrement, 0, 0, height, height, FALSE);
        MoveWindow(increment, width - height, 0, height, height, FALSE);
    } else {
        MoveWindow(decrement, 0, 0, width / 2, height, FALSE);
        MoveWindow(increment, width / 2, 0, width - width / 2, height, FALSE);
    }
    redrawWithArrows(control);
}

// --- position ---------------------------------------------------------------------------------

void updateArrow(HWND control, HWND arrow, bool canStep, bool hideDisabled) {
    if (!arrow) return;
    EnableWindow(arrow, canStep);
    if (!hideDisabled) return;
    if (canStep) {
        ShowWindow(arrow, SW_SHOWNA);
        return;
    }
    if (!ShowWindow(arrow, SW_HIDE)) return;  // hidden already
    // Over another window (an overlay) the picture beneath must show where the arrow was.
    HWND parent = GetParent(control);
    RECT area;
    GetWindowRect(arrow, &area);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&area), 2);
    RedrawWindow(parent, &area, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void updateArrows(HWND control, int position) {
    bool hide = flagsOf(control) & KVS_HIDEDISABLED;
    updateArrow(control, GetDlgItem(control, KVS_ID_DECREMENT),
                position > GetWindowLongW(control, KVS_OFFSET_MIN), hide);
    updateArrow(control, GetDlgItem(control, KVS_ID_INCREMENT),
                position < GetWindowLongW(control, KVS_OFFSET_MAX), hide);
}

int setPosition(HWND control, int position, bool redraw) {
    int previous = GetWindowLongW(control, KVS_OFFSET_POS);
    if (position == previous) return previous;
    if (!(flagsOf(control) & KVS_NOLIMIT)) updateArrows(control, position);
    SetWindowLongW(control, KVS_OFFSET_POS, position);
    if (redraw) redrawWithArrows(control);
    return previous;
}

// One step of an arrow: refused at the range's ends (a range of 0..0 is unset and does not
// limit), otherwise taken when the parent allows it.
void step(HWND control, bool increment) {
    int position = GetWindowLongW(control, KVS_OFFSET_POS);
    int minimum = GetWindowLongW(control, KVS_OFFSET_MIN);
    int maximum = GetWindowLongW(control, KVS_OFFSET_MAX);
    bool rangeSet = minimum != 0 || maximum != 0;
    if (!(flagsOf(control) & KVS_NOLIMIT) && rangeSet &&
        (increment ? position >= maximum : position <= minimum))
        return;
    int next = increment ? position + 1 : position - 1;
    LPARAM request = MAKELPARAM(next, GetDlgCtrlID(control));
    if (!SendMessageW(GetParent(control), KVSN_QUERYSTEP, increment ? 1 : 0, request)) return;
    setPosition(control, next, true);
}

// A click and the second click of a double click are both steps.
bool isArrowClick(WPARAM wParam) {
    int id = LOWORD(wParam), code = HIWORD(wParam);
    return (id == KVS_ID_DECREMENT || id == KVS_ID_INCREMENT) &&
           (code == BN_CLICKED || code == BN_DOUBLECLICKED);
}

// --- painting ---------------------------------------------------------------------------------

void paintText(HWND control, HDC dc) {
    ScrollText* record = textRecord(control);
    if (!record) return;
    RECT client;
    GetClientRect(control, &client);
    if (!(flagsOf(control) & KVS_TRANSPARENT)) {
        SetBkColor(dc, GetSysColor(COLOR_WINDOW));
        ExtTextOutW(dc, 0, 0, ETO_OPAQUE, &client, L"", 0, nullptr);
    }
    if (!record->text || !record->text[0]) return;
    HGDIOBJ previousFont = record->font ? SelectObject(dc, record->font) : nullptr;
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    SetBkMode(dc, TRANSPARENT);
    DrawTextW(dc, record->text, -1, &client, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    if (previousFont) SelectObject(dc, previousFont);
}

void redrawArrows(HWND control) {
    for (int id : kArrowIds) {
        HWND arrow = GetDlgItem(control, id);
        if (arrow) RedrawWindow(arrow, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    }
}

// The overlay itself is see-through; its arrows go back on top of what was painted beneath,
// now and once more when every pending paint is done (UpdateWindow can paint a transparent
// window before the windows beneath it, which then paint over its arrows).
void onPaint(HWND control) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(control, &paint);
    bool overlay = flagsOf(control) & KVS_OVERLAY;
    if (!overlay) paintText(control, dc);
    EndPaint(control, &paint);
    if (!overlay) return;
    redrawArrows(control);
    SetTimer(control, kArrowTimer, USER_TIMER_MINIMUM, nullptr);
}

LRESULT drawArrow(const DRAWITEMSTRUCT* item) {
    if (!item || item->CtlType != ODT_BUTTON) return FALSE;
    auto picture = static_cast<HBITMAP>(GetPropW(item->hwndItem, kBitmapProperty));
    PaintButtonFace(item->hDC, item->rcItem, item->itemState & ODS_SELECTED, picture,
                    !(item->itemState & ODS_DISABLED), item->itemState & ODS_FOCUS);
    return TRUE;
}

// --- overlay ----------------------------------------------------------------------------------

// Posts a mouse message to what lies beneath the overlay: a date-time picker's first child, or
// else the parent. Moves keep the overlay's own coordinates; the other messages get the
// parent's (or the picker child's).
void forwardMouse(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
    HWND parent = GetParent(control);
    POINT point = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    if (message != WM_MOUSEMOVE) MapWindowPoints(control, parent, &point, 1);
    HWND beneath = ChildWindowFromPointEx(parent, point, CWP_SKIPTRANSPARENT);
    HWND target = parent;
    if (beneath && beneath != parent && hasClass(beneath, DATETIMEPICK_CLASSW)) {
        // A picker without children takes the message itself.
        target = GetWindow(beneath, GW_CHILD);
        if (!target) target = beneath;
        if (message != WM_MOUSEMOVE) MapWindowPoints(parent, target, &point, 1);
    }
    PostMessageW(target, message, wParam, MAKELPARAM(point.x, point.y));
}

// --- life -------------------------------------------------------------------------------------

void attachText(HWND control, wchar_t* text, HFONT font, DWORD extra1, DWORD extra2) {
    auto* record = static_cast<ScrollText*>(Mres(sizeof(ScrollText)));
    if (!record) {
        FreeMemory(text);  // the control owns the text and cannot keep it
        return;
    }
    record->text = text;
    record->font = font;
    record->extra1 = extra1;
    record->extra2 = extra2;
    SetPropW(control, kTextProperty, record);
}

HWND createArrow(HWND control, int id, const wchar_t* bitmapName, int width, int height,
                 HINSTANCE instance, bool repeat) {
    HWND arrow = CreateWindowExW(0, L"button", L"", kArrowStyle, 0, 0, width, height, control,
                                 reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), instance,
                                 nullptr);
    if (!arrow) return nullptr;
    HBITMAP picture = LoadBitmapW(g_libraryModule, bitmapName);
    if (picture) SetPropW(arrow, kBitmapProperty, picture);
    if (repeat) {
        auto previous = reinterpret_cast<WNDPROC>(
            SetWindowLongW(arrow, GWL_WNDPROC, reinterpret_cast<LONG>(KVScrollBtnProc)));
        if (previous && previous != KVScrollBtnProc) g_repeat.buttonProc = previous;
    }
    return arrow;
}

void onDestroy(HWND control) {
    for (int id : kArrowIds) {
        HWND arrow = GetDlgItem(control, id);
        if (!arrow) continue;
        auto picture = static_cast<HBITMAP>(RemovePropW(arrow, kBitmapProperty));
        if (picture) DeleteObject(picture);
    }
    auto* record = static_cast<ScrollText*>(RemovePropW(control, kTextProperty));
    if (record) {
        FreeMemory(record->text);
        FreeMemory(record);
    }
}

// --- auto-repeat ------------------------------------------------------------------------------

// Runs while the arrow is held: one step at once, then none until the pause is over, then one
// on every pass of the loop, as fast as the parent takes them. Ends on release or when the
// arrow loses the mouse capture.
void repeatWhileHeld(HWND arrow) {
    HWND control = GetParent(arrow);
    WPARAM command = MAKEWPARAM(GetDlgCtrlID(arrow), BN_CLICKED);
    LPARAM from = reinterpret_cast<LPARAM>(arrow);
    g_repeat.repeating = true;
    g_repeat.pressTick = GetTickCount();
    SendMessageW(arrow, BM_SETSTATE, TRUE, 0);
    UpdateWindow(arrow);
    SendMessageW(control, WM_COMMAND, command, from);
    SetCapture(arrow);
    while (g_repeat.repeating) {
        MSG msg;
        if (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            if (msg.message == WM_QUIT) {  // the thread's loop must still see it
                g_repeat.repeating = false;
                PostQuitMessage(static_cast<int>(msg.wParam));
                break;
            }
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
        if (g_repeat.repeating && GetTickCount() - g_repeat.pressTick >= kRepeatDelay)
            SendMessageW(control, WM_COMMAND, command, from);
        if (GetCapture() != arrow) {
            g_repeat.repeating = false;
            SendMessageW(arrow, WM_LBUTTONUP, 0, 0);
        }
    }
    if (GetCapture() == arrow) ReleaseCapture();
    SendMessageW(arrow, BM_SETSTATE, FALSE, 0);
    UpdateWindow(arrow);
}

// Release of the held arrow; a release away from it hands the focus to the control.
void endRepeat(HWND arrow, LPARAM lParam) {
    g_repeat.repeating = false;
    POINT point = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    RECT client;
    GetClientRect(arrow, &client);
    if (!PtInRect(&client, point)) SetFocus(GetParent(arrow));
}

}  // namespace

LRESULT KVKIT_CALL KVScrollProc(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
    bool overlay = flagsOf(control) & KVS_OVERLAY;
    switch (message) {
    case WM_SIZE:
        layoutArrows(control);
        return 0;
    case WM_COMMAND:
        if (!isArrowClick(wParam)) break;
        step(control, LOWORD(wParam) == KVS_ID_INCREMENT);
        return 0;
    case WM_PAINT:
        onPaint(control);
        return 0;
    case WM_PRINTCLIENT:
        if (!overlay) paintText(control, reinterpret_cast<HDC>(wParam));
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_DRAWITEM:
        return drawArrow(reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
    case WM_SETCURSOR:
        if (!overlay) break;
        SendMessageW(GetParent(control), WM_SETCURSOR,
                     reinterpret_cast<WPARAM>(GetParent(control)), HTCLIENT);
        return TRUE;
    case WM_TIMER:
        if (wParam != kArrowTimer) break;
        KillTimer(control, kArrowTimer);
        redrawArrows(control);
        return 0;
    case WM_DESTROY:
        KillTimer(control, kArrowTimer);
        onDestroy(control);
        return 0;
    default:
        if (overlay && message >= WM_MOUSEMOVE && message <= WM_RBUTTONUP) {
            forwardMouse(control, message, wParam, lParam);
            return 0;
        }
        break;
    }
    return DefWindowProcW(control, message, wParam, lParam);
}

LRESULT KVKIT_CALL KVScrollBtnProc(HWND arrow, UINT message, WPARAM wParam, LPARAM lParam) {
    if (!IsWindow(arrow)) return 0;  // a held arrow must be a window to hold the capture
    switch (message) {
    case WM_LBUTTONDOWN:
        if (!g_repeat.repeating) repeatWhileHeld(arrow);
        return 0;
    case WM_LBUTTONUP:
    case WM_NCMOUSEMOVE:
    case WM_NCLBUTTONUP:
        endRepeat(arrow, lParam);
        break;
    case WM_CAPTURECHANGED:
        g_repeat.repeating = false;
        return 0;
    case WM_KILLFOCUS:
        if (g_repeat.repeating) return 0;
        break;
    }
    if (!g_repeat.buttonProc) return 0;
    return CallWindowProcW(g_repeat.buttonProc, arrow, message, wParam, lParam);
}

HWND __cdecl KVScroll_CreateWindow(HWND parent, int id, int x, int y, int cx, int cy,
                                   unsigned short flags, HINSTANCE instance, void* text,
                                   HFONT font, DWORD extra1, DWORD extra2) {
    DWORD exStyle = 0, style = kVisibleStyle;
    if (flags & KVS_TRANSPARENT) {
        exStyle = WS_EX_TRANSPARENT;
    } else if (flags & KVS_OVERLAY) {
        exStyle = WS_EX_TRANSPARENT;
        style &= ~WS_VISIBLE;
    }
    auto* ownedText = (flags & KVS_NOTEXT) ? nullptr : static_cast<wchar_t*>(text);
    HWND control = CreateWindowExW(exStyle, kScrollClass, L"", style, x, y, cx, cy, parent,
                                   reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), instance,
                                   nullptr);
    if (!control) {
        FreeMemory(ownedText);
        return nullptr;
    }
    SetWindowLongW(control, KVS_OFFSET_FLAGS, flags);
    SetWindowLongW(control, KVS_OFFSET_MIN, 0);
    SetWindowLongW(control, KVS_OFFSET_MAX, 0);
    SetWindowLongW(control, KVS_OFFSET_POS, 0);
    if (ownedText) attachText(control, ownedText, font, extra1, extra2);

    bool overlay = flags & KVS_OVERLAY, vertical = flags & KVS_VERTICAL;
    int arrowWidth = overlay ? cx : 0, arrowHeight = overlay ? cy : 0;
    bool repeat = flags & KVS_REPEAT;
    if (!createArrow(control, KVS_ID_DECREMENT, vertical ? L"btaob" : L"btali", arrowWidth,
                     arrowHeight, instance, repeat) ||
        !createArrow(control, KVS_ID_INCREMENT, vertical ? L"btaun" : L"btare", arrowWidth,
                     arrowHeight, instance, repeat)) {
        DestroyWindow(control);  // takes the text and the pictures with it
        return nullptr;
    }
    layoutArrows(control);
    if (overlay) SetWindowPos(control, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    return control;
}

int __cdecl KVScroll_GetScrollPos(HWND control, int) {
    return isScroller(control) ? GetWindowLongW(control, KVS_OFFSET_POS) : 0;
}

BOOL __cdecl KVScroll_GetScrollRange(HWND control, int, int* minimum, int* maximum) {
    if (!isScroller(control) || !minimum || !maximum) return FALSE;
    *minimum = GetWindowLongW(control, KVS_OFFSET_MIN);
    *maximum = GetWindowLongW(control, KVS_OFFSET_MAX);
    return TRUE;
}

int __cdecl KVScroll_SetScrollPos(HWND control, int, int position, BOOL redraw) {
    if (!isScroller(control)) return 0;
    return setPosition(control, position, redraw);
}

BOOL __cdecl KVScroll_SetScrollRange(HWND control, int, int minimum, int maximum, BOOL redraw) {
    if (!isScroller(control)) return FALSE;
    SetWindowLongW(control, KVS_OFFSET_MIN, minimum);
    SetWindowLongW(control, KVS_OFFSET_MAX, maximum);
    unsigned flags = flagsOf(control);
    if (minimum == maximum && ((flags & KVS_HIDEDISABLED) || !(flags & KVS_OVERLAY))) {
        ShowWindow(control, SW_HIDE);
        return TRUE;
    }
    if (!(GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE)) ShowWindow(control, SW_SHOWNA);
    if (!(flags & KVS_NOLIMIT)) updateArrows(control, GetWindowLongW(control, KVS_OFFSET_POS));
    if (redraw) redrawWithArrows(control);
    return TRUE;
}

BOOL __cdecl KVScroll_SetText(HWND control, void* text, BOOL redraw) {
    if (!isScroller(control)) return FALSE;
    ScrollText* record = textRecord(control);
    if (!record) return FALSE;
    if (record->text != text) FreeMemory(record->text);
    record->text = static_cast<wchar_t*>(text);
    if (redraw) {
        RECT between, arrow = {};
        GetClientRect(control, &between);
        HWND decrement = GetDlgItem(control, KVS_ID_DECREMENT);
        if (decrement) GetClientRect(decrement, &arrow);
        between.left += arrow.right;
        between.right -= arrow.right;
        InvalidateRect(control, &between, TRUE);
        UpdateWindow(control);
    }
    return TRUE;
}

BOOL __cdecl KVScroll_UpdWndPos(HWND control, RECT* area, int) {
    if (!isScroller(control)) return FALSE;
    unsigned flags = flagsOf(control);
    if (!(flags & KVS_OVERLAY)) return FALSE;
    RECT bounds;
    if (area && !IsRectEmpty(area))
        bounds = *area;
    else
        GetClientRect(GetParent(control), &bounds);
    RECT own;
    GetWindowRect(control, &own);
    int ownWidth = own.right - own.left, ownHeight = own.bottom - own.top;
    int areaWidth = bounds.right - bounds.left, areaHeight = bounds.bottom - bounds.top;
    bool vertical = flags & KVS_VERTICAL, keep = flags & KVS_KEEPBUTTONSIZE;
    bool alignFar = flags & KVS_ALIGNFAR;
    int width = vertical ? (keep ? areaWidth : ownWidth) : (keep ? ownWidth : areaWidth);
    int height = vertical ? areaHeight : ownHeight;
    int x = vertical && alignFar ? bounds.right - width : bounds.left;
    int y = !vertical && alignFar ? bounds.bottom - height : bounds.top;
    // New children go below their older siblings: the overlay is raised over what it covers.
    SetWindowPos(control, HWND_TOP, x, y, width, height, SWP_NOACTIVATE);
    if (width == ownWidth && height == ownHeight) layoutArrows(control);  // no WM_SIZE came
    return TRUE;
}
