// Stand-in for the host's calendar grid "DatePicker": a month of days in six rows of weeks
// (Monday first), optional week numbers and title row, today framed, and a day or a range chosen
// with the mouse (click, drag, Shift+click) or the keyboard (arrows, Page Up/Down, Home/End, Shift
// for ranges, Enter, Escape).
#define DATEPICKER_BUILDING
#include "datepicker.h"
#include "kvbase.h"
#include <stdio.h>

namespace {

// --- calendar arithmetic: the base library's calendar, and day numbers (days since 1 January
// 1970) to step by days ---------------------------------------------------------------------

int makeDate(int year, int month, int day) { return (year * 100 + month) * 100 + day; }
int yearOf(int date) { return date / 10000; }
int monthOf(int date) { return date / 100 % 100; }
int dayOf(int date) { return date % 100; }

int daysInMonth(int year, int month) { return DaysPerMonth(makeDate(year, month, 1)); }

// GetDay answers -1 for a date that does not exist.
bool isValidDate(int date) { return GetDay(date) >= 0; }

int dayNumber(int date) {
    int year = yearOf(date), month = monthOf(date), day = dayOf(date);
    year -= month <= 2;
    int era = (year >= 0 ? year : year - 399) / 400;
    int yearOfEra = year - era * 400;
    int dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

int dateOf(int n) {
    n += 719468;
    int era = (n >= 0 ? n : n - 146096) / 146097;
    int dayOfEra = n - era * 146097;
    int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    int shiftedMonth = (5 * dayOfYear + 2) / 153;
    int day = dayOfYear - (153 * shiftedMonth + 2) / 5 + 1;
    int month = shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9;
    return makeDate(yearOfEra + era * 400 + (month <= 2), month, day);
}

// 0 = Monday .. 6 = Sunday; 1 January 1970 was a Thursday.
int weekdayOf(int n) { return ((n + 3) % 7 + 7) % 7; }

// ISO week of the week that starts on the Monday `monday`.
int isoWeek(int monday) { return GetWeek(dateOf(monday), nullptr, nullptr); }

int today() {
    int date = 0;
    GetDateTime(nullptr, &date, nullptr);
    return date;
}

const int kFirstDay = 10101, kLastDay = 99991231;

int addDays(int date, int days) {
    int result = dateOf(dayNumber(date) + days);
    return result < kFirstDay ? kFirstDay : result > kLastDay ? kLastDay : result;
}

// The same day `months` months later, kept inside the shorter month.
int addMonths(int date, int months) {
    int index = yearOf(date) * 12 + monthOf(date) - 1 + months;
    int year = index / 12, month = index % 12 + 1;
    if (year < 1) return kFirstDay;
    if (year > 9999) return kLastDay;
    int day = dayOf(date), last = daysInMonth(year, month);
    return makeDate(year, month, day < last ? day : last);
}

// --- the grid ---------------------------------------------------------------------------------

const int kWeekRows = 6;
const COLORREF kGreyText = RGB(128, 128, 128);
const COLORREF kWeekendShade = RGB(236, 236, 236);

struct Grid {
    HWND window;
    DATEPICKER_SETTINGS settings;
    HFONT font;       // set by WM_SETFONT; not owned
    int shownMonth;   // year * 100 + month
    int start, end;   // the selection, ordered; 0 when nothing is chosen
    int anchor;       // the fixed end while a range is extended
    int caret;        // the day that the keyboard moves
    bool dragging;
};

// A cell of the grid: row -1 is the title, 0 the weekday header, 1..6 the weeks; column -1 is the
// week number, 0..6 Monday to Sunday.
struct Layout {
    int titleRows, numberColumns;
    int cellWidth, cellHeight;
};

void defaults(DATEPICKER_SETTINGS* settings) {
    ZeroMemory(settings, sizeof(*settings));
    settings->size = sizeof(*settings);
    settings->todayColour = RGB(200, 0, 0);
    settings->selectionColour = GetSysColor(COLOR_HIGHLIGHT);
    settings->markToday = 1;
}

Layout layoutOf(const Grid& grid) {
    RECT client;
    GetClientRect(grid.window, &client);
    Layout layout;
    layout.titleRows = grid.settings.showTitle ? 1 : 0;
    layout.numberColumns = grid.settings.showWeekNumbers ? 1 : 0;
    layout.cellWidth = client.right / (7 + layout.numberColumns);
    layout.cellHeight = client.bottom / (kWeekRows + 1 + layout.titleRows);
    return layout;
}

RECT cellRect(const Layout& layout, int row, int column) {
    int x = (column + layout.numberColumns) * layout.cellWidth;
    int y = (row + layout.titleRows) * layout.cellHeight;
    return RECT{x, y, x + layout.cellWidth, y + layout.cellHeight};
}

// Day number of the Monday that opens the first row of the shown month.
int firstShownDay(const Grid& grid) {
    int first = dayNumber(grid.shownMonth * 100 + 1);
    return first - weekdayOf(first);
}

bool isShownMonth(const Grid& grid, int date) { return date / 100 == grid.shownMonth; }

HFONT gridFont(const Grid& grid) {
    if (grid.font) return grid.font;
    HWND parent = GetParent(grid.window);
    HFONT font = parent ? reinterpret_cast<HFONT>(SendMessageW(parent, WM_GETFONT, 0, 0)) : nullptr;
    return font ? font : static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
}

void showMonthOf(Grid& grid, int date) {
    if (date / 100 == grid.shownMonth) return;
    grid.shownMonth = date / 100;
    InvalidateRect(grid.window, nullptr, FALSE);
}

void select(Grid& grid, int from, int to) {
    if (from > to) {
        int swap = from;
        from = to;
        to = swap;
    }
    grid.start = from;
    grid.end = to;
    InvalidateRect(grid.window, nullptr, FALSE);
}

int reportedEnd(const Grid& grid) { return grid.settings.reportRange ? grid.end : 0; }

void notifyChange(Grid& grid) {
    if (grid.settings.notifyOnChange && grid.settings.callback)
        grid.settings.callback(grid.settings.callbackData, grid.start, reportedEnd(grid), grid.window,
                               FALSE);
}

// Reports a finished choice; a popup grid closes afterwards. Returns false when the grid is gone.
bool finishChoice(Grid& grid) {
    if (!grid.start) return true;
    HWND window = grid.window;
    HWND target = grid.settings.notifyWindow ? grid.settings.notifyWindow : GetParent(window);
    int start = grid.start, end = reportedEnd(grid);
    bool close = grid.settings.closeOnChoice != 0;
    DATEPICKER_CALLBACK callback = grid.settings.callback;
    LPARAM data = grid.settings.callbackData;
    if (target) SendMessageW(target, DPN_CHOSEN, start, end);
    if (IsWindow(window) && callback) callback(data, start, end, window, TRUE);
    if (close && IsWindow(window)) DestroyWindow(window);
    return IsWindow(window) != FALSE;
}

// Moves the caret to `date`; with `extend` (and ranges allowed) the selection runs from the
// anchor to the caret, otherwise it is the caret's day alone.
void moveCaret(Grid& grid, int date, bool extend) {
    grid.caret = date;
    if (!(extend && grid.settings.allowRange) || !grid.anchor) grid.anchor = date;
    select(grid, grid.anchor, date);
    showMonthOf(grid, date);
    notifyChange(grid);
}

// --- painting ---------------------------------------------------------------------------------

void drawCentred(HDC dc, RECT rect, const wchar_t* text, COLORREF colour) {
    SetTextColor(dc, colour);
    DrawTextW(dc, text, -1, &rect, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

void paintTitle(const Grid& grid, HDC dc, const Layout& layout, const RECT& client) {
    RECT title = {0, 0, client.right, layout.cellHeight};
    FillRect(dc, &title, GetSysColorBrush(COLOR_BTNFACE));
    RECT left = {0, 0, layout.cellWidth, layout.cellHeight};
    RECT right = {client.right - layout.cellWidth, 0, client.right, layout.cellHeight};
    drawCentred(dc, left, L"<", GetSysColor(COLOR_BTNTEXT));
    drawCentred(dc, right, L">", GetSysColor(COLOR_BTNTEXT));
    wchar_t month[40] = L"";
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SMONTHNAME1 + grid.shownMonth % 100 - 1, month, 40);
    wchar_t text[64];
    _snwprintf(text, 64, L"%ls %d", month, grid.shownMonth / 100);
    text[63] = 0;
    drawCentred(dc, title, text, GetSysColor(COLOR_BTNTEXT));
}

void paintHeader(HDC dc, const Layout& layout) {
    for (int column = 0; column < 7; ++column) {
        wchar_t name[16] = L"";
        GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SABBREVDAYNAME1 + column, name, 16);
        name[2] = 0;
        drawCentred(dc, cellRect(layout, 0, column), name, kGreyText);
    }
    RECT line = cellRect(layout, 0, 0);
    line.top = line.bottom - 1;
    line.right = line.left + 7 * layout.cellWidth;
    FillRect(dc, &line, GetSysColorBrush(COLOR_BTNSHADOW));
}

void paintDay(const Grid& grid, HDC dc, const RECT& cell, int date, int column, bool focused) {
    bool inMonth = isShownMonth(grid, date);
    if (!inMonth && !grid.settings.showAdjacentDays) return;
    bool selected = grid.start && date >= grid.start && date <= grid.end;
    COLORREF text = inMonth ? GetSysColor(COLOR_WINDOWTEXT) : kGreyText;
    if (selected) {
        HBRUSH brush = CreateSolidBrush(grid.settings.selectionColour);
        FillRect(dc, &cell, brush);
        DeleteObject(brush);
        text = GetSysColor(COLOR_HIGHLIGHTTEXT);
    } else if (grid.settings.shadeWeekends && column >= 5) {
        HBRUSH brush = CreateSolidBrush(kWeekendShade);
        FillRect(dc, &cell, brush);
        DeleteObject(brush);
    }
    wchar_t number[4];
    _snwprintf(number, 4, L"%d", dayOf(date));
    number[3] = 0;
    drawCentred(dc, cell, number, text);
    if (grid.settings.markToday && date == today()) {
        HBRUSH brush = CreateSolidBrush(grid.settings.todayColour);
        FrameRect(dc, &cell, brush);
        DeleteObject(brush);
    }
    if (focused && date == grid.caret) {
        RECT focus = cell;
        InflateRect(&focus, -2, -2);
        DrawFocusRect(dc, &focus);
    }
}

void paintGrid(const Grid& grid, HDC dc, const RECT& client) {
    FillRect(dc, &client, GetSysColorBrush(COLOR_WINDOW));
    Layout layout = layoutOf(grid);
    HGDIOBJ oldFont = SelectObject(dc, gridFont(grid));
    SetBkMode(dc, TRANSPARENT);
    if (layout.titleRows) paintTitle(grid, dc, layout, client);
    paintHeader(dc, layout);
    bool focused = GetFocus() == grid.window;
    int monday = firstShownDay(grid);
    for (int week = 0; week < kWeekRows; ++week, monday += 7) {
        bool rowShown = grid.settings.showAdjacentDays || isShownMonth(grid, dateOf(monday)) ||
                        isShownMonth(grid, dateOf(monday + 6));
        if (layout.numberColumns && rowShown) {
            wchar_t number[4];
            _snwprintf(number, 4, L"%d", isoWeek(monday));
            number[3] = 0;
            drawCentred(dc, cellRect(layout, week + 1, -1), number, kGreyText);
        }
        for (int column = 0; column < 7; ++column)
            paintDay(grid, dc, cellRect(layout, week + 1, column), dateOf(monday + column), column,
                     focused);
    }
    SelectObject(dc, oldFont);
}

// Painted into a buffer so that moving the selection does not flicker.
void onPaint(const Grid& grid) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(grid.window, &paint);
    RECT client;
    GetClientRect(grid.window, &client);
    HDC memory = CreateCompatibleDC(dc);
    HBITMAP buffer = CreateCompatibleBitmap(dc, client.right, client.bottom);
    if (memory && buffer) {
        HGDIOBJ old = SelectObject(memory, buffer);
        paintGrid(grid, memory, client);
        BitBlt(dc, 0, 0, client.right, client.bottom, memory, 0, 0, SRCCOPY);
        SelectObject(memory, old);
    } else {
        paintGrid(grid, dc, client);
    }
    if (buffer) DeleteObject(buffer);
    if (memory) DeleteDC(memory);
    EndPaint(grid.window, &paint);
}

// --- input ------------------------------------------------------------------------------------

enum HitKind { kHitNothing, kHitPrevious, kHitNext, kHitDay };

HitKind hitTest(const Grid& grid, LPARAM lParam, int* date) {
    POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    Layout layout = layoutOf(grid);
    if (layout.cellWidth <= 0 || layout.cellHeight <= 0 || point.x < 0 || point.y < 0)
        return kHitNothing;
    int row = point.y / layout.cellHeight - layout.titleRows;
    int column = point.x / layout.cellWidth - layout.numberColumns;
    if (row == -1) {
        RECT client;
        GetClientRect(grid.window, &client);
        if (point.x < layout.cellWidth) return kHitPrevious;
        if (point.x >= client.right - layout.cellWidth) return kHitNext;
        return kHitNothing;
    }
    if (row < 1 || row > kWeekRows || column < 0 || column > 6) return kHitNothing;
    *date = dateOf(firstShownDay(grid) + (row - 1) * 7 + column);
    if (!isShownMonth(grid, *date) && !grid.settings.showAdjacentDays) return kHitNothing;
    return kHitDay;
}

void onLeftButtonDown(Grid& grid, WPARAM keys, LPARAM lParam) {
    SetFocus(grid.window);
    int date = 0;
    switch (hitTest(grid, lParam, &date)) {
    case kHitPrevious:
        showMonthOf(grid, addMonths(grid.shownMonth * 100 + 1, -1));
        break;
    case kHitNext:
        showMonthOf(grid, addMonths(grid.shownMonth * 100 + 1, 1));
        break;
    case kHitDay:
        moveCaret(grid, date, (keys & MK_SHIFT) != 0);
        grid.dragging = true;
        SetCapture(grid.window);
        break;
    case kHitNothing:
        break;
    }
}

void onMouseMove(Grid& grid, LPARAM lParam) {
    int date = 0;
    if (!grid.dragging || !grid.settings.allowRange) return;
    if (hitTest(grid, lParam, &date) == kHitDay && date != grid.caret) moveCaret(grid, date, true);
}

void onLeftButtonUp(Grid& grid) {
    if (!grid.dragging) return;
    grid.dragging = false;
    ReleaseCapture();
    if (grid.settings.closeOnChoice) finishChoice(grid);
}

void onKeyDown(Grid& grid, WPARAM key) {
    int from = grid.caret ? grid.caret : grid.shownMonth * 100 + 1;
    bool extend = GetKeyState(VK_SHIFT) < 0;
    switch (key) {
    case VK_LEFT: moveCaret(grid, addDays(from, -1), extend); break;
    case VK_RIGHT: moveCaret(grid, addDays(from, 1), extend); break;
    case VK_UP: moveCaret(grid, addDays(from, -7), extend); break;
    case VK_DOWN: moveCaret(grid, addDays(from, 7), extend); break;
    case VK_PRIOR: moveCaret(grid, addMonths(from, -1), extend); break;
    case VK_NEXT: moveCaret(grid, addMonths(from, 1), extend); break;
    case VK_HOME: moveCaret(grid, from / 100 * 100 + 1, extend); break;
    case VK_END:
        moveCaret(grid, from / 100 * 100 + daysInMonth(yearOf(from), monthOf(from)), extend);
        break;
    case VK_RETURN:
        if (!grid.settings.dialogChild) finishChoice(grid);
        break;
    case VK_ESCAPE:
        if (grid.settings.closeOnChoice) DestroyWindow(grid.window);
        break;
    }
}

SIZE idealSize(const Grid& grid) {
    HDC dc = GetDC(grid.window);
    HGDIOBJ oldFont = SelectObject(dc, gridFont(grid));
    TEXTMETRICW metrics;
    GetTextMetricsW(dc, &metrics);
    SIZE digits = {};
    GetTextExtentPoint32W(dc, L"30", 2, &digits);
    SelectObject(dc, oldFont);
    ReleaseDC(grid.window, dc);
    int cellWidth = digits.cx + 12, cellHeight = metrics.tmHeight + 6;
    int columns = 7 + (grid.settings.showWeekNumbers ? 1 : 0);
    int rows = kWeekRows + 1 + (grid.settings.showTitle ? 1 : 0);
    RECT frame = {0, 0, columns * cellWidth, rows * cellHeight};
    AdjustWindowRectEx(&frame, GetWindowLongW(grid.window, GWL_STYLE), FALSE,
                       GetWindowLongW(grid.window, GWL_EXSTYLE));
    return SIZE{frame.right - frame.left, frame.bottom - frame.top};
}

LRESULT onSetDate(Grid& grid, WPARAM flags, int date) {
    if (!isValidDate(date)) return 0;
    int start = grid.start ? grid.start : date, end = grid.end ? grid.end : date;
    if (flags & DPD_END) {
        end = date;
        if (start > end || !grid.settings.allowRange) start = end;
    } else {
        start = date;
        if (end < start || !grid.settings.allowRange) end = start;
    }
    select(grid, start, end);
    grid.anchor = start;
    grid.caret = flags & DPD_END ? end : start;
    if (flags & DPD_SHOW) showMonthOf(grid, grid.start);
    return 1;
}

LRESULT onSetSettings(Grid& grid, WPARAM takeIdealSize, const DATEPICKER_SETTINGS* settings) {
    if (!settings || settings->size != sizeof(DATEPICKER_SETTINGS)) return 0;
    grid.settings = *settings;
    if (takeIdealSize) {
        SIZE size = idealSize(grid);
        SetWindowPos(grid.window, nullptr, 0, 0, size.cx, size.cy,
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    InvalidateRect(grid.window, nullptr, FALSE);
    return 1;
}

LRESULT onGetDayRect(const Grid& grid, int date, RECT* rect) {
    if (!rect || !isValidDate(date)) return 0;
    int offset = dayNumber(date) - firstShownDay(grid);
    if (offset < 0 || offset >= kWeekRows * 7) return 0;
    if (!isShownMonth(grid, date) && !grid.settings.showAdjacentDays) return 0;
    *rect = cellRect(layoutOf(grid), offset / 7 + 1, offset % 7);
    return 1;
}

LRESULT CALLBACK gridProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* grid = reinterpret_cast<Grid*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!grid) {
        if (message != WM_NCCREATE) return DefWindowProcW(window, message, wParam, lParam);
        grid = new Grid();
        grid->window = window;
        defaults(&grid->settings);
        grid->shownMonth = today() / 100;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(grid));
    }
    switch (message) {
    case WM_PAINT:
        onPaint(*grid);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SETFONT:
        grid->font = reinterpret_cast<HFONT>(wParam);
        if (lParam) InvalidateRect(window, nullptr, FALSE);
        return 0;
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(grid->font);
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        InvalidateRect(window, nullptr, FALSE);
        if (message == WM_KILLFOCUS && grid->settings.closeOnChoice &&
            reinterpret_cast<HWND>(wParam) != window)
            PostMessageW(window, WM_CLOSE, 0, 0);
        return 0;
    case WM_GETDLGCODE:
        return grid->settings.dialogChild ? DLGC_WANTARROWS : DLGC_WANTALLKEYS | DLGC_WANTARROWS;
    case WM_LBUTTONDOWN:
        onLeftButtonDown(*grid, wParam, lParam);
        return 0;
    case WM_MOUSEMOVE:
        onMouseMove(*grid, lParam);
        return 0;
    case WM_LBUTTONUP:
        onLeftButtonUp(*grid);
        return 0;
    case WM_LBUTTONDBLCLK: {
        int date = 0;
        if (hitTest(*grid, lParam, &date) == kHitDay) finishChoice(*grid);
        return 0;
    }
    case WM_CAPTURECHANGED:
        grid->dragging = false;
        return 0;
    case WM_KEYDOWN:
        onKeyDown(*grid, wParam);
        return 0;
    case DPM_GETDEFAULTS:
        if (!lParam) return 0;
        defaults(reinterpret_cast<DATEPICKER_SETTINGS*>(lParam));
        return 1;
    case DPM_SETSETTINGS:
        return onSetSettings(*grid, wParam, reinterpret_cast<const DATEPICKER_SETTINGS*>(lParam));
    case DPM_SETDATE:
        return onSetDate(*grid, wParam, static_cast<int>(lParam));
    case DPM_GETDATE:
        return wParam & DPD_END ? grid->end : grid->start;
    case DPM_SETRANGE:
        if (!isValidDate(static_cast<int>(wParam)) || !isValidDate(static_cast<int>(lParam))) return 0;
        select(*grid, static_cast<int>(wParam), static_cast<int>(lParam));
        grid->anchor = grid->start;
        grid->caret = grid->end;
        return 1;
    case DPM_GETDAYRECT:
        return onGetDayRect(*grid, static_cast<int>(wParam), reinterpret_cast<RECT*>(lParam));
    case DPM_GETMONTH:
        return grid->shownMonth;
    case DPM_GETIDEALSIZE:
        if (!lParam) return 0;
        *reinterpret_cast<SIZE*>(lParam) = idealSize(*grid);
        return 1;
    case WM_NCDESTROY:
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        delete grid;
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

HINSTANCE g_module;

}  // namespace

BOOL WINAPI DatePicker_Register(void) {
    WNDCLASSW windowClass = {};
    if (GetClassInfoW(g_module, DATEPICKER_CLASS, &windowClass)) return TRUE;
    windowClass.style = CS_GLOBALCLASS | CS_DBLCLKS;
    windowClass.lpfnWndProc = gridProc;
    windowClass.hInstance = g_module;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpszClassName = DATEPICKER_CLASS;
    return RegisterClassW(&windowClass) != 0;
}

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        g_module = module;
        DisableThreadLibraryCalls(module);
    }
    return TRUE;
}
