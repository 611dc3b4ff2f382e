// Finding list-view rows by value and by cell text, the selected rows, and type-ahead.
#include "views/listview_internal.h"
#include "include/kvkit_search.h"
#include <stdlib.h>
#include <wchar.h>
#include "kvtext.h"

namespace {

// Characters read from a cell, terminator included.
const int kCellCapacity = 255;
// A search text: at most 256 characters and the terminator.
const int kSearchCapacity = 257;
// kv_CompareString flag for a comparison that ignores case.
const DWORD kIgnoreCase = 4;

int rowCount(HWND listView) {
    return static_cast<int>(SendMessageW(listView, LVM_GETITEMCOUNT, 0, 0));
}

// Leading blanks (character 32 only) do not count when a cell is matched by its beginning.
const wchar_t* skipBlanks(const wchar_t* text) {
    while (*text == L' ') ++text;
    return text;
}

void selectAndShowRow(HWND listView, int row) {
    LVITEMW item = {};
    item.stateMask = item.state = LVIS_SELECTED | LVIS_FOCUSED;
    SendMessageW(listView, LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&item));
    SendMessageW(listView, LVM_ENSUREVISIBLE, row, TRUE);  // partly visible is enough
}

wchar_t* copyText(const wchar_t* text) {
    int length = lstrlenW(text);
    auto* copy = static_cast<wchar_t*>(GetMemory((length + 1) * sizeof(wchar_t)));
    if (copy) kv_strcpy(copy, text, length + 1);
    return copy;
}

// One call of KxListView_GetItemWithTextEx.
struct RowSearch {
    HWND listView;
    int column;
    int rowCount;
    // Every row's cell read once for the passes that read them many times; null entries (and a
    // null array) are read from the list view again.
    wchar_t** cells;
    KVSESSION* session;  // compares through its collation; null: case-insensitive
    DWORD option;
    const wchar_t* text;
    int length;
};

// Copies the column's cells. An empty cell is "0" to a number search and absent to a text
// search. Null when memory runs out for the array; a row whose copy fails stays unread.
wchar_t** preloadCells(HWND listView, int column, int count, bool numberSearch) {
    auto** cells = static_cast<wchar_t**>(GetMemory(count * static_cast<int>(sizeof(wchar_t*))));
    if (!cells) return nullptr;
    wchar_t cell[kCellCapacity];
    for (int row = 0; row < count; ++row) {
        const wchar_t* text = cell;
        if (GetCellText(listView, row, column, cell, kCellCapacity) <= 0)
            text = numberSearch ? L"0" : nullptr;
        cells[row] = text ? copyText(text) : nullptr;
    }
    return cells;
}

void freeCells(wchar_t** cells, int count) {
    if (!cells) return;
    for (int row = 0; row < count; ++row) FreeMemory(cells[row]);
    FreeMemory(cells);
}

// The row's cell: the preloaded copy, or the list view's text read into `buffer`.
const wchar_t* cellOf(const RowSearch& search, int row, wchar_t* buffer) {
    if (search.cells && search.cells[row]) return search.cells[row];
    GetCellText(search.listView, row, search.column, buffer, kCellCapacity);
    return buffer;
}

// The cell (blanks skipped) begins with the first `length` characters of the search text.
bool beginsWith(const RowSearch& search, const wchar_t* rest, int length) {
    if (lstrlenW(rest) < length) return false;
    if (search.session)
        return StringCmpLenEx(search.session->collation, rest, search.text, search.option,
                              length) == 0;
    return _wcsnicmp(rest, search.text, length) == 0;
}

bool equalsLowered(const wchar_t* cell, const wchar_t* loweredText) {
    wchar_t lowered[kCellCapacity];
    kv_strcpy(lowered, cell, kCellCapacity);
    CharLowerW(lowered);
    return lstrcmpW(lowered, loweredText) == 0;
}

// From the start row down: equal cells (exact or number), or cells beginning with the text.
int firstPass(const RowSearch& search, int startRow, bool equality) {
    wchar_t buffer[kCellCapacity];
    for (int row = startRow; row < search.rowCount; ++row) {
        const wchar_t* cell = cellOf(search, row, buffer);
        if (!*cell) continue;
        if (equality ? equalsLowered(cell, search.text)
                     : beginsWith(search, skipBlanks(cell), search.length))
            return row;
    }
    return -1;
}

// From row 0: the first row long enough for the whole text that shares a prefix with it.
int firstRowSharingAPrefix(const RowSearch& search) {
    wchar_t buffer[kCellCapacity];
    for (int row = 0; row < search.rowCount; ++row) {
        const wchar_t* rest = skipBlanks(cellOf(search, row, buffer));
        if (lstrlenW(rest) < search.length) continue;
        for (int length = search.length; length >= 1; --length)
            if (beginsWith(search, rest, length)) return row;
    }
    return -1;
}

// The topmost row among those sharing the longest prefix with the text.
int rowSharingTheLongestPrefix(const RowSearch& search) {
    wchar_t buffer[kCellCapacity];
    for (int length = search.length; length >= 1; --length)
        for (int row = 0; row < search.rowCount; ++row)
            if (beginsWith(search, skipBlanks(cellOf(search, row, buffer)), length)) return row;
    return -1;
}

