// List view helpers: columns, cells, row and column values, the sort arrow, custom-draw colours,
// sorting by column and the text cache. All of them work on a report-view list view and keep no
// state of their own: row values live in the items' lParam, column values (the remembered sort
// direction, 1 = last sorted ascending) in the header items' lParam.
#pragma once
#include "kvkit_api.h"
#include <commctrl.h>
#include <stddef.h>

// --- columns ----------------------------------------------------------------------------------

// Appends a column (index must not be below the current column count) with column value 0 (never
// sorted). Returns the new column's index, or -1 when there is no header or the index would
// insert before existing columns.
KVKIT_API int KVKIT_CALL KxListView_AddHeader(HWND listView, const wchar_t* text, int column,
                                              int width);
// As KxListView_AddHeader; with `replace` non-zero, adding column 0 to a list that has columns
// first removes them all, so a table can be rebuilt from scratch.
KVKIT_API int KVKIT_CALL KxListView_AddHeaderEx(HWND listView, const wchar_t* text, int column,
                                                int width, int replace);
// Deletes every column, last first (deleting a sort arrow with its column). Returns how many
// went; 0 when there is no header or no column.
KVKIT_API int KVKIT_CALL KxListView_ClearHeader(HWND listView);
// Changes an existing column's text (when non-null) and width (when at least 1).
KVKIT_API int KVKIT_CALL KxListView_SetHeader(HWND listView, const wchar_t* text, int column,
                                              int width);
// The column value (header item lParam). Set returns 0 when there is no header or it fails.
KVKIT_API int KVKIT_CALL KxListView_SetHeaderData(HWND listView, int column, LPARAM value);
KVKIT_API LPARAM KVKIT_CALL KxListView_GetHeaderData(HWND listView, int column);
// Puts `bitmap` into the column's header item, right of the text; the header owns it from then
// on and deletes it when it is replaced. With `clearOthers` the first other column holding a
// bitmap loses (and deletes) it; a negative column then just clears. 0 on failure, in which case
// the caller still owns `bitmap`.
KVKIT_API int KVKIT_CALL KxListView_SetHeaderBitmap(HWND listView, HBITMAP bitmap, int column,
                                                    int clearOthers);
// Stores `ascending` as the column value and shows the up arrow (non-zero) or the down arrow.
// Returns 1, or 0 when the column value cannot be stored or the arrow cannot be loaded.
KVKIT_API int KVKIT_CALL KxListView_SetSortBitmap(HWND listView, int column, int ascending,
                                                  int clearOthers);
// Column 0: sized to its header. Any other: gets the client width left by the columns before it.
KVKIT_API int KVKIT_CALL KxListView_SetLastColumnWidth(HWND listView, int lastColumn);

// --- rows and cells ---------------------------------------------------------------------------

// Sub-item below 1 inserts a row at `row` (result: its index or -1); any other sub-item sets
// that cell of an existing row. Null text, negative image and zero row value are left out.
KVKIT_API int KVKIT_CALL KxListView_AddSpalte(HWND listView, int row, int subItem,
                                              const wchar_t* text, int image, LPARAM rowValue);
// The row value (item lParam). Get cannot tell a value of 0 from a row that does not exist.
KVKIT_API int KVKIT_CALL KxListView_SetItemData(HWND listView, int row, LPARAM value);
KVKIT_API LPARAM KVKIT_CALL KxListView_GetItemData(HWND listView, int row);
// The cell's image index. Set returns 0 when the cell cannot be read or already shows it; Get
// returns -1 when the cell cannot be read.
KVKIT_API int KVKIT_CALL KxListView_SetItemBmp(HWND listView, int row, int subItem, int image);
KVKIT_API int KVKIT_CALL KxListView_GetItemBmp(HWND listView, int row, int subItem);
// Index of the first selected row (its row value to *rowValue when asked), or -1.
KVKIT_API int KVKIT_CALL KxListView_GetSelection(HWND listView, LPARAM* rowValue);
// For the parent dialog's NM_CUSTOMDRAW: asks for item notifications, then gives rows whose
// value equals `rowFilter` (every row for -1) the text colour, background colour and font that
// are not -1 / null. Returns the custom-draw result for the dialog procedure to answer with.
KVKIT_API LRESULT KVKIT_CALL KxListView_SetItemColorFont(HWND dialog, HWND listView,
                                                         NMLVCUSTOMDRAW* draw, LPARAM rowFilter,
                                                         COLORREF textColour,
                                                         COLORREF backColour, HFONT font);

