// Tooltips read back from the tooltip control: styles, owner, tools and their IDs and rectangles,
// texts, titles, the auto-pop delay, relayed and subclassed mouse moves, the empty message box of
// a refused tool, and bad handles.
#include "kvtest.h"
#include <commctrl.h>
#include <algorithm>
#include <string>
#include <vector>
#include "kvkit_tooltips.h"

inline bool operator==(const RECT& a, const RECT& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}
inline std::ostream& operator<<(std::ostream& out, const RECT& r) {
    return out << "(" << r.left << ", " << r.top << ", " << r.right << ", " << r.bottom << ")";
}

namespace {

const int kButtonId = 77;

class Tooltips : public kvtest::KvTest {
protected:
    Tooltips() {
        button = host.createChild(L"Button", L"Save", WS_VISIBLE, 20, 30, 100, 24, kButtonId);
        area = host.createChild(L"Static", L"", WS_VISIBLE | WS_BORDER, 150, 40, 80, 30, 0);
    }
    void TearDown() override {
        KxSetTooltipDuration(0xFFFFFFFF);
        KvTest::TearDown();
    }

    static int toolCount(HWND tip) { return static_cast<int>(SendMessageW(tip, TTM_GETTOOLCOUNT, 0, 0)); }
    static TOOLINFOW tool(HWND tip, int index = 0) {
        TOOLINFOW info = {};
        info.cbSize = sizeof(info);
        SendMessageW(tip, TTM_ENUMTOOLSW, index, reinterpret_cast<LPARAM>(&info));
        return info;
    }
    static std::wstring text(HWND tip, HWND window, UINT_PTR id) {
        wchar_t buffer[100] = L"";
        TOOLINFOW info = {};
        info.cbSize = sizeof(info);
        info.hwnd = window;
        info.uId = id;
        info.lpszText = buffer;
        SendMessageW(tip, TTM_GETTEXTW, 100, reinterpret_cast<LPARAM>(&info));
        return buffer;
    }
    static int autoPop(HWND tip) {
        return static_cast<int>(SendMessageW(tip, TTM_GETDELAYTIME, TTDT_AUTOPOP, 0));
    }
    // The client area of `child` in the client coordinates of `window`.
    static RECT clientIn(HWND child, HWND window) {
        RECT rect;
        GetClientRect(child, &rect);
        MapWindowPoints(child, window, reinterpret_cast<POINT*>(&rect), 2);
        return rect;
    }
    // The height of the tip shown for a mouse move relayed over the middle of `window`.
    static int shownHeight(HWND tip, HWND window) {
        RECT bounds;
        GetWindowRect(window, &bounds);
        SetCursorPos((bounds.left + bounds.right) / 2, (bounds.top + bounds.bottom) / 2);
        SendMessageW(tip, TTM_SETDELAYTIME, TTDT_INITIAL, 10);
        KxToolTip_RelayMessage(tip, window, WM_MOUSEMOVE, 0,
                               MAKELPARAM((bounds.right - bounds.left) / 2, (bounds.bottom - bounds.top) / 2));
        kvtest::PumpFor(200);
        RECT shown = {};
        if (IsWindowVisible(tip)) GetWindowRect(tip, &shown);
        SendMessageW(tip, TTM_POP, 0, 0);
        return shown.bottom - shown.top;
    }
    static RECT clientOf(HWND window) { return clientIn(window, window); }
    // The auto-pop delay that the tooltip control makes of -1, its request for the default.
    static int systemAutoPop() {
        HWND tip = CreateWindowExW(0, TOOLTIPS_CLASSW, nullptr, WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                                   nullptr, nullptr);
        SendMessageW(tip, TTM_SETDELAYTIME, TTDT_AUTOPOP, -1);
        int delay = autoPop(tip);
        DestroyWindow(tip);
        return delay;
    }

