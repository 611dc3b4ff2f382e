// The calendar: a modal dialog ("KX1KALDLG" from the language module) with month, year, week
// and quick-choice combo boxes, start and end fields and the host's "DatePicker" grid, and a
// popup made of the grid alone.
#include "core/library.h"
#include "include/kvkit_calendar.h"
#include <oleauto.h>
#include <stdio.h>
#include <stdlib.h>
#include "kvbase.h"
#include "kvtext.h"
#include "standins/datepicker/datepicker.h"

namespace {

// Controls of the dialog template.
const int kMonthCombo = 100, kYearCombo = 110, kPlaceholder = 120, kQuickCombo = 130;
const int kWeekCombo = 140, kStartField = 160, kEndField = 170, kYearText = 190;
const int kWeekCaption = 210, kStartCaption = 220, kEndCaption = 230, kGrid = 601;

// Language strings.
const UINT kFirstMonthName = 7020, kFirstWeekdayName = 7009;
const UINT kWeekText = 7004, kSingleDateText = 5011, kFromText = 878, kToText = 879;
const UINT kCaptionText = 19119;
const UINT kQuickChoiceTexts[] = {870, 7004, 7005, 873, 874, 875, 876, 7006};

const wchar_t kRecordProperty[] = L"struct";
const int kYearsAround = 10;     // the year combo holds the shown year +- 10
const int kLabelDateLength = 25;
const DWORD kGridStyle = WS_CHILD | WS_CLIPSIBLINGS | WS_BORDER | WS_TABSTOP;

enum QuickChoice { kNoChoice, kToday, kThisWeek, kThisMonth, kQuarter1, kQuarter2, kQuarter3,
                   kQuarter4, kWholeYear };

int makeDate(int year, int month, int day) { return (year * 100 + month) * 100 + day; }

bool hasRange(const KalenderRecord& record) { return (record.mode & KAL_RANGE) != 0; }
bool hasWeeks(const KalenderRecord& record) { return (record.mode & KAL_WEEKS) != 0; }

KalenderRecord* recordOf(HWND dialog) {
    return static_cast<KalenderRecord*>(GetPropW(dialog, kRecordProperty));
}

int today(const KalenderRecord& record) {
    int date = 0;
    GetDateTime(record.session, &date, nullptr);
    return date;
}

// The start date and the day, month and year shown follow each other.
void setStart(KalenderRecord& record, int date) {
    record.start = date;
    if (date <= 0) return;
    int year, month, day;
    SplitDate(date, &year, &month, &day);
    record.year = static_cast<short>(year);
    record.month = static_cast<short>(month);
    record.day = static_cast<short>(day);
}

// The same day in another month or year, kept inside that month.
int dateIn(int year, int month, int day) {
    int last = DaysPerMonth(makeDate(year, month, 1));
    return makeDate(year, month, day < last ? day : last);
}

// Through the system's calendar, which carries an overflowing day into the next month
// (31.02. becomes 03.03.). 0 for a date without day, month or year, or that it refuses.
int normaliseDate(int date) {
    int year, month, day;
    SplitDate(date, &year, &month, &day);
    if (date <= 0 || !year || !month || !day) return 0;
    SYSTEMTIME time = {};
    time.wYear = static_cast<WORD>(year);
    time.wMonth = static_cast<WORD>(month);
    time.wDay = static_cast<WORD>(day);
    double variant = 0;
    if (!SystemTimeToVariantTime(&time, &variant) || !VariantTimeToSystemTime(variant, &time)) return 0;
    return makeDate(time.wYear, time.wMonth, time.wDay);
}

// --- controls ---------------------------------------------------------------------------------

void setItemText(HWND dialog, int id, UINT stringId) {
    wchar_t* text = LoadLanguageString(stringId);
    if (!text) return;
    SetDlgItemTextW(dialog, id, text);
    FreeMemory(text);
}

// A missing string still takes its row, so that rows keep their meaning.
void addStringRow(HWND combo, UINT stringId) {
    wchar_t* text = LoadLanguageString(stringId);
    SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text ? text : L""));
    FreeMemory(text);
}

