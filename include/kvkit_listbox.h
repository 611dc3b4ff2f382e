// Multi-column list box "KVListbox": a container window that shows the host's item records in an
// owner-drawn list box (control 1000) with optional column titles that sort (3001-3005) and
// toggle buttons that switch columns on and off (2001-2004). Items are selected singly or
// multiply, with the order of selection kept as numbers, and can be dragged to another place or
// found by their first letter. Beside the class: helpers for plain list boxes (type-ahead, the row
// under a point, moving the selected row with the mouse).
//
//   container = CreateWindowExW(0, L"KVListbox", L"", WS_CHILD | WS_VISIBLE, ..., parent, id, ...);
//   SendMessageW(container, KVLB_BUILD, 0, (LPARAM)&list);       // shows the items
//   ...WM_COMMAND from the container: LBN_SELCHANGE, LBN_DBLCLK...
//   SendMessageW(container, KVLB_DETACH, 1, (LPARAM)&detached);   // the record is the host's again
//
// The record and its arrays stay the host's and must outlive the container while attached. The
// display order that the control makes when the record has none belongs to the record from then
// on: the host frees it with FreeMemory (kvtext) when it discards the record.
//
// When it is destroyed or built again, the inner list box deletes the font that it took from the
// container's parent at building (WM_GETFONT). Give the parent a font that may go then: a stock
// font, or one made for the list.
#pragma once
#include "kvkit_api.h"
#include <stddef.h>

// Container messages. KVLB_BUILD (lParam = KVLB_LIST*) builds the control; a container whose
// building fails destroys itself (result 0; 1 when built). KVLB_DETACH stores the record pointer
// at the KVLB_LIST** in lParam (when not null) and, with wParam non-zero, detaches the record and
// empties the list. It returns the record pointer.
const UINT KVLB_BUILD = WM_USER + 100;
const UINT KVLB_DETACH = WM_USER + 200;
// Posted by a list box subclassed with KlSetListProc to its parent when a row border is clicked:
// wParam = the row to move the selected row to (for KlMoveItem), lParam = the list box.
const UINT KLM_MOVEITEM = WM_USER + 10;

// Child controls of the container.
const int KVLB_LIST_ID = 1000;
const int KVLB_TOGGLE_PICTURES = 2001;     // switches KVLB_PICTURES
const int KVLB_TOGGLE_VALUES = 2002;       // switches KVLB_VALUES
const int KVLB_TOGGLE_NUMBERS = 2003;      // switches KVLB_NUMBERS
const int KVLB_TOGGLE_SECONDTEXT = 2004;   // switches KVLB_SECONDTEXT
const int KVLB_HEADER_CHECK = 3001;        // sorts by selection number
const int KVLB_HEADER_TEXT = 3002;         // sorts by text, and back to natural order
const int KVLB_HEADER_SECONDTEXT = 3003;   // natural order
const int KVLB_HEADER_PICTURE = 3004;      // sorts by picture
const int KVLB_HEADER_VALUE = 3005;        // sorts by value

// Style flags of the list record.
const unsigned long KVLB_CHECKCOLUMN = 0x0001;      // check column; selection shown by check marks
const unsigned long KVLB_PICTURES = 0x0002;         // picture column
const unsigned long KVLB_VALUES = 0x0004;           // value column
const unsigned long KVLB_NUMBERS = 0x0008;          // selection numbers in the check column
const unsigned long KVLB_HEADERS = 0x0010;          // column titles above the list
const unsigned long KVLB_MULTIPLESEL = 0x0020;      // multiple selection
const unsigned long KVLB_DRAGROWS = 0x0040;         // rows can be dragged to another place
const unsigned long KVLB_MULTICOLUMN = 0x0080;      // several columns side by side (no titles)
const unsigned long KVLB_HOSTSELECTS = 0x0100;      // clicks, Space and double clicks select nothing
const unsigned long KVLB_SELECTEDFIRST = 0x0200;    // selected items kept at the top
const unsigned long KVLB_BITMAPARRAY = 0x0400;      // pictures from the record's bitmap array
const unsigned long KVLB_DBLCLKTOGGLES = 0x0800;    // with multiple selection: double click toggles
const unsigned long KVLB_ANCHORMARK = 0x1000;       // with multiple selection: marker at the caret
const unsigned long KVLB_SECONDTEXT = 0x2000;       // second-text column

// Indices of KVLB_LIST::columnWidths, the columns from left to right.
const int KVLB_COLUMN_CHECK = 0;
const int KVLB_COLUMN_TEXT = 1;
const int KVLB_COLUMN_SECONDTEXT = 2;
const int KVLB_COLUMN_PICTURE = 3;
const int KVLB_COLUMN_VALUE = 4;

