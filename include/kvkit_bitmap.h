// Bitmaps derived from bitmaps: copies, greyscale, level-adjusted and disabled looks, a changed
// background colour, and bitmaps taken out of icons, files and image lists. Every function that
// returns a bitmap returns a new one that the caller owns and deletes (null on failure); the
// source is never changed. The pixel at (0, 0) of a bitmap is its background colour; bitmaps made
// from icons have a magenta background.
#pragma once
#include "kvkit_api.h"
#include <commctrl.h>

// The colour of the bitmap's pixel (0, 0).
KVKIT_API COLORREF KVKIT_CALL Kx1GetBmBkColor(HBITMAP bitmap);
// A screen-compatible copy.
KVKIT_API HBITMAP KVKIT_CALL HBitmapDuplicate(HBITMAP bitmap);
// Every pixel replaced by its grey; with `keepBackground` pixels of the background colour stay.
KVKIT_API HBITMAP KVKIT_CALL CreateGreyscaleBitmap(HBITMAP bitmap, int keepBackground);
// Greys mapped onto blackLevel..whiteLevel (both 0: plain greys).
KVKIT_API HBITMAP KVKIT_CALL CreateAdjustedGreyscaleBitmap(HBITMAP bitmap, int keepBackground,
                                                           int whiteLevel, int blackLevel);
// As above; with a mask (`mask` and *mask non-null) only the pixels where the mask is black
// turn grey, black ones taking the grey of the previous such pixel, and the rest is copied.
KVKIT_API HBITMAP KVKIT_CALL CreateAdjustedGreyscaleBitmapEx(HBITMAP bitmap, int keepBackground,
                                                             int whiteLevel, int blackLevel,
                                                             HBITMAP* mask);
// The picture embossed in the highlight and shadow colours on a face of `colour` (or of the
// button-face colour when `useColour` is zero).
KVKIT_API HBITMAP KVKIT_CALL CreateDisabledBitmapHg(HBITMAP bitmap, int useColour,
                                                    COLORREF colour);
// A copy whose background (pixel (0, 0)'s colour, or the white part of `mask`) is `background`.
KVKIT_API HBITMAP KVKIT_CALL BitmapChangeBackgroundColor(HBITMAP bitmap, COLORREF background,
                                                         HBITMAP mask);
// The icon on magenta, 16 x 16 for size code 2, else 24 x 24; pixel (0, 0) is always magenta.
KVKIT_API HBITMAP KVKIT_CALL DuplicateIconBitmap(HICON icon, unsigned char sizeCode);
// A bitmap of the file's own first icon (size code 1: large, 2: small), or else of the icon
// associated with the file through the session's resource module.
KVKIT_API HBITMAP KVKIT_CALL ExtractAssociatedBitmap(KVSESSION* session, const wchar_t* path,
                                                     unsigned char sizeCode);
// Image `index` of the list as a bitmap; the Ex form also returns its mask through `maskOut`
// when the list has masks (null otherwise).
KVKIT_API HBITMAP KVKIT_CALL ExtractImageListImage(HIMAGELIST list, int index);
KVKIT_API HBITMAP KVKIT_CALL ExtractImageListImageEx(HIMAGELIST list, int index,
                                                     HBITMAP* maskOut);
// Draws image `index` greyed (levels as for CreateAdjustedGreyscaleBitmap) at (x, y) through its
// mask. 0 when drawn, 1 when the list has no such image or no masks.
KVKIT_API int KVKIT_CALL ImageList_DrawGrayedImage(HIMAGELIST list, int index, int whiteLevel,
                                                   int blackLevel, HDC dc, int x, int y);
// Adds a copy of the bitmap with its pixel (0, 0) as the mask colour, so that the caller's
// bitmap is not altered by the list. 0 on success, 1 for a missing list or bitmap.
KVKIT_API int KVKIT_CALL ProtectedImageList_AddMaskedEx(HIMAGELIST list, HBITMAP bitmap,
                                                        COLORREF unusedColour, int unusedFlags);
KVKIT_API int KVKIT_CALL ProtectedImageList_AddMasked(HIMAGELIST list, HBITMAP bitmap,
                                                      COLORREF unusedColour);
