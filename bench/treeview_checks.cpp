// A check-rule click on the first top-level item of a 10,000-item tree, against the floor of one
// TVM_SETITEM per item that the rule changes, sent to the same tree in the same run:
//   children rule - the item has 9,999 children, all of which get checked;
//   one of many   - 100 customers with 99 contacts each: every other item gets unchecked.
// The items are put back into their starting state before every timed click (not timed).
#include "bench.h"
#include <commctrl.h>
#include <algorithm>
#include <vector>
#include "kvkit_treeview.h"

namespace {

double now() {
    LARGE_INTEGER counter, frequency;
    QueryPerformanceCounter(&counter);
    QueryPerformanceFrequency(&frequency);
    return double(counter.QuadPart) / double(frequency.QuadPart);
}

// Best time of `rounds` runs of `work`, each after `reset`.
template <typename Reset, typename Work>
double bestOf(int rounds, Reset reset, Work work) {
    double best = 1e30;
    for (int round = 0; round < rounds; ++round) {
        reset();
        double start = now();
        work();
        best = std::min(best, now() - start);
    }
    return best;
}

void setState(HWND tree, HTREEITEM item, int image) {
    TVITEMW data = {};
    data.mask = TVIF_STATE | TVIF_HANDLE;
    data.hItem = item;
    data.stateMask = TVIS_STATEIMAGEMASK;
    data.state = INDEXTOSTATEIMAGEMASK(image);
    SendMessageW(tree, TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&data));
}

HWND makeTree(HWND parent) {
    // Visible inside a hidden parent: laid out like a shown tree, never painted.
    return CreateWindowExW(0, WC_TREEVIEWW, L"", WS_CHILD | WS_VISIBLE | TVS_HASBUTTONS |
                           TVS_HASLINES | TVS_LINESATROOT | TVS_CHECKBOXES,
                           0, 0, 300, 400, parent, nullptr, nullptr, nullptr);
}

HTREEITEM insert(HWND tree, HTREEITEM parent, LPARAM value, std::vector<HTREEITEM>& all) {
    HTREEITEM item = KxTreeView_InsertItem(tree, nullptr, parent, nullptr, nullptr, nullptr,
                                           L"item", value, 0);
    all.push_back(item);
    return item;
}

void report(const char* rule, double floor, double library, bool correct) {
    char label[96];
    snprintf(label, sizeof(label), "  %s: floor, one TVM_SETITEM per item", rule);
    bench::Report(label, floor, floor);
    snprintf(label, sizeof(label), "  %s: KxTreeView_HandleCheckChangeEx%s", rule,
             correct ? "" : " (WRONG RESULT)");
    bench::Report(label, library, floor);
}

}  // namespace

int main() {
    INITCOMMONCONTROLSEX init = {sizeof(init), ICC_TREEVIEW_CLASSES};
    InitCommonControlsEx(&init);
    HWND parent = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 300, 400, nullptr, nullptr,
                                  nullptr, nullptr);
    const int rounds = 5;
    printf("A check-rule click on the first top-level item of a 10,000-item tree (best of %d;\n"
           "ratios are to one TVM_SETITEM per changed item)\n\n", rounds);

    {
        HWND tree = makeTree(parent);
        std::vector<HTREEITEM> all;
        HTREEITEM top = insert(tree, nullptr, 0, all);
        for (int i = 1; i < 10000; ++i) insert(tree, top, i, all);
        auto uncheckAll = [&] { for (HTREEITEM item : all) setState(tree, item, 1); };
        double floor = bestOf(rounds, uncheckAll, [&] {
            for (size_t i = 1; i < all.size(); ++i) setState(tree, all[i], 2);
        });
        double library = bestOf(rounds, uncheckAll, [&] {
            HTREEITEM item = top;
            KxTreeView_HandleCheckChangeEx(tree, 0, 0, 1, &item);
        });
        bool correct = KxTreeView_GetAllChecked(tree, top, 1) == 9999;
        report("children rule", floor, library, correct);
        DestroyWindow(tree);
    }
    {
        HWND tree = makeTree(parent);
        std::vector<HTREEITEM> all;
        for (int customer = 0; customer < 100; ++customer) {
            HTREEITEM top = insert(tree, nullptr, customer, all);
            for (int contact = 0; contact < 99; ++contact) insert(tree, top, contact, all);
        }
        auto checkAll = [&] { for (HTREEITEM item : all) setState(tree, item, 2); };
        double floor = bestOf(rounds, checkAll, [&] {
            for (size_t i = 1; i < all.size(); ++i) setState(tree, all[i], 1);
        });
        setState(tree, all[0], 1);
        double library = bestOf(rounds, [&] { checkAll(); setState(tree, all[0], 1); }, [&] {
            HTREEITEM item = all[0];
            KxTreeView_HandleCheckChangeEx(tree, 1, 0, 0, &item);
        });
        bool correct = KxTreeView_GetAllChecked(tree, nullptr, -1) == 0;
        report("one of many", floor, library, correct);
        DestroyWindow(tree);
    }
    DestroyWindow(parent);
    return 0;
}
