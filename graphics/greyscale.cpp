// Copies, greyscale, level-adjusted, disabled and recoloured versions of bitmaps. Colour
// transformations go pixel by pixel through GetPixel and SetPixel; the pictures are icon-sized.
#include "include/kvkit_bitmap.h"
#include "include/kvkit_colour.h"
#include "include/kvkit_draw.h"
#include "graphics/memory_dc.h"
#include <math.h>

namespace {

// Raster operation "PSDPxax": the brush where the source is black, the destination where it is
// white.
const DWORD kBrushWhereBlack = 0xB8074A;
const COLORREF kBlack = RGB(0, 0, 0);
const COLORREF kWhite = RGB(255, 255, 255);

// Maps a grey 0..255 onto blackLevel..whiteLevel. Both levels zero mean no adjustment; a white
// level of zero with a black level still applies (everything ends at 0 at the top).
struct GreyLevels {
    int white;
    int black;

    COLORREF greyOf(COLORREF colour) const {
        COLORREF grey = GreyscaleCOLORREF(colour);
        if (!white && !black) return grey;
        int level = GetRValue(grey);
        if (black) level = level + black - static_cast<int>(floor(level / 255.0 * black));
        if (white != 255)
            level = level + static_cast<int>(floor((255 - level) / 255.0 * (255 - white))) - 255 +
                    white;
        level &= 0xFF;
        return RGB(level, level, level);
    }
};

// Every pixel becomes its grey, visiting rows top to bottom. With keepBackground, pixels of the
// background colour (pixel (0, 0)) are copied; a one-entry cache of the last source colour and
// its output decides, primed with the background.
void greyEveryPixel(HDC source, HDC target, int width, int height, bool keepBackground,
                    const GreyLevels& levels) {
    COLORREF background = GetPixel(source, 0, 0);
    COLORREF cachedSource = background, cachedOutput = background;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            COLORREF colour = GetPixel(source, x, y);
            COLORREF output;
            if (!keepBackground) {
                output = levels.greyOf(colour);
            } else if (colour == cachedSource) {
                output = cachedOutput;
            } else {
                output = colour == background ? colour : levels.greyOf(colour);
                cachedSource = colour;
                cachedOutput = output;
            }
            SetPixel(target, x, y, output);
        }
}

// Greys only where the mask is black; a black source pixel there takes the grey written last
// (black before the first), so dark outlines inside the picture do not punch holes.
void greyInsideMask(HDC source, HDC mask, HDC target, int width, int height,
                    const GreyLevels& levels) {
    BitBlt(target, 0, 0, width, height, source, 0, 0, SRCCOPY);
    COLORREF lastGrey = kBlack;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            if (GetPixel(mask, x, y) != kBlack) continue;
            COLORREF colour = GetPixel(source, x, y);
            if (colour != kBlack) lastGrey = levels.greyOf(colour);
            SetPixel(target, x, y, lastGrey);
        }
}

HBITMAP greyCopy(HBITMAP bitmap, bool keepBackground, const GreyLevels& levels, HBITMAP mask) {
    int width, height;
    if (!BitmapSize(bitmap, &width, &height)) return nullptr;
    MemoryDC source(nullptr, bitmap), maskDC(nullptr, mask);
    if (!source.ok() || (mask && !maskDC.ok())) return nullptr;
    return PaintNewBitmap(width, height, [&](HDC target) {
        if (mask)
            greyInsideMask(source.dc(), maskDC.dc(), target, width, height, levels);
        else
            greyEveryPixel(source.dc(), target, width, height, keepBackground, levels);
        return true;
    });
}

// Paints `brushColour` onto the target wherever the monochrome mask is black.
void paintWhereBlack(HDC target, HDC mask, int width, int height, COLORREF brushColour) {
    HBRUSH brush = CreateSolidBrush(brushColour);
    HGDIOBJ previous = SelectObject(target, brush);
    BitBlt(target, 0, 0, width, height, mask, 0, 0, kBrushWhereBlack);
    SelectObject(target, previous);
    DeleteObject(brush);
}

}  // namespace

COLORREF KVKIT_CALL Kx1GetBmBkColor(HBITMAP bitmap) {
    MemoryDC source(nullptr, bitmap);
    return GetPixel(source.dc(), 0, 0);
}

