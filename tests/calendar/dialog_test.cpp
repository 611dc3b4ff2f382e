// The calendar dialog driven through its controls while it runs: the dates it opens on, month,
// year, week and quick choices, typed dates, the grid, and the OK rules.
#include "calendar_test.h"

namespace calendar_test {
namespace {

class Calendar : public kvtest::KvTest {
protected:
    kvtest::HostWindow owner;
    CalendarDriver driver{owner};

    // Kx1ToolKalender with the owner window and these dates, driven by `steps`.
    int ask(int mode, int* date1, int* date2, std::vector<Step> steps) {
        return driver.run(std::move(steps), [&] { return Kx1ToolKalender(GlobalSession(), owner, mode, date1, date2); });
    }
    // Kx1Kalender on a caller-owned record.
    int run(KalenderRecord& record, std::vector<Step> steps) {
        return driver.run(std::move(steps), [&] { return Kx1Kalender(owner, &record); });
    }
    static KalenderRecord record(int mode, int start, int end = 0) {
        KalenderRecord r = {};
        r.mode = static_cast<BYTE>(mode);
        r.start = start;
        r.end = end;
        return r;
    }
};

TEST_F(Calendar, SingleDateLayoutOpensOnTodayWithoutADate) {
    GlobalSession()->language = 7;
    GlobalSession()->display = 3;
    int date = 0, today = Today();
    int result = ask(0, &date, nullptr, {[&](HWND dialog) {
        EXPECT_EQ(L"Calendar", TextOf(dialog));
        KalenderRecord* r = RecordOf(dialog);
        ASSERT_TRUE(r);
        EXPECT_EQ(7, r->language);
        EXPECT_EQ(3, r->display);
        EXPECT_EQ(today, r->start);
        EXPECT_EQ(Label(today), ItemText(dialog, kStartField));
        EXPECT_EQ(L"Date", ItemText(dialog, kStartCaption));
        for (int hidden : {kEndField, kEndCaption, kQuickCombo, kWeekCombo, kWeekCaption, 120})
            EXPECT_FALSE(ItemShown(dialog, hidden)) << hidden;
        EXPECT_EQ(today / 100 % 100 - 1, ComboRow(dialog, kMonthCombo));
        EXPECT_EQ(10, ComboRow(dialog, kYearCombo));
        EXPECT_EQ(std::to_wstring(today / 10000), ComboText(dialog, kYearCombo));
        HWND grid = GetDlgItem(dialog, kGrid);
        EXPECT_EQ(0x54810000, GetWindowLongW(grid, GWL_STYLE));
        EXPECT_TRUE(GetWindowLongW(grid, GWL_EXSTYLE) & WS_EX_CLIENTEDGE);
        EXPECT_EQ(grid, GetFocus());
        EXPECT_EQ(today, SendMessageW(grid, DPM_GETDATE, 0, 0));
        EXPECT_EQ(today / 100, SendMessageW(grid, DPM_GETMONTH, 0, 0));
        Press(dialog, IDCANCEL);
    }});
    GlobalSession()->language = 0;
    GlobalSession()->display = 0;
    EXPECT_EQ(0, result);
    EXPECT_EQ(0, date) << "Cancel leaves the date alone";
    EXPECT_FALSE(driver.leftOpen());
}

TEST_F(Calendar, OpensOnTodayOrTodaysYear) {
    int today = Today(), year = today / 10000;
    const std::pair<int, int> cases[] = {
        {0, today},
        {(year - 3) * 10000 + 1305, today},                        // month 13
        {(year + 11) * 10000 + 505, year * 10000 + 505},           // 11 years away
        {(year - 10) * 10000 + 505, (year - 10) * 10000 + 505},    // 10 years: in reach
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.first);
        int date = c.first;
        EXPECT_EQ(1, ask(0, &date, nullptr, {[&](HWND dialog) {
            EXPECT_EQ(std::to_wstring(c.second / 10000), ComboText(dialog, kYearCombo));
            Press(dialog, IDOK);
        }}));
        EXPECT_EQ(c.second, date);
    }
}

TEST_F(Calendar, MonthAndYearChoices) {
    int date = 20240131;
    int result = ask(0, &date, nullptr, {[&](HWND dialog) {
        Choose(dialog, kMonthCombo, 1);  // February keeps the day inside the month
        EXPECT_EQ(Label(20240229), ItemText(dialog, kStartField));
        EXPECT_EQ(20240229, SendDlgItemMessageW(dialog, kGrid, DPM_GETDATE, 0, 0));
        Choose(dialog, kYearCombo, 11);
        EXPECT_EQ(L"2025", ItemText(dialog, kYearText));
        EXPECT_EQ(Label(20250228), ItemText(dialog, kStartField));
        EXPECT_EQ(202502, SendDlgItemMessageW(dialog, kGrid, DPM_GETMONTH, 0, 0));
        Press(dialog, IDOK);
    }});
    EXPECT_EQ(1, result);
    EXPECT_EQ(20250228, date);
}

TEST_F(Calendar, QuickChoices) {
    struct Expected {
        int row, start, end;
    };
    int today = Today();
    // With a range; the shown year is 2024 until "today" moves it.
    const Expected ranged[] = {{2, 20240513, 20240519}, {3, 20240501, 20240531}, {4, 20240101, 20240331},
                               {5, 20240401, 20240630}, {6, 20240701, 20240930}, {7, 20241001, 20241231},
                               {8, 20240101, 20241231}, {1, today, today}, {0, today, today}};
    KalenderRecord r = record(KAL_QUICKCHOICE | KAL_RANGE, 20240515);
    run(r, {[&](HWND dialog) {
        EXPECT_TRUE(ItemShown(dialog, kQuickCombo));
        EXPECT_TRUE(ItemShown(dialog, kWeekCombo)) << "the quick choices bring the weeks";
        EXPECT_EQ(L"From", ItemText(dialog, kStartCaption));
        EXPECT_EQ(L"To", ItemText(dialog, kEndCaption));
        for (const Expected& e : ranged) {
            Choose(dialog, kQuickCombo, e.row);
            EXPECT_EQ(e.start, r.start) << "row " << e.row;
            EXPECT_EQ(e.end, r.end) << "row " << e.row;
        }
        EXPECT_EQ(Label(today), ItemText(dialog, kEndField));
        EXPECT_EQ(GetWeek(today, nullptr, nullptr), ComboRow(dialog, kWeekCombo));
        Press(dialog, IDCANCEL);
    }});
    // Without a range only the month, quarter and year choices set an end.
    const Expected single[] = {{8, 20240101, 20241231}, {2, 20240101, 20241231}, {1, today, 20241231}};
    KalenderRecord s = record(KAL_QUICKCHOICE, 20240515);
    run(s, {[&](HWND dialog) {
        EXPECT_TRUE(ItemShown(dialog, kEndField));
        for (const Expected& e : single) {
            Choose(dialog, kQuickCombo, e.row);
            EXPECT_EQ(e.start, s.start) << "row " << e.row;
            EXPECT_EQ(e.end, s.end) << "row " << e.row;
        }
        Press(dialog, IDCANCEL);
    }});
}

TEST_F(Calendar, WeekChoices) {
    KalenderRecord r = record(KAL_WEEKS | KAL_RANGE, 20250610);
    run(r, {[&](HWND dialog) {
        EXPECT_FALSE(ItemShown(dialog, kQuickCombo));
        EXPECT_EQ(L"This week", ItemText(dialog, kWeekCaption));
        EXPECT_EQ(53, SendDlgItemMessageW(dialog, kWeekCombo, CB_GETCOUNT, 0, 0)) << "52 weeks and a blank";
        Choose(dialog, kWeekCombo, 1);  // week 1 of 2025 begins on 30 December 2024
        EXPECT_EQ(20250101, r.start);
        EXPECT_EQ(20250105, r.end);
        Choose(dialog, kWeekCombo, 10);
        EXPECT_EQ(20250303, r.start);
        EXPECT_EQ(20250309, r.end);
        EXPECT_EQ(20250303, SendDlgItemMessageW(dialog, kGrid, DPM_GETDATE, 0, 0));
        EXPECT_EQ(20250309, SendDlgItemMessageW(dialog, kGrid, DPM_GETDATE, DPD_END, 0));
        Choose(dialog, kYearCombo, 11);  // 2026 has 53 weeks
        EXPECT_EQ(54, SendDlgItemMessageW(dialog, kWeekCombo, CB_GETCOUNT, 0, 0));
        Press(dialog, IDCANCEL);
    }});
    KalenderRecord s = record(KAL_WEEKS, 20250610);
    run(s, {[&](HWND dialog) {
        Choose(dialog, kWeekCombo, 10);
        EXPECT_EQ(20250303, s.start);
        EXPECT_EQ(0, s.end) << "no range, no end";
        Press(dialog, IDCANCEL);
    }});
}

TEST_F(Calendar, TypedDatesAreNormalised) {
    KalenderRecord r = record(KAL_RANGE, 20240515, 20240520);
    run(r, {[&](HWND dialog) {
        Type(dialog, kStartField, L"31.02.2025");
        EXPECT_EQ(20250303, r.start);
        EXPECT_EQ(Label(20250303), ItemText(dialog, kStartField));
        EXPECT_EQ(2, ComboRow(dialog, kMonthCombo));
        // The grid gets the earlier date first.
        EXPECT_EQ(20240520, SendDlgItemMessageW(dialog, kGrid, DPM_GETDATE, 0, 0));
        EXPECT_EQ(20250303, SendDlgItemMessageW(dialog, kGrid, DPM_GETDATE, DPD_END, 0));
        Type(dialog, kEndField, L"no date");
        EXPECT_EQ(20240520, r.end);
        Type(dialog, kEndField, L"5.4.2025");
        EXPECT_EQ(20250405, r.end);
        Press(dialog, IDCANCEL);
    }});
}

TEST_F(Calendar, OkPutsARangeInOrderAndStaysOpenOnce) {
    int from = 20240520, to = 20240510;
    int result = ask(KAL_RANGE, &from, &to,
                     {[](HWND dialog) { Press(dialog, IDOK); },
                      [](HWND dialog) {
                          EXPECT_EQ(Label(20240510), ItemText(dialog, kStartField));
                          EXPECT_EQ(Label(20240520), ItemText(dialog, kEndField));
                          Press(dialog, IDOK);
                      }});
    EXPECT_EQ(1, result);
    EXPECT_EQ(2, driver.stepsRun());
    EXPECT_EQ(20240510, from);
    EXPECT_EQ(20240520, to);

    // A missing end takes the start; an impossible start is corrected first.
    from = 20240520;
    to = 0;
    EXPECT_EQ(1, ask(KAL_RANGE, &from, &to, {[](HWND dialog) { Press(dialog, IDOK); }}));
    EXPECT_EQ(20240520, to);
    KalenderRecord r = record(0, 20250230);
    EXPECT_EQ(1, run(r, {[](HWND dialog) { Press(dialog, IDOK); }, [](HWND dialog) { Press(dialog, IDOK); }}));
    EXPECT_EQ(20250302, r.start);
}

TEST_F(Calendar, CancelLeavesTheCallersDates) {
    int from = 20240520, to = 20240525;
    EXPECT_EQ(0, ask(KAL_RANGE, &from, &to, {[](HWND dialog) {
        Choose(dialog, kMonthCombo, 0);
        Type(dialog, kEndField, L"1.6.2024");
        Press(dialog, IDCANCEL);
    }}));
    EXPECT_EQ(20240520, from);
    EXPECT_EQ(20240525, to);
}

TEST_F(Calendar, GridChoicesReachTheDialog) {
    int from = 20240505, to = 20240506;
    int result = ask(KAL_RANGE, &from, &to, {[](HWND dialog) {
        HWND grid = GetDlgItem(dialog, kGrid);
        POINT first = DayCentre(grid, 20240510), last = DayCentre(grid, 20240514);
        SendMessageW(grid, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(first.x, first.y));
        SendMessageW(grid, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(last.x, last.y));
        SendMessageW(grid, WM_LBUTTONUP, 0, MAKELPARAM(last.x, last.y));
        EXPECT_EQ(Label(20240510), ItemText(dialog, kStartField));
        EXPECT_EQ(Label(20240514), ItemText(dialog, kEndField));
        ClickDay(grid, 20240520, true);  // a double click chooses for good
    }});
    EXPECT_EQ(1, result);
    EXPECT_FALSE(driver.leftOpen());
    EXPECT_EQ(20240520, from);
    EXPECT_EQ(20240520, to);
    // The grid's notice reaches the dialog's owner unchanged.
    ASSERT_EQ(1, owner.count(DPN_CHOSEN));
    EXPECT_EQ(20240520, owner.messages(DPN_CHOSEN)[0].wParam);
}

TEST_F(Calendar, RecordAndLanguageStringsWithoutMemory) {
    int date = 20240515;
    KvText_FailAllocation(1);
    EXPECT_EQ(0, ask(0, &date, nullptr, {}));
    EXPECT_EQ(0, driver.stepsRun()) << "no dialog";
    EXPECT_EQ(20240515, date);

    // The first month name missing: its row stays, empty.
    KalenderRecord r = record(0, 20240115);
    KvText_FailAllocation(1);
    EXPECT_EQ(1, run(r, {[](HWND dialog) {
        KvText_FailAllocation(0);
        EXPECT_EQ(L"", ComboText(dialog, kMonthCombo));
        Choose(dialog, kMonthCombo, 1);
        EXPECT_EQ(L"February", ComboText(dialog, kMonthCombo));
        Press(dialog, IDOK);
    }}));
    EXPECT_EQ(20240215, r.start);
}

TEST_F(Calendar, BadArguments) {
    EXPECT_EQ(0, Kx1Kalender(owner, nullptr));
    EXPECT_EQ(FALSE, Kx1KalDlg(nullptr, WM_COMMAND, IDOK, 0));
}

}  // namespace
}  // namespace calendar_test
