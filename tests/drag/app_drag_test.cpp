// The application-wide drag carried by the real mouse over windows that answer its messages: who
// is asked, who refuses, who receives the drop, and how the owner learns the end; Escape, a lost
// capture and the stop function; the start's failures.
#include "drag_fixture.h"

namespace {

// A window that answers the drag's query and drop, and keeps copies of what it received.
class DropTarget {
public:
    DropTarget(HWND parent, int x, int y, int answerQuery, int answerDrop)
        : query_(answerQuery), drop_(answerDrop) {
        registerClass();
        window_ = CreateWindowExW(0, kClass, L"", WS_CHILD | WS_VISIBLE, x, y, 80, 60, parent, nullptr,
                                  GetModuleHandleW(nullptr), this);
    }
    ~DropTarget() {
        if (IsWindow(window_)) DestroyWindow(window_);
    }
    operator HWND() const { return window_; }
    POINT centre() const { return {40, 30}; }

    std::vector<UINT> messages;
    std::vector<KVDDMESSAGE> blocks;

private:
    static constexpr const wchar_t* kClass = L"KvTestDropTarget";
    static void registerClass() {
        static bool registered = false;
        if (registered) return;
        WNDCLASSW windowClass = {};
        windowClass.lpfnWndProc = proc;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        windowClass.lpszClassName = kClass;
        RegisterClassW(&windowClass);
        registered = true;
    }
    static LRESULT CALLBACK proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == WM_NCCREATE)
            SetWindowLongPtrW(window, GWLP_USERDATA,
                              reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams));
        auto* self = reinterpret_cast<DropTarget*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (self && (message == KVDD_QUERY || message == KVDD_DROP)) {
            self->messages.push_back(message);
            self->blocks.push_back(*reinterpret_cast<KVDDMESSAGE*>(lParam));
            EXPECT_EQ(0, *reinterpret_cast<int*>(wParam));  // zero on entry
            *reinterpret_cast<int*>(wParam) = message == KVDD_QUERY ? self->query_ : self->drop_;
            return 0;
        }
        return DefWindowProcW(window, message, wParam, lParam);
    }
    HWND window_;
    int query_, drop_;
};

HWND dragWindow() { return FindWindowW(L"Static", L"KVDDS"); }

HCURSOR makeCursor(BYTE fill) {
    BYTE andMask[32 * 4], xorMask[32 * 4];
    memset(andMask, 0xFF, sizeof(andMask));
    memset(xorMask, fill, sizeof(xorMask));
    return CreateCursor(GetModuleHandleW(nullptr), 1, 1, 32, 32, andMask, xorMask);
}

class AppDragTest : public kvtest::KvTest {
protected:
    void SetUp() override {
        KvTest::SetUp();
        owner = std::make_unique<kvtest::HostWindow>(400, 200);
        SetForegroundWindow(*owner);
        accepting = std::make_unique<DropTarget>(*owner, 20, 20, 1, 0);
        refusing = std::make_unique<DropTarget>(*owner, 120, 20, 0, 0);
        keeping = std::make_unique<DropTarget>(*owner, 220, 20, 1, 5);  // takes the drop, says not done
        kvtest::PumpMessages();
    }
    void TearDown() override {
        Kx1StopGlobalDragAndDrop(nullptr, 0);
        MouseButton(MOUSEEVENTF_LEFTUP);
        kvtest::PumpMessages();
        accepting.reset();
        refusing.reset();
        keeping.reset();
        owner.reset();
        KvTest::TearDown();
    }
    static void over(HWND window) {
        MoveMouse(window, 40, 30);
    }
    // The owner's notifications: (message, wParam, lParam).
    std::vector<std::vector<LPARAM>> endings() const {
        std::vector<std::vector<LPARAM>> found;
        for (const kvtest::RecordedMessage& m : owner->messages())
            if (m.message == KVDD_ENDED || m.message == KVDD_DROPPED)
                found.push_back({static_cast<LPARAM>(m.message), static_cast<LPARAM>(m.wParam), m.lParam});
        return found;
    }

    std::unique_ptr<kvtest::HostWindow> owner;
    std::unique_ptr<DropTarget> accepting, refusing, keeping;
    int user = 0;
};

