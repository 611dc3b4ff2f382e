// Filling the multi-column list box with 10,000 contacts and sorting it by its text title,
// against a plain system list box (LBS_SORT) filled with the same strings in the same run, which
// sorts as it is filled. Each figure is the best of several rounds, each round on new windows.
#include "bench.h"
#include <stdlib.h>
#include <random>
#include <string>
#include <vector>
#include "kvkit_core.h"
#include "kvkit_listbox.h"
#include "kvtext.h"

namespace {

struct Contacts {
    std::vector<std::wstring> names;
    std::vector<KVLB_ITEM> items;
};

Contacts makeContacts(int count, std::mt19937& random) {
    static const wchar_t* const kTypes = L"CKTZBDOX";
    Contacts contacts;
    contacts.names.resize(count);
    contacts.items.resize(count);
    for (int i = 0; i < count; ++i) {
        int length = 4 + random() % 10;
        for (int c = 0; c < length; ++c)
            contacts.names[i] += static_cast<wchar_t>((c == 0 ? L'A' : L'a') + random() % 26);
    }
    for (int i = 0; i < count; ++i) {
        KVLB_ITEM& item = contacts.items[i];
        item = KVLB_ITEM();
        item.id = static_cast<short>(i);
        item.picture = kTypes[random() % 8];
        item.value = static_cast<short>(random() % 1000);
        item.text = contacts.names[i].c_str();
    }
    return contacts;
}

// The time of `work` on fresh windows, best of `rounds`; `prepare` and `clean` are not timed.
template <typename Prepare, typename Work, typename Clean>
double bestOf(int rounds, Prepare prepare, Work work, Clean clean) {
    LARGE_INTEGER frequency, start, end;
    QueryPerformanceFrequency(&frequency);
    double best = 1e30;
    for (int round = 0; round < rounds; ++round) {
        prepare();
        QueryPerformanceCounter(&start);
        work();
        QueryPerformanceCounter(&end);
        clean();
        double seconds = double(end.QuadPart - start.QuadPart) / double(frequency.QuadPart);
        if (seconds < best) best = seconds;
    }
    return best;
}

}  // namespace

// An optional argument sets the number of contacts.
int main(int argc, char** argv) {
    int count = argc > 1 ? atoi(argv[1]) : 10000;
    if (count < 1 || count > 30000) count = 10000;
    HMODULE language = LoadLibraryW(L"kvsample_language.dll");
    HMODULE resources = LoadLibraryW(L"kvsample_resources.dll");
    Kx1SetLanguage(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), resources, language);
    InitTool();
    // Visible lists inside a hidden parent: they work as shown, but never paint.
    HWND parent = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 600, 400, nullptr, nullptr, nullptr, nullptr);
    std::mt19937 random(20261121);
    Contacts contacts = makeContacts(count, random);
    const int rounds = 5;
    printf("%d contacts; best of %d rounds each, on new windows\n\n", count, rounds);

    HWND plain = nullptr;
    double baseline = bestOf(
        rounds,
        [&] {
            plain = CreateWindowExW(0, L"listbox", L"", WS_CHILD | WS_VISIBLE | WS_VSCROLL | LBS_SORT | LBS_HASSTRINGS,
                                    0, 0, 400, 300, parent, nullptr, nullptr, nullptr);
        },
        [&] {
            SendMessageW(plain, WM_SETREDRAW, FALSE, 0);
            for (const std::wstring& name : contacts.names)
                SendMessageW(plain, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
            SendMessageW(plain, WM_SETREDRAW, TRUE, 0);
        },
        [&] { DestroyWindow(plain); });

    // The floor of any fill: the same number of rows of data into an owner-drawn list box.
    double floor = bestOf(
        rounds,
        [&] {
            plain = CreateWindowExW(0, L"listbox", L"", WS_CHILD | WS_VISIBLE | WS_VSCROLL | LBS_OWNERDRAWFIXED,
                                    0, 0, 400, 300, parent, nullptr, nullptr, nullptr);
        },
        [&] {
            SendMessageW(plain, WM_SETREDRAW, FALSE, 0);
            SendMessageW(plain, LB_INITSTORAGE, count, 0);
            for (int row = 0; row < count; ++row) SendMessageW(plain, LB_ADDSTRING, 0, row);
            SendMessageW(plain, WM_SETREDRAW, TRUE, 0);
        },
        [&] { DestroyWindow(plain); });

    KVLB_LIST record = {};
    HWND container = nullptr;
    auto prepare = [&] {
        record = KVLB_LIST();
        record.session = GlobalSession();
        record.style = KVLB_HEADERS | KVLB_CHECKCOLUMN | KVLB_PICTURES | KVLB_VALUES | KVLB_MULTIPLESEL;
        record.itemCount = count;
        record.items = contacts.items.data();
        record.anchor = KVLB_NO_ITEM;
        container = CreateWindowExW(0, L"KVListbox", L"", WS_CHILD | WS_VISIBLE, 0, 0, 400, 300, parent,
                                    nullptr, nullptr, nullptr);
    };
    auto clean = [&] {
        DestroyWindow(container);
        FreeMemory(record.order);
    };
    auto clickText = [&] { SendMessageW(GetDlgItem(container, KVLB_HEADER_TEXT), BM_CLICK, 0, 0); };
    double fill = bestOf(
        rounds, prepare, [&] { SendMessageW(container, KVLB_BUILD, 0, reinterpret_cast<LPARAM>(&record)); },
        clean);
    double sort = bestOf(
        rounds,
        [&] {
            prepare();
            SendMessageW(container, KVLB_BUILD, 0, reinterpret_cast<LPARAM>(&record));
        },
        clickText, clean);
    bool sorted = true;
    double both = bestOf(
        rounds, prepare,
        [&] {
            SendMessageW(container, KVLB_BUILD, 0, reinterpret_cast<LPARAM>(&record));
            clickText();
        },
        [&] {
            for (int row = 1; row < count; ++row)
                sorted &= lstrcmpW(contacts.items[record.order[row - 1]].text, contacts.items[record.order[row]].text) <= 0;
            clean();
        });

    bench::Report("plain list box, LBS_SORT, LB_ADDSTRING each", baseline, baseline);
    bench::Report("owner-drawn list box, rows of data only", floor, baseline);
    bench::Report("KVListbox: build and fill (KVLB_BUILD)", fill, baseline);
    bench::Report("KVListbox: sort by the text title (click)", sort, baseline);
    bench::Report(sorted ? "KVListbox: build, fill and sort" : "KVListbox: build, fill and sort (WRONG ORDER)",
                  both, baseline);
    DestroyWindow(parent);
    return 0;
}
