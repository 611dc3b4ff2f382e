// Popup hints: placement beside the anchor and at the monitor's edges, painting, one hint at a
// time, dismissal by click, key and time-out, and failures that leave the hint on show alone.
#include "furniture_test.h"
#include <commctrl.h>
#include "kvkit_popuphint.h"

using namespace furniture_test;

namespace {

const wchar_t kHintClass[] = L"KVtooltips_class32";

class PopupHint : public FurnitureTest {
protected:
    PopupHint() : host_(400, 300) {
        field_ = host_.createChild(L"Edit", L"", WS_VISIBLE | WS_BORDER, 20, 30, 150, 22, 100);
        SetFocus(field_);
    }
    // A hint beside a rectangle given in screen coordinates.
    HWND hintAt(RECT screen, UINT placement) {
        MapWindowPoints(nullptr, host_, reinterpret_cast<POINT*>(&screen), 2);
        return DrawPopupTextEx(host_, &screen, L"A hint near the edge of the screen", INFINITE, placement);
    }

    kvtest::HostWindow host_;
    HWND field_;
};

HBITMAP pattern(int width, int height) {
    return kvtest::MakeBitmap(width, height, [](int x, int y) { return RGB(x * 6, y * 8, 100); });
}

TEST_F(PopupHint, TextHintBelowTheControlSizedToItsText) {
    HWND hint = DrawPopupTextEx(field_, nullptr, L"Customer number\nsix digits", INFINITE, KXHINT_BELOW);
    ASSERT_NE(nullptr, hint);
    EXPECT_EQ(host_.handle(), GetWindow(hint, GW_OWNER));
    EXPECT_EQ(field_, GetFocus());
    EXPECT_EQ(windowRect(field_).left, windowRect(hint).left);
    EXPECT_EQ(windowRect(field_).bottom + 2, windowRect(hint).top);

    // The tooltip background, the two lines of text inside the margins.
    SIZE text = textExtent(hint, L"Customer number\nsix digits", 360), client = clientSize(hint);
    EXPECT_EQ(text.cy + 4, client.cy);
    std::vector<COLORREF> pixels = printedClient(hint);
    int inMargins = 0, inText = 0;
    for (int y = 0; y < client.cy; ++y)
        for (int x = 0; x < client.cx; ++x) {
            bool margin = x < 4 || x >= client.cx - 4 || y < 2 || y >= client.cy - 2;
            (margin ? inMargins : inText) += pixels[y * client.cx + x] != GetSysColor(COLOR_INFOBK);
        }
    EXPECT_EQ(0, inMargins);
    EXPECT_GT(inText, 20);
    hint = DrawPopupTextEx(field_, nullptr, MAKEINTRESOURCEW(16800), INFINITE, 0);  // a language string
    EXPECT_EQ(textExtent(hint, L"Photo of the contact person", 360).cx + 8, clientSize(hint).cx);

    // The class is the system tooltip class under the library's name, without a cursor.
    WNDCLASSEXW copy = {}, system = {};
    copy.cbSize = system.cbSize = sizeof(WNDCLASSEXW);
    ASSERT_TRUE(GetClassInfoExW(GetModuleHandleW(L"kvkit.dll"), kHintClass, &copy));
    ASSERT_TRUE(GetClassInfoExW(nullptr, TOOLTIPS_CLASSW, &system));
    EXPECT_EQ(nullptr, copy.hCursor);
    EXPECT_EQ(system.lpfnWndProc, copy.lpfnWndProc);
    EXPECT_EQ(system.style, copy.style);
}

TEST_F(PopupHint, StaysOnTheMonitorAtItsEdges) {
    RECT area = workArea();
    // No room below: above. Too far right: clipped. No room at the right: at the left.
    EXPECT_EQ(area.bottom - 22, windowRect(hintAt({100, area.bottom - 20, 200, area.bottom - 5}, KXHINT_BELOW)).bottom);
    EXPECT_EQ(area.right, windowRect(hintAt({area.right - 30, 200, area.right - 5, 220}, KXHINT_BELOW)).right);
    EXPECT_EQ(342, windowRect(hintAt({300, 300, 340, 320}, KXHINT_RIGHT)).left);
    EXPECT_EQ(area.right - 62, windowRect(hintAt({area.right - 60, 300, area.right - 40, 320}, KXHINT_RIGHT)).right);
    RECT corner = windowRect(hintAt({area.left - 50, area.top - 40, area.left + 10, area.top - 20}, KXHINT_BELOW));
    EXPECT_EQ(area.left, corner.left);
    EXPECT_EQ(area.top, corner.top);
}

TEST_F(PopupHint, PictureHintShowsItsOwnCopyFittedToTheMonitor) {
    HBITMAP picture = pattern(40, 30);
    HWND hint = DrawPopupImageEx(field_, nullptr, picture, INFINITE, KXHINT_RIGHT);
    DeleteObject(picture);
    ASSERT_NE(nullptr, hint);
    EXPECT_EQ(windowRect(field_).right + 2, windowRect(hint).left);
    ASSERT_EQ(40, clientSize(hint).cx);
    ASSERT_EQ(30, clientSize(hint).cy);
    std::vector<COLORREF> pixels = printedClient(hint);
    for (int y = 0; y < 30; y += 7)
        for (int x = 0; x < 40; x += 9) EXPECT_EQ(RGB(x * 6, y * 8, 100), pixels[y * 40 + x]);

    RECT area = workArea();
    int wide = area.right - area.left + 200;
    HBITMAP photo = pattern(wide, wide / 4);
    hint = DrawPopupImageEx(field_, nullptr, photo, INFINITE, 0);
    DeleteObject(photo);
    EXPECT_LE(windowRect(hint).right - windowRect(hint).left, area.right - area.left);
    EXPECT_NEAR(clientSize(hint).cx / 4.0, clientSize(hint).cy, 1.0);
}

TEST_F(PopupHint, OneAtATimeGoneAtAClickAKeyOrItsTimeOut) {
    HWND first = DrawPopupTextEx(field_, nullptr, L"First", INFINITE, 0);
    HWND second = DrawPopupTextEx(field_, nullptr, L"Second", INFINITE, 0);
    EXPECT_FALSE(IsWindow(first));
    EXPECT_EQ(1u, windowsOfClass(kHintClass).size());
    PostMessageW(host_, WM_MOUSEMOVE, 0, MAKELPARAM(200, 200));
    kvtest::PumpFor(300);
    EXPECT_TRUE(IsWindow(second));

    struct Input {
        bool onHint;
        UINT message;
        WPARAM wParam;
    } inputs[] = {{false, WM_LBUTTONDOWN, MK_LBUTTON}, {true, WM_RBUTTONDOWN, MK_RBUTTON},
                  {false, WM_KEYDOWN, VK_SHIFT}, {false, WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA)}};
    for (const Input& input : inputs) {
        HWND hint = DrawPopupTextEx(field_, nullptr, L"Until the next input", INFINITE, 0);
        PostMessageW(input.onHint ? hint : field_, input.message, input.wParam, MAKELPARAM(3, 3));
        kvtest::PumpMessages();
        EXPECT_FALSE(IsWindow(hint)) << std::hex << input.message;
    }

