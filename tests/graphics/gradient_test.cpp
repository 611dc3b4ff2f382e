// Gradient fills and the button face, rendered into 32-bit canvases. The expected pictures are
// drawn with the system calls directly from vertices worked out by hand, so a wrong colour,
// position or mode shows as a pixel difference.
#include "kvtest.h"
#include "kvkit_draw.h"

namespace {

const int kSize = 100;

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

// Number of pixels in which the two canvases differ.
int differences(const kvtest::Canvas& a, const kvtest::Canvas& b) {
    int count = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) count += a.pixel(x, y) != b.pixel(x, y);
    return count;
}

class Gradient : public kvtest::KvTest {
protected:
    kvtest::Canvas drawn{kSize, kSize, RGB(1, 2, 3)};
    kvtest::Canvas expected{kSize, kSize, RGB(1, 2, 3)};
    RECT whole{0, 0, kSize, kSize};
};

TEST_F(Gradient, AutoEndAddsFiftyPerChannelAndWraps) {
    EXPECT_EQ(1, Kx1GradientFill(drawn.dc(), RGB(220, 100, 10), RGB(9, 9, 9), 1, 0, &whole));
    referenceLinear(expected.dc(), whole, RGB(220, 100, 10), RGB(14, 150, 60), false);
    EXPECT_EQ(0, differences(drawn, expected));
    EXPECT_EQ(RGB(220, 100, 10), drawn.pixel(0, 50));
    EXPECT_NE(drawn.pixel(0, 50), drawn.pixel(99, 50));
    EXPECT_EQ(drawn.pixel(10, 0), drawn.pixel(10, 99)) << "horizontal gradient varies by column";
}

TEST_F(Gradient, GivenEndColourAndVerticalMode) {
    RECT band = {10, 20, 60, 90};
    Kx1GradientFill(drawn.dc(), RGB(0, 0, 0), RGB(200, 100, 50), 0, 1, &band);
    referenceLinear(expected.dc(), band, RGB(0, 0, 0), RGB(200, 100, 50), true);
    EXPECT_EQ(0, differences(drawn, expected));
    EXPECT_EQ(RGB(1, 2, 3), drawn.pixel(60, 50)) << "drawn outside the rectangle";
}

TEST_F(Gradient, HighlightAtHundredPercentIsOnePlainGradient) {
    Kx1GradientFill_AsHighlight(drawn.dc(), RGB(40, 80, 120), RGB(200, 220, 240), 0, 1, &whole,
                                100.0, 50.0);
    referenceLinear(expected.dc(), whole, RGB(40, 80, 120), RGB(200, 220, 240), true);
    EXPECT_EQ(0, differences(drawn, expected));
}

TEST_F(Gradient, HighlightKneeUsesTheRedChannelForAllChannels) {
    // k = ceil(100 x 30 / 100) = 30; knee = (end_c - 40) / 2 + from_c = (120, 170, 220).
    EXPECT_EQ(1, Kx1GradientFill_AsHighlight(drawn.dc(), RGB(40, 80, 120), RGB(200, 220, 240), 0,
                                             1, &whole, 30.0, 50.0));
    referenceLinear(expected.dc(), {0, 0, kSize, 30}, RGB(40, 80, 120), RGB(120, 170, 220), true);
    referenceLinear(expected.dc(), {0, 30, kSize, kSize}, RGB(120, 170, 220), RGB(200, 220, 240),
                    true);
    EXPECT_EQ(0, differences(drawn, expected));
    EXPECT_EQ(RGB(120, 170, 220), drawn.pixel(50, 30));
}

TEST_F(Gradient, HighlightKneeChannelsWrapToEightBits) {
    // Green and blue: floor((100 - 200) / 4 + 10) = -15, kept as 241. Horizontal, k = 23.
    Kx1GradientFill_AsHighlight(drawn.dc(), RGB(200, 10, 10), RGB(100, 100, 100), 0, 0, &whole,
                                22.5, 25.0);
    referenceLinear(expected.dc(), {0, 0, 23, kSize}, RGB(200, 10, 10), RGB(175, 241, 241), false);
    referenceLinear(expected.dc(), {23, 0, kSize, kSize}, RGB(175, 241, 241), RGB(100, 100, 100),
                    false);
    EXPECT_EQ(0, differences(drawn, expected));
}

TEST_F(Gradient, ReversedHighlightPutsTheFirstPartAtTheFarEdge) {
    // autoEnd: end = (90, 130, 170); knee = (end_c - 40) / 2.5 + from_c = (60, 116, 172).
    Kx1GradientFill_AsHighlightEx(drawn.dc(), RGB(40, 80, 120), 0, 1, 1, &whole, 30.0, 40.0, true);
    referenceLinear(expected.dc(), {0, 70, kSize, kSize}, RGB(60, 116, 172), RGB(40, 80, 120), true);
    referenceLinear(expected.dc(), {0, 0, kSize, 70}, RGB(90, 130, 170), RGB(60, 116, 172), true);
    EXPECT_EQ(0, differences(drawn, expected));
}

