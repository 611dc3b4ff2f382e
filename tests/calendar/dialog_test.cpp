// The calendar dialog driven through its controls while it runs: the dates it opens on, month,
// year, week and quick choices, typed dates, the grid, and the OK rules.
#include "calendar_test.h"

namespace calendar_test {
namespace {

class Calendar : public kvtest::KvTest {
protected:
    kvtest::HostWindow owner;
    CalendarDriver driver{owner};

    // Kx1ToolKalender with the owner window and these dates.
    int ask(int mode, int* date1, int* date2, std::vector<Step> steps) {
        return driver.run(std::move(steps), [&] { return Kx1ToolKalender(GlobalSession(), owner, mode, date1, date2); });
    }
    // Kx1Kalender on a caller-owned record, whose fields the steps can watch.
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

TEST_F(Calendar, SingleDateLayoutOnTodayWithoutADate) {
    GlobalSession()->language = 7;
    GlobalSession()->display = 3;
    int date = 0, today = Today();
    int result = ask(0, &date, nullptr, {[&](HWND dialog) {
        auto* r = static_cast<KalenderRecord*>(GetPropW(dialog, L"struct"));
        ASSERT_TRUE(r);
        EXPECT_EQ(7, r->language);
        EXPECT_EQ(3, r->display);
        EXPECT_EQ(L"Calendar", TextOf(dialog));
        EXPECT_EQ(Label(today), ItemText(dialog, kStartField));
        EXPECT_EQ(L"Date", ItemText(dialog, kStartCaption));
        for (int hidden : {kEndField, kEndCaption, kQuickCombo, kWeekCombo, kWeekCaption, 120})
            EXPECT_FALSE(ItemShown(dialog, hidden)) << hidden;
        EXPECT_EQ(today / 100 % 100 - 1, ComboRow(dialog, kMonthCombo));
        EXPECT_EQ(10, ComboRow(dialog, kYearCombo));
        HWND grid = GetDlgItem(dialog, kGrid);
        EXPECT_EQ(0x54810000, GetWindowLongW(grid, GWL_STYLE));
        EXPECT_TRUE(GetWindowLongW(grid, GWL_EXSTYLE) & WS_EX_CLIENTEDGE);
        EXPECT_EQ(grid, GetFocus());
        EXPECT_EQ(today, GridDate(dialog));
        Press(dialog, IDCANCEL);
    }});
    GlobalSession()->language = 0;
    GlobalSession()->display = 0;
    EXPECT_EQ(0, result);
    EXPECT_EQ(0, date) << "Cancel leaves the date alone";
}

TEST_F(Calendar, OpensOnTodayOrTodaysYear) {
    int today = Today(), year = today / 10000;
    const std::pair<int, int> cases[] = {
        {0, today},
        {(year - 3) * 10000 + 1305, today},                      // month 13
        {(year + 11) * 10000 + 505, year * 10000 + 505},         // 11 years away
        {(year - 10) * 10000 + 505, (year - 10) * 10000 + 505},  // in the year combo's reach
    };
    for (const auto& c : cases) {
        int date = c.first;
        EXPECT_EQ(1, ask(0, &date, nullptr, {[&](HWND dialog) {
            EXPECT_EQ(std::to_wstring(c.second / 10000), ComboText(dialog, kYearCombo));
            Press(dialog, IDOK);
        }}));
        EXPECT_EQ(c.second, date) << c.first;
    }
}

TEST_F(Calendar, MonthAndYearChoices) {
    int date = 20240131;
    EXPECT_EQ(1, ask(0, &date, nullptr, {[](HWND dialog) {
        Choose(dialog, kMonthCombo, 1);  // the day is kept inside February
        EXPECT_EQ(Label(20240229), ItemText(dialog, kStartField));
        EXPECT_EQ(20240229, GridDate(dialog));
        Choose(dialog, kYearCombo, 11);
        EXPECT_EQ(L"2025", ItemText(dialog, kYearText));
        EXPECT_EQ(202502, SendDlgItemMessageW(dialog, kGrid, DPM_GETMONTH, 0, 0));
        Press(dialog, IDOK);
    }}));
    EXPECT_EQ(20250228, date);
}

struct Expected {
    int row, start, end;
};

TEST_F(Calendar, QuickChoices) {
    int today = Today();
    // A range shown in 2024 until "today" moves it.
    const std::vector<Expected> ranged = {
        {2, 20240513, 20240519}, {3, 20240501, 20240531}, {4, 20240101, 20240331}, {5, 20240401, 20240630},
        {6, 20240701, 20240930}, {7, 20241001, 20241231}, {8, 20240101, 20241231}, {1, today, today},
        {0, today, today}};
    // Without a range only the month, quarter and year choices set an end.
    const std::vector<Expected> single = {{8, 20240101, 20241231}, {2, 20240101, 20241231}, {1, today, 20241231}};
    for (const auto& choices : {std::make_pair(KAL_QUICKCHOICE | KAL_RANGE, &ranged),
                                std::make_pair(KAL_QUICKCHOICE, &single)}) {
        KalenderRecord r = record(choices.first, 20240515);
        run(r, {[&](HWND dialog) {
            EXPECT_TRUE(ItemShown(dialog, kWeekCombo)) << "the quick choices bring the weeks";
            EXPECT_EQ(L"From", ItemText(dialog, kStartCaption));
            EXPECT_EQ(L"To", ItemText(dialog, kEndCaption));
            for (const Expected& e : *choices.second) {
                Choose(dialog, kQuickCombo, e.row);
                EXPECT_EQ(e.start, r.start) << "row " << e.row;
                EXPECT_EQ(e.end, r.end) << "row " << e.row;
            }
            EXPECT_EQ(GetWeek(today, nullptr, nullptr), ComboRow(dialog, kWeekCombo));
            Press(dialog, IDCANCEL);
        }});
    }
}

TEST_F(Calendar, WeekChoices) {
    KalenderRecord r = record(KAL_WEEKS | KAL_RANGE, 20250610);
    run(r, {[&](HWND dialog) {
        EXPECT_FALSE(ItemShown(dialog, kQuickCombo));
        EXPECT_EQ(53, SendDlgItemMessageW(dialog, kWeekCombo, CB_GETCOUNT, 0, 0)) << "52 weeks and a blank";
        Choose(dialog, kWeekCombo, 1);  // week 1 of 2025 begins on 30 December 2024
        EXPECT_EQ(20250101, r.start);
        EXPECT_EQ(20250105, r.end);
        Choose(dialog, kWeekCombo, 10);
        EXPECT_EQ(20250303, GridDate(dialog));
        EXPECT_EQ(20250309, GridDate(dialog, DPD_END));
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
        EXPECT_EQ(20240520, GridDate(dialog)) << "the grid gets the earlier date first";
        EXPECT_EQ(20250303, GridDate(dialog, DPD_END));
        Type(dialog, kEndField, L"no date");
        EXPECT_EQ(20240520, r.end);
        Press(dialog, IDCANCEL);
    }});
}

TEST_F(Calendar, OkPutsARangeInOrderAndStaysOpenOnce) {
    int from = 20240520, to = 20240510;
    EXPECT_EQ(1, ask(KAL_RANGE, &from, &to,
                     {[](HWND dialog) { Press(dialog, IDOK); },
                      [](HWND dialog) {
                          EXPECT_EQ(Label(20240510), ItemText(dialog, kStartField));
                          EXPECT_EQ(Label(20240520), ItemText(dialog, kEndField));
                          Press(dialog, IDOK);
                      }}));
    EXPECT_EQ(2, driver.stepsRun());
    EXPECT_EQ(20240510, from);
    EXPECT_EQ(20240520, to);

    // A missing end takes the start at once; an impossible start is corrected first.
    to = 0;
    EXPECT_EQ(1, ask(KAL_RANGE, &from, &to, {[](HWND dialog) { Press(dialog, IDOK); }}));
    EXPECT_EQ(20240510, to);
    KalenderRecord r = record(0, 20250230);
    EXPECT_EQ(1, run(r, {[](HWND dialog) {
                             EXPECT_EQ(L"", ItemText(dialog, kStartField)) << "no such day";
                             Press(dialog, IDOK);
                         },
                         [](HWND dialog) {
                             EXPECT_EQ(Label(20250302), ItemText(dialog, kStartField));
                             Press(dialog, IDOK);
                         }}));
    EXPECT_EQ(20250302, r.start);
    EXPECT_FALSE(driver.leftOpen());
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
    EXPECT_EQ(1, ask(KAL_RANGE, &from, &to, {[](HWND dialog) {
        HWND grid = GetDlgItem(dialog, kGrid);
        POINT first = DayCentre(grid, 20240510), last = DayCentre(grid, 20240514);
        SendMessageW(grid, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(first.x, first.y));
        SendMessageW(grid, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(last.x, last.y));
        SendMessageW(grid, WM_LBUTTONUP, 0, MAKELPARAM(last.x, last.y));
        EXPECT_EQ(Label(20240510), ItemText(dialog, kStartField));
        EXPECT_EQ(Label(20240514), ItemText(dialog, kEndField));
        ClickDay(grid, 20240520, true);  // a double click chooses for good
    }}));
    EXPECT_FALSE(driver.leftOpen());
    EXPECT_EQ(20240520, from);
    EXPECT_EQ(20240520, to);
    ASSERT_EQ(1, owner.count(DPN_CHOSEN)) << "the grid's notice, passed on to the owner";
    EXPECT_EQ(20240520u, owner.messages(DPN_CHOSEN)[0].wParam);
}

TEST_F(Calendar, RecordAndLanguageStringsWithoutMemory) {
    int date = 20240515;
    KvText_FailAllocation(1);
    EXPECT_EQ(0, ask(0, &date, nullptr, {}));
    EXPECT_EQ(0, driver.stepsRun()) << "no dialog";
    EXPECT_EQ(20240515, date);

    KalenderRecord r = record(0, 20240115);
    KvText_FailAllocation(1);
    EXPECT_EQ(1, run(r, {[](HWND dialog) {
        EXPECT_EQ(L"", ComboText(dialog, kMonthCombo)) << "January's row stays, empty";
        Choose(dialog, kMonthCombo, 1);
        EXPECT_EQ(L"February", ComboText(dialog, kMonthCombo));
        Press(dialog, IDOK);
    }}));
    EXPECT_EQ(20240215, r.start);
    EXPECT_EQ(0, Kx1Kalender(owner, nullptr));
    EXPECT_EQ(FALSE, Kx1KalDlg(nullptr, WM_COMMAND, IDOK, 0));
}

}  // namespace
}  // namespace calendar_test
