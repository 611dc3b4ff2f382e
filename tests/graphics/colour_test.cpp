// Colour arithmetic: hand-worked values for edge cases and ordinary colours, and a wide sample
// of colours against a re-computation written out here from the arithmetic rules.
#include "kvtest.h"
#include "kvkit_colour.h"
#include <algorithm>
#include <climits>

namespace {

struct Hsb {
    int hue, saturation, brightness;
};

unsigned long pack(Hsb value) {
    return value.hue | value.saturation << 8 | value.brightness << 16;
}

unsigned long toHsb(COLORREF colour) {
    unsigned long rgb = colour, hsb = 0xDEADBEEF;
    EXPECT_EQ(0, RGBToHSB(&rgb, &hsb));
    return hsb;
}

// The conversion rules written out independently of the library: a negative hue ends as
// hue + 16 cut to a byte (the 16-bit wrap minus 240), so hues from -31 to -17 land above 240.
unsigned long referenceHsb(int r, int g, int b) {
    int hi = std::max(r, std::max(g, b)), lo = std::min(r, std::min(g, b));
    int l = ((hi + lo) * 240 + 255) / 510;
    if (hi == lo) return static_cast<unsigned long>(l) << 16;
    int d = hi - lo;
    int s = l <= 120 ? (d * 240 + (hi + lo) / 2) / (hi + lo)
                     : (d * 240 + (510 - hi - lo) / 2) / (510 - hi - lo);
    auto dist = [&](int c) { return ((hi - c) * 40 + d / 2) / d; };
    int h = r == hi ? dist(b) - dist(g) : g == hi ? 80 + dist(r) - dist(b) : 160 + dist(g) - dist(r);
    if (h < 0) h = (h + 16) & 0xFF;
    return h | s << 8 | static_cast<unsigned long>(l) << 16;
}

COLORREF referenceRgb(int h, int s, int l) {
    if (s == 0) {
        int grey = l * 255 / 240;
        return RGB(grey, grey, grey);
    }
    int m2 = l <= 120 ? (l * (240 + s) + 120) / 240 : l + s - (l * s + 120) / 240;
    int m1 = 2 * l - m2;
    auto level = [&](int x) {
        int v = x < 40 ? m1 + ((m2 - m1) * x + 20) / 40
                : x < 120 ? m2
                : x < 160 ? m1 + ((m2 - m1) * (160 - x) + 20) / 40
                          : m1;
        return (v * 255 + 120) / 240;
    };
    int redHue = h >= 161 ? h + 80 - 240 : h + 80;
    int blueHue = h >= 80 ? h - 80 : 160;  // below 80 the wrapped value is far above 160
    return RGB(level(redHue), level(h), level(blueHue));
}

TEST(ColourHsb, EdgeColoursConvertAsWorkedOut) {
    EXPECT_EQ(pack({0, 240, 120}), toHsb(RGB(255, 0, 0)));
    EXPECT_EQ(pack({0, 0, 240}), toHsb(RGB(255, 255, 255)));
    EXPECT_EQ(pack({0, 0, 0}), toHsb(RGB(0, 0, 0)));
    EXPECT_EQ(pack({0, 0, 120}), toHsb(RGB(128, 128, 128)));
    // Negative hues: -1, -2 and -5 are stored as 15, 14 and 11.
    EXPECT_EQ(pack({15, 240, 120}), toHsb(RGB(255, 0, 5)));
    EXPECT_EQ(pack({14, 240, 120}), toHsb(RGB(255, 0, 10)));
    EXPECT_EQ(pack({11, 240, 120}), toHsb(RGB(255, 0, 30)));
    // -27 wraps past zero to 245, which HSBToRGB then refuses.
    EXPECT_EQ(pack({245, 240, 1}), toHsb(RGB(3, 0, 2)));
    // Ordinary colours, worked out step by step.
    EXPECT_EQ(pack({80, 240, 60}), toHsb(RGB(0, 128, 0)));
    EXPECT_EQ(pack({140, 114, 141}), toHsb(RGB(100, 150, 200)));
    EXPECT_EQ(pack({160, 240, 120}), toHsb(RGB(0, 0, 255)));
    // The top byte of the colour is ignored.
    EXPECT_EQ(pack({140, 114, 141}), toHsb(0xFF000000 | RGB(100, 150, 200)));
    unsigned long value = 0;
    EXPECT_EQ(1, RGBToHSB(nullptr, &value));
    EXPECT_EQ(1, RGBToHSB(&value, nullptr));
}

TEST(ColourHsb, HsbToRgbRefusesOutOfRangeAndNoHueGreys) {
    unsigned long rgb = 0x12345678;
    for (unsigned long bad : {pack({160, 0, 100}), pack({241, 10, 10}), pack({10, 241, 10}),
                              pack({10, 10, 241})}) {
        EXPECT_EQ(1, HSBToRGB(&bad, &rgb)) << std::hex << bad;
        EXPECT_EQ(0x12345678u, rgb) << "output written on failure";
    }
    unsigned long white = pack({0, 0, 240}), midGrey = pack({0, 0, 120});
    EXPECT_EQ(0, HSBToRGB(&white, &rgb));
    EXPECT_EQ(RGB(255, 255, 255), rgb);
    EXPECT_EQ(0, HSBToRGB(&midGrey, &rgb));
    EXPECT_EQ(RGB(127, 127, 127), rgb);
    unsigned long blueish = pack({140, 114, 141}), reddish = pack({11, 240, 120});
    EXPECT_EQ(0, HSBToRGB(&blueish, &rgb));
    EXPECT_EQ(RGB(100, 150, 200), rgb);
    EXPECT_EQ(0, HSBToRGB(&reddish, &rgb));
    EXPECT_EQ(RGB(255, 70, 0), rgb);
    EXPECT_EQ(1, HSBToRGB(nullptr, &rgb));
    EXPECT_EQ(1, HSBToRGB(&white, nullptr));
}

TEST(ColourHsb, WideSampleMatchesIndependentRecomputation) {
    int mismatches = 0;
    for (int r = 0; r < 256; r += 3)
        for (int g = 0; g < 256; g += 5)
            for (int b = 0; b < 256; b += 2) {
                unsigned long rgb = RGB(r, g, b), hsb = 0, back = 0;
                ASSERT_EQ(0, RGBToHSB(&rgb, &hsb));
                if (hsb != referenceHsb(r, g, b) && ++mismatches < 10)
                    ADD_FAILURE() << "RGBToHSB " << r << "," << g << "," << b;
                if ((hsb & 0xFF) > 240) {
                    // A wrapped hue above 240 cannot be converted back.
                    EXPECT_EQ(1, HSBToRGB(&hsb, &back));
                    continue;
                }
                ASSERT_EQ(0, HSBToRGB(&hsb, &back));
                if (back != referenceRgb(hsb & 0xFF, (hsb >> 8) & 0xFF, hsb >> 16) &&
                    ++mismatches < 10)
                    ADD_FAILURE() << "round trip " << r << "," << g << "," << b;
            }
    EXPECT_EQ(0, mismatches);
}

TEST(ColourHsb, EveryHueAndSaturationConvertsBackAsRecomputed) {
    int mismatches = 0;
    for (int h = 0; h <= 240; ++h)
        for (int s = 0; s <= 240; s += 4)
            for (int l = 0; l <= 240; l += 3) {
                if (s == 0 && h == 160) continue;
                unsigned long hsb = pack({h, s, l}), rgb = 0;
                ASSERT_EQ(0, HSBToRGB(&hsb, &rgb));
                if (rgb != referenceRgb(h, s, l) && ++mismatches < 10)
                    ADD_FAILURE() << "HSBToRGB " << h << "," << s << "," << l;
            }
    EXPECT_EQ(0, mismatches);
}

TEST(ColourBrightness, ClampsAtBothEndsAndKeepsHue) {
    for (COLORREF colour : {RGB(255, 0, 0), RGB(12, 200, 99), RGB(128, 128, 128)}) {
        EXPECT_EQ(RGB(255, 255, 255), AdjustColorBrightness(colour, 300));
        EXPECT_EQ(RGB(0, 0, 0), AdjustColorBrightness(colour, -300));
    }
    EXPECT_EQ(RGB(131, 171, 211), AdjustColorBrightness(RGB(100, 150, 200), 20));
    EXPECT_EQ(RGB(255, 255, 255), AdjustColorBrightness(RGB(100, 150, 200), INT_MAX));
    EXPECT_EQ(RGB(0, 0, 0), AdjustColorBrightness(RGB(100, 150, 200), INT_MIN));
    EXPECT_EQ(RGB(100, 150, 200), AdjustColorBrightness(0x7F000000 | RGB(100, 150, 200), 0));
    // A negative hue is stored shifted, so even a zero change moves the colour.
    EXPECT_EQ(RGB(255, 70, 0), AdjustColorBrightness(RGB(255, 0, 30), 0));
    // A hue wrapped above 240 cannot be converted back: the colour comes back unchanged.
    EXPECT_EQ(RGB(3, 0, 2), AdjustColorBrightness(RGB(3, 0, 2), 100));
}

TEST(ColourBlend, TruncatesInDoublePrecisionAndClampsTheFraction) {
    // (210 - 0) x 0.7 is exactly 147.0 in IEEE double; extended precision would give 146.
    EXPECT_EQ(RGB(74, 152, 147), BlendColors(RGB(0, 255, 0), RGB(107, 108, 210), 0.7));
    EXPECT_EQ(RGB(127, 0, 1), BlendColors(RGB(0, 0, 0), RGB(255, 1, 3), 0.5));
    EXPECT_EQ(RGB(127, 127, 127), BlendColors(RGB(255, 255, 255), RGB(0, 0, 0), 0.5));
    COLORREF a = 0x01000000 | RGB(10, 20, 30), b = 0x02000000 | RGB(200, 100, 0);
    EXPECT_EQ(BlendColors(a, b, 1.0), BlendColors(a, b, 7.0));
    EXPECT_EQ(RGB(200, 100, 0), BlendColors(a, b, 1.0));
    EXPECT_EQ(RGB(10, 20, 30), BlendColors(a, b, 0.0));
    EXPECT_EQ(RGB(10, 20, 30), BlendColors(a, b, -3.0));
}

TEST(ColourGrey, UsesTheMeanOfLargestAndSmallestChannel) {
    EXPECT_EQ(RGB(127, 127, 127), GreyscaleCOLORREF(RGB(255, 0, 0)));
    EXPECT_EQ(RGB(105, 105, 105), GreyscaleCOLORREF(RGB(10, 200, 31)));
    EXPECT_EQ(RGB(255, 255, 255), GreyscaleCOLORREF(0xFF000000 | RGB(255, 255, 255)));
    EXPECT_EQ(RGB(0, 0, 0), GreyscaleCOLORREF(RGB(0, 0, 0)));
}

}  // namespace
