// Popup hints: a small window beside a control, or beside a rectangle of it, that shows a text
// or a picture (a photo preview, a logo). The hint never takes the focus or activation; it stays
// on the monitor of its anchor, and goes away after its time-out, at the next click or key
// press anywhere in the thread, or when its owner goes. There is one hint at a time: a new one
// replaces the one on show.
//
// The hint window is of class "KVtooltips_class32", the system tooltip class copied under the
// library's name without a cursor, registered on first use.
#pragma once
#include "kvkit_api.h"

// Placement of a hint beside its anchor.
const UINT KXHINT_BELOW = 0x0;  // below, left-aligned; above when there is no room below
const UINT KXHINT_RIGHT = 0x1;  // right, top-aligned; left when there is no room at the right

// Time-outs: 0 takes the system's tooltip time (ten double-click times); INFINITE keeps the hint
// until a click, a key, a new hint or its owner ends it.
const UINT KXHINT_DEFAULT_TIMEOUT = 0;

// Shows `text` (several lines with "\n", wrapped at about 360 pixels) beside `window`. `anchor`
// is a rectangle in the window's client coordinates, or null for the whole window. `text` may be
// MAKEINTRESOURCEW(number) to show that string of the language module. The text is copied.
// Returns the hint window, which the caller may destroy to take the hint away early; null for a
// missing or destroyed window, a null, empty or unknown text, or when memory runs out (a hint on
// show then stays).
KVKIT_API HWND KVKIT_CALL DrawPopupTextEx(HWND window, const RECT* anchor, const wchar_t* text,
                                          UINT milliseconds, UINT placement);
// Shows a copy of `picture` beside `window`, at its own size or shrunk (keeping its aspect) to
// fit the monitor's work area; the caller keeps its bitmap and may delete it at once. Otherwise
// as DrawPopupTextEx; null also for a null or deleted bitmap.
KVKIT_API HWND KVKIT_CALL DrawPopupImageEx(HWND window, const RECT* anchor, HBITMAP picture,
                                           UINT milliseconds, UINT placement);
