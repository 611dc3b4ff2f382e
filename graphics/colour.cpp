// Colour arithmetic on COLORREF values and packed hue/saturation/brightness values. Every step
// is integer arithmetic truncating towards zero, so that callers can compare and cache results.
#include "include/kvkit_colour.h"

namespace {

const int kComponentMax = 240;  // hue, saturation and brightness run 0..240
const int kComponentHalf = 120;
const int kHueSixth = 40;
const int kChannelMax = 255;
const int kNoHue = 160;

// Written by every GreyscaleCOLORREF call.
unsigned long g_lastGrey;

int byteOf(unsigned long value, int index) { return (value >> (8 * index)) & 0xFF; }

// Distance of a channel from the maximum, in sixths of the hue circle, rounded.
int hueDistance(int maximum, int channel, int range) {
    return ((maximum - channel) * kHueSixth + range / 2) / range;
}

// Channel level for hue position h between the two brightness bounds m1 and m2.
int levelAtHue(int m1, int m2, int h) {
    if (h < kHueSixth) return m1 + ((m2 - m1) * h + kHueSixth / 2) / kHueSixth;
    if (h < kComponentHalf) return m2;
    if (h < kNoHue) return m1 + ((m2 - m1) * (kNoHue - h) + kHueSixth / 2) / kHueSixth;
    return m1;
}

int levelToChannel(int level) { return (level * kChannelMax + kComponentHalf) / kComponentMax; }

}  // namespace

int KVKIT_CALL RGBToHSB(unsigned long* const rgb, unsigned long* hsb) {
    if (!rgb || !hsb) return 1;
    int red = byteOf(*rgb, 0), green = byteOf(*rgb, 1), blue = byteOf(*rgb, 2);
    int maximum = red > green ? red : green;
    if (blue > maximum) maximum = blue;
    int minimum = red < green ? red : green;
    if (blue < minimum) minimum = blue;
    int sum = maximum + minimum;
    int brightness = (sum * kComponentMax + kChannelMax) / (2 * kChannelMax);
    int saturation = 0;
    unsigned short hue = 0;
    if (maximum != minimum) {
        int range = maximum - minimum;
        if (brightness <= kComponentHalf)
            saturation = (range * kComponentMax + sum / 2) / sum;
        else
            saturation = (range * kComponentMax + (2 * kChannelMax - sum) / 2) /
                         (2 * kChannelMax - sum);
        int redDistance = hueDistance(maximum, red, range);
        int greenDistance = hueDistance(maximum, green, range);
        int blueDistance = hueDistance(maximum, blue, range);
        int signedHue;
        if (red == maximum)
            signedHue = blueDistance - greenDistance;
        else if (green == maximum)
            signedHue = 2 * kHueSixth + redDistance - blueDistance;
        else
            signedHue = 4 * kHueSixth + greenDistance - redDistance;
        // The hue is a 16-bit quantity: a negative one wraps to 65536 + h, loses 240 and keeps
        // only its low byte, which leaves h + 16.
        hue = static_cast<unsigned short>(signedHue);
        if (hue > kComponentMax) hue = static_cast<unsigned short>(hue - kComponentMax);
    }
    *hsb = (hue & 0xFF) | (saturation & 0xFF) << 8 | (brightness & 0xFF) << 16;
    return 0;
}

int KVKIT_CALL HSBToRGB(unsigned long* const hsb, unsigned long* rgb) {
    if (!hsb || !rgb) return 1;
    int hue = byteOf(*hsb, 0), saturation = byteOf(*hsb, 1), brightness = byteOf(*hsb, 2);
    if (hue > kComponentMax || saturation > kComponentMax || brightness > kComponentMax) return 1;
    int red, green, blue;
    if (saturation == 0) {
        if (hue == kNoHue) return 1;
        red = green = blue = brightness * kChannelMax / kComponentMax;
    } else {
        int m2 = brightness <= kComponentHalf
                     ? (brightness * (kComponentMax + saturation) + kComponentHalf) / kComponentMax
                     : brightness + saturation -
                           (brightness * saturation + kComponentHalf) / kComponentMax;
        int m1 = 2 * brightness - m2;
        int redHue = hue + 2 * kHueSixth;
        if (hue >= kNoHue + 1) redHue -= kComponentMax;
        unsigned short blueHue = static_cast<unsigned short>(hue - 2 * kHueSixth);
        if (blueHue > kComponentMax) blueHue = static_cast<unsigned short>(blueHue - kComponentMax);
        red = levelToChannel(levelAtHue(m1, m2, redHue));
        green = levelToChannel(levelAtHue(m1, m2, hue));
        blue = levelToChannel(levelAtHue(m1, m2, blueHue));
    }
    *rgb = (red & 0xFF) | (green & 0xFF) << 8 | (blue & 0xFF) << 16;
    return 0;
}

unsigned long KVKIT_CALL AdjustColorBrightness(unsigned long colour, int delta) {
    unsigned long hsb;
    if (RGBToHSB(&colour, &hsb)) return colour;
    int brightness = byteOf(hsb, 2);
    // Compared against the room left rather than by adding, so that a delta near INT_MAX does
    // not overflow.
    if (delta > kComponentMax - brightness) delta = kComponentMax - brightness;
    if (delta < -brightness) delta = -brightness;
    hsb = (hsb & 0xFFFF) | ((brightness + delta) & 0xFF) << 16;
    unsigned long result;
    if (HSBToRGB(&hsb, &result)) return colour;
    return result;
}

unsigned long KVKIT_CALL BlendColors(unsigned long from, unsigned long to, double fraction) {
    if (!(fraction >= 0.0)) fraction = 0.0;  // also catches NaN
    if (fraction > 1.0) fraction = 1.0;
    unsigned long result = 0;
    for (int channel = 0; channel < 3; ++channel) {
        int start = byteOf(from, channel);
        int end = byteOf(to, channel);
        int value = static_cast<int>(static_cast<double>(end - start) * fraction + start);
        result |= static_cast<unsigned long>(value & 0xFF) << (8 * channel);
    }
    return result;
}

unsigned long KVKIT_CALL GreyscaleCOLORREF(unsigned long colour) {
    int red = byteOf(colour, 0), green = byteOf(colour, 1), blue = byteOf(colour, 2);
    int maximum = red > green ? red : green;
    if (blue > maximum) maximum = blue;
    int minimum = red < green ? red : green;
    if (blue < minimum) minimum = blue;
    unsigned long grey = (maximum + minimum) / 2;
    g_lastGrey = grey;
    return grey | grey << 8 | grey << 16;
}
