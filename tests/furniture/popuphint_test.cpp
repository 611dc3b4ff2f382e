// Popup hints: placement beside the anchor and at the monitor's edges, text and picture painting,
// one hint at a time, dismissal by click, key and time-out, and failures that leave the hint on
// show alone.
#include "furniture_test.h"
#include <commctrl.h>
#include "kvkit_popuphint.h"

using furniture_test::clientSize;
using furniture_test::windowRect;
using furniture_test::windowsOfClass;

namespace {

const wchar_t kHintClass[] = L"KVtooltips_class32";
const UINT kTextFormat = DT_LEFT | DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS;

class PopupHint : public furniture_test::FurnitureTest {
protected:
    PopupHint() : host_(400, 300) {
        field_ = host_.createChild(L"Edit", L"", WS_VISIBLE | WS_BORDER, 20, 30, 150, 22, 100);
        SetFocus(field_);
    }
    ~PopupHint() override {
        for (HWND hint : windowsOfClass(kHintClass)) DestroyWindow(hint);
    }
    // The anchor rectangle, given in screen coordinates, in the client coordinates of the host.
    RECT anchorFromScreen(RECT screen) const {
        MapWindowPoints(nullptr, host_, reinterpret_cast<POINT*>(&screen), 2);
        return screen;
    }

    kvtest::HostWindow host_;
    HWND field_;
};

HBITMAP patternBitmap(int width, int height) {
    return kvtest::MakeBitmap(width, height, [](int x, int y) { return RGB(x * 6, y * 8, 100); });
}

TEST_F(PopupHint, TextHintBelowTheControlWithoutTakingTheFocus) {
    HWND hint = DrawPopupTextEx(field_, nullptr, L"Customer number, six digits", INFINITE, KXHINT_BELOW);
    ASSERT_NE(nullptr, hint);
    wchar_t name[64];
    GetClassNameW(hint, name, 64);
    EXPECT_STREQ(kHintClass, name);
    EXPECT_TRUE(IsWindowVisible(hint));
    EXPECT_EQ(host_.handle(), GetWindow(hint, GW_OWNER));
    EXPECT_EQ(field_, GetFocus());
    EXPECT_EQ(host_.handle(), GetActiveWindow());

    RECT field = windowRect(field_), placed = windowRect(hint);
    EXPECT_EQ(field.left, placed.left);
    EXPECT_EQ(field.bottom + 2, placed.top);
    SIZE text = furniture_test::textExtent(hint, L"Customer number, six digits", 360, kTextFormat);
    SIZE client = clientSize(hint);
    EXPECT_EQ(text.cx + 8, client.cx);
    EXPECT_EQ(text.cy + 4, client.cy);

    // The tooltip background with the text inside the margins.
    int width, height;
    std::vector<COLORREF> pixels = furniture_test::printedClient(hint, &width, &height);
    COLORREF background = GetSysColor(COLOR_INFOBK);
    int inMargins = 0, inText = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            bool margin = x < 4 || x >= width - 4 || y < 2 || y >= height - 2;
            bool painted = pixels[y * width + x] != background;
            (margin ? inMargins : inText) += painted;
        }
    EXPECT_EQ(0, inMargins);
    EXPECT_GT(inText, 20);
}

TEST_F(PopupHint, LongTextWrapsAndLineBreaksCount) {
    HWND twoLines = DrawPopupTextEx(field_, nullptr, L"First line\nSecond line", INFINITE, 0);
    ASSERT_NE(nullptr, twoLines);
    int line = furniture_test::textExtent(twoLines, L"First line", 360, kTextFormat).cy;
    EXPECT_EQ(2 * line + 4, clientSize(twoLines).cy);

    const wchar_t* longText =
        L"A customer that has not ordered for two years is moved to the archive at the end of "
        L"the quarter unless a sales representative keeps it active.";
    HWND wrapped = DrawPopupTextEx(field_, nullptr, longText, INFINITE, 0);
    ASSERT_NE(nullptr, wrapped);
    EXPECT_LE(clientSize(wrapped).cx, 360 + 8);
    EXPECT_GE(clientSize(wrapped).cy, 3 * line + 4);

    // A number stands for a string of the language module.
    HWND numbered = DrawPopupTextEx(field_, nullptr, MAKEINTRESOURCEW(16800), INFINITE, 0);
    ASSERT_NE(nullptr, numbered);
    EXPECT_EQ(furniture_test::textExtent(numbered, L"Photo of the contact person", 360, kTextFormat).cx + 8,
              clientSize(numbered).cx);
}

