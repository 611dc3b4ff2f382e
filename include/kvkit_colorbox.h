// The colour box (class "szColorBoxClass"): a drop-down colour picker. Its face shows the chosen
// colour; the arrow at its right (or the Down key) opens a popup grid of colour cells (class
// "szColorBoxChildClass", a child of the box's parent). The pattern variant offers twelve 8 x 8
// two-colour patterns instead. A right click copies and pastes colours between boxes through
// the clipboard format "szClipBoard_Color" (one COLORREF).
//
//   CreateWindowExW(0, L"szColorBoxClass", L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP |
//                   KXCBS_MORECOLORS, x, y, 120, 22, dialog, (HMENU) id, instance, nullptr);
//   SendMessageW(box, CBM_FINDCOLOR, 0, RGB(255, 0, 0));
//   parent: case KXCBN_CHOSEN: colour = (COLORREF) lParam;  // wParam: the box's control ID
#pragma once
#include "kvkit_api.h"
#include <stddef.h>

// Window styles of the box (its own low style bits).
const DWORD KXCBS_MORECOLORS = 0x0001;  // the popup has a button that opens the colour dialog
const DWORD KXCBS_PATTERN = 0x0002;     // twelve patterns instead of colours

// Messages to the box.
const UINT CBM_SETSEL = WM_USER + 600;        // wParam index; returns wParam
const UINT CBM_GETSEL = WM_USER + 602;        // the selected index, -1 for none
const UINT CBM_FINDCOLOR = WM_USER + 603;     // lParam COLORREF; selects it, returns its index
const UINT CBM_GETCOLOR = WM_USER + 604;      // lParam COLORREF*; the selected index
const UINT CBM_ADDCOLOR = WM_USER + 605;      // lParam COLORREF; returns its index
const UINT CBM_INSERTCOLOR = WM_USER + 606;   // wParam index, lParam COLORREF; returns its index
const UINT CBM_SETPALETTE = WM_USER + 607;    // wParam redraw, lParam HPALETTE; returns 1
const UINT CBM_SETAUTO = WM_USER + 608;       // wParam index, -1 or <= -2, lParam COLORREF
const UINT CBM_SETCOLORS = WM_USER + 609;     // wParam count, lParam COLORREF*; returns 1
const UINT CBM_SETCELLSIZE = WM_USER + 610;   // wParam redraw, LOWORD(lParam) pixels (>= 15)
const UINT CBM_SHOWMORE = WM_USER + 611;      // wParam show; 1 when it changed
// Posted to the parent when the user chooses: wParam the box's control ID, lParam the COLORREF
// (in the pattern variant the pattern's index).
const UINT KXCBN_CHOSEN = WM_USER + 620;

// Control identifiers: the box's arrow button, the popup and the popup's more-colours button.
const int KXCB_ID_ARROW = 150;
const int KXCB_ID_POPUP = 9999;
const int KXCB_ID_MORE = 100;
// Commands of the context menu (menu 1500 of the language module, its first submenu).
const int KXCB_COMMAND_COPY = 100;
const int KXCB_COMMAND_PASTE = 200;

// Record flags.
const WORD KXCB_AUTOCELL = 0x0001;    // cell 0 is the automatic cell spanning the first row
const WORD KXCB_PATTERNS = 0x0002;    // the pattern variant
const WORD KXCB_MOREBUTTON = 0x0004;  // the popup has the more-colours button
const WORD KXCB_CHOOSING = 0x0008;    // the colour dialog is open over the popup

// The state of one box, in the GWL_USERDATA of the box and of its popup. Read-only for hosts.
#pragma pack(push, 1)
struct ColorBoxRecord {
    WORD flags;          // KXCB_*
    BYTE reserved[4];    // zero
    HWND box;
    HWND popup;          // created on first opening, destroyed whenever the grid changes
    int hot;             // the cell marked in the popup, -1 for none
    int selected;        // the chosen cell, -1 for none
    HPALETTE palette;    // realised when painting, or null
    int count;           // cells (12 in the pattern variant)
    COLORREF* colours;   // one per cell, owned (null in the pattern variant)
    int columns;
    int rows;            // without the automatic cell's row
    int cellSize;        // pixels, 20 at first
};
#pragma pack(pop)
static_assert(sizeof(ColorBoxRecord) == 46, "ColorBoxRecord size");
static_assert(offsetof(ColorBoxRecord, flags) == 0, "ColorBoxRecord flags offset");
static_assert(offsetof(ColorBoxRecord, box) == 6, "ColorBoxRecord box offset");
static_assert(offsetof(ColorBoxRecord, popup) == 10, "ColorBoxRecord popup offset");
static_assert(offsetof(ColorBoxRecord, hot) == 14, "ColorBoxRecord hot offset");
static_assert(offsetof(ColorBoxRecord, selected) == 18, "ColorBoxRecord selected offset");
static_assert(offsetof(ColorBoxRecord, palette) == 22, "ColorBoxRecord palette offset");
static_assert(offsetof(ColorBoxRecord, count) == 26, "ColorBoxRecord count offset");
static_assert(offsetof(ColorBoxRecord, colours) == 30, "ColorBoxRecord colours offset");
static_assert(offsetof(ColorBoxRecord, columns) == 34, "ColorBoxRecord columns offset");
static_assert(offsetof(ColorBoxRecord, rows) == 38, "ColorBoxRecord rows offset");
static_assert(offsetof(ColorBoxRecord, cellSize) == 42, "ColorBoxRecord cell size offset");

// The procedures of the two classes.
KVKIT_API LRESULT KVKIT_CALL Kx1ColorWndProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam);
KVKIT_API LRESULT KVKIT_CALL Kx1ColorWndChildProc(HWND popup, UINT message, WPARAM wParam,
                                                  LPARAM lParam);

// A brush of 8 x 8 pattern `pattern` (0..11; any other index gives pattern 0): clear bits in
// `foreground`, set bits in `background` with its channels rotated (the brush shows red = the
// colour's blue, green = its red, blue = its green; greys and white come out as passed). Made
// for `dc`, or for the window's DC when `dc` is null: a DC holding a monochrome bitmap gives a
// black-and-white brush. The caller deletes it. Null on failure.
KVKIT_API HBRUSH KVKIT_CALL KxCreatePatternBrush(HWND window, HDC dc, int pattern,
                                                 COLORREF foreground, COLORREF background);
