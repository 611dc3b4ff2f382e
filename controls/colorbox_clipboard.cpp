// The colour box's context menu: copy a cell's colour to the clipboard and paste one from it,
// in the format "szClipBoard_Color" (one COLORREF in movable global memory).
#include "controls/colorbox_internal.h"
#include "core/library.h"
#include <windowsx.h>

namespace {

const int kColourMenu = 1500;

bool clipboardHasColour() {
    return g_colorClipboardFormat && IsClipboardFormatAvailable(g_colorClipboardFormat);
}

bool copyColour(HWND owner, COLORREF colour) {
    if (!g_colorClipboardFormat) return false;
    HGLOBAL data = GlobalAlloc(GMEM_MOVEABLE, sizeof(COLORREF));
    if (!data) return false;
    auto* bytes = static_cast<COLORREF*>(GlobalLock(data));
    *bytes = colour;
    GlobalUnlock(data);
    if (!OpenClipboard(owner)) {
        GlobalFree(data);
        return false;
    }
    EmptyClipboard();
    bool placed = SetClipboardData(g_colorClipboardFormat, data) != nullptr;
    CloseClipboard();
    if (!placed) GlobalFree(data);
    return placed;
}

bool readColour(HWND owner, COLORREF* colour) {
    if (!clipboardHasColour() || !OpenClipboard(owner)) return false;
    bool read = false;
    HANDLE data = GetClipboardData(g_colorClipboardFormat);
    if (data && GlobalSize(data) >= sizeof(COLORREF)) {
        auto* bytes = static_cast<const COLORREF*>(GlobalLock(data));
        if (bytes) {
            *colour = *bytes;
            read = true;
            GlobalUnlock(data);
        }
    }
    CloseClipboard();
    return read;
}

// On the box the pasted colour is chosen; in the popup it becomes the hot cell, in a popup made
// again when the grid grew.
void pasteColour(ColorBoxRecord* record, HWND window) {
    COLORREF colour;
    if (!readColour(window, &colour)) return;
    bool inPopup = window != record->box;
    int countBefore = record->count;
    int index = InsertColour(record, -1, colour);  // a grown grid loses its popup
    if (index < 0) {
        MessageBeep(0);
        return;
    }
    if (!inPopup) {
        ChooseCell(record, index);
    } else if (record->count != countBefore) {
        OpenPopup(record, index);
    } else {
        SetHotCell(record, index);
    }
}

}  // namespace

void ShowColourMenu(ColorBoxRecord* record, HWND window, LPARAM position) {
    bool inPopup = window != record->box;
    POINT at;
    int cell;
    if (position == -1) {  // from the keyboard: below the box, or at the hot cell
        cell = inPopup ? record->hot : record->selected;
        RECT anchor = inPopup && IsCell(*record, cell) ? CellRect(*record, cell) : RECT{};
        if (!inPopup) GetClientRect(window, &anchor);
        at = {anchor.left, anchor.bottom};
        ClientToScreen(window, &at);
    } else {
        at = {GET_X_LPARAM(position), GET_Y_LPARAM(position)};
        POINT inside = at;
        ScreenToClient(window, &inside);
        cell = inPopup ? CellAt(*record, inside) : record->selected;
    }
    HMENU menu = LoadMenuW(g_textModule, MAKEINTRESOURCEW(kColourMenu));
    HMENU items = menu ? GetSubMenu(menu, 0) : nullptr;
    if (!items) {
        if (menu) DestroyMenu(menu);
        return;
    }
    bool canCopy = IsCell(*record, cell) && g_colorClipboardFormat;
    EnableMenuItem(items, KXCB_COMMAND_COPY, MF_BYCOMMAND | (canCopy ? MF_ENABLED : MF_GRAYED));
    EnableMenuItem(items, KXCB_COMMAND_PASTE, MF_BYCOMMAND | (clipboardHasColour() ? MF_ENABLED : MF_GRAYED));
    HWND box = record->box;
    int command = TrackPopupMenu(items, TPM_RETURNCMD | TPM_RIGHTBUTTON, at.x, at.y, 0, window, nullptr);
    DestroyMenu(menu);
    if (BoxRecord(box) != record) return;  // the box went while the menu was open
    if (command == KXCB_COMMAND_COPY && IsCell(*record, cell))
        copyColour(window, record->colours[cell]);
    else if (command == KXCB_COMMAND_PASTE)
        pasteColour(record, window);
    // The menu took the mouse from an open popup.
    if (record->popup && IsWindowVisible(record->popup) && GetFocus() == record->popup)
        SetCapture(record->popup);
}
