// Tabs, property sheets, tooltips and combo boxes: a tabbed customer dialog (the address page
// kept alive, the notes page without a tab), a property sheet with six pages on one line of tabs,
// a balloon tooltip over a field, and a combo box whose drop-down fits its widest entry.
#include "gallery/gallery.h"
#include "gallery/dialog_template.h"
#include <commctrl.h>
#include <prsht.h>
#include <vector>
#include "kvkit_combobox.h"
#include "kvkit_propsheet.h"
#include "kvkit_tabs.h"
#include "kvkit_tooltips.h"

namespace {

// Pages and strings of the sample language module.
const int kAddressPage = 6140, kContactsPage = 6141, kNotesPage = 6142, kFirstSheetPage = 6150;
const int kStreetEdit = 100, kCityEdit = 101, kContactsList = 110, kNotesEdit = 120;
const int kTabId = 1000, kComboId = 1001;

INT_PTR CALLBACK addressProc(HWND page, UINT message, WPARAM, LPARAM) {
    if (message != WM_INITDIALOG) return FALSE;
    SetDlgItemTextW(page, kStreetEdit, L"Am Hafen 12");
    SetDlgItemTextW(page, kCityEdit, L"28217 Bremen");
    return FALSE;
}

INT_PTR CALLBACK contactsProc(HWND page, UINT message, WPARAM, LPARAM) {
    if (message != WM_INITDIALOG) return FALSE;
    for (const wchar_t* name : {L"Ada Berger (purchasing)", L"Carl Dorn (accounts)",
                                L"Eva Falk (logistics)", L"Gero Hahn (management)"})
        SendDlgItemMessageW(page, kContactsList, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name));
    return FALSE;
}

INT_PTR CALLBACK notesProc(HWND page, UINT message, WPARAM, LPARAM) {
    if (message == WM_INITDIALOG) SetDlgItemTextW(page, kNotesEdit, L"Wants the new price list.");
    return FALSE;
}

int g_pageTemplates[] = {kAddressPage, kContactsPage, kNotesPage};
DLGPROC g_pageProcs[] = {addressProc, contactsProc, notesProc};
int g_titleIds[] = {6140, 6141, 6142};
unsigned char g_visible[] = {1, 1, 0};  // the notes page has no tab
unsigned char g_keep[] = {1, 0, 0};     // the address page is hidden, not destroyed

INT_PTR CALLBACK customerProc(HWND dialog, UINT message, WPARAM, LPARAM lParam) {
    auto* tab = reinterpret_cast<KXTAB*>(GetWindowLongPtrW(dialog, DWLP_USER));
    switch (message) {
    case WM_INITDIALOG:
        tab = KxTabInitEx(dialog, kTabId, GalleryLanguageModule(), 3, g_pageTemplates, 3, g_pageProcs,
                          nullptr, g_titleIds, 0, nullptr, 0, g_visible, 0, g_keep);
        SetWindowLongPtrW(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(tab));
        return TRUE;
    case WM_NOTIFY: {
        auto* header = reinterpret_cast<NMHDR*>(lParam);
        if (tab && header->idFrom == kTabId && header->code == TCN_SELCHANGE)
            KxTabChangeSelection(dialog, kTabId, tab, TabCtrl_GetCurSel(header->hwndFrom));
        return FALSE;
    }
    case WM_DESTROY:
        if (tab) KxTabEnd(dialog, tab);
        return FALSE;
    }
    return FALSE;
}

HWND createCustomerDialog(HWND parent) {
    DialogTemplate customer(WS_CHILD | WS_VISIBLE | DS_CONTROL, 1, 230, 150);
    customer.item(WC_TABCONTROLW, L"", WS_CLIPSIBLINGS | WS_TABSTOP, 4, 4, 222, 140, kTabId);
    return CreateDialogIndirectParamW(GetModuleHandleW(nullptr), customer.data(), parent,
                                      customerProc, 0);
}

// The property sheet is modal: its picture is taken from a timer while it runs, then it is
// cancelled.
HWND g_sheet;