// Toggle-button flags of the list record: which toggle buttons are made.
const unsigned short KVLB_HAS_TOGGLE_PICTURES = 0x1;
const unsigned short KVLB_HAS_TOGGLE_VALUES = 0x2;
const unsigned short KVLB_HAS_TOGGLE_NUMBERS = 0x4;  // only with multiple selection and check column
const unsigned short KVLB_HAS_TOGGLE_SECONDTEXT = 0x8;

// Sort modes.
const unsigned char KVLB_SORT_NATURAL = 1;    // item array order (also 0 and 32)
const unsigned char KVLB_SORT_TEXT = 2;
const unsigned char KVLB_SORT_PICTURE = 4;
const unsigned char KVLB_SORT_VALUE = 8;
const unsigned char KVLB_SORT_SELECTION = 16;  // selected first by number, then the others
const unsigned char KVLB_SORT_NATURAL2 = 32;

// Item state flags.
const unsigned char KVLB_ITEM_HIDDEN = 0x1;    // not shown, not counted
const unsigned char KVLB_ITEM_DISABLED = 0x2;  // cannot be selected, drawn grey

// An empty slot of the display order, and "no item" for the anchor.
const unsigned short KVLB_NO_ITEM = 0xFFFF;

#pragma pack(push, 1)
// One item of the host's. Without KVLB_BITMAPARRAY the picture holds a type letter at first,
// which building turns into a picture number of the library ('C', 'Z' 101, 'K' 103, 'B' 104,
// 'T' 105, 'D' 106, 'O' 107, anything else 102; numbers 101-107 are taken as already turned).
struct KVLB_ITEM {
    short id;                 // the key of every container message
    long picture;             // picture number, or index into the bitmap array
    short value;              // shown in the value column
    const wchar_t* text;
    const wchar_t* secondText;
    long selection;           // 0 not selected; 1, 2, 3... in the order of selection
    unsigned char flags;      // KVLB_ITEM_*
};

// The host's list record, kept by pointer while attached; the control writes into it (column
// widths, sort mode, display order, selection numbers, anchor).
struct KVLB_LIST {
    KVSESSION* session;            // collation of LB_FINDSTRING and LB_SELECTSTRING
    HINSTANCE instance;            // instance of the child windows
    DWORD hostValue;               // not read
    unsigned long style;           // KVLB_* style flags
    unsigned short toggles;        // KVLB_HAS_TOGGLE_* flags
    unsigned char columns;         // multi-column: 1-6 columns, above 6 a column width in characters
    unsigned char sortMode;        // KVLB_SORT_*
    unsigned short hintBase;       // non-zero: toggle hints are language strings hintBase + 0..3
    short columnWidths[5];         // by KVLB_COLUMN_*
    short maxSelected;             // below 1: no limit
    long itemCount;
    KVLB_ITEM* items;
    unsigned short* order;         // display order: identifiers, then KVLB_NO_ITEM; one slot per item
    long bitmapCount;
    HBITMAP* bitmaps;              // with KVLB_BITMAPARRAY
    BYTE hostData[16];             // not read
    unsigned short anchor;         // identifier of the item at the caret, KVLB_NO_ITEM for none
    wchar_t title[51];             // caption of toggle 2004 and title 3003
    short secondTextChars;         // width of the second-text column in characters
};
#pragma pack(pop)
static_assert(sizeof(KVLB_ITEM) == 21, "KVLB_ITEM size");
static_assert(offsetof(KVLB_ITEM, picture) == 2, "KVLB_ITEM picture offset");
static_assert(offsetof(KVLB_ITEM, value) == 6, "KVLB_ITEM value offset");
static_assert(offsetof(KVLB_ITEM, text) == 8, "KVLB_ITEM text offset");
static_assert(offsetof(KVLB_ITEM, secondText) == 12, "KVLB_ITEM second text offset");
static_assert(offsetof(KVLB_ITEM, selection) == 16, "KVLB_ITEM selection offset");
static_assert(offsetof(KVLB_ITEM, flags) == 20, "KVLB_ITEM flags offset");
static_assert(offsetof(KVLB_LIST, style) == 12, "KVLB_LIST style offset");
static_assert(offsetof(KVLB_LIST, toggles) == 16, "KVLB_LIST toggles offset");
static_assert(offsetof(KVLB_LIST, columns) == 18, "KVLB_LIST columns offset");
static_assert(offsetof(KVLB_LIST, sortMode) == 19, "KVLB_LIST sort mode offset");
static_assert(offsetof(KVLB_LIST, hintBase) == 20, "KVLB_LIST hint base offset");
static_assert(offsetof(KVLB_LIST, columnWidths) == 22, "KVLB_LIST column widths offset");
static_assert(offsetof(KVLB_LIST, maxSelected) == 32, "KVLB_LIST maximum offset");
static_assert(offsetof(KVLB_LIST, itemCount) == 34, "KVLB_LIST item count offset");
static_assert(offsetof(KVLB_LIST, items) == 38, "KVLB_LIST items offset");
static_assert(offsetof(KVLB_LIST, order) == 42, "KVLB_LIST order offset");
static_assert(offsetof(KVLB_LIST, bitmapCount) == 46, "KVLB_LIST bitmap count offset");
static_assert(offsetof(KVLB_LIST, bitmaps) == 50, "KVLB_LIST bitmaps offset");
static_assert(offsetof(KVLB_LIST, anchor) == 70, "KVLB_LIST anchor offset");
static_assert(offsetof(KVLB_LIST, title) == 72, "KVLB_LIST title offset");
static_assert(offsetof(KVLB_LIST, secondTextChars) == 174, "KVLB_LIST second text width offset");
static_assert(sizeof(KVLB_LIST) == 176, "KVLB_LIST size");

