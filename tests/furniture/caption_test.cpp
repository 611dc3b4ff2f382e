// The painted caption on a tool window that hands WM_NCCALCSIZE and WM_NCPAINT to the library:
// its size and the client area below it, what it paints, hit-testing, the close button and
// moving by the caption.
#include "furniture_test.h"
#include <vector>
#include "kvkit_caption.h"

using namespace furniture_test;

namespace {

const DWORD kToolStyle = WS_POPUP | WS_THICKFRAME | WS_SYSMENU | WS_VISIBLE;

class NcCaption : public FurnitureTest {
protected:
    NcCaption() : tool_(240, 140, kToolStyle) {
        tool_.setHandler([](HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
            if (message == WM_NCCALCSIZE) {
                auto* rect = reinterpret_cast<RECT*>(lParam);  // also rgrc[0] of NCCALCSIZE_PARAMS
                NcGetClientRect(window, rect, rect);
            } else if (message == WM_NCPAINT) {
                DefWindowProcW(window, message, wParam, lParam);
                NcDrawCaption(window, nullptr, KXNC_CURRENT);
            } else if (message != WM_CLOSE) {  // only counted
                return false;
            }
            *result = 0;
            return true;
        });
        SetWindowTextW(tool_, L"");
        SetWindowPos(tool_, HWND_TOP, 100, 100, 0, 0, SWP_NOSIZE | SWP_FRAMECHANGED);
        SetForegroundWindow(tool_);
        RedrawWindow(tool_, nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE | RDW_UPDATENOW);
        kvtest::PumpMessages();
        // The band in window coordinates, from the client area and the caption height.
        RECT window = windowRect(tool_);
        POINT client = {0, 0};
        ClientToScreen(tool_, &client);
        int cx = 0, cy = 0;
        NcGetCaptionCxCy(tool_, &cx, &cy);
        band_ = {client.x - window.left, client.y - window.top - cy, client.x - window.left + cx,
                 client.y - window.top};
    }
    POINT screen(int x, int y) const { return POINT{windowRect(tool_).left + x, windowRect(tool_).top + y}; }
    LRESULT hitTest(POINT at) const { return SendMessageW(tool_, WM_NCHITTEST, 0, MAKELPARAM(at.x, at.y)); }
    COLORREF bandPixel(int x, int y) const { return bandPixels(x, y, x + 1, y + 1)[0]; }
    std::vector<COLORREF> bandPixels(int left, int top, int right, int bottom) const {
        HDC dc = GetWindowDC(tool_);
        std::vector<COLORREF> pixels;
        for (int y = top; y < bottom; ++y)
            for (int x = left; x < right; ++x) pixels.push_back(GetPixel(dc, band_.left + x, band_.top + y));
        ReleaseDC(tool_, dc);
        return pixels;
    }

