// The navigation exports with windows that are no bar (null, destroyed, of another class), item
// numbers that name nothing, null pointers and memory that runs out; and the class as registered.
#include "kvtest.h"
#include "kvkit_navigation.h"

namespace {

class NavigationInputTest : public kvtest::KvTest {
protected:
    kvtest::HostWindow host{200, 200};
};

// Every export answers its failure result for `window`.
void expectAllFail(HWND window) {
    RECT rect;
    EXPECT_EQ(0, KNg_AddGroup(window, L"Group", 0));
    EXPECT_EQ(0, KNg_AddEntry(window, 1, nullptr, L"Entry", 1, 0));
    EXPECT_EQ(0, KNg_Remove(window, 1));
    EXPECT_EQ(0, KNg_SetText(window, 1, L"Text"));
    EXPECT_EQ(nullptr, KNg_GetText(window, 1));
    EXPECT_EQ(0, KNg_SetValue(window, 2, 5));
    EXPECT_EQ(0, KNg_GetValue(window, 2));
    EXPECT_EQ(0, KNg_Select(window, 2));
    EXPECT_EQ(0, KNg_GetSelection(window));
    EXPECT_EQ(0, KNg_Expand(window, 1, 1));
    EXPECT_EQ(-1, KNg_IsExpanded(window, 1));
    EXPECT_EQ(-1, KNg_GetCount(window, 0));
    EXPECT_EQ(0, KNg_GetItem(window, 0, 0));
    EXPECT_EQ(0, KNg_GetGroup(window, 1));
    EXPECT_EQ(0, KNg_FindValue(window, 5));
    EXPECT_EQ(0, KNg_GetItemRect(window, 1, &rect));
}

TEST_F(NavigationInputTest, WindowsThatAreNoBarFail) {
    expectAllFail(nullptr);
    expectAllFail(host);  // another class, whose user data is not a bar's record
    HWND bar = KNg_Create(host, 1, 0, 0, 100, 100, 0);
    ASSERT_NE(nullptr, bar);
    DestroyWindow(bar);
    expectAllFail(bar);
    EXPECT_EQ(nullptr, KNg_Create(nullptr, 1, 0, 0, 100, 100, 16));
    EXPECT_EQ(nullptr, KNg_Create(bar, 1, 0, 0, 100, 100, 16));
    EXPECT_EQ(nullptr, KNg_Create(host, 1, 0, 0, 100, 100, 7));
    EXPECT_EQ(nullptr, KNg_Create(host, 1, 0, 0, 100, 100, 65));
}

TEST_F(NavigationInputTest, ItemNumbersOfTheWrongKindFail) {
    HWND bar = KNg_Create(host, 1, 0, 0, 100, 100, 24);
    int group = KNg_AddGroup(bar, L"Group", 0);
    int entry = KNg_AddEntry(bar, group, nullptr, L"Entry", 7, 0);
    int other = KNg_AddGroup(bar, L"Other", 0);
    int otherEntry = KNg_AddEntry(bar, other, nullptr, L"Other entry", 8, 0);
    EXPECT_EQ(0, KNg_AddGroup(bar, L"Before an entry", entry));
    EXPECT_EQ(0, KNg_AddEntry(bar, entry, nullptr, L"Under an entry", 0, 0));
    EXPECT_EQ(0, KNg_AddEntry(bar, group, nullptr, L"Before another group's entry", 0, otherEntry));
    EXPECT_EQ(0, KNg_AddEntry(bar, group, reinterpret_cast<HBITMAP>(GetStockObject(BLACK_BRUSH)),
                              L"A brush for an icon", 0, 0));
    EXPECT_EQ(0, KNg_SetValue(bar, group, 1));
    EXPECT_EQ(0, KNg_Select(bar, group));
    EXPECT_EQ(0, KNg_Expand(bar, entry, 0));
    EXPECT_EQ(-1, KNg_GetCount(bar, entry));
    EXPECT_EQ(0, KNg_GetItemRect(bar, entry, nullptr));
    EXPECT_EQ(1, KNg_GetCount(bar, group));
    EXPECT_EQ(1, KNg_GetCount(bar, other));
    DestroyWindow(bar);
}

TEST_F(NavigationInputTest, WhenMemoryRunsOutNothingChanges) {
    KvText_FailAllocation(1);  // the record
    EXPECT_EQ(nullptr, KNg_Create(host, 1, 0, 0, 100, 100, 16));
    EXPECT_EQ(nullptr, GetWindow(host, GW_CHILD));

    HWND bar = KNg_Create(host, 1, 0, 0, 100, 100, 16);
    int group = KNg_AddGroup(bar, L"Group", 0);
    HBITMAP icon = kvtest::MakeBitmap(8, 8, [](int, int) { return RGB(0, 0, 200); });
    for (int nth : {1, 2}) {  // the text, then the item array
        KvText_FailAllocation(nth);
        EXPECT_EQ(0, KNg_AddEntry(bar, group, icon, L"Entry", 1, 0)) << nth;
        KvText_FailAllocation(nth);
        EXPECT_EQ(0, KNg_AddGroup(bar, L"Group", 0)) << nth;
    }
    EXPECT_EQ(0, KNg_GetCount(bar, group));
    EXPECT_EQ(1, KNg_GetCount(bar, 0));
    int entry = KNg_AddEntry(bar, group, icon, L"Entry", 1, 0);
    ASSERT_NE(0, entry);
    KvText_FailAllocation(1);
    EXPECT_EQ(0, KNg_SetText(bar, entry, L"New text"));
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, KNg_GetText(bar, entry));
    wchar_t* text = KNg_GetText(bar, entry);
    EXPECT_STREQ(L"Entry", text);
    FreeMemory(text);
    DeleteObject(icon);
    DestroyWindow(bar);  // releases the icon copy, the texts and the record
}

TEST_F(NavigationInputTest, TheClassIsRegisteredByTheFirstBarWithTheLibrarysIcon) {
    HWND bar = KNg_Create(host, 5, 10, 20, 100, 100, 32);
    ASSERT_NE(nullptr, bar);
    wchar_t name[40];
    GetClassNameW(bar, name, 40);
    EXPECT_STREQ(L"KVNavigClass", name);
    EXPECT_EQ(5, GetDlgCtrlID(bar));
    WNDCLASSW info = {};
    HINSTANCE library = GetModuleHandleW(L"kvkit.dll");
    ASSERT_TRUE(GetClassInfoW(library, L"KVNavigClass", &info));
    EXPECT_EQ(static_cast<UINT>(CS_GLOBALCLASS), info.style);
    EXPECT_EQ(0, info.cbWndExtra);
    EXPECT_EQ(nullptr, info.hbrBackground);
    EXPECT_EQ(LoadCursorW(nullptr, IDC_ARROW), info.hCursor);
    HICON icon = LoadIconW(library, MAKEINTRESOURCEW(2100));
    ASSERT_NE(nullptr, icon);
    EXPECT_EQ(icon, info.hIcon);
    DestroyWindow(bar);
}

}  // namespace
