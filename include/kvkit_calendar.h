// The calendar: a modal dialog (template "KX1KALDLG" of the language module) or a popup around
// the host's "DatePicker" grid for choosing a date or a date range, and helpers that move dates
// and times between date numbers and date-time picker controls ("SysDateTimePick32").
//
// Dates are integers year * 10000 + month * 100 + day; 0 means no date.
#pragma once
#include "kvkit_api.h"
#include <stddef.h>

// Mode flags of the calendar.
const int KAL_QUICKCHOICE = 0x01;  // the quick-choice combo box (today, week, month, quarters,
                                   // year); implies KAL_WEEKS
const int KAL_RANGE = 0x04;        // a start and an end date
const int KAL_WEEKS = 0x10;        // the week combo box
const int KAL_POPUP = 0x40;        // the popup instead of the dialog
const int KAL_GRIDOPTION = 0x80;   // the grid shows the neighbouring months' days and shades
                                   // weekends

// The record of one calendar run, kept on the dialog as the property "struct".
#pragma pack(push, 1)
struct KalenderRecord {
    int language;             // the session's language value
    BYTE reserved1[4];
    BYTE display;             // the session's display byte
    BYTE mode;                // KAL_* flags
    BYTE reserved2[3];
    short day;                // shown day, month (1..12) and year
    short month;
    short year;
    int start;                // the chosen date (the start of a range)
    int end;                  // the end of a range; 0 if none
    KVSESSION* session;
    BYTE reserved3[30];
};
#pragma pack(pop)
static_assert(sizeof(KalenderRecord) == 61, "KalenderRecord size");
static_assert(offsetof(KalenderRecord, language) == 0, "KalenderRecord language offset");
static_assert(offsetof(KalenderRecord, display) == 8, "KalenderRecord display offset");
static_assert(offsetof(KalenderRecord, mode) == 9, "KalenderRecord mode offset");
static_assert(offsetof(KalenderRecord, day) == 13, "KalenderRecord day offset");
static_assert(offsetof(KalenderRecord, month) == 15, "KalenderRecord month offset");
static_assert(offsetof(KalenderRecord, year) == 17, "KalenderRecord year offset");
static_assert(offsetof(KalenderRecord, start) == 19, "KalenderRecord start offset");
static_assert(offsetof(KalenderRecord, end) == 23, "KalenderRecord end offset");
static_assert(offsetof(KalenderRecord, session) == 27, "KalenderRecord session offset");

// Asks for a date (or, with KAL_RANGE, a range) in the calendar dialog, starting from *date1
// and *date2 (either pointer may be null). On OK the chosen dates are written back and the result
// is non-zero; Cancel and failures leave them untouched and return 0. With KAL_POPUP the two
// pointers are read as the popup's right edge and top (screen coordinates) and the call returns
// at once: 1 when the popup opened.
KVKIT_API int KVKIT_CALL Kx1ToolKalender(KVSESSION* session, HWND owner, int mode, int* date1,
                                         int* date2);
// Runs the calendar dialog on a caller-owned record. 1 for OK, 0 for Cancel or failure.
KVKIT_API int KVKIT_CALL Kx1Kalender(HWND owner, KalenderRecord* record);
// The calendar dialog's procedure (lParam of WM_INITDIALOG: the KalenderRecord).
KVKIT_API INT_PTR KVKIT_CALL Kx1KalDlg(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
// A borderless "DatePicker" popup with its right edge at `right` and its top at `top`, owned by
// `owner`, which hears the grid's choice. Returns the window that had the focus before (0 also
// when nothing had it); 0 when the popup could not be made.
KVKIT_API HWND KVKIT_CALL Kx1PopupKalender(HWND owner, int ignored, int right, int top);

// Sets 1 January 2010, 00:00; unless `keepChecked` the picker's check box is cleared as well.
// Whether the date was set.
KVKIT_API bool KVKIT_CALL DateTime_SetTimeZero(HWND picker, bool keepChecked);
// The date of `time` formatted by the date library into `out` (`length` characters). Returns 1,
// 0 without a buffer.
KVKIT_API int KVKIT_CALL KxDateTime_FormatDate(KVSESSION* session, wchar_t* out, SYSTEMTIME time,
                                               int flags, int length);
// The picker's date as a date number and as text (`text` may be null). 0, with date 0 and an
// empty text, when the picker holds no valid date (its check box is cleared).
KVKIT_API int KVKIT_CALL KxDateTime_GetDate(KVSESSION* session, HWND picker, wchar_t* text,
                                            int textLength, int flags, int* date);
// Sets the picker to the date of `text` (if given) or `date` (0 or no text date: no date); with
// `uncheck` the date stays shown and the check box is cleared. The result of DTM_SETSYSTEMTIME.
KVKIT_API int KVKIT_CALL KxDateTime_SetDate(KVSESSION* session, HWND picker, const wchar_t* text,
                                            int date, int flags, BOOL uncheck);
// Sets the picker to the time of `text` (read as HHMM, HHMMSS or, with flag 0x800000 or from
// 10,000,000 on, HHMMSSmmm; flag 0x400000 reads small numbers as HHMMSS) on 31 December 9999.
// The result of DTM_SETSYSTEMTIME; 0 for a text that is no time.
KVKIT_API int KVKIT_CALL KxDateTime_SetTime(KVSESSION* session, HWND picker, const wchar_t* text,
                                            BOOL uncheck, int flags);
