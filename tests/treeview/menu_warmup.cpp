// The first popup menu of a process leaves objects cached in the system (its font, its arrow
// and check bitmaps, its regions). One menu is shown and ended here before the first test, as
// the shared warm-up does for the controls, so that the first menu test is not charged for them.
#include "kvtest.h"
#include "kvkit_core.h"

namespace {

class MenuWarmUp : public ::testing::Environment {
public:
    void SetUp() override {
        kvtest::HostWindow owner(200, 100);
        int idle = 0;
        owner.setHandler([&](HWND, UINT message, WPARAM kind, LPARAM menuWindow, LRESULT*) {
            if (message != WM_ENTERIDLE || kind != MSGF_MENU) return false;
            // Highlight an entry, then end the menu.
            if (idle++ == 0) PostMessageW(reinterpret_cast<HWND>(menuWindow), WM_KEYDOWN, VK_DOWN, 1);
            else EndMenu();
            return true;
        });
        HMENU menu = CreatePopupMenu();
        AppendMenuW(menu, MF_STRING, 1, L"&Entry");
        AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
        AppendMenuW(menu, MF_STRING | MF_CHECKED, 2, L"Checked");
        HMENU sub = CreatePopupMenu();
        AppendMenuW(sub, MF_STRING, 3, L"Sub");
        AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(sub), L"More");
        TrackPopupMenu(menu, TPM_RETURNCMD, 50, 50, 0, owner, nullptr);
        DestroyMenu(menu);
        kvtest::PumpMessages();
    }
};

::testing::Environment* const g_menuWarmUp = ::testing::AddGlobalTestEnvironment(new MenuWarmUp);

}  // namespace
