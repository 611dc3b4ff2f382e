// Navigation bar: row layout, scrolling range and painting. Group headers are gradient bands with
// bold text and an open/closed arrow; entries show their icon and text, tinted under the mouse
// and filled with the highlight colour while selected.
#include "controls/navigation_internal.h"
#include "include/kvkit_colour.h"
#include "include/kvkit_draw.h"

namespace {

const int kGroupTextLeft = 8;
const int kArrowSpace = 22;      // right of a header text
const int kEntryIconLeft = 14;
const int kIconTextGap = 6;
const int kHeaderBrightening = 18;  // brightness steps (of 240) at the top of a header band
const int kHotHeaderBrightening = 36;
const double kHotEntryTint = 0.2;   // share of the highlight colour in a hot entry's background

int clientHeight(const NavBar& bar) {
    RECT client;
    GetClientRect(bar.window, &client);
    return client.bottom;
}

void fillRect(HDC dc, const RECT& rect, COLORREF colour) {
    HBRUSH brush = CreateSolidBrush(colour);
    FillRect(dc, &rect, brush);
    DeleteObject(brush);
}

void drawText(HDC dc, const wchar_t* text, RECT rect, HFONT font, COLORREF colour) {
    HGDIOBJ previous = SelectObject(dc, font);
    SetTextColor(dc, colour);
    DrawTextW(dc, text, -1, &rect, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
    SelectObject(dc, previous);
}

// A small filled triangle: pointing down for an open group, right for a closed one.
void drawArrow(HDC dc, int centreX, int centreY, bool open, COLORREF colour) {
    POINT points[3];
    if (open) {
        points[0] = {centreX - 4, centreY - 2};
        points[1] = {centreX + 4, centreY - 2};
        points[2] = {centreX, centreY + 2};
    } else {
        points[0] = {centreX - 2, centreY - 4};
        points[1] = {centreX - 2, centreY + 4};
        points[2] = {centreX + 2, centreY};
    }
    HBRUSH brush = CreateSolidBrush(colour);
    HPEN pen = CreatePen(PS_SOLID, 1, colour);
    HGDIOBJ oldBrush = SelectObject(dc, brush);
    HGDIOBJ oldPen = SelectObject(dc, pen);
    Polygon(dc, points, 3);
    SelectObject(dc, oldPen);
    SelectObject(dc, oldBrush);
    DeleteObject(pen);
    DeleteObject(brush);
}

void paintGroupRow(const NavBar& bar, const NavItem& item, HDC dc, RECT row) {
    COLORREF face = GetSysColor(COLOR_BTNFACE);
    int brightening = item.id == bar.hot ? kHotHeaderBrightening : kHeaderBrightening;
    COLORREF top = AdjustColorBrightness(face, brightening);
    RECT band = row;
    band.bottom -= 1;
    Kx1GradientFill(dc, top, face, 0, 1, &band);
    RECT line = {row.left, row.bottom - 1, row.right, row.bottom};
    fillRect(dc, line, GetSysColor(COLOR_BTNSHADOW));
    RECT text = {row.left + kGroupTextLeft, row.top, row.right - kArrowSpace, row.bottom};
    drawText(dc, item.text, text, bar.boldFont, GetSysColor(COLOR_BTNTEXT));
    drawArrow(dc, row.right - kArrowSpace / 2, (row.top + row.bottom) / 2, item.expanded != 0,
              GetSysColor(COLOR_BTNTEXT));
}

void paintEntryRow(const NavBar& bar, const NavItem& item, HDC dc, RECT row) {
    COLORREF window = GetSysColor(COLOR_WINDOW), highlight = GetSysColor(COLOR_HIGHLIGHT);
    COLORREF textColour = GetSysColor(COLOR_WINDOWTEXT);
    if (item.id == bar.selected) {
        fillRect(dc, row, highlight);
        textColour = GetSysColor(COLOR_HIGHLIGHTTEXT);
    } else if (item.id == bar.hot) {
        fillRect(dc, row, BlendColors(window, highlight, kHotEntryTint));
    }
    int iconTop = row.top + (row.bottom - row.top - bar.iconSize) / 2;
    if (item.icon)
        DrawTranspBitmap(dc, item.icon, row.left + kEntryIconLeft, iconTop, item.iconKey, true);
    RECT text = {row.left + kEntryIconLeft + bar.iconSize + kIconTextGap, row.top, row.right - 4,
                 row.bottom};
    HFONT font = bar.font ? bar.font : static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    drawText(dc, item.text, text, font, textColour);
}

}  // namespace

// --- layout -----------------------------------------------------------------------------------

int GroupRowHeight(const NavBar& bar) {
    int height = bar.textHeight + 10;
    return height > 24 ? height : 24;
}

int EntryRowHeight(const NavBar& bar) {
    int content = bar.iconSize > bar.textHeight ? bar.iconSize : bar.textHeight;
    return content + 8;
}

bool NavRowOf(const NavBar& bar, int id, int* top, int* height) {
    bool found = false;
    ForEachNavRow(bar, [&](int index, int rowTop, int rowHeight) {
        if (bar.items[index].id != id) return true;
        *top = rowTop;
        *height = rowHeight;
        found = true;
        return false;
    });
    return found;
}

int NavItemAt(const NavBar& bar, int clientY) {
    int y = clientY + bar.scrollTop, id = 0;
    if (clientY < 0) return 0;
    ForEachNavRow(bar, [&](int index, int top, int height) {
        if (y < top) return false;
        if (y < top + height) {
            id = bar.items[index].id;
            return false;
        }
        return true;
    });
    return id;
}

int NavContentHeight(const NavBar& bar) {
    int total = 0;
    ForEachNavRow(bar, [&](int, int, int height) {
        total += height;
        return true;
    });
    return total;
}

void UpdateNavScrollBar(NavBar& bar) {
    int content = NavContentHeight(bar), page = clientHeight(bar);
    int highest = content > page ? content - page : 0;
    if (bar.scrollTop > highest) bar.scrollTop = highest;
    if (bar.scrollTop < 0) bar.scrollTop = 0;
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    info.nMax = content > 0 ? content - 1 : 0;
    info.nPage = page > 0 ? page : 0;
    info.nPos = bar.scrollTop;
    SetScrollInfo(bar.window, SB_VERT, &info, TRUE);
}

void EnsureNavItemVisible(NavBar& bar, int id) {
    int top, height;
    if (!NavRowOf(bar, id, &top, &height)) return;
    int page = clientHeight(bar), scrollTop = bar.scrollTop;
    if (top < scrollTop) scrollTop = top;
    else if (top + height > scrollTop + page) scrollTop = top + height - page;
    if (scrollTop == bar.scrollTop) return;
    bar.scrollTop = scrollTop;
    UpdateNavScrollBar(bar);
    InvalidateRect(bar.window, nullptr, FALSE);
}

void InvalidateNavItem(const NavBar& bar, int id) {
    int top, height;
    if (!id || !NavRowOf(bar, id, &top, &height)) return;
    RECT client;
    GetClientRect(bar.window, &client);
    RECT row = {0, top - bar.scrollTop, client.right, top - bar.scrollTop + height};
    InvalidateRect(bar.window, &row, FALSE);
}

// --- painting ---------------------------------------------------------------------------------

void PaintNavBar(const NavBar& bar, HDC dc, const RECT& client) {
    fillRect(dc, client, GetSysColor(COLOR_WINDOW));
    int saved = SaveDC(dc);
    SetBkMode(dc, TRANSPARENT);
    bool focused = GetFocus() == bar.window;
    ForEachNavRow(bar, [&](int index, int top, int height) {
        RECT row = {client.left, client.top + top - bar.scrollTop, client.right,
                    client.top + top - bar.scrollTop + height};
        if (row.top >= client.bottom) return false;
        if (row.bottom <= client.top) return true;
        const NavItem& item = bar.items[index];
        if (IsNavGroup(item)) paintGroupRow(bar, item, dc, row);
        else paintEntryRow(bar, item, dc, row);
        if (focused && item.id == bar.focused) {
            RECT focus = row;
            InflateRect(&focus, -1, -1);
            SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
            SetBkColor(dc, GetSysColor(COLOR_WINDOW));
            DrawFocusRect(dc, &focus);
        }
        return true;
    });
    RestoreDC(dc, saved);
}
