// Shrinking by stretch or interpolation, and enlarging the canvas around a picture.
#include "kvkit_resample.h"
#include "pictures.h"

using namespace resample_test;
using kvtest::BitmapPixel;
using kvtest::BitmapPixels;
using kvtest::IsGdiObject;
using kvtest::MakeBitmap;

namespace {

class ShrinkTest : public kvtest::KvTest {};

// Red and green grow by 2 per column and row, so a stretch (which only picks source pixels)
// leaves every red and green value even, while interpolation produces odd values in between.
HBITMAP gradient(int width, int height) {
    return MakeBitmap(width, height, [](int x, int y) { return RGB(x * 2, y * 2, 128); });
}

bool hasOddValues(HBITMAP bitmap) {
    for (COLORREF c : BitmapPixels(bitmap))
        if ((GetRValue(c) | GetGValue(c)) & 1) return true;
    return false;
}

void expectSize(HBITMAP bitmap, int width, int height) {
    SIZE size = BitmapSize(bitmap);
    EXPECT_EQ(width, size.cx);
    EXPECT_EQ(height, size.cy);
}

}  // namespace

TEST_F(ShrinkTest, ShrinkStretchesNearTheOriginalSizeAndInterpolatesFurtherAway) {
    struct Case {
        int width, height;
        bool interpolates;
    } cases[] = {{80, 80, false}, {40, 40, true}, {100, 80, true}, {60, 140, false}};
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.width << "x" << c.height);
        HBITMAP source = gradient(100, 100);
        OwnedBitmap result(Kx1ShrinkBitmap(source, c.width, c.height));
        ASSERT_NE(source, result.get());
        EXPECT_FALSE(IsGdiObject(source)) << "the source is deleted";
        // Without enlargement the height stays at most the source's.
        expectSize(result, c.width, c.height > 100 ? 100 : c.height);
        EXPECT_EQ(c.interpolates, hasOddValues(result));
    }
}

TEST_F(ShrinkTest, ShrinkReturnsTheSourceWhenThereIsNothingToDo) {
    OwnedBitmap source(gradient(100, 100));
    EXPECT_EQ(source.get(), Kx1ShrinkBitmap(source, 120, 120));
    EXPECT_EQ(source.get(), Kx1ShrinkBitmap(source, 100, 100));
    EXPECT_EQ(source.get(), Kx1ShrinkBitmapEx(source, 100, 100, 1));
    // Sizes nothing can be made of fall back to the source too.
    EXPECT_EQ(source.get(), Kx1ShrinkBitmap(source, 0, 50));
    EXPECT_TRUE(IsGdiObject(source));
    EXPECT_EQ(nullptr, Kx1ShrinkBitmap(nullptr, 10, 10));
}

TEST_F(ShrinkTest, ShrinkDeletesTheSourceOnlyWhenAsked) {
    OwnedBitmap kept(gradient(100, 100));
    OwnedBitmap result(Kx1ShrinkBitmapEx2(kept, 50, 50, 0, 0));
    ASSERT_NE(kept.get(), result.get());
    EXPECT_TRUE(IsGdiObject(kept));

    HBITMAP deleted = gradient(100, 100);
    result.reset(Kx1ShrinkBitmapEx(deleted, 50, 50, 0));
    ASSERT_NE(deleted, result.get());
    EXPECT_FALSE(IsGdiObject(deleted));
}

TEST_F(ShrinkTest, ShrinkEnlargesOnlyWhenAllowed) {
    HBITMAP source = gradient(100, 100);
    OwnedBitmap stretched(Kx1ShrinkBitmapEx(source, 120, 120, 1));
    expectSize(stretched, 120, 120);
    EXPECT_FALSE(hasOddValues(stretched));

    source = gradient(100, 100);
    OwnedBitmap interpolated(Kx1ShrinkBitmapEx(source, 200, 150, 1));
    expectSize(interpolated, 200, 150);
    EXPECT_TRUE(hasOddValues(interpolated));

    // Without enlargement the factors still decide, but the wider side keeps its size.
    source = gradient(100, 100);
    OwnedBitmap limited(Kx1ShrinkBitmap(source, 200, 50));
    expectSize(limited, 100, 50);
}

// --- canvas enlargement -----------------------------------------------------------------------

namespace {

const COLORREF kBackground = RGB(0, 128, 255);
const COLORREF kMarker = RGB(255, 0, 0);
const COLORREF kPicture = RGB(20, 20, 20);

// A 10 x 10 picture on the background colour, with one marker pixel at (1, 1).
HBITMAP markedPicture(int width = 10, int height = 10) {
    return MakeBitmap(width, height, [](int x, int y) {
        if (x == 0 && y == 0) return kBackground;
        return x == 1 && y == 1 ? kMarker : kPicture;
    });
}

POINT markerPosition(HBITMAP bitmap) {
    int width = 0;
    std::vector<COLORREF> pixels = BitmapPixels(bitmap, &width);
    for (size_t i = 0; i < pixels.size(); ++i)
        if (pixels[i] == kMarker) return {LONG(i % width) - 1, LONG(i / width) - 1};
    return {-100, -100};
}

}  // namespace