TEST_F(AppDragTest, TheWindowUnderTheCursorIsAskedAndReceivesTheDrop) {
    HCURSOR accept = makeCursor(0x00), refuse = makeCursor(0xFF);
    MoveMouse(*owner, 300, 150);
    MouseButton(MOUSEEVENTF_LEFTDOWN);
    ASSERT_EQ(KVDD_STARTED, Kx1StartGlobalDragAndDrop(KVDD_RESTORE_FOCUS, 42, *owner, *owner, accept,
                                                      refuse, &user));
    HWND drag = dragWindow();
    ASSERT_TRUE(drag);
    EXPECT_FALSE(IsWindowVisible(drag));
    EXPECT_EQ(drag, GetCapture());
    EXPECT_EQ(drag, GetFocus());
    EXPECT_EQ(1, Kx1IsActiveGlobalDragAndDrop(*owner));
    EXPECT_EQ(0, Kx1IsActiveGlobalDragAndDrop(*accepting));
    // A second drag cannot start meanwhile.
    EXPECT_EQ(KVDD_ALREADY_ACTIVE, Kx1StartGlobalDragAndDrop(0, 1, *accepting, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(drag, dragWindow());

    over(*refusing);
    EXPECT_EQ(refuse, GetCursor());
    over(*accepting);
    EXPECT_EQ(accept, GetCursor());
    ASSERT_EQ(1u, refusing->messages.size());
    ASSERT_EQ(1u, accepting->messages.size());
    const KVDDMESSAGE& block = accepting->blocks[0];
    EXPECT_EQ(28u, block.size);
    EXPECT_EQ(*owner, block.owner);
    EXPECT_EQ(*owner, block.root);
    POINT screen = {40, 30};
    ClientToScreen(*accepting, &screen);
    EXPECT_EQ(screen.x, block.x);
    EXPECT_EQ(screen.y, block.y);
    EXPECT_EQ(42, block.format);
    EXPECT_EQ(&user, block.user);

    Release();
    EXPECT_EQ((std::vector<UINT>{KVDD_QUERY, KVDD_DROP}), accepting->messages);
    EXPECT_EQ((std::vector<std::vector<LPARAM>>{{KVDD_DROPPED, 42, reinterpret_cast<LPARAM>(&user)}}), endings());
    EXPECT_FALSE(IsWindow(drag));
    EXPECT_EQ(0, Kx1IsActiveGlobalDragAndDrop(*owner));
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_EQ(*owner, GetFocus());
    ICONINFO info;  // both cursors were destroyed
    EXPECT_FALSE(GetIconInfo(refuse, &info));
    EXPECT_FALSE(GetIconInfo(accept, &info));
}

TEST_F(AppDragTest, TheOwnerLearnsOnceOfADropRefusedOrNotDone) {
    // Released over a window that never accepted.
    ASSERT_EQ(KVDD_STARTED, Kx1StartGlobalDragAndDrop(0, 7, *owner, nullptr, nullptr, nullptr, &user));
    over(*accepting);
    over(*refusing);
    Release();
    EXPECT_EQ((std::vector<std::vector<LPARAM>>{{KVDD_ENDED, 7, reinterpret_cast<LPARAM>(&user)}}), endings());
    EXPECT_EQ(1u, refusing->messages.size());
    EXPECT_EQ(nullptr, dragWindow());
    // The system cursors are shared and stay.
    EXPECT_TRUE(LoadCursorW(nullptr, IDC_NO));

    // The target takes the drop but answers non-zero: ended, not dropped.
    owner->clear();
    ASSERT_EQ(KVDD_STARTED, Kx1StartGlobalDragAndDrop(0, 8, *owner, nullptr, nullptr, nullptr, nullptr));
    over(*keeping);
    Release();
    EXPECT_EQ((std::vector<UINT>{KVDD_QUERY, KVDD_DROP}), keeping->messages);
    EXPECT_EQ((std::vector<std::vector<LPARAM>>{{KVDD_ENDED, 8, 0}}), endings());

    // Without notifications the owner hears nothing at all.
    owner->clear();
    ASSERT_EQ(KVDD_STARTED, Kx1StartGlobalDragAndDrop(KVDD_NO_NOTIFY, 9, *owner, nullptr, nullptr, nullptr, nullptr));
    over(*accepting);
    Release();
    EXPECT_EQ((std::vector<UINT>{KVDD_QUERY, KVDD_QUERY, KVDD_DROP}), accepting->messages);
    EXPECT_TRUE(endings().empty());
}

TEST_F(AppDragTest, OnlyWindowsUnderTheRootMayAcceptWithTheRootOption) {
    kvtest::HostWindow elsewhere(200, 100);
    DropTarget outside(elsewhere, 10, 10, 1, 0);
    MoveWindow(elsewhere, 500, 300, 220, 140, TRUE);
    kvtest::PumpMessages();
    ASSERT_EQ(KVDD_STARTED, Kx1StartGlobalDragAndDrop(KVDD_ROOT_ONLY, 1, *owner, *owner, nullptr, nullptr, nullptr));
    over(*accepting);
    HCURSOR accept = GetCursor();
    over(outside);
    EXPECT_TRUE(outside.messages.empty());  // refused without being asked
    EXPECT_EQ(accept, GetCursor());         // the cursor keeps its last shape
    Release();
    EXPECT_EQ(KVDD_ENDED, endings().at(0)[0]);
    EXPECT_EQ(1u, accepting->messages.size());

    // A null root refuses every window.
    owner->clear();
    ASSERT_EQ(KVDD_STARTED, Kx1StartGlobalDragAndDrop(KVDD_ROOT_ONLY, 1, *owner, nullptr, nullptr, nullptr, nullptr));
    over(*accepting);
    Release();
    EXPECT_EQ(1u, accepting->messages.size());
    EXPECT_EQ(KVDD_ENDED, endings().at(0)[0]);
}

TEST_F(AppDragTest, EscapeEndsTheDragWhileItHasTheFocus) {
    HWND field = owner->createChild(L"Edit", L"", WS_VISIBLE, 20, 120, 100, 24, 5);
    SetFocus(field);
    SetCapture(*owner);
    ASSERT_EQ(KVDD_STARTED, Kx1StartGlobalDragAndDrop(KVDD_RESTORE_CAPTURE | KVDD_RESTORE_FOCUS, 3,
                                                      *owner, nullptr, nullptr, nullptr, nullptr));
    HWND drag = dragWindow();
    over(*accepting);
    PressKey(VK_ESCAPE);
    EXPECT_FALSE(IsWindow(drag));
    EXPECT_EQ(*owner, GetCapture());  // given back to its previous holder
    EXPECT_EQ(field, GetFocus());
    EXPECT_EQ((std::vector<std::vector<LPARAM>>{{KVDD_ENDED, 3, 0}}), endings());
    ReleaseCapture();
    // Other keys are swallowed; Escape without the focus does nothing.
    owner->clear();
    ASSERT_EQ(KVDD_STARTED, Kx1StartGlobalDragAndDrop(0, 4, *owner, nullptr, nullptr, nullptr, nullptr));
    drag = dragWindow();
    PressKey('A');
    EXPECT_TRUE(IsWindow(drag));
    SendMessageW(drag, WM_KILLFOCUS, reinterpret_cast<WPARAM>(drag), 0);  // focus "lost" to itself
    EXPECT_TRUE(IsWindow(drag));
    SendMessageW(drag, WM_KEYUP, VK_ESCAPE, 0);  // the focus flag was toggled off: ignored
    kvtest::PumpMessages();
    EXPECT_TRUE(IsWindow(drag));
    EXPECT_EQ(drag, GetCapture());
    Release();
    EXPECT_FALSE(IsWindow(drag));
}

TEST_F(AppDragTest, ALostCaptureOrFocusOrTheStopFunctionEndTheDrag) {
    ASSERT_EQ(KVDD_STARTED, Kx1StartGlobalDragAndDrop(0, 5, *owner, nullptr, nullptr, nullptr, nullptr));
    HWND drag = dragWindow();
    over(*accepting);
    SetCapture(*owner);
    kvtest::PumpMessages();
    EXPECT_FALSE(IsWindow(drag));
    EXPECT_EQ(*owner, GetCapture());  // the new holder keeps it
    ReleaseCapture();
    EXPECT_EQ((std::vector<std::vector<LPARAM>>{{KVDD_ENDED, 5, 0}}), endings());

    owner->clear();
    ASSERT_EQ(KVDD_STARTED, Kx1StartGlobalDragAndDrop(0, 6, *owner, nullptr, nullptr, nullptr, nullptr));
    drag = dragWindow();
    SetFocus(*owner);
    kvtest::PumpMessages();
    EXPECT_FALSE(IsWindow(drag));
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_EQ(1u, endings().size());

    // Stop: the next drag may start at once, before the old window is gone.
    owner->clear();
    HCURSOR accept = makeCursor(0x00);
    ASSERT_EQ(KVDD_STARTED, Kx1StartGlobalDragAndDrop(0, 7, *owner, nullptr, accept, nullptr, nullptr));
    drag = dragWindow();
    EXPECT_EQ(0, Kx1StopGlobalDragAndDrop(nullptr, 1));
    EXPECT_EQ(0, Kx1IsActiveGlobalDragAndDrop(*owner));
    EXPECT_EQ(nullptr, GetCapture());
    ASSERT_EQ(KVDD_STARTED, Kx1StartGlobalDragAndDrop(0, 8, *owner, nullptr, nullptr, nullptr, nullptr));
    kvtest::PumpMessages();
    EXPECT_FALSE(IsWindow(drag));
    ICONINFO info;
    EXPECT_FALSE(GetIconInfo(accept, &info));
    // Cancelling marked the system's refuse cursor as the caller's: being shared, it stays.
    ASSERT_TRUE(GetIconInfo(LoadCursorW(nullptr, IDC_NO), &info));
    DeleteObject(info.hbmMask);
    if (info.hbmColor) DeleteObject(info.hbmColor);
    EXPECT_EQ(1, Kx1IsActiveGlobalDragAndDrop(*owner));
    EXPECT_EQ(0, Kx1StopGlobalDragAndDrop(nullptr, 0));
    kvtest::PumpMessages();
    EXPECT_EQ((std::vector<std::vector<LPARAM>>{{KVDD_ENDED, 7, 0}, {KVDD_ENDED, 8, 0}}), endings());
    EXPECT_EQ(0, Kx1StopGlobalDragAndDrop(nullptr, 0));  // none active
    EXPECT_EQ(0, Kx1IsActiveGlobalDragAndDrop(nullptr));
}

HHOOK g_creationHook;
LRESULT CALLBACK refuseDragWindow(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HCBT_CREATEWND) {
        auto* create = reinterpret_cast<CBT_CREATEWNDW*>(lParam)->lpcs;
        if (!IS_INTRESOURCE(create->lpszName) && create->lpszName && lstrcmpW(create->lpszName, L"KVDDS") == 0)
            return 1;
    }
    return CallNextHookEx(g_creationHook, code, wParam, lParam);
}

TEST_F(AppDragTest, AStartThatFailsLeavesNothingBehind) {
    g_creationHook = SetWindowsHookExW(WH_CBT, refuseDragWindow, nullptr, GetCurrentThreadId());
    EXPECT_EQ(KVDD_NO_WINDOW, Kx1StartGlobalDragAndDrop(0, 1, *owner, nullptr, nullptr, nullptr, nullptr));
    UnhookWindowsHookEx(g_creationHook);
    KvText_FailAllocation(1);
    EXPECT_EQ(KVDD_NO_MEMORY, Kx1StartGlobalDragAndDrop(0, 1, *owner, nullptr, nullptr, nullptr, nullptr));
    kvtest::PumpMessages();
    EXPECT_EQ(nullptr, dragWindow());
    EXPECT_EQ(0, Kx1IsActiveGlobalDragAndDrop(*owner));
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_TRUE(endings().empty());
    // And the next one starts.
    EXPECT_EQ(KVDD_STARTED, Kx1StartGlobalDragAndDrop(0, 1, *owner, nullptr, nullptr, nullptr, nullptr));
}

TEST_F(AppDragTest, TheAppRootFollowsParentsAndOwners) {
    EXPECT_EQ(nullptr, Kx1GetAppRoot(nullptr));
    EXPECT_EQ(static_cast<HWND>(*owner), Kx1GetAppRoot(*accepting));
    HWND inner = CreateWindowExW(0, L"Button", L"", WS_CHILD, 0, 0, 5, 5, *accepting, nullptr, nullptr, nullptr);
    EXPECT_EQ(static_cast<HWND>(*owner), Kx1GetAppRoot(inner));
    HWND popup = CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 5, 5, *owner, nullptr, nullptr, nullptr);
    EXPECT_EQ(static_cast<HWND>(*owner), Kx1GetAppRoot(popup));
    EXPECT_EQ(static_cast<HWND>(*owner), Kx1GetAppRoot(*owner));
    DestroyWindow(popup);
}

}  // namespace
