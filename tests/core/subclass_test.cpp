// The subclass chain: install, forward, remove on WM_DESTROY, double install, and the list box
// replacement that turns Enter and Space into a double click.
#include "kvtest.h"
#include "kvkit_core.h"

namespace {

using kvtest::HostWindow;
using kvtest::KvTest;
using kvtest::MessageRecorder;

class SubclassTest : public KvTest {
protected:
    void SetUp() override {
        KvTest::SetUp();
        target = host.createChild(L"STATIC", L"target", WS_VISIBLE, 10, 10, 100, 20, 42);
        ASSERT_NE(nullptr, target);
    }
    void TearDown() override {
        if (IsWindow(target)) DestroyWindow(target);
        KvTest::TearDown();
    }
    WNDPROC currentProc() const { return reinterpret_cast<WNDPROC>(GetWindowLongW(target, GWL_WNDPROC)); }

    HostWindow host;
    HWND target = nullptr;
};

// Replacement procedures written the way every replacement of the library is written.
int g_firstCalls;
int g_secondCalls;
LRESULT CALLBACK firstReplacement(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    ++g_firstCalls;
    WNDPROC previous = Kx1GetSubProc(message == WM_DESTROY, window);
    if (!previous) return 0;
    return CallWindowProcW(previous, window, message, wParam, lParam);
}
LRESULT CALLBACK secondReplacement(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    ++g_secondCalls;
    WNDPROC previous = Kx1GetSubProc(message == WM_DESTROY, window);
    if (!previous) return 0;
    return CallWindowProcW(previous, window, message, wParam, lParam);
}

TEST_F(SubclassTest, NullWindowsAreRefused) {
    EXPECT_EQ(0, Kx1SetSubProc(nullptr, firstReplacement));
    EXPECT_EQ(nullptr, Kx1GetSubProc(0, nullptr));
    EXPECT_EQ(nullptr, Kx1GetSubProc(1, nullptr));
}

TEST_F(SubclassTest, InstallRemembersThePreviousProcedureInACell) {
    WNDPROC original = currentProc();
    int live = KvText_LiveAllocations();
    EXPECT_EQ(nullptr, Kx1GetSubProc(0, target));

    ASSERT_EQ(1, Kx1SetSubProc(target, firstReplacement));
    EXPECT_EQ(live + 1, KvText_LiveAllocations());
    EXPECT_EQ(reinterpret_cast<WNDPROC>(firstReplacement), currentProc());
    // The property holds the address of a cell, never the procedure itself.
    auto* cell = static_cast<WNDPROC*>(GetPropW(target, L"OldProc"));
    ASSERT_NE(nullptr, cell);
    EXPECT_NE(reinterpret_cast<void*>(original), static_cast<void*>(cell));
    EXPECT_EQ(original, *cell);
    EXPECT_EQ(original, Kx1GetSubProc(0, target));

    // Messages reach the original through the replacement.
    g_firstCalls = 0;
    SetWindowTextW(target, L"changed");
    wchar_t text[16];
    GetWindowTextW(target, text, 16);
    EXPECT_STREQ(L"changed", text);
    EXPECT_GE(g_firstCalls, 2);

    // Removal puts the original back, frees the cell, and is a no-op the second time.
    EXPECT_EQ(original, Kx1GetSubProc(1, target));
    EXPECT_EQ(original, currentProc());
    EXPECT_EQ(nullptr, GetPropW(target, L"OldProc"));
    EXPECT_EQ(live, KvText_LiveAllocations());
    EXPECT_EQ(nullptr, Kx1GetSubProc(1, target));
    EXPECT_EQ(original, currentProc());
}

TEST_F(SubclassTest, FailedAllocationLeavesTheWindowUntouched) {
    WNDPROC original = currentProc();
    KvText_FailAllocation(1);
    EXPECT_EQ(0, Kx1SetSubProc(target, firstReplacement));
    EXPECT_EQ(original, currentProc());
    EXPECT_EQ(nullptr, GetPropW(target, L"OldProc"));
}

TEST_F(SubclassTest, DestroyRestoresTheOriginalBeforeForwarding) {
    MessageRecorder original(target);  // sits in front of the class procedure
    ASSERT_EQ(1, Kx1SetSubProc(target, firstReplacement));
    DestroyWindow(target);
    EXPECT_EQ(1, original.count(WM_DESTROY));
    // The cell was freed by the destroy message itself (the fixture checks the live count).
}

TEST_F(SubclassTest, ACellHoldingNullIsNeitherRestoredNorFreed) {
    WNDPROC original = currentProc();
    auto* cell = static_cast<WNDPROC*>(GetMemory(sizeof(WNDPROC)));
    *cell = nullptr;
    SetPropW(target, L"OldProc", cell);
    EXPECT_EQ(nullptr, Kx1GetSubProc(1, target));
    EXPECT_EQ(nullptr, GetPropW(target, L"OldProc"));
    EXPECT_EQ(original, currentProc());
    FreeMemory(cell);  // still allocated: the caller's to free
}

// Single level per window: a second install saves the first replacement as "previous" and loses
// the first cell. On WM_DESTROY the second replacement forwards to the first, which finds no
// property and swallows the message, so the window's own procedure never sees it. (Any message
// before that would loop between the two, which is why one level per window is the rule; a
// hidden window is destroyed with WM_DESTROY as its first message.)
TEST_F(SubclassTest, DoubleInstallLosesTheFirstCell) {
    ShowWindow(target, SW_HIDE);
    MessageRecorder original(target);
    ASSERT_EQ(1, Kx1SetSubProc(target, firstReplacement));
    auto* firstCell = static_cast<WNDPROC*>(GetPropW(target, L"OldProc"));
    ASSERT_EQ(1, Kx1SetSubProc(target, secondReplacement));
    EXPECT_EQ(reinterpret_cast<WNDPROC>(firstReplacement), Kx1GetSubProc(0, target));

    g_firstCalls = g_secondCalls = 0;
    DestroyWindow(target);
    EXPECT_GE(g_secondCalls, 1);
    EXPECT_GE(g_firstCalls, 1);
    EXPECT_EQ(0, original.count(WM_DESTROY));
    FreeMemory(firstCell);  // the lost cell, so that the fixture's balance holds
}

class ListBoxReplacementTest : public KvTest {
protected:
    void SetUp() override {
        KvTest::SetUp();
        list = host.createChild(L"LISTBOX", nullptr, WS_VISIBLE | WS_BORDER | LBS_NOTIFY, 10, 10,
                                150, 100, 0x10077);
        for (const wchar_t* text : {L"alpha", L"beta", L"gamma"})
            SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
        SendMessageW(list, LB_SETCURSEL, 1, 0);
    }
    void TearDown() override {
        if (IsWindow(list)) DestroyWindow(list);  // frees the replacement's cell
        KvTest::TearDown();
    }