TEST_F(PopupHint, StaysOnTheMonitorAtItsEdges) {
    RECT area = furniture_test::workArea();
    const wchar_t* text = L"A hint near the edge of the screen";

    // No room below: above the anchor.
    RECT bottom = anchorFromScreen({100, area.bottom - 20, 200, area.bottom - 5});
    HWND hint = DrawPopupTextEx(host_, &bottom, text, INFINITE, KXHINT_BELOW);
    ASSERT_NE(nullptr, hint);
    EXPECT_EQ(area.bottom - 20 - 2, windowRect(hint).bottom);
    EXPECT_EQ(100, windowRect(hint).left);

    // Too far right: clipped to the work area, still below.
    RECT right = anchorFromScreen({area.right - 30, 200, area.right - 5, 220});
    hint = DrawPopupTextEx(host_, &right, text, INFINITE, KXHINT_BELOW);
    EXPECT_EQ(area.right, windowRect(hint).right);
    EXPECT_EQ(222, windowRect(hint).top);

    // Beside the anchor on the right, or on its left when the right has no room.
    RECT middle = anchorFromScreen({300, 300, 340, 320});
    hint = DrawPopupTextEx(host_, &middle, text, INFINITE, KXHINT_RIGHT);
    EXPECT_EQ(342, windowRect(hint).left);
    EXPECT_EQ(300, windowRect(hint).top);
    RECT nearRight = anchorFromScreen({area.right - 60, 300, area.right - 40, 320});
    hint = DrawPopupTextEx(host_, &nearRight, text, INFINITE, KXHINT_RIGHT);
    EXPECT_EQ(area.right - 62, windowRect(hint).right);

    // An anchor off the top-left corner puts the hint into that corner.
    RECT off = anchorFromScreen({area.left - 50, area.top - 40, area.left + 10, area.top - 20});
    hint = DrawPopupTextEx(host_, &off, text, INFINITE, KXHINT_BELOW);
    EXPECT_EQ(area.left, windowRect(hint).left);
    EXPECT_EQ(area.top, windowRect(hint).top);
}

TEST_F(PopupHint, PictureHintShowsItsOwnCopy) {
    HBITMAP picture = patternBitmap(40, 30);
    HWND hint = DrawPopupImageEx(field_, nullptr, picture, INFINITE, KXHINT_RIGHT);
    DeleteObject(picture);  // the hint keeps a copy
    ASSERT_NE(nullptr, hint);
    EXPECT_EQ(windowRect(field_).right + 2, windowRect(hint).left);
    SIZE client = clientSize(hint);
    ASSERT_EQ(40, client.cx);
    ASSERT_EQ(30, client.cy);
    int width, height;
    std::vector<COLORREF> pixels = furniture_test::printedClient(hint, &width, &height);
    for (int y = 0; y < 30; y += 7)
        for (int x = 0; x < 40; x += 9) EXPECT_EQ(RGB(x * 6, y * 8, 100), pixels[y * 40 + x]) << x << ", " << y;

    // A picture wider than the monitor is shrunk to fit it, keeping its aspect.
    RECT area = furniture_test::workArea();
    int wide = area.right - area.left + 200;
    HBITMAP photo = patternBitmap(wide, wide / 4);
    HWND preview = DrawPopupImageEx(field_, nullptr, photo, INFINITE, 0);
    DeleteObject(photo);
    ASSERT_NE(nullptr, preview);
    RECT placed = windowRect(preview);
    EXPECT_GE(placed.left, area.left);
    EXPECT_LE(placed.right, area.right);
    SIZE shrunk = clientSize(preview);
    EXPECT_NEAR(shrunk.cx / 4.0, shrunk.cy, 1.0);
}

