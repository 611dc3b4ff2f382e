// The navigation bar in a host window: groups and entries added, queried and removed through the
// exports, chosen with the mouse and the keyboard, the parent's notifications, and the rows as the
// bar paints them.
#include "kvtest.h"
#include <memory>
#include <vector>
#include "kvkit_colour.h"
#include "kvkit_navigation.h"

namespace {

const int kBarId = 300;
const COLORREF kMagenta = RGB(255, 0, 255);
const COLORREF kRed = RGB(220, 0, 0);

class NavigationTest : public kvtest::KvTest {
protected:
    // Customers { All customers (11), Key accounts (12) }, Calendar { Today (21), Week (22),
    // Month (23) }, with 16-pixel icons.
    void SetUp() override {
        KvTest::SetUp();
        host = std::make_unique<kvtest::HostWindow>(220, 400);
        host->setHandler([this](HWND, UINT message, WPARAM, LPARAM lParam, LRESULT*) {
            if (message == WM_NOTIFY && reinterpret_cast<NMHDR*>(lParam)->idFrom == kBarId)
                notes.push_back(*reinterpret_cast<KNGNOTIFY*>(lParam));
            return false;
        });
        bar = KNg_Create(*host, kBarId, 0, 0, 200, 400, 16);
        ASSERT_NE(nullptr, bar);
        customers = KNg_AddGroup(bar, L"Customers", 0);
        allCustomers = KNg_AddEntry(bar, customers, nullptr, L"All customers", 11, 0);
        keyAccounts = KNg_AddEntry(bar, customers, nullptr, L"Key accounts", 12, 0);
        calendar = KNg_AddGroup(bar, L"Calendar", 0);
        today = KNg_AddEntry(bar, calendar, nullptr, L"Today", 21, 0);
        week = KNg_AddEntry(bar, calendar, nullptr, L"Week", 22, 0);
        month = KNg_AddEntry(bar, calendar, nullptr, L"Month", 23, 0);
        kvtest::PumpMessages();
    }
    void TearDown() override {
        if (IsWindow(bar)) DestroyWindow(bar);
        host.reset();
        KvTest::TearDown();
    }

    RECT rowOf(int item) const {
        RECT rect = {};
        EXPECT_EQ(1, KNg_GetItemRect(bar, item, &rect)) << item;
        return rect;
    }
    // A point near the right end of the item's row, where no text or icon is drawn.
    POINT pointOn(int item) const {
        RECT row = rowOf(item);
        return {row.right - 4, (row.top + row.bottom) / 2};
    }
    // The mouse moves there and the left button goes down and up, as the system delivers it.
    void click(POINT down, POINT up) {
        moveMouse(down);
        PostMessageW(bar, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(down.x, down.y));
        PostMessageW(bar, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(up.x, up.y));
        PostMessageW(bar, WM_LBUTTONUP, 0, MAKELPARAM(up.x, up.y));
        kvtest::PumpMessages();
    }
    void click(int item) { click(pointOn(item), pointOn(item)); }
    void moveMouse(POINT client) {
        POINT screen = client;
        ClientToScreen(bar, &screen);
        SetCursorPos(screen.x, screen.y);
        PostMessageW(bar, WM_MOUSEMOVE, 0, MAKELPARAM(client.x, client.y));
        kvtest::PumpMessages();
    }
    void press(WORD key) {
        PostMessageW(bar, WM_KEYDOWN, key, 1);
        PostMessageW(bar, WM_KEYUP, key, 0xC0000001);
        kvtest::PumpMessages();
    }
    // The bar as it paints itself.
    COLORREF pixelAt(POINT point) {
        RECT client;
        GetClientRect(bar, &client);
        kvtest::Canvas canvas(client.right, client.bottom);
        SendMessageW(bar, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT);
        return canvas.pixel(point.x, point.y);
    }
    std::wstring text(int item) {
        wchar_t* block = KNg_GetText(bar, item);
        std::wstring result = block ? block : L"(null)";
        FreeMemory(block);
        return result;
    }
    std::vector<int> itemsOf(int group) {
        std::vector<int> items;
        for (int i = 0, item; (item = KNg_GetItem(bar, group, i)) != 0; ++i) items.push_back(item);
        EXPECT_EQ(static_cast<int>(items.size()), KNg_GetCount(bar, group));
        return items;
    }

