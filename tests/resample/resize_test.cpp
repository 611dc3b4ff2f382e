// The interpolating resize through GDI and on DIB section bits.
#include "kvkit_resample.h"
#include "pictures.h"

using namespace resample_test;
using kvtest::BitmapPixel;
using kvtest::BitmapPixels;
using kvtest::MakeBitmap;

namespace {

class ResizeTest : public kvtest::KvTest {};

const COLORREF kKey = RGB(255, 0, 255);
const COLORREF kA = RGB(10, 250, 0);
const COLORREF kB = RGB(250, 10, 100);
const COLORREF kC = RGB(40, 80, 200);

// The row (kA, kB, kC) widened from 3 to 7 columns samples at x * 3/7; the first five columns
// blend neighbours by the fractional part and truncate.
const COLORREF kWidenedCommon[5] = {RGB(10, 250, 0), RGB(112, 147, 42), RGB(215, 44, 85),
                                    RGB(190, 29, 128), RGB(100, 59, 171)};

std::vector<COLORREF> row(HBITMAP bitmap, int y) {
    int width = 0;
    std::vector<COLORREF> pixels = BitmapPixels(bitmap, &width);
    return std::vector<COLORREF>(pixels.begin() + y * width, pixels.begin() + (y + 1) * width);
}

HBITMAP rowBitmap(std::vector<COLORREF> colours) {
    return MakeBitmap(int(colours.size()), 1, [colours](int x, int) { return colours[x]; });
}

void fillRow24(const Dib& dib, int y, std::vector<COLORREF> colours) {
    for (int x = 0; x < int(colours.size()); ++x) dib.set24(x, y, colours[x]);
}

}  // namespace

// --- ResizeBitmap -----------------------------------------------------------------------------

TEST_F(ResizeTest, ResizeBitmapRefusesSameSizeAndBadInput) {
    OwnedBitmap source(MakeBitmap(4, 3, [](int, int) { return kA; }));
    EXPECT_EQ(nullptr, ResizeBitmap(source, 4, 3, 0, 0, 0));
    EXPECT_EQ(nullptr, ResizeBitmap(source, 0, 3, 0, 0, 0));
    EXPECT_EQ(nullptr, ResizeBitmap(source, 4, -1, 0, 0, 0));
    EXPECT_EQ(nullptr, ResizeBitmap(nullptr, 8, 8, 0, 0, 0));
}

// The upper sample is not clamped: past the last column it reads as white.
TEST_F(ResizeTest, ResizeBitmapBlendsRowsAndBlendsTheLastColumnsTowardsWhite) {
    OwnedBitmap source(rowBitmap({kA, kB, kC}));
    OwnedBitmap result(ResizeBitmap(source, 7, 1, 0, 0, 0));
    ASSERT_NE(nullptr, result.get());
    std::vector<COLORREF> expected(kWidenedCommon, kWidenedCommon + 5);
    expected.push_back(RGB(70, 104, 207));   // (kC, white) at 1/7
    expected.push_back(RGB(162, 179, 231));  // (kC, white) at 4/7
    EXPECT_EQ(expected, row(result, 0));
}

TEST_F(ResizeTest, ResizeBitmapBlendsBothPasses) {
    auto colour = [](int x, int y) {
        return RGB(20 * x + 60 * y + 10, 200 - 50 * y - 30 * x, 7 * x * y + 3);
    };
    OwnedBitmap source(MakeBitmap(3, 3, colour));
    OwnedBitmap result(ResizeBitmap(source, 2, 2, 0, 0, 0));
    ASSERT_NE(nullptr, result.get());
    EXPECT_EQ(RGB(10, 200, 3), BitmapPixel(result, 0, 0));
    EXPECT_EQ(RGB(40, 155, 3), BitmapPixel(result, 1, 0));
    EXPECT_EQ(RGB(100, 125, 3), BitmapPixel(result, 0, 1));
    EXPECT_EQ(RGB(130, 80, 18), BitmapPixel(result, 1, 1));

    // Same width: the columns are copied, and the last row blends towards white.
    OwnedBitmap twoRows(MakeBitmap(3, 2, colour));
    OwnedBitmap taller(ResizeBitmap(twoRows, 3, 3, 0, 0, 0));
    ASSERT_NE(nullptr, taller.get());
    EXPECT_EQ(RGB(10, 200, 3), BitmapPixel(taller, 0, 0));
    EXPECT_EQ(RGB(50, 166, 3), BitmapPixel(taller, 0, 1));
    EXPECT_EQ(RGB(131, 185, 86), BitmapPixel(taller, 0, 2));
}

