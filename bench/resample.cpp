// Resizing a 256 x 256 picture to 128 x 128 and to 512 x 512: ResizeBitmap (a GDI call per
// pixel), the 24- and 16-bit DIB variants, against the system's StretchBlt in HALFTONE mode,
// which includes making the result bitmap just as the library functions do.
#include "bench.h"
#include "kvkit_resample.h"

namespace {

const int kSource = 256;

HBITMAP makeSection(int bitsPerPixel) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = kSource;
    info.bmiHeader.biHeight = kSource;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = WORD(bitsPerPixel);
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    HBITMAP section = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    HDC dc = CreateCompatibleDC(nullptr);
    HGDIOBJ old = SelectObject(dc, section);
    for (int y = 0; y < kSource; y += 8)
        for (int x = 0; x < kSource; x += 8) {
            RECT cell = {x, y, x + 8, y + 8};
            HBRUSH brush = CreateSolidBrush(RGB(x, y, (x ^ y) & 0xFF));
            FillRect(dc, &cell, brush);
            DeleteObject(brush);
        }
    SelectObject(dc, old);
    DeleteDC(dc);
    return section;
}

HBITMAP halftoneStretch(HBITMAP source, int size) {
    HDC screen = GetDC(nullptr);
    HBITMAP result = CreateCompatibleBitmap(screen, size, size);
    ReleaseDC(nullptr, screen);
    HDC from = CreateCompatibleDC(nullptr), to = CreateCompatibleDC(nullptr);
    HGDIOBJ oldFrom = SelectObject(from, source), oldTo = SelectObject(to, result);
    SetStretchBltMode(to, HALFTONE);
    SetBrushOrgEx(to, 0, 0, nullptr);
    StretchBlt(to, 0, 0, size, size, from, 0, 0, kSource, kSource, SRCCOPY);
    SelectObject(from, oldFrom);
    SelectObject(to, oldTo);
    DeleteDC(from);
    DeleteDC(to);
    return result;
}

}  // namespace

int main() {
    HBITMAP bits24 = makeSection(24);
    HBITMAP bits16 = makeSection(16);
    for (int size : {128, 512}) {
        printf("256 x 256 -> %d x %d\n", size, size);
        double baseline = bench::SecondsPerCall(
            [&] { DeleteObject(halftoneStretch(bits24, size)); }, 20);
        bench::Report("StretchBlt HALFTONE (baseline)", baseline, baseline);
        double perPixel = bench::SecondsPerCall(
            [&] { DeleteObject(ResizeBitmap(bits24, size, size, 0, 0, 0)); }, 1, 3);
        bench::Report("ResizeBitmap", perPixel, baseline);
        double dib24 = bench::SecondsPerCall([&] {
            DeleteObject(BlendedResizeBitmap_DI_24b(nullptr, bits24, size, size, 0, 0, 0, 1));
        }, 10);
        bench::Report("BlendedResizeBitmap_DI_24b", dib24, baseline);
        double dib16 = bench::SecondsPerCall([&] {
            DeleteObject(BlendedResizeBitmap_DI_16b(nullptr, bits16, size, size, 0, 0, 0, 1));
        }, 10);
        bench::Report("BlendedResizeBitmap_DI_16b", dib16, baseline);
    }
    DeleteObject(bits24);
    DeleteObject(bits16);
    return 0;
}
