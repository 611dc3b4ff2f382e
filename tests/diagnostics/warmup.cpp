// First uses that leave objects cached in the system for the rest of the process: the first
// popup menu (its font, arrow and check bitmaps, regions) and the first top-level window with a
// sortable list view that the mouse clicks. They happen here, before the first test, so that no
// test is charged for them.
#include "kvtest.h"
#include <commctrl.h>
#include "kvkit_diagnostics.h"

namespace {

class DiagnosticsWarmUp : public ::testing::Environment {
public:
    void SetUp() override {
        kvtest::HostWindow owner(200, 100);
        int idle = 0;
        owner.setHandler([&](HWND, UINT message, WPARAM kind, LPARAM menuWindow, LRESULT*) {
            if (message != WM_ENTERIDLE || kind != MSGF_MENU) return false;
            if (idle++ == 0) PostMessageW(reinterpret_cast<HWND>(menuWindow), WM_KEYDOWN, VK_DOWN, 1);
            else EndMenu();
            return true;
        });
        HMENU menu = CreatePopupMenu();
        AppendMenuW(menu, MF_STRING, 1, L"&Entry\tCtrl+E");
        AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
        AppendMenuW(menu, MF_STRING | MF_CHECKED, 2, L"Checked");
        TrackPopupMenu(menu, TPM_RETURNCMD, 50, 50, 0, owner, nullptr);
        DestroyMenu(menu);

        HWND modules = KxModuleList_Show(owner);
        HWND header = ListView_GetHeader(GetDlgItem(modules, 100));
        RECT item;
        Header_GetItemRect(header, 0, &item);
        POINT at = {(item.left + item.right) / 2, (item.top + item.bottom) / 2}, screen = at;
        ClientToScreen(header, &screen);
        SetCursorPos(screen.x, screen.y);
        PostMessageW(header, WM_MOUSEMOVE, 0, MAKELPARAM(at.x, at.y));
        PostMessageW(header, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(at.x, at.y));
        PostMessageW(header, WM_LBUTTONUP, 0, MAKELPARAM(at.x, at.y));
        kvtest::PumpMessages();
        DestroyWindow(modules);
        kvtest::PumpMessages();
    }
};

::testing::Environment* const g_diagnosticsWarmUp =
    ::testing::AddGlobalTestEnvironment(new DiagnosticsWarmUp);

}  // namespace