void addNumberRow(HWND combo, const wchar_t* format, int number) {
    wchar_t text[16];
    _snwprintf(text, 16, format, number);
    text[15] = 0;
    SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
}

void show(HWND dialog, int id, bool visible) {
    ShowWindow(GetDlgItem(dialog, id), visible ? SW_SHOW : SW_HIDE);
}

void fillYears(HWND dialog, int year) {
    HWND combo = GetDlgItem(dialog, kYearCombo);
    SendMessageW(combo, CB_RESETCONTENT, 0, 0);
    for (int row = year - kYearsAround; row <= year + kYearsAround; ++row) addNumberRow(combo, L"%d", row);
    SendMessageW(combo, CB_SETCURSEL, kYearsAround, 0);
}

int firstListedYear(HWND dialog) {
    wchar_t text[16] = L"";
    HWND combo = GetDlgItem(dialog, kYearCombo);
    if (SendMessageW(combo, CB_GETLBTEXTLEN, 0, 0) >= 16) return 0;
    SendMessageW(combo, CB_GETLBTEXT, 0, reinterpret_cast<LPARAM>(text));
    return _wtoi(text);
}

// An empty row, then the weeks of the year.
void fillWeeks(HWND dialog, int year) {
    HWND combo = GetDlgItem(dialog, kWeekCombo);
    SendMessageW(combo, CB_RESETCONTENT, 0, 0);
    SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L""));
    for (int week = 1, weeks = WeeksPerYear(year); week <= weeks; ++week) addNumberRow(combo, L"%2d", week);
}

int weekRows(HWND dialog) {
    return static_cast<int>(SendDlgItemMessageW(dialog, kWeekCombo, CB_GETCOUNT, 0, 0));
}

// "Weekday dd.mm.yyyy", or an empty field without a date (or with one that OK will correct).
void showDate(HWND dialog, int id, const KalenderRecord& record, int date) {
    wchar_t text[kLanguageStringLength + kLabelDateLength + 2] = L"";
    if (date > 0 && GetDay(date) >= 0) {
        wchar_t formatted[kLabelDateLength];
        FormDate(record.session, date, 0, formatted, kLabelDateLength);
        wchar_t* weekday = LoadLanguageString(kFirstWeekdayName + GetDay(date));
        _snwprintf(text, sizeof(text) / sizeof(text[0]), L"%ls %ls", weekday ? weekday : L"", formatted);
        text[sizeof(text) / sizeof(text[0]) - 1] = 0;
        FreeMemory(weekday);
    }
    SetDlgItemTextW(dialog, id, text);
}

// Labels and combo boxes follow the record's dates.
void refresh(HWND dialog, const KalenderRecord& record) {
    showDate(dialog, kStartField, record, record.start);
    showDate(dialog, kEndField, record, record.end);
    if (record.start <= 0) return;
    int year, month, day;
    SplitDate(record.start, &year, &month, &day);
    if (hasWeeks(record)) {
        if (weekRows(dialog) != WeeksPerYear(year) + 1) fillWeeks(dialog, year);
        SendDlgItemMessageW(dialog, kWeekCombo, CB_SETCURSEL, GetWeek(record.start, nullptr, nullptr), 0);
    }
    SendDlgItemMessageW(dialog, kMonthCombo, CB_SETCURSEL, month - 1, 0);
    int first = firstListedYear(dialog);
    if (year >= first && year <= first + 2 * kYearsAround)
        SendDlgItemMessageW(dialog, kYearCombo, CB_SETCURSEL, year - first, 0);
    else
        fillYears(dialog, year);
}

