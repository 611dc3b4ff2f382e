// Transparent, stretched, tiled and resource bitmaps, checked pixel by pixel in
// 32-bit canvases.
#include "kvtest.h"
#include "kvkit_draw.h"
#include "pictures.h"

using namespace pictures;

namespace {

class Transparent : public BitmapTest {
protected:
    HBITMAP spot = source(8, 8, Spot);
    kvtest::Canvas canvas{24, 24, kPaper};
};

TEST_F(Transparent, ByKeyByMaskAndStretched) {
    // Key from pixel (0, 0) although another key is passed, then the given key red.
    EXPECT_EQ(1, DrawTranspBitmapEx(canvas.dc(), spot, 0, 0, kRed, 0, false));
    DrawTranspBitmap(canvas.dc(), spot, 8, 0, kRed, true);
    DrawTransparentByMask(canvas.dc(), source(8, 8, SpotOnBlack), spotMask(), 16, 0);
    RECT twice = {0, 8, 16, 24};
    EXPECT_NE(0, Kx1DrawTransShrBitm(canvas.dc(), spot, &twice));

    auto spotOnPaper = [](int x, int y) { return InSpot(x, y) ? Spot(x, y) : kPaper; };
    EXPECT_EQ(0, CanvasMismatches(canvas, 0, 0, 8, 8, spotOnPaper));
    EXPECT_EQ(0, CanvasMismatches(canvas, 8, 0, 8, 8, [](int x, int y) {
                  return Spot(x, y) == kRed ? kPaper : Spot(x, y);
              }));
    EXPECT_EQ(0, CanvasMismatches(canvas, 16, 0, 8, 8, spotOnPaper));
    EXPECT_EQ(0, CanvasMismatches(canvas, 0, 8, 16, 16, [&](int x, int y) {
                  return spotOnPaper(x / 2, y / 2);
              }));
}

// 3 x 2 tile with a different colour in every pixel, and a 20 x 20 picture.
COLORREF tile(int x, int y) { return RGB(10 + 40 * x, 20 + 100 * y, 77); }
COLORREF large(int x, int y) { return RGB(5 * x, 5 * y, 200); }

TEST_F(Transparent, FillRectTilesOrCentresInsideTheRectangle) {
    HBITMAP small = source(3, 2, tile), big = source(20, 20, large);
    HRGN callerClip = CreateRectRgn(0, 0, 22, 22);
    SelectClipRgn(canvas.dc(), callerClip);
    RECT rect = {5, 5, 15, 12};
    struct {
        HBITMAP bitmap; int centre; short dx, dy;
        int left, top, width, height;  // where the picture must appear
        ColourAt expected;
    } cases[] = {
        {small, 0, 1, 1, 5, 5, 10, 7, [](int x, int y) { return tile((x + 1) % 3, (y + 1) % 2); }},
        {big, 0, 2, 3, 5, 5, 10, 7, [](int x, int y) { return large(x + 2, y + 3); }},
        // Centred: (5 + 7 / 2, 5 + 5 / 2); a larger picture starts at the corner less the offsets.
        {small, 1, 0, 0, 8, 7, 3, 2, tile},
        {big, 1, 1, 2, 5, 5, 10, 7, [](int x, int y) { return large(x + 1, y + 2); }},
    };
    for (auto& c : cases) {
        canvas.fill(kPaper);
        EXPECT_EQ(1, Kx1FillRectBm(canvas.dc(), c.bitmap, &rect, c.centre, c.dx, c.dy));
        EXPECT_EQ(0, CanvasMismatches(canvas, 0, 0, 24, 24, [&](int x, int y) {
                      bool inside = x >= c.left && x < c.left + c.width && y >= c.top &&
                                    y < c.top + c.height;
                      return inside ? c.expected(x - c.left, y - c.top) : kPaper;
                  })) << "centre " << c.centre << " offset " << c.dx;
    }
    // The caller's clipping is given back.
    HRGN after = CreateRectRgn(0, 0, 0, 0);
    ASSERT_EQ(1, GetClipRgn(canvas.dc(), after));
    EXPECT_TRUE(EqualRgn(after, callerClip));
    SelectClipRgn(canvas.dc(), nullptr);
    DeleteObject(after);
    DeleteObject(callerClip);
}

TEST(BitmapResource, TilesOnlyTheFirstRowAndColumnOrStretches) {
    HMODULE module = GetModuleHandleW(L"kvkit.dll");
    HBITMAP loaded = LoadBitmapW(module, L"btaob");  // 8 bits, two colours listed
    ASSERT_NE(nullptr, loaded);
    int w = 0, h = 0;
    std::vector<COLORREF> picture = kvtest::BitmapPixels(loaded, &w, &h);
    DeleteObject(loaded);
    auto at = [&](int x, int y) { return picture[y * w + x]; };

    kvtest::Canvas canvas(4 * w + 4, 4 * h + 4, kPaper);
    RECT rect = {2, 2, 2 + 4 * w, 2 + 4 * h};
    for (int tiles = 0; tiles < 4; ++tiles) {
        bool down = tiles & 1, right = tiles & 2;
        canvas.fill(kPaper);
        int width = -1, height = -1;
        EXPECT_NE(0, Kx1DrawBitmapRes(canvas.dc(), module, L"btaob", &rect, 0, &width, &height,
                                      nullptr, down, right, 0));
        EXPECT_EQ(w, width);
        EXPECT_EQ(h, height);
        // Copies down the first column and along the first row only: seven with both.
        for (int row = 0; row < 4; ++row)
            for (int column = 0; column < 4; ++column) {
                bool copied = 0 == CanvasMismatches(canvas, 2 + column * w, 2 + row * h, w, h, at);
                bool expected = row + column == 0 || (down && !column) || (right && !row);
                EXPECT_EQ(expected, copied) << "block " << column << "," << row << " " << tiles;
            }
    }
    canvas.fill(kPaper);
    RECT doubled = {1, 1, 1 + 2 * w, 1 + 2 * h};
    EXPECT_NE(0, Kx1DrawBitmapRes(canvas.dc(), module, L"btaob", &doubled, 1, nullptr, nullptr,
                                  nullptr, 0, 0, 0));
    EXPECT_EQ(0, CanvasMismatches(canvas, 1, 1, 2 * w, 2 * h,
                                  [&](int x, int y) { return at(x / 2, y / 2); }));
    EXPECT_EQ(kPaper, canvas.pixel(0, 0));
    EXPECT_EQ(0, Kx1DrawBitmapRes(canvas.dc(), module, L"nosuchbitmap", &rect, 0, nullptr,
                                  nullptr, nullptr, 1, 1, 0));
}

}  // namespace
