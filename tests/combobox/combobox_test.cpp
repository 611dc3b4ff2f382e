// Combo box helpers on real "ComboBoxEx32" and combo boxes: first-letter selection typed on the
// keyboard through the subclass chain, item data lookup, the sorted insertion index and the
// drop-down width.
#include "kvtest.h"
#include <commctrl.h>
#include <initializer_list>
#include <string>
#include "kvkit_combobox.h"
#include "kvkit_core.h"

namespace {

const int kExId = 300, kPlainId = 301;

class ComboBoxes : public kvtest::KvTest {
protected:
    HWND addEx(std::initializer_list<const wchar_t*> texts, DWORD style = CBS_DROPDOWNLIST) {
        HWND combo = host.createChild(WC_COMBOBOXEXW, L"", WS_VISIBLE | WS_VSCROLL | style, 10, 10, 120, 200, kExId);
        int index = 0;
        for (const wchar_t* text : texts) insertEx(combo, index++, text);
        return combo;
    }
    static void insertEx(HWND combo, int index, const wchar_t* text, int indent = 0, LPARAM data = 0) {
        COMBOBOXEXITEMW item = {};
        item.mask = CBEIF_TEXT | CBEIF_INDENT | CBEIF_LPARAM;
        item.iItem = index;
        item.pszText = const_cast<wchar_t*>(text);
        item.iIndent = indent;
        item.lParam = data;
        SendMessageW(combo, CBEM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
    HWND addPlain(std::initializer_list<const wchar_t*> texts) {
        HWND combo = host.createChild(L"ComboBox", L"", WS_VISIBLE | WS_VSCROLL | CBS_DROPDOWNLIST, 150, 10, 80, 200, kPlainId);
        for (const wchar_t* text : texts) SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
        return combo;
    }
    static HWND inner(HWND comboEx) { return reinterpret_cast<HWND>(SendMessageW(comboEx, CBEM_GETCOMBOCONTROL, 0, 0)); }
    static int selection(HWND combo) { return static_cast<int>(SendMessageW(combo, CB_GETCURSEL, 0, 0)); }
    static int droppedWidth(HWND combo) { return static_cast<int>(SendMessageW(combo, CB_GETDROPPEDWIDTH, 0, 0)); }
    static int textWidth(HFONT font, const wchar_t* text) {
        HDC dc = GetDC(nullptr);
        HGDIOBJ old = SelectObject(dc, font);
        SIZE size = {};
        GetTextExtentPoint32W(dc, text, lstrlenW(text), &size);
        SelectObject(dc, old);
        ReleaseDC(nullptr, dc);
        return size.cx;
    }
    static void type(WORD key) {
        INPUT inputs[2] = {};
        for (INPUT& input : inputs) {
            input.type = INPUT_KEYBOARD;
            input.ki.wVk = key;
        }
        inputs[1].ki.dwFlags = KEYEVENTF_KEYUP;
        SendInput(2, inputs, sizeof(INPUT));
        kvtest::PumpFor(60);
    }

    kvtest::HostWindow host{300, 240};
};

TEST_F(ComboBoxes, TypedLettersCycleThroughTheirItemsAndWrap) {
    HWND comboEx = addEx({L"Aachen", L"Berlin", L"bonn", L"Cologne", L"Bremen"});
    HWND combo = inner(comboEx);
    kvtest::MessageRecorder exMessages(comboEx);
    kvtest::MessageRecorder comboMessages(combo);  // behind the replacement: sees what it passes on
    ASSERT_EQ(1, Kx1SetSubProc(combo, Kx1ComboxEx_SubProc));
    SetForegroundWindow(host);
    SetFocus(combo);
    kvtest::PumpMessages();
    ASSERT_EQ(-1, selection(combo));

    // Nothing selected: the search starts after item 0.
    for (int expected : {1, 2, 4, 1}) {
        exMessages.clear();
        type('B');
        EXPECT_EQ(expected, selection(combo));
        int selectionsEnded = 0;
        for (const kvtest::RecordedMessage& m : exMessages.messages())
            selectionsEnded += m.message == WM_COMMAND && m.wParam == MAKEWPARAM(kExId, CBN_SELENDOK) && m.lParam == 0;
        EXPECT_EQ(1, selectionsEnded);
    }
    EXPECT_EQ(0, comboMessages.count(WM_KEYDOWN));

    // No item starts with Z: the selection stays and the key goes on to the combo box.
    type('Z');
    EXPECT_EQ(1, selection(combo));
    EXPECT_EQ(1, comboMessages.count(WM_KEYDOWN));
    DestroyWindow(comboEx);  // the replacement goes before the recorders let go
}

TEST_F(ComboBoxes, CheckKeyUpperCasesTheKeyAndNeedsItems) {
    HWND comboEx = addEx({L"Aachen", L"cologne", L"Bremen"});
    HWND combo = inner(comboEx);
    SendMessageW(combo, CB_SETCURSEL, 2, 0);
    EXPECT_EQ(1, Kx1ComboBoxEx_CheckKey(combo, WM_CHAR, L'c', 0));
    EXPECT_EQ(1, selection(combo));
    EXPECT_EQ(0, Kx1ComboBoxEx_CheckKey(combo, WM_CHAR, L'A', 0));  // wraps past the end
    EXPECT_EQ(-1, Kx1ComboBoxEx_CheckKey(combo, WM_CHAR, L'X', 0));
    EXPECT_EQ(0, selection(combo));

    HWND empty = inner(addEx({}));
    EXPECT_EQ(-1, Kx1ComboBoxEx_CheckKey(empty, WM_CHAR, L'A', 0));
    EXPECT_EQ(-1, Kx1ComboBoxEx_CheckKey(nullptr, WM_CHAR, L'A', 0));
}

TEST_F(ComboBoxes, ItemDataFindsTheFirstItemCarryingIt) {
    HWND plain = addPlain({L"one", L"two", L"three"});
    for (int i = 0; i < 3; ++i) SendMessageW(plain, CB_SETITEMDATA, i, i == 0 ? 10 : 20);
    EXPECT_EQ(1, Kx1ComboBoxEx_GetItemWithData(plain, 20));
    EXPECT_EQ(-1, Kx1ComboBoxEx_GetItemWithData(plain, 99));

    HWND comboEx = addEx({});
    insertEx(comboEx, 0, L"first", 0, 7);
    insertEx(comboEx, 1, L"second", 0, 8);
    EXPECT_EQ(1, Kx1ComboBoxEx_GetItemWithData(comboEx, 8));
    SendMessageW(plain, CB_RESETCONTENT, 0, 0);
    EXPECT_EQ(-1, Kx1ComboBoxEx_GetItemWithData(plain, 0));
    EXPECT_EQ(-1, Kx1ComboBoxEx_GetItemWithData(nullptr, 0));
}

TEST_F(ComboBoxes, SortIndexIsTheFirstGreaterItemInLocaleOrder) {
    EXPECT_EQ(0, Kx1ComboBoxEx_GetSortIndex(addEx({}), L"B"));
    EXPECT_EQ(1, Kx1ComboBoxEx_GetSortIndex(addEx({L"A", L"C"}), L"B"));
    EXPECT_EQ(2, Kx1ComboBoxEx_GetSortIndex(addEx({L"A", L"B"}), L"B"));  // "B" is not greater than "B"
    // Locale order puts "b" before "B", where code order would put it after.
    EXPECT_EQ(2, Kx1ComboBoxEx_GetSortIndex(addEx({L"A", L"b", L"C"}), L"B"));
    EXPECT_EQ(-1, Kx1ComboBoxEx_GetSortIndex(addEx({L"A"}), nullptr));
    EXPECT_EQ(-1, Kx1ComboBoxEx_GetSortIndex(nullptr, L"B"));
}

TEST_F(ComboBoxes, DropDownIsAsWideAsTheWidestItem) {
    const wchar_t* longest = L"Nordlicht Logistik GmbH & Co. KG";
    HFONT font = CreateFontW(-16, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma");
    int scrollBar = GetSystemMetrics(SM_CXVSCROLL);

    HWND plain = addPlain({L"Ulm", longest, L"Kassel"});
    int expected = textWidth(font, longest) + 5 + scrollBar;
    EXPECT_EQ(expected, KxCbSetDropdownWidth(plain, font));
    EXPECT_EQ(expected, droppedWidth(plain));
    // Without a font, the combo box's own.
    SendMessageW(plain, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
    HFONT own = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    EXPECT_EQ(textWidth(own, longest) + 5 + scrollBar, KxCbSetDropdownWidth(plain, nullptr));

    // An extended combo box adds the image and item 0's indent.
    HWND comboEx = addEx({});
    insertEx(comboEx, 0, L"Customers", 2);
    insertEx(comboEx, 1, longest, 3);
    expected = textWidth(font, longest) + 2 * 10 + 22 + 5 + scrollBar;
    EXPECT_EQ(expected, KxCbSetDropdownWidth(comboEx, font));
    EXPECT_EQ(expected, droppedWidth(inner(comboEx)));  // the extended combo box passes it on
    SendMessageW(comboEx, CB_RESETCONTENT, 0, 0);
    EXPECT_EQ(22 + 5 + scrollBar, KxCbSetDropdownWidth(comboEx, font));

    // Nothing to measure, or no memory for a text: nothing is set.
    HWND empty = host.createChild(L"ComboBox", L"", WS_VISIBLE | CBS_DROPDOWNLIST, 10, 50, 80, 100, 302);
    int before = droppedWidth(empty);
    EXPECT_EQ(0, KxCbSetDropdownWidth(empty, font));
    EXPECT_EQ(before, droppedWidth(empty));
    int plainBefore = droppedWidth(plain);
    KvText_FailAllocation(1);
    EXPECT_EQ(-1, KxCbSetDropdownWidth(plain, font));
    KvText_FailAllocation(0);
    EXPECT_EQ(plainBefore, droppedWidth(plain));
    EXPECT_EQ(0, KxCbSetDropdownWidth(nullptr, font));
    DestroyWindow(host);
    DeleteObject(font);
}

}  // namespace
