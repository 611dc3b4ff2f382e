// Tab control manager: turns a plain tab control of a dialog into a paged dialog. Each tab shows
// a child dialog (a page) made from a dialog template; pages may be left out of the tab strip,
// kept alive (hidden) across switches, loaded in a chosen language and laid out by the
// resizable-dialog engine. Ctrl+Tab, Ctrl+Shift+Tab and Alt+mnemonic switch pages through two
// thread hooks that serve the most recently initialised tab control.
//
//   WM_INITDIALOG:         tab = KxTabInitEx(dialog, tabId, ...)
//   TCN_SELCHANGE:         KxTabChangeSelection(dialog, tabId, tab, TabCtrl_GetCurSel(tabControl))
//   closing (WM_DESTROY):  KxTabEnd(dialog, tab)
#pragma once
#include "kvkit_api.h"
#include <stddef.h>

// One managed tab control, kept in its GWL_USERDATA. The library allocates and frees it; the
// application may read it and may set `resizable`.
#pragma pack(push, 1)
struct KXTAB {
    HWND page;                // the page shown now; null before the first switch
    int pageIndex;            // its page index; -1 before the first switch
    HINSTANCE instance;       // holds the page templates and the tab titles
    int pageCount;
    int* templates;           // the caller's: one MAKEINTRESOURCE value or name pointer per page
    int procCount;            // 1: procs[0] serves every page; otherwise one per page
    DLGPROC* procs;           // the caller's
    int paramCount;           // entries in params: 1 or the page count
    long* params;             // owned: creation parameter of each page, or null
    unsigned char* visible;   // owned: one byte per page, 0 = the page has no tab; or null
    unsigned short language;  // primary language of the templates; 0 = default lookup
    unsigned char* keep;      // owned: one byte per page, 1 = hidden instead of destroyed; or null
    HWND* keptPages;          // owned: the hidden window of each kept page, or null
    int resizable;            // 1: pages created from now on join the resizable-dialog engine
                              // (set by the application; the first page predates it)
};
#pragma pack(pop)
static_assert(sizeof(KXTAB) == 54, "KXTAB size");
static_assert(offsetof(KXTAB, page) == 0, "KXTAB page offset");
static_assert(offsetof(KXTAB, pageIndex) == 4, "KXTAB pageIndex offset");
static_assert(offsetof(KXTAB, instance) == 8, "KXTAB instance offset");
static_assert(offsetof(KXTAB, pageCount) == 12, "KXTAB pageCount offset");
static_assert(offsetof(KXTAB, templates) == 16, "KXTAB templates offset");
static_assert(offsetof(KXTAB, procCount) == 20, "KXTAB procCount offset");
static_assert(offsetof(KXTAB, procs) == 24, "KXTAB procs offset");
static_assert(offsetof(KXTAB, paramCount) == 28, "KXTAB paramCount offset");
static_assert(offsetof(KXTAB, params) == 32, "KXTAB params offset");
static_assert(offsetof(KXTAB, visible) == 36, "KXTAB visible offset");
static_assert(offsetof(KXTAB, language) == 40, "KXTAB language offset");
static_assert(offsetof(KXTAB, keep) == 42, "KXTAB keep offset");
static_assert(offsetof(KXTAB, keptPages) == 46, "KXTAB keptPages offset");
static_assert(offsetof(KXTAB, resizable) == 50, "KXTAB resizable offset");

// Sets up the tab control `tabId` of `dialog`: one tab per visible page (all pages without
// `visible`), titled titles[page], else string titleIds[page] of `instance`, else untitled; then
// shows `firstPage` (page 0 when that page is invisible). `templates`, `procs` and `titles` are
// the caller's and must outlive the manager; `visible`, `params` and `keep` are copied. Only
// params[0] is used, for every page. With `language` non-zero the templates are looked up in
// that primary language. Null when the dialog has no such control, an argument is missing, a tab
// cannot be inserted or memory runs out. When only the first switch fails, null is returned but
// the record stays in the tab control's GWL_USERDATA with the hooks installed: hand it to
// KxTabEnd.
KVKIT_API KXTAB* KVKIT_CALL KxTabInitEx(HWND dialog, int tabId, HINSTANCE instance, int pageCount,
                                        int* templates, int procCount, DLGPROC* procs,
                                        wchar_t** titles, int* titleIds, int paramCount,
                                        long* params, unsigned char firstPage,
                                        unsigned char* visible, unsigned short language,
                                        unsigned char* keep);
// KxTabInitEx without kept-alive pages.
KVKIT_API KXTAB* KVKIT_CALL KxTabInit(HWND dialog, int tabId, HINSTANCE instance, int pageCount,
                                      int* templates, int procCount, DLGPROC* procs,
                                      wchar_t** titles, int* titleIds, int paramCount, long* params,
                                      unsigned char firstPage, unsigned char* visible,
                                      unsigned short language);
// Shows the page of tab `tabIndex` on the tab control's page area: the page left is hidden when
// it is kept alive, otherwise destroyed; a kept page comes back as it was, any other is created
// afresh. Does not move the tab control's selection. 0 for an index outside 0..pageCount-1, a
// missing tab control, template or procedure, or a page that cannot be created.
KVKIT_API BOOL KVKIT_CALL KxTabChangeSelection(HWND dialog, int tabId, KXTAB* tab, int tabIndex);
// The page index of tab `tabIndex` (tabs count only visible pages); the tab index itself when
// there is no such visible page. -1 without a record.
KVKIT_API int KVKIT_CALL KxTabGetIndex(KXTAB* tab, int tabIndex);
// The title of the tab at the position of the page index that `tabIndex` maps to (so with
// invisible pages before it, a later tab's title or none), up to 120 characters, in a new kvtext
// buffer that the caller frees with FreeMemory. Null when there is no such tab.
KVKIT_API wchar_t* KVKIT_CALL KxTabGetItemText(HWND dialog, int tabId, int tabIndex, KXTAB* tab);
// Frees the record and its arrays; the hooks go with the last manager. Kept pages stay (they
// are the dialog's children and go with it). 1, or 0 without a record.
KVKIT_API int KVKIT_CALL KxTabEnd(HWND ignored, KXTAB* tab);
// Kept for older callers; does nothing and returns 0.
KVKIT_API int KVKIT_CALL KxTabCheckActivate(HWND window, UINT message, LPARAM lParam);
// The thread hooks: WH_KEYBOARD (Ctrl+Tab, Ctrl+Shift+Tab) and WH_GETMESSAGE (Alt+mnemonic).
KVKIT_API LRESULT KVKIT_CALL KxTabKeyboardHook(int code, WPARAM wParam, LPARAM lParam);
KVKIT_API LRESULT KVKIT_CALL KxTabSystemHook(int code, WPARAM wParam, LPARAM lParam);
