// What the colour box's parts share: the record and its grid (colorbox.cpp), the popup
// (colorbox_popup.cpp) and the context menu with the clipboard (colorbox_clipboard.cpp). Internal.
#pragma once
#include "include/kvkit_colorbox.h"

// The record of a box or of its popup; null before creation and after destruction.
ColorBoxRecord* BoxRecord(HWND window);
bool IsPatternBox(const ColorBoxRecord& record);
bool IsCell(const ColorBoxRecord& record, int index);

// --- grid -------------------------------------------------------------------------------------
// The cell's rectangle in the popup's client area (the automatic cell spans the first row).
RECT CellRect(const ColorBoxRecord& record, int index);
// The cell under a point of the popup's client area, -1 for none.
int CellAt(const ColorBoxRecord& record, POINT point);
// Width and height of all cells together.
SIZE GridSize(const ColorBoxRecord& record);
// The hot cell after an arrow key: Left/Right by one, Up/Down by a row, wrapping at the ends.
int MoveHot(const ColorBoxRecord& record, UINT key);
// A brush that paints the cell: its colour, or its pattern light grey on white. Caller deletes.
HBRUSH CellBrush(const ColorBoxRecord& record, HWND window, HDC dc, int index);
// Selects and realises the record's palette, if any; returns the palette to put back.
HPALETTE UsePalette(const ColorBoxRecord& record, HDC dc);

// --- changes ----------------------------------------------------------------------------------
// Adds a colour before `index` (at the end when out of range), or finds it when present.
// Returns its index, -1 when memory runs out. A grid that grows loses its popup.
int InsertColour(ColorBoxRecord* record, int index, COLORREF colour);
// Makes the cell hot and selected, repaints the face and tells the parent.
void ChooseCell(ColorBoxRecord* record, int index);
// ChooseCell, then the focus back to the box (which closes the popup).
void CommitCell(ColorBoxRecord* record, int index);

// --- popup ------------------------------------------------------------------------------------
// Shows the popup (made first when needed) below or above the box, with `hot` as hot cell, and
// gives it the focus. False when it cannot be made.
bool OpenPopup(ColorBoxRecord* record, int hot);
void ClosePopup(ColorBoxRecord* record);
// Marks a cell as hot, moving the caret when the popup has the focus.
void SetHotCell(ColorBoxRecord* record, int cell);

// --- context menu -----------------------------------------------------------------------------
// The copy and paste menu for the box or its popup, at a WM_CONTEXTMENU position.
void ShowColourMenu(ColorBoxRecord* record, HWND window, LPARAM position);