    std::unique_ptr<kvtest::HostWindow> host;
    HWND bar = nullptr;
    int customers, allCustomers, keyAccounts, calendar, today, week, month;
    std::vector<KNGNOTIFY> notes;
};

TEST_F(NavigationTest, GroupsAndEntriesAreKeptInOrderWithTheirTextsAndValues) {
    EXPECT_EQ((std::vector<int>{customers, calendar}), itemsOf(0));
    EXPECT_EQ((std::vector<int>{allCustomers, keyAccounts}), itemsOf(customers));
    int tasks = KNg_AddGroup(bar, L"Tasks", calendar);
    int yesterday = KNg_AddEntry(bar, calendar, nullptr, L"Yesterday", 20, today);
    EXPECT_EQ((std::vector<int>{customers, tasks, calendar}), itemsOf(0));
    EXPECT_EQ((std::vector<int>{yesterday, today, week, month}), itemsOf(calendar));
    EXPECT_EQ(0, KNg_GetCount(bar, tasks));

    // Rows follow the display order: each group, then its entries, without gaps.
    std::vector<int> order = {customers, allCustomers, keyAccounts, tasks, calendar, yesterday, today, week, month};
    int bottom = 0;
    for (int item : order) {
        RECT row = rowOf(item);
        EXPECT_EQ(bottom, row.top) << item;
        bottom = row.bottom;
    }

    EXPECT_EQ(1, KNg_SetText(bar, tasks, L"To do"));
    EXPECT_EQ(L"To do", text(tasks));
    EXPECT_EQ(L"Key accounts", text(keyAccounts));
    EXPECT_EQ(22, KNg_GetValue(bar, week));
    EXPECT_EQ(1, KNg_SetValue(bar, week, -7));
    EXPECT_EQ(-7, KNg_GetValue(bar, week));
    EXPECT_EQ(week, KNg_FindValue(bar, -7));
    EXPECT_EQ(0, KNg_FindValue(bar, 99));
    EXPECT_EQ(calendar, KNg_GetGroup(bar, month));
    EXPECT_EQ(calendar, KNg_GetGroup(bar, calendar));
}

TEST_F(NavigationTest, ClickingAnEntrySelectsItPaintsItAndNotifiesTheParent) {
    click(week);
    ASSERT_EQ(1u, notes.size());
    EXPECT_EQ(KNGN_SELECT, notes[0].header.code);
    EXPECT_EQ(bar, notes[0].header.hwndFrom);
    EXPECT_EQ(static_cast<UINT_PTR>(kBarId), notes[0].header.idFrom);
    EXPECT_EQ(week, notes[0].item);
    EXPECT_EQ(calendar, notes[0].group);
    EXPECT_EQ(22, notes[0].value);
    EXPECT_EQ(week, KNg_GetSelection(bar));
    EXPECT_EQ(bar, GetFocus());
    EXPECT_EQ(GetSysColor(COLOR_HIGHLIGHT), pixelAt(pointOn(week)));
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), pixelAt({pointOn(today).x, rowOf(today).top + 2}));

    // Down on one entry and up on another chooses nothing.
    notes.clear();
    click(pointOn(today), pointOn(month));
    EXPECT_TRUE(notes.empty());
    EXPECT_EQ(week, KNg_GetSelection(bar));

    // Selecting through the export does not notify, and 0 clears the selection.
    EXPECT_EQ(1, KNg_Select(bar, today));
    EXPECT_EQ(today, KNg_GetSelection(bar));
    EXPECT_EQ(1, KNg_Select(bar, 0));
    EXPECT_EQ(0, KNg_GetSelection(bar));
    EXPECT_TRUE(notes.empty());
}

