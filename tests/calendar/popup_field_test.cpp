// The popup and the grid's own input, date fields that open the calendar, and the date-time
// picker helpers.
#include "calendar_test.h"

namespace calendar_test {
namespace {

class Popup : public kvtest::KvTest {
protected:
    kvtest::HostWindow owner{300, 200};
    HWND popup() const { return FindWindowW(DATEPICKER_CLASS, L"DatePicker Popup"); }
};

TEST_F(Popup, PlacedByItsRightEdgeAndFocused) {
    HWND field = owner.createChild(L"Edit", L"", WS_VISIBLE, 10, 10, 100, 20, 1);
    SetForegroundWindow(owner);
    SetFocus(field);
    EXPECT_EQ(field, Kx1PopupKalender(owner, 0, 500, 120)) << "the focus it took";
    HWND grid = popup();
    ASSERT_TRUE(grid);
    EXPECT_EQ(grid, GetFocus());
    EXPECT_EQ(owner.handle(), GetWindow(grid, GW_OWNER));
    const LONG style = WS_POPUP | WS_BORDER | WS_VISIBLE;
    EXPECT_EQ(style, GetWindowLongW(grid, GWL_STYLE) & (style | WS_CHILD | WS_CAPTION));
    EXPECT_TRUE(GetWindowLongW(grid, GWL_EXSTYLE) & WS_EX_TOOLWINDOW);
    RECT frame;
    GetWindowRect(grid, &frame);
    SIZE ideal = {};
    SendMessageW(grid, DPM_GETIDEALSIZE, 0, reinterpret_cast<LPARAM>(&ideal));
    EXPECT_EQ(500 - ideal.cx, frame.left);
    EXPECT_EQ(500, frame.right);
    EXPECT_EQ(120, frame.top);
    DestroyWindow(grid);

    // Kept on the screen; the two pointers of Kx1ToolKalender carry the position.
    EXPECT_EQ(1, Kx1ToolKalender(nullptr, owner, KAL_POPUP, reinterpret_cast<int*>(50), nullptr));
    GetWindowRect(popup(), &frame);
    EXPECT_EQ(0, frame.left);
    EXPECT_EQ(0, frame.top);
    DestroyWindow(popup());
}

TEST_F(Popup, ChoiceByMouseOrKeyboardReachesTheOwner) {
    int today = Today();
    Kx1PopupKalender(owner, 0, 600, 100);
    HWND grid = popup();
    ClickDay(grid, today);
    EXPECT_FALSE(IsWindow(grid)) << "a choice closes the popup";
    ASSERT_EQ(1, owner.count(DPN_CHOSEN));
    EXPECT_EQ(static_cast<WPARAM>(today), owner.messages(DPN_CHOSEN)[0].wParam);

    // A day on, a week on, Enter.
    Kx1PopupKalender(owner, 0, 600, 100);
    grid = popup();
    SendMessageW(grid, DPM_SETDATE, DPD_SHOW, 20240131);
    SendMessageW(grid, WM_KEYDOWN, VK_RIGHT, 0);
    SendMessageW(grid, WM_KEYDOWN, VK_DOWN, 0);
    EXPECT_EQ(202402, SendMessageW(grid, DPM_GETMONTH, 0, 0)) << "the view follows the caret";
    SendMessageW(grid, WM_KEYDOWN, VK_RETURN, 0);
    EXPECT_FALSE(IsWindow(grid));
    EXPECT_EQ(20240208u, owner.messages(DPN_CHOSEN).back().wParam);

    // Escape and losing the focus close it without a choice.
    Kx1PopupKalender(owner, 0, 600, 100);
    SendMessageW(popup(), WM_KEYDOWN, VK_ESCAPE, 0);
    EXPECT_EQ(nullptr, popup());
    Kx1PopupKalender(owner, 0, 600, 100);
    SetFocus(owner);
    kvtest::PumpMessages();
    EXPECT_EQ(nullptr, popup());
    EXPECT_EQ(2, owner.count(DPN_CHOSEN));
}

TEST_F(Popup, DateFieldsOpenTheCalendarAndWriteBack) {
    HWND from = owner.createChild(L"Edit", L"10.05.2024", WS_VISIBLE | WS_BORDER, 10, 10, 120, 22, 300);
    HWND to = owner.createChild(L"Edit", L"20.05.2024", WS_VISIBLE | WS_BORDER, 10, 40, 120, 22, 301);
    HWND picker = owner.createChild(DATETIMEPICK_CLASSW, L"", WS_VISIBLE, 10, 70, 150, 22, 302);
    KxDateTime_SetDate(nullptr, picker, nullptr, 20240704, 0, FALSE);
    ASSERT_TRUE(KxSetDateBtn(nullptr, owner, nullptr, 300, 301, 0));
    ASSERT_TRUE(KxSetDateBtn(nullptr, owner, nullptr, 302, -1, 0));
    CalendarDriver driver(owner);
    // The to-field's button asks for the range, with the quick choices.
    HWND toButton = GetDlgItem(owner, 501);
    driver.run({[](HWND dialog) {
                   EXPECT_EQ(Label(20240510), ItemText(dialog, kStartField));
                   EXPECT_EQ(Label(20240520), ItemText(dialog, kEndField));
                   Choose(dialog, kQuickCombo, 4);
                   Press(dialog, IDOK);
               }},
               [&] {
                   SendMessageW(toButton, WM_LBUTTONDOWN, 0, 0);
                   return static_cast<int>(SendMessageW(toButton, WM_LBUTTONUP, 0, 0));
               });
    EXPECT_EQ(L"01.01.2024", TextOf(from));
    EXPECT_EQ(L"31.03.2024", TextOf(to));
    EXPECT_EQ(to, GetFocus());
    // Alt+Down in the from-field asks for its date alone.
    driver.run({[](HWND dialog) {
                   EXPECT_FALSE(ItemShown(dialog, kEndField));
                   Choose(dialog, kMonthCombo, 5);
                   Press(dialog, IDOK);
               }},
               [&] { return static_cast<int>(SendMessageW(from, WM_SYSKEYDOWN, VK_DOWN, 0x20000000)); });
    EXPECT_EQ(L"01.06.2024", TextOf(from));
    EXPECT_EQ(L"31.03.2024", TextOf(to));
    // A date-time picker field, double-clicked.
    driver.run({[](HWND dialog) {
                   EXPECT_EQ(Label(20240704), ItemText(dialog, kStartField));
                   ClickDay(GetDlgItem(dialog, kGrid), 20240712, true);
               }},
               [&] { return static_cast<int>(SendMessageW(picker, WM_LBUTTONDBLCLK, MK_LBUTTON, 0)); });
    int date = 0;
    EXPECT_EQ(1, KxDateTime_GetDate(nullptr, picker, nullptr, 0, 0, &date));
    EXPECT_EQ(20240712, date);
    EXPECT_EQ(3, driver.stepsRun());
    EXPECT_FALSE(driver.leftOpen());
}

// What the helpers hand to a picker: each DTM_SETSYSTEMTIME's flag and time, captured in front of
// it (Wine's picker refuses times on 31 December 9999 as out of its range).
class DateTimeHelpers : public kvtest::KvTest {
protected:
    kvtest::HostWindow owner{300, 200};
    std::vector<std::pair<WPARAM, SYSTEMTIME>> sets;
    HWND picker = nullptr;

