// Finding list-view rows and tree-view items by their value or their text, the selected rows of
// a list view, and type-ahead on list views. Nothing is kept between calls: a caller continues a
// tree text search by handing back the marker item it holds.
#pragma once
#include "kvkit_api.h"
#include <commctrl.h>

// --- list views -------------------------------------------------------------------------------

// First row (from 0) whose row value (lParam) equals `value`; -1 when none or no rows.
KVKIT_API int KVKIT_CALL KxListView_GetItemWithData(HWND listView, LPARAM value);

// First row from `startRow` to the last (no wrap-around; a start out of range means row 0) whose
// cell in `column` matches `text`:
// - exact: the cell equals the text without regard to case. The caller's text is lower-cased
//   in place.
// - prefix: the cell, leading blanks skipped, begins with the text (case ignored); blank and
//   empty cells never match.
// -1 when none, for a null text and for an empty list.
KVKIT_API int KVKIT_CALL KxListView_GetItemWithText(HWND listView, int column, int startRow,
                                                    wchar_t* text, int exact);

// Search flags of KxListView_GetItemWithTextEx.
enum {
    KX_FIND_TEXT = 0x01,              // search `text`; without it the decimal form of `number`
    KX_FIND_AT_OR_BELOW = 0x02,       // a number not found: the nearest value at or below it
    KX_FIND_AT_OR_ABOVE = 0x04,       // a number not found: the nearest value at or above it
    KX_FIND_NO_PREFIX_PASSES = 0x08,  // not exact: skip passes 1 and 2 (straight to the nearest)
    KX_FIND_LONGEST_PREFIX = 0x10,    // pass 2 takes the row sharing the longest prefix
};

// The full row search over `column`, see the flags above:
// 1. from `startRow` (out of range: 0), the first row whose cell equals the search text (exact,
//    or a number) or, for text, begins with it after leading blanks;
// 2. unless exact, when nothing was found and KX_FIND_NO_PREFIX_PASSES is clear, all rows again
//    from row 0: the first row sharing at least its first character with the text (or, with
//    KX_FIND_LONGEST_PREFIX, the topmost row sharing the longest prefix);
// 3. for a number still not found, the nearest value as the flags ask (empty cells count as 0).
// Text compares through the session's collation with `option` when a session is given, else
// without regard to case. With `select` the found row is selected, focused and scrolled into
// view. Returns the row, or -1.
KVKIT_API int KVKIT_CALL KxListView_GetItemWithTextEx(HWND listView, int column, int startRow,
                                                      const wchar_t* text, int number, int exact,
                                                      BYTE searchFlags, KVSESSION* session,
                                                      DWORD option, int select);

// The indices of all selected rows in ascending order, in a kvtext block that the caller frees
// with FreeMemory; *count (when asked) receives their number. Null, with *count 0, when there
// are no rows, none is selected or memory runs out.
KVKIT_API int* KVKIT_CALL KxListView_GetSelItems(HWND listView, int* count);

// Type-ahead. Given the list view's LVN_KEYDOWN notification, finds the next row after the
// first selected one whose cell begins with the key's character, wrapping round to the top;
// without a notification, the first row that begins with `text`. The column searched is
// `column`, or for a negative one the sorted column (column 0 when none is sorted). A found row
// is selected, focused and scrolled into view, except when the key gives no character. Returns
// the row, or -1.
KVKIT_API int KVKIT_CALL KxListView_SetCharSelEx(HWND listView, NMLVKEYDOWN* keyDown,
                                                 const wchar_t* text, int column);
// KxListView_SetCharSelEx over the sorted column.
KVKIT_API int KVKIT_CALL KxListView_SetCharSel(HWND listView, NMLVKEYDOWN* keyDown,
                                               const wchar_t* text);

// --- tree views -------------------------------------------------------------------------------

// Decides whether a tree item matches a value search: non-zero for a match.
typedef int(__stdcall* KXTREEMATCH)(HWND tree, HTREEITEM item, LPARAM itemValue,
                                    LPARAM searchedValue);

// The first item, depth first (each item before its children), from `start` (null: the first
// top-level item) through its following siblings and all their descendants, whose value
// (lParam) equals `value`, or for which `match` (when given) answers non-zero. Null when none,
// and while a tree item is being dragged.
KVKIT_API HTREEITEM KVKIT_CALL KxTreeView_GetItemWithData(HWND tree, HTREEITEM start,
                                                          LPARAM value, KXTREEMATCH match);

// Finds an item by its text (the first 100 characters), walking depth first from `start`
// (null: the first top-level item) through its following siblings and their descendants; there
// is no wrap-around.
// - prefix: the item text begins with `text` (case ignored). An item text holding ")" is cut
//   there: a number search (text beginning with a digit) compares the up to four characters
//   between the first character and the ")", as in "(1234) Name" - a longer field stops the
//   program; a text search compares what follows the ")".
// - substring (prefix 0): the item text contains `text`, case ignored. With a null start the
//   caller's text is lower-cased in place; with a start the caller passes it lower-cased.
// The marker: items are only compared once the walk has passed *marker (which is then cleared).
// A top-level call (`nested` 0) with a null start takes the tree's selected item as the marker
// (stored in *marker when a pointer is given), so the search begins after the selection.
// Forward: the first match after the marker. Backward (`forward` 0): the last match before the
// marker, or the last match of the walk when the marker is never reached; *out (when given)
// receives the result in both directions. Null when nothing matches or memory runs out.
KVKIT_API HTREEITEM KVKIT_CALL KxTreeView_GetItemWithTextEx(HWND tree, HTREEITEM start,
                                                            wchar_t* text, int nested,
                                                            int prefix, HTREEITEM* marker,
                                                            HTREEITEM* out, int forward);
// KxTreeView_GetItemWithTextEx forward, without an out item.
KVKIT_API HTREEITEM KVKIT_CALL KxTreeView_GetItemWithText(HWND tree, HTREEITEM start,
                                                          wchar_t* text, int nested, int prefix,
                                                          HTREEITEM* marker);
