// List view columns, header values and sort arrow, cells, row values and custom-draw colours.
// Everything lives in the list view and its header control; nothing is kept here.
#include "views/listview_internal.h"
#include "core/library.h"
#include "kvtext.h"

namespace {

// Room for a header item's text when it is read to be written back (254 characters).
const int kHeaderTextCapacity = 254;
// Up and down sort arrows among the library's own bitmaps.
const int kArrowAscending = 1000;
const int kArrowDescending = 1001;

// Reads text, format and bitmap of a header item so that it can be written back whole.
bool readHeaderItem(HWND header, int column, HDITEMW* item, wchar_t* text) {
    *item = HDITEMW();
    item->mask = HDI_TEXT | HDI_FORMAT | HDI_BITMAP;
    item->pszText = text;
    item->cchTextMax = kHeaderTextCapacity;
    text[0] = 0;
    return SendMessageW(header, HDM_GETITEMW, column, reinterpret_cast<LPARAM>(item)) != 0;
}

// Takes the arrow off the first column that carries a bitmap unless that is `keep`. Only the
// first one is looked at: there is never more than one arrow.
void clearFirstArrow(HWND header, int keep) {
    int count = HeaderColumnCount(header);
    for (int column = 0; column < count; ++column) {
        HDITEMW item;
        wchar_t text[kHeaderTextCapacity];
        if (!readHeaderItem(header, column, &item, text) || !item.hbm) continue;
        if (column != keep) {
            DeleteObject(item.hbm);
            item.fmt &= ~(HDF_BITMAP | HDF_BITMAP_ON_RIGHT);
            item.hbm = nullptr;
            SendMessageW(header, HDM_SETITEMW, column, reinterpret_cast<LPARAM>(&item));
        }
        return;
    }
}

bool readItem(HWND listView, LVITEMW* item) {
    return SendMessageW(listView, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(item)) != 0;
}

}  // namespace

int GetCellText(HWND listView, int row, int subItem, wchar_t* buffer, int capacity) {
    LVITEMW item = {};
    item.iSubItem = subItem;
    item.pszText = buffer;
    item.cchTextMax = capacity;
    int length = static_cast<int>(
        SendMessageW(listView, LVM_GETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item)));
    if (length <= 0) kv_strcpy(buffer, L"", capacity);
    return length;
}

// --- columns ----------------------------------------------------------------------------------

int KVKIT_CALL KxListView_AddHeader(HWND listView, const wchar_t* text, int column, int width) {
    return KxListView_AddHeaderEx(listView, text, column, width, 0);
}

int KVKIT_CALL KxListView_AddHeaderEx(HWND listView, const wchar_t* text, int column, int width,
                                      int replace) {
    HWND header = ListViewHeader(listView);
    if (!header) return -1;
    int count = HeaderColumnCount(header);
    if (!replace) {
        if (column < count) return -1;
    } else if (count > 0 && column == 0) {
        KxListView_ClearHeader(listView);
    }
    LVCOLUMNW info = {};
    info.mask = LVCF_FMT | LVCF_WIDTH | LVCF_TEXT | LVCF_SUBITEM;
    info.fmt = LVCFMT_BITMAP_ON_RIGHT;  // a later sort arrow stands right of the text
    info.cx = width;
    info.pszText = const_cast<wchar_t*>(text);
    info.iSubItem = column;
    int inserted = static_cast<int>(
        SendMessageW(listView, LVM_INSERTCOLUMNW, column, reinterpret_cast<LPARAM>(&info)));
    // The list view leaves the sub-item number in the header item's lParam, which is the
    // column value here: a new column starts as never sorted.
    if (inserted >= 0) KxListView_SetHeaderData(listView, inserted, 0);
    return inserted;
}

