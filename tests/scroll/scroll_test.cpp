// Arrow-button scroller: real controls on a host window that answers the step question, clicks
// posted to the arrows, a held arrow let go by a timer, and the pixels of text and arrows.
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

::testing::AssertionResult isAt(HWND window, RECT expected) {
    RECT actual = rectInParent(window);
    if (EqualRect(&actual, &expected)) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "at (" << actual.left << ", " << actual.top << ", "
                                         << actual.right << ", " << actual.bottom << ")";
}

HWND decrementOf(HWND control) { return GetDlgItem(control, KVS_ID_DECREMENT); }
HWND incrementOf(HWND control) { return GetDlgItem(control, KVS_ID_INCREMENT); }

void click(HWND button) {
    PostMessageW(button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    PostMessageW(button, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    kvtest::PumpMessages();
}

// What the arrow's notification brings, without a click.
void command(HWND control, int arrowId) {
    SendMessageW(control, WM_COMMAND, MAKEWPARAM(arrowId, BN_CLICKED),
                 reinterpret_cast<LPARAM>(GetDlgItem(control, arrowId)));
}

// The bounding box of the pixels of one colour, empty when there are none.
RECT pixelsOf(const kvtest::Canvas& canvas, COLORREF colour) {
    RECT box = {};
    for (int y = 0; y < canvas.height(); ++y)
        for (int x = 0; x < canvas.width(); ++x) {
            RECT pixel = {x, y, x + 1, y + 1};
            if (canvas.pixel(x, y) == colour) UnionRect(&box, &box, &pixel);
        }
    return box;
}

// What the screen shows at a point of the window once pending paints are done.
COLORREF screenPixel(HWND window, POINT point) {
    kvtest::PumpFor(100);
    ClientToScreen(window, &point);
    kvtest::Canvas pixel(1, 1);
    HDC screen = GetDC(nullptr);
    BitBlt(pixel.dc(), 0, 0, 1, 1, screen, point.x, point.y, SRCCOPY);
    ReleaseDC(nullptr, screen);
    return pixel.pixel(0, 0);
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
    HWND create(unsigned short flags, void* text = nullptr, int cx = 120, int cy = 20) {
        return KVScroll_CreateWindow(host_, kId, 10, 10, cx, cy, flags, nullptr, text,
                                     static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT)), 7, 8);
    }
    int position(HWND control) { return KVScroll_GetScrollPos(control, SB_CTL); }

    kvtest::HostWindow host_;
    std::vector<StepRequest> requests_;
    LRESULT allow_ = 1;
};

TEST_F(ScrollTest, ExportsResolveByPlainName) {
    HMODULE kvkit = GetModuleHandleW(L"kvkit.dll");
    for (const char* name : {"KVScroll_CreateWindow", "KVScroll_GetScrollPos", "KVScroll_GetScrollRange",
                             "KVScroll_SetScrollPos", "KVScroll_SetScrollRange", "KVScroll_SetText",
                             "KVScroll_UpdWndPos", "KVScrollProc", "KVScrollBtnProc"})
        EXPECT_NE(nullptr, GetProcAddress(kvkit, name)) << name;
}

TEST_F(ScrollTest, ArrowsAreLaidOutByKind) {
    struct Case {
        unsigned short flags;
        bool text;
        int cx, cy;
        RECT decrement, increment;
    };
    const Case cases[] = {
        {0, true, 120, 20, {0, 0, 20, 20}, {100, 0, 120, 20}},  // squares, the text between
        {KVS_TRANSPARENT, false, 121, 20, {0, 0, 60, 20}, {60, 0, 121, 20}},
        {KVS_NOTEXT, true, 20, 41, {0, 0, 20, 20}, {0, 20, 20, 41}},  // stacked
        {KVS_OVERLAY | KVS_VERTICAL, false, 20, 200, {0, 0, 20, 20}, {0, 180, 20, 200}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.flags);
        wchar_t* text = c.text ? kvString(L"1 / 3") : nullptr;
        HWND control = create(c.flags, text, c.cx, c.cy);
        ASSERT_NE(nullptr, control);
        if (c.flags & KVS_NOTEXT) FreeMemory(text);  // not taken without a text record
        EXPECT_EQ(c.flags, GetWindowLongW(control, KVS_OFFSET_FLAGS));
        EXPECT_EQ(c.flags & KVS_OVERLAY ? 0x46000000u : 0x56000000u,
                  GetWindowLongW(control, GWL_STYLE) & 0xFFFF0000u);
        EXPECT_EQ((c.flags & (KVS_TRANSPARENT | KVS_OVERLAY)) != 0,
                  (GetWindowLongW(control, GWL_EXSTYLE) & WS_EX_TRANSPARENT) != 0);
        EXPECT_TRUE(isAt(decrementOf(control), c.decrement));
        EXPECT_TRUE(isAt(incrementOf(control), c.increment));
        EXPECT_NE(nullptr, GetPropW(incrementOf(control), L"Bm"));
        DestroyWindow(control);
    }
}

