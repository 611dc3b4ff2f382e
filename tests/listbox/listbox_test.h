// Helpers of the list box tests: a "KVListbox" container in a host window, built from a record of
// six contacts, and the clicks, keys and reads that the tests drive it with.
#pragma once
#include "kvtest.h"
#include <memory>
#include <vector>
#include "kvkit_listbox.h"

namespace listbox_test {

using Ids = std::vector<int>;
using Numbers = std::vector<long>;

const int kContainerId = 77;
const unsigned long kNumbered = KVLB_MULTIPLESEL | KVLB_CHECKCOLUMN | KVLB_NUMBERS;

// Identifiers 0-5 in array order. By name: Anders(4) Berg(1) Brandt(5) Falk(2) Haas(3) Lindholm(0).
struct Contact {
    const wchar_t* name;
    const wchar_t* company;
    long type;
    short value;
};
const Contact kContacts[] = {
    {L"Lindholm", L"Aachen", 'K', 30}, {L"Berg", L"Bremen", 'C', 10}, {L"Falk", L"Celle", 'T', 50},
    {L"Haas", L"Dresden", 'Z', 20},    {L"Anders", L"Essen", 'X', 40}, {L"Brandt", L"Fulda", 'O', 0},
};

inline HMODULE LibraryModule() { return GetModuleHandleW(L"kvkit.dll"); }

class ListBoxTest : public kvtest::KvTest {
protected:
    void SetUp() override {
        KvTest::SetUp();
        host = std::make_unique<kvtest::HostWindow>(400, 300);
        for (const Contact& contact : kContacts) {
            KVLB_ITEM item = {};
            item.id = static_cast<short>(items.size());
            item.picture = contact.type;
            item.value = contact.value;
            item.text = contact.name;
            item.secondText = contact.company;
            items.push_back(item);
        }
        record.session = GlobalSession();
        record.instance = GetModuleHandleW(nullptr);
        record.anchor = KVLB_NO_ITEM;
    }
    void TearDown() override {
        destroy();
        host.reset();
        FreeMemory(record.order);  // the display order that the control made is the record's
        KvTest::TearDown();
    }

    // Creates the container (client 300 x 200) and builds it from the record.
    void build(unsigned long style, unsigned short toggles = 0) {
        record.style = style;
        record.toggles = toggles;
        record.itemCount = static_cast<long>(items.size());
        record.items = items.data();
        container = CreateWindowExW(0, L"KVListbox", L"", WS_CHILD | WS_VISIBLE, 10, 10, 300, 200, *host,
                                    reinterpret_cast<HMENU>(kContainerId), nullptr, nullptr);
        SendMessageW(container, KVLB_BUILD, 0, reinterpret_cast<LPARAM>(&record));
        kvtest::PumpMessages();
        host->clear();
    }
    void destroy() {
        if (IsWindow(container)) DestroyWindow(container);
        kvtest::PumpMessages();
    }
    // Starts again from the same items, unselected and without a display order.
    void rebuild(unsigned long style, unsigned short toggles = 0) {
        destroy();
        FreeMemory(record.order);
        record.order = nullptr;
        for (KVLB_ITEM& item : items) item.selection = 0;
        build(style, toggles);
    }

    HWND box() const { return GetDlgItem(container, KVLB_LIST_ID); }
    HWND child(int id) const { return GetDlgItem(container, id); }
    int rows() const { return static_cast<int>(SendMessageW(box(), LB_GETCOUNT, 0, 0)); }

    // The identifiers shown, row by row; the rows' data must agree with the display order and
    // carry the lower-cased first character of the text.
    Ids shown() const {
        Ids ids;
        for (int row = 0; row < rows(); ++row) {
            LRESULT data = SendMessageW(box(), LB_GETITEMDATA, row, 0);
            EXPECT_EQ(record.order[row], LOWORD(data)) << "row " << row;
            EXPECT_EQ(towlower(items[LOWORD(data)].text[0]), HIWORD(data)) << "row " << row;
            ids.push_back(LOWORD(data));
        }
        return ids;
    }
    Numbers numbers() const {
        Numbers result;
        for (const KVLB_ITEM& item : items) result.push_back(item.selection);
        return result;
    }
    Ids selectedRows() const {
        Ids result;
        for (int row = 0; row < rows(); ++row)
            if (SendMessageW(box(), LB_GETSEL, row, 0) > 0) result.push_back(row);
        return result;
    }

    POINT rowCentre(int row) const {
        RECT rect = {};
        SendMessageW(box(), LB_GETITEMRECT, row, reinterpret_cast<LPARAM>(&rect));
        return POINT{(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
    }
    void mouse(UINT message, POINT point) const {
        SendMessageW(box(), message, message == WM_LBUTTONUP ? 0 : MK_LBUTTON, MAKELPARAM(point.x, point.y));
    }
    void click(int row) const {
        mouse(WM_LBUTTONDOWN, rowCentre(row));
        mouse(WM_LBUTTONUP, rowCentre(row));
    }
    // Key-down, the character it types (if any) and key-up, as the message loop delivers them.
    void key(UINT virtualKey, wchar_t typed = 0) const {
        SendMessageW(box(), WM_KEYDOWN, virtualKey, 1);
        if (typed) SendMessageW(box(), WM_CHAR, typed, 1);
        SendMessageW(box(), WM_KEYUP, virtualKey, 0xC0000001);
    }
    void clickButton(int id) const { SendMessageW(child(id), BM_CLICK, 0, 0); }
    LRESULT send(UINT message, WPARAM wParam, LPARAM lParam = 0) const {
        return SendMessageW(container, message, wParam, lParam);
    }

    // The container's notifications to the host with this code.
    int notifications(WORD code) const {
        int count = 0;
        for (const kvtest::RecordedMessage& m : host->messages(WM_COMMAND))
            count += m.wParam == MAKEWPARAM(kContainerId, code) && reinterpret_cast<HWND>(m.lParam) == container;
        return count;
    }

    std::unique_ptr<kvtest::HostWindow> host;
    std::vector<KVLB_ITEM> items;
    KVLB_LIST record = {};
    HWND container = nullptr;
};

}  // namespace listbox_test
