// Hint bubbles: shape and place, what takes them away, following the dialog, one bubble per
// field, stacking on the library's own replacement procedures, and failures.
#include "furniture_test.h"
#include <functional>
#include "kvkit_core.h"
#include "kvkit_dlgpaint.h"

using namespace furniture_test;

namespace {

const wchar_t kTippClass[] = L"KXDlgTippWndClass";
const int kStem = 10, kStemOffset = 16;

class DlgTipp : public FurnitureTest {
protected:
    DlgTipp() : host_(400, 300) {
        field_ = host_.createChild(L"Edit", L"31.02.2024", WS_VISIBLE | WS_BORDER, 20, 40, 200, 22, 100);
        other_ = host_.createChild(L"Edit", L"", WS_VISIBLE | WS_BORDER, 20, 200, 200, 22, 101);
        SetFocus(field_);
    }
    // A key press as the keyboard posts it; the message loop makes the characters.
    void type(UINT key) {
        PostMessageW(field_, WM_KEYDOWN, key, 1);
        PostMessageW(field_, WM_KEYUP, key, 0xC0000001);
        kvtest::PumpMessages();
    }

    kvtest::HostWindow host_;
    HWND field_, other_;
};

TEST_F(DlgTipp, ShapedBubblePointsAtTheField) {
    HWND bubble = KxDlgTipp_Show(field_, L"Please enter a valid date.", KXTIPP_WARNING);
    ASSERT_NE(nullptr, bubble);
    EXPECT_EQ(field_, GetFocus());
    EXPECT_EQ(host_.handle(), GetWindow(bubble, GW_OWNER));
    RECT field = windowRect(field_), placed = windowRect(bubble);
    EXPECT_EQ(field.bottom, placed.top);
    EXPECT_EQ(field.left, placed.left);
    int width = placed.right - placed.left;
    EXPECT_EQ(8 + 16 + 6 + textExtent(field_, L"Please enter a valid date.", 240).cx + 8, width);  // icon

    // Shaped: a narrow stem pointing at the field, round corners; white inside a frame.
    HRGN shape = CreateRectRgn(0, 0, 0, 0);
    ASSERT_NE(ERROR, GetWindowRgn(bubble, shape));
    EXPECT_TRUE(PtInRegion(shape, kStemOffset, 2) && !PtInRegion(shape, kStemOffset - 7, 2));
    EXPECT_FALSE(PtInRegion(shape, 0, kStem));
    DeleteObject(shape);
    std::vector<COLORREF> pixels = printedClient(bubble);
    EXPECT_EQ(RGB(255, 255, 255), pixels[(kStem + 3) * width + width / 2]);
    EXPECT_EQ(GetSysColor(COLOR_WINDOWFRAME), pixels[kStem * width + width / 2]);

    // At the bottom of the screen the bubble sits above the field, its stem pointing down.
    RECT area = workArea(), host = windowRect(host_);
    SetWindowPos(host_, nullptr, host.left, host.top + area.bottom - 10 - field.bottom, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    bubble = KxDlgTipp_Show(field_, L"Above", 0);
    placed = windowRect(bubble);
    EXPECT_EQ(windowRect(field_).top, placed.bottom);
}

TEST_F(DlgTipp, GoesWhenTheFieldIsEditedLosesTheFocusOrGoes) {
    std::function<void()> keeping[] = {
        [&] { PostMessageW(field_, WM_CHAR, 0x03, 1); kvtest::PumpMessages(); },  // Ctrl+C
        [&] { type(VK_LEFT); },
    };
    std::function<void()> taking[] = {
        [&] { type('7'); },
        [&] { type(VK_DELETE); },
        [&] { SendMessageW(field_, WM_PASTE, 0, 0); },
        [&] { SetWindowTextW(field_, L"01.02.2024"); },
        [&] { SetFocus(other_); },
        [&] { PostMessageW(windowsOfClass(kTippClass)[0], WM_LBUTTONDOWN, 0, MAKELPARAM(20, 20)); kvtest::PumpMessages(); },
        [&] { ShowWindow(field_, SW_HIDE); },
        [&] { EXPECT_EQ(1, KxDlgTipp_Hide(field_)); EXPECT_EQ(0, KxDlgTipp_Hide(field_)); },
        [&] { ShowWindow(host_, SW_HIDE); },
        [&] { DestroyWindow(field_); },
    };
    int index = 0;
    for (auto& action : taking) {
        ShowWindow(host_, SW_SHOW);
        ShowWindow(field_, SW_SHOW);
        SetFocus(field_);
        HWND bubble = KxDlgTipp_Show(field_, L"Please enter a valid date.", KXTIPP_ERROR);
        for (auto& harmless : keeping) harmless();
        EXPECT_TRUE(IsWindow(bubble)) << index;
        action();
        EXPECT_FALSE(IsWindow(bubble)) << index++;
    }
    EXPECT_TRUE(windowsOfClass(kTippClass).empty());
}

TEST_F(DlgTipp, OneBubblePerFieldFollowingItsDialog) {
    HWND bubble = KxDlgTipp_Show(field_, L"Short", 0);
    RECT first = windowRect(bubble);
    EXPECT_EQ(bubble, KxDlgTipp_Show(field_, L"A much longer explanation of the format", KXTIPP_INFO));
    EXPECT_GT(windowRect(bubble).right, first.right);
    HWND second = KxDlgTipp_Show(other_, MAKEINTRESOURCEW(16802), 0);
    wchar_t text[64];
    GetWindowTextW(second, text, 64);
    EXPECT_STREQ(L"Please enter the date as DD.MM.YYYY.", text);
    EXPECT_EQ(2u, windowsOfClass(kTippClass).size());

    RECT before = windowRect(bubble), host = windowRect(host_);
    SetWindowPos(host_, nullptr, host.left + 30, host.top + 20, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_EQ(before.left + 30, windowRect(bubble).left);
    EXPECT_EQ(before.top + 20, windowRect(bubble).top);
}

// A replacement procedure of the library's own chain, as edit-field buttons install one.
int g_replacementCalls;
LRESULT CALLBACK countingReplacement(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    ++g_replacementCalls;
    WNDPROC previous = Kx1GetSubProc(message == WM_DESTROY, window);
    return previous ? CallWindowProcW(previous, window, message, wParam, lParam) : 0;
}

TEST_F(DlgTipp, StacksOnTheLibrarysOwnReplacementProcedure) {
    ASSERT_EQ(1, Kx1SetSubProc(field_, countingReplacement));
    HWND bubble = KxDlgTipp_Show(field_, L"Typed away", 0);
    g_replacementCalls = 0;
    type('X');
    EXPECT_FALSE(IsWindow(bubble));
    EXPECT_GT(g_replacementCalls, 0);
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(countingReplacement), GetWindowLongPtrW(field_, GWLP_WNDPROC));
    DestroyWindow(field_);  // the replacement gives its cell back
}

TEST_F(DlgTipp, BadInputAndNoMemoryShowNothing) {
    for (HWND field : {static_cast<HWND>(nullptr), DestroyedWindow()}) {
        EXPECT_EQ(nullptr, KxDlgTipp_Show(field, L"x", 0));
        EXPECT_EQ(0, KxDlgTipp_Hide(field));
    }
    for (const wchar_t* text : {static_cast<const wchar_t*>(nullptr), static_cast<const wchar_t*>(L""), static_cast<const wchar_t*>(MAKEINTRESOURCEW(9999))})
        EXPECT_EQ(nullptr, KxDlgTipp_Show(field_, text, 0));
    EXPECT_EQ(nullptr, KxDlgTipp_Show(field_, L"x", KXTIPP_ERROR + 1));
    EXPECT_EQ(nullptr, CreateWindowW(L"KXDlgTippWndClass", L"x", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr));
    // The record; the language string, then the record.
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, KxDlgTipp_Show(field_, L"No memory", 0));
    for (int nth = 1; nth <= 2; ++nth) {
        KvText_FailAllocation(nth);
        EXPECT_EQ(nullptr, KxDlgTipp_Show(field_, MAKEINTRESOURCEW(16802), 0)) << nth;
    }
    KvText_FailAllocation(0);
    EXPECT_TRUE(windowsOfClass(kTippClass).empty());
    type('X');  // the field is not left watched
    EXPECT_NE(nullptr, KxDlgTipp_Show(field_, L"Now", 0));
}

}  // namespace
