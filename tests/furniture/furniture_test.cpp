#include "furniture_test.h"
#include "kvkit_caption.h"
#include "kvkit_dlgpaint.h"
#include "kvkit_draw.h"
#include "kvkit_popuphint.h"

namespace furniture_test {

std::vector<COLORREF> gradientRow(COLORREF from, COLORREF to, int width, int height, int row) {
    kvtest::Canvas canvas(width, height);
    RECT rect = {0, 0, width, height};
    Kx1GradientFill(canvas.dc(), from, to, 0, 0, &rect);
    std::vector<COLORREF> pixels;
    for (int x = 0; x < width; ++x) pixels.push_back(canvas.pixel(x, row));
    return pixels;
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