    DWORD start = GetTickCount();
    HWND hint = DrawPopupTextEx(field_, nullptr, L"Soon gone", 150, 0);
    while (IsWindow(hint) && GetTickCount() - start < 5000) kvtest::PumpFor(10);
    EXPECT_FALSE(IsWindow(hint));
    EXPECT_GE(GetTickCount() - start, 100u);
}

TEST_F(PopupHint, BadInputAndNoMemoryLeaveTheHintOnShow) {
    HWND shown = DrawPopupTextEx(field_, nullptr, L"On show", INFINITE, 0);
    HWND gone = DestroyedWindow();
    HBITMAP picture = pattern(4, 4), deleted = pattern(4, 4);
    DeleteObject(deleted);
    HBRUSH brush = CreateSolidBrush(RGB(1, 2, 3));
    for (HWND window : {static_cast<HWND>(nullptr), gone}) {
        EXPECT_EQ(nullptr, DrawPopupTextEx(window, nullptr, L"x", INFINITE, 0));
        EXPECT_EQ(nullptr, DrawPopupImageEx(window, nullptr, picture, INFINITE, 0));
    }
    for (const wchar_t* text : {static_cast<const wchar_t*>(nullptr), static_cast<const wchar_t*>(L""), static_cast<const wchar_t*>(MAKEINTRESOURCEW(9999))})
        EXPECT_EQ(nullptr, DrawPopupTextEx(field_, nullptr, text, INFINITE, 0));
    for (HGDIOBJ bad : {static_cast<HGDIOBJ>(nullptr), static_cast<HGDIOBJ>(deleted), static_cast<HGDIOBJ>(brush)})
        EXPECT_EQ(nullptr, DrawPopupImageEx(field_, nullptr, static_cast<HBITMAP>(bad), INFINITE, 0));
    for (int nth = 1; nth <= 3; ++nth) {  // text copy, record, subclass cell; record, cell
        KvText_FailAllocation(nth);
        EXPECT_EQ(nullptr, DrawPopupTextEx(field_, nullptr, L"No memory", INFINITE, 0)) << nth;
        KvText_FailAllocation(nth < 3 ? nth : 0);
        if (nth < 3) EXPECT_EQ(nullptr, DrawPopupImageEx(field_, nullptr, picture, INFINITE, 0)) << nth;
    }
    KvText_FailAllocation(0);
    EXPECT_TRUE(IsWindowVisible(shown));
    EXPECT_EQ(1u, windowsOfClass(kHintClass).size());
    DeleteObject(brush);
    DeleteObject(picture);
}

}  // namespace
