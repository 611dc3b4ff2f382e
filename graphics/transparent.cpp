// Transparent drawing of bitmaps by key colour or by mask, tiled and resource bitmaps, and
// printing of bitmaps through the kvbase print functions.
#include "include/kvkit_draw.h"
#include "graphics/memory_dc.h"
#include "kvbase.h"

namespace {

// The classic way to draw with a key colour where TransparentBlt is not available: cut the
// picture's shape out of the destination with a monochrome mask, clear the background of the
// picture with the inverse mask, and combine the two. The picture is restored afterwards.
void drawThroughMasks(HDC dc, HBITMAP bitmap, int x, int y, COLORREF key, bool useKey) {
    int width, height;
    if (!BitmapSize(bitmap, &width, &height)) return;
    MemoryDC picture(dc, bitmap);
    if (!picture.ok()) return;
    SetMapMode(picture.dc(), GetMapMode(dc));
    POINT size = {width, height};
    DPtoLP(picture.dc(), &size, 1);
    if (!useKey) key = GetPixel(picture.dc(), 0, 0);

    HBITMAP saved = CreateCompatibleBitmap(dc, size.x, size.y);
    HBITMAP mask = CreateBitmap(size.x, size.y, 1, 1, nullptr);
    HBITMAP inverse = CreateBitmap(size.x, size.y, 1, 1, nullptr);
    HBITMAP offscreen = CreateCompatibleBitmap(dc, size.x, size.y);
    if (saved && mask && inverse && offscreen) {
        MemoryDC savedDC(dc, saved), maskDC(dc, mask), inverseDC(dc, inverse),
            offscreenDC(dc, offscreen);
        BitBlt(savedDC.dc(), 0, 0, size.x, size.y, picture.dc(), 0, 0, SRCCOPY);
        COLORREF oldBackground = SetBkColor(picture.dc(), key);
        BitBlt(maskDC.dc(), 0, 0, size.x, size.y, picture.dc(), 0, 0, SRCCOPY);
        SetBkColor(picture.dc(), oldBackground);
        BitBlt(inverseDC.dc(), 0, 0, size.x, size.y, maskDC.dc(), 0, 0, NOTSRCCOPY);
        BitBlt(offscreenDC.dc(), 0, 0, size.x, size.y, dc, x, y, SRCCOPY);
        BitBlt(offscreenDC.dc(), 0, 0, size.x, size.y, maskDC.dc(), 0, 0, SRCAND);
        BitBlt(picture.dc(), 0, 0, size.x, size.y, inverseDC.dc(), 0, 0, SRCAND);
        BitBlt(offscreenDC.dc(), 0, 0, size.x, size.y, picture.dc(), 0, 0, SRCPAINT);
        BitBlt(dc, x, y, size.x, size.y, offscreenDC.dc(), 0, 0, SRCCOPY);
        BitBlt(picture.dc(), 0, 0, size.x, size.y, savedDC.dc(), 0, 0, SRCCOPY);
    }
    if (saved) DeleteObject(saved);
    if (mask) DeleteObject(mask);
    if (inverse) DeleteObject(inverse);
    if (offscreen) DeleteObject(offscreen);
}

// Copies the bitmap at its own size to (x, y).
BOOL blitWhole(HDC dc, int x, int y, HDC source, int width, int height) {
    return BitBlt(dc, x, y, width, height, source, 0, 0, SRCCOPY);
}

}  // namespace

int KVKIT_CALL DrawTranspBitmapEx(HDC dc, HBITMAP bitmap, int x, int y, COLORREF key, int unused,
                                  bool useKey) {
    int width, height;
    if (!BitmapSize(bitmap, &width, &height)) return 1;
    MemoryDC source(dc, bitmap);
    if (!source.ok()) return 1;
    SetMapMode(source.dc(), GetMapMode(dc));
    POINT size = {width, height};
    DPtoLP(source.dc(), &size, 1);
    if (!useKey) key = GetPixel(source.dc(), 0, 0);
    TransparentBlt(dc, x, y, size.x, size.y, source.dc(), 0, 0, size.x, size.y, key);
    return 1;
}

