// kvbase: date checking, formatting, parsing and week arithmetic, and bitmap-to-DIB conversion
// for printing. This header describes the stand-in built by this project.
//
// Dates are integers year * 10000 + month * 100 + day; 0 means no date. The text form is the
// German-style "dd.mm.yyyy". Weeks are ISO weeks (Monday first; week 1 holds the 4th of January).
// Weekday numbers run 0 (Monday) to 6 (Sunday).
#pragma once
#include <windows.h>
#include "kvtext.h"

#ifdef KVBASE_BUILDING
#define KVBASE_API extern "C"
#else
#define KVBASE_API extern "C" __declspec(dllimport)
#endif

// The date of a valid "d.m.yyyy" text (also "d.m.yy", "d.m." for the current year, "ddmmyyyy",
// "ddmmyy" and "yyyy-mm-dd"), or 0 when the text is not a valid date.
KVBASE_API int WINAPI CheckDate(KVSESSION* session, const wchar_t* text, int flags);
// Writes the date as "dd.mm.yyyy" (an empty text for 0 or an invalid date) into a buffer of
// `capacity` characters; returns the number of characters written.
KVBASE_API int WINAPI FormDate(KVSESSION* session, int date, int flags, wchar_t* buffer, int capacity);
// Parses a date text (forms as CheckDate). Returns 1 and the date, or 0 and *date = 0.
KVBASE_API int WINAPI DeFormDate(KVSESSION* session, const wchar_t* text, int flags, int* date,
                                 int reserved);
// Splits a date text into its parts without checking the calendar (so 31.02. gives 31 and 2);
// a missing part is 0. Returns 1 when at least a day was found.
KVBASE_API int WINAPI DeFormDateEx(KVSESSION* session, const wchar_t* text, int flags, int* day,
                                   int* month, int* year);
KVBASE_API void WINAPI SplitDate(int date, int* year, int* month, int* day);
// Fills year, month, day and day of week (0 = Sunday, as SYSTEMTIME counts) of a SYSTEMTIME.
KVBASE_API void WINAPI SplitDateEx(int date, SYSTEMTIME* time);
// Days of the month that the date lies in (0 for an invalid month).
KVBASE_API int WINAPI DaysPerMonth(int date);
// Weekday number of the date: 0 Monday .. 6 Sunday; -1 for an invalid date.
KVBASE_API int WINAPI GetDay(int date);
// ISO week number of the date; the week's Monday and Sunday go to *weekStart and *weekEnd when
// asked. 0 for an invalid date.
KVBASE_API int WINAPI GetWeek(int date, int* weekStart, int* weekEnd);
// Monday and Sunday of ISO week `week` of `year`; returns 1, or 0 when the week does not exist.
KVBASE_API int WINAPI GetWeekBorder(int year, int week, int* start, int* end);
KVBASE_API int WINAPI WeeksPerYear(int year);
// Today as a date and, when asked, the time of day as HHMMSS. Returns 1.
KVBASE_API int WINAPI GetDateTime(KVSESSION* session, int* date, int* time);
// A time text "hh:mm", "hh:mm:ss", "hhmm" or "hhmmss" as HHMM (4 digits given or hh:mm) or HHMMSS;
// -1 when the text is not a valid time.
KVBASE_API int WINAPI CheckTime(KVSESSION* session, const wchar_t* text, int flags);

// A packed DIB (BITMAPINFOHEADER, colour table, bits) of the bitmap in global memory, at 24 bits
// per pixel; the caller frees it with GlobalFree. Null on failure.
KVBASE_API HGLOBAL WINAPI BitmapToDIBPrint(HBITMAP bitmap);
// Draws a packed DIB into the rectangle. keepAspect non-zero keeps the picture's proportions and
// centres it; alignRight and alignBottom move a proportional picture to that side instead.
// Returns the scan lines drawn, 0 on failure.
KVBASE_API int WINAPI DIBToBitmapRect(HDC dc, HGLOBAL dib, const RECT* rect, int keepAspect,
                                      int alignRight, int alignBottom);
