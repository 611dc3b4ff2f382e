// The colour box's popup: a bordered child of the box's parent with the grid of cells and, if
// asked for, a more-colours button that opens the system colour dialog. While open it holds the
// mouse capture and the focus; a frame-shaped caret marks the hot cell.
#include "controls/colorbox_internal.h"
#include <commdlg.h>
#include <windowsx.h>

namespace {

const wchar_t kPopupClass[] = L"szColorBoxChildClass";
const wchar_t kMoreCaption[] = L">>.&..";
const wchar_t kCaretProperty[] = L"Caret";
const int kCaretFrame = 2;
const int kSwatchInset = 3;
// Posted when the more-colours button loses the focus: the popup closes unless the focus is
// back in it.
const UINT kCheckFocus = WM_USER + 650;

HWND moreButton(HWND popup) { return GetDlgItem(popup, KXCB_ID_MORE); }

SIZE popupSize(const ColorBoxRecord& record) {
    SIZE size = GridSize(record);
    size.cx += 2;
    size.cy += 2;
    if (record.flags & KXCB_MOREBUTTON) size.cy += 3 + record.cellSize;
    return size;
}

HWND createPopup(ColorBoxRecord* record) {
    HWND parent = GetParent(record->box);
    auto instance = reinterpret_cast<HINSTANCE>(GetWindowLongPtrW(parent, GWLP_HINSTANCE));
    SIZE size = popupSize(*record);
    HWND popup = CreateWindowExW(0, kPopupClass, L"", WS_CHILD | WS_BORDER, 0, 0, size.cx, size.cy,
                                 parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(KXCB_ID_POPUP)),
                                 instance, record);
    if (!popup) return nullptr;
    if (record->flags & KXCB_MOREBUTTON) {
        // Without its button the popup still picks colours.
        int cell = record->cellSize;
        HWND more = CreateWindowExW(0, L"button", kMoreCaption, WS_CHILD | WS_VISIBLE | BS_NOTIFY, 3,
                                    size.cy - cell - 3, size.cx - 7, cell, popup,
                                    reinterpret_cast<HMENU>(static_cast<INT_PTR>(KXCB_ID_MORE)),
                                    instance, nullptr);
        if (more) SendMessageW(more, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(ANSI_VAR_FONT)), FALSE);
    }
    record->popup = popup;
    return popup;
}

// Below the box, right edges aligned, or above it when there is no room below; kept within the
// screen and the parent's client area.
void placePopup(const ColorBoxRecord& record, HWND popup) {
    HWND parent = GetParent(record.box);
    SIZE size = popupSize(record);
    RECT box, area;
    GetWindowRect(record.box, &box);
    GetClientRect(parent, &area);
    MapWindowPoints(parent, nullptr, reinterpret_cast<POINT*>(&area), 2);
    int limitRight = GetSystemMetrics(SM_CXSCREEN), limitBottom = GetSystemMetrics(SM_CYSCREEN);
    if (area.right < limitRight) limitRight = area.right;
    if (area.bottom < limitBottom) limitBottom = area.bottom;
    POINT at = {box.right - size.cx, box.bottom};
    if (at.x < area.left) at.x = area.left;
    if (box.right > limitRight) at.x = limitRight - size.cx;
    if (at.y + size.cy > limitBottom) {
        at.y = box.top - size.cy;
        if (at.y < area.top) at.y = area.top;
    }
    ScreenToClient(parent, &at);
    SetWindowPos(popup, HWND_TOP, at.x, at.y, size.cx, size.cy, SWP_NOACTIVATE);
}

// --- caret ------------------------------------------------------------------------------------

