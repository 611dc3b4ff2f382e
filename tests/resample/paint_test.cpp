// Buffered painting on real windows, moving all children, and monitor placement.
#include "kvkit_paint.h"
#include "pictures.h"
#include <string.h>

using namespace resample_test;
using kvtest::HostWindow;
using kvtest::IsGdiObject;

namespace {

class PaintTest : public kvtest::KvTest {};

const COLORREF kBufferGreen = RGB(0, 200, 0);
const COLORREF kChildInk = RGB(200, 0, 100);
const COLORREF kChildOwnPaint = RGB(0, 0, 255);
const RECT kInkRect = {4, 4, 12, 12};

// A child that draws a small square of ink when printed and paints itself blue otherwise.
struct ChildRecord {
    int printCount = 0;
    int paintCount = 0;
    LPARAM printFlags = 0;
    COLORREF backgroundSeen = CLR_INVALID;
};

LRESULT CALLBACK childProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* record = reinterpret_cast<ChildRecord*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    switch (message) {
    case WM_PRINTCLIENT: {
        HDC dc = reinterpret_cast<HDC>(wParam);
        record->printCount++;
        record->printFlags = lParam;
        record->backgroundSeen = GetPixel(dc, 1, 1);
        HBRUSH ink = CreateSolidBrush(kChildInk);
        FillRect(dc, &kInkRect, ink);
        DeleteObject(ink);
        return 0;
    }
    case WM_PAINT: {
        PAINTSTRUCT paint;
        HDC dc = BeginPaint(window, &paint);
        if (record) record->paintCount++;
        HBRUSH blue = CreateSolidBrush(kChildOwnPaint);
        FillRect(dc, &paint.rcPaint, blue);
        DeleteObject(blue);
        EndPaint(window, &paint);
        return 0;
    }
    case WM_ERASEBKGND:
        return 1;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

const wchar_t kChildClass[] = L"ResampleTestPrintedChild";

HWND createRecordedChild(HostWindow& host, ChildRecord* record, int x, int y, DWORD exStyle) {
    static bool registered = false;
    if (!registered) {
        WNDCLASSW windowClass = {};
        windowClass.lpfnWndProc = childProc;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = kChildClass;
        registered = RegisterClassW(&windowClass) != 0;
    }
    HWND child = host.createChild(kChildClass, L"", WS_VISIBLE, x, y, 30, 24, 0, exStyle);
    SetWindowLongPtrW(child, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(record));
    return child;
}

bool isCleared(const tagKVPAINTSTRUCT& ps) {
    tagKVPAINTSTRUCT zero;
    memset(&zero, 0, sizeof(zero));
    return memcmp(&ps, &zero, sizeof(ps)) == 0;
}

void fill(HDC dc, const RECT& rect, COLORREF colour) {
    HBRUSH brush = CreateSolidBrush(colour);
    FillRect(dc, &rect, brush);
    DeleteObject(brush);
}

COLORREF windowPixel(HWND window, int x, int y) {
    HDC dc = GetDC(window);
    COLORREF colour = GetPixel(dc, x, y);
    ReleaseDC(window, dc);
    return colour;
}

RECT rectInParent(HWND child) {
    RECT rect;
    GetWindowRect(child, &rect);
    MapWindowPoints(HWND_DESKTOP, GetParent(child), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

}  // namespace

// --- KVBeginPaint / KVEndPaint ----------------------------------------------------------------

TEST_F(PaintTest, BufferCoversTheWholeClientAreaEvenWithoutUpdates) {
    HostWindow host(220, 140);
    ValidateRect(host, nullptr);
    tagKVPAINTSTRUCT ps;
    HDC dc = KVBeginPaint(host, &ps, 0);
    ASSERT_NE(nullptr, dc);
    EXPECT_EQ(dc, ps.paintDC);
    EXPECT_NE(ps.paint.hdc, ps.paintDC) << "buffering is on";
    EXPECT_EQ(host.handle(), ps.window);
    EXPECT_TRUE(IsRectEmpty(&ps.update));
    EXPECT_EQ(0, ps.client.left);
    EXPECT_EQ(220, ps.client.right);
    EXPECT_EQ(140, ps.client.bottom);
    EXPECT_EQ(ps.buffer, GetCurrentObject(dc, OBJ_BITMAP));
    EXPECT_EQ(220, BitmapSize(ps.buffer).cx);
    EXPECT_EQ(140, BitmapSize(ps.buffer).cy);
    HBITMAP buffer = ps.buffer;
    EXPECT_EQ(0, KVEndPaint(&ps));
    EXPECT_TRUE(isCleared(ps));
    EXPECT_FALSE(IsGdiObject(buffer));
}

TEST_F(PaintTest, BufferIsCopiedOntoTheWindowAndTheUpdateRectRecorded) {
    HostWindow host(160, 100, WS_OVERLAPPEDWINDOW | WS_VISIBLE);
    kvtest::PumpMessages();
    RECT invalid = {10, 20, 70, 60};
    InvalidateRect(host, &invalid, FALSE);
    tagKVPAINTSTRUCT ps;
    HDC dc = KVBeginPaint(host, &ps, 0);
    ASSERT_NE(nullptr, dc);
    EXPECT_TRUE(EqualRect(&invalid, &ps.update));
    EXPECT_EQ(160, BitmapSize(ps.buffer).cx);
    fill(dc, ps.client, kBufferGreen);
    KVEndPaint(&ps);
    EXPECT_EQ(kBufferGreen, windowPixel(host, 30, 30));
    RECT update;
    EXPECT_FALSE(GetUpdateRect(host, &update, FALSE));

    // With buffering the copy flag has no effect: the fresh buffer does not show the window.
    InvalidateRect(host, &invalid, FALSE);
    dc = KVBeginPaint(host, &ps, 1);
    ASSERT_NE(nullptr, dc);
    EXPECT_NE(kBufferGreen, GetPixel(dc, 30, 30));
    KVEndPaint(&ps);
}

// Children whose extended style is exactly WS_EX_TRANSPARENT and which meet the update
// rectangle are printed into the buffer over the parent's background, once, and validated.
TEST_F(PaintTest, ComposesOnlyChildrenThatAreExactlyTransparent) {
    HostWindow host(200, 150, WS_OVERLAPPEDWINDOW | WS_VISIBLE);
    ChildRecord composed, otherBit, outside, opaque;
    HWND composedChild = createRecordedChild(host, &composed, 20, 20, WS_EX_TRANSPARENT);
    HWND otherBitChild =
        createRecordedChild(host, &otherBit, 80, 20, WS_EX_TRANSPARENT | WS_EX_NOPARENTNOTIFY);
    createRecordedChild(host, &outside, 20, 110, WS_EX_TRANSPARENT);
    createRecordedChild(host, &opaque, 140, 20, 0);
    ASSERT_EQ(WS_EX_TRANSPARENT, GetWindowLongW(composedChild, GWL_EXSTYLE));
    ASSERT_EQ(WS_EX_TRANSPARENT | WS_EX_NOPARENTNOTIFY, GetWindowLongW(otherBitChild, GWL_EXSTYLE));
    kvtest::PumpMessages();

    RECT top = {0, 0, 200, 80};
    InvalidateRect(host, &top, FALSE);
    InvalidateRect(composedChild, nullptr, FALSE);
    tagKVPAINTSTRUCT ps;
    HDC dc = KVBeginPaint(host, &ps, 0);
    ASSERT_NE(nullptr, dc);
    fill(dc, ps.client, kBufferGreen);
    KVEndPaint(&ps);

    EXPECT_EQ(1, composed.printCount);
    EXPECT_EQ(0x17, composed.printFlags);
    EXPECT_EQ(kBufferGreen, composed.backgroundSeen) << "the child sees the buffer beneath it";
    RECT update;
    EXPECT_FALSE(GetUpdateRect(composedChild, &update, FALSE)) << "the child is validated";
    EXPECT_EQ(0, otherBit.printCount);
    EXPECT_EQ(0, outside.printCount);
    EXPECT_EQ(0, opaque.printCount);

    // The printed ink reached the window through the buffer; the rest of the child is the
    // parent's background.
    EXPECT_EQ(kChildInk, windowPixel(host, 20 + 6, 20 + 6));
    EXPECT_EQ(kBufferGreen, windowPixel(host, 20 + 1, 20 + 1));
    EXPECT_EQ(kBufferGreen, windowPixel(host, 80 + 6, 20 + 6));
}

TEST_F(PaintTest, FailedBeginLeavesAClearedStructureThatEndAccepts) {
    tagKVPAINTSTRUCT ps;
    memset(&ps, 0xAB, sizeof(ps));
    EXPECT_EQ(nullptr, KVBeginPaint(nullptr, &ps, 1));
    EXPECT_TRUE(isCleared(ps));
    EXPECT_EQ(0, KVEndPaint(&ps));
    EXPECT_TRUE(isCleared(ps));

    HWND gone;
    {
        HostWindow host(50, 50);
        gone = host.handle();
    }
    memset(&ps, 0xAB, sizeof(ps));
    EXPECT_EQ(nullptr, KVBeginPaint(gone, &ps, 0));
    EXPECT_TRUE(isCleared(ps));
    EXPECT_EQ(0, KVEndPaint(&ps));

    HostWindow host(50, 50);
    EXPECT_EQ(nullptr, KVBeginPaint(host, nullptr, 0));
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
    EXPECT_EQ(nullptr, ps.previousBitmap);
    EXPECT_EQ(host.handle(), ps.window);
    EXPECT_EQ(0, KVEndPaint(&ps));
    EXPECT_TRUE(isCleared(ps));
}

// --- MoveAllChildWindows ----------------------------------------------------------------------

TEST_F(PaintTest, MovesEveryChildAtOnce) {
    HostWindow host(300, 200);
    HWND children[3];
    for (int i = 0; i < 3; ++i)
        children[i] = host.createChild(L"STATIC", L"", WS_VISIBLE, 10 + 50 * i, 20, 40, 30, i);
    EXPECT_TRUE(MoveAllChildWindows(7, -5, host, false, nullptr, nullptr));
    for (int i = 0; i < 3; ++i) {
        RECT rect = rectInParent(children[i]);
        EXPECT_EQ(17 + 50 * i, rect.left);
        EXPECT_EQ(15, rect.top);
        EXPECT_EQ(40, rect.right - rect.left);
        EXPECT_EQ(30, rect.bottom - rect.top);
    }
    EXPECT_EQ(children[0], GetWindow(host, GW_CHILD)) << "the order is kept";
}

TEST_F(PaintTest, ScrollsWhenAskedEvenWithoutChildren) {
    HostWindow host(200, 150);
    kvtest::PumpMessages();
    RECT scroll = {0, 0, 100, 100};
    RECT update = {};
    EXPECT_TRUE(MoveAllChildWindows(0, 10, host, true, &scroll, &update));
    RECT expected = {0, 0, 100, 10};
    EXPECT_TRUE(EqualRect(&expected, &update));

    RECT untouched = {1, 2, 3, 4};
    EXPECT_TRUE(MoveAllChildWindows(0, 10, host, false, &scroll, &untouched));
    EXPECT_EQ(1, untouched.left);
    EXPECT_EQ(4, untouched.bottom);
}

// --- monitor placement ------------------------------------------------------------------------

namespace {

MONITORINFO monitorOf(const RECT& rect) {
    MONITORINFO info = {};
    info.cbSize = sizeof(info);
    GetMonitorInfoW(MonitorFromRect(&rect, MONITOR_DEFAULTTONEAREST), &info);
    return info;
}

RECT sized(int left, int top, int width, int height) {
    return {left, top, left + width, top + height};
}

void expectRect(const RECT& expected, const RECT& actual) {
    EXPECT_EQ(expected.left, actual.left);
    EXPECT_EQ(expected.top, actual.top);
    EXPECT_EQ(expected.right, actual.right);
    EXPECT_EQ(expected.bottom, actual.bottom);
}

}  // namespace

TEST_F(PaintTest, CentresOnTheMonitorOrItsWorkArea) {
    RECT rc = sized(5, 5, 301, 200);
    MONITORINFO monitor = monitorOf(rc);
    const RECT& work = monitor.rcWork;
    const RECT& full = monitor.rcMonitor;
    Kx1ClipOrCenterRectToMonitor(&rc, KV_MONITOR_CENTER | KV_MONITOR_WORKAREA);
    expectRect(sized((work.right - work.left - 301) / 2 + work.left,
                     (work.bottom - work.top - 200) / 2 + work.top, 301, 200),
               rc);
    rc = sized(5, 5, 301, 200);
    Kx1ClipOrCenterRectToMonitor(&rc, KV_MONITOR_CENTER);
    expectRect(sized((full.right - full.left - 301) / 2 + full.left,
                     (full.bottom - full.top - 200) / 2 + full.top, 301, 200),
               rc);

    // Larger than the area: the negative half truncates towards zero.
    int tooWide = work.right - work.left + 3;
    rc = sized(0, 0, tooWide, 50);
    Kx1ClipOrCenterRectToMonitor(&rc, KV_MONITOR_CENTER | KV_MONITOR_WORKAREA);
    EXPECT_EQ(work.left - 1, rc.left);
    EXPECT_EQ(tooWide, rc.right - rc.left);
}

TEST_F(PaintTest, ClipsOntoTheWorkArea) {
    RECT probe = sized(0, 0, 10, 10);
    RECT work = monitorOf(probe).rcWork;

    RECT rc = sized(work.right - 50, work.bottom - 20, 300, 200);
    Kx1ClipOrCenterRectToMonitor(&rc, KV_MONITOR_WORKAREA);
    expectRect(sized(work.right - 300, work.bottom - 200, 300, 200), rc);

    rc = sized(work.left - 40, work.top - 30, 300, 200);
    Kx1ClipOrCenterRectToMonitor(&rc, KV_MONITOR_WORKAREA);
    expectRect(sized(work.left, work.top, 300, 200), rc);

    // Inside: unchanged.
    rc = sized(work.left + 10, work.top + 20, 300, 200);
    Kx1ClipOrCenterRectToMonitor(&rc, KV_MONITOR_WORKAREA);
    expectRect(sized(work.left + 10, work.top + 20, 300, 200), rc);

    // Wider than the area: the left edge goes to the area's left edge, the size stays.
    int tooWide = work.right - work.left + 100;
    rc = sized(work.left + 10, work.top + 5, tooWide, 50);
    Kx1ClipOrCenterRectToMonitor(&rc, KV_MONITOR_WORKAREA);
    expectRect(sized(work.left, work.top + 5, tooWide, 50), rc);
}

TEST_F(PaintTest, PlacesWindowsOnTheirMonitor) {
    HostWindow host(200, 100);
    RECT window;
    GetWindowRect(host, &window);
    int w = window.right - window.left, h = window.bottom - window.top;
    RECT full = monitorOf(window).rcMonitor;
    Kx1ClipOrCenterWindowToMonitor(host, KV_MONITOR_CENTER, nullptr);
    GetWindowRect(host, &window);
    expectRect(sized((full.right - full.left - w) / 2 + full.left,
                     (full.bottom - full.top - h) / 2 + full.top, w, h),
               window);

    // From a given rectangle, whose size the window takes.
    RECT work = monitorOf(window).rcWork;
    RECT given = sized(work.right - 20, work.top + 30, 180, 120);
    Kx1ClipOrCenterWindowToMonitor(host, KV_MONITOR_WORKAREA, &given);
    GetWindowRect(host, &window);
    expectRect(sized(work.right - 180, work.top + 30, 180, 120), window);
}
