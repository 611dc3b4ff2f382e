// Stand-in for the suite's base library: calendar arithmetic on YYYYMMDD integers, the
// "dd.mm.yyyy" text form, ISO weeks, and DIB conversion for printing.
#define KVBASE_BUILDING
#include "kvbase.h"
#include <stdio.h>
#include <wchar.h>

namespace {

bool isLeapYear(int year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

int daysInMonth(int year, int month) {
    static const int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < 1 || month > 12) return 0;
    return month == 2 && isLeapYear(year) ? 29 : days[month - 1];
}

bool isValid(int year, int month, int day) {
    return year >= 1 && year <= 9999 && day >= 1 && day <= daysInMonth(year, month);
}

int makeDate(int year, int month, int day) { return (year * 100 + month) * 100 + day; }

// Days since 1 January 1970 (proleptic Gregorian calendar).
int dayNumber(int year, int month, int day) {
    year -= month <= 2;
    int era = (year >= 0 ? year : year - 399) / 400;
    int yearOfEra = year - era * 400;
    int dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 719468;
}

int fromDayNumber(int n) {
    n += 719468;
    int era = (n >= 0 ? n : n - 146096) / 146097;
    int dayOfEra = n - era * 146097;
    int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    int shiftedMonth = (5 * dayOfYear + 2) / 153;
    int day = dayOfYear - (153 * shiftedMonth + 2) / 5 + 1;
    int month = shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9;
    int year = yearOfEra + era * 400 + (month <= 2);
    return makeDate(year, month, day);
}

// 0 = Monday .. 6 = Sunday; 1 January 1970 was a Thursday.
int weekdayOf(int n) { return ((n + 3) % 7 + 7) % 7; }

int mondayOfWeek1(int year) {
    int jan4 = dayNumber(year, 1, 4);
    return jan4 - weekdayOf(jan4);
}

int currentYear() {
    SYSTEMTIME now;
    GetLocalTime(&now);
    return now.wYear;
}

// Reads up to `maxDigits` digits; returns the count read.
int readNumber(const wchar_t*& p, int maxDigits, int* value) {
    int count = 0;
    *value = 0;
    while (count < maxDigits && *p >= L'0' && *p <= L'9') {
        *value = *value * 10 + (*p - L'0');
        ++p;
        ++count;
    }
    return count;
}

int expandYear(int year, int digits) {
    if (digits > 2) return year;
    return year < 50 ? 2000 + year : 1900 + year;  // two-digit years pivot at 50
}

// Splits a date text into day, month and year without calendar checks. Returns false when the
// text does not have the shape of a date.
bool splitText(const wchar_t* text, int* day, int* month, int* year) {
    *day = *month = *year = 0;
    if (!text) return false;
    const wchar_t* p = text;
    while (*p == L' ') ++p;
    if (!*p) return false;

    const wchar_t* start = p;
    int first = 0;
    int digits = readNumber(p, 8, &first);
    if (digits == 0) return false;

    if (*p == L'-' && digits == 4) {  // yyyy-mm-dd
        *year = first;
        ++p;
        if (!readNumber(p, 2, month) || *p != L'-') return false;
        ++p;
        if (!readNumber(p, 2, day)) return false;
    } else if (*p == L'.' || *p == L'/') {  // d.m.yyyy, d.m.yy, d.m., d.m
        if (digits > 2) return false;
        *day = first;
        ++p;
        if (!readNumber(p, 2, month)) return true;  // "d." alone: a day only
        int yearValue = 0, yearDigits = 0;
        if (*p == L'.' || *p == L'/') {
            ++p;
            yearDigits = readNumber(p, 4, &yearValue);
        }
        *year = yearDigits ? expandYear(yearValue, yearDigits) : currentYear();
    } else if (digits == 8) {  // ddmmyyyy
        *day = first / 1000000;
        *month = first / 10000 % 100;
        *year = first % 10000;
    } else if (digits == 6) {  // ddmmyy
        *day = first / 10000;
        *month = first / 100 % 100;
        *year = expandYear(first % 100, 2);
    } else if (digits <= 2 && p - start == digits) {  // a day alone
        *day = first;
    } else {
        return false;
    }
    while (*p == L' ') ++p;
    return *p == 0;
}

}  // namespace

