// Gradient fills, the button face, and transparent, tiled and resource bitmaps, checked pixel by
// pixel in 32-bit canvases. Expected gradients are drawn with the system calls from vertices
// worked out by hand, so a wrong colour, position or mode shows as a pixel difference.
#include "kvtest.h"
#include "kvkit_draw.h"
#include "pictures.h"

using namespace pictures;

namespace {

TRIVERTEX vertex(LONG x, LONG y, COLORREF c) {
    return {x, y, static_cast<COLOR16>(GetRValue(c) << 8), static_cast<COLOR16>(GetGValue(c) << 8),
            static_cast<COLOR16>(GetBValue(c) << 8), 0};
}

void referenceLinear(HDC dc, RECT rect, COLORREF from, COLORREF to, bool vertical) {
    TRIVERTEX v[2] = {vertex(rect.left, rect.top, from), vertex(rect.right, rect.bottom, to)};
    GRADIENT_RECT r = {0, 1};
    GradientFill(dc, v, 2, &r, 1, vertical ? GRADIENT_FILL_RECT_V : GRADIENT_FILL_RECT_H);
}

void referenceCorners(HDC dc, RECT rect, COLORREF bl, COLORREF tl, COLORREF tr, COLORREF br) {
    TRIVERTEX v[4] = {vertex(rect.left, rect.bottom, bl), vertex(rect.left, rect.top, tl),
                      vertex(rect.right, rect.top, tr), vertex(rect.right, rect.bottom, br)};
    GRADIENT_TRIANGLE t[2] = {{0, 1, 2}, {0, 2, 3}};
    GradientFill(dc, v, 4, t, 2, GRADIENT_FILL_TRIANGLE);
}

class Gradient : public kvtest::KvTest {
protected:
    int differences() const {
        return CanvasMismatches(drawn, 0, 0, 100, 100,
                                          [&](int x, int y) { return expected.pixel(x, y); });
    }
    kvtest::Canvas drawn{100, 100, RGB(1, 2, 3)};
    kvtest::Canvas expected{100, 100, RGB(1, 2, 3)};
    RECT whole{0, 0, 100, 100};
};

TEST_F(Gradient, LinearAndHighlightWithAKnee) {
    const COLORREF from = RGB(40, 80, 120), to = RGB(200, 220, 240);
    struct Part { RECT rect; COLORREF from, to; };
    struct {
        COLORREF from, to; int autoEnd, vertical; double percent, strength; bool reverse;
        Part first, rest;  // rest with an empty rectangle when one plain gradient is expected
    } cases[] = {
        // Knee after ceil(30) pixels, (end_c - from_red) / 2 + from_c for every channel.
        {from, to, 0, 1, 30.0, 50.0, false,
         {{0, 0, 100, 30}, from, RGB(120, 170, 220)}, {{0, 30, 100, 100}, RGB(120, 170, 220), to}},
        // Horizontal, k = ceil(22.5) = 23; green and blue floor(-100 / 4 + 10) = -15 -> 241.
        {RGB(200, 10, 10), RGB(100, 100, 100), 0, 0, 22.5, 25.0, false,
         {{0, 0, 23, 100}, RGB(200, 10, 10), RGB(175, 241, 241)},
         {{23, 0, 100, 100}, RGB(175, 241, 241), RGB(100, 100, 100)}},
        // Reversed, autoEnd (90, 130, 170): the first part is the bottom 30 pixels.
        {from, 0, 1, 1, 30.0, 40.0, true,
         {{0, 70, 100, 100}, RGB(60, 116, 172), from},
         {{0, 0, 100, 70}, RGB(90, 130, 170), RGB(60, 116, 172)}},
        // Percent 0 and 100 give the plain gradient; autoEnd adds 50 per channel, red wraps.
        {RGB(220, 100, 10), 9, 1, 0, 0.0, 50.0, false,
         {whole, RGB(220, 100, 10), RGB(14, 150, 60)}, {}},
        {from, to, 0, 1, 100.0, 50.0, false, {whole, from, to}, {}},
        {from, to, 0, 1, 1e10, 50.0, false, {whole, from, to}, {}},
        // Reversed over everything: end to from, whose own autoEnd adds 50 once more.
        {RGB(10, 20, 30), 0, 1, 1, 99.5, 40.0, true,
         {whole, RGB(60, 70, 80), RGB(110, 120, 130)}, {}},
    };
    for (auto& c : cases) {
        drawn.fill(RGB(1, 2, 3));
        expected.fill(RGB(1, 2, 3));
        EXPECT_EQ(1, Kx1GradientFill_AsHighlightEx(drawn.dc(), c.from, c.to, c.autoEnd,
                                                   c.vertical, &whole, c.percent, c.strength,
                                                   c.reverse));
        referenceLinear(expected.dc(), c.first.rect, c.first.from, c.first.to, c.vertical);
        if (!IsRectEmpty(&c.rest.rect))
            referenceLinear(expected.dc(), c.rest.rect, c.rest.from, c.rest.to, c.vertical);
        EXPECT_EQ(0, differences()) << c.percent << "% " << c.strength;
    }
}

TEST_F(Gradient, CornersAndDiagonals) {
    RECT rect = {5, 60, 95, 95};
    EXPECT_NE(0, Kx1GradientFillBiDirectional(drawn.dc(), &rect, RGB(255, 0, 0), RGB(0, 255, 0),
                                              RGB(0, 0, 255), RGB(255, 255, 0), 0));
    referenceCorners(expected.dc(), rect, RGB(255, 0, 0), RGB(0, 255, 0), RGB(0, 0, 255),
                     RGB(255, 255, 0));
    // 50 x 50: n = floor(sqrt(100)) = 10, h = 5; green 200 + (-99 x 5 / 10) = 151.
    COLORREF first = RGB(10, 200, 0), second = RGB(255, 101, 51), middle = RGB(132, 151, 25);
    RECT falling = {0, 0, 50, 50}, rising = {50, 0, 100, 50};
    EXPECT_NE(0, Kx1GradientFillDiagonal(drawn.dc(), &falling, first, second, 0));
    referenceCorners(expected.dc(), falling, middle, first, middle, second);
    Kx1GradientFillDiagonal(drawn.dc(), &rising, first, second, 1);
    referenceCorners(expected.dc(), rising, first, middle, second, middle);
    EXPECT_EQ(0, differences());
    // 30 x 20: n = floor(sqrt(50)) = 7, h = 3; 200 x 3 / 7 = 85.
    RECT odd = {0, 0, 30, 20};
    Kx1GradientFillDiagonal(drawn.dc(), &odd, RGB(0, 0, 0), RGB(200, 200, 200), 0);
    referenceCorners(expected.dc(), odd, RGB(85, 85, 85), 0, RGB(85, 85, 85), RGB(200, 200, 200));
    EXPECT_EQ(0, differences());
    RECT empty = {10, 10, 10, 10};
    EXPECT_EQ(0, Kx1GradientFillDiagonal(drawn.dc(), &empty, first, second, 0));
}

TEST_F(Gradient, ButtonFaceIsRaisedForStatesZeroAndTwo) {
    RECT rect = {10, 10, 60, 40};
    for (int style = 0; style <= 1; ++style)
        for (unsigned char state : {0, 1, 2, 4}) {
            drawn.fill(RGB(1, 2, 3));
            expected.fill(RGB(1, 2, 3));
            Kx1DrawBtnHg(drawn.dc(), rect, state, style);
            FillRect(expected.dc(), &rect, GetSysColorBrush(COLOR_BTNFACE));
            UINT edge = state == 0 || state == 2 ? EDGE_RAISED : EDGE_SUNKEN;
            DrawEdge(expected.dc(), &rect, edge, BF_RECT);
            EXPECT_EQ(0, differences()) << "state " << int(state) << " style " << style;
        }
}

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

// Printing goes through the base library's DIB conversion: stretched over the rectangle, and with
// the transparent variant the key colour printed white.
TEST_F(Transparent, PrintsStretchedAndWithTransparentPixelsWhite) {
    RECT left = {0, 0, 12, 24}, right = {12, 0, 24, 24};
    EXPECT_EQ(1, Kx1PrintBm(canvas.dc(), spot, &left, 0, 0, 0));
    EXPECT_EQ(1, Kx1PrintBmTransp(canvas.dc(), spot, &right, 0, 0, 0));
    // Centres of uniform areas only: the printing stretch may smooth edges.
    EXPECT_EQ(RGB(0, 255, 0), canvas.pixel(0, 1));
    EXPECT_EQ(kRed, canvas.pixel(7, 13));
    EXPECT_EQ(kWhite, canvas.pixel(12, 1));
    EXPECT_EQ(kRed, canvas.pixel(19, 13));
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
