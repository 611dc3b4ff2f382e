// Helpers of the list box tests: a "KVListbox" container in a host window built from a record of
// contacts, and the clicks, keys and reads that the tests drive it with.
#pragma once
#include "kvtest.h"
#include <memory>
#include <string>
#include <vector>
#include "kvkit_listbox.h"

namespace listbox_test {

const int kContainerId = 77;

// The contacts every test starts from: identifiers 0-5 in array order.
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
const int kContactCount = 6;

inline HMODULE LibraryModule() { return GetModuleHandleW(L"kvkit.dll"); }
inline HCURSOR LibraryCursor(const wchar_t* name) { return LoadCursorW(LibraryModule(), name); }

class ListBoxTest : public kvtest::KvTest {
protected:
    void SetUp() override {
        KvTest::SetUp();
        host = std::make_unique<kvtest::HostWindow>(400, 300);
        items.resize(kContactCount);
        for (int i = 0; i < kContactCount; ++i) {
            items[i] = KVLB_ITEM();
            items[i].id = static_cast<short>(i);
            items[i].picture = kContacts[i].type;
            items[i].value = kContacts[i].value;
            items[i].text = kContacts[i].name;
            items[i].secondText = kContacts[i].company;
        }
        record = KVLB_LIST();
        record.session = GlobalSession();
        record.instance = GetModuleHandleW(nullptr);
        record.anchor = KVLB_NO_ITEM;
    }
    void TearDown() override {
        destroy();
        host.reset();
        // The display order that the control made belongs to the record.
        FreeMemory(record.order);
        record.order = nullptr;
        KvTest::TearDown();
    }

    // Creates the container (client 300 x 200 at 10, 10) and builds it from the record.
    HWND build(unsigned long style, unsigned short toggles = 0) {
        record.style = style;
        record.toggles = toggles;
        record.itemCount = static_cast<long>(items.size());
        record.items = items.data();
        container = CreateWindowExW(0, L"KVListbox", L"", WS_CHILD | WS_VISIBLE, 10, 10, 300, 200, *host,
                                    reinterpret_cast<HMENU>(kContainerId), GetModuleHandleW(nullptr), nullptr);
        SendMessageW(container, KVLB_BUILD, 0, reinterpret_cast<LPARAM>(&record));
        kvtest::PumpMessages();
        host->clear();
        return container;
    }
    void destroy() {
        if (IsWindow(container)) DestroyWindow(container);
        container = nullptr;
        kvtest::PumpMessages();
    }

    HWND box() const { return GetDlgItem(container, KVLB_LIST_ID); }
    int rows() const { return static_cast<int>(SendMessageW(box(), LB_GETCOUNT, 0, 0)); }

    // The identifiers shown, row by row, from the rows' data; each must agree with the display
    // order and carry the lower-cased first character of its text.
    std::vector<int> shown() const {
        std::vector<int> ids;
        for (int row = 0; row < rows(); ++row) {
            LRESULT data = SendMessageW(box(), LB_GETITEMDATA, row, 0);
            int id = static_cast<short>(LOWORD(data));
            EXPECT_EQ(record.order[row], LOWORD(data)) << "row " << row;
            EXPECT_EQ(towlower(items[id].text[0]), HIWORD(data)) << "row " << row;
            ids.push_back(id);
        }
        return ids;
    }
    // Selection numbers of the items in array order.
    std::vector<long> numbers() const {
        std::vector<long> result;
        for (const KVLB_ITEM& item : items) result.push_back(item.selection);
        return result;
    }
    std::vector<int> selectedRows() const {
        std::vector<int> result;
        for (int row = 0; row < rows(); ++row)
            if (SendMessageW(box(), LB_GETSEL, row, 0) > 0) result.push_back(row);
        return result;
    }

    POINT rowCentre(int row) const {
        RECT rect = {};
        SendMessageW(box(), LB_GETITEMRECT, row, reinterpret_cast<LPARAM>(&rect));
        return POINT{(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
    }
    static LPARAM at(POINT point) { return MAKELPARAM(point.x, point.y); }
    void press(POINT point) const { SendMessageW(box(), WM_LBUTTONDOWN, MK_LBUTTON, at(point)); }
    void moveTo(POINT point) const { SendMessageW(box(), WM_MOUSEMOVE, MK_LBUTTON, at(point)); }
    void release(POINT point) const { SendMessageW(box(), WM_LBUTTONUP, 0, at(point)); }
    void click(int row) const {
        press(rowCentre(row));
        release(rowCentre(row));
    }
    void doubleClick(int row) const {
        click(row);
        SendMessageW(box(), WM_LBUTTONDBLCLK, MK_LBUTTON, at(rowCentre(row)));
        release(rowCentre(row));
    }
    // Key-down, the character it types (when it types one) and key-up, as the message loop
    // hands them to the focused list.
    void key(UINT virtualKey, wchar_t typed = 0) const {
        SendMessageW(box(), WM_KEYDOWN, virtualKey, 1);
        if (typed) SendMessageW(box(), WM_CHAR, typed, 1);
        SendMessageW(box(), WM_KEYUP, virtualKey, 0xC0000001);
    }
    void clickButton(int id) const { SendMessageW(GetDlgItem(container, id), BM_CLICK, 0, 0); }

    // The container's notifications to the host, by code.
    int notifications(WORD code) const {
        int count = 0;
        for (const kvtest::RecordedMessage& m : host->messages(WM_COMMAND))
            count += LOWORD(m.wParam) == kContainerId && HIWORD(m.wParam) == code &&
                     reinterpret_cast<HWND>(m.lParam) == container;
        return count;
    }

    std::unique_ptr<kvtest::HostWindow> host;
    std::vector<KVLB_ITEM> items;
    KVLB_LIST record = {};
    HWND container = nullptr;
};

}  // namespace listbox_test
