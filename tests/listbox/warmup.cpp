// What the shared warm-up does not reach yet: the first message box of the process loads the
// shared information icon, the first tooltip its shared parts, and the library's cursors are
// shared once loaded (and made into display cursors when first shown). All of them stay for the
// rest of the process, so they are loaded once before the first test.
#include "kvtest.h"
#include "kvkit2.h"

namespace {

HHOOK g_closer;

LRESULT CALLBACK closeMessageBox(int code, WPARAM wParam, LPARAM lParam) {
    wchar_t name[16] = L"";
    if (code == HCBT_ACTIVATE && GetClassNameW(reinterpret_cast<HWND>(wParam), name, 16) && lstrcmpW(name, L"#32770") == 0)
        PostMessageW(reinterpret_cast<HWND>(wParam), WM_COMMAND, IDOK, 0);
    return CallNextHookEx(g_closer, code, wParam, lParam);
}

class ListBoxWarmUp : public ::testing::Environment {
public:
    void SetUp() override {
        kvtest::HostWindow host(200, 100);
        g_closer = SetWindowsHookExW(WH_CBT, closeMessageBox, nullptr, GetCurrentThreadId());
        MessageBoxW(host, L"warm-up", L"warm-up", MB_OK | MB_ICONINFORMATION);
        UnhookWindowsHookEx(g_closer);
        HWND button = host.createChild(L"button", L"x", WS_VISIBLE, 0, 0, 20, 20, 1);
        Kx2_SetToolTip(button, L"warm-up");
        SendMessageW(button, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
        kvtest::PumpFor(50);
        HCURSOR previous = GetCursor();
        for (const wchar_t* name : {L"move", L"nofeld", L"movecur"})
            SetCursor(LoadCursorW(GetModuleHandleW(L"kvkit.dll"), name));
        SetCursor(previous);
    }
};

::testing::Environment* const g_warmUp = ::testing::AddGlobalTestEnvironment(new ListBoxWarmUp);

}  // namespace