TEST_F(Gradient, ReversedHighlightCoveringEverythingSwapsTheColours) {
    // 99.5 % of 100 rounds up to the whole extent: one gradient from end to from, whose own
    // autoEnd then adds 50 to the end colour once more.
    Kx1GradientFill_AsHighlightEx(drawn.dc(), RGB(10, 20, 30), 0, 1, 1, &whole, 99.5, 40.0, true);
    referenceLinear(expected.dc(), whole, RGB(60, 70, 80), RGB(110, 120, 130), true);
    EXPECT_EQ(0, differences(drawn, expected));
}

TEST_F(Gradient, FourCornersShareTheRisingDiagonal) {
    RECT rect = {5, 5, 95, 85};
    EXPECT_NE(0, Kx1GradientFillBiDirectional(drawn.dc(), &rect, RGB(255, 0, 0), RGB(0, 255, 0),
                                              RGB(0, 0, 255), RGB(255, 255, 0), 0));
    referenceCorners(expected.dc(), rect, RGB(255, 0, 0), RGB(0, 255, 0), RGB(0, 0, 255),
                     RGB(255, 255, 0));
    EXPECT_EQ(0, differences(drawn, expected));
    EXPECT_EQ(0, Kx1GradientFillBiDirectionalEx(drawn.dc(), nullptr, 4, nullptr, 4, 0));
}

TEST_F(Gradient, DiagonalUsesRootOfTheSumOfTheSides) {
    // 50 x 50: n = floor(sqrt(100)) = 10, h = 5; middle = first + (second - first) x 5 / 10,
    // truncated towards zero (green: 200 + (-495 / 10) = 151).
    RECT rect = {0, 0, 50, 50};
    COLORREF first = RGB(10, 200, 0), second = RGB(255, 101, 51), middle = RGB(132, 151, 25);
    EXPECT_NE(0, Kx1GradientFillDiagonal(drawn.dc(), &rect, first, second, 0));
    referenceCorners(expected.dc(), rect, middle, first, middle, second);
    EXPECT_EQ(0, differences(drawn, expected));

    RECT rising = {50, 0, 100, 50};
    Kx1GradientFillDiagonal(drawn.dc(), &rising, first, second, 1);
    referenceCorners(expected.dc(), rising, first, middle, second, middle);
    EXPECT_EQ(0, differences(drawn, expected));

    // 30 x 20: n = floor(sqrt(50)) = 7, h = 3; middle = 0 + 200 x 3 / 7 = 85 (truncated).
    RECT odd = {0, 60, 30, 80};
    Kx1GradientFillDiagonal(drawn.dc(), &odd, RGB(0, 0, 0), RGB(200, 200, 200), 0);
    referenceCorners(expected.dc(), odd, RGB(85, 85, 85), RGB(0, 0, 0), RGB(85, 85, 85),
                     RGB(200, 200, 200));
    EXPECT_EQ(0, differences(drawn, expected));

    RECT empty = {10, 10, 10, 10};
    EXPECT_EQ(0, Kx1GradientFillDiagonal(drawn.dc(), &empty, first, second, 0));
}

TEST_F(Gradient, ButtonFaceIsRaisedForStatesZeroAndTwo) {
    RECT rect = {10, 10, 60, 40};
    for (int style = 0; style <= 1; ++style)
        for (unsigned char state : {0, 1, 2, 3, 255}) {
            drawn.fill(RGB(1, 2, 3));
            expected.fill(RGB(1, 2, 3));
            Kx1DrawBtnHg(drawn.dc(), rect, state, style);
            RECT face = rect;
            FillRect(expected.dc(), &face, GetSysColorBrush(COLOR_BTNFACE));
            DrawEdge(expected.dc(), &face, state == 0 || state == 2 ? EDGE_RAISED : EDGE_SUNKEN,
                     BF_RECT);
            EXPECT_EQ(0, differences(drawn, expected)) << "state " << int(state) << " style " << style;
            EXPECT_EQ(GetSysColor(COLOR_BTNFACE), drawn.pixel(30, 25));
        }
    // The two looks really differ at the top-left edge.
    Kx1DrawBtnHg(drawn.dc(), rect, 0, 0);
    Kx1DrawBtnHg(expected.dc(), rect, 1, 0);
    EXPECT_NE(drawn.pixel(10, 10), expected.pixel(10, 10));
}

}  // namespace
namespace {
TEST_F(Gradient, HugePercentIsOnePlainGradient) {
    Kx1GradientFill_AsHighlight(drawn.dc(), RGB(40, 80, 120), RGB(200, 220, 240), 0, 1, &whole,
                                1e10, 50.0);
    referenceLinear(expected.dc(), whole, RGB(40, 80, 120), RGB(200, 220, 240), true);
    EXPECT_EQ(0, differences(drawn, expected));
}
}
