// The painted caption on a tool window that hands WM_NCCALCSIZE and WM_NCPAINT to the library:
// its size and the client rectangle below it, what it paints, hit-testing, moving by the caption
// and closing by the button.
#include "furniture_test.h"
#include <algorithm>
#include <vector>
#include "kvkit_caption.h"
#include "kvkit_core.h"

using furniture_test::gradientRow;
using furniture_test::windowRect;

namespace {

const DWORD kToolStyle = WS_POPUP | WS_THICKFRAME | WS_SYSMENU | WS_VISIBLE;

// A tool window as a host writes it: the library computes its client area and paints its caption;
// WM_CLOSE is only counted.
class ToolWindow {
public:
    explicit ToolWindow(DWORD style = kToolStyle) : host_(240, 140, style) {
        host_.setHandler([](HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
            switch (message) {
            case WM_NCCALCSIZE: {
                auto* rect = reinterpret_cast<RECT*>(lParam);  // also rgrc[0] of NCCALCSIZE_PARAMS
                NcGetClientRect(window, rect, rect);
                *result = 0;
                return true;
            }
            case WM_NCPAINT:
                DefWindowProcW(window, message, wParam, lParam);
                NcDrawCaption(window, nullptr, KXNC_CURRENT);
                *result = 0;
                return true;
            case WM_CLOSE:
                *result = 0;
                return true;
            }
            return false;
        });
        SetWindowTextW(host_, L"");
        SetWindowPos(host_, HWND_TOP, 100, 100, 0, 0, SWP_NOSIZE | SWP_FRAMECHANGED);
        SetForegroundWindow(host_);
        RedrawWindow(host_, nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE | RDW_UPDATENOW);
        kvtest::PumpMessages();
    }
    operator HWND() const { return host_; }
    kvtest::HostWindow& host() { return host_; }

