// Hint bubbles: shape and place pointing at the field, dismissal by typing, focus loss and the
// field's end, following the dialog, one bubble per field, and failures.
#include "furniture_test.h"
#include <algorithm>
#include "kvkit_core.h"
#include "kvkit_dlgpaint.h"

using furniture_test::windowRect;
using furniture_test::windowsOfClass;

namespace {

const wchar_t kTippClass[] = L"KXDlgTippWndClass";
const int kStemHeight = 10, kStemOffset = 16;

class DlgTipp : public furniture_test::FurnitureTest {
protected:
    DlgTipp() : host_(400, 300) {
        field_ = host_.createChild(L"Edit", L"31.02.2024", WS_VISIBLE | WS_BORDER | WS_TABSTOP, 20, 40, 200, 22, 100);
        other_ = host_.createChild(L"Edit", L"", WS_VISIBLE | WS_BORDER | WS_TABSTOP, 20, 200, 200, 22, 101);
        SetFocus(field_);
    }
    ~DlgTipp() override {
        for (HWND bubble : windowsOfClass(kTippClass)) DestroyWindow(bubble);
    }
    // Posts a key press as the keyboard does; the message loop translates it into characters.
    void type(HWND window, UINT key) {
        PostMessageW(window, WM_KEYDOWN, key, 1);
        PostMessageW(window, WM_KEYUP, key, 0xC0000001);
        kvtest::PumpMessages();
    }

