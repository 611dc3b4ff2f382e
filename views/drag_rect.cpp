// The rectangle image drag: a dimmed photograph of part of a window's client area follows the
// mouse over the window. What the window showed under the image is kept in a save-under bitmap,
// so that moving the image restores the window's pixels without a repaint.
#include "include/kvkit_drag.h"
#include "graphics/memory_dc.h"

namespace {

// The checkerboard that dims the photograph: where a pattern bit is 0 the photograph is ANDed
// with this grey, where it is 1 with white (unchanged). Rows of 8 pixels, 2 bytes a row.
const COLORREF kDimGrey = RGB(0x7D, 0x7D, 0x7D);
const COLORREF kWhite = RGB(0xFF, 0xFF, 0xFF);
const BYTE kCheckerboard[16] = {0x55, 0, 0xAA, 0, 0x55, 0, 0xAA, 0,
                                0x55, 0, 0xAA, 0, 0x55, 0, 0xAA, 0};

// The one rectangle drag of the process.
struct RectDrag {
    POINT lastMouse;  // the previous move's position, in client coordinates
    POINT image;      // top-left corner of the image; moves with the mouse, so it equals lastMouse
    int width;
    int height;
    HBITMAP picture;    // the dimmed photograph
    HBITMAP saveUnder;  // what the window showed under the image; the picture itself at first
};
RectDrag g_rectDrag;

void copy(HDC to, int x, int y, HDC from, int fromX, int fromY) {
    BitBlt(to, x, y, g_rectDrag.width, g_rectDrag.height, from, fromX, fromY, SRCCOPY);
}

// ANDs every other pixel (those where x + y is even) of the photograph with the grey.
void dim(HDC windowDC, HDC photo, int width, int height) {
    HBITMAP pattern = CreateBitmap(8, 8, 1, 1, kCheckerboard);
    HBRUSH brush = pattern ? CreatePatternBrush(pattern) : nullptr;
    HBITMAP shade = CreateCompatibleBitmap(windowDC, width, height);
    if (brush && shade) {
        MemoryDC shading(windowDC, shade);
        // A one-bit pattern paints its 0 bits in the text colour and its 1 bits in the background.
        SetTextColor(shading.dc(), kDimGrey);
        SetBkColor(shading.dc(), kWhite);
        RECT all = {0, 0, width, height};
        FillRect(shading.dc(), &all, brush);
        BitBlt(photo, 0, 0, width, height, shading.dc(), 0, 0, SRCAND);
    }
    if (shade) DeleteObject(shade);
    if (brush) DeleteObject(brush);
    if (pattern) DeleteObject(pattern);
}

HBITMAP copyOf(HDC windowDC, HBITMAP bitmap) {
    HBITMAP copied = CreateCompatibleBitmap(windowDC, g_rectDrag.width, g_rectDrag.height);
    if (!copied) return nullptr;
    MemoryDC from(windowDC, bitmap), to(windowDC, copied);
    copy(to.dc(), 0, 0, from.dc(), 0, 0);
    return copied;
}

void deleteBitmaps() {
    if (g_rectDrag.saveUnder && g_rectDrag.saveUnder != g_rectDrag.picture)
        DeleteObject(g_rectDrag.saveUnder);
    if (g_rectDrag.picture) DeleteObject(g_rectDrag.picture);
    g_rectDrag.saveUnder = g_rectDrag.picture = nullptr;
}

bool dragging() { return g_rectDrag.picture && g_rectDrag.saveUnder; }

// Moves the image so that its corner follows the mouse to (x, y), restoring the strip it
// uncovers from the save-under and saving what it now covers.
void moveImage(HWND window, int x, int y) {
    if (!dragging() || !IsWindow(window)) return;
    int dx = x - g_rectDrag.lastMouse.x, dy = y - g_rectDrag.lastMouse.y;
    POINT from = g_rectDrag.image;
    POINT to = {from.x + dx, from.y + dy};
    HDC dc = GetDC(window);
    if (!dc) return;
    // Before the first move the save-under is the picture itself: a copy of it is patched and
    // drawn instead, so that the picture stays whole. The window's own pixels at the start were
    // never saved, so a dimmed copy marks where the drag began.
    HBITMAP oldUnder = g_rectDrag.saveUnder == g_rectDrag.picture
                           ? copyOf(dc, g_rectDrag.picture)
                           : g_rectDrag.saveUnder;
    HBITMAP newUnder = CreateCompatibleBitmap(dc, g_rectDrag.width, g_rectDrag.height);
    if (oldUnder && newUnder) {
        MemoryDC next(dc, newUnder), previous(dc, oldUnder), picture(dc, g_rectDrag.picture);
        // The window where the image goes; where the old image covers it, what lay beneath.
        copy(next.dc(), 0, 0, dc, to.x, to.y);
        copy(next.dc(), -dx, -dy, previous.dc(), 0, 0);
        // Where the places overlap, restoring the old place must leave the new image visible.
        copy(previous.dc(), dx, dy, picture.dc(), 0, 0);
        copy(dc, to.x, to.y, picture.dc(), 0, 0);
        copy(dc, from.x, from.y, previous.dc(), 0, 0);
        g_rectDrag.image = to;
        g_rectDrag.lastMouse = {x, y};
        g_rectDrag.saveUnder = newUnder;
        newUnder = nullptr;
    }
    ReleaseDC(window, dc);
    if (newUnder) DeleteObject(newUnder);
    if (oldUnder && oldUnder != g_rectDrag.picture && oldUnder != g_rectDrag.saveUnder)
        DeleteObject(oldUnder);
}

}  // namespace

