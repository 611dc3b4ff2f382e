// Small pictures, pixel comparisons and a fixture shared by the bitmap tests of this suite.
#pragma once
#include "kvtest.h"

namespace pictures {

using ColourAt = std::function<COLORREF(int, int)>;

const COLORREF kRed = RGB(255, 0, 0), kBlue = RGB(0, 0, 255), kBlack = 0, kWhite = 0xFFFFFF;
const COLORREF kMagenta = RGB(255, 0, 255), kPaper = RGB(1, 2, 3);  // paper: no picture uses it

// 8 x 8: green background, a red 4 x 4 square at (2, 2) with one blue pixel at (3, 3); the same
// on black, as a masked picture must be; and its mask, black on the square.
inline bool InSpot(int x, int y) { return x >= 2 && x < 6 && y >= 2 && y < 6; }
inline COLORREF Spot(int x, int y) {
    return x == 3 && y == 3 ? kBlue : InSpot(x, y) ? kRed : RGB(0, 255, 0);
}
inline COLORREF SpotOnBlack(int x, int y) { return InSpot(x, y) ? Spot(x, y) : kBlack; }
inline COLORREF SpotMaskColour(int x, int y) { return InSpot(x, y) ? kBlack : kWhite; }

// Number of pixels of the canvas area at (left, top), or of the bitmap, that differ from
// colourAt(x, y), with x and y relative to the area.
inline int CanvasMismatches(const kvtest::Canvas& canvas, int left, int top, int width,
                            int height, const ColourAt& colourAt) {
    int count = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) count += canvas.pixel(left + x, top + y) != colourAt(x, y);
    return count;
}
inline int Mismatches(HBITMAP bitmap, const ColourAt& colourAt) {
    int width = 0, height = 0, count = 0;
    std::vector<COLORREF> pixels = kvtest::BitmapPixels(bitmap, &width, &height);
    for (int i = 0; i < width * height; ++i) count += pixels[i] != colourAt(i % width, i / width);
    return count;
}

// Source bitmaps made through this fixture must come back unchanged and selectable (not left
// selected in a context, not deleted); they are deleted after the test.
class BitmapTest : public kvtest::KvTest {
protected:
    HBITMAP source(int width, int height, ColourAt colourAt) {
        return keep(kvtest::MakeBitmap(width, height, colourAt), colourAt);
    }
    HBITMAP keep(HBITMAP bitmap, ColourAt colourAt) {
        sources_.push_back({bitmap, colourAt});
        return bitmap;
    }
    HBITMAP spotMask() {
        WORD rows[8] = {0xFF, 0xFF, 0xC3, 0xC3, 0xC3, 0xC3, 0xFF, 0xFF};
        return keep(CreateBitmap(8, 8, 1, 1, rows), SpotMaskColour);
    }
    // Checks a bitmap made by the library, then deletes it.
    void expectPicture(HBITMAP made, const ColourAt& colourAt) {
        EXPECT_NE(nullptr, made);
        EXPECT_EQ(0, Mismatches(made, colourAt));
        DeleteObject(made);
    }
    void TearDown() override {
        for (const auto& s : sources_) {
            EXPECT_EQ(0, Mismatches(s.first, s.second)) << "source bitmap changed";
            HDC dc = CreateCompatibleDC(nullptr);
            HGDIOBJ previous = SelectObject(dc, s.first);
            EXPECT_NE(nullptr, previous) << "source bitmap left selected or deleted";
            SelectObject(dc, previous);
            DeleteDC(dc);
            DeleteObject(s.first);
        }
        KvTest::TearDown();
    }

private:
    std::vector<std::pair<HBITMAP, ColourAt>> sources_;
};

}  // namespace pictures
