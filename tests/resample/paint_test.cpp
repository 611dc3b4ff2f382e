// Buffered painting on real windows, moving all children, and monitor placement.
#include "kvkit_paint.h"
#include "kvtest.h"
#include <string.h>

using kvtest::HostWindow;
using kvtest::IsGdiObject;

namespace {

class PaintTest : public kvtest::KvTest {};

const COLORREF kGreen = RGB(0, 200, 0), kChildInk = RGB(200, 0, 100);
const RECT kInkRect = {4, 4, 12, 12};

struct ChildRecord {
    int printCount = 0;
    LPARAM printFlags = 0;
    COLORREF backgroundSeen = CLR_INVALID;
};

void fill(HDC dc, const RECT& rect, COLORREF colour) {
    HBRUSH brush = CreateSolidBrush(colour);
    FillRect(dc, &rect, brush);
    DeleteObject(brush);
}

// Draws a square of ink when printed and records what it was printed over.
LRESULT CALLBACK childProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_PRINTCLIENT) return DefWindowProcW(window, message, wParam, lParam);
    auto* record = reinterpret_cast<ChildRecord*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    HDC dc = reinterpret_cast<HDC>(wParam);
    record->printCount++;
    record->printFlags = lParam;
    record->backgroundSeen = GetPixel(dc, 1, 1);
    fill(dc, kInkRect, kChildInk);
    return 0;
}

HWND createRecordedChild(HostWindow& host, ChildRecord* record, int x, int y, DWORD exStyle) {
    static const wchar_t kClass[] = L"ResampleTestPrintedChild";
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = childProc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = kClass;
    RegisterClassW(&windowClass);  // fails harmlessly once registered
    HWND child = host.createChild(kClass, L"", WS_VISIBLE, x, y, 30, 24, 0, exStyle);
    SetWindowLongPtrW(child, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(record));
    return child;
}

bool isCleared(const tagKVPAINTSTRUCT& ps) {
    static const tagKVPAINTSTRUCT zero = {};
    return memcmp(&ps, &zero, sizeof(ps)) == 0;
}

COLORREF windowPixel(HWND window, int x, int y) {
    HDC dc = GetDC(window);
    COLORREF colour = GetPixel(dc, x, y);
    ReleaseDC(window, dc);
    return colour;
}

RECT sized(int left, int top, int width, int height) {
    return {left, top, left + width, top + height};
}

RECT centred(const RECT& area, int width, int height) {
    return sized((area.right - area.left - width) / 2 + area.left,
                 (area.bottom - area.top - height) / 2 + area.top, width, height);
}

std::vector<LONG> corners(const RECT& r) { return {r.left, r.top, r.right, r.bottom}; }

}  // namespace

// The buffer covers the whole client area, whatever the update rectangle. Children whose
// extended style is exactly WS_EX_TRANSPARENT and which meet the update rectangle are printed into
// it over the parent's background, once, and validated.
TEST_F(PaintTest, BuffersTheClientAreaAndComposesExactlyTransparentChildren) {
    HostWindow host(200, 150, WS_OVERLAPPEDWINDOW | WS_VISIBLE);
    ChildRecord composed, otherBit, outside, opaque;
    HWND composedChild = createRecordedChild(host, &composed, 20, 20, WS_EX_TRANSPARENT);
    createRecordedChild(host, &otherBit, 80, 20, WS_EX_TRANSPARENT | WS_EX_NOPARENTNOTIFY);
    createRecordedChild(host, &outside, 20, 110, WS_EX_TRANSPARENT);
    createRecordedChild(host, &opaque, 140, 20, 0);
    kvtest::PumpMessages();

    RECT top = {0, 0, 200, 80};
    InvalidateRect(host, &top, FALSE);
    InvalidateRect(composedChild, nullptr, FALSE);
    tagKVPAINTSTRUCT ps;
    HDC dc = KVBeginPaint(host, &ps, 1);
    ASSERT_NE(nullptr, dc);
    EXPECT_NE(ps.paint.hdc, dc) << "buffering is on";
    EXPECT_EQ(host.handle(), ps.window);
    EXPECT_TRUE(EqualRect(&top, &ps.update));
    BITMAP buffer;
    ASSERT_EQ(ps.buffer, GetCurrentObject(dc, OBJ_BITMAP));
    GetObjectW(ps.buffer, sizeof(buffer), &buffer);
    EXPECT_EQ(200, buffer.bmWidth);
    EXPECT_EQ(150, buffer.bmHeight);
    EXPECT_NE(GetSysColor(COLOR_BTNFACE), GetPixel(dc, 150, 100)) << "copy has no effect here";
    fill(dc, ps.client, kGreen);
    HBITMAP made = ps.buffer;
    EXPECT_EQ(0, KVEndPaint(&ps));
    EXPECT_TRUE(isCleared(ps));
    EXPECT_FALSE(IsGdiObject(made));

    EXPECT_EQ(1, composed.printCount);
    EXPECT_EQ(0x17, composed.printFlags);
    EXPECT_EQ(kGreen, composed.backgroundSeen) << "the child sees the buffer beneath it";
    RECT update;
    EXPECT_FALSE(GetUpdateRect(composedChild, &update, FALSE)) << "the child is validated";
    EXPECT_EQ(0, otherBit.printCount);
    EXPECT_EQ(0, outside.printCount);
    EXPECT_EQ(0, opaque.printCount);
    // The ink reached the window through the buffer; the rest of the child shows the parent.
    EXPECT_EQ(kChildInk, windowPixel(host, 20 + 6, 20 + 6));
    EXPECT_EQ(kGreen, windowPixel(host, 20 + 1, 20 + 1));
    EXPECT_EQ(kGreen, windowPixel(host, 80 + 6, 20 + 6));
}