    kvtest::HostWindow host_;
    HWND field_, other_;
};

TEST_F(DlgTipp, PointsAtTheFieldFromBelowWithoutTakingTheFocus) {
    HWND bubble = KxDlgTipp_Show(field_, L"Please enter a valid date.", KXTIPP_WARNING);
    ASSERT_NE(nullptr, bubble);
    wchar_t name[64];
    GetClassNameW(bubble, name, 64);
    EXPECT_STREQ(kTippClass, name);
    EXPECT_TRUE(IsWindowVisible(bubble));
    EXPECT_EQ(field_, GetFocus());
    EXPECT_EQ(host_.handle(), GetWindow(bubble, GW_OWNER));

    RECT field = windowRect(field_), placed = windowRect(bubble);
    EXPECT_EQ(field.bottom, placed.top);
    EXPECT_EQ(field.left, placed.left);
    int width = placed.right - placed.left, height = placed.bottom - placed.top;

    // The window is shaped: a stem at the top pointing at the field, a body with round corners.
    HRGN shape = CreateRectRgn(0, 0, 0, 0);
    ASSERT_NE(ERROR, GetWindowRgn(bubble, shape));
    EXPECT_TRUE(PtInRegion(shape, kStemOffset, 2));
    EXPECT_FALSE(PtInRegion(shape, kStemOffset - 7, 2));
    EXPECT_FALSE(PtInRegion(shape, kStemOffset + 7, 2));
    EXPECT_FALSE(PtInRegion(shape, 0, kStemHeight));  // round corner
    EXPECT_TRUE(PtInRegion(shape, 4, kStemHeight + 4));
    EXPECT_TRUE(PtInRegion(shape, width - 3, height - 6));
    DeleteObject(shape);

    // White inside a frame, the text in the field's font.
    int w, h;
    std::vector<COLORREF> pixels = furniture_test::printedClient(bubble, &w, &h);
    EXPECT_EQ(RGB(255, 255, 255), pixels[(kStemHeight + 3) * w + w / 2]);
    EXPECT_EQ(GetSysColor(COLOR_WINDOWFRAME), pixels[kStemHeight * w + w / 2]);
    SIZE text = furniture_test::textExtent(field_, L"Please enter a valid date.", 240,
                                           DT_LEFT | DT_WORDBREAK | DT_NOPREFIX);
    EXPECT_EQ(8 + 16 + 6 + text.cx + 8, width);
    EXPECT_EQ(kStemHeight + 8 + std::max(16L, text.cy) + 8, height);
    // The warning icon's colours sit left of the text.
    int iconPixels = 0;
    for (int y = kStemHeight + 8; y < kStemHeight + 24; ++y)
        for (int x = 8; x < 24; ++x) iconPixels += pixels[y * w + x] != RGB(255, 255, 255);
    EXPECT_GT(iconPixels, 30);
}

TEST_F(DlgTipp, GoesAwayWhenTheFieldIsEdited) {
    HWND bubble = KxDlgTipp_Show(field_, L"Please enter a valid date.", KXTIPP_ERROR);
    // Shortcuts and caret keys are not edits.
    PostMessageW(field_, WM_CHAR, 0x03, 1);  // Ctrl+C
    type(field_, VK_LEFT);
    EXPECT_TRUE(IsWindow(bubble));
    type(field_, '7');
    EXPECT_FALSE(IsWindow(bubble));
    wchar_t text[32];
    GetWindowTextW(field_, text, 32);
    EXPECT_NE(nullptr, wcschr(text, L'7')) << "the field still takes the key";

    bubble = KxDlgTipp_Show(field_, L"Delete", 0);
    type(field_, VK_DELETE);
    EXPECT_FALSE(IsWindow(bubble));
    bubble = KxDlgTipp_Show(field_, L"Paste", 0);
    SendMessageW(field_, WM_PASTE, 0, 0);
    EXPECT_FALSE(IsWindow(bubble));
    bubble = KxDlgTipp_Show(field_, L"New text", 0);
    SetWindowTextW(field_, L"01.02.2024");
    EXPECT_FALSE(IsWindow(bubble));
}

TEST_F(DlgTipp, GoesAwayWithTheFocusOrTheField) {
    HWND bubble = KxDlgTipp_Show(field_, L"Focus", KXTIPP_INFO);
    SetFocus(other_);
    EXPECT_FALSE(IsWindow(bubble));

    SetFocus(field_);
    bubble = KxDlgTipp_Show(field_, L"Click", 0);
    PostMessageW(bubble, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(20, 20));
    kvtest::PumpMessages();
    EXPECT_FALSE(IsWindow(bubble));
    EXPECT_EQ(field_, GetFocus());

    bubble = KxDlgTipp_Show(field_, L"Hidden", 0);
    ShowWindow(field_, SW_HIDE);
    EXPECT_FALSE(IsWindow(bubble));
    ShowWindow(field_, SW_SHOW);

    bubble = KxDlgTipp_Show(field_, L"Hide", 0);
    EXPECT_EQ(1, KxDlgTipp_Hide(field_));
    EXPECT_FALSE(IsWindow(bubble));
    EXPECT_EQ(0, KxDlgTipp_Hide(field_));

    bubble = KxDlgTipp_Show(field_, L"Destroyed", 0);
    DestroyWindow(field_);
    EXPECT_FALSE(IsWindow(bubble));
    EXPECT_TRUE(windowsOfClass(kTippClass).empty());
}

TEST_F(DlgTipp, OneBubblePerFieldFollowingItsDialog) {
    HWND bubble = KxDlgTipp_Show(field_, L"Short", 0);
    RECT first = windowRect(bubble);
    EXPECT_EQ(bubble, KxDlgTipp_Show(field_, L"A much longer explanation of the expected format", KXTIPP_WARNING));
    EXPECT_GT(windowRect(bubble).right, first.right);
    wchar_t text[64];
    GetWindowTextW(bubble, text, 64);
    EXPECT_STREQ(L"A much longer explanation of the expected format", text);
    HWND second = KxDlgTipp_Show(other_, MAKEINTRESOURCEW(16802), 0);
    ASSERT_NE(nullptr, second);
    GetWindowTextW(second, text, 64);
    EXPECT_STREQ(L"Please enter the date as DD.MM.YYYY.", text);
    EXPECT_EQ(2u, windowsOfClass(kTippClass).size());

    // The dialog moves: the bubble moves along.
    RECT before = windowRect(bubble), host = windowRect(host_);
    SetWindowPos(host_, nullptr, host.left + 30, host.top + 20, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    RECT after = windowRect(bubble);
    EXPECT_EQ(before.left + 30, after.left);
    EXPECT_EQ(before.top + 20, after.top);

    // The dialog hidden: its bubbles go.
    ShowWindow(host_, SW_HIDE);
    EXPECT_TRUE(windowsOfClass(kTippClass).empty());
}

TEST_F(DlgTipp, AboveTheFieldAtTheBottomOfTheScreen) {
    RECT area = furniture_test::workArea(), host = windowRect(host_);
    RECT field = windowRect(field_);
    // Puts the field 10 pixels above the bottom of the work area.
    SetWindowPos(host_, nullptr, host.left, host.top + area.bottom - 10 - field.bottom, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    field = windowRect(field_);
    HWND bubble = KxDlgTipp_Show(field_, L"Above", 0);
    RECT placed = windowRect(bubble);
    EXPECT_EQ(field.top, placed.bottom);
    HRGN shape = CreateRectRgn(0, 0, 0, 0);
    GetWindowRgn(bubble, shape);
    int height = placed.bottom - placed.top;
    EXPECT_TRUE(PtInRegion(shape, kStemOffset, height - 3));
    EXPECT_FALSE(PtInRegion(shape, kStemOffset + 7, height - 3));
    DeleteObject(shape);
}

// A replacement procedure of the library's own chain, as edit-field buttons install.
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
    type(field_, 'X');
    EXPECT_FALSE(IsWindow(bubble));
    EXPECT_GT(g_replacementCalls, 0);
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(countingReplacement), GetWindowLongPtrW(field_, GWLP_WNDPROC));
    DestroyWindow(field_);  // the replacement gives its cell back
}

TEST_F(DlgTipp, BadInputAndNoMemoryShowNothing) {
    HWND gone = CreateWindowW(L"Edit", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    DestroyWindow(gone);
    EXPECT_EQ(nullptr, KxDlgTipp_Show(nullptr, L"x", 0));
    EXPECT_EQ(nullptr, KxDlgTipp_Show(gone, L"x", 0));
    EXPECT_EQ(nullptr, KxDlgTipp_Show(field_, nullptr, 0));
    EXPECT_EQ(nullptr, KxDlgTipp_Show(field_, L"", 0));
    EXPECT_EQ(nullptr, KxDlgTipp_Show(field_, MAKEINTRESOURCEW(9999), 0));
    EXPECT_EQ(nullptr, KxDlgTipp_Show(field_, L"x", 4));
    EXPECT_EQ(0, KxDlgTipp_Hide(nullptr));
    EXPECT_EQ(0, KxDlgTipp_Hide(gone));
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, KxDlgTipp_Show(field_, L"No memory", 0));
    KvText_FailAllocation(0);
    for (int nth = 1; nth <= 2; ++nth) {
        KvText_FailAllocation(nth);
        EXPECT_EQ(nullptr, KxDlgTipp_Show(field_, MAKEINTRESOURCEW(16802), 0)) << nth;
        KvText_FailAllocation(0);
    }
    EXPECT_TRUE(windowsOfClass(kTippClass).empty());
    // The field is not left watched: typing still works and a later bubble shows.
    type(field_, 'X');
    EXPECT_NE(nullptr, KxDlgTipp_Show(field_, L"Now", 0));
}

}  // namespace
