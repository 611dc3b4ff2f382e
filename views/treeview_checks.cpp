// Tree view check boxes: the check state held in the state image, checking many items, counting
// them, hit-testing the mouse, and the click handling that enforces the parent/child and
// one-of-many rules.
#include "views/treeview_internal.h"

namespace {

const int kUncheckedImage = 1;
const int kCheckedImage = 2;

// The tree toggles a check box after its parent has handled the click. A click that the rules
// refuse sets the box to the opposite of its state, so that the toggle that follows restores it.
int refuseClick(HWND tree, HTREEITEM item, int oppositeState) {
    KxTreeView_SetCheckState(tree, item, oppositeState);
    MessageBeep(0);
    return 0;
}

bool allowed(KXTREECHECKFILTER filter, LPARAM userValue, HWND tree, HTREEITEM item, int checked) {
    return !filter ||
           filter(tree, item, checked, KxTreeView_GetItemData(tree, item), userValue) != 0;
}

// Sets the direct children that are in state `from` (1 checked, 0 unchecked) to the other state.
void flipChildren(HWND tree, HTREEITEM item, int from, KXTREECHECKFILTER filter, LPARAM userValue) {
    for (HTREEITEM child = TreeChild(tree, item); child; child = TreeSibling(tree, child)) {
        int state = KxTreeView_GetCheckState(tree, child);
        bool inState = from ? state >= 1 : state == 0;
        if (inState && allowed(filter, userValue, tree, child, !from))
            KxTreeView_SetCheckState(tree, child, !from);
    }
}

// Unchecks every item of the tree but `keep`.
void uncheckAllBut(HWND tree, HTREEITEM keep, KXTREECHECKFILTER filter, LPARAM userValue) {
    for (HTREEITEM top = TreeRoot(tree); top; top = TreeSibling(tree, top)) {
        if (top != keep && allowed(filter, userValue, tree, top, 0))
            KxTreeView_SetCheckState(tree, top, 0);
        HTREEITEM child = TreeChild(tree, top);
        if (child) KxTreeView_CheckAll(tree, keep, 0, filter, userValue, child);
    }
}

// The rules of both handlers. `filter` may be null; `parentRuleOnlyTests` is the difference of
// the filtered handler: checking with the parent rule only tests the parent.
int handleCheckClick(HWND tree, int oneOfMany, int parentRule, int childrenRule,
                     KXTREECHECKFILTER filter, LPARAM userValue, bool parentRuleOnlyTests,
                     HTREEITEM* ioItem) {
    if (!IsWindow(tree)) return 0;
    HTREEITEM item = ioItem ? *ioItem : nullptr;
    if (!item && !KxTreeView_CheckChange(tree, &item)) return 0;
    if (TreeSelection(tree) != item) SelectTreeItem(tree, item);

    // Any state image beyond "unchecked" counts as checked; an item without one is neither.
    int state = KxTreeView_GetCheckState(tree, item);
    bool beingUnchecked = state >= 1;
    bool beingChecked = state == 0;
    if (parentRule || childrenRule) {
        if (beingUnchecked) {
            flipChildren(tree, item, 1, filter, userValue);
        } else if (beingChecked) {
            HTREEITEM parent = TreeParent(tree, item);
            if (parentRule && parent && KxTreeView_GetCheckState(tree, parent) == 0)
                return refuseClick(tree, item, 1);
            bool checkChildren = parentRuleOnlyTests ? !parentRule && childrenRule : childrenRule;
            if (checkChildren) flipChildren(tree, item, 0, filter, userValue);
        }
    }
    if (oneOfMany) {
        if (beingUnchecked) return refuseClick(tree, item, 0);
        uncheckAllBut(tree, item, filter, userValue);
    }
    if (ioItem) *ioItem = item;
    return 1;
}

// Item counts of GetAllChecked: `level` is the items' distance below the start level; a
// negative depth counts every level.
int countChecked(HWND tree, HTREEITEM item, int level, int depth) {
    int count = 0;
    for (; item; item = TreeSibling(tree, item)) {
        if ((depth < 0 || level == depth) && KxTreeView_GetCheckState(tree, item) != 0) ++count;
        if (depth < 0 || level < depth) count += countChecked(tree, TreeChild(tree, item), level + 1, depth);
    }
    return count;
}

}  // namespace

int KVKIT_CALL KxTreeView_SetCheckState(HWND tree, HTREEITEM item, int checked) {
    if (!item) return 0;
    TVITEMW data = {};
    data.mask = TVIF_STATE | TVIF_HANDLE;
    data.hItem = item;
    data.stateMask = TVIS_STATEIMAGEMASK;
    data.state = INDEXTOSTATEIMAGEMASK(checked ? kCheckedImage : kUncheckedImage);
    return SendMessageW(tree, TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&data)) != 0;
}

int KVKIT_CALL KxTreeView_GetCheckState(HWND tree, HTREEITEM item) {
    if (!item) return -1;
    TVITEMW data = {};
    data.mask = TVIF_STATE | TVIF_HANDLE;
    data.hItem = item;
    data.stateMask = TVIS_STATEIMAGEMASK;
    if (!SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&data))) return -1;
    return static_cast<int>((data.state & TVIS_STATEIMAGEMASK) >> 12) - 1;
}

int KVKIT_CALL KxTreeView_CheckAll(HWND tree, HTREEITEM except, int checked,
                                   KXTREECHECKFILTER filter, LPARAM userValue, HTREEITEM start) {
    return ForEachTreeItem(tree, start, except, [&](HTREEITEM item) {
        if (allowed(filter, userValue, tree, item, checked)) KxTreeView_SetCheckState(tree, item, checked);
    });
}

int KVKIT_CALL KxTreeView_GetAllChecked(HWND tree, HTREEITEM start, int depth) {
    return countChecked(tree, start ? start : TreeRoot(tree), 0, depth);
}

HTREEITEM KVKIT_CALL KxTreeView_GetMouseHit(HWND tree, UINT* hitFlags) {
    TVHITTESTINFO hit = {};
    GetCursorPos(&hit.pt);
    ScreenToClient(tree, &hit.pt);
    auto item = reinterpret_cast<HTREEITEM>(
        SendMessageW(tree, TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
    if (hitFlags) *hitFlags = hit.flags;
    return item;
}

int KVKIT_CALL KxTreeView_CheckChange(HWND tree, HTREEITEM* item) {
    UINT flags = 0;
    HTREEITEM hit = KxTreeView_GetMouseHit(tree, &flags);
    if (!hit) return 0;
    if (item) *item = hit;
    return flags & TVHT_ONITEMSTATEICON;
}

int KVKIT_CALL KxTreeView_HandleCheckChange(HWND tree, int oneOfMany, int parentRule,
                                            HTREEITEM* item) {
    return KxTreeView_HandleCheckChangeEx(tree, oneOfMany, parentRule, 0, item);
}

int KVKIT_CALL KxTreeView_HandleCheckChangeEx(HWND tree, int oneOfMany, int parentRule,
                                              int childrenRule, HTREEITEM* item) {
    return handleCheckClick(tree, oneOfMany, parentRule, childrenRule, nullptr, 0, false, item);
}

int KVKIT_CALL KxTreeView_HandleCheckChangeExRight(HWND tree, int oneOfMany, int parentRule,
                                                   int childrenRule, KXTREECHECKFILTER filter,
                                                   LPARAM userValue, HTREEITEM* item) {
    return handleCheckClick(tree, oneOfMany, parentRule, childrenRule, filter, userValue, true,
                            item);
}