    kvtest::HostWindow host{400, 200};
    HWND button = nullptr, area = nullptr;
    wchar_t hint[16] = L"Save the record";
};

TEST_F(Tooltips, WindowToolHasTheControlIdAndTheArea) {
    HWND tip = KxToolTip_Create(button, area, hint, 0, 0);
    ASSERT_NE(nullptr, tip);
    const DWORD kKinds = WS_POPUP | WS_CHILD | TTS_NOPREFIX | TTS_ALWAYSTIP | TTS_BALLOON;
    EXPECT_EQ(static_cast<DWORD>(WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP), GetWindowLongW(tip, GWL_STYLE) & kKinds);
    EXPECT_TRUE(GetWindowLongW(tip, GWL_EXSTYLE) & WS_EX_TOPMOST);
    EXPECT_EQ(host.handle(), GetWindow(tip, GW_OWNER));  // a child's popup belongs to its top-level window
    ASSERT_EQ(1, toolCount(tip));
    TOOLINFOW info = tool(tip);
    EXPECT_EQ(button, info.hwnd);
    EXPECT_EQ(static_cast<UINT_PTR>(kButtonId), info.uId);
    EXPECT_EQ(static_cast<UINT>(TTF_SUBCLASS), info.uFlags);
    EXPECT_EQ(clientIn(area, button), info.rect);
    EXPECT_EQ(L"Save the record", text(tip, button, kButtonId));
    EXPECT_EQ(systemAutoPop(), autoPop(tip));

    // Without an area the window's client area; without subclassing no flags.
    HWND plain = KxToolTip_Create(button, nullptr, hint, 0, 1);
    info = tool(plain);
    EXPECT_EQ(clientOf(button), info.rect);
    EXPECT_EQ(0u, info.uFlags);

    DestroyWindow(host);
    EXPECT_FALSE(IsWindow(tip));
    EXPECT_FALSE(IsWindow(plain));
}

TEST_F(Tooltips, RectangleToolsAllHaveId199AndAreNotReachedByTheWindowsId) {
    RECT first = {5, 6, 50, 20}, second = {60, 6, 90, 20};
    HWND balloon = KxToolTip_CreateRect(button, &first, hint, 1, 0);
    wchar_t other[] = L"Second";
    HWND square = KxToolTip_CreateRect(button, &second, other, 0, 1);
    ASSERT_NE(nullptr, balloon);
    ASSERT_NE(nullptr, square);
    const DWORD kKinds = WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP | TTS_BALLOON;
    EXPECT_EQ(static_cast<DWORD>(WS_POPUP | TTS_ALWAYSTIP | TTS_BALLOON), GetWindowLongW(balloon, GWL_STYLE) & kKinds);
    EXPECT_EQ(static_cast<DWORD>(WS_POPUP | TTS_ALWAYSTIP), GetWindowLongW(square, GWL_STYLE) & kKinds);
    EXPECT_TRUE(GetWindowLongW(square, GWL_EXSTYLE) & WS_EX_TOPMOST);
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(GetModuleHandleW(L"kvkit.dll")), GetWindowLongPtrW(balloon, GWLP_HINSTANCE));
    TOOLINFOW info = tool(balloon);
    EXPECT_EQ(static_cast<UINT_PTR>(KXTOOLTIP_RECT_ID), info.uId);
    EXPECT_EQ(first, info.rect);
    EXPECT_EQ(static_cast<UINT>(TTF_SUBCLASS), info.uFlags);
    info = tool(square);
    EXPECT_EQ(static_cast<UINT_PTR>(199), info.uId);
    EXPECT_EQ(second, info.rect);
    EXPECT_EQ(0u, info.uFlags);

    wchar_t changed[] = L"Changed";
    EXPECT_EQ(1, KxToolTip_UpdateText(balloon, button, changed));
    EXPECT_EQ(L"Save the record", text(balloon, button, 199));
    EXPECT_EQ(1, toolCount(balloon));
}

