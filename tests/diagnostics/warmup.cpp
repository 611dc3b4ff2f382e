// The first top-level window with a sortable list view that the mouse clicks leaves objects
// cached in the system for the rest of the process. It happens here, before the first test, so
// that no test is charged for them.
#include "kvtest.h"
#include <commctrl.h>
#include "kvkit_diagnostics.h"

namespace {

class DiagnosticsWarmUp : public ::testing::Environment {
public:
    void SetUp() override {
        kvtest::HostWindow owner(200, 100);
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
