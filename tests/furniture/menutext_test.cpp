// Menu item texts: mnemonic markers and accelerators removed, by command and by position, into
// short buffers and kvtext buffers.
#include "furniture_test.h"
#include <string>
#include "kvkit_menutext.h"

namespace {

class MenuText : public furniture_test::FurnitureTest {
protected:
    MenuText() : menu_(CreateMenu()) {
        HMENU edit = CreatePopupMenu();
        AppendMenuW(edit, MF_STRING, 201, L"Cu&t\tCtrl+X");
        AppendMenuW(edit, MF_STRING, 202, L"&Find...\bF3");  // the older right-align marker
        AppendMenuW(menu_, MF_STRING, 101, L"&Open...\tCtrl+O");
        AppendMenuW(menu_, MF_STRING, 102, L"Save && &close");
        AppendMenuW(menu_, MF_STRING, 103, L"&&&Tools && more&&");
        AppendMenuW(menu_, MF_STRING, 104, L"");
        AppendMenuW(menu_, MF_SEPARATOR, 0, nullptr);
        AppendMenuW(menu_, MF_OWNERDRAW, 105, nullptr);
        AppendMenuW(menu_, MF_POPUP, reinterpret_cast<UINT_PTR>(edit), L"&Edit");
    }
    ~MenuText() override { DestroyMenu(menu_); }
    HMENU menu_;
};

TEST_F(MenuText, ByCommandAndByPosition) {
    struct Case {
        UINT item, flags;
        const wchar_t* expected;  // null: no text
    } cases[] = {
        {101, MF_BYCOMMAND, L"Open..."}, {102, MF_BYCOMMAND, L"Save & close"},
        {103, MF_BYCOMMAND, L"&Tools & more&"}, {104, MF_BYCOMMAND, L""}, {201, MF_BYCOMMAND, L"Cut"},
        {202, MF_BYCOMMAND, L"Find..."}, {0, MF_BYPOSITION, L"Open..."}, {6, MF_BYPOSITION, L"Edit"},
        {4, MF_BYPOSITION, nullptr}, {105, MF_BYCOMMAND, nullptr}, {7, MF_BYPOSITION, nullptr},
        {999, MF_BYCOMMAND, nullptr},
    };
    for (const Case& c : cases) {
        wchar_t buffer[64];
        wchar_t* text = GetMenuText(menu_, c.item, c.flags, buffer, 64);
        EXPECT_EQ(c.expected ? buffer : nullptr, text) << c.item;
        if (c.expected && text) EXPECT_STREQ(c.expected, text) << c.item;
    }
    HMENU colour = LoadMenuW(kvtest::LanguageModule(), MAKEINTRESOURCEW(1500));  // a host's menu
    wchar_t buffer[32];
    EXPECT_STREQ(L"Copy colour", GetMenuText(colour, 100, MF_BYCOMMAND, buffer, 32));
    DestroyMenu(colour);
}

TEST_F(MenuText, ShortBuffersKvtextBuffersAndFailures) {
    wchar_t buffer[8];
    wmemset(buffer, L'#', 8);
    EXPECT_EQ(buffer, GetMenuText(menu_, 101, MF_BYCOMMAND, buffer, 5));
    EXPECT_EQ(std::wstring(L"Open\0###", 8), std::wstring(buffer, 8));
    EXPECT_STREQ(L"", GetMenuText(menu_, 101, MF_BYCOMMAND, buffer, 1));
    EXPECT_EQ(nullptr, GetMenuText(menu_, 101, MF_BYCOMMAND, buffer, 0));

    wchar_t* whole = GetMenuText(menu_, 102, MF_BYCOMMAND, nullptr, 0);
    ASSERT_NE(nullptr, whole);
    EXPECT_STREQ(L"Save & close", whole);
    FreeMemory(whole);  // the fixture checks that this was the only block

    for (wchar_t* destination : {static_cast<wchar_t*>(nullptr), buffer}) {
        KvText_FailAllocation(1);
        EXPECT_EQ(nullptr, GetMenuText(menu_, 102, MF_BYCOMMAND, destination, 8));
    }
    KvText_FailAllocation(0);
    HMENU gone = CreateMenu();
    DestroyMenu(gone);
    EXPECT_EQ(nullptr, GetMenuText(nullptr, 101, MF_BYCOMMAND, buffer, 8));
    EXPECT_EQ(nullptr, GetMenuText(gone, 101, MF_BYCOMMAND, buffer, 8));
}

}  // namespace
