// Arrow-button scroller: real controls on a host window that answers the step question, clicks
// posted to the arrows, a held arrow released by a timer, and the pixels of the text and arrows.
#include "kvtest.h"
#include <commctrl.h>
#include <string.h>
#include <algorithm>
#include <vector>
#include "kvkit_draw.h"
#include "kvkit_scroll.h"

namespace {

const int kId = 300;
const COLORREF kMagenta = RGB(255, 0, 255);
const COLORREF kPictureBackground = RGB(192, 192, 192);

wchar_t* kvString(const wchar_t* text) {
    int bytes = (lstrlenW(text) + 1) * sizeof(wchar_t);
    auto* copy = static_cast<wchar_t*>(GetMemory(bytes));
    memcpy(copy, text, bytes);
    return copy;
}

RECT rectInParent(HWND window) {
    RECT rect;
    GetWindowRect(window, &rect);
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

bool sameRect(const RECT& a, const RECT& b) { return EqualRect(&a, &b) != 0; }

std::string describe(const RECT& r) {
    return "(" + std::to_string(r.left) + ", " + std::to_string(r.top) + ", " +
           std::to_string(r.right) + ", " + std::to_string(r.bottom) + ")";
}

HWND decrementOf(HWND control) { return GetDlgItem(control, KVS_ID_DECREMENT); }
HWND incrementOf(HWND control) { return GetDlgItem(control, KVS_ID_INCREMENT); }

// Press and release in the middle of the window, as the mouse does.
void click(HWND button) {
    RECT client;
    GetClientRect(button, &client);
    LPARAM middle = MAKELPARAM(client.right / 2, client.bottom / 2);
    PostMessageW(button, WM_LBUTTONDOWN, MK_LBUTTON, middle);
    PostMessageW(button, WM_LBUTTONUP, 0, middle);
    kvtest::PumpMessages();
}

void sendClick(HWND control, int arrowId) {
    SendMessageW(control, WM_COMMAND, MAKEWPARAM(arrowId, BN_CLICKED),
                 reinterpret_cast<LPARAM>(GetDlgItem(control, arrowId)));
}

struct StepRequest {
    WPARAM increment;
    int position;
    int id;
    DWORD tick;
};

class ScrollTest : public kvtest::KvTest {
protected:
    ScrollTest() {
        host_.setHandler([this](HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
            if (message != KVSN_QUERYSTEP) return false;
            requests_.push_back({wParam, static_cast<short>(LOWORD(lParam)), HIWORD(lParam), GetTickCount()});
            *result = allow_;
            return true;
        });
    }

    HWND create(unsigned short flags, void* text = nullptr, int cx = 120, int cy = 20, HFONT font = nullptr) {
        return KVScroll_CreateWindow(host_, kId, 10, 10, cx, cy, flags, GetModuleHandleW(nullptr),
                                     text, font, 7, 8);
    }

    kvtest::HostWindow host_;
    std::vector<StepRequest> requests_;
    LRESULT allow_ = 1;
};

// --- creation and layout ------------------------------------------------------------------------

TEST_F(ScrollTest, ExportsResolveByPlainName) {
    HMODULE kvkit = GetModuleHandleW(L"kvkit.dll");
    for (const char* name : {"KVScroll_CreateWindow", "KVScroll_GetScrollPos", "KVScroll_GetScrollRange",
                             "KVScroll_SetScrollPos", "KVScroll_SetScrollRange", "KVScroll_SetText",
                             "KVScroll_UpdWndPos", "KVScrollProc", "KVScrollBtnProc"})
        EXPECT_NE(nullptr, GetProcAddress(kvkit, name)) << name;
}

TEST_F(ScrollTest, CreationLaysOutTheArrowsForEachKind) {
    struct Case {
        unsigned short flags;
        bool text;
        int cx, cy;
        RECT decrement, increment;
        bool visible;
    };
    const Case cases[] = {
        {0, true, 120, 20, {0, 0, 20, 20}, {100, 0, 120, 20}, true},   // squares, text between
        {0, false, 120, 20, {0, 0, 60, 20}, {60, 0, 120, 20}, true},   // halves side by side
        {KVS_TRANSPARENT, false, 121, 20, {0, 0, 60, 20}, {60, 0, 121, 20}, true},
        {KVS_NOTEXT, true, 20, 41, {0, 0, 20, 20}, {0, 20, 20, 41}, true},  // stacked
        {KVS_OVERLAY, false, 200, 20, {0, 0, 20, 20}, {180, 0, 200, 20}, false},
        {KVS_OVERLAY | KVS_VERTICAL, false, 20, 200, {0, 0, 20, 20}, {0, 180, 20, 200}, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "flags 0x" << std::hex << c.flags << " text " << c.text);
        wchar_t* text = c.text ? kvString(L"1 / 3") : nullptr;
        HWND control = create(c.flags, text, c.cx, c.cy);
        ASSERT_NE(nullptr, control);
        if (c.flags & KVS_NOTEXT) FreeMemory(text);  // not taken by a control without text
        EXPECT_EQ(c.flags, GetWindowLongW(control, KVS_OFFSET_FLAGS));
        EXPECT_EQ(0, GetWindowLongW(control, KVS_OFFSET_MIN));
        EXPECT_EQ(0, GetWindowLongW(control, KVS_OFFSET_MAX));
        EXPECT_EQ(0, GetWindowLongW(control, KVS_OFFSET_POS));
        EXPECT_EQ(c.text && !(c.flags & KVS_NOTEXT), GetPropW(control, L"Hd") != nullptr);
        DWORD style = GetWindowLongW(control, GWL_STYLE) & 0xFFFF0000;
        EXPECT_EQ(c.visible ? 0x56000000u : 0x46000000u, style);
        bool transparent = c.flags & (KVS_TRANSPARENT | KVS_OVERLAY);
        EXPECT_EQ(transparent, (GetWindowLongW(control, GWL_EXSTYLE) & WS_EX_TRANSPARENT) != 0);
        EXPECT_TRUE(sameRect(c.decrement, rectInParent(decrementOf(control))))
            << describe(rectInParent(decrementOf(control)));
        EXPECT_TRUE(sameRect(c.increment, rectInParent(incrementOf(control))))
            << describe(rectInParent(incrementOf(control)));
        EXPECT_EQ(0x5000000Bu, static_cast<DWORD>(GetWindowLongW(incrementOf(control), GWL_STYLE)));
        DestroyWindow(control);
    }
}

TEST_F(ScrollTest, ArrowsCarryTheLibrarysPicturesUntilDestroyed) {
    HMODULE kvkit = GetModuleHandleW(L"kvkit.dll");
    struct Case {
        unsigned short flags;
        const wchar_t* decrement;
        const wchar_t* increment;
    };
    for (const Case& c : {Case{KVS_VERTICAL, L"btaob", L"btaun"}, Case{0, L"btali", L"btare"}}) {
        HWND control = create(c.flags);
        std::vector<HBITMAP> pictures;
        for (auto arrow : {std::make_pair(decrementOf(control), c.decrement),
                           std::make_pair(incrementOf(control), c.increment)}) {
            auto picture = static_cast<HBITMAP>(GetPropW(arrow.first, L"Bm"));
            ASSERT_NE(nullptr, picture);
            HBITMAP expected = LoadBitmapW(kvkit, arrow.second);
            EXPECT_EQ(kvtest::BitmapPixels(expected), kvtest::BitmapPixels(picture)) << arrow.second;
            DeleteObject(expected);
            pictures.push_back(picture);
        }
        DestroyWindow(control);
        for (HBITMAP picture : pictures) EXPECT_FALSE(kvtest::IsGdiObject(picture));
    }
}

TEST_F(ScrollTest, OverlayFollowsTheAreaItIsLaidOn) {
    RECT area = {20, 30, 220, 130};
    HWND strip = create(KVS_OVERLAY, nullptr, 50, 16);
    EXPECT_TRUE(KVScroll_UpdWndPos(strip, &area, 0));
    EXPECT_TRUE(sameRect(RECT{20, 30, 220, 46}, rectInParent(strip))) << describe(rectInParent(strip));
    EXPECT_TRUE(sameRect(RECT{184, 0, 200, 16}, rectInParent(incrementOf(strip))));
    // Moved to the same size there is no WM_SIZE: the arrows are laid out all the same.
    MoveWindow(incrementOf(strip), 3, 3, 5, 5, FALSE);
    EXPECT_TRUE(KVScroll_UpdWndPos(strip, &area, 0));
    EXPECT_TRUE(sameRect(RECT{184, 0, 200, 16}, rectInParent(incrementOf(strip))));
    DestroyWindow(strip);

    HWND bottom = create(KVS_OVERLAY | KVS_ALIGNFAR, nullptr, 50, 16);
    KVScroll_UpdWndPos(bottom, &area, 0);
    EXPECT_TRUE(sameRect(RECT{20, 114, 220, 130}, rectInParent(bottom))) << describe(rectInParent(bottom));
    DestroyWindow(bottom);

    HWND right = create(KVS_OVERLAY | KVS_VERTICAL | KVS_ALIGNFAR, nullptr, 16, 50);
    KVScroll_UpdWndPos(right, nullptr, 0);  // the parent's client area
    RECT client;
    GetClientRect(host_, &client);
    EXPECT_TRUE(sameRect(RECT{client.right - 16, 0, client.right, client.bottom}, rectInParent(right)));
    DestroyWindow(right);

    // The arrows keep their height; the control takes the area's width.
    HWND wide = create(KVS_OVERLAY | KVS_VERTICAL | KVS_KEEPBUTTONSIZE, nullptr, 30, 12);
    KVScroll_UpdWndPos(wide, &area, 0);
    EXPECT_TRUE(sameRect(RECT{20, 30, 220, 130}, rectInParent(wide)));
    EXPECT_TRUE(sameRect(RECT{0, 0, 200, 12}, rectInParent(decrementOf(wide))));
    EXPECT_TRUE(sameRect(RECT{0, 88, 200, 100}, rectInParent(incrementOf(wide))));
    DestroyWindow(wide);

    HWND plain = create(0);
    EXPECT_FALSE(KVScroll_UpdWndPos(plain, &area, 0));
    DestroyWindow(plain);
}

// --- stepping -----------------------------------------------------------------------------------

TEST_F(ScrollTest, ClicksAskTheParentBeforeEachStep) {
    HWND control = create(0);
    KVScroll_SetScrollRange(control, SB_CTL, 0, 5, TRUE);
    KVScroll_SetScrollPos(control, SB_CTL, 2, TRUE);

    click(incrementOf(control));
    ASSERT_EQ(1u, requests_.size());
    EXPECT_EQ(1u, requests_[0].increment);
    EXPECT_EQ(3, requests_[0].position);
    EXPECT_EQ(kId, requests_[0].id);
    EXPECT_EQ(3, KVScroll_GetScrollPos(control, SB_CTL));

    allow_ = 0;
    click(incrementOf(control));
    ASSERT_EQ(2u, requests_.size());
    EXPECT_EQ(4, requests_[1].position);
    EXPECT_EQ(3, KVScroll_GetScrollPos(control, SB_CTL));

    allow_ = 1;
    click(decrementOf(control));
    ASSERT_EQ(3u, requests_.size());
    EXPECT_EQ(0u, requests_[2].increment);
    EXPECT_EQ(2, KVScroll_GetScrollPos(control, SB_CTL));

    // Both clicks of a double click step.
    HWND increment = incrementOf(control);
    for (UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP})
        PostMessageW(increment, message, message == WM_LBUTTONUP ? 0 : MK_LBUTTON, MAKELPARAM(5, 5));
    kvtest::PumpMessages();
    EXPECT_EQ(4, KVScroll_GetScrollPos(control, SB_CTL));
    DestroyWindow(control);
}

TEST_F(ScrollTest, RangeEndsRefuseWithoutAskingAndDisableTheArrow) {
    HWND control = create(0);
    KVScroll_SetScrollRange(control, SB_CTL, 0, 3, FALSE);
    EXPECT_FALSE(IsWindowEnabled(decrementOf(control)));
    EXPECT_TRUE(IsWindowEnabled(incrementOf(control)));
    sendClick(control, KVS_ID_DECREMENT);
    EXPECT_TRUE(requests_.empty());

    KVScroll_SetScrollPos(control, SB_CTL, 3, FALSE);
    EXPECT_TRUE(IsWindowEnabled(decrementOf(control)));
    EXPECT_FALSE(IsWindowEnabled(incrementOf(control)));
    sendClick(control, KVS_ID_INCREMENT);
    EXPECT_TRUE(requests_.empty());
    EXPECT_EQ(3, KVScroll_GetScrollPos(control, SB_CTL));
    click(decrementOf(control));  // one step back enables the increment arrow again
    EXPECT_EQ(2, KVScroll_GetScrollPos(control, SB_CTL));
    EXPECT_TRUE(IsWindowEnabled(incrementOf(control)));
    DestroyWindow(control);

    requests_.clear();
    HWND unlimited = create(KVS_NOLIMIT);
    KVScroll_SetScrollRange(unlimited, SB_CTL, 0, 3, FALSE);
    KVScroll_SetScrollPos(unlimited, SB_CTL, 3, FALSE);
    EXPECT_TRUE(IsWindowEnabled(incrementOf(unlimited)));
    sendClick(unlimited, KVS_ID_INCREMENT);
    ASSERT_EQ(1u, requests_.size());
    EXPECT_EQ(4, KVScroll_GetScrollPos(unlimited, SB_CTL));
    DestroyWindow(unlimited);

    // An unset range (0..0) does not limit; the parent alone decides.
    HWND unset = create(0);
    requests_.clear();
    sendClick(unset, KVS_ID_DECREMENT);
    ASSERT_EQ(1u, requests_.size());
    EXPECT_EQ(-1, requests_[0].position);
    EXPECT_EQ(-1, KVScroll_GetScrollPos(unset, SB_CTL));
    DestroyWindow(unset);
}

TEST_F(ScrollTest, HiddenArrowsAndEmptyRanges) {
    HWND control = create(KVS_HIDEDISABLED);
    KVScroll_SetScrollRange(control, SB_CTL, 0, 9, FALSE);
    EXPECT_FALSE(IsWindowVisible(decrementOf(control)));
    EXPECT_TRUE(IsWindowVisible(incrementOf(control)));
    host_.clear();
    KVScroll_SetScrollPos(control, SB_CTL, 9, FALSE);
    EXPECT_TRUE(IsWindowVisible(decrementOf(control)));
    EXPECT_FALSE(IsWindowVisible(incrementOf(control)));
    EXPECT_GE(host_.count(WM_PAINT), 1) << "the parent repaints where the arrow was";
    KVScroll_SetScrollRange(control, SB_CTL, 5, 5, FALSE);
    EXPECT_FALSE(IsWindowVisible(control));
    KVScroll_SetScrollRange(control, SB_CTL, 0, 9, FALSE);
    EXPECT_TRUE(IsWindowVisible(control));
    DestroyWindow(control);

    struct Case {
        unsigned short flags;
        bool visibleWhenEmpty;
    };
    for (const Case& c : {Case{0, false}, Case{KVS_OVERLAY, true}, Case{KVS_OVERLAY | KVS_HIDEDISABLED, false}}) {
        HWND other = create(c.flags);
        KVScroll_SetScrollRange(other, SB_CTL, 5, 5, FALSE);
        EXPECT_EQ(c.visibleWhenEmpty, IsWindowVisible(other) != 0) << c.flags;
        KVScroll_SetScrollRange(other, SB_CTL, 0, 2, FALSE);
        EXPECT_TRUE(IsWindowVisible(other)) << c.flags;
        DestroyWindow(other);
    }
}

TEST_F(ScrollTest, SetScrollPosReturnsThePreviousPositionAndIgnoresTheSameOne) {
    HWND control = create(0);
    KVScroll_SetScrollRange(control, SB_CTL, 0, 5, FALSE);
    int minimum = -1, maximum = -1;
    EXPECT_TRUE(KVScroll_GetScrollRange(control, SB_CTL, &minimum, &maximum));
    EXPECT_EQ(0, minimum);
    EXPECT_EQ(5, maximum);
    EXPECT_FALSE(IsWindowEnabled(decrementOf(control)));

    // The same position changes nothing: no repaint, the arrows as they are.
    EnableWindow(decrementOf(control), TRUE);
    kvtest::MessageRecorder recorder(control);
    EXPECT_EQ(0, KVScroll_SetScrollPos(control, SB_CTL, 0, TRUE));
    EXPECT_EQ(0, recorder.count(WM_PAINT));
    EXPECT_TRUE(IsWindowEnabled(decrementOf(control)));

    EXPECT_EQ(0, KVScroll_SetScrollPos(control, SB_CTL, 4, TRUE));
    EXPECT_GE(recorder.count(WM_PAINT), 1);
    EXPECT_EQ(4, KVScroll_SetScrollPos(control, SB_CTL, 1, FALSE));
    EXPECT_EQ(1, KVScroll_GetScrollPos(control, SB_CTL));
    recorder.detach();
    DestroyWindow(control);
}

// --- text ---------------------------------------------------------------------------------------

// The bounding box of the pixels of one colour, empty when there are none.
RECT pixelsOf(const kvtest::Canvas& canvas, COLORREF colour) {
    RECT box = {canvas.width(), canvas.height(), 0, 0};
    for (int y = 0; y < canvas.height(); ++y)
        for (int x = 0; x < canvas.width(); ++x)
            if (canvas.pixel(x, y) == colour) {
                box.left = std::min<LONG>(box.left, x);
                box.top = std::min<LONG>(box.top, y);
                box.right = std::max<LONG>(box.right, x + 1);
                box.bottom = std::max<LONG>(box.bottom, y + 1);
            }
    return box;
}

TEST_F(ScrollTest, TextIsCentredOwnedAndReplaced) {
    auto font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    HWND control = create(0, kvString(L"3 / 12"), 160, 24, font);
    kvtest::Canvas canvas(160, 24, kMagenta);
    SendMessageW(control, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT);
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), canvas.pixel(0, 0));
    RECT text = pixelsOf(canvas, GetSysColor(COLOR_WINDOWTEXT));
    ASSERT_FALSE(IsRectEmpty(&text));
    EXPECT_NEAR(80, (text.left + text.right) / 2, 2);
    EXPECT_NEAR(12, (text.top + text.bottom) / 2, 2);

    int live = KvText_LiveAllocations();
    EXPECT_TRUE(KVScroll_SetText(control, kvString(L"4 / 12"), TRUE));
    EXPECT_EQ(live, KvText_LiveAllocations()) << "the old text is freed";
    EXPECT_TRUE(KVScroll_SetText(control, nullptr, TRUE));
    canvas.fill(kMagenta);
    SendMessageW(control, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT);
    text = pixelsOf(canvas, GetSysColor(COLOR_WINDOWTEXT));
    EXPECT_TRUE(IsRectEmpty(&text));
    DestroyWindow(control);

    // Transparent: the text goes straight onto what is beneath.
    HWND clear = create(KVS_TRANSPARENT, kvString(L"7"), 160, 24, font);
    canvas.fill(kMagenta);
    SendMessageW(clear, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT);
    EXPECT_EQ(kMagenta, canvas.pixel(0, 0));
    text = pixelsOf(canvas, GetSysColor(COLOR_WINDOWTEXT));
    EXPECT_FALSE(IsRectEmpty(&text));
    DestroyWindow(clear);

    // Without a text record there is nothing to replace; the text stays the caller's.
    HWND bare = create(0);
    wchar_t* refused = kvString(L"x");
    EXPECT_FALSE(KVScroll_SetText(bare, refused, TRUE));
    FreeMemory(refused);
    DestroyWindow(bare);
}

