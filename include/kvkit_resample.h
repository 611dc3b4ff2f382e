// Bitmap resampling: an interpolating resize on device-dependent bitmaps, the same resize on the
// raw bits of DIB sections, a shrink that chooses between a plain stretch and interpolation, and
// a canvas enlarger that places a picture on a larger background without scaling it.
// Every function returns a new bitmap owned by the caller unless it says it returns the source.
#pragma once
#include "kvkit_api.h"

// Interpolating resize through GetPixel/SetPixel. With `transparent` non-zero, pixels of the key
// colour (the source's pixel (0, 0) when `keyFromCorner` is non-zero, else `key`) are never
// blended with picture pixels. Null for a missing source, a size of 0 or less, or when the size
// equals the source's.
KVKIT_API HBITMAP KVKIT_CALL ResizeBitmap(HBITMAP source, int width, int height, int transparent,
                                          COLORREF key, int keyFromCorner);

// The same resize on the bits of a bottom-up DIB section, dispatched by the source's depth to the
// 16-, 24- or 32-bit variant; depths of 8 bits or less give null. With `smooth` zero the lower
// sample is taken instead of blending. The result is compatible with `window`'s device context
// (the screen's for a null window).
KVKIT_API HBITMAP KVKIT_CALL BlendedResizeBitmap_DI(HWND window, HBITMAP source, int width,
                                                    int height, int transparent, COLORREF key,
                                                    int keyFromCorner, int smooth);
// 5-5-5 pixels (red in bits 10-14, green 5-9, blue 0-4). Null unless the source is 16-bit.
KVKIT_API HBITMAP KVKIT_CALL BlendedResizeBitmap_DI_16b(HWND window, HBITMAP source, int width,
                                                        int height, int transparent, COLORREF key,
                                                        int keyFromCorner, int smooth);
// Blue, green, red pixels. Null unless the source is 24-bit.
KVKIT_API HBITMAP KVKIT_CALL BlendedResizeBitmap_DI_24b(HWND window, HBITMAP source, int width,
                                                        int height, int transparent, COLORREF key,
                                                        int keyFromCorner, int smooth);
// Always null: a 32-bit source yields no resized bitmap, and callers fall back to ResizeBitmap.
KVKIT_API HBITMAP KVKIT_CALL BlendedResizeBitmap_DI_32b(HWND window, HBITMAP source, int width,
                                                        int height, int transparent, COLORREF key,
                                                        int keyFromCorner, int smooth);

// Shrinks (or, with `allowEnlarge`, also enlarges) a picture: a plain stretch when both factors
// lie within [0.5, 1.5] and neither is exactly 1, the transparent interpolating resize otherwise.
// Returns the source when there is nothing to do or the work fails; when a new bitmap is returned
// and `deleteSource` is non-zero, the source is deleted.
KVKIT_API HBITMAP KVKIT_CALL Kx1ShrinkBitmapEx2(HBITMAP source, int width, int height,
                                                int allowEnlarge, int deleteSource);
// Kx1ShrinkBitmapEx2(source, width, height, 0, 1).
KVKIT_API HBITMAP KVKIT_CALL Kx1ShrinkBitmap(HBITMAP source, int width, int height);
// Kx1ShrinkBitmapEx2(source, width, height, allowEnlarge, 1).
KVKIT_API HBITMAP KVKIT_CALL Kx1ShrinkBitmapEx(HBITMAP source, int width, int height,
                                               int allowEnlarge);

// Placement flags of StretchBimapBackground (only the low byte of the flags counts).
const int KV_STRETCHBK_BOTTOM = 0x02;        // picture at the bottom
const int KV_STRETCHBK_VCENTER = 0x04;       // centred vertically, the odd pixel above
const int KV_STRETCHBK_RIGHT = 0x10;         // picture at the right
const int KV_STRETCHBK_HCENTER = 0x20;       // centred horizontally, the odd pixel left
const int KV_STRETCHBK_GIVENCOLOR = 0x40;    // background from *background, not pixel (0, 0)
const int KV_STRETCHBK_DELETESOURCE = 0x80;  // delete the source when a new bitmap is returned

// Enlarges the canvas to width x height, filled with the background colour, and copies the
// picture onto it unscaled. Without KV_STRETCHBK_GIVENCOLOR the background is the source's pixel
// (0, 0), also stored into *background when given. *unchanged (when given) is 1 when the source
// or null is returned, 0 when a new bitmap is.
KVKIT_API HBITMAP KVKIT_CALL StretchBimapBackground(HBITMAP source, int width, int height,
                                                    int flags, COLORREF* background,
                                                    int* unchanged);
// The same function under its corrected spelling (one entry point with two export names).
KVKIT_API HBITMAP KVKIT_CALL StretchBitmapBackground(HBITMAP source, int width, int height,
                                                     int flags, COLORREF* background,
                                                     int* unchanged);