// --- sorting ----------------------------------------------------------------------------------

// Key types of a sort column.
enum {
    KX_SORT_TEXT = 0,
    KX_SORT_NUMBER = 1,
    KX_SORT_DATE = 2,   // needs a session; sorted as text without one
    KX_SORT_IMAGE = 3,
};

// Sorts the rows by the column, ascending when the column was never sorted or last sorted
// descending, descending otherwise; remembers the direction and moves the arrow. The number flag
// gives number keys, else the image flag image keys, else text keys. With image keys a
// `preferredImage` of 0 or more sorts first. Returns 1.
KVKIT_API int KVKIT_CALL KxListView_SortItems(HWND listView, int column, int numberKey,
                                              int imageKey, int preferredImage);
// As KxListView_SortItems with a second column (-1 for none) breaking ties, and the session
// whose collation compares text (null: case-insensitive comparison).
KVKIT_API int KVKIT_CALL KxListView_SortItemsEx(HWND listView, int column, int numberKey,
                                                int imageKey, int preferredImage,
                                                int secondColumn, int secondNumberKey,
                                                int secondImageKey, KVSESSION* session);
// The full form with key types (KX_SORT_*). The reserved arguments are ignored. Returns 1.
KVKIT_API int KVKIT_CALL KxListView_SortItemsNew(HWND listView, int column, int keyType,
                                                 int reserved1, int preferredImage,
                                                 int secondColumn, int secondKeyType,
                                                 int reserved2, KVSESSION* session,
                                                 int reserved3);
// The column showing the sort arrow, or -1 (no columns or no arrow); 0 without a header. With
// `resort` non-zero the parent gets an LVN_COLUMNCLICK for that column, set up so that its sort
// call keeps the current direction. *ascending (when asked) tells the current direction.
KVKIT_API int KVKIT_CALL KxListView_GetSortColumn(HWND listView, int resort, int* ascending);

// --- text cache -------------------------------------------------------------------------------

#pragma pack(push, 1)
// One row of a CACHE_LISTVIEW.
struct CACHE_LISTVIEW_ROW {
    LPARAM rowValue;     // lParam of the row
    int sortColumn;      // column compared by the sort in progress
    wchar_t** cells;     // columnCount texts; a null text reads as empty
};
// Caller-owned; zero it before first use and release it with FreeCacheListView.
struct CACHE_LISTVIEW {
    int rowCount;              // cached rows (0 = empty)
    int columnCount;           // header columns at fill time
    CACHE_LISTVIEW_ROW* rows;  // null when empty
};
#pragma pack(pop)
static_assert(sizeof(CACHE_LISTVIEW_ROW) == 12, "cache row size");
static_assert(offsetof(CACHE_LISTVIEW_ROW, sortColumn) == 4, "cache row column offset");
static_assert(offsetof(CACHE_LISTVIEW_ROW, cells) == 8, "cache row cells offset");
static_assert(sizeof(CACHE_LISTVIEW) == 12, "cache size");
static_assert(offsetof(CACHE_LISTVIEW, columnCount) == 4, "cache column count offset");
static_assert(offsetof(CACHE_LISTVIEW, rows) == 8, "cache rows offset");

// Replaces the cache's content by a copy of every cell. If memory runs out part way, the cache
// keeps the rows copied so far (rowCount then falls short of the list's row count). Returns 0.
KVKIT_API int KVKIT_CALL FillCacheListView(HWND listView, CACHE_LISTVIEW* cache);
// Sorts the cached rows by the column's text (case-sensitive), toggling the column's direction,
// and rebuilds the list view from them with row 0 selected. The first argument is ignored.
// Returns 0.
KVKIT_API int KVKIT_CALL SortListViewFromCache(HWND unused, HWND listView, int column,
                                               CACHE_LISTVIEW* cache);
// Frees everything the cache holds and empties it. Returns 0.
KVKIT_API int KVKIT_CALL FreeCacheListView(CACHE_LISTVIEW* cache);
