// Copies, greyscale, level-adjusted, disabled and recoloured bitmaps, image-list and icon
// bitmaps, read back pixel by pixel.
#include "kvtest.h"
#include "kvkit_bitmap.h"
#include "pictures.h"

using namespace pictures;

namespace {

const COLORREF kTeal = RGB(0, 128, 128);  // background
COLORREF grey(int level) { return RGB(level, level, level); }

// 6 x 4 on teal, with runs of one colour and background between colours.
const COLORREF kColours[] = {kRed, RGB(10, 200, 31), kBlack, kWhite, RGB(100, 150, 200), kTeal};
const char* const kRows[] = {"555555", "500155", "523345", "555555"};
int colourIndex(int x, int y) { return kRows[y][x] - '0'; }
COLORREF mixed(int x, int y) { return kColours[colourIndex(x, y)]; }

using Greyscale = BitmapTest;

TEST_F(Greyscale, CopyAndGreysWithOrWithoutTheBackground) {
    HBITMAP picture = source(6, 4, mixed);
    EXPECT_EQ(kTeal, Kx1GetBmBkColor(picture));
    expectPicture(HBitmapDuplicate(picture), mixed);
    EXPECT_EQ(nullptr, HBitmapDuplicate(nullptr));
    // The grey of each colour of kColours, worked out by hand; -1 keeps the colour. The one-entry
    // cache, primed with the background, keeps every background pixel, also after a run of
    // another colour. Levels 255 and 64 map g to g + 64 - floor(g / 255.0 x 64).
    struct { HBITMAP made; int greys[6]; } cases[] = {
        {CreateGreyscaleBitmap(picture, 0), {127, 105, 0, 255, 150, 64}},
        {CreateGreyscaleBitmap(picture, 1), {127, 105, 0, 255, 150, -1}},
        {CreateAdjustedGreyscaleBitmapEx(picture, 1, 255, 64, nullptr),
         {160, 143, 64, 255, 177, -1}},
    };
    for (const auto& c : cases)
        expectPicture(c.made, [&](int x, int y) {
            int level = c.greys[colourIndex(x, y)];
            return level < 0 ? mixed(x, y) : grey(level);
        });
    expectPicture(CreateGreyscaleBitmap(source(1, 1, [](int, int) { return kRed; }), 1),
                  [](int, int) { return kRed; });
}

TEST_F(Greyscale, LevelsMapBlackAndWhiteAsWorkedOut) {
    const int levels[] = {0, 100, 128, 254, 255};
    HBITMAP ramp = source(5, 1, [=](int x, int) { return grey(levels[x]); });
    struct { int white, black, expected[5]; } cases[] = {
        {255, 64, {64, 139, 160, 255, 255}},
        {128, 0, {0, 50, 64, 127, 128}},
        {200, 64, {50, 109, 125, 200, 200}},
        {0, 10, {0, 0, 0, 0, 0}},          // white level 0 still applies
        {0, 0, {0, 100, 128, 254, 255}},   // no adjustment
        {255, 300, {44, 27, 22, 0, 255}},  // kept to 8 bits
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "white " << c.white << " black " << c.black);
        expectPicture(CreateAdjustedGreyscaleBitmap(ramp, 0, c.white, c.black),
                      [&](int x, int) { return grey(c.expected[x]); });
    }
    EXPECT_EQ(nullptr, CreateAdjustedGreyscaleBitmapEx(nullptr, 0, 0, 0, nullptr));
}

TEST_F(Greyscale, MaskGreysInsideAndBlackInheritsTheLastGrey) {
    // Inside the spot mask: black, red, black, (100, 150, 200); then rows of black and white.
    HBITMAP picture = source(8, 8, [](int x, int y) -> COLORREF {
        if (!InSpot(x, y)) return kMagenta;
        if (y == 2) return x == 3 ? kRed : x == 5 ? RGB(100, 150, 200) : kBlack;
        return x == 2 ? kBlack : kWhite;
    });
    HBITMAP mask = spotMask();
    // Levels 255/64: red 127 -> 160, (100, 150, 200) 150 -> 177, white stays 255. The first
    // black has no grey before it and stays black; the others repeat the grey written last.
    expectPicture(CreateAdjustedGreyscaleBitmapEx(picture, 0, 255, 64, &mask),
                  [](int x, int y) -> COLORREF {
                      if (!InSpot(x, y)) return kMagenta;  // copied, not greyed
                      if (y == 2) return x == 2 ? kBlack : x == 5 ? grey(177) : grey(160);
                      return x == 2 ? grey(y == 3 ? 177 : 255) : kWhite;
                  });
}

// Picture pixels of the disabled-look shape (6 x 6): a 2 x 2 block, one pixel in the last
// column and one in the last row.
bool shape(int x, int y) {
    return (x >= 2 && x <= 3 && y >= 2 && y <= 3) || (x == 5 && y == 1) || (x == 4 && y == 5);
}

