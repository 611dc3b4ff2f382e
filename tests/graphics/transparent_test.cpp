// Transparent, stretched, tiled, resource and printed bitmaps, checked pixel by pixel in
// 32-bit canvases.
#include "kvtest.h"
#include "kvkit_draw.h"
#include "pictures.h"
#include <string>

using namespace pictures;

namespace {

class Transparent : public kvtest::KvTest {
protected:
    void SetUp() override {
        KvTest::SetUp();
        spot = kvtest::MakeBitmap(8, 8, Spot);
    }
    void TearDown() override {
        EXPECT_EQ(0, Mismatches(spot, Spot)) << "source bitmap changed";
        EXPECT_TRUE(IsSelectable(spot)) << "source bitmap left selected";
        DeleteObject(spot);
        KvTest::TearDown();
    }
    HBITMAP spot = nullptr;
    kvtest::Canvas canvas{24, 24, kPaper};
};

TEST_F(Transparent, KeyFromPixelZeroLeavesTheBackgroundOut) {
    EXPECT_EQ(1, DrawTranspBitmapEx(canvas.dc(), spot, 5, 6, RGB(255, 0, 0), 0, false));
    EXPECT_EQ(0, CanvasMismatches(canvas, 5, 6, 8, 8, [](int x, int y) {
                  return InSpot(x, y) ? Spot(x, y) : kPaper;
              }));
    EXPECT_EQ(kPaper, canvas.pixel(13, 9));
}

TEST_F(Transparent, GivenKeyLeavesThatColourOut) {
    DrawTranspBitmap(canvas.dc(), spot, 0, 0, kRed, true);
    EXPECT_EQ(0, CanvasMismatches(canvas, 0, 0, 8, 8, [](int x, int y) {
                  return Spot(x, y) == kRed ? kPaper : Spot(x, y);
              }));
}

TEST_F(Transparent, MaskKeepsTheDestinationWhereItIsWhite) {
    HBITMAP image = kvtest::MakeBitmap(8, 8, [](int x, int y) {
        return InSpot(x, y) ? Spot(x, y) : kBlack;
    });
    HBITMAP mask = SpotMask();
    DrawTransparentByMask(canvas.dc(), image, mask, 10, 3);
    EXPECT_EQ(0, CanvasMismatches(canvas, 10, 3, 8, 8, [](int x, int y) {
                  return InSpot(x, y) ? Spot(x, y) : kPaper;
              }));
    EXPECT_TRUE(IsSelectable(image));
    EXPECT_TRUE(IsSelectable(mask));
    DeleteObject(image);
    DeleteObject(mask);
}

TEST_F(Transparent, StretchedCopyIsDrawnWithItsOwnCornerAsKey) {
    RECT rect = {4, 4, 20, 20};  // twice the size
    EXPECT_NE(0, Kx1DrawTransShrBitm(canvas.dc(), spot, &rect));
    EXPECT_EQ(0, CanvasMismatches(canvas, 4, 4, 16, 16, [](int x, int y) {
                  return InSpot(x / 2, y / 2) ? Spot(x / 2, y / 2) : kPaper;
              }));
}

// 3 x 2 tile with a different colour in every pixel.
COLORREF tile(int x, int y) { return RGB(10 + 40 * x, 20 + 100 * y, 77); }
COLORREF large(int x, int y) { return RGB(5 * x, 5 * y, 200); }

TEST_F(Transparent, FillRectTilesFromTheOffsetAndStaysInside) {
    HBITMAP bitmap = kvtest::MakeBitmap(3, 2, tile);
    RECT rect = {5, 5, 15, 12};
    EXPECT_EQ(1, Kx1FillRectBm(canvas.dc(), bitmap, &rect, 0, 1, 1));
    EXPECT_EQ(0, CanvasMismatches(canvas, 5, 5, 10, 7, [](int x, int y) {
                  return tile((x + 1) % 3, (y + 1) % 2);
              }));
    EXPECT_EQ(kPaper, canvas.pixel(4, 5));
    EXPECT_EQ(kPaper, canvas.pixel(15, 5));
    EXPECT_EQ(kPaper, canvas.pixel(5, 12));
    // The clipping is given back: nothing clips the canvas afterwards.
    HRGN clip = CreateRectRgn(0, 0, 0, 0);
    EXPECT_EQ(0, GetClipRgn(canvas.dc(), clip));
    DeleteObject(clip);
    EXPECT_TRUE(IsSelectable(bitmap));
    DeleteObject(bitmap);
}

TEST_F(Transparent, FillRectWithALargeBitmapBlitsOnceFromTheOffset) {
    HBITMAP bitmap = kvtest::MakeBitmap(20, 20, large);
    RECT rect = {5, 5, 15, 12};
    Kx1FillRectBm(canvas.dc(), bitmap, &rect, 0, 2, 3);
    EXPECT_EQ(0, CanvasMismatches(canvas, 5, 5, 10, 7,
                                  [](int x, int y) { return large(x + 2, y + 3); }));
    EXPECT_EQ(kPaper, canvas.pixel(15, 11));
    EXPECT_EQ(kPaper, canvas.pixel(14, 12));
    DeleteObject(bitmap);
}

TEST_F(Transparent, FillRectCentresAndKeepsTheCallersClipping) {
    HBITMAP small = kvtest::MakeBitmap(3, 2, tile);
    HBITMAP big = kvtest::MakeBitmap(20, 20, large);
    HRGN callerClip = CreateRectRgn(0, 0, 22, 22);
    SelectClipRgn(canvas.dc(), callerClip);

    // A smaller bitmap sits in the middle: (5 + 7 / 2, 5 + 5 / 2) = (8, 7).
    RECT rect = {5, 5, 15, 12};
    Kx1FillRectBm(canvas.dc(), small, &rect, 1, 0, 0);
    EXPECT_EQ(0, CanvasMismatches(canvas, 8, 7, 3, 2, tile));
    EXPECT_EQ(kPaper, canvas.pixel(7, 7));
    EXPECT_EQ(kPaper, canvas.pixel(11, 7));

    // A larger one starts at the corner less the offsets, clipped to the rectangle.
    canvas.fill(kPaper);
    Kx1FillRectBm(canvas.dc(), big, &rect, 1, 1, 2);
    EXPECT_EQ(0, CanvasMismatches(canvas, 5, 5, 10, 7,
                                  [](int x, int y) { return large(x + 1, y + 2); }));
    EXPECT_EQ(kPaper, canvas.pixel(4, 6));
    EXPECT_EQ(kPaper, canvas.pixel(15, 6));

    HRGN after = CreateRectRgn(0, 0, 0, 0);
    ASSERT_EQ(1, GetClipRgn(canvas.dc(), after));
    EXPECT_TRUE(EqualRgn(after, callerClip));
    SelectClipRgn(canvas.dc(), nullptr);
    DeleteObject(after);
    DeleteObject(callerClip);
    DeleteObject(small);
    DeleteObject(big);
}

class BitmapResource : public kvtest::KvTest {
protected:
    void SetUp() override {
        KvTest::SetUp();
        module = GetModuleHandleW(L"kvkit.dll");
        HBITMAP loaded = LoadBitmapW(module, L"btaob");
        ASSERT_NE(nullptr, loaded);
        picture = kvtest::BitmapPixels(loaded, &width, &height);
        DeleteObject(loaded);
    }
    COLORREF at(int x, int y) const { return picture[y * width + x]; }
    HMODULE module = nullptr;
    std::vector<COLORREF> picture;
    int width = 0, height = 0;
};

TEST_F(BitmapResource, TilingRepeatsOnlyTheFirstRowAndColumn) {
    kvtest::Canvas canvas(4 * width + 4, 4 * height + 4, kPaper);
    RECT rect = {2, 2, 2 + 4 * width, 2 + 4 * height};
    int drawnWidth = -1, drawnHeight = -1;
    EXPECT_NE(0, Kx1DrawBitmapRes(canvas.dc(), module, L"btaob", &rect, 0, &drawnWidth,
                                  &drawnHeight, nullptr, 1, 1, 0));
    EXPECT_EQ(width, drawnWidth);
    EXPECT_EQ(height, drawnHeight);
    int copies = 0;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column) {
            int mismatches = CanvasMismatches(canvas, 2 + column * width, 2 + row * height, width,
                                              height, [&](int x, int y) { return at(x, y); });
            bool expectCopy = row == 0 || column == 0;
            EXPECT_EQ(expectCopy, mismatches == 0) << "block " << column << "," << row;
            copies += mismatches == 0;
        }
    EXPECT_EQ(7, copies);
}

