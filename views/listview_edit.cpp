// In-place editing of list-view cells: the editor laid over a cell, its keys (Enter, Escape, Tab,
// Up, Down, double click) and the end-of-edit notification to the list's parent.
#include "views/listview_internal.h"
#include "views/editor.h"
#include "include/kvkit_core.h"
#include "include/kvkit_edit.h"
#include "kvtext.h"

namespace {

// Characters of a cell that the editor shows: 248 and the terminator.
const int kCellTextCapacity = 249;
// A drop-down list is this many rows high, so that its list has room below the cell.
const int kDropDownRows = 5;

// The editor's record, in its GWLP_USERDATA from creation to destruction (or to the report).
struct ListEditor {
    int row;
    int column;
    HINSTANCE module;
    BYTE style;
    LPARAM rowValue;  // the row's value when editing began
    int cancelled;
    int endedByDoubleClick;
};

ListEditor* recordOf(HWND editor) {
    return reinterpret_cast<ListEditor*>(GetWindowLongPtrW(editor, GWLP_USERDATA));
}

void freeRecord(HWND editor) {
    FreeMemory(recordOf(editor));
    SetWindowLongPtrW(editor, GWLP_USERDATA, 0);
}

bool isDropDown(const ListEditor* record) { return (record->style & KX_LISTEDIT_DROPDOWN) != 0; }

int rowCount(HWND listView) {
    return static_cast<int>(SendMessageW(listView, LVM_GETITEMCOUNT, 0, 0));
}

void notifyParent(HWND listView, UINT code, NMLVDISPINFOW* info) {
    info->hdr.hwndFrom = listView;
    info->hdr.idFrom = GetDlgCtrlID(listView);
    info->hdr.code = code;
    SendMessageW(GetParent(listView), WM_NOTIFY, info->hdr.idFrom, reinterpret_cast<LPARAM>(info));
}

// Asks the list's parent to edit another cell. The parent normally starts that edit at once,
// which ends this one: nothing of this editor may be touched afterwards.
void askForCell(HWND listView, int row, int column) {
    NMLVDISPINFOW info = {};
    info.item.iItem = row;
    info.item.iSubItem = column;
    notifyParent(listView, LVN_BEGINLABELEDITW, &info);
}

void askForNeighbourRow(HWND editor, const ListEditor* record, bool up) {
    HWND listView = GetParent(editor);
    int last = rowCount(listView) - 1;
    int row = up ? (record->row == 0 ? last : record->row - 1)
                 : (record->row >= last ? 0 : record->row + 1);
    askForCell(listView, row, record->column);
}

// Tab: the next column of the row, Shift+Tab the previous one, wrapping around. 1 when the list
// has no columns to go to.
LRESULT askForNeighbourColumn(HWND editor, const ListEditor* record) {
    HWND listView = GetParent(editor);
    HWND header = ListViewHeader(listView);
    int count = header ? HeaderColumnCount(header) : 0;
    if (count <= 0) return 1;
    int column = record->column;
    if (GetKeyState(VK_SHIFT) < 0) column = column == 0 ? count - 1 : column - 1;
    else column = column + 1 >= count ? 0 : column + 1;
    askForCell(listView, record->row, column);
    return 0;
}

// Sends the end notification once, with the text unless the edit was cancelled, then closes
// the editor (unless it is already on its way out).
void onKillFocus(HWND editor, ListEditor* record) {
    HWND listView = GetParent(editor);
    bool dropDown = isDropDown(record);
    NMLVDISPINFOW info = {};
    info.item.mask = LVIF_TEXT;
    info.item.iItem = record->row;
    info.item.iSubItem = record->column + (record->endedByDoubleClick ? KX_LISTEDIT_DOUBLECLICKED : 0);
    info.item.lParam = record->rowValue;
    if (dropDown) info.item.iImage = EditorSelection(editor);
    if (!record->cancelled)
        info.item.pszText = EditorText(editor, dropDown, &info.item.iImage, &info.item.cchTextMax);
    bool closing = EditorIsClosing(editor);
    freeRecord(editor);
    notifyParent(listView, LVN_ENDLABELEDITW, &info);
    if (!closing && IsWindow(editor)) DestroyWindow(editor);
}

void onDoubleClick(HWND editor, ListEditor* record) {
    record->endedByDoubleClick = 1;
    if (record->style == KX_EDIT_DOUBLECLICK_ENDS) SetFocus(GetParent(editor));
}

// Enter ends the edit, Escape cancels it, Tab moves along the row. False for other characters.
bool onCharacter(HWND editor, ListEditor* record, WPARAM character, LRESULT* result) {
    switch (character) {
    case VK_TAB:
        *result = askForNeighbourColumn(editor, record);
        return true;
    case VK_RETURN:
        SetFocus(GetParent(editor));
        *result = 0;
        return true;
    case VK_ESCAPE:
        record->cancelled = 1;
        SetFocus(GetParent(editor));
        *result = 0;
        return true;
    }
    return false;
}

// The cell's place in the list's client area, scrolling the list first when the cell starts left
// of the visible part or right of it. False when the row cannot be measured.
bool cellPlace(HWND listView, int row, int column, bool dropDown, RECT* place) {
    int offset = 0;
    for (int left = 0; left < column; ++left)
        offset += static_cast<int>(SendMessageW(listView, LVM_GETCOLUMNWIDTH, left, 0));
    int width = static_cast<int>(SendMessageW(listView, LVM_GETCOLUMNWIDTH, column, 0));
    RECT rect = {};
    rect.left = column == 0 ? LVIR_LABEL : LVIR_BOUNDS;
    if (!SendMessageW(listView, LVM_GETITEMRECT, row, reinterpret_cast<LPARAM>(&rect))) return false;
    RECT client;
    GetClientRect(listView, &client);
    int visibleRight = rect.right < client.right ? rect.right : client.right;
    if (rect.left + offset < 0 || rect.left + offset > visibleRight) {
        SendMessageW(listView, LVM_SCROLL, rect.left + offset, 0);
        rect.left = -offset;
    }
    if (column != 0) {
        place->left = rect.left + offset + 4;
        place->right = place->left + width - 3;
    } else {
        // Column 0's right edge is measured from the list's left edge, not from the label.
        place->left = rect.left + offset - 1;
        place->right = offset - 1 + width;
    }
    int height = rect.bottom - rect.top;
    place->top = rect.top;
    place->bottom = rect.top + (dropDown ? kDropDownRows * height : height);
    return true;
}

void selectRow(HWND listView, int row) {
    LVITEMW item = {};
    item.stateMask = item.state = LVIS_SELECTED | LVIS_FOCUSED;
    SendMessageW(listView, LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&item));
}

}  // namespace

