// Sorting a list view by a column, and the text cache that sorts by rebuilding the list.
//
// The in-place sort extracts every row's keys once into a table ordered by row value; the list
// view's own LVM_SORTITEMS then calls a comparison that finds both rows by binary search in that
// table, so no cell is read while the list view sorts.
#include "views/listview_internal.h"
#include <stdlib.h>
#include <string.h>
#include <algorithm>
#include "kvbase.h"
#include "kvtext.h"

namespace {

// Characters read from a cell for a sort key (terminator included).
const int kKeyTextCapacity = 260;
// Growth step of the text pool, in bytes.
const int kPoolGrowBytes = 1024;
// Characters read from a cell for the cache (terminator included).
const int kCacheTextCapacity = 1024;
// Date format handed to the date parser.
const int kDateFormat = 0;

// Keys of one row. Text keys are offsets in characters into the pool (which moves while it grows),
// -1 for an empty cell; number, date and image keys are signed 64-bit values, 0 when the cell is
// empty.
#pragma pack(push, 4)
struct SortKey {
    LPARAM rowValue;
    int textOffset1;
    int textOffset2;
    LONGLONG number1;
    LONGLONG number2;
};
#pragma pack(pop)
static_assert(sizeof(SortKey) == 28, "sort key: seven 32-bit words");
static_assert(offsetof(SortKey, textOffset1) == 4, "sort key text offset 1");
static_assert(offsetof(SortKey, textOffset2) == 8, "sort key text offset 2");
static_assert(offsetof(SortKey, number1) == 12, "sort key number 1");
static_assert(offsetof(SortKey, number2) == 20, "sort key number 2");

// A row value and the key entry found for it.
struct Lookup {
    LPARAM rowValue;
    const SortKey* key;
};

// State of one sort call; lives on its stack.
struct SortContext {
    HWND listView;
    int column1;
    int type1;
    int column2;         // -1 = no second key
    int type2;
    int preferredImage;  // image keys: this image sorts first; -1 = no preference
    int ascending;
    KVSESSION* session;  // collation of text keys and date parsing; may be null
    int rowCount;
    SortKey* keys;       // rowCount entries ordered by row value
    wchar_t* pool;       // texts of the text keys, each terminated
    int poolUsedBytes;
    int poolCapacityBytes;
    // The list view's merge sort compares one row against a run of others, so each side of a
    // comparison is often the row it was the time before: its entry is not searched again.
    Lookup lastA;
    Lookup lastB;
};

int signOf(LONGLONG value) { return value < 0 ? -1 : value > 0 ? 1 : 0; }

// Dates need the session's date parser; without one the column is compared as text. Unknown
// types read as text too.
int effectiveKeyType(int type, KVSESSION* session) {
    if (type == KX_SORT_DATE && !session) return KX_SORT_TEXT;
    if (type < KX_SORT_TEXT || type > KX_SORT_IMAGE) return KX_SORT_TEXT;
    return type;
}

// Appends a text with its terminator to the pool; returns its offset, or -1 when it cannot grow.
int appendToPool(SortContext& context, const wchar_t* text) {
    int bytes = (lstrlenW(text) + 1) * static_cast<int>(sizeof(wchar_t));
    int offset = context.poolUsedBytes / static_cast<int>(sizeof(wchar_t));
    void* grown = AddMemoryMax(context.pool, &context.poolUsedBytes, &context.poolCapacityBytes,
                               text, bytes, kPoolGrowBytes);
    if (!grown) return -1;
    context.pool = static_cast<wchar_t*>(grown);
    return offset;
}

void readKey(SortContext& context, int row, int column, int type, int* textOffset,
             LONGLONG* number) {
    if (type == KX_SORT_IMAGE) {
        *number = KxListView_GetItemBmp(context.listView, row, column);
        return;
    }
    wchar_t text[kKeyTextCapacity];
    GetCellText(context.listView, row, column, text, kKeyTextCapacity);
    if (!text[0]) return;  // empty: offset -1, number 0
    if (type == KX_SORT_NUMBER) {
        *number = _wtol(text);
    } else if (type == KX_SORT_DATE) {
        int day = 0;
        DeFormDate(context.session, text, kDateFormat, &day, 0);
        *number = day;
    } else {
        *textOffset = appendToPool(context, text);
    }
}

const SortKey* findKey(const SortContext& context, LPARAM rowValue) {
    if (context.rowCount <= 0 || rowValue < context.keys[0].rowValue ||
        rowValue > context.keys[context.rowCount - 1].rowValue)
        return nullptr;
    // Halving without an early exit runs log2(n) steps with no branch to mispredict; with
    // duplicate row values it finds one of them.
    const SortKey* base = context.keys;
    for (int remaining = context.rowCount; remaining > 1;) {
        int half = remaining / 2;
        if (base[half].rowValue <= rowValue) base += half;
        remaining -= half;
    }
    return base->rowValue == rowValue ? base : nullptr;
}

const SortKey* findKeyAgain(SortContext& context, Lookup& last, LPARAM rowValue) {
    if (rowValue != last.rowValue) last = {rowValue, findKey(context, rowValue)};
    return last.key;
}

// Reads every row's keys and orders the table by row value. False when there is nothing to sort
// or no memory for the table.
bool buildKeyTable(SortContext& context) {
    context.rowCount = static_cast<int>(SendMessageW(context.listView, LVM_GETITEMCOUNT, 0, 0));
    if (context.rowCount <= 0) return false;
    context.keys = static_cast<SortKey*>(Mres(context.rowCount * static_cast<int>(sizeof(SortKey))));
    if (!context.keys) return false;
    for (int row = 0; row < context.rowCount; ++row) {
        SortKey& key = context.keys[row];
        key.rowValue = KxListView_GetItemData(context.listView, row);
        key.textOffset1 = key.textOffset2 = -1;
        readKey(context, row, context.column1, context.type1, &key.textOffset1, &key.number1);
        if (context.column2 >= 0)
            readKey(context, row, context.column2, context.type2, &key.textOffset2, &key.number2);
    }
    std::sort(context.keys, context.keys + context.rowCount,
              [](const SortKey& a, const SortKey& b) { return a.rowValue < b.rowValue; });
    LPARAM first = context.keys[0].rowValue;
    context.lastA = context.lastB = Lookup{first, findKey(context, first)};
    return true;
}

int compareTexts(const SortContext& context, int offsetA, int offsetB) {
    if (offsetA < 0 || offsetB < 0) return (offsetA >= 0) - (offsetB >= 0);  // empty sorts first
    const wchar_t* a = context.pool + offsetA;
    const wchar_t* b = context.pool + offsetB;
    if (context.session) return signOf(StringCmpEx(context.session->collation, a, b, 0));
    return signOf(lstrcmpiW(a, b));
}

int compareKey(const SortContext& context, int type, int offsetA, int offsetB, LONGLONG numberA,
               LONGLONG numberB) {
    if (type == KX_SORT_TEXT) return compareTexts(context, offsetA, offsetB);
    if (type == KX_SORT_IMAGE && context.preferredImage >= 0 && numberA != numberB) {
        if (numberA == context.preferredImage) return -1;
        if (numberB == context.preferredImage) return 1;
    }
    return numberA < numberB ? -1 : numberA > numberB ? 1 : 0;
}

int CALLBACK compareRows(LPARAM rowValueA, LPARAM rowValueB, LPARAM contextParam) {
    auto& context = *reinterpret_cast<SortContext*>(contextParam);
    const SortKey* a = findKeyAgain(context, context.lastA, rowValueA);
    const SortKey* b = findKeyAgain(context, context.lastB, rowValueB);
    if (!a || !b) return 0;
    int result = compareKey(context, context.type1, a->textOffset1, b->textOffset1, a->number1,
                            b->number1);
    if (result == 0 && context.column2 >= 0 && context.column2 != context.column1)
        result = compareKey(context, context.type2, a->textOffset2, b->textOffset2, a->number2,
                            b->number2);
    return context.ascending ? result : -result;
}

// --- cache ------------------------------------------------------------------------------------

// Rows hold every cell (a fill keeps complete rows only) and the sort column is checked before
// sorting, so the compared texts always exist.
const wchar_t* sortText(const void* row) {
    const auto* cached = static_cast<const CACHE_LISTVIEW_ROW*>(row);
    return cached->cells[cached->sortColumn];
}

int compareCachedAscending(const void* a, const void* b) { return lstrcmpW(sortText(a), sortText(b)); }

int compareCachedDescending(const void* a, const void* b) { return lstrcmpW(sortText(b), sortText(a)); }

void freeCachedRow(CACHE_LISTVIEW_ROW& row, int columnCount) {
    if (!row.cells) return;
    for (int column = 0; column < columnCount; ++column) FreeMemory(row.cells[column]);
    FreeMemory(row.cells);
    row.cells = nullptr;
}

// Copies every cell of a row; false (with nothing of the row kept) when memory runs out.
bool fillCachedRow(HWND listView, int row, int columnCount, CACHE_LISTVIEW_ROW* cached) {
    cached->cells = static_cast<wchar_t**>(Mres(columnCount * static_cast<int>(sizeof(wchar_t*))));
    if (!cached->cells) return false;
    cached->rowValue = KxListView_GetItemData(listView, row);
    wchar_t text[kCacheTextCapacity];
    for (int column = 0; column < columnCount; ++column) {
        GetCellText(listView, row, column, text, kCacheTextCapacity);
        int length = lstrlenW(text);
        // Room for the text, its terminator and one spare character.
        auto* copy = static_cast<wchar_t*>(GetMemory((length + 2) * static_cast<int>(sizeof(wchar_t))));
        if (!copy) {
            freeCachedRow(*cached, columnCount);
            return false;
        }
        memcpy(copy, text, (length + 1) * sizeof(wchar_t));
        cached->cells[column] = copy;
    }
    return true;
}

void rebuildFromCache(HWND listView, const CACHE_LISTVIEW& cache) {
    bool locked = LockWindowUpdate(listView) != FALSE;
    SendMessageW(listView, LVM_DELETEALLITEMS, 0, 0);
    wchar_t text[kCacheTextCapacity];
    for (int row = 0; row < cache.rowCount; ++row) {
        const CACHE_LISTVIEW_ROW& cached = cache.rows[row];
        for (int column = 0; column < cache.columnCount; ++column) {
            kv_strcpy(text, cached.cells[column], kCacheTextCapacity);
            KxListView_AddSpalte(listView, row, column, text, -1, column == 0 ? cached.rowValue : 0);
        }
    }
    LVITEMW state = {};
    state.stateMask = state.state = LVIS_SELECTED | LVIS_FOCUSED;
    SendMessageW(listView, LVM_SETITEMSTATE, 0, reinterpret_cast<LPARAM>(&state));
    if (locked) LockWindowUpdate(nullptr);
}

}  // namespace

