// Date fields: an edit or date-time picker (or a pair of them for a range) whose button, Alt+Down
// or double click opens the calendar and writes the chosen dates back; typed dates are
// normalised when the field loses the focus.
#include "controls/editbutton.h"
#include "core/library.h"
#include "include/kvkit_calendar.h"
#include "kvbase.h"
#include "kvtext.h"

namespace {

// Kept in the date control's GWL_USERDATA.
struct DateBtnRecord {
    KVSESSION* session;
    int fromId;
    int toId;      // negative without a range
    HWND dialog;
    HWND button;   // this control's button
    BOOL isPicker;
};
static_assert(sizeof(DateBtnRecord) == 24, "DateBtnRecord is six 32-bit words");

const int kButtonIdOffset = 200;
const int kTooltipKeyDate = 3;
const int kCalendarBitmap = 1500;
const int kSingleDateMode = 10;
const int kRangeMode = 7;
const int kDateTextLength = 18;    // read from a field
const int kDateBufferLength = 20;  // written to a field

bool isPicker(HWND control) {
    wchar_t name[21];
    return GetClassNameW(control, name, 21) && lstrcmpiW(name, L"SysDateTimePick32") == 0;
}

DateBtnRecord* recordOf(HWND control) {
    return reinterpret_cast<DateBtnRecord*>(GetWindowLongW(control, GWL_USERDATA));
}

int readDate(KVSESSION* session, HWND control) {
    int date = 0;
    if (isPicker(control)) {
        KxDateTime_GetDate(session, control, nullptr, 0, 0, &date);
        return date;
    }
    wchar_t text[kDateTextLength + 1];
    GetWindowTextW(control, text, kDateTextLength + 1);
    DeFormDate(session, text, 0, &date, 0);
    return date;
}

void writeDate(KVSESSION* session, HWND control, int date) {
    if (isPicker(control)) {
        KxDateTime_SetDate(session, control, nullptr, date, 0, FALSE);
        return;
    }
    wchar_t text[kDateBufferLength];
    FormDate(session, date, 0, text, kDateBufferLength);
    SetWindowTextW(control, text);
}

// A valid typed date is written back in its normal form ("1.2.25" becomes "01.02.2025").
void normaliseText(const DateBtnRecord& record, HWND control) {
    wchar_t text[kDateTextLength + 1];
    GetWindowTextW(control, text, kDateTextLength + 1);
    if (!CheckDate(record.session, text, 0)) return;
    int date = 0;
    DeFormDate(record.session, text, 0, &date, 0);
    wchar_t normal[kDateBufferLength];
    FormDate(record.session, date, 0, normal, kDateBufferLength);
    if (lstrcmpW(text, normal) != 0) SetWindowTextW(control, normal);
}

// The to-control of a range asks for both dates; any other control for its own date.
void openCalendar(const DateBtnRecord& record, HWND control) {
    HWND from = GetDlgItem(record.dialog, record.fromId);
    HWND to = record.toId >= 0 ? GetDlgItem(record.dialog, record.toId) : nullptr;
    bool range = to && control == to;
    int date1 = 0, date2 = 0;
    if (range) {
        date1 = readDate(record.session, from);
        date2 = readDate(record.session, to);
    } else {
        date1 = readDate(record.session, control);
    }
    SendMessageW(control, WM_LBUTTONUP, 0, 0);
    KVSESSION* session = record.session;
    if (Kx1ToolKalender(session, control, range ? kRangeMode : kSingleDateMode, &date1,
                        record.toId < 0 ? nullptr : &date2)) {
        if (!range) {
            writeDate(session, control, date1);
        } else {
            writeDate(session, from, date1);
            if (date2) writeDate(session, to, date2);
        }
    }
    ReleaseCapture();
    SetFocus(control);
}

LRESULT CALLBACK dateFieldProc(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
    DateBtnRecord* record = recordOf(control);
    if (record) {
        switch (message) {
        case WM_KILLFOCUS:
            if (!record->isPicker) normaliseText(*record, control);
            break;
        case WM_ENABLE:
            EnableWindow(record->button, wParam != 0);
            break;
        case WM_SYSKEYDOWN:
            if (wParam != VK_DOWN) break;
            openCalendar(*record, control);
            return 0;
        case WM_LBUTTONDBLCLK:
            openCalendar(*record, control);
            return 0;
        case WM_DESTROY:
            SetWindowLongW(control, GWL_USERDATA, 0);
            FreeMemory(record);
            break;
        }
    }
    WNDPROC previous = Kx1GetSubProc(message == WM_DESTROY, control);
    if (!previous) return 0;
    return CallWindowProcW(previous, control, message, wParam, lParam);
}

// Gives the control its button, record and procedure; on failure it is left as it was.
bool attachDateField(KVSESSION* session, HWND dialog, HWND control, int id, int fromId, int toId,
                     HBITMAP bitmap, UINT attr) {
    HWND button = KxSetEditBtnEx(control, id + kButtonIdOffset, bitmap, attr, nullptr, kTooltipKeyDate);
    if (!button) return false;
    auto* record = static_cast<DateBtnRecord*>(GetMemory(sizeof(DateBtnRecord)));
    if (!record || !Kx1SetSubProc(control, dateFieldProc)) {
        FreeMemory(record);
        DetachEditButton(button);
        return false;
    }
    record->session = session;
    record->fromId = fromId;
    record->toId = toId;
    record->dialog = dialog;
    record->button = button;
    record->isPicker = isPicker(control);
    SetWindowLongW(control, GWL_USERDATA, reinterpret_cast<LONG>(record));
    return true;
}

void detachDateField(HWND control) {
    DateBtnRecord* record = recordOf(control);
    Kx1GetSubProc(1, control);
    SetWindowLongW(control, GWL_USERDATA, 0);
    DetachEditButton(record->button);
    FreeMemory(record);
}

}  // namespace

