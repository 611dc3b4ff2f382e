// Dragging list-view rows: within the list (the row moves to the drop place) or onto another
// window (reported to the host), and the click helpers for cells.
#include "views/listview_internal.h"
#include "views/item_drag.h"
#include "include/kvkit_drag.h"

namespace {

// Characters of a cell carried along when a row moves (253 and the terminator).
const int kMovedTextCapacity = 254;
// Hit flags of a point on an item: its icon, label or state icon.
const UINT kOnItem = LVHT_ONITEM;
// The window style bit that lets a moved row take its sub-item images along. It is read from
// the list's window extended style, not from the list view's own extended style.
const LONG kMoveSubItemImages = 0x2;

// The one list drag of the process.
struct ListDrag {
    bool dragging;
    int sourceRow;
    int targetRow;     // -1 until the mouse is over a row
    HIMAGELIST image;  // drag towards another window: the list's drag image, destroyed at the end
    POINT offset;      // drag towards another window: the parent's client offset in its window
    HWND captureWindow;
};
ListDrag g_listDrag;

void setRowState(HWND listView, int row, UINT state, UINT mask) {
    LVITEMW item = {};
    item.state = state;
    item.stateMask = mask;
    SendMessageW(listView, LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&item));
}

// The list's drag image of the row and the point where it stands (client coordinates).
HIMAGELIST createDragImage(HWND listView, int row, POINT* origin) {
    *origin = {0, 0};
    return reinterpret_cast<HIMAGELIST>(
        SendMessageW(listView, LVM_CREATEDRAGIMAGE, row, reinterpret_cast<LPARAM>(origin)));
}

// Ends the drag's image, capture and flag. The flag goes first, so that a host that cancels the
// drag when the capture goes finds none left.
void endDrag() {
    ListDrag drag = g_listDrag;
    g_listDrag.dragging = false;
    g_listDrag.image = nullptr;
    EndDragImage();
    ReleaseCaptureOf(drag.captureWindow);
    ShowCursor(TRUE);
    if (drag.image) ImageList_Destroy(drag.image);
}

// A drag begun while another is under way replaces it.
void endPreviousDrag() {
    if (g_listDrag.dragging) endDrag();
}

void beginDrag(HWND listView, int row) {
    g_listDrag.captureWindow = GetParent(listView);
    SetCapture(g_listDrag.captureWindow);
    g_listDrag.targetRow = -1;
    g_listDrag.sourceRow = row;
    g_listDrag.dragging = true;
}

// Copies the source row to the target index with all its cells, then deletes the source. The
// row's index after the move, or -1 when it cannot be read or inserted (the list is unchanged).
int moveRow(HWND listView, int source, int target) {
    wchar_t text[kMovedTextCapacity];
    LVITEMW item = {};
    item.mask = LVIF_TEXT | LVIF_IMAGE | LVIF_PARAM | LVIF_STATE;
    item.iItem = source;
    item.stateMask = static_cast<UINT>(-1);
    item.pszText = text;
    item.cchTextMax = kMovedTextCapacity;
    if (!SendMessageW(listView, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item))) return -1;
    item.iItem = target;
    if (SendMessageW(listView, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)) < 0) return -1;
    if (target < source) ++source;  // the insertion moved the source down

    HWND header = ListViewHeader(listView);
    int columns = header ? HeaderColumnCount(header) : 0;
    bool images = (GetWindowLongW(listView, GWL_EXSTYLE) & kMoveSubItemImages) != 0;
    for (int column = 1; column < columns; ++column) {
        LVITEMW cell = {};
        cell.mask = LVIF_TEXT | (images ? LVIF_IMAGE : 0);
        cell.iItem = source;
        cell.iSubItem = column;
        cell.pszText = text;
        cell.cchTextMax = kMovedTextCapacity;
        text[0] = 0;
        SendMessageW(listView, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&cell));
        cell.iItem = target;
        SendMessageW(listView, LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&cell));
    }
    SendMessageW(listView, LVM_DELETEITEM, source, 0);
    setRowState(listView, target, LVIS_SELECTED, LVIS_SELECTED);
    return target;
}

// The cell under the cursor, with the hit flags; false when the cursor is not on an item.
bool cellUnderCursor(HWND listView, LVHITTESTINFO* hit) {
    *hit = LVHITTESTINFO();
    GetCursorPos(&hit->pt);
    ScreenToClient(listView, &hit->pt);
    if (SendMessageW(listView, LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(hit)) < 0) return false;
    return (hit->flags & kOnItem) != 0;
}

// The cell's image swapped between A and B; any other image stays, with a beep. The cell is
// written back in every case.
void toggleCellImage(HWND listView, int row, int column, int imageA, int imageB) {
    LVITEMW cell = {};
    cell.mask = LVIF_IMAGE;
    cell.iItem = row;
    cell.iSubItem = column;
    SendMessageW(listView, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&cell));
    if (cell.iImage == imageB) cell.iImage = imageA;
    else if (cell.iImage == imageA) cell.iImage = imageB;
    else MessageBeep(0);
    SendMessageW(listView, LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&cell));
}

}  // namespace

// --- within the list ----------------------------------------------------------------------------

