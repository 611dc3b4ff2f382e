// Printing without a device: the system print dialog asks for the printer. The test machine has
// no printer, so every dialog that comes up is answered with Cancel from a hook, and nothing is
// printed.
#include "kvtest.h"
#include <commctrl.h>
#include "kvkit_treeprint.h"

namespace {

// Cancels every dialog and message box of this thread as it is activated; counts them.
class DialogCanceller {
public:
    DialogCanceller() {
        s_shown = 0;
        hook_ = SetWindowsHookExW(WH_CBT, onEvent, nullptr, GetCurrentThreadId());
    }
    ~DialogCanceller() { UnhookWindowsHookEx(hook_); }
    int shown() const { return s_shown; }

private:
    static LRESULT CALLBACK onEvent(int code, WPARAM wParam, LPARAM lParam) {
        if (code == HCBT_ACTIVATE) {
            ++s_shown;
            PostMessageW(reinterpret_cast<HWND>(wParam), WM_COMMAND, IDCANCEL, 0);
        }
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }
    static int s_shown;
    HHOOK hook_;
};
int DialogCanceller::s_shown;

// The first print dialog of a process loads the printing system, which stays.
class PrintDialogWarmUp : public ::testing::Environment {
public:
    void SetUp() override {
        kvtest::HostWindow host(100, 100);
        HWND tree = host.createChild(WC_TREEVIEWW, L"", 0, 0, 0, 100, 100, 1);
        TVINSERTSTRUCTW insert = {};
        insert.item.mask = TVIF_TEXT;
        insert.item.pszText = const_cast<wchar_t*>(L"Item");
        TreeView_InsertItem(tree, &insert);
        DialogCanceller canceller;
        KxTreeView_Print(tree, nullptr, nullptr, L"Warm-up", 0);
        kvtest::PumpMessages();
    }
};
::testing::Environment* const g_printDialogWarmUp =
    ::testing::AddGlobalTestEnvironment(new PrintDialogWarmUp);

class PrintDialogTest : public kvtest::KvTest {};

TEST_F(PrintDialogTest, WithoutADeviceThePrintDialogAsksAndCancelPrintsNothing) {
    kvtest::HostWindow host(200, 200);
    HWND tree = host.createChild(WC_TREEVIEWW, L"", WS_VISIBLE, 0, 0, 200, 200, 1);
    TVINSERTSTRUCTW insert = {};
    insert.item.mask = TVIF_TEXT;
    insert.item.pszText = const_cast<wchar_t*>(L"Customer");
    TreeView_InsertItem(tree, &insert);
    DialogCanceller canceller;
    EXPECT_EQ(0, KxTreeView_Print(tree, nullptr, nullptr, L"Customers", 0));
    EXPECT_GE(canceller.shown(), 1);
    // No dialog is left open.
    kvtest::PumpMessages();
    EXPECT_EQ(nullptr, FindWindowW(L"#32770", nullptr));
}

}  // namespace
