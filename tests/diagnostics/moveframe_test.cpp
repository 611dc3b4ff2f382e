// The movable frame dragged and resized with the mouse, moved with the keys, confirmed and
// cancelled, with the rectangles its owner is told.
#include "kvtest.h"
#include <vector>
#include "kvkit_diagnostics.h"

namespace {

const COLORREF kFrameColour = RGB(200, 40, 40);

class MoveFrameTest : public kvtest::KvTest {
protected:
    void SetUp() override {
        KvTest::SetUp();
        owner.setHandler([this](HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT*) {
            if (message == KXMOVEFRAME_CHANGED) changes.push_back(*reinterpret_cast<RECT*>(lParam));
            if (message == KXMOVEFRAME_DONE) {
                done.push_back(lParam ? *reinterpret_cast<RECT*>(lParam) : RECT{-1, -1, -1, -1});
                EXPECT_TRUE(IsWindow(reinterpret_cast<HWND>(wParam)));
            }
            return false;
        });
    }
    void TearDown() override {
        kvtest::HoldKeys({});
        if (IsWindow(frame)) DestroyWindow(frame);
        KvTest::TearDown();
    }

    void create(int flags, RECT rect = {100, 100, 300, 250}) {
        frame = KxMoveFrame_Create(owner, &rect, 4, kFrameColour, flags);
        ASSERT_NE(nullptr, frame);
    }
    RECT rect() const {
        RECT r = {};
        EXPECT_EQ(1, KxMoveFrame_GetRect(frame, &r));
        return r;
    }
    // A mouse message at a screen point, in the frame's client coordinates of the moment.
    void mouse(UINT message, POINT screen, WPARAM keys = MK_LBUTTON) {
        SetCursorPos(screen.x, screen.y);
        ScreenToClient(frame, &screen);
        PostMessageW(frame, message, keys, MAKELPARAM(screen.x, screen.y));
        kvtest::PumpMessages();
    }
    // Button down at `from`, a move half way and one to `to`, then up there.
    void drag(POINT from, POINT to, bool release = true) {
        mouse(WM_LBUTTONDOWN, from);
        mouse(WM_MOUSEMOVE, {(from.x + to.x) / 2, (from.y + to.y) / 2});
        mouse(WM_MOUSEMOVE, to);
        if (release) mouse(WM_LBUTTONUP, to, 0);
    }
    void press(WORD key) {
        PostMessageW(frame, WM_KEYDOWN, key, 1);
        kvtest::PumpMessages();
    }
    static COLORREF screenPixel(POINT point) {
        HDC screen = GetDC(nullptr);
        COLORREF colour = GetPixel(screen, point.x, point.y);
        ReleaseDC(nullptr, screen);
        return colour;
    }