TEST_F(ScrollTest, OverlayIsLaidAlongTheArea) {
    RECT area = {20, 30, 220, 130};
    HWND bottom = create(KVS_OVERLAY | KVS_ALIGNFAR, nullptr, 50, 16);
    EXPECT_TRUE(KVScroll_UpdWndPos(bottom, &area, 0));
    EXPECT_TRUE(isAt(bottom, RECT{20, 114, 220, 130}));
    EXPECT_TRUE(isAt(incrementOf(bottom), RECT{184, 0, 200, 16}));
    // Moved at the same size no WM_SIZE comes: the arrows are laid out all the same.
    MoveWindow(incrementOf(bottom), 3, 3, 5, 5, FALSE);
    KVScroll_UpdWndPos(bottom, &area, 0);
    EXPECT_TRUE(isAt(incrementOf(bottom), RECT{184, 0, 200, 16}));

    HWND right = create(KVS_OVERLAY | KVS_VERTICAL | KVS_ALIGNFAR, nullptr, 16, 50);
    KVScroll_UpdWndPos(right, nullptr, 0);  // the parent's client area
    EXPECT_TRUE(isAt(right, RECT{400 - 16, 0, 400, 300}));

    // The arrows keep their height; the control takes the area's width.
    HWND wide = create(KVS_OVERLAY | KVS_VERTICAL | KVS_KEEPBUTTONSIZE, nullptr, 30, 12);
    KVScroll_UpdWndPos(wide, &area, 0);
    EXPECT_TRUE(isAt(wide, area));
    EXPECT_TRUE(isAt(incrementOf(wide), RECT{0, 88, 200, 100}));
    EXPECT_FALSE(KVScroll_UpdWndPos(create(0), &area, 0)) << "not an overlay";
}

TEST_F(ScrollTest, ClicksAskTheParentBeforeEachStep) {
    HWND control = create(0);
    KVScroll_SetScrollRange(control, SB_CTL, 0, 5, TRUE);
    KVScroll_SetScrollPos(control, SB_CTL, 2, TRUE);
    click(incrementOf(control));
    ASSERT_EQ(1u, requests_.size());
    EXPECT_EQ(1u, requests_[0].increment);
    EXPECT_EQ(3, requests_[0].position);
    EXPECT_EQ(kId, requests_[0].id);
    EXPECT_EQ(3, position(control));

    allow_ = 0;
    click(decrementOf(control));
    ASSERT_EQ(2u, requests_.size());
    EXPECT_EQ(0u, requests_[1].increment);
    EXPECT_EQ(2, requests_[1].position);
    EXPECT_EQ(3, position(control)) << "refused";

    allow_ = 1;  // both clicks of a double click step
    for (UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP})
        PostMessageW(incrementOf(control), message, 0, MAKELPARAM(5, 5));
    kvtest::PumpMessages();
    EXPECT_EQ(5, position(control));
}

TEST_F(ScrollTest, RangeEndsRefuseWithoutAskingAndDisableTheArrow) {
    HWND control = create(0);
    KVScroll_SetScrollRange(control, SB_CTL, 0, 3, FALSE);
    EXPECT_FALSE(IsWindowEnabled(decrementOf(control)));
    command(control, KVS_ID_DECREMENT);
    EXPECT_EQ(0, KVScroll_SetScrollPos(control, SB_CTL, 3, FALSE));
    EXPECT_FALSE(IsWindowEnabled(incrementOf(control)));
    command(control, KVS_ID_INCREMENT);
    EXPECT_TRUE(requests_.empty());
    click(decrementOf(control));  // one step back enables the increment arrow again
    EXPECT_EQ(2, position(control));
    EXPECT_TRUE(IsWindowEnabled(incrementOf(control)));

    // The same position changes nothing, not even the arrows, and paints nothing.
    EnableWindow(incrementOf(control), FALSE);
    kvtest::MessageRecorder recorder(control);
    EXPECT_EQ(2, KVScroll_SetScrollPos(control, SB_CTL, 2, TRUE));
    EXPECT_EQ(0, recorder.count(WM_PAINT));
    EXPECT_FALSE(IsWindowEnabled(incrementOf(control)));
    recorder.detach();

    requests_.clear();
    HWND unlimited = create(KVS_NOLIMIT);
    KVScroll_SetScrollRange(unlimited, SB_CTL, 0, 3, FALSE);
    KVScroll_SetScrollPos(unlimited, SB_CTL, 3, FALSE);
    EXPECT_TRUE(IsWindowEnabled(incrementOf(unlimited)));
    command(unlimited, KVS_ID_INCREMENT);
    EXPECT_EQ(4, position(unlimited));
    HWND unset = create(0);  // range 0..0: only the parent decides
    command(unset, KVS_ID_DECREMENT);
    EXPECT_EQ(-1, position(unset));
    EXPECT_EQ(2u, requests_.size());
    int minimum = 9, maximum = 9;
    EXPECT_TRUE(KVScroll_GetScrollRange(unlimited, SB_CTL, &minimum, &maximum));
    EXPECT_EQ(0, minimum);
    EXPECT_EQ(3, maximum);
}

