// Tree printing: a tree view printed as an indented outline, one item per line, over as many
// pages as it takes. Each line shows what the tree shows of the item: its check box (the state
// image), its icon with its mark (the overlay image) and its text, bold for bold items. Every page
// carries the title at the top and the page number ("Page %d of %d", text 17120 of the language
// module, the first %d the page and the second the page count) at the bottom.
#pragma once
#include "kvkit_api.h"
#include <commctrl.h>

// Flags of KxTreeView_Print.
const int KXTREEPRINT_ALLITEMS = 0x1;  // also the items below collapsed ones

// Prints the items from `start` with its subtree (null: the whole tree), only those that the
// expanded items show unless KXTREEPRINT_ALLITEMS is given. `dc` is where the pages go:
// - a printer device context: the document is started, paged and ended here;
// - an enhanced-metafile device context (for a preview, or a file): the pages follow one another
//   in the metafile, each one a group of records between the public GDI comments
//   GDICOMMENT_BEGINGROUP (bounds: the page, description: its page number text) and
//   GDICOMMENT_ENDGROUP;
// - null: the system print dialog asks for the printer, owned by the tree's top-level window.
// Pages are laid out on the device's printable area with half-inch margins, text in 10 points
// of the tree's font face. `title` (may be null: no title line) also names the print job.
// Returns the number of pages printed; 0 for a window that is no tree view, a tree without
// items to print, a cancelled print dialog, no memory, or a device that refuses a page (the
// print job is then aborted).
KVKIT_API int KVKIT_CALL KxTreeView_Print(HWND tree, HDC dc, HTREEITEM start,
                                          const wchar_t* title, int flags);
