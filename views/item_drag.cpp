// Pieces shared by the list-row and tree-item drag handlers: the drag image on the screen, the
// window under a point, the capture.
#include "views/item_drag.h"

namespace {

// The window the drag image is shown in, null while it is not shown.
HWND g_imageWindow;
// Hidden for a moment by HideDragImage.
bool g_imageHidden;

// Characters of a class name that are compared.
const int kClassNameCapacity = 50;

}  // namespace

void BeginDragImage(HIMAGELIST image) {
    if (g_imageWindow) ImageList_DragLeave(g_imageWindow);
    g_imageWindow = nullptr;
    g_imageHidden = false;
    ImageList_BeginDrag(image, 0, 0, 0);
}

void ShowDragImage(HWND window, int x, int y) {
    if (g_imageWindow == window) return;
    if (g_imageWindow) ImageList_DragLeave(g_imageWindow);
    g_imageWindow = ImageList_DragEnter(window, x, y) ? window : nullptr;
    g_imageHidden = false;
}

void MoveDragImage(int x, int y) { ImageList_DragMove(x, y); }

void HideDragImage() {
    if (!g_imageWindow || g_imageHidden) return;
    ImageList_DragShowNolock(FALSE);
    g_imageHidden = true;
}

void UnhideDragImage() {
    if (!g_imageWindow || !g_imageHidden) return;
    ImageList_DragShowNolock(TRUE);
    g_imageHidden = false;
}

void EndDragImage() {
    if (g_imageWindow) ImageList_DragLeave(g_imageWindow);
    g_imageWindow = nullptr;
    g_imageHidden = false;
    ImageList_EndDrag();
}

POINT ClientOffsetInWindow(HWND window) {
    POINT client = {0, 0};
    ClientToScreen(window, &client);
    RECT frame = {};
    GetWindowRect(window, &frame);
    return {client.x - frame.left, client.y - frame.top};
}

HWND WindowAtClientPoint(HWND window, int x, int y, POINT* screen) {
    *screen = {x, y};
    ClientToScreen(window, screen);
    return WindowFromPoint(*screen);
}

bool HasWindowClass(HWND window, const wchar_t* className) {
    wchar_t name[kClassNameCapacity] = L"";
    GetClassNameW(window, name, kClassNameCapacity);
    return lstrcmpiW(name, className) == 0;
}

void ReleaseCaptureOf(HWND holder) {
    if (holder && GetCapture() == holder) ReleaseCapture();
}
