// Edit-field buttons on a customer form: a chooser button, a clear button, a date field, a date
// range, a format field with load, delete and save buttons and a flat colour button. The calendar
// dialog of the date field is shown over the form (06-editbutton), and the calendar popup under
// the range's end field (06-editbutton-popup).
#include "gallery/gallery.h"
#include "kvkit_calendar.h"
#include "kvkit_core.h"
#include "kvkit_editbutton.h"
#include "kvtext.h"
#include "standins/datepicker/datepicker.h"

namespace {

const int kCustomer = 101, kContact = 102, kVisit = 103, kFrom = 104, kTo = 105;
const int kFormat = 106, kColour = 107, kLoadFormat = 120, kSaveFormat = 121;
const int kLabelWidth = 90, kFieldLeft = 100, kFieldWidth = 200, kRowHeight = 32;

HWND addField(HWND page, int row, const wchar_t* label, const wchar_t* text, int id, int width = kFieldWidth,
              int left = kFieldLeft) {
    int top = 16 + row * kRowHeight;
    if (label) AddLabel(page, 12, top + 4, kLabelWidth, 16, label);
    HWND field = CreateWindowExW(WS_EX_CLIENTEDGE, L"Edit", text, WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL,
                                 left, top, width, 22, page, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                 GetModuleHandleW(nullptr), nullptr);
    SendMessageW(field, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), 0);
    return field;
}

bool registerDatePicker() {
    HMODULE grid = LoadLibraryW(L"datepicker.dll");
    auto registerGrid = reinterpret_cast<BOOL(WINAPI*)()>(GetProcAddress(grid, "DatePicker_Register"));
    return registerGrid && registerGrid();
}

// A modeless run of the calendar dialog (the library's own dialog procedure), so that it stays
// up over the form for the page's screenshot; it goes with the page.
KalenderRecord g_visitRecord;

void showCalendarOver(HWND page, HWND field) {
    g_visitRecord = KalenderRecord{};
    g_visitRecord.mode = KAL_QUICKCHOICE;
    g_visitRecord.start = 20261204;
    HWND dialog = CreateDialogParamW(GalleryLanguageModule(), L"KX1KALDLG", page, Kx1KalDlg,
                                     reinterpret_cast<LPARAM>(&g_visitRecord));
    if (!dialog) return;
    RECT anchor;
    GetWindowRect(field, &anchor);
    SetWindowPos(dialog, HWND_TOP, anchor.right + 120, anchor.top - 70, 0, 0, SWP_NOSIZE | SWP_SHOWWINDOW);
}

void build(HWND page) {
    if (!registerDatePicker()) {
        AddLabel(page, 10, 10, 400, 16, L"The DatePicker grid could not be registered.");
        return;
    }
    // A chooser button with a picture, reported to the form as a command.
    HWND customer = addField(page, 0, L"Customer:", L"Nordlicht AG", kCustomer);
    KxSetEditBtnEx(customer, 200, KxGetToolBitmap(2003), EBA_OWNID | EBA_TABSTOP, nullptr, 2);

    // A clear button: Alt+C or a click empties the field.
    HWND contact = addField(page, 1, L"Contact:", L"Ada Berger", kContact);
    KxSetEditBtn(contact, 201, LoadBitmapW(GalleryResourceModule(), L"BtnDelFmt"),
                 EBA_OWNID | EBA_TABSTOP | EBA_CLEAR, nullptr);

    HWND visit = addField(page, 2, L"Next visit:", L"04.12.2026", kVisit, 110);
    KxSetDateBtn(GlobalSession(), page, nullptr, kVisit, -1, EBA_TABSTOP);

    addField(page, 3, L"Contract:", L"01.01.2025", kFrom, 95);
    addField(page, 3, nullptr, L"31.12.2025", kTo, 95, kFieldLeft + 105);
    KxSetDateBtn(GlobalSession(), page, nullptr, kFrom, kTo, EBA_TABSTOP);

    HWND format = addField(page, 4, L"Report format:", L"Quarterly summary", kFormat);
    KxSetEditBtnFormat_LoadSave(format, nullptr, kLoadFormat, kSaveFormat, 3, FALSE);

    // A flat button painted in the colour it stands for.
    HWND colour = addField(page, 5, L"Priority:", L"High", kColour, 130);
    HWND flat = KxSetEditBtn(colour, 202, nullptr, EBA_OWNID | EBA_FLAT | EBA_OUTSIDE, nullptr);
    KxSetEditBtnBkColor(flat, RGB(230, 120, 40));
    HWND disabled = addField(page, 6, L"Account:", L"DE44 5001 0517", kColour + 1, 150);
    EnableWindow(disabled, FALSE);
    KxSetEditBtn(disabled, 203, KxGetToolBitmap(1500), EBA_OWNID | EBA_DISABLED, nullptr);
    AddLabel(page, 12, 16 + 7 * kRowHeight + 6, 300, 16, L"Disabled field: its button is greyed.");

    // The popup under the range's end field, its right edge on the field's button.
    RECT end;
    GetWindowRect(GetDlgItem(page, kTo + 200), &end);
    Kx1PopupKalender(page, 0, end.right, end.bottom);
    PumpFor(300);
    SaveScreenshot(page, L"06-editbutton-popup");
    HWND popup = FindWindowW(DATEPICKER_CLASS, L"DatePicker Popup");
    if (popup) DestroyWindow(popup);

    showCalendarOver(page, visit);
}

const bool registered = RegisterGalleryPage(
    {L"06-editbutton", 800, 400, build,
     L"Edit-field buttons on a customer form: a chooser, a clear button, a date field with its "
     L"calendar dialog, a date range whose end field has opened the calendar popup, a format "
     L"field with load, delete and save buttons, a flat colour button and a disabled one."});

}  // namespace