TEST_F(ScrollTest, HiddenArrowsAndEmptyRanges) {
    HWND control = create(KVS_HIDEDISABLED);
    KVScroll_SetScrollRange(control, SB_CTL, 0, 9, FALSE);
    EXPECT_FALSE(IsWindowVisible(decrementOf(control)));
    host_.clear();
    KVScroll_SetScrollPos(control, SB_CTL, 9, FALSE);
    EXPECT_TRUE(IsWindowVisible(decrementOf(control)));
    EXPECT_FALSE(IsWindowVisible(incrementOf(control)));
    EXPECT_GE(host_.count(WM_PAINT), 1) << "the parent repaints where the arrow was";

    struct Case {
        unsigned short flags;
        bool visibleWhenEmpty;
    };
    for (const Case& c : {Case{KVS_HIDEDISABLED, false}, Case{0, false}, Case{KVS_OVERLAY, true},
                          Case{KVS_OVERLAY | KVS_HIDEDISABLED, false}}) {
        HWND other = create(c.flags);
        KVScroll_SetScrollRange(other, SB_CTL, 5, 5, FALSE);
        EXPECT_EQ(c.visibleWhenEmpty, IsWindowVisible(other) != 0) << c.flags;
        KVScroll_SetScrollRange(other, SB_CTL, 0, 2, FALSE);
        EXPECT_TRUE(IsWindowVisible(other)) << c.flags;
    }
}

TEST_F(ScrollTest, TextIsCentredOwnedAndReplaced) {
    HWND control = create(0, kvString(L"3 / 12"), 160, 24);
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

    HWND clear = create(KVS_TRANSPARENT, kvString(L"7"), 160, 24);  // no background
    canvas.fill(kMagenta);
    SendMessageW(clear, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT);
    EXPECT_EQ(kMagenta, canvas.pixel(0, 0));
    text = pixelsOf(canvas, GetSysColor(COLOR_WINDOWTEXT));
    EXPECT_FALSE(IsRectEmpty(&text));

    wchar_t* refused = kvString(L"x");  // no text record: the text stays the caller's
    EXPECT_FALSE(KVScroll_SetText(create(0), refused, TRUE));
    FreeMemory(refused);

    wchar_t* lost = kvString(L"2 / 5");
    KvText_FailAllocation(1);  // the record: the control lives on without text
    HWND bare = create(0, lost);
    ASSERT_NE(nullptr, bare);
    EXPECT_EQ(nullptr, GetPropW(bare, L"Hd"));
    EXPECT_TRUE(isAt(decrementOf(bare), RECT{0, 0, 60, 20}));
}

