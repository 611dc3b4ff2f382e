// Small pictures and checks shared by the bitmap tests of this suite.
#pragma once
#include "kvtest.h"

namespace pictures {

const COLORREF kGreen = RGB(0, 255, 0);
const COLORREF kRed = RGB(255, 0, 0);
const COLORREF kBlue = RGB(0, 0, 255);
const COLORREF kBlack = RGB(0, 0, 0);
const COLORREF kWhite = RGB(255, 255, 255);
const COLORREF kPaper = RGB(1, 2, 3);  // canvas colour that no picture uses

// 8 x 8: green background, a red 4 x 4 square at (2, 2) with one blue pixel at (3, 3).
inline COLORREF Spot(int x, int y) {
    if (x == 3 && y == 3) return kBlue;
    return x >= 2 && x < 6 && y >= 2 && y < 6 ? kRed : kGreen;
}
inline bool InSpot(int x, int y) { return x >= 2 && x < 6 && y >= 2 && y < 6; }

// A monochrome mask of the spot: black on the square, white around it.
inline HBITMAP SpotMask() {
    WORD rows[8];
    for (int y = 0; y < 8; ++y) rows[y] = y >= 2 && y < 6 ? 0xC3 : 0xFF;
    return CreateBitmap(8, 8, 1, 1, rows);
}

// True when the bitmap can still be selected into a new memory context (not left selected
// elsewhere, not deleted).
inline bool IsSelectable(HBITMAP bitmap) {
    HDC dc = CreateCompatibleDC(nullptr);
    HGDIOBJ previous = SelectObject(dc, bitmap);
    if (previous) SelectObject(dc, previous);
    DeleteDC(dc);
    return previous != nullptr;
}

// Number of pixels of the bitmap that differ from colourAt(x, y).
template <typename ColourAt>
int Mismatches(HBITMAP bitmap, ColourAt colourAt) {
    int width = 0, height = 0;
    std::vector<COLORREF> pixels = kvtest::BitmapPixels(bitmap, &width, &height);
    int count = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) count += pixels[y * width + x] != colourAt(x, y);
    return count;
}

// Number of pixels of the canvas area (left, top, width x height) that differ from
// colourAt(x, y), with x and y relative to the area.
template <typename ColourAt>
int CanvasMismatches(const kvtest::Canvas& canvas, int left, int top, int width, int height,
                     ColourAt colourAt) {
    int count = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            count += canvas.pixel(left + x, top + y) != colourAt(x, y);
    return count;
}

}  // namespace pictures
