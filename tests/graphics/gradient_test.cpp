// Gradient fills and the button face. The expected pictures are drawn with the system calls from
// vertices worked out by hand, so a wrong colour, position or mode shows as a pixel difference.
#include "kvtest.h"
#include "kvkit_draw.h"
#include "pictures.h"

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
        return pictures::CanvasMismatches(drawn, 0, 0, 100, 100,
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
    Kx1DrawBtnHg(drawn.dc(), rect, 0, 0);
    Kx1DrawBtnHg(expected.dc(), rect, 1, 0);
    EXPECT_NE(0, differences()) << "raised and sunken look alike";
}

}  // namespace