// A key pixel beside a picture pixel never blends: the picture pixel wins, whichever side it
// is on, except past the last column, where the key stays.
TEST_F(ResizeTest, ResizeBitmapNeverBlendsTheKey) {
    OwnedBitmap keyFirst(rowBitmap({kKey, kA, kB}));
    OwnedBitmap widened(ResizeBitmap(keyFirst, 6, 1, 1, 0, 1));
    ASSERT_NE(nullptr, widened.get());
    const COLORREF half = RGB(130, 130, 50);  // (kA, kB) at 1/2
    const COLORREF bWhite = RGB(252, 132, 177);
    EXPECT_EQ(std::vector<COLORREF>({kA, kA, kA, half, kB, bWhite}), row(widened, 0));

    OwnedBitmap keyLast(rowBitmap({kA, kKey, kKey}));
    OwnedBitmap widenedLast(ResizeBitmap(keyLast, 6, 1, 1, kKey, 0));
    ASSERT_NE(nullptr, widenedLast.get());
    EXPECT_EQ(std::vector<COLORREF>({kA, kA, kKey, kKey, kKey, kKey}), row(widenedLast, 0));

    // Without the transparent flag the key is an ordinary colour.
    OwnedBitmap blended(ResizeBitmap(keyLast, 6, 1, 0, kKey, 0));
    EXPECT_EQ(RGB(132, 125, 127), BitmapPixel(blended, 1, 0));
}

// At the same width the horizontal pass copies; interpolating at step 1 would have replaced
// the key at (0, 0) by its right neighbour.
TEST_F(ResizeTest, ResizeBitmapCopiesColumnsAtTheSameWidth) {
    OwnedBitmap source(rowBitmap({kKey, kA}));
    OwnedBitmap result(ResizeBitmap(source, 2, 2, 1, 0, 1));
    ASSERT_NE(nullptr, result.get());
    EXPECT_EQ(kKey, BitmapPixel(result, 0, 0));
    EXPECT_EQ(kKey, BitmapPixel(result, 0, 1));
    EXPECT_EQ(kA, BitmapPixel(result, 1, 0));
    EXPECT_EQ(RGB(132, 252, 127), BitmapPixel(result, 1, 1)) << "(kA, white) at 1/2";
}

// --- DIB sections -----------------------------------------------------------------------------

TEST_F(ResizeTest, DibVariantsClampSamplesAndHonourSmooth) {
    Dib source;
    MakeDib(source, 3, 1, 24);
    fillRow24(source, 0, {kA, kB, kC});
    OwnedBitmap smooth(BlendedResizeBitmap_DI_24b(nullptr, source.bitmap, 7, 1, 0, 0, 0, 1));
    ASSERT_NE(nullptr, smooth.get());
    std::vector<COLORREF> expected(kWidenedCommon, kWidenedCommon + 5);
    expected.push_back(kC);
    expected.push_back(kC);
    EXPECT_EQ(expected, row(smooth, 0));

    OwnedBitmap lower(BlendedResizeBitmap_DI_24b(nullptr, source.bitmap, 7, 1, 0, 0, 0, 0));
    ASSERT_NE(nullptr, lower.get());
    EXPECT_EQ(std::vector<COLORREF>({kA, kA, kA, kB, kB, kC, kC}), row(lower, 0));

    // The dispatcher picks the 24-bit variant.
    OwnedBitmap dispatched(BlendedResizeBitmap_DI(nullptr, source.bitmap, 7, 1, 0, 0, 0, 1));
    EXPECT_EQ(expected, row(dispatched, 0));
}

