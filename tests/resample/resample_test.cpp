// Interpolating resize through GDI and on DIB section bits, shrinking, and canvas enlargement.
#include "kvkit_resample.h"
#include "kvtest.h"
#include <string.h>
#include <utility>

using kvtest::BitmapPixel;
using kvtest::BitmapPixels;
using kvtest::IsGdiObject;
using kvtest::MakeBitmap;

namespace {

class ResampleTest : public kvtest::KvTest {};

struct OwnedBitmap {
    HBITMAP bitmap;
    explicit OwnedBitmap(HBITMAP bitmap) : bitmap(bitmap) {}
    ~OwnedBitmap() { DeleteObject(bitmap); }
    OwnedBitmap(const OwnedBitmap&) = delete;
    operator HBITMAP() const { return bitmap; }
};

// A bottom-up DIB section whose bytes the tests write directly.
struct Dib : OwnedBitmap {
    BYTE* bits = nullptr;
    int height, stride, bytesPerPixel;
    Dib(int width, int height, int bitsPerPixel)
        : OwnedBitmap(nullptr), height(height), stride((width * bitsPerPixel + 31) / 32 * 4),
          bytesPerPixel(bitsPerPixel / 8) {
        BITMAPINFO info = {};
        info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, height, 1, WORD(bitsPerPixel), BI_RGB,
                          0, 0, 0, bitsPerPixel <= 8 ? 1u : 0u, 0};
        bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, reinterpret_cast<void**>(&bits),
                                  nullptr, 0);
    }
    BYTE* at(int x, int y) const { return bits + (height - y - 1) * stride + x * bytesPerPixel; }
    void set24(int x, int y, COLORREF c) const {
        BYTE bgr[3] = {GetBValue(c), GetGValue(c), GetRValue(c)};
        memcpy(at(x, y), bgr, 3);
    }
    void set16(int x, int y, WORD pixel) const { memcpy(at(x, y), &pixel, 2); }
};

std::vector<COLORREF> row(HBITMAP bitmap, int y) {
    int width = 0;
    std::vector<COLORREF> pixels = BitmapPixels(bitmap, &width);
    return std::vector<COLORREF>(pixels.begin() + y * width, pixels.begin() + (y + 1) * width);
}

std::pair<int, int> sizeOf(HBITMAP bitmap) {
    BITMAP info = {};
    GetObjectW(bitmap, sizeof(info), &info);
    return {info.bmWidth, info.bmHeight};
}

// Read back from a 32-bit screen bitmap, the top five bits of each channel are the 5-5-5 value.
WORD to555(COLORREF c) {
    return WORD((GetRValue(c) >> 3) << 10 | (GetGValue(c) >> 3) << 5 | GetBValue(c) >> 3);
}

const COLORREF kKey = RGB(255, 0, 255), kA = RGB(10, 250, 0), kB = RGB(250, 10, 100),
               kC = RGB(40, 80, 200), kHalfAB = RGB(130, 130, 50);

// Red and green grow by 2 per pixel: a stretch only picks source pixels, which stay even;
// interpolation makes odd values in between.
HBITMAP evenGradient() {
    return MakeBitmap(100, 100, [](int x, int y) { return RGB(x * 2, y * 2, 128); });
}

bool hasOddValues(HBITMAP bitmap) {
    for (COLORREF c : BitmapPixels(bitmap))
        if ((GetRValue(c) | GetGValue(c)) & 1) return true;
    return false;
}

const COLORREF kBackground = RGB(0, 128, 255), kMarker = RGB(255, 0, 0), kGiven = RGB(1, 2, 3);

// A 10-wide picture with the background colour at (0, 0) and a marker at (1, 1).
HBITMAP markedPicture(int height) {
    return MakeBitmap(10, height, [](int x, int y) {
        return x == 0 && y == 0 ? kBackground : x == 1 && y == 1 ? kMarker : RGB(20, 20, 20);
    });
}

// Where the picture's top-left corner landed, found through its marker.
std::pair<int, int> picturePosition(HBITMAP canvas) {
    int width = 0;
    std::vector<COLORREF> pixels = BitmapPixels(canvas, &width);
    for (size_t i = 0; i < pixels.size(); ++i)
        if (pixels[i] == kMarker) return {int(i % width) - 1, int(i / width) - 1};
    return {-100, -100};
}

}  // namespace

