// Customer list: a small host of kvkit. A resizable dialog holds a list view of customers whose
// columns sort by text, number and date, with customers not contacted for a year drawn in red and
// a search field that filters by name; the dialog's placement is remembered between runs.
//
//   customers.exe            shows the dialog until it is closed
//   customers.exe --script   runs a scripted session, prints each step and exits 0 when every
//                            step behaved as expected
#include <windows.h>
#include <commctrl.h>
#include <stdio.h>
#include <wchar.h>
#include <vector>
#include "kvbase.h"
#include "kvkit_core.h"
#include "kvkit_listview.h"
#include "kvkit_sizedlg.h"
#include "kvkit_version.h"
#include "kvtext.h"
#include "resource.h"

namespace {

struct Customer {
    LPARAM id;                 // the row value
    const wchar_t* name;
    const wchar_t* number;     // plain digits: number keys read the text with _wtol
    const wchar_t* lastContact;  // "dd.mm.yyyy", as kvbase formats and parses dates
    const wchar_t* city;
};

const Customer kCustomers[] = {
    {101, L"Albers GmbH", L"4711", L"03.02.2024", L"Bremen"},
    {102, L"Brandt & Sons", L"815", L"17.11.2023", L"Kiel"},
    {103, L"Claasen KG", L"12000", L"28.02.2024", L"Hamburg"},
    {104, L"Dietz AG", L"99", L"05.01.2022", L"Luebeck"},
    {105, L"Ebert OHG", L"", L"", L"Bremen"},  // new: no number, never contacted
};

struct Column {
    const wchar_t* title;
    int width;
    int keyType;
};
const Column kColumns[] = {
    {L"Name", 110, KX_SORT_TEXT},
    {L"Customer no.", 80, KX_SORT_NUMBER},
    {L"Last contact", 80, KX_SORT_DATE},
    {L"City", 70, KX_SORT_TEXT},
};
const int kColumnCount = 4;
const int kNameColumn = 0;

// Where the dialog's placement is remembered (HKCU\Software\Veltrix\korvane.desk\dialogs\...).
const wchar_t kPlacementName[] = L"CustomersDemo";
// A customer whose last contact lies before this date is overdue.
const int kOverdueBefore = 20230301;

// The labels move down with the search field instead of scaling; everything else keeps the
// defaults (the edit stretches horizontally, the list view scales, OK and Cancel keep to the
// lower right corner).
const KXSIZE_ATTR kLayout[] = {{IDC_SEARCH_LABEL, KXSIZE_MOVE_TOP}};

bool isOverdue(LPARAM id) {
    for (const Customer& customer : kCustomers) {
        if (customer.id != id) continue;
        int date = 0;
        DeFormDate(GlobalSession(), customer.lastContact, 0, &date, 0);
        return date != 0 && date < kOverdueBefore;
    }
    return false;
}

// Shows the customers whose name contains the search text, in the current sort order.
void fillList(HWND dialog) {
    HWND list = GetDlgItem(dialog, IDC_CUSTOMERS);
    wchar_t search[64];
    GetDlgItemTextW(dialog, IDC_SEARCH, search, 64);
    CharLowerW(search);
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    SendMessageW(list, LVM_DELETEALLITEMS, 0, 0);
    int row = 0;
    for (const Customer& customer : kCustomers) {
        wchar_t name[64];
        lstrcpynW(name, customer.name, 64);
        CharLowerW(name);
        if (!wcsstr(name, search)) continue;
        KxListView_AddSpalte(list, row, 0, customer.name, -1, customer.id);
        KxListView_AddSpalte(list, row, 1, customer.number, -1, 0);
        KxListView_AddSpalte(list, row, 2, customer.lastContact, -1, 0);
        KxListView_AddSpalte(list, row, 3, customer.city, -1, 0);
        ++row;
    }
    // Sort again by the column that shows the arrow, keeping its direction.
    KxListView_GetSortColumn(list, 1, nullptr);
    SendMessageW(list, WM_SETREDRAW, TRUE, 0);
}

void sortByColumn(HWND list, int column) {
    // Ties are broken by name; dates need the session, without one they sort as text.
    int secondColumn = column == kNameColumn ? -1 : kNameColumn;
    KxListView_SortItemsNew(list, column, kColumns[column].keyType, 0, -1, secondColumn,
                            KX_SORT_TEXT, 0, GlobalSession(), 0);
}

INT_PTR CALLBACK customersProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG: {
        KxSizeDlgStart(dialog, 1, kLayout, 1);
        KxSizeDlgLoad(dialog, kPlacementName);
        HWND list = GetDlgItem(dialog, IDC_CUSTOMERS);
        SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT);
        for (int i = 0; i < kColumnCount; ++i)
            KxListView_AddHeader(list, kColumns[i].title, i, kColumns[i].width);
        fillList(dialog);
        KxListView_SetLastColumnWidth(list, kColumnCount - 1);
        return TRUE;
    }
    case WM_SIZING:
        return KxSizingDlg(dialog, static_cast<UINT>(wParam), lParam);
    case WM_SIZE:
        KxSizeDlg(dialog, static_cast<UINT>(wParam), lParam);
        KxListView_SetLastColumnWidth(GetDlgItem(dialog, IDC_CUSTOMERS), kColumnCount - 1);
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDC_SEARCH && HIWORD(wParam) == EN_CHANGE) fillList(dialog);
        if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) DestroyWindow(dialog);
        return TRUE;
    case WM_NOTIFY: {
        auto* header = reinterpret_cast<NMHDR*>(lParam);
        if (header->idFrom != IDC_CUSTOMERS) return FALSE;
        if (header->code == LVN_COLUMNCLICK) {
            sortByColumn(header->hwndFrom, reinterpret_cast<NMLISTVIEW*>(lParam)->iSubItem);
            return TRUE;
        }
        if (header->code == NM_CUSTOMDRAW) {
            // The dialog answers through DWLP_MSGRESULT in every drawing stage: the kvkit call
            // stores only the first stage's answer there itself.
            auto* draw = reinterpret_cast<NMLVCUSTOMDRAW*>(lParam);
            LPARAM row = draw->nmcd.lItemlParam;
            LPARAM filter = isOverdue(row) ? row : LPARAM(-2);  // -2: no customer has that value
            LRESULT result = KxListView_SetItemColorFont(dialog, header->hwndFrom, draw, filter,
                                                         RGB(192, 0, 0), CLR_NONE, nullptr);
            SetWindowLongPtrW(dialog, DWLP_MSGRESULT, result);
            return TRUE;
        }
        return FALSE;
    }
    case WM_CLOSE:
        DestroyWindow(dialog);
        return TRUE;
    case WM_DESTROY:
        // Save first: ending removes the dialog from the layout engine.
        KxSizeDlgSave(dialog, kPlacementName);
        KxSizeDlgEnd(dialog);
        return TRUE;
    }
    return FALSE;
}

