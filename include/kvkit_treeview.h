// Tree view helpers: inserting, copying and moving items, item text and value, check boxes in
// the state image (1 unchecked, 2 checked, further images for the caller's own states), marks in
// the overlay image, other state bits, expanding and collapsing the whole tree, the context menu,
// the click handling that enforces check rules, and the search dialog with its keyboard
// shortcuts (Ctrl+F, F3). Each item carries one 32-bit value in its lParam.
//
// While a tree item is being dragged, copying and moving items refuse to work.
#pragma once
#include "kvkit_api.h"
#include <commctrl.h>

// --- items ------------------------------------------------------------------------------------

// Inserts an item under `parent` (null: top level) after `insertAfter` (null: last), or at its
// sorted place when `sort` is set. With an image list and a bitmap name, the bitmap is loaded
// from `module`, added to the list (its pixel (0, 0) is the transparent colour) and its index
// stored in *image. With `image` the item shows *image, selected or not. Returns the new item;
// null when it cannot be inserted or the named bitmap cannot be loaded and added.
KVKIT_API HTREEITEM KVKIT_CALL KxTreeView_InsertItemEx(HWND tree, HINSTANCE module,
                                                       HTREEITEM parent, HTREEITEM insertAfter,
                                                       HIMAGELIST images,
                                                       const wchar_t* bitmapName, int* image,
                                                       const wchar_t* text, LPARAM value,
                                                       int sort);
// KxTreeView_InsertItemEx at the end of the parent's items (or sorted).
KVKIT_API HTREEITEM KVKIT_CALL KxTreeView_InsertItem(HWND tree, HINSTANCE module,
                                                     HTREEITEM parent, HIMAGELIST images,
                                                     const wchar_t* bitmapName, int* image,
                                                     const wchar_t* text, LPARAM value, int sort);

// Fills record->item with the item's text (at most `textCapacity` characters, in a new kvtext
// block that the caller frees with FreeMemory), images, value and child flag, ready to be
// inserted; hParent and hInsertAfter are left to the caller. Check state and mark are not
// copied. Returns 1, or 0 (no block to free) for a null record, an unreadable item, no memory or
// while a tree item is being dragged.
KVKIT_API int KVKIT_CALL KxTreeView_CopyItem(HWND tree, HTREEITEM item, int textCapacity,
                                             TVINSERTSTRUCTW* record);
// Moves an item (text up to 256 characters, images, value) under `newParent` (null: top level)
// after `insertAfter` (null: last), with its whole subtree when `moveChildren` is set (without
// it the children go with the old item), and selects it. The moved items lose their check state
// and mark. Returns the new item; null, with the tree unchanged, when the copy fails, when the
// new parent lies in the item's own subtree, or while a tree item is being dragged.
KVKIT_API HTREEITEM KVKIT_CALL KxTreeView_MoveItem(HWND tree, HTREEITEM item,
                                                   HTREEITEM newParent, HTREEITEM insertAfter,
                                                   int moveChildren);

// Sets the item's text from a kvtext block. Returns 1; 0 for a null item or text, and 0 when
// the tree refuses the text, in which case the block has been freed. On success the caller still
// owns the block.
KVKIT_API int KVKIT_CALL KxTreeView_SetItemText(HWND tree, HTREEITEM item, wchar_t* text);
// The item's text (up to 119 characters) in a new kvtext block that the caller frees with
// FreeMemory; null for a null item, an unreadable one or when memory runs out.
KVKIT_API wchar_t* KVKIT_CALL KxTreeView_GetItemText(HWND tree, HTREEITEM item);
// The item's value (lParam). Set returns 0 for a null item; Get returns 0 for a null or
// unreadable item, which cannot be told from a value of 0.
KVKIT_API int KVKIT_CALL KxTreeView_SetItemData(HWND tree, HTREEITEM item, LPARAM value);
KVKIT_API LPARAM KVKIT_CALL KxTreeView_GetItemData(HWND tree, HTREEITEM item);

// --- check boxes, marks and state bits --------------------------------------------------------

