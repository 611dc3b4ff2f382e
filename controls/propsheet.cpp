// Property sheets: the page array built from the caller's parallel arrays, the sheet callback
// that removes the help button and keeps the tabs on one line, and the mnemonic hook.
#include "core/library.h"
#include "controls/mnemonic.h"
#include "include/kvkit_propsheet.h"
#include <commctrl.h>
#include <prsht.h>
#include "kvtext.h"

namespace {

// A page description in its newest form: the platform record followed by the header bitmap.
struct SheetPage {
    PROPSHEETPAGEW page;
    HBITMAP headerBitmap;
};
static_assert(sizeof(SheetPage) == 56, "page description size");
static_assert(sizeof(PROPSHEETHEADERW) == 52, "sheet header size");

// The start of an extended dialog template, whose second word is 0xFFFF.
struct DialogTemplateEx {
    WORD version;
    WORD signature;
    DWORD helpId;
    DWORD exStyle;
    DWORD style;
};

const DWORD kDefaultFlags = PSH_PROPTITLE | PSH_PROPSHEETPAGE | PSH_NOAPPLYNOW;
const int kMnemonicTextLength = 159;

// Options of the last sheet, and the sheet that the mnemonic hook serves.
int g_noHelp;
int g_mnemonics;
HWND g_hookedSheet;
HHOOK g_sheetHook;

void removeHook() {
    if (g_sheetHook) UnhookWindowsHookEx(g_sheetHook);
    g_sheetHook = nullptr;
    g_hookedSheet = nullptr;
}

void removeContextHelp(void* sheetTemplate) {
    if (!sheetTemplate) return;
    auto* extended = static_cast<DialogTemplateEx*>(sheetTemplate);
    if (extended->signature == 0xFFFF)
        extended->style &= ~DS_CONTEXTHELP;
    else
        static_cast<DLGTEMPLATE*>(sheetTemplate)->style &= ~DS_CONTEXTHELP;
}

void hookSheet(HWND sheet) {
    removeHook();  // of a sheet that closed without KxEndPropertySheet
    if (!IsWindow(sheet)) return;  // thread 0 would make the hook global
    g_hookedSheet = sheet;
    g_sheetHook = SetWindowsHookExW(WH_GETMESSAGE, KxPropSheetHook, g_libraryModule,
                                    GetWindowThreadProcessId(sheet, nullptr));
}

void keepTabsOnOneLine(HWND sheet) {
    auto tabs = reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETTABCONTROL, 0, 0));
    LONG style = GetWindowLongW(tabs, GWL_STYLE);
    if (tabs && (style & TCS_MULTILINE)) SetWindowLongW(tabs, GWL_STYLE, style & ~TCS_MULTILINE);
}

int visiblePages(int pageCount, const unsigned char* visible) {
    int count = 0;
    for (int i = 0; i < pageCount; ++i) count += !visible || visible[i];
    return count;
}

}  // namespace

INT_PTR KVKIT_CALL KxCreatePropertySheet(HWND owner, HINSTANCE instance, DLGPROC* procs,
                                         int* templates, int oneParam, long* params, int pageCount,
                                         wchar_t* caption, unsigned int startPage,
                                         unsigned long flags, int noHelp, int mnemonics,
                                         unsigned char* visible) {
    if (pageCount < 1 || !procs || !templates) return 0;
    int shown = visiblePages(pageCount, visible);
    if (shown == 0) return 0;
    auto* pages = static_cast<SheetPage*>(Mres(shown * sizeof(SheetPage)));
    if (!pages) return 0;
    for (int i = 0, n = 0; i < pageCount; ++i) {
        if (visible && !visible[i]) continue;
        PROPSHEETPAGEW& page = pages[n++].page;
        page.dwSize = sizeof(SheetPage);
        page.hInstance = instance;
        page.pszTemplate = MAKEINTRESOURCEW(LOWORD(templates[i]));
        page.pfnDlgProc = procs[i];
        if (params) page.lParam = oneParam ? params[0] : params[i];
    }

    PROPSHEETHEADERW header = {};
    header.dwSize = sizeof(header);
    header.dwFlags = (flags ? flags : kDefaultFlags) | PSH_PROPSHEETPAGE;
    if (noHelp || mnemonics) header.dwFlags |= PSH_USECALLBACK;
    header.hwndParent = owner;
    header.hInstance = instance;
    header.pszCaption = caption;
    header.nPages = shown;
    // A start page beyond the visible ones is left to the sheet to clamp.
    header.nStartPage = startPage < static_cast<unsigned>(shown) ? startPage : LOWORD(startPage);
    header.ppsp = &pages[0].page;
    if (header.dwFlags & PSH_USECALLBACK) header.pfnCallback = KxPropSheetProc;
    g_noHelp = noHelp;
    g_mnemonics = mnemonics;

    INT_PTR result = PropertySheetW(&header);
    FreeMemory(pages);
    // A modal sheet is gone by now; its hook goes with it.
    if (g_sheetHook && !IsWindow(g_hookedSheet)) removeHook();
    return result;
}

int KVKIT_CALL KxEndPropertySheet(HWND sheet) {
    if (!sheet || sheet != g_hookedSheet || !g_sheetHook) return 0;
    removeHook();
    return 1;
}

// An option that is off is switched on here instead of being applied: it takes effect only at a
// later notification of the same sheet.
int KVKIT_CALL KxPropSheetProc(HWND sheet, UINT message, LPARAM lParam) {
    switch (message) {
    case PSCB_PRECREATE:
        if (g_noHelp)
            removeContextHelp(reinterpret_cast<void*>(lParam));
        else
            g_noHelp = 1;
        return 1;
    case PSCB_INITIALIZED:
        if (g_mnemonics)
            hookSheet(sheet);
        else
            g_mnemonics = 1;
        keepTabsOnOneLine(sheet);
        return 0;
    }
    return 0;
}

// Alt+character selects every page whose tab title has that mnemonic (the last one stays
// selected) and the message becomes WM_NULL; without a match it goes on untouched.
LRESULT KVKIT_CALL KxPropSheetHook(int code, WPARAM wParam, LPARAM lParam) {
    auto* message = reinterpret_cast<MSG*>(lParam);
    HWND sheet = g_hookedSheet;
    if (code == HC_ACTION && wParam == PM_REMOVE && message && message->message == WM_SYSCHAR &&
        IsWindow(sheet)) {
        auto tabs = reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETTABCONTROL, 0, 0));
        int count = static_cast<int>(SendMessageW(tabs, TCM_GETITEMCOUNT, 0, 0));
        for (int i = 0; i < count; ++i) {
            if (!TabHasMnemonic(tabs, i, kMnemonicTextLength, static_cast<wchar_t>(message->wParam)))
                continue;
            SendMessageW(sheet, PSM_SETCURSEL, i, 0);
            message->message = WM_NULL;
        }
    }
    return CallNextHookEx(g_sheetHook, code, wParam, lParam);
}
