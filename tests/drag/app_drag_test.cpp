// The application-wide drag carried by the real mouse over windows that answer its messages: who
// is asked, who refuses, who receives the drop, how the owner learns the end; Escape, a lost
// capture or focus and the stop function; the start's failures.
#include "drag_fixture.h"

namespace {

// A child window that answers the query and the drop as told, and keeps what it received.
class DropTarget {
public:
    DropTarget(HWND parent, int x, int answerQuery, int answerDrop) : query_(answerQuery), drop_(answerDrop) {
        static const ATOM atom = [] {
            WNDCLASSW windowClass = {};
            windowClass.lpfnWndProc = proc;
            windowClass.hInstance = GetModuleHandleW(nullptr);
            windowClass.lpszClassName = L"KvTestDropTarget";
            return RegisterClassW(&windowClass);
        }();
        window_ = CreateWindowExW(0, MAKEINTATOM(atom), L"", WS_CHILD | WS_VISIBLE, x, 20, 80, 60, parent,
                                  nullptr, GetModuleHandleW(nullptr), this);
    }
    ~DropTarget() { DestroyWindow(window_); }
    operator HWND() const { return window_; }

    std::vector<UINT> messages;
    std::vector<KVDDMESSAGE> blocks;

private:
    static LRESULT CALLBACK proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == WM_NCCREATE)
            SetWindowLongPtrW(window, GWLP_USERDATA,
                              reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams));
        auto* self = reinterpret_cast<DropTarget*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (!self || (message != KVDD_QUERY && message != KVDD_DROP))
            return DefWindowProcW(window, message, wParam, lParam);
        self->messages.push_back(message);
        self->blocks.push_back(*reinterpret_cast<KVDDMESSAGE*>(lParam));
        int* answer = reinterpret_cast<int*>(wParam);
        EXPECT_EQ(0, *answer);
        *answer = message == KVDD_QUERY ? self->query_ : self->drop_;
        return 0;
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

bool cursorExists(HCURSOR cursor) {
    ICONINFO info;
    if (!GetIconInfo(cursor, &info)) return false;
    DeleteObject(info.hbmMask);
    if (info.hbmColor) DeleteObject(info.hbmColor);
    return true;
}

class AppDragTest : public kvtest::KvTest {
protected:
    void SetUp() override {
        KvTest::SetUp();
        owner = std::make_unique<kvtest::HostWindow>(400, 200);
        SetForegroundWindow(*owner);
        accepting = std::make_unique<DropTarget>(*owner, 20, 1, 0);
        refusing = std::make_unique<DropTarget>(*owner, 120, 0, 0);
        keeping = std::make_unique<DropTarget>(*owner, 220, 1, 5);  // takes the drop, says not done
        kvtest::PumpMessages();
    }
    void TearDown() override {
        Kx1StopGlobalDragAndDrop(nullptr, 0);
        Release();
        accepting.reset();
        refusing.reset();
        keeping.reset();
        owner.reset();
        KvTest::TearDown();
    }
    int start(long options, KVDDFormat format, HWND root = nullptr, HICON accept = nullptr,
              HICON refuse = nullptr, void* user = nullptr) {
        return Kx1StartGlobalDragAndDrop(options, format, *owner, root, accept, refuse, user);
    }
    static void over(HWND window) { MoveMouse(window, 40, 30); }
    // The owner's notifications: message, wParam, lParam.
    std::vector<std::vector<LPARAM>> endings() const {
        std::vector<std::vector<LPARAM>> found;
        for (const kvtest::RecordedMessage& m : owner->messages())
            if (m.message == KVDD_ENDED || m.message == KVDD_DROPPED)
                found.push_back({static_cast<LPARAM>(m.message), static_cast<LPARAM>(m.wParam), m.lParam});
        return found;
    }
    using Endings = std::vector<std::vector<LPARAM>>;

    std::unique_ptr<kvtest::HostWindow> owner;
    std::unique_ptr<DropTarget> accepting, refusing, keeping;
    int user = 0;
};