BOOL KVKIT_CALL KxSetDateBtn(KVSESSION* session, HWND dialog, HBITMAP bitmap, int fromId, int toId,
                             UINT attr) {
    if (fromId < 0 || !IsWindow(dialog)) return FALSE;
    HWND controls[2] = {GetDlgItem(dialog, fromId), toId >= 0 ? GetDlgItem(dialog, toId) : nullptr};
    int ids[2] = {fromId, toId};
    if (!controls[0]) return FALSE;
    bool ownBitmap = !bitmap;
    if (ownBitmap) bitmap = LoadBitmapW(g_libraryModule, MAKEINTRESOURCEW(kCalendarBitmap));
    // Own identifiers and the control hears the click; the date procedure does the subclassing.
    attr = (attr | EBA_OWNID | EBA_NOTIFYEDIT) & ~EBA_SUBCLASS;

    HWND attached[2] = {};
    int count = 0;
    bool failed = false;
    for (int i = 0; i < 2 && !failed; ++i) {
        if (!controls[i] || Kx1GetSubProc(0, controls[i])) continue;
        if (attachDateField(session, dialog, controls[i], ids[i], fromId, toId, bitmap, attr))
            attached[count++] = controls[i];
        else
            failed = true;
    }
    if (failed)
        while (count > 0) detachDateField(attached[--count]);

    bool bitmapTaken = false;
    for (int i = 0; i < count; ++i)
        bitmapTaken |= GetPropW(recordOf(attached[i])->button, kBitmapProperty) == bitmap;
    if (ownBitmap && bitmap && !bitmapTaken) DeleteObject(bitmap);
    return !failed;
}

BOOL KVKIT_CALL KxShowEditBtn(HWND dateControl, int showCmd) {
    if (!IsWindow(dateControl) ||
        GetWindowLongW(dateControl, GWL_WNDPROC) != reinterpret_cast<LONG>(dateFieldProc))
        return FALSE;
    ShowWindow(recordOf(dateControl)->button, showCmd);
    return TRUE;
}