// The grid shows the start's month with the dates selected, the earlier one first.
void showInGrid(HWND dialog, const KalenderRecord& record) {
    HWND grid = GetDlgItem(dialog, kGrid);
    if (!grid || record.start <= 0) return;
    if (!hasRange(record) || record.end <= 0) {
        SendMessageW(grid, DPM_SETDATE, DPD_SHOW, record.start);
        return;
    }
    int earlier = record.start < record.end ? record.start : record.end;
    int later = record.start < record.end ? record.end : record.start;
    SendMessageW(grid, DPM_SETDATE, DPD_SHOW, earlier);
    SendMessageW(grid, DPM_SETDATE, DPD_SHOW | DPD_END, later);
}

void update(HWND dialog, const KalenderRecord& record) {
    refresh(dialog, record);
    showInGrid(dialog, record);
}

// --- choices ----------------------------------------------------------------------------------

// As OK: the dates are normalised and a range put in order. The dialog ends only when nothing had
// to be corrected; otherwise the user sees the correction first.
void acceptDates(HWND dialog, KalenderRecord& record) {
    int start = normaliseDate(record.start);
    int end = record.end > 0 ? normaliseDate(record.end) : 0;
    bool corrected = start != record.start || (record.end > 0 && end != record.end);
    if (hasRange(record)) {
        if (end < 1) end = start;
        if (start > end) {
            int swap = start;
            start = end;
            end = swap;
            corrected = true;
        }
    }
    setStart(record, start);
    record.end = end;
    if (start > 0 && !corrected) {
        EndDialog(dialog, 1);
        return;
    }
    update(dialog, record);
}

// Called by the grid when the user picks a day or range (`finish`: for good).
int CALLBACK onGridChoice(LPARAM, int date, int endDate, HWND grid, BOOL finish) {
    HWND dialog = GetParent(grid);
    KalenderRecord* record = recordOf(dialog);
    if (!record) return 0;
    setStart(*record, date);
    record->end = endDate;
    refresh(dialog, *record);
    if (finish) acceptDates(dialog, *record);
    return 1;
}

void onMonthOrYearChosen(HWND dialog, KalenderRecord& record, int id) {
    HWND combo = GetDlgItem(dialog, id);
    int row = static_cast<int>(SendMessageW(combo, CB_GETCURSEL, 0, 0));
    if (row < 0) return;
    int oldYear = record.year;
    if (id == kMonthCombo) {
        record.month = static_cast<short>(row + 1);
    } else {
        wchar_t text[16] = L"";
        if (SendMessageW(combo, CB_GETLBTEXTLEN, row, 0) < 16)
            SendMessageW(combo, CB_GETLBTEXT, row, reinterpret_cast<LPARAM>(text));
        record.year = static_cast<short>(_wtoi(text));
        wchar_t year[16];
        _snwprintf(year, 16, L"%d", record.year);
        year[15] = 0;
        SetDlgItemTextW(dialog, kYearText, year);
    }
    if (hasWeeks(record) && WeeksPerYear(oldYear) != WeeksPerYear(record.year)) fillWeeks(dialog, record.year);
    int day = record.start > 0 ? record.start % 100 : 1;
    setStart(record, dateIn(record.year, record.month, day));
    update(dialog, record);
}

void onWeekChosen(HWND dialog, KalenderRecord& record) {
    int week = static_cast<int>(SendDlgItemMessageW(dialog, kWeekCombo, CB_GETCURSEL, 0, 0));
    int start = 0, end = 0;
    if (week <= 0 || !GetWeekBorder(record.year, week, &start, &end)) return;
    // Week 1 may begin in December; the choice stays inside the shown year.
    if (week == 1 && start / 10000 < record.year) start = makeDate(record.year, 1, 1);
    record.end = hasRange(record) ? end : 0;
    setStart(record, start);
    SendDlgItemMessageW(dialog, kQuickCombo, CB_SETCURSEL, 0, 0);
    update(dialog, record);
}