TEST_F(Tooltips, TextTitleAndRectangleChangeTheWindowsTool) {
    HWND tip = KxToolTip_Create(button, nullptr, hint, 0, 1);
    wchar_t changed[] = L"Saved already";
    EXPECT_EQ(1, KxToolTip_UpdateText(tip, button, changed));
    EXPECT_EQ(L"Saved already", text(tip, button, kButtonId));

    // A tip with a title is taller when it shows.
    int plainHeight = shownHeight(tip, button);
    EXPECT_TRUE(KxToolTip_SetTitle(tip, L"Customer", TTI_INFO));
    EXPECT_GT(shownHeight(tip, button), plainHeight);

    // The rectangle argument is not used: the area's client rectangle, or the window's own.
    RECT ignored = {1, 2, 3, 4};
    EXPECT_EQ(1, KxToolTip_SetRect(tip, button, area, &ignored));
    EXPECT_EQ(clientIn(area, button), tool(tip).rect);
    EXPECT_EQ(1, KxToolTip_SetRect(tip, button, nullptr, &ignored));
    EXPECT_EQ(clientOf(button), tool(tip).rect);
}

TEST_F(Tooltips, DurationAppliesToTooltipsCreatedAfterIt) {
    HWND before = KxToolTip_Create(button, nullptr, hint, 0, 0);
    KxSetTooltipDuration(3000);
    RECT rect = {0, 0, 10, 10};
    EXPECT_EQ(3000, autoPop(KxToolTip_Create(button, nullptr, hint, 0, 0)));
    EXPECT_EQ(3000, autoPop(KxToolTip_CreateRect(button, &rect, hint, 0, 0)));
    EXPECT_EQ(systemAutoPop(), autoPop(before));
}

// Records the message of every TTM_RELAYEVENT while it is valid.
LRESULT CALLBACK recordRelay(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR data) {
    if (message == TTM_RELAYEVENT) *reinterpret_cast<MSG*>(data) = *reinterpret_cast<MSG*>(lParam);
    return DefSubclassProc(window, message, wParam, lParam);
}

TEST_F(Tooltips, MouseMovesShowTheTipWhenRelayedOrSubclassed) {
    RECT bounds;
    GetWindowRect(area, &bounds);
    SetCursorPos((bounds.left + bounds.right) / 2, (bounds.top + bounds.bottom) / 2);
    kvtest::PumpFor(50);
    POINT inHost = {(bounds.left + bounds.right) / 2, (bounds.top + bounds.bottom) / 2};
    ScreenToClient(host, &inHost);
    LPARAM where = MAKELPARAM(inHost.x, inHost.y);

    std::vector<UINT> notifications;
    host.setHandler([&notifications](HWND, UINT message, WPARAM, LPARAM lParam, LRESULT*) {
        if (message == WM_NOTIFY) notifications.push_back(reinterpret_cast<NMHDR*>(lParam)->code);
        return false;
    });
    for (int noSubclass : {1, 0}) {
        SCOPED_TRACE(noSubclass);
        HWND tip = KxToolTip_Create(host, area, hint, 0, noSubclass);
        SendMessageW(tip, TTM_SETDELAYTIME, TTDT_INITIAL, 10);
        host.clear();
        if (noSubclass) {
            MSG relayed = {};
            SetWindowSubclass(tip, recordRelay, 1, reinterpret_cast<DWORD_PTR>(&relayed));
            EXPECT_EQ(1, KxToolTip_RelayMessage(tip, host, WM_MOUSEMOVE, 0, where));
            DWORD position = GetMessagePos();
            EXPECT_EQ(host.handle(), relayed.hwnd);
            EXPECT_EQ(static_cast<UINT>(WM_MOUSEMOVE), relayed.message);
            EXPECT_EQ(where, relayed.lParam);
            EXPECT_EQ(static_cast<DWORD>(GetMessageTime()), relayed.time);
            EXPECT_EQ(static_cast<short>(LOWORD(position)), relayed.pt.x);
            EXPECT_EQ(static_cast<short>(HIWORD(position)), relayed.pt.y);
            RemoveWindowSubclass(tip, recordRelay, 1);
        } else {
            PostMessageW(host, WM_MOUSEMOVE, 0, where);  // seen by the tool's subclass
        }
        kvtest::PumpFor(300);
        EXPECT_TRUE(IsWindowVisible(tip));
        EXPECT_EQ(1, std::count(notifications.begin(), notifications.end(), TTN_SHOW));
        DestroyWindow(tip);
        notifications.clear();
    }
}