// Each case resizes a picture and compares one row of the result. ResizeBitmap blends the last
// column with white (reads past the picture); the DIB variants clamp to the last column and keep
// the lower sample beside a key on either side.
TEST_F(ResampleTest, ResizeBlendsAndNeverBlendsTheKey) {
    enum Method { kGdi, kDib24 };
    struct Case {
        const char* what;
        Method method;
        std::vector<std::vector<COLORREF>> source;
        int width, height, transparent;
        COLORREF key;
        int keyFromCorner, smooth, row;
        std::vector<COLORREF> expected;
    };
    const std::vector<COLORREF> grid0 = {RGB(10, 200, 3), RGB(30, 170, 3), RGB(50, 140, 3)};
    const std::vector<COLORREF> grid1 = {RGB(70, 150, 3), RGB(90, 120, 10), RGB(110, 90, 17)};
    const std::vector<COLORREF> grid2 = {RGB(130, 100, 3), RGB(150, 70, 17), RGB(170, 40, 31)};
    const Case cases[] = {
        {"gdi widen", kGdi, {{kA, kB, kC}}, 7, 1, 0, 0, 0, 0, 0,
         {kA, RGB(112, 147, 42), RGB(215, 44, 85), RGB(190, 29, 128), RGB(100, 59, 171),
          RGB(70, 104, 207), RGB(162, 179, 231)}},
        {"gdi both passes", kGdi, {grid0, grid1, grid2}, 2, 2, 0, 0, 0, 0, 1,
         {RGB(100, 125, 3), RGB(130, 80, 18)}},
        {"gdi key first", kGdi, {{kKey, kA, kB}}, 6, 1, 1, 0, 1, 0, 0,
         {kA, kA, kA, kHalfAB, kB, RGB(252, 132, 177)}},
        {"gdi key last", kGdi, {{kA, kKey, kKey}}, 6, 1, 1, kKey, 0, 0, 0,
         {kA, kA, kKey, kKey, kKey, kKey}},
        {"gdi key not transparent", kGdi, {{kA, kKey, kKey}}, 6, 1, 0, kKey, 0, 0, 0,
         {kA, RGB(132, 125, 127), kKey, kKey, kKey, RGB(255, 127, 255)}},
        // Interpolating at step 1 would have replaced the key at (0, 0) by its neighbour.
        {"gdi same width copies", kGdi, {{kKey, kA}}, 2, 2, 1, 0, 1, 0, 0, {kKey, kA}},
        {"dib smooth", kDib24, {{kA, kB, kC}}, 7, 1, 0, 0, 0, 1, 0,
         {kA, RGB(112, 147, 42), RGB(215, 44, 85), RGB(190, 29, 128), RGB(100, 59, 171), kC, kC}},
        {"dib lower sample", kDib24, {{kA, kB, kC}}, 7, 1, 0, 0, 0, 0, 0,
         {kA, kA, kA, kB, kB, kC, kC}},
        {"dib key first", kDib24, {{kKey, kA, kB}}, 6, 1, 1, 0, 1, 1, 0,
         {kKey, kKey, kA, kHalfAB, kB, kB}},
        {"dib key between", kDib24, {{kA, kKey, kB}}, 6, 1, 1, kKey, 0, 1, 0,
         {kA, kA, kKey, kKey, kB, kB}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        int width = int(c.source[0].size()), height = int(c.source.size());
        if (c.method == kGdi) {
            OwnedBitmap source(MakeBitmap(width, height, [&](int x, int y) { return c.source[y][x]; }));
            OwnedBitmap result(ResizeBitmap(source, c.width, c.height, c.transparent, c.key,
                                            c.keyFromCorner));
            ASSERT_TRUE(result);
            EXPECT_EQ(c.expected, row(result, c.row));
            continue;
        }
        ASSERT_EQ(1, height) << "one row, so that the source row length does not matter";
        Dib source(width, 1, 24);
        for (int x = 0; x < width; ++x) source.set24(x, 0, c.source[0][x]);
        for (auto resize : {BlendedResizeBitmap_DI_24b, BlendedResizeBitmap_DI}) {
            OwnedBitmap result(resize(nullptr, source, c.width, c.height, c.transparent,
                                      c.key, c.keyFromCorner, c.smooth));
            ASSERT_TRUE(result);
            EXPECT_EQ(c.expected, row(result, c.row));
        }
    }
}

// 24-bit source rows are read at the bytes per row plus the padding, or plus
// 4 - (bytes per row mod 4) when there is none; reads past the section's memory are black.
TEST_F(ResampleTest, TwentyFourBitRowsAreReadAtThePaddedRowLength) {
    struct Case { int width, rowLength; };
    const Case cases[] = {{3, 12 + 3}, {4, 12 + 4}, {5, 16 + 1}};
    const int height = 3;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.width);
        Dib source(c.width, height, 24);
        int size = source.stride * height;
        for (int i = 0; i < size; ++i) source.bits[i] = BYTE(i * 7 + 1);
        // The same size without smoothing: every pixel is the sample it was read as.
        OwnedBitmap result(
            BlendedResizeBitmap_DI_24b(nullptr, source, c.width, height, 0, 0, 0, 0));
        ASSERT_TRUE(result);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < c.width; ++x) {
                int at = (height - y - 1) * c.rowLength + x * 3;
                const BYTE* p = source.bits + at;
                COLORREF expected = at + 3 <= size ? RGB(p[2], p[1], p[0]) : 0;
                EXPECT_EQ(expected, BitmapPixel(result, x, y)) << x << "," << y;
            }
    }
}