// --- in-place sort ----------------------------------------------------------------------------

int KVKIT_CALL KxListView_SortItems(HWND listView, int column, int numberKey, int imageKey,
                                    int preferredImage) {
    return KxListView_SortItemsEx(listView, column, numberKey, imageKey, preferredImage, -1, 0, 0,
                                  nullptr);
}

int KVKIT_CALL KxListView_SortItemsEx(HWND listView, int column, int numberKey, int imageKey,
                                      int preferredImage, int secondColumn, int secondNumberKey,
                                      int secondImageKey, KVSESSION* session) {
    auto typeOf = [](int numberFlag, int imageFlag) {
        return numberFlag == 1 ? KX_SORT_NUMBER : imageFlag == 1 ? KX_SORT_IMAGE : KX_SORT_TEXT;
    };
    return KxListView_SortItemsNew(listView, column, typeOf(numberKey, imageKey), 0,
                                   preferredImage, secondColumn,
                                   typeOf(secondNumberKey, secondImageKey), 0, session, 0);
}

int KVKIT_CALL KxListView_SortItemsNew(HWND listView, int column, int keyType, int reserved1,
                                       int preferredImage, int secondColumn, int secondKeyType,
                                       int reserved2, KVSESSION* session, int reserved3) {
    SortContext context = {};
    context.listView = listView;
    context.column1 = column;
    context.type1 = effectiveKeyType(keyType, session);
    context.column2 = secondColumn;
    context.type2 = effectiveKeyType(secondKeyType, session);
    // The preference is given with an image first key; any other sort passes image 0.
    context.preferredImage = keyType == KX_SORT_IMAGE ? preferredImage : 0;
    context.ascending = KxListView_GetHeaderData(listView, column) ? 0 : 1;
    context.session = session;

    // Without a key table the comparison could find no row: the sort is skipped, the direction
    // and the arrow still change.
    if (buildKeyTable(context))
        SendMessageW(listView, LVM_SORTITEMS, reinterpret_cast<WPARAM>(&context),
                     reinterpret_cast<LPARAM>(compareRows));
    FreeMemory(context.pool);
    FreeMemory(context.keys);

    KxListView_SetSortBitmap(listView, column, context.ascending, 1);
    int selected = KxListView_GetSelection(listView, nullptr);
    if (selected >= 0) SendMessageW(listView, LVM_ENSUREVISIBLE, selected, TRUE);
    return 1;
}

