// Navigation window: a vertical bar of collapsible groups, each holding entries made of an icon
// and a text, with which the user chooses what the application shows (customers, contacts,
// appointments, ...). Entries light up under the mouse; the chosen one stays selected. The
// keyboard moves a focus through the rows (Up, Down, Home, End, Page Up, Page Down, a letter for
// the next entry starting with it), Left and Right close and open groups, Enter or Space chooses.
// Choosing an entry or opening or closing a group notifies the parent with WM_NOTIFY.
//
// Groups and entries are known by item numbers that the bar hands out when they are added: unique
// in the bar, never 0, never reused. Each entry stores one value for the caller. The window class
// "KVNavigClass" is registered by the first KNg_Create.
#pragma once
#include "kvkit_api.h"
#include <stddef.h>

// The window class of the navigation bar.
#define KNG_CLASS L"KVNavigClass"

// Notification codes (NMHDR code of WM_NOTIFY to the parent, with a KNGNOTIFY record).
const UINT KNGN_SELECT = 0U - 2200U;       // the user chose an entry (click, Enter or Space)
const UINT KNGN_GROUPEXPAND = 0U - 2201U;  // the user opened or closed a group

// What a navigation bar tells its parent with WM_NOTIFY.
#pragma pack(push, 1)
struct KNGNOTIFY {
    NMHDR header;  // the bar, its control identifier and the KNGN_ code
    int item;      // the entry chosen, or the group opened or closed
    int group;     // the entry's group; the group itself for KNGN_GROUPEXPAND
    LPARAM value;  // the entry's value (0 for a group)
    int expanded;  // KNGN_GROUPEXPAND: 1 when the group is open now, else 0
};
#pragma pack(pop)
static_assert(sizeof(KNGNOTIFY) == 28, "KNGNOTIFY size");
static_assert(offsetof(KNGNOTIFY, item) == 12, "KNGNOTIFY item offset");
static_assert(offsetof(KNGNOTIFY, group) == 16, "KNGNOTIFY group offset");
static_assert(offsetof(KNGNOTIFY, value) == 20, "KNGNOTIFY value offset");
static_assert(offsetof(KNGNOTIFY, expanded) == 24, "KNGNOTIFY expanded offset");

// Creates a bar as a child of `parent` with control identifier `id`. Entry icons are shown
// `iconSize` pixels square (8 to 64; 0 means 16). Null for a null parent, an icon size out of
// range or when the window or its record cannot be made. The bar takes WM_SETFONT; its record is
// released when it is destroyed.
KVKIT_API HWND KVKIT_CALL KNg_Create(HWND parent, int id, int x, int y, int width, int height,
                                     int iconSize);

// Adds an open group with the text before group `before` (0: after the last group). Returns its
// item number; 0 for a bar, text or `before` that is not one, or when memory runs out.
KVKIT_API int KVKIT_CALL KNg_AddGroup(HWND bar, const wchar_t* text, int before);
// Adds an entry to `group` before its entry `before` (0: after its last entry). The bar shows a
// copy of `icon` (may be null) resized to its icon size with the library's resampling, keeping
// the picture's proportions; the icon's pixel (0, 0) is its transparent colour, and the caller
// keeps its bitmap. Returns the entry's item number; 0 for a bar, group, text or `before` that
// is not one, or when memory runs out.
KVKIT_API int KVKIT_CALL KNg_AddEntry(HWND bar, int group, HBITMAP icon, const wchar_t* text,
                                      LPARAM value, int before);
// Removes an entry, or a group with all its entries. A removed selected entry leaves the bar
// without a selection (no notification). 0 when there is no such item.
KVKIT_API int KVKIT_CALL KNg_Remove(HWND bar, int item);
// Gives a group or an entry a new text. 0 for no such item, a null text, or no memory (the old
// text then stays).
KVKIT_API int KVKIT_CALL KNg_SetText(HWND bar, int item, const wchar_t* text);
// The text of a group or an entry in a new kvtext block that the caller frees with FreeMemory;
// null for no such item or no memory.
KVKIT_API wchar_t* KVKIT_CALL KNg_GetText(HWND bar, int item);
// Stores a value with an entry. 0 when there is no such entry.
KVKIT_API int KVKIT_CALL KNg_SetValue(HWND bar, int entry, LPARAM value);
// The value stored with an entry; 0 when there is no such entry, which cannot be told from a
// stored 0.
KVKIT_API LPARAM KVKIT_CALL KNg_GetValue(HWND bar, int entry);

// Selects an entry (0: none), opening its group and scrolling it into view, without notifying.
// 0 when `entry` is not an entry of the bar.
KVKIT_API int KVKIT_CALL KNg_Select(HWND bar, int entry);
// The selected entry, or 0.
KVKIT_API int KVKIT_CALL KNg_GetSelection(HWND bar);
// Opens (`expand` non-zero) or closes a group, without notifying. 0 when it is not a group.
KVKIT_API int KVKIT_CALL KNg_Expand(HWND bar, int group, int expand);
// 1 for an open group, 0 for a closed one, -1 when it is not a group.
KVKIT_API int KVKIT_CALL KNg_IsExpanded(HWND bar, int group);

// Group 0: the number of groups. A group: the number of its entries. -1 when it is not a group.
KVKIT_API int KVKIT_CALL KNg_GetCount(HWND bar, int group);
// Group 0: the item number of the group at `index` (from 0, top to bottom). A group: that of its
// entry at `index`. 0 when there is none.
KVKIT_API int KVKIT_CALL KNg_GetItem(HWND bar, int group, int index);
// The group an entry belongs to; a group's own number for a group; 0 when there is no such item.
KVKIT_API int KVKIT_CALL KNg_GetGroup(HWND bar, int item);
// The first entry, top to bottom, that stores `value`; 0 when there is none.
KVKIT_API int KVKIT_CALL KNg_FindValue(HWND bar, LPARAM value);
// The row of a group or entry in the bar's client coordinates (it may lie outside the visible
// part when the bar is scrolled). 0 for no such item, a null rectangle, or an entry of a closed
// group, which has no row.
KVKIT_API int KVKIT_CALL KNg_GetItemRect(HWND bar, int item, RECT* rect);
