// The host's calendar grid, window class "DatePicker": one month of days in weeks starting on
// Monday, with week numbers, today marked, and a day or a range chosen with the mouse or the
// keyboard. This header describes the stand-in built by this project; the host registers the
// class by calling DatePicker_Register once.
//
// Dates are integers year * 10000 + month * 100 + day; 0 means no date.
#pragma once
#include <windows.h>
#include <stddef.h>

#ifdef DATEPICKER_BUILDING
#define DATEPICKER_API extern "C"
#else
#define DATEPICKER_API extern "C" __declspec(dllimport)
#endif

#define DATEPICKER_CLASS L"DatePicker"

// Called when the selection changes (only with notifyOnChange) and when a choice is finished
// (double click, Enter, or a click in a grid that closes on a choice). `endDate` is 0 unless the
// grid reports ranges.
typedef int(CALLBACK* DATEPICKER_CALLBACK)(LPARAM data, int date, int endDate, HWND grid,
                                           BOOL finish);

// Settings of a grid: filled with the defaults by DPM_GETDEFAULTS, applied by DPM_SETSETTINGS.
#pragma pack(push, 1)
struct DATEPICKER_SETTINGS {
    DWORD size;                    // sizeof(DATEPICKER_SETTINGS)
    COLORREF todayColour;          // frame around today
    COLORREF selectionColour;      // background of the chosen days
    BYTE reserved1[8];
    int showWeekNumbers;           // a column of ISO week numbers on the left
    int notifyOnChange;            // the callback also hears every change of the selection
    int markToday;                 // today framed (default 1)
    int allowRange;                // drag or Shift extends the selection to a range
    int showTitle;                 // a title row with the month, the year and two arrows
    int closeOnChoice;             // the grid destroys itself after a choice, on Escape and when
                                   // it loses the focus (a popup)
    BYTE reserved2[22];
    HWND notifyWindow;             // receives DPN_CHOSEN; null: the parent (or owner)
    BYTE reserved3[48];
    LPARAM callbackData;           // first argument of the callback
    DATEPICKER_CALLBACK callback;  // null: none
    int reportRange;               // the callback and DPN_CHOSEN receive the end date
    int showAdjacentDays;          // days of the neighbouring months shown greyed
    int shadeWeekends;             // Saturdays and Sundays on a shaded background
    BYTE reserved4[4];
    int dialogChild;               // in a dialog: only the arrow keys are the grid's, Enter and
                                   // Escape stay the dialog's; a double click finishes
    BYTE reserved5[20];
};
#pragma pack(pop)
static_assert(sizeof(DATEPICKER_SETTINGS) == 166, "settings size");
static_assert(offsetof(DATEPICKER_SETTINGS, showWeekNumbers) == 20, "week numbers offset");
static_assert(offsetof(DATEPICKER_SETTINGS, notifyOnChange) == 24, "notify on change offset");
static_assert(offsetof(DATEPICKER_SETTINGS, allowRange) == 32, "allow range offset");
static_assert(offsetof(DATEPICKER_SETTINGS, showTitle) == 36, "title offset");
static_assert(offsetof(DATEPICKER_SETTINGS, closeOnChoice) == 40, "close on choice offset");
static_assert(offsetof(DATEPICKER_SETTINGS, notifyWindow) == 66, "notify window offset");
static_assert(offsetof(DATEPICKER_SETTINGS, callback) == 122, "callback offset");
static_assert(offsetof(DATEPICKER_SETTINGS, reportRange) == 126, "report range offset");
static_assert(offsetof(DATEPICKER_SETTINGS, showAdjacentDays) == 130, "adjacent days offset");
static_assert(offsetof(DATEPICKER_SETTINGS, shadeWeekends) == 134, "weekends offset");
static_assert(offsetof(DATEPICKER_SETTINGS, dialogChild) == 142, "dialog child offset");

// Messages of the grid.
// lParam DATEPICKER_SETTINGS*: fills the block with the defaults (size included). Returns 1.
const UINT DPM_GETDEFAULTS = WM_USER + 975;
// lParam DATEPICKER_SETTINGS* (its size must be right): applies the settings. With wParam
// non-zero the window also takes its preferred size. Returns 1, 0 for a wrong block.
const UINT DPM_SETSETTINGS = WM_USER + 976;
// lParam a date: sets the start of the selection (with DPD_END in wParam its end); a start after
// the end, or an end before the start, moves the other end along, and a grid without ranges
// keeps start and end equal. With DPD_SHOW the month of the selection's start is shown.
// Returns 1, 0 for an invalid date.
const UINT DPM_SETDATE = WM_USER + 927;
const WPARAM DPD_SHOW = 0x000001;
const WPARAM DPD_END = 0x100000;
// The start of the selection (wParam 0) or its end (wParam DPD_END); 0 when nothing is chosen.
const UINT DPM_GETDATE = WM_USER + 928;
// wParam a date, lParam RECT*: the day's cell in client coordinates. 0 when not shown.
const UINT DPM_GETDAYRECT = WM_USER + 929;
// wParam start, lParam end: selects the range (ordered). Returns 1, 0 for invalid dates.
const UINT DPM_SETRANGE = WM_USER + 930;
// The month shown, as year * 100 + month.
const UINT DPM_GETMONTH = WM_USER + 931;
// lParam SIZE*: the preferred window size for the current font and settings. Returns 1.
const UINT DPM_GETIDEALSIZE = WM_USER + 970;
// Sent to the notify window when a choice is finished: wParam the date, lParam the end date
// (0 unless the grid reports ranges).
const UINT DPN_CHOSEN = WM_USER + 938;

// Registers the "DatePicker" class (global, once per process). Returns 1 on success.
DATEPICKER_API BOOL WINAPI DatePicker_Register(void);
