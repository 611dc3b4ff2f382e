// Helpers shared by the list view sources. Internal.
#pragma once
#include "include/kvkit_listview.h"

// Reads a cell's text into `buffer` (capacity in characters, terminator included). The buffer
// always ends up terminated: empty when the list view gives no text. Returns the characters read.
int GetCellText(HWND listView, int row, int subItem, wchar_t* buffer, int capacity);

// The list view's header control, or null.
inline HWND ListViewHeader(HWND listView) {
    return reinterpret_cast<HWND>(SendMessageW(listView, LVM_GETHEADER, 0, 0));
}

// Number of header columns (0 or less when there are none).
inline int HeaderColumnCount(HWND header) {
    return static_cast<int>(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0));
}