int WINAPI CheckDate(KVSESSION* session, const wchar_t* text, int flags) {
    int date = 0;
    return DeFormDate(session, text, flags, &date, 0) ? date : 0;
}

int WINAPI FormDate(KVSESSION*, int date, int, wchar_t* buffer, int capacity) {
    if (!buffer || capacity <= 0) return 0;
    buffer[0] = 0;
    int year = date / 10000, month = date / 100 % 100, day = date % 100;
    if (!isValid(year, month, day)) return 0;
    int written = _snwprintf(buffer, capacity, L"%02d.%02d.%04d", day, month, year);
    if (written < 0 || written >= capacity) {
        buffer[capacity - 1] = 0;
        return capacity - 1;
    }
    return written;
}

int WINAPI DeFormDate(KVSESSION*, const wchar_t* text, int, int* date, int) {
    int day, month, year;
    int result = 0;
    if (splitText(text, &day, &month, &year) && isValid(year, month, day))
        result = makeDate(year, month, day);
    if (date) *date = result;
    return result != 0;
}

int WINAPI DeFormDateEx(KVSESSION*, const wchar_t* text, int, int* day, int* month, int* year) {
    int d, m, y;
    bool shaped = splitText(text, &d, &m, &y);
    if (!shaped) d = m = y = 0;
    if (day) *day = d;
    if (month) *month = m;
    if (year) *year = y;
    return d != 0;
}

void WINAPI SplitDate(int date, int* year, int* month, int* day) {
    if (year) *year = date / 10000;
    if (month) *month = date / 100 % 100;
    if (day) *day = date % 100;
}

void WINAPI SplitDateEx(int date, SYSTEMTIME* time) {
    if (!time) return;
    ZeroMemory(time, sizeof(*time));
    time->wYear = static_cast<WORD>(date / 10000);
    time->wMonth = static_cast<WORD>(date / 100 % 100);
    time->wDay = static_cast<WORD>(date % 100);
    int weekday = GetDay(date);
    time->wDayOfWeek = static_cast<WORD>(weekday < 0 ? 0 : (weekday + 1) % 7);
}

int WINAPI DaysPerMonth(int date) { return daysInMonth(date / 10000, date / 100 % 100); }

int WINAPI GetDay(int date) {
    int year = date / 10000, month = date / 100 % 100, day = date % 100;
    if (!isValid(year, month, day)) return -1;
    return weekdayOf(dayNumber(year, month, day));
}

int WINAPI GetWeek(int date, int* weekStart, int* weekEnd) {
    int year = date / 10000, month = date / 100 % 100, day = date % 100;
    if (!isValid(year, month, day)) return 0;
    int n = dayNumber(year, month, day);
    int monday = n - weekdayOf(n);
    // The week belongs to the year that holds its Thursday.
    int thursdayYear = fromDayNumber(monday + 3) / 10000;
    int week = (monday - mondayOfWeek1(thursdayYear)) / 7 + 1;
    if (weekStart) *weekStart = fromDayNumber(monday);
    if (weekEnd) *weekEnd = fromDayNumber(monday + 6);
    return week;
}

int WINAPI GetWeekBorder(int year, int week, int* start, int* end) {
    if (year < 1 || year > 9999 || week < 1 || week > WeeksPerYear(year)) return 0;
    int monday = mondayOfWeek1(year) + (week - 1) * 7;
    if (start) *start = fromDayNumber(monday);
    if (end) *end = fromDayNumber(monday + 6);
    return 1;
}

int WINAPI WeeksPerYear(int year) {
    // A year has 53 weeks when it starts on a Thursday, or is a leap year starting on a Wednesday.
    int jan1 = weekdayOf(dayNumber(year, 1, 1));
    return jan1 == 3 || (jan1 == 2 && isLeapYear(year)) ? 53 : 52;
}

int WINAPI GetDateTime(KVSESSION*, int* date, int* time) {
    SYSTEMTIME now;
    GetLocalTime(&now);
    if (date) *date = makeDate(now.wYear, now.wMonth, now.wDay);
    if (time) *time = (now.wHour * 100 + now.wMinute) * 100 + now.wSecond;
    return 1;
}