int KVKIT_CALL KxListView_ClearHeader(HWND listView) {
    HWND header = ListViewHeader(listView);
    if (!header) return 0;
    int count = HeaderColumnCount(header);
    for (int column = count - 1; column >= 0; --column) {
        // The header does not delete the bitmaps it shows; an arrow goes with its column, and
        // only once the column is gone, so that a column left standing never shows a dead handle.
        HDITEMW item = {};
        item.mask = HDI_BITMAP;
        if (!SendMessageW(header, HDM_GETITEMW, column, reinterpret_cast<LPARAM>(&item)))
            item.hbm = nullptr;
        if (!SendMessageW(listView, LVM_DELETECOLUMN, column, 0)) return count - 1 - column;
        if (item.hbm) DeleteObject(item.hbm);
    }
    return count;
}

int KVKIT_CALL KxListView_SetHeader(HWND listView, const wchar_t* text, int column, int width) {
    LVCOLUMNW info = {};
    info.mask = LVCF_SUBITEM;
    info.iSubItem = column;
    if (text) {
        info.mask |= LVCF_TEXT;
        info.pszText = const_cast<wchar_t*>(text);
    }
    if (width >= 1) {
        info.mask |= LVCF_WIDTH;
        info.cx = width;
    }
    return static_cast<int>(
        SendMessageW(listView, LVM_SETCOLUMNW, column, reinterpret_cast<LPARAM>(&info)));
}

int KVKIT_CALL KxListView_SetHeaderData(HWND listView, int column, LPARAM value) {
    HWND header = ListViewHeader(listView);
    if (!header) return 0;
    HDITEMW item = {};
    item.mask = HDI_LPARAM;
    item.lParam = value;
    return static_cast<int>(
        SendMessageW(header, HDM_SETITEMW, column, reinterpret_cast<LPARAM>(&item)));
}

LPARAM KVKIT_CALL KxListView_GetHeaderData(HWND listView, int column) {
    HWND header = ListViewHeader(listView);
    if (!header) return 0;
    HDITEMW item = {};
    item.mask = HDI_LPARAM;
    if (!SendMessageW(header, HDM_GETITEMW, column, reinterpret_cast<LPARAM>(&item))) return 0;
    return item.lParam;
}

int KVKIT_CALL KxListView_SetHeaderBitmap(HWND listView, HBITMAP bitmap, int column,
                                          int clearOthers) {
    HWND header = ListViewHeader(listView);
    if (!header) return 0;
    if (clearOthers && HeaderColumnCount(header) > 0) clearFirstArrow(header, column);
    if (column < 0) return 0;

    HDITEMW item;
    wchar_t text[kHeaderTextCapacity];
    if (!readHeaderItem(header, column, &item, text)) return 0;
    if (item.hbm && item.hbm != bitmap) DeleteObject(item.hbm);
    item.fmt |= HDF_BITMAP | HDF_BITMAP_ON_RIGHT;
    item.hbm = bitmap;
    return static_cast<int>(
        SendMessageW(header, HDM_SETITEMW, column, reinterpret_cast<LPARAM>(&item)));
}

int KVKIT_CALL KxListView_SetSortBitmap(HWND listView, int column, int ascending,
                                        int clearOthers) {
    if (!KxListView_SetHeaderData(listView, column, ascending)) return 0;
    int id = ascending ? kArrowAscending : kArrowDescending;
    auto arrow = static_cast<HBITMAP>(LoadImageW(g_libraryModule, MAKEINTRESOURCEW(id),
                                                 IMAGE_BITMAP, 0, 0,
                                                 LR_LOADMAP3DCOLORS | LR_LOADTRANSPARENT |
                                                     LR_DEFAULTSIZE));
    if (!arrow) return 0;
    // The header owns the arrow only once it shows it.
    if (!KxListView_SetHeaderBitmap(listView, arrow, column, clearOthers)) DeleteObject(arrow);
    return 1;
}

int KVKIT_CALL KxListView_SetLastColumnWidth(HWND listView, int lastColumn) {
    if (lastColumn == 0) {
        SendMessageW(listView, LVM_SETCOLUMNWIDTH, 0, LVSCW_AUTOSIZE_USEHEADER);
        return 1;
    }
    int used = 0;
    for (int column = 0; column < lastColumn; ++column)
        used += static_cast<int>(SendMessageW(listView, LVM_GETCOLUMNWIDTH, column, 0));
    RECT client;
    GetClientRect(listView, &client);
    int width = client.right - client.left - used;
    SendMessageW(listView, LVM_SETCOLUMNWIDTH, lastColumn, MAKELPARAM(width, 0));
    return 1;
}

