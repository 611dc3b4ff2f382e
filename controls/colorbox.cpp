// The colour box: its record and grid, the CBM_* messages, the face with its arrow button, and
// the pattern brushes of the pattern variant.
#include "controls/colorbox_internal.h"
#include "controls/buttonface.h"
#include "core/library.h"
#include "include/kvkit_bitmap.h"
#include <string.h>
#include "kvtext.h"

namespace {

const COLORREF kDefaultColours[] = {
    0xFFFFFF, 0xFFFF00, 0xFF00FF, 0xFF0000, 0x00FFFF, 0x00FF00, 0x0000FF,
    0x808080, 0xC0C0C0, 0x808000, 0x800080, 0x800000, 0x008080, 0x008000,
    0x000080, 0x000000, 0xC0DCC0, 0xF0CAA6, 0xF0FBFF, 0xA4A0A0};
const int kDefaultCount = sizeof(kDefaultColours) / sizeof(kDefaultColours[0]);

// One byte per pixel row, top row first, most significant bit leftmost.
const BYTE kPatterns[][8] = {
    {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00},
    {0x00, 0x55, 0x00, 0x55, 0x00, 0x55, 0x00, 0x55},
    {0xaa, 0x55, 0xaa, 0x55, 0xaa, 0x55, 0xaa, 0x55},
    {0x88, 0x44, 0x22, 0x11, 0x88, 0x44, 0x22, 0x11},
    {0x11, 0x22, 0x44, 0x88, 0x11, 0x22, 0x44, 0x88},
    {0xaa, 0x44, 0xaa, 0x00, 0xaa, 0x44, 0xaa, 0x00},
    {0x00, 0xee, 0xee, 0xee, 0x00, 0xbb, 0xbb, 0xbb},
    {0xc0, 0xc0, 0xc0, 0xff, 0x0c, 0x0c, 0x0c, 0xff},
    {0x00, 0x01, 0x03, 0x07, 0x0f, 0x1f, 0x3f, 0x7f},
    {0x11, 0x33, 0x77, 0xff, 0x11, 0x33, 0x77, 0xff},
    {0xaa, 0xaa, 0xaa, 0xaa, 0xaa, 0xaa, 0xaa, 0xaa},
    {0xff, 0x00, 0xff, 0x00, 0xff, 0x00, 0xff, 0x00}};
const int kPatternCount = sizeof(kPatterns) / sizeof(kPatterns[0]);

const int kInitialCellSize = 20;
const int kSmallestCellSize = 15;
const int kArrowStrip = 16;  // the face's right part, where the arrow button sits
const DWORD kArrowStyle = WS_CHILD | WS_VISIBLE | BS_OWNERDRAW;
const COLORREF kPatternInk = RGB(192, 192, 192);
const COLORREF kPatternPaper = RGB(255, 255, 255);
const COLORREF kPictureBackground = RGB(192, 192, 192);
const wchar_t kBitmapProperty[] = L"Bm";
// Palette lookup covers the system's twenty static colours, the first cells of a box.
const int kPaletteMatchedCells = 20;

void computeGrid(ColorBoxRecord* record) {
    int cells = record->count;
    if ((record->flags & KXCB_AUTOCELL) && cells > 0) --cells;
    record->columns = cells < 25 ? 4 : cells < 37 ? 5 : 6;
    record->rows = (cells + record->columns - 1) / record->columns;
}

void invalidateFace(const ColorBoxRecord& record) { InvalidateRect(record.box, nullptr, FALSE); }

// The popup is built for one grid; it is made again on the next opening.
void gridChanged(ColorBoxRecord* record) {
    if (record->popup) DestroyWindow(record->popup);
    record->popup = nullptr;
    computeGrid(record);
    invalidateFace(*record);
}

int findColour(const ColorBoxRecord& record, COLORREF colour) {
    for (int i = 0; i < record.count; ++i)
        if (record.colours[i] == colour) return i;
    return -1;
}

// The palette entry that shows the colour (a palette index stays as it is).
COLORREF nearestEntry(HPALETTE palette, COLORREF colour) {
    if ((colour >> 24) == 1) return colour;
    UINT index = GetNearestPaletteIndex(palette, colour);
    return index == CLR_INVALID ? colour : PALETTEINDEX(index);
}

int findShownColour(const ColorBoxRecord& record, COLORREF colour) {
    if (!record.palette) return findColour(record, colour);
    COLORREF shown = nearestEntry(record.palette, colour);
    for (int i = 0; i < record.count; ++i) {
        bool match = i < kPaletteMatchedCells
                         ? nearestEntry(record.palette, record.colours[i]) == shown
                         : record.colours[i] == colour;
        if (match) return i;
    }
    return -1;
}

void selectCell(ColorBoxRecord* record, int index) {
    record->hot = index;
    record->selected = index;
    invalidateFace(*record);
}

// Moves a cell to the front, keeping the selection and the hot cell on their colours.
void moveToFront(ColorBoxRecord* record, int index) {
    COLORREF colour = record->colours[index];
    memmove(record->colours + 1, record->colours, index * sizeof(COLORREF));
    record->colours[0] = colour;
    int* cells[] = {&record->selected, &record->hot};
    for (int* cell : cells) {
        if (*cell == index) *cell = 0;
        else if (*cell >= 0 && *cell < index) ++*cell;
    }
}

// --- messages ---------------------------------------------------------------------------------

LRESULT setSelection(ColorBoxRecord* record, WPARAM index) {
    if (index != static_cast<WPARAM>(record->selected) && index < static_cast<WPARAM>(record->count))
        selectCell(record, static_cast<int>(index));
    return index;
}

LRESULT findAndSelect(ColorBoxRecord* record, COLORREF colour) {
    if (IsPatternBox(*record)) return -1;
    int index = findShownColour(*record, colour);
    if (index >= 0) selectCell(record, index);
    return index;
}

LRESULT getColour(const ColorBoxRecord& record, COLORREF* colour) {
    if (IsPatternBox(record) || !colour || !IsCell(record, record.selected)) return -1;
    *colour = record.colours[record.selected];
    return record.selected;
}

LRESULT setAutomaticCell(ColorBoxRecord* record, int index, COLORREF colour) {
    if (IsPatternBox(*record)) return 0;
    if (index == -1) {  // the cell stays, as an ordinary one
        record->flags &= ~KXCB_AUTOCELL;
        gridChanged(record);
        return 1;
    }
    if (index <= -2) index = InsertColour(record, record->count, colour);
    if (!IsCell(*record, index)) return 0;
    moveToFront(record, index);
    record->flags |= KXCB_AUTOCELL;
    gridChanged(record);
    return 1;
}

LRESULT setColours(ColorBoxRecord* record, int count, const COLORREF* colours) {
    if (IsPatternBox(*record) || count < 0 || (count > 0 && !colours)) return 0;
    COLORREF* copy = nullptr;
    if (count > 0) {
        copy = static_cast<COLORREF*>(GetMemory(count * sizeof(COLORREF)));
        if (!copy) return 0;
        memcpy(copy, colours, count * sizeof(COLORREF));
    }
    FreeMemory(record->colours);
    record->colours = copy;
    record->count = count;
    record->hot = record->selected = -1;
    if (count == 0) record->flags &= ~KXCB_AUTOCELL;
    gridChanged(record);
    return 1;
}

LRESULT setCellSize(ColorBoxRecord* record, bool redraw, int size) {
    record->cellSize = size < kSmallestCellSize ? kSmallestCellSize : size;
    gridChanged(record);
    if (redraw) UpdateWindow(record->box);
    return 1;
}

// The popup's height and button depend on the flag, so it is made again too.
LRESULT showMoreButton(ColorBoxRecord* record, bool show) {
    if (IsPatternBox(*record) || show == ((record->flags & KXCB_MOREBUTTON) != 0)) return 0;
    record->flags ^= KXCB_MOREBUTTON;
    gridChanged(record);
    return 1;
}

LRESULT setPalette(ColorBoxRecord* record, bool redraw, HPALETTE palette) {
    record->palette = palette;
    if (redraw) {
        RedrawWindow(record->box, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        if (record->popup) RedrawWindow(record->popup, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    }
    return 1;
}

// --- face -------------------------------------------------------------------------------------

void paintFace(const ColorBoxRecord& record, HDC dc) {
    int saved = SaveDC(dc);
    HPALETTE previousPalette = UsePalette(record, dc);
    RECT client;
    GetClientRect(record.box, &client);
    HWND arrow = GetDlgItem(record.box, KXCB_ID_ARROW);
    if (arrow && IsWindowVisible(arrow)) {  // the arrow paints itself
        RECT arrowRect;
        GetWindowRect(arrow, &arrowRect);
        MapWindowPoints(nullptr, record.box, reinterpret_cast<POINT*>(&arrowRect), 2);
        ExcludeClipRect(dc, arrowRect.left, arrowRect.top, arrowRect.right, arrowRect.bottom);
    }
    FillRect(dc, &client, GetSysColorBrush(COLOR_WINDOW));
    RECT face = client;
    face.right -= kArrowStrip;
    if (IsCell(record, record.selected)) {
        HBRUSH brush = CellBrush(record, record.box, dc, record.selected);
        HGDIOBJ previousBrush = SelectObject(dc, brush);
        Rectangle(dc, face.left + 4, face.top + 4, face.right - 4, face.bottom - 4);
        SelectObject(dc, previousBrush);
        DeleteObject(brush);
    }
    if (GetFocus() == record.box) {
        RECT focus = face;
        InflateRect(&focus, -2, -2);
        DrawFocusRect(dc, &focus);
    }
    if (previousPalette) SelectPalette(dc, previousPalette, FALSE);
    RestoreDC(dc, saved);
}

void onPaint(const ColorBoxRecord& record) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(record.box, &paint);
    paintFace(record, dc);
    EndPaint(record.box, &paint);
}

// The arrow looks disabled while it, the box or the box's parent is disabled (the popup, when
// open, disables the arrow).
LRESULT drawArrow(const ColorBoxRecord& record, const DRAWITEMSTRUCT* item) {
    if (!item || item->CtlType != ODT_BUTTON) return FALSE;
    HWND parent = GetParent(record.box);
    bool disabled = (item->itemState & ODS_DISABLED) || !IsWindowEnabled(record.box) ||
                    (parent && !IsWindowEnabled(parent));
    auto picture = static_cast<HBITMAP>(GetPropW(item->hwndItem, kBitmapProperty));
    HBITMAP greyed = disabled && picture ? CreateDisabledBitmapHg(picture, 1, kPictureBackground) : nullptr;
    PaintButtonFace(item->hDC, item->rcItem, item->itemState & ODS_SELECTED,
                    greyed ? greyed : picture, true, false);
    if (greyed) DeleteObject(greyed);
    return TRUE;
}

// --- life -------------------------------------------------------------------------------------

bool onCreate(HWND box, const CREATESTRUCTW* create) {
    if (!create) return false;
    auto* record = static_cast<ColorBoxRecord*>(Mres(sizeof(ColorBoxRecord)));
    if (!record) return false;
    record->box = box;
    record->hot = record->selected = -1;
    record->cellSize = kInitialCellSize;
    if (create->style & KXCBS_PATTERN) {
        record->flags = KXCB_PATTERNS;
        record->count = kPatternCount;
    } else {
        record->colours = static_cast<COLORREF*>(GetMemory(sizeof(kDefaultColours)));
        if (!record->colours) {
            FreeMemory(record);
            return false;
        }
        memcpy(record->colours, kDefaultColours, sizeof(kDefaultColours));
        record->count = kDefaultCount;
        if (create->style & KXCBS_MORECOLORS) record->flags = KXCB_MOREBUTTON;
    }
    computeGrid(record);
    HWND arrow = CreateWindowExW(0, L"button", L"", kArrowStyle, create->cx - kArrowStrip, 1,
                                 kArrowStrip - 1, create->cy - 2, box,
                                 reinterpret_cast<HMENU>(static_cast<INT_PTR>(KXCB_ID_ARROW)),
                                 create->hInstance, nullptr);
    if (!arrow) {
        FreeMemory(record->colours);
        FreeMemory(record);
        return false;
    }
    HBITMAP picture = LoadBitmapW(g_libraryModule, L"btaun");
    if (picture) SetPropW(arrow, kBitmapProperty, picture);
    SetWindowLongPtrW(box, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(record));
    return true;
}

void onDestroy(ColorBoxRecord* record) {
    if (record->popup) DestroyWindow(record->popup);
    HWND arrow = GetDlgItem(record->box, KXCB_ID_ARROW);
    auto picture = static_cast<HBITMAP>(arrow ? RemovePropW(arrow, kBitmapProperty) : nullptr);
    if (picture) DeleteObject(picture);
    SetWindowLongPtrW(record->box, GWLP_USERDATA, 0);
    FreeMemory(record->colours);
    FreeMemory(record);
}

// The arrow keeps to the right edge when the box is resized.
void onSize(const ColorBoxRecord& record, int width, int height) {
    HWND arrow = GetDlgItem(record.box, KXCB_ID_ARROW);
    if (arrow) MoveWindow(arrow, width - kArrowStrip, 1, kArrowStrip - 1, height - 2, TRUE);
}

// The arrow's own click opens the popup only once the button has let the mouse go; the posted
// command (and the Down key's) toggles it.
void onArrowCommand(ColorBoxRecord* record, WPARAM wParam, LPARAM lParam) {
    if (HIWORD(wParam) != BN_CLICKED) return;
    if (lParam) {
        PostMessageW(record->box, WM_COMMAND, KXCB_ID_ARROW, 0);
        return;
    }
    if (record->popup && IsWindowVisible(record->popup))
        ClosePopup(record);
    else
        OpenPopup(record, record->selected);
}

}  // namespace

// --- shared with the popup and the menu --------------------------------------------------------

ColorBoxRecord* BoxRecord(HWND window) {
    return window ? reinterpret_cast<ColorBoxRecord*>(GetWindowLongPtrW(window, GWLP_USERDATA)) : nullptr;
}

bool IsPatternBox(const ColorBoxRecord& record) { return record.flags & KXCB_PATTERNS; }

bool IsCell(const ColorBoxRecord& record, int index) { return index >= 0 && index < record.count; }

RECT CellRect(const ColorBoxRecord& record, int index) {
    int size = record.cellSize, columns = record.columns;
    bool automatic = record.flags & KXCB_AUTOCELL;
    if (automatic && index == 0) return RECT{0, 0, columns * size, size};
    int place = automatic ? index - 1 + columns : index;
    int left = (place % columns) * size, top = (place / columns) * size;
    return RECT{left, top, left + size, top + size};
}

int CellAt(const ColorBoxRecord& record, POINT point) {
    for (int i = 0; i < record.count; ++i) {
        RECT cell = CellRect(record, i);
        if (PtInRect(&cell, point)) return i;
    }
    return -1;
}

// The rightmost and lowest cell edges: a last row that is not full does not narrow the grid.
SIZE GridSize(const ColorBoxRecord& record) {
    SIZE size = {0, 0};
    for (int i = 0; i < record.count; ++i) {
        RECT cell = CellRect(record, i);
        if (cell.right > size.cx) size.cx = cell.right;
        if (cell.bottom > size.cy) size.cy = cell.bottom;
    }
    return size;
}

// Works on places in the grid, where the automatic cell takes the whole first row.
int MoveHot(const ColorBoxRecord& record, UINT key) {
    int count = record.count, hot = record.hot;
    if (count <= 0) return -1;
    if (!IsCell(record, hot)) return 0;
    if (key == VK_RIGHT) return (hot + 1) % count;
    if (key == VK_LEFT) return hot == 0 ? count - 1 : hot - 1;
    int columns = record.columns;
    bool automatic = record.flags & KXCB_AUTOCELL;
    int places = automatic ? count - 1 + columns : count;
    int place = automatic ? (hot == 0 ? 0 : hot - 1 + columns) : hot;
    int last = places - 1, lastRow = last / columns;
    int next;
    if (key == VK_DOWN) {
        next = place + columns;
        if (next > last) next = place / columns == lastRow ? place % columns : last;
    } else if (key == VK_UP) {
        next = place - columns;
        if (next < 0) next = lastRow * columns + place % columns;
        if (next > last) next = last;
    } else {
        return hot;
    }
    if (!automatic) return next;
    return next < columns ? 0 : next - columns + 1;
}

HBRUSH CellBrush(const ColorBoxRecord& record, HWND window, HDC dc, int index) {
    if (IsPatternBox(record)) return KxCreatePatternBrush(window, dc, index, kPatternInk, kPatternPaper);
    return CreateSolidBrush(record.colours[index]);
}

HPALETTE UsePalette(const ColorBoxRecord& record, HDC dc) {
    if (!record.palette) return nullptr;
    HPALETTE previous = SelectPalette(dc, record.palette, FALSE);
    RealizePalette(dc);
    return previous;
}

int InsertColour(ColorBoxRecord* record, int index, COLORREF colour) {
    int present = findColour(*record, colour);
    if (present >= 0) return present;
    if (index < 0 || index > record->count) index = record->count;
    // The automatic cell stays in front.
    if ((record->flags & KXCB_AUTOCELL) && index == 0) index = 1;
    auto* colours = static_cast<COLORREF*>(
        ReallocMemory(record->colours, (record->count + 1) * sizeof(COLORREF)));
    if (!colours) return -1;
    memmove(colours + index + 1, colours + index, (record->count - index) * sizeof(COLORREF));
    colours[index] = colour;
    record->colours = colours;
    ++record->count;
    int* cells[] = {&record->selected, &record->hot};
    for (int* cell : cells)
        if (*cell >= index) ++*cell;
    gridChanged(record);
    return index;
}

void ChooseCell(ColorBoxRecord* record, int index) {
    selectCell(record, index);
    LPARAM value = IsPatternBox(*record) ? index : static_cast<LPARAM>(record->colours[index]);
    PostMessageW(GetParent(record->box), KXCBN_CHOSEN, GetDlgCtrlID(record->box), value);
}

void CommitCell(ColorBoxRecord* record, int index) {
    ChooseCell(record, index);
    SetFocus(record->box);
}

// --- exports ----------------------------------------------------------------------------------

LRESULT KVKIT_CALL Kx1ColorWndProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE)
        return onCreate(box, reinterpret_cast<const CREATESTRUCTW*>(lParam)) ? 0 : -1;
    ColorBoxRecord* record = BoxRecord(box);
    if (!record) return DefWindowProcW(box, message, wParam, lParam);
    switch (message) {
    case WM_PAINT:
        onPaint(*record);
        return 0;
    case WM_PRINTCLIENT:
        paintFace(*record, reinterpret_cast<HDC>(wParam));
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_DRAWITEM:
        return drawArrow(*record, reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
    case WM_SIZE:
        onSize(*record, LOWORD(lParam), HIWORD(lParam));
        return 0;
    case WM_COMMAND:
        if (LOWORD(wParam) != KXCB_ID_ARROW) break;
        onArrowCommand(record, wParam, lParam);
        return 0;
    case WM_KEYDOWN:
        if (wParam != VK_DOWN) break;
        PostMessageW(box, WM_COMMAND, KXCB_ID_ARROW, 0);
        return 0;
    case WM_LBUTTONDOWN:
        SetFocus(box);
        return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        invalidateFace(*record);
        return 0;
    case WM_ENABLE:
        RedrawWindow(box, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN);
        return 0;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS;
    case WM_CONTEXTMENU:
        if (IsPatternBox(*record)) break;
        ShowColourMenu(record, box, lParam);
        return 0;
    case WM_DESTROY:
        onDestroy(record);
        return 0;
    case CBM_SETSEL:
        return setSelection(record, wParam);
    case CBM_GETSEL:
        return record->selected;
    case CBM_FINDCOLOR:
        return findAndSelect(record, static_cast<COLORREF>(lParam));
    case CBM_GETCOLOR:
        return getColour(*record, reinterpret_cast<COLORREF*>(lParam));
    case CBM_ADDCOLOR:
        return IsPatternBox(*record) ? -1 : InsertColour(record, -1, static_cast<COLORREF>(lParam));
    case CBM_INSERTCOLOR:
        if (IsPatternBox(*record)) return -1;
        return InsertColour(record, static_cast<int>(wParam), static_cast<COLORREF>(lParam));
    case CBM_SETPALETTE:
        return setPalette(record, wParam != 0, reinterpret_cast<HPALETTE>(lParam));
    case CBM_SETAUTO:
        return setAutomaticCell(record, static_cast<int>(wParam), static_cast<COLORREF>(lParam));
    case CBM_SETCOLORS:
        return setColours(record, static_cast<int>(wParam), reinterpret_cast<const COLORREF*>(lParam));
    case CBM_SETCELLSIZE:
        return setCellSize(record, wParam != 0, LOWORD(lParam));
    case CBM_SHOWMORE:
        return showMoreButton(record, wParam != 0);
    }
    return DefWindowProcW(box, message, wParam, lParam);
}

