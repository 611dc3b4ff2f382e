// Tree view items: inserting, copying and moving, text and value, marks and state bits, expanding
// and collapsing the whole tree, and custom-draw colours. Everything lives in the tree control.
#include "views/treeview_internal.h"
#include "include/kvkit_bitmap.h"
#include "kvtext.h"

int g_treeDragging;

namespace {

// Text capacities: KxTreeView_GetItemText's block holds 121 characters and reads at most 120
// (terminator included); a moved item keeps up to 256 characters.
const int kItemTextBlock = 121;
const int kItemTextLimit = 120;
const int kMovedTextCapacity = 256;
const int kHighestOverlay = 15;
const UINT kLowStateByte = 0xFF;
const COLORREF kNavy = RGB(0, 0, 128);

bool setItem(HWND tree, TVITEMW* item) {
    return SendMessageW(tree, TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(item)) != 0;
}

bool getItem(HWND tree, TVITEMW* item) {
    return SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(item)) != 0;
}

// Adds the named bitmap of `module` to the list, its pixel (0, 0) transparent. Its index, or -1.
int addBitmapResource(HIMAGELIST images, HINSTANCE module, const wchar_t* name) {
    HBITMAP bitmap = LoadBitmapW(module, name);
    if (!bitmap) return -1;
    int index = ImageList_AddMasked(images, bitmap, Kx1GetBmBkColor(bitmap));
    DeleteObject(bitmap);
    return index;
}

// A tree may answer a text read with a text of its own (items whose text the parent supplies):
// it is copied into the caller's buffer, where the item record points again.
void keepTextInBuffer(TVITEMW* data, wchar_t* buffer) {
    if (data->pszText != buffer) {
        kv_strcpy(buffer, data->pszText == LPSTR_TEXTCALLBACKW ? L"" : data->pszText,
                  data->cchTextMax);
        data->pszText = buffer;
    }
}

// True when `item` is `ancestor` or lies below it.
bool isInSubtree(HWND tree, HTREEITEM item, HTREEITEM ancestor) {
    if (item == TVI_ROOT) return false;
    for (; item; item = TreeParent(tree, item))
        if (item == ancestor) return true;
    return false;
}

// Inserts a copy of `item` (without its state) under `parent` after `after`.
HTREEITEM insertCopy(HWND tree, HTREEITEM item, HTREEITEM parent, HTREEITEM after) {
    TVINSERTSTRUCTW record = {};
    if (!KxTreeView_CopyItem(tree, item, kMovedTextCapacity, &record)) return nullptr;
    record.hParent = parent;
    record.hInsertAfter = after;
    auto copy = reinterpret_cast<HTREEITEM>(
        SendMessageW(tree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&record)));
    FreeMemory(record.item.pszText);
    return copy;
}

// Copies the item, with its whole subtree when asked. A copy that cannot be completed is removed
// again, so that the caller never deletes an item whose copy lacks some of its children.
HTREEITEM copySubtree(HWND tree, HTREEITEM item, HTREEITEM parent, HTREEITEM after,
                      bool withChildren) {
    HTREEITEM copy = insertCopy(tree, item, parent, after);
    if (!copy || !withChildren) return copy;
    for (HTREEITEM child = TreeChild(tree, item); child; child = TreeSibling(tree, child)) {
        if (!copySubtree(tree, child, copy, TVI_LAST, true)) {
            SendMessageW(tree, TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(copy));
            return nullptr;
        }
    }
    return copy;
}

}  // namespace

bool ReadTreeItemText(HWND tree, HTREEITEM item, wchar_t* buffer, int capacity) {
    TVITEMW data = {};
    data.mask = TVIF_TEXT | TVIF_HANDLE;
    data.hItem = item;
    data.pszText = buffer;
    data.cchTextMax = capacity;
    buffer[0] = 0;
    if (!item || !getItem(tree, &data)) return false;
    keepTextInBuffer(&data, buffer);
    return true;
}

// --- items ------------------------------------------------------------------------------------

HTREEITEM KVKIT_CALL KxTreeView_InsertItem(HWND tree, HINSTANCE module, HTREEITEM parent,
                                           HIMAGELIST images, const wchar_t* bitmapName,
                                           int* image, const wchar_t* text, LPARAM value,
                                           int sort) {
    return KxTreeView_InsertItemEx(tree, module, parent, nullptr, images, bitmapName, image, text,
                                   value, sort);
}

