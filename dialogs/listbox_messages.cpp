// Multi-column list box: list-box messages sent to the container, with item identifiers in place
// of rows. Rows are the positions of the display order.
#include "dialogs/listbox_internal.h"
#include "kvtext.h"

namespace {

// Identifiers travel in the low word; -1 stands for "none" or "all" where a list box has it.
bool isMinusOne(WPARAM value) { return static_cast<int>(value) == -1; }

void redrawRow(HWND box, int row) {
    RECT rect;
    if (SendMessageW(box, LB_GETITEMRECT, row, reinterpret_cast<LPARAM>(&rect)) != LB_ERR)
        InvalidateRect(box, &rect, FALSE);
}

void resortIfSelectedFirst(HWND container, const KVLB_LIST* list) {
    if (list->style & KVLB_SELECTEDFIRST) SortList(container, list->sortMode);
}

// LB_ADDSTRING and LB_INSERTSTRING: an item of the array that is not shown joins the display
// order at `row` (the end when out of range). A number it carries counts as a new selection.
LRESULT showItem(HWND container, KVLB_LIST* list, HWND box, int id, int row) {
    KVLB_ITEM* item = FindItem(list, id);
    if (!item || !EnsureOrder(list) || OrderPosition(list, id) >= 0) return LB_ERR;
    int count = ShownCount(list);
    if (count >= list->itemCount) return LB_ERR;
    if (row < 0 || row > count) row = count;
    MoveMemory(list->order + row + 1, list->order + row, (count - row) * sizeof(unsigned short));
    list->order[row] = static_cast<unsigned short>(item->id);
    item->flags &= ~KVLB_ITEM_HIDDEN;
    bool wasSelected = item->selection != 0;
    item->selection = 0;
    SendMessageW(box, LB_INSERTSTRING, row, RowData(item, list->order[row]));
    if (wasSelected) SelectRow(box, list, row, true);  // refused past the maximum
    if (list->style & KVLB_SELECTEDFIRST) SortList(container, list->sortMode);
    else NotifyParent(container, LBN_SELCHANGE);
    return OrderPosition(list, item->id);
}

// LB_DELETESTRING: the item is hidden, leaves the display order and gives up its number.
LRESULT hideItem(HWND container, KVLB_LIST* list, HWND box, int id) {
    KVLB_ITEM* item = FindItem(list, id);
    int row = OrderPosition(list, id);
    if (!item || row < 0) return LB_ERR;
    int count = ShownCount(list);
    MoveMemory(list->order + row, list->order + row + 1, (count - row - 1) * sizeof(unsigned short));
    list->order[count - 1] = KVLB_NO_ITEM;
    item->flags |= KVLB_ITEM_HIDDEN;
    if (list->anchor == static_cast<unsigned short>(item->id)) list->anchor = KVLB_NO_ITEM;
    SendMessageW(box, LB_DELETESTRING, row, 0);
    if (SyncSelectionNumber(box, list, item, false) && (list->style & KVLB_NUMBERS))
        InvalidateRect(box, nullptr, FALSE);
    NotifyParent(container, LBN_SELCHANGE);
    return SendMessageW(box, LB_GETCOUNT, 0, 0);
}

// LB_SETSEL: one item, or every shown one for -1.
LRESULT setSelection(HWND container, KVLB_LIST* list, HWND box, bool select, LPARAM which) {
    if (isMinusOne(which)) {
        int count = ShownCount(list);
        for (int row = 0; row < count; ++row) SelectRow(box, list, row, select);
        resortIfSelectedFirst(container, list);
        return 0;
    }
    int row = OrderPosition(list, LOWORD(which));
    if (row < 0 || !SelectRow(box, list, row, select)) return LB_ERR;
    redrawRow(box, row);
    resortIfSelectedFirst(container, list);
    return 0;
}

// LB_SETCURSEL (single selection): the item's row, or none for -1.
LRESULT setCurrent(HWND container, KVLB_LIST* list, HWND box, WPARAM which) {
    if (IsMultiple(list)) return LB_ERR;
    if (isMinusOne(which)) {
        SendMessageW(box, LB_SETCURSEL, static_cast<WPARAM>(-1), 0);
        NumberSingleSelection(box, list);
        resortIfSelectedFirst(container, list);
        return LB_ERR;
    }
    int id = LOWORD(which);
    int row = OrderPosition(list, id);
    if (row < 0 || !SelectRow(box, list, row, true)) return LB_ERR;
    redrawRow(box, row);
    resortIfSelectedFirst(container, list);
    return OrderPosition(list, id);
}

LRESULT setCaret(KVLB_LIST* list, HWND box, WPARAM which, LPARAM scroll) {
    int row = isMinusOne(which) ? 0 : OrderPosition(list, LOWORD(which));
    if (row < 0 || row >= ShownCount(list)) return LB_ERR;
    LRESULT result = SendMessageW(box, LB_SETCARETINDEX, row, scroll);
    if (result != LB_ERR) list->anchor = list->order[row];
    return result;
}

// The first shown item whose text starts with `text`, whatever its case; its row, or -1.
int findByText(const KVLB_LIST* list, const wchar_t* text) {
    LCID collation = list->session ? list->session->collation : 0;
    int length = lstrlenW(text);
    int count = ShownCount(list);
    for (int row = 0; row < count; ++row) {
        const KVLB_ITEM* item = FindItem(list, list->order[row]);
        if (item && StringCmpLenEx(collation, item->text ? item->text : L"", text, 0, length) == 0) return row;
    }
    return -1;
}

LRESULT selectByText(HWND container, KVLB_LIST* list, HWND box, bool alsoMultiple, const wchar_t* text) {
    int row = findByText(list, text);
    if (row < 0) return LB_ERR;
    int id = list->order[row];
    if (!IsMultiple(list) || alsoMultiple) {
        if (!SelectRow(box, list, row, true)) return LB_ERR;
        redrawRow(box, row);
    }
    if (IsMultiple(list)) setCaret(list, box, id, FALSE);
    resortIfSelectedFirst(container, list);
    return OrderPosition(list, id);
}

LRESULT firstNumberedItem(const KVLB_LIST* list) {
    for (int i = 0; i < list->itemCount; ++i) {
        const KVLB_ITEM& item = list->items[i];
        if (!(item.flags & KVLB_ITEM_HIDDEN) && item.selection) return item.id;
    }
    return LB_ERR;
}

}  // namespace

