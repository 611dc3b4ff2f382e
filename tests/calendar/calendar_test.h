// Helpers of the calendar tests: the host's "DatePicker" grid registered once, a driver that runs
// steps inside the modal calendar dialog and always ends it, and read-back of its controls.
#pragma once
#include "kvtest.h"
#include <commctrl.h>
#include <functional>
#include <string>
#include <vector>
#include "../../standins/datepicker/datepicker.h"
#include "kvbase.h"
#include "kvkit_calendar.h"
#include "kvkit_editbutton.h"

namespace calendar_test {

// Controls of the "KX1KALDLG" template.
const int kMonthCombo = 100, kYearCombo = 110, kQuickCombo = 130, kWeekCombo = 140;
const int kStartField = 160, kEndField = 170, kYearText = 190, kWeekCaption = 210;
const int kStartCaption = 220, kEndCaption = 230, kGrid = 601;

inline int Today() {
    int date = 0;
    GetDateTime(nullptr, &date, nullptr);
    return date;
}

inline std::wstring TextOf(HWND window) {
    wchar_t text[256] = L"";
    GetWindowTextW(window, text, 256);
    return text;
}
inline std::wstring ItemText(HWND dialog, int id) { return TextOf(GetDlgItem(dialog, id)); }
inline LRESULT GridDate(HWND dialog, WPARAM which = 0) {
    return SendDlgItemMessageW(dialog, 601, DPM_GETDATE, which, 0);
}
inline bool ItemShown(HWND dialog, int id) {
    return (GetWindowLongW(GetDlgItem(dialog, id), GWL_STYLE) & WS_VISIBLE) != 0;
}
inline std::wstring ComboText(HWND dialog, int id) {
    HWND combo = GetDlgItem(dialog, id);
    int row = static_cast<int>(SendMessageW(combo, CB_GETCURSEL, 0, 0));
    wchar_t text[64] = L"";
    if (row >= 0) SendMessageW(combo, CB_GETLBTEXT, row, reinterpret_cast<LPARAM>(text));
    return text;
}
inline int ComboRow(HWND dialog, int id) {
    return static_cast<int>(SendDlgItemMessageW(dialog, id, CB_GETCURSEL, 0, 0));
}

// The start and end fields show "Weekday dd.mm.yyyy".
inline std::wstring Label(int date) {
    static const wchar_t* const kDays[] = {L"Monday", L"Tuesday", L"Wednesday", L"Thursday",
                                           L"Friday", L"Saturday", L"Sunday"};
    wchar_t formatted[32];
    FormDate(nullptr, date, 0, formatted, 32);
    return std::wstring(kDays[GetDay(date)]) + L" " + formatted;
}

// What a user's choice in a combo box sends: the selection, then CBN_SELENDOK to the dialog.
inline void Choose(HWND dialog, int id, int row) {
    HWND combo = GetDlgItem(dialog, id);
    SendMessageW(combo, CB_SETCURSEL, row, 0);
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, CBN_SELENDOK), reinterpret_cast<LPARAM>(combo));
}

inline void Press(HWND dialog, int id) { SendDlgItemMessageW(dialog, id, BM_CLICK, 0, 0); }

// Types a date into a field and leaves it, as a user does.
inline void Type(HWND dialog, int id, const wchar_t* text) {
    SetFocus(GetDlgItem(dialog, id));
    SetDlgItemTextW(dialog, id, text);
    SetFocus(GetDlgItem(dialog, IDCANCEL));
}

// A day of the grid clicked (and with `twice` double-clicked) through the grid's messages.
inline POINT DayCentre(HWND grid, int date) {
    RECT cell = {};
    EXPECT_TRUE(SendMessageW(grid, DPM_GETDAYRECT, date, reinterpret_cast<LPARAM>(&cell))) << date;
    return POINT{(cell.left + cell.right) / 2, (cell.top + cell.bottom) / 2};
}
inline void ClickDay(HWND grid, int date, bool twice = false) {
    POINT p = DayCentre(grid, date);
    SendMessageW(grid, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(p.x, p.y));
    SendMessageW(grid, WM_LBUTTONUP, 0, MAKELPARAM(p.x, p.y));
    if (!twice) return;
    SendMessageW(grid, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(p.x, p.y));
    SendMessageW(grid, WM_LBUTTONUP, 0, MAKELPARAM(p.x, p.y));
}

using Step = std::function<void(HWND dialog)>;

// Runs `open`, which shows the modal calendar owned by `owner`, and calls one step each time the
// dialog waits for input. A dialog still open after the last step is cancelled and counted in
// `stepsLeftOpen`; a timer cancels a dialog that never idles.
class CalendarDriver {
public:
    explicit CalendarDriver(kvtest::HostWindow& owner) : owner_(owner) {}
    int run(std::vector<Step> steps, const std::function<int()>& open);
    bool leftOpen() const { return leftOpen_; }
    int stepsRun() const { return stepsRun_; }

private:
    kvtest::HostWindow& owner_;
    bool leftOpen_ = false;
    int stepsRun_ = 0;
};

}  // namespace calendar_test