HTREEITEM KVKIT_CALL KxTreeView_InsertItemEx(HWND tree, HINSTANCE module, HTREEITEM parent,
                                             HTREEITEM insertAfter, HIMAGELIST images,
                                             const wchar_t* bitmapName, int* image,
                                             const wchar_t* text, LPARAM value, int sort) {
    if (!IsWindow(tree)) return nullptr;
    if (images && bitmapName) {
        int added = addBitmapResource(images, module, bitmapName);
        if (added < 0) return nullptr;
        if (image) *image = added;
    }
    TVINSERTSTRUCTW insert = {};
    insert.hParent = parent ? parent : TVI_ROOT;
    insert.hInsertAfter = sort ? TVI_SORT : insertAfter ? insertAfter : TVI_LAST;
    insert.item.mask = TVIF_TEXT | TVIF_PARAM;
    insert.item.pszText = const_cast<wchar_t*>(text ? text : L"");
    insert.item.lParam = value;
    if (image) {
        insert.item.mask |= TVIF_IMAGE | TVIF_SELECTEDIMAGE;
        insert.item.iImage = insert.item.iSelectedImage = *image;
    }
    return reinterpret_cast<HTREEITEM>(
        SendMessageW(tree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
}

int KVKIT_CALL KxTreeView_CopyItem(HWND tree, HTREEITEM item, int textCapacity,
                                   TVINSERTSTRUCTW* record) {
    if (!record || g_treeDragging || textCapacity < 0) return 0;
    // Room for the text, its terminator and one spare character.
    auto* text = static_cast<wchar_t*>(GetMemory((textCapacity + 2) * sizeof(wchar_t)));
    if (!text) return 0;
    TVITEMW& data = record->item;
    data = TVITEMW();
    data.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM | TVIF_CHILDREN |
                TVIF_HANDLE;
    data.hItem = item;
    data.pszText = text;
    data.cchTextMax = textCapacity + 1;
    if (!item || !getItem(tree, &data)) {
        FreeMemory(text);
        data.pszText = nullptr;
        return 0;
    }
    keepTextInBuffer(&data, text);
    data.mask &= ~TVIF_HANDLE;
    return 1;
}

HTREEITEM KVKIT_CALL KxTreeView_MoveItem(HWND tree, HTREEITEM item, HTREEITEM newParent,
                                         HTREEITEM insertAfter, int moveChildren) {
    if (!item || g_treeDragging) return nullptr;
    // Deleting the item would take a copy made inside its own subtree with it.
    if (isInSubtree(tree, newParent, item)) return nullptr;
    HTREEITEM copy = copySubtree(tree, item, newParent ? newParent : TVI_ROOT,
                                 insertAfter ? insertAfter : TVI_LAST, moveChildren != 0);
    if (!copy) return nullptr;
    SendMessageW(tree, TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(item));
    SelectTreeItem(tree, copy);
    return copy;
}

int KVKIT_CALL KxTreeView_SetItemText(HWND tree, HTREEITEM item, wchar_t* text) {
    if (!item || !text) return 0;
    TVITEMW data = {};
    data.mask = TVIF_TEXT | TVIF_HANDLE;
    data.hItem = item;
    data.pszText = text;
    if (setItem(tree, &data)) return 1;
    FreeMemory(text);
    return 0;
}

wchar_t* KVKIT_CALL KxTreeView_GetItemText(HWND tree, HTREEITEM item) {
    if (!item) return nullptr;
    auto* text = static_cast<wchar_t*>(GetMemory(kItemTextBlock * sizeof(wchar_t)));
    if (!text) return nullptr;
    if (!ReadTreeItemText(tree, item, text, kItemTextLimit)) {
        FreeMemory(text);
        return nullptr;
    }
    return text;
}

int KVKIT_CALL KxTreeView_SetItemData(HWND tree, HTREEITEM item, LPARAM value) {
    if (!item) return 0;
    TVITEMW data = {};
    data.mask = TVIF_PARAM | TVIF_HANDLE;
    data.hItem = item;
    data.lParam = value;
    return setItem(tree, &data);
}

LPARAM KVKIT_CALL KxTreeView_GetItemData(HWND tree, HTREEITEM item) {
    if (!item) return 0;
    TVITEMW data = {};
    data.mask = TVIF_PARAM | TVIF_HANDLE;
    data.hItem = item;
    return getItem(tree, &data) ? data.lParam : 0;
}

// --- marks and state bits ---------------------------------------------------------------------

int KVKIT_CALL KxTreeView_SetMark(HWND tree, HTREEITEM item, int overlay) {
    if (!item || overlay < 0 || overlay > kHighestOverlay) return 0;
    TVITEMW data = {};
    data.mask = TVIF_STATE | TVIF_HANDLE;
    data.hItem = item;
    data.stateMask = TVIS_OVERLAYMASK;
    data.state = INDEXTOOVERLAYMASK(overlay);
    return setItem(tree, &data);
}

int KVKIT_CALL KxTreeView_MarkAll(HWND tree, HTREEITEM except, int overlay, HTREEITEM start) {
    return ForEachTreeItem(tree, start, except,
                           [&](HTREEITEM item) { KxTreeView_SetMark(tree, item, overlay); });
}

int KVKIT_CALL KxTreeView_SetItemState(HWND tree, HTREEITEM item, int set, UINT bits) {
    if (!item) return 0;
    TVITEMW data = {};
    data.mask = TVIF_STATE | TVIF_HANDLE;
    data.hItem = item;
    data.stateMask = kLowStateByte;
    if (!getItem(tree, &data)) return 0;
    UINT state = data.state & kLowStateByte;
    if (set) {
        if (state & bits) return 0;
        state |= bits;
    } else {
        if (!(state & bits)) return 0;
        // Flipping, not masking: clearing several bits of which only some are set turns the
        // others on. Callers rely on this.
        state ^= bits;
    }
    data.state = state;
    data.stateMask = kLowStateByte;
    return setItem(tree, &data);
}

int KVKIT_CALL KxTreeView_SetAllItemsState(HWND tree, HTREEITEM except, int set, UINT bits,
                                           HTREEITEM start) {
    return ForEachTreeItem(tree, start, except,
                           [&](HTREEITEM item) { KxTreeView_SetItemState(tree, item, set, bits); });
}

int KVKIT_CALL KxTreeView_ExpandTree(HWND tree, int expand) {
    if (!IsWindow(tree)) return 0;
    if (expand) {
        ForEachTreeItem(tree, nullptr, nullptr, [&](HTREEITEM item) {
            SendMessageW(tree, TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(item));
        });
    } else {
        // Only the top level: the items below keep their state for when they are shown again.
        for (HTREEITEM item = TreeRoot(tree); item; item = TreeSibling(tree, item))
            SendMessageW(tree, TVM_EXPAND, TVE_COLLAPSE, reinterpret_cast<LPARAM>(item));
    }
    HTREEITEM selected = TreeSelection(tree);
    if (selected) SendMessageW(tree, TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(selected));
    return 1;
}

// --- painting ---------------------------------------------------------------------------------

LRESULT KVKIT_CALL KxTreeView_SetItemColorFont(HWND dialog, HWND tree, NMTVCUSTOMDRAW* draw,
                                               LPARAM valueFilter, COLORREF textColour,
                                               COLORREF backColour, HFONT font) {
    const COLORREF kUnset = static_cast<COLORREF>(-1);
    if (!draw) return CDRF_DODEFAULT;
    switch (draw->nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
        SetWindowLongW(dialog, DWLP_MSGRESULT, CDRF_NOTIFYITEMDRAW);
        return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT: {
        if (valueFilter != -1 && draw->nmcd.lItemlParam != valueFilter) return CDRF_NEWFONT;
        const UINT focusedAndSelected = CDIS_FOCUS | CDIS_SELECTED;
        if ((draw->nmcd.uItemState & focusedAndSelected) == focusedAndSelected) {
            // Keep the item readable on the selection bar, where a dark text would vanish.
            if (textColour == GetSysColor(COLOR_HIGHLIGHT) || textColour == kNavy)
                textColour = GetSysColor(COLOR_HIGHLIGHTTEXT);
            if (backColour == GetSysColor(COLOR_HIGHLIGHTTEXT)) backColour = GetSysColor(COLOR_HIGHLIGHT);
        }
        if (textColour != kUnset) draw->clrText = textColour;
        if (backColour != kUnset) draw->clrTextBk = backColour;
        if (font) SelectObject(draw->nmcd.hdc, font);
        return CDRF_NEWFONT;
    }
    default:
        return CDRF_DODEFAULT;
    }
}
