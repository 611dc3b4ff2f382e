// In-place editing of tree-view labels: the editor laid over a label, its keys (Enter, Escape,
// double click) and the end-of-edit notification to the tree's parent.
#include "views/treeview_internal.h"
#include "views/editor.h"
#include "include/kvkit_core.h"
#include "include/kvkit_edit.h"
#include "kvtext.h"

namespace {

// The editor is never narrower than this, so that a short label leaves room to type.
const int kMinimumWidth = 32;

// The editor's record, in its GWLP_USERDATA from creation to destruction (or to the report).
struct TreeEditor {
    HTREEITEM item;
    HINSTANCE module;
    BYTE style;
    LPARAM itemValue;  // the item's value when editing began
    int cancelled;
    int endedByDoubleClick;
};

TreeEditor* recordOf(HWND editor) {
    return reinterpret_cast<TreeEditor*>(GetWindowLongPtrW(editor, GWLP_USERDATA));
}

void freeRecord(HWND editor) {
    FreeMemory(recordOf(editor));
    SetWindowLongPtrW(editor, GWLP_USERDATA, 0);
}

bool isDropDown(const TreeEditor* record) { return (record->style & KX_TREEEDIT_DROPDOWN) != 0; }

// Sends the end notification once, with the text unless the edit was cancelled, then closes the
// editor (unless it is already on its way out).
void onKillFocus(HWND editor, TreeEditor* record) {
    HWND tree = GetParent(editor);
    bool dropDown = isDropDown(record);
    NMTVDISPINFOW info = {};
    info.hdr.hwndFrom = tree;
    info.hdr.idFrom = GetDlgCtrlID(tree);
    info.hdr.code = TVN_ENDLABELEDITW;
    info.item.mask = TVIF_TEXT;
    info.item.hItem = record->item;
    info.item.lParam = record->itemValue;
    if (dropDown) info.item.iImage = EditorSelection(editor);
    if (!record->cancelled)
        info.item.pszText = EditorText(editor, dropDown, &info.item.iImage, &info.item.cchTextMax);
    bool closing = EditorIsClosing(editor);
    freeRecord(editor);
    SendMessageW(GetParent(tree), WM_NOTIFY, info.hdr.idFrom, reinterpret_cast<LPARAM>(&info));
    if (!closing && IsWindow(editor)) DestroyWindow(editor);
}

// The item is shown, and marked selected and drop-highlighted unless it is the selection.
void markItem(HWND tree, HTREEITEM item) {
    SendMessageW(tree, TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(item));
    if (TreeSelection(tree) == item) return;
    TVITEMW data = {};
    data.mask = TVIF_STATE | TVIF_HANDLE;
    data.hItem = item;
    data.stateMask = data.state = TVIS_SELECTED | TVIS_DROPHILITED;
    SendMessageW(tree, TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&data));
}

}  // namespace

HWND KVKIT_CALL KxTreeView_SetEdit(HWND tree, HINSTANCE module, HTREEITEM item, BYTE style,
                                   int textLimit, KXTREEEDITFILL fill, LPARAM userValue,
                                   int prefixLength) {
    if (!item || !IsWindow(tree)) return nullptr;
    bool dropDown = (style & KX_TREEEDIT_DROPDOWN) != 0;

    CloseOpenEditor(tree, KX_TREEEDIT_ID);
    markItem(tree, item);
    RECT label;
    if (!TreeLabelRect(tree, item, &label)) return nullptr;
    wchar_t* text = KxTreeView_GetItemText(tree, item);
    if (!text) return nullptr;

    RECT place = label;
    const wchar_t* edited = text;
    if (prefixLength > 0 && !dropDown) {
        int length = lstrlenW(text);
        int fixed = prefixLength < length ? prefixLength : length;
        place.left += PrefixWidth(tree, text, fixed) + 2;
        edited = text + fixed;
    }
    if (place.right - place.left < kMinimumWidth) place.right = place.left + kMinimumWidth;

    HWND editor = CreateEditor(tree, module, KX_TREEEDIT_ID, dropDown, place);
    if (!editor) {
        FreeMemory(text);
        return nullptr;
    }
    auto* record = static_cast<TreeEditor*>(GetMemory(sizeof(TreeEditor)));
    if (record) {
        *record = TreeEditor();
        record->item = item;
        record->module = module;
        record->style = style;
        record->itemValue = KxTreeView_GetItemData(tree, item);
        SetWindowLongPtrW(editor, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(record));
    }
    // Without the subclass nothing would free the record: the editor stays a plain one.
    if (!Kx1SetSubProc(editor, KxTreeView_EditProc)) freeRecord(editor);

    if (dropDown) {
        if (fill) fill(editor, item, text, userValue);
    } else {
        FillEditBox(editor, edited, textLimit);
    }
    FreeMemory(text);
    SetFocus(editor);
    return editor;
}

LRESULT KVKIT_CALL KxTreeView_EditProc(HWND editor, UINT message, WPARAM wParam, LPARAM lParam) {
    TreeEditor* record = recordOf(editor);
    switch (message) {
    case WM_DESTROY:
        freeRecord(editor);
        break;  // forwarded, which takes the subclass away
    case WM_GETDLGCODE:
        return DLGC_WANTALLKEYS;
    case WM_KILLFOCUS:
        if (!record) break;
        onKillFocus(editor, record);
        return 1;
    case WM_CHAR:
        if (!record || (wParam != VK_RETURN && wParam != VK_ESCAPE)) break;
        if (wParam == VK_ESCAPE) record->cancelled = 1;
        SetFocus(GetParent(editor));
        return 0;
    case WM_LBUTTONDBLCLK:
        if (!record) break;
        record->endedByDoubleClick = 1;
        if (record->style == KX_EDIT_DOUBLECLICK_ENDS) SetFocus(GetParent(editor));
        return 0;
    }
    return ForwardEditorMessage(editor, message, wParam, lParam);
}
