// Greyscale, level-adjusted, disabled and recoloured bitmaps, read back pixel by pixel.
#include "kvtest.h"
#include "kvkit_bitmap.h"
#include "pictures.h"

using namespace pictures;

namespace {

const COLORREF kTeal = RGB(0, 128, 128);  // background; its grey is 64
const COLORREF kMagenta = RGB(255, 0, 255);

COLORREF grey(int level) { return RGB(level, level, level); }

// Teal background with a few colours whose greys were worked out by hand.
COLORREF mixed(int x, int y) {
    if (x == 1 && y == 1) return RGB(255, 0, 0);      // 127
    if (x == 2 && y == 1) return RGB(10, 200, 31);    // 105
    if (x == 3 && y == 2) return kBlack;              // 0
    if (x == 4 && y == 3) return kWhite;              // 255
    if (x == 2 && y == 3) return RGB(100, 150, 200);  // 150
    return kTeal;
}
COLORREF mixedGrey(int x, int y) {
    COLORREF c = mixed(x, y);
    return c == RGB(255, 0, 0) ? grey(127) : c == RGB(10, 200, 31) ? grey(105)
         : c == kBlack ? grey(0) : c == kWhite ? grey(255) : c == kTeal ? grey(64) : grey(150);
}

class Greyscale : public kvtest::KvTest {
protected:
    void SetUp() override {
        KvTest::SetUp();
        source = kvtest::MakeBitmap(6, 5, mixed);
    }
    void TearDown() override {
        EXPECT_EQ(0, Mismatches(source, mixed)) << "source bitmap changed";
        EXPECT_TRUE(IsSelectable(source));
        DeleteObject(source);
        KvTest::TearDown();
    }
    HBITMAP source = nullptr;
};

TEST_F(Greyscale, DuplicateAndBackgroundColour) {
    EXPECT_EQ(kTeal, Kx1GetBmBkColor(source));
    HBITMAP copy = HBitmapDuplicate(source);
    ASSERT_NE(nullptr, copy);
    EXPECT_NE(source, copy);
    EXPECT_EQ(0, Mismatches(copy, mixed));
    DeleteObject(copy);
    EXPECT_EQ(nullptr, HBitmapDuplicate(nullptr));
}

TEST_F(Greyscale, EveryPixelOrAllButTheBackground) {
    HBITMAP all = CreateGreyscaleBitmap(source, 0);
    ASSERT_NE(nullptr, all);
    EXPECT_EQ(0, Mismatches(all, mixedGrey));
    HBITMAP kept = CreateGreyscaleBitmap(source, 1);
    ASSERT_NE(nullptr, kept);
    EXPECT_EQ(0, Mismatches(kept, [](int x, int y) {
                  return mixed(x, y) == kTeal ? kTeal : mixedGrey(x, y);
              }));
    DeleteObject(all);
    DeleteObject(kept);

    HBITMAP single = kvtest::MakeBitmap(1, 1, [](int, int) { return RGB(200, 10, 10); });
    HBITMAP singleGrey = CreateGreyscaleBitmap(single, 1);
    EXPECT_EQ(RGB(200, 10, 10), kvtest::BitmapPixel(singleGrey, 0, 0));
    DeleteObject(single);
    DeleteObject(singleGrey);
}

TEST_F(Greyscale, LevelsMapBlackAndWhiteAsWorkedOut) {
    const int levels[] = {0, 100, 128, 254, 255};
    HBITMAP ramp = kvtest::MakeBitmap(5, 1, [&](int x, int) { return grey(levels[x]); });
    struct Case {
        int white, black;
        int expected[5];
    } cases[] = {
        {255, 64, {64, 139, 160, 255, 255}},
        {128, 0, {0, 50, 64, 127, 128}},
        {200, 64, {50, 109, 125, 200, 200}},
        {0, 10, {0, 0, 0, 0, 0}},        // white level 0 still applies
        {0, 0, {0, 100, 128, 254, 255}},  // no adjustment
        {255, 300, {44, 27, 22, 0, 255}}, // kept to 8 bits
    };
    for (const Case& c : cases) {
        HBITMAP adjusted = CreateAdjustedGreyscaleBitmap(ramp, 0, c.white, c.black);
        ASSERT_NE(nullptr, adjusted);
        EXPECT_EQ(0, Mismatches(adjusted, [&](int x, int) { return grey(c.expected[x]); }))
            << "white " << c.white << " black " << c.black;
        DeleteObject(adjusted);
    }
    DeleteObject(ramp);

    // With keepBackground the background (pixel (0, 0)) is not adjusted.
    HBITMAP kept = CreateAdjustedGreyscaleBitmapEx(source, 1, 255, 64, nullptr);
    EXPECT_EQ(kTeal, kvtest::BitmapPixel(kept, 0, 0));
    EXPECT_EQ(grey(160), kvtest::BitmapPixel(kept, 1, 1));  // red: 127 -> 160
    DeleteObject(kept);
    EXPECT_EQ(nullptr, CreateAdjustedGreyscaleBitmapEx(nullptr, 0, 0, 0, nullptr));
}

// Inside the spot mask: black, red, black, blue-grey on the first row, then black and white.
COLORREF masked(int x, int y) {
    if (!InSpot(x, y)) return kMagenta;
    if (y == 2) return x == 3 ? RGB(255, 0, 0) : x == 5 ? RGB(100, 150, 200) : kBlack;
    return x == 2 ? kBlack : kWhite;
}

TEST_F(Greyscale, MaskGreysInsideAndBlackInheritsTheLastGrey) {
    HBITMAP picture = kvtest::MakeBitmap(8, 8, masked);
    HBITMAP mask = SpotMask();
    HBITMAP result = CreateAdjustedGreyscaleBitmapEx(picture, 0, 255, 64, &mask);
    ASSERT_NE(nullptr, result);
    // Levels 255/64: red 127 -> 160, (100, 150, 200) 150 -> 177, white stays 255.
    EXPECT_EQ(0, Mismatches(result, [](int x, int y) -> COLORREF {
                  if (!InSpot(x, y)) return kMagenta;  // copied, not greyed
                  if (y == 2) return x == 2 ? kBlack : x == 5 ? grey(177) : grey(160);
                  return x == 2 ? grey(y == 3 ? 177 : 255) : kWhite;
              }));
    EXPECT_EQ(0, Mismatches(picture, masked));
    EXPECT_TRUE(IsSelectable(mask));
    DeleteObject(result);
    DeleteObject(picture);
    DeleteObject(mask);
}

// Picture pixels of the disabled-look shape (6 x 6): a 2 x 2 block, one pixel in the last
// column and one in the last row; any colour but the background counts.
bool shape(int x, int y) {
    return (x >= 2 && x <= 3 && y >= 2 && y <= 3) || (x == 5 && y == 1) || (x == 4 && y == 5);
}

TEST_F(Greyscale, DisabledLookEmbossesTheOutline) {
    HBITMAP picture = kvtest::MakeBitmap(6, 6, [](int x, int y) {
        return shape(x, y) ? (x == 2 ? kRed : kBlue) : RGB(200, 200, 0);
    });
    COLORREF highlight = GetSysColor(COLOR_BTNHIGHLIGHT), shadow = GetSysColor(COLOR_BTNSHADOW);
    for (COLORREF face : {RGB(10, 20, 30), GetSysColor(COLOR_BTNFACE)}) {
        bool useColour = face == RGB(10, 20, 30);
        HBITMAP disabled = CreateDisabledBitmapHg(picture, useColour, RGB(10, 20, 30));
        ASSERT_NE(nullptr, disabled);
        // Shadow where a background pixel has the picture down-right of it; highlight where a
        // picture pixel has background there or lies on the last row or column.
        EXPECT_EQ(0, Mismatches(disabled, [&](int x, int y) {
                      bool inside = x < 5 && y < 5;
                      if (!shape(x, y) && inside && shape(x + 1, y + 1)) return shadow;
                      if (shape(x, y) && (!inside || !shape(x + 1, y + 1))) return highlight;
                      return face;
                  })) << "useColour " << useColour;
        DeleteObject(disabled);
    }
    EXPECT_TRUE(IsSelectable(picture));
    DeleteObject(picture);
    EXPECT_EQ(nullptr, CreateDisabledBitmapHg(nullptr, 0, 0));
}

TEST_F(Greyscale, NewBackgroundByKeyOrByMask) {
    HBITMAP spot = kvtest::MakeBitmap(8, 8, Spot);
    HBITMAP byKey = BitmapChangeBackgroundColor(spot, RGB(9, 9, 9), nullptr);
    ASSERT_NE(nullptr, byKey);
    EXPECT_EQ(0, Mismatches(byKey, [](int x, int y) {
                  return InSpot(x, y) ? Spot(x, y) : RGB(9, 9, 9);
              }));
    HBITMAP image = kvtest::MakeBitmap(8, 8, [](int x, int y) {
        return InSpot(x, y) ? Spot(x, y) : kBlack;
    });
    HBITMAP mask = SpotMask();
    HBITMAP byMask = BitmapChangeBackgroundColor(image, RGB(0, 99, 0), mask);
    ASSERT_NE(nullptr, byMask);
    EXPECT_EQ(0, Mismatches(byMask, [](int x, int y) {
                  return InSpot(x, y) ? Spot(x, y) : RGB(0, 99, 0);
              }));
    EXPECT_EQ(0, Mismatches(spot, Spot));
    EXPECT_TRUE(IsSelectable(spot));
    EXPECT_TRUE(IsSelectable(image));
    EXPECT_TRUE(IsSelectable(mask));
    for (HBITMAP b : {spot, byKey, image, mask, byMask}) DeleteObject(b);
}

}  // namespace