TEST_F(ScrollTest, ArrowsPaintFacePictureAndFocus) {
    HWND control = create(0);
    HWND arrow = incrementOf(control);
    int width = 0, height = 0;
    std::vector<COLORREF> picture =
        kvtest::BitmapPixels(static_cast<HBITMAP>(GetPropW(arrow, L"Bm")), &width, &height);
    const int left = (20 - width) / 2, top = (20 - height) / 2;
    COLORREF inks[2] = {};
    for (UINT state : {0u, UINT(ODS_SELECTED), UINT(ODS_DISABLED), UINT(ODS_FOCUS)}) {
        SCOPED_TRACE(state);
        kvtest::Canvas canvas(20, 20, kMagenta), expected(20, 20, kMagenta);
        DRAWITEMSTRUCT item = {ODT_BUTTON, KVS_ID_INCREMENT, 0, ODA_DRAWENTIRE, state, arrow, canvas.dc(), {0, 0, 20, 20}, 0};
        EXPECT_EQ(TRUE, SendMessageW(control, WM_DRAWITEM, KVS_ID_INCREMENT, reinterpret_cast<LPARAM>(&item)));
        Kx1DrawBtnHg(expected.dc(), item.rcItem, state == ODS_SELECTED, 0);
        RECT focus = {2, 2, 18, 18};
        if (state == ODS_FOCUS) DrawFocusRect(expected.dc(), &focus);
        // The picture centred, its light grey left out, in grey when disabled.
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                COLORREF source = picture[y * width + x], ink = canvas.pixel(left + x, top + y);
                if (source == RGB(192, 192, 192)) continue;
                int high = std::max({GetRValue(source), GetGValue(source), GetBValue(source)});
                int low = std::min({GetRValue(source), GetGValue(source), GetBValue(source)});
                if (state != ODS_FOCUS) {
                    EXPECT_EQ(state == ODS_DISABLED ? RGB((high + low) / 2, (high + low) / 2, (high + low) / 2) : source, ink);
                }
                inks[state == ODS_DISABLED] = ink;
                SetPixel(expected.dc(), left + x, top + y, ink);
            }
        for (int y = 0; y < 20; ++y)
            for (int x = 0; x < 20; ++x) ASSERT_EQ(expected.pixel(x, y), canvas.pixel(x, y)) << x << ", " << y;
    }
    EXPECT_NE(inks[0], inks[1]) << "a disabled arrow looks different";
}

// A held arrow: pressed by a posted button-down, let go (or robbed of the capture) by a thread
// timer that fires inside the arrow's repeat loop.
struct Hold {
    HWND arrow;
    DWORD start, releaseAfter;
    HWND captureThief;  // takes the capture instead of letting go
    bool secondPress, pushedWhileHeld, done;
};
Hold g_hold;

