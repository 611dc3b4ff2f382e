// The rectangle image drag over a window that paints a known pattern: every pixel of the window
// is checked against what it must show, the dimmed image where it stands and the window's own
// pixels (with the dimmed mark where the drag began) everywhere else.
#include "drag_fixture.h"

namespace {

const int kWidth = 200, kHeight = 150;

COLORREF patternAt(int x, int y) {
    return RGB((x * 7 + 0x83) & 0xFF, (y * 5 + 0x42) & 0xFF, ((x + y) * 3 + 0xC6) & 0xFF);
}
// A pixel of the photograph: every other one ANDed with the grey of the checkerboard.
COLORREF dimmed(COLORREF colour, int x, int y) {
    return (x + y) % 2 == 0 ? colour & RGB(0x7D, 0x7D, 0x7D) : colour;
}

class RectDragTest : public kvtest::KvTest {
protected:
    void SetUp() override {
        KvTest::SetUp();
        pattern = kvtest::MakeBitmap(kWidth, kHeight, patternAt);
        window = std::make_unique<kvtest::HostWindow>(kWidth, kHeight);
        window->setHandler([this](HWND hwnd, UINT message, WPARAM wParam, LPARAM, LRESULT* result) {
            *result = 1;
            if (message == WM_ERASEBKGND) return true;
            // As a host does: Escape or a lost capture ends the drag where the image stands.
            if (message == WM_CAPTURECHANGED || (message == WM_KEYDOWN && wParam == VK_ESCAPE)) {
                Kx1EndDrag(hwnd, endAt.x, endAt.y, &ended);
                return false;
            }
            if (message != WM_PAINT) return false;
            PAINTSTRUCT paint;
            HDC dc = BeginPaint(hwnd, &paint);
            HDC source = CreateCompatibleDC(dc);
            HGDIOBJ old = SelectObject(source, pattern);
            BitBlt(dc, 0, 0, kWidth, kHeight, source, 0, 0, SRCCOPY);
            SelectObject(source, old);
            DeleteDC(source);
            EndPaint(hwnd, &paint);
            return true;
        });
        repaint();
    }
    void TearDown() override {
        window.reset();
        DeleteObject(pattern);
        KvTest::TearDown();
    }
    void repaint() { RedrawWindow(*window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW); }

    // Pixels of the window that differ from what it must show: the dimmed photograph of `photo`
    // with its corner at `image` (if any) over the pattern, with the dimmed mark at `mark` (if any).
    int wrongPixels(RECT photo, const POINT* image, const RECT* mark) const {
        kvtest::Canvas shown(kWidth, kHeight);
        HDC dc = GetDC(*window);
        BitBlt(shown.dc(), 0, 0, kWidth, kHeight, dc, 0, 0, SRCCOPY);
        ReleaseDC(*window, dc);
        int w = photo.right - photo.left, h = photo.bottom - photo.top, wrong = 0;
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                COLORREF colour = patternAt(x, y);
                POINT at = {x, y};
                if (mark && PtInRect(mark, at)) colour = dimmed(colour, x - mark->left, y - mark->top);
                if (image && x >= image->x && x < image->x + w && y >= image->y && y < image->y + h)
                    colour = dimmed(patternAt(photo.left + x - image->x, photo.top + y - image->y),
                                    x - image->x, y - image->y);
                wrong += shown.pixel(x, y) != colour;
            }
        }
        return wrong;
    }

    HBITMAP pattern = nullptr;
    std::unique_ptr<kvtest::HostWindow> window;
    POINT endAt = {0, 0};
    RECT ended = {};
};

TEST_F(RectDragTest, TheImageIsADimmedPhotographAndTheSaveUnderRestoresEveryPixel) {
    RECT photo = {20, 30, 60, 50};
    Kx1BeginDrag(*window, &photo);
    EXPECT_EQ(*window, GetCapture());
    EXPECT_EQ(0, wrongPixels(photo, nullptr, nullptr));  // nothing drawn yet
    // Moves that overlap the old place (by 3 pixels, too), jump clear of it, cross the mark and
    // leave the window.
    const POINT moves[] = {{30, 35}, {33, 35}, {33, 38}, {120, 90}, {25, 28}, {-10, 140}, {60, 60}};
    for (const POINT& to : moves) {
        Kx1Drag(*window, to.x, to.y);
        EXPECT_EQ(0, wrongPixels(photo, &to, &photo)) << to.x << "," << to.y;
    }
    // Taking the image off restores everything but the mark where the drag began.
    EXPECT_EQ(1, Kx1StopDrag(*window, 0, 0, 0));
    EXPECT_EQ(0, wrongPixels(photo, nullptr, &photo));
    RECT result;
    Kx1EndDrag(*window, 60, 60, &result);
    EXPECT_EQ(nullptr, GetCapture());
    RECT expected = {60, 60, 100, 80};
    EXPECT_TRUE(EqualRect(&expected, &result));
}

