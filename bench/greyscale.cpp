// Greyscale and disabled conversion of square bitmaps, per pixel and as a multiple of one
// BitBlt of the same size between two memory contexts, measured in the same run.
#include "bench.h"
#include "kvkit_bitmap.h"

namespace {

HBITMAP makePicture(int side) {
    HDC screen = GetDC(nullptr);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, side, side);
    ReleaseDC(nullptr, screen);
    HDC dc = CreateCompatibleDC(nullptr);
    HGDIOBJ old = SelectObject(dc, bitmap);
    // Background colour at (0, 0), a square of a few colours in the middle.
    RECT whole = {0, 0, side, side};
    HBRUSH background = CreateSolidBrush(RGB(192, 192, 192));
    FillRect(dc, &whole, background);
    DeleteObject(background);
    for (int y = side / 4; y < side * 3 / 4; ++y)
        for (int x = side / 4; x < side * 3 / 4; ++x)
            SetPixel(dc, x, y, RGB((x * 37) & 0xFF, (y * 11) & 0xFF, ((x + y) * 5) & 0xFF));
    SelectObject(dc, old);
    DeleteDC(dc);
    return bitmap;
}

void measure(int side, int repeat) {
    HBITMAP picture = makePicture(side);
    HBITMAP target = makePicture(side);
    HDC source = CreateCompatibleDC(nullptr), destination = CreateCompatibleDC(nullptr);
    HGDIOBJ oldSource = SelectObject(source, picture);
    HGDIOBJ oldDestination = SelectObject(destination, target);
    double blit = bench::SecondsPerCall(
        [&] { BitBlt(destination, 0, 0, side, side, source, 0, 0, SRCCOPY); GdiFlush(); },
        repeat * 20, 9);
    SelectObject(source, oldSource);
    SelectObject(destination, oldDestination);
    DeleteDC(source);
    DeleteDC(destination);
    DeleteObject(target);

    struct Case {
        const char* name;
        HBITMAP (*convert)(HBITMAP);
    } cases[] = {
        {"CreateGreyscaleBitmap", [](HBITMAP b) { return CreateGreyscaleBitmap(b, 0); }},
        {"CreateGreyscaleBitmap keep background", [](HBITMAP b) { return CreateGreyscaleBitmap(b, 1); }},
        {"CreateAdjustedGreyscaleBitmap 200/60", [](HBITMAP b) {
             return CreateAdjustedGreyscaleBitmap(b, 1, 200, 60); }},
        {"CreateDisabledBitmapHg", [](HBITMAP b) { return CreateDisabledBitmapHg(b, 0, 0); }},
    };
    double pixels = double(side) * side;
    printf("\n%dx%d (BitBlt of the same size: %.2f us, %.4f us per pixel)\n", side, side,
           blit * 1e6, blit * 1e6 / pixels);
    for (const Case& c : cases) {
        DeleteObject(c.convert(picture));  // warm-up: first calls pay for GDI set-up
        double seconds =
            bench::SecondsPerCall([&] { DeleteObject(c.convert(picture)); }, repeat, 9);
        printf("  %-40s %10.4f us per pixel %12.1fx BitBlt\n", c.name, seconds * 1e6 / pixels,
               seconds / blit);
    }
    fflush(stdout);
    DeleteObject(picture);
}

}  // namespace

int main() {
    printf("Greyscale and disabled conversion (best of 9 rounds)\n");
    measure(16, 200);
    measure(32, 50);
    measure(256, 2);
    return 0;
}