TEST_F(ResampleTest, SixteenBitBlendsIn8BitChannelsAndPacks555) {
    Dib source(2, 2, 16);
    source.set16(0, 0, 0x7C00);  // red
    source.set16(1, 0, 0x001F);  // blue
    source.set16(0, 1, 0x03E0);  // green
    source.set16(1, 1, 0x7FFF);  // white
    OwnedBitmap result(BlendedResizeBitmap_DI(nullptr, source, 4, 4, 0, 0, 0, 1));
    ASSERT_TRUE(result);
    EXPECT_EQ(0x3C0F, to555(BitmapPixel(result, 1, 0))) << "red, blue at 1/2: 127, 0, 127";
    EXPECT_EQ(0x001F, to555(BitmapPixel(result, 3, 0))) << "clamped to the last column";
    // (15, 0, 15) over (15, 31, 15) widens to 123, 0 / 255 and blends to (123, 127, 123).
    EXPECT_EQ(0x3DEF, to555(BitmapPixel(result, 1, 1)));

    // A given key is compared in 5-5-5 form.
    Dib keyed(3, 1, 16);
    const WORD red = 0x7C00, magenta = 0x7C1F, blue = 0x001F, line[] = {red, magenta, blue};
    for (int x = 0; x < 3; ++x) keyed.set16(x, 0, line[x]);
    OwnedBitmap kept(BlendedResizeBitmap_DI_16b(nullptr, keyed, 6, 1, 1, kKey, 0, 1));
    ASSERT_TRUE(kept);
    std::vector<WORD> packed;
    for (COLORREF c : row(kept, 0)) packed.push_back(to555(c));
    EXPECT_EQ(std::vector<WORD>({red, red, magenta, magenta, blue, blue}), packed);
}

TEST_F(ResampleTest, ResizeRefusesWhatItCannotDo) {
    OwnedBitmap device(MakeBitmap(4, 4, [](int, int) { return kA; }));
    EXPECT_EQ(nullptr, ResizeBitmap(device, 4, 4, 0, 0, 0)) << "the same size";
    EXPECT_EQ(nullptr, BlendedResizeBitmap_DI(nullptr, device, 8, 8, 0, 0, 0, 1)) << "no bits";
    Dib bits8(4, 4, 8), bits16(4, 4, 16), bits24(4, 4, 24), bits32(4, 4, 32);
    EXPECT_EQ(nullptr, BlendedResizeBitmap_DI(nullptr, bits8, 8, 8, 0, 0, 0, 1));
    EXPECT_EQ(nullptr, BlendedResizeBitmap_DI_24b(nullptr, bits16, 8, 8, 0, 0, 0, 1));
    EXPECT_EQ(nullptr, BlendedResizeBitmap_DI_16b(nullptr, bits24, 8, 8, 0, 0, 0, 1));
    // A 32-bit source never yields a resized bitmap.
    EXPECT_EQ(nullptr, BlendedResizeBitmap_DI(nullptr, bits32, 8, 8, 1, 0, 1, 1));
    // Buffers whose byte counts would not fit in an int.
    for (HBITMAP source : {HBITMAP(bits16), HBITMAP(bits24), HBITMAP(bits32)})
        EXPECT_EQ(nullptr, BlendedResizeBitmap_DI(nullptr, source, 0x40000001, 1, 0, 0, 0, 1));
    for (int nth = 1; nth <= 2; ++nth) {
        KvText_FailAllocation(nth);
        EXPECT_EQ(nullptr, BlendedResizeBitmap_DI_24b(nullptr, bits24, 8, 8, 0, 0, 0, 1));
        KvText_FailAllocation(0);
    }
}

