// Before the first test: keyboard and mouse input typed once into an edit field, so that what the
// system sets up on the first input (keyboard layout, input context) does not count as left
// behind by the first test.
#include "editbutton_test.h"

namespace {

class InputWarmUp : public ::testing::Environment {
public:
    void SetUp() override {
        kvtest::HostWindow host(200, 100);
        SetForegroundWindow(host);
        HWND edit = host.createChild(L"Edit", L"", WS_VISIBLE | WS_BORDER, 10, 10, 100, 24, 1);
        SetFocus(edit);
        editbutton_test::PressKeys({VK_MENU}, VK_DOWN);
        editbutton_test::PressKeys({}, 'A');
        editbutton_test::Click(edit, POINT{5, 5});
        editbutton_test::Click(host, POINT{150, 60}, true);
        DestroyWindow(edit);
        kvtest::PumpMessages();
    }
};

const auto* const g_warmUp = ::testing::AddGlobalTestEnvironment(new InputWarmUp);

}  // namespace