void KVKIT_CALL DrawTranspBitmap(HDC dc, HBITMAP bitmap, int x, int y, COLORREF key, bool useKey) {
    if (!DrawTranspBitmapEx(dc, bitmap, x, y, key, 0, useKey))
        drawThroughMasks(dc, bitmap, x, y, key, useKey);
}

void KVKIT_CALL DrawTransparentByMask(HDC dc, HBITMAP image, HBITMAP mask, int x, int y) {
    int width, height;
    if (!BitmapSize(image, &width, &height)) return;
    HBITMAP offscreen = CreateCompatibleBitmap(dc, width, height);
    if (!offscreen) return;
    {
        MemoryDC offscreenDC(dc, offscreen), imageDC(dc, image), maskDC(dc, mask);
        if (offscreenDC.ok() && imageDC.ok() && maskDC.ok()) {
            BitBlt(offscreenDC.dc(), 0, 0, width, height, dc, x, y, SRCCOPY);
            BitBlt(offscreenDC.dc(), 0, 0, width, height, maskDC.dc(), 0, 0, SRCAND);
            BitBlt(offscreenDC.dc(), 0, 0, width, height, imageDC.dc(), 0, 0, SRCPAINT);
            BitBlt(dc, x, y, width, height, offscreenDC.dc(), 0, 0, SRCCOPY);
        }
    }
    DeleteObject(offscreen);
}

int KVKIT_CALL Kx1DrawTransShrBitm(HDC dc, HBITMAP bitmap, RECT* rect) {
    int width, height;
    if (!rect || !BitmapSize(bitmap, &width, &height)) return 0;
    int targetWidth = rect->right - rect->left, targetHeight = rect->bottom - rect->top;
    HBITMAP stretched = CreateCompatibleBitmap(dc, targetWidth, targetHeight);
    if (!stretched) return 0;
    int result = 0;
    {
        MemoryDC source(dc, bitmap), target(dc, stretched);
        if (source.ok() && target.ok())
            result = StretchBlt(target.dc(), 0, 0, targetWidth, targetHeight, source.dc(), 0, 0,
                                width, height, SRCCOPY);
    }
    if (result) DrawTranspBitmap(dc, stretched, rect->left, rect->top, 0, false);
    DeleteObject(stretched);
    return result;
}

int KVKIT_CALL Kx1PrintBm(HDC dc, HBITMAP bitmap, RECT* rect, int keepAspect, int alignRight,
                          int alignBottom) {
    HGLOBAL dib = BitmapToDIBPrint(bitmap);
    if (dib) {
        DIBToBitmapRect(dc, dib, rect, keepAspect, alignRight, alignBottom);
        GlobalFree(dib);
    }
    return 1;
}