    std::vector<kvtest::RecordedMessage> doubleClicks() const {
        std::vector<kvtest::RecordedMessage> found;
        for (const auto& m : host.messages(WM_COMMAND))
            if (HIWORD(m.wParam) == LBN_DBLCLK) found.push_back(m);
        return found;
    }

    HostWindow host;
    HWND list = nullptr;
};

TEST_F(ListBoxReplacementTest, EnterAndSpaceActAsADoubleClick) {
    MessageRecorder behind(list);  // sees only what the replacement forwards
    ASSERT_EQ(1, Kx1SetListBoxProc(list));
    for (WPARAM key : {WPARAM(VK_RETURN), WPARAM(VK_SPACE)}) {
        host.clear();
        behind.clear();
        EXPECT_EQ(0, SendMessageW(list, WM_KEYDOWN, key, 0x001C0001));
        auto clicks = doubleClicks();
        ASSERT_EQ(1u, clicks.size()) << "key " << key;
        // Only the low 16 bits of the control id travel in the low word.
        EXPECT_EQ(MAKEWPARAM(0x0077, LBN_DBLCLK), clicks[0].wParam);
        EXPECT_EQ(reinterpret_cast<LPARAM>(list), clicks[0].lParam);
        EXPECT_EQ(0, behind.count(WM_KEYDOWN));
    }
    DestroyWindow(list);  // while the recorder still sits behind the replacement
}

TEST_F(ListBoxReplacementTest, OtherKeysReachTheListBox) {
    MessageRecorder behind(list);
    ASSERT_EQ(1, Kx1SetListBoxProc(list));
    host.clear();
    SendMessageW(list, WM_KEYDOWN, VK_DOWN, 0);
    EXPECT_EQ(1, behind.count(WM_KEYDOWN));
    EXPECT_EQ(2, SendMessageW(list, LB_GETCURSEL, 0, 0));
    EXPECT_TRUE(doubleClicks().empty());
    DestroyWindow(list);
}

TEST_F(ListBoxReplacementTest, TypedEnterGivesExactlyOneDoubleClick) {
    ASSERT_EQ(1, Kx1SetListBoxProc(list));
    SetForegroundWindow(host);
    SetFocus(list);
    kvtest::PumpMessages();
    ASSERT_EQ(list, GetFocus());
    host.clear();
    INPUT keys[2] = {};
    keys[0].type = keys[1].type = INPUT_KEYBOARD;
    keys[0].ki.wVk = keys[1].ki.wVk = VK_RETURN;
    keys[1].ki.dwFlags = KEYEVENTF_KEYUP;
    ASSERT_EQ(2u, SendInput(2, keys, sizeof(INPUT)));
    kvtest::PumpFor(100);
    EXPECT_EQ(1u, doubleClicks().size());
}

TEST_F(ListBoxReplacementTest, DestroyFreesTheCell) {
    MessageRecorder behind(list);
    ASSERT_EQ(1, Kx1SetListBoxProc(list));
    DestroyWindow(list);
    EXPECT_EQ(1, behind.count(WM_DESTROY));
}

}  // namespace
