// The gallery host: one window per page, each showing a family of controls, each saved as a PNG.
#pragma once
#include <windows.h>
#include <functional>

struct GalleryPage {
    const wchar_t* name;    // also the screenshot's file name (name.png)
    int clientWidth;
    int clientHeight;
    void (*build)(HWND page);  // creates the page's children; may save extra screenshots
    // What the page shows, for the index; without one the index names the family only.
    const wchar_t* caption = nullptr;
};

// Adds a page; pages are shown in name order. Returns true so that it can initialise a static.
bool RegisterGalleryPage(const GalleryPage& page);

// Saves the window's current look (screen pixels of its client area) as name.png. The index
// lists it under the page being built.
void SaveScreenshot(HWND window, const wchar_t* name);

// A child window that paints itself through the callback (on a white background).
using PaintCallback = std::function<void(HDC dc, const RECT& client)>;
HWND CreatePaintedPanel(HWND parent, int x, int y, int width, int height, PaintCallback paint);

// Draws the bitmap at (x, y), each pixel as a scale x scale square.
void DrawBitmapScaled(HDC dc, HBITMAP bitmap, int x, int y, int scale = 1);

// Fills a rectangle (or the ellipse in it when `round`) with `colour`, outlined in black.
void FillShape(HDC dc, COLORREF colour, bool round, int left, int top, int right, int bottom);

// A static text label.
HWND AddLabel(HWND parent, int x, int y, int width, int height, const wchar_t* text);

// A visible child control of any class with a sunken edge and the GUI font.
HWND AddControl(HWND parent, const wchar_t* className, DWORD style, int x, int y, int width,
                int height, int id);

// Dispatches messages for the given time, so that pages can settle before a screenshot.
void PumpFor(DWORD milliseconds);

// The sample modules loaded by the gallery.
HINSTANCE GalleryLanguageModule();
HINSTANCE GalleryResourceModule();
