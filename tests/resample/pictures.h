// Pictures for the resampling tests: owned bitmaps, bottom-up DIB sections of a chosen depth
// whose bytes the tests write directly, and raw 5-5-5 read-back.
#pragma once
#include "kvtest.h"
#include <vector>

namespace resample_test {

// Deletes the bitmap it holds, unless released.
class OwnedBitmap {
public:
    explicit OwnedBitmap(HBITMAP bitmap = nullptr) : bitmap_(bitmap) {}
    ~OwnedBitmap() {
        if (bitmap_) DeleteObject(bitmap_);
    }
    OwnedBitmap(const OwnedBitmap&) = delete;
    OwnedBitmap& operator=(const OwnedBitmap&) = delete;
    HBITMAP get() const { return bitmap_; }
    operator HBITMAP() const { return bitmap_; }
    HBITMAP release() {
        HBITMAP bitmap = bitmap_;
        bitmap_ = nullptr;
        return bitmap;
    }
    void reset(HBITMAP bitmap) {
        if (bitmap_) DeleteObject(bitmap_);
        bitmap_ = bitmap;
    }

private:
    HBITMAP bitmap_;
};

// A bottom-up DIB section; picture row y lives in memory row height - y - 1.
struct Dib {
    OwnedBitmap bitmap;
    BYTE* bits = nullptr;
    int width = 0, height = 0, bitsPerPixel = 0, stride = 0;

    BYTE* at(int x, int y) const { return bits + (height - y - 1) * stride + x * bitsPerPixel / 8; }
    void set24(int x, int y, COLORREF colour) const {
        BYTE* p = at(x, y);
        p[0] = GetBValue(colour);
        p[1] = GetGValue(colour);
        p[2] = GetRValue(colour);
    }
    void set16(int x, int y, WORD pixel) const { *reinterpret_cast<WORD*>(at(x, y)) = pixel; }
    int size() const { return stride * height; }
};

inline void MakeDib(Dib& dib, int width, int height, int bitsPerPixel) {
    std::vector<BYTE> header(sizeof(BITMAPINFOHEADER) + 256 * sizeof(RGBQUAD));
    auto* info = reinterpret_cast<BITMAPINFO*>(header.data());
    info->bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info->bmiHeader.biWidth = width;
    info->bmiHeader.biHeight = height;
    info->bmiHeader.biPlanes = 1;
    info->bmiHeader.biBitCount = WORD(bitsPerPixel);
    info->bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    dib.bitmap.reset(CreateDIBSection(nullptr, info, DIB_RGB_COLORS, &bits, nullptr, 0));
    dib.bits = static_cast<BYTE*>(bits);
    dib.width = width;
    dib.height = height;
    dib.bitsPerPixel = bitsPerPixel;
    dib.stride = (width * bitsPerPixel + 31) / 32 * 4;
}

// Pixels of any bitmap read back as 5-5-5 values, top-down, row-major.
inline std::vector<WORD> Pixels555(HBITMAP bitmap) {
    BITMAP description = {};
    GetObjectW(bitmap, sizeof(description), &description);
    int stride = (description.bmWidth * 16 + 31) / 32 * 4;
    std::vector<BYTE> rows(static_cast<size_t>(stride) * description.bmHeight);
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = description.bmWidth;
    info.bmiHeader.biHeight = -description.bmHeight;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 16;
    info.bmiHeader.biCompression = BI_RGB;
    HDC screen = GetDC(nullptr);
    GetDIBits(screen, bitmap, 0, description.bmHeight, rows.data(), &info, DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
    std::vector<WORD> pixels;
    for (int y = 0; y < description.bmHeight; ++y)
        for (int x = 0; x < description.bmWidth; ++x)
            pixels.push_back(*reinterpret_cast<WORD*>(&rows[y * stride + x * 2]));
    return pixels;
}

inline SIZE BitmapSize(HBITMAP bitmap) {
    BITMAP description = {};
    GetObjectW(bitmap, sizeof(description), &description);
    return {description.bmWidth, description.bmHeight};
}

}  // namespace resample_test
