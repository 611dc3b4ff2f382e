// Menu item texts: mnemonic markers and accelerators removed, by command and by position, into
// short buffers and kvtext buffers.
#include "furniture_test.h"
#include <string>
#include "kvkit_menutext.h"

namespace {

class MenuText : public furniture_test::FurnitureTest {
protected:
    MenuText() : menu_(CreateMenu()), edit_(CreatePopupMenu()) {
        AppendMenuW(edit_, MF_STRING, 201, L"Cu&t\tCtrl+X");
        AppendMenuW(edit_, MF_STRING, 202, L"&Find...\bF3");
        AppendMenuW(menu_, MF_STRING, 101, L"&Open...\tCtrl+O");
        AppendMenuW(menu_, MF_STRING, 102, L"Save && &close");
        AppendMenuW(menu_, MF_STRING, 103, L"&&&Tools && more&&");
        AppendMenuW(menu_, MF_STRING, 104, L"Plain");
        AppendMenuW(menu_, MF_STRING, 105, L"");
        AppendMenuW(menu_, MF_SEPARATOR, 0, nullptr);
        AppendMenuW(menu_, MF_OWNERDRAW, 106, nullptr);
        AppendMenuW(menu_, MF_POPUP, reinterpret_cast<UINT_PTR>(edit_), L"&Edit");
    }
    ~MenuText() override { DestroyMenu(menu_); }

    std::wstring text(UINT item, UINT flags) {
        wchar_t buffer[64];
        wchar_t* result = GetMenuText(menu_, item, flags, buffer, 64);
        if (!result) return L"<null>";
        EXPECT_EQ(buffer, result);
        return result;
    }

    HMENU menu_, edit_;
};

TEST_F(MenuText, ByCommandAndByPosition) {
    EXPECT_EQ(L"Open...", text(101, MF_BYCOMMAND));
    EXPECT_EQ(L"Save & close", text(102, MF_BYCOMMAND));
    EXPECT_EQ(L"&Tools & more&", text(103, MF_BYCOMMAND));
    EXPECT_EQ(L"Plain", text(104, MF_BYCOMMAND));
    EXPECT_EQ(L"", text(105, MF_BYCOMMAND));
    EXPECT_EQ(L"Cut", text(201, MF_BYCOMMAND));   // found in the submenu
    EXPECT_EQ(L"Find...", text(202, MF_BYCOMMAND));  // the older right-align marker
    EXPECT_EQ(L"Open...", text(0, MF_BYPOSITION));
    EXPECT_EQ(L"Save & close", text(1, MF_BYPOSITION));
    EXPECT_EQ(L"Edit", text(7, MF_BYPOSITION));
    EXPECT_EQ(L"<null>", text(5, MF_BYPOSITION));    // separator
    EXPECT_EQ(L"<null>", text(106, MF_BYCOMMAND));   // owner-drawn
    EXPECT_EQ(L"<null>", text(8, MF_BYPOSITION));
    EXPECT_EQ(L"<null>", text(999, MF_BYCOMMAND));

    // A menu of the language module.
    HMENU colour = LoadMenuW(kvtest::LanguageModule(), MAKEINTRESOURCEW(1500));
    wchar_t buffer[32];
    EXPECT_STREQ(L"Copy colour", GetMenuText(colour, 100, MF_BYCOMMAND, buffer, 32));
    DestroyMenu(colour);
}

TEST_F(MenuText, ShortBuffersAndKvtextBuffers) {
    wchar_t buffer[8];
    wmemset(buffer, L'#', 8);
    EXPECT_EQ(buffer, GetMenuText(menu_, 101, MF_BYCOMMAND, buffer, 5));
    EXPECT_STREQ(L"Open", buffer);
    EXPECT_EQ(L'#', buffer[5]);
    EXPECT_EQ(buffer, GetMenuText(menu_, 101, MF_BYCOMMAND, buffer, 1));
    EXPECT_STREQ(L"", buffer);
    EXPECT_EQ(nullptr, GetMenuText(menu_, 101, MF_BYCOMMAND, buffer, 0));

    int live = KvText_LiveAllocations();
    wchar_t* whole = GetMenuText(menu_, 102, MF_BYCOMMAND, nullptr, 0);
    ASSERT_NE(nullptr, whole);
    EXPECT_STREQ(L"Save & close", whole);
    EXPECT_EQ(live + 1, KvText_LiveAllocations());
    FreeMemory(whole);

    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, GetMenuText(menu_, 102, MF_BYCOMMAND, nullptr, 0));
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, GetMenuText(menu_, 102, MF_BYCOMMAND, buffer, 8));
    KvText_FailAllocation(0);
}

TEST_F(MenuText, MissingOrDestroyedMenus) {
    wchar_t buffer[8];
    EXPECT_EQ(nullptr, GetMenuText(nullptr, 101, MF_BYCOMMAND, buffer, 8));
    HMENU gone = CreateMenu();
    AppendMenuW(gone, MF_STRING, 1, L"Gone");
    DestroyMenu(gone);
    EXPECT_EQ(nullptr, GetMenuText(gone, 1, MF_BYCOMMAND, buffer, 8));
}

}  // namespace
