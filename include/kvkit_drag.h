// Dragging with the mouse, in three kinds that share one rule: one drag of a kind at a time per
// process, its state kept by the library until the drag ends.
// - List rows and tree items: handlers that the host calls from the parent window's messages
//   move a row or an item within its control, or report the window (and the row or item) that it
//   was dropped on.
// - Rectangle image: a dimmed photograph of part of a window follows the mouse over the window,
//   drawn with a save-under so that the window need not repaint meanwhile.
// - Application-wide: a hidden window carries a drag to any window, which is asked whether it
//   accepts (message KVDD_QUERY) and receives the drop (KVDD_DROP); the window that started the
//   drag learns how it ended (KVDD_ENDED or KVDD_DROPPED).
#pragma once
#include "kvkit_api.h"
#include <commctrl.h>
#include <stddef.h>

// --- list rows and tree items -----------------------------------------------------------------
//
// The host's parent window forwards (the begin handler captures the mouse to it):
//   LVN_BEGINDRAG / TVN_BEGINDRAGW        a begin handler
//   WM_MOUSEMOVE (x, y of the parent)      the matching mouse-move handler
//   WM_LBUTTONUP                           a button-up handler, which ends the drag
//   WM_TIMER with id 0                     KxTreeView_OnTimer (the plain tree drag's scrolling)
//   Escape (LVN_KEYDOWN / TVN_KEYDOWN) and WM_CAPTURECHANGED    the cancel handler
// The plain handlers move a row or an item within its control; the Ex handlers report where it
// was dropped. While a tree item is dragged, tree copy, move and search by value refuse to work.
// Each handler does nothing (or answers as described) when no drag of its kind is under way.

// Begins dragging the notification's row: selects it and shows the list's drag image of it.
KVKIT_API void KVKIT_CALL KxListView_OnBeginDrag(HWND listView, NMLISTVIEW* notify);
// Moves the image to (x, y) of `window` and takes the row there, if any, as the drop target.
KVKIT_API void KVKIT_CALL KxListView_OnMouseMove(HWND window, HWND listView, int x, int y);
// Ends the drag and moves the dragged row (its cells, images, value and state) to the target
// row's index, selecting the row there. Returns that index, or -1 (0xFFFFFFFF) when no drag is
// under way, there is no target or the target is the row itself. Dropped below its old place,
// the row lands just above the target row, which keeps the returned index.
KVKIT_API UINT KVKIT_CALL KxListView_OnLButtonUp(HWND window, HWND listView, int x, int y);
// Begins dragging the notification's row towards another window; (x, y) of the mouse handlers
// below are client coordinates of the list's parent.
KVKIT_API void KVKIT_CALL KxListView_OnBeginDragEx(HWND listView, NMLISTVIEW* notify);
// Moves the drag image to (x, y) of `window`; the second argument is not used.
KVKIT_API void KVKIT_CALL KxListView_OnMouseMoveEx(HWND window, HWND unused, int x, int y);
// Ends the Ex drag at (x, y) of `window`. Dropped on a tree view: 1, the tree in *dropWindow
// and the item under the point (or null) in *dropItem. On any other window but `window`: 0,
// that window in *dropWindow, null in *dropItem. On `window` itself or nowhere: 0, null in both.
// 0 and nothing stored when no drag is under way or `dropWindow` is null.
KVKIT_API int KVKIT_CALL KxListView_OnLButtonUpEx(HWND window, int x, int y, HWND* dropWindow,
                                                  HTREEITEM* dropItem);
// Ends a list drag of either kind without moving or reporting anything (Escape, lost capture).
// 1 when a drag was under way, else 0.
KVKIT_API int KVKIT_CALL KxListView_OnCancelDrag(HWND listView);

// The cell under the mouse cursor: *row and *column (both -1 first). 1 when the cursor is on an
// item's icon, label or state icon, else 0.
KVKIT_API int KVKIT_CALL KxListView_HitTest(HWND listView, int* row, int* column);
// A click on a cell: the cell given in *row and *column when both are 0 or more (taken as a
// click on its icon), else the cell under the cursor. With `toggle` set, a click on the icon of
// one of the first `count` columns of `columns` swaps the cell's image between `imageA` and
// `imageB` (any other image stays, with a beep). The cell goes to *row and *column. Returns 1,
// or 0 when no cell is found.
KVKIT_API int KVKIT_CALL KxListView_HandleMouseClick(HWND listView, int toggle, int count,
                                                     const int* columns, int imageA, int imageB,
                                                     int* row, int* column);

