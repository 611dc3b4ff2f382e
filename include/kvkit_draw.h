// Gradient fills, button faces, transparent drawing of bitmaps, tiled, resource and printed
// bitmaps, and reading of ".bmp" files. Unless a key colour is passed, the pixel at (0, 0) of a
// bitmap is its transparent colour.
#pragma once
#include "kvkit_api.h"

// A linear gradient over the rectangle, left to right (top to bottom when `vertical`). With
// `autoEnd` the end colour is `from` plus 50 per channel, each kept to 8 bits (so it wraps).
// Returns 1.
KVKIT_API int KVKIT_CALL Kx1GradientFill(HDC dc, COLORREF from, COLORREF to, int autoEnd,
                                         int vertical, RECT* rect);
// A gradient with a knee after `percent` of the extent, whose colour lies `strength` percent of
// the way to the end. With `reverse` the knee is measured from the bottom (right) edge.
// Returns 1.
KVKIT_API int KVKIT_CALL Kx1GradientFill_AsHighlight(HDC dc, COLORREF from, COLORREF to,
                                                     int autoEnd, int vertical, RECT* rect,
                                                     double percent, double strength);
KVKIT_API int KVKIT_CALL Kx1GradientFill_AsHighlightEx(HDC dc, COLORREF from, COLORREF to,
                                                       int autoEnd, int vertical, RECT* rect,
                                                       double percent, double strength,
                                                       bool reverse);
// Four corners with their own colours (bottom-left, top-left, top-right, bottom-right), drawn as
// two triangles that share the diagonal from bottom-left to top-right. `last` is not used.
KVKIT_API int KVKIT_CALL Kx1GradientFillBiDirectional(HDC dc, RECT* rect, COLORREF bottomLeft,
                                                      COLORREF topLeft, COLORREF topRight,
                                                      COLORREF bottomRight, COLORREF last);
// Four points with four colours as triangles (0, 1, 2) and (0, 2, 3); the counts and `last` are
// not used. Non-zero when the system drew the gradient.
KVKIT_API int KVKIT_CALL Kx1GradientFillBiDirectionalEx(HDC dc, COLORREF* colours,
                                                        int colourCount, POINT* points,
                                                        int pointCount, COLORREF last);
// `first` in one corner, `second` in the opposite one (top-left to bottom-right, or bottom-left
// to top-right when `rising`), their mix in the other two. 0 for an empty rectangle.
KVKIT_API int KVKIT_CALL Kx1GradientFillDiagonal(HDC dc, RECT* rect, COLORREF first,
                                                 COLORREF second, int rising);

// Draws the bitmap at (x, y) at its own size, leaving out pixels of the key colour (`key` when
// `useKey`, else the bitmap's pixel (0, 0)). The Ex form returns 1.
KVKIT_API void KVKIT_CALL DrawTranspBitmap(HDC dc, HBITMAP bitmap, int x, int y, COLORREF key,
                                           bool useKey);
KVKIT_API int KVKIT_CALL DrawTranspBitmapEx(HDC dc, HBITMAP bitmap, int x, int y, COLORREF key,
                                            int unused, bool useKey);
// Draws `image` at (x, y) where the monochrome `mask` is black; the image must be black where
// the mask is white.
KVKIT_API void KVKIT_CALL DrawTransparentByMask(HDC dc, HBITMAP image, HBITMAP mask, int x,
                                                int y);
// Stretches the bitmap to the rectangle and draws it transparently (key: its pixel (0, 0)).
// Returns the result of the stretch.
KVKIT_API int KVKIT_CALL Kx1DrawTransShrBitm(HDC dc, HBITMAP bitmap, RECT* rect);

// Reads a ".bmp" file (".bmp" is appended when the path has no suffix of up to three
// characters). With `bitmapOut` the file is loaded as a bitmap into *bitmapOut and null
// returned. Otherwise the whole file goes into a new kvtext block, followed by one zero byte;
// the block is stored in *blockOut (the caller frees it with FreeMemory) and the information
// header inside it is returned. Null on failure, also for information headers other than the
// 40-byte one.
KVKIT_API BITMAPINFOHEADER* KVKIT_CALL Kx1ReadBitmap(const wchar_t* path, BYTE** blockOut,
                                                     HBITMAP* bitmapOut);
// A display-compatible bitmap of a file image read by Kx1ReadBitmap; the caller owns it.
KVKIT_API HBITMAP KVKIT_CALL Kx1MakeBitmap(BYTE* block);

// Prints the bitmap into the rectangle through the kvbase print functions; the three values are
// passed to DIBToBitmapRect (keep aspect, align right, align bottom). Returns 1.
KVKIT_API int KVKIT_CALL Kx1PrintBm(HDC dc, HBITMAP bitmap, RECT* rect, int keepAspect,
                                    int alignRight, int alignBottom);
// As Kx1PrintBm, with the bitmap's transparent pixels printed white. Returns 1.
KVKIT_API int KVKIT_CALL Kx1PrintBmTransp(HDC dc, HBITMAP bitmap, RECT* rect, int keepAspect,
                                          int alignRight, int alignBottom);
// Fills the rectangle with the bitmap: centred once, or tiled from the rectangle's top-left
// corner, shifted by the offsets (which let a caller scroll a tiled background). Returns 1.
KVKIT_API int KVKIT_CALL Kx1FillRectBm(HDC dc, HBITMAP bitmap, RECT* rect, int centre,
                                       short offsetX, short offsetY);
// Draws a bitmap resource of `module` stretched into the rectangle, or at its own size at the
// rectangle's top-left corner, repeated down the first column (`tileDown`) and along the first
// row (`tileRight`). The picture's size goes to *widthOut and *heightOut when the last blit
// succeeded (else 0). Returns the last blit's result, 0 when the resource is missing.
KVKIT_API int KVKIT_CALL Kx1DrawBitmapRes(HDC dc, HINSTANCE module, const wchar_t* name,
                                          RECT* rect, int stretch, int* widthOut,
                                          int* heightOut, HPALETTE palette, int tileDown,
                                          int tileRight, int usePalette);
// A button face with a raised edge (state 0 or 2) or a sunken one (any other state).
KVKIT_API void KVKIT_CALL Kx1DrawBtnHg(HDC dc, RECT rect, unsigned char state, int style);