HBITMAP KVKIT_CALL HBitmapDuplicate(HBITMAP bitmap) {
    int width, height;
    if (!bitmap || !BitmapSize(bitmap, &width, &height)) return nullptr;
    MemoryDC source(nullptr, bitmap);
    if (!source.ok()) return nullptr;
    return PaintNewBitmap(width, height, [&](HDC target) {
        if (GetDeviceCaps(target, RASTERCAPS) & RC_BITBLT) {
            BitBlt(target, 0, 0, width, height, source.dc(), 0, 0, SRCCOPY);
        } else {
            for (int x = 0; x < width; ++x)
                for (int y = 0; y < height; ++y)
                    SetPixel(target, x, y, GetPixel(source.dc(), x, y));
        }
        return true;
    });
}

HBITMAP KVKIT_CALL CreateGreyscaleBitmap(HBITMAP bitmap, int keepBackground) {
    return greyCopy(bitmap, keepBackground != 0, GreyLevels{0, 0}, nullptr);
}

HBITMAP KVKIT_CALL CreateAdjustedGreyscaleBitmap(HBITMAP bitmap, int keepBackground,
                                                 int whiteLevel, int blackLevel) {
    return CreateAdjustedGreyscaleBitmapEx(bitmap, keepBackground, whiteLevel, blackLevel,
                                           nullptr);
}

HBITMAP KVKIT_CALL CreateAdjustedGreyscaleBitmapEx(HBITMAP bitmap, int keepBackground,
                                                   int whiteLevel, int blackLevel,
                                                   HBITMAP* mask) {
    if (!bitmap) return nullptr;
    return greyCopy(bitmap, keepBackground != 0, GreyLevels{whiteLevel, blackLevel},
                    mask ? *mask : nullptr);
}

HBITMAP KVKIT_CALL CreateDisabledBitmapHg(HBITMAP bitmap, int useColour, COLORREF colour) {
    int width, height;
    if (!BitmapSize(bitmap, &width, &height)) return nullptr;
    // Mask A is black where a background pixel has the picture down and to the right of it (the
    // shadow); mask B is black where a picture pixel has background there (the highlight).
    HBITMAP shadowMask = CreateBitmap(width, height, 1, 1, nullptr);
    HBITMAP highlightMask = CreateBitmap(width, height, 1, 1, nullptr);
    HBITMAP output = nullptr;
    {
        MemoryDC source(nullptr, bitmap), shadow(nullptr, shadowMask),
            highlight(nullptr, highlightMask);
        if (source.ok() && shadow.ok() && highlight.ok()) {
            // Copies into the monochrome masks turn the background white and the picture black.
            SetBkColor(source.dc(), GetPixel(source.dc(), 0, 0));
            PatBlt(shadow.dc(), 0, 0, width, height, WHITENESS);
            BitBlt(shadow.dc(), 0, 0, width - 1, height - 1, source.dc(), 1, 1, SRCCOPY);
            BitBlt(shadow.dc(), 0, 0, width, height, source.dc(), 0, 0, MERGEPAINT);
            BitBlt(highlight.dc(), 0, 0, width, height, source.dc(), 0, 0, SRCCOPY);
            BitBlt(highlight.dc(), 0, 0, width - 1, height - 1, source.dc(), 1, 1, MERGEPAINT);
            output = PaintNewBitmap(width, height, [&](HDC target) {
                HBRUSH face = CreateSolidBrush(useColour ? colour : GetSysColor(COLOR_BTNFACE));
                HGDIOBJ previous = SelectObject(target, face);
                PatBlt(target, 0, 0, width, height, PATCOPY);
                SelectObject(target, previous);
                DeleteObject(face);
                SetBkColor(target, kWhite);
                SetTextColor(target, kBlack);
                paintWhereBlack(target, highlight.dc(), width, height,
                                GetSysColor(COLOR_BTNHIGHLIGHT));
                paintWhereBlack(target, shadow.dc(), width, height, GetSysColor(COLOR_BTNSHADOW));
                return true;
            });
        }
    }
    if (shadowMask) DeleteObject(shadowMask);
    if (highlightMask) DeleteObject(highlightMask);
    return output;
}

HBITMAP KVKIT_CALL BitmapChangeBackgroundColor(HBITMAP bitmap, COLORREF background,
                                               HBITMAP mask) {
    int width, height;
    if (!BitmapSize(bitmap, &width, &height)) return nullptr;
    return PaintNewBitmap(width, height, [&](HDC target) {
        FillWithColour(target, width, height, background);
        if (mask)
            DrawTransparentByMask(target, bitmap, mask, 0, 0);
        else
            DrawTranspBitmap(target, bitmap, 0, 0, 0, false);
        return true;
    });
}