HWND openCustomers(HINSTANCE instance) {
    return CreateDialogParamW(instance, MAKEINTRESOURCEW(IDD_CUSTOMERS), nullptr, customersProc, 0);
}

// --- the scripted session ---------------------------------------------------------------------

int g_failures = 0;

void check(bool passed, const wchar_t* step) {
    wprintf(L"%ls %ls\n", passed ? L"ok  " : L"FAIL", step);
    fflush(stdout);
    if (!passed) ++g_failures;
}

void pump() {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
}

std::vector<LPARAM> rowValues(HWND list) {
    std::vector<LPARAM> values;
    int count = static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
    for (int row = 0; row < count; ++row) values.push_back(KxListView_GetItemData(list, row));
    return values;
}

// A mouse click in the middle of the column's header item, as the user gives it.
void clickHeader(HWND list, int column) {
    HWND header = reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
    RECT item = {};
    SendMessageW(header, HDM_GETITEMRECT, column, reinterpret_cast<LPARAM>(&item));
    LPARAM point = MAKELPARAM((item.left + item.right) / 2, (item.top + item.bottom) / 2);
    SendMessageW(header, WM_LBUTTONDOWN, MK_LBUTTON, point);
    SendMessageW(header, WM_LBUTTONUP, 0, point);
    pump();
}