// The DIB variants keep the lower sample whenever either is the key.
TEST_F(ResizeTest, DibVariantsNeverBlendTheKey) {
    Dib source;
    MakeDib(source, 3, 1, 24);
    fillRow24(source, 0, {kKey, kA, kB});
    const COLORREF half = RGB(130, 130, 50);
    OwnedBitmap fromCorner(BlendedResizeBitmap_DI_24b(nullptr, source.bitmap, 6, 1, 1, 0, 1, 1));
    ASSERT_NE(nullptr, fromCorner.get());
    EXPECT_EQ(std::vector<COLORREF>({kKey, kKey, kA, half, kB, kB}), row(fromCorner, 0));

    fillRow24(source, 0, {kA, kKey, kB});
    OwnedBitmap given(BlendedResizeBitmap_DI_24b(nullptr, source.bitmap, 6, 1, 1, kKey, 0, 1));
    ASSERT_NE(nullptr, given.get());
    EXPECT_EQ(std::vector<COLORREF>({kA, kA, kKey, kKey, kB, kB}), row(given, 0));
}

// Source rows are read at the bytes per row plus the reported padding, or plus
// 4 - (bytes per row mod 4) when none is reported; reads past the section's memory are black.
// At the same size without smoothing every pixel is read back as it was sampled.
TEST_F(ResizeTest, DibSourceRowsAreReadAtTheComputedRowLength) {
    struct Case {
        int width;
        int rowLength;
    } cases[] = {{3, 12 + 3}, {4, 12 + 4}, {5, 16 + 1}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.width);
        const int height = 3;
        Dib source;
        MakeDib(source, c.width, height, 24);
        for (int i = 0; i < source.size(); ++i) source.bits[i] = BYTE(i * 7 + 1);
        OwnedBitmap result(
            BlendedResizeBitmap_DI_24b(nullptr, source.bitmap, c.width, height, 0, 0, 0, 0));
        ASSERT_NE(nullptr, result.get());
        ASSERT_EQ(c.width, BitmapSize(result).cx);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < c.width; ++x) {
                int offset = (height - y - 1) * c.rowLength + x * 3;
                COLORREF expected = 0;
                if (offset + 3 <= source.size())
                    expected = RGB(source.bits[offset + 2], source.bits[offset + 1],
                                   source.bits[offset]);
                EXPECT_EQ(expected, BitmapPixel(result, x, y)) << x << "," << y;
            }
    }
}

TEST_F(ResizeTest, SixteenBitVariantBlendsAndPacks555) {
    Dib source;
    MakeDib(source, 2, 2, 16);
    source.set16(0, 0, 0x7C00);  // red
    source.set16(1, 0, 0x001F);  // blue
    source.set16(0, 1, 0x03E0);  // green
    source.set16(1, 1, 0x7FFF);  // white
    OwnedBitmap result(BlendedResizeBitmap_DI_16b(nullptr, source.bitmap, 4, 4, 0, 0, 0, 1));
    ASSERT_NE(nullptr, result.get());
    std::vector<WORD> pixels = Pixels555(result);
    ASSERT_EQ(16u, pixels.size());
    // Red and blue halfway: 127 in both channels, packed back as 15 << 10 | 15.
    EXPECT_EQ(0x3C0F, pixels[1]);
    // Columns and rows past the last are clamped.
    EXPECT_EQ(0x001F, pixels[3]);
    EXPECT_EQ(0x03E0, pixels[3 * 4 + 0]);
    // Row 1 halfway between (red, green): 15 << 10 | 15 << 5.
    EXPECT_EQ(0x3DE0, pixels[1 * 4 + 0]);
    // Both passes at a half: (15, 0, 15) over (15, 31, 15) widens to 123 and 0 / 255 and
    // blends to (123, 127, 123), which packs as 15 in every channel.
    EXPECT_EQ(0x3DEF, pixels[1 * 4 + 1]);

    OwnedBitmap dispatched(BlendedResizeBitmap_DI(nullptr, source.bitmap, 4, 4, 0, 0, 0, 1));
    EXPECT_EQ(pixels, Pixels555(dispatched));
}

TEST_F(ResizeTest, SixteenBitVariantComparesTheKeyIn555) {
    Dib source;
    MakeDib(source, 3, 1, 16);
    source.set16(0, 0, 0x7C00);
    source.set16(1, 0, 0x7C1F);  // magenta, the key
    source.set16(2, 0, 0x001F);
    OwnedBitmap result(BlendedResizeBitmap_DI_16b(nullptr, source.bitmap, 6, 1, 1, kKey, 0, 1));
    ASSERT_NE(nullptr, result.get());
    EXPECT_EQ(std::vector<WORD>({0x7C00, 0x7C00, 0x7C1F, 0x7C1F, 0x001F, 0x001F}),
              Pixels555(result));
}

