// Multi-column list box: drawing the rows, the toggle and title buttons and the frame.
#include "dialogs/listbox_internal.h"
#include "core/library.h"
#include "include/kvkit_bitmap.h"
#include "include/kvkit_draw.h"
#include "include/kvkit_resample.h"

namespace {

const int kCheckSize = 16;
const int kAnchorStrip = 5;
const int kAnchorBitmap = 108;
const int kTextInset = 2;
const int kCaptionCapacity = 81;

// A check mark in a kCheckSize square at (x, y).
void drawCheckMark(HDC dc, int x, int y, COLORREF colour) {
    HPEN pen = CreatePen(PS_SOLID, 2, colour);
    HGDIOBJ previous = SelectObject(dc, pen);
    MoveToEx(dc, x + 3, y + 8, nullptr);
    LineTo(dc, x + 6, y + 11);
    LineTo(dc, x + 12, y + 4);
    SelectObject(dc, previous);
    DeleteObject(pen);
}

void drawCellText(HDC dc, const wchar_t* text, RECT cell, UINT align) {
    if (!text) return;
    InflateRect(&cell, -kTextInset, 0);
    DrawTextW(dc, text, -1, &cell, align | DT_NOPREFIX | DT_SINGLELINE | DT_VCENTER);
}

// Draws a bitmap transparent (key light grey) centred in the cell.
void drawCentred(HDC dc, HBITMAP bitmap, const RECT& cell) {
    BITMAP info;
    if (!GetObjectW(bitmap, sizeof(info), &info)) return;
    DrawTranspBitmap(dc, bitmap, cell.left + (cell.right - cell.left - info.bmWidth) / 2,
                     cell.top + (cell.bottom - cell.top - info.bmHeight) / 2, kPictureKey, true);
}

// The check column: the selection number (when shown) at the left, the check mark right of it
// (centred without a number); with the anchor marker, both right of its strip.
void drawCheckCell(HDC dc, const KVLB_LIST* list, const KVLB_ITEM* item, RECT cell, bool selected,
                   COLORREF colour) {
    bool multiple = IsMultiple(list);
    if (multiple && (list->style & KVLB_ANCHORMARK)) cell.left += kAnchorStrip;
    if (!selected) return;
    bool numbered = multiple && (list->style & KVLB_NUMBERS);
    if (numbered) {
        wchar_t number[16];
        wsprintfW(number, L"%d", static_cast<int>(item->selection));
        RECT text = cell;
        ++text.left;
        DrawTextW(dc, number, -1, &text, DT_LEFT | DT_NOPREFIX | DT_SINGLELINE | DT_VCENTER);
    }
    int x = numbered ? cell.right - kCheckSize : cell.left + (cell.right - cell.left - kCheckSize) / 2;
    drawCheckMark(dc, x, cell.top + (cell.bottom - cell.top - kCheckSize) / 2, colour);
}

// The item's picture: from the bitmap array, or a picture of the library. Disabled items show a
// grey copy; pictures larger than the cell are shrunk to fit, keeping their proportions.
void drawPicture(HDC dc, const KVLB_LIST* list, const KVLB_ITEM* item, const RECT& cell, bool disabled) {
    HBITMAP picture = nullptr;
    bool owned = false;
    if (list->style & KVLB_BITMAPARRAY) {
        if (list->bitmaps && item->picture >= 0 && item->picture < list->bitmapCount)
            picture = list->bitmaps[item->picture];
    } else {
        picture = LoadBitmapW(g_libraryModule, MAKEINTRESOURCEW(LOWORD(item->picture)));
        owned = true;
    }
    if (!picture) return;
    auto replace = [&](HBITMAP made) {
        if (!made || made == picture) return;
        if (owned) DeleteObject(picture);
        picture = made;
        owned = true;
    };
    if (disabled) replace(CreateGreyscaleBitmap(picture, 1));
    BITMAP info;
    int width = cell.right - cell.left, height = cell.bottom - cell.top;
    if (GetObjectW(picture, sizeof(info), &info) && width > 0 && height > 0 &&
        (info.bmWidth > width || info.bmHeight > height)) {
        int fitWidth = width, fitHeight = info.bmHeight * width / info.bmWidth;
        if (fitHeight > height) {
            fitHeight = height;
            fitWidth = info.bmWidth * height / info.bmHeight;
        }
        if (fitWidth > 0 && fitHeight > 0) replace(Kx1ShrinkBitmapEx2(picture, fitWidth, fitHeight, 0, 0));
    }
    drawCentred(dc, picture, cell);
    if (owned) DeleteObject(picture);
}

void drawRowCells(HWND container, const KVLB_LIST* list, const KVLB_ITEM* item, const DRAWITEMSTRUCT* draw) {
    HDC dc = draw->hDC;
    const RECT& row = draw->rcItem;
    unsigned long style = list->style;
    bool selected = (draw->itemState & ODS_SELECTED) != 0;
    bool disabled = !IsWindowEnabled(draw->hwndItem) || !IsWindowEnabled(container) ||
                    (item->flags & KVLB_ITEM_DISABLED);
    bool highlight = selected && !(style & KVLB_CHECKCOLUMN);
    COLORREF colour = GetSysColor(disabled ? COLOR_GRAYTEXT : highlight ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT);
    FillRect(dc, &row, GetSysColorBrush(highlight ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    int previousMode = SetBkMode(dc, TRANSPARENT);
    COLORREF previousColour = SetTextColor(dc, colour);

    const short* widths = list->columnWidths;
    int x = row.left;
    auto nextCell = [&](int width) {
        RECT cell = {x, row.top, x + width, row.bottom};
        x += width;
        return cell;
    };
    if (style & KVLB_CHECKCOLUMN) drawCheckCell(dc, list, item, nextCell(widths[KVLB_COLUMN_CHECK]), selected, colour);
    drawCellText(dc, item->text, nextCell(widths[KVLB_COLUMN_TEXT]), DT_LEFT);
    if (style & KVLB_SECONDTEXT) drawCellText(dc, item->secondText, nextCell(widths[KVLB_COLUMN_SECONDTEXT]), DT_RIGHT);
    if (style & KVLB_PICTURES) drawPicture(dc, list, item, nextCell(widths[KVLB_COLUMN_PICTURE]), disabled);
    if (style & KVLB_VALUES) {
        wchar_t value[16];
        wsprintfW(value, L"%d", item->value);
        drawCellText(dc, value, nextCell(widths[KVLB_COLUMN_VALUE]), DT_RIGHT);
    }
    SetTextColor(dc, previousColour);
    SetBkMode(dc, previousMode);
}

// The focus rectangle and, with multiple selection, the anchor marker in the row's left strip.
void drawFocus(const KVLB_LIST* list, const DRAWITEMSTRUCT* draw) {
    RECT row = draw->rcItem;
    DrawFocusRect(draw->hDC, &row);
    if (!IsMultiple(list) || !(list->style & KVLB_ANCHORMARK)) return;
    HBITMAP marker = LoadBitmapW(g_libraryModule, MAKEINTRESOURCEW(kAnchorBitmap));
    if (!marker) return;
    row.right = row.left + kAnchorStrip;
    drawCentred(draw->hDC, marker, row);
    DeleteObject(marker);
}

}  // namespace

void BitmapArrayExtent(const KVLB_LIST* list, int* widest, int* tallest) {
    *widest = *tallest = 0;
    for (int i = 0; list->bitmaps && i < list->bitmapCount; ++i) {
        BITMAP info;
        if (!list->bitmaps[i] || !GetObjectW(list->bitmaps[i], sizeof(info), &info)) continue;
        if (info.bmWidth > *widest) *widest = info.bmWidth;
        if (info.bmHeight > *tallest) *tallest = info.bmHeight;
    }
}

void DrawListRow(HWND container, KVLB_LIST* list, const DRAWITEMSTRUCT* draw) {
    if (draw->itemID == static_cast<UINT>(-1)) return;
    KVLB_ITEM* item = FindItem(list, LOWORD(draw->itemData));
    if (!item) return;
    // Selection numbers follow what the list shows. When later numbers moved up and numbers are
    // shown, the whole list is drawn again rather than this row alone.
    if (SyncSelectionNumber(draw->hwndItem, list, item, (draw->itemState & ODS_SELECTED) != 0) &&
        (list->style & KVLB_NUMBERS)) {
        InvalidateRect(draw->hwndItem, nullptr, FALSE);
        return;
    }
    // Every action draws the whole row, so that the focus rectangle never has to be taken off.
    drawRowCells(container, list, item, draw);
    if (draw->itemState & ODS_FOCUS) {
        drawFocus(list, draw);
        list->anchor = static_cast<unsigned short>(item->id);
    }
}

void DrawChildButton(HWND container, const KVLB_LIST* list, const DRAWITEMSTRUCT* draw) {
    HDC dc = draw->hDC;
    RECT face = draw->rcItem;
    unsigned long feature = ToggleFeature(draw->CtlID);
    bool pressed = (draw->itemState & ODS_SELECTED) || (list->style & feature);
    Kx1DrawBtnHg(dc, face, pressed ? 1 : 0, 0);
    if (pressed) OffsetRect(&face, 1, 1);
    COLORREF colour = GetSysColor((draw->itemState & ODS_DISABLED) ? COLOR_GRAYTEXT : COLOR_BTNTEXT);
    if (draw->CtlID == KVLB_HEADER_CHECK) {
        drawCheckMark(dc, face.left + (face.right - face.left - kCheckSize) / 2,
                      face.top + (face.bottom - face.top - kCheckSize) / 2, colour);
        return;
    }
    wchar_t caption[kCaptionCapacity];
    GetWindowTextW(draw->hwndItem, caption, kCaptionCapacity);
    const wchar_t* shown = caption;
    wchar_t glyph[2] = L"";
    if (feature) {  // a toggle is too small for its caption: its first letter stands for it
        for (const wchar_t* c = caption; *c; ++c)
            if (*c != L'&') {
                glyph[0] = *c;
                break;
            }
        shown = glyph;
    }
    HGDIOBJ previousFont = SelectObject(dc, GetStockObject(ANSI_VAR_FONT));
    int previousMode = SetBkMode(dc, TRANSPARENT);
    COLORREF previousColour = SetTextColor(dc, colour);
    DrawTextW(dc, shown, -1, &face, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    SetTextColor(dc, previousColour);
    SetBkMode(dc, previousMode);
    SelectObject(dc, previousFont);
}

int PictureRowHeight(const KVLB_LIST* list, HWND box, int defaultHeight) {
    int widest, tallest;
    BitmapArrayExtent(list, &widest, &tallest);
    RECT client;
    GetClientRect(box, &client);
    int quarter = client.bottom / 4;
    int height = (tallest < quarter ? tallest : quarter) + 2;
    return height > defaultHeight ? height : defaultHeight;
}

void PaintFrame(HWND container, HDC dc, const RECT& area) {
    RECT frame = {area.left - 2, area.top - 2, area.right + 3, area.bottom + 3};
    RECT inside = frame;
    InflateRect(&inside, -2, -2);
    // Only the gaps between the children and the edge: the children paint themselves.
    for (HWND child = GetWindow(container, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        if (!IsWindowVisible(child)) continue;
        RECT rect;
        GetWindowRect(child, &rect);
        MapWindowPoints(nullptr, container, reinterpret_cast<POINT*>(&rect), 2);
        ExcludeClipRect(dc, rect.left, rect.top, rect.right, rect.bottom);
    }
    FillRect(dc, &inside, GetSysColorBrush(COLOR_WINDOW));
    DrawEdge(dc, &frame, EDGE_SUNKEN, BF_RECT);
}
