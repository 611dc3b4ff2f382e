// Finding a row of a report list view by value and by text, against the list view's own
// LVM_FINDITEM answering the same query in the same run (the baseline of each line). The row
// sought is the last one, so every search reads the whole list.
#include "bench.h"
#include <commctrl.h>
#include <stdlib.h>
#include <string>
#include "kvkit_listview.h"
#include "kvkit_search.h"
#include "kvtext.h"

namespace {

// Record ids are neither dense nor in row order, like the suite's.
LPARAM idOf(int row) { return 500000 + 7 * static_cast<LPARAM>(row); }

std::wstring nameOf(int row) {
    wchar_t name[32];
    swprintf(name, 32, L"Customer %06d GmbH", (row * 7919) % 1000003);
    return name;
}

HWND fillList(HWND parent, int rows) {
    // Visible inside a hidden parent: a report view with its header, never painted.
    HWND list = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | LVS_REPORT, 0, 0, 600,
                                400, parent, nullptr, nullptr, nullptr);
    KxListView_AddHeader(list, L"Name", 0, 150);
    KxListView_AddHeader(list, L"Amount", 1, 80);
    SendMessageW(list, LVM_SETITEMCOUNT, rows, 0);
    for (int row = 0; row < rows; ++row) {
        KxListView_AddSpalte(list, row, 0, nameOf(row).c_str(), -1, idOf(row));
        KxListView_AddSpalte(list, row, 1, std::to_wstring(row % 5000).c_str(), -1, 0);
    }
    return list;
}

int findItem(HWND list, UINT flags, const wchar_t* text, LPARAM value) {
    LVFINDINFOW find = {};
    find.flags = flags;
    find.psz = text;
    find.lParam = value;
    return static_cast<int>(
        SendMessageW(list, LVM_FINDITEMW, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&find)));
}

void check(const char* what, int found, int expected) {
    if (found != expected) printf("  %s found row %d, expected %d\n", what, found, expected);
}

}  // namespace

// An optional argument limits the largest list (for a quick run).
int main(int argc, char** argv) {
    int largest = argc > 1 ? atoi(argv[1]) : 100000;
    INITCOMMONCONTROLSEX init = {sizeof(init), ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&init);
    HWND parent = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 600, 400, nullptr, nullptr,
                                  nullptr, nullptr);
    printf("Finding the last row of a report list view (best of several rounds; ratios are to\n"
           "LVM_FINDITEM answering the same query)\n\n");

    for (int rows : {10000, 100000}) {
        if (rows > largest) break;
        HWND list = fillList(parent, rows);
        int last = rows - 1;
        std::wstring name = nameOf(last);
        std::wstring prefix = name.substr(0, name.size() - 5);  // the last row's alone
        int firstWithPrefix = last;
        int repeat = rows >= 100000 ? 2 : 10;
        printf("%d rows\n", rows);

        double baseline = bench::SecondsPerCall([&] { findItem(list, LVFI_PARAM, nullptr, idOf(last)); }, repeat);
        double library = bench::SecondsPerCall([&] { KxListView_GetItemWithData(list, idOf(last)); }, repeat);
        check("by value", KxListView_GetItemWithData(list, idOf(last)), last);
        bench::Report("  by value: LVM_FINDITEM (LVFI_PARAM)", baseline, baseline);
        bench::Report("  by value: KxListView_GetItemWithData", library, baseline);

        baseline = bench::SecondsPerCall([&] { findItem(list, LVFI_STRING, name.c_str(), 0); }, repeat);
        wchar_t exact[64];
        library = bench::SecondsPerCall([&] {
            kv_strcpy(exact, name.c_str(), 64);
            KxListView_GetItemWithText(list, 0, 0, exact, 1);
        }, repeat);
        kv_strcpy(exact, name.c_str(), 64);
        check("exact", KxListView_GetItemWithText(list, 0, 0, exact, 1), last);
        bench::Report("  exact text: LVM_FINDITEM (LVFI_STRING)", baseline, baseline);
        bench::Report("  exact text: KxListView_GetItemWithText", library, baseline);

        baseline = bench::SecondsPerCall(
            [&] { findItem(list, LVFI_STRING | LVFI_PARTIAL, prefix.c_str(), 0); }, repeat);
        wchar_t start[64];
        kv_strcpy(start, prefix.c_str(), 64);
        library = bench::SecondsPerCall([&] { KxListView_GetItemWithText(list, 0, 0, start, 0); }, repeat);
        double full = bench::SecondsPerCall([&] {
            KxListView_GetItemWithTextEx(list, 0, 0, prefix.c_str(), 0, 0, KX_FIND_TEXT, nullptr, 0, 0);
        }, repeat);
        double session = bench::SecondsPerCall([&] {
            KxListView_GetItemWithTextEx(list, 0, 0, prefix.c_str(), 0, 0, KX_FIND_TEXT, GlobalSession(), 0, 0);
        }, repeat);
        check("prefix", KxListView_GetItemWithText(list, 0, 0, start, 0), firstWithPrefix);
        check("prefix, full form", KxListView_GetItemWithTextEx(list, 0, 0, prefix.c_str(), 0, 0,
                                                                KX_FIND_TEXT, nullptr, 0, 0),
              firstWithPrefix);
        bench::Report("  prefix: LVM_FINDITEM (LVFI_PARTIAL)", baseline, baseline);
        bench::Report("  prefix: KxListView_GetItemWithText", library, baseline);
        bench::Report("  prefix: ..WithTextEx (column copied first)", full, baseline);
        bench::Report("  prefix: ..WithTextEx, session collation", session, baseline);
        DestroyWindow(list);
        printf("\n");
    }
    DestroyWindow(parent);
    return 0;
}
