// The first navigation bar of a process registers the class, whose icon the system then keeps
// loaded, and the first bar with a scroll bar fills the system's scroll bar caches. One bar goes
// through all of that before the first test, so that no test is charged for them.
#include "kvtest.h"
#include "kvkit_navigation.h"

namespace {

class BarWarmUp : public ::testing::Environment {
public:
    void SetUp() override {
        kvtest::HostWindow host(200, 100);
        HWND bar = KNg_Create(host, 1, 0, 0, 200, 100, 16);
        int group = KNg_AddGroup(bar, L"Group", 0);
        for (int i = 0; i < 20; ++i) KNg_AddEntry(bar, group, nullptr, L"Entry", i, 0);
        SetFocus(bar);
        UpdateWindow(bar);
        SendMessageW(bar, WM_MOUSEMOVE, 0, MAKELPARAM(10, 10));
        kvtest::PumpMessages();
        DestroyWindow(bar);
        kvtest::PumpMessages();
    }
};

::testing::Environment* const g_barWarmUp = ::testing::AddGlobalTestEnvironment(new BarWarmUp);

}  // namespace
