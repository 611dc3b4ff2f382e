// Combo box helpers for system combo boxes and extended combo boxes ("ComboBoxEx32"):
// first-letter selection with wrap-around, lookup by item data, the insertion index that keeps
// items sorted and a drop-down list as wide as the widest item. Results are item indexes or -1.
#pragma once
#include "kvkit_api.h"

// For the combo box inside a "ComboBoxEx32": selects the next item after the current one (after
// item 0 when none is selected), wrapping around, whose text starts with `key` in either case, and
// posts WM_COMMAND with CBN_SELENDOK and the combo box's ID to the extended combo box. The
// selected index, or -1 when no item starts with it.
KVKIT_API int KVKIT_CALL Kx1ComboBoxEx_CheckKey(HWND combo, UINT ignored, unsigned short key,
                                                LPARAM ignoredToo);
// The first item whose item data equals `data`, or -1.
KVKIT_API int KVKIT_CALL Kx1ComboBoxEx_GetItemWithData(HWND combo, LPARAM data);
// The index at which `text` keeps the items of the extended combo box sorted: the first item
// whose text is greater (lstrcmpW, up to 260 characters), else the item count. -1 for a missing
// window or text.
KVKIT_API int KVKIT_CALL Kx1ComboBoxEx_GetSortIndex(HWND comboEx, const wchar_t* text);
// Subclass procedure for the combo box inside a "ComboBoxEx32", installed with Kx1SetSubProc:
// a key that selects an item by its first letter is swallowed. Key-down codes are read as
// letters, so F1 to F11 select by P to Z and the keypad digits 1 to 9 by A to I.
KVKIT_API LRESULT KVKIT_CALL Kx1ComboxEx_SubProc(HWND combo, UINT message, WPARAM wParam,
                                                 LPARAM lParam);
// Sets the drop-down list's width to the widest item text in `font` (the combo box's own font
// when null), plus 10 pixels per indent level of item 0 and 22 for the image of an extended combo
// box, plus 5 and a vertical scroll bar. Returns the width set, or the width computed (at most 0)
// when nothing was set: 0 for an empty combo box or a missing window, -1 when memory runs
// out. An extended combo box always counts the image, so even an empty one gets a width.
KVKIT_API int KVKIT_CALL KxCbSetDropdownWidth(HWND combo, HFONT font);