// While the test runs: tooltip controls refuse tools, and a message box is read and closed.
struct MessageBoxSeen {
    std::wstring caption = L"<none>", text = L"<none>";
    HWND owner = nullptr;
    bool cancel = true;
} g_box;
HHOOK g_cbt;

LRESULT CALLBACK refuseTools(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
    return message == TTM_ADDTOOLW ? FALSE : DefSubclassProc(window, message, wParam, lParam);
}

LRESULT CALLBACK watchWindows(int code, WPARAM wParam, LPARAM lParam) {
    auto window = reinterpret_cast<HWND>(wParam);
    wchar_t name[80] = L"";
    GetClassNameW(window, name, 80);
    if (code == HCBT_CREATEWND && lstrcmpiW(name, TOOLTIPS_CLASSW) == 0) SetWindowSubclass(window, refuseTools, 1, 0);
    if (code == HCBT_ACTIVATE && lstrcmpW(name, L"#32770") == 0) {
        GetWindowTextW(window, name, 80);
        g_box.caption = name;
        GetDlgItemTextW(window, 0xFFFF, name, 80);
        g_box.text = name;
        g_box.owner = GetWindow(window, GW_OWNER);
        g_box.cancel = GetDlgItem(window, IDCANCEL) != nullptr;
        PostMessageW(window, WM_COMMAND, IDOK, 0);
    }
    return CallNextHookEx(g_cbt, code, wParam, lParam);
}

TEST_F(Tooltips, ARefusedToolIsSignalledByAnEmptyMessageBox) {
    g_box = MessageBoxSeen();
    g_cbt = SetWindowsHookExW(WH_CBT, watchWindows, nullptr, GetCurrentThreadId());
    HWND tip = KxToolTip_Create(button, nullptr, hint, 0, 0);
    UnhookWindowsHookEx(g_cbt);
    ASSERT_NE(nullptr, tip);
    EXPECT_EQ(L"", g_box.caption);
    EXPECT_EQ(L"", g_box.text);
    EXPECT_EQ(host.handle(), g_box.owner);
    EXPECT_FALSE(g_box.cancel);  // OK only
    EXPECT_EQ(0, toolCount(tip));
    EXPECT_EQ(systemAutoPop(), autoPop(tip));  // set up all the same
    RemoveWindowSubclass(tip, refuseTools, 1);
}

TEST_F(Tooltips, MissingWindowsAndTooltipsAreRefused) {
    HWND gone = host.createChild(L"Static", L"", 0, 0, 0, 10, 10, 5);
    DestroyWindow(gone);
    RECT rect = {0, 0, 10, 10};
    EXPECT_EQ(nullptr, KxToolTip_Create(nullptr, nullptr, hint, 0, 0));
    EXPECT_EQ(nullptr, KxToolTip_Create(gone, nullptr, hint, 0, 0));
    EXPECT_EQ(nullptr, KxToolTip_Create(button, gone, hint, 0, 0));
    EXPECT_EQ(nullptr, KxToolTip_CreateRect(nullptr, &rect, hint, 0, 0));
    EXPECT_EQ(nullptr, KxToolTip_CreateRect(gone, &rect, hint, 0, 0));
    EXPECT_EQ(nullptr, KxToolTip_CreateRect(button, nullptr, hint, 0, 0));
    EXPECT_EQ(0, KxToolTip_RelayMessage(nullptr, button, WM_MOUSEMOVE, 0, 0));
    EXPECT_EQ(0, KxToolTip_RelayMessage(gone, button, WM_MOUSEMOVE, 0, 0));
    EXPECT_EQ(0, KxToolTip_SetRect(nullptr, button, nullptr, nullptr));
    EXPECT_EQ(0, KxToolTip_UpdateText(gone, button, hint));
    EXPECT_FALSE(KxToolTip_SetTitle(nullptr, L"Title", TTI_NONE));
    EXPECT_FALSE(KxToolTip_SetTitle(gone, L"Title", TTI_NONE));
}

}  // namespace