TEST_F(NavigationTest, ClickingAGroupHeaderClosesAndOpensItsEntries) {
    int calendarTop = rowOf(calendar).top;
    click(customers);
    ASSERT_EQ(1u, notes.size());
    EXPECT_EQ(KNGN_GROUPEXPAND, notes[0].header.code);
    EXPECT_EQ(customers, notes[0].item);
    EXPECT_EQ(0, notes[0].expanded);
    EXPECT_EQ(0, KNg_IsExpanded(bar, customers));
    RECT hidden;
    EXPECT_EQ(0, KNg_GetItemRect(bar, keyAccounts, &hidden));
    EXPECT_EQ(rowOf(customers).bottom, rowOf(calendar).top);
    EXPECT_LT(rowOf(calendar).top, calendarTop);
    // The header's arrow points right now; it pointed down before.
    RECT header = rowOf(customers);
    POINT arrowCorner = {header.right - 11 - 3, (header.top + header.bottom) / 2 - 2};
    POINT arrowMiddle = {header.right - 11 - 1, (header.top + header.bottom) / 2};
    COLORREF arrow = GetSysColor(COLOR_BTNTEXT);
    EXPECT_NE(arrow, pixelAt(arrowCorner));
    EXPECT_EQ(arrow, pixelAt(arrowMiddle));

    click(customers);
    EXPECT_EQ(arrow, pixelAt(arrowCorner));
    ASSERT_EQ(2u, notes.size());
    EXPECT_EQ(1, notes[1].expanded);
    EXPECT_EQ(calendarTop, rowOf(calendar).top);
    // Selecting an entry of a closed group opens it.
    EXPECT_EQ(1, KNg_Expand(bar, customers, 0));
    EXPECT_EQ(1, KNg_Select(bar, keyAccounts));
    EXPECT_EQ(1, KNg_IsExpanded(bar, customers));
    EXPECT_EQ(2u, notes.size());
}

TEST_F(NavigationTest, KeyboardMovesTheFocusAndEnterOrSpaceChooses) {
    SetFocus(bar);
    // The focus starts on the first group; Enter is the bar's, not the dialog's default button.
    MSG enter = {};
    enter.hwnd = bar;
    enter.message = WM_KEYDOWN;
    enter.wParam = VK_RETURN;
    EXPECT_TRUE(SendMessageW(bar, WM_GETDLGCODE, VK_RETURN, reinterpret_cast<LPARAM>(&enter)) & DLGC_WANTMESSAGE);
    EXPECT_TRUE(SendMessageW(bar, WM_GETDLGCODE, 0, 0) & DLGC_WANTARROWS);
    press(VK_DOWN);
    press(VK_DOWN);
    press(VK_RETURN);
    ASSERT_EQ(1u, notes.size());
    EXPECT_EQ(keyAccounts, notes[0].item);
    EXPECT_EQ(12, notes[0].value);

    // Left goes up to the group, Left again closes it, Right opens it and then enters it.
    press(VK_LEFT);
    press(VK_LEFT);
    ASSERT_EQ(2u, notes.size());
    EXPECT_EQ(KNGN_GROUPEXPAND, notes[1].header.code);
    EXPECT_EQ(0, KNg_IsExpanded(bar, customers));
    press(VK_DOWN);  // the next shown row is the next group
    press(VK_LEFT);  // closes Calendar
    EXPECT_EQ(0, KNg_IsExpanded(bar, calendar));
    press(VK_RIGHT);
    press(VK_RIGHT);
    press(VK_SPACE);
    ASSERT_EQ(5u, notes.size());
    EXPECT_EQ(KNGN_GROUPEXPAND, notes[3].header.code);
    EXPECT_EQ(1, notes[3].expanded);
    EXPECT_EQ(today, notes[4].item);

    // End and Home go to the last and first rows; a letter to the next entry starting with it.
    press(VK_END);
    press(VK_RETURN);
    EXPECT_EQ(month, notes.back().item);
    press(VK_HOME);
    PostMessageW(bar, WM_CHAR, L'w', 1);
    kvtest::PumpMessages();
    press(VK_RETURN);
    EXPECT_EQ(week, notes.back().item);
    EXPECT_EQ(week, KNg_GetSelection(bar));
}

TEST_F(NavigationTest, TheEntryUnderTheMouseIsTintedUntilTheMouseLeaves) {
    COLORREF tint = BlendColors(GetSysColor(COLOR_WINDOW), GetSysColor(COLOR_HIGHLIGHT), 0.2);
    moveMouse(pointOn(today));
    EXPECT_EQ(tint, pixelAt(pointOn(today)));
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), pixelAt(pointOn(week)));
    moveMouse(pointOn(week));
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), pixelAt(pointOn(today)));
    EXPECT_EQ(tint, pixelAt(pointOn(week)));
    SendMessageW(bar, WM_MOUSELEAVE, 0, 0);
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), pixelAt(pointOn(week)));
    // The selected entry keeps the highlight under the mouse.
    KNg_Select(bar, week);
    moveMouse(pointOn(week));
    EXPECT_EQ(GetSysColor(COLOR_HIGHLIGHT), pixelAt(pointOn(week)));
}