TEST_F(Greyscale, DisabledLookEmbossesTheOutline) {
    HBITMAP picture = source(6, 6, [](int x, int y) {
        return shape(x, y) ? (x == 2 ? kRed : kBlue) : RGB(200, 200, 0);
    });
    COLORREF highlight = GetSysColor(COLOR_BTNHIGHLIGHT), shadow = GetSysColor(COLOR_BTNSHADOW);
    for (bool useColour : {true, false}) {
        COLORREF face = useColour ? RGB(10, 20, 30) : GetSysColor(COLOR_BTNFACE);
        // Shadow where a background pixel has the picture down-right of it; highlight where a
        // picture pixel has background there or lies on the last row or column.
        expectPicture(CreateDisabledBitmapHg(picture, useColour, RGB(10, 20, 30)),
                      [&](int x, int y) {
                          bool inside = x < 5 && y < 5;
                          if (!shape(x, y) && inside && shape(x + 1, y + 1)) return shadow;
                          if (shape(x, y) && (!inside || !shape(x + 1, y + 1))) return highlight;
                          return face;
                      });
    }
}

TEST_F(Greyscale, NewBackgroundByKeyOrByMask) {
    expectPicture(BitmapChangeBackgroundColor(source(8, 8, Spot), RGB(9, 9, 9), nullptr),
                  [](int x, int y) { return InSpot(x, y) ? Spot(x, y) : RGB(9, 9, 9); });
    expectPicture(BitmapChangeBackgroundColor(source(8, 8, SpotOnBlack), 0x6300, spotMask()),
                  [](int x, int y) { return InSpot(x, y) ? Spot(x, y) : 0x6300; });
}

TEST_F(Greyscale, ImageListsAddACopyAndDrawGreyedThroughTheMask) {
    HBITMAP spot = source(8, 8, Spot);
    HIMAGELIST list = ImageList_Create(8, 8, ILC_COLOR24 | ILC_MASK, 2, 2);
    EXPECT_EQ(0, ProtectedImageList_AddMasked(list, spot, RGB(1, 1, 1)));
    EXPECT_EQ(1, ProtectedImageList_AddMaskedEx(nullptr, spot, 0, 0));
    EXPECT_EQ(1, ProtectedImageList_AddMaskedEx(list, nullptr, 0, 0));
    // The list masked the green corner colour.
    HBITMAP mask = nullptr;
    expectPicture(ExtractImageListImageEx(list, 0, &mask), SpotOnBlack);
    expectPicture(mask, SpotMaskColour);
    mask = reinterpret_cast<HBITMAP>(0x1234);
    EXPECT_EQ(nullptr, ExtractImageListImageEx(list, 1, &mask));  // index = count
    EXPECT_EQ(nullptr, mask);
    // Red and blue both have the grey 127; around the spot the canvas stays.
    kvtest::Canvas canvas(16, 16, kPaper);
    EXPECT_EQ(0, ImageList_DrawGrayedImage(list, 0, 0, 0, canvas.dc(), 3, 4));
    EXPECT_EQ(0, CanvasMismatches(canvas, 3, 4, 8, 8, [](int x, int y) {
                  return InSpot(x, y) ? grey(127) : kPaper;
              }));
    ImageList_Destroy(list);

    // A list without masks gives no mask, so no greyed image is drawn.
    list = ImageList_Create(8, 8, ILC_COLOR24, 1, 1);
    ImageList_Add(list, spot, nullptr);
    canvas.fill(kPaper);
    EXPECT_EQ(1, ImageList_DrawGrayedImage(list, 0, 0, 0, canvas.dc(), 0, 0));
    EXPECT_EQ(0, CanvasMismatches(canvas, 0, 0, 16, 16, [](int, int) { return kPaper; }));
    ImageList_Destroy(list);
}

TEST_F(Greyscale, IconBitmapsSitOnMagentaWithAMagentaCorner) {
    // 16 x 16: red, its right half transparent.
    WORD rows[16];
    for (WORD& row : rows) row = 0xFF00;  // bytes 0x00, 0xFF: x >= 8 transparent
    HBITMAP colour = source(16, 16, [](int x, int) { return x >= 8 ? kBlack : kRed; });
    ICONINFO info = {TRUE, 0, 0, CreateBitmap(16, 16, 1, 1, rows), colour};
    HICON icon = CreateIconIndirect(&info);
    DeleteObject(info.hbmMask);
    for (int side : {16, 24})
        expectPicture(DuplicateIconBitmap(icon, side == 16 ? 2 : 1), [=](int x, int y) {
            return (x == 0 && y == 0) || x >= side / 2 ? kMagenta : kRed;
        });
    DestroyIcon(icon);
}

}  // namespace
