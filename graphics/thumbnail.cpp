// Pictures fitted into squares, for thumbnails and icons.
#include "graphics/thumbnail.h"
#include "graphics/memory_dc.h"
#include "include/kvkit_bitmap.h"
#include "include/kvkit_resample.h"

HBITMAP FitPictureOnSquare(HBITMAP picture, int fitWidth, int fitHeight, int size, COLORREF key) {
    HBITMAP copy = HBitmapDuplicate(picture);
    if (!copy) return nullptr;
    // Each step deletes its source when it makes a new bitmap and returns the source otherwise.
    HBITMAP resized = Kx1ShrinkBitmapEx2(copy, fitWidth > 0 ? fitWidth : 1,
                                         fitHeight > 0 ? fitHeight : 1, 1, 1);
    HBITMAP square = StretchBimapBackground(resized, size, size,
                                            KV_STRETCHBK_HCENTER | KV_STRETCHBK_VCENTER |
                                                KV_STRETCHBK_GIVENCOLOR | KV_STRETCHBK_DELETESOURCE,
                                            &key, nullptr);
    int squareWidth, squareHeight;
    if (!BitmapSize(square, &squareWidth, &squareHeight) || squareWidth != size || squareHeight != size) {
        if (square) DeleteObject(square);
        return nullptr;
    }
    return square;
}
