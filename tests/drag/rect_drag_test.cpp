// The rectangle image drag over a window that paints a known pattern: every pixel of the window
// is checked after each move against what it must show, the dimmed image where it stands and
// the window's own pixels (with the dimmed mark where the drag began) everywhere else.
#include "drag_fixture.h"
#include <functional>

namespace {

const int kWidth = 200, kHeight = 150;

COLORREF patternAt(int x, int y) {
    return RGB((x * 7 + 0x83) & 0xFF, (y * 5 + 0x42) & 0xFF, ((x + y) * 3 + 0xC6) & 0xFF);
}
// The image's pixel: every other one ANDed with the grey of the checkerboard.
COLORREF dimmed(COLORREF colour, int x, int y) {
    return (x + y) % 2 == 0 ? colour & RGB(0x7D, 0x7D, 0x7D) : colour;
}

class RectDragTest : public kvtest::KvTest {
protected:
    void SetUp() override {
        KvTest::SetUp();
        pattern = kvtest::MakeBitmap(kWidth, kHeight, patternAt);
        window = std::make_unique<kvtest::HostWindow>(kWidth, kHeight);
        window->setHandler([this](HWND hwnd, UINT message, WPARAM, LPARAM, LRESULT* result) {
            if (message == WM_ERASEBKGND) {
                *result = 1;
                return true;
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
        RedrawWindow(*window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        kvtest::PumpMessages();
    }
    void TearDown() override {
        window.reset();
        DeleteObject(pattern);
        KvTest::TearDown();
    }

    // The window's pixels as they are now.
    std::vector<COLORREF> shown() const {
        kvtest::Canvas canvas(kWidth, kHeight);
        HDC dc = GetDC(*window);
        BitBlt(canvas.dc(), 0, 0, kWidth, kHeight, dc, 0, 0, SRCCOPY);
        ReleaseDC(*window, dc);
        std::vector<COLORREF> pixels;
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x) pixels.push_back(canvas.pixel(x, y));
        return pixels;
    }
    // What the window must show: the dimmed photograph of `photo` at `image` (if any) over the
    // pattern, with the dimmed mark at `mark` (if any).
    std::vector<COLORREF> expected(RECT photo, const POINT* image, const RECT* mark) const {
        std::vector<COLORREF> pixels;
        int w = photo.right - photo.left, h = photo.bottom - photo.top;
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                COLORREF colour = patternAt(x, y);
                POINT at = {x, y};
                if (mark && PtInRect(mark, at)) colour = dimmed(colour, x - mark->left, y - mark->top);
                if (image && x >= image->x && x < image->x + w && y >= image->y && y < image->y + h) {
                    int px = x - image->x, py = y - image->y;
                    colour = dimmed(patternAt(photo.left + px, photo.top + py), px, py);
                }
                pixels.push_back(colour);
            }
        }
        return pixels;
    }
    // Number of pixels that differ, so that a failure says how much went wrong.
    static int differences(const std::vector<COLORREF>& a, const std::vector<COLORREF>& b) {
        int count = 0;
        for (size_t i = 0; i < a.size() && i < b.size(); ++i) count += a[i] != b[i];
        return count + static_cast<int>(a.size() > b.size() ? a.size() - b.size() : b.size() - a.size());
    }

    HBITMAP pattern = nullptr;
    std::unique_ptr<kvtest::HostWindow> window;
};

TEST_F(RectDragTest, TheImageIsADimmedPhotographAndTheSaveUnderRestoresEveryPixel) {
    RECT photo = {20, 30, 60, 50};
    Kx1BeginDrag(*window, &photo);
    EXPECT_EQ(*window, GetCapture());
    EXPECT_EQ(0, differences(expected(photo, nullptr, nullptr), shown()));  // nothing drawn yet

    // Moves that overlap the old place, jump clear of it, cross the mark and leave the window.
    const POINT moves[] = {{30, 35}, {33, 35}, {33, 38}, {120, 90}, {25, 28}, {-10, 140}, {60, 60}};
    for (const POINT& to : moves) {
        Kx1Drag(*window, to.x, to.y);
        EXPECT_EQ(0, differences(expected(photo, &to, &photo), shown())) << to.x << "," << to.y;
    }
    // Taking the image off restores everything but the mark where the drag began.
    EXPECT_EQ(1, Kx1StopDrag(*window, 0, 0, 0));
    EXPECT_EQ(0, differences(expected(photo, nullptr, &photo), shown()));
    RECT result;
    Kx1EndDrag(*window, 60, 60, &result);
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_EQ(60, result.left);
    EXPECT_EQ(60, result.top);
    EXPECT_EQ(100, result.right);
    EXPECT_EQ(80, result.bottom);
}

TEST_F(RectDragTest, AThreePixelMoveRestoresOnlyTheStripItUncovers) {
    RECT photo = {50, 50, 60, 60};
    Kx1BeginDrag(*window, &photo);
    POINT first = {70, 70};
    Kx1Drag(*window, first.x, first.y);
    std::vector<COLORREF> before = shown();
    POINT second = {73, 70};
    Kx1Drag(*window, second.x, second.y);
    std::vector<COLORREF> after = shown();
    // Changed: the 3-pixel strip at x 70..72 (back to the pattern) and the image's new place.
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            bool strip = x >= 70 && x < 73 && y >= 70 && y < 80;
            if (strip) {
                EXPECT_EQ(patternAt(x, y), after[y * kWidth + x]);
            }
            bool image = x >= 73 && x < 83 && y >= 70 && y < 80;
            if (!strip && !image) {
                EXPECT_EQ(before[y * kWidth + x], after[y * kWidth + x]);
            }
        }
    }
    EXPECT_EQ(0, differences(expected(photo, &second, &photo), after));
    Kx1EndDrag(*window, second.x, second.y, nullptr);
}