void KVKIT_CALL KxListView_OnBeginDrag(HWND listView, NMLISTVIEW* notify) {
    if (!notify || notify->iItem < 0 || !IsWindow(listView)) return;
    endPreviousDrag();
    int row = notify->iItem;
    setRowState(listView, row, LVIS_SELECTED, LVIS_SELECTED);
    POINT origin;
    HIMAGELIST image = createDragImage(listView, row, &origin);
    // Entered before it begins, so the image first shows on the first mouse move.
    ShowDragImage(listView, origin.x, origin.y);
    BeginDragImage(image);
    // The drag works on its own copy of the image.
    if (image) ImageList_Destroy(image);
    beginDrag(listView, row);
}

void KVKIT_CALL KxListView_OnMouseMove(HWND window, HWND listView, int x, int y) {
    if (!g_listDrag.dragging || !IsWindow(listView)) return;
    POINT point = {x, y};
    MapWindowPoints(window, listView, &point, 1);
    ShowDragImage(listView, point.x, point.y);
    MoveDragImage(point.x, point.y);
    LVHITTESTINFO hit = {};
    hit.pt = point;
    int row = static_cast<int>(SendMessageW(listView, LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
    if (row >= 0) g_listDrag.targetRow = row;
}

UINT KVKIT_CALL KxListView_OnLButtonUp(HWND window, HWND listView, int x, int y) {
    const UINT kNone = static_cast<UINT>(-1);
    if (!g_listDrag.dragging) return kNone;
    endDrag();
    int source = g_listDrag.sourceRow, target = g_listDrag.targetRow;
    if (!IsWindow(listView)) return kNone;
    if (target >= 0) setRowState(listView, target, 0, LVIS_DROPHILITED);
    if (target < 0 || target == source) return kNone;
    return static_cast<UINT>(moveRow(listView, source, target));
}

// --- onto another window ------------------------------------------------------------------------

void KVKIT_CALL KxListView_OnBeginDragEx(HWND listView, NMLISTVIEW* notify) {
    if (!notify || notify->iItem < 0 || !IsWindow(listView)) return;
    endPreviousDrag();
    int row = notify->iItem;
    setRowState(listView, row, LVIS_SELECTED, LVIS_SELECTED);
    POINT origin;
    HIMAGELIST image = createDragImage(listView, row, &origin);
    POINT offset = ClientOffsetInWindow(GetParent(listView));
    BeginDragImage(image);
    beginDrag(listView, row);
    g_listDrag.image = image;
    g_listDrag.offset = offset;
}

void KVKIT_CALL KxListView_OnMouseMoveEx(HWND window, HWND unused, int x, int y) {
    if (!g_listDrag.dragging || !IsWindow(window)) return;
    int imageX = x + g_listDrag.offset.x, imageY = y + g_listDrag.offset.y;
    ShowDragImage(window, imageX, imageY);
    MoveDragImage(imageX, imageY);
}

int KVKIT_CALL KxListView_OnLButtonUpEx(HWND window, int x, int y, HWND* dropWindow,
                                        HTREEITEM* dropItem) {
    if (!g_listDrag.dragging) return 0;
    endDrag();
    if (!dropWindow) return 0;
    POINT screen;
    HWND found = IsWindow(window) ? WindowAtClientPoint(window, x, y, &screen) : nullptr;
    if (!found || found == window) {
        *dropWindow = nullptr;
        if (dropItem) *dropItem = nullptr;
        return 0;
    }
    *dropWindow = found;
    if (!HasWindowClass(found, WC_TREEVIEWW)) {
        if (dropItem) *dropItem = nullptr;
        return 0;
    }
    TVHITTESTINFO hit = {};
    hit.pt = screen;
    ScreenToClient(found, &hit.pt);
    SendMessageW(found, TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
    if (dropItem) *dropItem = hit.hItem;
    return 1;
}

int KVKIT_CALL KxListView_OnCancelDrag(HWND listView) {
    if (!g_listDrag.dragging) return 0;
    endDrag();
    if (g_listDrag.targetRow >= 0 && IsWindow(listView))
        setRowState(listView, g_listDrag.targetRow, 0, LVIS_DROPHILITED);
    return 1;
}

// --- clicks on cells ----------------------------------------------------------------------------

int KVKIT_CALL KxListView_HitTest(HWND listView, int* row, int* column) {
    if (row) *row = -1;
    if (column) *column = -1;
    LVHITTESTINFO hit;
    if (!IsWindow(listView) || !cellUnderCursor(listView, &hit)) return 0;
    if (row) *row = hit.iItem;
    if (column) *column = hit.iSubItem;
    return 1;
}

int KVKIT_CALL KxListView_HandleMouseClick(HWND listView, int toggle, int count,
                                           const int* columns, int imageA, int imageB, int* row,
                                           int* column) {
    if (!IsWindow(listView)) return 0;
    int cellRow, cellColumn;
    bool onIcon;
    if (row && column && *row >= 0 && *column >= 0) {
        cellRow = *row;
        cellColumn = *column;
        onIcon = true;
    } else {
        LVHITTESTINFO hit;
        if (!cellUnderCursor(listView, &hit)) return 0;
        cellRow = hit.iItem;
        cellColumn = hit.iSubItem;
        onIcon = (hit.flags & LVHT_ONITEMICON) != 0;
    }
    if (cellRow < 0 || cellColumn < 0) return 0;
    if (toggle && onIcon && columns) {
        for (int i = 0; i < count; ++i) {
            if (columns[i] != cellColumn) continue;
            toggleCellImage(listView, cellRow, cellColumn, imageA, imageB);
            break;
        }
    }
    if (column) *column = cellColumn;
    if (row) *row = cellRow;
    return 1;
}