// Shows the checked (state image 2) or unchecked (state image 1) box. 0 for a null item.
KVKIT_API int KVKIT_CALL KxTreeView_SetCheckState(HWND tree, HTREEITEM item, int checked);
// The state image index minus 1: 0 unchecked, 1 checked, 2 and up for further images, -1 for
// no state image (and for a null or unreadable item).
KVKIT_API int KVKIT_CALL KxTreeView_GetCheckState(HWND tree, HTREEITEM item);
// Shows overlay image `overlay` (0 = none, up to 15) on the item; nothing else changes. 0 for a
// null item or an overlay out of range.
KVKIT_API int KVKIT_CALL KxTreeView_SetMark(HWND tree, HTREEITEM item, int overlay);

// The walk of the functions below: from `start` (null: the first top-level item) along its
// following siblings, each item before its children, all descendants included; `except` is
// skipped (its children are not). They return 1, or 0 when there is no item to start from.

// Sets the mark on every item of the walk.
KVKIT_API int KVKIT_CALL KxTreeView_MarkAll(HWND tree, HTREEITEM except, int overlay,
                                            HTREEITEM start);

// Sets (`set` non-zero) or clears state bits of the low byte (TVIS_BOLD, TVIS_CUT, ...). Setting
// writes nothing and returns 0 when any of the bits is set already; clearing returns 0 when none
// is set and otherwise flips all of `bits`, so bits that were clear become set. Else the tree's
// answer.
KVKIT_API int KVKIT_CALL KxTreeView_SetItemState(HWND tree, HTREEITEM item, int set, UINT bits);
// KxTreeView_SetItemState on every item of the walk.
KVKIT_API int KVKIT_CALL KxTreeView_SetAllItemsState(HWND tree, HTREEITEM except, int set,
                                                     UINT bits, HTREEITEM start);

// Decides whether an item's check box may change to `checked`: non-zero allows it.
typedef int(__stdcall* KXTREECHECKFILTER)(HWND tree, HTREEITEM item, int checked,
                                          LPARAM itemValue, LPARAM userValue);

// Checks or unchecks every item of the walk that `filter` (when given) allows.
KVKIT_API int KVKIT_CALL KxTreeView_CheckAll(HWND tree, HTREEITEM except, int checked,
                                             KXTREECHECKFILTER filter, LPARAM userValue,
                                             HTREEITEM start);
// Counts the items whose check state is not 0 (checked, a further image, or no state image) on
// the level of `start` (null: the top level) and its following siblings (depth 0), on exactly
// `depth` levels below it, or on every level (depth -1).
KVKIT_API int KVKIT_CALL KxTreeView_GetAllChecked(HWND tree, HTREEITEM start, int depth);

// Expands every item of the tree, or collapses the top-level items (the others keep their own
// state); then scrolls the selected item into view. 0 when there is no tree.
KVKIT_API int KVKIT_CALL KxTreeView_ExpandTree(HWND tree, int expand);

// --- mouse clicks and check rules -------------------------------------------------------------

// The item under the mouse cursor, or null; *hitFlags (when asked) receives the TVHT_ flags.
KVKIT_API HTREEITEM KVKIT_CALL KxTreeView_GetMouseHit(HWND tree, UINT* hitFlags);
// For the item under the cursor (stored in *item when asked): TVHT_ONITEMSTATEICON when the
// cursor is on its check box, else 0. 0 when no item is under the cursor.
KVKIT_API int KVKIT_CALL KxTreeView_CheckChange(HWND tree, HTREEITEM* item);

// Check rules, for the parent's NM_CLICK handler: called before the tree toggles the check box
// of the clicked item. The item is *item when that holds one, else the item whose check box is
// under the cursor (none: 0). It is selected, then:
// - parent or children rule: unchecking also unchecks its checked children (one level);
//   checking is refused while it has an unchecked parent (parent rule), and checks its
//   unchecked children (children rule);
// - one of many: a checked item cannot be unchecked; checking it unchecks every other item.
// A refused click leaves the box as it was (the item is set to the opposite state so that the
// tree's own toggle restores it), beeps and returns 0. Otherwise the item goes to *item (when
// given) and the result is 1.
KVKIT_API int KVKIT_CALL KxTreeView_HandleCheckChangeEx(HWND tree, int oneOfMany,
                                                        int parentRule, int childrenRule,
                                                        HTREEITEM* item);
