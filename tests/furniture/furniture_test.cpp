#include "furniture_test.h"
#include "kvkit_caption.h"
#include "kvkit_dlgpaint.h"
#include "kvkit_draw.h"
#include "kvkit_popuphint.h"

namespace furniture_test {

RECT windowRect(HWND window) {
    RECT rect = {};
    GetWindowRect(window, &rect);
    return rect;
}

SIZE clientSize(HWND window) {
    RECT rect = {};
    GetClientRect(window, &rect);
    return SIZE{rect.right, rect.bottom};
}

RECT workArea() {
    RECT area;
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    return area;
}

std::vector<HWND> windowsOfClass(const wchar_t* className) {
    std::vector<HWND> found;
    for (HWND window = FindWindowExW(nullptr, nullptr, className, nullptr); window;
         window = FindWindowExW(nullptr, window, className, nullptr))
        found.push_back(window);
    return found;
}

std::vector<COLORREF> printedClient(HWND window) {
    SIZE size = clientSize(window);
    kvtest::Canvas canvas(size.cx, size.cy, RGB(1, 2, 3));
    SendMessageW(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT);
    std::vector<COLORREF> pixels;
    for (int y = 0; y < size.cy; ++y)
        for (int x = 0; x < size.cx; ++x) pixels.push_back(canvas.pixel(x, y));
    return pixels;
}

SIZE textExtent(HWND window, const wchar_t* text, int maxWidth) {
    HDC dc = GetDC(window);
    auto font = reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0));
    HGDIOBJ old = SelectObject(dc, font ? font : GetStockObject(DEFAULT_GUI_FONT));
    RECT bounds = {0, 0, maxWidth, 0};
    DrawTextW(dc, text, -1, &bounds, DT_LEFT | DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS | DT_CALCRECT);
    SelectObject(dc, old);
    ReleaseDC(window, dc);
    return SIZE{bounds.right, bounds.bottom};
}

std::vector<COLORREF> gradientRow(COLORREF from, COLORREF to, int width, int height, int row) {
    kvtest::Canvas canvas(width, height);
    RECT rect = {0, 0, width, height};
    Kx1GradientFill(canvas.dc(), from, to, 0, 0, &rect);
    std::vector<COLORREF> pixels;
    for (int x = 0; x < width; ++x) pixels.push_back(canvas.pixel(x, row));
    return pixels;
}

HWND DestroyedWindow() {
    HWND window = CreateWindowW(L"Edit", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    DestroyWindow(window);
    return window;
}

void FurnitureTest::SetUpTestSuite() {
    static bool warmed = false;
    if (warmed) return;
    warmed = true;
    kvtest::HostWindow host(200, 100, WS_POPUP | WS_THICKFRAME | WS_SYSMENU | WS_VISIBLE);
    HWND field = host.createChild(L"Edit", L"", WS_VISIBLE, 10, 10, 100, 20, 1);
    DestroyWindow(DrawPopupTextEx(field, nullptr, L"warm-up", INFINITE, 0));
    for (UINT icon = KXTIPP_INFO; icon <= KXTIPP_ERROR; ++icon) {
        HWND bubble = KxDlgTipp_Show(field, L"warm-up", icon);
        UpdateWindow(bubble);
        DestroyWindow(bubble);
    }
    kvtest::Canvas canvas(300, 100);
    NcDrawCaption(host, canvas.dc(), KXNC_ACTIVE);
    kvtest::PumpMessages();
}

}  // namespace furniture_test