// Begins dragging the notification's item within the tree: makes it the caret item, shows its
// drag image and starts timer 0 of the tree's parent (75 ms) for KxTreeView_OnTimer.
KVKIT_API void KVKIT_CALL KxTreeView_OnBeginDrag(HWND tree, NMTREEVIEWW* notify);
// Moves the image to (x, y) of `window`; the item there becomes the drop target, highlighted.
KVKIT_API void KVKIT_CALL KxTreeView_OnMouseMove(HWND window, HWND tree, int x, int y);
// Scrolls the tree by a line while the cursor is more than 10 pixels above or below it, and
// makes a new item under the cursor the target (shown, its parents expanded).
KVKIT_API void KVKIT_CALL KxTreeView_OnTimer(HWND tree);
// Ends the drag and moves the item (without its children, which go with the old item) to the top
// level after the target: first when the cursor is within 10 pixels of the tree's top, last
// when within 10 pixels of its bottom or when the target is the last of its siblings.
KVKIT_API void KVKIT_CALL KxTreeView_OnLButtonUp(HWND tree);
// Ends the drag; with `move`, moves the item (without its children) to the top level before the
// target.
KVKIT_API void KVKIT_CALL KxTreeView_OnLButtonUpWithMove(HWND tree, int move);
// As KxTreeView_OnLButtonUpWithMove; the moved item and its insert-after position (the
// target's previous sibling, or TVI_FIRST) go to *newItem and *insertAfter when asked. Nothing
// is stored when nothing moves.
KVKIT_API void KVKIT_CALL KxTreeView_OnLButtonUpWithMoveEx(HWND tree, int move,
                                                           HTREEITEM* newItem,
                                                           HTREEITEM* insertAfter);
// Ends the drag and moves the item with its children under the target when the cursor is 3 or
// more pixels from the tree's left edge, else to the top level after the target's previous
// sibling. An item dropped on itself at the left edge goes to the top level; dropped on itself
// elsewhere, on its own subtree or on no item, it stays. The moved item, its new parent
// (TVI_ROOT for the top level) and insert-after position go to the pointers given; nothing is
// stored when nothing moves.
KVKIT_API void KVKIT_CALL KxTreeView_OnLButtonUpMoveUnder(HWND tree, HTREEITEM* newItem,
                                                          HTREEITEM* newParent,
                                                          HTREEITEM* insertAfter);
#ifdef __cplusplus
// The second form of KxTreeView_OnLButtonUpWithMoveEx: KxTreeView_OnLButtonUpMoveUnder.
inline void KxTreeView_OnLButtonUpWithMoveEx(HWND tree, HTREEITEM* newItem, HTREEITEM* newParent,
                                             HTREEITEM* insertAfter) {
    KxTreeView_OnLButtonUpMoveUnder(tree, newItem, newParent, insertAfter);
}
#endif
// Begins dragging the notification's item towards another window; (x, y) of the mouse handlers
// below are client coordinates of the tree's parent.
KVKIT_API void KVKIT_CALL KxTreeView_OnBeginDragEx(HWND tree, NMTREEVIEWW* notify);
// Moves the drag image to (x, y) of `window`; the second argument is not used.
KVKIT_API void KVKIT_CALL KxTreeView_OnMouseMoveEx(HWND window, HWND unused, int x, int y);
// Ends the Ex drag at (x, y) of `window`. Dropped on a list view: 1, with the row under the
// point (-1: none) in *dropRow and *dropWindow untouched. On any other window but `window`: 1,
// that window in *dropWindow. On `window` itself or nowhere: 0, `window` in *dropWindow and -1
// in *dropRow. 0 and nothing stored when no drag is under way or `dropWindow` is null.
KVKIT_API int KVKIT_CALL KxTreeView_OnLButtonUpEx(HWND window, int x, int y, HWND* dropWindow,
                                                  int* dropRow);
// Ends a tree drag of either kind without moving or reporting anything (Escape, lost capture).
// 1 when a drag was under way, else 0.
KVKIT_API int KVKIT_CALL KxTreeView_OnCancelDrag(HWND tree);

// --- rectangle image --------------------------------------------------------------------------
//
// One drag at a time; (x, y) are client coordinates of the window. The host calls the begin
// function when the drag starts, the move function on every mouse move and the end function on
// release; stop and resume hide the image around a repaint of the window.

// Captures the mouse and photographs the rectangle of the window's client area, dimmed by a
// one-pixel checkerboard (every other pixel's channels ANDed with 0x7D). Nothing is drawn yet.
KVKIT_API void KVKIT_CALL Kx1BeginDrag(HWND window, RECT* rect);
// Moves the image by the mouse's movement since the last call, which puts its top-left corner at
// (x, y) (the first call measures from the rectangle's corner), and restores what it uncovered.
// The first move leaves a copy of the dimmed photograph where the drag began.
KVKIT_API void KVKIT_CALL Kx1Drag(HWND window, int x, int y);
// Makes the last move, releases the capture and moves the image back inside the client area if
// it stands out of it. The image's final rectangle goes to *result when asked. The image stays
// drawn: repainting the window is the host's affair.
KVKIT_API void KVKIT_CALL Kx1EndDrag(HWND window, int x, int y, RECT* result);
// Takes the image off the window (restoring what it covered) and updates the window, keeping
// the drag. 1, or 0 when no drag is under way.
KVKIT_API int KVKIT_CALL Kx1StopDrag(HWND window, int unused1, int unused2, int unused3);
// After Kx1StopDrag and a repaint: updates the window and continues the drag with the image at
// (x, y), where the next Kx1Drag draws it. 1, or 0 when no drag is under way.
KVKIT_API int KVKIT_CALL Kx1ResumeDrag(HWND window, int x, int y, int unused);