TEST_F(PopupHint, OneAtATimeAndGoneAtAClickOrKey) {
    HWND first = DrawPopupTextEx(field_, nullptr, L"First", INFINITE, 0);
    HBITMAP picture = patternBitmap(20, 20);
    HWND second = DrawPopupImageEx(field_, nullptr, picture, INFINITE, 0);
    DeleteObject(picture);
    EXPECT_FALSE(IsWindow(first));
    EXPECT_TRUE(IsWindowVisible(second));
    EXPECT_EQ(1u, windowsOfClass(kHintClass).size());

    // Moving the mouse leaves it; a click anywhere in the thread takes it away.
    PostMessageW(host_, WM_MOUSEMOVE, 0, MAKELPARAM(200, 200));
    kvtest::PumpMessages();
    EXPECT_TRUE(IsWindow(second));
    PostMessageW(host_, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(200, 200));
    kvtest::PumpMessages();
    EXPECT_FALSE(IsWindow(second));

    // A key pressed in the field, a right click on the hint itself, the wheel.
    HWND hint = DrawPopupTextEx(field_, nullptr, L"Key", INFINITE, 0);
    PostMessageW(field_, WM_KEYDOWN, VK_SHIFT, 1);
    kvtest::PumpMessages();
    EXPECT_FALSE(IsWindow(hint));
    hint = DrawPopupTextEx(field_, nullptr, L"Click me", INFINITE, 0);
    PostMessageW(hint, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(3, 3));
    kvtest::PumpMessages();
    EXPECT_FALSE(IsWindow(hint));
    hint = DrawPopupTextEx(field_, nullptr, L"Wheel", INFINITE, 0);
    PostMessageW(host_, WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
    kvtest::PumpMessages();
    EXPECT_FALSE(IsWindow(hint));

    // Its owner going takes it along.
    {
        kvtest::HostWindow other(100, 100);
        hint = DrawPopupTextEx(other, nullptr, L"Owned", INFINITE, 0);
        EXPECT_EQ(other.handle(), GetWindow(hint, GW_OWNER));
    }
    EXPECT_FALSE(IsWindow(hint));
}

TEST_F(PopupHint, TimeOutTakesItAway) {
    HWND lasting = DrawPopupTextEx(field_, nullptr, L"Stays", INFINITE, 0);
    kvtest::PumpFor(300);
    EXPECT_TRUE(IsWindow(lasting));

    DWORD start = GetTickCount();
    HWND hint = DrawPopupTextEx(field_, nullptr, L"Soon gone", 150, 0);
    ASSERT_NE(nullptr, hint);
    EXPECT_FALSE(IsWindow(lasting));
    while (IsWindow(hint) && GetTickCount() - start < 5000) kvtest::PumpFor(10);
    DWORD elapsed = GetTickCount() - start;
    EXPECT_FALSE(IsWindow(hint));
    EXPECT_GE(elapsed, 100u);
    EXPECT_LT(elapsed, 5000u);
}

TEST_F(PopupHint, BadInputFailsAndLeavesTheHintOnShow) {
    HWND shown = DrawPopupTextEx(field_, nullptr, L"On show", INFINITE, 0);
    ASSERT_NE(nullptr, shown);
    HWND gone = CreateWindowW(L"Static", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    DestroyWindow(gone);
    HBITMAP deleted = patternBitmap(4, 4);
    DeleteObject(deleted);
    HBRUSH brush = CreateSolidBrush(RGB(1, 2, 3));
    HBITMAP picture = patternBitmap(4, 4);

    EXPECT_EQ(nullptr, DrawPopupTextEx(nullptr, nullptr, L"x", INFINITE, 0));
    EXPECT_EQ(nullptr, DrawPopupTextEx(gone, nullptr, L"x", INFINITE, 0));
    EXPECT_EQ(nullptr, DrawPopupTextEx(field_, nullptr, nullptr, INFINITE, 0));
    EXPECT_EQ(nullptr, DrawPopupTextEx(field_, nullptr, L"", INFINITE, 0));
    EXPECT_EQ(nullptr, DrawPopupTextEx(field_, nullptr, MAKEINTRESOURCEW(9999), INFINITE, 0));
    EXPECT_EQ(nullptr, DrawPopupImageEx(nullptr, nullptr, picture, INFINITE, 0));
    EXPECT_EQ(nullptr, DrawPopupImageEx(gone, nullptr, picture, INFINITE, 0));
    EXPECT_EQ(nullptr, DrawPopupImageEx(field_, nullptr, nullptr, INFINITE, 0));
    EXPECT_EQ(nullptr, DrawPopupImageEx(field_, nullptr, deleted, INFINITE, 0));
    EXPECT_EQ(nullptr, DrawPopupImageEx(field_, nullptr, reinterpret_cast<HBITMAP>(brush), INFINITE, 0));

    // Running out of memory at each allocation (text, record, subclass cell) fails cleanly.
    for (int nth = 1; nth <= 3; ++nth) {
        KvText_FailAllocation(nth);
        EXPECT_EQ(nullptr, DrawPopupTextEx(field_, nullptr, L"No memory", INFINITE, 0)) << nth;
        KvText_FailAllocation(0);
    }
    for (int nth = 1; nth <= 2; ++nth) {
        KvText_FailAllocation(nth);
        EXPECT_EQ(nullptr, DrawPopupImageEx(field_, nullptr, picture, INFINITE, 0)) << nth;
        KvText_FailAllocation(0);
    }
    EXPECT_TRUE(IsWindowVisible(shown));
    EXPECT_EQ(1u, windowsOfClass(kHintClass).size());
    DeleteObject(brush);
    DeleteObject(picture);
}

TEST_F(PopupHint, ClassIsTheSystemTooltipClassWithoutCursor) {
    DestroyWindow(DrawPopupTextEx(field_, nullptr, L"Registers the class", INFINITE, 0));
    WNDCLASSEXW copy = {}, system = {};
    copy.cbSize = system.cbSize = sizeof(WNDCLASSEXW);
    ASSERT_TRUE(GetClassInfoExW(GetModuleHandleW(L"kvkit.dll"), kHintClass, &copy));
    ASSERT_TRUE(GetClassInfoExW(nullptr, TOOLTIPS_CLASSW, &system));
    EXPECT_EQ(nullptr, copy.hCursor);
    EXPECT_EQ(system.style, copy.style);
    EXPECT_EQ(system.cbWndExtra, copy.cbWndExtra);
    EXPECT_EQ(system.hbrBackground, copy.hbrBackground);
    EXPECT_EQ(system.lpfnWndProc, copy.lpfnWndProc);
}

}  // namespace
