// Popup hints: one tooltip-class window at a time, beside an anchor, painted by the library with
// a text or a picture, taken away by a time-out, a click, a key or a newer hint.
#include "core/library.h"
#include "include/kvkit_popuphint.h"
#include "include/kvkit_paint.h"
#include "graphics/memory_dc.h"
#include <commctrl.h>
#include "kvtext.h"

namespace {

const wchar_t kHintClass[] = L"KVtooltips_class32";
const wchar_t kRecordProperty[] = L"struct";
const UINT_PTR kTimeoutTimer = 0x4B48;
const int kAnchorGap = 2;       // between the anchor and the hint
const int kTextMarginX = 4;     // inside the border, around the text
const int kTextMarginY = 2;
const int kMaxTextWidth = 360;  // longer lines wrap
const UINT kTextFormat = DT_LEFT | DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS;

// What one hint shows: a text or a picture, both the hint's own.
struct PopupHint {
    wchar_t* text;     // kvtext copy, or null
    HBITMAP picture;   // screen-compatible copy, or null
    SIZE content;      // size of the text block or of the picture
};

ATOM g_hintClass;
HWND g_hint;       // the hint on show
HHOOK g_hintHook;  // watches the thread's clicks and keys while a hint is on show

// Copies the system tooltip class under the library's name, without its cursor.
bool registerHintClass() {
    if (g_hintClass) return true;
    INITCOMMONCONTROLSEX init = {sizeof(init), ICC_BAR_CLASSES};
    InitCommonControlsEx(&init);
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof(windowClass);
    if (!GetClassInfoExW(nullptr, TOOLTIPS_CLASSW, &windowClass)) return false;
    windowClass.hInstance = g_libraryModule;
    windowClass.hCursor = nullptr;
    windowClass.lpszClassName = kHintClass;
    g_hintClass = RegisterClassExW(&windowClass);
    return g_hintClass != 0;
}

PopupHint* hintRecord(HWND hint) { return static_cast<PopupHint*>(GetPropW(hint, kRecordProperty)); }

void freeRecord(PopupHint* record) {
    if (!record) return;
    FreeMemory(record->text);
    if (record->picture) DeleteObject(record->picture);
    FreeMemory(record);
}

bool dismissesHint(UINT message) {
    switch (message) {
    case WM_LBUTTONDOWN: case WM_RBUTTONDOWN: case WM_MBUTTONDOWN: case WM_XBUTTONDOWN:
    case WM_NCLBUTTONDOWN: case WM_NCRBUTTONDOWN: case WM_NCMBUTTONDOWN: case WM_NCXBUTTONDOWN:
    case WM_MOUSEWHEEL: case WM_MOUSEHWHEEL: case WM_KEYDOWN: case WM_SYSKEYDOWN:
        return true;
    }
    return false;
}

// Sees every message the thread takes from its queue, posted or from the input devices.
LRESULT CALLBACK hintMessageHook(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HC_ACTION && wParam == PM_REMOVE && g_hint &&
        dismissesHint(reinterpret_cast<const MSG*>(lParam)->message))
        DestroyWindow(g_hint);
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

HFONT hintFont(HWND hint) {
    auto font = reinterpret_cast<HFONT>(SendMessageW(hint, WM_GETFONT, 0, 0));
    return font ? font : static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
}

void paintHint(HWND hint, HDC dc) {
    RECT client;
    GetClientRect(hint, &client);
    PopupHint* record = hintRecord(hint);
    if (record && record->picture) {
        MemoryDC picture(dc, record->picture);
        if (picture.ok())
            BitBlt(dc, 0, 0, record->content.cx, record->content.cy, picture.dc(), 0, 0, SRCCOPY);
        return;
    }
    FillRect(dc, &client, GetSysColorBrush(COLOR_INFOBK));
    if (!record || !record->text) return;
    HGDIOBJ oldFont = SelectObject(dc, hintFont(hint));
    SetTextColor(dc, GetSysColor(COLOR_INFOTEXT));
    SetBkMode(dc, TRANSPARENT);
    RECT text = {kTextMarginX, kTextMarginY, kTextMarginX + record->content.cx,
                 kTextMarginY + record->content.cy};
    DrawTextW(dc, record->text, -1, &text, kTextFormat);
    SelectObject(dc, oldFont);
}

void releaseHint(HWND hint) {
    KillTimer(hint, kTimeoutTimer);
    freeRecord(static_cast<PopupHint*>(RemovePropW(hint, kRecordProperty)));
    if (g_hint == hint) {
        g_hint = nullptr;
        UnhookWindowsHookEx(g_hintHook);
        g_hintHook = nullptr;
    }
}

LRESULT CALLBACK hintProc(HWND hint, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_PAINT: {
        PAINTSTRUCT ps;
        HDC dc = BeginPaint(hint, &ps);
        paintHint(hint, dc);
        EndPaint(hint, &ps);
        return 0;
    }
    case WM_PRINTCLIENT:
        paintHint(hint, reinterpret_cast<HDC>(wParam));
        return 0;
    case WM_ERASEBKGND:
        return 1;  // painting covers the whole client area
    case WM_MOUSEACTIVATE:
        return MA_NOACTIVATE;
    case WM_TIMER:
        if (wParam != kTimeoutTimer) break;
        DestroyWindow(hint);
        return 0;
    case WM_DESTROY:
        releaseHint(hint);
        break;
    }
    WNDPROC previous = Kx1GetSubProc(message == WM_DESTROY, hint);
    if (!previous) return 0;
    return CallWindowProcW(previous, hint, message, wParam, lParam);
}

