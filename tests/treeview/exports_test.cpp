// The search and tree view exports resolve by their plain names, as hosts look them up.
#include "kvtest.h"

namespace {

TEST(TreeViewExports, ResolveByPlainName) {
    HMODULE kvkit = GetModuleHandleW(L"kvkit.dll");
    const char* const names[] = {
        // item search and type-ahead
        "KxListView_GetItemWithData", "KxListView_GetItemWithText", "KxListView_GetItemWithTextEx",
        "KxListView_GetSelItems", "KxListView_SetCharSel", "KxListView_SetCharSelEx",
        "KxTreeView_GetItemWithData", "KxTreeView_GetItemWithText", "KxTreeView_GetItemWithTextEx",
        // tree view items and check states
        "KxTreeView_InsertItem", "KxTreeView_InsertItemEx", "KxTreeView_CopyItem",
        "KxTreeView_MoveItem", "KxTreeView_SetItemText", "KxTreeView_GetItemText",
        "KxTreeView_SetItemData", "KxTreeView_GetItemData", "KxTreeView_SetCheckState",
        "KxTreeView_GetCheckState", "KxTreeView_SetMark", "KxTreeView_MarkAll",
        "KxTreeView_SetItemState", "KxTreeView_SetAllItemsState", "KxTreeView_CheckAll",
        "KxTreeView_GetAllChecked", "KxTreeView_ExpandTree", "KxTreeView_GetMouseHit",
        "KxTreeView_CheckChange", "KxTreeView_HandleCheckChange", "KxTreeView_HandleCheckChangeEx",
        "KxTreeView_HandleCheckChangeExRight", "KxTreeView_SetItemColorFont", "Kx1TreeView_RButton",
        "Kx1TreeView_RButtonEx", "KxTreeView_DlgSuche", "Kx1SetTreeViewProc"};
    for (const char* name : names) EXPECT_NE(nullptr, GetProcAddress(kvkit, name)) << name;
}

}  // namespace