LRESULT HandleListMessage(HWND container, UINT message, WPARAM wParam, LPARAM lParam) {
    KVLB_LIST* list = ListRecord(container);
    HWND box = InnerList(container);
    if (!list || !list->items || !box) return LB_ERR;
    switch (message) {
    case LB_ADDSTRING:
        return showItem(container, list, box, LOWORD(lParam), -1);
    case LB_INSERTSTRING:
        return showItem(container, list, box, LOWORD(lParam), static_cast<int>(wParam));
    case LB_DELETESTRING:
        return hideItem(container, list, box, LOWORD(wParam));
    case LB_SETSEL:
        return setSelection(container, list, box, wParam != 0, lParam);
    case LB_SETCURSEL:
        return setCurrent(container, list, box, wParam);
    case LB_SETCARETINDEX:
        return setCaret(list, box, wParam, lParam);
    case LB_GETSEL: {
        const KVLB_ITEM* item = FindItem(list, LOWORD(wParam));
        return item ? item->selection : LB_ERR;
    }
    case LB_GETTEXT: {
        const KVLB_ITEM* item = FindItem(list, LOWORD(wParam));
        auto* buffer = reinterpret_cast<wchar_t*>(lParam);
        if (!item || !buffer) return LB_ERR;
        lstrcpyW(buffer, item->text ? item->text : L"");
        return lstrlenW(buffer);
    }
    case LB_GETCURSEL:
        return firstNumberedItem(list);
    case LB_GETCARETINDEX: {
        const KVLB_ITEM* item = ItemOfRow(box, list, static_cast<int>(SendMessageW(box, LB_GETCARETINDEX, 0, 0)));
        return item ? item->id : LB_ERR;
    }
    case LB_SELECTSTRING:
        if (!lParam) return LB_ERR;
        return selectByText(container, list, box, wParam != 0, reinterpret_cast<const wchar_t*>(lParam));
    case LB_FINDSTRING: {
        if (!lParam) return LB_ERR;
        int row = findByText(list, reinterpret_cast<const wchar_t*>(lParam));
        return row < 0 ? LB_ERR : static_cast<short>(list->order[row]);
    }
    }
    return SendMessageW(box, message, wParam, lParam);
}