TEST_F(ResizeTest, DibVariantsRefuseOtherDepths) {
    Dib bits8, bits16, bits24, bits32;
    MakeDib(bits8, 4, 4, 8);
    MakeDib(bits16, 4, 4, 16);
    MakeDib(bits24, 4, 4, 24);
    MakeDib(bits32, 4, 4, 32);
    EXPECT_EQ(nullptr, BlendedResizeBitmap_DI(nullptr, bits8.bitmap, 8, 8, 0, 0, 0, 1));
    EXPECT_EQ(nullptr, BlendedResizeBitmap_DI(nullptr, bits32.bitmap, 8, 8, 0, 0, 0, 1));
    EXPECT_EQ(nullptr, BlendedResizeBitmap_DI_32b(nullptr, bits32.bitmap, 8, 8, 1, 0, 1, 1));
    EXPECT_EQ(nullptr, BlendedResizeBitmap_DI_24b(nullptr, bits16.bitmap, 8, 8, 0, 0, 0, 1));
    EXPECT_EQ(nullptr, BlendedResizeBitmap_DI_16b(nullptr, bits24.bitmap, 8, 8, 0, 0, 0, 1));
    EXPECT_EQ(nullptr, BlendedResizeBitmap_DI_32b(nullptr, bits24.bitmap, 8, 8, 0, 0, 0, 1));
    EXPECT_EQ(nullptr, BlendedResizeBitmap_DI_24b(nullptr, bits24.bitmap, 0, 8, 0, 0, 0, 1));
    // A device-dependent bitmap has no bits to read.
    OwnedBitmap device(MakeBitmap(4, 4, [](int, int) { return kA; }));
    EXPECT_EQ(nullptr, BlendedResizeBitmap_DI(nullptr, device, 8, 8, 0, 0, 0, 1));
}

// The result is made at every size, including the source's own.
TEST_F(ResizeTest, DibVariantsResizeToAnySize) {
    Dib source;
    MakeDib(source, 4, 4, 16);
    OwnedBitmap same(BlendedResizeBitmap_DI_16b(nullptr, source.bitmap, 4, 4, 0, 0, 0, 1));
    ASSERT_NE(nullptr, same.get());
    OwnedBitmap smaller(BlendedResizeBitmap_DI_16b(nullptr, source.bitmap, 3, 2, 0, 0, 0, 1));
    ASSERT_NE(nullptr, smaller.get());
    EXPECT_EQ(3, BitmapSize(smaller).cx);
    EXPECT_EQ(2, BitmapSize(smaller).cy);
}

TEST_F(ResizeTest, DibVariantsGiveNullWhenMemoryRunsOut) {
    Dib source, source32;
    MakeDib(source, 4, 4, 24);
    MakeDib(source32, 4, 4, 32);
    for (int nth = 1; nth <= 2; ++nth) {
        KvText_FailAllocation(nth);
        EXPECT_EQ(nullptr, BlendedResizeBitmap_DI_24b(nullptr, source.bitmap, 8, 8, 0, 0, 0, 1));
        KvText_FailAllocation(0);
    }
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, BlendedResizeBitmap_DI_32b(nullptr, source32.bitmap, 8, 8, 0, 0, 0, 1));
}

// Sizes whose buffers would not fit in an int are refused before anything is allocated.
TEST_F(ResizeTest, DibVariantsRefuseSizesBeyondAnyBuffer) {
    Dib source16, source24, source32;
    MakeDib(source16, 1, 1, 16);
    MakeDib(source24, 1, 1, 24);
    MakeDib(source32, 1, 1, 32);
    for (HBITMAP source : {source16.bitmap.get(), source24.bitmap.get(), source32.bitmap.get()}) {
        EXPECT_EQ(nullptr, BlendedResizeBitmap_DI(nullptr, source, 0x40000001, 1, 0, 0, 0, 1));
        EXPECT_EQ(nullptr, BlendedResizeBitmap_DI(nullptr, source, 1, 0x40000000, 0, 0, 0, 1));
    }
}
