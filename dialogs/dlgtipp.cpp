// Hint bubbles ("KXDlgTippWndClass"): a white, shaped popup whose stem points at a field. The
// bubble watches the field and the field's top-level window through comctl32 subclasses, which
// stack safely on fields that the library's own replacement procedures already hold.
#include "core/library.h"
#include "include/kvkit_dlgpaint.h"
#include "include/kvkit_paint.h"
#include <commctrl.h>
#include "kvtext.h"

namespace {

const wchar_t kTippClass[] = L"KXDlgTippWndClass";
const UINT_PTR kFieldWatcherId = 0x4B44;  // one bubble per field
const int kPadding = 8;                   // around icon and text
const int kIconSize = 16;
const int kIconGap = 6;                   // between icon and text
const int kStemHeight = 10;
const int kStemHalfWidth = 8;
const int kStemOffset = 16;               // from the bubble's left edge to the stem's tip
const int kCornerDiameter = 10;
const int kMinBodyWidth = 2 * kStemOffset;
const int kMaxTextWidth = 240;            // longer lines wrap
const int kTextCapacity = 1024;           // characters shown
const UINT kTextFormat = DT_LEFT | DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS;

// Per-window state of a bubble, in GWLP_USERDATA.
struct DlgTipp {
    HWND field;    // pointed at
    HWND owner;    // the field's top-level window, whose moves the bubble follows
    UINT icon;     // KXTIPP_*
    SIZE text;     // the wrapped text's size
    int stemX;     // client x of the stem's tip
    int stemDown;  // 1: the bubble sits above the field, its stem at the bottom
};

DlgTipp* tippRecord(HWND bubble) {
    return reinterpret_cast<DlgTipp*>(GetWindowLongPtrW(bubble, GWLP_USERDATA));
}

LRESULT CALLBACK fieldWatcher(HWND field, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                              DWORD_PTR data);

HWND bubbleOf(HWND field) {
    DWORD_PTR bubble = 0;
    if (!GetWindowSubclass(field, fieldWatcher, kFieldWatcherId, &bubble)) return nullptr;
    return reinterpret_cast<HWND>(bubble);
}

HICON tippIcon(UINT icon) {
    const wchar_t* names[] = {nullptr, IDI_INFORMATION, IDI_WARNING, IDI_ERROR};
    if (icon == KXTIPP_NOICON || icon > KXTIPP_ERROR) return nullptr;
    return static_cast<HICON>(LoadImageW(nullptr, names[icon], IMAGE_ICON, kIconSize, kIconSize, LR_SHARED));
}

HFONT tippFont(const DlgTipp* record) {
    HFONT font = nullptr;
    if (record) font = reinterpret_cast<HFONT>(SendMessageW(record->field, WM_GETFONT, 0, 0));
    return font ? font : static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
}

int iconPart(const DlgTipp& record) { return record.icon ? kIconSize + kIconGap : 0; }

SIZE bodySize(const DlgTipp& record) {
    int width = 2 * kPadding + iconPart(record) + record.text.cx;
    int contentHeight = record.text.cy;
    if (record.icon && contentHeight < kIconSize) contentHeight = kIconSize;
    return SIZE{width < kMinBodyWidth ? kMinBodyWidth : width, 2 * kPadding + contentHeight};
}

int bodyTop(const DlgTipp& record) { return record.stemDown ? 0 : kStemHeight; }

// The bubble's outline in client coordinates: the rounded body and the stem.
HRGN bubbleRegion(const DlgTipp& record, int width, int height) {
    int top = bodyTop(record);
    int bottom = record.stemDown ? height - kStemHeight : height;
    HRGN body = CreateRoundRectRgn(0, top, width + 1, bottom + 1, kCornerDiameter, kCornerDiameter);
    if (!body) return nullptr;
    // The stem reaches one row into the body so that the two join.
    POINT stem[3] = {{record.stemX - kStemHalfWidth, top + 1}, {record.stemX, 0},
                     {record.stemX + kStemHalfWidth, top + 1}};
    if (record.stemDown) {
        stem[0].y = stem[2].y = bottom - 1;
        stem[1].y = height;
    }
    HRGN tip = CreatePolygonRgn(stem, 3, ALTERNATE);
    if (tip) {
        CombineRgn(body, body, tip, RGN_OR);
        DeleteObject(tip);
    }
    return body;
}

void paintBubble(HWND bubble, HDC dc) {
    RECT client;
    GetClientRect(bubble, &client);
    FillRect(dc, &client, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    DlgTipp* record = tippRecord(bubble);
    if (!record) return;
    HRGN outline = bubbleRegion(*record, client.right, client.bottom);
    if (outline) {
        FrameRgn(dc, outline, GetSysColorBrush(COLOR_WINDOWFRAME), 1, 1);
        DeleteObject(outline);
    }
    int top = bodyTop(*record) + kPadding;
    if (HICON icon = tippIcon(record->icon))
        DrawIconEx(dc, kPadding, top, icon, kIconSize, kIconSize, 0, nullptr, DI_NORMAL);
    wchar_t text[kTextCapacity];
    int length = GetWindowTextW(bubble, text, kTextCapacity);
    RECT area = {kPadding + iconPart(*record), top, 0, top + record->text.cy};
    area.right = area.left + record->text.cx;
    HGDIOBJ oldFont = SelectObject(dc, tippFont(record));
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    SetBkMode(dc, TRANSPARENT);
    DrawTextW(dc, text, length, &area, kTextFormat);
    SelectObject(dc, oldFont);
}

void measureText(HWND bubble, DlgTipp& record) {
    wchar_t text[kTextCapacity];
    int length = GetWindowTextW(bubble, text, kTextCapacity);
    HDC dc = GetDC(bubble);
    HGDIOBJ oldFont = SelectObject(dc, tippFont(&record));
    RECT bounds = {0, 0, kMaxTextWidth, 0};
    DrawTextW(dc, text, length, &bounds, kTextFormat | DT_CALCRECT);
    SelectObject(dc, oldFont);
    ReleaseDC(bubble, dc);
    record.text = SIZE{bounds.right, bounds.bottom};
}

RECT workAreaOf(const RECT& rect) {
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof(monitor);
    GetMonitorInfoW(MonitorFromRect(&rect, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork;
}

// Sizes, shapes and places the bubble below the field (above when only there is room), kept on
// the monitor, with the stem pointing at the field's left part.
void layoutBubble(HWND bubble) {
    DlgTipp* record = tippRecord(bubble);
    if (!record) return;
    measureText(bubble, *record);
    SIZE body = bodySize(*record);
    int width = body.cx, height = body.cy + kStemHeight;
    RECT field;
    GetWindowRect(record->field, &field);
    int fieldWidth = field.right - field.left;
    int tipX = field.left + (kStemOffset < fieldWidth / 2 ? kStemOffset : fieldWidth / 2);
    RECT area = workAreaOf(field);
    record->stemDown = field.bottom + height > area.bottom && field.top - height >= area.top;
    RECT rect;
    rect.left = tipX - kStemOffset;
    rect.top = record->stemDown ? field.top - height : field.bottom;
    rect.right = rect.left + width;
    rect.bottom = rect.top + height;
    Kx1ClipOrCenterRectToMonitor(&rect, KV_MONITOR_WORKAREA);
    // Moved sideways onto the monitor, the stem still points at the field where the body allows.
    int stemX = tipX - rect.left;
    int lowest = kCornerDiameter / 2 + kStemHalfWidth, highest = width - lowest;
    record->stemX = stemX < lowest ? lowest : stemX > highest ? highest : stemX;
    SetWindowPos(bubble, nullptr, rect.left, rect.top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
    HRGN outline = bubbleRegion(*record, width, height);
    if (outline && !SetWindowRgn(bubble, outline, TRUE)) DeleteObject(outline);
    InvalidateRect(bubble, nullptr, TRUE);
}

bool movedOrSized(LPARAM lParam) {
    const UINT unchanged = SWP_NOMOVE | SWP_NOSIZE;
    return (reinterpret_cast<const WINDOWPOS*>(lParam)->flags & unchanged) != unchanged;
}

bool editsText(UINT message, WPARAM wParam) {
    switch (message) {
    case WM_CHAR:
        return wParam >= L' ' || wParam == L'\b';  // not the control characters of shortcuts
    case WM_KEYDOWN:
        return wParam == VK_DELETE;
    case WM_PASTE: case WM_CUT: case WM_CLEAR: case WM_UNDO: case EM_UNDO: case EM_REPLACESEL:
    case WM_SETTEXT:
        return true;
    }
    return false;
}

// Sits in front of the field's procedure for as long as the bubble lives.
LRESULT CALLBACK fieldWatcher(HWND field, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                              DWORD_PTR data) {
    auto bubble = reinterpret_cast<HWND>(data);
    bool hidden = (message == WM_SHOWWINDOW || message == WM_ENABLE) && !wParam;
    // Before the field sees the message: an edit that makes the host show a new bubble must
    // not take that one away.
    if (editsText(message, wParam) || hidden || message == WM_KILLFOCUS || message == WM_DESTROY)
        DestroyWindow(bubble);
    else if (message == WM_WINDOWPOSCHANGED && movedOrSized(lParam))
        layoutBubble(bubble);
    return DefSubclassProc(field, message, wParam, lParam);
}

// The bubble follows the field's top-level window and goes when that is hidden.
LRESULT CALLBACK ownerWatcher(HWND owner, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                              DWORD_PTR data) {
    auto bubble = reinterpret_cast<HWND>(data);
    if (message == WM_SHOWWINDOW && !wParam)
        DestroyWindow(bubble);
    else if (message == WM_WINDOWPOSCHANGED && movedOrSized(lParam))
        layoutBubble(bubble);
    return DefSubclassProc(owner, message, wParam, lParam);
}

// Attaches the watchers; -1 (creation fails) when the field cannot be watched.
LRESULT createBubble(HWND bubble, DlgTipp* record) {
    if (!SetWindowSubclass(record->field, fieldWatcher, kFieldWatcherId, reinterpret_cast<DWORD_PTR>(bubble)))
        return -1;
    record->owner = GetAncestor(record->field, GA_ROOT);
    if (record->owner == record->field) record->owner = nullptr;
    if (record->owner && !SetWindowSubclass(record->owner, ownerWatcher, reinterpret_cast<UINT_PTR>(bubble),
                                            reinterpret_cast<DWORD_PTR>(bubble)))
        return -1;
    return 0;
}

void detachBubble(HWND bubble, DlgTipp* record) {
    if (!record) return;
    if (bubbleOf(record->field) == bubble)
        RemoveWindowSubclass(record->field, fieldWatcher, kFieldWatcherId);
    if (record->owner) RemoveWindowSubclass(record->owner, ownerWatcher, reinterpret_cast<UINT_PTR>(bubble));
}

}  // namespace

LRESULT CALLBACK DlgTippWindowProc(HWND bubble, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_NCCREATE: {
        auto* record = static_cast<DlgTipp*>(Mres(sizeof(DlgTipp)));
        if (!record) return FALSE;
        // The creation parameter is the field; a bubble without one (from a dialog template, for
        // example) is not made.
        record->field = static_cast<HWND>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        if (!IsWindow(record->field)) {
            FreeMemory(record);
            return FALSE;
        }
        SetWindowLongPtrW(bubble, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(record));
        break;
    }
    case WM_CREATE:
        return createBubble(bubble, tippRecord(bubble));
    case WM_PAINT: {
        PAINTSTRUCT ps;
        HDC dc = BeginPaint(bubble, &ps);
        paintBubble(bubble, dc);
        EndPaint(bubble, &ps);
        return 0;
    }
    case WM_PRINTCLIENT:
        paintBubble(bubble, reinterpret_cast<HDC>(wParam));
        return 0;
    case WM_SETTEXT: {
        LRESULT result = DefWindowProcW(bubble, message, wParam, lParam);
        layoutBubble(bubble);
        return result;
    }
    case WM_MOUSEACTIVATE:
        return MA_NOACTIVATE;
    case WM_LBUTTONDOWN:
        DestroyWindow(bubble);
        return 0;
    case WM_DESTROY:
        detachBubble(bubble, tippRecord(bubble));
        break;
    case WM_NCDESTROY:
        FreeMemory(tippRecord(bubble));
        SetWindowLongPtrW(bubble, GWLP_USERDATA, 0);
        break;
    }
    return DefWindowProcW(bubble, message, wParam, lParam);
}

HWND KVKIT_CALL KxDlgTipp_Show(HWND field, const wchar_t* text, UINT icon) {
    if (!field || !IsWindow(field) || !text || icon > KXTIPP_ERROR) return nullptr;
    wchar_t* loaded = nullptr;
    if (IS_INTRESOURCE(text)) {
        loaded = LoadLanguageString(LOWORD(reinterpret_cast<UINT_PTR>(text)));
        if (!loaded) return nullptr;
        text = loaded;
    }
    HWND bubble = nullptr;
    if (text[0]) {
        bubble = bubbleOf(field);
        if (bubble) {
            tippRecord(bubble)->icon = icon;
            SetWindowTextW(bubble, text);  // lays the bubble out again
        } else {
            bubble = CreateWindowExW(WS_EX_TOOLWINDOW, kTippClass, text, WS_POPUP, 0, 0, 0, 0,
                                     GetAncestor(field, GA_ROOT), nullptr, g_libraryModule, field);
            if (bubble) {
                tippRecord(bubble)->icon = icon;
                layoutBubble(bubble);
            }
        }
    }
    FreeMemory(loaded);
    if (bubble)
        SetWindowPos(bubble, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    return bubble;
}

int KVKIT_CALL KxDlgTipp_Hide(HWND field) {
    if (!field || !IsWindow(field)) return 0;
    HWND bubble = bubbleOf(field);
    if (!bubble) return 0;
    DestroyWindow(bubble);
    return 1;
}
