// The painted caption: a compact caption band (the caption colours' gradient, the small icon, the
// title in the small caption font, a close button) for tool windows that paint their own
// non-client area. Meant for popup windows without WS_CAPTION, with a thick, dialog or thin frame
// and no menu bar, scroll bars or client edge. The window procedure hands over two messages:
//
//   WM_NCCALCSIZE: NcGetClientRect(window, &rects[0], &rects[0]); return 0;
//                  (rects: lParam, as NCCALCSIZE_PARAMS::rgrc or as the RECT when wParam is 0)
//   WM_NCPAINT:    DefWindowProc(...) for the frame; NcDrawCaption(window, nullptr, KXNC_CURRENT);
//                  return 0;
//
// From its first NcDrawCaption on, the window is movable by its caption and closed by the close
// button: the library answers WM_NCHITTEST with HTCAPTION over the band and HTCLOSE over the
// button (which a window without WS_SYSMENU does not get), tracks the button while it is pressed,
// sends WM_SYSCOMMAND SC_CLOSE when it is released over it (so WM_CLOSE follows), and draws the
// caption again when the window is activated or deactivated and when its text or icon changes.
#pragma once
#include "kvkit_api.h"

// Which colours NcDrawCaption uses.
const int KXNC_INACTIVE = 0;
const int KXNC_ACTIVE = 1;
const int KXNC_CURRENT = -1;  // as the last WM_NCACTIVATE asked (before one: as the window is)

// The caption band's width (the window's width inside its frame) and height, into `cx` and `cy`
// (either may be null). 0 for a missing or destroyed window.
KVKIT_API int KVKIT_CALL NcGetCaptionCxCy(HWND window, int* cx, int* cy);
// The client rectangle of the window at `windowRect` (null: where the window is now, in screen
// coordinates): inside the frame and below the caption, in the same coordinates. `client` may be
// `windowRect` itself. A window too small for its frame and caption gets an empty rectangle at
// the bottom of the caption. 0 for a missing or destroyed window or a null `client`.
KVKIT_API int KVKIT_CALL NcGetClientRect(HWND window, const RECT* windowRect, RECT* client);
// Draws the caption into `dc`, a device context whose origin is the window's top-left corner
// (null: the window's own window DC), in active or inactive colours, with the close button
// pressed while it is held. 0 for a missing or destroyed window, or a window of another thread.
KVKIT_API int KVKIT_CALL NcDrawCaption(HWND window, HDC dc, int active);
