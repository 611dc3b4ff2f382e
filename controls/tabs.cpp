// Tab control manager: the KXTAB record, page switching, and the two thread hooks that switch
// pages from the keyboard.
#include "core/library.h"
#include "controls/mnemonic.h"
#include "include/kvkit_sizedlg.h"
#include "include/kvkit_tabs.h"
#include "include/kvkit_theme.h"
#include <commctrl.h>
#include "kvtext.h"

namespace {

const int kTitleLength = 149;         // a tab title loaded from the instance
const int kMnemonicTextLength = 79;   // the part of a tab's title searched for a mnemonic
const int kItemTextLength = 120;      // KxTabGetItemText
const DWORD kTabBackground = ETDT_ENABLE | ETDT_USETABTEXTURE;

// The hooks serve one tab control, the one set up last, and stay installed while any manager
// lives.
HWND g_hookTabControl;
HHOOK g_messageHook;
HHOOK g_keyboardHook;
int g_managerCount;

bool isKept(const KXTAB* tab, int page) { return tab->keep && page >= 0 && tab->keep[page] == 1; }

unsigned char* copyBytes(const unsigned char* source, int count) {
    auto* copy = static_cast<unsigned char*>(GetMemory(count));
    if (copy) CopyMemory(copy, source, count);
    return copy;
}

void freeRecord(KXTAB* tab) {
    FreeMemory(tab->visible);
    FreeMemory(tab->params);
    FreeMemory(tab->keep);
    FreeMemory(tab->keptPages);
    FreeMemory(tab);
}

// The record with its owned arrays; null when memory runs out.
KXTAB* newRecord(HINSTANCE instance, int pageCount, int* templates, int procCount, DLGPROC* procs,
                 int paramCount, const long* params, const unsigned char* visible,
                 unsigned short language, const unsigned char* keep) {
    auto* tab = static_cast<KXTAB*>(GetMemory(sizeof(KXTAB)));
    if (!tab) return nullptr;
    *tab = KXTAB();
    tab->pageIndex = -1;
    tab->instance = instance;
    tab->pageCount = pageCount;
    tab->templates = templates;
    tab->procCount = procCount;
    tab->procs = procs;
    tab->language = language;
    bool complete = true;
    if (visible) complete = (tab->visible = copyBytes(visible, pageCount)) != nullptr;
    if (complete && params) {
        // Every entry is the first parameter.
        tab->paramCount = paramCount ? 1 : pageCount;
        tab->params = static_cast<long*>(GetMemory(tab->paramCount * sizeof(long)));
        complete = tab->params != nullptr;
        for (int i = 0; complete && i < tab->paramCount; ++i) tab->params[i] = params[0];
    }
    if (complete && keep) {
        tab->keep = copyBytes(keep, pageCount);
        tab->keptPages = static_cast<HWND*>(Mres(pageCount * sizeof(HWND)));
        complete = tab->keep && tab->keptPages;
    }
    if (complete) return tab;
    freeRecord(tab);
    return nullptr;
}

// One tab per visible page. A refused insert takes the tabs inserted so far away again.
bool insertTabs(HWND tabControl, const KXTAB* tab, wchar_t** titles, const int* titleIds) {
    int inserted = 0;
    for (int page = 0; page < tab->pageCount; ++page) {
        if (tab->visible && !tab->visible[page]) continue;
        wchar_t loaded[kTitleLength + 1] = L"";
        TCITEMW item = {};
        item.mask = TCIF_TEXT | TCIF_IMAGE;
        item.iImage = -1;
        item.pszText = loaded;
        if (titles && titles[page])
            item.pszText = titles[page];
        else if (!titles && titleIds)
            LoadStringW(tab->instance, titleIds[page], loaded, kTitleLength + 1);
        if (SendMessageW(tabControl, TCM_INSERTITEMW, inserted, reinterpret_cast<LPARAM>(&item)) == -1) {
            while (inserted > 0) SendMessageW(tabControl, TCM_DELETEITEM, --inserted, 0);
            return false;
        }
        ++inserted;
    }
    return true;
}

// The tab of page `firstPage`, or the first tab when that page has none.
int firstTabIndex(const KXTAB* tab, int firstPage) {
    if (firstPage >= tab->pageCount || (tab->visible && !tab->visible[firstPage])) firstPage = 0;
    int tabIndex = firstPage;
    for (int page = 0; tab->visible && page < firstPage; ++page)
        if (!tab->visible[page]) --tabIndex;
    return tabIndex;
}

void attachHooks(HWND tabControl) {
    g_hookTabControl = tabControl;
    ++g_managerCount;
    DWORD thread = GetWindowThreadProcessId(tabControl, nullptr);
    if (!g_messageHook)
        g_messageHook = SetWindowsHookExW(WH_GETMESSAGE, KxTabSystemHook, g_libraryModule, thread);
    if (!g_keyboardHook)
        g_keyboardHook = SetWindowsHookExW(WH_KEYBOARD, KxTabKeyboardHook, g_libraryModule, thread);
}

void releaseHooks(const KXTAB* tab) {
    // The served tab control must not hand the hooks a record that is about to go.
    if (g_hookTabControl &&
        GetWindowLongW(g_hookTabControl, GWL_USERDATA) == reinterpret_cast<LONG>(tab)) {
        SetWindowLongW(g_hookTabControl, GWL_USERDATA, 0);
        g_hookTabControl = nullptr;
    }
    if (g_managerCount > 0 && --g_managerCount > 0) return;
    if (g_messageHook) UnhookWindowsHookEx(g_messageHook);
    if (g_keyboardHook) UnhookWindowsHookEx(g_keyboardHook);
    g_messageHook = nullptr;
    g_keyboardHook = nullptr;
    g_hookTabControl = nullptr;
}

// Selects a tab of the hooks' tab control and shows its page.
void selectTab(HWND tabControl, int tabIndex) {
    SendMessageW(tabControl, TCM_SETCURSEL, tabIndex, 0);
    auto* tab = reinterpret_cast<KXTAB*>(GetWindowLongW(tabControl, GWL_USERDATA));
    if (tab) KxTabChangeSelection(GetParent(tabControl), GetDlgCtrlID(tabControl), tab, tabIndex);
}

const DLGTEMPLATE* loadPageTemplate(const KXTAB* tab, int page) {
    auto name = reinterpret_cast<LPCWSTR>(static_cast<INT_PTR>(tab->templates[page]));
    HRSRC resource = tab->language
        ? FindResourceExW(tab->instance, RT_DIALOG, name, MAKELANGID(tab->language, SUBLANG_DEFAULT))
        : FindResourceW(tab->instance, name, RT_DIALOG);
    HGLOBAL loaded = resource ? LoadResource(tab->instance, resource) : nullptr;
    return loaded ? static_cast<const DLGTEMPLATE*>(LockResource(loaded)) : nullptr;
}

void leaveCurrentPage(KXTAB* tab) {
    if (isKept(tab, tab->pageIndex)) {
        ShowWindow(tab->page, SW_HIDE);
        tab->keptPages[tab->pageIndex] = tab->page;
    } else if (tab->page) {
        if (tab->resizable == 1) Kx1SizeDlgRemoveChilds(tab->page);
        DestroyWindow(tab->page);
    }
    tab->page = nullptr;
    tab->pageIndex = -1;
}

// The tab control's display area in the dialog's client coordinates.
RECT pageArea(HWND dialog, HWND tabControl) {
    RECT area;
    GetWindowRect(tabControl, &area);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&area), 2);
    SendMessageW(tabControl, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&area));
    return area;
}

