// The face of the library's small push buttons, shared by edit-field buttons and the scroller.
#include "controls/buttonface.h"
#include "include/kvkit_bitmap.h"
#include "include/kvkit_draw.h"

namespace {
const COLORREF kPictureBackground = RGB(192, 192, 192);
}

void PaintButtonFace(HDC dc, const RECT& client, bool pressed, HBITMAP picture, bool enabled,
                     bool focused) {
    Kx1DrawBtnHg(dc, client, pressed ? 1 : 0, 0);
    BITMAP info;
    if (picture && GetObjectW(picture, sizeof(info), &info)) {
        int x = (client.right - client.left - info.bmWidth) / 2;
        int y = (client.bottom - client.top - info.bmHeight) / 2;
        if (enabled) {
            DrawTranspBitmap(dc, picture, client.left + x, client.top + y, kPictureBackground, true);
        } else {
            HBITMAP grey = CreateGreyscaleBitmap(picture, 1);
            if (grey) {
                DrawTranspBitmap(dc, grey, client.left + x, client.top + y, kPictureBackground, true);
                DeleteObject(grey);
            }
        }
    }
    if (focused) {
        RECT focus = client;
        InflateRect(&focus, -2, -2);
        DrawFocusRect(dc, &focus);
    }
}