int KVKIT_CALL KxListView_GetSortColumn(HWND listView, int resort, int* ascending) {
    HWND header = ListViewHeader(listView);
    if (!header) return 0;
    int count = HeaderColumnCount(header);
    if (count <= 0) return -1;
    int column = 0;
    HDITEMW item = {};
    for (; column < count; ++column) {
        item = HDITEMW();
        item.mask = HDI_BITMAP | HDI_LPARAM;
        if (SendMessageW(header, HDM_GETITEMW, column, reinterpret_cast<LPARAM>(&item)) && item.hbm)
            break;
    }
    if (column == count) return -1;
    if (ascending) *ascending = item.lParam ? 1 : 0;
    if (resort) {
        // The parent's column-click handler sorts with the inverse of the stored direction;
        // inverting it first makes that sort keep the current one.
        KxListView_SetHeaderData(listView, column, !item.lParam);
        NMLISTVIEW click = {};
        click.hdr.hwndFrom = listView;
        click.hdr.idFrom = GetDlgCtrlID(listView);
        click.hdr.code = LVN_COLUMNCLICK;
        click.iItem = -1;
        click.iSubItem = column;
        SendMessageW(GetParent(listView), WM_NOTIFY, click.hdr.idFrom,
                     reinterpret_cast<LPARAM>(&click));
    }
    return column;
}