TEST_F(NavigationTest, RemovingEntriesAndGroupsMovesTheRowsUpAndDropsTheSelection) {
    KNg_Select(bar, keyAccounts);
    RECT keyAccountsRow = rowOf(keyAccounts);
    EXPECT_EQ(1, KNg_Remove(bar, allCustomers));
    EXPECT_EQ(keyAccountsRow.top - (keyAccountsRow.bottom - keyAccountsRow.top), rowOf(keyAccounts).top);
    EXPECT_EQ(1, KNg_Remove(bar, customers));  // with its entries
    EXPECT_EQ(0, KNg_GetSelection(bar));
    EXPECT_EQ((std::vector<int>{calendar}), itemsOf(0));
    EXPECT_EQ(0, rowOf(calendar).top);
    RECT gone;
    EXPECT_EQ(0, KNg_GetItemRect(bar, keyAccounts, &gone));
    EXPECT_EQ(0, KNg_Remove(bar, keyAccounts));
    EXPECT_EQ(0, KNg_GetValue(bar, keyAccounts));
    // Item numbers are not reused.
    int tasks = KNg_AddGroup(bar, L"Tasks", 0);
    EXPECT_GT(tasks, month);
    EXPECT_EQ(1, KNg_Remove(bar, tasks));
    EXPECT_EQ(1, KNg_Remove(bar, calendar));
    EXPECT_EQ(0, KNg_GetCount(bar, 0));
    click(POINT{100, 10}, POINT{100, 10});  // an empty bar ignores clicks
    EXPECT_TRUE(notes.empty());
}

TEST_F(NavigationTest, IconsAreResizedToTheIconSizeKeepingTheirProportions) {
    // A 64 x 64 red disc on magenta, and a 32 x 16 red bar on magenta.
    HBITMAP disc = kvtest::MakeBitmap(64, 64, [](int x, int y) {
        return (x - 32) * (x - 32) + (y - 32) * (y - 32) < 28 * 28 ? kRed : kMagenta;
    });
    HBITMAP wide = kvtest::MakeBitmap(32, 16, [](int x, int y) { return x == 0 && y == 0 ? kMagenta : kRed; });
    int discEntry = KNg_AddEntry(bar, customers, disc, L"Disc", 0, 0);
    int wideEntry = KNg_AddEntry(bar, customers, wide, L"Wide", 0, 0);
    ASSERT_NE(0, discEntry);
    ASSERT_NE(0, wideEntry);
    // The caller keeps its bitmaps.
    EXPECT_TRUE(kvtest::IsGdiObject(disc));
    DeleteObject(disc);
    DeleteObject(wide);

    // Icons sit 14 pixels in, centred in the row, 16 pixels square.
    RECT row = rowOf(discEntry);
    int top = row.top + (row.bottom - row.top - 16) / 2;
    EXPECT_EQ(kRed, pixelAt({14 + 8, top + 8}));
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), pixelAt({14, top}));      // magenta is transparent
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), pixelAt({14 + 16, top + 8}));
    // 32 x 16 becomes 16 x 8 in the middle of the square.
    row = rowOf(wideEntry);
    top = row.top + (row.bottom - row.top - 16) / 2;
    EXPECT_EQ(kRed, pixelAt({14 + 8, top + 4}));
    EXPECT_EQ(kRed, pixelAt({14 + 8, top + 11}));
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), pixelAt({14 + 8, top + 2}));
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), pixelAt({14 + 8, top + 13}));
}

TEST_F(NavigationTest, TheFocusedRowIsScrolledIntoView) {
    for (int i = 0; i < 30; ++i) KNg_AddEntry(bar, calendar, nullptr, L"Day", 100 + i, 0);
    int last = KNg_GetItem(bar, calendar, KNg_GetCount(bar, calendar) - 1);
    RECT client;
    GetClientRect(bar, &client);
    EXPECT_GT(rowOf(last).top, client.bottom);
    SetFocus(bar);
    press(VK_END);
    EXPECT_EQ(client.bottom, rowOf(last).bottom);
    // A click in the scrolled bar lands on the row shown there.
    click(last);
    ASSERT_EQ(1u, notes.size());
    EXPECT_EQ(129, notes[0].value);
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_POS;
    GetScrollInfo(bar, SB_VERT, &info);
    EXPECT_EQ(-rowOf(customers).top, info.nPos);
    // The wheel scrolls back up to the top, and no further.
    SendMessageW(bar, WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA * 50), 0);
    EXPECT_EQ(0, rowOf(customers).top);
    press(VK_HOME);
    EXPECT_EQ(0, rowOf(customers).top);
}

}  // namespace