// --- rows and cells ---------------------------------------------------------------------------

int KVKIT_CALL KxListView_AddSpalte(HWND listView, int row, int subItem, const wchar_t* text,
                                    int image, LPARAM rowValue) {
    LVITEMW item = {};
    item.iItem = row;
    item.iSubItem = subItem < 1 ? 0 : subItem;
    if (text) {
        item.mask |= LVIF_TEXT;
        item.pszText = const_cast<wchar_t*>(text);
        item.cchTextMax = lstrlenW(text);
    }
    if (image >= 0) {
        item.mask |= LVIF_IMAGE;
        item.iImage = image;
    }
    if (rowValue != 0) {
        item.mask |= LVIF_PARAM;
        item.lParam = rowValue;
    }
    UINT message = subItem < 1 ? LVM_INSERTITEMW : LVM_SETITEMW;
    return static_cast<int>(SendMessageW(listView, message, 0, reinterpret_cast<LPARAM>(&item)));
}

int KVKIT_CALL KxListView_SetItemData(HWND listView, int row, LPARAM value) {
    LVITEMW item = {};
    item.mask = LVIF_PARAM;
    item.iItem = row;
    if (!readItem(listView, &item)) return 0;
    item.lParam = value;
    return static_cast<int>(SendMessageW(listView, LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item)));
}

LPARAM KVKIT_CALL KxListView_GetItemData(HWND listView, int row) {
    LVITEMW item = {};
    item.mask = LVIF_PARAM;
    item.iItem = row;
    return readItem(listView, &item) ? item.lParam : 0;
}

int KVKIT_CALL KxListView_SetItemBmp(HWND listView, int row, int subItem, int image) {
    LVITEMW item = {};
    item.mask = LVIF_IMAGE;
    item.iItem = row;
    item.iSubItem = subItem;
    // An unchanged image is not written, so the row is not redrawn for nothing.
    if (!readItem(listView, &item) || item.iImage == image) return 0;
    item.iImage = image;
    return static_cast<int>(SendMessageW(listView, LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item)));
}

int KVKIT_CALL KxListView_GetItemBmp(HWND listView, int row, int subItem) {
    LVITEMW item = {};
    item.mask = LVIF_IMAGE;
    item.iItem = row;
    item.iSubItem = subItem;
    return readItem(listView, &item) ? item.iImage : -1;
}

int KVKIT_CALL KxListView_GetSelection(HWND listView, LPARAM* rowValue) {
    // The first selected row counting from 0, as a scan of every row's state would find it.
    int row = static_cast<int>(
        SendMessageW(listView, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
    if (row < 0) return -1;
    if (rowValue) *rowValue = KxListView_GetItemData(listView, row);
    return row;
}

LRESULT KVKIT_CALL KxListView_SetItemColorFont(HWND dialog, HWND listView, NMLVCUSTOMDRAW* draw,
                                               LPARAM rowFilter, COLORREF textColour,
                                               COLORREF backColour, HFONT font) {
    const COLORREF kUnset = static_cast<COLORREF>(-1);
    if (!draw) return CDRF_DODEFAULT;
    switch (draw->nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
        SetWindowLongW(dialog, DWLP_MSGRESULT, CDRF_NOTIFYITEMDRAW);
        return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT: {
        if (rowFilter != -1 && draw->nmcd.lItemlParam != rowFilter) return CDRF_NEWFONT;
        const UINT focusedAndSelected = CDIS_FOCUS | CDIS_SELECTED;
        if ((draw->nmcd.uItemState & focusedAndSelected) == focusedAndSelected) {
            // Keep the row readable on the selection bar.
            if (textColour == GetSysColor(COLOR_HIGHLIGHT)) textColour = GetSysColor(COLOR_HIGHLIGHTTEXT);
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
