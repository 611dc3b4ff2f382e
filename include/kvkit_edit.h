// In-place editing of list-view cells and tree-view labels. An edit box (or a drop-down list)
// is laid over the cell or label and takes the focus; when the focus leaves it, the control's
// parent receives the standard end-of-label-edit notification with the new text and decides
// whether to store it. In a list view, Tab, Shift+Tab, Up and Down ask the parent (with a
// begin-label-edit notification) to edit the neighbouring cell, for spreadsheet-like editing:
//
//   LVN_BEGINLABELEDITW from the editor: KxListView_SetEditEx(list, ..., item.iItem,
//                                        item.iSubItem, ...) for the cell asked for
//   LVN_ENDLABELEDITW:  store item.pszText (null: cancelled) in row item.iItem, column
//                       item.iSubItem % 1000, then FreeMemory(item.pszText)
//   TVN_ENDLABELEDITW:  the same for item.hItem
#pragma once
#include "kvkit_api.h"
#include <commctrl.h>

// Child window ids of the editors; a control has at most one editor at a time.
enum {
    KX_LISTEDIT_ID = 26789,
    KX_TREEEDIT_ID = 26790,
};

// Style byte bits.
enum {
    KX_LISTEDIT_DROPDOWN = 0x01,  // list cells: a drop-down list instead of an edit box
    KX_TREEEDIT_DROPDOWN = 0x02,  // tree labels: a drop-down list instead of an edit box
    // This exact style byte (a list drop-down) ends the edit on a double click; with any other
    // style a double click in the editor is swallowed.
    KX_EDIT_DOUBLECLICK_ENDS = 75,
};

// Added to item.iSubItem of the list's end notification when a double click ended the edit.
const int KX_LISTEDIT_DOUBLECLICKED = 1000;

// Fills a drop-down editor's list (CB_ADDSTRING, ...) and selects the current entry; `text` is
// the cell's text. The result is ignored.
typedef int(__stdcall* KXLISTEDITFILL)(HWND editor, int row, int column, const wchar_t* text,
                                       LPARAM userValue);
typedef int(__stdcall* KXTREEEDITFILL)(HWND editor, HTREEITEM item, const wchar_t* text,
                                       LPARAM userValue);

// Starts editing the cell (row, column) of a report-view list view: ends an open edit (which
// reports it), selects and shows the row, scrolls a cell that starts outside the visible part to
// the left edge, and lays the editor over the cell in the list's font with the cell's text
// (read up to 248 characters) selected. The first `prefixLength` characters of an edit box's
// text are shown but not edited: the box starts right of them. `textLimit` of 0 or more limits an
// edit box's text. A drop-down list is filled by `fill`. When the editor loses the focus, the
// list's parent receives LVN_ENDLABELEDITW (sender the list) with item.iItem = row,
// item.iSubItem = column (+ KX_LISTEDIT_DOUBLECLICKED), item.lParam = the row value when editing
// began, item.pszText = a kvtext block with the edited text (without the prefix) that the
// receiver frees with FreeMemory, or null after Escape, item.cchTextMax = its length, and for a
// drop-down item.iImage = the selected entry (-1: none). Enter ends the edit, Escape cancels it.
// Returns the editor, or null for a row or column out of range, a bad list view or when the
// editor cannot be created. Without memory for its record the editor works but reports nothing.
KVKIT_API HWND KVKIT_CALL KxListView_SetEditEx(HWND listView, HINSTANCE module, int row,
                                               int column, BYTE style, int textLimit,
                                               KXLISTEDITFILL fill, LPARAM userValue,
                                               int prefixLength);
// KxListView_SetEditEx without a fixed prefix.
KVKIT_API HWND KVKIT_CALL KxListView_SetEdit(HWND listView, HINSTANCE module, int row,
                                             int column, BYTE style, int textLimit,
                                             KXLISTEDITFILL fill, LPARAM userValue);
// Starts editing a tree item's label, as KxListView_SetEditEx does for a cell: the item is shown
// and, unless it is the selected item, marked selected and drop-highlighted (the caret stays,
// and so do these marks after the edit). The editor spans the label, at least 32 pixels. The
// tree's parent receives TVN_ENDLABELEDITW with item.hItem, item.lParam = the item value, the
// text as for lists (null and length 0 after Escape) and item.iImage for a drop-down. Returns the
// editor, or null for a null item, a bad tree, when the label cannot be read or the editor
// cannot be created.
KVKIT_API HWND KVKIT_CALL KxTreeView_SetEdit(HWND tree, HINSTANCE module, HTREEITEM item,
                                             BYTE style, int textLimit, KXTREEEDITFILL fill,
                                             LPARAM userValue, int prefixLength);

// The list editor's window procedure. Besides Enter and Escape it turns Up and Down into a
// begin-label-edit request for the row above or below (wrapping around), and Tab (Shift+Tab)
// into one for the next (previous) column of the row (wrapping around); Up and Down go to an
// open drop-down list instead.
KVKIT_API LRESULT KVKIT_CALL KxListView_EditProc(HWND editor, UINT message, WPARAM wParam,
                                                 LPARAM lParam);
// The tree editor's window procedure (Enter, Escape, double click; no navigation).
KVKIT_API LRESULT KVKIT_CALL KxTreeView_EditProc(HWND editor, UINT message, WPARAM wParam,
                                                 LPARAM lParam);
// A replacement procedure for list views in dialogs (install it with Kx1SetSubProc): the list
// view asks for the Enter key, so that Enter reaches it instead of pressing the default button.
KVKIT_API LRESULT KVKIT_CALL KxListView_GetEnterKeyProc(HWND listView, UINT message,
                                                        WPARAM wParam, LPARAM lParam);
