// Multi-column list box: the host's items, the display order, selection numbers, and filling and
// sorting the inner list.
#include "dialogs/listbox_internal.h"
#include "core/library.h"
#include <stdlib.h>
#include "kvtext.h"

namespace {

struct TypePicture {
    long letter;
    long picture;
};
const TypePicture kTypePictures[] = {{'C', 101}, {'Z', 101}, {'K', 103}, {'B', 104},
                                     {'T', 105}, {'D', 106}, {'O', 107}};
const long kOtherTypePicture = 102;
const long kFirstPicture = 101, kLastPicture = 107;

// The comparison of a sort pass. qsort takes no context, and sorting happens on the UI thread
// only, so it is kept here for the pass.
typedef int (*ItemKeyCompare)(const KVLB_ITEM*, const KVLB_ITEM*);
struct SortPass {
    ItemKeyCompare key;  // null: array order only
    bool selectedFirst;
};
SortPass g_sortPass;

int sign(long difference) { return difference < 0 ? -1 : difference > 0 ? 1 : 0; }

int compareText(const KVLB_ITEM* a, const KVLB_ITEM* b) {
    return lstrcmpW(a->text ? a->text : L"", b->text ? b->text : L"");
}
int comparePicture(const KVLB_ITEM* a, const KVLB_ITEM* b) { return sign(a->picture - b->picture); }
int compareValue(const KVLB_ITEM* a, const KVLB_ITEM* b) { return sign(long(a->value) - b->value); }
// Selected ones first by number, unselected ones last.
int compareSelection(const KVLB_ITEM* a, const KVLB_ITEM* b) {
    if ((a->selection == 0) != (b->selection == 0)) return a->selection ? -1 : 1;
    return sign(a->selection - b->selection);
}

// Equal keys keep array order, so that every sort gives one defined order.
int compareRows(const void* left, const void* right) {
    const KVLB_ITEM* a = *static_cast<KVLB_ITEM* const*>(left);
    const KVLB_ITEM* b = *static_cast<KVLB_ITEM* const*>(right);
    if (g_sortPass.selectedFirst && (a->selection == 0) != (b->selection == 0))
        return a->selection ? -1 : 1;
    if (g_sortPass.key) {
        int byKey = g_sortPass.key(a, b);
        if (byKey) return byKey;
    }
    return a < b ? -1 : a > b ? 1 : 0;
}

bool isNaturalMode(int mode) { return mode == 0 || mode == 1 || mode == 32; }

ItemKeyCompare keyOfMode(int mode) {
    switch (mode) {
    case KVLB_SORT_PICTURE: return comparePicture;
    case KVLB_SORT_VALUE: return compareValue;
    case KVLB_SORT_SELECTION: return compareSelection;
    default: return compareText;  // 2 and every value that is not a natural mode
    }
}

bool isShowable(const KVLB_ITEM& item) {
    return !(item.flags & KVLB_ITEM_HIDDEN) && static_cast<unsigned short>(item.id) != KVLB_NO_ITEM;
}

void writeOrder(KVLB_LIST* list, KVLB_ITEM* const* rows, int count) {
    for (int i = 0; i < list->itemCount; ++i)
        list->order[i] = i < count ? static_cast<unsigned short>(rows[i]->id) : KVLB_NO_ITEM;
}

// Sorts the shown items (or, for a natural mode, all showable items in array order) into the
// display order. False when memory runs out.
bool sortOrder(KVLB_LIST* list, int mode) {
    bool natural = isNaturalMode(mode);
    int capacity = natural ? list->itemCount : ShownCount(list);
    if (capacity <= 0) return true;
    auto** rows = static_cast<KVLB_ITEM**>(GetMemory(capacity * static_cast<int>(sizeof(KVLB_ITEM*))));
    if (!rows) return false;
    int count = 0;
    if (natural) {
        for (int i = 0; i < list->itemCount; ++i)
            if (isShowable(list->items[i])) rows[count++] = &list->items[i];
    } else {
        for (int i = 0; i < capacity; ++i)
            if (KVLB_ITEM* item = FindItem(list, list->order[i])) rows[count++] = item;
    }
    g_sortPass.key = natural ? nullptr : keyOfMode(mode);
    g_sortPass.selectedFirst = (list->style & KVLB_SELECTEDFIRST) != 0;
    qsort(rows, count, sizeof(KVLB_ITEM*), compareRows);
    writeOrder(list, rows, count);
    FreeMemory(rows);
    return true;
}

// Single selection, mode 16: the selected item moves to the top, the others keep their places.
void moveSelectedFirst(KVLB_LIST* list) {
    int count = ShownCount(list);
    for (int i = 1; i < count; ++i) {
        KVLB_ITEM* item = FindItem(list, list->order[i]);
        if (!item || !item->selection) continue;
        unsigned short id = list->order[i];
        MoveMemory(list->order + 1, list->order, i * sizeof(unsigned short));
        list->order[0] = id;
        return;
    }
}

}  // namespace