TEST_F(ScrollTest, TextRecordThatCannotBeAllocatedLeavesTheControlWithoutText) {
    wchar_t* text = kvString(L"2 / 5");
    KvText_FailAllocation(1);
    HWND control = create(0, text);
    ASSERT_NE(nullptr, control);
    EXPECT_EQ(nullptr, GetPropW(control, L"Hd"));
    EXPECT_TRUE(sameRect(RECT{0, 0, 60, 20}, rectInParent(decrementOf(control))));
    EXPECT_FALSE(KVScroll_SetText(control, nullptr, FALSE));
    DestroyWindow(control);  // the text was freed at creation: nothing is left behind
}

// --- arrows -------------------------------------------------------------------------------------

TEST_F(ScrollTest, ArrowsPaintFacePictureAndFocus) {
    HWND control = create(0);
    HWND arrow = incrementOf(control);
    auto picture = static_cast<HBITMAP>(GetPropW(arrow, L"Bm"));
    int pictureWidth = 0, pictureHeight = 0;
    std::vector<COLORREF> pixels = kvtest::BitmapPixels(picture, &pictureWidth, &pictureHeight);
    const RECT face = {0, 0, 20, 20};
    const int left = (20 - pictureWidth) / 2, top = (20 - pictureHeight) / 2;

    struct Case {
        UINT state;
        bool pressed, greyed, focused;
    };
    COLORREF enabledInk = 0, greyedInk = 0;
    for (const Case& c : {Case{0, false, false, false}, Case{ODS_SELECTED, true, false, false},
                          Case{ODS_DISABLED, false, true, false}, Case{ODS_FOCUS, false, false, true}}) {
        SCOPED_TRACE(testing::Message() << "state 0x" << std::hex << c.state);
        kvtest::Canvas canvas(20, 20, kMagenta), expected(20, 20, kMagenta);
        DRAWITEMSTRUCT item = {};
        item.CtlType = ODT_BUTTON;
        item.CtlID = KVS_ID_INCREMENT;
        item.itemAction = ODA_DRAWENTIRE;
        item.itemState = c.state;
        item.hwndItem = arrow;
        item.hDC = canvas.dc();
        item.rcItem = face;
        EXPECT_EQ(TRUE, SendMessageW(control, WM_DRAWITEM, KVS_ID_INCREMENT, reinterpret_cast<LPARAM>(&item)));

        Kx1DrawBtnHg(expected.dc(), face, c.pressed ? 1 : 0, 0);
        if (c.focused) {
            RECT focus = {2, 2, 18, 18};
            DrawFocusRect(expected.dc(), &focus);
        }
        for (int y = 0; y < pictureHeight; ++y)
            for (int x = 0; x < pictureWidth; ++x) {
                COLORREF source = pixels[y * pictureWidth + x];
                if (source == kPictureBackground) continue;
                COLORREF ink = canvas.pixel(left + x, top + y);
                if (!c.focused) {
                    int grey = (std::max({GetRValue(source), GetGValue(source), GetBValue(source)}) +
                                std::min({GetRValue(source), GetGValue(source), GetBValue(source)})) / 2;
                    EXPECT_EQ(c.greyed ? RGB(grey, grey, grey) : source, ink) << x << ", " << y;
                    (c.greyed ? greyedInk : enabledInk) = ink;
                }
                SetPixel(expected.dc(), left + x, top + y, ink);
            }
        for (int y = 0; y < 20; ++y)
            for (int x = 0; x < 20; ++x)
                ASSERT_EQ(expected.pixel(x, y), canvas.pixel(x, y)) << x << ", " << y;
    }
    EXPECT_NE(enabledInk, greyedInk) << "a disabled arrow must look different";
    DestroyWindow(control);
}

