// The face of the library's small push buttons, shared by edit-field buttons and the scroller.
#include "controls/buttonface.h"
#include "include/kvkit_bitmap.h"
#include "include/kvkit_draw.h"

namespace {
const COLORREF kPictureBackground = RGB(192, 192, 192);
}

void DrawButtonPicture(HDC dc, const RECT& client, HBITMAP picture, bool enabled) {
    BITMAP info;
    if (!picture || !GetObjectW(picture, sizeof(info), &info)) return;
    int x = client.left + (client.right - client.left - info.bmWidth) / 2;
    int y = client.top + (client.bottom - client.top - info.bmHeight) / 2;
    if (enabled) {
        DrawTranspBitmap(dc, picture, x, y, kPictureBackground, true);
        return;
    }
    HBITMAP grey = CreateGreyscaleBitmap(picture, 1);
    if (!grey) return;
    DrawTranspBitmap(dc, grey, x, y, kPictureBackground, true);
    DeleteObject(grey);
}

void PaintButtonFace(HDC dc, const RECT& client, bool pressed, HBITMAP picture, bool enabled,
                     bool focused) {
    Kx1DrawBtnHg(dc, client, pressed ? 1 : 0, 0);
    DrawButtonPicture(dc, client, picture, enabled);
    if (focused) {
        RECT focus = client;
        InflateRect(&focus, -2, -2);
        DrawFocusRect(dc, &focus);
    }
}