HWND createPage(HWND dialog, int tabId, const KXTAB* tab, const DLGTEMPLATE* pageTemplate,
                DLGPROC procedure, LPARAM parameter, const RECT& area) {
    auto instance = reinterpret_cast<HINSTANCE>(GetWindowLongW(dialog, GWL_HINSTANCE));
    HWND page = CreateDialogIndirectParamW(instance, pageTemplate, dialog, procedure, parameter);
    if (!page) return nullptr;
    KxEnableThemeDialogTexture(page, kTabBackground);
    SetWindowLongW(page, GWL_EXSTYLE, GetWindowLongW(page, GWL_EXSTYLE) | WS_EX_CONTROLPARENT);
    if (tab->resizable == 1) {
        Kx1SizeDlgAddChilds(page, 1, 1, tabId);
        KxSizeDlg(dialog, 0, 0);
    }
    SetWindowPos(page, HWND_TOP, area.left, area.top, area.right - area.left,
                 area.bottom - area.top, SWP_FRAMECHANGED);
    ShowWindow(page, SW_SHOW);
    return page;
}

// The managed tab control goes through the subclass chain; everything is passed on.
LRESULT CALLBACK tabControlProc(HWND tabControl, UINT message, WPARAM wParam, LPARAM lParam) {
    WNDPROC previous = Kx1GetSubProc(message == WM_DESTROY, tabControl);
    return previous ? CallWindowProcW(previous, tabControl, message, wParam, lParam) : 0;
}

}  // namespace

