// Sorting a report list view by a text, a number and a date column, against two baselines
// measured in the same run:
//   floor  - LVM_SORTITEMS with a comparison over precomputed integer keys (the list view's own
//            sorting cost and nothing else);
//   naive  - LVM_SORTITEMSEX with a comparison that reads and converts both cell texts on every
//            call, as a host without the library would write it.
// Before every timed sort the rows are put back into the same shuffled order (not timed).
#include "bench.h"
#include <commctrl.h>
#include <stdlib.h>
#include <algorithm>
#include <random>
#include <vector>
#include "kvbase.h"
#include "kvkit_listview.h"
#include "kvtext.h"

namespace {

enum Column { kText = 0, kNumber = 1, kDate = 2 };
const char* const kColumnNames[] = {"text", "number", "date"};

// Rows carry record ids that are neither dense nor in row order, like the suite's.
LPARAM idOf(int index) { return 1000 + 7 * static_cast<LPARAM>(index); }
int indexOf(LPARAM id) { return static_cast<int>((id - 1000) / 7); }

struct Table {
    HWND list = nullptr;
    int rows = 0;
    std::vector<int> keys[3];      // integer sort key of each record, per column (the floor's)
    std::vector<int> shuffleKey;   // restores the starting order
};

const std::vector<int>* g_floorKeys = nullptr;

int CALLBACK compareFloor(LPARAM a, LPARAM b, LPARAM) {
    int keyA = (*g_floorKeys)[indexOf(a)], keyB = (*g_floorKeys)[indexOf(b)];
    return keyA < keyB ? -1 : keyA > keyB ? 1 : 0;
}

// LVM_SORTITEMSEX passes the rows' current indices.
int CALLBACK compareNaive(LPARAM rowA, LPARAM rowB, LPARAM packed) {
    HWND list = reinterpret_cast<HWND>(packed);
    int column = GetWindowLongW(list, GWL_USERDATA);
    wchar_t a[260], b[260];
    ListView_GetItemText(list, static_cast<int>(rowA), column, a, 260);
    ListView_GetItemText(list, static_cast<int>(rowB), column, b, 260);
    if (column == kText) return lstrcmpiW(a, b);
    int valueA, valueB;
    if (column == kNumber) {
        valueA = _wtol(a);
        valueB = _wtol(b);
    } else {
        DeFormDate(GlobalSession(), a, 0, &valueA, 0);
        DeFormDate(GlobalSession(), b, 0, &valueB, 0);
    }
    return valueA < valueB ? -1 : valueA > valueB ? 1 : 0;
}

void fillTable(Table& table, HWND parent, int rows, std::mt19937& random) {
    table.rows = rows;
    // Visible inside a hidden parent: the list view then has its header (Wine creates it only
    // for a visible report view) but never paints.
    table.list = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | LVS_REPORT, 0, 0, 600, 400,
                                 parent, nullptr, nullptr, nullptr);
    KxListView_AddHeader(table.list, L"Name", kText, 150);
    KxListView_AddHeader(table.list, L"Amount", kNumber, 80);
    KxListView_AddHeader(table.list, L"Date", kDate, 90);
    std::vector<std::wstring> names(rows);
    for (auto& k : table.keys) k.resize(rows);
    SendMessageW(table.list, LVM_SETITEMCOUNT, rows, 0);
    for (int i = 0; i < rows; ++i) {
        wchar_t name[16], amount[16], date[16];
        int length = 4 + random() % 8;
        for (int c = 0; c < length; ++c) name[c] = static_cast<wchar_t>((c == 0 ? L'A' : L'a') + random() % 26);
        name[length] = 0;
        int value = static_cast<int>(random() % 2000001) - 1000000;
        int year = 1990 + random() % 40, month = 1 + random() % 12, day = 1 + random() % 28;
        wsprintfW(amount, L"%d", value);
        wsprintfW(date, L"%02d.%02d.%04d", day, month, year);
        KxListView_AddSpalte(table.list, i, 0, name, -1, idOf(i));
        KxListView_AddSpalte(table.list, i, kNumber, amount, -1, 0);
        KxListView_AddSpalte(table.list, i, kDate, date, -1, 0);
        names[i] = name;
        table.keys[kNumber][i] = value;
        table.keys[kDate][i] = year * 10000 + month * 100 + day;
    }
    // The floor's text key is the text's rank in the order the comparison would give.
    std::vector<int> order(rows);
    for (int i = 0; i < rows; ++i) order[i] = i;
    std::sort(order.begin(), order.end(),
              [&](int a, int b) { return lstrcmpiW(names[a].c_str(), names[b].c_str()) < 0; });
    int rank = 0;
    for (int i = 0; i < rows; ++i) {
        if (i > 0 && lstrcmpiW(names[order[i - 1]].c_str(), names[order[i]].c_str()) != 0) ++rank;
        table.keys[kText][order[i]] = rank;
    }
    table.shuffleKey.resize(rows);
    for (int i = 0; i < rows; ++i) table.shuffleKey[i] = static_cast<int>(random());
}

