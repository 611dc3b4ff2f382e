// List view helpers: a customer table built with the column and cell helpers, sorted by its
// date column (arrow in the header, selected row scrolled into view), one row coloured through
// custom draw. Clicking a header sorts by that column; clicking it again reverses the order.
#include "gallery/gallery.h"
#include <commctrl.h>
#include <stdio.h>
#include "kvbase.h"
#include "kvkit_listview.h"
#include "kvtext.h"

namespace {

enum Column { kCustomer, kOrders, kLastOrder, kCity, kColumnCount };
const int kKeyTypes[kColumnCount] = {KX_SORT_IMAGE, KX_SORT_NUMBER, KX_SORT_DATE, KX_SORT_TEXT};
const int kRows = 300;
const int kListId = 400;

struct PageState {
    HWND list;
    HIMAGELIST images;
    HFONT boldFont;
    LPARAM colouredRow;  // row value of the row drawn in colour
};
PageState g_page;

HBITMAP statusBitmap(COLORREF colour) {
    HDC screen = GetDC(nullptr);
    HDC dc = CreateCompatibleDC(screen);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, 16, 16);
    HGDIOBJ oldBitmap = SelectObject(dc, bitmap);
    RECT all = {0, 0, 16, 16};
    FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    HBRUSH brush = CreateSolidBrush(colour);
    HGDIOBJ oldBrush = SelectObject(dc, brush);
    Ellipse(dc, 2, 2, 14, 14);
    SelectObject(dc, oldBrush);
    SelectObject(dc, oldBitmap);
    DeleteObject(brush);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
    return bitmap;
}

// The status image sorts by image with "active" (green, image 0) preferred.
void sortBy(int column) {
    KxListView_SortItemsNew(g_page.list, column, kKeyTypes[column], 0, 0, kCustomer == column ? kOrders : kCustomer,
                            column == kCustomer ? KX_SORT_NUMBER : KX_SORT_TEXT, 0, GlobalSession(), 0);
}

INT_PTR CALLBACK tableDialogProc(HWND dialog, UINT message, WPARAM, LPARAM lParam) {
    switch (message) {
    case WM_NOTIFY: {
        auto* notify = reinterpret_cast<NMHDR*>(lParam);
        if (notify->hwndFrom != g_page.list) return FALSE;
        if (notify->code == NM_CUSTOMDRAW) {
            LRESULT result = KxListView_SetItemColorFont(
                dialog, g_page.list, reinterpret_cast<NMLVCUSTOMDRAW*>(lParam), g_page.colouredRow,
                RGB(255, 255, 255), RGB(176, 48, 64), g_page.boldFont);
            SetWindowLongPtrW(dialog, DWLP_MSGRESULT, result);
            return TRUE;
        }
        if (notify->code == LVN_COLUMNCLICK) {
            sortBy(reinterpret_cast<NMLISTVIEW*>(lParam)->iSubItem);
            return TRUE;
        }
        return FALSE;
    }
    case WM_DESTROY:
        KxListView_SetHeaderBitmap(g_page.list, nullptr, -1, 1);  // the header leaves the arrow
        DeleteObject(g_page.boldFont);
        return FALSE;
    }
    return FALSE;
}

void fillTable() {
    static const wchar_t* const first[] = {L"Berg", L"Lind", L"Haas", L"Falk", L"Roth", L"Wolf",
                                           L"Stein", L"Brandt", L"Kern", L"Voss", L"Sommer"};
    static const wchar_t* const second[] = {L"mann", L"holm", L"feld", L"berg", L"er", L"hof", L"ke"};
    static const wchar_t* const cities[] = {L"Aachen", L"Bremen", L"Celle", L"Dresden", L"Essen",
                                            L"Fulda", L"Goslar", L"Hameln", L"Jena", L"Kiel"};
    unsigned seed = 4242;
    auto next = [&seed](unsigned range) {
        seed = seed * 1103515245u + 12345u;
        return (seed >> 16) % range;
    };
    for (int row = 0; row < kRows; ++row) {
        wchar_t name[40], orders[16], date[16];
        swprintf(name, 40, L"%ls%ls & Co. %d", first[next(11)], second[next(7)], row + 1);
        swprintf(orders, 16, L"%u", next(500));
        int day = 20000101 + next(26) * 10000 + next(12) * 100 + next(28);
        FormDate(GlobalSession(), day, 0, date, 16);
        LPARAM id = 5000 + row * 3;  // record ids
        int status = next(10) < 6 ? 0 : next(2) + 1;
        KxListView_AddSpalte(g_page.list, row, 0, name, status, id);
        KxListView_AddSpalte(g_page.list, row, kOrders, orders, -1, 0);
        KxListView_AddSpalte(g_page.list, row, kLastOrder, row % 37 == 5 ? L"" : date, -1, 0);
        KxListView_AddSpalte(g_page.list, row, kCity, cities[next(10)], -1, 0);
    }
}

