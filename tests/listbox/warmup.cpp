// The library's list-box cursors are shared once loaded (and made into display cursors when
// first shown) and stay for the rest of the process, so they are loaded once before the first
// test.
#include "kvtest.h"

namespace {

class ListBoxWarmUp : public ::testing::Environment {
public:
    void SetUp() override {
        HCURSOR previous = GetCursor();
        for (const wchar_t* name : {L"move", L"nofeld", L"movecur"})
            SetCursor(LoadCursorW(GetModuleHandleW(L"kvkit.dll"), name));
        SetCursor(previous);
    }
};

::testing::Environment* const g_warmUp = ::testing::AddGlobalTestEnvironment(new ListBoxWarmUp);

}  // namespace
