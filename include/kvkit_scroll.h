// The arrow-button scroller (class "KVScrollClass"): two owner-drawn arrow buttons that step an
// integer position within a range, with an optional centred text between them (a page counter,
// say). The parent is asked before every step. As a transparent overlay the control lays its
// arrows at the two ends of another window and passes mouse input on to what lies beneath.
//
//   HWND pages = KVScroll_CreateWindow(dialog, 300, 10, 10, 120, 20, KVS_REPEAT, instance,
//                                      text, font, 0, 0);   // text: a kvtext string, now owned
//   KVScroll_SetScrollRange(pages, SB_CTL, 1, 12, TRUE);
//   parent: case KVSN_QUERYSTEP: allowed = (short)LOWORD(lParam) <= pageCount;  // non-zero allows
//           a window procedure returns `allowed`; a dialog procedure stores it with
//           SetWindowLongPtr(dialog, DWLP_MSGRESULT, allowed) and returns TRUE
#pragma once
#include "kvkit_api.h"

// Style flags (the low 16 bits of the creation flags, kept in window extra bytes 12..15).
const unsigned short KVS_VERTICAL = 0x0001;        // up/down arrows; otherwise left/right
const unsigned short KVS_NOLIMIT = 0x0002;         // steps never refused for the range
const unsigned short KVS_NOTEXT = 0x0004;          // no text; the arrows stacked top and bottom
const unsigned short KVS_TRANSPARENT = 0x0008;     // background not filled
const unsigned short KVS_REPEAT = 0x0010;          // an arrow held down repeats its step
const unsigned short KVS_ALIGNFAR = 0x0020;        // overlay at the right or bottom edge
const unsigned short KVS_OVERLAY = 0x0040;         // transparent overlay, created hidden
const unsigned short KVS_HIDEDISABLED = 0x0080;    // an arrow that cannot step is hidden
const unsigned short KVS_KEEPBUTTONSIZE = 0x0100;  // overlay keeps the arrows' own size

// Window extra bytes of the control (GetWindowLong offsets).
const int KVS_OFFSET_MIN = 0;
const int KVS_OFFSET_MAX = 4;
const int KVS_OFFSET_POS = 8;
const int KVS_OFFSET_FLAGS = 12;

// Control identifiers of the two arrows.
const int KVS_ID_DECREMENT = 100;
const int KVS_ID_INCREMENT = 101;

// Sent to the parent before each step: wParam 1 for the increment arrow, 0 for the decrement
// arrow; lParam MAKELONG(new position, control ID). Non-zero allows the step.
const UINT KVSN_QUERYSTEP = WM_USER + 55;

// Creates the control as child `id` of `parent`. Without KVS_NOTEXT a non-null `text` (a kvtext
// string) belongs to the control from this call on, also when it cannot be kept; with
// KVS_NOTEXT it is not used and stays the caller's. `font` draws the text and stays the
// caller's; `extra1` and `extra2` are stored with it. NULL when the control or an arrow cannot
// be created.
KVKIT_API HWND __cdecl KVScroll_CreateWindow(HWND parent, int id, int x, int y, int cx, int cy,
                                             unsigned short flags, HINSTANCE instance, void* text,
                                             HFONT font, DWORD extra1, DWORD extra2);
// The scroll-bar calls, for this control; `bar` is not used. The position is 0 and the range
// calls fail (0) for anything but a live scroller or with a null pointer.
KVKIT_API int __cdecl KVScroll_GetScrollPos(HWND control, int bar);
KVKIT_API BOOL __cdecl KVScroll_GetScrollRange(HWND control, int bar, int* minimum, int* maximum);
// Returns the previous position. The arrows are enabled (or shown) by the new position.
KVKIT_API int __cdecl KVScroll_SetScrollPos(HWND control, int bar, int position, BOOL redraw);
// An empty range (minimum = maximum) hides the control, unless it is an overlay without
// KVS_HIDEDISABLED; any other range shows it again.
KVKIT_API BOOL __cdecl KVScroll_SetScrollRange(HWND control, int bar, int minimum, int maximum,
                                               BOOL redraw);
// Replaces the text (a kvtext string, or null) and frees the previous one. 0 when the control
// keeps no text (created with KVS_NOTEXT or without a text); the text then stays the caller's.
KVKIT_API BOOL __cdecl KVScroll_SetText(HWND control, void* text, BOOL redraw);
// Overlay only: lays the control along `area` (the parent's client area when null or empty),
// across its whole length, at its near edge or with KVS_ALIGNFAR at its far edge.
KVKIT_API BOOL __cdecl KVScroll_UpdWndPos(HWND control, RECT* area, int ignored);

// The procedure of the class and the one that makes the arrows repeat.
KVKIT_API LRESULT KVKIT_CALL KVScrollProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
KVKIT_API LRESULT KVKIT_CALL KVScrollBtnProc(HWND button, UINT message, WPARAM wParam,
                                             LPARAM lParam);