// The text block's size in the hint's font.
SIZE measureText(HWND hint, const wchar_t* text) {
    HDC dc = GetDC(hint);
    HGDIOBJ oldFont = SelectObject(dc, hintFont(hint));
    RECT bounds = {0, 0, kMaxTextWidth, 0};
    DrawTextW(dc, text, -1, &bounds, kTextFormat | DT_CALCRECT);
    SelectObject(dc, oldFont);
    ReleaseDC(hint, dc);
    return SIZE{bounds.right, bounds.bottom};
}

RECT workAreaOf(const RECT& rect) {
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof(monitor);
    GetMonitorInfoW(MonitorFromRect(&rect, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork;
}

// The hint's frame around a client area of the given size.
SIZE frameSize(HWND hint, SIZE client) {
    RECT rect = {0, 0, client.cx, client.cy};
    AdjustWindowRectEx(&rect, static_cast<DWORD>(GetWindowLongW(hint, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongW(hint, GWL_EXSTYLE)));
    return SIZE{rect.right - rect.left, rect.bottom - rect.top};
}

// Beside the anchor on the side asked for, or on the opposite side when only that one has room
// on the anchor's monitor; then kept on the monitor.
RECT placeBeside(const RECT& anchor, SIZE size, UINT placement) {
    RECT area = workAreaOf(anchor);
    RECT rect;
    if (placement & KXHINT_RIGHT) {
        rect.left = anchor.right + kAnchorGap;
        rect.top = anchor.top;
        if (rect.left + size.cx > area.right && anchor.left - kAnchorGap - size.cx >= area.left)
            rect.left = anchor.left - kAnchorGap - size.cx;
    } else {
        rect.left = anchor.left;
        rect.top = anchor.bottom + kAnchorGap;
        if (rect.top + size.cy > area.bottom && anchor.top - kAnchorGap - size.cy >= area.top)
            rect.top = anchor.top - kAnchorGap - size.cy;
    }
    rect.right = rect.left + size.cx;
    rect.bottom = rect.top + size.cy;
    Kx1ClipOrCenterRectToMonitor(&rect, KV_MONITOR_WORKAREA);
    return rect;
}

// The anchor in screen coordinates.
RECT anchorRect(HWND window, const RECT* anchor) {
    RECT rect;
    if (anchor) {
        rect = *anchor;
        MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&rect), 2);
    } else {
        GetWindowRect(window, &rect);
    }
    return rect;
}

// A picture that fits `limit`: a copy at the source's size, or shrunk keeping its aspect.
HBITMAP fittedCopy(HBITMAP source, SIZE limit, SIZE* size) {
    int width, height;
    if (!BitmapSize(source, &width, &height) || width <= 0 || height <= 0) return nullptr;
    if (width > limit.cx || height > limit.cy) {
        double scale = static_cast<double>(limit.cx) / width;
        if (static_cast<double>(limit.cy) / height < scale) scale = static_cast<double>(limit.cy) / height;
        *size = SIZE{static_cast<int>(width * scale), static_cast<int>(height * scale)};
        if (size->cx < 1) size->cx = 1;
        if (size->cy < 1) size->cy = 1;
    } else {
        *size = SIZE{width, height};
    }
    MemoryDC from(nullptr, source);
    if (!from.ok()) return nullptr;
    return PaintNewBitmap(size->cx, size->cy, [&](HDC dc) {
        SetStretchBltMode(dc, HALFTONE);
        SetBrushOrgEx(dc, 0, 0, nullptr);
        return StretchBlt(dc, 0, 0, size->cx, size->cy, from.dc(), 0, 0, width, height, SRCCOPY) != 0;
    });
}

// A hidden hint window owned by the window's top-level window, subclassed and carrying `record`.
// On failure the record is freed.
HWND createHintWindow(HWND window, PopupHint* record) {
    HWND hint = nullptr;
    if (registerHintClass())
        hint = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW, kHintClass, nullptr, WS_POPUP, 0, 0,
                               0, 0, GetAncestor(window, GA_ROOT), nullptr, g_libraryModule, nullptr);
    if (!hint) {
        freeRecord(record);
        return nullptr;
    }
    if (!Kx1SetSubProc(hint, hintProc)) {
        DestroyWindow(hint);
        freeRecord(record);
        return nullptr;
    }
    if (!SetPropW(hint, kRecordProperty, record)) {
        freeRecord(record);
        DestroyWindow(hint);
        return nullptr;
    }
    return hint;
}