int WINAPI CheckTime(KVSESSION*, const wchar_t* text, int) {
    if (!text) return -1;
    const wchar_t* p = text;
    while (*p == L' ') ++p;
    int parts[3] = {0, 0, 0};
    int count = 0;
    int hour = 0, minute = 0, second = 0;
    bool withSeconds = false;
    int value = 0;
    int digits = readNumber(p, 6, &value);
    if (digits == 0) return -1;
    if (*p == L':') {
        parts[count++] = value;
        while (*p == L':' && count < 3) {
            ++p;
            if (!readNumber(p, 2, &parts[count])) return -1;
            ++count;
        }
        hour = parts[0];
        minute = parts[1];
        second = parts[2];
        withSeconds = count == 3;
    } else if (digits <= 2) {
        hour = value;
    } else if (digits <= 4) {
        hour = value / 100;
        minute = value % 100;
    } else {
        hour = value / 10000;
        minute = value / 100 % 100;
        second = value % 100;
        withSeconds = true;
    }
    while (*p == L' ') ++p;
    if (*p || hour > 23 || minute > 59 || second > 59) return -1;
    return withSeconds ? (hour * 100 + minute) * 100 + second : hour * 100 + minute;
}

HGLOBAL WINAPI BitmapToDIBPrint(HBITMAP bitmap) {
    BITMAP info;
    if (!bitmap || !GetObjectW(bitmap, sizeof(info), &info)) return nullptr;
    BITMAPINFOHEADER header = {};
    header.biSize = sizeof(header);
    header.biWidth = info.bmWidth;
    header.biHeight = info.bmHeight;
    header.biPlanes = 1;
    header.biBitCount = 24;
    header.biCompression = BI_RGB;
    DWORD stride = ((info.bmWidth * 3 + 3) / 4) * 4;
    header.biSizeImage = stride * info.bmHeight;
    HGLOBAL dib = GlobalAlloc(GMEM_MOVEABLE, sizeof(header) + header.biSizeImage);
    if (!dib) return nullptr;
    auto* block = static_cast<BITMAPINFOHEADER*>(GlobalLock(dib));
    *block = header;
    HDC screen = GetDC(nullptr);
    int lines = GetDIBits(screen, bitmap, 0, info.bmHeight, block + 1,
                          reinterpret_cast<BITMAPINFO*>(block), DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
    GlobalUnlock(dib);
    if (lines != info.bmHeight) {
        GlobalFree(dib);
        return nullptr;
    }
    return dib;
}

int WINAPI DIBToBitmapRect(HDC dc, HGLOBAL dib, const RECT* rect, int keepAspect, int alignRight,
                           int alignBottom) {
    if (!dc || !dib || !rect) return 0;
    auto* header = static_cast<BITMAPINFOHEADER*>(GlobalLock(dib));
    if (!header) return 0;
    int width = header->biWidth, height = header->biHeight < 0 ? -header->biHeight : header->biHeight;
    int x = rect->left, y = rect->top;
    int cx = rect->right - rect->left, cy = rect->bottom - rect->top;
    if (keepAspect && width > 0 && height > 0) {
        // Largest picture of the DIB's proportions that fits the rectangle.
        int fitCx = MulDiv(cy, width, height);
        if (fitCx <= cx) {
            int spare = cx - fitCx;
            x += alignRight ? spare : spare / 2;
            cx = fitCx;
        } else {
            int fitCy = MulDiv(cx, height, width);
            int spare = cy - fitCy;
            y += alignBottom ? spare : spare / 2;
            cy = fitCy;
        }
    }
    int colours = header->biClrUsed ? header->biClrUsed
                  : header->biBitCount <= 8 ? 1 << header->biBitCount : 0;
    const BYTE* bits = reinterpret_cast<const BYTE*>(header) + header->biSize + colours * 4;
    SetStretchBltMode(dc, HALFTONE);
    int lines = StretchDIBits(dc, x, y, cx, cy, 0, 0, width, height, bits,
                              reinterpret_cast<BITMAPINFO*>(header), DIB_RGB_COLORS, SRCCOPY);
    GlobalUnlock(dib);
    return lines == GDI_ERROR ? 0 : lines;
}
