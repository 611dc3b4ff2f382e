// Shared by the sources of the multi-column list box. Internal.
//
// The container keeps only the host's record (window data slot 0). The inner list box holds one
// row per identifier of the display order, in the same order, whose data is
// (lower-cased first character of the text << 16) | identifier.
#pragma once
#include "include/kvkit_listbox.h"

// Background of the pictures, drawn transparent.
const COLORREF kPictureKey = RGB(192, 192, 192);

// --- listbox.cpp: the container ----------------------------------------------------------------

// The record attached to a "KVListbox" container; null for any other window or when detached.
KVLB_LIST* ListRecord(HWND container);
inline HWND InnerList(HWND container) { return GetDlgItem(container, KVLB_LIST_ID); }
// Sends WM_COMMAND (container identifier | code << 16, container) to the container's parent.
void NotifyParent(HWND container, WORD code);
inline bool IsMultiple(const KVLB_LIST* list) { return (list->style & KVLB_MULTIPLESEL) != 0; }
// The style feature that a toggle button switches; 0 for any other control.
unsigned long ToggleFeature(int id);

// --- listbox_record.cpp: items, display order, selection numbers, filling and sorting ----------

// The item with this identifier, or null (also for KVLB_NO_ITEM and a record without items).
KVLB_ITEM* FindItem(const KVLB_LIST* list, int id);
// Number of identifiers before the first empty slot of the display order.
int ShownCount(const KVLB_LIST* list);
// Position of the identifier in the display order (= its row), or -1.
int OrderPosition(const KVLB_LIST* list, int id);
// Makes the natural display order when the record has none. False when memory runs out.
bool EnsureOrder(KVLB_LIST* list);
// Turns the items' type letters into the library's picture numbers.
void ConvertTypeLetters(KVLB_LIST* list);

// A character lower-cased as the rows store it.
wchar_t LowerCase(wchar_t character);
// The data of the row that shows an item: its text's first character, lower-cased, in the high
// word and the identifier in the low word.
LPARAM RowData(const KVLB_ITEM* item, unsigned short id);
// The item shown in a row of the inner list, or null.
KVLB_ITEM* ItemOfRow(HWND box, const KVLB_LIST* list, int row);
// Whether the user may select the item: not disabled, and within the maximum unless numbered.
bool CanSelect(HWND box, const KVLB_LIST* list, const KVLB_ITEM* item);
// Brings an item's selection number in line with whether its row is selected: a newly selected
// item is numbered last, an unselected one gives up its number and the later ones move up. True
// when the numbers of other items changed.
bool SyncSelectionNumber(HWND box, KVLB_LIST* list, KVLB_ITEM* item, bool selected);
// Single selection: the selected row's item gets 1 and every other item 0.
void NumberSingleSelection(HWND box, KVLB_LIST* list);
// Selects or unselects a row as the user would, keeping the numbers. False when refused.
bool SelectRow(HWND box, KVLB_LIST* list, int row, bool select);

// Refills the inner list from the display order (rows of numbered items selected again, caret
// and scroll position kept), redraws and notifies LBN_SELCHANGE.
void FillList(HWND container);
// Sorts the display order to `mode`, stores the mode and refills. When memory runs out the
// order and mode stay as they were; the list is refilled all the same.
void SortList(HWND container, int mode);
// Re-sorts to the stored mode when selected items are kept first; otherwise notifies the change.
void AfterSelectionChange(HWND container);
// The sort mode that a click on header button `id` asks for.
int HeaderSortMode(const KVLB_LIST* list, int id);
// Moves the item of row `from` to row `to` (the last row when `to` is out of range); in multiple
// selection the numbers are recounted in display order. Refills.
void MoveShownItem(HWND container, int from, int to);

// --- listbox_messages.cpp ----------------------------------------------------------------------

// List-box messages sent to the container, with identifiers in place of rows.
LRESULT HandleListMessage(HWND container, UINT message, WPARAM wParam, LPARAM lParam);

// --- listbox_paint.cpp -------------------------------------------------------------------------

// Width of the widest and height of the tallest bitmap of the record's array (0 without any).
void BitmapArrayExtent(const KVLB_LIST* list, int* widest, int* tallest);
void DrawListRow(HWND container, KVLB_LIST* list, const DRAWITEMSTRUCT* draw);
void DrawChildButton(HWND container, const KVLB_LIST* list, const DRAWITEMSTRUCT* draw);
// Row height for pictures of the bitmap array: the larger of `defaultHeight` and the tallest
// bitmap (at most a quarter of the list's client height) + 2.
int PictureRowHeight(const KVLB_LIST* list, HWND box, int defaultHeight);
// The sunken frame around the list area.
void PaintFrame(HWND container, HDC dc, const RECT& area);

// --- listbox_input.cpp -------------------------------------------------------------------------

// Clears the process-wide Enter guard (a new list box starts without one).
void ClearEnterGuard();
// Ends a press on the list box, if one is under way, without acting on it.
void CancelPress(HWND box);

// --- listbox_plain.cpp -------------------------------------------------------------------------

// The next row after the caret (every row when there is none) whose data, or its high word,
// equals `key`; -1 when none does.
int FindRowByKey(HWND box, WORD key, bool highWord);
