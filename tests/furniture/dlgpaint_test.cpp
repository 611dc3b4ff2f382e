// Header bands: the gradient, where title, subtitle and icon go, and SetDlgHeaderName.
#include "furniture_test.h"
#include <algorithm>
#include <string>
#include "kvkit_dlgpaint.h"

using namespace furniture_test;

namespace {

class DlgHeader : public FurnitureTest {
protected:
    DlgHeader() : dialog_(300, 200) {
        SetWindowTextW(dialog_, L"Dialog caption");
        header_ = dialog_.createChild(L"KXDlgPaintClass", L"Customer\nAddress and contact persons",
                                      WS_VISIBLE, 0, 0, 300, 44, 100);
    }
    // The columns and rows where the band differs from its gradient, within rows [top, bottom).
    RECT paintedOverGradient(int top, int bottom) {
        SIZE size = clientSize(header_);
        std::vector<COLORREF> pixels = printedClient(header_);
        RECT painted = {size.cx, size.cy, -1, -1};
        for (int y = top; y < bottom; ++y) {
            std::vector<COLORREF> gradient = gradientRow(GetSysColor(COLOR_ACTIVECAPTION),
                                                         GetSysColor(COLOR_GRADIENTACTIVECAPTION),
                                                         size.cx, size.cy - 2, y);
            for (int x = 0; x < size.cx; ++x)
                if (pixels[y * size.cx + x] != gradient[x]) {
                    painted = {std::min<LONG>(painted.left, x), std::min<LONG>(painted.top, y),
                               std::max<LONG>(painted.right, x), std::max<LONG>(painted.bottom, y)};
                }
        }
        return painted;
    }
    std::wstring text(HWND window) {
        wchar_t buffer[128] = {};
        GetWindowTextW(window, buffer, 128);
        return buffer;
    }

    kvtest::HostWindow dialog_;
    HWND header_;
};

TEST_F(DlgHeader, GradientWithTitleSubtitleAndIcon) {
    SetWindowTextW(header_, L"");
    std::vector<COLORREF> pixels = printedClient(header_);
    std::vector<COLORREF> gradient = gradientRow(GetSysColor(COLOR_ACTIVECAPTION),
                                                 GetSysColor(COLOR_GRADIENTACTIVECAPTION), 300, 42, 20);
    EXPECT_EQ(gradient, std::vector<COLORREF>(pixels.begin() + 20 * 300, pixels.begin() + 21 * 300));
    EXPECT_EQ(GetSysColor(COLOR_ACTIVECAPTION), pixels[0]);
    EXPECT_NE(pixels[41 * 300], pixels[43 * 300]);  // the etched line along the bottom
    RedrawWindow(header_, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    HDC dc = GetDC(header_);
    for (int x = 0; x < 300; x += 37) EXPECT_EQ(gradient[x], GetPixel(dc, x, 20)) << x;
    ReleaseDC(header_, dc);

    // The title at the margin above the subtitle, which is indented.
    SetWindowTextW(header_, L"Customer\nAddress and contact persons");
    RECT all = paintedOverGradient(0, 42);
    int middle = (all.top + all.bottom) / 2;
    RECT title = paintedOverGradient(0, middle), subtitle = paintedOverGradient(middle + 1, 42);
    EXPECT_TRUE(title.left >= 8 && title.left <= 10) << title.left;
    EXPECT_TRUE(subtitle.left >= 20 && subtitle.left <= 22) << subtitle.left;
    EXPECT_GT(subtitle.right, title.right);

    // An icon of the caller's at the right end, 32 pixels high in a band of 42.
    HBITMAP red = kvtest::MakeBitmap(32, 32, [](int, int) { return RGB(255, 0, 0); });
    HBITMAP mask = kvtest::MakeBitmap(32, 32, [](int, int) { return RGB(0, 0, 0); });
    ICONINFO info = {TRUE, 0, 0, mask, red};
    HICON icon = CreateIconIndirect(&info);
    EXPECT_EQ(0, SendMessageW(header_, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon)));
    EXPECT_EQ(reinterpret_cast<LRESULT>(icon), SendMessageW(header_, WM_GETICON, ICON_BIG, 0));
    pixels = printedClient(header_);
    EXPECT_EQ(RGB(255, 0, 0), pixels[5 * 300 + 260]);
    EXPECT_EQ(RGB(255, 0, 0), pixels[36 * 300 + 291]);
    EXPECT_NE(RGB(255, 0, 0), pixels[20 * 300 + 259]);
    SendMessageW(header_, WM_SETICON, ICON_BIG, 0);
    DestroyIcon(icon);
    DeleteObject(red);
    DeleteObject(mask);
}

TEST_F(DlgHeader, SetDlgHeaderNameShowsInTheBand) {
    ASSERT_EQ(1, SetDlgHeaderName(dialog_, L"A", 0));
    EXPECT_EQ(L"A\nAddress and contact persons", text(header_));
    EXPECT_EQ(L"Dialog caption", text(dialog_));
    LONG shortTitle = paintedOverGradient(0, 20).right;
    ASSERT_EQ(1, SetDlgHeaderName(dialog_, L"Supplier", 0));
    EXPECT_GT(paintedOverGradient(0, 20).right, shortTitle + 20);

    ASSERT_EQ(1, SetDlgHeaderName(dialog_, L"Invoice\nLines and totals", 1));
    EXPECT_EQ(L"Invoice\nLines and totals", text(header_));
    EXPECT_EQ(L"Invoice", text(dialog_));
    ASSERT_EQ(1, SetDlgHeaderName(header_, L"Order", 1));  // the band itself
    EXPECT_EQ(L"Order\nLines and totals", text(header_));
    EXPECT_EQ(L"Order", text(dialog_));
    ASSERT_EQ(1, SetDlgHeaderName(dialog_, MAKEINTRESOURCEW(16801), 0));
    EXPECT_EQ(L"Customer\nAddress and contact persons", text(header_));

    // Without a band the caption takes the title.
    kvtest::HostWindow plain(100, 100);
    ASSERT_EQ(1, SetDlgHeaderName(plain, L"Contact\nnot shown", 0));
    EXPECT_EQ(L"Contact", text(plain));
}

TEST_F(DlgHeader, BadInputAndNoMemoryChangeNothing) {
    EXPECT_EQ(0, SetDlgHeaderName(nullptr, L"x", 1));
    EXPECT_EQ(0, SetDlgHeaderName(DestroyedWindow(), L"x", 1));
    EXPECT_EQ(0, SetDlgHeaderName(dialog_, nullptr, 1));
    EXPECT_EQ(0, SetDlgHeaderName(dialog_, MAKEINTRESOURCEW(9999), 1));
    // Old band text, new band text, caption.
    for (int nth = 1; nth <= 3; ++nth) {
        KvText_FailAllocation(nth);
        EXPECT_EQ(0, SetDlgHeaderName(dialog_, L"Supplier", 1)) << nth;
        KvText_FailAllocation(0);
    }
    EXPECT_EQ(L"Customer\nAddress and contact persons", text(header_));
    EXPECT_EQ(L"Dialog caption", text(dialog_));
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, dialog_.createChild(L"KXDlgPaintClass", L"", WS_VISIBLE, 0, 0, 10, 10, 101));
    KvText_FailAllocation(0);
}

}  // namespace