TEST_F(RectDragTest, EndKeepsTheImageInsideTheClientArea) {
    // Released where it began: nothing is drawn and the rectangle comes back as given.
    RECT photo = {10, 10, 50, 40}, result = {};
    Kx1BeginDrag(*window, &photo);
    Kx1EndDrag(*window, 10, 10, &result);
    EXPECT_TRUE(EqualRect(&photo, &result));
    EXPECT_EQ(0, wrongPixels(photo, nullptr, nullptr));
    EXPECT_EQ(nullptr, GetCapture());
    // Released partly left of the window: moved to x = 0.
    Kx1BeginDrag(*window, &photo);
    Kx1Drag(*window, 30, 60);
    Kx1EndDrag(*window, -15, 60, &result);
    RECT inside = {0, 60, 40, 90};
    EXPECT_TRUE(EqualRect(&inside, &result));
    EXPECT_EQ(0, wrongPixels(photo, reinterpret_cast<POINT*>(&inside), &photo));
    // Past the right and bottom edges: moved back to them.
    repaint();
    Kx1BeginDrag(*window, &photo);
    Kx1Drag(*window, 100, 100);
    Kx1EndDrag(*window, 190, 140, &result);
    POINT corner = {kWidth - 40, kHeight - 30};
    EXPECT_EQ(corner.x, result.left);
    EXPECT_EQ(corner.y, result.top);
    EXPECT_EQ(0, wrongPixels(photo, &corner, &photo));
    // Over: stop and resume have nothing to work on.
    EXPECT_EQ(0, Kx1StopDrag(*window, 0, 0, 0));
    EXPECT_EQ(0, Kx1ResumeDrag(*window, 0, 0, 0));
}

TEST_F(RectDragTest, StopAndResumeLetTheWindowRepaintMidDrag) {
    RECT photo = {40, 40, 80, 70};
    Kx1BeginDrag(*window, &photo);
    Kx1Drag(*window, 100, 50);
    EXPECT_EQ(1, Kx1StopDrag(*window, 0, 0, 0));
    repaint();  // the mark where the drag began goes with the repaint
    EXPECT_EQ(1, Kx1ResumeDrag(*window, 100, 50, 0));
    EXPECT_EQ(0, wrongPixels(photo, nullptr, nullptr));  // drawn again by the next move
    for (POINT to : {POINT{110, 60}, POINT{20, 20}}) {
        Kx1Drag(*window, to.x, to.y);
        EXPECT_EQ(0, wrongPixels(photo, &to, nullptr));
    }
    Kx1EndDrag(*window, 20, 20, nullptr);
    // Taken up before the first move: the photograph is kept, the place gets its own save-under.
    repaint();
    Kx1BeginDrag(*window, &photo);
    EXPECT_EQ(1, Kx1ResumeDrag(*window, 40, 40, 0));
    POINT moved = {60, 90};
    Kx1Drag(*window, moved.x, moved.y);
    EXPECT_EQ(0, wrongPixels(photo, &moved, nullptr));
    Kx1EndDrag(*window, moved.x, moved.y, nullptr);
}

TEST_F(RectDragTest, EscapeOrALostCaptureEndTheDragLeavingNothing) {
    RECT photo = {20, 20, 50, 40};
    SetFocus(*window);
    Kx1BeginDrag(*window, &photo);
    endAt = {70, 30};
    Kx1Drag(*window, endAt.x, endAt.y);
    PressKey(VK_ESCAPE);
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_EQ(70, ended.left);
    EXPECT_EQ(0, Kx1StopDrag(*window, 0, 0, 0));  // over, its bitmaps gone (the fixture counts)
    EXPECT_EQ(0, wrongPixels(photo, &endAt, &photo));
    // Another window takes the capture: it keeps it.
    repaint();
    Kx1BeginDrag(*window, &photo);
    endAt = {100, 80};
    Kx1Drag(*window, endAt.x, endAt.y);
    HWND other = CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 5, 5, nullptr, nullptr, nullptr, nullptr);
    SetCapture(other);
    EXPECT_EQ(100, ended.left);
    EXPECT_EQ(other, GetCapture());
    EXPECT_EQ(0, Kx1StopDrag(*window, 0, 0, 0));
    ReleaseCapture();
    DestroyWindow(other);
}

TEST_F(RectDragTest, BadWindowsAndRectanglesDoNothing) {
    HWND destroyed = CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    DestroyWindow(destroyed);
    RECT photo = {0, 0, 10, 10}, empty = {10, 10, 10, 30}, result = {1, 2, 3, 4};
    for (HWND bad : {static_cast<HWND>(nullptr), destroyed}) {
        Kx1BeginDrag(bad, &photo);
        EXPECT_EQ(0, Kx1StopDrag(bad, 0, 0, 0));
        EXPECT_EQ(0, Kx1ResumeDrag(bad, 0, 0, 0));
    }
    Kx1BeginDrag(*window, nullptr);
    Kx1BeginDrag(*window, &empty);
    EXPECT_EQ(nullptr, GetCapture());
    Kx1Drag(*window, 5, 5);
    Kx1EndDrag(*window, 5, 5, &result);
    EXPECT_EQ(1, result.left);  // no drag: nothing reported
    EXPECT_EQ(0, wrongPixels(photo, nullptr, nullptr));
    // A drag whose window goes away in the middle ends cleanly.
    Kx1BeginDrag(*window, &photo);
    Kx1Drag(*window, 30, 30);
    HWND gone = *window;
    window.reset();
    Kx1Drag(gone, 40, 40);
    EXPECT_EQ(0, Kx1StopDrag(gone, 0, 0, 0));
    Kx1EndDrag(gone, 50, 50, &result);
    EXPECT_EQ(0, Kx1StopDrag(nullptr, 0, 0, 0));
}

}  // namespace