void KVKIT_CALL Kx1BeginDrag(HWND window, RECT* rect) {
    if (!rect || !IsWindow(window)) return;
    int width = rect->right - rect->left, height = rect->bottom - rect->top;
    if (width <= 0 || height <= 0) return;
    deleteBitmaps();  // a drag begun while another is under way replaces it
    HDC dc = GetDC(window);
    if (!dc) return;
    HBITMAP picture = CreateCompatibleBitmap(dc, width, height);
    if (picture) {
        MemoryDC photo(dc, picture);
        BitBlt(photo.dc(), 0, 0, width, height, dc, rect->left, rect->top, SRCCOPY);
        dim(dc, photo.dc(), width, height);
    }
    ReleaseDC(window, dc);
    if (!picture) return;
    SetCapture(window);
    g_rectDrag.image = g_rectDrag.lastMouse = {rect->left, rect->top};
    g_rectDrag.width = width;
    g_rectDrag.height = height;
    g_rectDrag.picture = g_rectDrag.saveUnder = picture;
}

void KVKIT_CALL Kx1Drag(HWND window, int x, int y) { moveImage(window, x, y); }

void KVKIT_CALL Kx1EndDrag(HWND window, int x, int y, RECT* result) {
    if (!dragging()) return;
    if (x != g_rectDrag.lastMouse.x || y != g_rectDrag.lastMouse.y) moveImage(window, x, y);
    g_rectDrag.lastMouse = {0, 0};

    // Back inside the client area, when the image stands out of it.
    RECT client = {};
    GetClientRect(window, &client);
    POINT& image = g_rectDrag.image;
    int width = g_rectDrag.width, height = g_rectDrag.height;
    int insideX = image.x < 0 ? 0 : image.x + width > client.right ? client.right - width : image.x;
    int insideY = image.y < 0 ? 0 : image.y + height > client.bottom ? client.bottom - height : image.y;
    if (insideX != image.x || insideY != image.y) {
        g_rectDrag.lastMouse = image;
        moveImage(window, insideX, insideY);
        g_rectDrag.lastMouse = {0, 0};
    }
    deleteBitmaps();
    // Released last, when no drag is left for a host that ends it when the capture goes.
    if (window && GetCapture() == window) ReleaseCapture();
    if (result) *result = {image.x, image.y, image.x + width, image.y + height};
}

int KVKIT_CALL Kx1StopDrag(HWND window, int, int, int) {
    if (!dragging() || !IsWindow(window)) return 0;
    HDC dc = GetDC(window);
    if (dc) {
        MemoryDC under(dc, g_rectDrag.saveUnder);
        copy(dc, g_rectDrag.lastMouse.x, g_rectDrag.lastMouse.y, under.dc(), 0, 0);
        ReleaseDC(window, dc);
    }
    UpdateWindow(window);
    return 1;
}

int KVKIT_CALL Kx1ResumeDrag(HWND window, int x, int y, int) {
    if (!dragging() || !IsWindow(window)) return 0;
    UpdateWindow(window);
    HDC dc = GetDC(window);
    if (!dc) return 0;
    // Taken up before the first move, the save-under still is the picture: it gets its own.
    if (g_rectDrag.saveUnder == g_rectDrag.picture) {
        HBITMAP own = CreateCompatibleBitmap(dc, g_rectDrag.width, g_rectDrag.height);
        if (!own) {
            ReleaseDC(window, dc);
            return 0;
        }
        g_rectDrag.saveUnder = own;
    }
    {
        MemoryDC under(dc, g_rectDrag.saveUnder);
        copy(under.dc(), 0, 0, dc, x, y);
    }
    ReleaseDC(window, dc);
    g_rectDrag.image = g_rectDrag.lastMouse = {x, y};
    return 1;
}