TEST_F(ShrinkTest, CanvasPlacesThePictureByFlags) {
    struct Case {
        int flags, left, top;
    } cases[] = {{0x00, 0, 0}, {0x02, 0, 4}, {0x04, 0, 2}, {0x06, 0, 4},  {0x10, 3, 0},
                 {0x20, 2, 0}, {0x30, 3, 0}, {0x24, 2, 2}, {0x112, 3, 4}};
    OwnedBitmap source(markedPicture());
    for (const Case& c : cases) {
        SCOPED_TRACE(c.flags);
        int unchanged = -1;
        COLORREF background = 0;
        OwnedBitmap canvas(StretchBimapBackground(source, 13, 14, c.flags, &background, &unchanged));
        ASSERT_NE(source.get(), canvas.get());
        EXPECT_EQ(0, unchanged);
        EXPECT_EQ(kBackground, background);
        expectSize(canvas, 13, 14);
        POINT at = markerPosition(canvas);
        EXPECT_EQ(c.left, at.x);
        EXPECT_EQ(c.top, at.y);
        EXPECT_EQ(kBackground, BitmapPixel(canvas, c.left ? 0 : 12, c.top ? 0 : 13));
    }
    // The odd pixel goes above and to the left: 10 x 10 on 13 x 13 centred sits at (2, 2).
    OwnedBitmap centred(StretchBitmapBackground(source, 13, 13, 0x24, nullptr, nullptr));
    EXPECT_EQ(2, markerPosition(centred).x);
    EXPECT_EQ(2, markerPosition(centred).y);
}

// A picture taller than the canvas: centring clamps the top at 0, bottom alignment cuts it.
TEST_F(ShrinkTest, CanvasNarrowerOnOneSide) {
    OwnedBitmap source(markedPicture(10, 20));
    OwnedBitmap centred(StretchBimapBackground(source, 14, 10, 0x24, nullptr, nullptr));
    EXPECT_EQ(2, markerPosition(centred).x);
    EXPECT_EQ(0, markerPosition(centred).y);
    OwnedBitmap bottom(StretchBimapBackground(source, 14, 10, 0x02, nullptr, nullptr));
    EXPECT_EQ(-100, markerPosition(bottom).y) << "the marker row lies above the canvas";
    EXPECT_EQ(kPicture, BitmapPixel(bottom, 0, 0));
}

TEST_F(ShrinkTest, CanvasTakesAGivenBackground) {
    OwnedBitmap source(markedPicture());
    COLORREF given = RGB(1, 2, 3);
    int unchanged = -1;
    OwnedBitmap canvas(StretchBimapBackground(source, 12, 12, 0x40, &given, &unchanged));
    EXPECT_EQ(0, unchanged);
    EXPECT_EQ(RGB(1, 2, 3), BitmapPixel(canvas, 11, 11));
    EXPECT_EQ(kBackground, BitmapPixel(canvas, 0, 0)) << "the picture's own corner is copied";

    EXPECT_EQ(source.get(), StretchBimapBackground(source, 12, 12, 0x40, nullptr, &unchanged));
    EXPECT_EQ(1, unchanged);
}

TEST_F(ShrinkTest, CanvasReturnsTheSourceWhenItIsLargeEnough) {
    OwnedBitmap source(markedPicture());
    int unchanged = -1;
    COLORREF background = 0;
    EXPECT_EQ(source.get(),
              StretchBimapBackground(source, 10, 8, 0x80, &background, &unchanged));
    EXPECT_EQ(1, unchanged);
    EXPECT_EQ(kBackground, background);
    EXPECT_TRUE(IsGdiObject(source));

    unchanged = -1;
    EXPECT_EQ(nullptr, StretchBimapBackground(nullptr, 20, 20, 0, nullptr, &unchanged));
    EXPECT_EQ(1, unchanged);
}

// The source is deleted when the low byte of the flags is 0x80 or more.
TEST_F(ShrinkTest, CanvasDeletesTheSourceWhenAsked) {
    HBITMAP source = markedPicture();
    OwnedBitmap kept(StretchBimapBackground(source, 12, 12, 0x100, nullptr, nullptr));
    EXPECT_TRUE(IsGdiObject(source));
    OwnedBitmap canvas(StretchBimapBackground(source, 12, 12, 0x1A4, nullptr, nullptr));
    ASSERT_NE(nullptr, canvas.get());
    EXPECT_FALSE(IsGdiObject(source));
}
