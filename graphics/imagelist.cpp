// Bitmaps taken out of icons, files and image lists, greyed image-list drawing, and adding a
// bitmap to an image list without altering it.
#include "include/kvkit_bitmap.h"
#include "include/kvkit_draw.h"
#include "graphics/memory_dc.h"
#include "kvtext.h"
#include <shellapi.h>

namespace {

const COLORREF kMagenta = RGB(255, 0, 255);
const unsigned char kLargeIcon = 1;
const unsigned char kSmallIcon = 2;

// A copy of the icon's colour bitmap; the icon's own bitmaps are deleted.
HBITMAP colourBitmapOfIcon(HICON icon) {
    ICONINFO info = {};
    if (!GetIconInfo(icon, &info)) return nullptr;
    HBITMAP copy = HBitmapDuplicate(info.hbmColor);
    if (info.hbmColor) DeleteObject(info.hbmColor);
    if (info.hbmMask) DeleteObject(info.hbmMask);
    return copy;
}

// Copies `area` of an image-list strip into `target`. The strip is copied first because the
// list keeps it selected into its own device context.
void copyFromStrip(HBITMAP strip, const RECT& area, HBITMAP target) {
    HBITMAP stripCopy = static_cast<HBITMAP>(CopyImage(strip, IMAGE_BITMAP, 0, 0, 0));
    if (!stripCopy) return;
    {
        MemoryDC source(nullptr, stripCopy), destination(nullptr, target);
        if (source.ok() && destination.ok())
            BitBlt(destination.dc(), 0, 0, area.right - area.left, area.bottom - area.top,
                   source.dc(), area.left, area.top, SRCCOPY);
    }
    DeleteObject(stripCopy);
}

}  // namespace

HBITMAP KVKIT_CALL DuplicateIconBitmap(HICON icon, unsigned char sizeCode) {
    if (!icon) return nullptr;
    int side = sizeCode == kSmallIcon ? 16 : 24;
    return PaintNewBitmap(side, side, [&](HDC target) {
        FillWithColour(target, side, side, kMagenta);
        DrawIconEx(target, 0, 0, icon, side, side, 0, nullptr, DI_NORMAL);
        // Pixel (0, 0) names the background, so it must be magenta whatever the icon drew.
        SetPixel(target, 0, 0, kMagenta);
        return true;
    });
}

HBITMAP KVKIT_CALL ExtractAssociatedBitmap(KVSESSION* session, const wchar_t* path,
                                           unsigned char sizeCode) {
    if (!path || !*path) return nullptr;
    HBITMAP bitmap = nullptr;
    if (ExtractIconExW(path, -1, nullptr, nullptr, 0) != 0) {
        HICON large = nullptr, small = nullptr;
        ExtractIconExW(path, 0, sizeCode == kLargeIcon ? &large : nullptr,
                       sizeCode == kSmallIcon ? &small : nullptr, 1);
        HICON icon = large ? large : small;
        if (icon) {
            bitmap = colourBitmapOfIcon(icon);
            DestroyIcon(icon);
        }
    }
    if (!bitmap && session) {
        // ExtractAssociatedIconW may write the path of the icon's source into its buffer.
        wchar_t buffer[MAX_PATH];
        kv_strcpy(buffer, path, MAX_PATH);
        WORD index = 0;
        HICON icon = ExtractAssociatedIconW(session->resourceModule, buffer, &index);
        if (icon) {
            bitmap = sizeCode == kLargeIcon ? colourBitmapOfIcon(icon)
                                            : DuplicateIconBitmap(icon, sizeCode);
            DestroyIcon(icon);
        }
    }
    return bitmap;
}

HBITMAP KVKIT_CALL ExtractImageListImage(HIMAGELIST list, int index) {
    return ExtractImageListImageEx(list, index, nullptr);
}

HBITMAP KVKIT_CALL ExtractImageListImageEx(HIMAGELIST list, int index, HBITMAP* maskOut) {
    if (maskOut) *maskOut = nullptr;
    if (!list || index < 0 || index >= ImageList_GetImageCount(list)) return nullptr;
    IMAGEINFO info = {};
    if (!ImageList_GetImageInfo(list, index, &info)) return nullptr;
    int width = info.rcImage.right - info.rcImage.left;
    int height = info.rcImage.bottom - info.rcImage.top;
    HBITMAP image = CreateScreenBitmap(width, height);
    if (!image) return nullptr;
    HBITMAP mask = nullptr;
    if (maskOut && info.hbmMask) {
        mask = CreateBitmap(width, height, 1, 1, nullptr);
        if (!mask) return image;  // blank, as documented: the caller sees no mask
    }
    copyFromStrip(info.hbmImage, info.rcImage, image);
    if (mask) {
        copyFromStrip(info.hbmMask, info.rcImage, mask);
        *maskOut = mask;
    }
    return image;
}

int KVKIT_CALL ImageList_DrawGrayedImage(HIMAGELIST list, int index, int whiteLevel,
                                         int blackLevel, HDC dc, int x, int y) {
    HBITMAP mask = nullptr;
    HBITMAP image = ExtractImageListImageEx(list, index, &mask);
    int result = 1;
    if (image && mask) {
        HBITMAP grey = CreateAdjustedGreyscaleBitmapEx(image, 1, whiteLevel, blackLevel, &mask);
        if (grey) {
            DrawTransparentByMask(dc, grey, mask, x, y);
            DeleteObject(grey);
            result = 0;
        }
    }
    if (image) DeleteObject(image);
    if (mask) DeleteObject(mask);
    return result;
}

int KVKIT_CALL ProtectedImageList_AddMaskedEx(HIMAGELIST list, HBITMAP bitmap,
                                              COLORREF unusedColour, int unusedFlags) {
    COLORREF maskColour = Kx1GetBmBkColor(bitmap);
    if (!list || !bitmap) return 1;
    // ImageList_AddMasked blackens the background of the bitmap it is given, so it gets a copy.
    HBITMAP copy = HBitmapDuplicate(bitmap);
    if (!copy) return 1;
    ImageList_AddMasked(list, copy, maskColour);
    DeleteObject(copy);
    return 0;
}

int KVKIT_CALL ProtectedImageList_AddMasked(HIMAGELIST list, HBITMAP bitmap,
                                            COLORREF unusedColour) {
    return ProtectedImageList_AddMaskedEx(list, bitmap, unusedColour, 0);
}
