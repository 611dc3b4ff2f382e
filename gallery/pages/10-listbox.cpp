// Multi-column list box: a contact list with column titles (sorted by name), toggle buttons,
// check marks with three numbered selections and a row being dragged onto another; beside it
// the row pictures by type letter and the list's cursors; below, the same contacts in a
// multi-column list with single selection.
#include "gallery/gallery.h"
#include <vector>
#include "kvkit_listbox.h"
#include "kvtext.h"

namespace {

const wchar_t kHostClass[] = L"KvGalleryListboxHost";
const int kContactList = 501, kColumnList = 502;

struct Contact {
    const wchar_t* name;
    const wchar_t* company;
    char type;
    short value;
};
const Contact kContacts[] = {
    {L"Lindholm, Karin", L"Nordwerk", 'K', 12}, {L"Berg & Co.", L"Berg & Co.", 'C', 48},
    {L"Falk, Jonas", L"Falk Reisen", 'T', 3},   {L"Haas Logistik", L"Haas", 'Z', 27},
    {L"Anders, Mia", L"Kernbau", 'K', 9},       {L"Brandt, Ole", L"Voss AG", 'B', 15},
    {L"Contract 2291", L"Sommer KG", 'D', 1},   {L"Stein, Eva", L"Steinhof", 'K', 33},
    {L"Warehouse Celle", L"Haas", 'O', 5},      {L"Roth, Paul", L"Rothmann", 'T', 21},
    {L"Kern Software", L"Kern", 'C', 64},       {L"Voss, Lena", L"Voss AG", 'K', 7},
    {L"Offer 118", L"Berg & Co.", 'D', 2},      {L"Wolf, Tim", L"Wolfsburg", 'X', 11},
};
const int kCount = sizeof(kContacts) / sizeof(kContacts[0]);

std::vector<KVLB_ITEM> g_items[2];
KVLB_LIST g_lists[2];

LRESULT CALLBACK hostProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_GETFONT:  // the lists take their parent's font (and delete it: a stock font stays)
        return reinterpret_cast<LRESULT>(GetStockObject(DEFAULT_GUI_FONT));
    case WM_DESTROY:
        for (KVLB_LIST& list : g_lists) {
            FreeMemory(list.order);  // the display order the control made belongs to the record
            list.order = nullptr;
        }
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

HWND createHost(HWND page) {
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = hostProc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = kHostClass;
    RegisterClassW(&windowClass);
    RECT client;
    GetClientRect(page, &client);
    return CreateWindowExW(0, kHostClass, L"", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0, client.right,
                           client.bottom, page, nullptr, GetModuleHandleW(nullptr), nullptr);
}

KVLB_LIST* makeList(int which, unsigned long style) {
    std::vector<KVLB_ITEM>& items = g_items[which];
    items.resize(kCount);
    for (int i = 0; i < kCount; ++i) {
        items[i] = KVLB_ITEM();
        items[i].id = static_cast<short>(i);
        items[i].picture = kContacts[i].type;
        items[i].value = kContacts[i].value;
        items[i].text = kContacts[i].name;
        items[i].secondText = kContacts[i].company;
    }
    KVLB_LIST& list = g_lists[which];
    list = KVLB_LIST();
    list.session = GlobalSession();
    list.instance = GetModuleHandleW(nullptr);
    list.style = style;
    list.itemCount = kCount;
    list.items = items.data();
    list.anchor = KVLB_NO_ITEM;
    return &list;
}

HWND createList(HWND host, int id, int x, int y, int width, int height, KVLB_LIST* list) {
    HWND container = CreateWindowExW(0, L"KVListbox", L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, x, y,
                                     width, height, host, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                     GetModuleHandleW(nullptr), nullptr);
    SendMessageW(container, KVLB_BUILD, 0, reinterpret_cast<LPARAM>(list));
    return container;
}

POINT rowCentre(HWND box, int row) {
    RECT rect = {};
    SendMessageW(box, LB_GETITEMRECT, row, reinterpret_cast<LPARAM>(&rect));
    return POINT{(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

void click(HWND box, int row) {
    POINT point = rowCentre(box, row);
    SendMessageW(box, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(point.x, point.y));
    SendMessageW(box, WM_LBUTTONUP, 0, MAKELPARAM(point.x, point.y));
}

void drawLegend(HDC dc, const RECT&) {
    HMODULE library = GetModuleHandleW(L"kvkit.dll");
    struct Row {
        int picture;
        const wchar_t* text;
    };
    const Row rows[] = {{101, L"C, Z  company"}, {102, L"other"},        {103, L"K  contact"},
                        {104, L"B  branch"},     {105, L"T  telephone"}, {106, L"D  document"},
                        {107, L"O  place"},      {108, L"anchor marker"}};
    HGDIOBJ previousFont = SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
    SetBkMode(dc, TRANSPARENT);
    int y = 6;
    for (const Row& row : rows) {
        HBITMAP picture = LoadBitmapW(library, MAKEINTRESOURCEW(row.picture));
        DrawBitmapScaled(dc, picture, 8, y, 1);
        DeleteObject(picture);
        TextOutW(dc, 32, y + 1, row.text, lstrlenW(row.text));
        y += 20;
    }
    const wchar_t* const cursors[] = {L"move", L"nofeld", L"movecur"};
    int x = 8;
    y += 6;
    for (const wchar_t* name : cursors) {
        DrawIconEx(dc, x, y, LoadCursorW(library, name), 32, 32, 0, nullptr, DI_NORMAL);
        TextOutW(dc, x, y + 34, name, lstrlenW(name));
        x += 64;
    }
    SelectObject(dc, previousFont);
}

void build(HWND page) {
    SetForegroundWindow(page);  // the pressed list shows its caret only while it has the focus
    HWND host = createHost(page);
    AddLabel(host, 10, 6, 620, 18,
             L"Sorted by \"Name\"; three selections numbered in the order made; \"Falk\" dragged onto row 3.");

    KVLB_LIST* contacts = makeList(0, KVLB_HEADERS | KVLB_CHECKCOLUMN | KVLB_NUMBERS | KVLB_MULTIPLESEL |
                                          KVLB_PICTURES | KVLB_VALUES | KVLB_SECONDTEXT | KVLB_DRAGROWS |
                                          KVLB_ANCHORMARK);
    contacts->toggles = KVLB_HAS_TOGGLE_PICTURES | KVLB_HAS_TOGGLE_VALUES | KVLB_HAS_TOGGLE_NUMBERS |
                        KVLB_HAS_TOGGLE_SECONDTEXT;
    contacts->secondTextChars = 12;
    contacts->columnWidths[KVLB_COLUMN_VALUE] = 34;
    lstrcpyW(contacts->title, L"Company");
    HWND list = createList(host, kContactList, 10, 28, 410, 262, contacts);
    HWND box = GetDlgItem(list, KVLB_LIST_ID);
    SendMessageW(GetDlgItem(list, KVLB_HEADER_TEXT), BM_CLICK, 0, 0);
    // Selected in this order, which is also their order on screen (so that rows can be dragged).
    for (int id : {1, 0, 7})
        for (int row = 0; row < kCount; ++row)
            if (g_lists[0].order[row] == id) click(box, row);

    AddLabel(host, 10, 296, 620, 18, L"Multi-column list (3 columns), single selection, pictures:");
    KVLB_LIST* columns = makeList(1, KVLB_MULTICOLUMN | KVLB_PICTURES);
    columns->columns = 3;
    HWND grid = createList(host, kColumnList, 10, 316, 620, 116, columns);
    click(GetDlgItem(grid, KVLB_LIST_ID), 4);

    // Falk pressed and dragged over the third row.
    int from = 0;
    while (g_lists[0].order[from] != 2) ++from;
    POINT start = rowCentre(box, from), over = rowCentre(box, 2);
    SendMessageW(box, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(start.x, start.y));
    SendMessageW(box, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(over.x, over.y));
    // The screenshot holds no pointer: the cursor the list set is painted where the pointer is.
    POINT pointer = over;
    MapWindowPoints(box, host, &pointer, 1);
    HCURSOR cursor = GetCursor();
    CreatePaintedPanel(host, pointer.x, pointer.y, 20, 20, [cursor](HDC dc, const RECT&) {
        DrawIconEx(dc, 0, 0, cursor, 32, 32, 0, nullptr, DI_NORMAL);
    });

    CreatePaintedPanel(host, 430, 28, 200, 262, drawLegend);
}

const bool registered = RegisterGalleryPage({L"10-listbox", 640, 440, build});

}  // namespace
