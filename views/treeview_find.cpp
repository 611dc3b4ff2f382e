// The tree search dialog, searching again (F3, the context menu) and the tree-view replacement
// procedure that gives a tree these keys.
//
// The dialog leaves its text where the tree's GWLP_USERDATA points, so that F3 and the menu can
// repeat the search later; one process-wide record holds that text and the dialog's options.
#include "views/treeview_internal.h"
#include "core/library.h"
#include <wchar.h>
#include "kvtext.h"

namespace {

const int kSearchDialog = 2071;
// Controls of the search dialog template.
const int kTextField = 100;
const int kWholeTextBox = 101;  // the whole item text must equal the search text
const int kMatchCaseBox = 102;  // upper and lower case must match
// A search text: at most 100 characters and the terminator, as tree item texts are read.
const int kSearchTextCapacity = 101;

struct LastSearch {
    wchar_t text[kSearchTextCapacity];
    bool wholeText;
    bool matchCase;
};
LastSearch g_lastSearch;

// The options refine the case-blind substring search of the tree: whole text, matching case.
bool meetsOptions(HWND tree, HTREEITEM item, const wchar_t* text) {
    if (!g_lastSearch.wholeText && !g_lastSearch.matchCase) return true;
    wchar_t itemText[kSearchTextCapacity];
    ReadTreeItemText(tree, item, itemText, kSearchTextCapacity - 1);
    if (g_lastSearch.wholeText)
        return (g_lastSearch.matchCase ? lstrcmpW(itemText, text) : lstrcmpiW(itemText, text)) == 0;
    return wcsstr(itemText, text) != nullptr;
}

void showAndSelect(HWND tree, HTREEITEM item) {
    SendMessageW(tree, TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(item));
    SelectTreeItem(tree, item);
}

// The dialog template in the language asked for when the module has it, else in any language.
const DLGTEMPLATE* searchDialogTemplate(unsigned short language) {
    HRSRC resource = FindResourceExW(g_textModule, RT_DIALOG, MAKEINTRESOURCEW(kSearchDialog), language);
    if (!resource) resource = FindResourceW(g_textModule, MAKEINTRESOURCEW(kSearchDialog), RT_DIALOG);
    HGLOBAL loaded = resource ? LoadResource(g_textModule, resource) : nullptr;
    return loaded ? static_cast<const DLGTEMPLATE*>(LockResource(loaded)) : nullptr;
}

void centreOver(HWND dialog, HWND window) {
    RECT over, own;
    GetWindowRect(window, &over);
    GetWindowRect(dialog, &own);
    int x = (over.left + over.right - (own.right - own.left)) / 2;
    int y = (over.top + over.bottom - (own.bottom - own.top)) / 2;
    SetWindowPos(dialog, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

HWND treeOf(HWND dialog) { return reinterpret_cast<HWND>(GetWindowLongPtrW(dialog, DWLP_USER)); }

void enableFind(HWND dialog) {
    EnableWindow(GetDlgItem(dialog, IDOK), GetWindowTextLengthW(GetDlgItem(dialog, kTextField)) > 0);
}

BOOL onInitDialog(HWND dialog, HWND tree) {
    SetWindowLongPtrW(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(tree));
    centreOver(dialog, tree);
    SendDlgItemMessageW(dialog, kTextField, EM_LIMITTEXT, kSearchTextCapacity - 1, 0);
    SetDlgItemTextW(dialog, kTextField, g_lastSearch.text);
    SendDlgItemMessageW(dialog, kTextField, EM_SETSEL, 0, -1);
    CheckDlgButton(dialog, kWholeTextBox, g_lastSearch.wholeText ? BST_CHECKED : BST_UNCHECKED);
    CheckDlgButton(dialog, kMatchCaseBox, g_lastSearch.matchCase ? BST_CHECKED : BST_UNCHECKED);
    enableFind(dialog);
    return TRUE;  // the focus goes to the text field
}

// Takes over the dialog's text and options and searches forward from the selection. A found item
// ends the dialog; otherwise it stays open for another text.
void onFind(HWND dialog) {
    HWND tree = treeOf(dialog);
    GetDlgItemTextW(dialog, kTextField, g_lastSearch.text, kSearchTextCapacity);
    g_lastSearch.wholeText = IsDlgButtonChecked(dialog, kWholeTextBox) == BST_CHECKED;
    g_lastSearch.matchCase = IsDlgButtonChecked(dialog, kMatchCaseBox) == BST_CHECKED;
    SetWindowLongPtrW(tree, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(g_lastSearch.text));
    if (RepeatTreeSearch(tree, 1)) {
        EndDialog(dialog, IDOK);
        return;
    }
    MessageBeep(0);
    HWND field = GetDlgItem(dialog, kTextField);
    SetFocus(field);
    SendMessageW(field, EM_SETSEL, 0, -1);
}

INT_PTR CALLBACK searchDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        return onInitDialog(dialog, reinterpret_cast<HWND>(lParam));
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDOK:
            onFind(dialog);
            return TRUE;
        case IDCANCEL:
            EndDialog(dialog, IDCANCEL);
            return TRUE;
        case kTextField:
            if (HIWORD(wParam) == EN_CHANGE) enableFind(dialog);
            return TRUE;
        }
        break;
    }
    return FALSE;
}

// Any bit of GetKeyState's high byte is set while the key is down; bit 12 is the one tested.
bool isKeyDown(int key) { return (GetKeyState(key) & 0x1000) != 0; }

LRESULT CALLBACK treeViewReplacementProc(HWND tree, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_KEYDOWN) {
        if (wParam == 'F' && isKeyDown(VK_CONTROL)) {
            KxTreeView_DlgSuche(tree, g_language);
            return 0;  // the tree never sees Ctrl+F
        }
        if (wParam == VK_F3) RepeatTreeSearch(tree, !isKeyDown(VK_SHIFT));
    }
    WNDPROC previous = Kx1GetSubProc(message == WM_DESTROY, tree);
    if (!previous) return 0;
    return CallWindowProcW(previous, tree, message, wParam, lParam);
}

}  // namespace

HTREEITEM RepeatTreeSearch(HWND tree, int forward) {
    auto* text = reinterpret_cast<const wchar_t*>(GetWindowLongPtrW(tree, GWLP_USERDATA));
    if (!text || !*text) return nullptr;
    HTREEITEM root = TreeRoot(tree);
    if (!root) return nullptr;
    wchar_t lowered[kSearchTextCapacity];
    kv_strcpy(lowered, text, kSearchTextCapacity);
    CharLowerW(lowered);
    // Items the options turn down become the marker that the next attempt starts after (or,
    // backward, ends before).
    HTREEITEM marker = TreeSelection(tree);
    for (;;) {
        HTREEITEM found =
            KxTreeView_GetItemWithTextEx(tree, root, lowered, 0, 0, &marker, nullptr, forward);
        if (!found) return nullptr;
        if (meetsOptions(tree, found, text)) {
            showAndSelect(tree, found);
            return found;
        }
        marker = found;
    }
}

int KVKIT_CALL KxTreeView_DlgSuche(HWND tree, unsigned short language) {
    if (!IsWindow(tree)) return 1;
    const DLGTEMPLATE* dialogTemplate = searchDialogTemplate(language);
    if (dialogTemplate)
        DialogBoxIndirectParamW(g_textModule, dialogTemplate, tree, searchDialogProc,
                                reinterpret_cast<LPARAM>(tree));
    return 1;
}

int KVKIT_CALL Kx1SetTreeViewProc(HWND tree) {
    if (!IsWindow(tree)) return 0;
    return Kx1SetSubProc(tree, treeViewReplacementProc);
}
