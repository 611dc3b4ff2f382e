// Colour arithmetic: hand-worked values, and a wide sample against a re-computation written out
// here from the arithmetic rules.
#include "kvtest.h"
#include "kvkit_colour.h"
#include <algorithm>
#include <climits>

namespace {

const COLORREF kWhite = RGB(255, 255, 255);

unsigned long pack(int hue, int saturation, int brightness) {
    return hue | saturation << 8 | brightness << 16;
}

// The conversion rules written out independently of the library: a negative hue ends as
// hue + 16 cut to a byte (the 16-bit wrap minus 240).
unsigned long referenceHsb(int r, int g, int b) {
    int hi = std::max(r, std::max(g, b)), lo = std::min(r, std::min(g, b));
    int l = ((hi + lo) * 240 + 255) / 510;
    if (hi == lo) return pack(0, 0, l);
    int d = hi - lo;
    int s = l <= 120 ? (d * 240 + (hi + lo) / 2) / (hi + lo)
                     : (d * 240 + (510 - hi - lo) / 2) / (510 - hi - lo);
    auto dist = [&](int c) { return ((hi - c) * 40 + d / 2) / d; };
    int h = r == hi ? dist(b) - dist(g) : g == hi ? 80 + dist(r) - dist(b) : 160 + dist(g) - dist(r);
    return pack(h < 0 ? (h + 16) & 0xFF : h, s, l);
}

COLORREF referenceRgb(int h, int s, int l) {
    if (s == 0) return RGB(l * 255 / 240, l * 255 / 240, l * 255 / 240);
    int m2 = l <= 120 ? (l * (240 + s) + 120) / 240 : l + s - (l * s + 120) / 240;
    int m1 = 2 * l - m2;
    auto level = [&](int x) {
        int v = x < 40 ? m1 + ((m2 - m1) * x + 20) / 40 : x < 120 ? m2
              : x < 160 ? m1 + ((m2 - m1) * (160 - x) + 20) / 40 : m1;
        return (v * 255 + 120) / 240;
    };
    return RGB(level(h >= 161 ? h - 160 : h + 80), level(h), level(h >= 80 ? h - 80 : 160));
}

TEST(Colour, HsbConversionsAsWorkedOut) {
    struct { COLORREF rgb; unsigned long hsb; } toHsb[] = {
        {RGB(255, 0, 0), pack(0, 240, 120)},   {RGB(255, 255, 255), pack(0, 0, 240)},
        {RGB(0, 0, 0), pack(0, 0, 0)},         {RGB(128, 128, 128), pack(0, 0, 120)},
        {RGB(0, 128, 0), pack(80, 240, 60)},   {RGB(0, 0, 255), pack(160, 240, 120)},
        // Negative hues -1, -2, -5 and -27 (which wraps past zero).
        {RGB(255, 0, 5), pack(15, 240, 120)},  {RGB(255, 0, 10), pack(14, 240, 120)},
        {RGB(255, 0, 30), pack(11, 240, 120)}, {RGB(3, 0, 2), pack(245, 240, 1)},
        {0xFF000000 | RGB(100, 150, 200), pack(140, 114, 141)},  // top byte ignored
    };
    for (auto c : toHsb) {
        unsigned long rgb = c.rgb, hsb = 0;
        EXPECT_EQ(0, RGBToHSB(&rgb, &hsb));
        EXPECT_EQ(c.hsb, hsb) << std::hex << c.rgb;
    }
    const COLORREF kRefused = 0x1234;  // the output is then not written
    struct { unsigned long hsb; COLORREF rgb; } toRgb[] = {
        {pack(0, 0, 240), RGB(255, 255, 255)},     {pack(0, 0, 120), RGB(127, 127, 127)},
        {pack(140, 114, 141), RGB(100, 150, 200)}, {pack(11, 240, 120), RGB(255, 70, 0)},
        {pack(160, 0, 100), kRefused},  {pack(241, 10, 10), kRefused},
        {pack(10, 241, 10), kRefused},  {pack(10, 10, 241), kRefused},
    };
    for (auto c : toRgb) {
        unsigned long hsb = c.hsb, rgb = kRefused;
        EXPECT_EQ(c.rgb == kRefused, HSBToRGB(&hsb, &rgb)) << std::hex << c.hsb;
        EXPECT_EQ(c.rgb, rgb) << std::hex << c.hsb;
    }
    EXPECT_EQ(1, RGBToHSB(nullptr, &toHsb[0].hsb));
    EXPECT_EQ(1, HSBToRGB(&toHsb[0].hsb, nullptr));
}

TEST(Colour, WideSampleMatchesIndependentRecomputation) {
    int mismatches = 0;
    for (int r = 0; r < 256; r += 3)
        for (int g = 0; g < 256; g += 5)
            for (int b = 0; b < 256; b += 2) {
                unsigned long rgb = RGB(r, g, b), hsb = 0, back = 0;
                RGBToHSB(&rgb, &hsb);
                int h = hsb & 0xFF;
                COLORREF expected = h > 240 ? 0 : referenceRgb(h, (hsb >> 8) & 0xFF, hsb >> 16);
                bool refused = HSBToRGB(&hsb, &back) != 0;
                if ((hsb != referenceHsb(r, g, b) || refused != (h > 240) || back != expected) &&
                    ++mismatches < 10)
                    ADD_FAILURE() << "round trip of " << r << "," << g << "," << b;
            }
    EXPECT_EQ(0, mismatches);
}

TEST(Colour, BrightnessBlendAndGrey) {
    struct { COLORREF colour; int delta; COLORREF expected; } brightness[] = {
        {RGB(255, 0, 0), 300, kWhite},              {RGB(12, 200, 99), -300, 0},
        {RGB(100, 150, 200), INT_MAX, kWhite},      {RGB(100, 150, 200), INT_MIN, 0},
        {RGB(100, 150, 200), 20, RGB(131, 171, 211)},
        {RGB(255, 0, 30), 0, RGB(255, 70, 0)},  // the shifted negative hue moves the colour
        {RGB(3, 0, 2), 100, RGB(3, 0, 2)},      // hue 245 cannot convert back: unchanged
    };
    for (auto c : brightness)
        EXPECT_EQ(c.expected, AdjustColorBrightness(c.colour, c.delta)) << c.delta;
    // (210 - 0) x 0.7 is exactly 147.0 in IEEE double; extended precision would give 146.
    EXPECT_EQ(RGB(74, 152, 147), BlendColors(RGB(0, 255, 0), RGB(107, 108, 210), 0.7));
    EXPECT_EQ(RGB(127, 0, 1), BlendColors(0, RGB(255, 1, 3), 0.5));
    EXPECT_EQ(RGB(127, 127, 127), BlendColors(kWhite, 0, 0.5));
    EXPECT_EQ(RGB(200, 100, 0), BlendColors(0x01000000, 0x02000000 | RGB(200, 100, 0), 7.0));
    EXPECT_EQ(RGB(10, 20, 30), BlendColors(0x01000000 | RGB(10, 20, 30), kWhite, -3.0));
    EXPECT_EQ(RGB(127, 127, 127), GreyscaleCOLORREF(RGB(255, 0, 0)));
    EXPECT_EQ(RGB(105, 105, 105), GreyscaleCOLORREF(0xFF000000 | RGB(10, 200, 31)));
}

}  // namespace
