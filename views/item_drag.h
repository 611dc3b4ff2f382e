// Pieces shared by the list-row and tree-item drag handlers. Internal.
#pragma once
#include <windows.h>
#include <commctrl.h>

// The image-list drag shows one image per process. These wrap it so that the image is entered
// once per window (entering again while shown would move its remembered place without redrawing
// it, leaving a trail) and taken off the screen before the drag ends (ending alone leaves it
// drawn).
void BeginDragImage(HIMAGELIST image);
// Shows the image in `window` at (x, y) of the window's own corner, once.
void ShowDragImage(HWND window, int x, int y);
void MoveDragImage(int x, int y);
// Hides or shows the image around a change of the window's pixels.
void HideDragImage();
void UnhideDragImage();
void EndDragImage();

// The window's client origin minus its window origin: added to a client point, it gives the
// point in window coordinates, where the drag image is placed.
POINT ClientOffsetInWindow(HWND window);

// The window under a point of `window`'s client area; the point in screen coordinates goes to
// *screen.
HWND WindowAtClientPoint(HWND window, int x, int y, POINT* screen);
// True when the window's class is `className` (compared as the system does, ignoring case).
bool HasWindowClass(HWND window, const wchar_t* className);

// Releases the mouse capture if `holder` still holds it; a capture taken by another window since
// is left alone.
void ReleaseCaptureOf(HWND holder);