// Sizes and places the new hint, takes the old one away and shows the new one.
HWND showHint(HWND hint, HWND window, const RECT* anchor, UINT milliseconds, UINT placement) {
    if (!g_hintHook)
        g_hintHook = SetWindowsHookExW(WH_GETMESSAGE, hintMessageHook, nullptr, GetCurrentThreadId());
    if (!g_hintHook) {
        DestroyWindow(hint);
        return nullptr;
    }
    PopupHint* record = hintRecord(hint);
    SIZE client = record->content;
    if (record->text) {
        client.cx += 2 * kTextMarginX;
        client.cy += 2 * kTextMarginY;
    }
    RECT rect = placeBeside(anchorRect(window, anchor), frameSize(hint, client), placement);

    HWND previous = g_hint;
    g_hint = hint;
    if (previous) DestroyWindow(previous);
    if (milliseconds == KXHINT_DEFAULT_TIMEOUT) milliseconds = GetDoubleClickTime() * 10;
    if (milliseconds != INFINITE) SetTimer(hint, kTimeoutTimer, milliseconds, nullptr);
    SetWindowPos(hint, HWND_TOPMOST, rect.left, rect.top, rect.right - rect.left,
                 rect.bottom - rect.top, SWP_NOACTIVATE | SWP_SHOWWINDOW);
    return hint;
}

// The text to show: a kvtext copy of `text`, or of a language string when `text` is a number.
wchar_t* copyHintText(const wchar_t* text) {
    if (IS_INTRESOURCE(text)) return LoadLanguageString(LOWORD(reinterpret_cast<UINT_PTR>(text)));
    int length = lstrlenW(text);
    auto* copy = static_cast<wchar_t*>(GetMemory((length + 1) * static_cast<int>(sizeof(wchar_t))));
    if (copy) kv_strcpy(copy, text, length + 1);
    return copy;
}

}  // namespace

HWND KVKIT_CALL DrawPopupTextEx(HWND window, const RECT* anchor, const wchar_t* text,
                                UINT milliseconds, UINT placement) {
    if (!window || !IsWindow(window) || !text) return nullptr;
    wchar_t* copy = copyHintText(text);
    if (!copy || !copy[0]) {
        FreeMemory(copy);
        return nullptr;
    }
    auto* record = static_cast<PopupHint*>(Mres(sizeof(PopupHint)));
    if (!record) {
        FreeMemory(copy);
        return nullptr;
    }
    record->text = copy;
    HWND hint = createHintWindow(window, record);
    if (!hint) return nullptr;
    record->content = measureText(hint, copy);
    return showHint(hint, window, anchor, milliseconds, placement);
}

HWND KVKIT_CALL DrawPopupImageEx(HWND window, const RECT* anchor, HBITMAP picture,
                                 UINT milliseconds, UINT placement) {
    if (!window || !IsWindow(window) || GetObjectType(picture) != OBJ_BITMAP) return nullptr;
    auto* record = static_cast<PopupHint*>(Mres(sizeof(PopupHint)));
    if (!record) return nullptr;
    HWND hint = createHintWindow(window, record);
    if (!hint) return nullptr;
    // The picture must fit on the monitor together with the hint's frame.
    RECT area = workAreaOf(anchorRect(window, anchor));
    SIZE frame = frameSize(hint, SIZE{0, 0});
    SIZE limit = {area.right - area.left - frame.cx, area.bottom - area.top - frame.cy};
    record->picture = fittedCopy(picture, limit, &record->content);
    if (!record->picture) {
        DestroyWindow(hint);
        return nullptr;
    }
    return showHint(hint, window, anchor, milliseconds, placement);
}
