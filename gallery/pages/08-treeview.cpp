// Item search and tree views: a customer list after type-ahead ("H" twice) with the found row
// selected; a tree of customers and contacts with tri-state check boxes after a few clicks on
// them (parent and children rules), marks in the overlay images, bold and coloured customers, and
// the item found through Ctrl+F. A second screenshot shows the search dialog open over the tree.
#include "gallery/gallery.h"
#include <commctrl.h>
#include <stdio.h>
#include "kvkit_listview.h"
#include "kvkit_search.h"
#include "kvkit_treeview.h"
#include "kvtext.h"

namespace {

const int kListId = 801;
const int kTreeId = 802;
const UINT kUpdateTriState = WM_APP + 1;
const COLORREF kMagenta = RGB(255, 0, 255);
// State images: 1 unchecked, 2 checked, 3 some contacts checked.
const int kPartialImage = 3;
// Item images and the overlay images (marks) among them.
enum { kCustomerImage, kContactImage, kFlagImage, kStarImage };
const int kFlagMark = 1, kStarMark = 2;
// Record numbers of the tree items, numbered in the order of kCustomers from 1000.
const LPARAM kAnnaBerg = 1001, kFalk = 1003, kUweLenz = 1005, kMiaRoth = 1009, kLind = 1012,
             kEvaStein = 1014, kMaxWolf = 1015, kRothBau = 1016;

struct PageState {
    HWND page;
    HWND list;
    HWND tree;
    HIMAGELIST itemImages;
    HIMAGELIST stateImages;
    LPARAM colouredCustomer;
};
PageState g_page;

struct Customer {
    const wchar_t* name;
    const wchar_t* city;
    const wchar_t* contacts[3];
};
const Customer kCustomers[] = {
    {L"Berg & Co", L"Bremen", {L"Anna Berg", L"Jens Ohm", nullptr}},
    {L"Falk Logistik", L"Fulda", {L"Petra Falk", L"Uwe Lenz", L"Ida Brandt"}},
    {L"Haas AG", L"Hameln", {L"Karl Haas", L"Mia Roth", nullptr}},
    {L"Hofmann KG", L"Kiel", {L"Tom Hofmann", nullptr, nullptr}},
    {L"Lind GmbH", L"Jena", {L"Carl Lind", L"Eva Stein", L"Max Wolf"}},
    {L"Roth Bau", L"Celle", {L"Olga Roth", L"Ben Kern", nullptr}},
};

// A 16 x 16 picture on magenta, drawn by `paint`.
template <typename Paint>
void addImage(HIMAGELIST images, Paint paint) {
    HDC screen = GetDC(nullptr);
    HDC dc = CreateCompatibleDC(screen);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, 16, 16);
    HGDIOBJ old = SelectObject(dc, bitmap);
    HBRUSH background = CreateSolidBrush(kMagenta);
    RECT all = {0, 0, 16, 16};
    FillRect(dc, &all, background);
    DeleteObject(background);
    paint(dc);
    SelectObject(dc, old);
    ImageList_AddMasked(images, bitmap, kMagenta);
    DeleteObject(bitmap);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
}

HIMAGELIST makeItemImages() {
    HIMAGELIST images = ImageList_Create(16, 16, ILC_COLOR24 | ILC_MASK, 4, 0);
    addImage(images, [](HDC dc) {  // a building
        FillShape(dc, RGB(70, 110, 190), false, 2, 3, 14, 15);
        for (int y = 5; y < 13; y += 3) FillShape(dc, RGB(250, 240, 160), false, 5, y, 11, y + 2);
    });
    addImage(images, [](HDC dc) {  // a person
        FillShape(dc, RGB(60, 160, 90), true, 5, 1, 11, 7);
        FillShape(dc, RGB(60, 160, 90), true, 2, 8, 14, 18);
    });
    addImage(images, [](HDC dc) {  // mark 1: a red dot in the lower left corner
        FillShape(dc, RGB(220, 30, 30), true, 0, 7, 9, 16);
    });
    addImage(images, [](HDC dc) {  // mark 2: an orange square in the lower right corner
        FillShape(dc, RGB(250, 150, 20), false, 8, 8, 16, 16);
    });
    ImageList_SetOverlayImage(images, kFlagImage, kFlagMark);
    ImageList_SetOverlayImage(images, kStarImage, kStarMark);
    return images;
}