RECT childRect(HWND dialog, int id) {
    RECT rect;
    GetWindowRect(GetDlgItem(dialog, id), &rect);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

int width(const RECT& rect) { return rect.right - rect.left; }
int height(const RECT& rect) { return rect.bottom - rect.top; }

int runScript(HINSTANCE instance) {
    check(KxGetVersion() >= KVKIT_VERSION, L"kvkit.dll is at least as new as the headers");
    // Start without a remembered placement.
    RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\Veltrix\\korvane.desk\\dialogs\\CustomersDemo");

    HWND dialog = openCustomers(instance);
    check(dialog != nullptr, L"the dialog opens");
    if (!dialog) return 1;
    ShowWindow(dialog, SW_SHOW);
    pump();
    HWND list = GetDlgItem(dialog, IDC_CUSTOMERS);
    check(rowValues(list).size() == 5, L"five customers are listed");

    clickHeader(list, 2);
    int ascending = -1;
    check(KxListView_GetSortColumn(list, 0, &ascending) == 2 && ascending == 1,
          L"a click on \"Last contact\" sorts it ascending and moves the arrow there");
    check(rowValues(list) == std::vector<LPARAM>{105, 104, 102, 101, 103},
          L"dates sort by day, the customer never contacted first");
    clickHeader(list, 2);
    check(rowValues(list) == std::vector<LPARAM>{103, 101, 102, 104, 105},
          L"a second click sorts descending");
    clickHeader(list, 1);
    check(rowValues(list) == std::vector<LPARAM>{105, 104, 102, 101, 103},
          L"customer numbers sort as numbers (99 before 815 before 4711 before 12000)");

    SetDlgItemTextW(dialog, IDC_SEARCH, L"b");
    pump();
    check(rowValues(list) == std::vector<LPARAM>{105, 102, 101},
          L"the search keeps the names with a \"b\", still sorted by number");
    SetDlgItemTextW(dialog, IDC_SEARCH, L"");
    pump();

    RECT designWindow, designList, designOk, designSearch, client;
    GetWindowRect(dialog, &designWindow);
    designList = childRect(dialog, IDC_CUSTOMERS);
    designOk = childRect(dialog, IDOK);
    designSearch = childRect(dialog, IDC_SEARCH);
    GetClientRect(dialog, &client);
    int okToRight = client.right - designOk.right, okToBottom = client.bottom - designOk.bottom;

    const int grow = 200;
    SetWindowPos(dialog, nullptr, 0, 0, width(designWindow) + grow, height(designWindow) + grow,
                 SWP_NOMOVE | SWP_NOZORDER);
    pump();
    RECT list2 = childRect(dialog, IDC_CUSTOMERS), ok2 = childRect(dialog, IDOK),
         search2 = childRect(dialog, IDC_SEARCH);
    GetClientRect(dialog, &client);
    check(width(list2) > width(designList) + grow / 2 && height(list2) > height(designList) + grow / 2,
          L"the list view grows with the dialog");
    check(client.right - ok2.right == okToRight && client.bottom - ok2.bottom == okToBottom,
          L"OK keeps its distance to the lower right corner");
    check(width(search2) > width(designSearch) && height(search2) == height(designSearch),
          L"the search field widens and keeps its height");

    RECT grown;
    GetWindowRect(dialog, &grown);
    SetWindowPos(dialog, nullptr, 0, 0, width(designWindow) - 50, height(designWindow),
                 SWP_NOMOVE | SWP_NOZORDER);
    pump();
    RECT shrunk;
    GetWindowRect(dialog, &shrunk);
    check(width(shrunk) == width(designWindow) && height(shrunk) == height(designWindow),
          L"a dialog made smaller than its design size snaps back to it");
    SetWindowPos(dialog, nullptr, 0, 0, width(grown), height(grown), SWP_NOMOVE | SWP_NOZORDER);
    pump();

    SendMessageW(dialog, WM_COMMAND, IDOK, 0);
    pump();
    check(!IsWindow(dialog), L"OK closes the dialog");
    BYTE placement[64];
    DWORD type = 0, bytes = sizeof(placement);
    LONG read = RegGetValueW(HKEY_CURRENT_USER,
                             L"Software\\Veltrix\\korvane.desk\\dialogs\\CustomersDemo",
                             L"position", RRF_RT_ANY, &type, placement, &bytes);
    check(read == ERROR_SUCCESS && type == REG_BINARY && bytes == 44,
          L"the placement is stored as 44 bytes of REG_BINARY \"position\"");

    dialog = openCustomers(instance);
    ShowWindow(dialog, SW_SHOW);
    pump();
    RECT reopened;
    GetWindowRect(dialog, &reopened);
    check(width(reopened) == width(grown) && height(reopened) == height(grown),
          L"the dialog reopens at its remembered size");
    DestroyWindow(dialog);
    pump();

    wprintf(L"customers: %d failed\n", g_failures);
    return g_failures ? 1 : 0;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    // The host's part: common controls for the classes its dialogs use, its language and
    // resource modules, then kvkit.
    INITCOMMONCONTROLSEX controls = {sizeof(controls), ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&controls);
    HINSTANCE texts = LoadLibraryW(L"kvsample_language.dll");
    HINSTANCE pictures = LoadLibraryW(L"kvsample_resources.dll");
    if (!texts || !pictures) {
        fwprintf(stderr, L"customers: the language and resource modules must lie beside the program\n");
        return 2;
    }
    Kx1SetLanguage(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), pictures, texts);
    InitTool();

    HINSTANCE instance = GetModuleHandleW(nullptr);
    if (argc > 1 && wcscmp(argv[1], L"--script") == 0) return runScript(instance);

    HWND dialog = openCustomers(instance);
    if (!dialog) return 1;
    ShowWindow(dialog, SW_SHOW);
    MSG msg;
    while (IsWindow(dialog) && GetMessageW(&msg, nullptr, 0, 0) > 0) {
        if (!IsDialogMessageW(dialog, &msg)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
    }
    return 0;
}
