// The calendar driver, and the suite's set-up: the host registers its "DatePicker" grid, then one
// calendar runs so that what the system keeps from its first dialog, combo boxes and grid
// painting on does not count as left behind by the first test.
#include "calendar_test.h"

namespace calendar_test {

namespace {

const UINT_PTR kSafetyTimer = 0x4B41;
const DWORD kSafetyDelay = 5000;

void CALLBACK cancelStuckCalendar(HWND, UINT, UINT_PTR, DWORD) {
    HWND dialog = FindWindowW(L"#32770", L"Calendar");
    if (dialog) PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
}

}  // namespace

int CalendarDriver::run(std::vector<Step> steps, const std::function<int()>& open) {
    size_t next = 0;
    bool cancelled = false;
    owner_.setHandler([&](HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT*) {
        if (message != WM_ENTERIDLE || wParam != MSGF_DIALOGBOX) return false;
        HWND dialog = reinterpret_cast<HWND>(lParam);
        if (next < steps.size()) {
            ++stepsRun_;
            steps[next++](dialog);
            // Another round of the dialog's loop, and so another idle call, even if the step
            // left nothing to do.
            PostMessageW(dialog, WM_NULL, 0, 0);
        } else if (!cancelled) {
            cancelled = leftOpen_ = true;
            PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
        }
        return false;
    });
    UINT_PTR timer = SetTimer(nullptr, kSafetyTimer, kSafetyDelay, cancelStuckCalendar);
    int result = open();
    KillTimer(nullptr, timer);
    owner_.setHandler(nullptr);
    kvtest::PumpMessages();
    return result;
}

namespace {

class CalendarSetUp : public ::testing::Environment {
public:
    void SetUp() override {
        HMODULE grid = LoadLibraryW(L"datepicker.dll");
        auto registerGrid = reinterpret_cast<BOOL(WINAPI*)()>(GetProcAddress(grid, "DatePicker_Register"));
        ASSERT_TRUE(registerGrid && registerGrid()) << "the host's DatePicker grid";
        kvtest::HostWindow owner;
        SetForegroundWindow(owner);
        // The first edit field to take the focus sets up the input method.
        HWND field = owner.createChild(L"Edit", L"", WS_VISIBLE, 10, 10, 100, 20, 1);
        SetFocus(field);
        kvtest::PumpFor(20);
        CalendarDriver driver(owner);
        int date = 20240515, end = 20240520;
        driver.run({[](HWND dialog) {
                        Choose(dialog, kQuickCombo, 3);
                        Type(dialog, kStartField, L"1.5.2024");
                        ClickDay(GetDlgItem(dialog, kGrid), 20240510);
                        Press(dialog, IDCANCEL);
                    }},
                   [&] { return Kx1ToolKalender(nullptr, owner, KAL_QUICKCHOICE | KAL_RANGE, &date, &end); });
        Kx1PopupKalender(owner, 0, 400, 100);
        kvtest::PumpFor(50);
        DestroyWindow(FindWindowW(DATEPICKER_CLASS, L"DatePicker Popup"));
        kvtest::PumpMessages();
    }
};

const auto* const g_setUp = ::testing::AddGlobalTestEnvironment(new CalendarSetUp);

}  // namespace
}  // namespace calendar_test
