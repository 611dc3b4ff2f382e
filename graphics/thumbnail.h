// Pictures fitted into squares, for thumbnails and icons. Internal.
#pragma once
#include <windows.h>

// A copy of `picture` resized to fitWidth x fitHeight and centred on a size x size square of the
// colour `key`; the picture itself is left alone. Null when `picture` is no bitmap or the copy
// does not come out at that size.
HBITMAP FitPictureOnSquare(HBITMAP picture, int fitWidth, int fitHeight, int size, COLORREF key);
