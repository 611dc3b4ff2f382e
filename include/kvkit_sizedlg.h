// Resizable dialogs: a layout engine driven from the dialog procedure. It records the design size
// of a dialog and of its children, moves and stretches the children by per-child flags whenever
// the dialog is resized, keeps the dialog from shrinking below its design size, and stores the
// dialog's placement in the registry under a name chosen by the caller.
//
//   WM_INITDIALOG: KxSizeDlgStart(dialog, count, attributes, grip); KxSizeDlgLoad(dialog, name)
//   WM_SIZING:     return KxSizingDlg(dialog, wParam, lParam)
//   WM_SIZE:       KxSizeDlg(dialog, wParam, lParam)
//   closing:       KxSizeDlgSave(dialog, name); KxSizeDlgEnd(dialog)
#pragma once
#include "kvkit_api.h"
#include <stddef.h>

// Layout flags of a child.
const unsigned long KXSIZE_MOVE_LEFT = 0x001;      // left edge moves by left x growthX / 100
const unsigned long KXSIZE_MOVE_TOP = 0x002;       // top edge moves by top x growthY / 100
const unsigned long KXSIZE_SIZE_RIGHT = 0x004;     // right edge grows with the dialog
const unsigned long KXSIZE_SIZE_BOTTOM = 0x008;    // bottom edge grows with the dialog
const unsigned long KXSIZE_ANCHOR_RIGHT = 0x010;   // keeps its distance to the right client edge
const unsigned long KXSIZE_ANCHOR_BOTTOM = 0x020;  // keeps its distance to the bottom client edge
const unsigned long KXSIZE_CENTER_H = 0x040;       // centred horizontally in the parent
const unsigned long KXSIZE_CENTER_V = 0x080;       // centred vertically in the parent
const unsigned long KXSIZE_KEEP_HEIGHT = 0x100;    // keeps its current height
const unsigned long KXSIZE_KEEP_WIDTH = 0x200;     // keeps its current width

// Common combinations.
const unsigned long KXSIZE_SCALE = 0x0F;          // scales on both axes
const unsigned long KXSIZE_SCALE_WIDTH = 0x07;    // scales horizontally, moves down, same height
const unsigned long KXSIZE_MOVE = 0x03;           // moves proportionally, same size
const unsigned long KXSIZE_BOTTOM_RIGHT = 0x33;   // pinned to the lower right corner

// The caller's override of one control's layout flags. Flags 0 leave the control to the
// defaults (IDOK and IDCANCEL pinned to the lower right corner, then by class and style).
#pragma pack(push, 1)
struct KXSIZE_ATTR {
    int id;               // dialog control identifier
    unsigned long flags;  // KXSIZE_* bits; 0 = no override
};
#pragma pack(pop)
static_assert(sizeof(KXSIZE_ATTR) == 8, "KXSIZE_ATTR size");
static_assert(offsetof(KXSIZE_ATTR, id) == 0, "KXSIZE_ATTR id offset");
static_assert(offsetof(KXSIZE_ATTR, flags) == 4, "KXSIZE_ATTR flags offset");

// Registers the dialog with its current size as design size and every direct child with its
// resolved flags; `attributes` (count entries, copied) override the flags by control identifier.
// A non-zero `grip` adds a size grip (control 39999) in the lower right corner. Returns 1.
KVKIT_API int KVKIT_CALL KxSizeDlgStart(HWND dialog, int count, const KXSIZE_ATTR* attributes,
                                        int grip);
// The layout pass, for WM_SIZE (both arguments are ignored). A dialog smaller than its design
// size on either axis is set back to its design window size. 0 if the dialog is not registered.
KVKIT_API int KVKIT_CALL KxSizeDlg(HWND dialog, UINT wParam, LPARAM lParam);
// For WM_SIZING: widens and heightens the dragged RECT* in lParam to at least the design window
// size, moving only its right and bottom edges. 0 if not registered or lParam is null.
KVKIT_API int KVKIT_CALL KxSizingDlg(HWND dialog, UINT edge, LPARAM lParam);
// Removes the dialog from the engine and releases the grip bitmap and records of the record left
// in its slot: its own when it was the last one registered, otherwise those of the dialog started
// after it, which stays registered with nothing to lay out. End dialogs in the reverse order of
// starting them. 0 if not registered.
KVKIT_API int KVKIT_CALL KxSizeDlgEnd(HWND dialog);
// Applies the placement stored under `name` (a DS_CENTER dialog is centred on the monitor of
// the session's main window, keeping the stored size). 1 if a placement was applied.
KVKIT_API int KVKIT_CALL KxSizeDlgLoad(HWND dialog, const wchar_t* name);
// Stores the dialog's placement under `name`. 1 if it was written.
KVKIT_API int KVKIT_CALL KxSizeDlgSave(HWND dialog, const wchar_t* name);
// Registers one more child (flags 0 = resolve them). With refId >= 0 the child takes the page
// area of the tab control with that identifier as its design rectangle and sits out the next
// layout pass. With refId < 0 a child whose identifier is already registered only replaces that
// record's window (the control was re-created). 0 if the dialog is not registered.
KVKIT_API int KVKIT_CALL KxSizeAddWindow(HWND dialog, HWND child, long flags, int refId);
// Registers `window` itself (addSelf, against refId) and/or its direct children (addChildren)
// with the record of `window` or else of its parent. 0 if neither is registered.
KVKIT_API int KVKIT_CALL Kx1SizeDlgAddChilds(HWND window, int addSelf, int addChildren, int refId);
// Forgets the direct children of `window` (not `window` itself), from the record of `window` or
// else of its parent. 0 if neither is registered.
KVKIT_API int KVKIT_CALL Kx1SizeDlgRemoveChilds(HWND window);
// Rebases the design rectangle of control `id` after the caller moved or resized it, scaling its
// current rectangle back to the design size. 0 if the dialog is not registered, the control is
// not a direct child or the dialog has no client area; otherwise 1.
KVKIT_API int KVKIT_CALL KxSizeChildUpdate(HWND dialog, int id);