TEST_F(BitmapResource, StretchFillsTheRectangle) {
    kvtest::Canvas canvas(2 * width + 2, 2 * height + 2, kPaper);
    RECT rect = {1, 1, 1 + 2 * width, 1 + 2 * height};
    EXPECT_NE(0, Kx1DrawBitmapRes(canvas.dc(), module, L"btaob", &rect, 1, nullptr, nullptr,
                                  nullptr, 0, 0, 0));
    EXPECT_EQ(0, CanvasMismatches(canvas, 1, 1, 2 * width, 2 * height,
                                  [&](int x, int y) { return at(x / 2, y / 2); }));
    EXPECT_EQ(kPaper, canvas.pixel(0, 0));
}

TEST_F(BitmapResource, SingleCopyAndMissingResource) {
    kvtest::Canvas canvas(3 * width, 3 * height, kPaper);
    RECT rect = {0, 0, 3 * width, 3 * height};
    EXPECT_NE(0, Kx1DrawBitmapRes(canvas.dc(), module, L"btaob", &rect, 0, nullptr, nullptr,
                                  nullptr, 0, 0, 0));
    EXPECT_EQ(0, CanvasMismatches(canvas, 0, 0, width, height,
                                  [&](int x, int y) { return at(x, y); }));
    EXPECT_EQ(kPaper, canvas.pixel(width, 0));
    EXPECT_EQ(kPaper, canvas.pixel(0, height));

    canvas.fill(kPaper);
    int drawnWidth = -1;
    EXPECT_EQ(0, Kx1DrawBitmapRes(canvas.dc(), module, L"nosuchbitmap", &rect, 0, &drawnWidth,
                                  nullptr, nullptr, 1, 1, 0));
    EXPECT_EQ(kPaper, canvas.pixel(0, 0));
}