// --- cache ------------------------------------------------------------------------------------

int KVKIT_CALL FreeCacheListView(CACHE_LISTVIEW* cache) {
    if (!cache) return 0;
    if (cache->rows) {
        for (int row = 0; row < cache->rowCount; ++row)
            freeCachedRow(cache->rows[row], cache->columnCount);
        FreeMemory(cache->rows);
    }
    cache->rowCount = 0;
    cache->rows = nullptr;
    return 0;
}

int KVKIT_CALL FillCacheListView(HWND listView, CACHE_LISTVIEW* cache) {
    if (!cache) return 0;
    FreeCacheListView(cache);
    HWND header = ListViewHeader(listView);
    int columns = header ? HeaderColumnCount(header) : 0;
    cache->columnCount = columns > 0 ? columns : 0;
    int rows = static_cast<int>(SendMessageW(listView, LVM_GETITEMCOUNT, 0, 0));
    if (rows <= 0) return 0;
    cache->rows = static_cast<CACHE_LISTVIEW_ROW*>(
        Mres(rows * static_cast<int>(sizeof(CACHE_LISTVIEW_ROW))));
    if (!cache->rows) return 0;
    // When memory runs out the cache keeps the complete rows copied so far.
    int filled = 0;
    while (filled < rows && fillCachedRow(listView, filled, cache->columnCount, &cache->rows[filled]))
        ++filled;
    cache->rowCount = filled;
    return 0;
}

int KVKIT_CALL SortListViewFromCache(HWND unused, HWND listView, int column,
                                     CACHE_LISTVIEW* cache) {
    if (!cache) return 0;
    HCURSOR previousCursor = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
    LPARAM lastDirection = KxListView_GetHeaderData(listView, column);
    bool descending = lastDirection > 0;  // last sorted ascending
    for (int row = 0; row < cache->rowCount; ++row) cache->rows[row].sortColumn = column;
    if (cache->rowCount > 1 && column >= 0 && column < cache->columnCount)
        qsort(cache->rows, cache->rowCount, sizeof(CACHE_LISTVIEW_ROW),
              descending ? compareCachedDescending : compareCachedAscending);
    rebuildFromCache(listView, *cache);
    KxListView_SetSortBitmap(listView, column, descending ? 0 : 1, 1);
    SetCursor(previousCursor);
    return 0;
}
