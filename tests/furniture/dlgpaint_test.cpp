// Header bands: the gradient, title and subtitle, the icon, SetDlgHeaderName on real dialogs made
// from templates that name the class.
#include "furniture_test.h"
#include <algorithm>
#include <string>
#include <vector>
#include "kvkit_dlgpaint.h"

using furniture_test::gradientRow;
using furniture_test::printedClient;

namespace {

const int kHeaderId = 100;

// A modeless dialog from an in-memory template: a header band across the top (when `header` is
// given, as its text) and an edit field.
class HeaderDialog {
public:
    explicit HeaderDialog(const wchar_t* header, const wchar_t* caption = L"Dialog caption") {
        dword(WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_VISIBLE | DS_SETFONT);
        dword(0);
        words_.push_back(header ? 2 : 1);
        coordinates(0, 0, 200, 120);
        words_.push_back(0);  // no menu
        words_.push_back(0);  // the dialog class
        text(caption);
        words_.push_back(8);
        text(L"MS Shell Dlg");
        if (header) item(L"KXDlgPaintClass", header, 0, 0, 0, 200, 24, kHeaderId);
        item(L"Edit", L"", WS_BORDER, 10, 40, 100, 12, 101);
        window_ = CreateDialogIndirectParamW(GetModuleHandleW(nullptr),
                                             reinterpret_cast<const DLGTEMPLATE*>(words_.data()),
                                             nullptr, dialogProc, 0);
        kvtest::PumpMessages();
    }
    ~HeaderDialog() {
        if (IsWindow(window_)) DestroyWindow(window_);
        kvtest::PumpMessages();
    }
    HeaderDialog(const HeaderDialog&) = delete;
    HeaderDialog& operator=(const HeaderDialog&) = delete;

