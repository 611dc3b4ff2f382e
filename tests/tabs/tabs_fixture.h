// Helpers of the tab manager and property sheet tests: a modeless host dialog with a tab control,
// page procedures that log their creation, real keyboard input, a message loop that remembers
// what it retrieved, and a driver for modal property sheets.
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

// Templates of the sample language module and controls on them.
const int kAddressPage = 6140, kContactsPage = 6141, kNotesPage = 6142;
const int kGeneralSheetPage = 6150, kPhonesSheetPage = 6151, kRemarksSheetPage = 6152;
const int kStreetLabel = 102, kStreetEdit = 100, kContactsList = 110, kNotesEdit = 120;
const int kTabId = 1000;

// Each page procedure logs its WM_INITDIALOG under its slot (the page index it serves).
struct PageCreation {
    int slot;
    HWND window;
    LPARAM parameter;
};
std::vector<PageCreation>& Creations();
int CreationsOf(int slot);
DLGPROC PageProc(int slot);  // slots 0..5

// The caller's arrays for a manager: templates, procedure i for page i, titles.
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

std::wstring TabTitle(HWND tabControl, int index);

// A modeless resizable dialog with a tab control (kTabId) and an OK button. Its procedure shows
// the selected tab's page on TCN_SELCHANGE and hands WM_SIZE to the resizable-dialog engine, as
// an application's does.
class TabbedDialog {
public:
    TabbedDialog();
    ~TabbedDialog() { destroy(); }
    TabbedDialog(const TabbedDialog&) = delete;
    TabbedDialog& operator=(const TabbedDialog&) = delete;
    operator HWND() const { return window_; }

    KXTAB* record = nullptr;  // ended with KxTabEnd when the dialog goes
    HWND tabs() const { return GetDlgItem(window_, kTabId); }
    int tabCount() const { return TabCtrl_GetItemCount(tabs()); }
    int selectedTab() const { return TabCtrl_GetCurSel(tabs()); }
    std::wstring tabTitle(int index) const { return TabTitle(tabs(), index); }
    HWND page() const { return record ? record->page : nullptr; }
    int pageSlot() const;  // the slot of the procedure that made the page on show
    RECT pageArea() const;
    void clickTab(int index);  // button down and up posted at the tab's centre
    void destroy();

private:
    static INT_PTR CALLBACK dialogProc(HWND, UINT, WPARAM, LPARAM);
    HWND window_ = nullptr;
};

// A host's loop for a modeless dialog: each retrieved message (as the thread's hooks left it) is
// remembered, then given to IsDialogMessage or dispatched. Runs until nothing but timer messages
// has come for a while (three seconds at most).
std::vector<MSG> RunLoop(HWND dialog);
int CountRetrieved(const std::vector<MSG>& messages, UINT message, WPARAM wParam = 0);
// Keys typed with SendInput: modifiers down, key down and up, modifiers up.
void PressKeys(std::initializer_list<WORD> modifiers, WORD key);
// Makes the dialog the foreground window with the focus on `focus`.
void Activate(HWND dialog, HWND focus);
// Calls `create`, which may run a modal property sheet, with a timer going that calls `inside`
// once while the sheet is up (the parent of the first page logged) and then cancels it.
INT_PTR RunSheet(std::function<void(HWND)> inside, std::function<INT_PTR()> create);

RECT RectInParent(HWND window);
std::wstring WindowText(HWND window);

}  // namespace tabs_test

inline bool operator==(const RECT& a, const RECT& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}
inline std::ostream& operator<<(std::ostream& out, const RECT& r) {
    return out << "(" << r.left << ", " << r.top << ", " << r.right << ", " << r.bottom << ")";
}