// Check boxes with a third state for customers whose contacts are partly checked.
HIMAGELIST makeStateImages() {
    HIMAGELIST images = ImageList_Create(16, 16, ILC_COLOR24 | ILC_MASK, 4, 0);
    for (int image = 0; image < 4; ++image) {
        addImage(images, [&](HDC dc) {
            if (image == 0) return;  // state image 0 is never shown
            FillShape(dc, RGB(255, 255, 255), false, 2, 2, 15, 15);
            if (image == kPartialImage) FillShape(dc, RGB(40, 90, 200), false, 5, 5, 12, 12);
            if (image != 2) return;
            HPEN pen = CreatePen(PS_SOLID, 2, RGB(0, 0, 0));
            HGDIOBJ old = SelectObject(dc, pen);
            MoveToEx(dc, 4, 8, nullptr);
            LineTo(dc, 7, 11);
            LineTo(dc, 12, 5);
            SelectObject(dc, old);
            DeleteObject(pen);
        });
    }
    return images;
}

// A customer whose box is set shows checked when all its contacts are, partly checked when some
// are; the library's rules see "partly" as checked, so its contacts stay clickable.
void updateTriState() {
    HWND tree = g_page.tree;
    for (HTREEITEM customer = TreeView_GetRoot(tree); customer;
         customer = TreeView_GetNextSibling(tree, customer)) {
        if (KxTreeView_GetCheckState(tree, customer) == 0) continue;
        int contacts = 0, checked = 0;
        for (HTREEITEM contact = TreeView_GetChild(tree, customer); contact;
             contact = TreeView_GetNextSibling(tree, contact)) {
            ++contacts;
            checked += KxTreeView_GetCheckState(tree, contact) == 1;
        }
        int image = checked == contacts ? 2 : checked > 0 ? kPartialImage : 2;
        TreeView_SetItemState(tree, customer, INDEXTOSTATEIMAGEMASK(image), TVIS_STATEIMAGEMASK);
    }
}

INT_PTR CALLBACK containerProc(HWND dialog, UINT message, WPARAM, LPARAM lParam) {
    switch (message) {
    case WM_NOTIFY: {
        auto* notify = reinterpret_cast<NMHDR*>(lParam);
        if (notify->hwndFrom == g_page.list && notify->code == LVN_KEYDOWN) {
            KxListView_SetCharSel(g_page.list, reinterpret_cast<NMLVKEYDOWN*>(lParam), nullptr);
            return FALSE;
        }
        if (notify->hwndFrom != g_page.tree) return FALSE;
        if (notify->code == NM_CLICK) {
            HTREEITEM item = nullptr;
            KxTreeView_HandleCheckChangeEx(g_page.tree, 0, 1, 1, &item);
            PostMessageW(dialog, kUpdateTriState, 0, 0);  // after the tree's own toggle
            return FALSE;  // answered 0: the tree goes on to toggle the box
        }
        if (notify->code == NM_CUSTOMDRAW) {
            LRESULT result = KxTreeView_SetItemColorFont(
                dialog, g_page.tree, reinterpret_cast<NMTVCUSTOMDRAW*>(lParam),
                g_page.colouredCustomer, RGB(180, 30, 50), static_cast<COLORREF>(-1), nullptr);
            SetWindowLongPtrW(dialog, DWLP_MSGRESULT, result);
            return TRUE;
        }
        return FALSE;
    }
    case kUpdateTriState:
        updateTriState();
        return TRUE;
    case WM_DESTROY:
        ImageList_Destroy(TreeView_SetImageList(g_page.tree, nullptr, TVSIL_STATE));
        ImageList_Destroy(TreeView_SetImageList(g_page.tree, nullptr, TVSIL_NORMAL));
        return FALSE;
    }
    return FALSE;
}