TEST_F(AppDragTest, TheWindowUnderTheCursorIsAskedAndReceivesTheDrop) {
    HCURSOR accept = makeCursor(0x00), refuse = makeCursor(0xFF);
    MoveMouse(*owner, 300, 150);
    SendInputs({MouseInput(MOUSEEVENTF_LEFTDOWN)});
    ASSERT_EQ(KVDD_STARTED, start(KVDD_RESTORE_FOCUS, 42, *owner, accept, refuse, &user));
    HWND drag = dragWindow();
    ASSERT_TRUE(drag);
    EXPECT_FALSE(IsWindowVisible(drag));
    EXPECT_EQ(drag, GetCapture());
    EXPECT_EQ(drag, GetFocus());
    EXPECT_EQ(1, Kx1IsActiveGlobalDragAndDrop(*owner));
    EXPECT_EQ(0, Kx1IsActiveGlobalDragAndDrop(*accepting));
    EXPECT_EQ(KVDD_ALREADY_ACTIVE, Kx1StartGlobalDragAndDrop(0, 1, *accepting, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(drag, dragWindow());

    over(*refusing);
    EXPECT_EQ(refuse, GetCursor());
    over(*accepting);
    EXPECT_EQ(accept, GetCursor());
    ASSERT_EQ(1u, refusing->messages.size());
    ASSERT_EQ(1u, accepting->messages.size());
    const KVDDMESSAGE& block = accepting->blocks[0];
    POINT screen = {40, 30};
    ClientToScreen(*accepting, &screen);
    EXPECT_EQ(28u, block.size);
    EXPECT_EQ(*owner, block.owner);
    EXPECT_EQ(*owner, block.root);
    EXPECT_EQ(screen.x, block.x);
    EXPECT_EQ(screen.y, block.y);
    EXPECT_EQ(42, block.format);
    EXPECT_EQ(&user, block.user);

    Release();
    // Hosts know the messages by their numbers.
    EXPECT_EQ((std::vector<UINT>{2004, 2005}), accepting->messages);
    EXPECT_EQ((Endings{{2007, 42, reinterpret_cast<LPARAM>(&user)}}), endings());
    EXPECT_FALSE(IsWindow(drag));
    EXPECT_EQ(0, Kx1IsActiveGlobalDragAndDrop(*owner));
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_EQ(*owner, GetFocus());
    EXPECT_FALSE(cursorExists(accept));  // the caller's cursors went with the drag
    EXPECT_FALSE(cursorExists(refuse));
}

TEST_F(AppDragTest, TheOwnerLearnsOnceOfADropRefusedOrNotDone) {
    // Released over a window that refused: ended, once.
    ASSERT_EQ(KVDD_STARTED, start(0, 7, nullptr, nullptr, nullptr, &user));
    over(*accepting);
    over(*refusing);
    Release();
    EXPECT_EQ((Endings{{KVDD_ENDED, 7, reinterpret_cast<LPARAM>(&user)}}), endings());
    EXPECT_EQ(nullptr, dragWindow());
    // The target takes the drop but answers non-zero: ended, not dropped.
    owner->clear();
    ASSERT_EQ(KVDD_STARTED, start(0, 8));
    over(*keeping);
    Release();
    EXPECT_EQ((std::vector<UINT>{KVDD_QUERY, KVDD_DROP}), keeping->messages);
    EXPECT_EQ((Endings{{KVDD_ENDED, 8, 0}}), endings());
    // Without notifications the owner hears nothing at all.
    owner->clear();
    ASSERT_EQ(KVDD_STARTED, start(KVDD_NO_NOTIFY, 9));
    over(*accepting);
    Release();
    EXPECT_EQ((std::vector<UINT>{KVDD_QUERY, KVDD_QUERY, KVDD_DROP}), accepting->messages);
    EXPECT_TRUE(endings().empty());
}

TEST_F(AppDragTest, OnlyWindowsUnderTheRootMayAcceptWithTheRootOption) {
    kvtest::HostWindow elsewhere(200, 100);
    DropTarget outside(elsewhere, 10, 1, 0);
    MoveWindow(elsewhere, 500, 300, 220, 140, TRUE);
    kvtest::PumpMessages();
    ASSERT_EQ(KVDD_STARTED, start(KVDD_ROOT_ONLY, 1, *owner));
    over(*accepting);
    HCURSOR accept = GetCursor();
    over(outside);
    EXPECT_TRUE(outside.messages.empty());  // refused without being asked
    EXPECT_EQ(accept, GetCursor());         // the cursor keeps its last shape
    Release();
    EXPECT_EQ((Endings{{KVDD_ENDED, 1, 0}}), endings());
    // A null root refuses every window.
    owner->clear();
    ASSERT_EQ(KVDD_STARTED, start(KVDD_ROOT_ONLY, 2));
    over(*accepting);
    Release();
    EXPECT_EQ(1u, accepting->messages.size());
    EXPECT_EQ((Endings{{KVDD_ENDED, 2, 0}}), endings());
}

TEST_F(AppDragTest, EscapeEndsTheDragWhileItHasTheFocus) {
    HWND field = owner->createChild(L"Edit", L"", WS_VISIBLE, 20, 120, 100, 24, 5);
    SetFocus(field);
    SetCapture(*owner);
    ASSERT_EQ(KVDD_STARTED, start(KVDD_RESTORE_CAPTURE | KVDD_RESTORE_FOCUS, 3));
    HWND drag = dragWindow();
    over(*accepting);
    PressKey(VK_ESCAPE);
    EXPECT_FALSE(IsWindow(drag));
    EXPECT_EQ(*owner, GetCapture());  // both given back to their previous holders
    EXPECT_EQ(field, GetFocus());
    EXPECT_EQ((Endings{{KVDD_ENDED, 3, 0}}), endings());
    ReleaseCapture();
    // Other keys are swallowed; Escape after the focus flag went (a focus "lost" to itself
    // toggles it) does nothing.
    owner->clear();
    ASSERT_EQ(KVDD_STARTED, start(0, 4));
    drag = dragWindow();
    PressKey('A');
    SendMessageW(drag, WM_KILLFOCUS, reinterpret_cast<WPARAM>(drag), 0);
    SendMessageW(drag, WM_KEYUP, VK_ESCAPE, 0);
    kvtest::PumpMessages();
    EXPECT_TRUE(IsWindow(drag));
    EXPECT_EQ(drag, GetCapture());
    Release();
    EXPECT_FALSE(IsWindow(drag));
}

TEST_F(AppDragTest, ALostCaptureOrFocusOrTheStopFunctionEndTheDrag) {
    ASSERT_EQ(KVDD_STARTED, start(0, 5));
    HWND drag = dragWindow();
    over(*accepting);
    SetCapture(*owner);
    kvtest::PumpMessages();
    EXPECT_FALSE(IsWindow(drag));
    EXPECT_EQ(*owner, GetCapture());  // the new holder keeps it
    ReleaseCapture();
    ASSERT_EQ(KVDD_STARTED, start(0, 6));
    drag = dragWindow();
    SetFocus(*owner);
    kvtest::PumpMessages();
    EXPECT_FALSE(IsWindow(drag));
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_EQ((Endings{{KVDD_ENDED, 5, 0}, {KVDD_ENDED, 6, 0}}), endings());

    // Stop: the next drag may start at once, before the old window is gone. Cancelling marks
    // the system's shared refuse cursor as the caller's: it stays all the same.
    owner->clear();
    HCURSOR accept = makeCursor(0x00);
    ASSERT_EQ(KVDD_STARTED, start(0, 7, nullptr, accept));
    drag = dragWindow();
    EXPECT_EQ(0, Kx1StopGlobalDragAndDrop(nullptr, 1));
    EXPECT_EQ(0, Kx1IsActiveGlobalDragAndDrop(*owner));
    EXPECT_EQ(nullptr, GetCapture());
    ASSERT_EQ(KVDD_STARTED, start(0, 8));
    kvtest::PumpMessages();
    EXPECT_FALSE(IsWindow(drag));
    EXPECT_FALSE(cursorExists(accept));
    EXPECT_TRUE(cursorExists(LoadCursorW(nullptr, IDC_NO)));
    EXPECT_EQ(1, Kx1IsActiveGlobalDragAndDrop(*owner));
    EXPECT_EQ(0, Kx1StopGlobalDragAndDrop(nullptr, 0));
    kvtest::PumpMessages();
    EXPECT_EQ((Endings{{KVDD_ENDED, 7, 0}, {KVDD_ENDED, 8, 0}}), endings());
    EXPECT_EQ(0, Kx1StopGlobalDragAndDrop(nullptr, 0));  // none active
    EXPECT_EQ(0, Kx1IsActiveGlobalDragAndDrop(nullptr));
}

HHOOK g_creationHook;
LRESULT CALLBACK refuseDragWindow(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HCBT_CREATEWND) {
        const wchar_t* title = reinterpret_cast<CBT_CREATEWNDW*>(lParam)->lpcs->lpszName;
        if (title && !IS_INTRESOURCE(title) && lstrcmpW(title, L"KVDDS") == 0) return 1;
    }
    return CallNextHookEx(g_creationHook, code, wParam, lParam);
}

TEST_F(AppDragTest, AStartThatFailsLeavesNothingBehind) {
    g_creationHook = SetWindowsHookExW(WH_CBT, refuseDragWindow, nullptr, GetCurrentThreadId());
    EXPECT_EQ(KVDD_NO_WINDOW, start(0, 1));
    UnhookWindowsHookEx(g_creationHook);
    KvText_FailAllocation(1);
    EXPECT_EQ(KVDD_NO_MEMORY, start(0, 1));
    kvtest::PumpMessages();
    EXPECT_EQ(nullptr, dragWindow());
    EXPECT_EQ(0, Kx1IsActiveGlobalDragAndDrop(*owner));
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_TRUE(endings().empty());
    EXPECT_EQ(KVDD_STARTED, start(0, 1));  // and the next one starts
}

TEST_F(AppDragTest, TheAppRootFollowsParentsAndOwners) {
    EXPECT_EQ(nullptr, Kx1GetAppRoot(nullptr));
    HWND inner = CreateWindowExW(0, L"Button", L"", WS_CHILD, 0, 0, 5, 5, *accepting, nullptr, nullptr, nullptr);
    HWND popup = CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 5, 5, *owner, nullptr, nullptr, nullptr);
    for (HWND window : {static_cast<HWND>(*owner), static_cast<HWND>(*accepting), inner, popup})
        EXPECT_EQ(static_cast<HWND>(*owner), Kx1GetAppRoot(window));
    DestroyWindow(popup);
}

}  // namespace
