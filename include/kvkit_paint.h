// Buffered painting and window placement: a double-buffered BeginPaint/EndPaint that composes
// transparent child windows into the buffer, a mover for all children of a window, and clipping
// or centring of rectangles and windows on their nearest monitor.
#pragma once
#include "kvkit_api.h"
#include <stddef.h>

// Owned by the caller, usually on the stack. Buffering is on exactly when paintDC differs from
// paint.hdc.
struct tagKVPAINTSTRUCT {
    HDC paintDC;             // the DC to paint into: the memory DC, or the window's paint DC
    HBITMAP buffer;          // client width x client height, compatible with the paint DC
    HBITMAP previousBitmap;  // selected into the memory DC before the buffer
    HWND window;
    RECT update;             // GetUpdateRect at the start, without erasing
    RECT client;             // right and bottom are the buffer's width and height
    PAINTSTRUCT paint;       // of the window's own BeginPaint
};
typedef tagKVPAINTSTRUCT KVPAINTSTRUCT;
static_assert(offsetof(tagKVPAINTSTRUCT, buffer) == 4, "KVPAINTSTRUCT buffer offset");
static_assert(offsetof(tagKVPAINTSTRUCT, previousBitmap) == 8, "KVPAINTSTRUCT previous offset");
static_assert(offsetof(tagKVPAINTSTRUCT, window) == 12, "KVPAINTSTRUCT window offset");
static_assert(offsetof(tagKVPAINTSTRUCT, update) == 16, "KVPAINTSTRUCT update offset");
static_assert(offsetof(tagKVPAINTSTRUCT, client) == 32, "KVPAINTSTRUCT client offset");
static_assert(offsetof(tagKVPAINTSTRUCT, paint) == 48, "KVPAINTSTRUCT paint offset");
static_assert(sizeof(tagKVPAINTSTRUCT) == 112, "KVPAINTSTRUCT size");

// Begins painting into an off-screen buffer of the whole client area; the caller paints all of it,
// background included. When no buffer can be made, paints go straight to the window's paint DC
// and, with `copy` non-zero, the client area is first copied onto it. Null (with a cleared
// structure) when `ps` is null or BeginPaint fails.
KVKIT_API HDC KVKIT_CALL KVBeginPaint(HWND window, tagKVPAINTSTRUCT* ps, int copy);
// Composes the children whose extended style is exactly WS_EX_TRANSPARENT into the buffer (through
// WM_PRINTCLIENT), copies the buffer to the window and ends painting. Accepts a structure that a
// failed KVBeginPaint cleared. Always 0.
KVKIT_API int KVKIT_CALL KVEndPaint(tagKVPAINTSTRUCT* ps);

// Moves every child of `parent` by (dx, dy) in one deferred batch and, when `scroll` is true and
// `scrollRect` given, scrolls that part of the parent's client area (which also serves as the
// clip rectangle), receiving the invalidated area in `updateRect`. False only when the batch
// cannot be started.
KVKIT_API bool KVKIT_CALL MoveAllChildWindows(int dx, int dy, HWND parent, bool scroll,
                                              RECT* scrollRect, RECT* updateRect);

// Flags of the monitor placement functions.
const UINT KV_MONITOR_CENTER = 0x1;    // centre instead of clipping
const UINT KV_MONITOR_WORKAREA = 0x2;  // the monitor's work area instead of its full rectangle

// Moves `rc` (keeping its size) onto the monitor nearest to it, or centres it there.
KVKIT_API void KVKIT_CALL Kx1ClipOrCenterRectToMonitor(RECT* rc, UINT flags);
// The same for a window, starting from `rc` when given, else from the window rectangle.
KVKIT_API void KVKIT_CALL Kx1ClipOrCenterWindowToMonitor(HWND window, UINT flags, RECT* rc);
