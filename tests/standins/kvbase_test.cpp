// The base library stand-in: date texts, calendar and ISO week arithmetic.
#include "kvtest.h"
#include "kvbase.h"

namespace {

using kvtest::KvTest;
class KvBaseTest : public KvTest {};

TEST_F(KvBaseTest, FormatsAndParsesGermanStyleDates) {
    wchar_t text[20];
    EXPECT_EQ(10, FormDate(nullptr, 20240229, 0, text, 20));
    EXPECT_STREQ(L"29.02.2024", text);
    EXPECT_EQ(0, FormDate(nullptr, 20230229, 0, text, 20));
    EXPECT_STREQ(L"", text);
    int date = -1;
    EXPECT_EQ(1, DeFormDate(nullptr, L"1.3.2024", 0, &date, 0));
    EXPECT_EQ(20240301, date);
    EXPECT_EQ(1, DeFormDate(nullptr, L"31122099", 0, &date, 0));
    EXPECT_EQ(20991231, date);
    EXPECT_EQ(1, DeFormDate(nullptr, L"05.06.49", 0, &date, 0));
    EXPECT_EQ(20490605, date);
    EXPECT_EQ(1, DeFormDate(nullptr, L"2024-12-24", 0, &date, 0));
    EXPECT_EQ(20241224, date);
    EXPECT_EQ(0, DeFormDate(nullptr, L"31.02.2024", 0, &date, 0));
    EXPECT_EQ(0, date);
    EXPECT_EQ(0, DeFormDate(nullptr, L"", 0, &date, 0));
    EXPECT_EQ(0, DeFormDate(nullptr, L"abc", 0, &date, 0));
    EXPECT_EQ(20240301, CheckDate(nullptr, L" 01.03.2024 ", 0));
}

TEST_F(KvBaseTest, SplitsImpossibleDatesWithoutChecking) {
    int day, month, year;
    EXPECT_EQ(1, DeFormDateEx(nullptr, L"31.02.2023", 0, &day, &month, &year));
    EXPECT_EQ(31, day);
    EXPECT_EQ(2, month);
    EXPECT_EQ(2023, year);
    EXPECT_EQ(0, DeFormDateEx(nullptr, L"x", 0, &day, &month, &year));
    EXPECT_EQ(0, day);
}

TEST_F(KvBaseTest, CalendarArithmetic) {
    EXPECT_EQ(29, DaysPerMonth(20240210));
    EXPECT_EQ(28, DaysPerMonth(21000201));
    EXPECT_EQ(31, DaysPerMonth(20241215));
    EXPECT_EQ(0, GetDay(20240101));   // a Monday
    EXPECT_EQ(6, GetDay(20241222));   // a Sunday
    EXPECT_EQ(3, GetDay(19700101));   // a Thursday
    EXPECT_EQ(-1, GetDay(20240230));
    SYSTEMTIME time;
    SplitDateEx(20241222, &time);
    EXPECT_EQ(0, time.wDayOfWeek);
    EXPECT_EQ(12, time.wMonth);
}

TEST_F(KvBaseTest, IsoWeeks) {
    int start = 0, end = 0;
    EXPECT_EQ(1, GetWeek(20240101, &start, &end));
    EXPECT_EQ(20240101, start);
    EXPECT_EQ(20240107, end);
    EXPECT_EQ(53, GetWeek(20210101, &start, &end));  // belongs to 2020's last week
    EXPECT_EQ(20201228, start);
    EXPECT_EQ(1, GetWeek(20241230, nullptr, nullptr));  // belongs to 2025's first week
    EXPECT_EQ(53, WeeksPerYear(2020));
    EXPECT_EQ(52, WeeksPerYear(2021));
    EXPECT_EQ(53, WeeksPerYear(2026));
    EXPECT_EQ(1, GetWeekBorder(2025, 1, &start, &end));
    EXPECT_EQ(20241230, start);
    EXPECT_EQ(20250105, end);
    EXPECT_EQ(0, GetWeekBorder(2025, 53, &start, &end));
}

TEST_F(KvBaseTest, TimesAndToday) {
    EXPECT_EQ(930, CheckTime(nullptr, L"9:30", 0));
    EXPECT_EQ(235959, CheckTime(nullptr, L"23:59:59", 0));
    EXPECT_EQ(1205, CheckTime(nullptr, L"1205", 0));
    EXPECT_EQ(-1, CheckTime(nullptr, L"25:00", 0));
    int today = 0;
    EXPECT_EQ(1, GetDateTime(nullptr, &today, nullptr));
    SYSTEMTIME now;
    GetLocalTime(&now);
    EXPECT_EQ(now.wYear * 10000 + now.wMonth * 100 + now.wDay, today);
}

TEST_F(KvBaseTest, PrintsABitmapThroughAPackedDib) {
    HBITMAP bitmap = kvtest::MakeBitmap(4, 2, [](int x, int) { return x < 2 ? RGB(255, 0, 0) : RGB(0, 0, 255); });
    HGLOBAL dib = BitmapToDIBPrint(bitmap);
    ASSERT_NE(nullptr, dib);
    kvtest::Canvas canvas(40, 10);
    RECT rect = {0, 0, 40, 10};
    EXPECT_EQ(2, DIBToBitmapRect(canvas.dc(), dib, &rect, 1, 0, 0));
    // Proportional: 20 x 10 centred, so the left 10 columns stay white.
    EXPECT_EQ(RGB(255, 255, 255), canvas.pixel(5, 5));
    EXPECT_EQ(RGB(255, 0, 0), canvas.pixel(12, 5));
    EXPECT_EQ(RGB(0, 0, 255), canvas.pixel(27, 5));
    GlobalFree(dib);
    DeleteObject(bitmap);
}

}  // namespace