int KVKIT_CALL Kx1PrintBmTransp(HDC dc, HBITMAP bitmap, RECT* rect, int keepAspect,
                                int alignRight, int alignBottom) {
    int width, height;
    if (!BitmapSize(bitmap, &width, &height)) return 1;
    // The copy is made for the screen, not for the printer, because the print functions
    // convert it through the screen.
    HBITMAP onWhite = CreateScreenBitmap(width, height);
    if (!onWhite) return 1;
    {
        MemoryDC canvas(nullptr, onWhite);
        RECT whole = {0, 0, width, height};
        FillRect(canvas.dc(), &whole, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
        DrawTranspBitmap(canvas.dc(), bitmap, 0, 0, 0, false);
    }
    Kx1PrintBm(dc, onWhite, rect, keepAspect, alignRight, alignBottom);
    DeleteObject(onWhite);
    return 1;
}

int KVKIT_CALL Kx1FillRectBm(HDC dc, HBITMAP bitmap, RECT* rect, int centre, short offsetX,
                             short offsetY) {
    int tileWidth, tileHeight;
    if (!rect || !BitmapSize(bitmap, &tileWidth, &tileHeight) || tileWidth <= 0 ||
        tileHeight <= 0)
        return 1;
    MemoryDC tile(dc, bitmap);
    if (!tile.ok()) return 1;
    // Clip to the rectangle and give the caller's clipping back at the end.
    HRGN callerClip = CreateRectRgn(0, 0, 0, 0);
    bool hadClip = GetClipRgn(dc, callerClip) == 1;
    IntersectClipRect(dc, rect->left, rect->top, rect->right, rect->bottom);

    int width = rect->right - rect->left, height = rect->bottom - rect->top;
    if (centre) {
        int x = rect->left + (width - tileWidth) / 2;
        int y = rect->top + (height - tileHeight) / 2;
        if (x < rect->left) x = rect->left;
        if (y < rect->top) y = rect->top;
        blitWhole(dc, x - offsetX, y - offsetY, tile.dc(), tileWidth, tileHeight);
    } else if (tileWidth >= width + offsetX && tileHeight >= height + offsetY) {
        BitBlt(dc, rect->left, rect->top, tileWidth, tileHeight, tile.dc(), offsetX, offsetY,
               SRCCOPY);
    } else {
        int tiledWidth = width + offsetX, tiledHeight = height + offsetY;
        HBITMAP tiled = CreateCompatibleBitmap(dc, tiledWidth, tiledHeight);
        if (tiled) {
            {
                MemoryDC tiledDC(dc, tiled);
                for (int y = 0; y < tiledHeight; y += tileHeight)
                    for (int x = 0; x < tiledWidth; x += tileWidth)
                        blitWhole(tiledDC.dc(), x, y, tile.dc(), tileWidth, tileHeight);
                BitBlt(dc, rect->left, rect->top, width, height, tiledDC.dc(), offsetX, offsetY,
                       SRCCOPY);
            }
            DeleteObject(tiled);
        }
    }
    SelectClipRgn(dc, hadClip ? callerClip : nullptr);
    DeleteObject(callerClip);
    return 1;
}

int KVKIT_CALL Kx1DrawBitmapRes(HDC dc, HINSTANCE module, const wchar_t* name, RECT* rect,
                                int stretch, int* widthOut, int* heightOut, HPALETTE palette,
                                int tileDown, int tileRight, int usePalette) {
    if (!rect || !name) return 0;
    HRSRC found = FindResourceW(module, name, MAKEINTRESOURCEW(2));
    HGLOBAL loaded = found ? LoadResource(module, found) : nullptr;
    auto* header = loaded ? static_cast<BITMAPINFOHEADER*>(LockResource(loaded)) : nullptr;
    if (!header || header->biWidth <= 0 || header->biHeight == 0) return 0;

    HPALETTE oldPalette = nullptr;
    if (palette && usePalette) {
        oldPalette = SelectPalette(dc, palette, FALSE);
        RealizePalette(dc);
    }
    int colours = header->biClrUsed;
    if (colours == 0) {
        switch (header->biBitCount) {
        case 1: colours = 2; break;
        case 4: colours = 16; break;
        case 8: colours = 256; break;
        default: colours = 0; break;
        }
    }
    const BYTE* bits = reinterpret_cast<const BYTE*>(header) + header->biSize + colours * 4;
    auto* info = reinterpret_cast<const BITMAPINFO*>(header);
    int width = header->biWidth;
    int height = header->biHeight < 0 ? -header->biHeight : header->biHeight;

    int result = 0;
    if (stretch) {
        result = StretchDIBits(dc, rect->left, rect->top, rect->right - rect->left,
                               rect->bottom - rect->top, 0, 0, width, height, bits, info,
                               DIB_RGB_COLORS, SRCCOPY);
    } else {
        HBITMAP picture = CreateDIBitmap(dc, header, CBM_INIT, bits, info, DIB_RGB_COLORS);
        if (picture) {
            {
                MemoryDC source(dc, picture);
                if (source.ok()) {
                    result = blitWhole(dc, rect->left, rect->top, source.dc(), width, height);
                    // Only the first column and the first row are repeated.
                    for (int y = rect->top + height; tileDown && y < rect->bottom; y += height)
                        result = blitWhole(dc, rect->left, y, source.dc(), width, height);
                    for (int x = rect->left + width; tileRight && x < rect->right; x += width)
                        result = blitWhole(dc, x, rect->top, source.dc(), width, height);
                }
            }
            DeleteObject(picture);
        }
    }
    if (oldPalette) SelectPalette(dc, oldPalette, FALSE);
    if (widthOut) *widthOut = result ? width : 0;
    if (heightOut) *heightOut = result ? height : 0;
    return result;
}