TEST_F(RectDragTest, EndKeepsTheImageInsideTheClientArea) {
    // Released where it began: nothing is drawn and the rectangle comes back as given.
    RECT photo = {10, 10, 50, 40};
    Kx1BeginDrag(*window, &photo);
    RECT result = {};
    Kx1EndDrag(*window, 10, 10, &result);
    EXPECT_TRUE(EqualRect(&photo, &result));
    EXPECT_EQ(0, differences(expected(photo, nullptr, nullptr), shown()));
    EXPECT_EQ(nullptr, GetCapture());

    // Released partly left of the window: moved to x = 0.
    Kx1BeginDrag(*window, &photo);
    Kx1Drag(*window, 30, 60);
    Kx1EndDrag(*window, -15, 60, &result);
    POINT inside = {0, 60};
    EXPECT_EQ(0, result.left);
    EXPECT_EQ(60, result.top);
    EXPECT_EQ(40, result.right);
    EXPECT_EQ(90, result.bottom);
    EXPECT_EQ(0, differences(expected(photo, &inside, &photo), shown()));

    // Past the right and bottom edges: moved back to them.
    RedrawWindow(*window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    Kx1BeginDrag(*window, &photo);
    Kx1Drag(*window, 100, 100);
    Kx1EndDrag(*window, 190, 140, &result);
    POINT corner = {kWidth - 40, kHeight - 30};
    EXPECT_EQ(corner.x, result.left);
    EXPECT_EQ(corner.y, result.top);
    EXPECT_EQ(0, differences(expected(photo, &corner, &photo), shown()));
    // The drag is over: stop and resume have nothing to work on.
    EXPECT_EQ(0, Kx1StopDrag(*window, 0, 0, 0));
    EXPECT_EQ(0, Kx1ResumeDrag(*window, 0, 0, 0));
}

TEST_F(RectDragTest, StopAndResumeLetTheWindowRepaintMidDrag) {
    RECT photo = {40, 40, 80, 70};
    Kx1BeginDrag(*window, &photo);
    POINT at = {100, 50};
    Kx1Drag(*window, at.x, at.y);
    EXPECT_EQ(1, Kx1StopDrag(*window, 0, 0, 0));
    // The window repaints (the mark where the drag began goes with it), then the drag goes on.
    RedrawWindow(*window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    EXPECT_EQ(1, Kx1ResumeDrag(*window, at.x, at.y, 0));
    EXPECT_EQ(0, differences(expected(photo, nullptr, nullptr), shown()));  // drawn by the next move
    POINT next = {110, 60};
    Kx1Drag(*window, next.x, next.y);
    EXPECT_EQ(0, differences(expected(photo, &next, nullptr), shown()));
    Kx1Drag(*window, 20, 20);
    POINT last = {20, 20};
    EXPECT_EQ(0, differences(expected(photo, &last, nullptr), shown()));
    Kx1EndDrag(*window, 20, 20, nullptr);

    // Taken up before the first move: the photograph is kept, the place gets its own save-under.
    RedrawWindow(*window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    Kx1BeginDrag(*window, &photo);
    EXPECT_EQ(1, Kx1ResumeDrag(*window, 40, 40, 0));
    POINT moved = {60, 90};
    Kx1Drag(*window, moved.x, moved.y);
    EXPECT_EQ(0, differences(expected(photo, &moved, nullptr), shown()));
    Kx1EndDrag(*window, moved.x, moved.y, nullptr);
}

TEST_F(RectDragTest, BadWindowsAndRectanglesDoNothing) {
    HWND destroyed = CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    DestroyWindow(destroyed);
    RECT photo = {0, 0, 10, 10}, empty = {10, 10, 10, 30}, result = {1, 2, 3, 4};
    for (HWND bad : {static_cast<HWND>(nullptr), destroyed}) {
        Kx1BeginDrag(bad, &photo);
        EXPECT_EQ(nullptr, GetCapture());
        EXPECT_EQ(0, Kx1StopDrag(bad, 0, 0, 0));
        EXPECT_EQ(0, Kx1ResumeDrag(bad, 0, 0, 0));
    }
    Kx1BeginDrag(*window, nullptr);
    Kx1BeginDrag(*window, &empty);
    EXPECT_EQ(nullptr, GetCapture());
    Kx1Drag(*window, 5, 5);
    Kx1EndDrag(*window, 5, 5, &result);
    EXPECT_EQ(1, result.left);  // no drag: nothing reported
    EXPECT_EQ(0, differences(expected(photo, nullptr, nullptr), shown()));

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