TEST_F(ResampleTest, ShrinkStretchesNearTheSizeAndInterpolatesFurtherAway) {
    enum Outcome { kStretch, kInterpolate, kSource };
    struct Case { int width, height; Outcome outcome; };
    const Case cases[] = {{80, 80, kStretch}, {40, 40, kInterpolate}, {100, 80, kInterpolate},
                 {120, 120, kSource}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.width << "x" << c.height);
        HBITMAP source = evenGradient();
        HBITMAP result = Kx1ShrinkBitmap(source, c.width, c.height);
        if (c.outcome == kSource) {
            EXPECT_EQ(source, result);
            EXPECT_TRUE(IsGdiObject(source));
        } else {
            EXPECT_FALSE(IsGdiObject(source)) << "a replaced source is deleted";
            EXPECT_EQ(std::make_pair(c.width, c.height), sizeOf(result));
            EXPECT_EQ(c.outcome == kInterpolate, hasOddValues(result));
        }
        DeleteObject(result);
    }
}

TEST_F(ResampleTest, ShrinkDeletesTheSourceOnlyWhenAskedAndEnlargesOnlyWhenAllowed) {
    OwnedBitmap kept(evenGradient());
    OwnedBitmap smaller(Kx1ShrinkBitmapEx2(kept, 50, 50, 0, 0));
    EXPECT_NE(kept, smaller);
    EXPECT_TRUE(IsGdiObject(kept));
    HBITMAP source = evenGradient();
    OwnedBitmap larger(Kx1ShrinkBitmapEx(source, 120, 120, 1));
    EXPECT_EQ(std::make_pair(120, 120), sizeOf(larger));
    EXPECT_FALSE(IsGdiObject(source));
}

TEST_F(ResampleTest, CanvasPlacesThePictureByFlags) {
    struct Case { int flags, pictureHeight, width, height, left, top; };
    const Case cases[] = {
        {0x00, 10, 13, 14, 0, 0}, {0x02, 10, 13, 14, 0, 4},  {0x04, 10, 13, 14, 0, 2},
        {0x06, 10, 13, 14, 0, 4}, {0x10, 10, 13, 14, 3, 0},  {0x20, 10, 13, 14, 2, 0},
        {0x30, 10, 13, 14, 3, 0}, {0x24, 10, 13, 13, 2, 2},  {0x40, 10, 12, 12, 0, 0},
        {0x80, 10, 12, 12, 0, 0}, {0x112, 10, 13, 14, 3, 4}, {0x1E4, 10, 13, 14, 2, 2},
        {0x24, 20, 14, 10, 2, 0},  // taller than the canvas: the centred top becomes 0
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.flags);
        HBITMAP source = markedPicture(c.pictureHeight);
        COLORREF background = kGiven;
        int unchanged = -1;
        OwnedBitmap canvas(
            StretchBimapBackground(source, c.width, c.height, c.flags, &background, &unchanged));
        ASSERT_NE(source, canvas);
        EXPECT_EQ(0, unchanged);
        EXPECT_EQ(std::make_pair(c.width, c.height), sizeOf(canvas));
        EXPECT_EQ(std::make_pair(c.left, c.top), picturePosition(canvas));
        COLORREF fill = c.flags & 0x40 ? kGiven : kBackground;
        EXPECT_EQ(fill, background);
        EXPECT_EQ(fill, BitmapPixel(canvas, c.left ? 0 : c.width - 1, c.top ? 0 : c.height - 1));
        bool deleted = (c.flags & 0x80) != 0;
        EXPECT_EQ(!deleted, IsGdiObject(source));
        if (!deleted) DeleteObject(source);
    }
    OwnedBitmap source(markedPicture(10));
    OwnedBitmap twin(StretchBitmapBackground(source, 13, 13, 0x24, nullptr, nullptr));
    EXPECT_EQ(std::make_pair(2, 2), picturePosition(twin));
}

TEST_F(ResampleTest, CanvasReturnsTheSourceWhenNothingIsMade) {
    OwnedBitmap source(markedPicture(10));
    COLORREF background = kGiven;
    int unchanged = -1;
    EXPECT_EQ(source, StretchBimapBackground(source, 10, 8, 0x80, &background, &unchanged));
    EXPECT_EQ(1, unchanged);
    EXPECT_EQ(kBackground, background);
    EXPECT_TRUE(IsGdiObject(source));
    unchanged = -1;
    EXPECT_EQ(source, StretchBimapBackground(source, 20, 20, 0x40, nullptr, &unchanged));
    EXPECT_EQ(1, unchanged) << "no colour given";
    unchanged = -1;
    EXPECT_EQ(nullptr, StretchBimapBackground(nullptr, 20, 20, 0, nullptr, &unchanged));
    EXPECT_EQ(1, unchanged);
}