TEST_F(Transparent, PrintingDrawsThePictureAndTransparentPartsWhite) {
    RECT rect = {2, 3, 10, 11};
    EXPECT_EQ(1, Kx1PrintBm(canvas.dc(), spot, &rect, 0, 0, 0));
    EXPECT_EQ(0, CanvasMismatches(canvas, 2, 3, 8, 8, Spot));
    RECT second = {12, 12, 20, 20};
    EXPECT_EQ(1, Kx1PrintBmTransp(canvas.dc(), spot, &second, 0, 0, 0));
    EXPECT_EQ(0, CanvasMismatches(canvas, 12, 12, 8, 8, [](int x, int y) {
                  return InSpot(x, y) ? Spot(x, y) : kWhite;
              }));
    EXPECT_EQ(kPaper, canvas.pixel(11, 12));
}

}  // namespace

namespace {

// Colour i of the palettes below.
COLORREF paletteColour(int i) { return RGB(15 * i, 255 - 15 * i, 100); }

// A packed bottom-up DIB of 4 x 2 pixels, pixel (x, y) showing colour x + 4 * y (at 4 bits per
// pixel with the implied 16 colours, or at 8 bits with `used` colours listed).
std::string packedDib(int bitCount, int used) {
    BITMAPINFOHEADER info = {};
    info.biSize = sizeof(info);
    info.biWidth = 4;
    info.biHeight = 2;
    info.biPlanes = 1;
    info.biBitCount = static_cast<WORD>(bitCount);
    info.biClrUsed = used;
    int colours = used ? used : 1 << bitCount;
    std::string bytes(reinterpret_cast<const char*>(&info), sizeof(info));
    for (int i = 0; i < colours; ++i) {
        RGBQUAD quad = {GetBValue(paletteColour(i)), GetGValue(paletteColour(i)),
                        GetRValue(paletteColour(i)), 0};
        bytes.append(reinterpret_cast<const char*>(&quad), 4);
    }
    for (int y = 1; y >= 0; --y) {
        char row[4] = {};
        for (int x = 0; x < 4; ++x) {
            int index = x + 4 * y;
            if (bitCount == 8)
                row[x] = static_cast<char>(index);
            else
                row[x / 2] = static_cast<char>(row[x / 2] | (x % 2 ? index : index << 4));
        }
        bytes.append(row, 4);
    }
    return bytes;
}

TEST_F(BitmapResource, ColourTableLengthFollowsTheHeader) {
    // A copy of the sample resource module with two palette bitmaps added.
    wchar_t source[MAX_PATH];
    GetModuleFileNameW(kvtest::ResourceModule(), source, MAX_PATH);
    const wchar_t* copy = L"graphics_files\\palettes.dll";
    CreateDirectoryW(L"graphics_files", nullptr);
    ASSERT_TRUE(CopyFileW(source, copy, FALSE));
    HANDLE update = BeginUpdateResourceW(copy, FALSE);
    ASSERT_NE(nullptr, update);
    std::string fourBit = packedDib(4, 0), eightBit = packedDib(8, 8);
    UpdateResourceW(update, RT_BITMAP, L"FOURBIT", 0, &fourBit[0], static_cast<DWORD>(fourBit.size()));
    UpdateResourceW(update, RT_BITMAP, L"EIGHTBIT", 0, &eightBit[0], static_cast<DWORD>(eightBit.size()));
    ASSERT_TRUE(EndUpdateResourceW(update, FALSE));
    HMODULE palettes = LoadLibraryExW(copy, nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_NE(nullptr, palettes);
    for (const wchar_t* name : {L"FOURBIT", L"EIGHTBIT"}) {
        kvtest::Canvas canvas(6, 4, kPaper);
        RECT rect = {1, 1, 5, 3};
        EXPECT_NE(0, Kx1DrawBitmapRes(canvas.dc(), palettes, name, &rect, 0, nullptr, nullptr,
                                      nullptr, 0, 0, 0));
        EXPECT_EQ(0, CanvasMismatches(canvas, 1, 1, 4, 2,
                                      [](int x, int y) { return paletteColour(x + 4 * y); }))
            << testing::PrintToString(std::wstring(name));
    }
    FreeLibrary(palettes);
}

}  // namespace