// KxTreeView_HandleCheckChangeEx without the children rule.
KVKIT_API int KVKIT_CALL KxTreeView_HandleCheckChange(HWND tree, int oneOfMany, int parentRule,
                                                      HTREEITEM* item);
// As KxTreeView_HandleCheckChangeEx, with `filter` asked before every change to another item;
// and with the parent rule, checking an item only tests its parent: its children are checked
// only by the children rule without the parent rule.
KVKIT_API int KVKIT_CALL KxTreeView_HandleCheckChangeExRight(HWND tree, int oneOfMany,
                                                             int parentRule, int childrenRule,
                                                             KXTREECHECKFILTER filter,
                                                             LPARAM userValue, HTREEITEM* item);

// --- painting ---------------------------------------------------------------------------------

// For the parent dialog's NM_CUSTOMDRAW: asks for item notifications, then gives items whose
// value equals `valueFilter` (every item for -1) the text colour, background colour and font
// that are not -1 / null. On the focused selected item a text colour equal to the highlight
// colour or to navy becomes the highlight-text colour. Returns the custom-draw result for the
// dialog procedure to answer with.
KVKIT_API LRESULT KVKIT_CALL KxTreeView_SetItemColorFont(HWND dialog, HWND tree,
                                                         NMTVCUSTOMDRAW* draw,
                                                         LPARAM valueFilter,
                                                         COLORREF textColour,
                                                         COLORREF backColour, HFONT font);

// --- context menu, search dialog and keyboard -------------------------------------------------

// Commands of the context menu.
enum {
    KX_TREEMENU_COLLAPSE_ALL = 5995,
    KX_TREEMENU_EXPAND_ALL = 5996,
    KX_TREEMENU_ENTRY_912 = 5997,  // posted to the owner
    KX_TREEMENU_ENTRY_911 = 5998,  // posted to the owner
    KX_TREEMENU_FIND = 5999,       // opens the search dialog
    KX_TREEMENU_FIND_NEXT = 6000,  // repeats the last search forward
    KX_TREEMENU_FIND_PREVIOUS = 6001,
};

// For the parent's NM_RCLICK: the item under the cursor (null: nothing happens), selected first
// when `select` is set. Without any entry flag, the first submenu of menu `menuName` of `module`
// (if named) is shown and its command sent to `owner`. Otherwise the menu is that submenu (or an
// empty one) followed by the library's entries, texts from the language module: search (910),
// search forward (719) and backward (720) with `searchEntries`; entry 912 and entry 911 for the
// owner with their flags; expand all (913) and collapse all (915) when the tree has buttons or
// lines at the root. The library carries out its own commands; any other (0 when the menu was
// dismissed) is posted to `owner` as WM_COMMAND. Returns the item.
KVKIT_API HTREEITEM KVKIT_CALL Kx1TreeView_RButtonEx(HWND owner, NMHDR* notify, int select,
                                                     const wchar_t* menuName, HINSTANCE module,
                                                     int searchEntries, int entry911,
                                                     int entry912, int reserved);
// Kx1TreeView_RButtonEx without entry 912.
KVKIT_API HTREEITEM KVKIT_CALL Kx1TreeView_RButton(HWND owner, NMHDR* notify, int select,
                                                   const wchar_t* menuName, HINSTANCE module,
                                                   int searchEntries, int entry911, int reserved);

// Opens the modal search dialog (template 2071 of the language module, in `language` when the
// module has it so) over the tree. Its Find button looks for the next item after the selection
// whose text contains the search text, without regard to case unless "match case" is ticked,
// and equal to it as a whole when "whole text" is ticked; a found item is selected and ends the
// dialog, otherwise it stays open. The text stays the tree's search text (its GWLP_USERDATA points
// to it), with the options, for F3 and the menu's repeat commands. Returns 1 (no dialog opens
// without a tree).
KVKIT_API int KVKIT_CALL KxTreeView_DlgSuche(HWND tree, unsigned short language);
// Subclasses the tree (through Kx1SetSubProc) so that Ctrl+F opens the search dialog, which the
// tree never sees, and F3 (Shift+F3 backward) selects the next item holding the tree's search
// text before the tree gets the key. Kx1SetSubProc's result.
KVKIT_API int KVKIT_CALL Kx1SetTreeViewProc(HWND tree);
