// The splash window: where it appears, what it paints, and the three ways it closes.
#include "kvtest.h"
#include "kvkit_diagnostics.h"

namespace {

const COLORREF kLogoBlue = RGB(20, 60, 160), kLogoWhite = RGB(250, 250, 250), kTextYellow = RGB(255, 230, 0);

class SplashTest : public kvtest::KvTest {
protected:
    // A 240 x 140 blue logo with a white band at the top.
    HBITMAP makeLogo(int width = 240, int height = 140) {
        return kvtest::MakeBitmap(width, height, [](int, int y) { return y < 20 ? kLogoWhite : kLogoBlue; });
    }
    static RECT workAreaOf(HWND window) {
        MONITORINFO info = {};
        info.cbSize = sizeof(info);
        GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &info);
        return info.rcWork;
    }
    static RECT clientOnScreen(HWND window) {
        RECT client;
        GetClientRect(window, &client);
        MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&client), 2);
        return client;
    }
    kvtest::HostWindow host{300, 200};
};

TEST_F(SplashTest, ShowsTheLogoAndItsLinesCentredOnTheMainWindowsMonitorAndClosesOnItsTimer) {
    HBITMAP logo = makeLogo();
    HWND splash = KxSplash_Show(host, logo, L"Version 4.2\nLicensed to Berg & Co", kTextYellow, 150);
    ASSERT_NE(nullptr, splash);
    EXPECT_TRUE(kvtest::IsGdiObject(logo));  // the caller's bitmap stays the caller's
    DeleteObject(logo);
    EXPECT_TRUE(IsWindowVisible(splash));
    EXPECT_NE(splash, GetActiveWindow());
    EXPECT_TRUE(GetWindowLongW(splash, GWL_EXSTYLE) & WS_EX_TOPMOST);

    // The whole logo shows, centred on the work area.
    RECT client = clientOnScreen(splash), area = workAreaOf(host);
    EXPECT_EQ(240, client.right - client.left);
    EXPECT_EQ(140, client.bottom - client.top);
    EXPECT_NEAR((area.left + area.right) / 2, (client.left + client.right) / 2, 1);
    EXPECT_NEAR((area.top + area.bottom) / 2, (client.top + client.bottom) / 2, 1);

    // The logo, and the lines in the lower left part in the text colour.
    kvtest::Canvas canvas(240, 140);
    SendMessageW(splash, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT);
    EXPECT_EQ(kLogoWhite, canvas.pixel(120, 10));
    EXPECT_EQ(kLogoBlue, canvas.pixel(230, 130));
    int textAbove = 0, textBelow = 0;
    for (int y = 0; y < 140; ++y)
        for (int x = 0; x < 240; ++x)
            if (canvas.pixel(x, y) == kTextYellow) ++(y < 70 ? textAbove : textBelow);
    EXPECT_EQ(0, textAbove);
    EXPECT_GT(textBelow, 20);

    kvtest::PumpFor(80);
    EXPECT_TRUE(IsWindow(splash));
    kvtest::PumpFor(300);
    EXPECT_FALSE(IsWindow(splash));
}

TEST_F(SplashTest, AClickOrTheCallClosesItAndWithoutAMainWindowTheSessionsCounts) {
    HBITMAP logo = makeLogo();
    HWND splash = KxSplash_Show(host, logo, nullptr, 0, 0);
    PostMessageW(splash, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    kvtest::PumpFor(50);
    EXPECT_FALSE(IsWindow(splash));

    // Without a main window of the caller's, the session's main window places it.
    HWND previous = GlobalSession()->mainWindow;
    GlobalSession()->mainWindow = host;
    splash = KxSplash_Show(nullptr, logo, L"", 0, 0);
    GlobalSession()->mainWindow = previous;
    ASSERT_NE(nullptr, splash);
    RECT client = clientOnScreen(splash), area = workAreaOf(host);
    EXPECT_NEAR((area.left + area.right) / 2, (client.left + client.right) / 2, 1);
    kvtest::PumpFor(50);
    EXPECT_TRUE(IsWindow(splash));
    EXPECT_EQ(1, KxSplash_Close(splash));
    EXPECT_FALSE(IsWindow(splash));
    EXPECT_EQ(0, KxSplash_Close(splash));
    DeleteObject(logo);
}

TEST_F(SplashTest, ALogoLargerThanTwoThirdsOfTheWorkAreaIsShrunkInProportion) {
    RECT area = workAreaOf(host);
    int areaWidth = area.right - area.left, areaHeight = area.bottom - area.top;
    HBITMAP logo = makeLogo(areaWidth * 6 / 5, areaWidth * 3 / 5);  // 2 : 1
    HWND splash = KxSplash_Show(host, logo, nullptr, 0, 0);
    DeleteObject(logo);
    ASSERT_NE(nullptr, splash);
    RECT client = clientOnScreen(splash);
    int width = client.right - client.left, height = client.bottom - client.top;
    EXPECT_LE(width, areaWidth * 2 / 3);
    EXPECT_LE(height, areaHeight * 2 / 3);
    EXPECT_NEAR(areaWidth * 2 / 3, width, 1);
    EXPECT_NEAR(width / 2, height, 1);
    KxSplash_Close(splash);
}

TEST_F(SplashTest, BadInputAndNoMemoryGiveNullAndLeaveNoWindow) {
    EXPECT_EQ(nullptr, KxSplash_Show(host, nullptr, L"x", 0, 100));
    EXPECT_EQ(nullptr, KxSplash_Show(host, reinterpret_cast<HBITMAP>(GetStockObject(WHITE_BRUSH)), nullptr, 0, 100));
    EXPECT_EQ(0, KxSplash_Close(nullptr));
    EXPECT_EQ(0, KxSplash_Close(host));
    HBITMAP logo = makeLogo();
    for (int nth : {1, 2}) {  // the record, then the copy of the lines
        KvText_FailAllocation(nth);
        EXPECT_EQ(nullptr, KxSplash_Show(host, logo, L"Version", 0, 100)) << nth;
    }
    KvText_FailAllocation(0);
    DeleteObject(logo);
    EXPECT_EQ(nullptr, FindWindowW(L"KVSplashClass", nullptr));
}

}  // namespace
