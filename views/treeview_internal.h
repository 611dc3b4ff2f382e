// Helpers shared by the tree view sources. Internal.
#pragma once
#include "include/kvkit_treeview.h"
#include "include/kvkit_search.h"
#include "views/treeview_drag.h"

inline HTREEITEM TreeNext(HWND tree, HTREEITEM item, UINT relation) {
    return reinterpret_cast<HTREEITEM>(
        SendMessageW(tree, TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(item)));
}
inline HTREEITEM TreeRoot(HWND tree) { return TreeNext(tree, nullptr, TVGN_ROOT); }
inline HTREEITEM TreeChild(HWND tree, HTREEITEM item) { return TreeNext(tree, item, TVGN_CHILD); }
inline HTREEITEM TreeSibling(HWND tree, HTREEITEM item) { return TreeNext(tree, item, TVGN_NEXT); }
inline HTREEITEM TreeParent(HWND tree, HTREEITEM item) { return TreeNext(tree, item, TVGN_PARENT); }
inline HTREEITEM TreeSelection(HWND tree) { return TreeNext(tree, nullptr, TVGN_CARET); }

inline void SelectTreeItem(HWND tree, HTREEITEM item) {
    SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
}

// Reads the item's text into `buffer` (`capacity` characters with the terminator). False, with an
// empty buffer, when the item cannot be read.
bool ReadTreeItemText(HWND tree, HTREEITEM item, wchar_t* buffer, int capacity);

// Calls visit(item) for every item from `start` (null: the first top-level item) along its
// following siblings, each item before its children, skipping `except` but not its children.
// False when there is no item to start from.
template <typename Visit>
bool ForEachTreeItem(HWND tree, HTREEITEM start, HTREEITEM except, Visit visit) {
    HTREEITEM item = start ? start : TreeRoot(tree);
    if (!item) return false;
    int depth = 0;  // levels below the start's
    while (item) {
        if (item != except) visit(item);
        HTREEITEM next = TreeChild(tree, item);
        if (next) {
            ++depth;
        } else {
            // Up until a level has a next sibling, never above the start's level.
            while (!(next = TreeSibling(tree, item)) && depth > 0) {
                item = TreeParent(tree, item);
                --depth;
            }
        }
        item = next;
    }
    return true;
}

// Searches the tree again for its search text (the one its GWLP_USERDATA points to, left there
// by the search dialog), with the dialog's options, forward or backward from the selected item.
// The item found is selected and scrolled into view. Returns it, or null.
HTREEITEM RepeatTreeSearch(HWND tree, int forward);