INT_PTR CALLBACK sheetPageProc(HWND page, UINT message, WPARAM, LPARAM) {
    if (message == WM_INITDIALOG && !g_sheet) g_sheet = GetParent(page);
    return FALSE;
}

void CALLBACK photographSheet(HWND, UINT, UINT_PTR timer, DWORD) {
    if (!g_sheet) return;
    KillTimer(nullptr, timer);
    SaveScreenshot(g_sheet, L"11-tabs-propsheet");
    PostMessageW(g_sheet, PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
}

void showPropertySheet(HWND owner) {
    DLGPROC procs[6];
    int templates[6];
    for (int i = 0; i < 6; ++i) {
        procs[i] = sheetPageProc;
        templates[i] = kFirstSheetPage + i;
    }
    wchar_t caption[] = L"Nordlicht AG";
    g_sheet = nullptr;
    SetTimer(nullptr, 0, 100, photographSheet);
    KxCreatePropertySheet(owner, GalleryLanguageModule(), procs, templates, 0, nullptr, 6, caption,
                          0, 0, 1, 1, nullptr);
}

void showBalloon(HWND page, HWND field) {
    static wchar_t text[] = L"The customer number is given by the head office.";
    RECT area;
    GetClientRect(field, &area);
    HWND tip = KxToolTip_CreateRect(field, &area, text, 1, 1);
    KxToolTip_SetTitle(tip, L"Customer number", TTI_INFO);
    SendMessageW(tip, TTM_SETDELAYTIME, TTDT_INITIAL, 10);
    RECT screen;
    GetWindowRect(field, &screen);
    SetCursorPos(screen.left + 20, screen.top + 8);
    KxToolTip_RelayMessage(tip, field, WM_MOUSEMOVE, 0, MAKELPARAM(20, 8));
    PumpFor(400);
    SaveScreenshot(page, L"11-tabs-tooltip");
    SendMessageW(tip, TTM_POP, 0, 0);
}

void showCombo(HWND page, HWND combo) {
    for (const wchar_t* text : {L"Bremen", L"Nordlicht Logistik GmbH & Co. KG, Hafenstrasse", L"Ulm"})
        SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
    SendMessageW(combo, CB_SETCURSEL, 0, 0);
    KxCbSetDropdownWidth(combo, static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT)));
    SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
    PumpFor(200);
    SaveScreenshot(page, L"11-tabs-combo");
    SendMessageW(combo, CB_SHOWDROPDOWN, FALSE, 0);
}

void build(HWND page) {
    HWND customer = createCustomerDialog(page);
    SetWindowPos(customer, nullptr, 10, 10, 0, 0, SWP_NOSIZE | SWP_NOZORDER);

    AddLabel(page, 420, 104, 280, 16, L"Customer number (balloon tooltip):");
    HWND field = CreateWindowExW(WS_EX_CLIENTEDGE, L"Edit", L"K-20417", WS_CHILD | WS_VISIBLE,
                                 420, 122, 150, 22, page, nullptr, GetModuleHandleW(nullptr), nullptr);
    SendMessageW(field, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), 0);
    AddLabel(page, 420, 190, 280, 16, L"Branch (drop-down fits the widest entry):");
    HWND combo = CreateWindowExW(0, L"ComboBox", L"", WS_CHILD | WS_VISIBLE | WS_VSCROLL | CBS_DROPDOWNLIST,
                                 420, 208, 110, 200, page,
                                 reinterpret_cast<HMENU>(static_cast<INT_PTR>(kComboId)),
                                 GetModuleHandleW(nullptr), nullptr);
    SendMessageW(combo, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), 0);
    PumpFor(100);

    showBalloon(page, field);
    showCombo(page, combo);
    showPropertySheet(page);

    // The page itself is shown with the contacts tab selected.
    HWND tabs = GetDlgItem(customer, kTabId);
    TabCtrl_SetCurSel(tabs, 1);
    auto* tab = reinterpret_cast<KXTAB*>(GetWindowLongPtrW(customer, DWLP_USER));
    if (tab) KxTabChangeSelection(customer, kTabId, tab, 1);
}

const bool registered = RegisterGalleryPage({L"11-tabs", 780, 330, build});

}  // namespace
