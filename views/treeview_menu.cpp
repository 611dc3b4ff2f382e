// The tree view's right-click menu: the host's own entries followed by the library's search,
// expand and collapse entries, whose commands the library carries out itself.
#include "views/treeview_internal.h"
#include "core/library.h"
#include "kvtext.h"

namespace {

// Language strings of the entries.
const UINT kFindText = 910;
const UINT kFindNextText = 719;
const UINT kFindPreviousText = 720;
const UINT kEntry911Text = 911;
const UINT kEntry912Text = 912;
const UINT kExpandAllText = 913;
const UINT kCollapseAllText = 915;

// How an entry's language string becomes its label.
enum LabelForm {
    kAsLoaded,
    kWithAccelerator,     // "&" put in front: the first letter is the entry's accelerator
    kWithoutAccelerator,  // every "&" taken out
};

// Appends an entry labelled by a language string; an entry whose string is missing is left out.
void appendEntry(HMENU menu, UINT textId, UINT command, LabelForm form) {
    wchar_t* text = LoadLanguageString(textId);
    if (!text) return;
    wchar_t label[kLanguageStringLength + 2] = L"";
    if (form != kAsLoaded) kv_strcpy(label, L"&", kLanguageStringLength + 2);
    kv_strcat(label, text, kLanguageStringLength + 2);
    if (form == kWithoutAccelerator) StringRemoveChar(label, L'&');
    AppendMenuW(menu, MF_STRING, command, label);
    FreeMemory(text);
}

void appendSeparator(HMENU menu) { AppendMenuW(menu, MF_SEPARATOR, 0, nullptr); }

void carryOut(HWND owner, HWND tree, int command) {
    switch (command) {
    case KX_TREEMENU_COLLAPSE_ALL:
        KxTreeView_ExpandTree(tree, 0);
        break;
    case KX_TREEMENU_EXPAND_ALL:
        KxTreeView_ExpandTree(tree, 1);
        break;
    case KX_TREEMENU_FIND:
        KxTreeView_DlgSuche(tree, g_language);
        break;
    case KX_TREEMENU_FIND_NEXT:
        RepeatTreeSearch(tree, 1);
        break;
    case KX_TREEMENU_FIND_PREVIOUS:
        RepeatTreeSearch(tree, 0);
        break;
    default:
        // The host's commands, and 0 for a dismissed menu.
        PostMessageW(owner, WM_COMMAND, command, 0);
        break;
    }
}

// The host's menu alone: its first submenu at the cursor, the command sent to the owner.
void showHostMenu(HWND owner, const wchar_t* menuName, HINSTANCE module, POINT cursor) {
    HMENU menu = LoadMenuW(module, menuName);
    if (!menu) return;
    HMENU popup = GetSubMenu(menu, 0);
    if (popup) TrackPopupMenu(popup, TPM_RIGHTBUTTON, cursor.x, cursor.y, 0, owner, nullptr);
    DestroyMenu(menu);
}

}  // namespace

HTREEITEM KVKIT_CALL Kx1TreeView_RButton(HWND owner, NMHDR* notify, int select,
                                         const wchar_t* menuName, HINSTANCE module,
                                         int searchEntries, int entry911, int reserved) {
    return Kx1TreeView_RButtonEx(owner, notify, select, menuName, module, searchEntries, entry911,
                                 0, reserved);
}

HTREEITEM KVKIT_CALL Kx1TreeView_RButtonEx(HWND owner, NMHDR* notify, int select,
                                           const wchar_t* menuName, HINSTANCE module,
                                           int searchEntries, int entry911, int entry912,
                                           int reserved) {
    if (!notify) return nullptr;
    HWND tree = notify->hwndFrom;
    HTREEITEM item = KxTreeView_GetMouseHit(tree, nullptr);
    if (!item) return nullptr;
    if (select && TreeSelection(tree) != item) SelectTreeItem(tree, item);
    POINT cursor;
    GetCursorPos(&cursor);
    if (!searchEntries && !entry911 && !entry912) {
        if (menuName) showHostMenu(owner, menuName, module, cursor);
        return item;
    }

    HMENU hostMenu = menuName ? LoadMenuW(module, menuName) : nullptr;
    HMENU popup = hostMenu ? GetSubMenu(hostMenu, 0) : nullptr;
    HMENU ownPopup = nullptr;
    if (popup) {
        appendSeparator(popup);
    } else {
        popup = ownPopup = CreatePopupMenu();
        if (!popup) {
            if (hostMenu) DestroyMenu(hostMenu);
            return item;
        }
    }
    if (searchEntries) {
        appendEntry(popup, kFindText, KX_TREEMENU_FIND, kWithAccelerator);
        appendEntry(popup, kFindNextText, KX_TREEMENU_FIND_NEXT, kWithoutAccelerator);
        appendEntry(popup, kFindPreviousText, KX_TREEMENU_FIND_PREVIOUS, kWithoutAccelerator);
    }
    if (entry912) {
        appendSeparator(popup);
        appendEntry(popup, kEntry912Text, KX_TREEMENU_ENTRY_912, kAsLoaded);
    }
    if (entry911) {
        if (searchEntries) appendSeparator(popup);
        appendEntry(popup, kEntry911Text, KX_TREEMENU_ENTRY_911, kAsLoaded);
    }
    if (GetWindowLongW(tree, GWL_STYLE) & (TVS_HASBUTTONS | TVS_LINESATROOT)) {
        appendSeparator(popup);
        appendEntry(popup, kExpandAllText, KX_TREEMENU_EXPAND_ALL, kAsLoaded);
        appendEntry(popup, kCollapseAllText, KX_TREEMENU_COLLAPSE_ALL, kAsLoaded);
    }

    int command = TrackPopupMenu(popup, TPM_RETURNCMD | TPM_RIGHTBUTTON, cursor.x, cursor.y, 0,
                                 owner, nullptr);
    if (hostMenu) DestroyMenu(hostMenu);
    if (ownPopup) DestroyMenu(ownPopup);
    carryOut(owner, tree, command);
    return item;
}