TEST_F(PaintTest, FailedBeginLeavesAClearedStructureThatEndAccepts) {
    HWND gone;
    {
        HostWindow host(50, 50);
        gone = host.handle();
    }
    for (HWND window : {HWND(nullptr), gone}) {
        tagKVPAINTSTRUCT ps;
        memset(&ps, 0xAB, sizeof(ps));
        EXPECT_EQ(nullptr, KVBeginPaint(window, &ps, 1));
        EXPECT_TRUE(isCleared(ps));
        EXPECT_EQ(0, KVEndPaint(&ps));
        EXPECT_TRUE(isCleared(ps));
    }
    EXPECT_EQ(nullptr, KVBeginPaint(gone, nullptr, 0));
    EXPECT_EQ(0, KVEndPaint(nullptr));
}

// A client area too large for any buffer falls back to painting the window directly.
TEST_F(PaintTest, FallsBackToThePaintDCWhenNoBufferCanBeMade) {
    HostWindow host(100, 100, WS_POPUP);
    SetWindowPos(host, nullptr, 0, 0, 30000, 30000, SWP_NOZORDER | SWP_NOACTIVATE);
    RECT client;
    GetClientRect(host, &client);
    ASSERT_GE(client.right * client.bottom, 30000 * 30000) << "the window kept its size";
    InvalidateRect(host, nullptr, FALSE);
    tagKVPAINTSTRUCT ps;
    HDC dc = KVBeginPaint(host, &ps, 1);
    ASSERT_NE(nullptr, dc);
    EXPECT_EQ(ps.paint.hdc, dc);
    EXPECT_EQ(nullptr, ps.buffer);
    EXPECT_EQ(host.handle(), ps.window);
    EXPECT_EQ(0, KVEndPaint(&ps));
    EXPECT_TRUE(isCleared(ps));
}

TEST_F(PaintTest, MovesEveryChildAndScrollsWhenAsked) {
    HostWindow host(300, 200);
    HWND children[3];
    for (int i = 0; i < 3; ++i)
        children[i] = host.createChild(L"STATIC", L"", WS_VISIBLE, 10 + 50 * i, 20, 40, 30, i);
    kvtest::PumpMessages();
    RECT scroll = {0, 100, 100, 200};  // clear of the children
    RECT update = {1, 2, 3, 4};
    EXPECT_TRUE(MoveAllChildWindows(7, -5, host, false, &scroll, &update));
    EXPECT_EQ(1, update.left) << "no scrolling without the flag";
    EXPECT_TRUE(MoveAllChildWindows(0, 10, host, true, &scroll, &update));
    RECT uncovered = {0, 100, 100, 110};
    EXPECT_TRUE(EqualRect(&uncovered, &update));
    for (int i = 0; i < 3; ++i) {
        RECT rect;
        GetWindowRect(children[i], &rect);
        MapWindowPoints(HWND_DESKTOP, host, reinterpret_cast<POINT*>(&rect), 2);
        EXPECT_EQ(corners(sized(17 + 50 * i, 25, 40, 30)), corners(rect));
    }
    EXPECT_EQ(children[0], GetWindow(host, GW_CHILD)) << "the order is kept";
}

TEST_F(PaintTest, ClipsAndCentresOnTheMonitorOrItsWorkArea) {
    RECT probe = sized(5, 5, 10, 10);
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof(monitor);
    ASSERT_TRUE(GetMonitorInfoW(MonitorFromRect(&probe, MONITOR_DEFAULTTONEAREST), &monitor));
    const RECT& work = monitor.rcWork;
    const RECT& full = monitor.rcMonitor;
    int workWidth = work.right - work.left;
    const UINT kCentre = KV_MONITOR_CENTER, kWork = KV_MONITOR_WORKAREA;
    auto place = [](RECT rc, UINT flags) {
        Kx1ClipOrCenterRectToMonitor(&rc, flags);
        return corners(rc);
    };
    EXPECT_EQ(corners(centred(work, 301, 200)), place(sized(5, 5, 301, 200), kCentre | kWork));
    EXPECT_EQ(corners(centred(full, 301, 200)), place(sized(5, 5, 301, 200), kCentre));
    // Larger than the area: the negative half truncates towards zero.
    EXPECT_EQ(corners(sized(work.left - 1, centred(work, 0, 50).top, workWidth + 3, 50)),
              place(sized(0, 0, workWidth + 3, 50), kCentre | kWork));
    EXPECT_EQ(corners(sized(work.right - 300, work.bottom - 200, 300, 200)),
              place(sized(work.right - 50, work.bottom - 20, 300, 200), kWork));
    EXPECT_EQ(corners(sized(work.left, work.top, 300, 200)),
              place(sized(work.left - 40, work.top - 30, 300, 200), kWork));
    // Wider than the area: the left edge goes to the area's left edge.
    EXPECT_EQ(corners(sized(work.left, work.top + 5, workWidth + 100, 50)),
              place(sized(work.left + 10, work.top + 5, workWidth + 100, 50), kWork));

    HostWindow host(200, 100);
    RECT window;
    GetWindowRect(host, &window);
    int w = window.right - window.left, h = window.bottom - window.top;
    Kx1ClipOrCenterWindowToMonitor(host, KV_MONITOR_CENTER, nullptr);
    GetWindowRect(host, &window);
    EXPECT_EQ(corners(centred(full, w, h)), corners(window));
    // From a given rectangle, whose size the window takes.
    RECT given = sized(work.right - 20, work.top + 30, 180, 120);
    Kx1ClipOrCenterWindowToMonitor(host, KV_MONITOR_WORKAREA, &given);
    GetWindowRect(host, &window);
    EXPECT_EQ(corners(sized(work.right - 180, work.top + 30, 180, 120)), corners(window));
}