wchar_t LowerCase(wchar_t character) {
    return static_cast<wchar_t>(reinterpret_cast<UINT_PTR>(
        CharLowerW(reinterpret_cast<LPWSTR>(static_cast<UINT_PTR>(character)))));
}

LPARAM RowData(const KVLB_ITEM* item, unsigned short id) {
    wchar_t first = item && item->text ? LowerCase(item->text[0]) : 0;
    return static_cast<LPARAM>((static_cast<DWORD>(first) << 16) | id);
}

// --- items and display order -------------------------------------------------------------------

KVLB_ITEM* FindItem(const KVLB_LIST* list, int id) {
    // Identifiers travel as 16-bit values: -5 and 0xFFFB name the same item.
    unsigned short wanted = static_cast<unsigned short>(id);
    if (!list || !list->items || list->itemCount <= 0 || wanted == KVLB_NO_ITEM) return nullptr;
    short key = static_cast<short>(wanted);
    // Hosts usually number their items by position, perhaps from a first identifier: try that
    // place before searching.
    long guess = key - list->items[0].id;
    if (guess >= 0 && guess < list->itemCount && list->items[guess].id == key) return &list->items[guess];
    for (long i = 0; i < list->itemCount; ++i)
        if (list->items[i].id == key) return &list->items[i];
    return nullptr;
}

int ShownCount(const KVLB_LIST* list) {
    if (!list || !list->order) return 0;
    int count = 0;
    while (count < list->itemCount && list->order[count] != KVLB_NO_ITEM) ++count;
    return count;
}

int OrderPosition(const KVLB_LIST* list, int id) {
    int count = ShownCount(list);
    for (int i = 0; i < count; ++i)
        if (list->order[i] == static_cast<unsigned short>(id)) return i;
    return -1;
}

bool EnsureOrder(KVLB_LIST* list) {
    if (list->order || list->itemCount <= 0) return true;
    list->order = static_cast<unsigned short*>(
        GetMemory(list->itemCount * static_cast<int>(sizeof(unsigned short))));
    if (!list->order) return false;
    int count = 0;
    for (int i = 0; i < list->itemCount; ++i)
        if (list->items && isShowable(list->items[i])) list->order[count++] = list->items[i].id;
    while (count < list->itemCount) list->order[count++] = KVLB_NO_ITEM;
    return true;
}

void ConvertTypeLetters(KVLB_LIST* list) {
    if (!list->items) return;
    for (int i = 0; i < list->itemCount; ++i) {
        KVLB_ITEM& item = list->items[i];
        if (item.picture >= kFirstPicture && item.picture <= kLastPicture) continue;  // turned before
        long picture = kOtherTypePicture;
        for (const TypePicture& row : kTypePictures)
            if (row.letter == item.picture) picture = row.picture;
        item.picture = picture;
    }
}

// --- selection ---------------------------------------------------------------------------------

KVLB_ITEM* ItemOfRow(HWND box, const KVLB_LIST* list, int row) {
    if (row < 0) return nullptr;
    LRESULT data = SendMessageW(box, LB_GETITEMDATA, row, 0);
    if (data == LB_ERR) return nullptr;
    return FindItem(list, LOWORD(data));
}

bool CanSelect(HWND box, const KVLB_LIST* list, const KVLB_ITEM* item) {
    if (!item || (item->flags & KVLB_ITEM_DISABLED)) return false;
    if (!IsMultiple(list) || list->maxSelected < 1 || item->selection) return true;
    return SendMessageW(box, LB_GETSELCOUNT, 0, 0) < list->maxSelected;
}

bool SyncSelectionNumber(HWND box, KVLB_LIST* list, KVLB_ITEM* item, bool selected) {
    if (!IsMultiple(list)) {
        item->selection = selected ? 1 : 0;
        return false;
    }
    if (selected && item->selection == 0) {
        item->selection = static_cast<long>(SendMessageW(box, LB_GETSELCOUNT, 0, 0));
        return false;
    }
    if (selected || item->selection <= 0) return false;
    long given = item->selection;
    item->selection = 0;
    for (int i = 0; i < list->itemCount; ++i)
        if (list->items[i].selection > given) --list->items[i].selection;
    return true;
}

void NumberSingleSelection(HWND box, KVLB_LIST* list) {
    KVLB_ITEM* selected = ItemOfRow(box, list, static_cast<int>(SendMessageW(box, LB_GETCURSEL, 0, 0)));
    for (int i = 0; i < list->itemCount; ++i)
        list->items[i].selection = &list->items[i] == selected ? 1 : 0;
}