// --- auto-repeat --------------------------------------------------------------------------------

// A held arrow: pressed by a posted button-down, let go (or robbed of the capture) by a thread
// timer that fires inside the arrow's repeat loop.
struct Hold {
    HWND arrow;
    DWORD start;
    DWORD releaseAfter;
    HWND captureThief;       // takes the capture instead of releasing the button
    DWORD secondPressAfter;  // 0: none
    bool pushedWhileHeld;
    bool done;
};
Hold g_hold;

void CALLBACK holdTick(HWND, UINT, UINT_PTR timer, DWORD) {
    DWORD held = GetTickCount() - g_hold.start;
    if (g_hold.secondPressAfter && held >= g_hold.secondPressAfter) {
        PostMessageW(g_hold.arrow, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        g_hold.secondPressAfter = 0;
    }
    if (held < g_hold.releaseAfter) return;
    KillTimer(nullptr, timer);
    g_hold.pushedWhileHeld = (SendMessageW(g_hold.arrow, BM_GETSTATE, 0, 0) & BST_PUSHED) != 0;
    if (g_hold.captureThief)
        SetCapture(g_hold.captureThief);
    else
        PostMessageW(g_hold.arrow, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    g_hold.done = true;
}

void hold(HWND arrow, DWORD releaseAfter, HWND captureThief = nullptr, DWORD secondPressAfter = 0) {
    g_hold = Hold{arrow, GetTickCount(), releaseAfter, captureThief, secondPressAfter, false, false};
    SetTimer(nullptr, 0, 20, holdTick);
    PostMessageW(arrow, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    DWORD start = GetTickCount();
    while (!g_hold.done && GetTickCount() - start < 10000) kvtest::PumpFor(10);
    kvtest::PumpMessages();
}

TEST_F(ScrollTest, HeldArrowStepsOnceThenRepeatsAfterAPause) {
    HWND control = create(KVS_REPEAT | KVS_NOLIMIT);
    HWND arrow = incrementOf(control);

    hold(arrow, 200, nullptr, 100);  // a second press while held is ignored
    EXPECT_EQ(1u, requests_.size());
    EXPECT_TRUE(g_hold.pushedWhileHeld);
    EXPECT_FALSE(SendMessageW(arrow, BM_GETSTATE, 0, 0) & BST_PUSHED);
    EXPECT_NE(arrow, GetCapture());

    requests_.clear();
    hold(arrow, 900);
    ASSERT_GE(requests_.size(), 3u);
    EXPECT_GE(requests_[1].tick - requests_[0].tick, 390u) << "no repeat before the pause is over";
    for (size_t i = 0; i < requests_.size(); ++i) {
        EXPECT_EQ(1u, requests_[i].increment);
        EXPECT_EQ(static_cast<int>(i) + 2, requests_[i].position);
    }
    EXPECT_EQ(static_cast<int>(requests_.size()) + 1, KVScroll_GetScrollPos(control, SB_CTL));
    DestroyWindow(control);
}

TEST_F(ScrollTest, HeldArrowStopsWhenItLosesTheCapture) {
    HWND control = create(KVS_REPEAT | KVS_NOLIMIT | KVS_VERTICAL);
    HWND arrow = decrementOf(control);
    hold(arrow, 600, host_);
    size_t steps = requests_.size();
    EXPECT_GE(steps, 2u);
    EXPECT_EQ(host_.handle(), GetCapture()) << "the new capture is left alone";
    ReleaseCapture();
    EXPECT_FALSE(SendMessageW(arrow, BM_GETSTATE, 0, 0) & BST_PUSHED);
    kvtest::PumpFor(100);
    EXPECT_EQ(steps, requests_.size()) << "no steps after the loop ended";
    // A plain click still steps once.
    click(arrow);
    EXPECT_EQ(steps + 1, requests_.size());
    DestroyWindow(control);
}

// --- overlay ------------------------------------------------------------------------------------

TEST_F(ScrollTest, OverlayPassesMouseInputOnToWhatLiesBeneath) {
    HWND label = host_.createChild(L"Static", L"beneath", WS_VISIBLE, 10, 10, 200, 20, 50);
    HWND overlay = create(KVS_OVERLAY, nullptr, 200, 20);
    KVScroll_SetScrollRange(overlay, SB_CTL, 0, 5, FALSE);
    ASSERT_TRUE(IsWindowVisible(overlay));
    host_.clear();
    PostMessageW(overlay, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(100, 5));
    PostMessageW(overlay, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(101, 6));
    PostMessageW(overlay, WM_RBUTTONUP, 0, MAKELPARAM(102, 7));
    PostMessageW(overlay, WM_MBUTTONDOWN, MK_MBUTTON, MAKELPARAM(103, 8));
    kvtest::PumpMessages();
    auto downs = host_.messages(WM_LBUTTONDOWN);
    ASSERT_EQ(1u, downs.size());
    EXPECT_EQ(MAKELPARAM(110, 15), downs[0].lParam) << "in the parent's coordinates";
    EXPECT_EQ(static_cast<WPARAM>(MK_LBUTTON), downs[0].wParam);
    int forwardedMoves = 0;  // the real pointer may move over the host too
    for (const kvtest::RecordedMessage& m : host_.messages(WM_MOUSEMOVE))
        forwardedMoves += m.lParam == MAKELPARAM(101, 6);
    EXPECT_EQ(1, forwardedMoves) << "moves keep the overlay's coordinates";
    auto ups = host_.messages(WM_RBUTTONUP);
    ASSERT_EQ(1u, ups.size());
    EXPECT_EQ(MAKELPARAM(112, 17), ups[0].lParam);
    EXPECT_EQ(0, host_.count(WM_MBUTTONDOWN));

    host_.clear();
    EXPECT_TRUE(SendMessageW(overlay, WM_SETCURSOR, reinterpret_cast<WPARAM>(overlay),
                             MAKELPARAM(HTCLIENT, WM_MOUSEMOVE)));
    auto cursor = host_.messages(WM_SETCURSOR);
    ASSERT_EQ(1u, cursor.size());
    EXPECT_EQ(reinterpret_cast<WPARAM>(host_.handle()), cursor[0].wParam);
    EXPECT_EQ(HTCLIENT, cursor[0].lParam);
    DestroyWindow(overlay);
    DestroyWindow(label);
}

// What the screen shows at a point of the window, once pending paints are done.
COLORREF screenPixel(HWND window, POINT point) {
    kvtest::PumpFor(100);
    ClientToScreen(window, &point);
    kvtest::Canvas pixel(1, 1);
    HDC screen = GetDC(nullptr);
    BitBlt(pixel.dc(), 0, 0, 1, 1, screen, point.x, point.y, SRCCOPY);
    ReleaseDC(nullptr, screen);
    return pixel.pixel(0, 0);
}

TEST_F(ScrollTest, OverlayArrowsStayOverThePictureBeneath) {
    HWND picture = host_.createChild(L"Static", L"", WS_VISIBLE | SS_BLACKRECT, 10, 10, 200, 100, 53);
    const COLORREF ink = screenPixel(picture, POINT{100, 50});
    HWND overlay = create(KVS_OVERLAY | KVS_ALIGNFAR, nullptr, 20, 20);
    RECT area = {10, 10, 210, 110};
    KVScroll_UpdWndPos(overlay, &area, 0);
    KVScroll_SetScrollRange(overlay, SB_CTL, 0, 5, TRUE);
    EXPECT_EQ(overlay, GetWindow(host_, GW_CHILD)) << "raised over the picture";
    const COLORREF face = GetSysColor(COLOR_BTNFACE);
    EXPECT_EQ(face, screenPixel(decrementOf(overlay), POINT{4, 4}));
    // Painted all at once, the picture may paint after the see-through overlay: the arrows
    // come back on top.
    RedrawWindow(host_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    EXPECT_EQ(face, screenPixel(decrementOf(overlay), POINT{4, 4}));
    EXPECT_EQ(ink, screenPixel(overlay, POINT{100, 10})) << "the overlay itself is see-through";
    DestroyWindow(overlay);
    DestroyWindow(picture);
}

TEST_F(ScrollTest, OverlayOverADatePickerPostsToThePickersChild) {
    HWND picker = host_.createChild(DATETIMEPICK_CLASSW, L"", WS_VISIBLE | DTS_UPDOWN, 10, 10, 200, 24, 51);
    ASSERT_NE(nullptr, picker);
    HWND target = GetWindow(picker, GW_CHILD);
    if (!target) target = picker;
    HWND overlay = create(KVS_OVERLAY, nullptr, 200, 24);
    KVScroll_SetScrollRange(overlay, SB_CTL, 0, 5, FALSE);
    {
        kvtest::MessageRecorder recorder(target);
        PostMessageW(overlay, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(60, 5));
        kvtest::PumpMessages();
        POINT expected = {70, 15};
        MapWindowPoints(host_, target, &expected, 1);
        int found = 0;
        for (const kvtest::RecordedMessage& m : recorder.messages())
            if (m.message == WM_RBUTTONDOWN) {
                ++found;
                EXPECT_EQ(MAKELPARAM(expected.x, expected.y), m.lParam);
            }
        EXPECT_EQ(1, found);
        EXPECT_EQ(0, host_.count(WM_RBUTTONDOWN));
    }
    DestroyWindow(overlay);
    DestroyWindow(picker);
}

// --- bad input ----------------------------------------------------------------------------------

TEST_F(ScrollTest, ExportsRefuseMissingAndForeignWindows) {
    HWND destroyed = create(0);
    DestroyWindow(destroyed);
    HWND foreign = host_.createChild(L"Static", L"", WS_VISIBLE, 0, 0, 10, 10, 52);
    int minimum = 0, maximum = 0;
    RECT area = {0, 0, 10, 10};
    for (HWND window : {static_cast<HWND>(nullptr), destroyed, foreign}) {
        EXPECT_EQ(0, KVScroll_GetScrollPos(window, SB_CTL));
        EXPECT_FALSE(KVScroll_GetScrollRange(window, SB_CTL, &minimum, &maximum));
        EXPECT_EQ(0, KVScroll_SetScrollPos(window, SB_CTL, 3, TRUE));
        EXPECT_FALSE(KVScroll_SetScrollRange(window, SB_CTL, 1, 2, TRUE));
        EXPECT_FALSE(KVScroll_SetText(window, nullptr, TRUE));
        EXPECT_FALSE(KVScroll_UpdWndPos(window, &area, 0));
    }
    for (HWND window : {static_cast<HWND>(nullptr), destroyed})
        EXPECT_EQ(0, KVScrollBtnProc(window, WM_LBUTTONDOWN, MK_LBUTTON, 0));
    HWND control = create(0);
    EXPECT_FALSE(KVScroll_GetScrollRange(control, SB_CTL, nullptr, &maximum));
    EXPECT_FALSE(KVScroll_GetScrollRange(control, SB_CTL, &minimum, nullptr));
    DestroyWindow(control);
    // No parent: no control, and the text given to it is not lost.
    EXPECT_EQ(nullptr, KVScroll_CreateWindow(nullptr, kId, 0, 0, 50, 20, 0, nullptr,
                                             kvString(L"x"), nullptr, 0, 0));
    DestroyWindow(foreign);
}

}  // namespace