    void SetUp() override {
        picker = owner.createChild(DATETIMEPICK_CLASSW, L"", WS_VISIBLE | DTS_SHOWNONE, 10, 10, 150, 22, 1);
        SetWindowSubclass(picker, capture, 1, reinterpret_cast<DWORD_PTR>(this));
    }
    static LRESULT CALLBACK capture(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                    DWORD_PTR self) {
        if (message == DTM_SETSYSTEMTIME)
            reinterpret_cast<DateTimeHelpers*>(self)->sets.emplace_back(wParam, *reinterpret_cast<SYSTEMTIME*>(lParam));
        if (message == WM_NCDESTROY) RemoveWindowSubclass(window, capture, 1);
        return DefSubclassProc(window, message, wParam, lParam);
    }
    LRESULT state(SYSTEMTIME* time = nullptr) {
        SYSTEMTIME ignored;
        return SendMessageW(picker, DTM_GETSYSTEMTIME, 0, reinterpret_cast<LPARAM>(time ? time : &ignored));
    }
};

TEST_F(DateTimeHelpers, TimeInItsThreeReadings) {
    struct Case {
        const wchar_t* text;
        int flags;
        WORD hour, minute, second, milliseconds;
    };
    const Case cases[] = {
        {L"12:34", 0, 12, 34, 0, 0},           // HHMM
        {L"1234", 0x400000, 0, 12, 34, 0},     // the same number as HHMMSS
        {L"12:34:56", 0, 12, 34, 56, 0},       // HHMMSS
        {L"10:20:30", 0x800000, 0, 1, 2, 30},  // 102030 as HHMMSSmmm
    };
    for (const Case& c : cases) {
        sets.clear();
        EXPECT_TRUE(KxDateTime_SetTime(nullptr, picker, c.text, FALSE, c.flags));
        ASSERT_EQ(1u, sets.size());
        const SYSTEMTIME& t = sets[0].second;
        EXPECT_EQ(static_cast<WPARAM>(GDT_VALID), sets[0].first);
        EXPECT_EQ((std::vector<WORD>{9999, 12, 31, c.hour, c.minute, c.second, c.milliseconds}),
                  (std::vector<WORD>{t.wYear, t.wMonth, t.wDay, t.wHour, t.wMinute, t.wSecond, t.wMilliseconds}))
            << c.text << " " << c.flags;
    }
    sets.clear();
    EXPECT_TRUE(KxDateTime_SetTime(nullptr, picker, L"08:15", TRUE, 0));
    ASSERT_EQ(2u, sets.size());
    EXPECT_EQ(static_cast<WPARAM>(GDT_NONE), sets[1].first) << "then unchecked";
    EXPECT_EQ(GDT_NONE, state());
    sets.clear();
    EXPECT_FALSE(KxDateTime_SetTime(nullptr, picker, L"25:00", FALSE, 0));
    EXPECT_TRUE(sets.empty()) << "no time, nothing set";
}

TEST_F(DateTimeHelpers, DatesInAndOut) {
    EXPECT_TRUE(KxDateTime_SetDate(nullptr, picker, L"5.6.2024", 0, 0, FALSE));
    wchar_t text[32] = L"x";
    int date = -1;
    EXPECT_EQ(1, KxDateTime_GetDate(nullptr, picker, text, 6, 0, &date));
    EXPECT_EQ(20240605, date);
    EXPECT_EQ(std::wstring(L"05.06"), text) << "cut to the buffer";

    // Unchecked: the date is set, then the check box cleared; there is no date to get.
    sets.clear();
    EXPECT_TRUE(KxDateTime_SetDate(nullptr, picker, nullptr, 20241224, 0, TRUE));
    ASSERT_EQ(2u, sets.size());
    EXPECT_EQ(static_cast<WPARAM>(GDT_VALID), sets[0].first);
    EXPECT_EQ(24, sets[0].second.wDay);
    EXPECT_EQ(static_cast<WPARAM>(GDT_NONE), sets[1].first);
    EXPECT_EQ(0, KxDateTime_GetDate(nullptr, picker, text, 32, 0, &date));
    EXPECT_EQ(0, date);
    EXPECT_EQ(std::wstring(L""), text);
    sets.clear();
    KxDateTime_SetDate(nullptr, picker, nullptr, 0, 0, FALSE);
    EXPECT_EQ(static_cast<WPARAM>(GDT_NONE), sets.at(0).first) << "no year: no date";

    SYSTEMTIME zero = {};
    EXPECT_TRUE(DateTime_SetTimeZero(picker, true));
    EXPECT_EQ(GDT_VALID, state(&zero));
    EXPECT_EQ((std::vector<WORD>{2010, 1, 1, 0, 0}),
              (std::vector<WORD>{zero.wYear, zero.wMonth, zero.wDay, zero.wHour, zero.wMinute}));
    EXPECT_TRUE(DateTime_SetTimeZero(picker, false));
    EXPECT_EQ(GDT_NONE, state());

    SYSTEMTIME leapDay = {2024, 2, 0, 29, 0, 0, 0, 0};
    EXPECT_EQ(1, KxDateTime_FormatDate(nullptr, text, leapDay, 0, 32));
    EXPECT_EQ(std::wstring(L"29.02.2024"), text);
    EXPECT_EQ(0, KxDateTime_FormatDate(nullptr, nullptr, leapDay, 0, 32));

    DestroyWindow(picker);
    for (HWND window : {static_cast<HWND>(nullptr), picker}) {
        EXPECT_FALSE(DateTime_SetTimeZero(window, true));
        EXPECT_EQ(0, KxDateTime_GetDate(nullptr, window, text, 32, 0, &date));
        EXPECT_EQ(0, KxDateTime_SetDate(nullptr, window, nullptr, 20240101, 0, FALSE));
        EXPECT_EQ(0, KxDateTime_SetTime(nullptr, window, L"12:00", FALSE, 0));
    }
}

}  // namespace
}  // namespace calendar_test
