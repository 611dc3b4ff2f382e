// Dialog painting: the header band at the top of a dialog and hint bubbles that point at a field.
//
// Header band, class "KXDlgPaintClass" (registered by InitTool): a child window, usually placed
// across the top of a dialog template, e.g.
//     CONTROL "Customer\nAddress and contact persons", 100, "KXDlgPaintClass", 0, 0, 0, 300, 28
// It paints a gradient from the active caption colour to the caption's gradient colour, a bold
// title, a subtitle below it, an icon at the right end and an etched line along its bottom. The
// window text holds the title, and after a "\n" the subtitle. Messages it answers:
//     WM_SETTEXT, WM_SETFONT (the subtitle's font, the title takes it in bold; without one the
//     parent's font), WM_GETFONT, WM_SETICON (lParam: the icon, or null; the caller keeps owning
//     it; returns the previous one), WM_GETICON, WM_PRINTCLIENT.
//
// Hint bubble, class "KXDlgTippWndClass" (registered by InitTool): a white bubble with a text and
// an optional icon whose stem points at a field, for example one whose format check failed. It
// goes away when the field is edited (characters, deletion, cut, paste, undo, new text), loses the
// focus, is hidden, disabled or destroyed, when its dialog is hidden, when the bubble is clicked,
// or by KxDlgTipp_Hide. It follows the field when the field or its dialog moves or changes size.
// Each field has at most one bubble. Bubbles are made by KxDlgTipp_Show; a window of the class
// created without its field (from a dialog template, say) is refused.
#pragma once
#include "kvkit_api.h"

// Sets the title of the dialog's header band (its first "KXDlgPaintClass" child; `dialog` may
// also be the band itself). A `name` with "\n" sets title and subtitle; without one the subtitle
// stays. `name` may be MAKEINTRESOURCEW(number) for a string of the language module. The dialog
// caption takes the title too when `setCaption` is non-zero, and also when the dialog has no
// header band. 1 when the text was set; 0 for a missing or destroyed window, a null or unknown
// name, or when memory runs out (nothing is changed then).
KVKIT_API int KVKIT_CALL SetDlgHeaderName(HWND dialog, const wchar_t* name, int setCaption);

// Icons of a hint bubble (the values of the tooltip title icons).
const UINT KXTIPP_NOICON = 0;
const UINT KXTIPP_INFO = 1;
const UINT KXTIPP_WARNING = 2;
const UINT KXTIPP_ERROR = 3;

// Shows a bubble with `text` (MAKEINTRESOURCEW(number) for a string of the language module)
// below the field, or above it when there is no room below, without taking the focus. A field
// that has a bubble already gets the new text and icon in it. Returns the bubble; null for a
// missing or destroyed field, a null, empty or unknown text, an unknown icon, or when memory
// runs out.
KVKIT_API HWND KVKIT_CALL KxDlgTipp_Show(HWND field, const wchar_t* text, UINT icon);
// Takes the field's bubble away. 1 if it had one.
KVKIT_API int KVKIT_CALL KxDlgTipp_Hide(HWND field);