// --- application-wide drag --------------------------------------------------------------------

// What is dragged; the values are the host's own and carried through unchanged.
typedef long KVDDFormat;

// Messages of the application-wide drag: the fixed numbers 2004 to 2008, which hosts of
// the suite use as they stand.
enum {
    // Sent to the window under the cursor on every mouse move. wParam: int* answer (0 on
    // entry), set non-zero to accept a drop; lParam: KVDDMESSAGE*.
    KVDD_QUERY = 2004,
    // Sent to that window when the button is released over it after it accepted. wParam: int*
    // answer (0 on entry), left 0 when the drop was taken; lParam: KVDDMESSAGE*.
    KVDD_DROP = 2005,
    // Posted to the owner when the drag ended without a completed drop (refused, cancelled, or
    // the target answered non-zero). wParam: the format; lParam: the user value.
    KVDD_ENDED = 2006,
    // Posted to the owner when the drop was delivered and the target left its answer 0.
    KVDD_DROPPED = 2007,
    // Posted by the drag window to itself to end the drag (internal).
    KVDD_FINISH = 2008,
};

// Options of Kx1StartGlobalDragAndDrop.
enum {
    KVDD_ROOT_ONLY = 0x01,        // only windows whose top-level ancestor is `root` may accept
    KVDD_NO_NOTIFY = 0x02,        // the owner receives neither KVDD_ENDED nor KVDD_DROPPED
    KVDD_RESTORE_CAPTURE = 0x04,  // the capture goes back to its previous holder at the end
    KVDD_RESTORE_FOCUS = 0x08,    // the focus goes back to its previous holder at the end
};

// Results of Kx1StartGlobalDragAndDrop.
enum {
    KVDD_STARTED = 0,
    KVDD_ALREADY_ACTIVE = 1,  // nothing changed
    KVDD_NO_WINDOW = 2,       // the drag window could not be created
    KVDD_NO_PROCEDURE = 3,    // its window procedure could not be installed
    KVDD_NO_MEMORY = 4,       // its record could not be allocated
};

// What targets receive with KVDD_QUERY and KVDD_DROP.
#pragma pack(push, 1)
struct KVDDMESSAGE {
    DWORD size;         // 28
    HWND owner;         // the window that started the drag
    HWND root;          // the root window given at the start, or null
    int x, y;           // the cursor, in screen coordinates
    KVDDFormat format;  // as given at the start
    void* user;         // as given at the start
};
#pragma pack(pop)
static_assert(sizeof(KVDDMESSAGE) == 28, "KVDDMESSAGE size");
static_assert(offsetof(KVDDMESSAGE, owner) == 4, "KVDDMESSAGE owner offset");
static_assert(offsetof(KVDDMESSAGE, root) == 8, "KVDDMESSAGE root offset");
static_assert(offsetof(KVDDMESSAGE, x) == 12, "KVDDMESSAGE x offset");
static_assert(offsetof(KVDDMESSAGE, y) == 16, "KVDDMESSAGE y offset");
static_assert(offsetof(KVDDMESSAGE, format) == 20, "KVDDMESSAGE format offset");
static_assert(offsetof(KVDDMESSAGE, user) == 24, "KVDDMESSAGE user offset");

// Starts a drag owned by `owner`: a hidden window takes the capture and the focus, asks each
// window under the cursor with KVDD_QUERY, shows `acceptCursor` over one that accepts and
// `refuseCursor` elsewhere (null: the system hand and "no" cursors; the caller's cursors are
// destroyed when the drag ends), delivers KVDD_DROP on release, and tells the owner how it
// ended. Escape, a lost capture or a lost focus cancel it. Returns a KVDD_ result code.
KVKIT_API int KVKIT_CALL Kx1StartGlobalDragAndDrop(long options, KVDDFormat format, HWND owner,
                                                   HWND root, HICON acceptCursor,
                                                   HICON refuseCursor, void* user);
// Ends the active drag (the owner receives KVDD_ENDED unless it was told already); the next drag
// may start at once. A non-zero `cancel` also makes the refuse cursor count as the caller's, to be
// destroyed with the drag. Returns 0; the window argument is not used.
KVKIT_API int KVKIT_CALL Kx1StopGlobalDragAndDrop(HWND unused, int cancel);
// 1 when a drag is active and `owner` started it, else 0.
KVKIT_API int KVKIT_CALL Kx1IsActiveGlobalDragAndDrop(HWND owner);
// The window's top-level ancestor, following GetParent (which names the owner of a popup); null
// for null.
KVKIT_API HWND KVKIT_CALL Kx1GetAppRoot(HWND window);