    // Window coordinates of the caption band.
    RECT band() const {
        RECT window = windowRect(host_);
        POINT client = {0, 0};
        ClientToScreen(host_, &client);
        int cx = 0, cy = 0;
        NcGetCaptionCxCy(host_, &cx, &cy);
        int left = client.x - window.left, top = client.y - window.top - cy;
        return RECT{left, top, left + cx, top + cy};
    }
    POINT screen(int x, int y) const {
        RECT window = windowRect(host_);
        return POINT{window.left + x, window.top + y};
    }
    LRESULT hitTest(POINT screen) const {
        return SendMessageW(host_, WM_NCHITTEST, 0, MAKELPARAM(screen.x, screen.y));
    }

private:
    kvtest::HostWindow host_;
};

int captionHeightOfFont() {
    HFONT font = GetSysSmallCaptionFont();
    HDC screen = GetDC(nullptr);
    HGDIOBJ old = SelectObject(screen, font);
    TEXTMETRICW metrics;
    GetTextMetricsW(screen, &metrics);
    SelectObject(screen, old);
    ReleaseDC(nullptr, screen);
    DeleteObject(font);
    return std::max(16L, metrics.tmHeight) + 4;
}

class NcCaption : public furniture_test::FurnitureTest {};

TEST_F(NcCaption, ClientAreaSitsInsideTheFrameBelowTheCaption) {
    ToolWindow tool;
    int cx = 0, cy = 0;
    ASSERT_EQ(1, NcGetCaptionCxCy(tool, &cx, &cy));
    EXPECT_EQ(captionHeightOfFont(), cy);

    // The frame the style gives, and the real client area the window got from NcGetClientRect.
    RECT frame = {0, 0, 0, 0};
    AdjustWindowRectEx(&frame, kToolStyle, FALSE, 0);
    RECT window = windowRect(tool), client;
    GetClientRect(tool, &client);
    MapWindowPoints(tool, nullptr, reinterpret_cast<POINT*>(&client), 2);
    EXPECT_EQ((RECT{window.left - frame.left, window.top - frame.top + cy, window.right - frame.right,
                     window.bottom - frame.bottom}),
              client);
    EXPECT_EQ(client.right - client.left, cx);
    RECT computed;
    ASSERT_EQ(1, NcGetClientRect(tool, nullptr, &computed));
    EXPECT_EQ(client, computed);

    // Any rectangle, in any coordinates; too small a window keeps an empty client area.
    RECT proposed = {10, 20, 310, 220};
    NcGetClientRect(tool, &proposed, &computed);
    EXPECT_EQ((RECT{10 - frame.left, 20 - frame.top + cy, 310 - frame.right, 220 - frame.bottom}), computed);
    RECT tiny = {0, 0, 4, 4};
    NcGetClientRect(tool, &tiny, &computed);
    EXPECT_TRUE(IsRectEmpty(&computed));
}

TEST_F(NcCaption, PaintsTheGradientExactlyOverTheBand) {
    ToolWindow tool;
    RECT band = tool.band(), window = windowRect(tool);
    int width = window.right - window.left, height = window.bottom - window.top;
    int bandWidth = band.right - band.left, bandHeight = band.bottom - band.top;
    COLORREF marker = RGB(1, 2, 3);
    kvtest::Canvas canvas(width, height, marker);
    ASSERT_EQ(1, NcDrawCaption(tool, canvas.dc(), KXNC_ACTIVE));

    // The rows above and below stay untouched; the band is the gradient up to the close button.
    for (int x = 0; x < width; x += 7) {
        EXPECT_EQ(marker, canvas.pixel(x, band.top - 1)) << x;
        EXPECT_EQ(marker, canvas.pixel(x, band.bottom)) << x;
    }
    EXPECT_EQ(marker, canvas.pixel(band.left - 1, band.top + 3));
    EXPECT_EQ(marker, canvas.pixel(band.right, band.top + 3));
    std::vector<COLORREF> active = gradientRow(GetSysColor(COLOR_ACTIVECAPTION),
                                               GetSysColor(COLOR_GRADIENTACTIVECAPTION), bandWidth, bandHeight, 1);
    int closeLeft = bandWidth - 2 - (bandHeight - 4);
    for (int x = 0; x < closeLeft; ++x) EXPECT_EQ(active[x], canvas.pixel(band.left + x, band.top + 1)) << x;
    // The close button is where hit-testing finds it.
    POINT onButton = tool.screen(band.left + closeLeft + 3, band.top + 3);
    EXPECT_EQ(HTCLOSE, tool.hitTest(onButton));
    EXPECT_NE(active[closeLeft + 3], canvas.pixel(band.left + closeLeft + 3, band.top + 3));

    NcDrawCaption(tool, canvas.dc(), KXNC_INACTIVE);
    EXPECT_EQ(GetSysColor(COLOR_INACTIVECAPTION), canvas.pixel(band.left, band.top + 1));

    // A title is drawn into the band.
    SetWindowTextW(tool, L"Tool palette");
    NcDrawCaption(tool, canvas.dc(), KXNC_ACTIVE);
    int titlePixels = 0;
    for (int y = 0; y < bandHeight; ++y) {
        std::vector<COLORREF> row = gradientRow(GetSysColor(COLOR_ACTIVECAPTION),
                                                GetSysColor(COLOR_GRADIENTACTIVECAPTION), bandWidth, bandHeight, y);
        for (int x = 0; x < closeLeft - 2; ++x) titlePixels += canvas.pixel(band.left + x, band.top + y) != row[x];
    }
    EXPECT_GT(titlePixels, 30);
}

TEST_F(NcCaption, RealPaintingFollowsActivation) {
    ToolWindow tool;
    RECT band = tool.band();
    HDC dc = GetWindowDC(tool);
    EXPECT_EQ(GetSysColor(COLOR_ACTIVECAPTION), GetPixel(dc, band.left, band.top + 1));
    SendMessageW(tool, WM_NCACTIVATE, FALSE, 0);
    EXPECT_EQ(GetSysColor(COLOR_INACTIVECAPTION), GetPixel(dc, band.left, band.top + 1));
    SendMessageW(tool, WM_NCACTIVATE, TRUE, 0);
    EXPECT_EQ(GetSysColor(COLOR_ACTIVECAPTION), GetPixel(dc, band.left, band.top + 1));

    // Another window takes the activation; a palette asked to look active keeps that look when
    // its frame is painted again.
    kvtest::HostWindow other(100, 100);
    SetActiveWindow(other);
    EXPECT_EQ(GetSysColor(COLOR_INACTIVECAPTION), GetPixel(dc, band.left, band.top + 1));
    SendMessageW(tool, WM_NCACTIVATE, TRUE, 0);
    RedrawWindow(tool, nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE | RDW_UPDATENOW);
    EXPECT_EQ(GetSysColor(COLOR_ACTIVECAPTION), GetPixel(dc, band.left, band.top + 1));
    ReleaseDC(tool, dc);
}

TEST_F(NcCaption, HitTestingFindsCaptionCloseButtonClientAndFrame) {
    ToolWindow tool;
    RECT band = tool.band();
    int middle = (band.top + band.bottom) / 2;
    EXPECT_EQ(HTCAPTION, tool.hitTest(tool.screen(band.left + 20, middle)));
    EXPECT_EQ(HTCLOSE, tool.hitTest(tool.screen(band.right - 6, middle)));
    EXPECT_EQ(HTCLIENT, tool.hitTest(tool.screen(band.left + 20, band.bottom + 5)));
    EXPECT_EQ(HTLEFT, tool.hitTest(tool.screen(0, band.bottom + 20)));

    // Without a system menu there is no close button.
    ToolWindow plain(WS_POPUP | WS_THICKFRAME | WS_VISIBLE);
    RECT plainBand = plain.band();
    EXPECT_EQ(HTCAPTION, plain.hitTest(plain.screen(plainBand.right - 6, (plainBand.top + plainBand.bottom) / 2)));
}

TEST_F(NcCaption, CloseButtonSendsCloseWhenReleasedOverIt) {
    ToolWindow tool;
    RECT band = tool.band();
    POINT button = tool.screen(band.right - 6, (band.top + band.bottom) / 2);
    POINT clientButton = button, clientAway = tool.screen(band.left + 20, band.bottom + 30);
    ScreenToClient(tool, &clientButton);
    ScreenToClient(tool, &clientAway);

    // The button's face as the window shows it.
    auto buttonPixels = [&] {
        HDC dc = GetWindowDC(tool);
        std::vector<COLORREF> pixels;
        for (int y = band.top + 2; y < band.bottom - 2; ++y)
            for (int x = band.right - (band.bottom - band.top) + 2; x < band.right - 2; ++x)
                pixels.push_back(GetPixel(dc, x, y));
        ReleaseDC(tool, dc);
        return pixels;
    };
    std::vector<COLORREF> raised = buttonPixels();

    // Pressed, moved off, released elsewhere: nothing.
    PostMessageW(tool, WM_NCLBUTTONDOWN, HTCLOSE, MAKELPARAM(button.x, button.y));
    kvtest::PumpMessages();
    EXPECT_EQ(tool, GetCapture());
    EXPECT_NE(raised, buttonPixels());
    PostMessageW(tool, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(clientAway.x, clientAway.y));
    kvtest::PumpMessages();
    EXPECT_EQ(raised, buttonPixels());
    PostMessageW(tool, WM_LBUTTONUP, 0, MAKELPARAM(clientAway.x, clientAway.y));
    kvtest::PumpMessages();
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_EQ(0, tool.host().count(WM_CLOSE));

    // Pressed and released over the button: the system command, then WM_CLOSE.
    tool.host().clear();
    PostMessageW(tool, WM_NCLBUTTONDOWN, HTCLOSE, MAKELPARAM(button.x, button.y));
    PostMessageW(tool, WM_LBUTTONUP, 0, MAKELPARAM(clientButton.x, clientButton.y));
    kvtest::PumpMessages();
    EXPECT_EQ(nullptr, GetCapture());
    ASSERT_EQ(1, tool.host().count(WM_SYSCOMMAND));
    EXPECT_EQ(static_cast<WPARAM>(SC_CLOSE), tool.host().messages(WM_SYSCOMMAND)[0].wParam & 0xFFF0);
    EXPECT_EQ(1, tool.host().count(WM_CLOSE));
}

TEST_F(NcCaption, DraggingTheCaptionMovesTheWindow) {
    ToolWindow tool;
    RECT band = tool.band(), before = windowRect(tool);
    POINT start = tool.screen(band.left + 30, (band.top + band.bottom) / 2);
    // Real mouse input: pressed on the caption, moved in steps small enough to escape the
    // pointer acceleration, released.
    SetCursorPos(start.x, start.y);
    kvtest::PumpMessages();
    std::vector<INPUT> input(10);
    for (INPUT& event : input) {
        event.type = INPUT_MOUSE;
        event.mi.dwFlags = MOUSEEVENTF_MOVE;
        event.mi.dx = 5;
        event.mi.dy = 5;
    }
    input.front().mi = MOUSEINPUT{0, 0, 0, MOUSEEVENTF_LEFTDOWN, 0, 0};
    input.back().mi = MOUSEINPUT{0, 0, 0, MOUSEEVENTF_LEFTUP, 0, 0};
    for (int i = 6; i <= 8; ++i) input[i].mi.dy = 0;  // 8 steps right, 5 of them down
    ASSERT_EQ(input.size(), SendInput(static_cast<UINT>(input.size()), input.data(), sizeof(INPUT)));
    kvtest::PumpFor(100);
    RECT after = windowRect(tool);
    EXPECT_EQ(before.left + 40, after.left);
    EXPECT_EQ(before.top + 25, after.top);
}

TEST_F(NcCaption, MissingWindowsFail) {
    HWND gone = CreateWindowW(L"Static", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    DestroyWindow(gone);
    int cx = -1, cy = -1;
    RECT rect = {0, 0, 100, 100};
    kvtest::Canvas canvas(10, 10);
    for (HWND window : {static_cast<HWND>(nullptr), gone}) {
        EXPECT_EQ(0, NcGetCaptionCxCy(window, &cx, &cy));
        EXPECT_EQ(0, NcGetClientRect(window, &rect, &rect));
        EXPECT_EQ(0, NcDrawCaption(window, canvas.dc(), KXNC_ACTIVE));
    }
    EXPECT_EQ(-1, cx);
    EXPECT_EQ((RECT{0, 0, 100, 100}), rect);
    ToolWindow tool;
    EXPECT_EQ(0, NcGetClientRect(tool, &rect, nullptr));
    EXPECT_EQ(1, NcGetCaptionCxCy(tool, nullptr, nullptr));
}

}  // namespace