// A cell-sized frame: the caret inverts only the cell's border, so its colour stays visible.
HBITMAP caretShape(int size) {
    HBITMAP shape = CreateBitmap(size, size, 1, 1, nullptr);
    HDC dc = CreateCompatibleDC(nullptr);
    if (!shape || !dc) {
        if (shape) DeleteObject(shape);
        if (dc) DeleteDC(dc);
        return nullptr;
    }
    HGDIOBJ previous = SelectObject(dc, shape);
    PatBlt(dc, 0, 0, size, size, BLACKNESS);
    RECT frame = {0, 0, size, size};
    for (int i = 0; i < kCaretFrame; ++i) {
        FrameRect(dc, &frame, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
        InflateRect(&frame, -1, -1);
    }
    SelectObject(dc, previous);
    DeleteDC(dc);
    return shape;
}

void moveCaret(const ColorBoxRecord& record) {
    int away = -2 * record.cellSize;  // no hot cell: out of sight
    RECT cell = IsCell(record, record.hot) ? CellRect(record, record.hot) : RECT{away, away, 0, 0};
    SetCaretPos(cell.left, cell.top);
}

void createCaret(const ColorBoxRecord& record, HWND popup) {
    HBITMAP shape = caretShape(record.cellSize);
    if (!shape) return;
    if (!CreateCaret(popup, shape, 0, 0)) {
        DeleteObject(shape);
        return;
    }
    SetPropW(popup, kCaretProperty, shape);  // the caret needs its shape while it lives
    moveCaret(record);
    ShowCaret(popup);
}

void destroyCaret(HWND popup) {
    auto shape = static_cast<HBITMAP>(RemovePropW(popup, kCaretProperty));
    if (!shape) return;
    DestroyCaret();
    DeleteObject(shape);
}

// --- painting ---------------------------------------------------------------------------------

void paintCells(const ColorBoxRecord& record, HWND popup, HDC dc) {
    int saved = SaveDC(dc);
    HPALETTE previousPalette = UsePalette(record, dc);
    HWND more = moreButton(popup);
    if (more) {  // the button paints itself
        RECT button;
        GetWindowRect(more, &button);
        MapWindowPoints(nullptr, popup, reinterpret_cast<POINT*>(&button), 2);
        ExcludeClipRect(dc, button.left, button.top, button.right, button.bottom);
    }
    RECT client;
    GetClientRect(popup, &client);
    FillRect(dc, &client, GetSysColorBrush(COLOR_BTNFACE));
    for (int i = 0; i < record.count; ++i) {
        RECT cell = CellRect(record, i);
        if (i == record.selected) DrawEdge(dc, &cell, EDGE_SUNKEN, BF_RECT);
        RECT swatch = cell;
        InflateRect(&swatch, -kSwatchInset, -kSwatchInset);
        HBRUSH brush = CellBrush(record, popup, dc, i);
        FillRect(dc, &swatch, brush);
        DeleteObject(brush);
        FrameRect(dc, &swatch, GetSysColorBrush(COLOR_BTNSHADOW));
    }
    if (previousPalette) SelectPalette(dc, previousPalette, FALSE);
    RestoreDC(dc, saved);
}

void onPaint(const ColorBoxRecord& record, HWND popup) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(popup, &paint);
    paintCells(record, popup, dc);
    EndPaint(popup, &paint);
}

// --- more colours -----------------------------------------------------------------------------

void chooseMoreColours(ColorBoxRecord* record, HWND popup) {
    COLORREF custom[16];
    for (COLORREF& colour : custom) colour = RGB(255, 255, 255);
    CHOOSECOLORW choice = {};
    choice.lStructSize = sizeof(choice);
    choice.hwndOwner = GetAncestor(record->box, GA_ROOT);
    choice.rgbResult = IsCell(*record, record->hot) ? record->colours[record->hot] : 0;
    choice.lpCustColors = custom;
    choice.Flags = CC_RGBINIT | CC_FULLOPEN;
    HWND box = record->box;
    record->flags |= KXCB_CHOOSING;
    BOOL chosen = ChooseColorW(&choice);
    if (BoxRecord(box) != record) return;  // the box went while the dialog was open
    record->flags &= ~KXCB_CHOOSING;
    if (!chosen) {
        SetFocus(popup);
        SetCapture(popup);
        return;
    }
    ShowWindow(popup, SW_HIDE);
    int index = InsertColour(record, -1, choice.rgbResult);  // may destroy the popup
    if (index < 0) {
        MessageBeep(0);
        SetFocus(box);
        return;
    }
    CommitCell(record, index);
}

// --- input ------------------------------------------------------------------------------------

bool keepsOpen(const ColorBoxRecord& record, HWND popup, HWND focus) {
    return focus == popup || (focus && focus == moreButton(popup)) || (record.flags & KXCB_CHOOSING);
}

// A click away from the popup closes it and focuses what was clicked, or the box when that is
// not a window of this thread.
void leavePopup(ColorBoxRecord* record, HWND popup, POINT point) {
    ReleaseCapture();
    ClientToScreen(popup, &point);
    HWND target = WindowFromPoint(point);
    if (!target || GetWindowThreadProcessId(target, nullptr) != GetCurrentThreadId()) target = record->box;
    SetFocus(target);
    if (GetFocus() == popup) SetFocus(record->box);
}

void onButtonDown(ColorBoxRecord* record, HWND popup, WPARAM keys, LPARAM lParam) {
    POINT point = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    RECT client;
    GetClientRect(popup, &client);
    if (!PtInRect(&client, point)) {
        leavePopup(record, popup, point);
        return;
    }
    HWND more = moreButton(popup);
    if (more && ChildWindowFromPoint(popup, point) == more) {
        // The button takes the focus and the capture and reports its click.
        ReleaseCapture();
        MapWindowPoints(popup, more, &point, 1);
        SendMessageW(more, WM_LBUTTONDOWN, keys, MAKELPARAM(point.x, point.y));
        return;
    }
    int cell = CellAt(*record, point);
    if (cell >= 0) SetHotCell(record, cell);
}

// The press can slide to another cell; the release chooses the cell under it.
void onMouseMove(ColorBoxRecord* record, WPARAM keys, LPARAM lParam) {
    if (!(keys & MK_LBUTTON)) return;
    POINT point = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    int cell = CellAt(*record, point);
    if (cell >= 0 && cell != record->hot) SetHotCell(record, cell);
}