KXTAB* KVKIT_CALL KxTabInitEx(HWND dialog, int tabId, HINSTANCE instance, int pageCount,
                              int* templates, int procCount, DLGPROC* procs, wchar_t** titles,
                              int* titleIds, int paramCount, long* params, unsigned char firstPage,
                              unsigned char* visible, unsigned short language, unsigned char* keep) {
    HWND tabControl = dialog ? GetDlgItem(dialog, tabId) : nullptr;
    if (!tabControl || pageCount < 1 || !templates || !procs) return nullptr;
    KXTAB* tab = newRecord(instance, pageCount, templates, procCount, procs, paramCount, params,
                           visible, language, keep);
    if (!tab) return nullptr;
    if (!insertTabs(tabControl, tab, titles, titleIds)) {
        freeRecord(tab);
        return nullptr;
    }
    SetWindowLongW(tabControl, GWL_USERDATA, reinterpret_cast<LONG>(tab));
    attachHooks(tabControl);
    int first = firstTabIndex(tab, firstPage);
    // A failed first switch leaves the record with the tab control, for KxTabEnd.
    if (!KxTabChangeSelection(dialog, tabId, tab, first)) return nullptr;
    SendMessageW(tabControl, TCM_SETCURSEL, first, 0);
    Kx1SetSubProc(tabControl, tabControlProc);
    return tab;
}

KXTAB* KVKIT_CALL KxTabInit(HWND dialog, int tabId, HINSTANCE instance, int pageCount,
                            int* templates, int procCount, DLGPROC* procs, wchar_t** titles,
                            int* titleIds, int paramCount, long* params, unsigned char firstPage,
                            unsigned char* visible, unsigned short language) {
    return KxTabInitEx(dialog, tabId, instance, pageCount, templates, procCount, procs, titles,
                       titleIds, paramCount, params, firstPage, visible, language, nullptr);
}

BOOL KVKIT_CALL KxTabChangeSelection(HWND dialog, int tabId, KXTAB* tab, int tabIndex) {
    if (!tab || tabIndex < 0 || tabIndex >= tab->pageCount) return FALSE;
    HWND tabControl = dialog ? GetDlgItem(dialog, tabId) : nullptr;
    if (!tabControl) return FALSE;
    int page = KxTabGetIndex(tab, tabIndex);
    const DLGTEMPLATE* pageTemplate = loadPageTemplate(tab, page);
    if (!pageTemplate) return FALSE;
    DLGPROC procedure = tab->procCount == 1 ? tab->procs[0] : tab->procs[page];
    if (!procedure) return FALSE;

    leaveCurrentPage(tab);
    RECT area = pageArea(dialog, tabControl);
    LPARAM parameter = tab->params ? tab->params[tab->paramCount == 1 ? 0 : page] : 0;
    HWND window = nullptr;
    if (isKept(tab, page) && IsWindow(tab->keptPages[page])) {
        window = tab->keptPages[page];
        ShowWindow(window, SW_SHOW);
    } else {
        window = createPage(dialog, tabId, tab, pageTemplate, procedure, parameter, area);
        if (!window) return FALSE;
    }
    tab->page = window;
    tab->pageIndex = page;
    return TRUE;
}