void CALLBACK holdTick(HWND, UINT, UINT_PTR timer, DWORD) {
    DWORD held = GetTickCount() - g_hold.start;
    if (g_hold.secondPress && held >= 100) {  // ignored while repeating
        PostMessageW(g_hold.arrow, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        g_hold.secondPress = false;
    }
    if (held < g_hold.releaseAfter) return;
    KillTimer(nullptr, timer);
    g_hold.pushedWhileHeld = SendMessageW(g_hold.arrow, BM_GETSTATE, 0, 0) & BST_PUSHED;
    if (g_hold.captureThief)
        SetCapture(g_hold.captureThief);
    else
        PostMessageW(g_hold.arrow, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    g_hold.done = true;
}

void hold(HWND arrow, DWORD releaseAfter, HWND captureThief = nullptr, bool secondPress = false) {
    g_hold = Hold{arrow, GetTickCount(), releaseAfter, captureThief, secondPress, false, false};
    SetTimer(nullptr, 0, 20, holdTick);
    PostMessageW(arrow, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    for (DWORD start = GetTickCount(); !g_hold.done && GetTickCount() - start < 10000;) kvtest::PumpFor(10);
    kvtest::PumpMessages();
}

TEST_F(ScrollTest, HeldArrowStepsOnceThenRepeatsAfterAPause) {
    HWND control = create(KVS_REPEAT | KVS_NOLIMIT);
    HWND arrow = incrementOf(control);
    hold(arrow, 200, nullptr, true);
    EXPECT_EQ(1u, requests_.size());
    EXPECT_TRUE(g_hold.pushedWhileHeld);
    EXPECT_FALSE(SendMessageW(arrow, BM_GETSTATE, 0, 0) & BST_PUSHED);
    EXPECT_NE(arrow, GetCapture());

    requests_.clear();
    hold(arrow, 900);
    ASSERT_GE(requests_.size(), 3u);
    EXPECT_GE(requests_[1].tick - requests_[0].tick, 390u) << "no repeat before the pause is over";
    EXPECT_EQ(static_cast<int>(requests_.size()) + 1, position(control));
    EXPECT_EQ(position(control), requests_.back().position);

    // Robbed of the capture, the arrow stops and leaves the new capture alone.
    requests_.clear();
    hold(arrow, 600, host_);
    size_t steps = requests_.size();
    EXPECT_GE(steps, 2u);
    EXPECT_EQ(host_.handle(), GetCapture());
    ReleaseCapture();
    kvtest::PumpFor(100);
    EXPECT_EQ(steps, requests_.size());
    EXPECT_FALSE(SendMessageW(arrow, BM_GETSTATE, 0, 0) & BST_PUSHED);
}

TEST_F(ScrollTest, OverlayPassesMouseInputOnToWhatLiesBeneath) {
    host_.createChild(L"Static", L"beneath", WS_VISIBLE, 10, 10, 200, 20, 50);
    HWND overlay = create(KVS_OVERLAY, nullptr, 200, 20);
    KVScroll_SetScrollRange(overlay, SB_CTL, 0, 5, FALSE);
    ASSERT_TRUE(IsWindowVisible(overlay));
    host_.clear();
    PostMessageW(overlay, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(100, 5));
    PostMessageW(overlay, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(101, 6));
    PostMessageW(overlay, WM_MBUTTONDOWN, MK_MBUTTON, MAKELPARAM(103, 8));  // not passed on
    kvtest::PumpMessages();
    auto downs = host_.messages(WM_LBUTTONDOWN);
    ASSERT_EQ(1u, downs.size());
    EXPECT_EQ(MAKELPARAM(110, 15), downs[0].lParam) << "in the parent's coordinates";
    EXPECT_EQ(static_cast<WPARAM>(MK_LBUTTON), downs[0].wParam);
    int moves = 0;  // the real pointer may move over the host too
    for (const kvtest::RecordedMessage& m : host_.messages(WM_MOUSEMOVE)) moves += m.lParam == MAKELPARAM(101, 6);
    EXPECT_EQ(1, moves) << "moves keep the overlay's coordinates";
    EXPECT_EQ(0, host_.count(WM_MBUTTONDOWN));
    host_.clear();
    EXPECT_TRUE(SendMessageW(overlay, WM_SETCURSOR, reinterpret_cast<WPARAM>(overlay), HTCLIENT));
    ASSERT_EQ(1, host_.count(WM_SETCURSOR));
    EXPECT_EQ(reinterpret_cast<WPARAM>(host_.handle()), host_.messages(WM_SETCURSOR)[0].wParam);

    // Over a date picker the picker's first child gets it, in its own coordinates.
    HWND picker = host_.createChild(DATETIMEPICK_CLASSW, L"", WS_VISIBLE | DTS_UPDOWN, 10, 40, 200, 24, 51);
    HWND target = GetWindow(picker, GW_CHILD) ? GetWindow(picker, GW_CHILD) : picker;
    HWND above = KVScroll_CreateWindow(host_, kId, 10, 40, 200, 24, KVS_OVERLAY, nullptr, nullptr, nullptr, 0, 0);
    KVScroll_SetScrollRange(above, SB_CTL, 0, 5, FALSE);
    kvtest::MessageRecorder recorder(target);
    PostMessageW(above, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(60, 5));
    kvtest::PumpMessages();
    POINT expected = {70, 45};
    MapWindowPoints(host_, target, &expected, 1);
    ASSERT_EQ(1, recorder.count(WM_RBUTTONDOWN));
    for (const kvtest::RecordedMessage& m : recorder.messages()) {
        if (m.message == WM_RBUTTONDOWN) {
            EXPECT_EQ(MAKELPARAM(expected.x, expected.y), m.lParam);
        }
    }
    recorder.detach();
}

TEST_F(ScrollTest, OverlayArrowsStayOverThePictureBeneath) {
    HWND picture = host_.createChild(L"Static", L"", WS_VISIBLE | SS_BLACKRECT, 10, 10, 200, 100, 53);
    const COLORREF ink = screenPixel(picture, POINT{100, 50});
    HWND overlay = create(KVS_OVERLAY | KVS_ALIGNFAR, nullptr, 20, 20);
    RECT area = {10, 10, 210, 110};
    KVScroll_UpdWndPos(overlay, &area, 0);
    KVScroll_SetScrollRange(overlay, SB_CTL, 0, 5, TRUE);
    EXPECT_EQ(overlay, GetWindow(host_, GW_CHILD)) << "raised over the picture";
    // Painted all at once, the picture may paint after the see-through overlay.
    RedrawWindow(host_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), screenPixel(decrementOf(overlay), POINT{4, 4}));
    EXPECT_EQ(ink, screenPixel(overlay, POINT{100, 10})) << "the overlay itself is see-through";
}

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
    EXPECT_EQ(0, KVScrollBtnProc(destroyed, WM_LBUTTONDOWN, MK_LBUTTON, 0));
    EXPECT_FALSE(KVScroll_GetScrollRange(create(0), SB_CTL, nullptr, &maximum));
    // Without a parent there is no control, and the text handed over is freed.
    EXPECT_EQ(nullptr, KVScroll_CreateWindow(nullptr, kId, 0, 0, 50, 20, 0, nullptr, kvString(L"x"), nullptr, 0, 0));
}

}  // namespace
