// Colour and bitmap toolkit: gradients, button faces, transparent drawing by key and by mask,
// and one tool picture in greyscale, level-adjusted, disabled and recoloured forms.
#include "gallery/gallery.h"
#include <algorithm>
#include <functional>
#include "kvkit_bitmap.h"
#include "kvkit_colour.h"
#include "kvkit_core.h"
#include "kvkit_draw.h"

namespace {

const int kScale = 3;

void label(HDC dc, int x, int y, const wchar_t* text) {
    TextOutW(dc, x, y, text, lstrlenW(text));
}

// A checked background, so that transparent parts of a picture show.
void checker(HDC dc, int x, int y, int width, int height) {
    HBRUSH light = CreateSolidBrush(RGB(255, 255, 255));
    HBRUSH dark = CreateSolidBrush(RGB(200, 210, 230));
    for (int row = 0; row * 6 < height; ++row)
        for (int column = 0; column * 6 < width; ++column) {
            RECT cell = {x + column * 6, y + row * 6, x + std::min(width, column * 6 + 6),
                         y + std::min(height, row * 6 + 6)};
            FillRect(dc, &cell, (row + column) % 2 ? dark : light);
        }
    DeleteObject(light);
    DeleteObject(dark);
}

// Paints a 16 x 16 picture through `paint` into an off-screen bitmap with a checked background
// and shows it three times enlarged at (x, y).
void showEnlarged(HDC dc, int x, int y, const std::function<void(HDC)>& paint) {
    HBITMAP offscreen = CreateCompatibleBitmap(dc, 16, 16);
    HDC memory = CreateCompatibleDC(dc);
    HGDIOBJ old = SelectObject(memory, offscreen);
    checker(memory, 0, 0, 16, 16);
    paint(memory);
    StretchBlt(dc, x, y, 16 * kScale, 16 * kScale, memory, 0, 0, 16, 16, SRCCOPY);
    SelectObject(memory, old);
    DeleteDC(memory);
    DeleteObject(offscreen);
}

void showBitmap(HDC dc, int x, int y, HBITMAP bitmap) {
    showEnlarged(dc, x, y, [bitmap](HDC memory) {
        HDC source = CreateCompatibleDC(memory);
        HGDIOBJ old = SelectObject(source, bitmap);
        BitBlt(memory, 0, 0, 16, 16, source, 0, 0, SRCCOPY);
        SelectObject(source, old);
        DeleteDC(source);
    });
}

void paintGradients(HDC dc, const RECT&) {
    SetBkMode(dc, TRANSPARENT);
    HGDIOBJ oldFont = SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
    label(dc, 8, 4, L"Kx1GradientFill: given end, vertical, autoEnd (+50, wraps)");
    RECT plain = {8, 22, 148, 62}, vertical = {156, 22, 216, 62}, wrapped = {224, 22, 364, 62};
    Kx1GradientFill(dc, RGB(0, 70, 140), RGB(170, 220, 255), 0, 0, &plain);
    Kx1GradientFill(dc, RGB(255, 255, 255), RGB(80, 120, 60), 0, 1, &vertical);
    Kx1GradientFill(dc, RGB(220, 100, 10), 0, 1, 0, &wrapped);

    label(dc, 8, 70, L"Highlight: knee after 40 % at half strength, reversed; caption");
    RECT knee = {8, 88, 148, 128}, reversed = {156, 88, 296, 128}, caption = {304, 88, 364, 128};
    Kx1GradientFill_AsHighlight(dc, RGB(60, 90, 140), RGB(200, 220, 250), 0, 1, &knee, 40.0, 50.0);
    Kx1GradientFill_AsHighlightEx(dc, RGB(60, 90, 140), RGB(200, 220, 250), 0, 1, &reversed, 40.0,
                                  50.0, true);
    Kx1GradientFill_AsHighlight(dc, RGB(60, 60, 60), 0, 1, 0, &caption, 30.0, 50.0);

    label(dc, 8, 136, L"Four corners, diagonal falling and rising");
    RECT corners = {8, 154, 148, 214}, falling = {156, 154, 256, 214}, rising = {264, 154, 364, 214};
    Kx1GradientFillBiDirectional(dc, &corners, RGB(255, 0, 0), RGB(255, 255, 0), RGB(0, 160, 255),
                                 RGB(0, 200, 80), 0);
    Kx1GradientFillDiagonal(dc, &falling, RGB(250, 250, 255), RGB(40, 40, 120), 0);
    Kx1GradientFillDiagonal(dc, &rising, RGB(250, 240, 200), RGB(160, 60, 0), 1);

    label(dc, 8, 222, L"Kx1DrawBtnHg: raised (state 0) and sunken (state 1)");
    Kx1DrawBtnHg(dc, {8, 240, 98, 266}, 0, 1);
    Kx1DrawBtnHg(dc, {106, 240, 196, 266}, 1, 0);
    SelectObject(dc, oldFont);
}

void paintPictures(HDC dc, const RECT&) {
    SetBkMode(dc, TRANSPARENT);
    HGDIOBJ oldFont = SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
    HBITMAP tool = KxGetToolBitmap(2001);
    COLORREF background = Kx1GetBmBkColor(tool);

    struct Shown {
        const wchar_t* name;
        HBITMAP bitmap;
    } shown[] = {
        {L"original", HBitmapDuplicate(tool)},
        {L"greyscale", CreateGreyscaleBitmap(tool, 1)},
        {L"levels", CreateAdjustedGreyscaleBitmap(tool, 1, 200, 90)},
        {L"disabled", CreateDisabledBitmapHg(tool, 0, 0)},
        {L"recoloured", BitmapChangeBackgroundColor(tool, RGB(255, 230, 120), nullptr)},
    };
    label(dc, 8, 4, L"One tool picture (x3) and what the toolkit derives from it");
    for (int i = 0; i < 5; ++i) {
        showBitmap(dc, 8 + i * 72, 22, shown[i].bitmap);
        label(dc, 8 + i * 72, 74, shown[i].name);
        DeleteObject(shown[i].bitmap);
    }

    label(dc, 8, 98, L"Drawn transparently on a checked ground (x3)");
    showEnlarged(dc, 8, 116, [&](HDC memory) { DrawTranspBitmap(memory, tool, 0, 0, 0, false); });
    HIMAGELIST list = ImageList_Create(16, 16, ILC_COLOR24 | ILC_MASK, 1, 1);
    ProtectedImageList_AddMasked(list, tool, background);
    HBITMAP mask = nullptr;
    HBITMAP image = ExtractImageListImageEx(list, 0, &mask);
    showEnlarged(dc, 80, 116, [&](HDC memory) { DrawTransparentByMask(memory, image, mask, 0, 0); });
    showEnlarged(dc, 152, 116, [&](HDC memory) {
        ImageList_DrawGrayedImage(list, 0, 230, 60, memory, 0, 0);
    });
    checker(dc, 224, 116, 48, 48);
    RECT stretched = {224, 116, 272, 164};
    Kx1DrawTransShrBitm(dc, tool, &stretched);
    label(dc, 8, 168, L"key");
    label(dc, 80, 168, L"mask");
    label(dc, 152, 168, L"greyed list");
    label(dc, 224, 168, L"stretched");
    DeleteObject(image);
    DeleteObject(mask);
    ImageList_Destroy(list);
    DeleteObject(tool);

    label(dc, 8, 192, L"Brightness -60..+60; blends red to green");
    COLORREF base = RGB(40, 110, 190);
    for (int i = 0; i < 7; ++i) {
        HBRUSH brush = CreateSolidBrush(AdjustColorBrightness(base, (i - 3) * 20));
        RECT swatch = {8 + i * 26, 210, 32 + i * 26, 234};
        FillRect(dc, &swatch, brush);
        DeleteObject(brush);
        brush = CreateSolidBrush(BlendColors(RGB(200, 30, 30), RGB(30, 160, 60), i / 6.0));
        RECT blend = {200 + i * 24, 210, 222 + i * 24, 234};
        FillRect(dc, &blend, brush);
        DeleteObject(brush);
    }
    SelectObject(dc, oldFont);
}

void build(HWND page) {
    CreatePaintedPanel(page, 10, 10, 372, 276, paintGradients);
    CreatePaintedPanel(page, 392, 10, 372, 276, paintPictures);
}

const bool registered = RegisterGalleryPage(
    {L"02-colour", 774, 296, build,
     L"Colour and bitmap toolkit: gradients, button faces, transparent drawing by key and by "
     L"mask, and one tool picture in greyscale, level-adjusted, disabled and recoloured forms."});

}  // namespace