    kvtest::HostWindow tool_;
    RECT band_;
};

TEST_F(NcCaption, ClientAreaInsideTheFrameBelowTheCaptionAndBadWindows) {
    // The band spans the window inside the frame its style gives, the client area follows it.
    RECT frame = {0, 0, 0, 0}, client, computed;
    AdjustWindowRectEx(&frame, kToolStyle, FALSE, 0);
    RECT window = windowRect(tool_);
    int height = band_.bottom - band_.top;
    EXPECT_GE(height, 20);
    EXPECT_EQ((RECT{-frame.left, -frame.top, window.right - window.left - frame.right, height - frame.top}), band_);
    GetClientRect(tool_, &client);
    MapWindowPoints(tool_, nullptr, reinterpret_cast<POINT*>(&client), 2);
    ASSERT_EQ(1, NcGetClientRect(tool_, nullptr, &computed));
    EXPECT_EQ(client, computed);
    EXPECT_EQ(window.bottom - frame.bottom, client.bottom);
    RECT tiny = {0, 0, 4, 4};
    NcGetClientRect(tool_, &tiny, &computed);
    EXPECT_TRUE(IsRectEmpty(&computed));

    int cx = -1;
    kvtest::Canvas canvas(10, 10);
    for (HWND gone : {static_cast<HWND>(nullptr), DestroyedWindow()}) {
        EXPECT_EQ(0, NcGetCaptionCxCy(gone, &cx, nullptr));
        EXPECT_EQ(0, NcGetClientRect(gone, &tiny, &tiny));
        EXPECT_EQ(0, NcDrawCaption(gone, canvas.dc(), KXNC_ACTIVE));
    }
    EXPECT_EQ(-1, cx);
    EXPECT_EQ(4, tiny.right);
    EXPECT_EQ(0, NcGetClientRect(tool_, &tiny, nullptr));
}

TEST_F(NcCaption, PaintsTheGradientOverTheBandOnly) {
    RECT window = windowRect(tool_);
    int width = band_.right - band_.left, height = band_.bottom - band_.top;
    kvtest::Canvas canvas(window.right - window.left, window.bottom - window.top, RGB(1, 2, 3));
    ASSERT_EQ(1, NcDrawCaption(tool_, canvas.dc(), KXNC_ACTIVE));
    for (int x = 0; x < canvas.width(); x += 7) {
        EXPECT_EQ(RGB(1, 2, 3), canvas.pixel(x, band_.top - 1));
        EXPECT_EQ(RGB(1, 2, 3), canvas.pixel(x, band_.bottom));
    }
    std::vector<COLORREF> active = gradientRow(GetSysColor(COLOR_ACTIVECAPTION),
                                               GetSysColor(COLOR_GRADIENTACTIVECAPTION), width, height, 1);
    int button = width - 2 - (height - 4);  // the close button's left edge
    for (int x = 0; x < button; ++x) EXPECT_EQ(active[x], canvas.pixel(band_.left + x, band_.top + 1)) << x;
    EXPECT_EQ(HTCLOSE, hitTest(screen(band_.left + button + 3, band_.top + 3)));
    EXPECT_NE(active[button + 3], canvas.pixel(band_.left + button + 3, band_.top + 3));

    NcDrawCaption(tool_, canvas.dc(), KXNC_INACTIVE);
    EXPECT_EQ(GetSysColor(COLOR_INACTIVECAPTION), canvas.pixel(band_.left, band_.top + 1));
    SetWindowTextW(tool_, L"Tool palette");
    NcDrawCaption(tool_, canvas.dc(), KXNC_ACTIVE);
    int title = 0;
    for (int x = 0; x < button; ++x) title += canvas.pixel(band_.left + x, band_.top + height / 2) != active[x];
    EXPECT_GT(title, 10);
}

TEST_F(NcCaption, WindowShowsItsActivation) {
    EXPECT_EQ(GetSysColor(COLOR_ACTIVECAPTION), bandPixel(0, 1));
    SendMessageW(tool_, WM_NCACTIVATE, FALSE, 0);
    EXPECT_EQ(GetSysColor(COLOR_INACTIVECAPTION), bandPixel(0, 1));
    // Another window active: a palette asked to look active keeps that look when painted again.
    kvtest::HostWindow other(100, 100);
    SetActiveWindow(other);
    SendMessageW(tool_, WM_NCACTIVATE, TRUE, 0);
    RedrawWindow(tool_, nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE | RDW_UPDATENOW);
    EXPECT_EQ(GetSysColor(COLOR_ACTIVECAPTION), bandPixel(0, 1));
}

TEST_F(NcCaption, HitTestingAndTheCloseButton) {
    int middle = (band_.top + band_.bottom) / 2;
    POINT button = screen(band_.right - 6, middle), away = screen(band_.left + 20, band_.bottom + 30);
    EXPECT_EQ(HTCAPTION, hitTest(screen(band_.left + 20, middle)));
    EXPECT_EQ(HTCLOSE, hitTest(button));
    EXPECT_EQ(HTCLIENT, hitTest(away));
    EXPECT_EQ(HTLEFT, hitTest(screen(0, band_.bottom + 20)));

    // Pressed, moved off, released elsewhere: the button shows it, nothing is sent.
    int width = band_.right - band_.left, height = band_.bottom - band_.top;
    auto face = [&] { return bandPixels(width - height + 2, 2, width - 2, height - 2); };
    std::vector<COLORREF> raised = face();
    ScreenToClient(tool_, &button);
    ScreenToClient(tool_, &away);
    PostMessageW(tool_, WM_NCLBUTTONDOWN, HTCLOSE, 0);
    kvtest::PumpMessages();
    EXPECT_EQ(tool_.handle(), GetCapture());
    EXPECT_NE(raised, face());
    PostMessageW(tool_, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(away.x, away.y));
    kvtest::PumpMessages();
    EXPECT_EQ(raised, face());
    PostMessageW(tool_, WM_LBUTTONUP, 0, MAKELPARAM(away.x, away.y));
    kvtest::PumpMessages();
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_EQ(0, tool_.count(WM_CLOSE));

    // Released over it: SC_CLOSE, then WM_CLOSE.
    PostMessageW(tool_, WM_NCLBUTTONDOWN, HTCLOSE, 0);
    PostMessageW(tool_, WM_LBUTTONUP, 0, MAKELPARAM(button.x, button.y));
    kvtest::PumpMessages();
    ASSERT_EQ(1, tool_.count(WM_SYSCOMMAND));
    EXPECT_EQ(static_cast<WPARAM>(SC_CLOSE), tool_.messages(WM_SYSCOMMAND)[0].wParam & 0xFFF0);
    EXPECT_EQ(1, tool_.count(WM_CLOSE));

    SetWindowLongW(tool_, GWL_STYLE, kToolStyle & ~WS_SYSMENU);  // no system menu, no button
    EXPECT_EQ(HTCAPTION, hitTest(screen(band_.right - 6, middle)));
}

TEST_F(NcCaption, DraggingTheCaptionMovesTheWindow) {
    RECT before = windowRect(tool_);
    POINT start = screen(band_.left + 30, (band_.top + band_.bottom) / 2);
    SetCursorPos(start.x, start.y);
    kvtest::PumpMessages();
    // Real mouse input: pressed, moved right 40 and down 25 in steps too small for the pointer
    // acceleration, released.
    std::vector<INPUT> input(10);
    for (size_t i = 0; i < input.size(); ++i) {
        input[i].type = INPUT_MOUSE;
        input[i].mi.dwFlags = i == 0 ? MOUSEEVENTF_LEFTDOWN : i == 9 ? MOUSEEVENTF_LEFTUP : MOUSEEVENTF_MOVE;
        input[i].mi.dx = i >= 1 && i <= 8 ? 5 : 0;
        input[i].mi.dy = i >= 1 && i <= 5 ? 5 : 0;
    }
    ASSERT_EQ(input.size(), SendInput(static_cast<UINT>(input.size()), input.data(), sizeof(INPUT)));
    kvtest::PumpFor(100);
    EXPECT_EQ(before.left + 40, windowRect(tool_).left);
    EXPECT_EQ(before.top + 25, windowRect(tool_).top);
}

}  // namespace
