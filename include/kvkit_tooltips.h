// Tooltips: system tooltip controls ("tooltips_class32") for a window or a rectangle of it,
// without the TOOLINFO bookkeeping. A window's tool is identified by the window and its control
// ID, a rectangle's tool by the window and the fixed ID 199. Tooltips are owned by the window
// and go with it. Texts are not copied: they must outlive the tool.
#pragma once
#include "kvkit_api.h"

// The tool ID of every rectangle tool.
const UINT KXTOOLTIP_RECT_ID = 199;

// A tooltip (topmost, no prefix processing, shown also for inactive windows) with one tool
// covering the client area of `area` (or of `window` without `area`). The tool subclasses the
// window to see its mouse messages unless `noSubclass`; then relay them with
// KxToolTip_RelayMessage. A tool that the control refuses is signalled by an empty message box
// on the window. The auto-pop delay is the one set by KxSetTooltipDuration. Null when `window`
// (or a given `area`) is not a window.
KVKIT_API HWND KVKIT_CALL KxToolTip_Create(HWND window, HWND area, const wchar_t* text, int ignored,
                                           int noSubclass);
// As KxToolTip_Create for the rectangle `rect` of `window`'s client area, as a balloon when bit 0
// of `flags` is set, with prefix processing. Null when `window` is not a window or `rect` is null.
KVKIT_API HWND KVKIT_CALL KxToolTip_CreateRect(HWND window, RECT* rect, wchar_t* text, UINT flags,
                                               int noSubclass);
// Hands a mouse message of `from` to the tooltip, stamped with the current message time and
// position. 1, or 0 when `tip` is not a window.
KVKIT_API int KVKIT_CALL KxToolTip_RelayMessage(HWND tip, HWND from, UINT message, WPARAM wParam,
                                                LPARAM lParam);
// Moves the window's tool to the client area of `area` (of `window` without `area`); `rect` is
// not used. 1, or 0 when `tip` is not a window.
KVKIT_API int KVKIT_CALL KxToolTip_SetRect(HWND tip, HWND window, HWND area, RECT* rect);
// Sets the title and icon (TTI_*) of the tooltip. TRUE when the control took them.
KVKIT_API BOOL KVKIT_CALL KxToolTip_SetTitle(HWND tip, const wchar_t* title, UINT icon);
// Replaces the text of the window's tool (rectangle tools are not reached). 1, or 0 when `tip` is
// not a window.
KVKIT_API int KVKIT_CALL KxToolTip_UpdateText(HWND tip, HWND window, wchar_t* text);
// The auto-pop delay of every tooltip created from now on; 0xFFFFFFFF (the start value) leaves
// the system's default.
KVKIT_API void KVKIT_CALL KxSetTooltipDuration(DWORD milliseconds);