void buildList(HWND container) {
    g_page.list = AddControl(container, WC_LISTVIEWW, LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS,
                              10, 54, 330, 380, kListId);
    ListView_SetExtendedListViewStyle(g_page.list, LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
    KxListView_AddHeader(g_page.list, L"Customer", 0, 130);
    KxListView_AddHeader(g_page.list, L"City", 1, 90);
    KxListView_AddHeader(g_page.list, L"Contacts", 2, 70);
    KxListView_SetLastColumnWidth(g_page.list, 2);
    static const wchar_t* const more[] = {L"Haber Druck", L"Hagen Metall", L"Brandt Textil",
                                          L"Kern Optik", L"Sommer Reisen", L"Voss Elektro",
                                          L"Stein Verlag", L"Wolf Werkzeug", L"Hahn Holz",
                                          L"Albers Bau", L"Engel Pharma", L"Graf Mode",
                                          L"Nagel Druck", L"Paulsen Bank"};
    int row = 0;
    for (const Customer& customer : kCustomers) {
        int contacts = 0;
        for (const wchar_t* contact : customer.contacts) contacts += contact != nullptr;
        wchar_t count[8];
        swprintf(count, 8, L"%d", contacts);
        KxListView_AddSpalte(g_page.list, row, 0, customer.name, -1, 100 + row);
        KxListView_AddSpalte(g_page.list, row, 1, customer.city, -1, 0);
        KxListView_AddSpalte(g_page.list, row, 2, count, -1, 0);
        ++row;
    }
    for (const wchar_t* name : more) {
        KxListView_AddSpalte(g_page.list, row, 0, name, -1, 100 + row);
        KxListView_AddSpalte(g_page.list, row, 1, L"-", -1, 0);
        KxListView_AddSpalte(g_page.list, row, 2, L"0", -1, 0);
        ++row;
    }
    KxListView_SortItems(g_page.list, 0, 0, 0, -1);  // type-ahead searches the sorted column

    // The user types "H" twice: the second H moves on to the next customer beginning with it.
    SetFocus(g_page.list);
    SendMessageW(g_page.list, WM_KEYDOWN, 'H', 1);
    SendMessageW(g_page.list, WM_KEYDOWN, 'H', 1);
    LPARAM record = 0;
    int selected = KxListView_GetSelection(g_page.list, &record);
    int count = 0;
    int* rows = KxListView_GetSelItems(g_page.list, &count);
    FreeMemory(rows);
    wchar_t caption[160], name[64] = L"";
    ListView_GetItemText(g_page.list, selected, 0, name, 64);
    swprintf(caption, 160, L"Type-ahead on the sorted column: \"H\", \"H\" selected row %d, "
                           L"\"%ls\" (record %ld; %d row selected).",
             selected, name, static_cast<long>(record), count);
    AddLabel(container, 10, 8, 330, 40, caption);
}

// The item's check box, found by the tree's own hit test left of the label.
POINT checkBoxOf(HTREEITEM item) {
    RECT label;
    TreeView_GetItemRect(g_page.tree, item, &label, TRUE);
    TVHITTESTINFO hit = {};
    hit.pt.y = (label.top + label.bottom) / 2;
    for (hit.pt.x = label.left; hit.pt.x > 0; --hit.pt.x) {
        TreeView_HitTest(g_page.tree, &hit);
        if (hit.flags & TVHT_ONITEMSTATEICON) break;
    }
    hit.pt.x -= 6;  // into the middle of the box
    return hit.pt;
}

// A click as the mouse makes it on the item's check box.
void clickCheckBox(HTREEITEM item) {
    POINT client = checkBoxOf(item);
    POINT screen = client;
    ClientToScreen(g_page.tree, &screen);
    SetCursorPos(screen.x, screen.y);
    LPARAM at = MAKELPARAM(client.x, client.y);
    PostMessageW(g_page.tree, WM_LBUTTONDOWN, MK_LBUTTON, at);
    PostMessageW(g_page.tree, WM_LBUTTONUP, 0, at);
    PumpFor(30);
}

void buildTree(HWND container) {
    g_page.tree = AddControl(container, WC_TREEVIEWW,
                              TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS |
                                  TVS_CHECKBOXES,
                              360, 54, 390, 380, kTreeId);
    g_page.itemImages = makeItemImages();
    g_page.stateImages = makeStateImages();
    TreeView_SetImageList(g_page.tree, g_page.itemImages, TVSIL_NORMAL);
    TreeView_SetImageList(g_page.tree, g_page.stateImages, TVSIL_STATE);
    Kx1SetTreeViewProc(g_page.tree);

    LPARAM record = 1000;
    for (const Customer& customer : kCustomers) {
        int image = kCustomerImage;
        HTREEITEM top = KxTreeView_InsertItem(g_page.tree, nullptr, nullptr, nullptr, nullptr, &image,
                                              customer.name, record++, 1);
        for (const wchar_t* contact : customer.contacts) {
            if (!contact) continue;
            image = kContactImage;
            KxTreeView_InsertItem(g_page.tree, nullptr, top, nullptr, nullptr, &image, contact,
                                  record++, 0);
        }
    }
    KxTreeView_CheckAll(g_page.tree, nullptr, 0, nullptr, 0, nullptr);
    KxTreeView_ExpandTree(g_page.tree, 1);
    UpdateWindow(g_page.tree);

    // Customers with open orders in bold; one overdue customer in red; marks on two contacts
    // (red dot) and on every contact of one customer (orange square).
    auto item = [](LPARAM record) { return KxTreeView_GetItemWithData(g_page.tree, nullptr, record, nullptr); };
    KxTreeView_SetItemState(g_page.tree, item(kFalk), 1, TVIS_BOLD);
    KxTreeView_SetItemState(g_page.tree, item(kLind), 1, TVIS_BOLD);
    g_page.colouredCustomer = kRothBau;
    KxTreeView_SetMark(g_page.tree, item(kAnnaBerg), kFlagMark);
    KxTreeView_SetMark(g_page.tree, item(kMiaRoth), kFlagMark);
    KxTreeView_MarkAll(g_page.tree, nullptr, kStarMark, TreeView_GetChild(g_page.tree, item(kLind)));

    // Clicks under the parent and children rules: Falk checks all its contacts and Uwe Lenz is
    // unchecked again (Falk partly checked); Eva Stein is refused while Lind is unchecked; Lind
    // checks its contacts and Max Wolf is unchecked again.
    for (LPARAM record : {kFalk, kUweLenz, kEvaStein, kLind, kMaxWolf}) clickCheckBox(item(record));
    PumpFor(50);
}

// While the search dialog runs: type a text, take the screenshot, then press Find, which selects
// the item and ends the dialog.
VOID CALLBACK driveSearchDialog(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    HWND dialog = GetLastActivePopup(g_page.page);
    if (!dialog || dialog == g_page.page) return;
    SetDlgItemTextW(dialog, 100, L"stein");
    SendDlgItemMessageW(dialog, 100, EM_SETSEL, 0, -1);
    SaveScreenshot(g_page.page, L"08-treeview-search");
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
}

void build(HWND page) {
    g_page.page = page;
    struct {
        DLGTEMPLATE header;
        WORD menu, windowClass, title;
    } empty = {};
    empty.header.style = DS_CONTROL | WS_CHILD | WS_VISIBLE;
    HWND container = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), &empty.header, page,
                                                containerProc, 0);
    MoveWindow(container, 0, 0, 760, 440, FALSE);
    buildList(container);
    buildTree(container);

    // Ctrl+F on the tree opens the search dialog over it; the timer drives it.
    SetFocus(g_page.tree);
    TreeView_SelectItem(g_page.tree, TreeView_GetRoot(g_page.tree));
    SetTimer(nullptr, 0, 400, driveSearchDialog);
    BYTE keys[256];
    GetKeyboardState(keys);
    keys[VK_CONTROL] = 0x80;
    SetKeyboardState(keys);
    SendMessageW(g_page.tree, WM_KEYDOWN, 'F', 1);
    keys[VK_CONTROL] = 0;
    SetKeyboardState(keys);

    wchar_t caption[200];
    HTREEITEM found = TreeView_GetSelection(g_page.tree);
    wchar_t* name = KxTreeView_GetItemText(g_page.tree, found);
    swprintf(caption, 200, L"Check boxes after five clicks (parent and children rules; blue: some "
                           L"contacts checked, %d items checked); marks in the overlay images; "
                           L"Ctrl+F \"stein\" found \"%ls\".",
             KxTreeView_GetAllChecked(g_page.tree, nullptr, -1), name ? name : L"");
    FreeMemory(name);
    AddLabel(container, 360, 8, 390, 40, caption);
    SetFocus(g_page.list);
}

const bool registered = RegisterGalleryPage({L"08-treeview", 760, 440, build});

}  // namespace