void onButtonUp(ColorBoxRecord* record, LPARAM lParam) {
    POINT point = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    int cell = CellAt(*record, point);
    if (cell >= 0) CommitCell(record, cell);
}

void onKey(ColorBoxRecord* record, HWND popup, WPARAM key) {
    switch (key) {
    case VK_LEFT:
    case VK_RIGHT:
    case VK_UP:
    case VK_DOWN:
        SetHotCell(record, MoveHot(*record, static_cast<UINT>(key)));
        break;
    case VK_RETURN:
    case VK_SPACE:
        if (IsCell(*record, record->hot))
            CommitCell(record, record->hot);
        else
            SetFocus(record->box);
        break;
    case VK_ESCAPE:
        SetFocus(record->box);
        break;
    case VK_TAB: {
        bool backwards = GetKeyState(VK_SHIFT) < 0;
        HWND next = GetNextDlgTabItem(GetParent(record->box), record->box, backwards);
        SetFocus(next ? next : record->box);
        break;
    }
    }
}

void onShow(const ColorBoxRecord& record, HWND popup, bool shown) {
    HWND arrow = GetDlgItem(record.box, KXCB_ID_ARROW);
    if (shown) {
        SetCapture(popup);
    } else if (GetCapture() == popup) {
        ReleaseCapture();
    }
    if (arrow) EnableWindow(arrow, !shown);
}

void onDestroy(ColorBoxRecord* record, HWND popup) {
    destroyCaret(popup);
    if (record->popup == popup) record->popup = nullptr;
    if (GetCapture() == popup) ReleaseCapture();
    HWND arrow = GetDlgItem(record->box, KXCB_ID_ARROW);
    if (arrow) EnableWindow(arrow, TRUE);
    SetWindowLongPtrW(popup, GWLP_USERDATA, 0);
}

}  // namespace

bool OpenPopup(ColorBoxRecord* record, int hot) {
    HWND popup = record->popup ? record->popup : createPopup(record);
    if (!popup) {
        MessageBeep(0);
        return false;
    }
    placePopup(*record, popup);
    record->hot = hot;
    ShowWindow(popup, SW_SHOW);
    SetFocus(popup);
    return true;
}

void SetHotCell(ColorBoxRecord* record, int cell) {
    record->hot = cell;
    if (record->popup && GetFocus() == record->popup) moveCaret(*record);
}

void ClosePopup(ColorBoxRecord* record) {
    SetFocus(record->box);
    if (record->popup) ShowWindow(record->popup, SW_HIDE);
}

LRESULT KVKIT_CALL Kx1ColorWndChildProc(HWND popup, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE && lParam) {
        auto* create = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        SetWindowLongPtrW(popup, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(create->lpCreateParams));
    }
    ColorBoxRecord* record = BoxRecord(popup);
    if (!record) return DefWindowProcW(popup, message, wParam, lParam);
    switch (message) {
    case WM_PAINT:
        onPaint(*record, popup);
        return 0;
    case WM_PRINTCLIENT:
        paintCells(*record, popup, reinterpret_cast<HDC>(wParam));
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SHOWWINDOW:
        onShow(*record, popup, wParam != 0);
        break;
    case WM_SETFOCUS:
        createCaret(*record, popup);
        return 0;
    case WM_KILLFOCUS:
        destroyCaret(popup);
        if (!keepsOpen(*record, popup, reinterpret_cast<HWND>(wParam))) ShowWindow(popup, SW_HIDE);
        return 0;
    case kCheckFocus:
        if (!keepsOpen(*record, popup, GetFocus())) ShowWindow(popup, SW_HIDE);
        return 0;
    case WM_GETDLGCODE:
        return DLGC_WANTALLKEYS;
    case WM_KEYDOWN:
        onKey(record, popup, wParam);
        return 0;
    case WM_SYSCHAR:
        if (wParam != '.' || !moreButton(popup)) break;
        SendMessageW(moreButton(popup), BM_CLICK, 0, 0);  // the button's mnemonic
        return 0;
    case WM_LBUTTONDOWN:
        onButtonDown(record, popup, wParam, lParam);
        return 0;
    case WM_MOUSEMOVE:
        onMouseMove(record, wParam, lParam);
        return 0;
    case WM_LBUTTONUP:
        onButtonUp(record, lParam);
        return 0;
    case WM_COMMAND:
        if (LOWORD(wParam) != KXCB_ID_MORE) break;
        if (HIWORD(wParam) == BN_CLICKED) chooseMoreColours(record, popup);
        if (HIWORD(wParam) == BN_KILLFOCUS) PostMessageW(popup, kCheckFocus, 0, 0);
        return 0;
    case WM_CONTEXTMENU:
        if (!IsPatternBox(*record)) ShowColourMenu(record, popup, lParam);
        return 0;
    case WM_DESTROY:
        onDestroy(record, popup);
        return 0;
    }
    return DefWindowProcW(popup, message, wParam, lParam);
}
