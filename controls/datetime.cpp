// Date-time picker helpers: dates and times between the date library's numbers and texts and
// "SysDateTimePick32" controls.
#include "core/library.h"
#include "include/kvkit_calendar.h"
#include <commctrl.h>
#include "kvbase.h"
#include "kvtext.h"

namespace {

const int kFormatBufferLength = 101;
const int kTimeWithMilliseconds = 10000000;  // HHMMSSmmm from here on
const int kFlagMilliseconds = 0x800000;      // read every time as HHMMSSmmm
const int kFlagSeconds = 0x400000;           // read small times as HHMMSS rather than HHMM

LRESULT setSystemTime(HWND picker, DWORD flag, SYSTEMTIME& time) {
    return SendMessageW(picker, DTM_SETSYSTEMTIME, flag, reinterpret_cast<LPARAM>(&time));
}

}  // namespace

bool KVKIT_CALL DateTime_SetTimeZero(HWND picker, bool keepChecked) {
    if (!IsWindow(picker)) return false;
    SYSTEMTIME time = {};
    time.wYear = 2010;
    time.wMonth = 1;
    time.wDay = 1;
    bool set = setSystemTime(picker, GDT_VALID, time) != 0;
    if (!keepChecked) setSystemTime(picker, GDT_NONE, time);
    return set;
}

int KVKIT_CALL KxDateTime_FormatDate(KVSESSION* session, wchar_t* out, SYSTEMTIME time, int flags,
                                     int length) {
    if (!out) return 0;
    FormDate(session, (time.wYear * 100 + time.wMonth) * 100 + time.wDay, flags, out, length);
    return 1;
}

int KVKIT_CALL KxDateTime_GetDate(KVSESSION* session, HWND picker, wchar_t* text, int textLength,
                                  int flags, int* date) {
    SYSTEMTIME time = {};
    bool valid = IsWindow(picker) &&
                 SendMessageW(picker, DTM_GETSYSTEMTIME, 0, reinterpret_cast<LPARAM>(&time)) == GDT_VALID;
    if (!valid) {
        if (date) *date = 0;
        if (text && textLength > 0) text[0] = 0;
        return 0;
    }
    wchar_t formatted[kFormatBufferLength];
    KxDateTime_FormatDate(session, formatted, time, flags, kFormatBufferLength);
    int parsed = 0;
    DeFormDate(session, formatted, flags, &parsed, 0);
    if (date) *date = parsed;
    if (text && textLength > 0) kv_strcpy(text, formatted, textLength);
    return 1;
}

int KVKIT_CALL KxDateTime_SetDate(KVSESSION* session, HWND picker, const wchar_t* text, int date,
                                  int flags, BOOL uncheck) {
    if (!IsWindow(picker)) return 0;
    if (text) DeFormDate(session, text, flags, &date, 0);
    int year = 0, month = 0, day = 0;
    SplitDate(date, &year, &month, &day);
    SYSTEMTIME time = {};
    time.wYear = static_cast<WORD>(year);
    time.wMonth = static_cast<WORD>(month);
    time.wDay = static_cast<WORD>(day);
    int result = static_cast<int>(setSystemTime(picker, year ? GDT_VALID : GDT_NONE, time));
    // The date stays shown; only the check box is cleared.
    if (uncheck) setSystemTime(picker, GDT_NONE, time);
    return result;
}

int KVKIT_CALL KxDateTime_SetTime(KVSESSION* session, HWND picker, const wchar_t* text,
                                  BOOL uncheck, int flags) {
    if (!IsWindow(picker)) return 0;
    int t = CheckTime(session, text, flags);
    if (t < 0) return 0;
    SYSTEMTIME time = {};
    if (t >= kTimeWithMilliseconds || (flags & kFlagMilliseconds)) {
        time.wHour = static_cast<WORD>(t / 10000000);
        time.wMinute = static_cast<WORD>(t % 10000000 / 100000);
        time.wSecond = static_cast<WORD>(t % 100000 / 1000);
        time.wMilliseconds = static_cast<WORD>(t % 1000);
    } else if (t < 10000 && !(flags & kFlagSeconds)) {
        time.wHour = static_cast<WORD>(t / 100);
        time.wMinute = static_cast<WORD>(t % 100);
    } else {
        time.wHour = static_cast<WORD>(t / 10000);
        time.wMinute = static_cast<WORD>(t % 10000 / 100);
        time.wSecond = static_cast<WORD>(t % 100);
    }
    // The date part is not the picker's business here.
    time.wYear = 9999;
    time.wMonth = 12;
    time.wDay = 31;
    int result = static_cast<int>(setSystemTime(picker, GDT_VALID, time));
    if (uncheck) setSystemTime(picker, GDT_NONE, time);
    return result;
}
