// Small helpers shared by the bitmap drawing sources. Internal.
#pragma once
#include <windows.h>

// A memory device context with one bitmap selected into it; both are released when it goes
// out of scope (the bitmap is deselected, never deleted).
class MemoryDC {
public:
    MemoryDC(HDC compatibleWith, HBITMAP bitmap) : dc_(CreateCompatibleDC(compatibleWith)) {
        if (dc_ && bitmap) previous_ = SelectObject(dc_, bitmap);
    }
    ~MemoryDC() {
        if (previous_) SelectObject(dc_, previous_);
        if (dc_) DeleteDC(dc_);
    }
    MemoryDC(const MemoryDC&) = delete;
    MemoryDC& operator=(const MemoryDC&) = delete;

    HDC dc() const { return dc_; }
    // False when the context could not be made or the bitmap not selected (for example
    // because another context holds it).
    bool ok() const { return dc_ && previous_; }

private:
    HDC dc_;
    HGDIOBJ previous_ = nullptr;
};

// Width and height of a bitmap; false (and 0 x 0) when the handle is not a bitmap.
inline bool BitmapSize(HBITMAP bitmap, int* width, int* height) {
    BITMAP info = {};
    bool known = bitmap && GetObjectW(bitmap, sizeof(info), &info) == sizeof(info);
    *width = known ? info.bmWidth : 0;
    *height = known ? info.bmHeight : 0;
    return known;
}

// A bitmap compatible with the screen.
inline HBITMAP CreateScreenBitmap(int width, int height) {
    HDC screen = GetDC(nullptr);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
    ReleaseDC(nullptr, screen);
    return bitmap;
}

// A new screen-compatible bitmap painted by `paint(HDC)` through a memory context. Null, with
// nothing left behind, when the bitmap or the context cannot be made or `paint` returns false.
template <typename Paint>
HBITMAP PaintNewBitmap(int width, int height, Paint paint) {
    HBITMAP output = CreateScreenBitmap(width, height);
    if (!output) return nullptr;
    bool painted;
    {
        MemoryDC target(nullptr, output);
        painted = target.ok() && paint(target.dc());
    }
    if (!painted) {
        DeleteObject(output);
        return nullptr;
    }
    return output;
}

inline void FillWithColour(HDC dc, int width, int height, COLORREF colour) {
    HBRUSH brush = CreateSolidBrush(colour);
    RECT whole = {0, 0, width, height};
    FillRect(dc, &whole, brush);
    DeleteObject(brush);
}