bool SelectRow(HWND box, KVLB_LIST* list, int row, bool select) {
    KVLB_ITEM* item = ItemOfRow(box, list, row);
    if (!item) return false;
    bool selected = SendMessageW(box, LB_GETSEL, row, 0) > 0;
    if (select == selected) return true;
    if (select && !CanSelect(box, list, item)) return false;
    if (IsMultiple(list)) {
        SendMessageW(box, LB_SETSEL, select, row);
        // Shown numbers are redrawn whole when the others move up.
        if (SyncSelectionNumber(box, list, item, select) && (list->style & KVLB_NUMBERS))
            InvalidateRect(box, nullptr, FALSE);
    } else {
        SendMessageW(box, LB_SETCURSEL, select ? row : -1, 0);
        NumberSingleSelection(box, list);
    }
    return true;
}

// --- filling and sorting -----------------------------------------------------------------------

void FillList(HWND container) {
    KVLB_LIST* list = ListRecord(container);
    HWND box = InnerList(container);
    if (!list || !box) return;
    // The caret item and the scroll position survive a refill.
    int caretId = list->anchor;
    if (SendMessageW(box, LB_GETCOUNT, 0, 0) > 0) {
        KVLB_ITEM* caret = ItemOfRow(box, list, static_cast<int>(SendMessageW(box, LB_GETCARETINDEX, 0, 0)));
        if (caret) caretId = static_cast<unsigned short>(caret->id);
    }
    int top = static_cast<int>(SendMessageW(box, LB_GETTOPINDEX, 0, 0));

    SendMessageW(box, WM_SETREDRAW, FALSE, 0);
    SendMessageW(box, LB_RESETCONTENT, 0, 0);
    list->anchor = KVLB_NO_ITEM;
    if (list->items && EnsureOrder(list)) {
        int count = ShownCount(list);
        SendMessageW(box, LB_INITSTORAGE, count, 0);
        bool multiple = IsMultiple(list);
        // The rows go straight to the list's own procedure: the subclass passes these messages
        // unchanged, and finding it through the window property for every row costs far more
        // than adding the row.
        WNDPROC own = Kx1GetSubProc(0, box);
        auto toList = [box, own](UINT message, WPARAM wParam, LPARAM lParam) {
            return own ? CallWindowProcW(own, box, message, wParam, lParam) : SendMessageW(box, message, wParam, lParam);
        };
        int lastSelected = -1, caretRow = -1;
        for (int row = 0; row < count; ++row) {
            KVLB_ITEM* item = FindItem(list, list->order[row]);
            toList(LB_ADDSTRING, 0, RowData(item, list->order[row]));
            if (list->order[row] == caretId) caretRow = row;
            if (!item || !item->selection) continue;
            if (multiple) toList(LB_SETSEL, TRUE, row);
            else toList(LB_SETCURSEL, row, 0);
            lastSelected = row;
        }
        if (multiple) {
            if (lastSelected >= 0) SendMessageW(box, LB_SETANCHORINDEX, lastSelected, 0);
            if (caretRow < 0) caretRow = lastSelected;
        } else {
            NumberSingleSelection(box, list);
            caretRow = lastSelected;
        }
        if (top > 0 && top < count) SendMessageW(box, LB_SETTOPINDEX, top, 0);
        if (caretRow >= 0) {
            if (multiple) SendMessageW(box, LB_SETCARETINDEX, caretRow, FALSE);
            list->anchor = list->order[caretRow];
        }
    }
    SendMessageW(box, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(box, nullptr, TRUE);
    NotifyParent(container, LBN_SELCHANGE);
}

void SortList(HWND container, int mode) {
    KVLB_LIST* list = ListRecord(container);
    if (!list) return;
    if (list->items && EnsureOrder(list)) {
        bool sorted = true;
        if (mode == KVLB_SORT_SELECTION && !IsMultiple(list)) moveSelectedFirst(list);
        else sorted = sortOrder(list, mode);
        if (sorted) list->sortMode = static_cast<unsigned char>(mode);
    }
    FillList(container);
}

void AfterSelectionChange(HWND container) {
    KVLB_LIST* list = ListRecord(container);
    if (list && (list->style & KVLB_SELECTEDFIRST)) SortList(container, list->sortMode);
    else NotifyParent(container, LBN_SELCHANGE);
}

int HeaderSortMode(const KVLB_LIST* list, int id) {
    switch (id) {
    case KVLB_HEADER_CHECK: return KVLB_SORT_SELECTION;
    case KVLB_HEADER_TEXT:
        return list->sortMode == 0 || list->sortMode == KVLB_SORT_NATURAL ? KVLB_SORT_TEXT
                                                                           : KVLB_SORT_NATURAL;
    case KVLB_HEADER_SECONDTEXT: return KVLB_SORT_NATURAL2;
    case KVLB_HEADER_PICTURE: return KVLB_SORT_PICTURE;
    case KVLB_HEADER_VALUE: return KVLB_SORT_VALUE;
    }
    return list->sortMode;
}

void MoveShownItem(HWND container, int from, int to) {
    KVLB_LIST* list = ListRecord(container);
    int count = ShownCount(list);
    if (from < 0 || from >= count) return;
    if (to < 0 || to >= count) to = count - 1;
    if (from == to) return;
    unsigned short id = list->order[from];
    if (from < to) MoveMemory(list->order + from, list->order + from + 1, (to - from) * sizeof(unsigned short));
    else MoveMemory(list->order + to + 1, list->order + to, (from - to) * sizeof(unsigned short));
    list->order[to] = id;
    if (IsMultiple(list)) {
        long number = 0;
        for (int i = 0; i < count; ++i) {
            KVLB_ITEM* item = FindItem(list, list->order[i]);
            if (item && item->selection) item->selection = ++number;
        }
    }
    FillList(container);
}

// --- the host's reset ----------------------------------------------------------------------------

namespace {

// The limit message: language string 859 with its "%d" replaced by the maximum, caption 572.
void showLimitMessage(HWND container, int maximum) {
    wchar_t* format = LoadLanguageString(859);
    wchar_t* caption = LoadLanguageString(572);
    wchar_t text[2 * kLanguageStringLength];
    text[0] = 0;
    if (format) {
        const wchar_t* mark = wcsstr(format, L"%d");
        if (mark) {
            wchar_t number[16];
            wsprintfW(number, L"%d", maximum);
            lstrcpynW(text, format, static_cast<int>(mark - format) + 1);
            kv_strcat(text, number, 2 * kLanguageStringLength);
            kv_strcat(text, mark + 2, 2 * kLanguageStringLength);
        } else {
            kv_strcpy(text, format, 2 * kLanguageStringLength);
        }
    }
    MessageBoxW(container, text, caption ? caption : L"", MB_OK | MB_ICONINFORMATION);
    FreeMemory(format);
    FreeMemory(caption);
}

// Mode 2: numbers every shown, selectable item that has none, up to the maximum.
void selectAll(HWND container, KVLB_LIST* list) {
    if (!IsMultiple(list)) {
        bool first = true;
        for (int i = 0; i < list->itemCount; ++i) {
            KVLB_ITEM& item = list->items[i];
            if (item.flags & KVLB_ITEM_HIDDEN) continue;
            item.selection = first && !(item.flags & KVLB_ITEM_DISABLED) ? 1 : 0;
            if (item.selection) first = false;
        }
        return;
    }
    long count = 0;
    for (int i = 0; i < list->itemCount; ++i)
        if (!(list->items[i].flags & KVLB_ITEM_HIDDEN) && list->items[i].selection) ++count;
    for (int i = 0; i < list->itemCount; ++i) {
        KVLB_ITEM& item = list->items[i];
        if ((item.flags & (KVLB_ITEM_HIDDEN | KVLB_ITEM_DISABLED)) || item.selection) continue;
        if (list->maxSelected >= 1 && count >= list->maxSelected) {
            showLimitMessage(container, list->maxSelected);
            return;
        }
        item.selection = ++count;
    }
}

}  // namespace

int KVKIT_CALL Kx1LbResetSel(HWND container, unsigned char mode, short* values) {
    KVLB_LIST* list = ListRecord(container);
    HWND box = InnerList(container);
    if (!list || !box || !list->items || list->itemCount <= 0) return 0;
    if (mode > KVLB_RESET_NUMBERS || (!values && (mode == KVLB_RESET_FROM_FLAGS || mode == KVLB_RESET_NUMBERS)))
        return 0;
    SendMessageW(box, WM_SETREDRAW, FALSE, 0);
    if (mode == KVLB_RESET_ALL) {
        selectAll(container, list);
    } else {
        long number = 0;
        for (int i = 0; i < list->itemCount; ++i) {
            KVLB_ITEM& item = list->items[i];
            if (item.flags & KVLB_ITEM_HIDDEN) continue;
            if (mode == KVLB_RESET_FROM_FLAGS) item.selection = values[i] >= 1 ? ++number : 0;
            else if (mode == KVLB_RESET_NUMBERS) item.selection = values[i];
            else item.selection = 0;
        }
    }
    if (list->style & KVLB_SELECTEDFIRST) SortList(container, list->sortMode);
    else FillList(container);  // turns redrawing back on
    return 1;
}