void shuffle(Table& table) {
    g_floorKeys = &table.shuffleKey;
    SendMessageW(table.list, LVM_SORTITEMS, 0, reinterpret_cast<LPARAM>(compareFloor));
}

double now() {
    LARGE_INTEGER counter, frequency;
    QueryPerformanceCounter(&counter);
    QueryPerformanceFrequency(&frequency);
    return double(counter.QuadPart) / double(frequency.QuadPart);
}

// Best time of `rounds` sorts, each from the same shuffled order.
template <typename Sort>
double timeSort(Table& table, int rounds, Sort sort) {
    double best = 1e30;
    for (int round = 0; round < rounds; ++round) {
        shuffle(table);
        double start = now();
        sort();
        best = std::min(best, now() - start);
    }
    return best;
}

bool isSorted(const Table& table, Column column) {
    const std::vector<int>& keys = table.keys[column];
    for (int row = 1; row < table.rows; ++row)
        if (keys[indexOf(KxListView_GetItemData(table.list, row - 1))] >
            keys[indexOf(KxListView_GetItemData(table.list, row))])
            return false;
    return true;
}

}  // namespace

// An optional argument limits the largest table (for a quick run).
int main(int argc, char** argv) {
    int largest = argc > 1 ? atoi(argv[1]) : 50000;
    INITCOMMONCONTROLSEX init = {sizeof(init), ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&init);
    HWND parent = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 600, 400, nullptr, nullptr,
                                  nullptr, nullptr);
    std::mt19937 random(20261121);
    printf("Sorting a report list view (times are the best of several sorts from the same shuffled\n"
           "order; ratios are to the floor: LVM_SORTITEMS over precomputed integer keys)\n\n");

    const int sizes[] = {1000, 10000, 50000};
    for (int rows : sizes) {
        if (rows > largest) break;
        Table table;
        fillTable(table, parent, rows, random);
        int rounds = rows >= 50000 ? 2 : 5;
        printf("%d rows\n", rows);
        for (Column column : {kText, kNumber, kDate}) {
            g_floorKeys = nullptr;
            double floor = timeSort(table, rounds, [&] {
                g_floorKeys = &table.keys[column];
                SendMessageW(table.list, LVM_SORTITEMS, 0, reinterpret_cast<LPARAM>(compareFloor));
            });
            double library = timeSort(table, rounds, [&] {
                KxListView_SetHeaderData(table.list, column, 0);  // ascending every time
                KxListView_SortItemsNew(table.list, column, column, 0, -1, -1, 0, 0,
                                        GlobalSession(), 0);
            });
            bool libraryCorrect = isSorted(table, column);
            // The naive comparison finds rows by index, which the list view looks up linearly:
            // one round is all the largest table can afford.
            double naive = timeSort(table, rows >= 50000 ? 1 : rounds, [&] {
                SetWindowLongW(table.list, GWL_USERDATA, column);
                SendMessageW(table.list, LVM_SORTITEMSEX, reinterpret_cast<WPARAM>(table.list),
                             reinterpret_cast<LPARAM>(compareNaive));
            });
            char label[64];
            snprintf(label, sizeof(label), "  %-6s floor LVM_SORTITEMS, integer keys", kColumnNames[column]);
            bench::Report(label, floor, floor);
            snprintf(label, sizeof(label), "  %-6s KxListView_SortItemsNew%s", kColumnNames[column],
                     libraryCorrect ? "" : " (WRONG ORDER)");
            bench::Report(label, library, floor);
            snprintf(label, sizeof(label), "  %-6s naive, reads both cells per call", kColumnNames[column]);
            bench::Report(label, naive, floor);
        }
        DestroyWindow(table.list);
        printf("\n");
    }
    DestroyWindow(parent);
    return 0;
}