int KVKIT_CALL KxTabGetIndex(KXTAB* tab, int tabIndex) {
    if (!tab) return -1;
    if (!tab->visible) return tabIndex;
    int tabsSeen = 0;
    for (int page = 0; page < tab->pageCount; ++page) {
        if (!tab->visible[page]) continue;
        if (tabsSeen == tabIndex) return page;
        ++tabsSeen;
    }
    return tabIndex;
}

wchar_t* KVKIT_CALL KxTabGetItemText(HWND dialog, int tabId, int tabIndex, KXTAB* tab) {
    HWND tabControl = dialog ? GetDlgItem(dialog, tabId) : nullptr;
    if (!tabControl || !tab) return nullptr;
    auto* text = static_cast<wchar_t*>(GetMemory((kItemTextLength + 1) * sizeof(wchar_t)));
    if (!text) return nullptr;
    text[0] = 0;
    TCITEMW item = {};
    item.mask = TCIF_TEXT;
    item.pszText = text;
    item.cchTextMax = kItemTextLength;
    // The page index is looked up as a tab index.
    if (!SendMessageW(tabControl, TCM_GETITEMW, KxTabGetIndex(tab, tabIndex),
                      reinterpret_cast<LPARAM>(&item))) {
        FreeMemory(text);
        return nullptr;
    }
    return text;
}

int KVKIT_CALL KxTabEnd(HWND, KXTAB* tab) {
    if (!tab) return 0;
    releaseHooks(tab);
    freeRecord(tab);
    return 1;
}

int KVKIT_CALL KxTabCheckActivate(HWND, UINT, LPARAM) { return 0; }

// Ctrl+Tab selects the next tab, Ctrl+Shift+Tab the previous one, both wrapping around; the key
// is swallowed.
LRESULT KVKIT_CALL KxTabKeyboardHook(int code, WPARAM wParam, LPARAM lParam) {
    HWND tabControl = g_hookTabControl;
    bool keyGoesDown = lParam >= 0;
    if (code == HC_ACTION && wParam == VK_TAB && keyGoesDown && GetKeyState(VK_CONTROL) < 0 &&
        IsWindow(tabControl)) {
        int count = static_cast<int>(SendMessageW(tabControl, TCM_GETITEMCOUNT, 0, 0));
        int current = static_cast<int>(SendMessageW(tabControl, TCM_GETCURSEL, 0, 0));
        if (count > 0) {
            int next = GetKeyState(VK_SHIFT) < 0 ? current - 1 : current + 1;
            if (next < 0) next = count - 1;
            if (next >= count) next = 0;
            selectTab(tabControl, next);
            return 1;
        }
    }
    return CallNextHookEx(g_keyboardHook, code, wParam, lParam);
}

// Alt+character selects every tab whose title has that mnemonic (the last one stays selected)
// and the message becomes WM_NULL; without a match it goes on untouched.
LRESULT KVKIT_CALL KxTabSystemHook(int code, WPARAM wParam, LPARAM lParam) {
    auto* message = reinterpret_cast<MSG*>(lParam);
    HWND tabControl = g_hookTabControl;
    if (code == HC_ACTION && wParam == PM_REMOVE && message && message->message == WM_SYSCHAR &&
        IsWindow(tabControl)) {
        int count = static_cast<int>(SendMessageW(tabControl, TCM_GETITEMCOUNT, 0, 0));
        for (int i = 0; i < count; ++i) {
            if (!TabHasMnemonic(tabControl, i, kMnemonicTextLength, static_cast<wchar_t>(message->wParam)))
                continue;
            selectTab(tabControl, i);
            message->message = WM_NULL;
        }
    }
    return CallNextHookEx(g_messageHook, code, wParam, lParam);
}