HWND KVKIT_CALL KxListView_SetEdit(HWND listView, HINSTANCE module, int row, int column,
                                   BYTE style, int textLimit, KXLISTEDITFILL fill,
                                   LPARAM userValue) {
    return KxListView_SetEditEx(listView, module, row, column, style, textLimit, fill, userValue, 0);
}

HWND KVKIT_CALL KxListView_SetEditEx(HWND listView, HINSTANCE module, int row, int column,
                                     BYTE style, int textLimit, KXLISTEDITFILL fill,
                                     LPARAM userValue, int prefixLength) {
    if (row < 0 || column < 0 || !IsWindow(listView)) return nullptr;
    HWND header = ListViewHeader(listView);
    if (row >= rowCount(listView) || !header || column >= HeaderColumnCount(header)) return nullptr;
    bool dropDown = (style & KX_LISTEDIT_DROPDOWN) != 0;

    CloseOpenEditor(listView, KX_LISTEDIT_ID);
    SendMessageW(listView, LVM_ENSUREVISIBLE, row, FALSE);
    if (KxListView_GetSelection(listView, nullptr) != row) selectRow(listView, row);

    RECT place;
    if (!cellPlace(listView, row, column, dropDown, &place)) return nullptr;
    wchar_t text[kCellTextCapacity];
    GetCellText(listView, row, column, text, kCellTextCapacity);
    const wchar_t* edited = text;
    if (prefixLength > 0 && !dropDown) {
        int length = lstrlenW(text);
        int fixed = prefixLength < length ? prefixLength : length;
        place.left += PrefixWidth(listView, text, fixed) + 2;
        edited = text + fixed;
    }

    HWND editor = CreateEditor(listView, module, KX_LISTEDIT_ID, dropDown, place);
    if (!editor) return nullptr;
    auto* record = static_cast<ListEditor*>(GetMemory(sizeof(ListEditor)));
    if (record) {
        *record = ListEditor();
        record->row = row;
        record->column = column;
        record->module = module;
        record->style = style;
        record->rowValue = KxListView_GetItemData(listView, row);
        SetWindowLongPtrW(editor, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(record));
    }
    // Without the subclass nothing would free the record: the editor stays a plain one.
    if (!Kx1SetSubProc(editor, KxListView_EditProc)) freeRecord(editor);

    if (dropDown) {
        if (fill) fill(editor, row, column, text, userValue);
    } else {
        FillEditBox(editor, edited, textLimit);
    }
    SetFocus(editor);
    return editor;
}

LRESULT KVKIT_CALL KxListView_EditProc(HWND editor, UINT message, WPARAM wParam, LPARAM lParam) {
    ListEditor* record = recordOf(editor);
    switch (message) {
    case WM_DESTROY:
        freeRecord(editor);
        break;  // forwarded, which takes the subclass away
    case WM_GETDLGCODE:
        return DLGC_WANTALLKEYS;  // Enter, Escape and Tab reach the editor inside dialogs
    case WM_KILLFOCUS:
        if (!record) break;
        onKillFocus(editor, record);
        return 1;
    case WM_KEYDOWN:
        if (!record || (wParam != VK_UP && wParam != VK_DOWN)) break;
        // An open drop-down list takes the arrows for itself.
        if (isDropDown(record) && SendMessageW(editor, CB_GETDROPPEDSTATE, 0, 0)) break;
        askForNeighbourRow(editor, record, wParam == VK_UP);
        return 0;
    case WM_CHAR: {
        LRESULT result;
        if (record && onCharacter(editor, record, wParam, &result)) return result;
        break;
    }
    case WM_LBUTTONDBLCLK:
        if (!record) break;
        onDoubleClick(editor, record);
        return 0;
    }
    return ForwardEditorMessage(editor, message, wParam, lParam);
}

LRESULT KVKIT_CALL KxListView_GetEnterKeyProc(HWND listView, UINT message, WPARAM wParam,
                                              LPARAM lParam) {
    WNDPROC previous = Kx1GetSubProc(message == WM_DESTROY, listView);
    LRESULT result = previous ? CallWindowProcW(previous, listView, message, wParam, lParam) : 0;
    if (message == WM_GETDLGCODE) {
        const MSG* asked = reinterpret_cast<const MSG*>(lParam);
        if (asked && asked->message == WM_KEYDOWN && asked->wParam == VK_RETURN)
            result |= DLGC_WANTALLKEYS;
    }
    return result;
}