// The topmost row holding the nearest number at or below the target (AT_OR_BELOW) or at or
// above it (AT_OR_ABOVE).
int nearestNumber(const RowSearch& search, BYTE flags) {
    int target = _wtoi(search.text);
    int found = -1, foundValue = 0;
    wchar_t buffer[kCellCapacity];
    for (int row = 0; row < search.rowCount; ++row) {
        const wchar_t* cell = cellOf(search, row, buffer);
        if (!*cell) continue;
        int value = _wtoi(cell);
        bool below = (flags & KX_FIND_AT_OR_BELOW) && value <= target &&
                     (found < 0 || value > foundValue);
        bool above = (flags & KX_FIND_AT_OR_ABOVE) && value >= target &&
                     (found < 0 || value < foundValue);
        if (below || above) {
            found = row;
            foundValue = value;
        }
    }
    return found;
}

}  // namespace

int KVKIT_CALL KxListView_GetItemWithData(HWND listView, LPARAM value) {
    if (rowCount(listView) <= 0) return -1;
    LVFINDINFOW find = {};
    find.flags = LVFI_PARAM;
    find.lParam = value;
    return static_cast<int>(SendMessageW(listView, LVM_FINDITEMW, static_cast<WPARAM>(-1),
                                         reinterpret_cast<LPARAM>(&find)));
}

int KVKIT_CALL KxListView_GetItemWithText(HWND listView, int column, int startRow, wchar_t* text,
                                          int exact) {
    int count = rowCount(listView);
    if (count <= 0 || !text) return -1;
    if (startRow < 0 || startRow >= count) startRow = 0;
    int length = 0;
    if (exact) CharLowerW(text);
    else length = lstrlenW(text);

    wchar_t cell[kCellCapacity];
    for (int row = startRow; row < count; ++row) {
        if (GetCellText(listView, row, column, cell, kCellCapacity) <= 0) continue;
        if (exact) {
            CharLowerW(cell);
            if (lstrcmpW(cell, text) == 0) return row;
            continue;
        }
        const wchar_t* rest = skipBlanks(cell);
        if (*rest && lstrlenW(rest) >= length &&
            kv_CompareString(0, kIgnoreCase, rest, length, text, length) == 0)
            return row;
    }
    return -1;
}

int KVKIT_CALL KxListView_GetItemWithTextEx(HWND listView, int column, int startRow,
                                            const wchar_t* text, int number, int exact,
                                            BYTE searchFlags, KVSESSION* session, DWORD option,
                                            int select) {
    int count = rowCount(listView);
    bool textSearch = searchFlags & KX_FIND_TEXT;
    if (count <= 0 || (textSearch && !text)) return -1;
    if (startRow < 0 || startRow >= count) startRow = 0;

    wchar_t searchText[kSearchCapacity];
    if (textSearch) kv_strcpy(searchText, text, kSearchCapacity);
    else _itow(number, searchText, 10);
    if (exact) CharLowerW(searchText);

    RowSearch search = {listView, column, count, nullptr, session, option, searchText,
                        exact ? 0 : lstrlenW(searchText)};
    if (!exact && searchFlags) search.cells = preloadCells(listView, column, count, !textSearch);

    bool prefixPasses = exact || !(searchFlags & KX_FIND_NO_PREFIX_PASSES);
    int found = prefixPasses ? firstPass(search, startRow, exact || !textSearch) : -1;
    if (!exact) {
        if (found < 0 && prefixPasses)
            found = (searchFlags & KX_FIND_LONGEST_PREFIX) ? rowSharingTheLongestPrefix(search)
                                                           : firstRowSharingAPrefix(search);
        if (found < 0 && !textSearch) found = nearestNumber(search, searchFlags);
    }
    if (select && found >= 0) selectAndShowRow(listView, found);
    freeCells(search.cells, count);
    return found;
}

int* KVKIT_CALL KxListView_GetSelItems(HWND listView, int* count) {
    if (count) *count = 0;
    if (rowCount(listView) <= 0) return nullptr;
    int selected = static_cast<int>(SendMessageW(listView, LVM_GETSELECTEDCOUNT, 0, 0));
    if (selected <= 0) return nullptr;
    auto* rows = static_cast<int*>(GetMemory(selected * static_cast<int>(sizeof(int))));
    if (!rows) return nullptr;
    int stored = 0;
    int row = -1;
    while (stored < selected &&
           (row = static_cast<int>(SendMessageW(listView, LVM_GETNEXTITEM, row, LVNI_SELECTED))) >= 0)
        rows[stored++] = row;
    if (count) *count = stored;
    return rows;
}

int KVKIT_CALL KxListView_SetCharSel(HWND listView, NMLVKEYDOWN* keyDown, const wchar_t* text) {
    return KxListView_SetCharSelEx(listView, keyDown, text, -1);
}

int KVKIT_CALL KxListView_SetCharSelEx(HWND listView, NMLVKEYDOWN* keyDown, const wchar_t* text,
                                       int column) {
    if (!keyDown && (!text || !*text)) return -1;
    if (column < 0) column = KxListView_GetSortColumn(listView, 0, nullptr);
    if (column < 0) column = 0;

    wchar_t searchText[kSearchCapacity];
    int startRow = -1;
    if (keyDown) {
        // The row after the selection, so that typing the same letter again moves on.
        int selected = KxListView_GetSelection(listView, nullptr);
        if (selected >= 0) startRow = selected + 1;
        UINT character = MapVirtualKeyW(keyDown->wVKey, MAPVK_VK_TO_CHAR);
        searchText[0] = static_cast<wchar_t>(LOWORD(character));
        searchText[1] = 0;
    } else {
        kv_strcpy(searchText, text, kSearchCapacity);
    }

    int found = KxListView_GetItemWithText(listView, column, startRow, searchText, 0);
    if (found < 0) found = KxListView_GetItemWithText(listView, column, -1, searchText, 0);
    if (keyDown && !searchText[0]) return found;  // a key without a character selects nothing
    if (found >= 0) selectAndShowRow(listView, found);
    return found;
}
