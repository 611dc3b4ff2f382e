// Buffered painting with composition of transparent children, moving all children of a window at
// once, and keeping rectangles and windows on their monitor.
#include "core/library.h"
#include "include/kvkit_paint.h"
#include <algorithm>

namespace {

// The flags WM_PRINTCLIENT is sent with when a transparent child is composed.
const LPARAM kPrintChildFlags = PRF_CHECKVISIBLE | PRF_NONCLIENT | PRF_CLIENT | PRF_CHILDREN;
const UINT kMoveChildFlags =
    SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS | SWP_NOOWNERZORDER;

void clearPaintStruct(tagKVPAINTSTRUCT* ps) { ZeroMemory(ps, sizeof(*ps)); }

int width(const RECT& rect) { return rect.right - rect.left; }
int height(const RECT& rect) { return rect.bottom - rect.top; }

// Makes the memory DC and its buffer for an already begun paint; false (with nothing left
// behind) when any part cannot be made.
bool createPaintBuffer(tagKVPAINTSTRUCT* ps) {
    HDC paintDC = ps->paint.hdc;
    HDC memory = CreateCompatibleDC(paintDC);
    HBITMAP buffer = memory ? CreateCompatibleBitmap(paintDC, ps->client.right, ps->client.bottom)
                            : nullptr;
    HGDIOBJ previous = buffer ? SelectObject(memory, buffer) : nullptr;
    if (previous) {
        ps->paintDC = memory;
        ps->buffer = buffer;
        ps->previousBitmap = static_cast<HBITMAP>(previous);
        return true;
    }
    if (buffer) DeleteObject(buffer);
    if (memory) DeleteDC(memory);
    return false;
}

// Lets a transparent child paint itself over the buffer's pixels beneath it.
void composeChild(const tagKVPAINTSTRUCT* ps, HDC scratch, HWND child, const RECT& area) {
    int w = width(area), h = height(area);
    HBITMAP picture = CreateCompatibleBitmap(ps->paint.hdc, w, h);
    if (!picture) return;
    HGDIOBJ previous = SelectObject(scratch, picture);
    if (previous) {
        BitBlt(scratch, 0, 0, w, h, ps->paintDC, area.left, area.top, SRCCOPY);
        SendMessageW(child, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(scratch), kPrintChildFlags);
        ValidateRect(child, nullptr);
        BitBlt(ps->paintDC, area.left, area.top, w, h, scratch, 0, 0, SRCCOPY);
        SelectObject(scratch, previous);
    }
    DeleteObject(picture);
}

// Only children whose extended style is exactly WS_EX_TRANSPARENT take part; any other extended
// bit keeps a child out.
void composeTransparentChildren(const tagKVPAINTSTRUCT* ps) {
    HDC scratch = CreateCompatibleDC(ps->paint.hdc);
    if (!scratch) return;
    for (HWND child = GetWindow(ps->window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        if (GetWindowLongW(child, GWL_EXSTYLE) != WS_EX_TRANSPARENT) continue;
        RECT area, overlap;
        GetWindowRect(child, &area);
        MapWindowPoints(nullptr, ps->window, reinterpret_cast<POINT*>(&area), 2);
        if (IntersectRect(&overlap, &area, &ps->update)) composeChild(ps, scratch, child, area);
    }
    DeleteDC(scratch);
}

// Counts until the enumeration ends or comes back round to the first child.
int countChildren(HWND parent) {
    if (!parent) return 0;
    int count = 0;
    HWND first = FindWindowExW(parent, nullptr, nullptr, nullptr);
    for (HWND child = first; child;) {
        ++count;
        child = FindWindowExW(parent, child, nullptr, nullptr);
        if (child == first) break;
    }
    return count;
}

void placeOnMonitor(RECT* rc, UINT flags) {
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof(monitor);
    if (!GetMonitorInfoW(MonitorFromRect(rc, MONITOR_DEFAULTTONEAREST), &monitor)) return;
    const RECT& area = (flags & KV_MONITOR_WORKAREA) ? monitor.rcWork : monitor.rcMonitor;
    int w = width(*rc), h = height(*rc);
    if (flags & KV_MONITOR_CENTER) {
        rc->left = (area.right - area.left - w) / 2 + area.left;
        rc->top = (area.bottom - area.top - h) / 2 + area.top;
    } else {
        // A rectangle larger than the area ends up at the area's left or top edge.
        rc->left = std::max(area.left, std::min(rc->left, area.right - w));
        rc->top = std::max(area.top, std::min(rc->top, area.bottom - h));
    }
    rc->right = rc->left + w;
    rc->bottom = rc->top + h;
}

}  // namespace

HDC KVKIT_CALL KVBeginPaint(HWND window, tagKVPAINTSTRUCT* ps, int copy) {
    if (!ps) return nullptr;
    clearPaintStruct(ps);
    if (!window) return nullptr;
    GetClientRect(window, &ps->client);
    GetUpdateRect(window, &ps->update, FALSE);
    if (!BeginPaint(window, &ps->paint)) {
        clearPaintStruct(ps);
        return nullptr;
    }
    ps->window = window;
    if (createPaintBuffer(ps)) return ps->paintDC;
    // Unbuffered: the caller paints straight onto the window. Only here does `copy` count.
    ps->paintDC = ps->paint.hdc;
    if (copy)
        BitBlt(ps->paintDC, 0, 0, ps->client.right, ps->client.bottom, ps->paint.hdc, 0, 0, SRCCOPY);
    return ps->paintDC;
}

int KVKIT_CALL KVEndPaint(tagKVPAINTSTRUCT* ps) {
    if (!ps) return 0;
    if (!ps->paintDC) {
        clearPaintStruct(ps);
        return 0;
    }
    if (ps->paintDC != ps->paint.hdc) {
        composeTransparentChildren(ps);
        BitBlt(ps->paint.hdc, 0, 0, ps->client.right, ps->client.bottom, ps->paintDC, 0, 0, SRCCOPY);
        SelectObject(ps->paintDC, ps->previousBitmap);
        DeleteObject(ps->buffer);
        DeleteDC(ps->paintDC);
    }
    EndPaint(ps->window, &ps->paint);
    clearPaintStruct(ps);
    return 0;
}

bool KVKIT_CALL MoveAllChildWindows(int dx, int dy, HWND parent, bool scroll, RECT* scrollRect,
                                    RECT* updateRect) {
    int count = countChildren(parent);
    HDWP batch = nullptr;
    if (count > 0) {
        batch = BeginDeferWindowPos(count);
        if (!batch) return false;
        HWND child = FindWindowExW(parent, nullptr, nullptr, nullptr);
        for (int i = 0; i < count && child && batch; ++i) {
            RECT rect;
            GetWindowRect(child, &rect);
            MapWindowPoints(HWND_DESKTOP, parent, reinterpret_cast<POINT*>(&rect), 2);
            batch = DeferWindowPos(batch, child, nullptr, rect.left + dx, rect.top + dy, 0, 0,
                                   kMoveChildFlags);
            child = FindWindowExW(parent, child, nullptr, nullptr);
        }
    }
    if (scroll && scrollRect)
        ScrollWindowEx(parent, dx, dy, scrollRect, scrollRect, nullptr, updateRect, SW_INVALIDATE);
    if (batch) EndDeferWindowPos(batch);
    return true;
}

void KVKIT_CALL Kx1ClipOrCenterRectToMonitor(RECT* rc, UINT flags) {
    if (rc) placeOnMonitor(rc, flags);
}

void KVKIT_CALL Kx1ClipOrCenterWindowToMonitor(HWND window, UINT flags, RECT* rc) {
    RECT rect;
    if (rc)
        rect = *rc;
    else if (!GetWindowRect(window, &rect))
        return;
    placeOnMonitor(&rect, flags);
    SetWindowPos(window, nullptr, rect.left, rect.top, width(rect), height(rect),
                 SWP_NOZORDER | SWP_NOACTIVATE);
}