HBRUSH KVKIT_CALL KxCreatePatternBrush(HWND window, HDC dc, int pattern, COLORREF foreground,
                                       COLORREF background) {
    if (pattern < 0 || pattern >= kPatternCount) pattern = 0;
    struct {
        BITMAPINFOHEADER header;
        RGBQUAD colours[2];
    } info = {};
    info.header.biSize = sizeof(BITMAPINFOHEADER);
    info.header.biWidth = 8;
    info.header.biHeight = 8;
    info.header.biPlanes = 1;
    info.header.biBitCount = 1;
    info.header.biCompression = BI_RGB;
    info.colours[0] = RGBQUAD{GetBValue(foreground), GetGValue(foreground), GetRValue(foreground), 0};
    // The background entry is written with its channels rotated (blue byte from green, green
    // from red, red from blue); hosts' pictures depend on it.
    info.colours[1] = RGBQUAD{GetGValue(background), GetRValue(background), GetBValue(background), 0};
    BYTE rows[8 * 4] = {};  // bottom-up, each row padded to 32 bits
    for (int row = 0; row < 8; ++row) rows[(7 - row) * 4] = kPatterns[pattern][row];

    HDC target = dc ? dc : GetDC(window);
    if (!target) return nullptr;
    HBITMAP bitmap = CreateDIBitmap(target, &info.header, CBM_INIT, rows,
                                    reinterpret_cast<const BITMAPINFO*>(&info), DIB_RGB_COLORS);
    if (!dc) ReleaseDC(window, target);
    if (!bitmap) return nullptr;
    HBRUSH brush = CreatePatternBrush(bitmap);  // the brush keeps its own copy of the pixels
    DeleteObject(bitmap);
    return brush;
}