    kvtest::HostWindow owner{500, 400};
    HWND frame = nullptr;
    std::vector<RECT> changes, done;
};

bool operator==(const RECT& a, const RECT& b) { return EqualRect(&a, &b) != 0; }

TEST_F(MoveFrameTest, DraggingTheBandMovesTheFrameAndTheOwnerIsTold) {
    create(0);
    EXPECT_TRUE(IsWindowVisible(frame));
    EXPECT_EQ(owner.handle(), GetWindow(frame, GW_OWNER));
    RECT window;
    GetWindowRect(frame, &window);
    EXPECT_TRUE((RECT{100, 100, 300, 250}) == window);
    // A point of the top band between the handles.
    drag({150, 101}, {180, 121});
    EXPECT_TRUE((RECT{130, 120, 330, 270}) == rect());
    GetWindowRect(frame, &window);
    EXPECT_TRUE(rect() == window);
    ASSERT_EQ(1u, changes.size());
    EXPECT_TRUE(rect() == changes[0]);
    // A press inside the frame is not the frame's: the inside is not part of the window.
    HRGN shape = CreateRectRgn(0, 0, 0, 0);
    ASSERT_NE(ERROR, GetWindowRgn(frame, shape));
    EXPECT_TRUE(PtInRegion(shape, 1, 50));    // left band
    EXPECT_FALSE(PtInRegion(shape, 100, 75)); // middle
    DeleteObject(shape);
    // The band in the frame's colour.
    kvtest::Canvas canvas(200, 150);
    SendMessageW(frame, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT);
    EXPECT_EQ(kFrameColour, canvas.pixel(50, 1));
}

TEST_F(MoveFrameTest, DraggingHandlesResizesDownToTheSmallestSize) {
    create(0);
    drag({299, 249}, {339, 279});  // the lower right handle
    EXPECT_TRUE((RECT{100, 100, 340, 280}) == rect());
    drag({101, 190}, {700, 190});  // the left handle, far past the right edge
    EXPECT_TRUE((RECT{340 - 36, 100, 340, 280}) == rect());  // three 12-pixel handles wide
    drag({322, 101}, {322, 60});   // the top handle
    EXPECT_TRUE((RECT{304, 59, 340, 280}) == rect());
    EXPECT_EQ(3u, changes.size());
    RECT window;
    GetWindowRect(frame, &window);
    EXPECT_TRUE(rect() == window);
}

TEST_F(MoveFrameTest, TheInvertedFrameShowsAnOutlineAndFollowsAtTheRelease) {
    create(KXMOVEFRAME_INVERTED, {60, 60, 260, 210});
    // The outline's new top band lies over the owner's client area.
    POINT newBand = {200, 141}, before = newBand;
    COLORREF underneath = screenPixel(before);
    drag({120, 61}, {140, 141}, false);
    EXPECT_TRUE((RECT{60, 60, 260, 210}) == rect());
    EXPECT_EQ(RGB(255 - GetRValue(underneath), 255 - GetGValue(underneath), 255 - GetBValue(underneath)),
              screenPixel(newBand));
    EXPECT_TRUE(changes.empty());
    mouse(WM_LBUTTONUP, {140, 141}, 0);
    EXPECT_TRUE((RECT{80, 140, 280, 290}) == rect());
    ASSERT_EQ(1u, changes.size());
    EXPECT_TRUE(rect() == changes[0]);
    // Escape during a drag puts the outline away and leaves the frame where it was.
    drag({200, 141}, {260, 200}, false);
    press(VK_ESCAPE);
    EXPECT_TRUE((RECT{80, 140, 280, 290}) == rect());
    EXPECT_EQ(1u, changes.size());
    EXPECT_TRUE(done.empty());
    EXPECT_TRUE(IsWindow(frame));
    EXPECT_NE(frame, GetCapture());
}

TEST_F(MoveFrameTest, KeysMoveAndResizeEnterConfirmsAndEscapeCancels) {
    create(0);
    press(VK_RIGHT);
    press(VK_DOWN);
    kvtest::HoldKeys({VK_CONTROL});
    press(VK_LEFT);
    kvtest::HoldKeys({VK_SHIFT});
    press(VK_RIGHT);
    press(VK_UP);
    kvtest::HoldKeys({});
    EXPECT_TRUE((RECT{91, 101, 292, 250}) == rect());
    ASSERT_EQ(5u, changes.size());
    EXPECT_TRUE((RECT{101, 100, 301, 250}) == changes[0]);
    press(VK_RETURN);
    EXPECT_FALSE(IsWindow(frame));
    ASSERT_EQ(1u, done.size());
    EXPECT_TRUE((RECT{91, 101, 292, 250}) == done[0]);

    create(0);
    press(VK_ESCAPE);
    EXPECT_FALSE(IsWindow(frame));
    ASSERT_EQ(2u, done.size());
    EXPECT_EQ(-1, done[1].left);  // cancelled: no rectangle

    create(0);
    mouse(WM_LBUTTONDBLCLK, {150, 101});
    EXPECT_FALSE(IsWindow(frame));
    ASSERT_EQ(3u, done.size());
    EXPECT_TRUE((RECT{100, 100, 300, 250}) == done[2]);
}

TEST_F(MoveFrameTest, BadInputGivesFailureResults) {
    RECT place = {10, 10, 20, 20}, out;
    EXPECT_EQ(nullptr, KxMoveFrame_Create(owner, nullptr, 4, 0, 0));
    EXPECT_EQ(nullptr, KxMoveFrame_Create(owner, &place, 17, 0, 0));
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, KxMoveFrame_Create(owner, &place, 4, 0, 0));
    EXPECT_EQ(0, KxMoveFrame_GetRect(nullptr, &out));
    EXPECT_EQ(0, KxMoveFrame_GetRect(owner, &out));
    EXPECT_EQ(0, KxMoveFrame_SetRect(owner, &place));
    // A frame without an owner works and tells nobody; a tiny rectangle grows to the smallest.
    frame = KxMoveFrame_Create(nullptr, &place, 0, 0, 0);
    ASSERT_NE(nullptr, frame);
    EXPECT_TRUE((RECT{10, 10, 46, 46}) == rect());  // 4-pixel band: 12-pixel handles
    EXPECT_EQ(0, KxMoveFrame_GetRect(frame, nullptr));
    EXPECT_EQ(0, KxMoveFrame_SetRect(frame, nullptr));
    RECT moved = {200, 200, 400, 300};
    EXPECT_EQ(1, KxMoveFrame_SetRect(frame, &moved));
    EXPECT_TRUE(moved == rect());
    press(VK_RETURN);
    EXPECT_FALSE(IsWindow(frame));
    EXPECT_EQ(0, KxMoveFrame_GetRect(frame, &out));
    EXPECT_EQ(nullptr, KxMoveFrame_Create(frame, &place, 4, 0, 0));  // a destroyed owner
    EXPECT_TRUE(changes.empty());
    EXPECT_TRUE(done.empty());
}

}  // namespace
