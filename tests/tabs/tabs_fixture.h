// Helpers of the tab manager and property sheet tests: a modeless host dialog with a tab control
// made from an in-memory template, page procedures that log what they are created with, real
// keyboard input and a message loop that remembers what it retrieved.
#pragma once
#include "kvtest.h"
#include <commctrl.h>
#include <functional>
#include <string>
#include <vector>
#include "hook_spy.h"
#include "kvkit_sizedlg.h"
#include "kvkit_tabs.h"

namespace tabs_test {

// Page templates and title strings of the sample language module.
const int kAddressPage = 6140, kContactsPage = 6141, kNotesPage = 6142;
const int kGeneralSheetPage = 6150, kPhonesSheetPage = 6151, kRemarksSheetPage = 6152;
// Controls of the address page (street label and edit), the contacts list and the notes edit.
const int kStreetLabel = 102, kStreetEdit = 100, kContactsList = 110, kNotesEdit = 120;
const int kTabId = 1000;

// One page creation: which procedure (page slot) saw WM_INITDIALOG, in which window, with what.
struct PageCreation {
    int slot;
    HWND window;
    LPARAM parameter;
};
std::vector<PageCreation>& Creations();
int CreationsOf(int slot);
// Page procedures 0..5: each logs its WM_INITDIALOG under its own slot.
DLGPROC PageProc(int slot);

// The caller's parallel arrays for a manager: templates, procedure i for page i, titles.
struct Pages {
    Pages(std::initializer_list<int> templateIds, std::initializer_list<const wchar_t*> titleTexts)
        : templates(templateIds), texts(titleTexts.begin(), titleTexts.end()) {
        for (int page = 0; page < count(); ++page) procs.push_back(PageProc(page));
        for (std::wstring& text : texts) titles.push_back(&text[0]);
    }
    int count() const { return static_cast<int>(templates.size()); }
    std::vector<int> templates;
    std::vector<DLGPROC> procs;
    std::vector<std::wstring> texts;
    std::vector<wchar_t*> titles;
};

// Builds a dialog template in memory.
class TemplateWriter {
public:
    TemplateWriter(DWORD style, int items, int width, int height, const wchar_t* title);
    void item(const wchar_t* className, const wchar_t* title, DWORD style, int x, int y, int cx,
              int cy, int id);
    const DLGTEMPLATE* data() const { return reinterpret_cast<const DLGTEMPLATE*>(words_.data()); }

private:
    void dword(DWORD value);
    void text(const wchar_t* value);
    std::vector<WORD> words_;
};

// A modeless host dialog with a tab control (kTabId) and an OK button. Its procedure shows the
// selected tab's page on TCN_SELCHANGE, as an application does.
class TabbedDialog {
public:
    explicit TabbedDialog(DWORD style = WS_POPUP | WS_CAPTION | WS_VISIBLE | WS_THICKFRAME);
    ~TabbedDialog();
    TabbedDialog(const TabbedDialog&) = delete;
    TabbedDialog& operator=(const TabbedDialog&) = delete;

    HWND handle() const { return window_; }
    operator HWND() const { return window_; }
    HWND tabs() const { return GetDlgItem(window_, kTabId); }
    KXTAB* record = nullptr;   // handed to KxTabChangeSelection on TCN_SELCHANGE
    bool endOnDestroy = true;  // KxTabEnd(record) when the dialog goes

    int tabCount() const { return TabCtrl_GetItemCount(tabs()); }
    int selectedTab() const { return TabCtrl_GetCurSel(tabs()); }
    std::wstring tabTitle(int index) const;
    // The page window on show, and the page area it must cover.
    HWND page() const { return record ? record->page : nullptr; }
    RECT pageArea() const;
    // Clicks a tab with the mouse (button down and up posted at its centre) and dispatches.
    void clickTab(int index);
    // Destroys the dialog (ending the manager first when endOnDestroy).
    void destroy();

private:
    static INT_PTR CALLBACK dialogProc(HWND, UINT, WPARAM, LPARAM);
    HWND window_ = nullptr;
};

// The host's loop for a modeless dialog: every retrieved message (as the thread's hooks left it)
// is remembered, then handed to IsDialogMessage or dispatched. Runs until nothing but timer
// messages has come for a while (three seconds at most).
std::vector<MSG> RunLoop(HWND dialog, DWORD quietMilliseconds = 60);
int CountRetrieved(const std::vector<MSG>& messages, UINT message, WPARAM wParam = 0);

// Keys pressed with SendInput, as a user types them: modifiers down, key down and up, modifiers
// up in reverse order.
void PressKeys(std::initializer_list<WORD> modifiers, WORD key);
// Makes the dialog the foreground window with the focus on `focus` (a child) or on itself.
void Activate(HWND dialog, HWND focus = nullptr);

inline RECT RectInParent(HWND window) {
    RECT rect;
    GetWindowRect(window, &rect);
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

std::wstring WindowText(HWND window);

// Calls `create`, which may run a modal property sheet, with a timer going that calls `inside`
// once while the sheet is up (found as the parent of the first page logged) and then cancels it.
INT_PTR RunSheet(std::function<void(HWND)> inside, std::function<INT_PTR()> create);

}  // namespace tabs_test

inline bool operator==(const RECT& a, const RECT& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}
inline std::ostream& operator<<(std::ostream& out, const RECT& r) {
    return out << "(" << r.left << ", " << r.top << ", " << r.right << ", " << r.bottom << ")";
}