void onQuickChoice(HWND dialog, KalenderRecord& record) {
    int row = static_cast<int>(SendDlgItemMessageW(dialog, kQuickCombo, CB_GETCURSEL, 0, 0));
    int year = record.year, start = 0, end = 0;
    switch (row) {
    case kToday:
        start = today(record);
        if (hasRange(record)) record.end = start;
        break;
    case kThisWeek: {
        if (record.start <= 0) {
            MessageBeep(0);
            return;
        }
        int date = record.start;
        if (date / 10000 != year) date = dateIn(year, date / 100 % 100, date % 100);
        GetWeek(date, &start, &end);
        if (hasRange(record)) record.end = end;
        break;
    }
    case kThisMonth: {
        int month = record.start > 0 ? record.start / 100 % 100 : record.month;
        if (month < 1) {
            MessageBeep(0);
            return;
        }
        // The month's length is counted from the previous start date.
        int counted = record.start > 0 ? record.start : makeDate(year, month, 1);
        start = makeDate(year, month, 1);
        record.end = makeDate(year, month, DaysPerMonth(counted));
        break;
    }
    case kQuarter1:
    case kQuarter2:
    case kQuarter3:
    case kQuarter4: {
        static const int lastDays[] = {31, 30, 30, 31};
        int quarter = row - kQuarter1;
        start = makeDate(year, quarter * 3 + 1, 1);
        record.end = makeDate(year, quarter * 3 + 3, lastDays[quarter]);
        break;
    }
    case kWholeYear:
        start = makeDate(year, 1, 1);
        record.end = makeDate(year, 12, 31);
        break;
    default:
        return;
    }
    setStart(record, start);
    update(dialog, record);
}

// A date typed into the start or end field.
void onDateTyped(HWND dialog, KalenderRecord& record, int id) {
    wchar_t text[kLanguageStringLength] = L"";
    GetDlgItemTextW(dialog, id, text, kLanguageStringLength);
    int day = 0, month = 0, year = 0;
    DeFormDateEx(record.session, text, 0, &day, &month, &year);
    if (!day || !month || !year) return;
    int date = normaliseDate(makeDate(year, month, day));
    if (!date) return;
    bool changed = date != (id == kStartField ? record.start : record.end);
    if (id == kStartField) setStart(record, date);
    else record.end = date;
    refresh(dialog, record);
    if (changed) showInGrid(dialog, record);
}

// --- dialog -----------------------------------------------------------------------------------

// Which month and year the dialog opens on; the start date must lie in the year combo's reach.
void chooseShownMonth(KalenderRecord& record) {
    int now = today(record);
    if (record.start < 1) record.start = now;
    if (record.month <= 0 || record.year <= 0) {
        int year, month, day;
        SplitDate(record.start, &year, &month, &day);
        if (month < 1 || month > 12) record.start = now;
        setStart(record, record.start);
    }
    int thisYear = now / 10000;
    if (abs(record.year - thisYear) > kYearsAround) {
        record.year = static_cast<short>(thisYear);
        if (abs(record.start / 10000 - thisYear) > kYearsAround)
            setStart(record, dateIn(thisYear, record.start / 100 % 100, record.start % 100));
    }
}

void fillCombos(HWND dialog, const KalenderRecord& record) {
    HWND months = GetDlgItem(dialog, kMonthCombo);
    for (int month = 0; month < 12; ++month) addStringRow(months, kFirstMonthName + month);
    SendMessageW(months, CB_SETCURSEL, record.month - 1, 0);
    fillYears(dialog, record.year);
    if (record.mode & KAL_QUICKCHOICE) {
        HWND quick = GetDlgItem(dialog, kQuickCombo);
        SendMessageW(quick, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L""));
        for (UINT text : kQuickChoiceTexts) addStringRow(quick, text);
    }
    if (hasWeeks(record)) {
        fillWeeks(dialog, record.year);
        setItemText(dialog, kWeekCaption, kWeekText);
    }
}