// Window procedure of "KVListbox". List-box messages (LB_ADDSTRING to 0x1B3) sent to it take item
// identifiers in place of rows and answer -1 for unknown ones:
//   LB_ADDSTRING (lParam = id), LB_INSERTSTRING (wParam = row, -1 = end; lParam = id): shows an
//     item of the array that is not shown (clearing its hidden flag); returns its row.
//   LB_DELETESTRING (wParam = id): hides the item and renumbers the selection; returns the rows left.
//   LB_SETSEL (lParam = id, -1 = all), LB_SETCURSEL (wParam = id, -1 = none): select as a user
//     would (disabled items and items past the maximum are refused with -1); LB_SETCARETINDEX
//     (wParam = id, -1 = the first row).
//   LB_GETSEL: the selection number; LB_GETCURSEL: the first shown item with a number;
//   LB_GETCARETINDEX: the identifier at the caret; LB_GETTEXT (wParam = id, lParam = buffer large
//     enough): the text and its length.
//   LB_SELECTSTRING (wParam non-zero: also in multiple selection; lParam = text) selects the first
//     row whose text starts with the given text, whatever its case, and returns the row;
//   LB_FINDSTRING (lParam = text) returns the identifier of that item without selecting it.
//   Every other message of the range goes to the inner list box unchanged (it holds row data,
//   no strings: LB_GETTEXTLEN answers for that, not for an item's text).
KVKIT_API LRESULT KVKIT_CALL Kx1LbProc(HWND container, UINT message, WPARAM wParam, LPARAM lParam);
// The replacement procedures of the inner list box (mouse, keys, dragging) and of the toggle
// buttons (hints).
KVKIT_API LRESULT KVKIT_CALL Kx1LbListSubProc(HWND list, UINT message, WPARAM wParam, LPARAM lParam);
KVKIT_API LRESULT KVKIT_CALL Kx1LbBtnSubProc(HWND button, UINT message, WPARAM wParam, LPARAM lParam);

// Kx1LbResetSel modes.
const unsigned char KVLB_RESET_FROM_FLAGS = 0;   // values[i] >= 1 selects item i, numbered in order
const unsigned char KVLB_RESET_CLEAR = 1;
const unsigned char KVLB_RESET_ALL = 2;          // message box when the maximum stops it
const unsigned char KVLB_RESET_NUMBERS = 3;      // values[i] is item i's number

// Sets the selection of every shown item (values: one per item of the array, for modes 0 and 3),
// then refills, re-sorts with KVLB_SELECTEDFIRST and redraws. 1 done, 0 nothing to do.
KVKIT_API int KVKIT_CALL Kx1LbResetSel(HWND container, unsigned char mode, short* values);

// Plain list boxes. Type-ahead: finds the next row after the caret (all rows without a caret)
// whose data (its high word when `useHighWord`) equals the character, upper- or lower-cased, and
// selects it (or moves the caret to it in a multiple-selection list). The row, -1 when none
// matches, -2 for a space or an empty list.
KVKIT_API short KVKIT_CALL Kx1LbSelectChar(HWND listBox, UINT character, int useHighWord,
                                           int unused1, int upper, int unused2);
// The row whose rectangle holds the client point, from the top row on; -1 for none.
KVKIT_API int KVKIT_CALL Kx1GetLbMousePos(HWND listBox, int x, int y);
// Lets the user move the selected row of a list box: within 3 pixels of a row border the cursor
// becomes "movecur" and a click posts KLM_MOVEITEM to the parent. 1, or 0 for a missing window.
KVKIT_API int KVKIT_CALL KlSetListProc(HWND listBox, HINSTANCE unused);
// Moves the selected row (text and data) to `target` (a row of the list before the move) and
// selects it. 1 moved, 0 when nothing is selected.
KVKIT_API int KVKIT_CALL KlMoveItem(HWND listBox, int target);