void build(HWND page) {
    // An empty dialog template: the table sits in a dialog as hosts use it.
    struct {
        DLGTEMPLATE header;
        WORD menu, windowClass, title;
    } empty = {};
    empty.header.style = DS_CONTROL | WS_CHILD | WS_VISIBLE;
    HWND dialog = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), &empty.header, page,
                                             tableDialogProc, 0);
    MoveWindow(dialog, 0, 0, 640, 440, FALSE);

    g_page.list = CreateWindowExW(WS_EX_CLIENTEDGE, WC_LISTVIEWW, L"",
                                  WS_CHILD | WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_SHOWSELALWAYS,
                                  10, 30, 620, 400, dialog, reinterpret_cast<HMENU>(kListId), nullptr, nullptr);
    SendMessageW(g_page.list, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), 0);
    ListView_SetExtendedListViewStyle(g_page.list, LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
    g_page.images = ImageList_Create(16, 16, ILC_COLOR24 | ILC_MASK, 3, 0);
    const COLORREF statusColours[] = {RGB(40, 160, 70), RGB(230, 170, 30), RGB(200, 50, 50)};
    for (COLORREF colour : statusColours) {
        HBITMAP bitmap = statusBitmap(colour);
        ImageList_AddMasked(g_page.images, bitmap, RGB(255, 255, 255));
        DeleteObject(bitmap);
    }
    ListView_SetImageList(g_page.list, g_page.images, LVSIL_SMALL);  // the list view destroys it

    KxListView_AddHeader(g_page.list, L"Customer (status)", kCustomer, 200);
    KxListView_AddHeader(g_page.list, L"Orders", kOrders, 80);
    KxListView_AddHeader(g_page.list, L"Last order", kLastOrder, 110);
    KxListView_AddHeader(g_page.list, L"City", kCity, 100);
    KxListView_SetLastColumnWidth(g_page.list, kCity);
    fillTable();

    LOGFONTW bold;
    GetObjectW(GetStockObject(DEFAULT_GUI_FONT), sizeof(bold), &bold);
    bold.lfWeight = FW_BOLD;
    g_page.boldFont = CreateFontIndirectW(&bold);

    // Select a customer, then sort by date: the selection is scrolled into view.
    ListView_SetItemState(g_page.list, 123, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    sortBy(kLastOrder);
    int top = ListView_GetTopIndex(g_page.list);
    g_page.colouredRow = KxListView_GetItemData(g_page.list, top + 2);

    wchar_t caption[160];
    LPARAM selectedValue = 0;
    int selected = KxListView_GetSelection(g_page.list, &selectedValue);
    swprintf(caption, 160,
             L"%d rows sorted by \"Last order\" (column %d, arrow up = ascending); selected row %d "
             L"(record %ld) scrolled into view; record %ld coloured by custom draw.",
             kRows, KxListView_GetSortColumn(g_page.list, 0, nullptr), selected,
             static_cast<long>(selectedValue), static_cast<long>(g_page.colouredRow));
    AddLabel(dialog, 10, 4, 620, 24, caption);
    SetFocus(g_page.list);
}

const bool registered = RegisterGalleryPage(
    {L"04-listview", 640, 440, build,
     L"List view helpers: a customer table built with the column and cell helpers, sorted by "
     L"its date column with the arrow in the header, one row coloured through custom draw."});

}  // namespace