void showControls(HWND dialog, KalenderRecord& record) {
    bool quick = (record.mode & KAL_QUICKCHOICE) != 0;
    show(dialog, kQuickCombo, quick);
    show(dialog, kWeekCombo, hasWeeks(record));
    show(dialog, kWeekCaption, hasWeeks(record));
    bool endShown = hasRange(record) || quick;
    show(dialog, kEndField, endShown);
    show(dialog, kEndCaption, endShown);
    if (endShown) {
        setItemText(dialog, kStartCaption, kFromText);
        setItemText(dialog, kEndCaption, kToText);
    } else {
        setItemText(dialog, kStartCaption, kSingleDateText);
        record.end = 0;
    }
}

HWND createGrid(HWND dialog, const KalenderRecord& record) {
    RECT area;
    GetWindowRect(GetDlgItem(dialog, kPlaceholder), &area);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&area), 2);
    HWND grid = CreateWindowExW(WS_EX_CLIENTEDGE, DATEPICKER_CLASS, L"DatePicker", kGridStyle,
                                area.left, area.top, area.right - area.left, area.bottom - area.top,
                                dialog, reinterpret_cast<HMENU>(static_cast<INT_PTR>(kGrid)),
                                g_libraryModule, nullptr);
    if (!grid) return nullptr;
    DATEPICKER_SETTINGS settings = {};
    SendMessageW(grid, DPM_GETDEFAULTS, 0, reinterpret_cast<LPARAM>(&settings));
    settings.showWeekNumbers = 1;
    settings.notifyOnChange = 1;
    settings.allowRange = hasRange(record);
    settings.callback = onGridChoice;
    settings.reportRange = hasRange(record);
    if (record.mode & KAL_GRIDOPTION) settings.showAdjacentDays = settings.shadeWeekends = 1;
    settings.dialogChild = 1;
    SendMessageW(grid, DPM_SETSETTINGS, 0, reinterpret_cast<LPARAM>(&settings));
    if (hasRange(record)) SendMessageW(grid, DPM_SETRANGE, record.start, record.end);
    ShowWindow(grid, SW_SHOW);
    return grid;
}

void onInitDialog(HWND dialog, KalenderRecord& record) {
    show(dialog, kPlaceholder, false);
    if (record.mode & KAL_QUICKCHOICE) record.mode |= KAL_WEEKS;
    chooseShownMonth(record);
    fillCombos(dialog, record);
    showControls(dialog, record);
    if (!SetPropW(dialog, kRecordProperty, &record)) MessageBeep(0);
    HWND grid = createGrid(dialog, record);
    if (wchar_t* caption = LoadLanguageString(kCaptionText)) {
        SetWindowTextW(dialog, caption);
        FreeMemory(caption);
    }
    update(dialog, record);
    if (grid) SetFocus(grid);
}

void onCommand(HWND dialog, KalenderRecord& record, int id, int code) {
    switch (id) {
    case kMonthCombo:
    case kYearCombo:
        if (code == CBN_SELENDOK) onMonthOrYearChosen(dialog, record, id);
        break;
    case kWeekCombo:
        if (code == CBN_SELENDOK) onWeekChosen(dialog, record);
        break;
    case kQuickCombo:
        if (code == CBN_SELENDOK) onQuickChoice(dialog, record);
        break;
    case kStartField:
    case kEndField:
        if (code == EN_KILLFOCUS) onDateTyped(dialog, record, id);
        break;
    case IDOK:
        acceptDates(dialog, record);
        break;
    case IDCANCEL:
        EndDialog(dialog, 0);
        break;
    }
}