    operator HWND() const { return window_; }
    HWND header() const { return GetDlgItem(window_, kHeaderId); }

private:
    static INT_PTR CALLBACK dialogProc(HWND, UINT message, WPARAM, LPARAM) { return message == WM_INITDIALOG; }
    void item(const wchar_t* className, const wchar_t* title, DWORD style, int x, int y, int cx, int cy, int id) {
        if (words_.size() % 2) words_.push_back(0);
        dword(style | WS_CHILD | WS_VISIBLE);
        dword(0);
        coordinates(x, y, cx, cy);
        words_.push_back(static_cast<WORD>(id));
        text(className);
        text(title);
        words_.push_back(0);
    }
    void dword(DWORD value) {
        words_.push_back(LOWORD(value));
        words_.push_back(HIWORD(value));
    }
    void coordinates(int x, int y, int cx, int cy) {
        for (int value : {x, y, cx, cy}) words_.push_back(static_cast<WORD>(value));
    }
    void text(const wchar_t* value) {
        for (; *value; ++value) words_.push_back(*value);
        words_.push_back(0);
    }
    std::vector<WORD> words_;
    HWND window_ = nullptr;
};

std::wstring windowText(HWND window) {
    wchar_t text[256] = {};
    GetWindowTextW(window, text, 256);
    return text;
}

// Pixels of the printed band that differ from the band's gradient, per row and column ranges.
struct Painted {
    int count = 0, left = 1 << 30, right = -1, top = 1 << 30, bottom = -1;
};
Painted paintedOverGradient(HWND header, int x0, int x1, int y0, int y1) {
    int width, height;
    std::vector<COLORREF> pixels = printedClient(header, &width, &height);
    Painted painted;
    for (int y = y0; y < y1; ++y) {
        std::vector<COLORREF> gradient = gradientRow(GetSysColor(COLOR_ACTIVECAPTION),
                                                     GetSysColor(COLOR_GRADIENTACTIVECAPTION), width,
                                                     height - 2, y);
        for (int x = x0; x < x1; ++x) {
            if (pixels[y * width + x] == gradient[x]) continue;
            ++painted.count;
            painted.left = std::min(painted.left, x);
            painted.right = std::max(painted.right, x);
            painted.top = std::min(painted.top, y);
            painted.bottom = std::max(painted.bottom, y);
        }
    }
    return painted;
}

HICON solidIcon(COLORREF colour) {
    HBITMAP image = kvtest::MakeBitmap(32, 32, [=](int, int) { return colour; });
    HBITMAP mask = kvtest::MakeBitmap(32, 32, [](int, int) { return RGB(0, 0, 0); });
    ICONINFO info = {TRUE, 0, 0, mask, image};
    HICON icon = CreateIconIndirect(&info);
    DeleteObject(image);
    DeleteObject(mask);
    return icon;
}

class DlgHeader : public furniture_test::FurnitureTest {};

TEST_F(DlgHeader, BandIsTheCaptionGradientAboveAnEtchedLine) {
    HeaderDialog dialog(L"");
    HWND header = dialog.header();
    ASSERT_NE(nullptr, header);
    int width, height;
    std::vector<COLORREF> pixels = printedClient(header, &width, &height);
    ASSERT_GT(height, 10);
    COLORREF from = GetSysColor(COLOR_ACTIVECAPTION), to = GetSysColor(COLOR_GRADIENTACTIVECAPTION);
    for (int y : {0, height / 2, height - 3}) {
        std::vector<COLORREF> expected = gradientRow(from, to, width, height - 2, y);
        EXPECT_EQ(expected, std::vector<COLORREF>(pixels.begin() + y * width, pixels.begin() + (y + 1) * width))
            << "row " << y;
    }
    EXPECT_EQ(from, pixels[0]);
    EXPECT_NE(pixels[(height - 3) * width + 5], pixels[(height - 1) * width + 5]);

    // The window paints the same through its own WM_PAINT.
    RedrawWindow(header, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    HDC dc = GetDC(header);
    std::vector<COLORREF> expected = gradientRow(from, to, width, height - 2, height / 2);
    for (int x = 0; x < width; x += 17) EXPECT_EQ(expected[x], GetPixel(dc, x, height / 2)) << x;
    ReleaseDC(header, dc);
}

TEST_F(DlgHeader, TitleAboveIndentedSubtitleAndIconAtTheRight) {
    HeaderDialog dialog(L"Customer\nAddress and contact persons");
    HWND header = dialog.header();
    SIZE size = furniture_test::clientSize(header);
    Painted all = paintedOverGradient(header, 0, size.cx, 0, size.cy - 2);
    ASSERT_GT(all.count, 0);
    // The title starts at the margin, the subtitle further in and lower.
    int middle = (all.top + all.bottom) / 2;
    Painted title = paintedOverGradient(header, 0, size.cx, 0, middle);
    Painted subtitle = paintedOverGradient(header, 0, size.cx, middle + 1, size.cy - 2);
    EXPECT_GE(title.left, 8);
    EXPECT_LE(title.left, 10);
    EXPECT_GE(subtitle.left, 20);
    EXPECT_LE(subtitle.left, 22);
    EXPECT_GT(subtitle.right, title.right);  // the longer subtitle

    HICON red = solidIcon(RGB(255, 0, 0));
    EXPECT_EQ(nullptr, reinterpret_cast<HICON>(SendMessageW(header, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(red))));
    EXPECT_EQ(red, reinterpret_cast<HICON>(SendMessageW(header, WM_GETICON, ICON_BIG, 0)));
    int width, height;
    std::vector<COLORREF> pixels = printedClient(header, &width, &height);
    int band = height - 2, iconSize = std::min(32, band - 4), iconLeft = width - 8 - iconSize;
    int iconTop = (band - iconSize) / 2;
    EXPECT_EQ(RGB(255, 0, 0), pixels[(iconTop + iconSize / 2) * width + iconLeft]);
    EXPECT_EQ(RGB(255, 0, 0), pixels[(iconTop + iconSize - 1) * width + iconLeft + iconSize - 1]);
    EXPECT_NE(RGB(255, 0, 0), pixels[(iconTop + iconSize / 2) * width + iconLeft - 1]);
    EXPECT_EQ(red, reinterpret_cast<HICON>(SendMessageW(header, WM_SETICON, ICON_BIG, 0)));
    DestroyIcon(red);

    // A font of its own replaces the dialog's.
    HFONT font = CreateFontW(-20, 0, 0, 0, FW_NORMAL, 0, 0, 0, 0, 0, 0, 0, 0, L"Arial");
    SendMessageW(header, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    EXPECT_EQ(font, reinterpret_cast<HFONT>(SendMessageW(header, WM_GETFONT, 0, 0)));
    Painted bigger = paintedOverGradient(header, 0, size.cx, 0, size.cy - 2);
    EXPECT_GT(bigger.bottom - bigger.top, all.bottom - all.top);
    DestroyWindow(dialog);
    DeleteObject(font);
}

TEST_F(DlgHeader, SetDlgHeaderNameShowsInTheBand) {
    HeaderDialog dialog(L"Customer\nAddress and contact persons");
    HWND header = dialog.header();
    SIZE size = furniture_test::clientSize(header);
    int titleRows = (size.cy - 2) / 2;

    // The title changes, the subtitle and the dialog caption stay.
    ASSERT_EQ(1, SetDlgHeaderName(dialog, L"A", 0));
    EXPECT_EQ(L"A\nAddress and contact persons", windowText(header));
    EXPECT_EQ(L"Dialog caption", windowText(dialog));
    Painted shortTitle = paintedOverGradient(header, 0, size.cx, 0, titleRows);
    ASSERT_EQ(1, SetDlgHeaderName(dialog, L"Supplier", 0));
    Painted longTitle = paintedOverGradient(header, 0, size.cx, 0, titleRows);
    EXPECT_GT(longTitle.right, shortTitle.right + 20);

    // Title and subtitle at once, the caption along; the band itself may be named too.
    ASSERT_EQ(1, SetDlgHeaderName(dialog, L"Invoice\nLines and totals", 1));
    EXPECT_EQ(L"Invoice\nLines and totals", windowText(header));
    EXPECT_EQ(L"Invoice", windowText(dialog));
    ASSERT_EQ(1, SetDlgHeaderName(header, L"Order", 1));
    EXPECT_EQ(L"Order\nLines and totals", windowText(header));
    EXPECT_EQ(L"Order", windowText(dialog));
    ASSERT_EQ(1, SetDlgHeaderName(dialog, MAKEINTRESOURCEW(16801), 0));
    EXPECT_EQ(L"Customer\nAddress and contact persons", windowText(header));

    // Without a band the caption shows the name.
    HeaderDialog plain(nullptr);
    ASSERT_EQ(1, SetDlgHeaderName(plain, L"Contact\nignored subtitle", 0));
    EXPECT_EQ(L"Contact", windowText(plain));
}

TEST_F(DlgHeader, BadInputAndNoMemoryChangeNothing) {
    HeaderDialog dialog(L"Customer\nAddress");
    HWND gone = CreateWindowW(L"Static", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    DestroyWindow(gone);
    EXPECT_EQ(0, SetDlgHeaderName(nullptr, L"x", 1));
    EXPECT_EQ(0, SetDlgHeaderName(gone, L"x", 1));
    EXPECT_EQ(0, SetDlgHeaderName(dialog, nullptr, 1));
    EXPECT_EQ(0, SetDlgHeaderName(dialog, MAKEINTRESOURCEW(9999), 1));
    // Old text, new text, caption: each allocation failing leaves both texts as they were.
    for (int nth = 1; nth <= 3; ++nth) {
        KvText_FailAllocation(nth);
        EXPECT_EQ(0, SetDlgHeaderName(dialog, L"Supplier", 1)) << nth;
        KvText_FailAllocation(0);
    }
    EXPECT_EQ(L"Customer\nAddress", windowText(dialog.header()));
    EXPECT_EQ(L"Dialog caption", windowText(dialog));

    // A band whose record cannot be made is not created.
    KvText_FailAllocation(1);
    HWND band = CreateWindowW(L"KXDlgPaintClass", L"x", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    KvText_FailAllocation(0);
    EXPECT_EQ(nullptr, band);
}

}  // namespace