HWND createPopup(HWND owner, int right, int top) {
    HWND popup = CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_NOPARENTNOTIFY, DATEPICKER_CLASS,
                                 L"DatePicker Popup", WS_POPUP | WS_BORDER, 0, 0, 0, 0, owner,
                                 nullptr, g_libraryModule, nullptr);
    if (!popup) return nullptr;
    DATEPICKER_SETTINGS settings = {};
    SendMessageW(popup, DPM_GETDEFAULTS, 0, reinterpret_cast<LPARAM>(&settings));
    settings.showWeekNumbers = 1;
    settings.showTitle = 1;
    settings.closeOnChoice = 1;
    settings.notifyWindow = owner;
    SendMessageW(popup, DPM_SETSETTINGS, 1, reinterpret_cast<LPARAM>(&settings));
    SIZE size = {};
    SendMessageW(popup, DPM_GETIDEALSIZE, 0, reinterpret_cast<LPARAM>(&size));
    int x = right - size.cx;
    SetWindowPos(popup, HWND_TOP, x < 0 ? 0 : x, top < 1 ? 0 : top, size.cx, size.cy,
                 SWP_SHOWWINDOW | SWP_NOACTIVATE);
    return popup;
}

}  // namespace

INT_PTR KVKIT_CALL Kx1KalDlg(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    KalenderRecord* record = recordOf(dialog);
    switch (message) {
    case WM_INITDIALOG:
        if (!lParam) {
            EndDialog(dialog, 0);
            return TRUE;
        }
        onInitDialog(dialog, *reinterpret_cast<KalenderRecord*>(lParam));
        return FALSE;  // the grid has the focus
    case WM_COMMAND:
        if (record) {
            onCommand(dialog, *record, LOWORD(wParam), HIWORD(wParam));
            return TRUE;
        }
        // Without its record the dialog can still be cancelled.
        if (LOWORD(wParam) != IDCANCEL || !IsWindow(dialog)) return FALSE;
        EndDialog(dialog, 0);
        return TRUE;
    case DPN_CHOSEN:
        SetWindowLongPtrW(dialog, DWLP_MSGRESULT, SendMessageW(GetParent(dialog), message, wParam, lParam));
        return TRUE;
    case WM_DESTROY:
        RemovePropW(dialog, kRecordProperty);
        return FALSE;
    }
    return FALSE;
}

int KVKIT_CALL Kx1Kalender(HWND owner, KalenderRecord* record) {
    if (!record) return 0;
    INT_PTR result = DialogBoxParamW(g_textModule, L"KX1KALDLG", owner, Kx1KalDlg,
                                     reinterpret_cast<LPARAM>(record));
    return result == 1 ? 1 : 0;
}

// Focusing the popup activates it, and activation moves the focus before SetFocus could report
// where it was: the window that had it is taken first.
HWND KVKIT_CALL Kx1PopupKalender(HWND owner, int, int right, int top) {
    HWND previous = GetFocus();
    HWND popup = createPopup(owner, right, top);
    if (!popup) return nullptr;
    SetFocus(popup);
    return previous;
}

int KVKIT_CALL Kx1ToolKalender(KVSESSION* session, HWND owner, int mode, int* date1, int* date2) {
    if (mode & KAL_POPUP) {
        HWND popup = createPopup(owner, static_cast<int>(reinterpret_cast<INT_PTR>(date1)),
                                 static_cast<int>(reinterpret_cast<INT_PTR>(date2)));
        if (!popup) return 0;
        SetFocus(popup);
        return 1;
    }
    auto* record = static_cast<KalenderRecord*>(Mres(sizeof(KalenderRecord)));
    if (!record) return 0;
    if (session) {
        record->language = static_cast<int>(session->language);
        record->display = session->display;
    }
    record->mode = static_cast<BYTE>(mode);
    if (date1) record->start = *date1;
    if (date2) record->end = *date2;
    record->session = session;
    int result = Kx1Kalender(owner, record);
    if (result) {
        if (date1 && record->start > 0) *date1 = record->start;
        if (date2) *date2 = record->end > 0 ? record->end : 0;
    }
    FreeMemory(record);
    return result;
}
